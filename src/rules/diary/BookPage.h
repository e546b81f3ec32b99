#pragma once
// One day of one book (cash, deposit, receivables, payables: the accounts of
// Acc) as the diary's book pages show it: the balance brought forward from
// earlier days in the database, then the day's slips of gLEDGE_ROWS that
// touch the book, with a running balance and the two sums.

#include "base/Currency.h"
#include "base/Globals.h"
#include "base/Mode.h"
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


// A slip number above every saved slip of the farmer and every slip of the
// day not saved yet.
qint32 GetNewLedgeID(const Value &fmrId, const QVector<LedgeRow> &rows);

// What a book page's slip entry holds: the other account and the option ids
// and names of both sides, and the amounts on the book's left and right.
struct SlipEntry {
    Value otherAcc, otherOptId, ownOptId;
    Value otherOptName, ownOptName;
    QString left, right;
};
// Whether a typed amount is one: a number above 0. The side that gets one
// carries the slip's amount, and the other side is set to "0".
bool carriesAmount(const QString &text);
// Moves the entry into the slip: an amount on the left debits the book
// (credits it for the payables), one on the right the other way round. With
// neither amount above 0 the slip is left as it is.
void applyEntry(LedgeRow &slip, int book, const SlipEntry &e);

// What a slip shows from the book: the side that is not the book's as the
// other account with its option, the amount on the left when it debits the
// book (credits it, for the payables), else on the right. A slip that
// doesn't debit the book is read from its debit side, its own option id
// too (both option lists show D_OPT_ID).
struct SlipView {
    bool bookDebited = false;
    SlipEntry entry;
};
SlipView viewOf(const LedgeRow &slip, int book);

// The row of the array holding the slip number, or -1.
int rowOfSlip(const QVector<LedgeRow> &rows, const Value &ledgeId);

// The slip a book page's entry starts from: the row handed over (a blank
// one for -1), and for a new slip (Add) the farmer, a new number, the day
// and the book on the debit, the rest empty.
LedgeRow slipToEdit(const QVector<LedgeRow> &rows, Mode mode, int row, const Value &fmrId, const Value &day, int book);
// Puts the entered slip back into the day's slips: a new one goes into the
// blank slot or at the end, a changed one replaces its row; other modes
// change nothing (a deletion here removes no slip).
void putSlip(QVector<LedgeRow> &rows, const LedgeRow &slip, Mode mode, int row);

}
