#include "rules/diary/DiaryDay.h"

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "rules/diary/BookPage.h"
#include "rules/pesticide/ChemiStock.h"
#include "store/Database.h"
#include "rules/books/Ledger.h"
#include "store/Lookup.h"
#include "store/Stmt.h"

#include <QSet>

#include <algorithm>
#include <utility>

const ColumnMap<DiaryDayRec> &DiaryDayRec::map()
{
    static const ColumnMap<DiaryDayRec> m{
        {"FMR_ID", &DiaryDayRec::FMR_ID}, {"WORK_DATE", &DiaryDayRec::WORK_DATE}, {"WTH_ID", &DiaryDayRec::WTH_ID},
        {"LO_TMP", &DiaryDayRec::LO_TMP}, {"HI_TMP", &DiaryDayRec::HI_TMP},       {"ONE_MSG", &DiaryDayRec::ONE_MSG},
        {"NOTES1", &DiaryDayRec::NOTES1}, {"NOTES2", &DiaryDayRec::NOTES2},       {"IDATE", &DiaryDayRec::IDATE},
        {"UDATE", &DiaryDayRec::UDATE},   {"LAST_TM", &DiaryDayRec::LAST_TM},     {"HOLD_TM", &DiaryDayRec::HOLD_TM},
    };
    return m;
}

const ColumnMap<DiaryDtlRec> &DiaryDtlRec::map()
{
    static const ColumnMap<DiaryDtlRec> m{
        {"FMR_ID", &DiaryDtlRec::FMR_ID},     {"WORK_DATE", &DiaryDtlRec::WORK_DATE}, {"DTL_NO", &DiaryDtlRec::DTL_NO},
        {"PLANT_ID", &DiaryDtlRec::PLANT_ID}, {"WORK_KBN", &DiaryDtlRec::WORK_KBN},   {"WORK_NM", &DiaryDtlRec::WORK_NM},
        {"NOTES", &DiaryDtlRec::NOTES},       {"CHEMI_ID", &DiaryDtlRec::CHEMI_ID},   {"CHEMI_NM", &DiaryDtlRec::CHEMI_NM},
        {"REG_NO", &DiaryDtlRec::REG_NO},     {"PURPOSE", &DiaryDtlRec::PURPOSE},     {"QTY", &DiaryDtlRec::QTY},
        {"UNIT_ID", &DiaryDtlRec::UNIT_ID},   {"SHIP_ID", &DiaryDtlRec::SHIP_ID},     {"SCHD_ID", &DiaryDtlRec::SCHD_ID},
        {"LEDGE_ID", &DiaryDtlRec::LEDGE_ID},
    };
    return m;
}

namespace {

// The columns of the day that the screen edits; the key and the stamps are
// the program's.
const QStringList kDayEdited{"WTH_ID", "LO_TMP", "HI_TMP", "ONE_MSG", "NOTES1", "NOTES2"};

bool positive(const Value &v) { return hasValue(v) && IsNumeric(v) && v.toDouble() > 0; }

} // namespace

void DiaryDay::clear()
{
    day = DiaryDayRec();
    dtl = QVector<DiaryDtlRec>(1);
}

Stmt DiaryDay::dayKey() const { return Stmt("FMR_ID=? AND WORK_DATE=?").num(day.FMR_ID).time(day.WORK_DATE); }

QVector<DiaryDtlRec> DiaryDay::readLines() const
{
    QVector<DiaryDtlRec> lines;
    RecordsetPtr rs = gDB->GetFwdOnlyRst(
        Stmt("SELECT D_DIARY_DTL.* FROM D_DIARY_DTL WHERE FMR_ID=? AND WORK_DATE=? ORDER BY D_DIARY_DTL.DTL_NO")
            .num(day.FMR_ID)
            .time(day.WORK_DATE));
    for (; !rs->eof(); rs->MoveNext())
        lines.append(DiaryDtlRec::map().read(*rs));
    rs->Close();
    return lines;
}

QVector<LedgeRow> DiaryDay::readSlips() const
{
    QVector<LedgeRow> slips;
    RecordsetPtr rs = gDB->GetFwdOnlyRst(Stmt("SELECT  D_LEDGE.*  FROM D_LEDGE  WHERE  D_LEDGE.FMR_ID=? AND D_LEDGE.LEDGE_DATE=? "
                                              "ORDER BY D_LEDGE.LEDGE_DATE, D_LEDGE.LEDGE_ID")
                                             .num(day.FMR_ID)
                                             .time(day.WORK_DATE));
    for (; !rs->eof(); rs->MoveNext())
        slips.append(Ledger::rowOf(*rs));
    rs->Close();
    return slips;
}

