// Registers the bookkeeping screens by name.
#include "core/Screens.h"
#include "fdlPrintAccRep.h"
#include "frmLedgeInput.h"
#include "frmLedgeList.h"

void registerBooksScreens()
{
    registerScreen(QStringLiteral("frmLedgeList"), [] { return new frmLedgeList; });
    registerScreen(QStringLiteral("frmLedgeInput"), [] { return new frmLedgeInput; });
    registerScreen(QStringLiteral("fdlPrintAccRep"), [] { return new fdlPrintAccRep; });
}
