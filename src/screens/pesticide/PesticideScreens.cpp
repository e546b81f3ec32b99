// Registers the pesticide screens by name, and what they share.
#include "screens/pesticide/PesticideScreens.h"

#include "screens/pesticide/frmChemiInput.h"
#include "screens/pesticide/frmChemiList.h"

#include "base/Msg.h"
#include "ui/Screens.h"

#include <QComboBox>

namespace ChemiUi {

bool settleComboText(QComboBox *combo, const QString &message, bool emptySelectsNothing)
{
    const QString text = combo->currentText();
    if (text.isEmpty()) {
        // the empty first entry stays chosen when it was
        if (emptySelectsNothing || combo->currentIndex() < 0 || !combo->itemText(combo->currentIndex()).isEmpty())
            combo->setCurrentIndex(-1);
        return true;
    }
    if (combo->currentIndex() >= 0 && combo->itemText(combo->currentIndex()) == text)
        return true;
    const int i = combo->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (i >= 0) {
        combo->setCurrentIndex(i);
        return true;
    }
    ShowMsg(message, Msg::Exclamation);
    return false;
}

} // namespace ChemiUi

void registerPesticideScreens()
{
    registerScreen(QStringLiteral("frmChemiList"), [] { return new frmChemiList; });
    registerScreen(QStringLiteral("frmChemiInput"), [] { return new frmChemiInput; });
}
