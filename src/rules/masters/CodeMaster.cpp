#include "rules/masters/CodeMaster.h"

#include "store/Database.h"

namespace CodeMaster {

Value keyOf(const Value &code)
{
    if (!hasValue(code))
        return Value(0);
    return Value(IsNumeric(code) ? code.toDouble() : leadingNumber(code.toText()));
}

bool readRow(const Stmt &select, const std::function<void(const Recordset &)> &take)
{
    RecordsetPtr rs = gMST->GetFwdOnlyRst(select);
    if (rs->eof())
        return false;
    take(*rs);
    rs->Close();
    return true;
}

void saveRow(const Stmt &select, const char *key, const Value &code, const std::function<void(Recordset &)> &write)
{
    inTransaction(gMST.get(), [&] {
        RecordsetPtr rs = gMST->GetDynamicRst(select);
        if (rs->eof()) {
            rs->AddNew();
            rs->SetField(QString::fromLatin1(key), keyOf(code));
        }
        write(*rs);
        rs->Update();
        rs->Close();
    });
}

} // namespace CodeMaster
