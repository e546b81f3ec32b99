// The trial balance, the income statement and the journal, checked against
// what is computed without them: ten generated years summed here slip by
// slip, and the journal of the same years read by hledger, whose balances
// must equal the trial balance on every account. Also the slips of the book
// tests for the carry-over and the fresh start of an account, the faulty
// slips that unbalance the book, the months as typed and the report's lines.

#include "base/Globals.h"
#include "rules/books/BookReports.h"
#include "rules/books/Journal.h"
#include "rules/books/TrialBalance.h"
#include "rules/common/Ids.h"
#include "store/Database.h"
#include "store/Recordset.h"
#include "support/Build.h"
#include "support/RulesTest.h"
#include "support/TestRoot.h"

#include "generate.h"
#include "rules/books/SeedSlips.h"

#include <QBuffer>
#include <QFile>
#include <QHash>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest/QTest>

#include <memory>

namespace {

using TrialBalance::Kind;

// An account's figures as the test sums them, each on the account's own side.
struct Sums {
    qint64 opening = 0, debit = 0, credit = 0, closing = 0;
};

// The farmer's slips summed one by one: before the period (from 1 January
// of its first year for an account with PG_KBN other than 1), in it, and
// what the income and expense accounts earned before that 1 January.
QHash<qint32, Sums> sumsByHand(const QDate &from, const QDate &to, qint64 &earlier)
{
    struct Acc {
        bool credit, carried;
    };
    QHash<qint32, Acc> chart;
    RecordsetPtr acc = gWORK->GetFwdOnlyRst(QStringLiteral("SELECT ACC_ID, DC_KBN, PG_KBN FROM L_ACC"));
    for (; !acc->eof(); acc->MoveNext())
        chart.insert(acc->Fields(0).toLong(), {acc->Fields(1).toLong() == 2, acc->Fields(2).toLong() == 1});
    acc->Close();
    QHash<qint32, Sums> out;
    earlier = 0;
    const QDate newYear(from.year(), 1, 1);
    RecordsetPtr rs = gDB->GetFwdOnlyRst(
        QStringLiteral("SELECT LEDGE_DATE, D_ACC_ID, C_ACC_ID, AMT FROM D_LEDGE WHERE FMR_ID=1"));
    for (; !rs->eof(); rs->MoveNext()) {
        if (rs->Fields(0).isNull())
            continue;
        const QDate day = rs->Fields(0).toDate().date();
        const qint64 amt = rs->Fields(3).toLong();
        for (int side = 1; side <= 2; ++side) {
            const qint32 id = rs->Fields(side).toLong();
            const Acc a = chart.value(id);
            const qint64 signedAmt = (side == 1) != a.credit ? amt : -amt; // raises its own side
            Sums &s = out[id];
            if (day > to)
                continue;
            if (day >= from) {
                (side == 1 ? s.debit : s.credit) += amt;
                s.closing += signedAmt;
            } else if (a.carried || day >= newYear) {
                s.opening += signedAmt;
                s.closing += signedAmt;
            } else {
                earlier += a.credit ? signedAmt : -signedAmt;
            }
        }
    }
    rs->Close();
    return out;
}

struct Run {
    int exitCode = -1;
    QString out, err;
};
Run run(const QString &program, const QStringList &args)
{
    QProcess p;
    p.start(program, args);
    Run r;
    if (!p.waitForFinished(120000))
        return r;
    r.exitCode = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.out = QString::fromUtf8(p.readAllStandardOutput());
    r.err = QString::fromUtf8(p.readAllStandardError());
    return r;
}

// Each account's balance as hledger reads the journal, debits positive.
QHash<QString, qint64> hledgerBalances(const QString &journal, bool strict)
{
    QStringList args{QStringLiteral("-f"), journal, QStringLiteral("bal"), QStringLiteral("-O"), QStringLiteral("csv")};
    if (strict)
        args << QStringLiteral("--strict");
    const Run r = run(QStringLiteral("hledger"), args);
    if (r.exitCode != 0)
        qWarning("hledger bal: %s", qPrintable(r.err));
    QHash<QString, qint64> out;
    for (QString line : r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        line.remove(QLatin1Char('"'));
        const QStringList cells = line.split(QLatin1Char(','));
        if (cells.size() != 2 || cells[0] == QLatin1String("account") || cells[0] == QLatin1String("total"))
            continue;
        out.insert(cells[0], QString(cells[1]).remove(QStringLiteral("¥")).toLongLong());
    }
    return out;
}

// The trial balance of the command, as hledger would show it: debits positive.
QHash<QString, qint64> commandBalances(const QString &root, const QString &from, const QString &to)
{
    const Run r = run(QStringLiteral(TILLORA_ADMIN), {QStringLiteral("trial-balance"), QStringLiteral("--root"), root,
                                                      QStringLiteral("--from"), from, QStringLiteral("--to"), to});
    QHash<QString, qint64> out;
    for (const QString &line : r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QStringList c = line.split(QLatin1Char('\t'));
        if (c.size() != 7 || c[0] == QStringLiteral("合計"))
            continue;
        const bool debitSide = c[0] == QStringLiteral("資産") || c[0] == QStringLiteral("費用");
        out.insert(c[0] + QLatin1Char(':') + c[2], debitSide ? c[6].toLongLong() : -c[6].toLongLong());
    }
    return out;
}

QString rowText(const TablePages::Row &r) { return r.cells.join(QLatin1Char('|')); }

} // namespace

