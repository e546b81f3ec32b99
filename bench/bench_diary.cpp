// Speed of the diary on the ten generated years: a redraw of the month
// calendar, the old calendar (one day, and the admin command over 46 years),
// and the opening and saving of a full diary day, as the screens do them.
//
// The "Parts/..." benchmarks take the calendar's redraw and the day's opening
// and save apart; "Net/..." run the redraw and the day through a relay that
// delays every round trip to the server (see bench/README.md).

#include "env.h"

#include "base/Globals.h"
#include "rules/diary/CalMonth.h"
#include "rules/diary/DiaryDay.h"
#include "rules/diary/modOldCal.h"
#include "rules/masters/Defaults.h"
#include "rules/pesticide/ChemiStock.h"
#include "rules/pesticide/SprayCheck.h"
#include "store/Database.h"
#include "store/Engine.h"

#include <sqlite3.h>

#include <QApplication>
#include <QHash>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>

#include <chrono>
#include <cstdio>
#include <functional>
#include <string>

namespace Bench {

namespace {

const Value kFarmer(1);

// ------------------------------------------------------------ the calendar

// The canvas of the calendar screen at its design size, 11920 x 6680 twips.
constexpr int kCanvasW = 795, kCanvasH = 445;
constexpr int kTwipsPerPixel = 15;

const QDate kMidMonth(2021, 6, 1);
const QDate kEndMonth(2025, 12, 1);

std::string monthName(const QDate &m) { return m.toString(QStringLiteral("yyyy-MM")).toStdString(); }

// The five check boxes on, as the screen leaves them in the settings.
void allOptionsOn()
{
    for (int i = 0; i < 5; ++i)
        CalMonth::saveOption(i, true);
}

// The canvas as the screen's QPixmap is on the raster back end.
QImage canvas() { return QImage(kCanvasW, kCanvasH, QImage::Format_RGB32); }

CalMonth::Geometry monthGeometry(const QDate &month)
{
    return CalMonth::geometry(month, kCanvasW * kTwipsPerPixel, kCanvasH * kTwipsPerPixel);
}

// One redraw as frmDairyCal::DispCal does it, no planting chosen: the
// options from the settings, the geometry, the cells, the drawing.
void DispCal(benchmark::State &state, Kind kind, QDate month, int roundTripMs)
{
    guarded(state, [&] {
        use(kind);
        setRoundTrip(roundTripMs);
        gFMR_ID = kFarmer;
        allOptionsOn();
        QImage image = canvas();
        const QFont font = QApplication::font();
        int marked = 0;
        const quint64 before = statementsOf(kind);
        for (auto _ : state) {
            const CalMonth::Options o = CalMonth::loadOptions();
            const CalMonth::Geometry g = monthGeometry(month);
            const QVector<CalMonth::Cell> cells =
                CalMonth::collect(g, month, QDate::currentDate(), gFMR_ID, o, Value(0));
            QPainter p(&image);
            p.setFont(font);
            CalMonth::paint(p, g, cells, o);
            p.end();
            marked = 0;
            for (const CalMonth::Cell &c : cells)
                marked += c.money + c.chemi + c.ship;
        }
        countStatements(state, kind, before);
        state.counters["marks"] = marked;
    });
}

// The start-up up to the calendar's first drawing: the four databases
// opened, the default farmer and shop checked against their tables, the
// unused lots' recount, and the month read and drawn.
void StartUp(benchmark::State &state, Kind kind, int roundTripMs)
{
    guarded(state, [&] {
        use(kind);
        setRoundTrip(roundTripMs);
        allOptionsOn();
        QImage image = canvas();
        const QFont font = QApplication::font();
        const quint64 before = statementsOf(kind);
        for (auto _ : state) {
            CloseAllDatabases();
            OpenIni();
            OpenDb();
            OpenMst();
            OpenWork();
            gUSE_TYPE = Defaults::useType();
            Value farmer, shop;
            if (Defaults::check(gINI->GetCtrl(QStringLiteral("DEF_FMR_ID")), "M_FMR", "FMR_ID=?", farmer) !=
                    Defaults::Check::Passed ||
                Defaults::check(gINI->GetCtrl(QStringLiteral("DEF_SHOP_ID")), "M_SHOP", "SHOP_ID=?", shop) !=
                    Defaults::Check::Passed)
                return state.SkipWithError("the default farmer or shop does not check");
            gFMR_ID = farmer;
            ResetUnusedChemi(gFMR_ID);
            const CalMonth::Options o = CalMonth::loadOptions();
            const CalMonth::Geometry g = monthGeometry(kMidMonth);
            QPainter p(&image);
            p.setFont(font);
            CalMonth::paint(p, g, CalMonth::collect(g, kMidMonth, QDate::currentDate(), gFMR_ID, o, Value(0)), o);
        }
        countStatements(state, kind, before);
        setRoundTrip(0);
    });
}

// ---- parts of the redraw

// The five options on, without touching the settings.
CalMonth::Options everyOption()
{
    CalMonth::Options o;
    for (bool &on : o.on)
        on = true;
    return o;
}

void CalCollect(benchmark::State &state, Kind kind, QDate month)
{
    guarded(state, [&] {
        use(kind);
        const CalMonth::Options o = everyOption();
        const CalMonth::Geometry g = monthGeometry(month);
        for (auto _ : state) {
            QVector<CalMonth::Cell> cells = CalMonth::collect(g, month, QDate::currentDate(), kFarmer, o, Value(0));
            benchmark::DoNotOptimize(cells);
        }
    });
}

// The floor under collect on SQLite: the very statements collect sends (as
// the engine gets them), prepared once with the library alone and run, every
// row and column read, as a program that did nothing else would. Each
// iteration runs the floor and then collect on the same file, so that the
// two figures and their ratio come from the same moments of the machine.
void CalCollectAgainstFloor(benchmark::State &state, QDate month)
{
    guarded(state, [&] {
        use(Kind::Sqlite);
        const CalMonth::Options o = everyOption();
        const CalMonth::Geometry g = monthGeometry(month);
        QVector<QPair<QString, QString>> reads; // file, statement
        // Collect's kept copies (the register) are made first, as on screen.
        CalMonth::collect(g, month, QDate::currentDate(), kFarmer, o, Value(0));
        Engine::setReadObserver(
            [&](const Engine &e, const QString &sql) { reads.append({e.target().file, sql}); });
        CalMonth::collect(g, month, QDate::currentDate(), kFarmer, o, Value(0));
        Engine::setReadObserver(nullptr);
        QHash<QString, sqlite3 *> files;
        QVector<sqlite3_stmt *> statements;
        for (const auto &r : reads) {
            sqlite3 *&db = files[r.first];
            if (!db && sqlite3_open_v2(r.first.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK)
                return state.SkipWithError("the file can't be opened");
            sqlite3_stmt *st = nullptr;
            const QByteArray text = r.second.toUtf8();
            if (sqlite3_prepare_v2(db, text.constData(), int(text.size()), &st, nullptr) != SQLITE_OK)
                return state.SkipWithError(sqlite3_errmsg(db));
            statements.append(st);
        }
        qint64 cells = 0;
        double floorSecs = 0, collectSecs = 0;
        using Clock = std::chrono::steady_clock;
        for (auto _ : state) {
            const auto t0 = Clock::now();
            for (sqlite3_stmt *st : statements) {
                while (sqlite3_step(st) == SQLITE_ROW)
                    for (int c = 0, n = sqlite3_column_count(st); c < n; ++c) {
                        switch (sqlite3_column_type(st, c)) {
                        case SQLITE_INTEGER: cells += sqlite3_column_int64(st, c) != 0; break;
                        case SQLITE_FLOAT: cells += sqlite3_column_double(st, c) != 0; break;
                        case SQLITE_TEXT: cells += sqlite3_column_bytes(st, c) > 0; break;
                        default: break;
                        }
                    }
                sqlite3_reset(st);
            }
            const auto t1 = Clock::now();
            QVector<CalMonth::Cell> got = CalMonth::collect(g, month, QDate::currentDate(), kFarmer, o, Value(0));
            benchmark::DoNotOptimize(got);
            const auto t2 = Clock::now();
            floorSecs += std::chrono::duration<double>(t1 - t0).count();
            collectSecs += std::chrono::duration<double>(t2 - t1).count();
        }
        benchmark::DoNotOptimize(cells);
        const double n = double(state.iterations());
        state.counters["floor_ms"] = floorSecs * 1000 / n;
        state.counters["collect_ms"] = collectSecs * 1000 / n;
        state.counters["times_floor"] = floorSecs > 0 ? collectSecs / floorSecs : 0;
        state.counters["statements"] = statements.size();
        for (sqlite3_stmt *st : statements)
            sqlite3_finalize(st);
        for (sqlite3 *db : files)
            sqlite3_close(db);
    });
}

// The red pesticide marks of the month: the sprayings of the month's
// plantings held against their registrations, as collect asks for them.
void CalSprayWarnings(benchmark::State &state, Kind kind, QDate month)
{
    guarded(state, [&] {
        use(kind);
        int days = 0;
        for (auto _ : state)
            days = Spray::warnedDays(kFarmer, Value(0), month, month.addDays(month.daysInMonth() - 1),
                                     QDate::currentDate())
                       .size();
        state.counters["days"] = days;
    });
}

QString jetDay(const QDate &d) { return QLatin1Char('#') + d.toString(QStringLiteral("yyyy/MM/dd")) + QLatin1Char('#'); }

// The first statement of collect: the farmer's diary pages of the month.
QString monthPagesSql(const QDate &month)
{
    return QStringLiteral("SELECT D_DIARY.* FROM D_DIARY WHERE FMR_ID=1 AND WORK_DATE>=") + jetDay(month) +
           QStringLiteral(" AND WORK_DATE<=") + jetDay(month.addDays(month.daysInMonth() - 1)) +
           QStringLiteral(" ORDER BY WORK_DATE");
}

void CalDiaryPages(benchmark::State &state, Kind kind, QDate month)
{
    guarded(state, [&] {
        use(kind);
        int rows = 0;
        for (auto _ : state) {
            RecordsetPtr rs = gDB->GetFwdOnlyRst(monthPagesSql(month));
            for (rows = 0; !rs->eof(); rs->MoveNext())
                ++rows;
        }
        state.counters["rows"] = rows;
    });
}

// The drawing alone, from cells collected once (the same on both engines).
void CalPaint(benchmark::State &state, QDate month)
{
    guarded(state, [&] {
        use(Kind::Sqlite);
        const CalMonth::Options o = everyOption();
        const CalMonth::Geometry g = monthGeometry(month);
        const QVector<CalMonth::Cell> cells = CalMonth::collect(g, month, QDate::currentDate(), kFarmer, o, Value(0));
        QImage image = canvas();
        const QFont font = QApplication::font();
        for (auto _ : state) {
            QPainter p(&image);
            p.setFont(font);
            CalMonth::paint(p, g, cells, o);
            p.end();
        }
    });
}

// ------------------------------------------------------------ the old calendar

// Days from 1990-01-01 to 2035-12-31 in a scattered order.
const QVector<QDateTime> &oldCalDays()
{
    static const QVector<QDateTime> all = [] {
        const QDate first(1990, 1, 1), last(2035, 12, 31);
        const int n = int(first.daysTo(last)) + 1;
        QVector<QDateTime> v;
        v.reserve(n);
        for (int i = 0; i < n; ++i)
            v << DateUtil::fromDate(first.addDays((qint64(i) * 7919) % n));
        return v;
    }();
    return all;
}

void OldDateOf(benchmark::State &state)
{
    const QVector<QDateTime> &days = oldCalDays();
    int i = 0, errors = 0;
    for (auto _ : state) {
        try {
            modOldCal::OldDate d = modOldCal::OldDateOf(days[i]);
            benchmark::DoNotOptimize(d);
        } catch (const AppError &) {
            ++errors; // the days the computation can't place, as the command shows them
        }
        if (++i == days.size())
            i = 0;
    }
    state.counters["error_share"] = double(errors) / double(state.iterations());
}

// `tillora-admin oldcal --root <the engine's tree> 1990-01-01 2035-12-31`,
// its output into a file: the whole command, process start included.
// Runs the companion with the arguments (after --root) once per iteration,
// its output into `file`; false when it failed (the benchmark is marked).
bool timeAdmin(benchmark::State &state, Kind kind, const QString &command, const QStringList &args,
               const QString &file)
{
    Store &s = use(kind);
    const QString admin = adminProgram();
    if (!QFileInfo(admin).isExecutable()) {
        state.SkipWithError(qPrintable(QStringLiteral("no program %1").arg(admin)));
        return false;
    }
    for (auto _ : state) {
        QProcess p;
        p.setProgram(admin);
        p.setArguments(QStringList{command, QStringLiteral("--root"), s.root()} + args);
        p.setStandardOutputFile(file);
        p.start();
        if (!p.waitForFinished(-1) || p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0) {
            state.SkipWithError(qPrintable(QString::fromLocal8Bit(p.readAllStandardError())));
            return false;
        }
    }
    return true;
}

QByteArray fileText(const QString &file)
{
    QFile f(file);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void OldCalCommand(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        QTemporaryDir out;
        const QString file = out.filePath(QStringLiteral("oldcal.txt"));
        if (!timeAdmin(state, kind, QStringLiteral("oldcal"), {QStringLiteral("1990-01-01"), QStringLiteral("2035-12-31")}, file))
            return;
        const QByteArray text = fileText(file);
        state.counters["lines"] = text.count('\n');
        state.counters["error_lines"] = text.count("\tERROR\t");
    });
}

// tillora-admin check-sprays over the ten years, as the farmer runs it.
void CheckSpraysCommand(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        QTemporaryDir out;
        const QString file = out.filePath(QStringLiteral("sprays.txt"));
        if (!timeAdmin(state, kind, QStringLiteral("check-sprays"), {}, file))
            return;
        state.counters["findings"] = fileText(file).count('\n') - 1;
    });
}

