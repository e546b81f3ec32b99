#pragma once
// The settings of this installation in S_CTRL of the settings database, as
// the settings dialogs show and keep them.
#include "base/Value.h"

#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

// The five settings of one installation: way of use, default farmer and
// shop, backup folder, maximised screens.
namespace LocalSettings {
struct Values {
    int useType = 0; // 1 single, 2 multi, 0 none of them
    QString farmer, shop, backupDir;
    bool maximised = false;
};
// Walks all rows of S_CTRL: Null reads as 0, "" or false; other keys are
// passed over.
Values load();
// Writes the five keys, each found by its key or added with its type when
// missing: the way of use as 1 or 2 (Null for none), the codes as the text
// of their number, the folder as typed (Null when empty), the screens as
// True or False.
void save(const Values &values);
}

// The keys from which the data and master connections are made.
namespace ConnectionSettings {
// The stored value of each key as text, Null and Empty as "".
QStringList load(const QStringList &keys);
// Writes each key's value in one transaction of the settings database; an
// error (or a key that can't be kept) is passed on with nothing written.
void save(const QVector<QPair<QString, Value>> &values);
}
