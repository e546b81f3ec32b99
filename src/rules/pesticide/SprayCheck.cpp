#include "rules/pesticide/SprayCheck.h"

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Msg.h"
#include "base/Helpers.h"
#include "rules/common/Ids.h"
#include "rules/diary/DiaryDay.h"
#include "store/Database.h"
#include "store/Stmt.h"

#include <QRegularExpression>

#include <algorithm>
#include <map>

namespace Spray {

namespace {

// A wording as the rules read it: full-width digits, brackets, tildes and
// dashes made plain, blanks taken away.
QString plain(const QString &wording)
{
    QString s = wording.normalized(QString::NormalizationForm_KC);
    s.replace(QChar(0x301C), QLatin1Char('~')); // 〜
    static const QRegularExpression blank(QStringLiteral("\\s"));
    s.remove(blank);
    return s;
}

// "－", "-", "―", "ー" and nothing: the register gives no value.
bool nothingGiven(const QString &s)
{
    static const QRegularExpression dash(QStringLiteral("^[-\\x{2015}\\x{2014}\\x{30FC}\\x{2212}]?$"));
    return dash.match(s).hasMatch();
}

QString dayText(const QDate &d) { return d.toString(QStringLiteral("yyyy/MM/dd")); }

QDate dateOf(const Value &v) { return hasValue(v) ? v.toDate().date() : QDate(); }

QString textField(const Recordset &rs, const char *column) { return textOf(rs.Fields(QString::fromLatin1(column))); }

} // namespace

// ---------------------------------------------------------------- the wordings

Times readTimes(const QString &wording)
{
    const QString s = plain(wording);
    Times t;
    if (nothingGiven(s))
        return t;
    static const QRegularExpression re(QStringLiteral("^(\\d+)回(以内|まで)?$"));
    const QRegularExpressionMatch m = re.match(s);
    if (!m.hasMatch() || m.captured(1).toInt() <= 0) {
        t.kind = Times::Unreadable;
        return t;
    }
    t.kind = Times::Limit;
    t.max = m.captured(1).toInt();
    return t;
}

Interval readInterval(const QString &season)
{
    const QString s = plain(season);
    Interval i;
    if (!s.contains(QStringLiteral("収穫")))
        return i; // a stage of growth: no interval before harvest
    static const QRegularExpression re(QStringLiteral("収穫(開始)?(前日|(\\d+)日前)まで"));
    QRegularExpressionMatchIterator it = re.globalMatch(s);
    int found = 0;
    Interval first;
    while (it.hasNext()) {
        const QRegularExpressionMatch m = it.next();
        Interval one;
        one.kind = m.captured(1).isEmpty() ? Interval::Days : Interval::BeforeFirst;
        one.days = m.captured(3).isEmpty() ? 1 : m.captured(3).toInt();
        if (found > 0 && (one.kind != first.kind || one.days != first.days)) {
            i.kind = Interval::Unreadable; // two intervals: which one holds is not said
            return i;
        }
        if (found == 0)
            first = one;
        ++found;
    }
    if (found == 0 || first.days <= 0) {
        i.kind = Interval::Unreadable;
        return i;
    }
    // What stands around it must name no other harvest rule.
    QString rest = s;
    rest.remove(re);
    if (rest.contains(QStringLiteral("収穫"))) {
        i.kind = Interval::Unreadable;
        return i;
    }
    return first;
}

Dilution readDilution(const QString &wording)
{
    const QString s = plain(wording).remove(QLatin1Char(','));
    Dilution d;
    if (nothingGiven(s))
        return d;
    if (s == QStringLiteral("原液")) {
        d.kind = Dilution::Range;
        d.from = d.to = 1;
        return d;
    }
    static const QRegularExpression re(QStringLiteral("^(\\d+(?:\\.\\d+)?)(?:[~-](\\d+(?:\\.\\d+)?))?倍$"));
    const QRegularExpressionMatch m = re.match(s);
    if (!m.hasMatch()) {
        d.kind = Dilution::Unreadable;
        return d;
    }
    d.from = m.captured(1).toDouble();
    d.to = m.captured(2).isEmpty() ? d.from : m.captured(2).toDouble();
    if (d.from <= 0 || d.to < d.from) {
        d.kind = Dilution::Unreadable;
        return d;
    }
    d.kind = Dilution::Range;
    return d;
}

QString timesText(const Times &t)
{
    switch (t.kind) {
    case Times::Limit: return QStringLiteral("%1回まで").arg(t.max);
    case Times::Free: return QStringLiteral("制限なし");
    default: return QStringLiteral("確認できません");
    }
}

QString intervalText(const Interval &i)
{
    switch (i.kind) {
    case Interval::Days: return QStringLiteral("散布の%1日後から収穫").arg(i.days);
    case Interval::BeforeFirst: return QStringLiteral("散布の%1日後から収穫開始").arg(i.days);
    case Interval::None: return QStringLiteral("収穫前の日数なし");
    default: return QStringLiteral("確認できません");
    }
}

QString dilutionText(const Dilution &d)
{
    if (d.kind == Dilution::None)
        return QStringLiteral("指定なし");
    if (d.kind == Dilution::Unreadable)
        return QStringLiteral("確認できません");
    if (d.from == d.to)
        return QStringLiteral("%1倍").arg(d.from);
    return QStringLiteral("%1～%2倍").arg(d.from).arg(d.to);
}

// ---------------------------------------------------------------- the register

namespace {
// A registration number as the register is searched by it: its leading number.
qint64 regKey(const QString &regNo) { return qint64(leadingNumber(regNo)); }
} // namespace

Register::Register()
{
    RecordsetPtr rs = gWORK->GetFwdOnlyRst(QStringLiteral(
        "SELECT L_CHEMI_APPL.REG_NO, L_CHEMI_APPL.TARGET, L_CHEMI_APPL.PURPOSE, L_CHEMI_APPL.DILUTION, "
        "L_CHEMI_APPL.USE_QTY, L_CHEMI_APPL.SEASON, L_CHEMI_APPL.USE_TIMES, L_CHEMI_APPL.USE_WAY, "
        "L_CHEMI_APPL_MATCH.CROP_NM, L_CHEMI_APPL_MATCH.CROP_KBN, L_CHEMI_APPL_MATCH.CROP_NM_NG, "
        "L_CHEMI_APPL_MATCH.CROP_KBN_NG"
        " FROM L_CHEMI_APPL INNER JOIN L_CHEMI_APPL_MATCH ON L_CHEMI_APPL.CROP_NM = L_CHEMI_APPL_MATCH.CHEMI_CROP_NM"));
    for (; !rs->eof(); rs->MoveNext()) {
        const Chemi::CropMatch m{textField(*rs, "CROP_NM"), textField(*rs, "CROP_KBN"), textField(*rs, "CROP_NM_NG"),
                                 textField(*rs, "CROP_KBN_NG")};
        const ApplRow row = ApplRow::map().read(*rs);
        mUses[regKey(textField(*rs, "REG_NO"))].append(
            Use{m, row, readTimes(textOf(row.USE_TIMES)), readInterval(textOf(row.SEASON))});
    }
    rs->Close();
    // A name listed twice keeps its first row, as a look-up by the name finds it.
    rs = gWORK->GetFwdOnlyRst(QStringLiteral("SELECT L_CROP.CROP_NM1, L_CROP.CROP_NM2, L_CROP.CROP_KBN FROM L_CROP"));
    for (; !rs->eof(); rs->MoveNext()) {
        const QString name = textField(*rs, "CROP_NM1");
        if (!mCrops.contains(name))
            mCrops.insert(name, Chemi::Crop{name, textField(*rs, "CROP_NM2"), textField(*rs, "CROP_KBN")});
    }
    rs->Close();
    const Value id = gWORK->DLookup(QStringLiteral("ID"), QStringLiteral("L_KBN"),
                                    Stmt("KBN=20 AND NM=?").text(QStringLiteral("収穫")));
    mHarvestKind = hasValue(id) ? int(id.toDouble()) : 0;
}

std::shared_ptr<Register> Register::current()
{
    static std::shared_ptr<Register> kept;
    static Engine::ChangeMark keptAt;
    Engine *work = gWORK ? gWORK->engine() : nullptr;
    if (!work)
        return std::make_shared<Register>(); // raises as any read of a closed file does
    const Engine::ChangeMark now = work->changeMark();
    if (!kept || !(now == keptAt)) {
        kept = std::make_shared<Register>();
        keptAt = now;
    }
    return kept;
}

Chemi::Crop Register::cropOf(const QString &name) const
{
    return mCrops.value(name, Chemi::Crop{name, QString(), QString()});
}

Rule Register::rule(const QString &regNo, const QString &crop, const QString &purpose)
{
    const QString key = regNo + QLatin1Char('\t') + crop + QLatin1Char('\t') + purpose;
    auto it = mRules.constFind(key);
    if (it == mRules.constEnd())
        it = mRules.insert(key, ruleOf(regNo, crop, purpose));
    return *it;
}

Rule Register::ruleOf(const QString &regNo, const QString &crop, const QString &purpose) const
{
    Rule r;
    if (regNo.trimmed().isEmpty()) {
        r.why = QStringLiteral("農薬に登録番号がないため");
        return r;
    }
    if (crop.isEmpty()) {
        r.why = QStringLiteral("作付に作物がないため");
        return r;
    }
    const auto uses = mUses.constFind(regKey(regNo));
    if (uses == mUses.constEnd()) {
        r.why = QStringLiteral("登録番号%1の適用が登録データにないため").arg(regNo);
        return r;
    }
    const Chemi::Crop c = cropOf(crop);
    QVector<const Use *> rows;
    for (const Use &u : *uses)
        if (Chemi::cropApplies(u.match, c))
            rows.append(&u);
    if (rows.isEmpty()) {
        if (c.item.isEmpty() && c.group.isEmpty()) {
            r.why = QStringLiteral("作物「%1」が作物一覧にないため").arg(crop);
            return r;
        }
        r.state = Rule::NotCovered;
        return r;
    }
    // The uses of the line's target, when the line names one of them.
    if (!purpose.isEmpty()) {
        QVector<const Use *> same;
        for (const Use *u : rows)
            if (textOf(u->row.TARGET) == purpose || textOf(u->row.PURPOSE) == purpose)
                same.append(u);
        if (!same.isEmpty())
            rows = same;
    }
    // The most lenient of what is left.
    bool timesUnread = false, seasonUnread = false;
    bool timesSet = false, seasonSet = false;
    for (const Use *u : rows) {
        const Times &t = u->times;
        if (t.kind == Times::Unreadable) {
            timesUnread = true;
        } else if (!timesSet ||
                   (r.times.kind == Times::Limit && (t.kind == Times::Free || t.max > r.times.max))) {
            r.times = t;
            r.timesWording = textOf(u->row.USE_TIMES);
            timesSet = true;
        }
        const Interval &i = u->interval;
        if (i.kind == Interval::Unreadable) {
            seasonUnread = true;
        } else if (!seasonSet ||
                   (r.interval.kind != Interval::None && (i.kind == Interval::None || i.days < r.interval.days))) {
            r.interval = i;
            r.seasonWording = textOf(u->row.SEASON);
            seasonSet = true;
        }
    }
    // An unreadable wording among the others leaves only "no limit" sure.
    if (timesUnread && !(timesSet && r.times.kind == Times::Free)) {
        r.times.kind = Times::Unreadable;
        for (const Use *u : rows)
            if (u->times.kind == Times::Unreadable)
                r.timesWording = textOf(u->row.USE_TIMES);
    }
    if (seasonUnread && !(seasonSet && r.interval.kind == Interval::None)) {
        r.interval.kind = Interval::Unreadable;
        for (const Use *u : rows)
            if (u->interval.kind == Interval::Unreadable)
                r.seasonWording = textOf(u->row.SEASON);
    }
    r.state = Rule::Checked;
    return r;
}

// ---------------------------------------------------------------- the checks

namespace {

QVector<int> sprayOrder(const Planting &p)
{
    QVector<int> order(p.sprays.size());
    for (int i = 0; i < order.size(); ++i)
        order[i] = i;
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        const Spraying &x = p.sprays[a], &y = p.sprays[b];
        return x.day != y.day ? x.day < y.day : x.line < y.line;
    });
    return order;
}

