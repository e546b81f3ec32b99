// The day's book pages without their screen: the columns per book, the lines
// and balances of a page, the balance brought forward from the database, and
// a slip told from a book's side, both ways.

#include "base/Globals.h"
#include "rules/books/Ledger.h"
#include "rules/common/Ids.h"
#include "rules/diary/BookPage.h"
#include "support/Build.h"
#include "support/RulesTest.h"

#include <QtTest/QTest>

namespace {

const QDateTime kDay = DateUtil::make(2024, 5, 8);

LedgeRow row(int id, const Value &debit, const Value &credit, const Value &amt)
{
    LedgeRow r = blankLedgeRow();
    r[LedgeCol::FMR_ID] = Value(1);
    r[LedgeCol::LEDGE_ID] = Value(id);
    r[LedgeCol::LEDGE_DATE] = Value(kDay);
    r[LedgeCol::D_ACC_ID] = debit;
    r[LedgeCol::C_ACC_ID] = credit;
    r[LedgeCol::AMT] = amt;
    return r;
}

QString lines(const BookPage::Page &p)
{
    QStringList out;
    for (const auto &l : p.lines)
        out << QStringLiteral("%1:%2/%3/%4").arg(l.account, l.first.toString(), l.second.toString(), l.balance.toString());
    return out.join(QLatin1Char(' '));
}

QString name(const Value &id) { return QString::number(Nz(id, Value(0)).toLong()); }

QStringList ids(const QVector<LedgeRow> &rows)
{
    QStringList out;
    for (const LedgeRow &r : rows)
        out << textOf(r[LedgeCol::LEDGE_ID]);
    return out;
}

} // namespace

class TestBookPage : public QObject {
    Q_OBJECT
private slots:
    void columnsPerBook()
    {
        QCOMPARE(BookPage::headingsFor(1000).first, QStringLiteral("入金"));
        QCOMPARE(BookPage::headingsFor(1010).second, QStringLiteral("払出"));
        QCOMPARE(BookPage::headingsFor(1040).second, QStringLiteral("回収"));
        QCOMPARE(BookPage::headingsFor(2000).second, QStringLiteral("支払"));
        QCOMPARE(BookPage::headingsFor(1020).first, QStringLiteral("預入"));
        QVERIFY(BookPage::headingsFor(1040).amounts);
        QVERIFY(!BookPage::headingsFor(1041).amounts);
        QVERIFY(!BookPage::headingsFor(4000).amounts);
        QCOMPARE(Ledger::amountText(Currency::fromDouble(1234567.5)), QStringLiteral("1,234,568"));
        QCOMPARE(Ledger::amountText(Currency::fromInt(-1200)), QStringLiteral("-1,200"));
        QCOMPARE(Ledger::amountText(Currency()), QStringLiteral("0"));
    }

    void pagesOfADay()
    {
        // a cash sale between 1000 and 1040 is on both pages; the pesticide
        // cost slip is on none; a slip on both sides of the book counts once,
        // on its credit side; a slip with no accounts is passed over
        const QVector<LedgeRow> rows = {row(1, Value(1000), Value(1040), Value(5000)),
                                        row(2, Value(4160), Value(1130), Value(700)),
                                        row(3, Value(4170), Value(1000), Value(1200)),
                                        row(4, Value(1000), Value(1000), Value(300)),
                                        row(5, Value::null(), Value::null(), Value(9)),
                                        row(6, Value(1000), Value(4000), Value::null())};
        const BookPage::Page cash = BookPage::compute(1000, rows, Currency::fromInt(10000), name);
        QCOMPARE(lines(cash), QStringLiteral("1040:5000/0/15000 4170:0/1200/13800 1000:0/300/13500 4000:0/0/13500"));
        QCOMPARE(cash.sumFirst, Currency::fromInt(5000));
        QCOMPARE(cash.sumSecond, Currency::fromInt(1500));
        QCOMPARE(cash.closing, Currency::fromInt(13500));
        const BookPage::Page recv = BookPage::compute(1040, rows, Currency(), name);
        QCOMPARE(lines(recv), QStringLiteral("1000:0/5000/-5000"));
        QVERIFY(BookPage::compute(1130, rows, Currency(), name).lines.size() == 1);
        QVERIFY(BookPage::compute(2000, rows, Currency(), name).lines.isEmpty());
        // the payables: a purchase on credit arises, a payment pays
        const QVector<LedgeRow> pay = {row(1, Value(4130), Value(2000), Value(8000)),
                                       row(2, Value(2000), Value(1010), Value(3000))};
        QCOMPARE(lines(BookPage::compute(2000, pay, Currency::fromInt(100), name)),
                 QStringLiteral("4130:8000/0/8100 1010:0/3000/5100"));
    }

