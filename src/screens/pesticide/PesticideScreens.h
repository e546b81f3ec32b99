#pragma once
// What the pesticide screens share.

class QComboBox;
class QString;

namespace ChemiUi {
// The leave rule of a drop-down that takes typed text: text equal to an
// entry selects it; empty text selects nothing (or keeps the empty first
// entry when that is chosen, unless emptySelectsNothing); text equal to none
// shows the message and keeps the focus there (false).
bool settleComboText(QComboBox *combo, const QString &message, bool emptySelectsNothing = false);
}
