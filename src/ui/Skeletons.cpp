#include "ui/Skeletons.h"

#include "ui/Entry.h"
#include "ui/Form.h"

#include <QPushButton>
#include <QTreeWidget>

namespace ListScreen {

int chosenRow(const QTreeWidget *list)
{
    const QList<QTreeWidgetItem *> chosen = list->selectedItems();
    if (chosen.isEmpty())
        return -1;
    return list->indexOfTopLevelItem(chosen.first());
}

void chooseRow(QTreeWidget *list, int row)
{
    QTreeWidgetItem *item = row >= 0 ? list->topLevelItem(row) : nullptr;
    if (!item) {
        list->clearSelection();
        list->setCurrentItem(nullptr);
        return;
    }
    list->setCurrentItem(item);
    item->setSelected(true);
    list->scrollToItem(item);
}

} // namespace ListScreen

namespace EntryScreen {

void setMode(Form *screen, QPushButton *closeButton, QPushButton *confirmButton, Mode mode,
             const QString &confirmCaption)
{
    screen->entry().setMode(mode);
    closeButton->setText(mode == Mode::View ? QStringLiteral("閉じる") : QStringLiteral("ｷｬﾝｾﾙ"));
    confirmButton->setText(mode == Mode::Delete ? QStringLiteral("削除") : confirmCaption);
    confirmButton->setVisible(mode != Mode::View);
    if (mode == Mode::View || mode == Mode::Delete)
        lockRecordFields(screen);
}

} // namespace EntryScreen
