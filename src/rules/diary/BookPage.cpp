#include "rules/diary/BookPage.h"

#include "rules/books/Ledger.h"
#include "rules/common/Ids.h"
#include "store/Database.h"
#include "store/Stmt.h"

#include <cmath>

namespace BookPage {

Headings headingsFor(int acc)
{
    switch (acc) {
    case Acc::Cash: return {QStringLiteral("入金"), QStringLiteral("出金")};
    case Acc::Receivable: return {QStringLiteral("発生"), QStringLiteral("回収")};
    case Acc::Payable: return {QStringLiteral("発生"), QStringLiteral("支払")};
    default: break;
    }
    // the other accounts up to the receivables read like the deposit
    if (acc <= Acc::Receivable)
        return {QStringLiteral("預入"), QStringLiteral("払出")};
    return {QString(), QString(), false};
}

namespace {
// The book's normal side as the ledger reads it (DC_KBN): the payables are
// kept on the credit side, the other books on the debit side.
Value sideOf(int book) { return Value(book == Acc::Payable ? 2 : 1); }
} // namespace

Currency broughtForward(const Value &fmrId, const QDateTime &day, int acc)
{
    return Ledger::openingBalance(Value(acc), sideOf(acc), Stmt(" FMR_ID=? AND LEDGE_DATE<?").num(fmrId).time(day));
}

Page compute(int acc, const QVector<LedgeRow> &rows, Currency forward,
             const std::function<QString(const Value &)> &lookUp)
{
    // The day's slips that touch the book, in the ledger's columns: what
    // raises the book (credits the payables, debits the others) first.
    QVector<LedgeRow> touching;
    for (const LedgeRow &r : rows)
        if (isNumber(r[LedgeCol::D_ACC_ID], acc) || isNumber(r[LedgeCol::C_ACC_ID], acc))
            touching.append(r);
    const Ledger::Page ledger = Ledger::compute(Value(acc), sideOf(acc), touching, forward);
    Page page;
    page.forward = forward;
    page.sumFirst = ledger.sumFirst;
    page.sumSecond = ledger.sumSecond;
    page.closing = ledger.closing;
    for (int i = 0; i < touching.size(); ++i) {
        const LedgeRow &r = touching[i];
        const Ledger::Line &from = ledger.lines[i];
        Line l;
        l.ledgeId = r[LedgeCol::LEDGE_ID];
        l.no = i + 1;
        l.account = lookUp(from.other);
        l.ctr = textOf(r[LedgeCol::CTR_NM]);
        l.notes = textOf(r[LedgeCol::NOTES]);
        l.first = from.first;
        l.second = from.second;
        l.balance = from.balance;
        page.lines.append(l);
    }
    return page;
}

qint32 GetNewLedgeID(const Value &fmrId, const QVector<LedgeRow> &rows)
{
    qint32 n = nextLedgeId(fmrId);
    for (const LedgeRow &r : rows) {
        const Value &id = r[LedgeCol::LEDGE_ID];
        if (hasValue(id) && IsNumeric(id) && n <= id.toLong())
            n = id.toLong() + 1;
    }
    return n;
}

bool carriesAmount(const QString &text)
{
    double d = 0;
    return parseNumber(text, d) && d > 0;
}

void applyEntry(LedgeRow &slip, int book, const SlipEntry &e)
{
    bool bookDebited;
    if (carriesAmount(e.left)) {
        slip[LedgeCol::AMT] = Value(e.left);
        bookDebited = book != Acc::Payable;
    } else if (carriesAmount(e.right)) {
        slip[LedgeCol::AMT] = Value(e.right);
        bookDebited = book == Acc::Payable;
    } else {
        return;
    }
    using namespace LedgeCol;
    if (bookDebited) {
        slip[D_ACC_ID] = Value(book);
        slip[C_ACC_ID] = e.otherAcc;
        slip[D_OPT_ID] = e.ownOptId;
        slip[C_OPT_ID] = e.otherOptId;
        slip[D_OPT_NM] = e.ownOptName;
        slip[C_OPT_NM] = e.otherOptName;
    } else {
        slip[D_ACC_ID] = e.otherAcc;
        slip[C_ACC_ID] = Value(book);
        slip[D_OPT_ID] = e.otherOptId;
        slip[C_OPT_ID] = e.ownOptId;
        slip[D_OPT_NM] = e.otherOptName;
        slip[C_OPT_NM] = e.ownOptName;
    }
}

SlipView viewOf(const LedgeRow &slip, int book)
{
    using namespace LedgeCol;
    SlipView v;
    v.bookDebited = isNumber(slip[D_ACC_ID], book);
    SlipEntry &e = v.entry;
    if (v.bookDebited) {
        e.otherAcc = slip[C_ACC_ID];
        e.otherOptId = slip[C_OPT_ID];
        e.ownOptId = slip[D_OPT_ID];
        e.otherOptName = slip[C_OPT_NM];
        e.ownOptName = slip[D_OPT_NM];
    } else {
        e.otherAcc = slip[D_ACC_ID];
        e.otherOptId = slip[D_OPT_ID];
        e.ownOptId = slip[D_OPT_ID];
        e.otherOptName = slip[D_OPT_NM];
        e.ownOptName = slip[C_OPT_NM];
    }
    const bool left = book == Acc::Payable ? isNumber(slip[C_ACC_ID], book) : isNumber(slip[D_ACC_ID], book);
    (left ? e.left : e.right) = textOf(slip[AMT]);
    return v;
}

int rowOfSlip(const QVector<LedgeRow> &rows, const Value &ledgeId)
{
    if (!hasValue(ledgeId) || !IsNumeric(ledgeId))
        return -1;
    for (int i = 0; i < rows.size(); ++i)
        if (isNumber(rows[i][LedgeCol::LEDGE_ID], ledgeId.toDouble()))
            return i;
    return -1;
}

LedgeRow slipToEdit(const QVector<LedgeRow> &rows, Mode mode, int row, const Value &fmrId, const Value &day, int book)
{
    LedgeRow slip = row >= 0 && row < rows.size() ? rows[row] : blankLedgeRow();
    if (mode == Mode::Add) {
        using namespace LedgeCol;
        slip[FMR_ID] = fmrId;
        slip[LEDGE_ID] = Value(GetNewLedgeID(fmrId, rows));
        slip[LEDGE_DATE] = day;
        for (int c : {CTR_NM, C_ACC_ID, D_OPT_ID, C_OPT_ID, D_OPT_NM, C_OPT_NM, AMT, NOTES, UDATE})
            slip[c] = Value::null();
        slip[D_ACC_ID] = Value(book);
    }
    return slip;
}

void putSlip(QVector<LedgeRow> &rows, const LedgeRow &slip, Mode mode, int row)
{
    if (mode == Mode::Add) {
        const Value first = rows.isEmpty() ? Value() : rows[0][LedgeCol::LEDGE_ID];
        if (rows.isEmpty() || (hasValue(first) && IsNumeric(first) && first.toDouble() > 0))
            rows.append(slip);
        else
            rows.last() = slip;
    } else if (mode == Mode::Change && row >= 0 && row < rows.size()) {
        rows[row] = slip;
    }
}

}
