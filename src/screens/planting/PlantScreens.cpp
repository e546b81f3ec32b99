// Registers the planting screens by name.
#include "screens/planting/frmPlantInput.h"
#include "screens/planting/frmPlantList.h"
#include "ui/Screens.h"

void registerPlantingScreens()
{
    registerScreen(QStringLiteral("frmPlantList"), [] { return new frmPlantList; });
    registerScreen(QStringLiteral("frmPlantInput"), [] { return new frmPlantInput; });
}
