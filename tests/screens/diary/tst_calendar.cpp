// The month calendar: its grid, the clicks, the marks a day shows (also under
// the planting filter), the options kept in the settings, and the screen's
// stepping and day click.

#include "ui/Form.h"
#include "base/Globals.h"
#include "rules/diary/CalMonth.h"
#include "screens/diary/frmDairyCal.h"
#include "store/Database.h"
#include "support/GuiDriver.h"
#include "support/MsgRecorder.h"
#include "support/TestRoot.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QtTest/QTest>

namespace {

// May 2024 of farmer 1, and a line of farmer 2 that must never show.
void seedMay()
{
    gDB->EXEC("INSERT INTO D_PLANT (FMR_ID, PLANT_ID, PLANT_NM, START_DATE, PLANT_DATE) VALUES "
              "(1, 1, '春トマト', #2024/4/1#, #2024/4/5#)");
    gDB->EXEC("INSERT INTO D_PLANT (FMR_ID, PLANT_ID, PLANT_NM, START_DATE, END_DATE, PLANT_DATE) VALUES "
              "(1, 2, '露地なす', #2024/4/20#, #2024/5/10#, #2024/4/25#)");
    gDB->EXEC("INSERT INTO D_PLANT (FMR_ID, PLANT_ID, PLANT_NM, START_DATE, END_DATE, PLANT_DATE) VALUES "
              "(1, 3, '冬キャベツ', #2023/10/1#, #2024/4/30#, #2023/10/1#)");
    gDB->EXEC("INSERT INTO D_DIARY (FMR_ID, WORK_DATE, WTH_ID, LO_TMP, HI_TMP, ONE_MSG) VALUES "
              "(1, #2024/5/3#, 1, 12, 24, '定植')");
    gDB->EXEC("INSERT INTO D_DIARY (FMR_ID, WORK_DATE, WTH_ID, LO_TMP, HI_TMP) VALUES (1, #2024/5/20#, 11, NULL, 18)");
    gDB->EXEC("INSERT INTO D_DIARY (FMR_ID, WORK_DATE, WTH_ID) VALUES (2, #2024/5/4#, 3)");
    // money: cash on the 3rd, deposit on the 4th; a sale on credit on the 5th is no money
    gDB->EXEC("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, LEDGE_DATE, D_ACC_ID, C_ACC_ID, AMT) VALUES (1, 1, #2024/5/3#, 4130, 1000, 800)");
    gDB->EXEC("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, LEDGE_DATE, D_ACC_ID, C_ACC_ID, AMT) VALUES (1, 2, #2024/5/4#, 1010, 1040, 5000)");
    gDB->EXEC("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, LEDGE_DATE, D_ACC_ID, C_ACC_ID, AMT) VALUES (1, 3, #2024/5/5#, 1040, 4000, 3000)");
    gDB->EXEC("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, LEDGE_DATE, D_ACC_ID, C_ACC_ID, AMT) VALUES (2, 1, #2024/5/6#, 4130, 1000, 800)");
    // pesticide on the 6th (planting 1) and the 7th (planting 2); a line without pesticide on the 8th
    gDB->EXEC("INSERT INTO D_DIARY_DTL (FMR_ID, WORK_DATE, DTL_NO, PLANT_ID, WORK_KBN, CHEMI_ID) VALUES (1, #2024/5/6#, 1, 1, 5, 4)");
    gDB->EXEC("INSERT INTO D_DIARY_DTL (FMR_ID, WORK_DATE, DTL_NO, PLANT_ID, WORK_KBN, CHEMI_ID) VALUES (1, #2024/5/7#, 1, 2, 5, 4)");
    gDB->EXEC("INSERT INTO D_DIARY_DTL (FMR_ID, WORK_DATE, DTL_NO, PLANT_ID, WORK_KBN, CHEMI_ID) VALUES (1, #2024/5/8#, 1, 1, 3, 0)");
    // shipments on the 9th (planting 1) and the 10th (planting 2)
    gDB->EXEC("INSERT INTO D_SHIP (FMR_ID, SHIP_ID, SHIP_DATE, PLANT_ID) VALUES (1, 1, #2024/5/9#, 1)");
    gDB->EXEC("INSERT INTO D_SHIP (FMR_ID, SHIP_ID, SHIP_DATE, PLANT_ID) VALUES (1, 2, #2024/5/10#, 2)");
}

CalMonth::Options allOn()
{
    CalMonth::Options o;
    for (bool &b : o.on)
        b = true;
    return o;
}

const CalMonth::Cell &cellOf(const QVector<CalMonth::Cell> &cells, int day)
{
    for (const auto &c : cells)
        if (c.day == day)
            return c;
    static CalMonth::Cell none;
    return none;
}

QString marks(const CalMonth::Cell &c)
{
    return QStringLiteral("%1%2%3").arg(c.money ? "M" : "-", c.chemi ? "P" : "-", c.ship ? "S" : "-");
}

} // namespace