bool inSeason(const Planting &p, const QDate &day, const QDate &today)
{
    const QDate to = p.to.isValid() ? p.to : today;
    return (!p.from.isValid() || day >= p.from) && (!to.isValid() || day <= to);
}

bool hasLot(const Spraying &s) { return hasValue(s.chemiId) && s.chemiId.toDouble() != 0; }

QString lotLabel(const Spraying &s)
{
    const QString name = s.lotName.isEmpty() ? QStringLiteral("農薬") : s.lotName;
    return s.regNo.isEmpty() ? name : QStringLiteral("%1（登録番号%2）").arg(name, s.regNo);
}

Rule ruleOf(const Planting &p, const Spraying &s, Register &reg)
{
    Rule r;
    if (!p.exists)
        r.why = QStringLiteral("作付がないため");
    else if (!hasLot(s))
        r.why = QStringLiteral("農薬が選ばれていないため");
    else
        r = reg.rule(s.regNo, p.crop, s.purpose);
    return r;
}

// The first day of the dates inside [from, to).
QDate firstWithin(const QVector<QDate> &days, const QDate &from, const QDate &to)
{
    QDate best;
    for (const QDate &d : days)
        if ((!from.isValid() || d >= from) && d < to && (!best.isValid() || d < best))
            best = d;
    return best;
}

} // namespace

