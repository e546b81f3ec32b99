#pragma once
// What the production history of a planting would be made from: the
// plantings of a year, as the trace report and the upload dialogs offer them.
#include "rules/masters/MasterLists.h"

#include <QString>

namespace TraceData {
// The plantings of the year typed (its leading number; a text that is no
// year finds none): name and PLANT_ID, by PLANT_ID.
Choices yearPlantings(const QString &yearText);
}
