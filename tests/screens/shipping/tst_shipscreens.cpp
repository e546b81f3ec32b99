// The shipment list and entry screens as a user drives them: the list's
// filters at start, a shipment entered at dispatch and completed with the
// shop's report, looked at from the diary's shipment line, and deleted.

#include "base/Globals.h"
#include "base/Helpers.h"
#include "base/Msg.h"
#include "rules/shipping/ShipSeed.h"
#include "rules/shipping/ShipData.h"
#include "screens/diary/frmDairyInput.h"
#include "screens/shipping/frmShipInput.h"
#include "store/Database.h"
#include "support/GuiDriver.h"
#include "support/MsgRecorder.h"
#include "support/SaveProbe.h"
#include "support/TestRoot.h"
#include "ui/Form.h"
#include "ui/Screens.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTreeWidget>
#include <QtTest/QTest>

class TestShipScreens : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        gFMR_ID = Value(1);
        gSHOP_ID = Value(1);
    }

    // A date filter that is no date is refused with the date message before
    // any statement runs; the list stays as it was.
    void dateFiltersThatAreNoDatesRunNothing()
    {
        TestRoot root;
        seedPlantings();
        gBASE_DATE = DateUtil::make(2024, 5, 1);
        MsgRecorder rec;
        Form *list = createScreen(QStringLiteral("frmShipList"));
        Gui::show(list);
        auto *plants = list->ctl<QListWidget>("List1");
        const int shown = plants->count();
        TraceRecorder trace;
        for (const char *field : {"txtCOND(1)", "txtCOND(2)"}) {
            for (const QString &junk : {QStringLiteral("abc"), QStringLiteral("2024/13/01"), QStringLiteral("#2024/1/1#"),
                                        QStringLiteral("'; DROP TABLE D_SHIP; --")}) {
                Gui::type(list->ctl<QLineEdit>(QString::fromLatin1(field)), junk);
                rec.clear();
                trace.lines.clear();
                Gui::click(list->ctl<QPushButton>("cmdFIND"));
                plants->setCurrentRow(1);
                emit plants->itemClicked(plants->item(1));
                Gui::settle();
                QCOMPARE(rec.count(), 2);
                QCOMPARE(rec.messages[0].prompt, QStringLiteral("日付を指定してください。"));
                QCOMPARE(rec.messages[0].buttons, 48);
                QVERIFY2(trace.with(QStringLiteral("SELECT")).isEmpty(), qPrintable(trace.lines.join(QLatin1Char('\n'))));
                QCOMPARE(plants->count(), shown);
            }
            Gui::type(list->ctl<QLineEdit>(QString::fromLatin1(field)), QStringLiteral("2024/05/20"));
        }
        list->close();
    }

    void theListAndTheEntryOnScreen()
    {
        TestRoot root;
        seedPlantings();
        gBASE_DATE = DateUtil::make(2024, 5, 1);
        MsgRecorder rec;
        Gui::Modals modals;
        Form *list = nullptr;
        {
            list = createScreen(QStringLiteral("frmShipList"));
            Gui::show(list);
        }
        QCOMPARE(list->ctl<QLineEdit>("txtCOND(1)")->text(), QStringLiteral("2024/05/01"));
        QCOMPARE(list->ctl<QLineEdit>("txtCOND(2)")->text(), QStringLiteral("2024/05/31"));
        auto *plants = list->ctl<QListWidget>("List1");
        QCOMPARE(plants->count(), 3); // the empty entry and two plantings
        QCOMPARE(list->ctl<QLabel>("lblSUM(0)")->text(), QStringLiteral("0"));
        // each total stands under its column, 出荷数 to 手数料
        auto *view = list->ctl<QTreeWidget>("ListView1");
        for (int i = 0; i < 5; ++i) {
            auto *sum = list->ctl<QLabel>(QStringLiteral("lblSUM(%1)").arg(i));
            const int centre = view->viewport()->mapFromGlobal(sum->mapToGlobal(sum->rect().center())).x();
            QCOMPARE(view->columnAt(centre), i + 3);
        }

        // a new shipment entered at dispatch
        modals.on("frmShipInput", [](Form &f) {
            QCOMPARE(f.ctl<QLineEdit>("txtDATA(0)")->text(), DateUtil::today().toString(QStringLiteral("yyyy/MM/dd")));
            Gui::type(f.ctl<QLineEdit>("txtDATA(0)"), QStringLiteral("20240510")); // the slashes come by themselves
            Gui::leave(f.ctl<QLineEdit>("txtDATA(0)"));
            auto *plantList = f.ctl<QListWidget>("List1");
            QCOMPARE(plantList->count(), 2);
            plantList->setCurrentRow(0);
            emit plantList->itemClicked(plantList->item(0));
            Gui::focus(plantList);
            Gui::leave(plantList);
            QCOMPARE(f.ctl<QLineEdit>("txtDATA(3)")->text(), QStringLiteral("トマト")); // the planting's product
            QCOMPARE(f.ctl<QLabel>("lblDATA(1)")->text(), QStringLiteral("桃太郎"));
            Gui::type(f.ctl<QLineEdit>("txtDATA(4)"), QStringLiteral("180"));
            Gui::type(f.ctl<QLineEdit>("txtDATA(5)"), QStringLiteral("12"));
            Gui::leave(f.ctl<QLineEdit>("txtDATA(5)"));
            QCOMPARE(f.ctl<QLineEdit>("txtDATA(9)")->text(), QStringLiteral("15"));
            QCOMPARE(f.ctl<QLineEdit>("txtDATA(10)")->text(), QStringLiteral("0"));
            Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        });
        Gui::click(list->ctl<QPushButton>("cmdMENU(1)"));
        QVERIFY(rec.messages.isEmpty());
        auto *rows = list->ctl<QTreeWidget>("ListView1");
        QCOMPARE(rows->topLevelItemCount(), 1);
        QCOMPARE(rows->currentItem()->text(0), QStringLiteral("1")); // the saved row is selected
        QCOMPARE(rows->currentItem()->text(2), QStringLiteral("180"));
        QCOMPARE(list->ctl<QLabel>("lblSUM(0)")->text(), QStringLiteral("12"));

        // the shop's report: the cursor starts in the returns
        modals.on("frmShipInput", [](Form &f) {
            QCOMPARE(QApplication::focusWidget(), f.ctl<QLineEdit>("txtDATA(6)"));
            Gui::type(f.ctl<QLineEdit>("txtDATA(6)"), QStringLiteral("2"));
            Gui::leave(f.ctl<QLineEdit>("txtDATA(6)"));
            QCOMPARE(f.ctl<QLabel>("lblDATA(7)")->text(), QStringLiteral("1,800"));
            QCOMPARE(f.ctl<QLineEdit>("txtDATA(10)")->text(), QStringLiteral("270"));
            Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        });
        Gui::click(list->ctl<QPushButton>("cmdMENU(2)"));
        QCOMPARE(rows->topLevelItem(0)->text(6), QStringLiteral("1,800"));
        QCOMPARE(list->ctl<QLabel>("lblSUM(3)")->text(), QStringLiteral("1,800"));
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 2);

        // a copy opens as blank as a new shipment
        rows->setCurrentItem(rows->topLevelItem(0));
        modals.on("frmShipInput", [](Form &f) {
            QCOMPARE(f.ctl<QLineEdit>("txtDATA(0)")->text(), DateUtil::today().toString(QStringLiteral("yyyy/MM/dd")));
            QCOMPARE(f.ctl<QLineEdit>("txtDATA(5)")->text(), QString());
            QCOMPARE(f.ctl<QLabel>("lblDATA(0)")->text(), QString());
            Gui::click(f.ctl<QPushButton>("cmdMENU(0)"));
        });
        Gui::click(list->ctl<QPushButton>("cmdMENU(5)"));
        QCOMPARE(gDB->DCount("*", "D_SHIP").toLong(), 1);

        // the diary's shipment line opens the shipment to look at
        gWORK_DATE = Value(DateUtil::make(2024, 5, 10));
        modals.on("frmShipInput", [](Form &f) {
            QCOMPARE(f.ctl<QPushButton>("cmdMENU(0)")->text(), QStringLiteral("閉じる"));
            QVERIFY(!f.ctl<QPushButton>("cmdMENU(1)")->isVisible());
            QCOMPARE(f.ctl<QLineEdit>("txtDATA(5)")->text(), QStringLiteral("12"));
            QVERIFY(f.ctl<QLineEdit>("txtDATA(5)")->isReadOnly());
            Gui::click(f.ctl<QPushButton>("cmdMENU(0)"));
        });
        frmDairyInput day;
        Gui::show(&day);
        auto *dayPlants = day.ctl<QListWidget>("List1(0)");
        dayPlants->setCurrentRow(0);
        emit dayPlants->itemClicked(dayPlants->item(0));
        auto *works = day.ctl<QListWidget>("List1(1)");
        QCOMPARE(works->count(), 1);
        works->setCurrentRow(0);
        emit works->itemClicked(works->item(0));
        Gui::settle();
        QCOMPARE(day.ctl<QPushButton>("cmdSUB(0)")->text(), QStringLiteral("参照"));
        const qsizetype openedBefore = modals.opened.size();
        Gui::click(day.ctl<QPushButton>("cmdSUB(0)"));
        QCOMPARE(modals.opened.size(), openedBefore + 1);
        QCOMPARE(modals.opened.last(), QStringLiteral("frmShipInput"));
        day.close();

        // deleted from the list, with no question
        rows->setCurrentItem(rows->topLevelItem(0));
        modals.on("frmShipInput", [](Form &f) {
            QCOMPARE(f.ctl<QPushButton>("cmdMENU(1)")->text(), QStringLiteral("削除"));
            Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        });
        Gui::click(list->ctl<QPushButton>("cmdMENU(4)"));
        QCOMPARE(rows->topLevelItemCount(), 0);
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 0);
        QCOMPARE(list->ctl<QLabel>("lblSUM(3)")->text(), QStringLiteral("0"));
        list->close();
        delete list;
    }

    void aReturnBeyondTheBooksIsRefusedOnLeavingAndOnSaving()
    {
        TestRoot root;
        seedPlantings();
        Build::shipment(1, QDate(2024, 5, 10)).set("PLANT_ID", 1).set("SHOP_PRC", 180).set("SHIP_QTY", 12).add();
        const QStringList dispatched = SaveProbe::records();
        MsgRecorder rec;
        QCOMPARE(Ship::loadShipment(Value(1)), 1);
        frmShipInput f(Mode::Change, 0);
        Gui::show(&f);
        Gui::type(f.ctl<QLineEdit>("txtDATA(6)"), QStringLiteral("1e300"));
        Gui::leave(f.ctl<QLineEdit>("txtDATA(6)"));
        QCOMPARE(rec.lastPrompt(), QStringLiteral("オーバーフローしました。"));
        rec.clear();
        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QVERIFY(rec.count() > 0);
        for (const MsgRecorder::Entry &m : rec.messages)
            QCOMPARE(m.prompt, QStringLiteral("オーバーフローしました。"));
        QVERIFY(f.isVisible());
        QCOMPARE(SaveProbe::records(), dispatched);
        // mended, it saves
        Gui::type(f.ctl<QLineEdit>("txtDATA(6)"), QStringLiteral("2"));
        Gui::leave(f.ctl<QLineEdit>("txtDATA(6)"));
        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QVERIFY(!f.isVisible());
        QCOMPARE(gDB->DLookup("AMT", "D_LEDGE", "FMR_ID=1 AND LEDGE_ID=1"), Value(Currency::fromInt(1800)));
    }

    void aShipmentSavedElsewhereIsReadAgainOnRequest()
    {
        TestRoot root;
        seedPlantings();
        setCompNameForTests(QStringLiteral("PC-A"));
        Build::shipment(1, QDate(2024, 5, 10)).set("PLANT_ID", 1).set("SHOP_PRC", 180).set("SHIP_QTY", 12).add();
        OtherComputer b(QStringLiteral("PC-B"));
        MsgRecorder rec;
        QCOMPARE(Ship::loadShipment(Value(1)), 1);
        frmShipInput f(Mode::Change, 0);
        Gui::show(&f);
        b.act([] {
            Ship::loadShipment(Value(1));
            ShipRow theirs = gSHIP_ROWS[0];
            Ship::leaveBox(theirs, Ship::RtnQty, QStringLiteral("2"));
            Ship::post(theirs, Mode::Change);
        });
        Gui::type(f.ctl<QLineEdit>("txtDATA(6)"), QStringLiteral("0"));
        Gui::leave(f.ctl<QLineEdit>("txtDATA(6)"));
        // No: the screen keeps what was typed, and nothing is written
        rec.answer(Msg::ResNo);
        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QCOMPARE(rec.lastPrompt(), QStringLiteral("この記録は他のコンピュータ（PC-B）で変更されています。\n"
                                                  "最新の内容を読み込みますか？"));
        QCOMPARE(rec.messages.last().buttons, Msg::YesNo + Msg::Question);
        QVERIFY(f.isVisible());
        QCOMPARE(f.ctl<QLineEdit>("txtDATA(6)")->text(), QStringLiteral("0"));
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 2);
        // Yes: the shipment as B saved it, which then saves as corrected
        rec.answer(Msg::ResYes);
        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QVERIFY(f.isVisible());
        QCOMPARE(f.ctl<QLineEdit>("txtDATA(6)")->text(), QStringLiteral("2"));
        QCOMPARE(f.ctl<QLabel>("lblDATA(7)")->text(), QStringLiteral("1,800"));
        Gui::type(f.ctl<QLineEdit>("txtDATA(6)"), QStringLiteral("0"));
        Gui::leave(f.ctl<QLineEdit>("txtDATA(6)"));
        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QVERIFY(!f.isVisible());
        QCOMPARE(rec.count(), 2);
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 2);
        QCOMPARE(gDB->DLookup("AMT", "D_LEDGE", "FMR_ID=1 AND LEDGE_ID=1"), Value(Currency::fromInt(2160)));
        QCOMPARE(gDB->DLookup("LAST_TM", "D_SHIP", "SHIP_ID=1"), Value("PC-A"));
        setCompNameForTests(QString());
    }
};

TILLORA_GUI_TEST_MAIN(TestShipScreens)
#include "tst_shipscreens.moc"
