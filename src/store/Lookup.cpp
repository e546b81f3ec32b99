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

qint32 wholeId(const Value &v) { return v.isNull() ? 0 : v.toLong(); }

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

qint32 GetNewLedgeId(const Value &fmrId)
{
    const Value max = gDB->DMax(QStringLiteral("LEDGE_ID"), QStringLiteral("D_LEDGE"), Stmt("FMR_ID=?").num(fmrId));
    return Nz(max, Value(0)).toLong() + 1;
}

int ChkLedgeUse(const Value &fmrId, const Value &ledgeId)
{
    const qint32 farmer = wholeId(fmrId), slip = wholeId(ledgeId);
    auto used = [&](const char *table, const char *column) {
        return gDB->DCount(QStringLiteral("*"), QString::fromLatin1(table),
                           Stmt("FMR_ID=? AND ?=?").num(farmer).name(QString::fromLatin1(column)).num(slip))
                   .toLong() != 0;
    };
    if (used("D_DIARY_DTL", "LEDGE_ID"))
        return 1;
    if (used("D_CHEMI", "LEDGE_ID"))
        return 2;
    if (used("D_SHIP", "LEDGE_ID_S") || used("D_SHIP", "LEDGE_ID_F"))
        return 3;
    return 0;
}

QString ledgeLockMessage(int owner, bool deleting)
{
    const char *where = nullptr;
    switch (owner) {
    case 1: where = "日誌詳細"; break;
    case 2: where = "農薬入力"; break;
    case 3: where = "出荷入力"; break;
    default: return QString();
    }
    return deleting ? QStringLiteral("この伝票は削除できません。%1から削除してください。").arg(QString::fromUtf8(where))
                    : QStringLiteral("この伝票は修正できません。%1から修正してください。").arg(QString::fromUtf8(where));
}
