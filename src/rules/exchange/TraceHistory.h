#pragma once
// The production history of a planting, as the printed report (生産履歴) and
// the trace pages that a tag's QR opens both show it: the planting, every
// work line of the diary in date order, the sprayings with their
// registration, purpose and quantity, the uses of each registration this
// season (counted by the spraying checks), and the shipments. Read once;
// the report and the pages only lay it out.

#include "base/Value.h"
#include "rules/pesticide/SprayCheck.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <QVector>

#include <utility>

namespace TraceHistory {

struct Work {
    QDate day;
    QString work;  // WORK_NM
    QString notes; // NOTES
};

struct Spraying {
    QDate day;
    QString pesticide; // the line's name, else the lot's
    QString regNo;     // the lot's registration number
    QString purpose;
    QString quantity;  // "1.5" as stored, "" when none
    QString unit;      // of L_CHEMI_UNIT, "" when none
};

struct Shipment {
    QDate day;
    QString shop;    // M_SHOP's name
    QString product; // PRD_NM
    QString quantity, returned; // SHIP_QTY, RTN_QTY as stored ("" when none)
};

struct History {
    Value farmer, plantId; // as the tables hold them
    int year = 0;          // YYYY
    QString farmerName;    // M_FMR
    QString name, crop, variety, field; // PLANT_NM, CROP_NM, CROP_NM1, FIELD_NM
    QString area;          // AREA in ares as stored, "" when none
    QDate planted;         // PLANT_DATE
    QDate workFrom, workTo; // START_DATE, END_DATE (empty while under way)
    QString harvestPlan;   // HARVEST_SCHD_YM as typed
    QDate firstHarvest, lastHarvest; // diary lines of the harvest work kind
    QVector<Work> work;
    QVector<Spraying> sprays;
    QVector<Spray::UseCount> uses; // by registration number
    QVector<Shipment> shipments;
};

// What the report and the pages show, in their order: the facts of the
// planting as label and text, then blocks of lines under heads.
QVector<std::pair<QString, QString>> facts(const History &h);

struct Block {
    enum Kind { Work, Sprays, Uses, Shipments } kind;
    QString title;
    QString empty; // said in place of the lines when there are none
    QStringList heads;
    QVector<QStringList> rows; // a cell a head
};
// The work lines; the sprayings with their quantity ("190 mL"); the uses of
// each registration (only when there are sprayings to count); the
// shipments with their quantity and returns.
QVector<Block> blocks(const History &h);

// Text forms shared by the report and the pages.
QString dayText(const QDate &d);                      // "2024/05/01", "" for none
QString cropText(const History &h);                   // "トマト（桃太郎）"

// The plantings of the year (D_PLANT.YYYY) of every farmer, by farmer and
// planting; plantId narrows them to that planting number (of any farmer)
// when it holds one. `today` ends the season of a planting under way, for
// the use counts.
QVector<History> readYear(int year, const Value &plantId, const QDate &today);

} // namespace TraceHistory
