// Shipments without windows: the amounts computed as fields are left, what
// the entry screen looks up, the checks before a save, what a save posts
// into the books and the diary (and what an edit or a delete undoes), and
// what the shipment list reads, statement for statement.

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "base/Msg.h"
#include "rules/common/Ids.h"
#include "rules/shipping/ShipData.h"
#include "rules/shipping/ShipList.h"
#include "rules/shipping/ShipSeed.h"
#include "store/Database.h"
#include "rules/books/Ledger.h"
#include "store/Lookup.h"
#include "store/Stmt.h"
#include "support/MsgRecorder.h"
#include "support/RulesTest.h"
#include "support/SaveProbe.h"

#include <QtTest/QTest>

namespace {

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
    RecordsetPtr rs = gDB->GetFwdOnlyRst(Stmt("SELECT D_ACC_ID, D_OPT_KBN, D_OPT_ID, D_OPT_NM, C_ACC_ID, C_OPT_KBN, "
                                              "C_OPT_ID, C_OPT_NM, CTR_NM, NOTES, AMT FROM D_LEDGE WHERE FMR_ID=1 AND "
                                              "LEDGE_ID=?")
                                             .num(id));
    if (rs->eof())
        return QStringLiteral("none");
    QStringList cells;
    for (int i = 0; i < rs->FieldCount(); ++i)
        cells << t(rs->Fields(i));
    return cells.join(QLatin1Char(' '));
}

// The list's plantings: 1 and 2 of the seed, 3 that farmer 1 hasn't shipped
// from (farmer 2 has, under the same number), 4 of the year before; farmer
// 2 also ships under planting 1.
void seedList()
{
    seedPlantings();
    Build::planting(3, QStringLiteral("秋キャベツ")).set("YYYY", 2024).add();
    Build::planting(4, QStringLiteral("去年のトマト")).set("YYYY", 2023).add();
    auto ship = [](int farmer, int id, int plant, const QDate &day, int qty, int sales) {
        Build::shipment(id, day)
            .set("FMR_ID", farmer)
            .set("PLANT_ID", plant)
            .set("SHIP_QTY", qty)
            .set("SALES_AMT", Value(Currency::fromInt(sales)))
            .add();
    };
    ship(1, 1, 1, QDate(2024, 5, 10), 10, 1000);
    ship(1, 2, 2, QDate(2024, 5, 12), 5, 300);
    ship(1, 3, 1, QDate(2024, 6, 2), 8, 0);
    ship(2, 1, 3, QDate(2024, 5, 11), 7, 700);
    ship(2, 2, 1, QDate(2024, 5, 15), 4, 400);
}

QString ids(const QVector<Choice> &choices)
{
    QStringList out;
    for (const Choice &c : choices)
        out << c.id.toText();
    return out.join(QLatin1Char(' '));
}

// gSHIP_ROWS as farmer:number, in order.
QString loadedRows(int n)
{
    QStringList out;
    for (int i = 0; i < n; ++i)
        out << gSHIP_ROWS[i].FMR_ID.toText() + QLatin1Char(':') + gSHIP_ROWS[i].SHIP_ID.toText();
    return out.join(QLatin1Char(' '));
}

Ship::ListFilter mayFilter(int chosen = -1)
{
    Ship::ListFilter f;
    f.year = QStringLiteral("2024");
    f.from = QStringLiteral("2024/05/01");
    f.to = QStringLiteral("2024/05/31");
    f.plantings = {Value(0), Value(1), Value(2), Value(3)};
    f.chosen = chosen;
    return f;
}

} // namespace

