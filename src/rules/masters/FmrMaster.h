#pragma once
// The farmer master (M_FMR): one farmer at a time, found by its code. The
// dialog's text fields stand in the order of the record's columns.
#include "base/Value.h"
#include "rules/common/Record.h"
#include "store/Stmt.h"

#include <QStringList>

struct FmrRecord {
    Value FMR_ID, FMR_NM, ADRS, TEL_NO_L, TEL_NO_S, NOTES, LOCATE, BANK_NM, BR_NM, ACC_KBN, ACC_NO, ACC_NM, FEE_1,
        FEE_2;
    static const ColumnMap<FmrRecord> &map();
    static constexpr const char *Key = "FMR_ID";
    static Stmt select(const Value &code);
};

namespace FmrMaster {
// The number of text fields of the dialog, the code (field 0) included.
constexpr int FieldCount = 14;
// The column behind a field.
QString column(int field);
// A farmer read by its code; false (the record as it was) when there is none.
bool read(const Value &code, FmrRecord &record);
// Writes the texts of the fields 1 to 13 under the code, an empty text as
// Null, each converted by its column; the row is made when missing. One
// transaction; an error is passed on with nothing written.
void save(const Value &code, const QStringList &fieldTexts);
}
