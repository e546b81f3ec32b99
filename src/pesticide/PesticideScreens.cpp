// Registers the pesticide screens by name.
#include "core/Screens.h"

void registerPesticideScreens() {}