class TestTrialBalance : public QObject {
    Q_OBJECT

    std::unique_ptr<TestRoot> mTen; // ten generated years, made once per engine
    QTemporaryDir mOut;

    void tenYears()
    {
        if (!mTen) {
            mTen = std::make_unique<TestRoot>();
            BenchData::generate(*gDB->engine(), *gWORK->engine(), *gMST->engine());
        }
        gFMR_ID = Value(1);
    }

private slots:
    void cleanupTestCase() { mTen.reset(); }

    void aGeneratedPeriodAgreesWithItsSlips_data()
    {
        QTest::addColumn<QDate>("from");
        QTest::addColumn<QDate>("to");
        QTest::newRow("a year") << QDate(2024, 1, 1) << QDate(2024, 12, 31);
        // income and expenses bring in January to March of 2021
        QTest::newRow("across years") << QDate(2021, 4, 1) << QDate(2023, 9, 30);
    }

    void aGeneratedPeriodAgreesWithItsSlips()
    {
        QFETCH(QDate, from);
        QFETCH(QDate, to);
        tenYears();
        qint64 earlier = 0;
        const QHash<qint32, Sums> expected = sumsByHand(from, to, earlier);
        const TrialBalance::Sheet sheet = TrialBalance::compute(Value(1), from, to);
        int active = 0;
        for (const TrialBalance::Line &l : sheet.lines) {
            if (l.accId == 0) {
                QCOMPARE(l.name, TrialBalance::earlierYearsName());
                QCOMPARE(l.closing, Currency::fromInt(earlier));
                continue;
            }
            const Sums s = expected.value(l.accId);
            const QString got = QStringLiteral("%1 %2 %3 %4 %5")
                                    .arg(l.accId)
                                    .arg(l.opening.toString(), l.debit.toString(), l.credit.toString(),
                                         l.closing.toString());
            QCOMPARE(got, QStringLiteral("%1 %2 %3 %4 %5").arg(l.accId).arg(s.opening).arg(s.debit).arg(s.credit).arg(s.closing));
            active += l.active();
        }
        QVERIFY(active > 20);
        QVERIFY(earlier != 0);
        QVERIFY(sheet.balanced());
        QVERIFY(sheet.faults.isEmpty());
        QVERIFY(sheet.slips > 2000);
    }

