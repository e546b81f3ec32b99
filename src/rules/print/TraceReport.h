#pragma once
// The production history of one planting as a printed report (report 30,
// 生産履歴): the planting, the work of the diary in date order, the
// sprayings with the uses of each registration, and the shipments, on
// numbered pages of A4 drawn by the common print layer on the preview, a PDF
// file or the printer.

#include "rules/exchange/TraceHistory.h"
#include "rules/print/TablePages.h"

constexpr int kTraceReport = 30;

namespace TraceReport {

// The pages of a planting's history.
TablePages::Document pages(const TraceHistory::History &history);

// Makes the history of the planting of the year the report that report 30
// draws, and returns its number of pages; 0 when the year has no such
// planting (the report is then left as it was). The planting list of the
// dialog doesn't tell the farmers apart: of plantings of equal number the
// farmer's own is taken, else the first.
int prepare(int year, const Value &plantId, const Value &farmer);

// Makes the report the drawing of its id.
void registerReport();

} // namespace TraceReport
