#pragma once
// The farmer's slips as a plain-text accounting journal, for the tools that
// read one (hledger, ledger):
//
//   commodity ¥1,000.
//   account 資産    ; type: A
//   account 資産:現金
//   ...
//   2024-05-02 (123) 道の駅 | 出荷 トマト
//       資産:売掛金     ¥12,345
//       収益:売上      ¥-12,345
//
// One transaction a slip in the order of date and number, with the
// counterparty and the note as its description and the slip's number as its
// code; the debit account takes the amount, the credit account gives it.
// Account names are those of the chart under their kind. The trailing period
// of the commodity tells the readers that the comma groups thousands.
//
// With a first day, what came before it is one opening transaction on that
// day: the balances the trial balance brings in, and the earlier years'
// result, so that each account's balance in the journal equals its balance
// in the trial balance that starts that day.
//
// A slip without an account (or with one the chart does not have) takes
// 未確定:科目なし for it, so that the transaction still balances; a slip
// without an amount is written with ¥0; a slip without a date can't be a
// transaction and is written as a comment. Each of them is counted as faulty.

#include "rules/books/TrialBalance.h"

#include <QDate>
#include <QString>
#include <QVector>

class QIODevice;

namespace Journal {

struct Written {
    int transactions = 0; // the opening one included
    QVector<TrialBalance::Fault> faults;
};

// Writes the farmer's slips from the first to the last day (a null date: no
// limit) as UTF-8 text. Raises the store's errors; the device's errors are
// the caller's to see.
Written write(QIODevice &out, const Value &fmrId, const QDate &from, const QDate &to);

// write() into a file, which stands under its name only when complete;
// returns the message that says why it could not be written, "" when it is.
QString writeFile(const QString &path, const Value &fmrId, const QDate &from, const QDate &to, Written &written);
// The name offered for the file: "仕訳帳_<farmer>_yyyymm-yyyymm.journal".
QString fileName(const Value &fmrId, const QDate &from, const QDate &to);

// An amount as the journal writes it: "¥12,345", "¥-1,000", "¥0.5".
QString yen(Currency amount);
// The journal's name of an account: its kind and its chart name.
QString accountName(TrialBalance::Kind kind, const QString &name);
// The name that a slip's missing account takes.
QString unsettledName();

} // namespace Journal
