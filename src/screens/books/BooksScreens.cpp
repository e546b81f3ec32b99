// Registers the bookkeeping screens by name, and the books' reports as the
// drawings of their ids.
#include "ui/Screens.h"
#include "rules/books/BookReports.h"
#include "screens/books/fdlPrintAccRep.h"
#include "screens/books/frmLedgeInput.h"
#include "screens/books/frmLedgeList.h"

void registerBooksScreens()
{
    registerScreen(QStringLiteral("frmLedgeList"), [] { return new frmLedgeList; });
    registerScreen(QStringLiteral("frmLedgeInput"), [] { return new frmLedgeInput; });
    registerScreen(QStringLiteral("fdlPrintAccRep"), [] { return new fdlPrintAccRep; });
    // The same dialog with the income statement or the journal chosen, as
    // the menu opens it.
    registerScreen(QStringLiteral("fdlPrintPlRep"), [] { return new fdlPrintAccRep(fdlPrintAccRep::IncomeChoice); });
    registerScreen(QStringLiteral("fdlExpJournal"), [] { return new fdlPrintAccRep(fdlPrintAccRep::JournalChoice); });
    BookReports::registerReports();
}
