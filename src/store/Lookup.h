#pragma once
// Names by id. A failure is raised for the caller's trap.

#include "base/Value.h"

#include <QString>

QString GetKbn15Nm(const Value &id);
QString GetAccNm(const Value &id);
QString GetFmrNm(const Value &id);
QString GetShopNm(const Value &id);
QString GetChemiUnitNm(const Value &id);