// The same report inside the process: the reading and the checks alone.
void CheckSpraysReport(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        use(kind);
        int n = 0;
        for (auto _ : state)
            n = Spray::farmReport(0, QDate(2025, 12, 31)).size();
        state.counters["findings"] = n;
    });
}

// ------------------------------------------------------------ the diary day

const QDate kDiaryDay(2023, 6, 14);
constexpr int kDayLines = 20, kSprayLines = 5, kDaySlips = 10;

// The rows of a table that meet a criterion, to put back as they were.
class TableCopy {
public:
    TableCopy(const QString &table, const QString &where)
        : mTable(table), mWhere(where), mRows(gDB->engine()->select(QStringLiteral("SELECT * FROM ") + table +
                                                                      QStringLiteral(" WHERE ") + where))
    {
    }

    void restore() const
    {
        Engine *e = gDB->engine();
        e->execute(QStringLiteral("DELETE FROM ") + mTable + QStringLiteral(" WHERE ") + mWhere);
        if (mRows.rows.isEmpty())
            return;
        QStringList names, marks;
        QVector<const ColumnDef *> defs;
        for (const ResultColumn &c : mRows.columns) {
            const ColumnDef *def = Schema::column(mTable, c.name);
            if (!def)
                throw AppError(VbErr::ItemNotFound, mTable + QLatin1Char('.') + c.name);
            defs << def;
            names << def->name;
            marks << QStringLiteral("?");
        }
        const QString sql = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                                .arg(mTable, names.join(QLatin1Char(',')), marks.join(QLatin1Char(',')));
        for (const QVector<Value> &row : mRows.rows) {
            QVector<QVariant> params;
            for (int i = 0; i < row.size(); ++i)
                params << e->toStorage(row[i], *defs[i]);
            e->executeNative(sql, params);
        }
    }

private:
    QString mTable, mWhere;
    ResultSet mRows;
};

