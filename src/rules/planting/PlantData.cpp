#include "rules/planting/PlantData.h"

#include "store/Database.h"
#include "store/Stmt.h"

#include <cmath>

QVector<PlantRow> gPLANT_ROWS;

namespace {

// The columns of D_PLANT in the table's order, but those named.
QStringList columnsBut(std::initializer_list<const char *> left)
{
    QStringList out = PlantRow::map().names();
    for (const char *n : left)
        out.removeOne(QString::fromLatin1(n));
    return out;
}

// A number rounded as the display formats round: half away from zero.
qint64 roundAway(double d) { return qint64(d < 0 ? -std::floor(-d + 0.5) : std::floor(d + 0.5)); }

// The whole part of a box for a date built from year and month: empty and
// text that is no number count 0, fractions round half to even.
bool wholeOf(const QString &text, double &out)
{
    double d = 0;
    if (!text.trimmed().isEmpty() && !parseNumber(text, d))
        d = 0;
    out = roundHalfEven(d);
    return std::fabs(out) < 1e9;
}

} // namespace

const ColumnMap<PlantRow> &PlantRow::map()
{
    static const ColumnMap<PlantRow> m{
        {"PLANT_ID", &PlantRow::PLANT_ID},
        {"PLANT_NM", &PlantRow::PLANT_NM},
        {"YYYY", &PlantRow::YYYY},
        {"FMR_ID", &PlantRow::FMR_ID},
        {"HARVEST_SCHD_YM", &PlantRow::HARVEST_SCHD_YM},
        {"CROP_NM", &PlantRow::CROP_NM},
        {"CROP_NM1", &PlantRow::CROP_NM1},
        {"CROP_NM2", &PlantRow::CROP_NM2},
        {"PRD_ID", &PlantRow::PRD_ID},
        {"PRD_NM", &PlantRow::PRD_NM},
        {"PLANT_TYPE", &PlantRow::PLANT_TYPE},
        {"FIELD_NM", &PlantRow::FIELD_NM},
        {"AREA", &PlantRow::AREA},
        {"CROP_EST", &PlantRow::CROP_EST},
        {"CROP_EST_UNIT", &PlantRow::CROP_EST_UNIT},
        {"PLANT_DATE", &PlantRow::PLANT_DATE},
        {"START_DATE", &PlantRow::START_DATE},
        {"END_DATE", &PlantRow::END_DATE},
        {"SHIP_EST", &PlantRow::SHIP_EST},
        {"SHIP_EST_UNIT", &PlantRow::SHIP_EST_UNIT},
        {"SHIP_SCHD_DATE1", &PlantRow::SHIP_SCHD_DATE1},
        {"SHIP_SCHD_DATE2", &PlantRow::SHIP_SCHD_DATE2},
        {"IMG_PATH1", &PlantRow::IMG_PATH1},
        {"IMG_PATH2", &PlantRow::IMG_PATH2},
        {"NOTES1", &PlantRow::NOTES1},
        {"NOTES2", &PlantRow::NOTES2},
        {"IDATE", &PlantRow::IDATE},
        {"UDATE", &PlantRow::UDATE},
        {"LAST_TM", &PlantRow::LAST_TM},
        {"HOLD_TM", &PlantRow::HOLD_TM},
    };
    return m;
}

