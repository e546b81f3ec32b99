// Registers the data exchange screens by name.
#include "core/Screens.h"
#include "exchange/fdlExpPriceTag.h"
#include "exchange/fdlUploadTraceData.h"

void registerExchangeScreens()
{
    registerScreen(QStringLiteral("fdlExpPriceTag"), [] { return new fdlExpPriceTag; });
    registerScreen(QStringLiteral("fdlUploadTraceData"), [] { return new fdlUploadTraceData; });
}