class TestCalendar : public QObject {
    Q_OBJECT
private slots:
    void init() { gFMR_ID = Value(1); gUSE_TYPE = 1; }

    void rowsOfAMonth_data()
    {
        QTest::addColumn<QDate>("first");
        QTest::addColumn<int>("firstCol");
        QTest::addColumn<int>("rows");
        QTest::newRow("February starting on Sunday") << QDate(2026, 2, 1) << 0 << 4;
        QTest::newRow("leap February starting on Sunday") << QDate(2032, 2, 1) << 0 << 5;
        QTest::newRow("31 days starting on Saturday") << QDate(2025, 3, 1) << 6 << 6;
        QTest::newRow("30 days starting on Saturday") << QDate(2024, 6, 1) << 6 << 6;
        QTest::newRow("30 days starting on Friday") << QDate(2024, 11, 1) << 5 << 5;
        QTest::newRow("May 2024") << QDate(2024, 5, 1) << 3 << 5;
    }
    void rowsOfAMonth()
    {
        QFETCH(QDate, first);
        QFETCH(int, firstCol);
        QFETCH(int, rows);
        const CalMonth::Geometry g = CalMonth::geometry(first, 11920, 6680);
        QCOMPARE(g.firstCol, firstCol);
        QCOMPARE(g.rows, rows);
        QCOMPARE(g.headerH, 668);
        QCOMPARE(g.cellH, (6680 - 668) / rows);
        QCOMPARE(g.cellW, 11920 / 7);
    }

    void clicksFindTheirDay()
    {
        const CalMonth::Geometry g = CalMonth::geometry(QDate(2024, 5, 1), 7000, 6000); // Wednesday first, 5 rows
        const int h = g.headerH, ch = g.cellH, cw = g.cellW;
        QCOMPARE(CalMonth::dayAt(g, 3 * cw + 5, h + 5), 1);
        QCOMPARE(CalMonth::dayAt(g, 6 * cw + 5, h + 5), 4);
        QCOMPARE(CalMonth::dayAt(g, 0, h + ch), 5);
        QCOMPARE(CalMonth::dayAt(g, 5 * cw, h + 4 * ch + ch - 1), 31);
        QCOMPARE(CalMonth::dayAt(g, 10, h - 1), 0);            // the header
        QCOMPARE(CalMonth::dayAt(g, 2 * cw + 5, h + 5), 0);    // blank cell before the first
        QCOMPARE(CalMonth::dayAt(g, 6 * cw + 5, h + 4 * ch + 5), 0); // blank cell after the last
        QCOMPARE(CalMonth::dayAt(g, 3 * cw, h + 5 * ch + 1), 0); // below the last row
    }

    void marksOfTheDays()
    {
        TestRoot root;
        seedMay();
        const QDate may(2024, 5, 1);
        const CalMonth::Geometry g = CalMonth::geometry(may, 11920, 6680);
        const auto cells = CalMonth::collect(g, may, QDate(2024, 5, 20), Value(1), allOn(), Value(0));
        QCOMPARE(cells.size(), 31);
        QCOMPARE(cellOf(cells, 1).x, 3 * g.cellW);
        QCOMPARE(cellOf(cells, 5).y, g.headerH + g.cellH);
        QCOMPARE(marks(cellOf(cells, 3)), QStringLiteral("M--"));
        QCOMPARE(marks(cellOf(cells, 4)), QStringLiteral("M--"));
        QCOMPARE(marks(cellOf(cells, 5)), QStringLiteral("---"));
        QCOMPARE(marks(cellOf(cells, 6)), QStringLiteral("-P-"));
        QCOMPARE(marks(cellOf(cells, 7)), QStringLiteral("-P-"));
        QCOMPARE(marks(cellOf(cells, 8)), QStringLiteral("---"));
        QCOMPARE(marks(cellOf(cells, 9)), QStringLiteral("--S"));
        QCOMPARE(marks(cellOf(cells, 10)), QStringLiteral("--S"));
        QVERIFY(cellOf(cells, 3).hasRow);
        QCOMPARE(cellOf(cells, 3).oneMsg, Value("定植"));
        QVERIFY(!cellOf(cells, 4).hasRow); // farmer 2's day
        QCOMPARE(cellOf(cells, 20).wthId, Value(11));
        QVERIFY(cellOf(cells, 20).loTmp.isNull());
        QVERIFY(cellOf(cells, 20).today);
        QVERIFY(!cellOf(cells, 19).today);

        // the planting filter narrows pesticide and shipments only
        const auto filtered = CalMonth::collect(g, may, QDate(2024, 5, 20), Value(1), allOn(), Value(1));
        QCOMPARE(marks(cellOf(filtered, 3)), QStringLiteral("M--"));
        QCOMPARE(marks(cellOf(filtered, 6)), QStringLiteral("-P-"));
        QCOMPARE(marks(cellOf(filtered, 7)), QStringLiteral("---"));
        QCOMPARE(marks(cellOf(filtered, 9)), QStringLiteral("--S"));
        QCOMPARE(marks(cellOf(filtered, 10)), QStringLiteral("---"));
        QVERIFY(cellOf(filtered, 3).hasRow);

        // options off: no counts, no marks; another month has no today
        CalMonth::Options none;
        const auto quiet = CalMonth::collect(g, may, QDate(2024, 6, 3), Value(1), none, Value(0));
        for (const auto &c : quiet) {
            QCOMPARE(marks(c), QStringLiteral("---"));
            QVERIFY(!c.today);
        }
        QVERIFY(cellOf(quiet, 3).hasRow);
    }

