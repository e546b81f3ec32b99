// A diary day without its screen: what opening takes, what a save writes
// (slips, pesticide cost slips, the day, the lines, the stock recount) and in
// what order, the lines of a day, and the lists the day entry chooses from.

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "rules/diary/DiaryDay.h"
#include "rules/diary/DiaryFixture.h"
#include "rules/diary/DiaryLists.h"
#include "rules/pesticide/ChemiStock.h"
#include "store/Database.h"
#include "store/Stmt.h"
#include "support/RulesTest.h"

#include <QtTest/QTest>

using namespace DiaryFixture;

namespace {

double lot(int id, const char *column)
{
    return gDB->DLookup(QString::fromLatin1(column), "D_CHEMI", Stmt("CHEMI_ID=?").num(id)).toDouble();
}

QStringList texts(const QVector<Choice> &entries)
{
    QStringList out;
    for (const auto &e : entries)
        out << e.text;
    return out;
}

} // namespace

class TestDiaryDay : public QObject {
    Q_OBJECT
private slots:
    void init() { chooseTheDay(); }
    void cleanup() { leaveTheDay(); }

    void aBlankDayWritesNothingUntilSaved()
    {
        TestRoot root;
        DiaryDay d;
        d.load(gFMR_ID, DateUtil::make(2024, 6, 1));
        QCOMPARE(d.dtl.size(), 1);
        QCOMPARE(gLEDGE_ROWS.size(), 1);
        QCOMPARE(gDB->DCount("*", "D_DIARY").toLong(), 0);
        d.save();
        QCOMPARE(gDB->DCount("*", "D_DIARY").toLong(), 1);
        // an empty day keeps one empty line numbered 1
        QCOMPARE(gDB->DCount("*", "D_DIARY_DTL").toLong(), 1);
        QCOMPARE(gDB->DLookup("DTL_NO", "D_DIARY_DTL", "FMR_ID=1"), Value(1));
        QVERIFY(gDB->DLookup("PLANT_ID", "D_DIARY_DTL", "FMR_ID=1").isNull());
        QVERIFY(gDB->DLookup("HOLD_TM", "D_DIARY", "FMR_ID=1").isNull());
        QCOMPARE(gDB->DLookup("LAST_TM", "D_DIARY", "FMR_ID=1").toText(), QStringLiteral("PC-A"));
        QVERIFY(!gDB->DLookup("IDATE", "D_DIARY", "FMR_ID=1").isNull());
    }

