#pragma once
// A report of lines in columns on pages of its paper: a title, the owner and
// the period under it, the heads of the columns on every page, the lines as
// many a page as fit, and the page number at the foot. The books' reports
// (trial balance, income statement) are made of it.

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
    Alert     // the first cell across the line, bold in a red frame
};

struct Row {
    QStringList cells;
    Style style = Style::Plain;
    // The row goes on the page of the row after it (a heading, the first
    // lines of a closing block).
    bool keepWithNext = false;
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
// the next page, unless they would fill it alone.
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

} // namespace TablePages
