#pragma once
// The diary's lists shown in its screens' drop-downs and list boxes.
#include "rules/diary/DiaryLists.h"

class QComboBox;
class QListWidget;

// Empties the drop-down and fills it with the entries (the empty entry first
// when asked), each with its id as item data; nothing is chosen.
void fillChoices(QComboBox *combo, const QVector<DiaryLists::Entry> &entries, bool emptyFirst);
// Empties the list and fills it with the entries; nothing is chosen.
void fillChoices(QListWidget *list, const QVector<DiaryLists::Entry> &entries);
