#include "rules/planting/PlantEntry.h"

#include "rules/common/Lists.h"
#include "store/Database.h"
#include "store/Stmt.h"

#include <algorithm>
#include <cmath>

namespace Plant {

namespace {

const int kNumberBoxes[] = {Box::Year, Box::Month, Box::PrdId, Box::Area, Box::ShipEst};
const int kDateBoxes[] = {Box::StartDate, Box::EndDate, Box::PlantDate, Box::ShipFrom, Box::ShipTo};

template <size_t N> bool among(const int (&set)[N], int i)
{
    return std::find(std::begin(set), std::end(set), i) != std::end(set);
}

// A number as typed ("１２", "1,200") kept as its value.
Value numberOrNull(const QString &t)
{
    double d;
    if (!parseNumber(t, d))
        return Value::null();
    if (d == std::floor(d) && std::fabs(d) <= 2147483647.0)
        return Value::int32(qint64(d));
    return Value(d);
}

Value dateOrNull(const QString &t)
{
    QDateTime dt;
    if (t.isEmpty() || !DateUtil::parse(t, dt))
        return Value::null();
    return Value(dt);
}

// A product code is a whole number the code column can hold.
bool isCode(const QString &t)
{
    double d;
    return parseNumber(t, d) && d == std::floor(d) && d >= 0 && d <= 99999999.0;
}

// Crops are their own keys.
QVector<Choice> cropsOf(const QString &sql)
{
    QVector<Choice> out;
    RecordsetPtr rs = gWORK->GetFwdOnlyRst(sql);
    for (; !rs->eof(); rs->MoveNext()) {
        const QString name = Nz(rs->Fields(QStringLiteral("CROP_NM1")), Value(QString())).toText();
        out.append({Value(name), name});
    }
    rs->Close();
    return out;
}

} // namespace

bool isNumberBox(int box) { return among(kNumberBoxes, box); }

bool isDateBox(int box) { return among(kDateBoxes, box); }

QString leaveBox(PlantRow &r, int box, const QString &text, const QDate &today)
{
    if (isNumberBox(box) && !text.isEmpty() && !IsNumeric(Value(text)))
        return QStringLiteral("数値を指定してください。");
    if (box == Box::PrdId && !text.isEmpty() && !isCode(text))
        return QStringLiteral("商品コードは８桁までの整数で指定してください。");
    if (isDateBox(box) && !text.isEmpty()) {
        if (!IsDate(Value(text)))
            return QStringLiteral("日付を指定してください。");
        QDateTime day;
        if (!DateUtil::parseStorable(text, day))
            return QStringLiteral("日付は1000年から9999年までで指定してください。");
    }
    switch (box) {
    case Box::Year:
    case Box::Month: {
        if (text.isEmpty()) {
            // The harvest month goes; the year stays.
            r.HARVEST_SCHD_YM = Value::null();
            break;
        }
        // The first of the month: a month 13 is January of the next year.
        const QString year = box == Box::Year ? text : harvestYearText(r.HARVEST_SCHD_YM);
        const QString month = box == Box::Month ? text : harvestMonthText(r.HARVEST_SCHD_YM);
        const HarvestMonth h = harvestMonth(year, month, today);
        if (!h.ok)
            return QStringLiteral("収穫予定月を正しく指定してください。");
        r.YYYY = Value(h.year);
        r.HARVEST_SCHD_YM = Value(h.ym);
        break;
    }
    case Box::PrdId:
        if (text.isEmpty()) {
            r.PRD_ID = r.PRD_NM = Value::null();
        } else {
            // Searched across all shops.
            r.PRD_ID = numberOrNull(text);
            r.PRD_NM = textOrNull(textOf(gMST->DLookup(QStringLiteral("PRD_NM"), QStringLiteral("M_PRD"),
                                                       Stmt("PRD_ID=?").num(r.PRD_ID))));
        }
        break;
    case Box::Variety: r.CROP_NM1 = textOrNull(text); break;
    case Box::Item: r.CROP_NM2 = textOrNull(text); break;
    case Box::PrdNm: r.PRD_NM = textOrNull(text); break;
    case Box::Field: r.FIELD_NM = textOrNull(text); break;
    case Box::Name: r.PLANT_NM = textOrNull(text); break;
    case Box::Notes1: r.NOTES1 = textOrNull(text); break;
    case Box::Notes2: r.NOTES2 = textOrNull(text); break;
    case Box::Area: r.AREA = numberOrNull(text); break;
    case Box::ShipEst: r.SHIP_EST = numberOrNull(text); break;
    case Box::StartDate: r.START_DATE = dateOrNull(text); break;
    case Box::EndDate: r.END_DATE = dateOrNull(text); break;
    case Box::PlantDate: r.PLANT_DATE = dateOrNull(text); break;
    case Box::ShipFrom: r.SHIP_SCHD_DATE1 = dateOrNull(text); break;
    case Box::ShipTo: r.SHIP_SCHD_DATE2 = dateOrNull(text); break;
    default: break;
    }
    return QString();
}

QVector<Choice> farmers()
{
    return readChoices(gMST.get(),
                QStringLiteral("SELECT M_FMR.FMR_ID, M_FMR.FMR_NM FROM M_FMR WHERE CHK_FLG<>0 ORDER BY M_FMR.FMR_ID"),
                QStringLiteral("FMR_ID"), QStringLiteral("FMR_NM"));
}

QVector<Choice> cropGroups()
{
    return readChoices(gWORK.get(),
                QStringLiteral("SELECT DISTINCT L_CROP_KBN.CROP_KBN, L_CROP_KBN.CROP_KBN_NM "
                               "FROM L_CROP_KBN ORDER BY L_CROP_KBN.CROP_KBN"),
                QStringLiteral("CROP_KBN"), QStringLiteral("CROP_KBN_NM"));
}

QVector<Choice> crops()
{
    return cropsOf(QStringLiteral("SELECT L_CROP.CROP_NM1 FROM L_CROP ORDER BY L_CROP.CROP_NM1"));
}

QVector<Choice> cropsOfGroup(const QString &group)
{
    return cropsOf(Stmt("SELECT L_CROP.CROP_NM1 FROM L_CROP WHERE L_CROP.CROP_KBN LIKE ? ORDER BY L_CROP.CROP_NM1")
                       .text(group + QLatin1Char('%')));
}

QVector<Choice> kinds(Kbn kbn)
{
    return readChoices(gWORK.get(), Stmt("SELECT L_KBN.ID, L_KBN.NM FROM L_KBN WHERE KBN=? ORDER BY L_KBN.ID").num(int(kbn)),
                QStringLiteral("ID"), QStringLiteral("NM"));
}

Value cropGroup(const QString &crop)
{
    return gWORK->DLookup(QStringLiteral("CROP_KBN"), QStringLiteral("L_CROP"), Stmt("CROP_NM1=?").text(crop));
}

void chooseKey(PlantRow &r, int combo, const Value &key)
{
    switch (combo) {
    case Combo::Farmer: r.FMR_ID = key; break;
    case Combo::PlantType: r.PLANT_TYPE = key; break;
    case Combo::ShipEstUnit: r.SHIP_EST_UNIT = key; break;
    default: break;
    }
}

bool chooseCrop(PlantRow &r, const QString &crop)
{
    if (crop.isEmpty()) {
        r.CROP_NM = Value::null();
        return false;
    }
    if (crop == textOf(r.CROP_NM))
        return false;
    // Another crop: its name is the variety, and its item comes with it.
    r.CROP_NM = Value(crop);
    r.CROP_NM1 = Value(crop);
    r.CROP_NM2 = textOrNull(textOf(
        gWORK->DLookup(QStringLiteral("CROP_NM2"), QStringLiteral("L_CROP"), Stmt("CROP_NM1=?").text(crop))));
    return true;
}

void finish(PlantRow &r, const QDateTime &today) { r.END_DATE = Value(today); }

PlantRow openRecord(Mode mode, int row, const Value &farmer)
{
    PlantRow r;
    if (row >= 0 && row < gPLANT_ROWS.size())
        r = gPLANT_ROWS[row];
    if (mode == Mode::Add) {
        // A copy repeats the planting with new dates.
        r.FMR_ID = farmer;
        r.START_DATE = r.PLANT_DATE = r.END_DATE = Value::null();
        r.SHIP_SCHD_DATE1 = r.SHIP_SCHD_DATE2 = Value::null();
    }
    return r;
}

Refusal check(PlantRow &r, Mode mode, const QString &nameText, const QString &yearText)
{
    if (mode == Mode::Add)
        r.PLANT_ID = nextPlantId(r.FMR_ID);
    if (mode == Mode::Delete)
        return {deleteRefusal(r.FMR_ID, r.PLANT_ID)};
    if (mode == Mode::Add || mode == Mode::Change) {
        if (nameText.isEmpty())
            return {QStringLiteral("名称は必須入力です。"), Box::Name};
        if (yearText.isEmpty())
            return {QStringLiteral("収穫年は必須入力です。"), Box::Year};
    }
    return {};
}

} // namespace Plant
