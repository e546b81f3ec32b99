// tillora-bench: the store and diary benchmarks on SQLite and (when
// TILLORA_TEST_MYSQL="host:port:user:password" names a server) on
// MariaDB/MySQL. See bench/README.md.
//
// tillora-bench --make-root DIR: a run-time tree on SQLite with the ten
// years of records, to look at or to run the program on.

#include "env.h"

#include "screens/ScreenList.h"
#include "base/Globals.h"

#include <QApplication>

#include <cstdio>
#include <string>

int main(int argc, char **argv)
{
    prepareProcess();
    // The calendar is drawn as the screen draws it, with no display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    setupLook(app);
    if (argc == 3 && std::string(argv[1]) == "--make-root")
        return Bench::makeRoot(QString::fromLocal8Bit(argv[2]));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    Bench::registerStoreBenchmarks(Bench::Kind::Sqlite);
    Bench::registerDiaryBenchmarks(Bench::Kind::Sqlite);
    Bench::registerPrintBenchmarks(Bench::Kind::Sqlite);
    Bench::registerBooksBenchmarks(Bench::Kind::Sqlite);
    Bench::registerScreenBenchmarks(Bench::Kind::Sqlite);
    if (Bench::serverNamed()) {
        Bench::registerStoreBenchmarks(Bench::Kind::Mysql);
        Bench::registerDiaryBenchmarks(Bench::Kind::Mysql);
        Bench::registerPrintBenchmarks(Bench::Kind::Mysql);
        Bench::registerBooksBenchmarks(Bench::Kind::Mysql);
        for (int ms : {0, 1, 3}) {
            Bench::registerDiaryNetworkBenchmarks(ms);
            Bench::registerBooksNetworkBenchmarks(ms);
        }
        Bench::registerScreenBenchmarks(Bench::Kind::Network, 1);
    } else {
        std::fprintf(stderr, "TILLORA_TEST_MYSQL is not set: the MariaDB benchmarks are left out.\n");
    }
    Bench::registerEngineFreeBenchmarks();
    benchmark::AddCustomContext("data", "ten years of farmer 1 (bench/generate.cpp)");
    int rc = 0;
    try {
        benchmark::RunSpecifiedBenchmarks();
    } catch (const AppError &e) {
        std::fprintf(stderr, "%s\n", e.what());
        rc = 1;
    }
    benchmark::Shutdown();
    Bench::releaseStores();
    return rc;
}
