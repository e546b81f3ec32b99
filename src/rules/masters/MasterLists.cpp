#include "rules/masters/MasterLists.h"

#include "store/Database.h"

namespace MasterLists {

namespace {

Choices read(const QString &sql, const char *name, const char *code)
{
    Choices out;
    RecordsetPtr rs = gMST->GetFwdOnlyRst(sql);
    for (; !rs->eof(); rs->MoveNext())
        out.append({Nz(rs->Fields(QString::fromLatin1(code)), Value(0)), textOf(rs->Fields(QString::fromLatin1(name)))});
    rs->Close();
    return out;
}

} // namespace

Choices farmers()
{
    return read(QStringLiteral("SELECT  M_FMR.FMR_ID,  M_FMR.FMR_NM  FROM M_FMR  WHERE CHK_FLG<>0 ORDER BY FMR_ID"),
                "FMR_NM", "FMR_ID");
}

Choices shops()
{
    return read(QStringLiteral(
                    "SELECT  M_SHOP.SHOP_ID,  M_SHOP.SHOP_NM  FROM M_SHOP  WHERE CHK_FLG<>0 ORDER BY M_SHOP.SHOP_ID"),
                "SHOP_NM", "SHOP_ID");
}

}
