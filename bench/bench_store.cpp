// Speed of the data store on ten years of one farmer's records, on SQLite and
// (when TILLORA_TEST_MYSQL="host:port:user:password" names a server) on
// MariaDB/MySQL. Each engine gets its run-time tree and generated data once
// per run, on the first benchmark that needs it; the benchmarks then go
// through the four database objects as the screens do.
//
// The "Parts/..." benchmarks take a keyed look-up apart (translation, source
// tables, the driver alone) to show where its time goes.

#include "generate.h"

#include "core/AppError.h"
#include "core/Globals.h"
#include "store/Database.h"
#include "store/JetSql.h"
#include "store/Setup.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDate>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>

#include <cstdio>
#include <ctime>
#include <map>
#include <memory>
#include <string>

namespace {

enum class Kind { Sqlite, Mysql };

const char *kindName(Kind k) { return k == Kind::Sqlite ? "sqlite" : "mysql"; }

struct Server {
    QString host;
    int port = 3306;
    QString user, password;
};

bool serverNamed() { return !qEnvironmentVariableIsEmpty("TILLORA_TEST_MYSQL"); }

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

// ------------------------------------------------------------ the stores

// One run-time tree with its generated data database.
class Store {
public:
    explicit Store(Kind kind) : mKind(kind)
    {
        if (!mDir.isValid())
            throw AppError(75, QStringLiteral("一時フォルダを作成できません。"));
        CloseAllDatabases();
        Setup::initRoot(root());
        AppPaths::setRoot(root());
        if (kind == Kind::Mysql) {
            const Server s = server();
            const QString base = QStringLiteral("tillora_bench_%1").arg(QCoreApplication::applicationPid());
            mDataDb = base + QStringLiteral("_d");
            mMasterDb = base + QStringLiteral("_m");
            const QString dsn = QStringLiteral("%1:%2").arg(s.host).arg(s.port);
            for (const auto &p : {qMakePair(QStringLiteral("DB"), mDataDb), qMakePair(QStringLiteral("MST"), mMasterDb)}) {
                setCtrl(p.first + QStringLiteral("_TYPE"), QStringLiteral("1"));
                setCtrl(p.first + QStringLiteral("_DSN"), dsn);
                setCtrl(p.first + QStringLiteral("_NAME"), p.second);
                setCtrl(p.first + QStringLiteral("_USER"), s.user);
                setCtrl(p.first + QStringLiteral("_PSWD"), s.password);
            }
            dropServerDatabases(); // left over by a run that was killed
            OpenIni();
            Setup::initServers();
        }
        openAll();
        mSummary = BenchData::generate(*gDB->engine(), *gWORK->engine(), *gMST->engine());
        std::fprintf(stderr, "[%s] %s\n", kindName(kind), qPrintable(mSummary.text()));
        sCurrent = this;
    }

    ~Store()
    {
        if (sCurrent == this) {
            CloseAllDatabases();
            sCurrent = nullptr;
        }
        closeRaw();
        if (mKind == Kind::Mysql)
            dropServerDatabases();
    }

    Kind kind() const { return mKind; }
    QString root() const { return mDir.path(); }
    const BenchData::Summary &summary() const { return mSummary; }

    // Makes this tree the one behind gINI, gDB, gMST and gWORK.
    void activate()
    {
        if (sCurrent == this)
            return;
        CloseAllDatabases();
        AppPaths::setRoot(root());
        openAll();
        sCurrent = this;
    }

