// The month calendar on the screen: stepping by months and years, the
// planting filter, the options kept at once, the day click, and the two ways
// of use.

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Msg.h"
#include "rules/diary/CalMonth.h"
#include "rules/diary/DiaryFixture.h"
#include "screens/diary/frmDairyCal.h"
#include "store/Database.h"
#include "support/GuiDriver.h"
#include "support/MsgRecorder.h"
#include "support/TestRoot.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QtTest/QTest>

using namespace DiaryFixture;

class TestCalendar : public QObject {
    Q_OBJECT
private slots:
    void init() { gFMR_ID = Value(1); gUSE_TYPE = 1; }

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

        // a step whose reading fails shows the error and leaves May as it was
        setLogHook([](const QString &text) {
            if (text.startsWith(QLatin1String("SELECT")))
                throw AppError(2006, QStringLiteral("サーバーに接続できません。"));
        });
        Gui::click(cal.ctl<QPushButton>("cmdPOST(0)"));
        setLogHook(nullptr);
        QCOMPARE(rec.count(), 1);
        QCOMPARE(rec.lastPrompt(), QStringLiteral("サーバーに接続できません。")); // the description alone
        QCOMPARE(gBASE_DATE.date(), QDate(2024, 5, 1));
        QCOMPARE(cal.ctl<QLabel>("lblYM")->text(), QStringLiteral("2024年5月"));
        QCOMPARE(filter->count(), 3);

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

    // The buttons along the bottom open the lists of the farm's records.
    void buttonsOpenTheLists_data()
    {
        QTest::addColumn<int>("button");
        QTest::addColumn<QString>("screen");
        QTest::newRow("作付") << 1 << QStringLiteral("frmPlantList");
        QTest::newRow("農薬") << 2 << QStringLiteral("frmChemiList");
        QTest::newRow("出荷") << 3 << QStringLiteral("frmShipList");
        QTest::newRow("勘定") << 4 << QStringLiteral("frmLedgeList");
        QTest::newRow("ﾒﾆｭｰ") << 5 << QStringLiteral("fmnMain");
    }
    void buttonsOpenTheLists()
    {
        QFETCH(int, button);
        QFETCH(QString, screen);
        TestRoot root;
        gUSE_TYPE = 1;
        Gui::Modals modals;
        frmDairyCal cal;
        Gui::show(&cal);
        Gui::click(cal.ctl<QPushButton>(QStringLiteral("cmdMENU(%1)").arg(button)));
        QCOMPARE(modals.opened, QStringList{screen});
        QVERIFY(!cal.ctl<QPushButton>("cmdMENU(6)")->isEnabled());
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
