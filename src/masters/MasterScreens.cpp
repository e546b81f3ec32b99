// Registers the master screens that have no place of their own in the menu's code.
#include "core/Screens.h"
#include "fdlMstPrdEdit.h"
#include "fdlMstShopEdit.h"

void registerMasterScreens()
{
    registerScreen(QStringLiteral("fdlMstShopEdit"), [] { return new fdlMstShopEdit; });
    registerScreen(QStringLiteral("fdlMstPrdEdit"), [] { return new fdlMstPrdEdit; });
}
