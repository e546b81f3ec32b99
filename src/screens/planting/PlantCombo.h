#pragma once
// The drop-downs of the planting screens, filled from what the rules offer.
#include "rules/planting/PlantEntry.h"

class QComboBox;

// The empty first entry, then the choices; nothing selected.
void fillCombo(QComboBox *combo, const QVector<Plant::Choice> &choices);