class TestShipRules : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        gFMR_ID = Value(1);
        gSHOP_ID = Value(1);
        gLAST_SHIP_ID = Value();
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
        // the product's name from the shop's products; a code that is no
        // number finds none, without an error
        typeInto(r, {{PrdId, "２"}});
        QCOMPARE(r.PRD_NM, gMST->DLookup("PRD_NM", "M_PRD", "SHOP_ID=1 AND PRD_ID=2"));
        typeInto(r, {{PrdId, "999"}});
        QVERIFY(!hasValue(r.PRD_NM));
        typeInto(r, {{PrdId, "第2号"}});
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

    void whatTheEntryLooksUp()
    {
        TestRoot root;
        seedPlantings();
        // a new shop brings its own account back; a shop that is none gives 0
        ShipRow r = shipment();
        r.ACC_ID = Value(Acc::Cash);
        Ship::chooseShop(r, Value(1));
        QCOMPARE(r.ACC_ID.toLong(), Acc::Receivable);
        Ship::chooseShop(r, Value::null());
        QCOMPARE(r.ACC_ID.toLong(), 0);
        // the planting's product replaces what was typed; none gives empty texts
        r.PRD_ID = Value("77");
        Ship::takePlantingProduct(r);
        QCOMPARE(r.PRD_ID, Value("1"));
        QCOMPARE(r.PRD_NM, Value("トマト"));
        r.PLANT_ID = Value(2);
        Ship::takePlantingProduct(r);
        QCOMPARE(r.PRD_ID, Value(""));
        QCOMPARE(r.PRD_NM, Value(""));
        // the planting's labels; a planting that is none shows nothing
        const Ship::PlantingInfo p = Ship::plantingInfo(Value(1));
        QCOMPARE(p.CROP_NM1, Value("桃太郎"));
        QCOMPARE(p.AREA.toDouble(), 2.5);
        QCOMPARE(p.SHIP_SCHD_DATE1, Value(DateUtil::make(2024, 6, 1)));
        for (const Value &none : {Value(0), Value(99), Value::null(), Value("第1号")})
            QVERIFY2(!hasValue(Ship::plantingInfo(none).CROP_NM1), qPrintable(none.debugText()));
        QCOMPARE(ids(Ship::farmerChoices()), QStringLiteral("1"));
        QCOMPARE(ids(Ship::shopChoices()), QStringLiteral("1"));
    }

    void plantingsOpenOnTheDay_data()
    {
        QTest::addColumn<int>("farmer");
        QTest::addColumn<QString>("day");
        QTest::addColumn<QString>("plantings");
        QTest::newRow("before all") << 1 << "2024/03/31" << "";
        QTest::newRow("the first day counts") << 1 << "2024/04/01" << "1";
        QTest::newRow("by planting day") << 1 << "2024/05/31" << "1 2";
        QTest::newRow("after one ended") << 1 << "2024/06/01" << "1";
        QTest::newRow("another farmer") << 2 << "2024/05/10" << "";
        QTest::newRow("no date") << 1 << "" << "";
        QTest::newRow("no such date") << 1 << "2024/02/30" << "";
    }
    void plantingsOpenOnTheDay()
    {
        QFETCH(int, farmer);
        QFETCH(QString, day);
        QFETCH(QString, plantings);
        TestRoot root;
        seedPlantings();
        gFMR_ID = Value(farmer);
        QCOMPARE(ids(Ship::openPlantings(textOrNull(day))), plantings);
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
        ShipRow::map().of(r, field) = textOrNull(value);
        QCOMPARE(Ship::check(r, Mode::Change), message);
    }

    void checksNumberAndFarmer()
    {
        TestRoot root;
        Build::shipment(7, QDate(2024, 5, 1)).add();
        Build::shipment(30, QDate(2024, 5, 1)).set("FMR_ID", 2).add();
        ShipRow r = shipment();
        r.SHIP_QTY = Value(1);
        r.FMR_ID = Value(2); // mode 1 takes the current farmer whatever was chosen
        r.ACC_ID = Value();
        QCOMPARE(Ship::check(r, Mode::Add), QString());
        QCOMPARE(r.FMR_ID.toLong(), 1);
        QCOMPARE(r.SHIP_ID.toLong(), 8);
        QCOMPARE(r.ACC_ID.toLong(), Acc::Receivable); // from the shop
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
        QCOMPARE(gDB->DLookup("LAST_TM", "D_SHIP", "SHIP_ID=1"), Value("PC-A"));
        QCOMPARE(gDB->DCount("*", "D_DIARY", "FMR_ID=1 AND WORK_DATE=#2024/5/10#").toLong(), 1);
        QCOMPARE(gDB->DLookup("WORK_NM", "D_DIARY_DTL", "WORK_KBN=8 AND SHIP_ID=1"), Value("出荷"));
        QCOMPARE(gDB->DLookup("NOTES", "D_DIARY_DTL", "WORK_KBN=8 AND SHIP_ID=1"), Value("朝どれ'特選'"));

        // the shop's report, on the row as the diary opens it: sale and fee
        // slips, dated the shipment day
        QCOMPARE(Ship::loadShipment(Value(1)), 1);
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

    void amountsBeyondTheBooksWriteNothing_data()
    {
        QTest::addColumn<int>("box");
        QTest::addColumn<QString>("text");
        QTest::addColumn<long>("error"); // of the save; 0 when it saves
        QTest::newRow("returns") << int(Ship::RtnQty) << "1e300" << VbErr::Overflow;
        QTest::newRow("price") << int(Ship::ShopPrc) << "1e300" << VbErr::Overflow;
        QTest::newRow("sold") << int(Ship::SalesQty) << "1e300" << VbErr::Overflow;
        QTest::newRow("discount") << int(Ship::DscAmt) << "-1e300" << VbErr::Overflow;
        QTest::newRow("a fee typed") << int(Ship::FeeAmt) << "1e300" << VbErr::Overflow;
        // 9 sold: the largest amount the books hold is 922,337,203,685,477
        QTest::newRow("a price just beyond") << int(Ship::ShopPrc) << "102481911520609" << VbErr::Overflow;
        QTest::newRow("a price just within") << int(Ship::ShopPrc) << "102481911520608" << 0L;
    }
    void amountsBeyondTheBooksWriteNothing()
    {
        QFETCH(int, box);
        QFETCH(QString, text);
        QFETCH(long, error);
        TestRoot root;
        seedPlantings();
        ShipRow r = shipment();
        typeInto(r, {{Ship::ShopPrc, "105"}, {Ship::ShipQty, "10"}});
        QCOMPARE(Ship::check(r, Mode::Add), QString());
        QVERIFY(Ship::post(r, Mode::Add));
        const QStringList dispatched = SaveProbe::records();
        QCOMPARE(Ship::loadShipment(Value(1)), 1);
        ShipRow edit = gSHIP_ROWS[0];
        typeInto(edit, {{Ship::RtnQty, "1"}});
        // leaving the box may already say so; the save says so in any case
        try {
            Ship::leaveBox(edit, box, text);
        } catch (const AppError &e) {
            QCOMPARE(e.number(), VbErr::Overflow);
        }
        long raised = 0;
        try {
            QVERIFY(Ship::post(edit, Mode::Change));
        } catch (const AppError &e) {
            raised = e.number();
        }
        QCOMPARE(raised, error);
        if (error != 0) {
            QCOMPARE(SaveProbe::records(), dispatched);
            return;
        }
        QCOMPARE(gDB->DLookup("AMT", "D_LEDGE", "LEDGE_ID=1"), Value(Currency::fromInt(922337203685472)));
        QCOMPARE(gDB->DLookup("SALES_AMT", "D_SHIP", "SHIP_ID=1"), Value(Currency::fromInt(922337203685472)));
    }

    // A shipment's diary line goes after the last line of its day: the
    // highest number of the farmer's lines of that day, plus one (lines of
    // another farmer or another day don't count, and a gap doesn't either).
    void theDiaryLineFollowsTheDaysLines_data()
    {
        QTest::addColumn<QList<int>>("lines"); // farmer 1's lines of 2024/05/10
        QTest::addColumn<int>("number");
        QTest::newRow("an empty day") << QList<int>{} << 1;
        QTest::newRow("a day with one line") << QList<int>{1} << 2;
        QTest::newRow("a day with a gap") << QList<int>{1, 2, 5} << 6;
    }
    void theDiaryLineFollowsTheDaysLines()
    {
        QFETCH(QList<int>, lines);
        QFETCH(int, number);
        TestRoot root;
        seedPlantings();
        const QDate day(2024, 5, 10);
        if (!lines.isEmpty())
            Build::diaryDay(day).set("ONE_MSG", "晴れ").add();
        for (int no : lines)
            Build::diaryLine(day, no, 1).set("PLANT_ID", 2).set("NOTES", "草取り").add();
        Build::diaryLine(day, 9, 1).set("FMR_ID", 2).add();
        Build::diaryLine(day.addDays(1), 7, 1).add();
        ShipRow r = shipment();
        typeInto(r, {{Ship::ShopPrc, "100"}, {Ship::ShipQty, "3"}});
        QCOMPARE(Ship::check(r, Mode::Add), QString());
        bool posted = false;
        QVERIFY_THROWS_NO_EXCEPTION(posted = Ship::post(r, Mode::Add));
        QVERIFY(posted);
        QCOMPARE(gDB->DLookup("DTL_NO", "D_DIARY_DTL", "FMR_ID=1 AND WORK_KBN=8 AND SHIP_ID=1"), Value(number));
        // the day's lines stay as they were, its header too
        QCOMPARE(gDB->DCount("*", "D_DIARY_DTL", "FMR_ID=1 AND WORK_DATE=#2024/5/10# AND NOTES='草取り'").toLong(),
                 lines.size());
        QCOMPARE(gDB->DCount("*", "D_DIARY", "FMR_ID=1 AND WORK_DATE=#2024/5/10#").toLong(), 1);
        QCOMPARE(Nz(gDB->DLookup("ONE_MSG", "D_DIARY", "FMR_ID=1"), Value("-")),
                 Value(lines.isEmpty() ? "-" : "晴れ"));
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

    void theDiaryOpensItsFarmersShipment()
    {
        TestRoot root;
        seedList();
        QCOMPARE(Ship::loadShipment(Value(2)), 1);
        QCOMPARE(loadedRows(1), QStringLiteral("1:2"));
        gFMR_ID = Value(2);
        QCOMPARE(Ship::loadShipment(Value(2)), 1);
        QCOMPARE(loadedRows(1), QStringLiteral("2:2"));
        // a number that is none finds nothing, and the array keeps its blank row
        QCOMPARE(Ship::loadShipment(Value("第2号")), 0);
        QCOMPARE(gSHIP_ROWS.size(), 1);
        QVERIFY(!hasValue(gSHIP_ROWS[0].SHIP_ID));
    }

    void plantingsByTheirShipments_data()
    {
        QTest::addColumn<QString>("year");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("plantings");
        using S = Ship::PlantStatus;
        QTest::newRow("all of the year") << "2024" << int(S::All) << "1 2 3";
        QTest::newRow("not shipped: another farmer's shipment is not ours") << "2024" << int(S::NotShipped) << "3";
        QTest::newRow("shipping") << "2024" << int(S::Shipping) << "1";
        QTest::newRow("finished") << "2024" << int(S::Finished) << "2";
        QTest::newRow("any year") << "" << int(S::All) << "1 2 3 4";
        QTest::newRow("the year before") << "2023" << int(S::All) << "4";
        QTest::newRow("a year that is no number") << "二〇二四" << int(S::All) << "";
    }
    void plantingsByTheirShipments()
    {
        QFETCH(QString, year);
        QFETCH(int, status);
        QFETCH(QString, plantings);
        TestRoot root;
        seedList();
        Ship::ListFilter f;
        f.year = year;
        f.status = Ship::PlantStatus(status);
        QCOMPARE(ids(Ship::plantingsByStatus(f)), plantings);
    }

    void shipmentsAndTheirTotals_data()
    {
        QTest::addColumn<int>("chosen");
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("rows");
        QTest::addColumn<int>("shipped");
        QTest::addColumn<int>("sales");
        // every farmer's rows of the plantings, by day
        QTest::newRow("no planting chosen") << -1 << "2024/05/01" << "1:1 2:1 1:2 2:2" << 26 << 2400;
        QTest::newRow("the empty entry") << 0 << "2024/05/01" << "1:1 2:1 1:2 2:2" << 26 << 2400;
        QTest::newRow("the first planting shows all") << 1 << "2024/05/01" << "1:1 2:1 1:2 2:2" << 26 << 2400;
        QTest::newRow("the second alone") << 2 << "2024/05/01" << "1:2" << 5 << 300;
        QTest::newRow("the third: farmer 2's row") << 3 << "2024/05/01" << "2:1" << 7 << 700;
        QTest::newRow("from a day in the month") << -1 << "2024/05/12" << "1:2 2:2" << 9 << 700;
        QTest::newRow("from no day") << -1 << "" << "1:1 2:1 1:2 2:2" << 26 << 2400;
    }
    void shipmentsAndTheirTotals()
    {
        QFETCH(int, chosen);
        QFETCH(QString, from);
        QFETCH(QString, rows);
        QFETCH(int, shipped);
        QFETCH(int, sales);
        TestRoot root;
        seedList();
        Ship::ListFilter f = mayFilter(chosen);
        f.from = from;
        QCOMPARE(loadedRows(Ship::loadShipments(f)), rows);
        const std::array<Currency, 5> sums = Ship::shipmentTotals(f);
        QCOMPARE(sums[0], Currency::fromInt(shipped));
        QCOMPARE(sums[3], Currency::fromInt(sales));
        QCOMPARE(sums[2], Currency::fromInt(0)); // no discounts: empty sums count 0
    }

    void filtersThatAreNoValues()
    {
        TestRoot root;
        seedList();
        // a year that is no number: no rows, no engine error, totals of 0
        Ship::ListFilter f = mayFilter();
        f.year = QStringLiteral("今年");
        QCOMPARE(Ship::loadShipments(f), 0);
        QCOMPARE(gSHIP_ROWS.size(), 1);
        QCOMPARE(Ship::shipmentTotals(f)[0], Currency::fromInt(0));
        // an empty list of plantings finds nothing
        f = mayFilter();
        f.plantings.clear();
        QCOMPARE(Ship::loadShipments(f), 0);
        // a day that is no date: the date error in Japanese, before any statement runs
        f = mayFilter();
        f.to = QStringLiteral("2024/05/32");
        long number = 0;
        QString description;
        try {
            Ship::loadShipments(f);
        } catch (const AppError &e) {
            number = e.number();
            description = e.description();
        }
        QCOMPARE(number, 3075L);
        QCOMPARE(description, QStringLiteral("クエリ式の日付の構文エラーです。 2024/05/32"));
    }

    // The list's statements reach the store as the list has always written
    // them; only how the values are put in has changed.
    void theListsStatements()
    {
        TestRoot root;
        QStringList seen;
        setLogHook([&seen](const QString &s) { seen << s; });
        Ship::ListFilter f = mayFilter(2);
        f.status = Ship::PlantStatus::Shipping;
        f.year = QStringLiteral("２０２４");
        Ship::plantingsByStatus(f);
        Ship::loadShipments(f);
        Ship::shipmentTotals(f);
        f.year.clear();
        f.status = Ship::PlantStatus::All;
        f.chosen = 1;
        f.from.clear();
        f.to.clear();
        Ship::plantingsByStatus(f);
        Ship::loadShipments(f);
        setLogHook(nullptr);
        const QString from = QStringLiteral(" FROM D_SHIP INNER JOIN D_PLANT ON D_SHIP.PLANT_ID=D_PLANT.PLANT_ID");
        const QString where = QStringLiteral(" WHERE  D_PLANT.YYYY=2024 AND  D_SHIP.PLANT_ID=2 AND  D_SHIP.SHIP_DATE>=#2024/05/01#"
                                             " AND  D_SHIP.SHIP_DATE<=#2024/05/31#");
        const QString plantings = QStringLiteral("SELECT DISTINCT  D_PLANT.PLANT_ID,  D_PLANT.PLANT_NM  FROM D_PLANT  LEFT "
                                                 "JOIN D_SHIP  ON (D_PLANT.PLANT_ID = D_SHIP.PLANT_ID)  AND "
                                                 "(D_PLANT.FMR_ID = D_SHIP.FMR_ID)");
        const QString order = QStringLiteral(" ORDER BY D_SHIP.SHIP_DATE,D_SHIP.PLANT_ID,D_SHIP.SHIP_ID");
        const QStringList expected{
            plantings + " WHERE  D_PLANT.YYYY=2024 AND  D_SHIP.SHIP_ID IS NOT NULL AND D_PLANT.END_DATE IS NULL ORDER BY "
                        "D_PLANT.PLANT_ID",
            "SELECT  D_SHIP.* " + from + where + order,
            "SELECT  SUM(D_SHIP.SHIP_QTY),  SUM(D_SHIP.SALES_QTY),  SUM(D_SHIP.DSC_AMT),  SUM(D_SHIP.SALES_AMT),  "
            "SUM(D_SHIP.FEE_AMT) " + from + where,
            plantings + " ORDER BY D_PLANT.PLANT_ID",
            "SELECT  D_SHIP.* " + from + " WHERE  D_SHIP.PLANT_ID IN(0,1,2,3)" + order,
        };
        QCOMPARE(seen, expected);
    }
};

TILLORA_RULES_TEST_MAIN(TestShipRules)
#include "tst_shipping.moc"
