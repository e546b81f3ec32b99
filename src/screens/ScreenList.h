#pragma once
// Registers every screen of the program by name, and sets the one look of
// all screens (style and font, Qt's own texts in Japanese).

class QApplication;

void registerAllScreens();
void setupLook(QApplication &app);
