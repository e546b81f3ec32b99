#include "rules/exchange/TraceHistory.h"

#include "rules/common/Ids.h"
#include "store/Database.h"
#include "store/Lookup.h"
#include "store/Stmt.h"

#include <QHash>
#include <QMap>

#include <algorithm>
#include <map>
#include <tuple>

namespace TraceHistory {

namespace {

qint64 idOf(const Value &v) { return hasValue(v) ? qint64(v.toDouble()) : 0; }

QDate dateOf(const Value &v) { return hasValue(v) ? v.toDate().date() : QDate(); }

QString field(const Recordset &rs, const char *column) { return textOf(rs.Fields(QString::fromLatin1(column))); }

QDate dateField(const Recordset &rs, const char *column) { return dateOf(rs.Fields(QString::fromLatin1(column))); }

// A name of a table read once; "" for an id without a value.
QString nameOf(const NameTable &names, const Value &id) { return hasValue(id) ? names(id) : QString(); }

using LineKey = std::tuple<qint64, QDate, int>; // planting, day, line

struct Amount {
    QString quantity, unit, regNo;
};

// The diary lines, the sprayings and the shipments of the farmer's plantings
// at `at` (their indexes in `out`, by planting number).
void fill(QVector<History> &out, const QHash<qint64, int> &at, const Value &farmer, const QVector<Value> &ids,
          Spray::Register &reg, const QDate &today, const NameTable &units, const NameTable &shops)
{
    std::map<LineKey, Amount> amounts;
    RecordsetPtr rs = gDB->GetFwdOnlyRst(
        Stmt("SELECT D_DIARY_DTL.PLANT_ID, D_DIARY_DTL.WORK_DATE, D_DIARY_DTL.DTL_NO, D_DIARY_DTL.WORK_KBN, "
             "D_DIARY_DTL.WORK_NM, D_DIARY_DTL.NOTES, D_DIARY_DTL.REG_NO, D_DIARY_DTL.QTY, D_DIARY_DTL.UNIT_ID "
             "FROM D_DIARY_DTL WHERE D_DIARY_DTL.FMR_ID=? AND D_DIARY_DTL.PLANT_ID IN (?) "
             "ORDER BY D_DIARY_DTL.WORK_DATE, D_DIARY_DTL.DTL_NO")
            .num(farmer)
            .ids(ids));
    for (; !rs->eof(); rs->MoveNext()) {
        const qint64 plant = idOf(rs->Fields(QStringLiteral("PLANT_ID")));
        History &h = out[at.value(plant)];
        const QDate day = dateField(*rs, "WORK_DATE");
        h.work.append({day, field(*rs, "WORK_NM"), field(*rs, "NOTES")});
        if (isNumber(rs->Fields(QStringLiteral("WORK_KBN")), WorkKbn::Spraying))
            amounts[{plant, day, int(idOf(rs->Fields(QStringLiteral("DTL_NO"))))}] = {
                field(*rs, "QTY"), nameOf(units, rs->Fields(QStringLiteral("UNIT_ID"))),
                field(*rs, "REG_NO").trimmed()};
    }
    rs->Close();

    for (const Spray::Planting &p : Spray::readPlantings(farmer, ids, reg)) {
        const qint64 plant = idOf(p.plantId);
        if (!p.exists || !at.contains(plant))
            continue;
        History &h = out[at.value(plant)];
        for (const QDate &d : p.harvests) {
            if (!h.firstHarvest.isValid() || d < h.firstHarvest)
                h.firstHarvest = d;
            if (!h.lastHarvest.isValid() || d > h.lastHarvest)
                h.lastHarvest = d;
        }
        QVector<Spray::Spraying> sprays = p.sprays;
        std::stable_sort(sprays.begin(), sprays.end(), [](const Spray::Spraying &a, const Spray::Spraying &b) {
            return a.day != b.day ? a.day < b.day : a.line < b.line;
        });
        for (const Spray::Spraying &s : sprays) {
            const Amount a = amounts[{plant, s.day, s.line}];
            h.sprays.append({s.day, s.lotName, s.regNo.isEmpty() ? a.regNo : s.regNo, s.purpose, a.quantity, a.unit});
        }
        h.uses = Spray::countUses(p, reg, today);
    }

    rs = gDB->GetFwdOnlyRst(Stmt("SELECT D_SHIP.PLANT_ID, D_SHIP.SHIP_DATE, D_SHIP.SHOP_ID, D_SHIP.PRD_NM, "
                                 "D_SHIP.SHIP_QTY, D_SHIP.RTN_QTY FROM D_SHIP WHERE D_SHIP.FMR_ID=? AND "
                                 "D_SHIP.PLANT_ID IN (?) ORDER BY D_SHIP.SHIP_DATE, D_SHIP.SHIP_ID")
                                .num(farmer)
                                .ids(ids));
    for (; !rs->eof(); rs->MoveNext())
        out[at.value(idOf(rs->Fields(QStringLiteral("PLANT_ID"))))].shipments.append(
            {dateField(*rs, "SHIP_DATE"), nameOf(shops, rs->Fields(QStringLiteral("SHOP_ID"))),
             field(*rs, "PRD_NM"), field(*rs, "SHIP_QTY"), field(*rs, "RTN_QTY")});
    rs->Close();
}

} // namespace

QString dayText(const QDate &d) { return d.isValid() ? d.toString(QStringLiteral("yyyy/MM/dd")) : QString(); }

QString cropText(const History &h)
{
    if (h.variety.isEmpty() || h.variety == h.crop)
        return h.crop;
    return h.crop + QStringLiteral("（") + h.variety + QStringLiteral("）");
}

namespace {

// "2024/05/01 ～ 2024/07/31", "～" alone for none.
QString periodText(const QDate &from, const QDate &to)
{
    return (dayText(from) + QStringLiteral(" ～ ") + dayText(to)).trimmed();
}

// "12.5 アール", "" for none.
QString areaText(const History &h) { return h.area.isEmpty() ? QString() : h.area + QStringLiteral(" アール"); }

// The harvest days, else the planned month.
QString harvestText(const History &h)
{
    if (h.firstHarvest.isValid())
        return h.firstHarvest == h.lastHarvest ? dayText(h.firstHarvest) : periodText(h.firstHarvest, h.lastHarvest);
    return h.harvestPlan.isEmpty() ? QString() : h.harvestPlan + QStringLiteral("（予定）");
}

// "2回／3回まで".
QString usesText(const Spray::UseCount &c) { return QStringLiteral("%1回／%2").arg(c.used).arg(c.limit); }

} // namespace

QVector<std::pair<QString, QString>> facts(const History &h)
{
    return {
        {QStringLiteral("作付名"), h.name},
        {QStringLiteral("作物"), cropText(h)},
        {QStringLiteral("圃場"), h.field},
        {QStringLiteral("面積"), areaText(h)},
        {QStringLiteral("作付日"), dayText(h.planted)},
        {QStringLiteral("作業期間"), periodText(h.workFrom, h.workTo)},
        {QStringLiteral("収穫"), harvestText(h)},
    };
}

QVector<Block> blocks(const History &h)
{
    Block work{Block::Work, QStringLiteral("作業記録"), QStringLiteral("作業の記録はありません。"),
               {QStringLiteral("日付"), QStringLiteral("作業"), QStringLiteral("内容")}, {}};
    for (const Work &w : h.work)
        work.rows.append({dayText(w.day), w.work, w.notes});
    Block sprays{Block::Sprays, QStringLiteral("農薬の使用"), QStringLiteral("農薬の使用はありません。"),
                 {QStringLiteral("日付"), QStringLiteral("農薬名"), QStringLiteral("登録番号"), QStringLiteral("使用目的"),
                  QStringLiteral("使用量")},
                 {}};
    for (const Spraying &s : h.sprays)
        sprays.rows.append({dayText(s.day), s.pesticide, s.regNo, s.purpose,
                            (s.quantity + QLatin1Char(' ') + s.unit).trimmed()});
    Block uses{Block::Uses, QStringLiteral("登録番号ごとの使用回数（この作付の期間）"), QString(),
               {QStringLiteral("登録番号"), QStringLiteral("農薬名"), QStringLiteral("使用回数／使用できる回数")}, {}};
    for (const Spray::UseCount &c : h.uses)
        uses.rows.append({c.regNo, c.lot, usesText(c)});
    Block ships{Block::Shipments, QStringLiteral("出荷"), QStringLiteral("出荷の記録はありません。"),
                {QStringLiteral("日付"), QStringLiteral("商品"), QStringLiteral("出荷先"), QStringLiteral("出荷数"),
                 QStringLiteral("返品数")},
                {}};
    for (const Shipment &s : h.shipments)
        ships.rows.append({dayText(s.day), s.product, s.shop, s.quantity, s.returned});
    QVector<Block> out{work, sprays};
    if (!sprays.rows.isEmpty() && !uses.rows.isEmpty())
        out.append(uses);
    out.append(ships);
    return out;
}

QVector<History> readYear(int year, const Value &plantId, const QDate &today)
{
    Stmt where = Stmt("D_PLANT.YYYY=?").num(year);
    if (idOf(plantId) != 0)
        where = Stmt("? AND D_PLANT.PLANT_ID=?").part(where).num(plantId);
    RecordsetPtr rs = gDB->GetFwdOnlyRst(
        Stmt("SELECT D_PLANT.FMR_ID, D_PLANT.PLANT_ID, D_PLANT.YYYY, D_PLANT.PLANT_NM, D_PLANT.CROP_NM, "
             "D_PLANT.CROP_NM1, D_PLANT.FIELD_NM, D_PLANT.AREA, D_PLANT.PLANT_DATE, D_PLANT.START_DATE, "
             "D_PLANT.END_DATE, D_PLANT.HARVEST_SCHD_YM FROM D_PLANT WHERE ? ORDER BY D_PLANT.FMR_ID, "
             "D_PLANT.PLANT_ID")
            .part(where));
    QVector<History> out;
    QMap<qint64, QHash<qint64, int>> byFarmer; // farmer → planting → index
    for (; !rs->eof(); rs->MoveNext()) {
        History h;
        h.farmer = rs->Fields(QStringLiteral("FMR_ID"));
        h.plantId = rs->Fields(QStringLiteral("PLANT_ID"));
        h.year = int(idOf(rs->Fields(QStringLiteral("YYYY"))));
        h.name = field(*rs, "PLANT_NM");
        h.crop = field(*rs, "CROP_NM");
        h.variety = field(*rs, "CROP_NM1");
        h.field = field(*rs, "FIELD_NM");
        h.area = field(*rs, "AREA");
        h.planted = dateField(*rs, "PLANT_DATE");
        h.workFrom = dateField(*rs, "START_DATE");
        h.workTo = dateField(*rs, "END_DATE");
        h.harvestPlan = field(*rs, "HARVEST_SCHD_YM");
        byFarmer[idOf(h.farmer)].insert(idOf(h.plantId), out.size());
        out.append(h);
    }
    rs->Close();
    if (out.isEmpty())
        return out;
    const std::shared_ptr<Spray::Register> held = Spray::Register::current();
    Spray::Register &reg = *held;
    const NameTable units = NameTable::units(), shops = NameTable::shops();
    for (auto it = byFarmer.constBegin(); it != byFarmer.constEnd(); ++it) {
        QVector<Value> ids;
        for (auto p = it->constBegin(); p != it->constEnd(); ++p)
            ids.append(Value(int(p.key())));
        const Value farmer(int(it.key()));
        const QString farmerName = GetFmrNm(farmer);
        for (int ix : *it)
            out[ix].farmerName = farmerName;
        fill(out, *it, farmer, ids, reg, today, units, shops);
    }
    return out;
}

} // namespace TraceHistory