void DiaryDay::load(const Value &fmrId, const QDateTime &workDate)
{
    clear();
    mStored = Stored();
    day.FMR_ID = fmrId;
    day.WORK_DATE = Value(workDate);
    day.IDATE = Value(DateUtil::now());

    RecordsetPtr rs = gDB->GetDynamicRst(
        Stmt("SELECT D_DIARY.* FROM D_DIARY WHERE FMR_ID=? AND WORK_DATE=?").num(fmrId).time(workDate));
    if (!rs->eof()) {
        DiaryDayRec::map().read(*rs, day, kDayEdited + QStringList{"IDATE", "UDATE", "LAST_TM", "HOLD_TM"});
        mStored.hadDay = true;
        mStored.stamps = stampsOf(day);
        // The day is held by this computer, whoever held it before.
        rs->SetField(QStringLiteral("HOLD_TM"), Value(GetCompName()));
        rs->Update();
    }
    rs->Close();

    mStored.lines = readLines();
    if (!mStored.lines.isEmpty()) {
        dtl = mStored.lines;
        for (DiaryDtlRec &r : dtl) {
            r.FMR_ID = fmrId;
            r.WORK_DATE = Value(workDate);
        }
    }

    mStored.slips = readSlips();
    gLEDGE_ROWS = mStored.slips.isEmpty() ? QVector<LedgeRow>{blankLedgeRow()} : mStored.slips;
}

int DiaryDay::addDetail(const Value &plantId)
{
    const Value &no = dtl[0].DTL_NO;
    int ix;
    if (!hasValue(no) || (IsNumeric(no) && no.toDouble() == 0)) {
        ix = 0;
        dtl[0] = DiaryDtlRec();
    } else {
        dtl.append(DiaryDtlRec());
        ix = dtl.size() - 1;
    }
    DiaryDtlRec &r = dtl[ix];
    r.FMR_ID = day.FMR_ID;
    r.WORK_DATE = day.WORK_DATE;
    r.PLANT_ID = plantId;
    r.DTL_NO = Value(ix + 1);
    r.WORK_KBN = Value(0);
    return ix;
}

bool DiaryDay::removeDetail(int index)
{
    if (index < 0 || index >= dtl.size())
        return false;
    const Value ledge = dtl[index].LEDGE_ID;
    dtl.remove(index);
    if (dtl.isEmpty())
        dtl.append(DiaryDtlRec());
    if (!hasValue(ledge) || !IsNumeric(ledge) || ledge.toDouble() == 0)
        return false;
    const int slip = BookPage::rowOfSlip(gLEDGE_ROWS, ledge);
    if (slip >= 0) {
        gLEDGE_ROWS.remove(slip);
        if (gLEDGE_ROWS.isEmpty())
            gLEDGE_ROWS.append(blankLedgeRow());
    }
    return true;
}

int DiaryDay::findDetail(const Value &dtlNo) const
{
    if (!IsNumeric(dtlNo))
        return -1;
    for (int i = 0; i < dtl.size(); ++i)
        if (isNumber(dtl[i].DTL_NO, dtlNo.toDouble()))
            return i;
    return -1;
}

QVector<int> DiaryDay::linesOf(const Value &plantId) const
{
    QVector<int> out;
    if (!IsNumeric(plantId))
        return out;
    for (int i = 0; i < dtl.size(); ++i)
        if (isNumber(dtl[i].PLANT_ID, plantId.toDouble()))
            out << i;
    return out;
}

void DiaryDay::save()
{
    saveAsOne(*this, [](DiaryDay &d) {
        d.claimDay();
        d.SaveLedgeData();
        d.SaveUseChemi();
        d.saveDay();
        d.saveDetails();
        // Its work in the work file is a transaction of that file; its
        // updates of the lots are part of this one.
        RecountChemiUse(d.day.FMR_ID, d.day.WORK_DATE.toDate());
        d.takeStored();
        return true;
    });
}