// The day of kDiaryDay made into a full one for the life of the object: 20
// lines on the plantings alive that day (5 of them spraying lines with lot,
// registration number, target, quantity and unit taken from the generated
// spraying lines of the season, 15 other work lines of the month), and 10
// slips: 5 of the month's slips moved to the day and the 5 cost slips the
// spraying lines make. It is written once by a save, as the screen would;
// the day's generated rows and the lots' counts are put back afterwards.
class FullDay {
public:
    FullDay()
        : mDiary(QStringLiteral("D_DIARY"), dayWhere(QStringLiteral("WORK_DATE"))),
          mLines(QStringLiteral("D_DIARY_DTL"), dayWhere(QStringLiteral("WORK_DATE"))),
          mSlips(QStringLiteral("D_LEDGE"), dayWhere(QStringLiteral("LEDGE_DATE"))),
          mLots(QStringLiteral("D_CHEMI"), QStringLiteral("FMR_ID=1"))
    {
        point();
        const QVector<DiaryDtlRec> lines = makeLines();
        const QVector<LedgeRow> slips = makeSlips();
        try {
            gDB->EXEC(QStringLiteral("DELETE D_DIARY_DTL.* FROM D_DIARY_DTL WHERE ") + dayWhere(QStringLiteral("WORK_DATE")));
            gDB->EXEC(QStringLiteral("DELETE D_LEDGE.* FROM D_LEDGE WHERE ") + dayWhere(QStringLiteral("LEDGE_DATE")));
            DiaryDay d;
            d.load(kFarmer, day());
            d.dtl = lines;
            gLEDGE_ROWS = slips;
            d.save();
            check();
        } catch (...) {
            putBack();
            throw;
        }
    }

