#pragma once
// The plantings of a year, as the production history's report and upload
// dialogs offer them (the history itself is read by TraceHistory).
#include "rules/masters/MasterLists.h"

#include <QString>

namespace TraceData {
// The plantings of the year typed (its leading number; a text that is no
// year finds none): name and PLANT_ID, by PLANT_ID.
Choices yearPlantings(const QString &yearText);
}
