#pragma once
// What the master dialogs that edit one record found by its code share: the
// look of a field that is open to entry or locked by the dialog's mode, and
// the look-up of a record by Enter in the code field.

#include "base/Value.h"

#include <functional>

class Form;
class QLineEdit;

namespace MasterEdit {

// A field open to entry (white) or locked (greyed and out of reach).
void setEditable(QLineEdit *field, bool editable);

// Enter in the code field while looking() is true hands the typed code, as
// a number, to lookUp. When lookUp has found the record (returns true) the
// key is used up; else Enter moves on as in every field, and the field's
// own check speaks. A code that isn't a number is never looked up.
void onCodeEnter(Form *form, QLineEdit *code, std::function<bool()> looking,
                 std::function<bool(const Value &code)> lookUp);

}
