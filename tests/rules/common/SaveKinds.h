#pragma once
// The saves a farmer starts, one of each kind: a diary day, a shipment, a
// slip, a pesticide lot, a planting. Each is opened as its screen opens it
// and changed as a farmer would type, in forms told apart by a number, so
// that a series of them moves farmer 1's records along: the even forms of
// shipments, lots and plantings add one, the odd ones change the last one
// added; slips are added (on 8, 6, 7 May ...), changed and deleted in
// turn; the day is one of 6, 7 and 8 May 2024 with its memo, a slip and a
// spraying line changed. Forms 2 of shipments and lots add theirs on 8 May.
// Shared by the tests of atomic saves and of crashes.

#include <functional>

namespace SaveKinds {

enum Kind { Day, Shipment, Slip, Lot, Planting, Count };
const char *name(int kind);

// Farmer 1 and the shop chosen on the computer "PC-A".
void choose();
// The records the saves work on: the diary fixture's plantings, lots and
// the slip of 8 May.
void seed();

// The save of that kind in form n, opened now from the tables. Calling it
// is pressing 登録: again after a failure, the record as the screen keeps it.
std::function<void()> open(int kind, int n);

} // namespace SaveKinds