    ~FullDay() { putBack(); }

    static QDateTime day() { return DateUtil::fromDate(kDiaryDay); }

    // The globals the save's first step reads, as the calendar sets them.
    static void point()
    {
        gFMR_ID = kFarmer;
        gWORK_DATE = Value(day());
    }

    // The day holds what it should: after every run of a benchmark.
    static void check()
    {
        const long lines = gDB->DCount(QStringLiteral("*"), QStringLiteral("D_DIARY_DTL"), dayWhere(QStringLiteral("WORK_DATE"))).toLong();
        const long sprays = gDB->DCount(QStringLiteral("*"), QStringLiteral("D_DIARY_DTL"),
                                        dayWhere(QStringLiteral("WORK_DATE")) + QStringLiteral(" AND LEDGE_ID>0"))
                                .toLong();
        const long slips = gDB->DCount(QStringLiteral("*"), QStringLiteral("D_LEDGE"), dayWhere(QStringLiteral("LEDGE_DATE"))).toLong();
        if (lines != kDayLines || sprays != kSprayLines || slips != kDaySlips)
            throw AppError(-1, QStringLiteral("the day holds %1 lines (%2 with a cost slip) and %3 slips")
                                   .arg(lines)
                                   .arg(sprays)
                                   .arg(slips));
    }

private:
    void putBack() const
    {
        try {
            gDB->Begintrans();
            mDiary.restore();
            mLines.restore();
            mSlips.restore();
            mLots.restore();
            gDB->CommitTrans();
        } catch (const AppError &e) {
            std::fprintf(stderr, "the diary day was not put back: %s\n", e.what());
        }
        gLEDGE_ROWS = {blankLedgeRow()};
    }

