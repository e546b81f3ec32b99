#include "rules/diary/DiaryDay.h"

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "store/SqlText.h"
#include "rules/pesticide/ChemiStock.h"
#include "store/Database.h"
#include "store/Lookup.h"

namespace {

// Fields of a line in table order, with their column names.
struct DtlField {
    const char *name;
    Value DiaryDtlRec::*member;
};
const DtlField kDtlFields[] = {
    {"FMR_ID", &DiaryDtlRec::FMR_ID},     {"WORK_DATE", &DiaryDtlRec::WORK_DATE}, {"DTL_NO", &DiaryDtlRec::DTL_NO},
    {"PLANT_ID", &DiaryDtlRec::PLANT_ID}, {"WORK_KBN", &DiaryDtlRec::WORK_KBN},   {"WORK_NM", &DiaryDtlRec::WORK_NM},
    {"NOTES", &DiaryDtlRec::NOTES},       {"CHEMI_ID", &DiaryDtlRec::CHEMI_ID},   {"CHEMI_NM", &DiaryDtlRec::CHEMI_NM},
    {"REG_NO", &DiaryDtlRec::REG_NO},     {"PURPOSE", &DiaryDtlRec::PURPOSE},     {"QTY", &DiaryDtlRec::QTY},
    {"UNIT_ID", &DiaryDtlRec::UNIT_ID},   {"SHIP_ID", &DiaryDtlRec::SHIP_ID},     {"SCHD_ID", &DiaryDtlRec::SCHD_ID},
    {"LEDGE_ID", &DiaryDtlRec::LEDGE_ID},
};

// A value written into SQL text as the statements do: Null as NULL.
QString sqlValue(const Value &v) { return (!hasValue(v)) ? QStringLiteral("NULL") : v.toText(); }

bool positive(const Value &v) { return hasValue(v) && IsNumeric(v) && v.toDouble() > 0; }

} // namespace

void DiaryDay::clear()
{
    day = DiaryDayRec();
    dtl = QVector<DiaryDtlRec>(1);
}

QString DiaryDay::farmer() const { return day.FMR_ID.toText(); }
QString DiaryDay::sqlDay() const { return DateUtil::sqlText(day.WORK_DATE.toDate()); }

void DiaryDay::load(const Value &fmrId, const QDateTime &workDate)
{
    clear();
    day.FMR_ID = fmrId;
    day.WORK_DATE = Value(workDate);
    day.IDATE = Value(DateUtil::now());

    RecordsetPtr rs = gDB->GetDynamicRst(QStringLiteral("SELECT D_DIARY.* FROM D_DIARY") + QStringLiteral(" WHERE FMR_ID=") +
                                         farmer() + QStringLiteral(" AND WORK_DATE=#") + sqlDay() + QStringLiteral("#"));
    if (!rs->eof()) {
        day.WTH_ID = rs->Fields(QStringLiteral("WTH_ID"));
        day.LO_TMP = rs->Fields(QStringLiteral("LO_TMP"));
        day.HI_TMP = rs->Fields(QStringLiteral("HI_TMP"));
        day.ONE_MSG = rs->Fields(QStringLiteral("ONE_MSG"));
        day.NOTES1 = rs->Fields(QStringLiteral("NOTES1"));
        day.NOTES2 = rs->Fields(QStringLiteral("NOTES2"));
        day.IDATE = rs->Fields(QStringLiteral("IDATE"));
        day.UDATE = rs->Fields(QStringLiteral("UDATE"));
        day.LAST_TM = rs->Fields(QStringLiteral("LAST_TM"));
        day.HOLD_TM = rs->Fields(QStringLiteral("HOLD_TM"));
        // The day is held by this computer, whoever held it before.
        rs->SetField(QStringLiteral("HOLD_TM"), Value(GetCompName()));
        rs->Update();
    }
    rs->Close();

    rs = gDB->GetFwdOnlyRst(QStringLiteral("SELECT D_DIARY_DTL.* FROM D_DIARY_DTL WHERE FMR_ID=") + farmer() +
                            QStringLiteral(" AND WORK_DATE=#") + sqlDay() +
                            QStringLiteral("# ORDER BY D_DIARY_DTL.DTL_NO"));
    int n = 0;
    for (; !rs->eof(); rs->MoveNext(), ++n) {
        if (n > 0)
            dtl.append(DiaryDtlRec());
        DiaryDtlRec &r = dtl[n];
        for (const DtlField &f : kDtlFields)
            r.*f.member = rs->Fields(QString::fromLatin1(f.name));
        r.FMR_ID = fmrId;
        r.WORK_DATE = Value(workDate);
    }

    gLEDGE_ROWS = {blankLedgeRow()};
    rs = gDB->GetFwdOnlyRst(QStringLiteral("SELECT  D_LEDGE.*  FROM D_LEDGE  WHERE  D_LEDGE.FMR_ID=") + farmer() +
                            QStringLiteral(" AND D_LEDGE.LEDGE_DATE=#") + sqlDay() + QStringLiteral("#") +
                            QStringLiteral(" ORDER BY D_LEDGE.LEDGE_DATE, D_LEDGE.LEDGE_ID"));
    n = 0;
    for (; !rs->eof(); rs->MoveNext(), ++n) {
        if (n > 0)
            gLEDGE_ROWS.append(blankLedgeRow());
        for (int c = 0; c < LedgeCol::Count; ++c)
            gLEDGE_ROWS[n][c] = rs->Fields(QString::fromLatin1(LedgeCol::Names[c]));
    }
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
    for (int i = 0; i < gLEDGE_ROWS.size(); ++i) {
        const Value &id = gLEDGE_ROWS[i][LedgeCol::LEDGE_ID];
        if (hasValue(id) && IsNumeric(id) && id.toDouble() == ledge.toDouble()) {
            gLEDGE_ROWS.remove(i);
            if (gLEDGE_ROWS.isEmpty())
                gLEDGE_ROWS.append(blankLedgeRow());
            break;
        }
    }
    return true;
}