    // A connection of the driver alone to the same data database.
    QSqlDatabase raw()
    {
        const QString name = QStringLiteral("bench_raw_%1").arg(QString::fromLatin1(kindName(mKind)));
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

private:
    static void openAll()
    {
        OpenIni();
        OpenDb();
        OpenMst();
        OpenWork();
    }

    void setCtrl(const QString &key, const QString &value)
    {
        ConnectionSpec ini;
        ini.file = Setup::fileOf(root(), DbKind::Ini);
        std::unique_ptr<Engine> e = Engine::open(ini);
        const ColumnDef *valueCol = Schema::column(QStringLiteral("S_CTRL"), QStringLiteral("CTRL_VALUE"));
        e->executeNative(QStringLiteral("DELETE FROM S_CTRL WHERE CTRL_CD=?"), {key});
        e->executeNative(QStringLiteral("INSERT INTO S_CTRL (CTRL_CD, CTRL_VALUE, CTRL_TYPE) VALUES (?,?,NULL)"),
                         {key, e->toStorage(Value(value), *valueCol)});
    }

    void closeRaw()
    {
        const QString name = QStringLiteral("bench_raw_%1").arg(QString::fromLatin1(kindName(mKind)));
        if (!QSqlDatabase::contains(name))
            return;
        {
            QSqlDatabase d = QSqlDatabase::database(name, false);
            d.close();
        }
        QSqlDatabase::removeDatabase(name);
    }

    void dropServerDatabases()
    {
        const Server s = server();
        const QString name = QStringLiteral("bench_drop");
        {
            QSqlDatabase d = QSqlDatabase::addDatabase(QStringLiteral("QMYSQL"), name);
            d.setHostName(s.host);
            d.setPort(s.port);
            d.setUserName(s.user);
            d.setPassword(s.password);
            if (d.open()) {
                QSqlQuery q(d);
                q.exec(QStringLiteral("DROP DATABASE IF EXISTS `%1`").arg(mDataDb));
                q.exec(QStringLiteral("DROP DATABASE IF EXISTS `%1`").arg(mMasterDb));
                d.close();
            }
        }
        QSqlDatabase::removeDatabase(name);
    }

    Kind mKind;
    QTemporaryDir mDir;
    QString mDataDb, mMasterDb;
    BenchData::Summary mSummary;
    static Store *sCurrent;
};

Store *Store::sCurrent = nullptr;

std::map<Kind, std::unique_ptr<Store>> gStores;

// The store of that engine, made on first use and open behind the globals.
Store &use(Kind kind)
{
    auto it = gStores.find(kind);
    if (it == gStores.end())
        it = gStores.emplace(kind, std::make_unique<Store>(kind)).first;
    it->second->activate();
    return *it->second;
}

// ------------------------------------------------------------ statements

constexpr int kDays = 3653;

QString dayText(int day) { return BenchData::firstDay().addDays(day).toString(QStringLiteral("yyyy-MM-dd")); }

const QVector<QString> &diaryCriteria()
{
    static const QVector<QString> all = [] {
        QVector<QString> v;
        // a day a week apart, then the next weekday: the whole span is visited
        for (int i = 0; i < kDays; ++i)
            v << QStringLiteral("FMR_ID=1 AND WORK_DATE=#%1 00:00:00#").arg(dayText((i * 7) % kDays));
        return v;
    }();
    return all;
}

QVector<QString> keyedCriteria(const char *keyColumn, int count)
{
    QVector<QString> v;
    for (int i = 0; i < count; ++i)
        v << QStringLiteral("FMR_ID=1 AND %1=%2").arg(QString::fromLatin1(keyColumn)).arg((i * 37) % count + 1);
    return v;
}

const QString kLedgerYear = QStringLiteral(
    "SELECT D_LEDGE.* FROM D_LEDGE WHERE D_LEDGE.FMR_ID=1 AND D_LEDGE.LEDGE_DATE>=#2024/01/01# AND "
    "D_LEDGE.LEDGE_DATE<=#2024/12/31# ORDER BY D_LEDGE.LEDGE_DATE, D_LEDGE.LEDGE_ID");

JetSql::Dialect dialectOf(Kind k) { return k == Kind::Sqlite ? JetSql::Dialect::Sqlite : JetSql::Dialect::Mysql; }

// Runs the body, turning the store's errors into a failed benchmark.
template <class F> void guarded(benchmark::State &state, F &&body)
{
    try {
        body();
    } catch (const AppError &e) {
        state.SkipWithError(e.what());
    }
}

// ------------------------------------------------------------ benchmarks

void DCountDiaryByDate(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        use(kind);
        const QVector<QString> &crit = diaryCriteria();
        if (gDB->DCount(QStringLiteral("*"), QStringLiteral("D_DIARY"), crit[0]).toLong() != 1)
            return state.SkipWithError("the diary page of the day is missing");
        int i = 0;
        for (auto _ : state) {
            Value v = gDB->DCount(QStringLiteral("*"), QStringLiteral("D_DIARY"), crit[i]);
            benchmark::DoNotOptimize(v);
            if (++i == crit.size())
                i = 0;
        }
    });
}

