#include "rules/planting/PlantData.h"

#include "base/AppError.h"
#include "store/SqlText.h"
#include "store/Database.h"

#include <QHash>

#include <cmath>

QVector<PlantRow> gPLANT_ROWS;

namespace {

using Member = Value PlantRow::*;

struct ColumnMember {
    const char *name;
    Member member;
};

const ColumnMember kMembers[] = {
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

const QHash<QString, Member> &memberIndex()
{
    static const QHash<QString, Member> index = [] {
        QHash<QString, Member> h;
        for (const ColumnMember &c : kMembers)
            h.insert(QString::fromLatin1(c.name), c.member);
        return h;
    }();
    return index;
}

Member memberOf(const QString &column)
{
    const Member m = memberIndex().value(column.toUpper(), nullptr);
    if (!m)
        raiseError(VbErr::ItemNotFound, column);
    return m;
}

QStringList names(std::initializer_list<const char *> list)
{
    QStringList out;
    for (const char *n : list)
        out << QString::fromLatin1(n);
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

Value &PlantRow::field(const QString &column) { return this->*memberOf(column); }

const Value &PlantRow::field(const QString &column) const { return this->*memberOf(column); }

const QStringList &PlantRow::columns()
{
    static const QStringList all = [] {
        QStringList out;
        for (const ColumnMember &c : kMembers)
            out << QString::fromLatin1(c.name);
        return out;
    }();
    return all;
}

namespace Plant {

const QStringList &listColumns()
{
    static const QStringList cols =
        names({"PLANT_ID",   "PLANT_NM",      "YYYY",        "FMR_ID",          "HARVEST_SCHD_YM", "CROP_NM",
               "CROP_NM1",   "CROP_NM2",      "PLANT_TYPE",  "FIELD_NM",        "AREA",            "CROP_EST",
               "CROP_EST_UNIT", "PRD_ID",     "PRD_NM",      "PLANT_DATE",      "START_DATE",      "END_DATE",
               "SHIP_EST",   "SHIP_EST_UNIT", "SHIP_SCHD_DATE1", "SHIP_SCHD_DATE2", "NOTES1",        "NOTES2",
               "IDATE",      "UDATE",         "LAST_TM",     "HOLD_TM"});
    return cols;
}

const QStringList &savedColumns()
{
    static const QStringList cols =
        names({"PLANT_NM",   "YYYY",       "HARVEST_SCHD_YM", "CROP_NM",    "CROP_NM1",        "CROP_NM2",
               "PRD_ID",     "PRD_NM",     "PLANT_TYPE",      "FIELD_NM",   "AREA",            "CROP_EST",
               "CROP_EST_UNIT", "PLANT_DATE", "START_DATE",   "END_DATE",   "SHIP_EST",        "SHIP_EST_UNIT",
               "SHIP_SCHD_DATE1", "SHIP_SCHD_DATE2", "IMG_PATH1", "IMG_PATH2", "NOTES1",        "NOTES2"});
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
    if (!hasValue(ym))
        return QString();
    if (!IsNumeric(ym) || ym.isDateType())
        return ym.toText();
    const qint64 n = roundAway(ym.toDouble());
    const QString digits = QString::number(n < 0 ? -n : n).rightJustified(6, QLatin1Char('0'));
    const QString text = digits.left(digits.size() - 2) + QLatin1Char('/') + digits.right(2);
    return n < 0 ? QLatin1Char('-') + text : text;
}




QString listSql(const QString &yearText, const QString &crop, const Value &kind)
{
    QStringList criteria;
    if (!yearText.isEmpty())
        criteria << QStringLiteral(" D_PLANT.YYYY=") +
                        (IsNumeric(Value(yearText)) ? Sql::number(Value(yearText)) : yearText);
    if (!crop.isEmpty())
        criteria << QStringLiteral(" D_PLANT.CROP_NM=") + Sql::quoted(crop);
    if (hasValue(kind) && !(IsNumeric(kind) && kind.toDouble() == 0))
        criteria << QStringLiteral(" D_PLANT.PLANT_TYPE=") + Sql::number(kind);
    QString sql = QStringLiteral("SELECT") + QStringLiteral(" D_PLANT.* ") + QStringLiteral(" FROM D_PLANT ");
    if (!criteria.isEmpty())
        sql += QStringLiteral(" WHERE") + criteria.join(QStringLiteral(" AND "));
    sql += QStringLiteral(" ORDER BY D_PLANT.YYYY, D_PLANT.CROP_NM, D_PLANT.PLANT_DATE");
    return sql;
}

void loadRows(Recordset &rs)
{
    gPLANT_ROWS.clear();
    const QStringList &cols = listColumns();
    for (; !rs.eof(); rs.MoveNext()) {
        PlantRow row;
        for (const QString &c : cols)
            row.field(c) = rs.Fields(c);
        gPLANT_ROWS.append(row);
    }
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
    const Value max = gDB->DMax(QStringLiteral("PLANT_ID"), QStringLiteral("D_PLANT"),
                                QStringLiteral("FMR_ID=") + Sql::number(farmer));
    return Value::int32(qint64(Nz(max, Value(0)).toDouble()) + 1);
}

QString deleteRefusal(const Value &farmer, const Value &plantId)
{
    const QString key = QStringLiteral("FMR_ID=") + Sql::number(farmer) + QStringLiteral(" AND PLANT_ID=") +
                        Sql::number(plantId);
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

bool saveRecord(Mode mode, const PlantRow &row, const QString &computer)
{
    // The number alone finds the row: a change takes the first row of that
    // number, whichever farmer it belongs to.
    RecordsetPtr rs = gDB->GetDynamicRst(QStringLiteral("SELECT D_PLANT.* FROM D_PLANT WHERE D_PLANT.PLANT_ID=") +
                                         Sql::number(row.PLANT_ID));
    if (mode == Mode::Add) {
        rs->AddNew();
        rs->SetField(QStringLiteral("FMR_ID"), row.FMR_ID);
        rs->SetField(QStringLiteral("PLANT_ID"), row.PLANT_ID);
        rs->SetField(QStringLiteral("IDATE"), Value(DateUtil::now()));
    } else if (mode == Mode::Change || mode == Mode::Delete) {
        if (rs->eof()) {
            rs->Close();
            return false;
        }
        if (mode == Mode::Change)
            rs->SetField(QStringLiteral("UDATE"), Value(DateUtil::now()));
    }
    if (mode == Mode::Add || mode == Mode::Change) {
        for (const QString &c : savedColumns())
            rs->SetField(c, row.field(c));
        rs->SetField(QStringLiteral("LAST_TM"), Value(computer));
        rs->SetField(QStringLiteral("HOLD_TM"), Value::null());
        rs->Update();
    } else if (mode == Mode::Delete) {
        rs->Delete();
    }
    rs->Close();
    return true;
}

} // namespace Plant
