#pragma once
// Plantings: the working record, the rows of the planting list, and the rules
// of the planting screens that need no window (the harvest month, the list's
// statement, the refusal of a delete, the save). The rules of the entry
// screen's fields are in PlantEntry.h.

#include "base/Mode.h"
#include "base/Value.h"
#include "rules/common/Record.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <QVector>

// One planting, a field per column of D_PLANT in the table's order. A field
// left empty is Empty or Null.
struct PlantRow {
    Value PLANT_ID, PLANT_NM, YYYY, FMR_ID, HARVEST_SCHD_YM, CROP_NM, CROP_NM1, CROP_NM2, PRD_ID, PRD_NM,
        PLANT_TYPE, FIELD_NM, AREA, CROP_EST, CROP_EST_UNIT, PLANT_DATE, START_DATE, END_DATE, SHIP_EST,
        SHIP_EST_UNIT, SHIP_SCHD_DATE1, SHIP_SCHD_DATE2, IMG_PATH1, IMG_PATH2, NOTES1, NOTES2, IDATE, UDATE,
        LAST_TM, HOLD_TM;

    // Which member holds which column.
    static const ColumnMap<PlantRow> &map();
};

// The rows read by the planting list; the entry screen copies its record
// from here by the row it is opened with.
extern QVector<PlantRow> gPLANT_ROWS;

namespace Plant {

// The columns that the list copies from a row (the image paths are not
// among them) and that a save writes (the image paths are).
const QStringList &listColumns();
const QStringList &savedColumns();

// The planned harvest month from the year and month boxes. Empty or 0 takes
// the year or month of today; whole numbers only count (halves to even); a
// month beyond 12 or below 1 moves the year, as a date built from year,
// month and day does. Two-digit years are 19xx from 30, 20xx below.
struct HarvestMonth {
    bool ok = false; // false: the month falls outside the years 100 to 9999
    int year = 0;
    int month = 0;
    QString ym;      // "yyyymm"
};
HarvestMonth harvestMonth(const QString &yearText, const QString &monthText, const QDate &today);

// The stored harvest month in six digits ("000000"): numbers padded with
// zeros, other text as it stands, Null as "".
QString harvestDigits(const Value &ym);
// The year box takes the first four of those, the month box the last two.
QString harvestYearText(const Value &ym);
QString harvestMonthText(const Value &ym);
// The list's form "0000/00".
QString harvestListText(const Value &ym);

// The year typed into the list's filter: "" when it may be used (empty or a
// number), else the message to show.
QString yearFilterRefusal(const QString &yearText);
// The list's statement. yearText: the year box (a number, or empty for all
// years; text that is no number counts 0 and finds nothing); crop: the crop
// chosen, "" for all; kind: the planting kind's id, Null or 0 for all.
QString listSql(const QString &yearText, const QString &crop, const Value &kind);
// Reads the list's rows into gPLANT_ROWS (the image paths left out).
void readList(const QString &yearText, const QString &crop, const Value &kind);
// The place of the first row whose PLANT_ID equals id; -1 when none does.
int rowOfPlant(const Value &id);

// The next planting number of a farmer.
Value nextPlantId(const Value &farmer);

// Why a planting may not be deleted: the earliest day of work on it, else
// the earliest shipment from it, in the message the user sees; "" when it
// may be deleted.
QString deleteRefusal(const Value &farmer, const Value &plantId);

// Writes the record: Add adds a row, Change changes the first row with its
// PLANT_ID (whichever farmer it belongs to), Delete deletes it; the record
// takes the stamps written. False when the row to change or delete no
// longer exists. One transaction; database failures are raised, and
// RecordChanged when another computer saved the planting since it was read.
bool saveRecord(Mode mode, PlantRow &row, const QString &computer);
// The planting as the table holds it now; false when it is gone.
bool rereadRecord(PlantRow &row);

} // namespace Plant
