#pragma once
// The controls of a list and an entry screen as their tests reach them
// (txtDATA(i), cmbDATA(i), cmdMENU(i), a list's column), and the user's
// steps on them that end by leaving the control.
#include "support/GuiDriver.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QStringList>
#include <QTreeWidget>

namespace EntryForm {

inline QLineEdit *txt(Form &f, int i) { return f.ctl<QLineEdit>(QStringLiteral("txtDATA(%1)").arg(i)); }
inline QComboBox *cmb(Form &f, int i) { return f.ctl<QComboBox>(QStringLiteral("cmbDATA(%1)").arg(i)); }
inline QPushButton *btn(Form &f, int i) { return f.ctl<QPushButton>(QStringLiteral("cmdMENU(%1)").arg(i)); }

inline QStringList column(QTreeWidget *list, int col)
{
    QStringList out;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        out << list->topLevelItem(i)->text(col);
    return out;
}

inline void typeAndLeave(QLineEdit *box, const QString &text)
{
    Gui::closePopups();
    Gui::type(box, text);
    Gui::leave(box);
    Gui::closePopups();
}
inline void typeAndLeave(Form &f, int box, const QString &text) { typeAndLeave(txt(f, box), text); }

// Into a drop-down with its list closed.
inline void focusCombo(QComboBox *combo)
{
    Gui::closePopups();
    if (!combo->hasFocus())
        combo->setFocus(Qt::TabFocusReason);
    Gui::settle();
    Gui::closePopups();
}

// Picks the entry of that text from the list, or types the text when the
// list has none, and moves on.
inline void chooseText(QComboBox *combo, const QString &text)
{
    const int i = combo->findText(text, Qt::MatchExactly);
    if (i >= 0) {
        Gui::choose(combo, i);
    } else {
        focusCombo(combo);
        combo->lineEdit()->setText(text);
        Gui::settle();
    }
    Gui::leave(combo);
    Gui::closePopups();
}

} // namespace EntryForm
