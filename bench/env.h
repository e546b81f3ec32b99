#pragma once
// What the benchmark programs share: the engines they run on, a run-time tree
// with the generated ten years per engine (made on first use, open behind
// gINI, gDB, gMST and gWORK while its benchmarks run), and the error guard.

#include "generate.h"

#include "base/AppError.h"

#include <benchmark/benchmark.h>

#include <QSqlDatabase>
#include <QString>
#include <QTemporaryDir>

namespace Bench {

// Network: the MariaDB databases of Mysql, reached through a relay that
// delays every round trip (setRoundTrip).
enum class Kind { Sqlite, Mysql, Network };

const char *kindName(Kind k);

// TILLORA_TEST_MYSQL="host:port:user:password" names a server.
bool serverNamed();

// One run-time tree (Setup::initRoot) with its generated data database.
class Store {
public:
    explicit Store(Kind kind);
    ~Store();

    Kind kind() const { return mKind; }
    QString root() const { return mDir.path(); }
    const BenchData::Summary &summary() const { return mSummary; }

    // Makes this tree the one behind gINI, gDB, gMST and gWORK.
    void activate();
    // A connection of the driver alone to the same data database.
    QSqlDatabase raw();

private:
    void closeRaw();
    void dropServerDatabases();

    Kind mKind;
    QTemporaryDir mDir;
    QString mDataDb, mMasterDb;
    BenchData::Summary mSummary;
};

// The store of that engine, made on first use and open behind the globals.
Store &use(Kind kind);
// The delay the relay of the Network store adds to a round trip.
void setRoundTrip(int milliseconds);
// Statements sent so far to the engine of the store's data (on a server:
// round trips; the local settings and list files are not counted there).
quint64 statementsOf(Kind kind);
// Statements sent in the timed loop, per iteration, as the counter
// "statements": `before` is statementsOf(kind) before the loop.
void countStatements(benchmark::State &state, Kind kind, quint64 before);
// Closes and removes every store (server databases are dropped).
void releaseStores();

// tillora-bench --make-root DIR.
int makeRoot(const QString &dir);

// Runs the body, turning the store's errors into a failed benchmark.
template <class F> void guarded(benchmark::State &state, F &&body)
{
    try {
        body();
    } catch (const AppError &e) {
        state.SkipWithError(e.what());
    }
}

// The companion program beside the benchmarks (or named by TILLORA_ADMIN).
QString adminProgram();

// Registration of each file's benchmarks for one engine.
void registerStoreBenchmarks(Kind kind);
void registerDiaryBenchmarks(Kind kind);
void registerPrintBenchmarks(Kind kind);
void registerBooksBenchmarks(Kind kind);
// Those that run through the delaying relay, at that round trip.
void registerDiaryNetworkBenchmarks(int roundTripMs);
void registerBooksNetworkBenchmarks(int roundTripMs);
// The opening of every screen (on the network store at that round trip).
void registerScreenBenchmarks(Kind kind, int roundTripMs = 0);
// Those that use no data database.
void registerEngineFreeBenchmarks();

}