namespace {

bool sameLine(const DiaryDtlRec &a, const DiaryDtlRec &b)
{
    for (const QString &c : DiaryDtlRec::map().names())
        if (DiaryDtlRec::map().of(a, c) != DiaryDtlRec::map().of(b, c))
            return false;
    return true;
}

// Everything but the hold, which opening a day elsewhere takes.
bool sameSlip(const LedgeRow &a, const LedgeRow &b)
{
    for (int c = 0; c < LedgeCol::Count; ++c)
        if (c != LedgeCol::HOLD_TM && a.value(c) != b.value(c))
            return false;
    return true;
}

template <class Row, class Same> bool among(const Row &row, const QVector<Row> &rows, Same same)
{
    return std::any_of(rows.begin(), rows.end(), [&](const Row &r) { return same(row, r); });
}

template <class Row, class Same> bool sameRows(const QVector<Row> &a, const QVector<Row> &b, Same same)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), same);
}

} // namespace

void DiaryDay::claimDay()
{
    if (mStored.hadDay) {
        // The computer's name is not compared: giving up a hold writes the
        // holder's name as last writer, and a day only looked at elsewhere
        // has not changed. The times tell a save.
        if (!claimRow(QStringLiteral("D_DIARY"), dayKey(), mStored.stamps, false))
            raiseRecordChanged(Value());
    } else {
        // A day that had no row must still have none.
        RecordsetPtr rs = gDB->GetFwdOnlyRst(Stmt("SELECT LAST_TM FROM D_DIARY WHERE ?").part(dayKey()));
        if (!rs->eof())
            raiseRecordChanged(rs->Fields(0));
    }
    const QVector<DiaryDtlRec> lines = readLines();
    const QVector<LedgeRow> slips = readSlips();
    if (!sameRows(lines, mStored.lines, sameLine) || !sameRows(slips, mStored.slips, sameSlip))
        raiseRecordChanged(changedBy(lines, slips));
}

Value DiaryDay::changedBy(const QVector<DiaryDtlRec> &lines, const QVector<LedgeRow> &slips) const
{
    using namespace LedgeCol;
    const LedgeRow *latest = nullptr;
    auto when = [](const LedgeRow &r) { return hasValue(r[UDATE]) ? r[UDATE].toDate() : Nz(r[IDATE], Value(0)).toDate(); };
    for (const LedgeRow &r : slips)
        if (!among(r, mStored.slips, sameSlip) && (!latest || when(r) > when(*latest)))
            latest = &r;
    if (latest)
        return (*latest)[LAST_TM];
    for (const DiaryDtlRec &l : lines)
        if (l.shipment() && !among(l, mStored.lines, sameLine))
            return gDB->DLookup(QStringLiteral("LAST_TM"), QStringLiteral("D_SHIP"),
                                Stmt("FMR_ID=? AND SHIP_ID=?").num(day.FMR_ID).num(l.SHIP_ID));
    return Value();
}

void DiaryDay::takeStored()
{
    RecordsetPtr rs = gDB->GetFwdOnlyRst(Stmt("SELECT IDATE, UDATE, LAST_TM FROM D_DIARY WHERE ?").part(dayKey()));
    mStored.hadDay = !rs->eof();
    if (mStored.hadDay)
        mStored.stamps = {rs->Fields(0), rs->Fields(1), rs->Fields(2)};
    rs->Close();
    mStored.lines = readLines();
    mStored.slips = readSlips();
}

void DiaryDay::releaseHolds()
{
    gDB->ReleaseData(QStringLiteral("D_DIARY"), QString());
    gDB->ReleaseData(QStringLiteral("D_LEDGE"), QString());
}