QVector<Finding> check(const Planting &p, Register &reg, const QDate &today)
{
    QVector<Finding> out;
    QHash<QString, int> uses;
    for (int ix : sprayOrder(p)) {
        const Spraying &s = p.sprays[ix];
        const Rule r = ruleOf(p, s, reg);
        // The words are made only for a finding: most sprayings have none.
        const auto lot = [&s] { return lotLabel(s); };
        auto add = [&](Finding::Kind kind, const QString &message) { out.append(Finding{kind, ix, message}); };
        if (r.state == Rule::Unknown) {
            add(Finding::Unchecked, QStringLiteral("%1は、%2確認できません。").arg(lot(), r.why));
            continue;
        }
        if (r.state == Rule::NotCovered) {
            add(Finding::NotCovered, QStringLiteral("%1は作物「%2」に登録がありません。").arg(lot(), p.crop));
            continue;
        }
        if (inSeason(p, s.day, today)) {
            const int n = ++uses[s.regNo];
            if (r.times.kind == Times::Limit && n > r.times.max)
                add(Finding::TooMany, QStringLiteral("%1の使用回数は「%2」ですが、この作付で%3回目の使用です。")
                                          .arg(lot(), r.timesWording)
                                          .arg(n));
        }
        if (r.times.kind == Times::Unreadable)
            add(Finding::Unchecked,
                QStringLiteral("%1は、使用回数「%2」が読めないため確認できません。").arg(lot(), r.timesWording));
        if (r.interval.kind == Interval::Unreadable) {
            add(Finding::Unchecked,
                QStringLiteral("%1は、使用時期「%2」が読めないため確認できません。").arg(lot(), r.seasonWording));
        } else if (r.interval.kind != Interval::None) {
            const QDate allowed = s.day.addDays(r.interval.days);
            // Before the first harvest: a harvest before the spraying is too early as well.
            const QDate from = r.interval.kind == Interval::BeforeFirst ? QDate() : s.day;
            const QDate harvest = firstWithin(p.harvests, from, allowed);
            const QDate shipment = firstWithin(p.shipments, from, allowed);
            if (!harvest.isValid() && !shipment.isValid())
                continue;
            const QString head = QStringLiteral("%1の使用時期は「%2」ですが、").arg(lot(), r.seasonWording);
            const QString tail = QStringLiteral("（%1の散布の後は%2から）。").arg(dayText(s.day), dayText(allowed));
            if (harvest.isValid())
                add(Finding::Harvested, head + QStringLiteral("%1に収穫が記録されています").arg(dayText(harvest)) + tail);
            if (shipment.isValid())
                add(Finding::Shipped, head + QStringLiteral("%1に出荷が記録されています").arg(dayText(shipment)) + tail);
        }
    }
    return out;
}

