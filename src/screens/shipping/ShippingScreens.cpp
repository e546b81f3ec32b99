// Registers the shipping screens by name.
#include "ui/Screens.h"
#include "screens/shipping/frmShipInput.h"
#include "screens/shipping/frmShipList.h"

void registerShippingScreens()
{
    registerScreen(QStringLiteral("frmShipList"), [] { return new frmShipList; });
    registerScreen(QStringLiteral("frmShipInput"), [] { return new frmShipInput; });
}
