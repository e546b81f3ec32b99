// Registers the diary screens by name.
#include "screens/diary/frmDairyCal.h"
#include "screens/diary/frmDairyInput.h"
#include "screens/diary/frmDiaryLedgeInput.h"
#include "ui/Screens.h"

void registerDiaryScreens()
{
    registerScreen(QStringLiteral("frmDairyCal"), [] { return new frmDairyCal; });
    registerScreen(QStringLiteral("frmDairyInput"), [] { return new frmDairyInput; });
    // By name it opens as for a new slip of the cash book; the day's book
    // pages open it with their mode, row and book.
    registerScreen(QStringLiteral("frmDiaryLedgeInput"), [] { return new frmDiaryLedgeInput(Mode::Add, -1, Acc::Cash); });
}