void DiaryDay::SaveLedgeData()
{
    // All the farmer's slips of the day go, whichever record made them: they
    // are all in gLEDGE_ROWS since the day was read.
    gDB->EXEC(Stmt("DELETE  D_LEDGE.*  FROM D_LEDGE  WHERE  D_LEDGE.FMR_ID=? AND D_LEDGE.LEDGE_DATE=?")
                  .num(day.FMR_ID)
                  .time(day.WORK_DATE));
    RecordsetPtr rs = gDB->GetDynamicRst(Stmt("SELECT   D_LEDGE.*  FROM D_LEDGE  WHERE 0=1"));
    const QString comp = GetCompName();
    rs->BeginBatch(); // the day's slips in one statement
    for (const LedgeRow &row : gLEDGE_ROWS) {
        if (!positive(row[LedgeCol::LEDGE_ID]))
            continue;
        rs->AddNew();
        using namespace LedgeCol;
        for (int c : {FMR_ID, LEDGE_ID})
            rs->SetField(QString::fromLatin1(Names[c]), row[c]);
        rs->SetField(QStringLiteral("IDATE"), Value(DateUtil::now()));
        for (int c : {LEDGE_DATE, D_ACC_ID, D_OPT_KBN, D_OPT_ID, D_OPT_NM, C_ACC_ID, C_OPT_KBN, C_OPT_ID, C_OPT_NM,
                      CTR_NM, AMT, NOTES})
            rs->SetField(QString::fromLatin1(Names[c]), row[c]);
        rs->SetField(QStringLiteral("LAST_TM"), Value(comp));
        rs->SetField(QStringLiteral("HOLD_TM"), Value::null());
        rs->Update();
    }
    rs->EndBatch();
    rs->Close();
}

QString useQuantityText(const Value &qty, const Value &unitId, const NameTable &units)
{
    const QString q = (!hasValue(qty)) ? QString() : QString::number(qty.toDouble(), 'f', 1);
    return q + units(unitId);
}

