#include "screens/diary/Choices.h"

#include "ui/Entry.h"

#include <QComboBox>
#include <QListWidget>

void fillChoices(QComboBox *combo, const QVector<DiaryLists::Entry> &entries, bool emptyFirst)
{
    combo->clear();
    if (emptyFirst)
        addEmptyItem(combo);
    for (const DiaryLists::Entry &e : entries)
        addItem(combo, e.text, e.id);
    combo->setCurrentIndex(-1);
}

void fillChoices(QListWidget *list, const QVector<DiaryLists::Entry> &entries)
{
    list->clear();
    for (const DiaryLists::Entry &e : entries)
        addItem(list, e.text, e.id);
}
