#pragma once
// One day of one book (cash 1000, deposit 1010, receivables 1040, payables
// 2000) as the diary's book pages show it: the balance brought forward from
// earlier days in the database, then the day's slips of gLEDGE_ROWS that
// touch the book, with a running balance and the two sums.

#include "base/Currency.h"
#include "base/Globals.h"
#include "base/Value.h"

#include <QDateTime>
#include <QString>
#include <QVector>

#include <functional>

namespace BookPage {

struct Headings {
    QString first, second; // the two amount columns; empty for an account with no book
    bool amounts = true;   // false: the first five columns only
};
Headings headingsFor(int acc);

struct Line {
    Value ledgeId;
    int no = 0;
    QString account; // the other side's account name
    QString ctr, notes;
    Currency first, second, balance;
};

struct Page {
    Currency forward, sumFirst, sumSecond, closing;
    QVector<Line> lines;
};

// Debits less credits of the book before the day (credits less debits for
// the payables), over the farmer's slips in the database.
Currency broughtForward(const Value &fmrId, const QDateTime &day, int acc);
// The day's lines, in array order; account names through lookUp.
Page compute(int acc, const QVector<LedgeRow> &rows, Currency forward,
             const std::function<QString(const Value &)> &lookUp);

// "#,##0": whole amounts with thousands separators.
QString amountText(Currency c);

// A slip number above every saved slip of the farmer and every slip of the
// day not saved yet.
qint32 newSlipId(const Value &fmrId, const QVector<LedgeRow> &rows);

// What a book page's slip entry holds: the other account and the option ids
// and names of both sides, and the amounts on the book's left and right.
struct SlipEntry {
    Value otherAcc, otherOptId, ownOptId;
    Value otherOptName, ownOptName;
    QString left, right;
};
// Moves the entry into the slip: an amount on the left debits the book
// (credits it for the payables), one on the right the other way round. With
// neither amount above 0 the slip is left as it is.
void applyEntry(LedgeRow &slip, int book, const SlipEntry &e);

}
