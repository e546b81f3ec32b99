#pragma once
// Shipments apart from their screens: the working record, the arithmetic
// that runs as its fields are left, the checks before a save, and the
// posting of a shipment into the books and the diary.

#include "base/Mode.h"
#include "base/Value.h"
#include "store/Recordset.h"

#include <QString>
#include <QVector>

struct ShipRow {
    Value FMR_ID, SHIP_ID, SHIP_DATE, PLANT_ID, DTL_NO, SHOP_ID, PRD_ID, PRD_NM, LOCATE, PLAS, ACC_ID, SHOP_PRC,
        SHIP_QTY, RTN_QTY, SALES_QTY, DSC_AMT, SALES_AMT, FEE_RT, FEE_AMT, NOTES, PRINT_DATE, EXP_DATE, LEDGE_ID_S,
        LEDGE_ID_F, IDATE, UDATE, LAST_TM, HOLD_TM;
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

// Price x sold - discount, when price and sold are there; else empty.
void computeSalesAmount(ShipRow &r);
// The rule run when a text box is left with its text.
void leaveBox(ShipRow &r, int box, const QString &text);

// The record of a new shipment (also of a copy: a copy starts blank).
ShipRow newShipment();

// Completes the record before a save (mode 1: farmer and number; the
// account from the shop when empty) and checks it; "" when it may be saved,
// else the message to show.
QString check(ShipRow &r, Mode mode);

// Writes the shipment: its sale and fee slips, the D_SHIP row, the diary
// day and its shipment line (mode 4 takes them away). False when the row to
// change or delete was gone (the message has been shown).
bool post(ShipRow &r, Mode mode);

}
