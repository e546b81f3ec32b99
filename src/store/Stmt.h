#pragma once
// A statement in the program's dialect with its values put in by what they
// are. The text is written whole, as the statement reads, with a ? where
// each value goes; the values follow in order:
//
//   Stmt("SELECT D_SHIP.* FROM D_SHIP WHERE D_SHIP.FMR_ID=? AND D_SHIP.SHIP_DATE=?")
//       .num(farmer).day(shipDate)
//
// gives  SELECT D_SHIP.* FROM D_SHIP WHERE D_SHIP.FMR_ID=1 AND D_SHIP.SHIP_DATE=#2026/05/10#
//
// This is the one way a value enters statement text: a number is only ever
// a number, a text is always quoted with its quotes doubled (a name like
// O'Neil is stored as typed and never ends the literal early), a date is
// always a date literal. A ? inside a quoted literal of the text itself is
// part of the literal. Pieces made the same way (the criteria of a list, a
// list of columns) go in with part(); names of tables and columns that the
// program itself chooses go in with name().
//
// The finished text goes to the store as it is (a Stmt converts to QString),
// where each engine's one translation point turns it into its own dialect.
// Using up fewer or more values than the text has ? is a fault of the
// program and raises an error. A cell that could not be read
// (Value::unreadable) raises its own error wherever it is put in.
#include "base/Currency.h"
#include "base/Value.h"

#include <QDateTime>
#include <QString>
#include <QVector>

class Stmt {
public:
    explicit Stmt(const QString &text);
    explicit Stmt(const char *text) : Stmt(QString::fromUtf8(text)) {}

    // A number where a condition compares one: a number as it is, the
    // leading number of a text ("12x" is 12, 第123号 is 0), 0 for an empty
    // value. So a column compared with a value that is no number finds
    // nothing instead of failing.
    Stmt &num(const Value &v);
    Stmt &num(qint64 n);
    Stmt &num(int n) { return num(qint64(n)); }
    // A number or NULL, for a column's value in INSERT and UPDATE: NULL for
    // an empty value, else as num().
    Stmt &numOrNull(const Value &v);
    // An amount as a plain number (four places at most).
    Stmt &amount(const Currency &c);
    // A day, as list conditions write it: #yyyy/mm/dd#. A value that is no
    // date raises the date error (3075) before any statement runs.
    Stmt &day(const Value &v);
    Stmt &day(const QDateTime &d);
    // A date and time, as keys and stamps write it: #yyyy-mm-dd hh:nn:ss#.
    Stmt &time(const Value &v);
    Stmt &time(const QDateTime &d);
    // time(), or NULL for an empty value.
    Stmt &timeOrNull(const Value &v);
    // A text literal: 'text', quotes inside doubled.
    Stmt &text(const QString &t);
    // text(), or NULL for an empty value or text.
    Stmt &textOrNull(const Value &v);
    // Numbers separated by commas, for IN (...): each as num().
    Stmt &ids(const QVector<Value> &values);
    // A piece made by another Stmt (criteria, a list of assignments).
    Stmt &part(const Stmt &piece);
    // The name of a table or column that the program itself chooses; only
    // letters, digits, '_' and '.' are taken (anything else raises).
    Stmt &name(const QString &identifier);

    // The finished statement; raises when a ? has no value.
    QString sql() const;
    operator QString() const { return sql(); }

    // Pieces joined by a separator (" AND ", ", "): one Stmt.
    static Stmt joined(const QVector<Stmt> &pieces, const QString &separator);

private:
    Stmt &put(const QString &piece);
    QString mText;  // done so far, values in
    QString mRest;  // still to come, with its ?
    int mOpen = 0;  // ? left in mRest
};
