#pragma once
// What an entry screen is opened for, and what a save does. Add also copies
// a row when the list hands one over; the numbers are those the screens have
// always handed each other.
#include <QtGlobal>

enum class Mode : qint32 { None = 0, Add = 1, Change = 2, View = 3, Delete = 4 };
