#include "rules/common/Lists.h"

#include "store/Database.h"
#include "store/Recordset.h"

Choices readChoices(DbObject *db, const QString &sql)
{
    Choices out;
    RecordsetPtr rs = db->GetFwdOnlyRst(sql);
    for (; !rs->eof(); rs->MoveNext())
        out.append({rs->Fields(0), textOf(rs->Fields(1))});
    rs->Close();
    return out;
}

Choices readChoices(DbObject *db, const QString &sql, const QString &keyColumn, const QString &textColumn)
{
    Choices out;
    RecordsetPtr rs = db->GetFwdOnlyRst(sql);
    for (; !rs->eof(); rs->MoveNext())
        out.append({rs->Fields(keyColumn), textOf(rs->Fields(textColumn))});
    rs->Close();
    return out;
}
