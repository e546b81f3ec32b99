#pragma once
// What start-up checks before the first screen: the way of use, and that
// the default farmer and shop are set and stand in the master tables.
#include "base/Value.h"

#include <QString>

namespace Defaults {

// USE_TYPE as a 16-bit number (a missing or Null setting fails, as nothing
// can start without it).
qint16 useType();

enum class Check {
    Passed,
    NotSet,   // the setting is missing, empty, 0 or no number
    NoRows,   // the master table is empty
    Missing,  // no row has that code
};
// Takes the default code from the setting's value into id (missing reads as
// 0) and checks it against the master table: criteria names the code's
// column with a ? for the code ("FMR_ID=?").
Check check(const Value &setting, const char *table, const char *criteria, Value &id);

}