    void balancesBroughtForwardFromTheDatabase()
    {
        TestRoot root;
        Build::slip(1, QDate(2024, 5, 1), 1000, 4000, 20000).add();
        Build::slip(2, QDate(2024, 5, 7), 4170, 1000, 2500).add();
        Build::slip(3, QDate(2024, 5, 8), 1000, 1040, 999).add(); // the day itself: not brought forward
        Build::slip(4, QDate(2024, 5, 2), 4130, 2000, 4000).add();
        Build::slip(5, QDate(2024, 5, 3), 2000, 1010, 1500).add();
        QCOMPARE(BookPage::broughtForward(Value(1), kDay, 1000), Currency::fromInt(17500));
        QCOMPARE(BookPage::broughtForward(Value(1), kDay, 2000), Currency::fromInt(2500));
        QCOMPARE(BookPage::broughtForward(Value(1), kDay, 1010), Currency::fromInt(-1500));
        QCOMPARE(BookPage::broughtForward(Value(2), kDay, 1000), Currency());
        // a day with no slips: brought forward is the closing balance
        const BookPage::Page empty = BookPage::compute(1000, {blankLedgeRow()}, Currency::fromInt(17500), name);
        QCOMPARE(empty.closing, Currency::fromInt(17500));
        QCOMPARE(empty.sumFirst, Currency());
        QCOMPARE(empty.sumSecond, Currency());
    }

    void theSidesFollowTheAmount()
    {
        LedgeRow r = row(7, Value(1000), Value::null(), Value::null());
        BookPage::SlipEntry e;
        e.otherAcc = Value(4000);
        e.ownOptName = Value("売上");
        e.left = QStringLiteral("3000");
        BookPage::applyEntry(r, 1000, e);
        QCOMPARE(r[LedgeCol::D_ACC_ID], Value(1000));
        QCOMPARE(r[LedgeCol::C_ACC_ID], Value(4000));
        QCOMPARE(r[LedgeCol::D_OPT_NM], Value("売上"));
        QCOMPARE(r[LedgeCol::AMT], Value("3000"));
        // from the left amount to the right: debit and credit change places
        e.left = QStringLiteral("0");
        e.right = QStringLiteral("3000");
        BookPage::applyEntry(r, 1000, e);
        QCOMPARE(r[LedgeCol::D_ACC_ID], Value(4000));
        QCOMPARE(r[LedgeCol::C_ACC_ID], Value(1000));
        QCOMPARE(r[LedgeCol::C_OPT_NM], Value("売上"));
        // the payables the other way round
        e.left = QStringLiteral("500");
        BookPage::applyEntry(r, 2000, e);
        QCOMPARE(r[LedgeCol::C_ACC_ID], Value(2000));
        // an amount is a number above 0
        QVERIFY(BookPage::carriesAmount(QStringLiteral("0.5")));
        for (const char *none : {"", "0", "-300", "三千"})
            QVERIFY2(!BookPage::carriesAmount(QString::fromUtf8(none)), none);
        // no amount: the slip stays as it was
        LedgeRow blank = row(8, Value(1000), Value::null(), Value::null());
        e.left = e.right = QString();
        BookPage::applyEntry(blank, 1000, e);
        QVERIFY(blank[LedgeCol::C_ACC_ID].isNull());
        QVERIFY(blank[LedgeCol::AMT].isNull());
    }

