// Speed of the data store on ten years of one farmer's records, on SQLite and
// (when TILLORA_TEST_MYSQL="host:port:user:password" names a server) on
// MariaDB/MySQL: the look-ups, static sets and the writer, through the four
// database objects as the screens use them.
//
// The "Parts/..." benchmarks take a keyed look-up apart (translation, source
// tables, the driver alone) to show where its time goes.

#include "env.h"

#include "base/Globals.h"
#include "store/Database.h"
#include "store/JetSql.h"

#include <QDate>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

#include <map>
#include <string>

namespace Bench {

namespace {

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
}

} // namespace

void registerStoreBenchmarks(Kind kind) { registerAll(kind); }

}
