#pragma once
// Pieces of statement text made from what the user typed or from a record.
// User text is always quoted with its quotes doubled, so that a name like
// O'Neil is stored as typed and never ends the literal early.
#include "base/Value.h"

#include <QString>

namespace Sql {

// 'text', quotes inside doubled.
QString quoted(const QString &text);
// quoted(text), or NULL when the value is empty.
QString quotedOrNull(const Value &v);
// The text with its quotes doubled, for use inside a literal ("LIKE '%...%'").
QString escaped(const QString &text);
// A number as the statement takes it: 0 for an empty value, the leading
// number of a text (full-width digits too), never anything but digits.
QString number(const Value &v);
QString leadingNumber(const QString &text);
// A date as the user reads it, "yyyy/mm/dd"; a text that is no date as it stands.
QString dayText(const Value &date);

} // namespace Sql
