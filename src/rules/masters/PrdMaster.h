#pragma once
// The products of the shops (M_PRD) as the product master holds them: the
// whole table in memory, changed row by row and written back at once.

#include "base/Value.h"
#include "rules/common/Record.h"

#include <QString>
#include <QVector>

// A row of M_PRD, the columns in the table's order.
struct PrdRow {
    Value SHOP_ID, PRD_ID, PRD_NM, PRD_OMT, PRD_YM, M_CD, S_CD, PRD_CD, PRD_KBN, REP_KBN, NOTES, I_NM, I_MTLS,
        I_WEIGHT, I_UNIT, I_PSRV, I_TERM, I_DEF_DAYS, CHK_FLG, IDATE, UDATE, LAST_TM, HOLD_TM;
    static const ColumnMap<PrdRow> &map();
};

namespace Prd {

using Row = PrdRow;
inline Row blankRow() { return Row(); }
using Rows = QVector<Row>;

// The product number of a row; 0 when it has none.
double idOf(const Row &row);

// All rows by product number. An empty table gives one blank row, so that
// the array always has a row to show.
Rows load();
// The greatest product number, 0 when there is none.
int maxId(const Rows &rows);
// The index of the first row with that product number (a row without one
// counts as 0), -1 when there is none.
int indexOf(const Rows &rows, const Value &id);
// Whether another row than the one at except has that product number.
bool idTaken(const Rows &rows, int except, double id);
// Whether a row's name contains the filter text (an empty filter passes all).
bool passes(const Row &row, const QString &filter);

// A new row for the shop, numbered after the greatest: it fills the first
// row while that one has no number yet, else it is added at the end.
// Returns its index.
int addRow(Rows &rows, const Value &shopId);
// Removes the row at index; the array keeps at least one (blank) row.
// Returns the index to show next.
int removeRow(Rows &rows, int index);

// A product number typed into the master: "" (none, Null) or a whole
// number of 0 or more that no other row than except has. The refusal is
// the message to show; empty when the number is taken.
struct TypedId {
    Value id;
    QString refusal;
};
TypedId checkTypedId(const Rows &rows, int except, const QString &text);

// Writes the array back as the whole table, in one transaction: the rows
// with a product number above 0, stamped by the computer. On an error
// nothing has changed and the error is passed on.
void save(const Rows &rows, const QString &computer);

}
