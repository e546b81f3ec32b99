#pragma once
// Price tags apart from their screens: the rows read from a day's (or a
// period's) shipments, the flat list of labels of a run and the sheet
// arithmetic. The CSV file of the rows is written by the exchange rules.
#include "base/Progress.h"
#include "base/Currency.h"
#include "base/Value.h"
#include "rules/print/modPrinter.h"
#include "store/Recordset.h"

#include <QDateTime>
#include <QPointF>
#include <QString>
#include <QVector>

struct PriceTagLabel {
    QString Code;   // the shop's 13-digit code; a label without one prints nothing
    QString QrText; // the trace address, empty when the shop has no web address
    QString FmrNm;
    QString Tel;
    QString PrdNm;
    Currency Price;
    // Fields kept for the export's fixed columns; always empty or 0.
    QString Label2, Label3;
    Currency Price2;
    qint16 Opt1 = 0;
    QString Label4;
    qint16 Opt2 = 0;
    QDateTime LabelDate;
    QString Label5;
    QString Locate; // place of origin
    bool Plas = false;

    bool isBlank() const { return Code.isEmpty(); }
};

struct PriceTagRow {
    bool Flag = false;
    qint16 RepId = kPriceTagReport;
    qint32 Extra1 = 0;
    qint32 FmrId = 0;
    qint32 PrdId = 0;
    QString PrdNm;
    qint16 Extra2 = 0;
    qint32 Qty = 0;
    PriceTagLabel Label;
};

struct PriceTagSet {
    qint16 Skip = 0; // labels left blank at the start of the first sheet
    QVector<PriceTagRow> Rows;
};

// Only element 0 is used.
extern QVector<PriceTagSet> gPTAG_ROWS;
// The labels of a run, skipped places included (as blank labels).
extern QVector<PriceTagLabel> gLABEL_LIST;

namespace PriceTag {
constexpr int PerSheet = 24;
constexpr int PerColumn = 8;
constexpr double Width = 3742.2;  // 66.0 mm
constexpr double Height = 1922.13; // 33.9 mm
}

// Builds gPTAG_ROWS[0].Rows from a set of D_SHIP rows, in their order.
// Stopped through the progress callback: false, the rows incomplete.
bool SetPriceTagRows(Recordset &rs, const ProgressFn &progress = {});
// Expands the rows into gLABEL_LIST: the skipped places, then each row's
// label once for every unit shipped (rows without a code give none).
void SetLabelList();

// Labels and sheets of a run: the skipped places count, rows of 0 add none.
struct TagTotals {
    int labels = 0;
    int pages = 0;
};
TagTotals tagTotals(int skip, const QVector<PriceTagRow> &rows);
int pagesFor(int labels);

// The labels of one sheet: the first and last index into gLABEL_LIST, or
// first > last when the sheet is empty.
struct SheetRange {
    int first = 0;
    int last = -1;
};
SheetRange sheetRange(int page, int listSize);
// Where label i of its sheet stands (top left, twips), from the sheet's corner.
QPointF labelOrigin(int index);

// The shipments of one day for the tag sheet, of one farmer when farmer
// holds a code (else of all).
QString dayRowsSql(const QDateTime &day, const Value &farmer = Value());

// The skip typed in the sheet dialog: its leading number, taken as 0 when it
// is no number or below 0, and at most 999.
qint16 skipValue(const QString &text);
// Reads the shipments of a day (of one farmer when farmer holds an id) into
// gPTAG_ROWS, one set with the skip, and gives the sheet's totals.
TagTotals loadPriceTagDay(const QDateTime &day, qint16 skip, const Value &farmer = Value());
