// Registers the shipping screens by name.
#include "core/Screens.h"

void registerShippingScreens() {}
