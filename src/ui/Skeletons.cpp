#include "ui/Skeletons.h"

#include "base/AppError.h"
#include "base/Msg.h"
#include "ui/Entry.h"
#include "ui/Form.h"

#include "base/Msg.h"
#include "base/Value.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>

namespace ListScreen {

void wireButtons(Form *list, const QVector<QPushButton *> &buttons, std::function<void(Mode, bool withRow)> open)
{
    list->onClick(buttons[0], [list] { list->close(); }, false);
    const std::pair<Mode, bool> opens[] = {
        {Mode::Add, false}, {Mode::Change, true}, {Mode::View, true}, {Mode::Delete, true}, {Mode::Add, true}};
    for (int i = 0; i < 5; ++i)
        list->onClick(buttons[i + 1], [open, o = opens[i]] { open(o.first, o.second); });
    buttons[6]->setEnabled(false);
}

bool filterDatesReadable(const QVector<QLineEdit *> &dates, QLineEdit *year)
{
    QVector<QPair<QLineEdit *, QString>> fields;
    for (QLineEdit *d : dates)
        fields.append({d, d->text()});
    if (year && !year->text().isEmpty())
        fields.append({year, year->text() + QStringLiteral("/01/01")});
    for (const auto &[field, text] : fields) {
        QDateTime day;
        if (field->text().isEmpty() || DateUtil::parseStorable(text, day))
            continue;
        ShowMsg(QStringLiteral("日付を指定してください。"), Msg::Exclamation);
        field->setFocus();
        return false;
    }
    return true;
}

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

bool saveOrReload(const std::function<void()> &save, const std::function<void()> &reload)
{
    try {
        save();
        return true;
    } catch (const AppError &e) {
        if (e.number() != VbErr::RecordChanged)
            throw;
        if (ShowMsg(e.description() + QStringLiteral("\n最新の内容を読み込みますか？"), Msg::YesNo + Msg::Question) ==
            Msg::ResYes)
            reload();
        return false;
    }
}

void askBeforeClose(Form *screen, QPushButton *confirmButton, std::function<Mode()> mode)
{
    screen->setCloseCheck([screen, confirmButton, mode] {
        const Mode m = mode ? mode() : Mode::Change;
        if ((m != Mode::Add && m != Mode::Change) || !screen->entry().edited())
            return true;
        switch (ShowMsg(QStringLiteral("変更内容を登録しますか？"), Msg::YesNoCancel + Msg::Question)) {
        case Msg::ResYes:
            // The field typed in is left first, so that the save takes what
            // it holds: the screen is made the active one again for that (the
            // question's box has just closed, the desktop gives it back later).
            QApplication::setActiveWindow(screen);
            confirmButton->setFocus(Qt::OtherFocusReason);
            confirmButton->click();
            return screen->unloaded(); // saved and closed, or kept open by its message
        case Msg::ResNo: return true;
        default:
            screen->entry().backToField();
            return false;
        }
    });
}

} // namespace EntryScreen
