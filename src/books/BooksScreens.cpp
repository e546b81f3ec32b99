// Registers the bookkeeping screens by name.
#include "core/Screens.h"

void registerBooksScreens() {}