    static QString dayWhere(const QString &column)
    {
        return QStringLiteral("FMR_ID=1 AND ") + column + QLatin1Char('=') + jetDay(kDiaryDay);
    }

    static QVector<DiaryDtlRec> makeLines()
    {
        QVector<Value> plants;
        RecordsetPtr rs = gDB->GetFwdOnlyRst(QStringLiteral("SELECT PLANT_ID FROM D_PLANT WHERE FMR_ID=1 AND START_DATE<=") +
                                             jetDay(kDiaryDay) + QStringLiteral(" AND END_DATE>=") + jetDay(kDiaryDay) +
                                             QStringLiteral(" ORDER BY PLANT_ID"));
        for (; !rs->eof(); rs->MoveNext())
            plants << rs->Fields(0);
        if (plants.isEmpty())
            throw AppError(-1, QStringLiteral("no planting is alive on the day"));

        QVector<DiaryDtlRec> sprays, others;
        const QString season = QStringLiteral(" FROM D_DIARY_DTL WHERE FMR_ID=1 AND WORK_DATE>=#2023/05/01# AND "
                                              "WORK_DATE<=#2023/07/31# AND WORK_DATE<>") +
                               jetDay(kDiaryDay);
        QVector<Value> lots;
        rs = gDB->GetFwdOnlyRst(QStringLiteral("SELECT D_DIARY_DTL.*") + season +
                                QStringLiteral(" AND CHEMI_ID>0 AND QTY>0 AND UNIT_ID>0 ORDER BY WORK_DATE, DTL_NO"));
        for (; !rs->eof() && sprays.size() < kSprayLines; rs->MoveNext()) {
            const Value lot = rs->Fields(QStringLiteral("CHEMI_ID"));
            if (lots.contains(lot))
                continue;
            lots << lot;
            DiaryDtlRec r;
            for (const char *c : {"WORK_KBN", "WORK_NM", "NOTES", "CHEMI_ID", "CHEMI_NM", "REG_NO", "PURPOSE", "QTY",
                                  "UNIT_ID"})
                fieldOf(r, c) = rs->Fields(QString::fromLatin1(c));
            sprays << r;
        }
        rs = gDB->GetFwdOnlyRst(QStringLiteral("SELECT D_DIARY_DTL.*") + season +
                                QStringLiteral(" AND CHEMI_ID IS NULL AND SHIP_ID IS NULL AND LEDGE_ID IS NULL "
                                               "ORDER BY WORK_DATE, DTL_NO"));
        for (; !rs->eof() && others.size() < kDayLines - kSprayLines; rs->MoveNext()) {
            DiaryDtlRec r;
            for (const char *c : {"WORK_KBN", "WORK_NM", "NOTES"})
                fieldOf(r, c) = rs->Fields(QString::fromLatin1(c));
            others << r;
        }
        if (sprays.size() < kSprayLines || others.size() < kDayLines - kSprayLines)
            throw AppError(-1, QStringLiteral("the season has too few lines to copy"));

        // Spraying lines spread among the others, as a day is written.
        QVector<DiaryDtlRec> lines;
        for (int i = 0, s = 0, o = 0; i < kDayLines; ++i) {
            DiaryDtlRec r = (i % 4 == 1 && s < kSprayLines) ? sprays[s++] : others[o++];
            r.FMR_ID = kFarmer;
            r.WORK_DATE = Value(day());
            r.DTL_NO = Value(i + 1);
            r.PLANT_ID = plants[i % plants.size()];
            lines << r;
        }
        return lines;
    }

