#pragma once
// The slips of D_LEDGE as the book screens see them, apart from any window:
// the filters of the slip list and of the account ledger as criteria, the
// ledger's opening balance, the raise and lower of each line, the rows read
// into gLEDGE_ROWS, and the save of one slip.
//
// A slip is one row with one amount, a debit and a credit account: it can't
// be out of balance. An account's DC_KBN tells its normal side (2 credit,
// anything else debit); PG_KBN 1 carries the balance over the years, any
// other value starts it again on 1 January.

#include "base/Currency.h"
#include "base/Globals.h"
#include "base/Mode.h"
#include "base/Value.h"

#include <QString>
#include <QVector>

class Recordset;

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
// either side, the name, the dates and the year.
QString listCriteria(const Filter &f);
// The terms of the balance before the list: the name, the time before the
// start date (only undated slips without one), and the 1 January of the year
// for accounts that start again each year. It has no farmer term, so every
// farmer's slips count.
QString openingCriteria(const Filter &f, const Value &pgKbn);

QString listSql(const QString &criteria);
QString countSql(const QString &criteria);

// DC_KBN and PG_KBN of an account (Null when the account is unknown).
struct AccountKinds {
    Value dcKbn, pgKbn;
};
AccountKinds accountKinds(const Value &accId);
bool creditNormal(const Value &dcKbn);

// Debits less credits of the account under the criteria, or credits less
// debits for a credit account.
Currency openingBalance(const Value &accId, const Value &dcKbn, const QString &criteria);

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

// The 18 values of the current row of a set read from D_LEDGE.
LedgeRow rowOf(const Recordset &rs);

// The date as the lists show it, "yyyy/mm/dd"; "" when empty.
QString dateText(const Value &v);
// "#,##0"; "" when empty.
QString amountText(const Value &v);

// Writes a slip, as the slip entry saves it: mode 1 adds it under the
// farmer's next number, mode 2 changes it, mode 4 deletes it. The row is
// found by its number alone: with several farmers the first row of that
// number is the one reached. False when a row to change or delete is gone;
// nothing is written then.
bool saveSlip(Mode mode, LedgeRow &row, const Value &fmrId, const QString &computer);

} // namespace Ledger