void DLookupPlantByKey(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        const Store &s = use(kind);
        const QVector<QString> crit = keyedCriteria("PLANT_ID", s.summary().plantings);
        if (gDB->DLookup(QStringLiteral("PLANT_NM"), QStringLiteral("D_PLANT"), crit[0]).isNull())
            return state.SkipWithError("no planting 1");
        int i = 0;
        for (auto _ : state) {
            Value v = gDB->DLookup(QStringLiteral("PLANT_NM"), QStringLiteral("D_PLANT"), crit[i]);
            benchmark::DoNotOptimize(v);
            if (++i == crit.size())
                i = 0;
        }
    });
}

void DLookupLedgeByKey(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        const Store &s = use(kind);
        const QVector<QString> crit = keyedCriteria("LEDGE_ID", s.summary().slips);
        int i = 0;
        for (auto _ : state) {
            Value v = gDB->DLookup(QStringLiteral("AMT"), QStringLiteral("D_LEDGE"), crit[i]);
            benchmark::DoNotOptimize(v);
            if (++i == crit.size())
                i = 0;
        }
    });
}

// The work file is a local SQLite file whatever the data engine is.
void DLookupAccountWork(benchmark::State &state)
{
    guarded(state, [&] {
        use(Kind::Sqlite);
        const QVector<int> ids{1000, 1010, 1040, 1130, 2000, 4000, 4160, 4520};
        QVector<QString> crit;
        for (int id : ids)
            crit << QStringLiteral("ACC_ID=%1").arg(id);
        int i = 0;
        for (auto _ : state) {
            Value v = gWORK->DLookup(QStringLiteral("ACC_NM"), QStringLiteral("L_ACC"), crit[i]);
            benchmark::DoNotOptimize(v);
            if (++i == crit.size())
                i = 0;
        }
    });
}

void StaticRstLedgerYear(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        use(kind);
        int rows = 0;
        for (auto _ : state) {
            RecordsetPtr rs = gDB->GetStaticRst(kLedgerYear);
            rows = rs->RecordCount();
            benchmark::DoNotOptimize(rows);
        }
        state.counters["rows"] = rows;
        state.SetItemsProcessed(state.iterations() * rows);
    });
}

// The year's set read through as a list screen fills its grid.
void StaticRstLedgerYearRead(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        use(kind);
        for (auto _ : state) {
            RecordsetPtr rs = gDB->GetStaticRst(kLedgerYear);
            const int n = rs->FieldCount();
            while (!rs->eof()) {
                for (int f = 0; f < n; ++f) {
                    Value v = rs->Fields(f);
                    benchmark::DoNotOptimize(v);
                }
                rs->MoveNext();
            }
        }
    });
}

int nextLedgeId(Kind kind)
{
    static std::map<Kind, int> next;
    auto it = next.find(kind);
    if (it == next.end())
        it = next.emplace(kind, 10000000).first;
    return ++it->second;
}

