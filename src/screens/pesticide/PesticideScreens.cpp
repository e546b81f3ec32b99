// Registers the pesticide screens by name.
#include "screens/pesticide/frmChemiInput.h"
#include "screens/pesticide/frmChemiList.h"
#include "ui/Screens.h"

void registerPesticideScreens()
{
    registerScreen(QStringLiteral("frmChemiList"), [] { return new frmChemiList; });
    registerScreen(QStringLiteral("frmChemiInput"), [] { return new frmChemiInput; });
}