int DiaryDay::findDetail(const Value &dtlNo) const
{
    for (int i = 0; i < dtl.size(); ++i) {
        const Value &no = dtl[i].DTL_NO;
        if (hasValue(no) && IsNumeric(no) && IsNumeric(dtlNo) && no.toDouble() == dtlNo.toDouble())
            return i;
    }
    return -1;
}

void DiaryDay::save()
{
    // Each step is committed by itself: a failure leaves the steps before it
    // written and none of its own rows.
    inTransaction(gDB.get(), [this] { SaveLedgeData(); });
    inTransaction(gDB.get(), [this] { SaveUseChemi(); });
    inTransaction(gDB.get(), [this] { saveDay(); });
    inTransaction(gDB.get(), [this] { saveDetails(); });
    RecountChemiUse(day.FMR_ID, day.WORK_DATE.toDate());
}

void DiaryDay::SaveLedgeData()
{
    gDB->EXEC(QStringLiteral("DELETE  D_LEDGE.*  FROM D_LEDGE  WHERE  D_LEDGE.FMR_ID=") + gFMR_ID.toText() +
              QStringLiteral(" AND D_LEDGE.LEDGE_DATE=#") + DateUtil::sqlText(gWORK_DATE.toDate()) +
              QStringLiteral("#"));
    RecordsetPtr rs = gDB->GetDynamicRst(QStringLiteral("SELECT   D_LEDGE.*  FROM D_LEDGE  WHERE 0=1"));
    const QString comp = GetCompName();
    for (const LedgeRow &row : gLEDGE_ROWS) {
        if (!positive(row[LedgeCol::LEDGE_ID]))
            continue;
        rs->AddNew();
        using namespace LedgeCol;
        for (int c : {FMR_ID, LEDGE_ID}) {
            rs->SetField(QString::fromLatin1(Names[c]), row[c]);
        }
        rs->SetField(QStringLiteral("IDATE"), Value(DateUtil::now()));
        for (int c : {LEDGE_DATE, D_ACC_ID, D_OPT_KBN, D_OPT_ID, D_OPT_NM, C_ACC_ID, C_OPT_KBN, C_OPT_ID, C_OPT_NM,
                      CTR_NM, AMT, NOTES})
            rs->SetField(QString::fromLatin1(Names[c]), row[c]);
        rs->SetField(QStringLiteral("LAST_TM"), Value(comp));
        rs->SetField(QStringLiteral("HOLD_TM"), Value::null());
        rs->Update();
    }
    rs->Close();
}

QString useQuantityText(const Value &qty, const Value &unitId)
{
    const QString q = (!hasValue(qty)) ? QString() : QString::number(qty.toDouble(), 'f', 1);
    return q + GetChemiUnitNm(unitId);
}

