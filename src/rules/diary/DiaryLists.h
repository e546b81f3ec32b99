#pragma once
// What the diary's screens choose from and show beside a choice: the lists
// of the day entry, the calendar's planting filter and the slip entry of a
// book page, each read with its statement, an entry an id with its text.

#include "base/Choice.h"
#include "base/Value.h"

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVector>

namespace DiaryLists {


// The kinds of L_KBN: weather (10) and work (20), by id.
QVector<Choice> weathers();
QVector<Choice> workKinds();
// The units of a pesticide use, by id.
QVector<Choice> useUnits();

// The lots switched on, by name; the purchase day "m/d" in front of the name
// tells two purchases of one product apart. Every farmer's lots: the switch
// alone chooses them.
QVector<Choice> lotsInUse();
// The purposes registered for the lot's registration number. A lot without
// a number, or with one that is no number (第123号), has none.
QStringList purposesOfLot(const Value &chemiId);

// The farmer's plantings alive on the day (started, not ended before it),
// by planting date.
QVector<Choice> plantingsAlive(const Value &fmrId, const QDateTime &day);
// The farmer's plantings that touch the month of its first day.
QVector<Choice> plantingsOfMonth(const Value &fmrId, const QDate &monthFirst);

// Work names used before for the kind of work, those used on the crop of
// the planting first, each group by name (a name may stand in both).
QStringList workNames(const Value &fmrId, const Value &plantId, const Value &workKbn);

// What the day entry shows of a planting.
struct Planting {
    bool found = false;
    QString crop;     // CROP_NM1
    QString harvest;  // HARVEST_SCHD_YM as "yyyy/mm" (as stored when it is no year and month)
    QString planted;  // PLANT_DATE as "yyyy/MM/dd"
    QString area;
};
// The planting by its number alone (any farmer's).
Planting planting(const Value &plantId);

} // namespace DiaryLists
