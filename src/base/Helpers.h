#pragma once
// Small helpers shared by all modules that need no window and no database.

#include "base/Value.h"

#include <QByteArray>

// Rounds on the absolute value: mode 1 cuts, 2 rounds up any fraction, any
// other (0 reads as 3) rounds half up; digits places after the point; the
// sign is kept. A Null gives 0, and so does any failure.
Currency RoundEx(const Value &value, int mode = 3, int digits = 0);
// An amount rounded as RoundEx rounds it by default (whole, half up), but
// one beyond the currency range is the overflow error, never 0.
Currency RoundAmount(double value);

// The twelve digits of code followed by the EAN-13 check digit; "" for a code
// of other than twelve characters.
QString GetEanCheck(const QString &code);

// Factor from a pesticide unit to another (1 g, 2 kg, 3 mg, 4 mL, 5 L).
// The pair mg to kg raises the overflow error.
double GetUnitRate(int fromUnit, int toUnit);

// Narrow letters, digits, signs and blanks, and half-width katakana, made
// full width (ｶﾞ becomes ガ).
QString toWide(const QString &text);

// Text in the system code page of the farms' computers (Shift-JIS with the
// Windows additions), as files for outside programs expect it. A character
// the code page lacks becomes "?".
QByteArray toSystemCodePage(const QString &text);

// The number of characters of a text as the databases count them: a
// character outside the basic plane (an emoji) is one, not two.
int charCount(const QString &text);
// The first count characters, never half of one.
QString leftChars(const QString &text, int count);

// A short stable name of this computer, at most 15 characters.
QString GetCompName();
void setCompNameForTests(const QString &name);

// Ends the process at once (the connection question answered No). Tests may
// replace what it does.
[[noreturn]] void EndProcessNow(int code = 0);
void setEndProcessHandler(void (*handler)(int));
