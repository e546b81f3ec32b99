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
#include "store/Recordset.h"

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