void fillSlip(Recordset &rs, int id)
{
    rs.AddNew();
    rs.SetField(QStringLiteral("FMR_ID"), Value(1));
    rs.SetField(QStringLiteral("LEDGE_ID"), Value(id));
    rs.SetField(QStringLiteral("LEDGE_DATE"), Value(DateUtil::make(2026, 1, 15)));
    rs.SetField(QStringLiteral("D_ACC_ID"), Value(4170));
    rs.SetField(QStringLiteral("D_OPT_KBN"), Value(2));
    rs.SetField(QStringLiteral("D_OPT_ID"), Value(1));
    rs.SetField(QStringLiteral("D_OPT_NM"), Value(QStringLiteral("2016年冬 トマト（ハウス1号）")));
    rs.SetField(QStringLiteral("C_ACC_ID"), Value(1000));
    rs.SetField(QStringLiteral("C_OPT_KBN"), Value(0));
    rs.SetField(QStringLiteral("CTR_NM"), Value(QStringLiteral("山里ホームセンター")));
    rs.SetField(QStringLiteral("NOTES"), Value(QStringLiteral("誘引テープ")));
    rs.SetField(QStringLiteral("AMT"), Value(Currency::fromInt(1280)));
    rs.SetField(QStringLiteral("IDATE"), Value(DateUtil::make(2026, 1, 15, 19, 30)));
    rs.SetField(QStringLiteral("UDATE"), Value(DateUtil::make(2026, 1, 15, 19, 30)));
    rs.SetField(QStringLiteral("LAST_TM"), Value(QStringLiteral("NOUKA-PC")));
    rs.Update();
}

const QString kEmptyLedger = QStringLiteral("SELECT D_LEDGE.* FROM D_LEDGE WHERE 0=1");

// Takes the slips the writers added out again, so that every benchmark sees
// the generated book as it was made.
void removeAddedSlips()
{
    gDB->EXEC(QStringLiteral("DELETE FROM D_LEDGE WHERE FMR_ID=1 AND LEDGE_ID>=10000000"));
}

// As a slip screen saves: open the empty writer, add, write, update, close.
void AddNewUpdateLedger(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        use(kind);
        for (auto _ : state) {
            RecordsetPtr rs = gDB->GetDynamicRst(kEmptyLedger);
            fillSlip(*rs, nextLedgeId(kind));
            rs->Close();
        }
        removeAddedSlips();
    });
}

// The same rows through one writer left open: the write alone.
void AddNewUpdateLedgerOpenSet(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        use(kind);
        RecordsetPtr rs = gDB->GetDynamicRst(kEmptyLedger);
        for (auto _ : state)
            fillSlip(*rs, nextLedgeId(kind));
        rs->Close();
        removeAddedSlips();
    });
}

// The same rows, a hundred to a transaction.
void AddNewUpdateLedgerInTrans(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        use(kind);
        RecordsetPtr rs = gDB->GetDynamicRst(kEmptyLedger);
        int n = 0;
        gDB->Begintrans();
        for (auto _ : state) {
            fillSlip(*rs, nextLedgeId(kind));
            if (++n % 100 == 0) {
                gDB->CommitTrans();
                gDB->Begintrans();
            }
        }
        gDB->CommitTrans();
        rs->Close();
        removeAddedSlips();
    });
}

// ---- parts of a keyed look-up

const QString kPlantLookup = QStringLiteral("SELECT PLANT_NM FROM D_PLANT WHERE FMR_ID=1 AND PLANT_ID=123");

void PartsTranslate(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        for (auto _ : state) {
            QString s = JetSql::translate(kPlantLookup, dialectOf(kind));
            benchmark::DoNotOptimize(s);
        }
    });
}

void PartsSources(benchmark::State &state)
{
    guarded(state, [&] {
        for (auto _ : state) {
            JetSql::Sources s = JetSql::sources(kPlantLookup);
            benchmark::DoNotOptimize(s);
        }
    });
}

// Engine::select without the database object around it.
void PartsEngineSelect(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        use(kind);
        Engine *e = gDB->engine();
        for (auto _ : state) {
            ResultSet rs = e->select(kPlantLookup);
            benchmark::DoNotOptimize(rs);
        }
    });
}

// The driver alone with the translated text: a new statement each call.
void PartsDriverExec(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        Store &s = use(kind);
        QSqlDatabase d = s.raw();
        const QString sql = JetSql::translate(kPlantLookup, dialectOf(kind));
        for (auto _ : state) {
            QSqlQuery q(d);
            q.setForwardOnly(true);
            if (!q.exec(sql) || !q.next())
                return state.SkipWithError(qPrintable(q.lastError().text()));
            QVariant v = q.value(0);
            benchmark::DoNotOptimize(v);
        }
    });
}