ShipFrom shipFrom(const Planting &p, Register &reg)
{
    ShipFrom out;
    for (const Spraying &s : p.sprays) {
        const Rule r = ruleOf(p, s, reg);
        if (r.state == Rule::Unknown || r.interval.kind == Interval::Unreadable) {
            out.sure = false;
            continue;
        }
        if (r.state != Rule::Checked || r.interval.kind == Interval::None)
            continue;
        const QDate d = s.day.addDays(r.interval.days);
        if (!out.day.isValid() || d > out.day)
            out.day = d;
    }
    return out;
}

QString shipFromText(const ShipFrom &s)
{
    QString t = s.day.isValid() ? dayText(s.day) : QString();
    if (!s.sure)
        t += QStringLiteral("（確認できない散布あり）");
    return t;
}

QVector<UseCount> countUses(const Planting &p, Register &reg, const QDate &today)
{
    std::map<QString, UseCount> counts;
    for (int ix : sprayOrder(p)) {
        const Spraying &s = p.sprays[ix];
        if (!hasLot(s) || s.regNo.isEmpty() || !inSeason(p, s.day, today))
            continue;
        UseCount &c = counts[s.regNo];
        if (c.used++ > 0)
            continue;
        c.regNo = s.regNo;
        c.lot = s.lotName;
        const Rule r = ruleOf(p, s, reg);
        if (r.state == Rule::NotCovered)
            c.limit = QStringLiteral("登録なし");
        else if (r.state == Rule::Unknown)
            c.limit = QStringLiteral("確認できません");
        else
            c.limit = timesText(r.times);
        if (r.state == Rule::Checked && r.times.kind == Times::Limit)
            c.max = r.times.max;
    }
    QVector<UseCount> out;
    for (const auto &kv : counts)
        out.append(kv.second);
    return out;
}

