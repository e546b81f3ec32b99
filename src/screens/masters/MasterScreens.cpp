// Registers the master and settings screens by name.
#include "screens/masters/fdlMstFmrEdit.h"
#include "screens/masters/fdlMstPrdEdit.h"
#include "screens/masters/fdlMstShopEdit.h"
#include "screens/masters/fdlSetConCtrl.h"
#include "screens/masters/fdlSetLocalCtrl.h"
#include "ui/Screens.h"

void registerMasterScreens()
{
    registerScreen(QStringLiteral("fdlSetConCtrl"), [] { return new fdlSetConCtrl; });
    registerScreen(QStringLiteral("fdlSetLocalCtrl"), [] { return new fdlSetLocalCtrl; });
    registerScreen(QStringLiteral("fdlSetMstCtrl"), [] { return new fdlSetMstCtrl; });
    registerScreen(QStringLiteral("fdlMstFmrEdit"), [] { return new fdlMstFmrEdit; });
    registerScreen(QStringLiteral("fdlMstShopEdit"), [] { return new fdlMstShopEdit; });
    registerScreen(QStringLiteral("fdlMstPrdEdit"), [] { return new fdlMstPrdEdit; });
}
