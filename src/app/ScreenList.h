#pragma once
// Registers every screen of the program by name, and sets the one look of
// all screens (style and font).

class QApplication;

void registerAllScreens();
void setupLook(QApplication &app);
