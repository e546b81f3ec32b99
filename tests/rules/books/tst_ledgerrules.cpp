// The rules of the books without a window: the criteria of the slip list and
// the account ledger, the dates they refuse, the opening balance over every
// farmer, raise and lower by the account's side, the list and ledger as read
// (rows, page, count and sums), the slip an entry starts from, the amount as
// typed, the lists to choose from, who may change a slip, and the save of a
// slip found by its number alone.

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "rules/books/Ledger.h"
#include "rules/books/TrialBalance.h"
#include "rules/common/Ids.h"
#include "store/Database.h"
#include "support/Build.h"
#include "support/RulesTest.h"
#include "support/TestRoot.h"

#include "rules/books/SeedSlips.h"

#include <QtTest/QTest>

namespace {

int slipCount() { return gDB->DCount(QStringLiteral("*"), QStringLiteral("D_LEDGE"), QString()).toLong(); }

QString ids(const QVector<LedgeRow> &rows)
{
    QStringList out;
    for (const LedgeRow &r : rows)
        out << textOf(r[LedgeCol::LEDGE_ID]);
    return out.join(QLatin1Char(' '));
}

QString names(const QVector<Choice> &choices)
{
    QStringList out;
    for (const Choice &c : choices)
        out << textOf(c.id) + QLatin1Char(':') + c.text;
    return out.join(QLatin1Char(' '));
}

// The filter of farmer 1 in May 2024.
Ledger::Filter may2024(int account = 0)
{
    Ledger::Filter f;
    f.fmrId = Value(1);
    f.accId = account ? Value(account) : Value::null();
    f.from = QStringLiteral("2024/05/01");
    f.to = QStringLiteral("2024/05/31");
    f.year = QStringLiteral("2024");
    return f;
}

} // namespace

