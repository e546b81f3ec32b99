// Registers the planting screens by name.
#include "core/Screens.h"

void registerPlantingScreens() {}
