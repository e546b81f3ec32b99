#pragma once
// Stock figures of the pesticide lots.

#include "core/Value.h"

// Lots of the farmer that no diary line uses get their whole quantity back:
// USED_QTY 0 and REST_QTY = PUR_QTY. The only road that clears a lot whose
// last use was removed.
void ResetUnusedChemi(const Value &fmrId);