// The driver alone with one prepared statement and a bound key.
void PartsDriverPrepared(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        Store &s = use(kind);
        QSqlDatabase d = s.raw();
        QSqlQuery q(d);
        q.setForwardOnly(true);
        if (!q.prepare(QStringLiteral("SELECT PLANT_NM FROM D_PLANT WHERE FMR_ID=1 AND PLANT_ID=?")))
            return state.SkipWithError(qPrintable(q.lastError().text()));
        int i = 0;
        for (auto _ : state) {
            q.bindValue(0, (i++ % 400) + 1);
            if (!q.exec() || !q.next())
                return state.SkipWithError(qPrintable(q.lastError().text()));
            QVariant v = q.value(0);
            benchmark::DoNotOptimize(v);
            q.finish();
        }
    });
}

// The driver alone reading the year of slips into variants.
void PartsDriverLedgerYear(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        Store &s = use(kind);
        QSqlDatabase d = s.raw();
        const QString sql = JetSql::translate(kLedgerYear, dialectOf(kind));
        for (auto _ : state) {
            QSqlQuery q(d);
            q.setForwardOnly(true);
            if (!q.exec(sql))
                return state.SkipWithError(qPrintable(q.lastError().text()));
            const int n = q.record().count();
            QVector<QVector<QVariant>> rows;
            while (q.next()) {
                QVector<QVariant> row(n);
                for (int i = 0; i < n; ++i)
                    row[i] = q.value(i);
                rows.append(std::move(row));
            }
            benchmark::DoNotOptimize(rows);
        }
    });
}

// A stored date back to the program's value, as each date cell of a set.
void PartsDateFromStorage(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        use(kind);
        Engine *e = gDB->engine();
        const QVariant stored = kind == Kind::Sqlite
                                    ? QVariant(QStringLiteral("2024-05-01 00:00:00"))
                                    : QVariant(QDateTime(QDate(2024, 5, 1), QTime(0, 0)));
        for (auto _ : state) {
            Value v = e->fromStorage(stored, ColType::Date);
            benchmark::DoNotOptimize(v);
        }
    });
}

// ---- what a change in the store would give

// Environment variable TZ set for the life of the object. With TZ unset the C
// library looks at /etc/localtime again on every local-time conversion (a
// stat call each), which Qt's date parsing and the MySQL driver make per cell.
class TzSet {
public:
    TzSet()
    {
        mHad = qEnvironmentVariableIsSet("TZ");
        if (!mHad)
            qputenv("TZ", ":/etc/localtime");
        tzset();
    }
    ~TzSet()
    {
        if (!mHad)
            qunsetenv("TZ");
        tzset();
    }

private:
    bool mHad = false;
};

void WhatifTzStaticRst(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        use(kind);
        TzSet tz;
        for (auto _ : state) {
            RecordsetPtr rs = gDB->GetStaticRst(kLedgerYear);
            benchmark::DoNotOptimize(rs);
        }
    });
}

void WhatifTzAddNewInTrans(benchmark::State &state, Kind kind)
{
    TzSet tz;
    AddNewUpdateLedgerInTrans(state, kind);
}

// "yyyy-mm-dd hh:nn:ss" read by position; an invalid QDateTime for any other text.
QDateTime fixedStamp(const QString &s)
{
    if (s.size() != 19 || s[4] != QLatin1Char('-') || s[7] != QLatin1Char('-') || s[10] != QLatin1Char(' ') ||
        s[13] != QLatin1Char(':') || s[16] != QLatin1Char(':'))
        return QDateTime();
    auto num = [&](int at, int len) {
        int v = 0;
        for (int i = at; i < at + len; ++i) {
            const ushort c = s[i].unicode();
            if (c < '0' || c > '9')
                return -1;
            v = v * 10 + (c - '0');
        }
        return v;
    };
    const QDate d(num(0, 4), num(5, 2), num(8, 2));
    const QTime t(num(11, 2), num(14, 2), num(17, 2));
    if (!d.isValid() || !t.isValid())
        return QDateTime();
    return QDateTime(d, t, Qt::UTC);
}

