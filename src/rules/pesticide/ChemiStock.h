#pragma once

#include "base/Currency.h"

#include <QHash>
#include <QVector>
// Stock figures and use costs of the pesticide lots.

#include "base/Currency.h"
#include "base/Progress.h"
#include "base/Value.h"

#include <QDateTime>

// Lots of the farmer that no diary line uses get their whole quantity back:
// USED_QTY 0 and REST_QTY = PUR_QTY. The only road that clears a lot whose
// last use was removed. Each lot is one statement: stopped through the
// progress callback, the lots done so far stay done and the others keep
// their figures until the next recount.
void ResetUnusedChemi(const Value &fmrId, const ProgressFn &progress = {});

// Recounts USED_QTY of the lots named on the farmer's lines of that day, over
// all their days, converting each use into the purchase unit through the
// unit table; then REST_QTY = PUR_QTY - USED_QTY for every lot.
void RecountChemiUse(const Value &fmrId, const QDateTime &workDate);

// The cost of a use of qty in unitId of the farmer's lot: the price of a
// purchase unit times the quantity, converted by the fixed unit rates,
// rounded half up to a whole amount. Raises the overflow of the mg-to-kg
// pair and of a cost beyond what the books hold, and the Null error for a
// missing unit.
Currency CalChemiAmt(const Value &fmrId, const Value &chemiId, const Value &qty, const Value &unitId);

// What a lot was bought as (nothing for a lot that is not there).
struct LotPurchase {
    double qty = 0;
    qint32 unit = 0;
    Currency amount;
};
// The purchases of the farmer's lots, read in one statement, by lot.
QHash<qint32, LotPurchase> readPurchases(const Value &fmrId, const QVector<Value> &chemiIds);
// CalChemiAmt of a purchase already read.
Currency chemiAmount(const LotPurchase &purchase, const Value &qty, const Value &unitId);
