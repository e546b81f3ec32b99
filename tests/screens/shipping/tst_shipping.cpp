// Shipments: the amounts computed as fields are left, the checks before a
// save, what a save posts into the books and the diary (and what an edit or
// a delete undoes), and the list and entry screens as a user drives them.

#include "ui/Form.h"
#include "ui/Screens.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "screens/diary/frmDairyInput.h"
#include "rules/shipping/ShipData.h"
#include "store/Database.h"
#include "store/Lookup.h"
#include "support/GuiDriver.h"
#include "support/MsgRecorder.h"
#include "support/TestRoot.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTreeWidget>
#include <QtTest/QTest>

namespace {

void seedPlantings()
{
    gDB->EXEC("INSERT INTO D_PLANT (FMR_ID, PLANT_ID, PLANT_NM, YYYY, CROP_NM1, CROP_NM2, PRD_ID, PRD_NM, START_DATE, "
              "PLANT_DATE) VALUES (1, 1, '春トマト', 2024, '桃太郎', 'トマト', 1, 'トマト', #2024/4/1#, #2024/4/5#)");
    gDB->EXEC("INSERT INTO D_PLANT (FMR_ID, PLANT_ID, PLANT_NM, YYYY, START_DATE, END_DATE, PLANT_DATE) VALUES "
              "(1, 2, '早生なす', 2024, #2024/4/20#, #2024/5/31#, #2024/4/25#)");
}

ShipRow shipment(const char *date = "2024/05/10")
{
    ShipRow r = Ship::newShipment();
    r.SHIP_DATE = Value(date);
    r.PLANT_ID = Value(1);
    r.PRD_ID = Value(1);
    r.PRD_NM = Value("トマト");
    return r;
}

// Leaves each box with its text, in order, as a user would.
void typeInto(ShipRow &r, std::initializer_list<std::pair<int, const char *>> boxes)
{
    for (const auto &b : boxes)
        Ship::leaveBox(r, b.first, QString::fromUtf8(b.second));
}

QString t(const Value &v) { return hasValue(v) ? v.toText() : QStringLiteral("-"); }

// A slip as: debit kind/id/name, credit kind/id/name, party, notes, amount.
QString slip(const Value &id)
{
    RecordsetPtr rs = gDB->GetFwdOnlyRst(QStringLiteral("SELECT D_ACC_ID, D_OPT_KBN, D_OPT_ID, D_OPT_NM, C_ACC_ID, "
                                                        "C_OPT_KBN, C_OPT_ID, C_OPT_NM, CTR_NM, NOTES, AMT FROM D_LEDGE "
                                                        "WHERE FMR_ID=1 AND LEDGE_ID=") +
                                         Nz(id, Value(0)).toText());
    if (rs->eof())
        return QStringLiteral("none");
    QStringList cells;
    for (int i = 0; i < rs->FieldCount(); ++i)
        cells << t(rs->Fields(i));
    return cells.join(QLatin1Char(' '));
}

} // namespace

