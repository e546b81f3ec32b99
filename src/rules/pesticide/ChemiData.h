#pragma once
// Pesticide lots: the working record, the rows of the pesticide list, and the
// rules of the pesticide screens that need no window (the list's statement,
// names from the register, the crop match of the registered uses, the
// refusal of a delete, the save with its purchase slip).

#include "store/SqlText.h"
#include "base/Mode.h"
#include "base/Value.h"

#include <QString>
#include <QStringList>
#include <QVector>

class Recordset;

// One lot, a field per column of D_CHEMI in the table's order. Every field
// starts Null: an empty field is Null, as the boxes leave it.
struct ChemiRow {
    Value FMR_ID, CHEMI_ID, CHEMI_NM, REG_NO, USES, MAKER_NM, CHEMI_TYPE, CHEMI_KIND, PUR_DATE, PUR_SHOP, PUR_QTY,
        PUR_UNIT, ACC_ID, PUR_AMT, USED_QTY, REST_QTY, NOTES, LEDGE_ID, CHK_FLG, IDATE, UDATE, LAST_TM, HOLD_TM;

    ChemiRow();
    // The field of a column by name; raises 3265 for a name that is none.
    Value &field(const QString &column);
    const Value &field(const QString &column) const;
    // All columns, in the table's order.
    static const QStringList &columns();
};

// The rows read by the pesticide list; the entry screen copies its record
// from here by gROW_IDX.
extern QVector<ChemiRow> gCHEMI_ROWS;

// One registered use shown on the entry screen.
struct ApplRow {
    Value TARGET, PURPOSE, DILUTION, USE_QTY, SEASON, USE_TIMES, USE_WAY;
};

namespace Chemi {

// Accounts of the purchase.
constexpr int CashAccount = 1000;
constexpr int PayableAccount = 2000;
constexpr int StockAccount = 1130; // pesticide stock; side code 3 names the lot
constexpr int LotSide = 3;

// The filters of the pesticide list.
enum class Stock { InHand, UsedUp, All };
struct ListFilter {
    Value farmer;
    Value uses;        // an id; Null or 0 for every use
    QString name;      // part of the name
    QString dateFrom;  // purchase dates as typed; empty for open ends
    QString dateTo;
    QString regNo;     // registration number as typed
    Stock stock = Stock::InHand;
};
QString listSql(const ListFilter &f);
// Fills gCHEMI_ROWS from the rows of the list's statement.
void loadRows(Recordset &rs);
// The place of the first row whose CHEMI_ID equals id; -1 when none does.
int rowOfChemi(const Value &id);

// The pesticide's own fields from the register by its number: CHEMI_NM,
// CHEMI_KIND (both full width), MAKER_NM, CHEMI_TYPE and USES of the record.
// A number the register doesn't know empties the five.
void setChemiData(ChemiRow &r);

// The crop match of one row of the registered uses. Each list is empty or
// items with "," between them, compared exactly.
struct CropMatch {
    QString names;    // crop names covered
    QString groups;   // crop groups covered
    QString namesNg;  // item names excluded (seen against the crop's item only)
    QString groupsNg; // crop groups excluded
};
struct Crop {
    QString name;  // the crop as listed (L_CROP.CROP_NM1)
    QString item;  // its item name in the register (CROP_NM2)
    QString group; // its group (CROP_KBN)
};
bool cropApplies(const CropMatch &m, const Crop &crop);

// The crop of the list by its name, with its item and group ("" when unknown).
Crop cropOf(const QString &name);
// The registered uses of a registration number that apply to the crop.
QVector<ApplRow> applications(const Value &regNo, const Crop &crop);

// Why a lot may not be deleted: the day of one of its uses in the diary, in
// the message the user sees; "" when it may be deleted.
QString deleteRefusal(const Value &farmer, const Value &chemiId);

// REST_QTY = PUR_QTY - USED_QTY (USED_QTY empty as 0); empty with no PUR_QTY.
void computeRest(ChemiRow &r);

// The purchase slip of the lot as it will be inserted; "" for an amount of 0
// (or none). The lot must have its number and its slip's number.
QString purchaseSlipSql(Mode mode, const ChemiRow &r, const QString &computer);
// The quantity and unit written on the slip's lot side: "3.0kg"; "" for none.
QString slipLotText(const ChemiRow &r);

// Writes the lot and its purchase slip: mode 1 adds (the lot takes the next
// number over all farmers), 2 changes, 4 deletes. The record takes its new
// numbers. False when the lot to change or delete is gone. Steps done
// before a failure stand; database failures are raised.
bool saveLot(Mode mode, ChemiRow &r, const QString &computer);

} // namespace Chemi