QStringList useCounts(const Planting &p, Register &reg, const QDate &today)
{
    QStringList out;
    for (const UseCount &c : countUses(p, reg, today))
        out << QStringLiteral("%1（%2） %3回／%4").arg(c.lot, c.regNo).arg(c.used).arg(c.limit);
    return out;
}

QString useCountsShort(const Planting &p, Register &reg, const QDate &today)
{
    QStringList out;
    for (const UseCount &c : countUses(p, reg, today)) {
        QString t = c.max > 0 ? QStringLiteral("%1 %2/%3回").arg(c.regNo).arg(c.used).arg(c.max)
                              : QStringLiteral("%1 %2回（%3）").arg(c.regNo).arg(c.used).arg(c.limit);
        if (c.max > 0 && c.used > c.max)
            t += QStringLiteral("超過");
        out << t;
    }
    return out.join(QStringLiteral("、"));
}

// ---------------------------------------------------------------- the tables

namespace {

using Key = QPair<qint64, qint64>;

Key keyOf(const Value &farmer, const Value &plantId)
{
    const auto n = [](const Value &v) { return hasValue(v) ? qint64(v.toDouble()) : qint64(0); };
    return {n(farmer), n(plantId)};
}

Stmt condition(const char *table, const Value &farmer, const QVector<Value> &plantIds)
{
    Stmt w("1=1");
    if (hasValue(farmer))
        w = Stmt("?.FMR_ID=?").name(QString::fromLatin1(table)).num(farmer);
    if (!plantIds.isEmpty())
        w = Stmt("? AND ?.PLANT_ID IN (?)").part(w).name(QString::fromLatin1(table)).ids(plantIds);
    return w;
}

QVector<Planting> readAll(const Value &farmer, const QVector<Value> &plantIds, int harvest)
{
    QHash<Key, int> at;
    QVector<Planting> out;
    auto plantingOf = [&](const Value &f, const Value &id) -> Planting & {
        const Key k = keyOf(f, id);
        auto it = at.find(k);
        if (it == at.end()) {
            Planting p;
            p.farmer = Value(int(k.first));
            p.plantId = Value(int(k.second));
            out.append(p);
            it = at.insert(k, out.size() - 1);
        }
        return out[*it];
    };
    RecordsetPtr rs = gDB->GetFwdOnlyRst(
        Stmt("SELECT D_PLANT.FMR_ID, D_PLANT.PLANT_ID, D_PLANT.PLANT_NM, D_PLANT.CROP_NM, D_PLANT.PLANT_DATE, "
             "D_PLANT.START_DATE, D_PLANT.END_DATE FROM D_PLANT WHERE ? ORDER BY D_PLANT.FMR_ID, D_PLANT.PLANT_ID")
            .part(condition("D_PLANT", farmer, plantIds)));
    // (the cells by their place in the statement: the rows are many)
    enum { PFmr, PPlant, PName, PCrop, PPlanted, PStart, PEnd };
    for (; !rs->eof(); rs->MoveNext()) {
        Planting &p = plantingOf(rs->Fields(PFmr), rs->Fields(PPlant));
        p.exists = true;
        p.name = textOf(rs->Fields(PName));
        p.crop = textOf(rs->Fields(PCrop));
        p.from = dateOf(rs->Fields(PStart));
        if (!p.from.isValid())
            p.from = dateOf(rs->Fields(PPlanted));
        p.to = dateOf(rs->Fields(PEnd));
    }
    rs->Close();

    rs = gDB->GetFwdOnlyRst(
        Stmt("SELECT D_DIARY_DTL.FMR_ID, D_DIARY_DTL.PLANT_ID, D_DIARY_DTL.WORK_DATE, D_DIARY_DTL.DTL_NO, "
             "D_DIARY_DTL.WORK_KBN, D_DIARY_DTL.CHEMI_ID, D_DIARY_DTL.CHEMI_NM, D_DIARY_DTL.PURPOSE, "
             "D_CHEMI.CHEMI_NM AS LOT_NM, D_CHEMI.REG_NO AS LOT_REG_NO"
             " FROM D_DIARY_DTL LEFT JOIN D_CHEMI ON (D_DIARY_DTL.CHEMI_ID = D_CHEMI.CHEMI_ID)"
             " AND (D_DIARY_DTL.FMR_ID = D_CHEMI.FMR_ID)"
             " WHERE ? AND D_DIARY_DTL.WORK_KBN IN (?)")
            .part(condition("D_DIARY_DTL", farmer, plantIds))
            .ids({Value(WorkKbn::Spraying), Value(harvest)}));
    enum { LFmr, LPlant, LDay, LNo, LKind, LLot, LName, LPurpose, LLotName, LRegNo };
    for (; !rs->eof(); rs->MoveNext()) {
        Planting &p = plantingOf(rs->Fields(LFmr), rs->Fields(LPlant));
        const QDate day = dateOf(rs->Fields(LDay));
        if (!isNumber(rs->Fields(LKind), WorkKbn::Spraying)) {
            p.harvests.append(day);
            continue;
        }
        Spraying s;
        s.day = day;
        s.line = int(Nz(rs->Fields(LNo), Value(0)).toDouble());
        s.chemiId = rs->Fields(LLot);
        s.lotName = textOf(rs->Fields(LName));
        if (s.lotName.isEmpty())
            s.lotName = textOf(rs->Fields(LLotName));
        s.regNo = textOf(rs->Fields(LRegNo)).trimmed();
        s.purpose = textOf(rs->Fields(LPurpose));
        p.sprays.append(s);
    }
    rs->Close();

    rs = gDB->GetFwdOnlyRst(Stmt("SELECT D_SHIP.FMR_ID, D_SHIP.PLANT_ID, D_SHIP.SHIP_DATE FROM D_SHIP WHERE ?")
                                .part(condition("D_SHIP", farmer, plantIds)));
    for (; !rs->eof(); rs->MoveNext())
        plantingOf(rs->Fields(0), rs->Fields(1)).shipments.append(dateOf(rs->Fields(2)));
    rs->Close();
    return out;
}

} // namespace

