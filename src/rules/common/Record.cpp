#include "rules/common/Record.h"

namespace {

// A stamp as the claim's condition compares it: equal, or NULL when none
// was read.
Stmt stampTerm(const char *column, const Value &v, bool computer)
{
    if (!hasValue(v))
        return Stmt("? IS NULL").name(QString::fromLatin1(column));
    Stmt term("?=?");
    term.name(QString::fromLatin1(column));
    return computer ? term.text(v.toText()) : term.time(v);
}

} // namespace

const QStringList &stampColumns()
{
    static const QStringList columns{QStringLiteral("IDATE"), QStringLiteral("UDATE"), QStringLiteral("LAST_TM"),
                                     QStringLiteral("HOLD_TM")};
    return columns;
}

bool claimRow(const QString &table, const Stmt &key, const Stamps &opened, bool byComputer)
{
    QVector<Stmt> terms{key, stampTerm("IDATE", opened.IDATE, false), stampTerm("UDATE", opened.UDATE, false)};
    if (byComputer)
        terms << stampTerm("LAST_TM", opened.LAST_TM, true);
    qint64 claimed = 0;
    gDB->EXEC(Stmt("UPDATE ? SET LAST_TM=LAST_TM WHERE ?").name(table).part(Stmt::joined(terms, QStringLiteral(" AND "))),
              &claimed);
    if (claimed > 0)
        return true;
    RecordsetPtr rs = gDB->GetFwdOnlyRst(Stmt("SELECT LAST_TM FROM ? WHERE ?").name(table).part(key));
    if (rs->eof())
        return false;
    raiseRecordChanged(rs->Fields(0));
}

void raiseRecordChanged(const Value &computer)
{
    const QString name = textOf(computer);
    throw AppError(VbErr::RecordChanged,
                   name.isEmpty() ? QStringLiteral("この記録は他のコンピュータで変更されています。")
                                  : QStringLiteral("この記録は他のコンピュータ（%1）で変更されています。").arg(name));
}

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
