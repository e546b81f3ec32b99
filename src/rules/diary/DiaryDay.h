#pragma once
// One farmer's one day of the diary, held in memory from opening to saving:
// the day record, the work lines, and (in gLEDGE_ROWS) the slips of the day.
// A save replaces the day as a whole, step by step: slips, pesticide cost
// slips, the day, the lines, the stock recount; all of it one transaction,
// so that a failure or a crash leaves the day as it was before. A save
// refuses a day that another computer has changed since it was opened: the
// day's row, its lines, or its slips (a shipment posted onto the day, a slip
// of that date).

#include "base/Value.h"
#include "rules/common/Ids.h"
#include "rules/common/Record.h"
#include "base/Globals.h"
#include "store/Lookup.h"

#include <QDateTime>
#include <QVector>

struct DiaryDayRec {
    Value FMR_ID, WORK_DATE, WTH_ID, LO_TMP, HI_TMP, ONE_MSG, NOTES1, NOTES2, IDATE, UDATE, LAST_TM, HOLD_TM;
    static const ColumnMap<DiaryDayRec> &map();
};

struct DiaryDtlRec {
    Value FMR_ID, WORK_DATE, DTL_NO, PLANT_ID, WORK_KBN, WORK_NM, NOTES, CHEMI_ID, CHEMI_NM, REG_NO, PURPOSE, QTY,
        UNIT_ID, SHIP_ID, SCHD_ID, LEDGE_ID;
    static const ColumnMap<DiaryDtlRec> &map();

    // A pesticide application: the line shows its pesticide and makes a cost slip.
    bool spraying() const { return isNumber(WORK_KBN, WorkKbn::Spraying); }
    // A line that a shipment wrote: it is looked at, not deleted, here.
    bool shipment() const { return isNumber(WORK_KBN, WorkKbn::Shipment); }
};

class DiaryDay {
public:
    DiaryDayRec day;
    QVector<DiaryDtlRec> dtl; // never empty: element 0 may be a blank slot

    DiaryDay() { clear(); }
    void clear();

    // Reads the day from the tables; takes the hold stamp on the day's row.
    void load(const Value &fmrId, const QDateTime &workDate);
    // Writes the day: the steps in their order (see the header comment), as
    // one transaction. Raises RecordChanged when another computer changed
    // the day since it was opened; after any failure the tables and the day
    // in memory are as they were.
    void save();
    // Gives up the holds this computer has on diary days and slips.
    static void releaseHolds();

    // A new line: into the blank slot, else at the end. Returns its index.
    int addDetail(const Value &plantId);
    // Removes a line, and the slip its pesticide cost made from gLEDGE_ROWS.
    // Returns true when gLEDGE_ROWS changed.
    bool removeDetail(int index);
    // The first line with that number, or -1.
    int findDetail(const Value &dtlNo) const;
    // The lines of a planting, in array order.
    QVector<int> linesOf(const Value &plantId) const;

    // The steps of the save, one by one.
    void SaveLedgeData();
    void SaveUseChemi();
    void saveDay();
    void saveDetails();

private:
    // The day as the tables held it when it was opened (or last saved here).
    struct Stored {
        bool hadDay = false;
        Stamps stamps;
        QVector<DiaryDtlRec> lines;
        QVector<LedgeRow> slips;
    };
    Stmt dayKey() const;
    QVector<DiaryDtlRec> readLines() const;
    QVector<LedgeRow> readSlips() const;
    // The first step of a save: the day claimed, and its lines and slips
    // compared with those it was opened with.
    void claimDay();
    // Whose save changed the day: the last writer of a slip or of a
    // shipment that is new since opening; none when it can't be told.
    Value changedBy(const QVector<DiaryDtlRec> &lines, const QVector<LedgeRow> &slips) const;
    void takeStored();

    Stored mStored;
};

// The text of the pesticide side of a use slip: the quantity as "0.0" and the
// unit's name behind it.
QString useQuantityText(const Value &qty, const Value &unitId, const NameTable &units);