QVector<Planting> readPlantings(const Value &farmer, const Value &plantId, const Register &reg)
{
    return readAll(farmer, hasValue(plantId) ? QVector<Value>{plantId} : QVector<Value>(), reg.harvestKind());
}

QVector<Planting> readPlantings(const Value &farmer, const QVector<Value> &plantIds, const Register &reg)
{
    return plantIds.isEmpty() ? QVector<Planting>() : readAll(farmer, plantIds, reg.harvestKind());
}

QHash<qint64, PlantSummary> summaries(const Value &farmer, const QVector<Value> &plantIds, const QDate &today)
{
    QHash<qint64, PlantSummary> out;
    QVector<Value> ids;
    for (const Value &id : plantIds)
        if (hasValue(id))
            ids.append(id);
    if (ids.isEmpty())
        return out;
    const std::shared_ptr<Register> held = Register::current();
    Register &reg = *held;
    for (const Planting &p : readAll(farmer, ids, reg.harvestKind()))
        if (p.exists && !p.sprays.isEmpty())
            out.insert(keyOf(p.farmer, p.plantId).second,
                       PlantSummary{shipFromText(shipFrom(p, reg)), useCounts(p, reg, today),
                                    useCountsShort(p, reg, today)});
    return out;
}

QStringList checkDay(const DiaryDay &day, const QDate &today)
{
    const QDate d = dateOf(day.day.WORK_DATE);
    QVector<Value> ids;
    for (const DiaryDtlRec &l : day.dtl)
        if (l.spraying() && hasValue(l.PLANT_ID) && hasValue(l.CHEMI_ID) && l.CHEMI_ID.toDouble() != 0 &&
            !ids.contains(l.PLANT_ID))
            ids.append(l.PLANT_ID);
    if (ids.isEmpty())
        return {};
    const std::shared_ptr<Register> held = Register::current();
    Register &reg = *held;
    QVector<Planting> plantings = readAll(day.day.FMR_ID, ids, reg.harvestKind());
    const int harvest = reg.harvestKind();
    // The registration numbers of the day's lots: those the plantings' other
    // sprayings brought, the rest read at one go.
    QHash<qint64, QString> regNos;
    for (const Planting &p : plantings)
        for (const Spraying &s : p.sprays)
            if (hasLot(s))
                regNos.insert(qint64(s.chemiId.toDouble()), s.regNo);
    QVector<Value> lots;
    for (const DiaryDtlRec &l : day.dtl)
        if (l.spraying() && hasValue(l.CHEMI_ID) && l.CHEMI_ID.toDouble() != 0 &&
            !regNos.contains(qint64(l.CHEMI_ID.toDouble())) && !lots.contains(l.CHEMI_ID))
            lots.append(l.CHEMI_ID);
    if (!lots.isEmpty()) {
        RecordsetPtr rs = gDB->GetFwdOnlyRst(
            Stmt("SELECT D_CHEMI.CHEMI_ID, D_CHEMI.REG_NO FROM D_CHEMI WHERE D_CHEMI.FMR_ID=? AND D_CHEMI.CHEMI_ID IN (?)")
                .num(day.day.FMR_ID)
                .ids(lots));
        for (; !rs->eof(); rs->MoveNext())
            regNos.insert(qint64(rs->Fields(0).toDouble()), textOf(rs->Fields(1)).trimmed());
        rs->Close();
    }
    QStringList out;
    for (Planting &p : plantings) {
        // The stored lines of the day give way to those in memory.
        p.harvests.removeAll(d);
        for (int i = p.sprays.size() - 1; i >= 0; --i)
            if (p.sprays[i].day == d)
                p.sprays.remove(i);
        const int firstOfDay = p.sprays.size();
        for (const DiaryDtlRec &l : day.dtl) {
            if (keyOf(day.day.FMR_ID, l.PLANT_ID) != keyOf(p.farmer, p.plantId))
                continue;
            if (harvest != 0 && isNumber(l.WORK_KBN, harvest))
                p.harvests.append(d);
            if (!l.spraying())
                continue;
            Spraying s;
            s.day = d;
            s.line = p.sprays.size() - firstOfDay + 1;
            s.chemiId = l.CHEMI_ID;
            s.lotName = textOf(l.CHEMI_NM);
            if (hasValue(l.CHEMI_ID))
                s.regNo = regNos.value(qint64(l.CHEMI_ID.toDouble()));
            s.purpose = textOf(l.PURPOSE);
            p.sprays.append(s);
        }
        for (const Finding &f : check(p, reg, today)) {
            const Spraying &s = p.sprays[f.spray];
            if (f.spray >= firstOfDay && hasLot(s) && p.exists)
                out << QStringLiteral("「%1」: %2").arg(p.name, f.message);
        }
    }
    return out;
}

