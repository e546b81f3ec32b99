// The month grid without its screen: its rows and cells, the clicks, the
// marks a day shows (also under the planting filter), and the drawing.

#include "base/Globals.h"
#include "rules/diary/CalMonth.h"
#include "rules/diary/DiaryFixture.h"
#include "support/RulesTest.h"

#include <QImage>
#include <cmath>
#include <QPainter>
#include <QtTest/QTest>

using namespace DiaryFixture;

namespace {

CalMonth::Options allOn()
{
    CalMonth::Options o;
    for (bool &b : o.on)
        b = true;
    return o;
}

} // namespace

class TestCalMonth : public QObject {
    Q_OBJECT
private slots:
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

    // The marks are read for the month at once: the month's edges, days
    // without a page and a stamp with a time of day must come out as each
    // day's own condition finds them.
    void marksAtTheMonthsEdges_data()
    {
        QTest::addColumn<int>("day");
        QTest::addColumn<QString>("all");
        QTest::addColumn<QString>("planting1");
        QTest::addColumn<bool>("page");
        QTest::newRow("first day: slip and shipment of planting 2") << 1 << "M-S" << "M--" << true;
        QTest::newRow("a slip at 10:30 marks nothing") << 15 << "---" << "---" << false;
        QTest::newRow("last day without a page") << 30 << "MPS" << "MPS" << false;
        QTest::newRow("a plain day") << 2 << "---" << "---" << false;
    }
    void marksAtTheMonthsEdges()
    {
        QFETCH(int, day);
        QFETCH(QString, all);
        QFETCH(QString, planting1);
        QFETCH(bool, page);
        TestRoot root;
        Build::planting(1, "春トマト").add();
        Build::planting(2, "露地なす").add();
        Build::diaryDay(QDate(2024, 6, 1)).set("WTH_ID", 1).add();
        Build::slip(1, QDate(2024, 5, 31), 4130, 1000, 800).add(); // the months around
        Build::slip(2, QDate(2024, 7, 1), 4130, 1000, 800).add();
        Build::slip(3, QDate(2024, 6, 1), 4130, 1000, 800).add();
        Build::slip(4, QDate(2024, 6, 30), 1010, 4000, 500).add();
        Build::slip(5, QDate(2024, 6, 15), 4130, 1000, 800).set("LEDGE_DATE", QDateTime(QDate(2024, 6, 15), QTime(10, 30))).add();
        Build::diaryLine(QDate(2024, 5, 31), 1, WorkKbn::Spraying).set("PLANT_ID", 1).set("CHEMI_ID", 4).add();
        Build::diaryLine(QDate(2024, 6, 30), 1, WorkKbn::Spraying).set("PLANT_ID", 1).set("CHEMI_ID", 4).add();
        Build::shipment(1, QDate(2024, 6, 1)).set("PLANT_ID", 2).add();
        Build::shipment(2, QDate(2024, 6, 30)).set("PLANT_ID", 1).add();
        Build::shipment(3, QDate(2024, 7, 1)).set("PLANT_ID", 1).add();
        const QDate june(2024, 6, 1);
        const CalMonth::Geometry g = CalMonth::geometry(june, 11920, 6680);
        const auto cells = CalMonth::collect(g, june, QDate(2024, 6, 3), Value(1), allOn(), Value(0));
        QCOMPARE(cells.size(), 30);
        QCOMPARE(marks(cellOf(cells, day)), all);
        QCOMPARE(cellOf(cells, day).hasRow, page);
        const auto one = CalMonth::collect(g, june, QDate(2024, 6, 3), Value(1), allOn(), Value(1));
        QCOMPARE(marks(cellOf(one, day)), planting1);
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

    // A long line of the day stays inside its own cell (at the design size
    // and maximised, the last row too), and the weekday letters keep clear
    // of the header's line: checked pixel by pixel.
    void textStaysInItsCell_data()
    {
        QTest::addColumn<QSize>("canvas");
        QTest::newRow("design") << QSize(800, 500);
        QTest::newRow("maximised") << QSize(1900, 950);
        QTest::newRow("small") << QSize(420, 260);
    }
    void textStaysInItsCell()
    {
        QFETCH(QSize, canvas);
        TestRoot root;
        const QDate june(2024, 6, 1); // six rows: the 30th alone on the last
        const CalMonth::Geometry g = CalMonth::geometry(june, canvas.width() * 15, canvas.height() * 15);
        CalMonth::Options none;
        QVector<CalMonth::Cell> plain = CalMonth::collect(g, june, QDate(2000, 1, 1), Value(1), none, Value(0));
        QVector<CalMonth::Cell> written = plain;
        for (CalMonth::Cell &c : written) {
            c.hasRow = true;
            c.oneMsg = Value(QStringLiteral("朝から雨のため、ハウス内でトマトの誘引と芽かきを行い、午後は出荷の準備😀をした"));
        }
        auto draw = [&](const QVector<CalMonth::Cell> &cells) {
            QImage img(canvas, QImage::Format_RGB32);
            QPainter p(&img);
            p.setFont(QFont(QStringLiteral("Noto Sans CJK JP"), 9));
            CalMonth::paint(p, g, cells, none);
            return img;
        };
        const QImage with = draw(written), without = draw(plain);
        int inside = 0;
        for (int y = 0; y < canvas.height(); ++y)
            for (int x = 0; x < canvas.width(); ++x) {
                if (with.pixel(x, y) == without.pixel(x, y))
                    continue;
                const int day = CalMonth::dayAt(g, x * 15, y * 15);
                QVERIFY2(day > 0, qPrintable(QStringLiteral("text at %1,%2 outside the cells").arg(x).arg(y)));
                const CalMonth::Cell &c = cellOf(written, day);
                // in the lower half of its own cell
                QVERIFY2(y * 15 >= c.y + g.cellH / 2 - 15 && y * 15 < c.y + g.cellH,
                         qPrintable(QStringLiteral("day %1: text at %2,%3").arg(day).arg(x).arg(y)));
                ++inside;
            }
        QVERIFY(inside > 0);
        // the header's letters: nothing but paper on the row above its line
        const int lineY = g.headerH / 15;
        for (int x = 0; x < canvas.width(); ++x) {
            const double fromLine = std::fmod(x * 15.0, g.cellW) / 15.0;
            const bool columnLine = fromLine < 1.5 || fromLine > g.cellW / 15.0 - 1.5;
            if (!columnLine)
                QVERIFY2(without.pixel(x, lineY - 1) == without.pixel(2, lineY - 1), qPrintable(QString::number(x)));
        }
    }
};

TILLORA_RULES_TEST_MAIN(TestCalMonth)
#include "tst_calmonth.moc"
