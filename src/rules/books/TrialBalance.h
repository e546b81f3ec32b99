#pragma once
// The farmer's books over a period, account by account: the trial balance
// (the balance brought in, the debits and credits of the period and the
// balance at its end) and, from it, the year's income statement.
//
// The balance brought in follows the account ledger: an account whose
// PG_KBN is 1 carries everything before the period, any other account only
// what lies between 1 January of the first month's year and the period. What
// the earlier years earned is so left out of the income and expense accounts;
// it stands as a line of its own under 資本, so that the balances brought in
// still agree. Unlike the ledger, only the farmer's own slips count.
//
// A slip without a date, an account that the chart has, or an amount is
// listed as faulty: its amount counts on the side that has an account, so
// the debit and credit totals show the book out of balance.

#include "base/Currency.h"
#include "base/Globals.h"
#include "base/Value.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <QVector>

// The months the dialog opens with: January of this year, and this month,
// each as "yyyy/mm".
QStringList accRepMonths(const QDate &today);

namespace TrialBalance {

enum class Kind { Asset, Liability, Equity, Income, Expense };
constexpr int kKinds = 5;
// 資産, 負債, 資本, 収益, 費用.
QString kindName(Kind kind);
// The kind of an account of the chart: an account carried over the years is
// an asset on the debit side, a liability on the credit side, or capital in
// the 3000s; an account that starts again each year is income on the credit
// side and an expense on the debit side.
Kind kindOf(qint32 accId, const Value &dcKbn, const Value &pgKbn);
// Assets and expenses have their balance on the debit side.
bool debitKind(Kind kind);

// An account of the chart (L_ACC).
struct Account {
    qint32 id = 0;
    QString name;
    Value dcKbn, pgKbn;
    Kind kind = Kind::Asset;
};
// The chart in the order of its numbers.
QVector<Account> chart();

// The line under 資本 for what the years before the period's earned.
QString earlierYearsName();

struct Line {
    qint32 accId = 0; // 0 for the earlier years' result
    QString name;
    Kind kind = Kind::Asset;
    bool creditSide = false; // the balance is on the credit side
    Currency opening, debit, credit, closing;
    // Something to show: a balance or a movement.
    bool active() const;
};

struct Fault {
    LedgeRow row;
    QString reason; // "借方科目なし", "金額なし" ...
};

struct Totals {
    Currency opening, debit, credit, closing;
};

struct Sheet {
    QDate from, to;
    QVector<Line> lines; // every account of the chart by kind, in the chart's order
    QVector<Fault> faults;
    int slips = 0; // the slips dated in the period

    Totals kindTotals(Kind kind) const;
    // The debit-side kinds (assets, expenses) and the credit-side ones: their
    // balances brought in and at the end, and the debits and credits of all.
    Totals debitSide() const;
    Totals creditSide() const;
    // The debits and credits agree, and so do both sides' balances.
    bool balanced() const;
};

// The trial balance of the farmer from the first to the last day (each
// included). Raises the store's errors.
Sheet compute(const Value &fmrId, const QDate &from, const QDate &to);

// The first and last day of the months as typed into the dialog ("2024/5",
// "２０２４/０５", "2024年5月"), or the message that refuses them.
struct Period {
    QDate from, to;
    QString error; // "" when the months are taken
};
Period monthsPeriod(const QString &firstMonth, const QString &lastMonth);
// The period as the reports head it: "2024年1月～2024年12月".
QString periodText(const QDate &from, const QDate &to);

// What the report says of a faulty slip: date, number and what is missing.
QString faultText(const Fault &fault);

// The income statement of a calendar year: the income accounts with 収入金額,
// the expense accounts with 経費, and 差引金額, from that year's trial
// balance.
struct Income {
    int year = 0;
    QVector<Line> income, expenses; // every account of the kind, in the chart's order
    Currency incomeTotal, expenseTotal, result;
    QVector<Fault> faults;
    int slips = 0;
};
Income incomeStatement(const Value &fmrId, int year);
// The year the dialog offers for the income statement: the last one until
// the returns are in (January to March), then this one.
int incomeYear(const QDate &today);
// A year as typed ("2024", "２０２４"); 0 when it is none (1000 to 9999).
int yearOf(const QString &typed);

} // namespace TrialBalance