class TestLedgerRules : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        gFMR_ID = Value(1);
        gLEDGE_ROWS.clear();
    }

    void criteriaOfTheList()
    {
        Ledger::Filter f;
        f.fmrId = Value(1);
        QCOMPARE(Ledger::listCriteria(f).sql(), QStringLiteral(" D_LEDGE.FMR_ID=1"));
        // the empty first entry of the accounts is no account
        f.accId = Value(0);
        QCOMPARE(Ledger::listCriteria(f).sql(), QStringLiteral(" D_LEDGE.FMR_ID=1"));
        f.accId = Value(1000);
        f.ctr = QStringLiteral("O'Neil");
        f.from = QStringLiteral("2024/05/01");
        f.to = QStringLiteral("2024/05/31");
        f.year = QStringLiteral("2024");
        QCOMPARE(Ledger::listCriteria(f).sql(),
                 QStringLiteral(" D_LEDGE.FMR_ID=1 AND ((D_LEDGE.D_ACC_ID=1000) OR (D_LEDGE.C_ACC_ID=1000)) AND  "
                                "D_LEDGE.CTR_NM LIKE '%O''Neil%' AND  D_LEDGE.LEDGE_DATE>=#2024/05/01# AND  "
                                "D_LEDGE.LEDGE_DATE<=#2024/05/31# AND  D_LEDGE.LEDGE_DATE>=#2024/01/01#"));
        QCOMPARE(Ledger::listSql(Stmt(" X")).sql(),
                 QStringLiteral("SELECT D_LEDGE.* FROM D_LEDGE WHERE  X ORDER BY D_LEDGE.LEDGE_DATE, D_LEDGE.LEDGE_ID"));
        QCOMPARE(Ledger::countSql(Stmt(" X")).sql(),
                 QStringLiteral("SELECT COUNT(*), SUM(D_LEDGE.AMT) FROM D_LEDGE WHERE  X"));
        // the opening balance: no farmer, no account, before the start date
        QCOMPARE(Ledger::openingCriteria(f, Value(1)).sql(),
                 QStringLiteral(" D_LEDGE.CTR_NM LIKE '%O''Neil%' AND  D_LEDGE.LEDGE_DATE<#2024/05/01#"));
        QCOMPARE(Ledger::openingCriteria(f, Value(2)).sql(),
                 QStringLiteral(" D_LEDGE.CTR_NM LIKE '%O''Neil%' AND  D_LEDGE.LEDGE_DATE<#2024/05/01# AND  "
                                "D_LEDGE.LEDGE_DATE>=#2024/01/01#"));
        // without a start date only undated slips
        f.ctr.clear();
        f.from.clear();
        QCOMPARE(Ledger::openingCriteria(f, Value(1)).sql(), QStringLiteral(" D_LEDGE.LEDGE_DATE IS NULL"));
        // a farmer or an account that is no number finds nothing
        f.fmrId = Value(QStringLiteral("第1号"));
        f.accId = Value(QStringLiteral("x"));
        f.to.clear();
        f.year.clear();
        QCOMPARE(Ledger::listCriteria(f).sql(),
                 QStringLiteral(" D_LEDGE.FMR_ID=0 AND ((D_LEDGE.D_ACC_ID=0) OR (D_LEDGE.C_ACC_ID=0))"));
    }

    void datesAsTyped_data()
    {
        QTest::addColumn<int>("field"); // 1 from, 2 to, 3 year
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("term"); // "" when refused
        QTest::newRow("day") << 1 << "2024/5/2" << " D_LEDGE.LEDGE_DATE>=#2024/05/02#";
        QTest::newRow("full-width") << 2 << "２０２４/０５/３１" << " D_LEDGE.LEDGE_DATE<=#2024/05/31#";
        QTest::newRow("year") << 3 << "2023" << " D_LEDGE.LEDGE_DATE>=#2023/01/01#";
        QTest::newRow("no day") << 1 << "2024/02/30" << "";
        QTest::newRow("a quote") << 1 << "'" << "";
        QTest::newRow("a hash") << 2 << "a#b" << "";
        QTest::newRow("digits") << 2 << "１２３" << "";
        QTest::newRow("statement") << 1 << "2024/05/01# OR 1=1 OR #1" << "";
        QTest::newRow("year of words") << 3 << "今年" << "";
    }

    // A date or year is put in as a date or refused with the date error
    // before any statement runs.
    void datesAsTyped()
    {
        QFETCH(int, field);
        QFETCH(QString, typed);
        QFETCH(QString, term);
        Ledger::Filter f;
        f.fmrId = Value(1);
        (field == 1 ? f.from : field == 2 ? f.to : f.year) = typed;
        if (term.isEmpty()) {
            try {
                Ledger::listCriteria(f);
                QFAIL("taken");
            } catch (const AppError &e) {
                QCOMPARE(e.number(), VbErr::DateSyntax);
            }
        } else {
            QCOMPARE(Ledger::listCriteria(f).sql(), QStringLiteral(" D_LEDGE.FMR_ID=1 AND ") + term);
        }
    }

    void anEmptyYearIsNoDateForAnAccountThatStartsEachYear()
    {
        Ledger::Filter f;
        f.from = QStringLiteral("2024/05/01");
        QCOMPARE(Ledger::openingCriteria(f, Value(1)).sql(), QStringLiteral(" D_LEDGE.LEDGE_DATE<#2024/05/01#"));
        try {
            Ledger::openingCriteria(f, Value(2));
            QFAIL("taken");
        } catch (const AppError &e) {
            QCOMPARE(e.number(), VbErr::DateSyntax);
            QVERIFY2(e.text().contains(QStringLiteral("/01/01")), qPrintable(e.text()));
        }
    }

    void raiseAndLowerBySide()
    {
        auto r = [](int d, int c, const Value &amt) {
            LedgeRow row = blankLedgeRow();
            row[LedgeCol::D_ACC_ID] = d ? Value(d) : Value::null();
            row[LedgeCol::C_ACC_ID] = Value(c);
            row[LedgeCol::AMT] = amt;
            return row;
        };
        const QVector<LedgeRow> rows = {r(1000, 4000, Value(500)), r(4110, 1000, Value(200)),
                                        r(1000, 1000, Value(70)), r(0, 1000, Value::null())};
        // a debit account: debits raise; a slip on both sides lowers once; no amount counts 0
        const Ledger::Page cash = Ledger::compute(Value(Acc::Cash), Value(1), rows, Currency::fromInt(1000));
        QStringList got;
        for (const Ledger::Line &l : cash.lines)
            got << QStringLiteral("%1:%2/%3/%4").arg(textOf(l.other), l.first.toString(), l.second.toString(),
                                                     l.balance.toString());
        QCOMPARE(got.join(QLatin1Char(' ')), QStringLiteral("4000:500/0/1500 4110:0/200/1300 1000:0/70/1230 :0/0/1230"));
        QCOMPARE(cash.closing, Currency::fromInt(1230));
        // a credit account raises by its credits, also on both sides
        QVERIFY(Ledger::raises(Value(2), Value(Acc::Cash), rows[2]));
        QVERIFY(!Ledger::raises(Value(2), Value(Acc::Sales), rows[1]));
        // an empty DC_KBN is a debit account
        QVERIFY(Ledger::raises(Value::null(), Value(Acc::Cash), rows[0]));
    }

    void openingBalanceOverAllFarmers()
    {
        TestRoot root;
        seedSlips();
        Ledger::Filter f;
        f.fmrId = Value(1);
        f.from = QStringLiteral("2024/05/01");
        f.year = QStringLiteral("2024");
        auto opening = [&f](int acc) {
            f.accId = Value(acc);
            const Ledger::AccountKinds k = Ledger::accountKinds(f.accId);
            return Ledger::openingBalance(f.accId, k.dcKbn, Ledger::openingCriteria(f, k.pgKbn)).toString();
        };
        // cash carries on: every farmer's cash before May, the undated not
        QCOMPARE(opening(Acc::Cash), QStringLiteral("12000"));
        // sales start again on 1 January, credits less debits
        QCOMPARE(opening(Acc::Sales), QStringLiteral("11000"));
        // a year before the start date reaches back to its own 1 January
        f.year = QStringLiteral("2023");
        QCOMPARE(opening(Acc::Sales), QStringLiteral("12000"));
        f.ctr = QStringLiteral("道の");
        QCOMPARE(opening(Acc::Sales), QStringLiteral("1000"));
        // without a start date, only the undated slips
        f.ctr.clear();
        f.from.clear();
        QCOMPARE(opening(Acc::Cash), QStringLiteral("10000"));
        QCOMPARE(opening(9999), QStringLiteral("0"));
    }

    void theListAndTheLedgerAsRead()
    {
        TestRoot root;
        seedSlips();
        // the slips of May: rows in date order, their count and sum
        Ledger::Listing slips = Ledger::readList(may2024(), false);
        QCOMPARE(ids(slips.rows), QStringLiteral("3 4 5 7"));
        QVERIFY(slips.counted);
        QCOMPARE(slips.count.toLong(), 4);
        QCOMPARE(slips.sum.toCurrency(), Currency::fromInt(6400));
        QVERIFY(slips.page.lines.isEmpty());

        // cash: a line a slip from the opening balance on; the opening and
        // the two sums give the closing balance
        const Ledger::Listing cash = Ledger::readList(may2024(Acc::Cash), true);
        QCOMPARE(ids(cash.rows), QStringLiteral("3 4 5 7"));
        QCOMPARE(cash.page.lines.size(), 4);
        QCOMPARE(cash.page.opening, Currency::fromInt(12000));
        QCOMPARE(cash.page.sumFirst, Currency::fromInt(5000));
        QCOMPARE(cash.page.sumSecond, Currency::fromInt(1400));
        QCOMPARE(cash.page.closing, cash.page.opening + cash.page.sumFirst - cash.page.sumSecond);
        QCOMPARE(cash.page.lines.last().balance, cash.page.closing);
        QCOMPARE(cash.count.toLong(), 4);

        // payables, a credit account: the payment lowers it
        const Ledger::Listing payables = Ledger::readList(may2024(Acc::Payable), true);
        QCOMPARE(ids(payables.rows), QStringLiteral("7"));
        QCOMPARE(payables.page.sumSecond, Currency::fromInt(400));
        QCOMPARE(payables.page.closing, Currency::fromInt(-400));

        // the ledger of no account reads nothing and counts nothing
        const Ledger::Listing none = Ledger::readList(may2024(), true);
        QVERIFY(none.rows.isEmpty());
        QVERIFY(!none.counted);

        // a month without slips: counted, no sum
        Ledger::Filter later = may2024();
        later.from = QStringLiteral("2030/01/01");
        later.to.clear();
        slips = Ledger::readList(later, false);
        QVERIFY(slips.rows.isEmpty());
        QCOMPARE(slips.count.toLong(), 0);
        QVERIFY(!hasValue(slips.sum));

        // after the list is read again: the slip saved last, else the first
        QCOMPARE(Ledger::rowToChoose(cash.rows, Value(5)), 2);
        QCOMPARE(Ledger::rowToChoose(cash.rows, Value(99)), 0);
        QCOMPARE(Ledger::rowToChoose(cash.rows, Value()), 0);
        QCOMPARE(Ledger::rowToChoose({}, Value(5)), -1);

        Ledger::AccountNames name;
        QCOMPARE(name(Value(Acc::Cash)) + name(Value(4110)) + name(Value(9999)) + name(Value::null()),
                 QStringLiteral("現金種苗費"));
    }

    void theSlipAnEntryStartsFrom()
    {
        LedgeRow source = blankLedgeRow();
        for (int c = 0; c < LedgeCol::Count; ++c)
            source[c] = Value(c + 1);
        source[LedgeCol::LEDGE_DATE] = Value(DateUtil::make(2024, 5, 2));
        // change, view and delete: the row as it is
        QCOMPARE(Ledger::startSlip(Mode::Change, source, Value(9)), source);
        QCOMPARE(Ledger::startSlip(Mode::Delete, source, Value(9)), source);
        // add and copy: a blank slip of today for the farmer; the kinds of
        // the sides and the stamps stay
        const LedgeRow copy = Ledger::startSlip(Mode::Add, source, Value(9));
        QStringList kept;
        for (int c = 0; c < LedgeCol::Count; ++c)
            if (hasValue(copy[c]))
                kept << QString::fromLatin1(LedgeCol::Names[c]);
        QCOMPARE(kept.join(QLatin1Char(' ')),
                 QStringLiteral("FMR_ID LEDGE_DATE D_OPT_KBN C_OPT_KBN IDATE LAST_TM HOLD_TM"));
        QCOMPARE(copy[LedgeCol::FMR_ID], Value(9));
        QCOMPARE(copy[LedgeCol::LEDGE_DATE], Value(DateUtil::today()));
        const LedgeRow fresh = Ledger::startSlip(Mode::Add, blankLedgeRow(), Value(1));
        QCOMPARE(fresh.size(), int(LedgeCol::Count));
        QVERIFY(!hasValue(fresh[LedgeCol::D_OPT_KBN]));
    }

    void amountAsTyped_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("amount"); // "-" for Null
        QTest::addColumn<QString>("refusal");
        QTest::newRow("empty") << "" << "-" << "";
        QTest::newRow("plain") << "1200" << "1200" << "";
        QTest::newRow("full-width with commas") << "１,２００" << "1200" << "";
        QTest::newRow("negative") << "-350" << "-350" << "";
        QTest::newRow("fraction") << "12.345" << "12.345" << "";
        QTest::newRow("the largest") << "922337203685477" << "922337203685477" << "";
        QTest::newRow("words") << "千円" << "" << "数値を入力してください。";
        QTest::newRow("too large") << "9999999999999999" << "" << "金額が大きすぎます。";
        QTest::newRow("too large below zero") << "-9e15" << "" << "金額が大きすぎます。";
    }

    void amountAsTyped()
    {
        QFETCH(QString, typed);
        QFETCH(QString, amount);
        QFETCH(QString, refusal);
        Value v(QStringLiteral("before"));
        QString refused;
        QVERIFY_THROWS_NO_EXCEPTION(refused = Ledger::readAmount(typed, v));
        QCOMPARE(refused, refusal);
        if (refusal.isEmpty())
            QCOMPARE(v.isNull() ? QStringLiteral("-") : v.toCurrency().toString(), amount);
        else
            QCOMPARE(v, Value(QStringLiteral("before")));
    }

    void listsToChooseFrom()
    {
        TestRoot root;
        Build::farmer(2, QStringLiteral("赤井 実")).add();
        Build::farmer(3, QStringLiteral("やめた人")).set("CHK_FLG", Value(false)).add();
        Build::planting(1, QStringLiteral("春トマト")).add();
        Build::planting(2, QStringLiteral("露地なす")).add();
        Build::planting(3, QStringLiteral("よそのなす")).set("FMR_ID", 2).add();
        Build::lot(1, QStringLiteral("ダコニール")).set("CHK_FLG", Value(true)).add();
        Build::lot(2, QStringLiteral("使い切り")).set("CHK_FLG", Value(false)).add();
        QCOMPARE(names(Ledger::farmers()), gMST->DLookup("FMR_NM", "M_FMR", "FMR_ID=1").toText().prepend("1:") +
                                               QStringLiteral(" 2:赤井 実"));
        const QVector<Choice> accounts = Ledger::accounts();
        QCOMPARE(accounts.first().text, QStringLiteral("現金"));
        QCOMPARE(accounts.size(), int(gWORK->DCount("*", "L_ACC", QString()).toLong()));
        // the kind of sub-account by the account
        QCOMPARE(Ledger::subAccountKind(Value(4110)), OptKbn::Planting);
        QCOMPARE(Ledger::subAccountKind(Value(Acc::PesticideStock)), OptKbn::PesticideLot);
        QCOMPARE(Ledger::subAccountKind(Value(Acc::Cash)), OptKbn::None);
        QCOMPARE(Ledger::subAccountKind(Value(0)), OptKbn::None);
        QCOMPARE(names(Ledger::subAccounts(OptKbn::Planting, Value(1))), QStringLiteral("1:春トマト 2:露地なす"));
        QCOMPARE(names(Ledger::subAccounts(OptKbn::PesticideLot, Value(1))), QStringLiteral("1:ダコニール"));
        QCOMPARE(names(Ledger::subAccounts(OptKbn::None, Value(1))), QString());
        QCOMPARE(names(Ledger::subAccounts(7, Value(1))), QString());
        // a farmer that is no number has nothing
        QCOMPARE(names(Ledger::subAccounts(OptKbn::Planting, Value(QStringLiteral("第1号")))), QString());
    }

    void whoMayChangeASlip()
    {
        TestRoot root;
        Build::diaryLine(QDate(2024, 5, 2), 1, 9).set("LEDGE_ID", 3).add();
        Build::lot(1, QStringLiteral("ダコニール")).set("LEDGE_ID", 4).add();
        Build::shipment(1, QDate(2024, 5, 20)).set("LEDGE_ID_S", 6).set("LEDGE_ID_F", 5).add();
        Build::lot(2, QStringLiteral("よその薬")).set("FMR_ID", 2).set("LEDGE_ID", 7).add();
        // the owner of each slip: diary line, lot, shipment (sale and fee), none
        QCOMPARE((QList<int>{ChkLedgeUse(Value(1), Value(3)), ChkLedgeUse(Value(1), Value(4)),
                             ChkLedgeUse(Value(1), Value(6)), ChkLedgeUse(Value(1), Value(5)),
                             ChkLedgeUse(Value(1), Value(8)), ChkLedgeUse(Value(1), Value(7)),
                             ChkLedgeUse(Value(2), Value(7))}),
                 (QList<int>{1, 2, 3, 3, 0, 0, 2}));
        auto slip = [](int id) {
            LedgeRow r = blankLedgeRow();
            r[LedgeCol::FMR_ID] = Value(1);
            r[LedgeCol::LEDGE_ID] = Value(id);
            return r;
        };
        QCOMPARE(Ledger::refusal(Mode::Change, slip(3)), QStringLiteral("この伝票は修正できません。日誌詳細から修正してください。"));
        QCOMPARE(Ledger::refusal(Mode::Delete, slip(4)), QStringLiteral("この伝票は削除できません。農薬入力から削除してください。"));
        QCOMPARE(Ledger::refusal(Mode::Change, slip(5)), QStringLiteral("この伝票は修正できません。出荷入力から修正してください。"));
        // viewing and copying are never refused; another farmer's line locks nothing
        for (int id : {3, 4, 5}) {
            QCOMPARE(Ledger::refusal(Mode::View, slip(id)), QString());
            QCOMPARE(Ledger::refusal(Mode::Add, slip(id)), QString());
        }
        QCOMPARE(Ledger::refusal(Mode::Delete, slip(7)), QString());
    }

    void slipNumbersGoOnFromTheFarmersLast()
    {
        TestRoot root;
        QCOMPARE(nextLedgeId(Value(1)), 1);
        Build::slip(1, QDate(2024, 1, 5), Acc::Cash, Acc::Sales, 1200.5).add();
        Build::slip(2, QDate(2024, 1, 7), Acc::Cash, Acc::Sales, 0.25).add();
        Build::slip(9, QDate(2024, 1, 6), Acc::Cash, Acc::Sales, 1).set("FMR_ID", 3).add();
        QCOMPARE(nextLedgeId(Value(1)), 3);
        QCOMPARE(nextLedgeId(Value(3)), 10);
        QCOMPARE(nextLedgeId(Value::null()), 1);
    }

    void saveFindsTheSlipByNumberAlone()
    {
        TestRoot root;
        setCompNameForTests(QStringLiteral("PC-9"));
        Build::slip(5, QDate(2024, 5, 1), Acc::Cash, Acc::Sales, 100).add();
        Build::slip(5, QDate(2024, 5, 1), Acc::Cash, Acc::Sales, 200).set("FMR_ID", 2).add();
        Build::slip(8, QDate(2024, 5, 1), Acc::Cash, Acc::Sales, 300).set("FMR_ID", 2).add();
        // a new slip of farmer 2 takes farmer 2's next number
        LedgeRow r = blankLedgeRow();
        r[LedgeCol::AMT] = Value(Currency::fromInt(50));
        r[LedgeCol::D_OPT_KBN] = Value(2);
        QVERIFY(Ledger::saveSlip(Mode::Add, r, Value(2), GetCompName()));
        QCOMPARE(slipText(2, 9, "AMT D_OPT_KBN LEDGE_DATE LAST_TM HOLD_TM UDATE"), QStringLiteral("50|2|-|PC-9|-|-"));
        QVERIFY(!slipField(2, 9, "IDATE").isNull());
        // a change of farmer 2's slip 5 (as read) lands on the first row of number 5
        r[LedgeCol::FMR_ID] = Value(2);
        r[LedgeCol::LEDGE_ID] = Value(5);
        QVERIFY(Ledger::rereadSlip(r));
        r[LedgeCol::AMT] = Value(Currency::fromInt(999));
        QVERIFY(Ledger::saveSlip(Mode::Change, r, Value(2), GetCompName()));
        QCOMPARE(slipText(1, 5, "AMT"), QStringLiteral("999"));
        QCOMPARE(slipText(2, 5, "AMT"), QStringLiteral("200"));
        // gone: nothing written
        r[LedgeCol::LEDGE_ID] = Value(77);
        QVERIFY(!Ledger::saveSlip(Mode::Change, r, Value(2), GetCompName()));
        QVERIFY(!Ledger::saveSlip(Mode::Delete, r, Value(2), GetCompName()));
        QCOMPARE(slipCount(), 4);
        // a deletion
        r[LedgeCol::LEDGE_ID] = Value(8);
        QVERIFY(Ledger::rereadSlip(r));
        QVERIFY(Ledger::saveSlip(Mode::Delete, r, Value(2), GetCompName()));
        QCOMPARE(slipCount(), 3);
        setCompNameForTests(QString());
    }

    void trialBalanceMonths()
    {
        QCOMPARE(accRepMonths(QDate(2024, 3, 15)), (QStringList{"2024/01", "2024/03"}));
        QCOMPARE(accRepMonths(QDate(2025, 12, 31)), (QStringList{"2025/01", "2025/12"}));
    }
};

TILLORA_RULES_TEST_MAIN(TestLedgerRules)
#include "tst_ledgerrules.moc"