namespace Plant {

const QStringList &listColumns()
{
    static const QStringList cols = columnsBut({"IMG_PATH1", "IMG_PATH2"});
    return cols;
}

const QStringList &savedColumns()
{
    // The key and the stamps are written by the save itself.
    static const QStringList cols = columnsBut({"PLANT_ID", "FMR_ID", "IDATE", "UDATE", "LAST_TM", "HOLD_TM"});
    return cols;
}

HarvestMonth harvestMonth(const QString &yearText, const QString &monthText, const QDate &today)
{
    HarvestMonth h;
    double y = 0, m = 0;
    if (!wholeOf(yearText, y) || !wholeOf(monthText, m))
        return h;
    if (y == 0)
        y = today.year();
    if (m == 0)
        m = today.month();
    if (y >= 0 && y < 30)
        y += 2000;
    else if (y >= 30 && y < 100)
        y += 1900;
    // Months past December or before January move the year.
    const double months = y * 12 + (m - 1);
    const double year = std::floor(months / 12);
    const int month = int(months - year * 12) + 1;
    if (year < 100 || year > 9999)
        return h;
    h.ok = true;
    h.year = int(year);
    h.month = month;
    h.ym = QStringLiteral("%1%2").arg(h.year, 4, 10, QLatin1Char('0')).arg(h.month, 2, 10, QLatin1Char('0'));
    return h;
}

QString harvestDigits(const Value &ym)
{
    if (!hasValue(ym))
        return QString();
    if (!IsNumeric(ym) || ym.isDateType())
        return ym.toText();
    const qint64 n = roundAway(ym.toDouble());
    const QString digits = QString::number(n < 0 ? -n : n).rightJustified(6, QLatin1Char('0'));
    return n < 0 ? QLatin1Char('-') + digits : digits;
}

QString harvestYearText(const Value &ym) { return harvestDigits(ym).left(4); }

QString harvestMonthText(const Value &ym) { return harvestDigits(ym).right(2); }

QString harvestListText(const Value &ym)
{
    const QString digits = harvestDigits(ym);
    if (!hasValue(ym) || !IsNumeric(ym) || ym.isDateType())
        return digits;
    return digits.left(digits.size() - 2) + QLatin1Char('/') + digits.right(2);
}

QString yearFilterRefusal(const QString &yearText)
{
    if (yearText.isEmpty() || IsNumeric(Value(yearText)))
        return QString();
    return QStringLiteral("数値を指定してください。");
}

QString listSql(const QString &yearText, const QString &crop, const Value &kind)
{
    QVector<Stmt> criteria;
    if (!yearText.isEmpty())
        criteria << Stmt(" D_PLANT.YYYY=?").num(Value(yearText));
    if (!crop.isEmpty())
        criteria << Stmt(" D_PLANT.CROP_NM=?").text(crop);
    if (hasValue(kind) && !(IsNumeric(kind) && kind.toDouble() == 0))
        criteria << Stmt(" D_PLANT.PLANT_TYPE=?").num(kind);
    const Stmt where =
        criteria.isEmpty() ? Stmt("") : Stmt(" WHERE?").part(Stmt::joined(criteria, QStringLiteral(" AND ")));
    return Stmt("SELECT D_PLANT.*  FROM D_PLANT ? ORDER BY D_PLANT.YYYY, D_PLANT.CROP_NM, D_PLANT.PLANT_DATE")
        .part(where);
}

void readList(const QString &yearText, const QString &crop, const Value &kind)
{
    RecordsetPtr rs = gDB->GetFwdOnlyRst(listSql(yearText, crop, kind));
    QVector<PlantRow> rows;
    for (; !rs->eof(); rs->MoveNext()) {
        PlantRow row;
        PlantRow::map().read(*rs, row, listColumns());
        rows.append(row);
    }
    rs->Close();
    gPLANT_ROWS = rows;
}

int rowOfPlant(const Value &id)
{
    if (!hasValue(id) || !IsNumeric(id))
        return -1;
    const double want = id.toDouble();
    for (int i = 0; i < gPLANT_ROWS.size(); ++i) {
        const Value &v = gPLANT_ROWS[i].PLANT_ID;
        if (hasValue(v) && IsNumeric(v) && v.toDouble() == want)
            return i;
    }
    return -1;
}

Value nextPlantId(const Value &farmer)
{
    const Value max = gDB->DMax(QStringLiteral("PLANT_ID"), QStringLiteral("D_PLANT"), Stmt("FMR_ID=?").num(farmer));
    return Value::int32(qint64(Nz(max, Value(0)).toDouble()) + 1);
}

QString deleteRefusal(const Value &farmer, const Value &plantId)
{
    const QString key = Stmt("FMR_ID=? AND PLANT_ID=?").num(farmer).num(plantId);
    const auto earliest = [&](const QString &column, const QString &table) {
        const Value d = gDB->DMin(column, table, key);
        return DateUtil::format(d.toDate(), QStringLiteral("M月d日"));
    };
    if (Nz(gDB->DCount(QStringLiteral("*"), QStringLiteral("D_DIARY_DTL"), key), Value(0)).toDouble() > 0)
        return earliest(QStringLiteral("WORK_DATE"), QStringLiteral("D_DIARY_DTL")) +
               QStringLiteral("に作業登録されていますので、削除できません。");
    if (Nz(gDB->DCount(QStringLiteral("*"), QStringLiteral("D_SHIP"), key), Value(0)).toDouble() > 0)
        return earliest(QStringLiteral("SHIP_DATE"), QStringLiteral("D_SHIP")) +
               QStringLiteral("に出荷登録されていますので、削除できません。");
    return QString();
}

namespace {

Stmt plantKey(const PlantRow &r) { return Stmt("FMR_ID=? AND PLANT_ID=?").num(r.FMR_ID).num(r.PLANT_ID); }

} // namespace

bool saveRecord(Mode mode, PlantRow &row, const QString &computer)
{
    return saveAsOne(row, [&](PlantRow &w) {
        if ((mode == Mode::Change || mode == Mode::Delete) &&
            !claimRow(QStringLiteral("D_PLANT"), plantKey(w), stampsOf(w)))
            return false;
        // The number alone finds the row: a change takes the first row of
        // that number, whichever farmer it belongs to.
        RecordsetPtr rs =
            gDB->GetDynamicRst(Stmt("SELECT D_PLANT.* FROM D_PLANT WHERE D_PLANT.PLANT_ID=?").num(w.PLANT_ID));
        if (!beginSave(*rs, mode, {{QStringLiteral("FMR_ID"), w.FMR_ID}, {QStringLiteral("PLANT_ID"), w.PLANT_ID}})) {
            rs->Close();
            return false;
        }
        if (mode == Mode::Add || mode == Mode::Change)
            PlantRow::map().write(*rs, w, savedColumns());
        endSave(*rs, mode, computer);
        if (mode == Mode::Add || mode == Mode::Change)
            PlantRow::map().read(*rs, w, stampColumns());
        rs->Close();
        return true;
    });
}

bool rereadRecord(PlantRow &row) { return rereadRow(row, QStringLiteral("D_PLANT"), plantKey(row)); }

} // namespace Plant