QStringList checkShipment(const Value &farmer, const Value &plantId, const Value &shipDate)
{
    const QDate ship = dateOf(shipDate);
    if (!hasValue(plantId) || !ship.isValid())
        return {};
    QStringList out;
    const std::shared_ptr<Register> held = Register::current();
    Register &reg = *held;
    for (const Planting &p : readPlantings(farmer, plantId, reg)) {
        for (int ix : sprayOrder(p)) {
            const Spraying &s = p.sprays[ix];
            if (s.day > ship || !hasLot(s) || !p.exists)
                continue;
            const Rule r = reg.rule(s.regNo, p.crop, s.purpose);
            if (r.state != Rule::Checked ||
                (r.interval.kind != Interval::Days && r.interval.kind != Interval::BeforeFirst))
                continue;
            const QDate allowed = s.day.addDays(r.interval.days);
            if (ship < allowed)
                out << QStringLiteral("%1（登録番号%2）を%3に散布しています。使用時期「%4」により、出荷は%5からです。")
                           .arg(s.lotName, s.regNo, dayText(s.day), r.seasonWording, dayText(allowed));
        }
    }
    return out;
}

bool saveAnyway(const QString &heading, const std::function<QStringList()> &check)
{
    QStringList found;
    try {
        found = check();
    } catch (const AppError &) {
        return true;
    }
    return found.isEmpty() ||
           ShowMsg(heading + QStringLiteral("\n\n") + found.join(QStringLiteral("\n\n")) +
                       QStringLiteral("\n\n記録は実際のとおりに残せます。このまま登録しますか？"),
                   Msg::YesNo | Msg::Exclamation) == Msg::ResYes;
}

