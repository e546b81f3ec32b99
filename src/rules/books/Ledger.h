#pragma once
// The slips of D_LEDGE as the book screens see them, apart from any window:
// the slip list and the account ledger read by a filter (with the ledger's
// opening balance, the raise and lower of each line, its running balance and
// sums), the lists the slip entry chooses from, who may change a slip, and
// the save of one slip.
//
// A slip is one row with one amount, a debit and a credit account: it can't
// be out of balance. An account's DC_KBN tells its normal side (2 credit,
// anything else debit); PG_KBN 1 carries the balance over the years, any
// other value starts it again on 1 January.

#include "base/Currency.h"
#include "base/Globals.h"
#include "base/Mode.h"
#include "base/Choice.h"
#include "base/Value.h"
#include "store/Lookup.h"
#include "store/Stmt.h"

#include <QHash>
#include <QString>
#include <QVector>

#include <optional>

class Recordset;

// Slip numbers and owners, shared by every module that posts slips.
// The largest slip number of the farmer plus 1 (1 for none).
qint32 nextLedgeId(const Value &fmrId);

// 0 free, 1 made by a diary line, 2 by a pesticide purchase, 3 by a shipment;
// the first owner found answers.
int ChkLedgeUse(const Value &fmrId, const Value &ledgeId);

// The refusal of a change (or a deletion) of a slip that a record owns, by
// the owner ChkLedgeUse gives; "" for a free slip.
QString ledgeLockMessage(int owner, bool deleting);

namespace Ledger {

// What the list's filter fields hold, as typed.
struct Filter {
    Value fmrId;
    Value accId;  // Null (or 0): no account chosen
    QString ctr;  // part of the counterparty's name
    QString from, to;
    QString year;
};

bool hasAccount(const Filter &f);

// The terms of the list, joined by " AND ": the farmer, the account on
// either side, the name, the dates and the year. A date or a year that is no
// date raises the date error (3075) before any statement runs.
Stmt listCriteria(const Filter &f);
// The terms of the balance before the list: the name, the time before the
// start date (only undated slips without one), and the 1 January of the year
// for accounts that start again each year (an empty year is no date there
// either). It has no farmer term, so every farmer's slips count.
Stmt openingCriteria(const Filter &f, const Value &pgKbn);

Stmt listSql(const Stmt &criteria);
Stmt countSql(const Stmt &criteria);

// DC_KBN and PG_KBN of an account (Null when the account is unknown).
struct AccountKinds {
    Value dcKbn, pgKbn;
};
AccountKinds accountKinds(const Value &accId);
bool creditNormal(const Value &dcKbn);
// PG_KBN of an account whose balance runs on over the years.
constexpr int kCarriedOver = 1;
bool carriedOver(const Value &pgKbn);

// Debits less credits, or credits less debits for a credit account: the
// balance on the account's own side.
Currency sideBalance(const Value &dcKbn, Currency debit, Currency credit);
// The side balance of the account's slips under the criteria.
Currency openingBalance(const Value &accId, const Value &dcKbn, const Stmt &criteria);

// Whether a slip raises the account's balance: for a credit account when the
// account is on its credit side, for a debit account when it is not. A slip
// with the account on both sides so counts once, on its credit side.
bool raises(const Value &dcKbn, const Value &accId, const LedgeRow &row);
// The account on the other side of the slip from the chosen one.
Value otherAccount(const Value &accId, const LedgeRow &row);

struct Line {
    Value other;   // the other side's account
    Currency first, second, balance;
};
struct Page {
    Currency opening, sumFirst, sumSecond, closing;
    QVector<Line> lines;
};
// The ledger lines of rows from the opening balance on. A raising line has
// its amount in the first column, a lowering one in the second, whatever the
// side; an empty amount counts 0.
Page compute(const Value &accId, const Value &dcKbn, const QVector<LedgeRow> &rows, Currency opening);

// What the list shows for a filter: the slips in the list's order and the
// count and sum of the same criteria; in the ledger view also its page (a
// line a slip, the opening balance, the sums and the closing balance). The
// ledger of no account is empty and uncounted.
struct Listing {
    QVector<LedgeRow> rows;
    Page page;            // the ledger view only
    bool counted = false; // the count statement gave its row
    Value count, sum;     // COUNT(*) and SUM(AMT) of the criteria
};
Listing readList(const Filter &f, bool ledger);

// The row to choose after the list is read again: the slip of that number
// (the one saved last), else the first; -1 for no rows.
int rowToChoose(const QVector<LedgeRow> &rows, const Value &ledgeId);

// Account names by id, all read at once when the first is asked for; ""
// for an unknown id.
class AccountNames {
public:
    QString operator()(const Value &accId);

private:
    std::optional<NameTable> mNames;
};

// The 18 values of the current row of a set read from D_LEDGE.
LedgeRow rowOf(const Recordset &rs);

// The date as the lists show it, "yyyy/mm/dd"; "" when empty.
QString dateText(const Value &v);
// "#,##0"; "" when empty.
// An amount as the books show it: whole yen, rounded half away from zero,
// with thousands separators ("-1,235").
QString amountText(Currency c);
QString amountText(const Value &v);

// The farmers in use, by number.
QVector<Choice> farmers();
// The accounts of L_ACC, by number.
QVector<Choice> accounts();
// The sub-account kind of an account (L_ACC.OPT_KBN); 0 for none or an
// unknown account.
int subAccountKind(const Value &accId);
// What a sub-account of that kind may be for the farmer: the plantings
// (kind 2) or the pesticide lots still offered (kind 3); nothing for any
// other kind.
QVector<Choice> subAccounts(int kind, const Value &fmrId);

// The slip the entry starts from: the row it was opened for, or for a new
// slip (also a copy) a blank one of the farmer dated today, of which only the
// sub-account kinds of the source stay.
LedgeRow startSlip(Mode mode, const LedgeRow &source, const Value &fmrId);
// The amount typed into a slip: Null for empty text, else the amount read as
// a number ("１,２００" is 1200). Returns "" when it is taken, or the message
// that refuses the text: no number, or more than the amount column holds.
QString readAmount(const QString &text, Value &amount);

// Why the slip may not be changed (or deleted) from the books: the message
// naming the record that owns it; "" for a free slip, and for viewing and
// adding, which are never refused.
QString refusal(Mode mode, const LedgeRow &row);

// Writes a slip, as the slip entry saves it: mode 1 adds it under the
// farmer's next number, mode 2 changes it, mode 4 deletes it. The row is
// found by its number alone: with several farmers the first row of that
// number is the one reached. False when a row to change or delete is gone;
// nothing is written then. One transaction; raises RecordChanged when
// another computer saved the slip since it was read.
bool saveSlip(Mode mode, LedgeRow &row, const Value &fmrId, const QString &computer);
// The slip of the row's farmer and number as the table holds it now; false
// when it is gone.
bool rereadSlip(LedgeRow &row);

// Frees the slips this computer holds, as the entry does when it closes.
void releaseHolds();

} // namespace Ledger
