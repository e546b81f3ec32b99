#pragma once
// Probes for what a save leaves in the data database: the farm's records as
// text to compare before and after, what a save would leave without keeping
// it, statements counted or made to fail through the store's trace hook, and
// a second computer on the same data.

#include "store/Database.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace SaveProbe {

// The rows of the records a save may touch (diary days and lines, slips,
// shipments, lots, plantings), a line a row in key order: "TABLE|v|v|...".
// The times and the holds (IDATE, UDATE, HOLD_TM) are left out: they are of
// the moment, not of what was saved.
QStringList records();

// What the save would leave: the records after it ran inside a transaction
// that is then rolled back (the save's own transaction joins it).
QStringList recordsAfter(const std::function<void()> &save);

// The statements the work sends (each passes the trace hook first).
int statementsOf(const std::function<void()> &work);

// While it lives, the Nth statement from now fails, before it is sent, with
// an engine error.
class FailAt {
public:
    explicit FailAt(int n);
    ~FailAt();

private:
    int mLeft;
};

// A report of two record lists that differ: the rows only in each.
QString difference(const QStringList &expected, const QStringList &actual);

// SQLite's own check of the data file: "ok" when sound (and on the server,
// which keeps its files itself).
QString integrity();

}

// A second computer on the same data: a connection of its own to the data
// database, and a name of its own. act() runs work as that computer.
class OtherComputer {
public:
    explicit OtherComputer(const QString &name);
    ~OtherComputer();
    void act(const std::function<void()> &work);

private:
    std::unique_ptr<clsDb> mDb;
    QString mName;
};
