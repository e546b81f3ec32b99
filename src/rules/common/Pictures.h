#pragma once
// The program's own pictures, drawn in vectors so that they stay legible at
// any size: the weather of a day (1 to 10, by the weather list) and the
// calendar's marks (1 money, 2 pesticide, 3 shipment).

#include <QRectF>

class QPainter;

namespace Pictures {
// Weather 1 晴れ, 2 くもり, 3 雨, 4 雪, 5 晴れ時々くもり, 6 くもり時々雨,
// 7 晴れのち雨, 8 雨のち晴れ, 9 霧, 10 雷雨. Other numbers draw nothing.
void drawWeather(QPainter &p, const QRectF &box, int id);
// Marks: 1 money, 2 pesticide, 3 shipment, 4 pesticide against its
// registration (the pesticide mark in red). Other numbers draw nothing.
void drawMark(QPainter &p, const QRectF &box, int kind);
// The recycling mark of plastic packaging: a loop of arrows over "プラ", in black.
void drawPlasticMark(QPainter &p, const QRectF &box);
}