// The year of slips typed as Engine::select types them, with the stored date
// text read by position instead of by QDateTime::fromString.
void WhatifFixedDateParse(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        Store &s = use(kind);
        Engine *e = gDB->engine();
        QSqlDatabase d = s.raw();
        const QString sql = JetSql::translate(kLedgerYear, dialectOf(kind));
        const TableDef *t = Schema::table(QStringLiteral("D_LEDGE"));
        for (auto _ : state) {
            QSqlQuery q(d);
            q.setForwardOnly(true);
            if (!q.exec(sql))
                return state.SkipWithError(qPrintable(q.lastError().text()));
            const QSqlRecord rec = q.record();
            QVector<ColType> types;
            for (int i = 0; i < rec.count(); ++i)
                types << t->column(rec.fieldName(i))->type;
            QVector<QVector<Value>> rows;
            while (q.next()) {
                QVector<Value> row(types.size());
                for (int i = 0; i < types.size(); ++i) {
                    const QVariant v = q.value(i);
                    if (types[i] == ColType::Date && v.typeId() == QMetaType::QString) {
                        const QDateTime dt = fixedStamp(v.toString());
                        row[i] = dt.isValid() ? Value(dt) : e->fromStorage(v, types[i]);
                    } else {
                        row[i] = e->fromStorage(v, types[i]);
                    }
                }
                rows.append(std::move(row));
            }
            benchmark::DoNotOptimize(rows);
        }
    });
}

// The SQLite data file in write-ahead-log mode (synchronous=NORMAL) for the
// life of the object; back to the rollback journal afterwards.
class WalMode {
public:
    explicit WalMode(Engine *e) : mE(e)
    {
        mE->executeNative(QStringLiteral("PRAGMA journal_mode=WAL"));
        mE->executeNative(QStringLiteral("PRAGMA synchronous=NORMAL"));
    }
    ~WalMode()
    {
        try {
            mE->executeNative(QStringLiteral("PRAGMA synchronous=FULL"));
            mE->executeNative(QStringLiteral("PRAGMA journal_mode=DELETE"));
        } catch (const AppError &e) {
            std::fprintf(stderr, "journal mode not restored: %s\n", e.what());
        }
    }

private:
    Engine *mE;
};

void WhatifWalLookup(benchmark::State &state)
{
    guarded(state, [&] {
        const Store &s = use(Kind::Sqlite);
        WalMode wal(gDB->engine());
        const QVector<QString> crit = keyedCriteria("PLANT_ID", s.summary().plantings);
        int i = 0;
        for (auto _ : state) {
            Value v = gDB->DLookup(QStringLiteral("PLANT_NM"), QStringLiteral("D_PLANT"), crit[i]);
            benchmark::DoNotOptimize(v);
            if (++i == crit.size())
                i = 0;
        }
    });
}

void WhatifWalAddNew(benchmark::State &state)
{
    guarded(state, [&] {
        use(Kind::Sqlite);
        WalMode wal(gDB->engine());
        for (auto _ : state) {
            RecordsetPtr rs = gDB->GetDynamicRst(kEmptyLedger);
            fillSlip(*rs, nextLedgeId(Kind::Sqlite));
            rs->Close();
        }
        removeAddedSlips();
    });
}

