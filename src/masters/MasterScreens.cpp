// Registers the master screens that have no place of their own in the menu's code.
#include "core/Screens.h"

void registerMasterScreens() {}