namespace {

bool hasLot(const DiaryDtlRec &r) { return hasValue(r.CHEMI_ID) && IsNumeric(r.CHEMI_ID) && r.CHEMI_ID.toDouble() != 0; }

// The slip number a line holds (0 for none or one that is no number).
double slipNumber(const DiaryDtlRec &r)
{
    const Value v = Nz(r.LEDGE_ID, Value(0));
    return (v.isEmpty() || !IsNumeric(v)) ? 0 : v.toDouble();
}

// The quantity a line used (0 for none).
double usedQty(const DiaryDtlRec &r)
{
    const Value v = Nz(r.QTY, Value(0));
    return v.isEmpty() ? 0 : v.toDouble();
}

// A pesticide line's cost slip: the cost moves from the lots bought to the
// planting (account, option kind, option id and option name of each side);
// a correction changes the sides and its amount comes out positive.
struct CostSlip {
    struct Side {
        int acc;
        int kbn;
        Value id, name;
    } debit, credit;
    Currency amount;
};

CostSlip costSlip(const DiaryDtlRec &r, const QHash<qint32, LotPurchase> &purchases, const NameTable &units)
{
    // (each part made before the whole: what raises is raised with nothing
    // half built)
    const Currency amount = chemiAmount(purchases.value(qint32(r.CHEMI_ID.toLong())), Nz(r.QTY, Value(0)), r.UNIT_ID);
    const Value name(useQuantityText(r.QTY, r.UNIT_ID, units));
    CostSlip s{{Acc::PesticideCost, OptKbn::Planting, r.PLANT_ID, Value::null()},
               {Acc::PesticideStock, OptKbn::PesticideLot, r.CHEMI_ID, name},
               amount};
    if (usedQty(r) < 0) {
        std::swap(s.debit, s.credit);
        s.amount = Currency::fromInt(-1) * s.amount;
    }
    return s;
}

Stmt sideValues(const CostSlip::Side &side)
{
    return Stmt("?,?,?,?").num(side.acc).num(side.kbn).numOrNull(side.id).textOrNull(side.name);
}

// Line by line, each slip by its own statements: the old slip goes, and the
// new one takes the number after the farmer's highest at that moment.
void costSlipsOneByOne(DiaryDay &d, const QHash<qint32, LotPurchase> &purchases, const NameTable &units)
{
    for (DiaryDtlRec &r : d.dtl) {
        const Value ledgeV = Nz(r.LEDGE_ID, Value(0));
        const double ledge = slipNumber(r);
        if (!hasLot(r)) {
            // The pesticide was taken off a line that had its slip: the
            // statement below names no table and fails, which ends the save
            // here; so it has always been.
            if (ledge != 0)
                gDB->EXEC(Stmt("DELETE D_LEDGE.* FROM DELETE WHERE FMR_ID=? AND LEDGE_ID=?").num(d.day.FMR_ID).num(ledgeV));
            continue;
        }
        if (ledge > 0)
            gDB->EXEC(Stmt("DELETE D_LEDGE.* FROM D_LEDGE WHERE FMR_ID=? AND LEDGE_ID=?").num(d.day.FMR_ID).num(ledgeV));
        if (usedQty(r) == 0) {
            r.LEDGE_ID = Value(0);
            continue;
        }
        if (ledge == 0)
            r.LEDGE_ID = Value(nextLedgeId(r.FMR_ID));
        const CostSlip s = costSlip(r, purchases, units);
        gDB->EXEC(Stmt("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, LEDGE_DATE, D_ACC_ID, D_OPT_KBN, D_OPT_ID, D_OPT_NM, "
                       "C_ACC_ID, C_OPT_KBN, C_OPT_ID, C_OPT_NM, CTR_NM, NOTES, AMT, IDATE, UDATE, LAST_TM, HOLD_TM) "
                       "VALUES (?,?,?,?,?,NULL,?,?,?,?,?,NULL)")
                      .num(d.day.FMR_ID)
                      .num(r.LEDGE_ID)
                      .time(d.day.WORK_DATE)
                      .part(sideValues(s.debit))
                      .part(sideValues(s.credit))
                      .text(textOf(r.NOTES))
                      .amount(s.amount)
                      .timeOrNull(d.day.IDATE)
                      .time(DateUtil::now())
                      .text(GetCompName()));
    }
}

// The same slips in at most three statements: the farmer's highest number,
// the old slips' delete, and the new slips in a batch. The numbers are the
// ones the line-by-line way gives: the highest number is followed through
// the lines as it changes. False, with nothing written, for a day that only
// the line-by-line way writes as it always has: a slip left on a line
// without its lot, a slip named by two lines, a new number after the
// highest slip went, or a number that two slips would take.
bool costSlipsAtOnce(DiaryDay &d, const QHash<qint32, LotPurchase> &purchases, const NameTable &units)
{
    QSet<double> olds;
    QVector<Value> oldIds;
    for (const DiaryDtlRec &r : d.dtl) {
        const double ledge = slipNumber(r);
        if (!hasLot(r)) {
            if (ledge != 0)
                return false;
            continue;
        }
        if (ledge > 0) {
            if (olds.contains(ledge))
                return false;
            olds.insert(ledge);
            oldIds << Nz(r.LEDGE_ID, Value(0));
        }
    }
    // The highest number as the lines go: known while no slip that held it
    // has gone without a higher one written since.
    double highest = Nz(gDB->DMax(QStringLiteral("LEDGE_ID"), QStringLiteral("D_LEDGE"), Stmt("FMR_ID=?").num(d.day.FMR_ID)),
                        Value(0))
                         .toLong();
    bool known = true;
    QHash<int, Value> numbers; // line -> the slip number it takes
    QSet<double> taken;
    for (int i = 0; i < d.dtl.size(); ++i) {
        const DiaryDtlRec &r = d.dtl[i];
        if (!hasLot(r))
            continue;
        const double ledge = slipNumber(r);
        if (ledge > 0 && ledge == highest)
            known = false;
        if (usedQty(r) == 0) {
            numbers.insert(i, Value(0));
            continue;
        }
        Value number = r.LEDGE_ID;
        double n = ledge;
        if (ledge == 0) {
            if (!known)
                return false;
            n = highest + 1;
            number = Value(qint32(n));
        }
        if (taken.contains(n))
            return false;
        taken.insert(n);
        if (n >= highest) {
            highest = n;
            known = true;
        }
        numbers.insert(i, number);
    }
    if (!oldIds.isEmpty())
        gDB->EXEC(Stmt("DELETE D_LEDGE.* FROM D_LEDGE WHERE FMR_ID=? AND LEDGE_ID IN (?)").num(d.day.FMR_ID).ids(oldIds));
    RecordsetPtr w = gDB->GetDynamicRst(Stmt("SELECT   D_LEDGE.*  FROM D_LEDGE  WHERE 0=1"));
    const QString comp = GetCompName();
    const Value now(DateUtil::now());
    w->BeginBatch();
    for (int i = 0; i < d.dtl.size(); ++i) {
        if (!numbers.contains(i))
            continue;
        DiaryDtlRec &r = d.dtl[i];
        r.LEDGE_ID = numbers.value(i);
        if (usedQty(r) == 0)
            continue;
        const CostSlip s = costSlip(r, purchases, units);
        w->AddNew();
        w->SetField(QStringLiteral("FMR_ID"), d.day.FMR_ID);
        w->SetField(QStringLiteral("LEDGE_ID"), r.LEDGE_ID);
        w->SetField(QStringLiteral("LEDGE_DATE"), d.day.WORK_DATE);
        for (const auto &[prefix, side] : {std::pair{"D_", &s.debit}, std::pair{"C_", &s.credit}}) {
            const QString p = QString::fromLatin1(prefix);
            w->SetField(p + QStringLiteral("ACC_ID"), Value(side->acc));
            w->SetField(p + QStringLiteral("OPT_KBN"), Value(side->kbn));
            w->SetField(p + QStringLiteral("OPT_ID"), hasValue(side->id) ? side->id : Value::null());
            w->SetField(p + QStringLiteral("OPT_NM"), textOrNull(textOf(side->name)));
        }
        w->SetField(QStringLiteral("CTR_NM"), Value::null());
        // no notes are written as '', as the line-by-line statement writes them
        const QString notes = textOf(r.NOTES);
        w->SetField(QStringLiteral("NOTES"), Value(notes.isNull() ? QString(QLatin1String("")) : notes));
        w->SetField(QStringLiteral("AMT"), Value(s.amount));
        w->SetField(QStringLiteral("IDATE"), hasValue(d.day.IDATE) ? d.day.IDATE : Value::null());
        w->SetField(QStringLiteral("UDATE"), now);
        w->SetField(QStringLiteral("LAST_TM"), Value(comp));
        w->SetField(QStringLiteral("HOLD_TM"), Value::null());
        w->Update();
    }
    w->EndBatch();
    w->Close();
    return true;
}

} // namespace

