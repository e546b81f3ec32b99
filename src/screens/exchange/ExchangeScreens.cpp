// Registers the data exchange screens by name.
#include "ui/Screens.h"
#include "screens/exchange/fdlExpPriceTag.h"
#include "screens/exchange/fdlUploadTraceData.h"

void registerExchangeScreens()
{
    registerScreen(QStringLiteral("fdlExpPriceTag"), [] { return new fdlExpPriceTag; });
    registerScreen(QStringLiteral("fdlUploadTraceData"), [] { return new fdlUploadTraceData; });
}