    // The journal as the command writes it, read by hledger: it passes the
    // checks, and every account's balance is the trial balance's, for all
    // the years and for a period that starts with the balances brought in.
    void hledgerReadsTheJournal()
    {
        tenYears();
        const QString all = mOut.filePath(QStringLiteral("all-%1.journal").arg(TestEnv::engineName()));
        const QString part = mOut.filePath(QStringLiteral("part-%1.journal").arg(TestEnv::engineName()));
        for (const auto &[file, args] :
             {std::pair<QString, QStringList>{all, {}},
              {part, {QStringLiteral("--from"), QStringLiteral("2021-04-01"), QStringLiteral("--to"), QStringLiteral("2023-09-30")}}}) {
            const Run r = run(QStringLiteral(TILLORA_ADMIN),
                              QStringList{QStringLiteral("journal"), QStringLiteral("--root"), mTen->root()} + args);
            QCOMPARE(r.exitCode, 0);
            QVERIFY2(r.err.isEmpty(), qPrintable(r.err));
            QFile f(file);
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write(r.out.toUtf8());
        }
        // The second engine writes the very same text as the first, which
        // hledger has read already.
        const QString first = mOut.filePath(QStringLiteral("all-sqlite.journal"));
        if (TestEnv::engine() == TestEngine::Mysql && QFile::exists(first)) {
            for (const QString &name : {QStringLiteral("all-%1.journal"), QStringLiteral("part-%1.journal")}) {
                QFile a(mOut.filePath(name.arg(QStringLiteral("sqlite")))), b(mOut.filePath(name.arg(TestEnv::engineName())));
                QVERIFY(a.open(QIODevice::ReadOnly) && b.open(QIODevice::ReadOnly));
                QVERIFY(a.readAll() == b.readAll());
            }
            return;
        }
        const Run check = run(QStringLiteral("hledger"), {QStringLiteral("-f"), all, QStringLiteral("check")});
        QVERIFY2(check.exitCode == 0, qPrintable(check.err));

        const QHash<QString, qint64> whole = hledgerBalances(all, false);
        QCOMPARE(whole.size(), 31);
        QCOMPARE(whole, commandBalances(mTen->root(), QStringLiteral("2016-01"), QStringLiteral("2025-12")));

        // the opening transaction holds the earlier years' result
        const QHash<QString, qint64> period = hledgerBalances(part, true);
        QVERIFY(period.contains(QStringLiteral("資本:") + TrialBalance::earlierYearsName()));
        QCOMPARE(period, commandBalances(mTen->root(), QStringLiteral("2021-04"), QStringLiteral("2023-09")));
    }