void registerAll(Kind kind)
{
    const std::string k = kindName(kind);
    auto reg = [&](const std::string &name, void (*fn)(benchmark::State &, Kind)) {
        return benchmark::RegisterBenchmark((name + "/" + k).c_str(), fn, kind)->UseRealTime();
    };
    reg("DCount_DiaryByFarmerDate", DCountDiaryByDate)->Unit(benchmark::kMicrosecond);
    reg("DLookup_PlantByKey", DLookupPlantByKey)->Unit(benchmark::kMicrosecond);
    reg("DLookup_LedgeByKey", DLookupLedgeByKey)->Unit(benchmark::kMicrosecond);
    if (kind == Kind::Sqlite)
        benchmark::RegisterBenchmark("DLookup_AccountByKey_Work/sqlite", DLookupAccountWork)
            ->UseRealTime()
            ->Unit(benchmark::kMicrosecond);
    reg("StaticRst_LedgerYear", StaticRstLedgerYear)->Unit(benchmark::kMillisecond);
    reg("StaticRst_LedgerYear_ReadAll", StaticRstLedgerYearRead)->Unit(benchmark::kMillisecond);
    reg("DynamicRst_AddNewUpdate_Ledger", AddNewUpdateLedger)->Unit(benchmark::kMicrosecond);
    reg("DynamicRst_AddNewUpdate_Ledger_SetOpen", AddNewUpdateLedgerOpenSet)->Unit(benchmark::kMicrosecond);
    reg("DynamicRst_AddNewUpdate_Ledger_100PerTrans", AddNewUpdateLedgerInTrans)->Unit(benchmark::kMicrosecond);
    reg("Parts/Translate_Lookup", PartsTranslate)->Unit(benchmark::kMicrosecond);
    if (kind == Kind::Sqlite)
        benchmark::RegisterBenchmark("Parts/Sources_Lookup", PartsSources)->Unit(benchmark::kMicrosecond);
    reg("Parts/EngineSelect_Lookup", PartsEngineSelect)->Unit(benchmark::kMicrosecond);
    reg("Parts/DriverExec_Lookup", PartsDriverExec)->Unit(benchmark::kMicrosecond);
    reg("Parts/DriverPrepared_Lookup", PartsDriverPrepared)->Unit(benchmark::kMicrosecond);
    reg("Parts/DriverOnly_LedgerYear", PartsDriverLedgerYear)->Unit(benchmark::kMillisecond);
    reg("Parts/DateFromStorage", PartsDateFromStorage)->Unit(benchmark::kMicrosecond);
    reg("Whatif/TZ_StaticRst_LedgerYear", WhatifTzStaticRst)->Unit(benchmark::kMillisecond);
    reg("Whatif/TZ_AddNewUpdate_Ledger_100PerTrans", WhatifTzAddNewInTrans)->Unit(benchmark::kMicrosecond);
    if (kind == Kind::Sqlite) {
        reg("Whatif/FixedDateParse_StaticRst_LedgerYear", WhatifFixedDateParse)->Unit(benchmark::kMillisecond);
        // Last of the SQLite ones: they switch the file's journal and back.
        benchmark::RegisterBenchmark("Whatif/WAL_DLookup_PlantByKey/sqlite", WhatifWalLookup)
            ->UseRealTime()
            ->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark("Whatif/WAL_AddNewUpdate_Ledger/sqlite", WhatifWalAddNew)
            ->UseRealTime()
            ->Unit(benchmark::kMicrosecond);
    }
}

} // namespace

// tillora-bench --make-root DIR: a run-time tree on SQLite with the ten
// years of records, to look at or to run the program on.
int makeRoot(const QString &dir)
{
    try {
        if (QFileInfo::exists(Setup::fileOf(dir, DbKind::Data)))
            throw AppError(58, QStringLiteral("'%1' にはもうデータベースがあります。").arg(dir));
        Setup::initRoot(dir);
        AppPaths::setRoot(dir);
        OpenIni();
        OpenDb();
        OpenMst();
        OpenWork();
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

int main(int argc, char **argv)
{
    prepareProcess();
    QCoreApplication app(argc, argv);
    if (argc == 3 && std::string(argv[1]) == "--make-root")
        return makeRoot(QString::fromLocal8Bit(argv[2]));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    registerAll(Kind::Sqlite);
    if (serverNamed())
        registerAll(Kind::Mysql);
    else
        std::fprintf(stderr, "TILLORA_TEST_MYSQL is not set: the MariaDB benchmarks are left out.\n");
    benchmark::AddCustomContext("data", "ten years of farmer 1 (bench/generate.cpp)");
    int rc = 0;
    try {
        benchmark::RunSpecifiedBenchmarks();
    } catch (const AppError &e) {
        std::fprintf(stderr, "%s\n", e.what());
        rc = 1;
    }
    benchmark::Shutdown();
    gStores.clear();
    CloseAllDatabases();
    return rc;
}
