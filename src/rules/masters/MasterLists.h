#pragma once
// The masters offered in drop-down lists: the farmers of the menu and the
// shops of the product master, those in use (CHK_FLG on) by code.
#include "base/Choice.h"
#include "base/Value.h"

#include <QString>
#include <QVector>


namespace MasterLists {
// The farmers in use: name (Null as "") and code (Null as 0).
Choices farmers();
// The shops in use: name and code (Null as 0).
Choices shops();
}
