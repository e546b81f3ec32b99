#include "TestRoot.h"

#include "base/AppError.h"
#include "base/Globals.h"
#include "store/Database.h"
#include "store/Setup.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>

#include <cstdio>

namespace TestEnv {

namespace {
TestEngine gEngine = TestEngine::Sqlite;
int gCounter = 0;
}

TestEngine engine() { return gEngine; }
void setEngine(TestEngine e) { gEngine = e; }
QString engineName() { return gEngine == TestEngine::Sqlite ? QStringLiteral("sqlite") : QStringLiteral("mysql"); }

bool mysqlAvailable() { return !qEnvironmentVariableIsEmpty("TILLORA_TEST_MYSQL"); }

Server mysql()
{
    const QStringList p = qEnvironmentVariable("TILLORA_TEST_MYSQL").split(QLatin1Char(':'));
    Server s;
    s.host = p.value(0);
    s.port = p.value(1).toInt();
    s.user = p.value(2);
    s.password = p.value(3);
    return s;
}

int runOnEngines(QObject *test, int argc, char **argv)
{
    prepareProcess();
    int rc = 0;
    gEngine = TestEngine::Sqlite;
    std::printf("=== engine: sqlite ===\n");
    rc |= QTest::qExec(test, argc, argv);
    if (mysqlAvailable()) {
        gEngine = TestEngine::Mysql;
        std::printf("=== engine: mysql ===\n");
        rc |= QTest::qExec(test, argc, argv);
    } else {
        std::printf("=== engine: mysql skipped (TILLORA_TEST_MYSQL not set) ===\n");
    }
    return rc;
}

// The delivered tree is made once per test binary and copied for each fixture.
void copyTemplateTree(const QString &to)
{
    static QTemporaryDir templ;
    static bool made = false;
    if (!made) {
        Setup::initRoot(templ.path());
        made = true;
    }
    QDir().mkpath(to);
    for (const char *d : {"bin", "ini", "work", "data", "images"})
        QDir(to).mkpath(QString::fromLatin1(d));
    for (DbKind k : {DbKind::Ini, DbKind::Work, DbKind::Data, DbKind::Master}) {
        const QString dst = Setup::fileOf(to, k);
        QFile::remove(dst);
        QFile::copy(Setup::fileOf(templ.path(), k), dst);
        QFile::setPermissions(dst, QFile::permissions(Setup::fileOf(templ.path(), k)));
    }
}

QString nextDbName() { return QStringLiteral("tt_%1_%2").arg(QCoreApplication::applicationPid()).arg(++gCounter); }

} // namespace TestEnv

TestRoot::TestRoot(TestEngine engine, bool open) : mEngine(engine)
{
    CloseAllDatabases();
    TestEnv::copyTemplateTree(mDir.path());
    AppPaths::setRoot(mDir.path());
    if (mEngine == TestEngine::Mysql) {
        const TestEnv::Server s = TestEnv::mysql();
        const QString base = TestEnv::nextDbName();
        mDataDb = base + QStringLiteral("_d");
        mMasterDb = base + QStringLiteral("_m");
        Setup::pointAtServer(mDir.path(), {s.host, s.port, s.user, s.password}, mDataDb, mMasterDb);
        OpenIni();
        Setup::initServers();
        CloseAllDatabases();
    }
    if (open)
        openAll();
}

TestRoot::~TestRoot()
{
    CloseAllDatabases();
    if (mEngine == TestEngine::Mysql)
        dropServerDatabases();
}

void TestRoot::openAll()
{
    OpenIni();
    OpenDb();
    OpenMst();
    OpenWork();
}

void TestRoot::closeAll() { CloseAllDatabases(); }

void TestRoot::setCtrl(const QString &key, const Value &value, const Value &type)
{
    Setup::writeCtrl(mDir.path(), key, value, type);
}

void TestRoot::dropServerDatabases()
{
    const TestEnv::Server s = TestEnv::mysql();
    Setup::dropServerDatabases({s.host, s.port, s.user, s.password}, {mDataDb, mMasterDb});
}
