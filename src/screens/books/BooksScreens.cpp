// Registers the bookkeeping screens by name.
#include "ui/Screens.h"
#include "screens/books/fdlPrintAccRep.h"
#include "screens/books/frmLedgeInput.h"
#include "screens/books/frmLedgeList.h"

void registerBooksScreens()
{
    registerScreen(QStringLiteral("frmLedgeList"), [] { return new frmLedgeList; });
    registerScreen(QStringLiteral("frmLedgeInput"), [] { return new frmLedgeInput; });
    registerScreen(QStringLiteral("fdlPrintAccRep"), [] { return new fdlPrintAccRep; });
}
