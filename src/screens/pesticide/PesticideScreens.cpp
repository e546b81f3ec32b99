// Registers the pesticide screens by name.
#include "screens/pesticide/frmChemiInput.h"
#include "screens/pesticide/frmChemiList.h"
#include "ui/Screens.h"

void registerPesticideScreens()
{
    registerScreen(QStringLiteral("frmChemiList"), [] { return new frmChemiList; });
    // By name (the companion's pictures) the entry shows an empty lot, as changed.
    registerScreen(QStringLiteral("frmChemiInput"), [] { return new frmChemiInput(Mode::Change); });
}
