// Registers the printing screens by name.
#include "core/Screens.h"

void registerPrintScreens() {}