class TestShipping : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        gFMR_ID = Value(1);
        gSHOP_ID = Value(1);
        gMODE = Mode::Add;
        gROW_IDX = -1;
    }

    void amountsAsFieldsAreLeft()
    {
        TestRoot root;
        using namespace Ship;
        // shipped, no return known: nothing sold yet, the shop's rate, a fee of 0
        ShipRow r = shipment();
        typeInto(r, {{ShopPrc, "105"}, {ShipQty, "10"}});
        QVERIFY(!hasValue(r.SALES_QTY));
        QVERIFY(!hasValue(r.SALES_AMT));
        QCOMPARE(r.FEE_RT.toDouble(), 15.0);
        QCOMPARE(r.FEE_AMT.toDouble(), 0.0);
        // a return of 0: all sold
        typeInto(r, {{RtnQty, "0"}});
        QCOMPARE(r.SALES_QTY.toDouble(), 10.0);
        QCOMPARE(r.SALES_AMT.toDouble(), 1050.0);
        QCOMPARE(r.FEE_AMT.toText(), QStringLiteral("158")); // 157.5 rounds up
        // price 105, 3 sold, discount 5, rate 15: 310, fee 46.5 -> 47
        typeInto(r, {{SalesQty, "3"}, {DscAmt, "5"}});
        QCOMPARE(r.SALES_AMT.toDouble(), 310.0);
        QCOMPARE(r.FEE_AMT.toText(), QStringLiteral("47"));
        // a discount above the sales: negative amount, fee rounded away from zero
        typeInto(r, {{DscAmt, "400"}});
        QCOMPARE(r.SALES_AMT.toDouble(), -85.0);
        QCOMPARE(r.FEE_AMT.toText(), QStringLiteral("-13")); // -12.75
        // the discount emptied: the fee goes, the amount is computed again without it
        typeInto(r, {{DscAmt, ""}});
        QVERIFY(!hasValue(r.FEE_AMT));
        QVERIFY(!hasValue(r.SALES_AMT));
        Ship::computeSalesAmount(r);
        QCOMPARE(r.SALES_AMT.toDouble(), 315.0);
        // a rate typed while there is no amount empties the fee; a typed fee stands
        r.SALES_AMT = Value::null();
        typeInto(r, {{FeeRt, "10"}});
        QVERIFY(!hasValue(r.FEE_AMT));
        typeInto(r, {{FeeAmt, "30"}});
        QCOMPARE(r.FEE_AMT, Value("30"));
        // a return that is no number empties, silently
        typeInto(r, {{RtnQty, "二"}});
        QVERIFY(!hasValue(r.RTN_QTY));
        QVERIFY(!hasValue(r.SALES_QTY));
        // a price that is no number stays as typed and computes nothing
        typeInto(r, {{ShopPrc, "時価"}});
        QCOMPARE(r.SHOP_PRC, Value("時価"));
        QVERIFY(!hasValue(r.SALES_AMT));
        // the product's name from the shop's products
        typeInto(r, {{PrdId, "２"}});
        QCOMPARE(r.PRD_NM, gMST->DLookup("PRD_NM", "M_PRD", "SHOP_ID=1 AND PRD_ID=2"));
        typeInto(r, {{PrdId, "999"}});
        QVERIFY(!hasValue(r.PRD_NM));
    }

    void aShopWithoutRateGivesOnePercent()
    {
        TestRoot root;
        gMST->EXEC("UPDATE M_SHOP SET FEE_RT=NULL WHERE SHOP_ID=1");
        ShipRow r = shipment();
        typeInto(r, {{Ship::ShopPrc, "200"}, {Ship::ShipQty, "5"}, {Ship::RtnQty, "0"}});
        QCOMPARE(r.FEE_RT.toDouble(), 1.0);
        QCOMPARE(r.FEE_AMT.toText(), QStringLiteral("10"));
    }

    void checksBeforeASave_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("message");
        QTest::newRow("no date") << "SHIP_DATE" << "" << "日付を指定してください。";
        QTest::newRow("no such date") << "SHIP_DATE" << "2024/2/30" << "日付を指定してください。";
        QTest::newRow("no planting") << "PLANT_ID" << "" << "作付を指定してください。";
        QTest::newRow("planting 0") << "PLANT_ID" << "0" << "作付を指定してください。";
        QTest::newRow("no quantity") << "SHIP_QTY" << "" << "出荷数を指定してください。";
        QTest::newRow("quantity no number") << "SHIP_QTY" << "たくさん" << "出荷数を指定してください。";
        QTest::newRow("fine") << "SHIP_QTY" << "12" << "";
    }
    void checksBeforeASave()
    {
        QFETCH(QString, field);
        QFETCH(QString, value);
        QFETCH(QString, message);
        TestRoot root;
        ShipRow r = shipment();
        r.SHIP_QTY = Value(10);
        Value *target = field == "SHIP_DATE" ? &r.SHIP_DATE : field == "PLANT_ID" ? &r.PLANT_ID : &r.SHIP_QTY;
        *target = textOrNull(value);
        QCOMPARE(Ship::check(r, Mode::Change), message);
    }

    void checksNumberAndFarmer()
    {
        TestRoot root;
        gDB->EXEC("INSERT INTO D_SHIP (FMR_ID, SHIP_ID) VALUES (1, 7)");
        gDB->EXEC("INSERT INTO D_SHIP (FMR_ID, SHIP_ID) VALUES (2, 30)");
        ShipRow r = shipment();
        r.SHIP_QTY = Value(1);
        r.FMR_ID = Value(2); // mode 1 takes the current farmer whatever was chosen
        r.ACC_ID = Value();
        QCOMPARE(Ship::check(r, Mode::Add), QString());
        QCOMPARE(r.FMR_ID.toLong(), 1);
        QCOMPARE(r.SHIP_ID.toLong(), 8);
        QCOMPARE(r.ACC_ID.toLong(), 1040); // from the shop
        r.FMR_ID = Value(0);
        QCOMPARE(Ship::check(r, Mode::Change), QStringLiteral("生産者をを指定してください。"));
        r.FMR_ID = Value();
        QCOMPARE(Ship::check(r, Mode::Change), QStringLiteral("生産者を指定してください。"));
    }

    void aShipmentThroughItsLife()
    {
        TestRoot root;
        seedPlantings();
        setCompNameForTests(QStringLiteral("PC-A"));
        const QString shop = GetShopNm(Value(1));
        // dispatched: no slips yet, the row and the diary line
        ShipRow r = shipment();
        typeInto(r, {{Ship::ShopPrc, "105"}, {Ship::ShipQty, "10"}, {Ship::Notes, "朝どれ'特選'"}});
        QCOMPARE(Ship::check(r, Mode::Add), QString());
        QVERIFY(Ship::post(r, Mode::Add));
        QCOMPARE(gLAST_SHIP_ID.toLong(), 1);
        QCOMPARE(r.LEDGE_ID_S.toLong(), 0);
        QCOMPARE(r.LEDGE_ID_F.toLong(), 0);
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 0);
        QCOMPARE(gDB->DLookup("SHIP_QTY", "D_SHIP", "SHIP_ID=1").toDouble(), 10.0);
        QCOMPARE(gDB->DCount("*", "D_DIARY", "FMR_ID=1 AND WORK_DATE=#2024/5/10#").toLong(), 1);
        QCOMPARE(gDB->DLookup("WORK_NM", "D_DIARY_DTL", "WORK_KBN=8 AND SHIP_ID=1"), Value("出荷"));
        QCOMPARE(gDB->DLookup("NOTES", "D_DIARY_DTL", "WORK_KBN=8 AND SHIP_ID=1"), Value("朝どれ'特選'"));

        // the shop's report: sale and fee slips, dated the shipment day
        gROW_IDX = -1;
        RecordsetPtr rs = gDB->GetStaticRst("SELECT D_SHIP.* FROM D_SHIP WHERE SHIP_ID=1");
        QCOMPARE(LoadShipRows(*rs), 1);
        ShipRow edit = gSHIP_ROWS[0];
        typeInto(edit, {{Ship::RtnQty, "0"}});
        QVERIFY(Ship::post(edit, Mode::Change));
        QCOMPARE(edit.LEDGE_ID_S.toLong(), 1);
        QCOMPARE(edit.LEDGE_ID_F.toLong(), 2);
        QCOMPARE(slip(edit.LEDGE_ID_S), QStringLiteral("1040 0 0 - 4000 2 1 トマト %1 朝どれ'特選' 1050").arg(shop));
        QCOMPARE(slip(edit.LEDGE_ID_F), QStringLiteral("4520 2 1 トマト 1040 0 0 - %1 - 158").arg(shop));
        QCOMPARE(gDB->DLookup("LEDGE_DATE", "D_LEDGE", "LEDGE_ID=1"), Value(DateUtil::make(2024, 5, 10)));
        QVERIFY(gDB->DLookup("UDATE", "D_LEDGE", "LEDGE_ID=1").isNull() == false);
        QCOMPARE(ChkLedgeUse(Value(1), Value(1)), 3);
        QCOMPARE(ChkLedgeUse(Value(1), Value(2)), 3);
        QCOMPARE(gDB->DCount("*", "D_DIARY_DTL", "SHIP_ID=1").toLong(), 1);

        // less sold: the same slip numbers, the new amount
        typeInto(edit, {{Ship::SalesQty, "8"}});
        QVERIFY(Ship::post(edit, Mode::Change));
        QCOMPARE(edit.LEDGE_ID_S.toLong(), 1);
        QCOMPARE(gDB->DLookup("AMT", "D_LEDGE", "LEDGE_ID=1"), Value(Currency::fromInt(840)));
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 2);

        // returns of all: the slips go, their numbers become 0
        typeInto(edit, {{Ship::SalesQty, "0"}});
        QVERIFY(Ship::post(edit, Mode::Change));
        QCOMPARE(edit.LEDGE_ID_S.toLong(), 0);
        QCOMPARE(edit.LEDGE_ID_F.toLong(), 0);
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 0);

        // a discount above the sales: the slips turn round, amounts positive
        typeInto(edit, {{Ship::SalesQty, "1"}, {Ship::DscAmt, "200"}});
        QVERIFY(Ship::post(edit, Mode::Change));
        QCOMPARE(slip(edit.LEDGE_ID_S), QStringLiteral("4000 2 1 トマト 1040 0 0 - %1 朝どれ'特選' 95").arg(shop));
        QCOMPARE(slip(edit.LEDGE_ID_F), QStringLiteral("1040 0 0 - 4520 2 1 トマト %1 - 14").arg(shop));

        // the date moved: a header for the new day, the line moves there
        typeInto(edit, {{Ship::ShipDate, "2024/05/12"}});
        QVERIFY(Ship::post(edit, Mode::Change));
        QCOMPARE(gDB->DCount("*", "D_DIARY", "FMR_ID=1").toLong(), 2);
        QCOMPARE(gDB->DLookup("WORK_DATE", "D_DIARY_DTL", "SHIP_ID=1"), Value(DateUtil::make(2024, 5, 12)));
        QCOMPARE(gDB->DLookup("LEDGE_DATE", "D_LEDGE", "LEDGE_ID=1"), Value(DateUtil::make(2024, 5, 12)));

        // deleted: slips, row and line go; the day headers stay
        QVERIFY(Ship::post(edit, Mode::Delete));
        QCOMPARE(gDB->DCount("*", "D_SHIP").toLong(), 0);
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 0);
        QCOMPARE(gDB->DCount("*", "D_DIARY_DTL").toLong(), 0);
        QCOMPARE(gDB->DCount("*", "D_DIARY").toLong(), 2);
        setCompNameForTests(QString());
    }

    void aChangeOfARowThatIsGone()
    {
        TestRoot root;
        MsgRecorder rec;
        ShipRow r = shipment();
        r.SHIP_ID = Value(5);
        r.SHIP_QTY = Value(3);
        QVERIFY(!Ship::post(r, Mode::Change));
        QCOMPARE(rec.lastPrompt(), QStringLiteral("該当データが存在しません。"));
        QCOMPARE(gDB->DCount("*", "D_DIARY").toLong(), 0); // the diary is not touched
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
};

TILLORA_GUI_TEST_MAIN(TestShipping)
#include "tst_shipping.moc"