    // The book tests' slips in May 2024: cash carries on from last year,
    // sales start on 1 January and last year's sale stands as the earlier
    // years' result; the undated slip and another farmer's count nowhere.
    // Slips without an account or an amount are listed and unbalance the book.
    void carryOverRestartAndFaults()
    {
        TestRoot root;
        seedSlips();
        const QDate from(2024, 5, 1), to(2024, 5, 31);
        auto lines = [](const TrialBalance::Sheet &s) {
            QStringList out;
            for (const TrialBalance::Line &l : s.lines)
                if (l.active())
                    out << QStringLiteral("%1 %2 %3/%4/%5/%6")
                               .arg(TrialBalance::kindName(l.kind), l.name, l.opening.toString(), l.debit.toString(),
                                    l.credit.toString(), l.closing.toString());
            return out;
        };
        TrialBalance::Sheet sheet = TrialBalance::compute(Value(1), from, to);
        QCOMPARE(lines(sheet), (QStringList{"資産 現金 3000/5700/1400/7300", "負債 買掛金 0/400/0/-400",
                                            "資本 前年までの損益 1000/0/0/1000", "収益 売上 2000/0/5000/7000",
                                            "費用 種苗費 0/300/0/300"}));
        QVERIFY(sheet.balanced());
        QCOMPARE(sheet.slips, 4);
        QCOMPARE(sheet.faults.size(), 1);
        QCOMPARE(TrialBalance::faultText(sheet.faults[0]), QStringLiteral("----/--/-- 伝票6 10,000 日付なし"));

        Build::slip(8, QDate(2024, 5, 28), Acc::Cash, 0, 500).set("C_ACC_ID", Value::null()).add();
        Build::slip(9, QDate(2024, 5, 29), Acc::Cash, Acc::Sales, 0).set("AMT", Value::null()).add();
        Build::slip(10, QDate(2024, 4, 30), 9999, Acc::Cash, 50).add();
        sheet = TrialBalance::compute(Value(1), from, to);
        QVERIFY(!sheet.balanced());
        QCOMPARE(sheet.debitSide().debit - sheet.creditSide().credit, Currency::fromInt(500));
        QCOMPARE(sheet.debitSide().opening - sheet.creditSide().opening, Currency::fromInt(-50));
        QStringList faults;
        for (const TrialBalance::Fault &f : sheet.faults)
            faults << TrialBalance::faultText(f);
        QCOMPARE(faults, (QStringList{"----/--/-- 伝票6 10,000 日付なし", "2024/04/30 伝票10 50 借方科目 9999 は未登録",
                                      "2024/05/28 伝票8 500 貸方科目なし", "2024/05/29 伝票9 金額なし"}));
        const TablePages::Document doc = BookReports::trialBalancePages(sheet, QStringLiteral("青葉 耕作"));
        QStringList alerts;
        for (const TablePages::Row &r : doc.rows)
            if (r.style == TablePages::Style::Alert)
                alerts << rowText(r);
        QCOMPARE(alerts, (QStringList{"※ 貸借不一致　差額 前期繰越 -50　借方・貸方 500　残高 450",
                                      "※ 不備のある伝票が 4 件あります（科目・金額・日付のない分は集計されていません）"}));

        // The journal keeps every slip: the missing sides are unsettled, and
        // the balances agree with the trial balance on every account.
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        const Journal::Written written = Journal::write(buffer, Value(1), from, to);
        QCOMPARE(written.faults.size(), 3); // the one before May is in the opening
        QCOMPARE(written.transactions, 7);
        const QString journal = mOut.filePath(QStringLiteral("may-%1.journal").arg(TestEnv::engineName()));
        QFile f(journal);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(buffer.data());
        f.close();
        QHash<QString, qint64> balances = hledgerBalances(journal, true);
        QCOMPARE(balances.take(Journal::unsettledName()), qint64(-450));
        for (const TrialBalance::Line &l : sheet.lines)
            if (l.active())
                QCOMPARE(balances.take(Journal::accountName(l.kind, l.name)),
                         qint64(TrialBalance::debitKind(l.kind) ? 1 : -1) * qint64(l.closing.toDouble()));
        QVERIFY(balances.isEmpty());
    }

    void aPeriodWithoutSlipsSaysSo()
    {
        TestRoot root;
        const TrialBalance::Sheet sheet = TrialBalance::compute(Value(1), QDate(2030, 1, 1), QDate(2030, 1, 31));
        QCOMPARE(sheet.slips, 0);
        const TablePages::Document doc = BookReports::trialBalancePages(sheet, QString());
        QCOMPARE(rowText(doc.rows.first()), QStringLiteral("この期間（2030年1月）の伝票はありません。"));
        QCOMPARE(TablePages::pageCount(doc), 1);
        const TablePages::Document income =
            BookReports::incomePages(TrialBalance::incomeStatement(Value(1), 2030), QString());
        QCOMPARE(rowText(income.rows.first()), QStringLiteral("2030年の伝票はありません。"));
    }

