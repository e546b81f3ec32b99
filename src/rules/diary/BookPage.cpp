#include "rules/diary/BookPage.h"

#include "store/Database.h"

#include <cmath>

namespace BookPage {


Headings headingsFor(int acc)
{
    switch (acc) {
    case 1000: return {QStringLiteral("入金"), QStringLiteral("出金")};
    case 1040: return {QStringLiteral("発生"), QStringLiteral("回収")};
    case 2000: return {QStringLiteral("発生"), QStringLiteral("支払")};
    default: break;
    }
    if (acc < 1041)
        return {QStringLiteral("預入"), QStringLiteral("払出")};
    return {QString(), QString(), false};
}

Currency broughtForward(const Value &fmrId, const QDateTime &day, int acc)
{
    const QString cond = QStringLiteral(" FMR_ID=") + Nz(fmrId, Value(0)).toText() + QStringLiteral(" AND LEDGE_DATE<#") +
                         DateUtil::sqlText(day) + QStringLiteral("#");
    const Currency d = Nz(gDB->DSUM(QStringLiteral("AMT"), QStringLiteral("D_LEDGE"),
                                    cond + QStringLiteral(" AND D_ACC_ID=") + QString::number(acc)),
                          Value(0))
                           .toCurrency();
    const Currency c = Nz(gDB->DSUM(QStringLiteral("AMT"), QStringLiteral("D_LEDGE"),
                                    cond + QStringLiteral(" AND C_ACC_ID=") + QString::number(acc)),
                          Value(0))
                           .toCurrency();
    return acc == 2000 ? c - d : d - c;
}

Page compute(int acc, const QVector<LedgeRow> &rows, Currency forward,
             const std::function<QString(const Value &)> &lookUp)
{
    Page page;
    page.forward = forward;
    Currency balance = forward;
    int no = 0;
    for (const LedgeRow &r : rows) {
        const bool debit = isNumber(r[LedgeCol::D_ACC_ID], acc);
        const bool credit = isNumber(r[LedgeCol::C_ACC_ID], acc);
        if (!debit && !credit)
            continue;
        Line l;
        l.ledgeId = r[LedgeCol::LEDGE_ID];
        l.no = ++no;
        l.account = lookUp(debit ? r[LedgeCol::C_ACC_ID] : r[LedgeCol::D_ACC_ID]);
        l.ctr = Nz(r[LedgeCol::CTR_NM], Value(QString())).toText();
        l.notes = Nz(r[LedgeCol::NOTES], Value(QString())).toText();
        const Value amtV = r[LedgeCol::AMT];
        const Currency amt = (!hasValue(amtV)) ? Currency() : amtV.toCurrency();
        // The credited book takes the amount in its second column; the
        // payables the other way round.
        const bool second = acc == 2000 ? !credit : credit;
        (second ? l.second : l.first) = amt;
        balance = balance + l.first - l.second;
        l.balance = balance;
        page.sumFirst += l.first;
        page.sumSecond += l.second;
        page.lines.append(l);
    }
    page.closing = balance;
    return page;
}

qint32 newSlipId(const Value &fmrId, const QVector<LedgeRow> &rows)
{
    qint32 n = Nz(gDB->DMax(QStringLiteral("LEDGE_ID"), QStringLiteral("D_LEDGE"),
                            QStringLiteral("FMR_ID=") + Nz(fmrId, Value(0)).toText()),
                  Value(0))
                   .toLong() +
               1;
    for (const LedgeRow &r : rows) {
        const Value &id = r[LedgeCol::LEDGE_ID];
        if (hasValue(id) && IsNumeric(id) && n <= id.toLong())
            n = id.toLong() + 1;
    }
    return n;
}

namespace {
double amountOf(const QString &text)
{
    double d = 0;
    return parseNumber(text, d) ? d : 0;
}
}

void applyEntry(LedgeRow &slip, int book, const SlipEntry &e)
{
    bool bookDebited;
    if (amountOf(e.left) > 0) {
        slip[LedgeCol::AMT] = Value(e.left);
        bookDebited = book != 2000;
    } else if (amountOf(e.right) > 0) {
        slip[LedgeCol::AMT] = Value(e.right);
        bookDebited = book == 2000;
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

QString amountText(Currency c)
{
    // rounded half away from zero to a whole amount
    const double v = c.toDouble();
    const long long whole = (long long)(v < 0 ? -std::floor(-v + 0.5) : std::floor(v + 0.5));
    QString digits = QString::number(whole < 0 ? -whole : whole);
    for (int i = digits.size() - 3; i > 0; i -= 3)
        digits.insert(i, QLatin1Char(','));
    return whole < 0 ? QLatin1Char('-') + digits : digits;
}

}
