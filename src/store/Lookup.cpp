#include "store/Lookup.h"

#include "store/Database.h"
#include "base/AppError.h"
#include "store/Stmt.h"

namespace {

// The name of the first row of the statement for a whole-number id (Null
// counts 0, text that is no number raises the type error); "" when none.
QString nameById(DbObject *db, const char *sql, const Value &id)
{
    const qint32 key = id.isNull() ? 0 : id.toLong();
    if (!db)
        raiseError(91, QStringLiteral("オブジェクト変数が設定されていません。"));
    RecordsetPtr rs = db->GetFwdOnlyRst(Stmt(sql).num(key));
    if (rs->eof())
        return QString();
    return Nz(rs->Fields(0), Value(QString())).toText();
}


} // namespace

QString GetKbn15Nm(const Value &id)
{
    return nameById(gWORK.get(), "SELECT L_KBN.NM FROM L_KBN WHERE L_KBN.KBN=15 AND L_KBN.ID=?", id);
}

QString GetAccNm(const Value &id)
{
    return nameById(gWORK.get(), "SELECT L_ACC.ACC_NM FROM L_ACC WHERE L_ACC.ACC_ID=?", id);
}

QString GetFmrNm(const Value &id)
{
    return nameById(gMST.get(), "SELECT M_FMR.FMR_NM FROM M_FMR WHERE M_FMR.FMR_ID=?", id);
}

QString GetShopNm(const Value &id)
{
    return nameById(gMST.get(), "SELECT M_SHOP.SHOP_NM FROM M_SHOP WHERE M_SHOP.SHOP_ID=?", id);
}

QString GetChemiUnitNm(const Value &id)
{
    return nameById(gWORK.get(), "SELECT  L_CHEMI_UNIT.NM  FROM L_CHEMI_UNIT  WHERE ID=?", id);
}

