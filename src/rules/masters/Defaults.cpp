#include "rules/masters/Defaults.h"

#include "base/AppError.h"
#include "store/Database.h"
#include "store/Stmt.h"

namespace Defaults {

qint16 useType()
{
    const Value v = gINI->GetCtrl(QStringLiteral("USE_TYPE"));
    if (!hasValue(v))
        raiseError(VbErr::InvalidNull);
    return v.toInt();
}

Check check(const Value &setting, const char *table, const char *criteria, Value &id)
{
    id = hasValue(setting) ? setting : Value(0);
    if (!IsNumeric(id) || id.toDouble() == 0)
        return Check::NotSet;
    const QString domain = QString::fromLatin1(table);
    if (gMST->DCount(QStringLiteral("*"), domain, QString()).toLong() == 0)
        return Check::NoRows;
    if (gMST->DCount(QStringLiteral("*"), domain, Stmt(criteria).num(id)).toLong() == 0)
        return Check::Missing;
    return Check::Passed;
}

}
