#include "rules/common/Record.h"

bool beginSave(Recordset &rs, Mode mode, const KeyColumns &keys)
{
    if (mode == Mode::Add) {
        rs.AddNew();
        for (const auto &k : keys)
            rs.SetField(k.first, k.second);
        rs.SetField(QStringLiteral("IDATE"), Value(DateUtil::now()));
        return true;
    }
    if (rs.eof())
        return false;
    if (mode == Mode::Change)
        rs.SetField(QStringLiteral("UDATE"), Value(DateUtil::now()));
    return true;
}

void endSave(Recordset &rs, Mode mode, const QString &computer)
{
    if (mode == Mode::Delete) {
        rs.Delete();
        return;
    }
    if (mode != Mode::Add && mode != Mode::Change)
        return;
    rs.SetField(QStringLiteral("LAST_TM"), Value(computer));
    rs.SetField(QStringLiteral("HOLD_TM"), Value::null());
    rs.Update();
}
