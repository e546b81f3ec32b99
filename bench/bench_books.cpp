// Speed of the books: the trial balance of a year and the journal of all
// 30,000 slips, in the process and as `tillora-admin` commands; beside them
// the plain-text accounting tools' own balance report (hledger, ledger) on
// the same journal, when they are installed.

#include "env.h"

#include "base/Globals.h"
#include "rules/books/BookReports.h"
#include "rules/books/Journal.h"
#include "rules/books/Ledger.h"
#include "rules/books/TrialBalance.h"
#include "store/Database.h"
#include "store/Engine.h"

#include <QBuffer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <string>

namespace Bench {

namespace {

const QDate kYearFrom(2024, 1, 1), kYearTo(2024, 12, 31);

// A program run to its end, its output into a file; false (and the error
// on the benchmark) when it fails.
bool runTo(benchmark::State &state, const QString &program, const QStringList &args, const QString &outFile)
{
    QProcess p;
    if (!outFile.isEmpty())
        p.setStandardOutputFile(outFile);
    else
        p.setStandardOutputFile(QProcess::nullDevice());
    p.start(program, args);
    if (!p.waitForFinished(-1) || p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0) {
        state.SkipWithError(qPrintable(program + QLatin1Char(' ') + QString::fromLocal8Bit(p.readAllStandardError())));
        return false;
    }
    return true;
}

// The account ledger of a year as its screen reads it: the cash account's
// 2024 (opening balance, slips, count and sum), with the other side's name
// of every line.
void LedgerYear(benchmark::State &state, Kind kind, int roundTripMs)
{
    guarded(state, [&] {
        use(kind);
        setRoundTrip(roundTripMs);
        Ledger::Filter f;
        f.fmrId = Value(1);
        f.accId = Value(1000);
        f.year = QStringLiteral("2024");
        int lines = 0;
        const quint64 before = statementsOf(kind);
        for (auto _ : state) {
            const Ledger::Listing l = Ledger::readList(f, true);
            Ledger::AccountNames names;
            for (const Ledger::Line &line : l.page.lines)
                benchmark::DoNotOptimize(names(line.other));
            lines = l.page.lines.size();
        }
        countStatements(state, kind, before);
        setRoundTrip(0);
        state.counters["lines"] = lines;
    });
}

void TrialBalanceYear(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        use(kind);
        TrialBalance::Sheet s;
        for (auto _ : state)
            s = TrialBalance::compute(Value(1), kYearFrom, kYearTo);
        state.counters["slips"] = s.slips;
    });
}

// The report's pages made from the year's figures: what 印刷 does before the
// preview opens.
void TrialBalanceReport(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        use(kind);
        int pages = 0;
        for (auto _ : state)
            pages = BookReports::prepareTrialBalance(Value(1), kYearFrom, kYearTo);
        state.counters["pages"] = pages;
    });
}

void JournalAll(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        use(kind);
        Journal::Written w;
        qint64 bytes = 0;
        for (auto _ : state) {
            QBuffer out;
            out.open(QIODevice::WriteOnly);
            w = Journal::write(out, Value(1), QDate(), QDate());
            bytes = out.size();
        }
        state.counters["transactions"] = w.transactions;
        state.counters["kB"] = double(bytes) / 1024;
    });
}

void TrialBalanceCommand(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        Store &s = use(kind);
        for (auto _ : state)
            if (!runTo(state, adminProgram(),
                       {QStringLiteral("trial-balance"), QStringLiteral("--root"), s.root(), QStringLiteral("--from"),
                        QStringLiteral("2024-01"), QStringLiteral("--to"), QStringLiteral("2024-12")},
                       QString()))
                return;
    });
}

void JournalCommand(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        Store &s = use(kind);
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("farm.journal"));
        for (auto _ : state)
            if (!runTo(state, adminProgram(), {QStringLiteral("journal"), QStringLiteral("--root"), s.root()}, file))
                return;
    });
}

// hledger or ledger reading the journal of all slips and printing the
// balance of every account.
void ToolBalance(benchmark::State &state, const char *tool)
{
    guarded(state, [&] {
        const QString program = QStandardPaths::findExecutable(QString::fromLatin1(tool));
        if (program.isEmpty())
            return state.SkipWithError(tool);
        use(Kind::Sqlite);
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("farm.journal"));
        {
            QFile out(file);
            out.open(QIODevice::WriteOnly);
            Journal::write(out, Value(1), QDate(), QDate());
        }
        for (auto _ : state)
            if (!runTo(state, program, {QStringLiteral("-f"), file, QStringLiteral("bal")}, QString()))
                return;
    });
}

} // namespace

void registerBooksBenchmarks(Kind kind)
{
    const std::string k = std::string("/") + kindName(kind);
    benchmark::RegisterBenchmark(("Ledger_CashYear2024" + k).c_str(), LedgerYear, kind, 0)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(("TrialBalance_Year2024" + k).c_str(), TrialBalanceYear, kind)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(("Parts/TrialBalance_Report2024" + k).c_str(), TrialBalanceReport, kind)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(("Journal_All30000" + k).c_str(), JournalAll, kind)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(("TrialBalance_Command_Year2024" + k).c_str(), TrialBalanceCommand, kind)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(5);
    benchmark::RegisterBenchmark(("Journal_Command_All30000" + k).c_str(), JournalCommand, kind)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(5);
    if (kind == Kind::Sqlite) {
        for (const char *tool : {"hledger", "ledger"})
            benchmark::RegisterBenchmark((std::string("Tools/") + tool + "_bal_30000").c_str(), ToolBalance, tool)
                ->UseRealTime()
                ->Unit(benchmark::kMillisecond)
                ->Iterations(3);
    }
}

void registerBooksNetworkBenchmarks(int roundTripMs)
{
    benchmark::RegisterBenchmark(("Net/Ledger_CashYear2024/network/" + std::to_string(roundTripMs) + "ms").c_str(),
                                 LedgerYear, Kind::Network, roundTripMs)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
}

} // namespace Bench