    static Value &fieldOf(DiaryDtlRec &r, const char *name)
    {
        const QString n = QString::fromLatin1(name);
        if (n == QLatin1String("WORK_KBN")) return r.WORK_KBN;
        if (n == QLatin1String("WORK_NM")) return r.WORK_NM;
        if (n == QLatin1String("NOTES")) return r.NOTES;
        if (n == QLatin1String("CHEMI_ID")) return r.CHEMI_ID;
        if (n == QLatin1String("CHEMI_NM")) return r.CHEMI_NM;
        if (n == QLatin1String("REG_NO")) return r.REG_NO;
        if (n == QLatin1String("PURPOSE")) return r.PURPOSE;
        if (n == QLatin1String("QTY")) return r.QTY;
        return r.UNIT_ID;
    }

    // Five of the month's slips (no pesticide cost slips), new numbers, the day's date.
    static QVector<LedgeRow> makeSlips()
    {
        qint32 next = Nz(gDB->DMax(QStringLiteral("LEDGE_ID"), QStringLiteral("D_LEDGE"), QStringLiteral("FMR_ID=1")),
                         Value(0))
                          .toLong();
        QVector<LedgeRow> slips;
        RecordsetPtr rs = gDB->GetFwdOnlyRst(
            QStringLiteral("SELECT D_LEDGE.* FROM D_LEDGE WHERE FMR_ID=1 AND LEDGE_DATE>=#2023/06/01# AND "
                           "LEDGE_DATE<=#2023/06/30# AND D_ACC_ID<>4160 AND C_ACC_ID<>4160 ORDER BY LEDGE_ID"));
        for (; !rs->eof() && slips.size() < kDaySlips - kSprayLines; rs->MoveNext()) {
            LedgeRow row = blankLedgeRow();
            for (int c = 0; c < LedgeCol::Count; ++c)
                row[c] = rs->Fields(QString::fromLatin1(LedgeCol::Names[c]));
            row[LedgeCol::LEDGE_ID] = Value(++next);
            row[LedgeCol::LEDGE_DATE] = Value(day());
            slips << row;
        }
        if (slips.size() < kDaySlips - kSprayLines)
            throw AppError(-1, QStringLiteral("the month has too few slips to copy"));
        return slips;
    }

