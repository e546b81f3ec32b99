#pragma once
// The masters offered in drop-down lists: the farmers of the menu and the
// shops of the product master, those in use (CHK_FLG on) by code.
#include "base/Value.h"

#include <QString>
#include <QVector>

// An entry of a list: what it shows and the key it stands for.
struct ListEntry {
    QString text;
    Value data;
};
using ListEntries = QVector<ListEntry>;

namespace MasterLists {
// The farmers in use: name (Null as "") and code (Null as 0).
ListEntries farmers();
// The shops in use: name and code (Null as 0).
ListEntries shops();
}
