#include "rules/masters/MasterLists.h"

#include "rules/common/Lists.h"
#include "store/Database.h"

namespace MasterLists {

namespace {

} // namespace

Choices farmers()
{
    return readChoices(gMST.get(), QStringLiteral("SELECT  M_FMR.FMR_ID,  M_FMR.FMR_NM  FROM M_FMR  WHERE CHK_FLG<>0 ORDER BY FMR_ID"), QStringLiteral("FMR_ID"), QStringLiteral("FMR_NM"));
}

Choices shops()
{
    return readChoices(gMST.get(), QStringLiteral(
                    "SELECT  M_SHOP.SHOP_ID,  M_SHOP.SHOP_NM  FROM M_SHOP  WHERE CHK_FLG<>0 ORDER BY M_SHOP.SHOP_ID"), QStringLiteral("SHOP_ID"), QStringLiteral("SHOP_NM"));
}

}
