#pragma once
// The entries of a list to choose from, as a statement gives them: the key
// (the item data) from one column and the text shown from another, Null
// text shown as "".
#include "base/Choice.h"

#include <QString>

class DbObject;

// First column the key, second the text.
Choices readChoices(DbObject *db, const QString &sql);
// The key and the text by their columns' names.
Choices readChoices(DbObject *db, const QString &sql, const QString &keyColumn, const QString &textColumn);
