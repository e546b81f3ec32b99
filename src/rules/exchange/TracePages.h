#pragma once
// The trace pages that the QR symbol of a price tag opens: for every
// planting of a year that has shipments, a static UTF-8 HTML page with the
// production history (the same content as the printed report), readable on
// a phone, with no script, one small shared stylesheet and the shop's logo.
// They are written into a folder laid out as the shop's web folder (its
// WWW_URL) is, so that the tag's address with WWW_URL replaced by the folder
// opens its page:
//
//   style.css and the logo           cropvia/style.css, cropvia/logo.<ext>
//   a planting's page                cropvia/<FMR_ID>/<PLANT_ID>/index.html
//   a farmer's index of the year     cropvia/<FMR_ID>/index.html
//   for the script form (UPLOAD_FILE_TYPE 2 and 3)
//                                    cropvia.php, which answers
//                                    cropvia.php?fmr=F?plant=P (the tags'
//                                    second "?" read as a separator, as "&"
//                                    is) with the page of the folder form
//
// Every text of the user is escaped. Nothing else in the folder is touched.

#include "base/Progress.h"
#include "base/Value.h"
#include "rules/exchange/TraceHistory.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace TracePages {

struct Skipped {
    Value farmer, plantId;
    QString name;   // PLANT_NM
    QString reason; // in Japanese: "出荷の記録がないため、ページを作りませんでした。"
};

struct Outcome {
    // The files written, relative to the folder with "/" between the parts,
    // in the order written (the stylesheet and logo first, the indexes
    // last): what an upload sends.
    QStringList files;
    int pages = 0;             // plantings' pages among them
    QVector<Skipped> skipped;  // plantings without a page, and why
    QStringList notes;         // what else the farmer should know (a logo that can't be read)
    bool cancelled = false;    // stopped between two pages; the files so far stand
    QString refusal;           // why nothing (more) was written; "" when all went well
    // What was done, in Japanese, a line each: the pages, the skipped
    // plantings with their reasons, the notes, a stop. With `named` at 0
    // or more, skipped plantings beyond that many are counted in one line.
    QStringList summary(int named = -1) const;
};

// Writes the pages of the plantings of the year (D_PLANT.YYYY) into outDir
// (made when missing); plantId, when it holds a number other than 0, narrows
// them to that planting number (of any farmer), and the farmers' indexes are
// then left as they are. The shop is gSHOP_ID's (1 when empty). Progress is
// told before each page; a stop ends the work between two pages.
Outcome write(const QString &outDir, int year, const Value &plantId, const ProgressFn &progress = ProgressFn());

} // namespace TracePages
