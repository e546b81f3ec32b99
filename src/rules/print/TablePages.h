#pragma once
// A report of lines in columns on pages of its paper: a title, the owner and
// the period under it, the heads of the columns on every page (none when no
// column has a head), the lines as many a page as fit, and the page number
// at the foot. The books' reports (trial balance, income statement) and the
// production history are made of it.

#include "rules/print/PrintTarget.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace TablePages {

struct Column {
    QString head;
    double width; // twips
    int align;    // 0 left, 1 right, 2 centre
};

enum class Style {
    Plain,    // one cell a column
    Heading,  // the first cell, bold, across the line
    Subtotal, // bold, with a rule above
    Total,    // bold, with a double rule above
    Note,     // the first cell across the line
    Alert,    // the first cell across the line, bold in a red frame
    Heads     // heads of the lines below, in the grey band of the column heads
};

struct Row {
    Row() = default;
    Row(const QStringList &cells, Style style = Style::Plain, bool keepWithNext = false, const QVector<int> &spans = {})
        : cells(cells), style(style), keepWithNext(keepWithNext), spans(spans)
    {
    }
    QStringList cells;
    Style style = Style::Plain;
    // The row goes on the page of the row after it (a heading, the first
    // lines of a closing block).
    bool keepWithNext = false;
    // How many columns each cell covers (1 for a cell not named); its text
    // takes the alignment of the first. Empty: one cell a column.
    QVector<int> spans;
};

struct Document {
    QString title;
    QString owner;  // at the left under the title
    QString period; // at the right under the title
    QVector<Column> columns;
    QVector<Row> rows;
};

// Where things go on a page of the paper (twips).
struct Layout {
    double paperWidth = 11906, paperHeight = 16838; // A4 portrait
    double margin = 1134;                           // 2 cm around
    double rowHeight = 300;
    double headTop() const { return margin + 900; }          // the column heads
    double bodyTop() const { return headTop() + rowHeight + 40; }
    double footTop() const { return paperHeight - margin - 200; }
    int rowsPerPage() const;
};

// The pages the rows need (1 at least: an empty report is one page). A page
// takes as many rows as fit, less those at its end that keep with a row of
// the next page, unless they would fill it alone. A page that goes on with
// the lines under a Heads row shows those heads again above them.
int pageCount(const Document &doc, const Layout &layout = Layout());
// The rows of a page, counted from 1: their first index and how many.
struct Span {
    int first = 0, count = 0;
};
Span pageRows(const Document &doc, int page, const Layout &layout = Layout());

// Draws one page with its top left corner at (left, top); a page beyond the
// report draws nothing.
void drawPage(PrintTarget &target, double left, double top, const Document &doc, int page,
              const Layout &layout = Layout());

// Draws the pages first..last of the report as the common preview and the
// printer ask for them; on the printer each page is a job of its own, named
// after the report's title and the page, with its offset taken off and the
// page set up for the current report.
void drawPages(PrintTarget &target, double left, double top, const Document &doc, int firstPage, int lastPage);

} // namespace TablePages