    TableCopy mDiary, mLines, mSlips, mLots;
};

// Open and save, as the day screen does from the calendar's click to its save button.
void DiaryDayOpenSave(benchmark::State &state, Kind kind, int roundTripMs)
{
    guarded(state, [&] {
        use(kind);
        FullDay full;
        setRoundTrip(roundTripMs);
        const quint64 before = statementsOf(kind);
        for (auto _ : state) {
            FullDay::point();
            DiaryDay d;
            d.load(kFarmer, FullDay::day());
            d.save();
        }
        countStatements(state, kind, before);
        setRoundTrip(0);
        FullDay::check();
    });
}

void DiaryDayOpen(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        use(kind);
        FullDay full;
        for (auto _ : state) {
            FullDay::point();
            DiaryDay d;
            d.load(kFarmer, FullDay::day());
            benchmark::DoNotOptimize(d.dtl.data());
        }
    });
}

void DiaryDaySave(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        use(kind);
        FullDay full;
        for (auto _ : state) {
            state.PauseTiming();
            FullDay::point();
            DiaryDay d;
            d.load(kFarmer, FullDay::day());
            state.ResumeTiming();
            d.save();
        }
        FullDay::check();
    });
}

// The third statement of load(): the day's slips in their order.
void DaySlips(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        use(kind);
        FullDay full;
        for (auto _ : state) {
            RecordsetPtr rs = gDB->GetFwdOnlyRst(
                QStringLiteral("SELECT  D_LEDGE.*  FROM D_LEDGE  WHERE  D_LEDGE.FMR_ID=1 AND D_LEDGE.LEDGE_DATE=") +
                jetDay(kDiaryDay) + QStringLiteral(" ORDER BY D_LEDGE.LEDGE_DATE, D_LEDGE.LEDGE_ID"));
            if (rs->RecordCount() != kDaySlips)
                return state.SkipWithError("not the day's slips");
        }
    });
}

// ---- the steps of the save, each on a day opened once and committed by
// itself as save() commits it (the recount makes its own two transactions)

using Step = std::function<void(DiaryDay &)>;

void DiaryDayStep(benchmark::State &state, Kind kind, Step step)
{
    guarded(state, [&] {
        use(kind);
        FullDay full;
        FullDay::point();
        DiaryDay d;
        d.load(kFarmer, FullDay::day());
        for (auto _ : state)
            step(d);
        FullDay::check();
    });
}

// ------------------------------------------------------------ registration

benchmark::internal::Benchmark *named(benchmark::internal::Benchmark *b, benchmark::TimeUnit unit)
{
    return b->UseRealTime()->Unit(unit);
}

} // namespace

