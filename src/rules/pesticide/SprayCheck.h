#pragma once
// Each spraying of the diary held against the registered uses of its lot:
// the crop covered (by the crop match of the registered uses, exclusions
// winning), the number of uses on the planting within the limit, and no
// harvest or shipment of the planting inside the pre-harvest interval. And
// from the same facts, the first day on which a planting may be harvested
// and shipped again.
//
// "This season" of a planting is its own period: from its START_DATE (its
// PLANT_DATE when it has none) to its END_DATE, or to today while it is under
// way. Uses are counted within it, in the order of day and line.
//
// When the registered uses of a crop differ by target, the diary line's
// purpose picks those of its target; where they still differ, the most
// lenient limit is held against the spraying (the warning must never be
// wrong), and named. A wording the rules cannot read is never guessed: the
// spraying is reported as one that can't be checked ("確認できません").
//
// The checks warn and never refuse: the record is kept as it happened.

#include "base/Value.h"
#include "rules/pesticide/ChemiData.h"

#include <QDate>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <memory>

class DiaryDay;

namespace Spray {

// ---------------------------------------------------------------- the wordings

// The number of uses (USE_TIMES): "1回", "3回以内"; "－" or nothing for no
// limit.
struct Times {
    enum Kind { Limit, Free, Unreadable } kind = Free;
    int max = 0;
};
Times readTimes(const QString &wording);

// The pre-harvest interval of the season of use (SEASON): "収穫前日まで" is
// 1 day, "収穫7日前まで" 7, "収穫開始21日前まで" 21 days before the first
// harvest, also inside other words ("発生初期（収穫前日まで）"). A season
// that names no harvest ("定植時", "育苗期", "－") has no interval; one that
// names the harvest in any other way can't be read.
struct Interval {
    enum Kind { Days, BeforeFirst, None, Unreadable } kind = None;
    int days = 0;
};
Interval readInterval(const QString &season);

// The dilution (DILUTION): "2000倍", a range "1000～2000倍", "原液" (1 to 1);
// nothing or "－" for none given.
struct Dilution {
    enum Kind { Range, None, Unreadable } kind = None;
    double from = 0;
    double to = 0;
};
Dilution readDilution(const QString &wording);

// The three wordings as a line of a report: "3回以内 → 3回まで",
// "確認できません" for what can't be read.
QString timesText(const Times &t);
QString intervalText(const Interval &i);
QString dilutionText(const Dilution &d);

// ---------------------------------------------------------------- the facts

// One spraying line of the diary.
struct Spraying {
    QDate day;
    int line = 0;        // DTL_NO, the order inside the day
    Value chemiId;       // the lot; 0 or empty for none
    QString lotName;     // the line's CHEMI_NM, else the lot's
    QString regNo;       // the lot's registration number
    QString purpose;     // the line's purpose
};

// What the checks see of one planting.
struct Planting {
    Value farmer, plantId;
    bool exists = false; // a D_PLANT row stands behind it
    QString name, crop;  // PLANT_NM, CROP_NM
    QDate from, to;      // its season; `to` empty while under way
    QVector<Spraying> sprays;
    QVector<QDate> harvests;  // diary lines of the harvest work kind
    QVector<QDate> shipments; // D_SHIP rows
};

// What the register says of one lot on one crop.
struct Rule {
    enum State { Checked, NotCovered, Unknown } state = Unknown;
    QString why;          // Unknown: why it can't be checked ("登録番号がないため")
    Times times;
    QString timesWording;
    Interval interval;
    QString seasonWording;
};

// The register as the checks read it: every registered use with its crop
// match, the crop list and the harvest work kind, read from the work
// database at once when made (the register is small, and read only).
class Register {
public:
    Register();
    // The register as last read, kept while the work database is unchanged
    // (the checks of a month or a day then cost no reading of it).
    static std::shared_ptr<Register> current();
    Rule rule(const QString &regNo, const QString &crop, const QString &purpose);
    // The harvest work kind of the work list (L_KBN 20 "収穫"); 0 when the list has none.
    int harvestKind() const { return mHarvestKind; }

private:
    struct Use {
        Chemi::CropMatch match;
        ApplRow row;
        Times times;       // USE_TIMES as read, once
        Interval interval; // SEASON as read, once
    };
    Chemi::Crop cropOf(const QString &name) const;
    Rule ruleOf(const QString &regNo, const QString &crop, const QString &purpose) const;
    QHash<qint64, QVector<Use>> mUses; // by registration number
    QHash<QString, Rule> mRules;       // by number, crop and purpose, as asked
    QHash<QString, Chemi::Crop> mCrops;
    int mHarvestKind = 0;
};

// ---------------------------------------------------------------- the checks

struct Finding {
    enum Kind { NotCovered, TooMany, Harvested, Shipped, Unchecked } kind = Unchecked;
    int spray = -1;  // index into Planting::sprays
    QString message; // what the farmer reads
};

// The findings of every spraying of the planting, in the order of its
// sprayings by day and line. `today` ends a season still under way.
QVector<Finding> check(const Planting &p, Register &reg, const QDate &today);

// The day from which every spraying so far allows the harvest: the latest of
// spraying day + interval; empty when no spraying holds one. `sure` is false
// when a spraying's interval could not be known.
struct ShipFrom {
    QDate day;
    bool sure = true;
};
ShipFrom shipFrom(const Planting &p, Register &reg);

// The uses of one registration on a planting this season.
struct UseCount {
    QString regNo, lot, limit; // limit as said: "2回まで", "制限なし", "登録なし", "確認できません"
    int used = 0;
    int max = 0;               // a limit in numbers, 0 for none
};
// The uses of each registration this season, by registration number.
QVector<UseCount> countUses(const Planting &p, Register &reg, const QDate &today);

// The uses of each registration on the planting this season against its
// limit, one line each: "ハルカゼ乳剤 2/3回以内".
QStringList useCounts(const Planting &p, Register &reg, const QDate &today);
// The same in short, for a list's cell: "90005 3/2回超過、90007 1/3回".
QString useCountsShort(const Planting &p, Register &reg, const QDate &today);
// The 出荷可能日 as shown: "yyyy/MM/dd", "" for none, with "（確認できない散布あり）"
// when it is not sure.
QString shipFromText(const ShipFrom &s);

// ---------------------------------------------------------------- the tables

// The plantings with their sprayings, harvests and shipments. farmer: Null
// for every farmer; plantId: Null for every planting of the farmer(s).
// Spraying lines without a planting come as plantings that don't exist.
QVector<Planting> readPlantings(const Value &farmer, const Value &plantId, const Register &reg);
// The plantings of the farmer among the ids, read at one go (none for no ids).
QVector<Planting> readPlantings(const Value &farmer, const QVector<Value> &plantIds, const Register &reg);

// What the planting screens show of a planting: its 出荷可能日 (as
// shipFromText) and its use counts (as useCounts).
struct PlantSummary {
    QString shipFrom;
    QStringList uses;
    QString usesShort;
};
// The summaries of the farmer's plantings, by PLANT_ID, read at one go;
// plantings with no spraying are left out.
QHash<qint64, PlantSummary> summaries(const Value &farmer, const QVector<Value> &plantIds, const QDate &today);

// The findings of a diary day about to be saved: the day in memory taking
// the place of its stored lines. Only sprayings of the day with a lot and a
// planting are looked at. Each message is one paragraph.
QStringList checkDay(const DiaryDay &day, const QDate &today);

// The warnings of a shipment about to be saved: sprayings of the planting on
// or before the day whose interval reaches past it, naming the spraying day
// and the earliest day allowed.
QStringList checkShipment(const Value &farmer, const Value &plantId, const Value &shipDate);

// The question before a save goes on, when `check` finds something: the
// heading, what was found, and that the record may be kept as it happened.
// True when the save may go on: nothing found, the farmer's yes, or a
// failure of the check itself (it only warns, it never holds a save).
bool saveAnyway(const QString &heading, const std::function<QStringList()> &check);

// One line of the farm's report: a spraying that breaks or can't be checked.
struct ReportLine {
    Value farmer;
    QDate day;
    QString planting;
    QString lot;
    QString message;
};
// Every such spraying of every farmer, of the year (0 for all), by farmer, day and line.
QVector<ReportLine> farmReport(int year, const QDate &today);

// The days from `from` to `to` on which a spraying of the farmer breaks its
// registration (what can't be checked is not counted), for the calendar's
// mark. plantId narrows them to a planting when it is one (not 0 or Null).
QVector<QDate> warnedDays(const Value &farmer, const Value &plantId, const QDate &from, const QDate &to,
                          const QDate &today);

} // namespace Spray
