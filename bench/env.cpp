#include "env.h"

#include "relay.h"

#include "base/Globals.h"
#include "store/Engine.h"
#include "store/Database.h"
#include "store/Setup.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>

#include <cstdio>
#include <map>
#include <memory>

namespace Bench {

namespace {

struct Server {
    QString host;
    int port = 3306;
    QString user, password;
};

Server server()
{
    const QStringList p = qEnvironmentVariable("TILLORA_TEST_MYSQL").split(QLatin1Char(':'));
    Server s;
    s.host = p.value(0);
    s.port = p.value(1).toInt();
    s.user = p.value(2);
    s.password = p.value(3);
    return s;
}

void openAll()
{
    OpenIni();
    OpenDb();
    OpenMst();
    OpenWork();
}

Store *gCurrent = nullptr;
std::map<Kind, std::unique_ptr<Store>> gStores;
std::unique_ptr<Relay> gRelay;

Store &storeOf(Kind kind)
{
    auto it = gStores.find(kind);
    if (it == gStores.end())
        it = gStores.emplace(kind, std::make_unique<Store>(kind)).first;
    return *it->second;
}

QString rawName(Kind kind) { return QStringLiteral("bench_raw_%1").arg(QString::fromLatin1(kindName(kind))); }

} // namespace

const char *kindName(Kind k)
{
    switch (k) {
    case Kind::Sqlite: return "sqlite";
    case Kind::Mysql: return "mysql";
    case Kind::Network: return "network";
    }
    return "";
}

bool serverNamed() { return !qEnvironmentVariableIsEmpty("TILLORA_TEST_MYSQL"); }

Store::Store(Kind kind) : mKind(kind)
{
    if (!mDir.isValid())
        throw AppError(75, QStringLiteral("一時フォルダを作成できません。"));
    // The Network store shares the server store's databases, made first.
    const Store *shared = kind == Kind::Network ? &storeOf(Kind::Mysql) : nullptr;
    CloseAllDatabases();
    gCurrent = nullptr;
    Setup::initRoot(root());
    AppPaths::setRoot(root());
    if (shared) {
        // ... reached through the relay.
        const Server s = server();
        if (!gRelay)
            gRelay = std::make_unique<Relay>(s.host.toStdString(), s.port);
        mDataDb = shared->mDataDb;
        mMasterDb = shared->mMasterDb;
        mSummary = shared->mSummary;
        Setup::pointAtServer(root(), {QStringLiteral("127.0.0.1"), gRelay->port(), s.user, s.password}, mDataDb,
                             mMasterDb);
        openAll();
        gCurrent = this;
        return;
    }
    if (kind == Kind::Mysql) {
        const Server s = server();
        const QString base = QStringLiteral("tillora_bench_%1").arg(QCoreApplication::applicationPid());
        mDataDb = base + QStringLiteral("_d");
        mMasterDb = base + QStringLiteral("_m");
        Setup::pointAtServer(root(), {s.host, s.port, s.user, s.password}, mDataDb, mMasterDb);
        dropServerDatabases(); // left over by a run that was killed
        OpenIni();
        Setup::initServers();
    }
    openAll();
    mSummary = BenchData::generate(*gDB->engine(), *gWORK->engine(), *gMST->engine());
    std::fprintf(stderr, "[%s] %s\n", kindName(kind), qPrintable(mSummary.text()));
    gCurrent = this;
}

Store::~Store()
{
    if (gCurrent == this) {
        CloseAllDatabases();
        gCurrent = nullptr;
    }
    closeRaw();
    if (mKind == Kind::Mysql) // the Network store's are the server store's
        dropServerDatabases();
}

void Store::activate()
{
    if (gCurrent == this)
        return;
    CloseAllDatabases();
    AppPaths::setRoot(root());
    openAll();
    gCurrent = this;
}

QSqlDatabase Store::raw()
{
    const QString name = rawName(mKind);
    if (QSqlDatabase::contains(name))
        return QSqlDatabase::database(name);
    QSqlDatabase d;
    if (mKind == Kind::Sqlite) {
        d = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        d.setDatabaseName(Setup::fileOf(root(), DbKind::Data));
    } else {
        const Server s = server();
        d = QSqlDatabase::addDatabase(QStringLiteral("QMYSQL"), name);
        d.setHostName(s.host);
        d.setPort(s.port);
        d.setUserName(s.user);
        d.setPassword(s.password);
        d.setDatabaseName(mDataDb);
    }
    if (!d.open())
        throw AppError(-1, d.lastError().text());
    return d;
}


void Store::closeRaw()
{
    const QString name = rawName(mKind);
    if (!QSqlDatabase::contains(name))
        return;
    {
        QSqlDatabase d = QSqlDatabase::database(name, false);
        d.close();
    }
    QSqlDatabase::removeDatabase(name);
}

void Store::dropServerDatabases()
{
    const Server s = server();
    Setup::dropServerDatabases({s.host, s.port, s.user, s.password}, {mDataDb, mMasterDb});
}

Store &use(Kind kind)
{
    Store &s = storeOf(kind);
    s.activate();
    return s;
}

void setRoundTrip(int milliseconds)
{
    if (gRelay)
        gRelay->setRoundTrip(std::chrono::milliseconds(milliseconds));
}

quint64 statementsOf(Kind kind)
{
    return Engine::statementsSent(kind == Kind::Sqlite ? EngineKind::Sqlite : EngineKind::Mysql);
}

void countStatements(benchmark::State &state, Kind kind, quint64 before)
{
    if (state.iterations() > 0)
        state.counters["statements"] = double(statementsOf(kind) - before) / double(state.iterations());
}

void releaseStores()
{
    // The borrowing store goes before the one whose databases it uses.
    gStores.erase(Kind::Network);
    gStores.clear();
    gRelay.reset();
    CloseAllDatabases();
    gCurrent = nullptr;
}

int makeRoot(const QString &dir)
{
    try {
        if (QFileInfo::exists(Setup::fileOf(dir, DbKind::Data)))
            throw AppError(58, QStringLiteral("'%1' にはもうデータベースがあります。").arg(dir));
        Setup::initRoot(dir);
        AppPaths::setRoot(dir);
        openAll();
        const BenchData::Summary sum = BenchData::generate(*gDB->engine(), *gWORK->engine(), *gMST->engine());
        CloseAllDatabases();
        std::printf("%s: %s\n", qPrintable(dir), qPrintable(sum.text()));
        return 0;
    } catch (const AppError &e) {
        CloseAllDatabases();
        std::fprintf(stderr, "%s\n", e.what());
        return 1;
    }
}

QString adminProgram()
{
    const QString named = qEnvironmentVariable("TILLORA_ADMIN");
    if (!named.isEmpty())
        return named;
    return QDir(QCoreApplication::applicationDirPath()).absoluteFilePath(QStringLiteral("../bin/tillora-admin"));
}

}
