#pragma once
// The start of the program: the four databases, the way of use, the checks
// that a default farmer and shop exist, the stock figures of unused lots, and
// the first screen.

// Returns false when the program ends without a screen.
bool Main();
