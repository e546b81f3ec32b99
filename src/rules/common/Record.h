#pragma once
// The columns of a record type: which member of a plain struct of values
// holds which column of its table, written once, in the table's order:
//
//   const ColumnMap<PlantRow> &PlantRow::map()
//   {
//       static const ColumnMap<PlantRow> m{{"PLANT_ID", &PlantRow::PLANT_ID}, {"PLANT_NM", &PlantRow::PLANT_NM}, ...};
//       return m;
//   }
//
// and then a field by its column's name, the list of names, a record read
// from the current row of a record set, or columns written into a writer.
#include "base/AppError.h"
#include "base/Mode.h"
#include "base/Value.h"
#include "store/Database.h"
#include "store/Recordset.h"
#include "store/Stmt.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <QVector>

#include <initializer_list>
#include <utility>

template <class Row> class ColumnMap {
public:
    using Member = Value Row::*;

    ColumnMap(std::initializer_list<std::pair<const char *, Member>> columns)
    {
        for (const auto &c : columns) {
            const QString name = QString::fromLatin1(c.first);
            mNames << name;
            mMembers.insert(name, c.second);
        }
    }

    // All columns, in the table's order.
    const QStringList &names() const { return mNames; }

    // The field of a column by its name (any case); raises 3265 for a name
    // that is none.
    Value &of(Row &row, const QString &column) const { return row.*member(column); }
    const Value &of(const Row &row, const QString &column) const { return row.*member(column); }

    // The record of the current row: the columns named (all when none are),
    // each from the record set's field of that name.
    void read(const Recordset &rs, Row &row, const QStringList &columns = {}) const
    {
        for (const QString &c : columns.isEmpty() ? mNames : columns)
            of(row, c) = rs.Fields(c);
    }
    Row read(const Recordset &rs) const
    {
        Row row;
        read(rs, row);
        return row;
    }

    // Writes the columns named from the record into the writer's current row.
    void write(Recordset &rs, const Row &row, const QStringList &columns) const
    {
        for (const QString &c : columns)
            rs.SetField(c, of(row, c));
    }

private:
    Member member(const QString &column) const
    {
        const Member m = mMembers.value(column.toUpper(), nullptr);
        if (!m)
            raiseError(VbErr::ItemNotFound, column);
        return m;
    }

    QStringList mNames;
    QHash<QString, Member> mMembers;
};

// The save of one record through a writer opened on the row of its key, by
// the mode of the save:
//   if (!beginSave(*rs, mode, {{"FMR_ID", r.FMR_ID}, {"PLANT_ID", r.PLANT_ID}}))
//       return false;          // the row to change or delete is gone
//   ...write the columns...    // (only for Add and Change)
//   endSave(*rs, mode, computer);
// Add makes a new row with its key columns and the time it was made (IDATE);
// Change stamps the time of the change (UDATE); Change and Delete find no row
// and say so with false.
using KeyColumns = QVector<std::pair<QString, Value>>;
bool beginSave(Recordset &rs, Mode mode, const KeyColumns &keys);
// Add and Change: the computer's name as the last writer, the hold released,
// the row written. Delete: the row deleted.
void endSave(Recordset &rs, Mode mode, const QString &computer);

// The program's stamps of a row: when it was made and last changed, the
// computer that wrote it last, and the computer holding it.
const QStringList &stampColumns();

// ---------------------------------------------------------------- saving
//
// Each save the farmer starts is one transaction of the data database, and
// runs on a copy of its record: the copy, with the numbers and stamps the
// save gave it, replaces the record once the transaction has committed.
// After a failure the tables and the record are as they were before 登録,
// so that pressing it again saves afresh (numbers taken again).
//
//   return saveAsOne(r, [&](ShipRow &w) { ...steps on w...; return true; });
template <class Rec, class Steps> bool saveAsOne(Rec &record, Steps steps)
{
    Rec work = record;
    bool result = false;
    inTransaction(gDB.get(), [&] { result = steps(work); });
    record = std::move(work);
    return result;
}

// Two computers, one record. A save that changes or deletes a record checks
// that the row is still as its screen opened it, by the stamps read then.
// The first statement of the save's transaction claims the row with an
// UPDATE whose condition repeats those stamps: no row claimed means that
// another computer has saved it in between. The claim also holds the row
// until the transaction ends, so a second computer's save of the same row
// waits and then finds the stamps changed.
struct Stamps {
    Value IDATE, UDATE, LAST_TM;
};
template <class Row> Stamps stampsOf(const Row &r) { return {r.IDATE, r.UDATE, r.LAST_TM}; }

// Claims the row of the key in the data database when it carries the
// stamps (the computer's name too, unless byComputer is false). True when
// claimed; false when no row of the key is left; raises RecordChanged,
// naming the computer that wrote the row last, when its stamps differ.
bool claimRow(const QString &table, const Stmt &key, const Stamps &opened, bool byComputer = true);

// Raises the error of a record saved by another computer since it was
// opened; the computer's name when it is known.
[[noreturn]] void raiseRecordChanged(const Value &computer);

// The row of the key as the data database holds it now, read into the
// record (every column of its map); false when there is none.
template <class Row> bool rereadRow(Row &row, const QString &table, const Stmt &key)
{
    RecordsetPtr rs = gDB->GetFwdOnlyRst(Stmt("SELECT * FROM ? WHERE ?").name(table).part(key));
    if (rs->eof())
        return false;
    Row::map().read(*rs, row);
    return true;
}