void DiaryDay::SaveUseChemi()
{
    // What the day's lots were bought as, read at once for their costs.
    QVector<Value> lots;
    for (const DiaryDtlRec &r : dtl)
        if (hasLot(r))
            lots << Value(qint32(r.CHEMI_ID.toLong()));
    const QHash<qint32, LotPurchase> purchases = readPurchases(day.FMR_ID, lots);
    const NameTable units = lots.isEmpty() ? NameTable() : NameTable::units();
    if (!costSlipsAtOnce(*this, purchases, units))
        costSlipsOneByOne(*this, purchases, units);
}

void DiaryDay::saveDay()
{
    RecordsetPtr rs = gDB->GetDynamicRst(
        Stmt("SELECT D_DIARY.* FROM D_DIARY  WHERE FMR_ID=? AND WORK_DATE=?").num(day.FMR_ID).time(day.WORK_DATE));
    if (rs->eof()) {
        rs->AddNew();
        rs->SetField(QStringLiteral("FMR_ID"), day.FMR_ID);
        rs->SetField(QStringLiteral("WORK_DATE"), day.WORK_DATE);
        rs->SetField(QStringLiteral("IDATE"), Value(DateUtil::now()));
    } else {
        rs->SetField(QStringLiteral("UDATE"), Value(DateUtil::now()));
    }
    DiaryDayRec::map().write(*rs, day, kDayEdited);
    rs->SetField(QStringLiteral("LAST_TM"), Value(GetCompName()));
    rs->SetField(QStringLiteral("HOLD_TM"), Value::null());
    rs->Update();
    rs->Close();
}

void DiaryDay::saveDetails()
{
    const Stmt where = Stmt(" WHERE FMR_ID=? AND WORK_DATE=?").num(day.FMR_ID).time(day.WORK_DATE);
    gDB->EXEC(Stmt("DELETE D_DIARY_DTL.* FROM D_DIARY_DTL?").part(where));
    RecordsetPtr rs = gDB->GetDynamicRst(Stmt("SELECT D_DIARY_DTL.* FROM D_DIARY_DTL ?").part(where));
    // Every element is written, a blank one too: an empty day keeps one
    // empty line numbered 1. Key and number are the day's and the place's.
    const QStringList kept = DiaryDtlRec::map().names().mid(3);
    rs->BeginBatch(); // the day's lines in one statement
    for (int i = 0; i < dtl.size(); ++i) {
        rs->AddNew();
        rs->SetField(QStringLiteral("FMR_ID"), day.FMR_ID);
        rs->SetField(QStringLiteral("WORK_DATE"), day.WORK_DATE);
        rs->SetField(QStringLiteral("DTL_NO"), Value(i + 1));
        DiaryDtlRec::map().write(*rs, dtl[i], kept);
        rs->Update();
    }
    rs->EndBatch();
    rs->Close();
}
