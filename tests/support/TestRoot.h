#pragma once
// Fixtures: a fresh run-time tree made by the same code as `tillora-admin
// init`, with the four database objects open; on MariaDB the data and master
// databases live on the test server named by TILLORA_TEST_MYSQL
// ("host:port:user:password"), each fixture with databases of its own.
//
// A test binary built with TILLORA_TEST_MAIN runs all its tests once per
// engine: on SQLite, and on MariaDB when the server is named.

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Value.h"

#include <QObject>
#include <QString>
#include <QTemporaryDir>

#include <functional>

enum class TestEngine { Sqlite, Mysql };

// The error the work raises; number 0 when it raises none.
inline AppError failureOf(const std::function<void()> &work)
{
    try {
        work();
    } catch (const AppError &e) {
        return e;
    }
    return AppError(0, QString());
}

// A test of what reads no database: run on the first engine only.
#define TILLORA_FIRST_ENGINE_ONLY()                                                                                    \
    do {                                                                                                               \
        if (TestEnv::engine() == TestEngine::Mysql)                                                                    \
            QSKIP("reads no database: checked on the first engine");                                                   \
    } while (0)

namespace TestEnv {
TestEngine engine();
// Chooses the engine of the fixtures made from now on (a child process that
// runs one case on the engine its parent names).
void setEngine(TestEngine e);
QString engineName();
bool mysqlAvailable();
struct Server {
    QString host;
    int port = 0;
    QString user, password;
};
Server mysql();
int runOnEngines(QObject *test, int argc, char **argv);
}

class TestRoot {
public:
    explicit TestRoot(TestEngine engine = TestEnv::engine(), bool open = true);
    ~TestRoot();
    TestRoot(const TestRoot &) = delete;
    TestRoot &operator=(const TestRoot &) = delete;

    QString root() const { return mDir.path(); }
    TestEngine engine() const { return mEngine; }

    // Writes a settings row straight into INFO.MDB (Null value when isNull).
    void setCtrl(const QString &key, const Value &value, const Value &type = Value::null());
    void openAll();
    void closeAll();

private:
    void dropServerDatabases();

    QTemporaryDir mDir;
    TestEngine mEngine;
    QString mDataDb, mMasterDb;
};

#define TILLORA_TEST_MAIN(TestClass)                                                                         \
    int main(int argc, char **argv)                                                                         \
    {                                                                                                        \
        prepareProcess();                                                                                    \
        QCoreApplication app(argc, argv);                                                                   \
        TestClass t;                                                                                         \
        return TestEnv::runOnEngines(&t, argc, argv);                                                       \
    }
