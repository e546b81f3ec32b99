// Registers the shipping screens by name.
#include "core/Screens.h"
#include "shipping/frmShipInput.h"
#include "shipping/frmShipList.h"

void registerShippingScreens()
{
    registerScreen(QStringLiteral("frmShipList"), [] { return new frmShipList; });
    registerScreen(QStringLiteral("frmShipInput"), [] { return new frmShipInput; });
}
