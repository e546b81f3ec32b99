#pragma once
// Names by id, the new slip number, and who owns a slip.

#include "base/Value.h"

#include <QString>

QString GetKbn15Nm(const Value &id);
QString GetAccNm(const Value &id);
QString GetFmrNm(const Value &id);
QString GetShopNm(const Value &id);
QString GetChemiUnitNm(const Value &id);

// The largest slip number of the farmer plus 1 (1 for none).
qint32 GetNewLedgeId(const Value &fmrId);

// 0 free, 1 made by a diary line, 2 by a pesticide purchase, 3 by a shipment;
// the first owner found answers.
int ChkLedgeUse(const Value &fmrId, const Value &ledgeId);

// The refusal of a change (or a deletion) of a slip that a record owns, by
// the owner ChkLedgeUse gives; "" for a free slip.
QString ledgeLockMessage(int owner, bool deleting);