QVector<ReportLine> farmReport(int year, const QDate &today)
{
    QVector<ReportLine> out;
    const std::shared_ptr<Register> held = Register::current();
    Register &reg = *held;
    for (const Planting &p : readAll(Value::null(), {}, reg.harvestKind())) {
        for (const Finding &f : check(p, reg, today)) {
            const Spraying &s = p.sprays[f.spray];
            if (year != 0 && s.day.year() != year)
                continue;
            out.append(ReportLine{p.farmer, s.day,
                                  p.exists ? QStringLiteral("%1 %2").arg(textOf(p.plantId), p.name)
                                           : QStringLiteral("（作付なし）"),
                                  s.lotName, f.message});
        }
    }
    std::stable_sort(out.begin(), out.end(), [](const ReportLine &a, const ReportLine &b) {
        if (a.farmer.toDouble() != b.farmer.toDouble())
            return a.farmer.toDouble() < b.farmer.toDouble();
        return a.day < b.day;
    });
    return out;
}

QVector<QDate> warnedDays(const Value &farmer, const Value &plantId, const QDate &from, const QDate &to,
                          const QDate &today)
{
    QVector<QDate> out;
    // Only the plantings sprayed in the period are read.
    QVector<Value> ids;
    Stmt where("D_DIARY_DTL.FMR_ID=? AND D_DIARY_DTL.WORK_KBN=? AND D_DIARY_DTL.WORK_DATE>=? AND D_DIARY_DTL.WORK_DATE<=?");
    where.num(farmer).num(WorkKbn::Spraying).day(DateUtil::fromDate(from)).day(DateUtil::fromDate(to));
    if (hasValue(plantId) && plantId.toDouble() != 0)
        where = Stmt("? AND D_DIARY_DTL.PLANT_ID=?").part(where).num(plantId);
    // Lines without a planting are passed over here rather than in the
    // statement, so that the engine walks the farmer's days of the period
    // and not every spraying line of all years.
    RecordsetPtr rs =
        gDB->GetFwdOnlyRst(Stmt("SELECT DISTINCT D_DIARY_DTL.PLANT_ID FROM D_DIARY_DTL WHERE ?").part(where));
    for (; !rs->eof(); rs->MoveNext())
        if (hasValue(rs->Fields(0)) && rs->Fields(0).toDouble() > 0)
            ids.append(rs->Fields(0));
    rs->Close();
    if (ids.isEmpty())
        return out;
    const std::shared_ptr<Register> held = Register::current();
    Register &reg = *held;
    for (const Planting &p : readAll(farmer, ids, reg.harvestKind())) {
        for (const Finding &f : check(p, reg, today)) {
            const QDate d = p.sprays[f.spray].day;
            if (f.kind != Finding::Unchecked && d >= from && d <= to && !out.contains(d))
                out.append(d);
        }
    }
    std::sort(out.begin(), out.end());
    return out;
}

} // namespace Spray
