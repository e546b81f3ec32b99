#pragma once
// Shipments apart from their screens: the working record, the arithmetic
// that runs as its fields are left, what the entry screen looks up, the
// checks before a save, and the posting of a shipment into the books and the
// diary.

#include "base/Mode.h"
#include "base/Choice.h"
#include "base/Value.h"
#include "rules/common/Record.h"
#include "store/Recordset.h"

#include <QString>
#include <QVector>

// One row of D_SHIP, field for column in the table's order.
struct ShipRow {
    Value FMR_ID, SHIP_ID, SHIP_DATE, PLANT_ID, DTL_NO, SHOP_ID, PRD_ID, PRD_NM, LOCATE, PLAS, ACC_ID, SHOP_PRC,
        SHIP_QTY, RTN_QTY, SALES_QTY, DSC_AMT, SALES_AMT, FEE_RT, FEE_AMT, NOTES, PRINT_DATE, EXP_DATE, LEDGE_ID_S,
        LEDGE_ID_F, IDATE, UDATE, LAST_TM, HOLD_TM;

    static const ColumnMap<ShipRow> &map();
};

// The rows behind the shipment list.
extern QVector<ShipRow> gSHIP_ROWS;

// Fills gSHIP_ROWS from a set of D_SHIP rows; the number of rows (the array
// stays one blank row long for none).
int LoadShipRows(Recordset &rs);

namespace Ship {


// The text boxes of the entry screen, by index.
enum Box {
    ShipDate = 0, Locate, PrdId, PrdNm, ShopPrc, ShipQty, RtnQty, SalesQty, DscAmt, FeeRt, FeeAmt, Notes, BoxCount
};

// Price x sold - discount, when price and sold are there; else empty. An
// amount beyond what the books hold is the overflow error.
void computeSalesAmount(ShipRow &r);
// The rule run when a text box is left with its text.
void leaveBox(ShipRow &r, int box, const QString &text);

// The record of a new shipment (also of a copy: a copy starts blank).
ShipRow newShipment();

// The account the shop's money goes to (M_SHOP.ACC_ID); 0 when the shop has
// none or is none.
Value shopAccount(const Value &shopId);
// A shop chosen: the record takes it and the shop's own account, so that a
// new shop puts its cash or receivable choice back.
void chooseShop(ShipRow &r, const Value &shopId);
// The planting's product (D_PLANT.PRD_ID, PRD_NM) into the record, whatever
// product was typed before; empty texts when the planting is none.
void takePlantingProduct(ShipRow &r);

// The farmers and the shops in use, as the entry screen offers them.
QVector<Choice> farmerChoices();
QVector<Choice> shopChoices();
// The current farmer's plantings open on the day (started on or before it,
// not ended before it), in the order they were planted; none when the day is
// no date.
QVector<Choice> openPlantings(const Value &day);

// What the entry screen shows of the chosen planting.
struct PlantingInfo {
    Value CROP_NM1, CROP_NM2, PLANT_DATE, AREA, SHIP_SCHD_DATE1, SHIP_SCHD_DATE2;
};
// The planting's row; all empty when PLANT_ID is empty, 0, or a planting
// that doesn't exist.
PlantingInfo plantingInfo(const Value &plantId);

// Completes the record before a save (mode 1: farmer and number; the
// account from the shop when empty) and checks it; "" when it may be saved,
// else the message to show.
QString check(ShipRow &r, Mode mode);

// Writes the shipment: its sale and fee slips, the D_SHIP row, the diary
// day and its shipment line (mode 4 takes them away), as one transaction.
// The amounts are taken first: one beyond what the books hold is the
// overflow error, before anything is written. False when the row to change
// or delete was gone (the message has been shown). Raises RecordChanged when
// another computer saved the shipment since it was read.
bool post(ShipRow &r, Mode mode);
// The shipment's row as the table holds it now; false when it is gone.
bool reread(ShipRow &r);

// Frees the shipments this computer holds (the entry screen closing).
void releaseShipments();

// The current farmer's shipment of that number into gSHIP_ROWS (as the
// diary's shipment line opens it); the number of rows, 0 or 1.
int loadShipment(const Value &shipId);

}
