#include "store/Lookup.h"

#include "store/Database.h"
#include "base/AppError.h"
#include "base/Msg.h"

namespace {

QString nameById(DbObject *db, const QString &sql, const Value &id)
{
    try {
        const qint32 key = id.isNull() ? 0 : id.toLong();
        if (!db)
            raiseError(91, QStringLiteral("オブジェクト変数が設定されていません。"));
        RecordsetPtr rs = db->GetFwdOnlyRst(sql + QString::number(key));
        if (rs->eof())
            return QString();
        return Nz(rs->Fields(0), Value(QString())).toText();
    } catch (const AppError &e) {
        ShowMsg(e.text(), Msg::Critical);
        return QString();
    }
}

QString idText(const Value &v) { return QString::number(v.isNull() ? 0 : v.toLong()); }

} // namespace

QString GetKbn15Nm(const Value &id)
{
    return nameById(gWORK.get(), QStringLiteral("SELECT L_KBN.NM FROM L_KBN WHERE L_KBN.KBN=15 AND L_KBN.ID="), id);
}

QString GetAccNm(const Value &id)
{
    return nameById(gWORK.get(), QStringLiteral("SELECT L_ACC.ACC_NM FROM L_ACC WHERE L_ACC.ACC_ID="), id);
}

QString GetFmrNm(const Value &id)
{
    return nameById(gMST.get(), QStringLiteral("SELECT M_FMR.FMR_NM FROM M_FMR WHERE M_FMR.FMR_ID="), id);
}

QString GetShopNm(const Value &id)
{
    return nameById(gMST.get(), QStringLiteral("SELECT M_SHOP.SHOP_NM FROM M_SHOP WHERE M_SHOP.SHOP_ID="), id);
}

QString GetChemiUnitNm(const Value &id)
{
    return nameById(gWORK.get(), QStringLiteral("SELECT  L_CHEMI_UNIT.NM  FROM L_CHEMI_UNIT  WHERE ID="), id);
}

qint32 GetNewLedgeId(const Value &fmrId)
{
    const Value max = gDB->DMax(QStringLiteral("LEDGE_ID"), QStringLiteral("D_LEDGE"),
                                QStringLiteral("FMR_ID=") + fmrId.toText());
    return Nz(max, Value(0)).toLong() + 1;
}

int ChkLedgeUse(const Value &fmrId, const Value &ledgeId)
{
    const QString base = QStringLiteral("FMR_ID=") + idText(fmrId);
    const QString id = idText(ledgeId);
    auto used = [&](const char *table, const char *column) {
        return gDB->DCount(QStringLiteral("*"), QString::fromLatin1(table),
                           base + QStringLiteral(" AND ") + QString::fromLatin1(column) + QLatin1Char('=') + id)
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