void registerDiaryBenchmarks(Kind kind)
{
    const std::string k = std::string("/") + kindName(kind);
    for (const QDate &m : {kMidMonth, kEndMonth})
        named(benchmark::RegisterBenchmark(("DispCal/" + monthName(m) + k).c_str(), DispCal, kind, m, 0),
              benchmark::kMillisecond);
    named(benchmark::RegisterBenchmark(("StartUp" + k).c_str(), StartUp, kind, 0), benchmark::kMillisecond);
    named(benchmark::RegisterBenchmark(("Parts/DispCal_Collect/" + monthName(kMidMonth) + k).c_str(), CalCollect, kind,
                                       kMidMonth),
          benchmark::kMillisecond);
    if (kind == Kind::Sqlite)
        named(benchmark::RegisterBenchmark(("Parts/DispCal_Collect_AgainstFloor/" + monthName(kMidMonth) + k).c_str(),
                                           CalCollectAgainstFloor, kMidMonth),
              benchmark::kMillisecond);
    named(benchmark::RegisterBenchmark(("Parts/DispCal_SprayWarnings/" + monthName(kMidMonth) + k).c_str(),
                                       CalSprayWarnings, kind, kMidMonth),
          benchmark::kMillisecond);
    named(benchmark::RegisterBenchmark(("Parts/DispCal_DiaryPages/" + monthName(kMidMonth) + k).c_str(), CalDiaryPages,
                                       kind, kMidMonth),
          benchmark::kMillisecond);
    if (kind == Kind::Sqlite)
        named(benchmark::RegisterBenchmark(("Parts/DispCal_Paint/" + monthName(kMidMonth)).c_str(), CalPaint, kMidMonth),
              benchmark::kMillisecond);

    named(benchmark::RegisterBenchmark(("OldCal_Command_1990_2035" + k).c_str(), OldCalCommand, kind),
          benchmark::kMillisecond)
        ->Iterations(3);
    named(benchmark::RegisterBenchmark(("CheckSprays_Command_TenYears" + k).c_str(), CheckSpraysCommand, kind),
          benchmark::kMillisecond)
        ->Iterations(3);
    named(benchmark::RegisterBenchmark(("Parts/CheckSprays_Report_TenYears" + k).c_str(), CheckSpraysReport, kind),
          benchmark::kMillisecond);


    named(benchmark::RegisterBenchmark(("DiaryDay_OpenSave" + k).c_str(), DiaryDayOpenSave, kind, 0),
          benchmark::kMillisecond);
    named(benchmark::RegisterBenchmark(("DiaryDay_Open" + k).c_str(), DiaryDayOpen, kind), benchmark::kMillisecond);
    named(benchmark::RegisterBenchmark(("DiaryDay_Save" + k).c_str(), DiaryDaySave, kind), benchmark::kMillisecond);
    named(benchmark::RegisterBenchmark(("Parts/DiaryDay_Open_DaySlips" + k).c_str(), DaySlips, kind),
          benchmark::kMillisecond);
    const std::pair<const char *, Step> steps[] = {
        {"1_SaveLedgeData", [](DiaryDay &d) { inTransaction(gDB.get(), [&] { d.SaveLedgeData(); }); }},
        {"2_SaveUseChemi", [](DiaryDay &d) { inTransaction(gDB.get(), [&] { d.SaveUseChemi(); }); }},
        {"3_SaveDay", [](DiaryDay &d) { inTransaction(gDB.get(), [&] { d.saveDay(); }); }},
        {"4_SaveDetails", [](DiaryDay &d) { inTransaction(gDB.get(), [&] { d.saveDetails(); }); }},
        {"5_RecountChemiUse", [](DiaryDay &d) { RecountChemiUse(d.day.FMR_ID, d.day.WORK_DATE.toDate()); }},
    };
    for (const auto &s : steps)
        named(benchmark::RegisterBenchmark((std::string("Parts/DiaryDay_Save_") + s.first + k).c_str(), DiaryDayStep,
                                           kind, s.second),
              benchmark::kMillisecond);
    // The checks of the full day's 5 sprayings against their registrations,
    // as the save button runs them before the save.
    named(benchmark::RegisterBenchmark(("DiaryDay_SprayCheck" + k).c_str(), DiaryDayStep, kind,
                                       Step([](DiaryDay &d) {
                                           benchmark::DoNotOptimize(Spray::checkDay(d, QDate(2025, 12, 31)).size());
                                       })),
          benchmark::kMillisecond);

}

void registerEngineFreeBenchmarks()
{
    named(benchmark::RegisterBenchmark("OldDateOf", OldDateOf), benchmark::kMicrosecond);
}

void registerDiaryNetworkBenchmarks(int roundTripMs)
{
    const std::string k = "/network/" + std::to_string(roundTripMs) + "ms";
    named(benchmark::RegisterBenchmark(("Net/DispCal/" + monthName(kMidMonth) + k).c_str(), DispCal, Kind::Network,
                                       kMidMonth, roundTripMs),
          benchmark::kMillisecond);
    named(benchmark::RegisterBenchmark(("Net/DiaryDay_OpenSave" + k).c_str(), DiaryDayOpenSave, Kind::Network,
                                       roundTripMs),
          benchmark::kMillisecond);
    named(benchmark::RegisterBenchmark(("Net/StartUp" + k).c_str(), StartUp, Kind::Network, roundTripMs),
          benchmark::kMillisecond);
}

} // namespace Bench