    void theDrawingHasItsParts()
    {
        TestRoot root;
        seedMay();
        const QDate may(2024, 5, 1);
        // 700 x 420 px of canvas: cells of 100 px by 75 px, a header of 42 px
        const CalMonth::Geometry g = CalMonth::geometry(may, 700 * 15, 420 * 15);
        const auto cells = CalMonth::collect(g, may, QDate(2024, 5, 20), Value(1), allOn(), Value(0));
        QImage img(700, 420, QImage::Format_RGB32);
        QPainter p(&img);
        p.setFont(QFont(QStringLiteral("Noto Sans CJK JP"), 9));
        CalMonth::paint(p, g, cells, allOn());
        p.end();
        auto at = [&](int day, double fx, double fy) {
            const CalMonth::Cell &c = cellOf(cells, day);
            return img.pixelColor(int((c.x + fx * g.cellW) / 15), int((c.y + fy * g.cellH) / 15));
        };
        // a mark's colour, give or take the smoothing of its edges
        auto near = [](const QColor &a, const QColor &b) {
            return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue()) < 60;
        };
        auto count = [&](int day, const QColor &colour, double fy0, double fy1) {
            const CalMonth::Cell &c = cellOf(cells, day);
            int n = 0;
            for (int y = int((c.y + fy0 * g.cellH) / 15); y < int((c.y + fy1 * g.cellH) / 15); ++y)
                for (int x = c.x / 15 + 1; x < (c.x + g.cellW) / 15 - 1; ++x)
                    n += img.pixelColor(x, y) == colour;
            return n;
        };
        // today (the 20th) is pale yellow inside its border; its bar runs
        // from 18 degrees down to 0 (no low temperature): 0.44 to 0.8 of the cell
        QCOMPARE(at(20, 0.95, 0.3), QColor(255, 255, 127));
        QVERIFY(count(20, QColor(0, 255, 0), 0.46, 0.78) > 0);
        QCOMPARE(count(20, QColor(0, 255, 0), 0.0, 0.42), 0);
        // the 3rd: a bar from 24 to 12 degrees (0.32 to 0.56), a weather
        // picture at the top left, the money mark below it
        QVERIFY(count(3, QColor(0, 255, 0), 0.34, 0.54) > 0);
        QCOMPARE(count(3, QColor(0, 255, 0), 0.6, 1.0), 0);
        QVERIFY(at(3, 0.06, 0.12) != at(4, 0.06, 0.12)); // the 4th has no diary row, so no picture
        QVERIFY(near(at(3, 0.04, 0.30), QColor(0xD4, 0x9A, 0x06)));
        // the pesticide mark at the top right of the 6th, the shipment mark below it on the 9th
        QVERIFY(near(at(6, 0.96, 0.04), QColor(0x2E, 0x8B, 0x3A)));
        QVERIFY(near(at(9, 0.96, 0.29), QColor(0x2A, 0x64, 0xC8)));
        QVERIFY(!near(at(8, 0.96, 0.04), QColor(0x2E, 0x8B, 0x3A)));
        // the day numbers of Sundays red, of Saturdays blue
        QVERIFY(count(5, QColor(255, 0, 0), 0.0, 0.5) > 0);
        QVERIFY(count(4, QColor(0, 0, 255), 0.0, 0.5) > 0);
        QCOMPARE(count(6, QColor(255, 0, 0), 0.0, 0.5), 0);
    }

    void theScreenStepsDrawsAndKeepsItsOptions()
    {
        TestRoot root;
        seedMay();
        MsgRecorder rec;
        frmDairyCal cal;
        Gui::show(&cal);
        const QDate today = QDate::currentDate();
        QCOMPARE(gBASE_DATE.date(), QDate(today.year(), today.month(), 1));
        QCOMPARE(cal.ctl<QLabel>("lblYM")->text(), today.toString(QStringLiteral("yyyy年M月")));
        QVERIFY(!cal.canvas()->picture.isNull());

        // back to May 2024 by years and months
        const int months = (today.year() - 2024) * 12 + today.month() - 5;
        for (int i = 0; i < months / 12; ++i)
            Gui::click(cal.ctl<QPushButton>("cmdPREV(1)"));
        for (int i = 0; i < months % 12; ++i)
            Gui::click(cal.ctl<QPushButton>("cmdPREV(0)"));
        QCOMPARE(cal.ctl<QLabel>("lblYM")->text(), QStringLiteral("2024年5月"));
        // the plantings touching the month, by planting date; cabbage ended in April
        auto *filter = cal.ctl<QComboBox>("cmbCOND");
        QCOMPARE(filter->count(), 3);
        QCOMPARE(filter->itemText(1), QStringLiteral("春トマト"));
        QCOMPARE(filter->itemText(2), QStringLiteral("露地なす"));
        QCOMPARE(filter->currentIndex(), -1);
        QCOMPARE(cal.cells().size(), 31);

        // a check box is kept at once
        auto *money = cal.ctl<QCheckBox>("chkCOND(2)");
        QVERIFY(money->isChecked());
        Gui::click(money);
        QCOMPARE(gINI->GetCtrl("CAL_OPT2").toText(), QStringLiteral("0"));
        QVERIFY(!marks(cellOf(cal.cells(), 3)).contains(QLatin1Char('M')));
        Gui::choose(filter, 2);
        QCOMPARE(marks(cellOf(cal.cells(), 6)), QStringLiteral("---"));
        QCOMPARE(marks(cellOf(cal.cells(), 7)), QStringLiteral("-P-"));

        // a day click opens that day; blank cells and the header do nothing
        const auto &g = cal.geometry();
        auto clickAt = [&](int xTwips, int yTwips) {
            QTest::mouseClick(cal.canvas(), Qt::LeftButton, Qt::NoModifier,
                              QPoint(xTwips / 15 + 1, yTwips / 15 + 1));
            Gui::settle();
        };
        gWORK_DATE = Value();
        clickAt(0, g.headerH + 10);            // blank cell before the 1st
        clickAt(0, 0);                         // header
        QVERIFY(gWORK_DATE.isEmpty());
        Gui::Modals modals;
        modals.on("frmDairyInput", [](Form &day) {
            QCOMPARE(gWORK_DATE, Value(DateUtil::make(2024, 5, 17)));
            QVERIFY(day.windowTitle().startsWith(QStringLiteral("日誌入力（2024/05/17）")));
            day.close();
        });
        clickAt(5 * g.cellW + 30, g.headerH + 2 * g.cellH + 30); // Friday of the third row: the 17th
        QCOMPARE(modals.opened, QStringList{"frmDairyInput"});

        // the year-month label brings the present month back
        QTest::mouseClick(cal.ctl<QLabel>("lblYM"), Qt::LeftButton);
        Gui::settle();
        QCOMPARE(gBASE_DATE.date(), QDate(today.year(), today.month(), 1));

        // a new opening reads the options back
        frmDairyCal again;
        Gui::show(&again);
        QVERIFY(!again.ctl<QCheckBox>("chkCOND(2)")->isChecked());
        QVERIFY(again.ctl<QCheckBox>("chkCOND(0)")->isChecked());
    }

    void waysOfUse()
    {
        TestRoot root;
        gUSE_TYPE = 2;
        frmDairyCal cal;
        Gui::show(&cal);
        QCOMPARE(cal.ctl<QPushButton>("cmdMENU(0)")->text(), QStringLiteral("閉じる"));
        QVERIFY(!cal.ctl<QPushButton>("cmdMENU(5)")->isVisible());
        gUSE_TYPE = 1;
        frmDairyCal single;
        Gui::show(&single);
        QCOMPARE(single.ctl<QPushButton>("cmdMENU(0)")->text(), QStringLiteral("終了"));
        QVERIFY(single.ctl<QPushButton>("cmdMENU(5)")->isVisible());
    }
};

TILLORA_GUI_TEST_MAIN(TestCalendar)
#include "tst_calendar.moc"
