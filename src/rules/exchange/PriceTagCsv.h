#pragma once
// The price tag rows of a period written as a CSV file for an outside label
// printer: one line a row, in the system code page, no head line. The period
// opens where the last export ended, and the folder is remembered.
#include "base/Progress.h"
#include "base/Value.h"
#include "rules/print/PriceTag.h"

#include <QDateTime>
#include <QString>
#include <QVector>

namespace PriceTagCsv {

// The period the export offers.
struct Period {
    QDateTime first, last;
};
// From the last export and the latest shipment: the day after the last
// export (the same day again when it was today) to the latest shipment, or
// today alone when nothing was shipped since.
Period period(const QDateTime &today, const QDateTime &lastExport, const QDateTime &latestShipment);
// The period as the dialog opens: the last export kept on this computer
// (today when none) and the latest shipment of the farmer to the shop
// (today when none).
Period openingPeriod(const QDateTime &today, const Value &farmer, const Value &shop);

// The output folder kept on this computer ("" when none), and keeping it.
QString folder();
void saveFolder(const QString &folder);

// How the file's text is encoded: the farms' code page (Shift-JIS, a
// character it lacks written as "?"), or UTF-8 with a byte order mark for
// programs that expect it. The choice is kept on this computer.
enum class Encoding { CodePage, Utf8Bom };
Encoding encoding();
void saveEncoding(Encoding e);
// Keeps the last day exported, as typed.
void saveLastExport(const QString &lastDay);

// The shipments of a period of a farmer to a shop.
QString periodRowsSql(const QDateTime &first, const QDateTime &last, const Value &farmer, const Value &shop);
// Reads them into the tag rows (gPTAG_ROWS, one set); their number. With
// none the tag rows stay as they were; -1 when stopped through the progress
// callback.
int loadPeriodRows(const QDateTime &first, const QDateTime &last, const Value &farmer, const Value &shop,
                   const ProgressFn &progress = {});

// "yymmdd-yymmdd-farmer-shop.csv"
QString fileName(const QDateTime &first, const QDateTime &last, const Value &farmer, const Value &shop);
// One line of the file, without its line end: 24 fields, text in double
// quotes as it stands, numbers and amounts bare, booleans and dates between
// # signs.
QString csvLine(const PriceTagRow &row);
// The bytes of the file: every line with CR LF, in the encoding.
QByteArray csvBytes(const QVector<PriceTagRow> &rows, Encoding encoding);
// Writes the rows to the file, replacing a file that is there without a
// question. The new file takes the old one's place only when it is complete:
// a failure leaves an earlier file as it was. False, with the reason in
// Japanese, when it can't be written.
bool writeCsv(const QString &path, const QVector<PriceTagRow> &rows, Encoding encoding, QString *error = nullptr);

// An export as the dialog asks for it: the two days and the folder as typed.
struct Request {
    QString first, last, folder;
    Value farmer, shop;
    Encoding encoding = Encoding::CodePage;
    ProgressFn progress; // stopped while the rows are made, nothing is written
};
// What came of it: the rows written, or the refusal with the field it
// concerns (0 first day, 1 last day, 2 folder, -1 none).
struct Outcome {
    int written = 0;
    QString refusal;
    int field = -1;
    QString path; // the file written
};
// Checks the request in order (first day, last day, rows, folder), reads
// the rows and writes the file named after the period into the folder.
Outcome exportRows(const Request &request);

} // namespace PriceTagCsv
