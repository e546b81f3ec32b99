// The rules of the pesticide lots without a window: the crop match of the
// registered uses, the names from the register, the list's statement, the
// leave rules of the entry's boxes, the record an entry starts
// from, the check before a save, the purchase slip's statement, and the
// stock figures and use costs the diary asks for. A registration number
// that is no number (第123号, none at all) finds nothing, never an error.

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "rules/common/Ids.h"
#include "rules/pesticide/ChemiData.h"
#include "rules/pesticide/ChemiStock.h"
#include "rules/pesticide/LotFixture.h"
#include "store/Database.h"
#include "support/Build.h"
#include "support/RowText.h"
#include "support/RulesTest.h"
#include "support/SaveProbe.h"

#include <QtTest/QTest>

namespace {

double lotField(int id, const char *column)
{
    return gDB->DLookup(QString::fromLatin1(column), QStringLiteral("D_CHEMI"), QStringLiteral("CHEMI_ID=%1").arg(id))
        .toDouble();
}

} // namespace

class TestChemi : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        gFMR_ID = Value(1);
        gLAST_CHEMI_ID = Value();
        setCompNameForTests(QStringLiteral("PC-PEST"));
    }

    void cropMatch_data()
    {
        QTest::addColumn<QString>("names");
        QTest::addColumn<QString>("groups");
        QTest::addColumn<QString>("namesNg");
        QTest::addColumn<QString>("groupsNg");
        QTest::addColumn<bool>("applies");
        // the crop: ミニトマト, item トマト, group 01
        QTest::newRow("second of two names") << "トマト,ミニトマト" << "" << "" << "" << true;
        QTest::newRow("the item's name allows") << "トマト" << "" << "" << "" << true;
        QTest::newRow("item excluded") << "トマト,ミニトマト" << "" << "トマト" << "" << false;
        QTest::newRow("group, no names") << "" << "01,02,03" << "" << "" << true;
        QTest::newRow("exclusion does not see the listed name") << "" << "01" << "ミニトマト" << "" << true;
        QTest::newRow("group excluded wins") << "ミニトマト" << "" << "" << "02,01" << false;
        QTest::newRow("all four empty") << "" << "" << "" << "" << false;
        QTest::newRow("exclusions alone") << "" << "" << "なす" << "06" << false;
        QTest::newRow("items are not trimmed") << "なす, ミニトマト" << " 01" << "" << "" << false;
        QTest::newRow("groups compared whole") << "" << "1,001,010" << "" << "" << false;
        QTest::newRow("another crop") << "なす,きゅうり" << "06" << "" << "" << false;
    }
    void cropMatch()
    {
        QFETCH(QString, names);
        QFETCH(QString, groups);
        QFETCH(QString, namesNg);
        QFETCH(QString, groupsNg);
        QFETCH(bool, applies);
        const Chemi::Crop crop{QStringLiteral("ミニトマト"), QStringLiteral("トマト"), QStringLiteral("01")};
        QCOMPARE(Chemi::cropApplies({names, groups, namesNg, groupsNg}, crop), applies);
    }

    void registeredUsesOfTheDeliveredRegister()
    {
        TestRoot root;
        auto targets = [](const char *regNo, const char *crop) {
            QStringList out;
            for (const ApplRow &a : Chemi::applications(Value(regNo), Chemi::cropOf(QString::fromUtf8(crop))))
                out << a.TARGET.toText() + QLatin1Char('/') + Nz(a.DILUTION, Value(QString())).toText();
            out.sort();
            return out.join(QLatin1Char(' '));
        };
        // the same use under the words トマト and ミニトマト: twice, as the match columns differ
        QCOMPARE(targets("90003", "ミニトマト"), QStringLiteral("灰色かび病/2000倍 灰色かび病/2000倍"));
        QCOMPARE(targets("90003", "トマト"), QStringLiteral("灰色かび病/2000倍"));
        // by its own name and by the vegetables' groups
        QCOMPARE(targets("90002", "きゅうり"), QStringLiteral("べと病/500～800倍 べと病/800倍 斑点細菌病/500～800倍"));
        // fruit trees except citrus: みかん is listed as かんきつ
        QCOMPARE(targets("90006", "りんご"), QStringLiteral("一年生雑草/100倍 多年生雑草/50倍"));
        QCOMPARE(targets("90006", "みかん"), QString());
        // vegetables except ねぎ
        QCOMPARE(targets("90008", "ねぎ"), QString());
        QCOMPARE(targets("90008", "キャベツ"), QStringLiteral("タネバエ/ ネキリムシ類/"));
        QCOMPARE(targets("99999", "キャベツ"), QString());
        const Chemi::Crop unknown = Chemi::cropOf(QStringLiteral("O'バナナ"));
        QVERIFY(unknown.item.isEmpty() && unknown.group.isEmpty());
    }

    void namesFromTheRegister()
    {
        TestRoot root;
        ChemiRow r;
        // leaving the number's box asks the register; no number or 第123号 finds nothing
        Chemi::leaveBox(r, Chemi::RegNoBox, QStringLiteral("９００１３"));
        QCOMPARE(recordText(r, "REG_NO CHEMI_NM USES"), QStringLiteral("９００１３|ミズカガミ１キロ粒剤（見本）|4"));
        for (const QString &odd : {QStringLiteral("第123号"), QString()}) {
            Chemi::leaveBox(r, Chemi::RegNoBox, odd);
            QCOMPARE(recordText(r, "REG_NO CHEMI_NM CHEMI_KIND MAKER_NM CHEMI_TYPE USES"),
                     (odd.isEmpty() ? QStringLiteral("-") : odd) + QStringLiteral("|-|-|-|-|-"));
        }
    }

    // A lot bought without a registration number, or with one that is no
    // number, is listed, shows no registered uses and no names, and never
    // makes the engine fail.
    void lotsWithoutANumber()
    {
        TestRoot root;
        seedLots();
        Build::lot(6, QStringLiteral("第123号の薬")).set("REG_NO", "第123号").set("PUR_QTY", 1).set("REST_QTY", 1).add();
        Chemi::ListFilter all;
        all.farmer = Value(1);
        all.stock = Chemi::Stock::All;
        const QVector<ChemiRow> rows = Chemi::readLots(all);
        QCOMPARE(rows.size(), 5);
        const ChemiRow &none = rows[Chemi::rowOfChemi(rows, Value(3))];
        const ChemiRow &odd = rows[Chemi::rowOfChemi(rows, Value("6"))];
        QVERIFY(!Chemi::registered(none));
        QVERIFY(Chemi::registered(odd));
        QVERIFY(Chemi::applicationsFor(none, QStringLiteral("トマト")).isEmpty());
        QVERIFY(Chemi::applicationsFor(odd, QStringLiteral("トマト")).isEmpty());
        QVERIFY(Chemi::applications(odd.REG_NO, Chemi::cropOf(QStringLiteral("トマト"))).isEmpty());
        // a registered lot needs a crop chosen
        QVERIFY(Chemi::applicationsFor(rows[Chemi::rowOfChemi(rows, Value(2))], QString()).isEmpty());
        QCOMPARE(Chemi::applicationsFor(rows[Chemi::rowOfChemi(rows, Value(2))], QStringLiteral("トマト")).size(), 1);
        // the number filter reads the leading number, 0, which no registered
        // lot has (MariaDB reads a stored 第123号 as 0 too, SQLite doesn't)
        all.regNo = QStringLiteral("第123号");
        for (const ChemiRow &r : Chemi::readLots(all))
            QCOMPARE(textOf(r.REG_NO), QStringLiteral("第123号"));
        QCOMPARE(Chemi::rowOfChemi(rows, Value("第123号")), -1);
        QCOMPARE(Chemi::rowOfChemi(rows, Value()), -1);
        // the other filters are values too: a quote finds nothing, a full-width
        // number its lot, and a date the tables can't hold never reaches the engine
        all.regNo = QStringLiteral("９０００３");
        QCOMPARE(Chemi::readLots(all).size(), 1);
        all.name = QStringLiteral("O'フロア");
        QVERIFY(Chemi::readLots(all).isEmpty());
        all.dateTo = QStringLiteral("0999/12/31");
        QCOMPARE(failureOf([&] { Chemi::readLots(all); }).number(), VbErr::DateSyntax);
    }

    // ---------------------------------------------------------------- entry

    void leaveBox_data()
    {
        QTest::addColumn<int>("box");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("columns");
        QTest::addColumn<QString>("expected");
        // the lot starts with 1 used, everything else empty
        QTest::newRow("quantity in full width") << int(Chemi::QtyBox) << "３" << "PUR_QTY REST_QTY" << "3|2";
        QTest::newRow("quantity with a separator") << int(Chemi::QtyBox) << "1,200" << "PUR_QTY REST_QTY" << "1200|1199";
        QTest::newRow("quantity no number: both empty") << int(Chemi::QtyBox) << "たくさん" << "PUR_QTY REST_QTY" << "-|-";
        QTest::newRow("quantity empty") << int(Chemi::QtyBox) << "" << "PUR_QTY REST_QTY" << "-|-";
        QTest::newRow("a return") << int(Chemi::AmountBox) << "-500" << "PUR_AMT" << "-500";
        QTest::newRow("amount no number") << int(Chemi::AmountBox) << "千円" << "PUR_AMT" << "-";
        QTest::newRow("date as typed") << int(Chemi::DateBox) << "2024/4/3" << "PUR_DATE" << "2024/04/03";
        QTest::newRow("date no date") << int(Chemi::DateBox) << "20241345" << "PUR_DATE" << "-";
        QTest::newRow("date the tables can't hold") << int(Chemi::DateBox) << "0999/12/31" << "PUR_DATE" << "-";
        QTest::newRow("name empty") << int(Chemi::NameBox) << "" << "CHEMI_NM" << "-";
        QTest::newRow("notes with a quote") << int(Chemi::NotesBox) << "O'Neilから" << "NOTES" << "O'Neilから";
        QTest::newRow("seller") << int(Chemi::ShopBox) << "JAみどり" << "PUR_SHOP REST_QTY" << "JAみどり|-";
        QTest::newRow("kind and maker") << int(Chemi::KindBox) << "殺菌剤" << "CHEMI_KIND MAKER_NM" << "殺菌剤|-";
    }
    void leaveBox()
    {
        QFETCH(int, box);
        QFETCH(QString, text);
        QFETCH(QString, columns);
        QFETCH(QString, expected);
        ChemiRow r;
        r.USED_QTY = Value(1);
        Chemi::leaveBox(r, box, text);
        QCOMPARE(recordText(r, columns.toLatin1().constData()), expected);
    }

    void recordOfTheEntry()
    {
        ChemiRow lot;
        for (const QString &c : ChemiRow::map().names())
            ChemiRow::map().of(lot, c) = Value(c.toLower());
        lot.CHK_FLG = Value(false);
        // changing, viewing and deleting take the row as it is
        for (Mode m : {Mode::Change, Mode::View, Mode::Delete})
            QCOMPARE(recordText(Chemi::openRecord(m, lot, Value(7)), "FMR_ID CHEMI_ID PUR_DATE CHK_FLG"),
                     QStringLiteral("fmr_id|chemi_id|pur_date|False"));
        // a copy: a new lot of the same pesticide, bought again, all in hand
        const ChemiRow copy = Chemi::openRecord(Mode::Add, lot, Value(7));
        QCOMPARE(recordText(copy, "FMR_ID CHEMI_ID PUR_DATE USED_QTY REST_QTY UDATE CHK_FLG"),
                 QStringLiteral("7|-|-|-|-|-|1"));
        QCOMPARE(recordText(copy, "CHEMI_NM REG_NO PUR_SHOP PUR_QTY PUR_AMT ACC_ID NOTES LEDGE_ID IDATE"),
                 QStringLiteral("chemi_nm|reg_no|pur_shop|pur_qty|pur_amt|acc_id|notes|ledge_id|idate"));
        // a new one
        QCOMPARE(recordText(Chemi::openRecord(Mode::Add, ChemiRow(), Value(1)), "FMR_ID CHEMI_ID CHEMI_NM CHK_FLG"),
                 QStringLiteral("1|-|-|1"));
        // the lists: the id chosen, or none
        ChemiRow r;
        Chemi::leaveList(r, Chemi::UsesList, Value(2));
        Chemi::leaveList(r, Chemi::TypeList, Value(8));
        Chemi::leaveList(r, Chemi::UnitList, Value(1));
        Chemi::leaveList(r, Chemi::UnitList, Value::null());
        QCOMPARE(recordText(r, "USES CHEMI_TYPE PUR_UNIT"), QStringLiteral("2|8|-"));
    }

    void checkBeforeASave()
    {
        TestRoot root;
        seedLots();
        ChemiRow r;
        r.FMR_ID = Value(1);
        r.PUR_QTY = Value(3);
        r.USED_QTY = Value(0.5);
        Chemi::Refusal no = Chemi::check(r, Mode::Add);
        QCOMPARE(no.message, QStringLiteral("名称は必須入力です。"));
        QCOMPARE(no.box, int(Chemi::NameBox));
        // what is left is counted first
        QCOMPARE(recordText(r, "REST_QTY"), QStringLiteral("2.5"));
        r.CHEMI_NM = Value("石灰硫黄合剤");
        r.PUR_QTY = Value::null();
        QVERIFY(Chemi::check(r, Mode::Change).ok());
        QCOMPARE(recordText(r, "REST_QTY"), QStringLiteral("-"));
        // a purchase that makes a slip names the account it is paid from
        r.PUR_DATE = Value(DateUtil::make(2024, 4, 3));
        r.PUR_AMT = Value(Currency::fromInt(1200));
        no = Chemi::check(r, Mode::Add);
        QCOMPARE(no.message, QStringLiteral("支払方法（現金または買掛）を選択してください。"));
        r.ACC_ID = Value(Acc::Payable);
        QVERIFY(Chemi::check(r, Mode::Add).ok());
        r.ACC_ID = Value();
        r.PUR_AMT = Value();
        QVERIFY(Chemi::check(r, Mode::Add).ok()); // no amount, no slip
    }

    // Deleting looks at the farmer's diary lines of the lot, not at its name
    // nor at the planting it was used on: the first day it was used refuses.
    void deletingLooksAtTheDiary_data()
    {
        QTest::addColumn<int>("farmer");
        QTest::addColumn<int>("lot");
        QTest::addColumn<QString>("refusal");
        QTest::newRow("used on two days") << 1 << 1 << "この農薬は5/20に使用されています。削除できません。";
        QTest::newRow("used once, on a planting of another number")
            << 1 << 2 << "この農薬は5/21に使用されています。削除できません。";
        QTest::newRow("never used") << 1 << 4 << "";
        QTest::newRow("another farmer's lines under the number") << 2 << 1 << "";
    }
    void deletingLooksAtTheDiary()
    {
        QFETCH(int, farmer);
        QFETCH(int, lot);
        QFETCH(QString, refusal);
        TestRoot root;
        seedLots();
        ChemiRow r;
        r.FMR_ID = Value(farmer);
        r.CHEMI_ID = Value(lot);
        const Chemi::Refusal no = Chemi::check(r, Mode::Delete);
        QCOMPARE(no.message, refusal);
        QCOMPARE(no.box, -1);
    }

    // ---------------------------------------------------------------- stock

    void stockOfTheLotsOfADay()
    {
        TestRoot root;
        seedLots();
        gDB->EXEC("UPDATE D_CHEMI SET USED_QTY=0, REST_QTY=3 WHERE CHEMI_ID=1");
        // the day also has a line with no lot, and another farmer used lot 1's number
        Build::diaryLine(QDate(2024, 6, 9), 2, 1).add();
        Build::diaryLine(QDate(2024, 6, 9), 1, WorkKbn::Spraying)
            .set("FMR_ID", 2)
            .set("CHEMI_ID", 1)
            .set("QTY", 2)
            .set("UNIT_ID", 2)
            .add();
        RecountChemiUse(Value(1), DateUtil::make(2024, 6, 9));
        // 500 g and 0.5 kg of a lot bought in kg
        QCOMPARE(lotField(1, "USED_QTY"), 1.0);
        QCOMPARE(lotField(1, "REST_QTY"), 2.0);
        // what is left, for every lot; lot 4's stale count stays until 検索
        QCOMPARE(lotField(4, "REST_QTY"), 1.5);
        // stopped before its first lot, the recount leaves the figures
        ResetUnusedChemi(Value(1), [](qint64, qint64, const QString &) { return false; });
        QCOMPARE(lotField(4, "REST_QTY"), 1.5);
        ResetUnusedChemi(Value(1));
        QCOMPARE(lotField(4, "USED_QTY"), 0.0);
        QCOMPARE(lotField(4, "REST_QTY"), 2.0);
        QCOMPARE(lotField(1, "USED_QTY"), 1.0);
        // a day without lines changes nothing
        RecountChemiUse(Value(1), DateUtil::make(2024, 1, 1));
        QCOMPARE(lotField(1, "REST_QTY"), 2.0);
        // many unused lots: every one set back, a stop between two batches
        // leaves the rest as they were
        for (int id = 100; id < 350; ++id)
            Build::lot(id).set("PUR_QTY", 5).set("USED_QTY", 1).set("REST_QTY", 4).add();
        int asked = 0;
        ResetUnusedChemi(Value(1), [&](qint64, qint64, const QString &) { return ++asked < 2; });
        const long first = gDB->DCount("*", "D_CHEMI", "CHEMI_ID>=100 AND REST_QTY=5").toLong();
        QVERIFY2(first >= 90 && first <= 100, qPrintable(QString::number(first))); // one statement's lots
        ResetUnusedChemi(Value(1));
        QCOMPARE(gDB->DCount("*", "D_CHEMI", "CHEMI_ID>=100 AND REST_QTY=5 AND USED_QTY=0").toLong(), 250);
    }

    // A use counted in the lot's purchase unit by the unit table, either way round.
    void recountConvertsToThePurchaseUnit_data()
    {
        QTest::addColumn<int>("bought"); // the lot's unit: 1 g, 2 kg, 4 mL, 5 L
        QTest::addColumn<double>("qty");
        QTest::addColumn<int>("unit");
        QTest::addColumn<double>("used");
        QTest::newRow("grams of a kg lot") << 2 << 250.0 << 1 << 0.25;
        QTest::newRow("kg of a g lot") << 1 << 3.0 << 2 << 3000.0;
        QTest::newRow("the same unit") << 2 << 2.0 << 2 << 2.0;
        QTest::newRow("mL of a L lot") << 5 << 100.0 << 4 << 0.1;
        QTest::newRow("g and mL don't convert") << 1 << 5.0 << 4 << 0.0;
    }
    void recountConvertsToThePurchaseUnit()
    {
        QFETCH(int, bought);
        QFETCH(double, qty);
        QFETCH(int, unit);
        QFETCH(double, used);
        TestRoot root;
        Build::lot(1, QStringLiteral("試験剤")).set("PUR_QTY", 10).set("PUR_UNIT", bought).add();
        Build::diaryLine(QDate(2024, 6, 9), 1, WorkKbn::Spraying).set("CHEMI_ID", 1).set("QTY", qty).set("UNIT_ID", unit).add();
        RecountChemiUse(Value(1), DateUtil::make(2024, 6, 9));
        QCOMPARE(lotField(1, "USED_QTY"), used);
        QCOMPARE(lotField(1, "REST_QTY"), 10 - used);
    }

    void useCost_data()
    {
        QTest::addColumn<int>("farmer");
        QTest::addColumn<int>("lot");
        QTest::addColumn<double>("qty");
        QTest::addColumn<int>("unit");
        QTest::addColumn<double>("cost");
        // lot 1: 3 kg for 4500, so 1500 a kg; lot 4: 2 kg for 1800
        QTest::newRow("grams of a lot bought in kg") << 1 << 1 << 500.0 << 1 << 750.0;
        QTest::newRow("the purchase unit") << 1 << 1 << 0.5 << 2 << 750.0;
        QTest::newRow("half up, not to even") << 1 << 1 << 0.003 << 2 << 5.0;
        QTest::newRow("a correction") << 1 << 4 << -0.5 << 2 << -450.0;
        QTest::newRow("a unit the rates don't convert") << 1 << 1 << 1.0 << 4 << 0.0;
        QTest::newRow("another farmer's lot") << 2 << 1 << 1.0 << 2 << 0.0;
        QTest::newRow("no quantity bought") << 1 << 3 << 1.0 << 2 << 0.0;
    }
    void useCost()
    {
        QFETCH(int, farmer);
        QFETCH(int, lot);
        QFETCH(double, qty);
        QFETCH(int, unit);
        QFETCH(double, cost);
        TestRoot root;
        seedLots();
        QCOMPARE(CalChemiAmt(Value(farmer), Value(lot), Value(qty), Value(unit)).toDouble(), cost);
    }
};

TILLORA_RULES_TEST_MAIN(TestChemi)
#include "tst_chemi.moc"
