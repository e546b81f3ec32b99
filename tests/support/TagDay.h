#pragma once
// A day of shipments for the price tag tests, and the labels it must give:
// farmer 1 (delivered, with a phone number) and farmer 2 (without), four
// shipments of which one has quantity 0, and a shipment on another day.
#include <QDate>
#include <QString>
#include <QStringList>
#include <QVector>

namespace TagDay {
// Writes the farmer and the shipments of the day.
void seed(const QDate &day);
// The labels of the day after `skip` blank places: for each, its 13-digit
// code and its trace address (empty for a blank place), in printed order.
QVector<QStringList> expectedLabels(int skip);
// The code of the delivered shop layout: option (2), farmer (4), product
// (2), price in tens cut toward zero (4), and the check digit.
QString shopCode(int farmer, int product, int price);
}
