#pragma once
// The masters kept one record at a time, found by their code: the farmers
// (M_FMR) and the shops (M_SHOP). A record type maps its columns
// (ColumnMap), names its key column (Key) and gives the statement of its row
// (select(code)); reading and saving go the same way for each:
//
//   FmrRecord r;
//   if (CodeMaster::read(code, r)) ...
//   CodeMaster::save(code, r, columns);
#include "base/Value.h"
#include "rules/common/Record.h"
#include "store/Recordset.h"
#include "store/Stmt.h"

#include <QStringList>

#include <functional>

namespace CodeMaster {

// The code as the key column takes it: a number as it is, the leading
// number of a text ("第123号" and an empty code are 0).
Value keyOf(const Value &code);

// Reads the row of the code: take() gets the record set on it. False when
// there is no row (take() is not called).
bool readRow(const Stmt &select, const std::function<void(const Recordset &)> &take);
// Writes the row of the code in one transaction of the master database: a
// missing row is added with the code as its key, then write() sets the
// columns. On an error nothing is written and the error is passed on.
void saveRow(const Stmt &select, const char *key, const Value &code, const std::function<void(Recordset &)> &write);

template <class Record> bool read(const Value &code, Record &record)
{
    return readRow(Record::select(code), [&](const Recordset &rs) { Record::map().read(rs, record); });
}

template <class Record> void save(const Value &code, const Record &record, const QStringList &columns)
{
    saveRow(Record::select(code), Record::Key, code, [&](Recordset &rs) { Record::map().write(rs, record, columns); });
}

} // namespace CodeMaster
