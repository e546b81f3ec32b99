#pragma once
// What the planting screens share.

class QComboBox;

namespace PlantUi {
// The leave rule of a drop-down that takes typed text: text equal to an
// entry selects it; text equal to none keeps the focus there (with a word to
// the user). Empty text selects nothing when emptySelectsNothing, else it
// goes to the empty first entry unless nothing is selected. False keeps the
// focus.
bool settleComboText(QComboBox *combo, bool emptySelectsNothing);
}