void DiaryDay::SaveUseChemi()
{
    for (DiaryDtlRec &r : dtl) {
        const Value ledgeV = Nz(r.LEDGE_ID, Value(0));
        const double ledge = (ledgeV.isEmpty() || !IsNumeric(ledgeV)) ? 0 : ledgeV.toDouble();
        const bool chemi = hasValue(r.CHEMI_ID) && IsNumeric(r.CHEMI_ID) &&
                           r.CHEMI_ID.toDouble() != 0;
        if (!chemi) {
            // The pesticide was taken off a line that had its slip: the
            // statement below names no table and fails, which ends the save
            // here; so it has always been.
            if (ledge != 0)
                gDB->EXEC(QStringLiteral("DELETE D_LEDGE.* FROM DELETE") + QStringLiteral(" WHERE FMR_ID=") + farmer() +
                          QStringLiteral(" AND LEDGE_ID=") + ledgeV.toText());
            continue;
        }
        if (ledge > 0)
            gDB->EXEC(QStringLiteral("DELETE D_LEDGE.* FROM D_LEDGE WHERE ") + QStringLiteral("FMR_ID=") + farmer() +
                      QStringLiteral(" AND LEDGE_ID=") + ledgeV.toText());
        const Value qtyV = Nz(r.QTY, Value(0));
        const double qty = qtyV.isEmpty() ? 0 : qtyV.toDouble();
        if (qty == 0) {
            r.LEDGE_ID = Value(0);
            continue;
        }
        if (ledge == 0)
            r.LEDGE_ID = Value(GetNewLedgeId(r.FMR_ID));
        Currency amount = CalChemiAmt(day.FMR_ID, r.CHEMI_ID, qtyV, r.UNIT_ID);
        // the planting side and the pesticide side
        QString planting = QStringLiteral("4160,2,") + sqlValue(r.PLANT_ID) + QStringLiteral(",NULL");
        const QString name = useQuantityText(r.QTY, r.UNIT_ID);
        QString pesticide = QStringLiteral("1130,3,") + sqlValue(r.CHEMI_ID) + QLatin1Char(',') +
                            Sql::quotedOrNull(Value(name));
        QString debit = planting, credit = pesticide;
        if (qty < 0) {
            // a correction: the sides change places and the amount comes out positive
            std::swap(debit, credit);
            amount = Currency::fromInt(-1) * amount;
        }
        const QString notes = textOf(r.NOTES);
        const QString idate = (!hasValue(day.IDATE))
                                  ? QStringLiteral("NULL")
                                  : QLatin1Char('#') + DateUtil::sqlText(day.IDATE.toDate()) + QLatin1Char('#');
        gDB->EXEC(QStringLiteral("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, LEDGE_DATE, D_ACC_ID, D_OPT_KBN, D_OPT_ID, "
                                 "D_OPT_NM, C_ACC_ID, C_OPT_KBN, C_OPT_ID, C_OPT_NM, CTR_NM, NOTES, AMT, IDATE, UDATE, "
                                 "LAST_TM, HOLD_TM) VALUES (") +
                  farmer() + QLatin1Char(',') + r.LEDGE_ID.toText() + QStringLiteral(",#") + sqlDay() +
                  QStringLiteral("#,") + debit + QLatin1Char(',') + credit + QStringLiteral(",NULL,") + Sql::quoted(notes) +
                  QLatin1Char(',') + amount.toString() + QLatin1Char(',') + idate + QStringLiteral(",#") +
                  DateUtil::sqlText(DateUtil::now()) + QStringLiteral("#,") + Sql::quoted(GetCompName()) +
                  QStringLiteral(",NULL)"));
    }
}

void DiaryDay::saveDay()
{
    RecordsetPtr rs = gDB->GetDynamicRst(QStringLiteral("SELECT D_DIARY.* FROM D_DIARY ") + QStringLiteral(" WHERE FMR_ID=") +
                                         farmer() + QStringLiteral(" AND WORK_DATE=#") + sqlDay() + QStringLiteral("#"));
    if (rs->eof()) {
        rs->AddNew();
        rs->SetField(QStringLiteral("FMR_ID"), day.FMR_ID);
        rs->SetField(QStringLiteral("WORK_DATE"), day.WORK_DATE);
        rs->SetField(QStringLiteral("IDATE"), Value(DateUtil::now()));
    } else {
        rs->SetField(QStringLiteral("UDATE"), Value(DateUtil::now()));
    }
    rs->SetField(QStringLiteral("WTH_ID"), day.WTH_ID);
    rs->SetField(QStringLiteral("LO_TMP"), day.LO_TMP);
    rs->SetField(QStringLiteral("HI_TMP"), day.HI_TMP);
    rs->SetField(QStringLiteral("ONE_MSG"), day.ONE_MSG);
    rs->SetField(QStringLiteral("NOTES1"), day.NOTES1);
    rs->SetField(QStringLiteral("NOTES2"), day.NOTES2);
    rs->SetField(QStringLiteral("LAST_TM"), Value(GetCompName()));
    rs->SetField(QStringLiteral("HOLD_TM"), Value::null());
    rs->Update();
    rs->Close();
}

void DiaryDay::saveDetails()
{
    const QString where = QStringLiteral(" WHERE FMR_ID=") + farmer() + QStringLiteral(" AND WORK_DATE=#") + sqlDay() +
                          QStringLiteral("#");
    gDB->EXEC(QStringLiteral("DELETE D_DIARY_DTL.* FROM D_DIARY_DTL") + where);
    RecordsetPtr rs = gDB->GetDynamicRst(QStringLiteral("SELECT D_DIARY_DTL.* FROM D_DIARY_DTL ") + where);
    // Every element is written, a blank one too: an empty day keeps one
    // empty line numbered 1.
    for (int i = 0; i < dtl.size(); ++i) {
        const DiaryDtlRec &r = dtl[i];
        rs->AddNew();
        rs->SetField(QStringLiteral("FMR_ID"), day.FMR_ID);
        rs->SetField(QStringLiteral("WORK_DATE"), day.WORK_DATE);
        rs->SetField(QStringLiteral("DTL_NO"), Value(i + 1));
        for (const DtlField &f : kDtlFields) {
            const QString name = QString::fromLatin1(f.name);
            if (name == QLatin1String("FMR_ID") || name == QLatin1String("WORK_DATE") || name == QLatin1String("DTL_NO"))
                continue;
            rs->SetField(name, r.*f.member);
        }
        rs->Update();
    }
    rs->Close();
}
