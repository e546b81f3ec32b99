#pragma once
// Ten years of one farmer's records (farmer 1, 2016-01-01 to 2025-12-31) for
// the benchmarks: a diary page for every day with weather, temperatures and a
// line of the day; work lines of the diary (spraying lines carry the lot,
// quantity and unit; shipping lines point at their shipment); plantings of the
// crops in the work database; pesticide lots bought and used up; shipments to
// shop 1 with their sale and fee slips; and the rest of the book (expenses,
// income, transfers, monthly collection of the shop's receivable).
//
// The same seed gives the same rows on every machine and engine. Rows go in
// through the engine with bound values, many rows a statement, one
// transaction a table.

#include "store/Engine.h"

#include <QString>

namespace BenchData {

constexpr quint64 kDefaultSeed = 20160101;

struct Targets {
    int detailLines = 20000;
    int slips = 30000;
    int shipments = 5000;
    int plantings = 400;
    int lots = 300;
    int sprayLines = 2500;   // of the detail lines, work kind 5
    int linkedSlips = 1500;  // detail lines that carry a purchase slip
};

struct Summary {
    int days = 0;
    int detailLines = 0;
    int sprayLines = 0;
    int slips = 0;
    int shipments = 0;
    int plantings = 0;
    int lots = 0;
    double seconds = 0;      // time spent writing and reading the look-ups
    QString text() const;
};

// Fills the empty data tables behind `data` for farmer 1. Look-ups come from
// `work` (L_KBN, L_ACC, L_CROP, L_CHEMI, L_MAKER, L_CHEMI_PURPOSE) and
// `master` (M_SHOP 1, M_PRD). Raises AppError from the engine.
Summary generate(Engine &data, Engine &work, Engine &master, const Targets &targets = Targets(),
                 quint64 seed = kDefaultSeed);

// The first and last day of the generated records.
QDate firstDay();
QDate lastDay();

}
