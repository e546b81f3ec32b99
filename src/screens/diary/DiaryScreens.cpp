// Registers the diary screens by name.
#include "screens/diary/frmDairyCal.h"
#include "screens/diary/frmDairyInput.h"
#include "screens/diary/frmDiaryLedgeInput.h"
#include "ui/Screens.h"

void registerDiaryScreens()
{
    registerScreen(QStringLiteral("frmDairyCal"), [] { return new frmDairyCal; });
    registerScreen(QStringLiteral("frmDairyInput"), [] { return new frmDairyInput; });
    registerScreen(QStringLiteral("frmDiaryLedgeInput"), [] { return new frmDiaryLedgeInput; });
}
