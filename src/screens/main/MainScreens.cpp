// Registers the menu by name.
#include "screens/main/fmnMain.h"
#include "ui/Screens.h"

void registerMainScreens() { registerScreen(QStringLiteral("fmnMain"), [] { return new fmnMain; }); }
