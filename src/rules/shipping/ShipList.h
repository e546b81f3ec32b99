#pragma once
// What the shipment list reads: the plantings by their shipping state, the
// shipments under the filters and their totals. The state of a planting is
// not stored but seen in its shipments: none yet, some while the planting
// has no end date, some after it ended.

#include "base/Currency.h"
#include "base/Value.h"
#include "rules/shipping/ShipData.h"

#include <QString>
#include <QVector>

#include <array>

namespace Ship {

enum class PlantStatus { NotShipped = 0, Shipping, Finished, All };

// The filters of the list, as typed; an empty text filters nothing.
struct ListFilter {
    QString year;                             // harvest year of the planting (D_PLANT.YYYY)
    PlantStatus status = PlantStatus::All;
    QString from, to;                         // shipment days
    // The plantings' list: the key of each entry (the empty first entry
    // carries 0) and the entry chosen (-1 none). An entry after the first
    // planting shows that planting; the first planting, or none, shows all
    // the list holds.
    QVector<Value> plantings;
    int chosen = -1;
};

// The plantings of the year in that state, each once, by number.
QVector<Choice> plantingsByStatus(const ListFilter &f);

// The shipments under the filters (of all farmers whose rows match) into
// gSHIP_ROWS, by day, planting and number; the number of rows. A year that
// is no number finds nothing; a day that is no date raises the date error.
int loadShipments(const ListFilter &f);

// The totals of the same shipments: shipped, sold, discount, sales, fee;
// an empty sum counts 0.
std::array<Currency, 5> shipmentTotals(const ListFilter &f);

}