    // What the entry shows of a slip, and that entering it again as shown
    // gives the slip back.
    void aSlipAsItsBookShowsIt_data()
    {
        QTest::addColumn<int>("book");
        QTest::addColumn<int>("debit");
        QTest::addColumn<int>("credit");
        QTest::addColumn<QString>("shown"); // other account, left, right
        QTest::newRow("cash in") << 1000 << 1000 << 4000 << "4000 1500 -";
        QTest::newRow("cash out") << 1000 << 4170 << 1000 << "4170 - 1500";
        QTest::newRow("deposit from receivables") << 1010 << 1010 << 1040 << "1040 1500 -";
        QTest::newRow("payables arising") << 2000 << 4130 << 2000 << "4130 1500 -";
        QTest::newRow("payables paid") << 2000 << 2000 << 1010 << "1010 - 1500";
    }
    void aSlipAsItsBookShowsIt()
    {
        QFETCH(int, book);
        QFETCH(int, debit);
        QFETCH(int, credit);
        QFETCH(QString, shown);
        LedgeRow slip = row(3, Value(debit), Value(credit), Value("1500"));
        slip[LedgeCol::D_OPT_ID] = Value(11);
        slip[LedgeCol::D_OPT_NM] = Value("借方の名");
        slip[LedgeCol::C_OPT_ID] = Value(22);
        slip[LedgeCol::C_OPT_NM] = Value("貸方の名");
        const BookPage::SlipView v = BookPage::viewOf(slip, book);
        auto orDash = [](const QString &t) { return t.isEmpty() ? QStringLiteral("-") : t; };
        QCOMPARE(QStringLiteral("%1 %2 %3").arg(textOf(v.entry.otherAcc), orDash(v.entry.left), orDash(v.entry.right)), shown);
        QCOMPARE(v.bookDebited, debit == book);
        // the book's own side names the book's option; a slip read from its
        // debit side shows D_OPT_ID in both option lists
        QCOMPARE(v.entry.ownOptName, Value(v.bookDebited ? "借方の名" : "貸方の名"));
        QCOMPARE(v.entry.otherOptId, Value(v.bookDebited ? 22 : 11));
        QCOMPARE(v.entry.ownOptId, Value(11));
        if (v.bookDebited) {
            LedgeRow again = row(3, Value(), Value(), Value());
            BookPage::applyEntry(again, book, v.entry);
            for (int c : {LedgeCol::D_ACC_ID, LedgeCol::C_ACC_ID, LedgeCol::AMT, LedgeCol::D_OPT_ID, LedgeCol::C_OPT_ID,
                          LedgeCol::D_OPT_NM, LedgeCol::C_OPT_NM})
                QCOMPARE(textOf(again[c]), textOf(slip[c]));
        }
    }

    void slipsEnteredOnAPage()
    {
        TestRoot root;
        Build::slip(40, QDate(2024, 4, 30), 1000, 4000, 100).add();
        QVector<LedgeRow> rows = {blankLedgeRow()};
        // a new slip: above every saved number, the book on the debit
        LedgeRow first = BookPage::slipToEdit(rows, Mode::Add, -1, Value(1), Value(kDay), Acc::Deposit);
        QCOMPARE(first[LedgeCol::LEDGE_ID], Value(41));
        QCOMPARE(first[LedgeCol::D_ACC_ID], Value(Acc::Deposit));
        QCOMPARE(first[LedgeCol::LEDGE_DATE], Value(kDay));
        QVERIFY(first[LedgeCol::AMT].isNull());
        BookPage::putSlip(rows, first, Mode::Add, -1);
        QCOMPARE(ids(rows), QStringList{"41"}); // into the blank slot
        // the next one comes after the day's slip not saved yet
        const LedgeRow second = BookPage::slipToEdit(rows, Mode::Add, -1, Value(1), Value(kDay), Acc::Cash);
        QCOMPARE(second[LedgeCol::LEDGE_ID], Value(42));
        BookPage::putSlip(rows, second, Mode::Add, -1);
        QCOMPARE(ids(rows), (QStringList{"41", "42"}));
        QCOMPARE(BookPage::rowOfSlip(rows, Value("42")), 1);
        QCOMPARE(BookPage::rowOfSlip(rows, Value(7)), -1);
        QCOMPARE(BookPage::rowOfSlip(rows, Value()), -1);
        // a change replaces its row; opened for a change, it is the row as it was
        LedgeRow changed = BookPage::slipToEdit(rows, Mode::Change, 0, Value(1), Value(kDay), Acc::Deposit);
        QCOMPARE(changed, rows[0]);
        changed[LedgeCol::NOTES] = Value("直した");
        BookPage::putSlip(rows, changed, Mode::Change, 0);
        QCOMPARE(rows[0][LedgeCol::NOTES], Value("直した"));
        // a deletion here removes nothing
        BookPage::putSlip(rows, rows[1], Mode::Delete, 1);
        QCOMPARE(ids(rows), (QStringList{"41", "42"}));
    }
};

TILLORA_RULES_TEST_MAIN(TestBookPage)
#include "tst_bookpage.moc"