    void theIncomeStatementOfAYear()
    {
        TestRoot root;
        seedSlips();
        const TrialBalance::Income in = TrialBalance::incomeStatement(Value(1), 2024);
        QCOMPARE(in.incomeTotal, Currency::fromInt(7000));
        QCOMPARE(in.expenseTotal, Currency::fromInt(300));
        QCOMPARE(in.result, Currency::fromInt(6700));
        QCOMPARE(in.income.size(), 7); // every income account of the chart
        const TablePages::Document doc = BookReports::incomePages(in, QStringLiteral("青葉 耕作"));
        QStringList shown;
        for (const TablePages::Row &r : doc.rows)
            if (r.style != TablePages::Style::Plain || !r.cells.value(1).startsWith(QLatin1Char('0')))
                shown << rowText(r);
        QCOMPARE(shown, (QStringList{"収入金額", "　売上|7,000", "収入金額計|7,000", "経費", "　種苗費|300",
                                     "経費計|300", "差引金額|6,700",
                                     "※ 不備のある伝票が 1 件あります（科目・金額・日付のない分は集計されていません）",
                                     "　----/--/-- 伝票6 10,000 日付なし"}));
    }

    void monthsAsTyped_data()
    {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("last");
        QTest::addColumn<QString>("period"); // or the message
        QTest::newRow("months") << "2024/1" << "2024/02" << "2024-01-01..2024-02-29";
        QTest::newRow("full-width") << "２０２４/０５" << "2024年12月" << "2024-05-01..2024-12-31";
        QTest::newRow("a year alone") << "2024/" << "2024/03" << "年月を正しく入力してください。";
        QTest::newRow("month 13") << "2024/13" << "2024/12" << "年月を正しく入力してください。";
        QTest::newRow("a day") << "2024/01/05" << "2024/12" << "年月を正しく入力してください。";
        QTest::newRow("empty") << "" << "2024/12" << "年月を入力してください。";
        QTest::newRow("backwards") << "2024/05" << "2024/04" << "終わりの年月が始めの年月より前です。";
    }

    void monthsAsTyped()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        QFETCH(QString, first);
        QFETCH(QString, last);
        QFETCH(QString, period);
        const TrialBalance::Period p = TrialBalance::monthsPeriod(first, last);
        QCOMPARE(p.error.isEmpty() ? p.from.toString(Qt::ISODate) + QStringLiteral("..") + p.to.toString(Qt::ISODate)
                                   : p.error,
                 period);
    }

    void amountsAndPages()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        QCOMPARE(Journal::yen(Currency::fromInt(1234567)), QStringLiteral("¥1,234,567"));
        QCOMPARE(Journal::yen(Currency::fromInt(-1000)), QStringLiteral("¥-1,000"));
        QCOMPARE(Journal::yen(Currency::fromDouble(0.5)), QStringLiteral("¥0.5"));
        QCOMPARE(Journal::accountName(Kind::Asset, QStringLiteral("現金:小口")), QStringLiteral("資産:現金：小口"));
        QCOMPARE(TrialBalance::incomeYear(QDate(2025, 3, 31)), 2024);
        QCOMPARE(TrialBalance::incomeYear(QDate(2025, 4, 1)), 2025);
        // a heading and a closing block never stand alone at the foot of a page
        TablePages::Document doc;
        const int per = TablePages::Layout().rowsPerPage();
        for (int i = 0; i < per - 1; ++i)
            doc.rows.append({{QString::number(i)}});
        doc.rows.append({{QStringLiteral("資産")}, TablePages::Style::Heading, true});
        doc.rows.append({{QStringLiteral("現金")}});
        QCOMPARE(TablePages::pageCount(doc), 2);
        QCOMPARE(TablePages::pageRows(doc, 2).first, per - 1);
        QCOMPARE(TablePages::pageRows(doc, 3).count, 0);
    }
};

TILLORA_RULES_TEST_MAIN(TestTrialBalance)
#include "tst_trialbalance.moc"
