#pragma once
// The printed books: the trial balance (report 20) and the year's income
// statement (report 21) as pages of lines, drawn by the common print layer
// on the preview, a PDF file or the printer. The dialog makes the report of
// the farmer and period; the preview then draws its pages.

#include "rules/books/TrialBalance.h"
#include "rules/print/TablePages.h"

constexpr int kTrialBalanceReport = 20;
constexpr int kIncomeReport = 21;

namespace BookReports {

// The pages of a trial balance: by kind, each account with a balance or a
// movement and the kind's subtotal; the debit and credit totals, and a
// mark when they do not agree; the faulty slips; a line that says so when
// the period has no slips.
TablePages::Document trialBalancePages(const TrialBalance::Sheet &sheet, const QString &farmer);
// The pages of an income statement: 収入金額 and 経費 by account with their
// totals, and 差引金額.
TablePages::Document incomePages(const TrialBalance::Income &income, const QString &farmer);

// Makes the report of the farmer (named by M_FMR) the one its report id
// draws, and returns the number of its pages.
int prepareTrialBalance(const Value &fmrId, const QDate &from, const QDate &to);
int prepareIncome(const Value &fmrId, int year);
// The report made last for the id (empty when none).
const TablePages::Document &current(int repId);

// Makes both reports the drawing of their ids.
void registerReports();

} // namespace BookReports
