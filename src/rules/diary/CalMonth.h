#pragma once
// The month grid of the diary calendar, apart from any window: its geometry
// (in twips, as the canvas measures), which day a point falls on, what each
// day cell shows, and the drawing of the whole grid.

#include "base/Value.h"

#include <QDate>
#include <QVector>

class QPainter;

namespace CalMonth {

struct Geometry {
    int firstCol = 0; // column of the first of the month, 0 = Sunday
    int days = 0;     // days in the month
    int rows = 0;     // 4 to 6
    int headerH = 0, cellH = 0, cellW = 0;
    int canvasW = 0, canvasH = 0;
};
Geometry geometry(const QDate &monthFirst, int canvasW, int canvasH);
// The day (1..days) under a point of the canvas, or 0.
int dayAt(const Geometry &g, int x, int y);

// The five check boxes: temperature, weather, money, pesticide, shipment.
struct Options {
    bool on[5] = {false, false, false, false, false};
};
// From the settings CAL_OPT0..4 (no value reads as 0).
Options loadOptions();
void saveOption(int index, bool on);

struct Cell {
    int day = 0;
    int x = 0, y = 0;     // top left, twips
    bool today = false;
    bool hasRow = false;  // a diary row for the day
    Value wthId, loTmp, hiTmp, oneMsg;
    bool money = false, chemi = false, ship = false;
    bool chemiWarn = false; // a spraying of the day breaks its registration
};

// What each day cell of the month shows for the farmer. plantId narrows the
// pesticide and shipment marks when it is a planting (not 0 or Null).
QVector<Cell> collect(const Geometry &g, const QDate &monthFirst, const QDate &today, const Value &fmrId,
                      const Options &options, const Value &plantId);

// Draws the grid on a painter whose unit is the pixel (15 twips).
void paint(QPainter &p, const Geometry &g, const QVector<Cell> &cells, const Options &options);

}