    void anUnchangedDayIsRewrittenAndRenumbered()
    {
        TestRoot root;
        seedDay();
        Build::diaryDay(kDay).set("WTH_ID", 2).set("ONE_MSG", "曇り").set("HOLD_TM", "PC-B").add();
        for (int no : {2, 5, 9}) // the last on a planting that ended in April
            Build::diaryLine(kDay, no, 3).set("PLANT_ID", no == 9 ? 3 : 1).set("WORK_NM", Value(QStringLiteral("作業%1").arg(no))).add();
        DiaryDay d;
        d.load(gFMR_ID, kDayTime);
        // opening holds the day for this computer, whoever held it
        QCOMPARE(gDB->DLookup("HOLD_TM", "D_DIARY", "FMR_ID=1").toText(), QStringLiteral("PC-A"));
        QCOMPARE(d.dtl.size(), 3);
        QCOMPARE(gLEDGE_ROWS.size(), 1);
        QCOMPARE(gLEDGE_ROWS[0][LedgeCol::NOTES], Value("肥料"));
        const Value before = gDB->DLookup("IDATE", "D_LEDGE", "LEDGE_ID=1");
        d.save();
        QCOMPARE(gDB->DJoin("DTL_NO", "D_DIARY_DTL", "FMR_ID=1 ORDER BY DTL_NO"), Value("1 2 3"));
        QCOMPARE(gDB->DJoin("WORK_NM", "D_DIARY_DTL", "FMR_ID=1 ORDER BY DTL_NO"), Value("作業2 作業5 作業9"));
        QCOMPARE(gDB->DLookup("PLANT_ID", "D_DIARY_DTL", "DTL_NO=3"), Value(3)); // kept, though not listed
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 1);
        QVERIFY(gDB->DLookup("IDATE", "D_LEDGE", "LEDGE_ID=1") != before || before.isNull());
        QVERIFY(gDB->DLookup("HOLD_TM", "D_DIARY", "FMR_ID=1").isNull());
        QVERIFY(!gDB->DLookup("UDATE", "D_DIARY", "FMR_ID=1").isNull());
        QCOMPARE(gDB->DLookup("ONE_MSG", "D_DIARY", "FMR_ID=1"), Value("曇り"));
        // closing the day gives the holds up
        d.load(gFMR_ID, kDayTime);
        DiaryDay::releaseHolds();
        QVERIFY(gDB->DLookup("HOLD_TM", "D_DIARY", "FMR_ID=1").isNull());
    }

    void pesticideCostSlips_data()
    {
        QTest::addColumn<int>("chemi");
        QTest::addColumn<double>("qty");
        QTest::addColumn<int>("unit");
        QTest::addColumn<QString>("slip"); // debit credit amount dkind ckind cname dname
        QTest::newRow("grams of a gram lot") << 1 << 250.0 << 1 << "4160 1130 1000 2 3 250.0g -";
        QTest::newRow("kilograms of a gram lot") << 1 << 0.1 << 2 << "4160 1130 400 2 3 0.1kg -";
        QTest::newRow("grams of a kilogram lot") << 2 << 300.0 << 1 << "4160 1130 900 2 3 300.0g -";
        QTest::newRow("millilitres of a litre lot") << 3 << 200.0 << 4 << "4160 1130 600 2 3 200.0mL -";
        QTest::newRow("a correction changes the sides") << 1 << -50.0 << 1 << "1130 4160 200 3 2 - -50.0g";
        QTest::newRow("weight used of a volume lot costs nothing") << 3 << 10.0 << 1 << "4160 1130 0 2 3 10.0g -";
        QTest::newRow("rounded half up") << 1 << 0.125 << 1 << "4160 1130 1 2 3 0.1g -";
    }
    void pesticideCostSlips()
    {
        QFETCH(int, chemi);
        QFETCH(double, qty);
        QFETCH(int, unit);
        QFETCH(QString, slip);
        TestRoot root;
        seedDay();
        DiaryDay d;
        d.load(gFMR_ID, kDayTime);
        d.dtl[0] = spraying(1, chemi, Value(qty), unit, QStringLiteral("朝'露'"));
        d.dtl[0].DTL_NO = Value(1);
        d.save();
        // the new slip's number comes after the day's slips
        QCOMPARE(d.dtl[0].LEDGE_ID, Value(2));
        QCOMPARE(gDB->DLookup("LEDGE_ID", "D_DIARY_DTL", "FMR_ID=1"), Value(2));
        QCOMPARE(slipOf(Value(2)), slip);
        QCOMPARE(gDB->DLookup("NOTES", "D_LEDGE", "LEDGE_ID=2"), Value("朝'露'"));
        QCOMPARE(gDB->DLookup("D_OPT_ID", "D_LEDGE", "LEDGE_ID=2"), Value(qty > 0 ? 1 : chemi));
    }

    // The numbers the cost slips take, line by line as they always have: a
    // new slip after the farmer's highest at that moment, an old one under
    // its number, none for a quantity of 0. The farmer has slips 1 (the
    // day's), 7 and 9; each line is "new", or the slip it holds, with the
    // grams of lot 1 used (4 yen a gram).
    void costSlipNumbers_data()
    {
        QTest::addColumn<QString>("lines");
        QTest::addColumn<QString>("numbers"); // the lines' slip numbers after the save
        QTest::addColumn<QString>("slips");   // the farmer's slips: number and amount
        QTest::newRow("a new slip after the highest") << "new:100" << "10" << "1:1500 7:700 9:900 10:400";
        QTest::newRow("the highest kept, then two new") << "9:100 new:50 new:150" << "9 10 11"
                                                        << "1:1500 7:700 9:400 10:200 11:600";
        QTest::newRow("a new line before the highest goes") << "new:100 9:0" << "10 0" << "1:1500 7:700 10:400";
        QTest::newRow("the highest gone before a new line") << "9:0 new:100" << "0 8" << "1:1500 7:700 8:400";
        QTest::newRow("two lines on one slip") << "9:100 9:150" << "9 9" << "1:1500 7:700 9:600";
        QTest::newRow("a missing slip whose number a new one takes") << "new:100 10:150" << "10 10"
                                                                     << "1:1500 7:700 9:900 10:600";
    }
    void costSlipNumbers()
    {
        QFETCH(QString, lines);
        QFETCH(QString, numbers);
        QFETCH(QString, slips);
        TestRoot root;
        seedDay();
        Build::slip(7, kDay.addDays(-3), 4130, 1000, 700).add();
        Build::slip(9, kDay.addDays(-2), 4130, 1000, 900).add();
        DiaryDay d;
        d.load(gFMR_ID, kDayTime);
        d.dtl.clear();
        for (const QString &l : lines.split(QLatin1Char(' '))) {
            DiaryDtlRec r = spraying(1, 1, Value(l.section(QLatin1Char(':'), 1).toDouble()), 1);
            const QString held = l.section(QLatin1Char(':'), 0, 0);
            r.LEDGE_ID = held == QLatin1String("new") ? Value(0) : Value(held.toInt());
            r.DTL_NO = Value(int(d.dtl.size()) + 1);
            d.dtl << r;
        }
        d.save();
        QStringList got;
        for (const DiaryDtlRec &r : d.dtl)
            got << r.LEDGE_ID.toText();
        QCOMPARE(got.join(QLatin1Char(' ')), numbers);
        QCOMPARE(gDB->DJoin("LEDGE_ID", "D_DIARY_DTL", "FMR_ID=1 ORDER BY DTL_NO"), Value(numbers));
        QStringList held;
        RecordsetPtr rs = gDB->GetFwdOnlyRst("SELECT * FROM D_LEDGE WHERE FMR_ID=1 ORDER BY LEDGE_ID");
        for (; !rs->eof(); rs->MoveNext()) {
            held << rs->Fields("LEDGE_ID").toText() + ':' + rs->Fields("AMT").toText();
            if (rs->Fields("D_ACC_ID") != Value(4160))
                continue;
            // a cost slip written by the save, whichever way it went
            QCOMPARE(rs->Fields("LEDGE_DATE"), Value(kDayTime));
            QCOMPARE(rs->Fields("C_OPT_ID"), Value(1));
            QVERIFY(rs->Fields("CTR_NM").isNull());
            QVERIFY(rs->Fields("D_OPT_NM").isNull());
            QVERIFY(rs->Fields("HOLD_TM").isNull());
            QCOMPARE(rs->Fields("NOTES"), Value(QString()));
            QCOMPARE(rs->Fields("LAST_TM"), Value("PC-A"));
            QVERIFY(rs->Fields("UDATE").isDateType());
        }
        QCOMPARE(held.join(QLatin1Char(' ')), slips);
    }

    void aZeroQuantityMakesNoSlipAndASecondSaveReplacesTheSlip()
    {
        TestRoot root;
        seedDay();
        saveSprayingDay();
        QCOMPARE(slipOf(Value(2)).section(' ', 2, 2), QStringLiteral("400"));
        // the same line, more used: the slip is replaced under its number
        DiaryDay again;
        again.load(gFMR_ID, kDayTime);
        QCOMPARE(gLEDGE_ROWS.size(), 2);
        again.dtl[0].QTY = Value("150");
        again.save();
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 2);
        QCOMPARE(slipOf(Value(2)).section(' ', 2, 2), QStringLiteral("600"));
        // quantity 0: the slip goes and the line keeps no slip
        DiaryDay zero;
        zero.load(gFMR_ID, kDayTime);
        zero.dtl[0].QTY = Value(0);
        zero.save();
        QCOMPARE(slipOf(Value(2)), QStringLiteral("none"));
        QCOMPARE(gDB->DLookup("LEDGE_ID", "D_DIARY_DTL", "FMR_ID=1"), Value(0));
        QCOMPARE(lot(1, "USED_QTY"), 0.0);
    }

    void aFailedSaveLeavesTheDayAsItWas()
    {
        TestRoot root;
        seedDay();
        DiaryDay d;
        d.load(gFMR_ID, kDayTime);
        d.day.ONE_MSG = Value("二度目で保存");
        gLEDGE_ROWS[0][LedgeCol::AMT] = Value(1800);
        // milligrams bought, kilograms used: the fixed rate overflows in the
        // cost step, after the slips were rewritten; so does a cost beyond
        // the books (4 yen a gram, 500 million kg); a use with no unit fails
        // there with the Null error
        const struct {
            int chemi;
            double qty;
            int unit;
            long error;
        } failing[] = {{4, 5, 2, VbErr::Overflow}, {1, 5e11, 2, VbErr::Overflow}, {1, 5, 0, VbErr::InvalidNull}};
        for (const auto &f : failing) {
            d.dtl[0] = spraying(1, f.chemi, Value(f.qty), f.unit);
            if (f.unit == 0)
                d.dtl[0].UNIT_ID = Value::null();
            try {
                d.save();
                QFAIL("the save must fail");
            } catch (const AppError &e) {
                QCOMPARE(e.number(), f.error);
            }
            // nothing of it is written, and the line has no slip number yet
            QCOMPARE(gDB->DLookup("AMT", "D_LEDGE", "LEDGE_ID=1"), Value(Currency::fromInt(1500)));
            QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 1);
            QCOMPARE(gDB->DCount("*", "D_DIARY").toLong(), 0);
            QCOMPARE(gDB->DCount("*", "D_DIARY_DTL").toLong(), 0);
            QVERIFY(!hasValue(d.dtl[0].LEDGE_ID));
        }
        // a slip of the day's book page with an amount beyond the books
        d.dtl[0] = spraying(1, 1, Value(100), 1);
        gLEDGE_ROWS[0][LedgeCol::AMT] = Value("1e300");
        try {
            d.save();
            QFAIL("an amount beyond the books must fail");
        } catch (const AppError &e) {
            QCOMPARE(e.number(), VbErr::Overflow);
        }
        QCOMPARE(gDB->DCount("*", "D_DIARY").toLong(), 0);
        QCOMPARE(gDB->DLookup("AMT", "D_LEDGE", "LEDGE_ID=1"), Value(Currency::fromInt(1500)));
        // mended, the same day saves: its cost slip takes the next number
        gLEDGE_ROWS[0][LedgeCol::AMT] = Value(1800);
        d.save();
        QCOMPARE(gDB->DLookup("AMT", "D_LEDGE", "LEDGE_ID=1"), Value(Currency::fromInt(1800)));
        QCOMPARE(d.dtl[0].LEDGE_ID, Value(2));
        QCOMPARE(slipOf(Value(2)).section(' ', 2, 2), QStringLiteral("400"));
        QCOMPARE(gDB->DLookup("ONE_MSG", "D_DIARY", "FMR_ID=1"), Value("二度目で保存"));
    }

    void aFailingStepKeepsWhatItWasReplacing()
    {
        TestRoot root;
        seedDay();
        DiaryDay d;
        d.load(gFMR_ID, kDayTime);
        // a second slip whose date is no date: the slips step fails as a
        // whole, so the day's slips in the tables are still the old ones
        LedgeRow bad = gLEDGE_ROWS[0];
        bad[LedgeCol::LEDGE_ID] = Value(2);
        bad[LedgeCol::LEDGE_DATE] = Value("5月の末");
        gLEDGE_ROWS[0][LedgeCol::AMT] = Value(9999);
        gLEDGE_ROWS.append(bad);
        QVERIFY_THROWS_EXCEPTION(AppError, d.save());
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 1);
        QCOMPARE(gDB->DLookup("AMT", "D_LEDGE", "LEDGE_ID=1"), Value(Currency::fromInt(1500)));
        // mended, a second save replaces everything
        gLEDGE_ROWS.removeLast();
        d.save();
        QCOMPARE(gDB->DLookup("AMT", "D_LEDGE", "LEDGE_ID=1"), Value(Currency::fromInt(9999)));
    }

    void aClearedPesticideWithASlipFailsInTheEngine()
    {
        TestRoot root;
        seedDay();
        saveSprayingDay();
        DiaryDay again;
        again.load(gFMR_ID, kDayTime);
        again.dtl[0].CHEMI_ID = Value::null();
        again.day.ONE_MSG = Value("二度目");
        try {
            again.save();
            QFAIL("the statement naming no table must fail");
        } catch (const AppError &e) {
            QVERIFY(e.number() != 0);
        }
        QVERIFY(gDB->DLookup("ONE_MSG", "D_DIARY", "FMR_ID=1").isNull());
        // deleting the line (and its slip) lets the day be saved again
        QVERIFY(again.removeDetail(0));
        QCOMPARE(gLEDGE_ROWS.size(), 1);
        again.save();
        QCOMPARE(gDB->DLookup("ONE_MSG", "D_DIARY", "FMR_ID=1"), Value("二度目"));
        QCOMPARE(slipOf(Value(2)), QStringLiteral("none"));
    }

    void stockIsRecountedOverTheDays()
    {
        TestRoot root;
        seedDay();
        Build::lot(9, "他の人の剤").set("FMR_ID", 2).set("PUR_QTY", 2).set("PUR_UNIT", 2).set("PUR_AMT", 100).set("USED_QTY", Value(0)).set("REST_QTY", 2).add();
        // another farmer's line on lot 2: not counted
        Build::diaryLine(QDate(2024, 5, 1), 1, WorkKbn::Spraying).set("FMR_ID", 2).set("CHEMI_ID", 2).set("QTY", 700).set("UNIT_ID", 1).add();
        auto saveDay = [](const QDateTime &day, QVector<DiaryDtlRec> lines) {
            gWORK_DATE = Value(day);
            DiaryDay d;
            d.load(gFMR_ID, day);
            for (DiaryDtlRec &l : lines)
                l.WORK_DATE = Value(day);
            d.dtl = lines;
            d.save();
        };
        saveDay(DateUtil::make(2024, 5, 6), {spraying(1, 2, Value(250), 1)});       // 0.25 kg
        saveDay(DateUtil::make(2024, 5, 7), {spraying(2, 2, Value(0.5), 2),          // 0.5 kg
                                             spraying(2, 1, Value(-20), 1)});        // a correction of lot 1
        QCOMPARE(lot(2, "USED_QTY"), 0.75);
        QCOMPARE(lot(2, "REST_QTY"), 1.25);
        QCOMPARE(lot(1, "USED_QTY"), -20.0);
        QCOMPARE(lot(1, "REST_QTY"), 520.0);
        QCOMPARE(lot(3, "REST_QTY"), 1.0);
        // the only use of lot 1 is removed: its count stays until the start-up reset
        saveDay(DateUtil::make(2024, 5, 7), {spraying(2, 2, Value(0.5), 2)});
        QCOMPARE(lot(1, "USED_QTY"), -20.0);
        ResetUnusedChemi(Value(1));
        QCOMPARE(lot(1, "USED_QTY"), 0.0);
        QCOMPARE(lot(1, "REST_QTY"), 500.0);
        QCOMPARE(lot(2, "USED_QTY"), 0.75);
    }

    // The lots of a day are recounted several a statement: each gets its
    // own sum, past the end of a statement too, and the others stay.
    void aDayOfManyLotsIsRecountedWhole()
    {
        TestRoot root;
        constexpr int kLots = 120;
        for (int id = 1; id <= kLots + 1; ++id)
            Build::lot(id, "剤").set("PUR_QTY", 1000).set("PUR_UNIT", 1).set("USED_QTY", Value(5)).set("REST_QTY", 995).add();
        for (int id = 1; id <= kLots; ++id)
            Build::diaryLine(kDay, id, WorkKbn::Spraying).set("CHEMI_ID", id).set("QTY", id * 2).set("UNIT_ID", 1).add();
        const AppError e = failureOf([] { RecountChemiUse(Value(1), kDayTime); });
        QVERIFY2(e.number() == 0, qPrintable(e.text()));
        for (int id : {1, 49, 50, 51, 100, 101, kLots}) {
            QCOMPARE(lot(id, "USED_QTY"), id * 2.0);
            QCOMPARE(lot(id, "REST_QTY"), 1000 - id * 2.0);
        }
        QCOMPARE(lot(kLots + 1, "USED_QTY"), 5.0); // not used that day
    }

    void linesAddedAndRemoved()
    {
        DiaryDay d;
        d.day.FMR_ID = Value(1);
        d.day.WORK_DATE = Value(kDayTime);
        // the first line goes into the blank slot
        QCOMPARE(d.addDetail(Value(1)), 0);
        QCOMPARE(d.addDetail(Value(2)), 1);
        QCOMPARE(d.addDetail(Value(1)), 2);
        QCOMPARE(d.linesOf(Value(1)), (QVector<int>{0, 2}));
        QCOMPARE(d.dtl[2].DTL_NO, Value(3));
        QCOMPARE(d.dtl[2].WORK_KBN, Value(0));
        // a middle line removed and another added: two lines numbered 3,
        // and the first of them is found
        QVERIFY(!d.removeDetail(1));
        QCOMPARE(d.addDetail(Value()), 2);
        QCOMPARE(d.findDetail(Value(3)), 1);
        QVERIFY(d.linesOf(Value(2)).isEmpty());
        // the last line removed leaves the blank slot
        d.dtl.resize(1);
        d.removeDetail(0);
        QCOMPARE(d.dtl.size(), 1);
        QVERIFY(!hasValue(d.dtl[0].DTL_NO));
    }

    void removingALineTakesItsSlip()
    {
        gLEDGE_ROWS = {blankLedgeRow(), blankLedgeRow()};
        gLEDGE_ROWS[0][LedgeCol::LEDGE_ID] = Value(4);
        gLEDGE_ROWS[1][LedgeCol::LEDGE_ID] = Value(7);
        DiaryDay d;
        d.dtl = {spraying(1, 1, Value(10), 1), spraying(1, 1, Value(10), 1)};
        d.dtl[0].LEDGE_ID = Value(7);
        d.dtl[1].LEDGE_ID = Value(0);
        QVERIFY(d.removeDetail(0));
        QCOMPARE(gLEDGE_ROWS.size(), 1);
        QCOMPARE(gLEDGE_ROWS[0][LedgeCol::LEDGE_ID], Value(4));
        QVERIFY(!d.removeDetail(0)); // no slip of its own
        QCOMPARE(gLEDGE_ROWS.size(), 1);
    }

    void purposesOfALot_data() { registrationRows(); }
    void purposesOfALot()
    {
        QFETCH(QString, regNo);
        QFETCH(bool, purposes);
        TestRoot root;
        seedDay();
        setRegistration(regNo);
        const QStringList listed = DiaryLists::purposesOfLot(Value(1));
        QCOMPARE(!listed.isEmpty(), purposes);
        QStringList sorted = listed;
        sorted.sort();
        QCOMPARE(listed, sorted);
        // no lot chosen: the empty entry carries 0
        QVERIFY(DiaryLists::purposesOfLot(Value(0)).isEmpty());
    }

    void listsOfTheDay()
    {
        TestRoot root;
        seedDay();
        Build::lot(5, "他の人の剤").set("FMR_ID", 2).set("CHK_FLG", true).add();
        Build::lot(6, "使い切り").set("CHK_FLG", false).add();
        // the plantings alive on the day: the cabbage ended in April
        QCOMPARE(texts(DiaryLists::plantingsAlive(Value(1), kDayTime)), (QStringList{"春トマト", "露地なす"}));
        QCOMPARE(texts(DiaryLists::plantingsAlive(Value(1), DateUtil::make(2024, 4, 30))),
                 (QStringList{"冬キャベツ", "春トマト", "露地なす"}));
        QVERIFY(DiaryLists::plantingsAlive(Value(2), kDayTime).isEmpty());
        QCOMPARE(texts(DiaryLists::plantingsOfMonth(Value(1), QDate(2024, 3, 1))), QStringList{"冬キャベツ"});
        // the lots switched on, any farmer's, the purchase day in front
        QCOMPARE(texts(DiaryLists::lotsInUse()),
                 (QStringList{"他の人の剤", "4/4見本乳剤", "4/4見本微量剤", "4/2見本水和剤", "4/3見本粒剤"}));
        QCOMPARE(DiaryLists::lotsInUse().at(3).id, Value(1));
        // the planting as the day shows it
        const DiaryLists::Planting p = DiaryLists::planting(Value(1));
        QVERIFY(p.found);
        QCOMPARE(p.crop, QStringLiteral("桃太郎"));
        QCOMPARE(p.harvest, QStringLiteral("2024/07"));
        QCOMPARE(p.planted, QStringLiteral("2024/04/05"));
        QCOMPARE(p.area, QStringLiteral("12.5"));
        QVERIFY(!DiaryLists::planting(Value(99)).found);
    }

    void workNamesOfTheCropFirst()
    {
        TestRoot root;
        seedDay();
        Build::planting(4, "O'Henryトマト").set("CROP_NM", "O'トマト").add();
        Build::diaryLine(QDate(2024, 4, 9), 1, WorkKbn::Spraying).set("PLANT_ID", 2).set("WORK_NM", "なす消毒").add();
        Build::diaryLine(QDate(2024, 4, 10), 1, WorkKbn::Spraying).set("PLANT_ID", 1).set("WORK_NM", "トマト消毒").add();
        Build::diaryLine(QDate(2024, 4, 10), 2, WorkKbn::Spraying).set("PLANT_ID", 1).set("WORK_NM", "アブラムシ防除").add();
        Build::diaryLine(QDate(2024, 4, 11), 1, WorkKbn::Spraying).set("PLANT_ID", 4).set("WORK_NM", "O'消毒").add();
        Build::diaryLine(QDate(2024, 4, 11), 2, 3).set("PLANT_ID", 1).set("WORK_NM", "摘芯").add();
        QCOMPARE(DiaryLists::workNames(Value(1), Value(1), Value(WorkKbn::Spraying)),
                 (QStringList{"アブラムシ防除", "トマト消毒", "O'消毒", "なす消毒"}));
        // a crop with a quote in its name
        QCOMPARE(DiaryLists::workNames(Value(1), Value(4), Value(WorkKbn::Spraying)).first(), QStringLiteral("O'消毒"));
        QCOMPARE(DiaryLists::workNames(Value(1), Value(1), Value(3)), QStringList{"摘芯"});
        QVERIFY(DiaryLists::workNames(Value(1), Value(1), Value()).isEmpty());
    }
};

TILLORA_RULES_TEST_MAIN(TestDiaryDay)
#include "tst_diaryday.moc"
