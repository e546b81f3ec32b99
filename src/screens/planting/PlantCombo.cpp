#include "screens/planting/PlantCombo.h"

#include "ui/Entry.h"

#include <QComboBox>

void fillCombo(QComboBox *combo, const QVector<Plant::Choice> &choices)
{
    combo->clear();
    addEmptyItem(combo);
    for (const Plant::Choice &c : choices)
        addItem(combo, c.name, c.id);
    combo->setCurrentIndex(-1);
}
