#include "rules/books/TrialBalance.h"

#include "rules/books/Ledger.h"
#include "store/Database.h"
#include "store/Recordset.h"
#include "store/Stmt.h"

#include <QHash>

#include <algorithm>

QStringList accRepMonths(const QDate &today)
{
    return {QString::number(today.year()) + QStringLiteral("/01"), today.toString(QStringLiteral("yyyy/MM"))};
}

namespace TrialBalance {

namespace {

// Capital is kept in the 3000s of the chart.
constexpr qint32 kCapitalFirst = 3000, kCapitalLast = 3999;

qint64 idOf(const Value &v) { return hasValue(v) && IsNumeric(v) ? qint64(v.toDouble()) : 0; }

Currency amountOf(const Value &v) { return hasValue(v) && IsNumeric(v) ? v.toCurrency() : Currency(); }

// The sums of AMT by the account on one side, under the criteria.
using Sums = QHash<qint64, Currency>;
Sums sumsBySide(const char *column, const Stmt &criteria)
{
    Sums out;
    const QString side = QStringLiteral("D_LEDGE.") + QString::fromLatin1(column);
    RecordsetPtr rs = gDB->GetFwdOnlyRst(
        Stmt("SELECT ?, SUM(D_LEDGE.AMT) FROM D_LEDGE WHERE ? GROUP BY ?").name(side).part(criteria).name(side));
    for (; !rs->eof(); rs->MoveNext())
        out[idOf(rs->Fields(0))] += amountOf(rs->Fields(1));
    rs->Close();
    return out;
}

struct SideSums {
    Sums debit, credit;
};
SideSums sideSums(const Stmt &criteria) { return {sumsBySide("D_ACC_ID", criteria), sumsBySide("C_ACC_ID", criteria)}; }

QString reasonOf(const LedgeRow &r, const QHash<qint64, bool> &known)
{
    QStringList why;
    if (!hasValue(r[LedgeCol::LEDGE_DATE]))
        why << QStringLiteral("日付なし");
    auto side = [&](int column, const QString &name) {
        const qint64 id = idOf(r[column]);
        if (id == 0)
            why << name + QStringLiteral("科目なし");
        else if (!known.contains(id))
            why << QStringLiteral("%1科目 %2 は未登録").arg(name).arg(id);
    };
    side(LedgeCol::D_ACC_ID, QStringLiteral("借方"));
    side(LedgeCol::C_ACC_ID, QStringLiteral("貸方"));
    if (!hasValue(r[LedgeCol::AMT]))
        why << QStringLiteral("金額なし");
    return why.join(QStringLiteral("・"));
}

// The slips up to the last day, and those without a date, that miss a date,
// an account of the chart or an amount.
QVector<Fault> faults(const Value &fmrId, const QDate &to, const QVector<Account> &accounts)
{
    QHash<qint64, bool> known;
    QVector<Value> ids;
    for (const Account &a : accounts) {
        known.insert(a.id, true);
        ids << Value(a.id);
    }
    if (ids.isEmpty())
        ids << Value(0);
    const Stmt sql =
        Stmt("SELECT D_LEDGE.* FROM D_LEDGE WHERE D_LEDGE.FMR_ID=? AND (D_LEDGE.LEDGE_DATE IS NULL OR "
             "D_LEDGE.LEDGE_DATE<=?) AND (D_LEDGE.LEDGE_DATE IS NULL OR D_LEDGE.AMT IS NULL OR D_LEDGE.D_ACC_ID IS NULL "
             "OR D_LEDGE.C_ACC_ID IS NULL OR D_LEDGE.D_ACC_ID NOT IN (?) OR D_LEDGE.C_ACC_ID NOT IN (?)) ORDER BY "
             "D_LEDGE.LEDGE_DATE, D_LEDGE.LEDGE_ID")
            .num(fmrId)
            .day(DateUtil::fromDate(to))
            .ids(ids)
            .ids(ids);
    QVector<Fault> out;
    RecordsetPtr rs = gDB->GetFwdOnlyRst(sql);
    for (; !rs->eof(); rs->MoveNext()) {
        const LedgeRow row = Ledger::rowOf(*rs);
        out.append({row, reasonOf(row, known)});
    }
    rs->Close();
    return out;
}

QString dayText(const QDate &d) { return d.toString(QStringLiteral("yyyy/MM/dd")); }

bool readMonth(const QString &typed, QDate &first)
{
    QString t = narrowAscii(typed).trimmed();
    if (t.endsWith(QStringLiteral("月")) && t.contains(QStringLiteral("年")))
        t += QStringLiteral("1日");
    else if (t.count(QLatin1Char('/')) == 1)
        t += QStringLiteral("/01");
    else
        return false;
    QDateTime d;
    if (!DateUtil::parseStorable(t, d))
        return false;
    first = d.date();
    return true;
}

} // namespace

QString kindName(Kind kind)
{
    switch (kind) {
    case Kind::Asset: return QStringLiteral("資産");
    case Kind::Liability: return QStringLiteral("負債");
    case Kind::Equity: return QStringLiteral("資本");
    case Kind::Income: return QStringLiteral("収益");
    case Kind::Expense: return QStringLiteral("費用");
    }
    return QString();
}

Kind kindOf(qint32 accId, const Value &dcKbn, const Value &pgKbn)
{
    const bool credit = Ledger::creditNormal(dcKbn);
    if (!Ledger::carriedOver(pgKbn))
        return credit ? Kind::Income : Kind::Expense;
    if (!credit)
        return Kind::Asset;
    return accId >= kCapitalFirst && accId <= kCapitalLast ? Kind::Equity : Kind::Liability;
}

bool debitKind(Kind kind) { return kind == Kind::Asset || kind == Kind::Expense; }

QVector<Account> chart()
{
    QVector<Account> out;
    RecordsetPtr rs = gWORK->GetFwdOnlyRst(
        Stmt("SELECT L_ACC.ACC_ID, L_ACC.ACC_NM, L_ACC.DC_KBN, L_ACC.PG_KBN FROM L_ACC ORDER BY ACC_ID"));
    for (; !rs->eof(); rs->MoveNext()) {
        Account a{qint32(idOf(rs->Fields(0))), textOf(rs->Fields(1)), rs->Fields(2), rs->Fields(3)};
        a.kind = kindOf(a.id, a.dcKbn, a.pgKbn);
        out.append(a);
    }
    rs->Close();
    return out;
}

QString earlierYearsName() { return QStringLiteral("前年までの損益"); }

bool Line::active() const
{
    const Currency zero;
    return opening != zero || debit != zero || credit != zero || closing != zero;
}

Totals Sheet::kindTotals(Kind kind) const
{
    Totals t;
    for (const Line &l : lines)
        if (l.kind == kind) {
            t.opening += l.opening;
            t.debit += l.debit;
            t.credit += l.credit;
            t.closing += l.closing;
        }
    return t;
}

namespace {
Totals sideTotals(const Sheet &s, bool debitSide)
{
    Totals t;
    for (const Line &l : s.lines) {
        t.debit += l.debit;
        t.credit += l.credit;
        if (debitKind(l.kind) == debitSide) {
            t.opening += l.opening;
            t.closing += l.closing;
        }
    }
    return t;
}
} // namespace

Totals Sheet::debitSide() const { return sideTotals(*this, true); }
Totals Sheet::creditSide() const { return sideTotals(*this, false); }

bool Sheet::balanced() const
{
    const Totals d = debitSide(), c = creditSide();
    return d.debit == d.credit && d.opening == c.opening && d.closing == c.closing;
}

Sheet compute(const Value &fmrId, const QDate &from, const QDate &to)
{
    Sheet sheet;
    sheet.from = from;
    sheet.to = to;
    Ledger::Filter f;
    f.fmrId = fmrId;
    f.from = dayText(from);
    f.to = dayText(to);
    f.year = QString::number(from.year());
    const Stmt farmer = Stmt(" D_LEDGE.FMR_ID=?").num(fmrId);
    // The balance brought in by the ledger's own criteria for the account's
    // kind, read once for each set of criteria, of this farmer alone.
    QHash<QString, SideSums> before;
    auto broughtIn = [&](const Value &pgKbn) -> const SideSums & {
        const Stmt criteria = Stmt("? AND ?").part(Ledger::openingCriteria(f, pgKbn)).part(farmer);
        auto it = before.find(criteria.sql());
        if (it == before.end())
            it = before.insert(criteria.sql(), sideSums(criteria));
        return it.value();
    };
    const SideSums &everything = broughtIn(Value(Ledger::kCarriedOver));
    const SideSums period = sideSums(Ledger::listCriteria(f));
    const QVector<Account> accounts = chart();
    Currency earlier; // on the credit side
    for (const Account &a : accounts) {
        const SideSums &own = broughtIn(a.pgKbn);
        Line l;
        l.accId = a.id;
        l.name = a.name;
        l.kind = a.kind;
        l.creditSide = Ledger::creditNormal(a.dcKbn);
        l.opening = Ledger::sideBalance(a.dcKbn, own.debit.value(a.id), own.credit.value(a.id));
        l.debit = period.debit.value(a.id);
        l.credit = period.credit.value(a.id);
        l.closing = l.opening + Ledger::sideBalance(a.dcKbn, l.debit, l.credit);
        // What the account's own criteria leave out of all that came before.
        earlier += (everything.credit.value(a.id) - own.credit.value(a.id)) -
                   (everything.debit.value(a.id) - own.debit.value(a.id));
        sheet.lines.append(l);
    }
    if (earlier != Currency()) {
        Line l;
        l.name = earlierYearsName();
        l.kind = Kind::Equity;
        l.creditSide = true;
        l.opening = l.closing = earlier;
        sheet.lines.append(l);
    }
    std::stable_sort(sheet.lines.begin(), sheet.lines.end(),
                     [](const Line &a, const Line &b) { return int(a.kind) < int(b.kind); });
    sheet.faults = faults(fmrId, to, accounts);
    sheet.slips = int(gDB->DCount(QStringLiteral("*"), QStringLiteral("D_LEDGE"), Ledger::listCriteria(f)).toLong());
    return sheet;
}

Period monthsPeriod(const QString &firstMonth, const QString &lastMonth)
{
    Period p;
    QDate first, last;
    if (firstMonth.trimmed().isEmpty() || lastMonth.trimmed().isEmpty())
        p.error = QStringLiteral("年月を入力してください。");
    else if (!readMonth(firstMonth, first) || !readMonth(lastMonth, last))
        p.error = QStringLiteral("年月を正しく入力してください。");
    else if (last < first)
        p.error = QStringLiteral("終わりの年月が始めの年月より前です。");
    else {
        p.from = first;
        p.to = last.addMonths(1).addDays(-1);
    }
    return p;
}

QString periodText(const QDate &from, const QDate &to)
{
    const QString f = QStringLiteral("%1年%2月").arg(from.year()).arg(from.month());
    const QString t = QStringLiteral("%1年%2月").arg(to.year()).arg(to.month());
    return f == t ? f : f + QStringLiteral("～") + t;
}

QString faultText(const Fault &fault)
{
    const QString day = Ledger::dateText(fault.row[LedgeCol::LEDGE_DATE]);
    return QStringLiteral("%1 伝票%2 %3 %4")
        .arg(day.isEmpty() ? QStringLiteral("----/--/--") : day, textOf(fault.row[LedgeCol::LEDGE_ID]),
             Ledger::amountText(fault.row[LedgeCol::AMT]), fault.reason)
        .simplified();
}

Income incomeStatement(const Value &fmrId, int year)
{
    const Sheet sheet = compute(fmrId, QDate(year, 1, 1), QDate(year, 12, 31));
    Income out;
    out.year = year;
    out.faults = sheet.faults;
    out.slips = sheet.slips;
    for (const Line &l : sheet.lines) {
        if (l.kind == Kind::Income) {
            out.income.append(l);
            out.incomeTotal += l.closing;
        } else if (l.kind == Kind::Expense) {
            out.expenses.append(l);
            out.expenseTotal += l.closing;
        }
    }
    out.result = out.incomeTotal - out.expenseTotal;
    return out;
}

int incomeYear(const QDate &today) { return today.month() <= 3 ? today.year() - 1 : today.year(); }

int yearOf(const QString &typed)
{
    const QString t = narrowAscii(typed).trimmed();
    bool ok = false;
    const int year = t.size() == 4 ? t.toInt(&ok) : 0;
    return ok && year >= 1000 ? year : 0;
}

} // namespace TrialBalance
