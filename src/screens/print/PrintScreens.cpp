// Registers the printing screens by name, and the price tag sheet and the
// production history as the drawings of their reports.
#include "ui/Screens.h"
#include "rules/print/PriceTagSheet.h"
#include "rules/print/TraceReport.h"
#include "screens/print/fdlPreview.h"
#include "screens/print/fdlPrintPriceTag.h"
#include "screens/print/fdlPrintTraceRep.h"
#include "screens/print/fdlSetMgn.h"
#include "screens/print/fdlSetPrintCopy.h"

void registerPrintScreens()
{
    registerScreen(QStringLiteral("fdlPreview"), [] { return new fdlPreview; });
    registerScreen(QStringLiteral("fdlSetMgn"), [] { return new fdlSetMgn; });
    registerScreen(QStringLiteral("fdlSetPrintCopy"), [] { return new fdlSetPrintCopy; });
    registerScreen(QStringLiteral("fdlPrintTraceRep"), [] { return new fdlPrintTraceRep; });
    registerScreen(QStringLiteral("fdlPrintPriceTag"), [] { return new fdlPrintPriceTag; });
    PriceTagSheet::registerReport();
    TraceReport::registerReport();
}
