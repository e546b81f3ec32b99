#pragma once
// Putting a report on a page. One drawing routine per report draws straight
// onto a print target: the printer (or a PDF file standing in for it) or the
// preview's picture. Nothing is recorded between pages: the preview draws the
// page afresh at each zoom or scroll, and printing a page runs the same
// routine against the printer.
//
// Report ids and their paper come from L_REP (work database); the margins,
// printer and paper bin of each report are kept per computer in S_REP
// (settings database). Positions are twips, 567 to the centimetre.

#include "base/Progress.h"
#include "base/Value.h"
#include "rules/print/PageTarget.h"

#include <QString>
#include <QStringList>

#include <functional>

class QPaintDevice;

// The report drawn on the preview and printed from it (the price tag sheet).
constexpr int kPriceTagReport = 10;

// Draws pages of a report: target, left and top (twips, margins and the
// preview's scroll included), first and last page, counted from 1.
using ReportPainter = std::function<void(PrintTarget &, double left, double top, int firstPage, int lastPage)>;

// The drawing routine of a report; an empty function removes it.
void setReportPainter(int repId, ReportPainter painter);

// Draws the pages first..last of the report on the target. A report with no
// routine draws nothing, so its page stays empty.
void PrintReport(int repId, PrintTarget &target, double left, double top, int firstPage, int lastPage);

// The installed printer that a stored name stands for: the first equal to it
// ignoring case; "" when there is none.
QString matchPrinter(const QStringList &installed, const QString &stored);
// The printer stored for a report (PRINTER_NM of S_REP), "" when none.
QString storedPrinter(int repId);
// Orientation of the current report (gREP_ID) from L_REP and its paper bin
// from S_REP on the page target; any failure is passed over.
void SetPageSetup(PageTarget &target);
// The unprintable margin of the target's printer in twips; 0 when it has no
// device (a PDF file).
void GetPrintOffset(PageTarget &target, double &left, double &top);
// Device pixels to whole millimetres; 0 without a device.
int PixelToMmX(const QPaintDevice *device, double pixels);
int PixelToMmY(const QPaintDevice *device, double pixels);
// Millimetres to whole twips.
int MmToTwips(int mm);

// The report's margins in twips from S_REP, 0 when not set.
struct Margins {
    double left = 0, top = 0;
};
Margins reportMargins(int repId);

// What S_REP keeps of a report on this computer: margins (twips), printer
// and paper bin.
struct ReportSettings {
    bool stored = false; // the report has a row
    double top = 0, left = 0;
    QString printer;
    Value paperBin; // Null as 0
};
ReportSettings reportSettings(int repId);
// Writes the report's row in one transaction of the settings database, made
// when missing: no printer as Null, no bin as 0.
void saveReportSettings(int repId, const ReportSettings &settings);

// The paper of a report from L_REP (twips; 0 when the report has no row),
// and its name.
struct ReportPaper {
    QString name;
    double width = 0, height = 0;
    int orientation = 0; // 1 portrait, 2 landscape, else as it comes
};
ReportPaper reportPaper(int repId);

// Writes pages first..last of the report into a PDF file on the report's
// paper, each page in its own page of the file, with the report's margins.
// A page the report leaves empty is an empty page of the file. Raises an
// error when the file can't be written; nothing then stands under its name.
// Stopped through the progress callback (between pages): false, and no file.
bool SaveReportPdf(int repId, const QString &path, int firstPage, int lastPage, const ProgressFn &progress = {});

// Margins shown in centimetres and kept in twips, 567 to the centimetre.
constexpr double kTwipsPerCm = 567;
double cmToTwips(const QString &cmText); // a text that is no number is 0
QString twipsToCmText(double twips);     // to the precision of the currency type
