#pragma once
// The upload of the trace pages, as ｱｯﾌﾟﾛｰﾄﾞ does it: the pages of the year
// (or of one planting) written into a folder of their own, then sent to the
// current shop's web server with its upload settings. What is on the server
// is never deleted; pressing again sends the whole set again, which
// completes what a broken-off upload left.
#include "base/Progress.h"
#include "base/Value.h"

#include <QString>

namespace TraceUpload {

struct Result {
    bool complete = false; // every page written was sent
    QString text;          // what the farmer reads: the pages, the plantings left out, the send
};

// Writes and sends; progress is told for the pages, then for the bytes sent,
// and a stop ends the work at the next safe point (nothing is sent after a
// stop while the pages are written).
Result run(int year, const Value &plantId, const Value &shopId, const ProgressFn &progress = ProgressFn());

} // namespace TraceUpload
