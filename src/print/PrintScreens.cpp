// Registers the printing screens by name, and the price tag sheet as the
// drawing of its report.
#include "core/Screens.h"
#include "print/PriceTagSheet.h"
#include "print/fdlPreview.h"
#include "print/fdlPrintPriceTag.h"
#include "print/fdlPrintTraceRep.h"
#include "print/fdlSetMgn.h"
#include "print/fdlSetPrintCopy.h"

void registerPrintScreens()
{
    registerScreen(QStringLiteral("fdlPreview"), [] { return new fdlPreview; });
    registerScreen(QStringLiteral("fdlSetMgn"), [] { return new fdlSetMgn; });
    registerScreen(QStringLiteral("fdlSetPrintCopy"), [] { return new fdlSetPrintCopy; });
    registerScreen(QStringLiteral("fdlPrintTraceRep"), [] { return new fdlPrintTraceRep; });
    registerScreen(QStringLiteral("fdlPrintPriceTag"), [] { return new fdlPrintPriceTag; });
    PriceTagSheet::registerReport();
}
