// Registers the planting screens by name, and what they share.
#include "screens/planting/PlantScreens.h"

#include "base/Msg.h"
#include "ui/Screens.h"
#include "screens/planting/frmPlantInput.h"
#include "screens/planting/frmPlantList.h"

#include <QComboBox>

namespace PlantUi {

bool settleComboText(QComboBox *combo, bool emptySelectsNothing)
{
    const QString text = combo->currentText();
    if (text.isEmpty() && (emptySelectsNothing || combo->currentIndex() < 0)) {
        combo->setCurrentIndex(-1);
        return true;
    }
    if (combo->currentIndex() >= 0 && combo->itemText(combo->currentIndex()) == text)
        return true;
    for (int i = 0; i < combo->count(); ++i)
        if (combo->itemText(i) == text) {
            combo->setCurrentIndex(i);
            return true;
        }
    ShowMsg(QStringLiteral("一覧にある項目を選択してください。"), Msg::Exclamation);
    return false;
}

} // namespace PlantUi

void registerPlantingScreens()
{
    registerScreen(QStringLiteral("frmPlantList"), [] { return new frmPlantList; });
    registerScreen(QStringLiteral("frmPlantInput"), [] { return new frmPlantInput; });
}
