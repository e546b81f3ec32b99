#include "rules/masters/FmrMaster.h"

#include "rules/masters/CodeMaster.h"

const ColumnMap<FmrRecord> &FmrRecord::map()
{
    static const ColumnMap<FmrRecord> m{
        {"FMR_ID", &FmrRecord::FMR_ID},     {"FMR_NM", &FmrRecord::FMR_NM},   {"ADRS", &FmrRecord::ADRS},
        {"TEL_NO_L", &FmrRecord::TEL_NO_L}, {"TEL_NO_S", &FmrRecord::TEL_NO_S}, {"NOTES", &FmrRecord::NOTES},
        {"LOCATE", &FmrRecord::LOCATE},     {"BANK_NM", &FmrRecord::BANK_NM}, {"BR_NM", &FmrRecord::BR_NM},
        {"ACC_KBN", &FmrRecord::ACC_KBN},   {"ACC_NO", &FmrRecord::ACC_NO},   {"ACC_NM", &FmrRecord::ACC_NM},
        {"FEE_1", &FmrRecord::FEE_1},       {"FEE_2", &FmrRecord::FEE_2}};
    return m;
}

Stmt FmrRecord::select(const Value &code) { return Stmt("SELECT M_FMR.* FROM M_FMR WHERE FMR_ID=?").num(code); }

namespace FmrMaster {

QString column(int field) { return FmrRecord::map().names().value(field); }

bool read(const Value &code, FmrRecord &record) { return CodeMaster::read(code, record); }

void save(const Value &code, const QStringList &fieldTexts)
{
    FmrRecord r;
    QStringList columns;
    for (int i = 1; i < FieldCount; ++i) {
        columns << column(i);
        FmrRecord::map().of(r, column(i)) = textOrNull(fieldTexts.value(i));
    }
    CodeMaster::save(code, r, columns);
}

} // namespace FmrMaster
