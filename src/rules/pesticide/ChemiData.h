#pragma once
// Pesticide lots: the working record, and the rules of the pesticide list and
// the pesticide entry that need no window: the lists offered, the list's
// statement and its lines, the leave rules of the entry's fields, the check
// before a save, the names from the register, the crop match of the
// registered uses, and the save with its purchase slip.

#include "base/Mode.h"
#include "base/Choice.h"
#include "base/Value.h"
#include "rules/common/Record.h"
#include "store/Lookup.h"

#include <QString>
#include <QStringList>
#include <QVector>

// One lot, a field per column of D_CHEMI in the table's order. Every field
// starts Null: an empty field is Null, as the boxes leave it.
struct ChemiRow {
    Value FMR_ID, CHEMI_ID, CHEMI_NM, REG_NO, USES, MAKER_NM, CHEMI_TYPE, CHEMI_KIND, PUR_DATE, PUR_SHOP, PUR_QTY,
        PUR_UNIT, ACC_ID, PUR_AMT, USED_QTY, REST_QTY, NOTES, LEDGE_ID, CHK_FLG, IDATE, UDATE, LAST_TM, HOLD_TM;

    ChemiRow();
    static const ColumnMap<ChemiRow> &map();
};

// One registered use shown on the entry screen.
struct ApplRow {
    Value TARGET, PURPOSE, DILUTION, USE_QTY, SEASON, USE_TIMES, USE_WAY;

    static const ColumnMap<ApplRow> &map();
};

namespace Chemi {

// ---------------------------------------------------------------- lists offered

// The uses (L_KBN 15), the formulations (L_KBN 16) and the units
// (L_CHEMI_UNIT), each by id.
QVector<Choice> uses();
QVector<Choice> formulations();
QVector<Choice> units();
// The crop names of L_CROP in order; an empty name stays an empty entry.
QStringList crops();

// ---------------------------------------------------------------- the list

enum class Stock { InHand, UsedUp, All };
struct ListFilter {
    Value farmer;
    Value uses;        // an id; Null or 0 for every use
    QString name;      // part of the name
    QString dateFrom;  // purchase dates as typed (dates the tables can hold); empty for open ends
    QString dateTo;
    QString regNo;     // registration number as typed
    Stock stock = Stock::InHand;
};
QString listSql(const ListFilter &f);
// The farmer's lots that the filter lets through, in the list's order.
QVector<ChemiRow> readLots(const ListFilter &f);
// The cells of a lot's line: id, use (named from the uses read once for
// the list), name, registration number, purchase day, bought, used, left.
QStringList listLine(const ChemiRow &r, const NameTable &uses);
// The place of the first row whose CHEMI_ID equals id; -1 when none does.
int rowOfChemi(const QVector<ChemiRow> &rows, const Value &id);

// ---------------------------------------------------------------- the entry

// The record an entry screen starts from: the row handed over (none for a
// new lot). Adding from a row copies it as a new lot of the same pesticide:
// no number, purchase date, use or change date, the whole quantity in hand,
// switched on, for the farmer.
ChemiRow openRecord(Mode mode, const ChemiRow &row, const Value &farmer);

// Whether the lot has a registration number: the registered uses are offered
// only then.
bool registered(const ChemiRow &r);

// The text boxes of the entry, in the order of their index.
enum Box { RegNoBox, NameBox, KindBox, MakerBox, DateBox, ShopBox, QtyBox, AmountBox, NotesBox, BoxCount };
// The rule of leaving a text box: the field takes the text (an empty text is
// Null). The registration number brings the names from the register; the
// purchase date keeps only a date the tables can hold, the quantity and the
// amount only a number (else the field empties, quietly); the quantity
// recounts what is left.
void leaveBox(ChemiRow &r, int box, const QString &text);
// The drop-downs of the entry: use, formulation, unit. Leaving one stores
// the id chosen, Null for none.
enum List { UsesList, TypeList, UnitList };
void leaveList(ChemiRow &r, int list, const Value &id);

// Why a lot may not be saved as it stands: the message and the text box
// that takes the focus (-1 for none). An empty message lets the save go on.
struct Refusal {
    QString message;
    int box = -1;
    bool ok() const { return message.isEmpty(); }
};
// The check before a save. Deleting is refused while a diary line uses the
// lot; adding and changing count what is left and need a name.
Refusal check(ChemiRow &r, Mode mode);

// The pesticide's own fields from the register by its number: CHEMI_NM,
// CHEMI_KIND (both full width), MAKER_NM, CHEMI_TYPE and USES of the record.
// A number the register doesn't know (or no number) empties the five.
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
// The registered uses of the lot for the crop chosen; none without a
// registration number or a crop.
QVector<ApplRow> applicationsFor(const ChemiRow &r, const QString &crop);
// The four lines of a registered use: target and purpose; dilution and
// quantity; season; times and way of use.
QStringList applTexts(const ApplRow &a);

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

// Writes the lot and its purchase slip: Add adds (the lot takes the next
// number over all farmers, for the current farmer), Change changes, Delete
// deletes. The record takes its new numbers, and a lot added or changed is
// the one saved last (gLAST_CHEMI_ID). False when the lot to change or
// delete is gone. One transaction: failures are raised and leave the tables
// and the record as they were; a purchase amount beyond what the books hold
// is the overflow error before anything is written; RecordChanged when
// another computer saved the lot since it was read.
bool saveLot(Mode mode, ChemiRow &r, const QString &computer);
// The lot as the table holds it now; false when it is gone.
bool rereadLot(ChemiRow &r);

} // namespace Chemi
