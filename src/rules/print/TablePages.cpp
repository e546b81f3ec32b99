#include "rules/print/TablePages.h"

#include "base/Globals.h"
#include "rules/print/PageTarget.h"
#include "rules/print/modPrinter.h"

#include <QColor>

#include <algorithm>

namespace TablePages {

namespace {

constexpr double kTitleSize = 16, kSubSize = 10, kHeadSize = 9.5, kCellSize = 9.5;
const QColor kHeadFill(230, 230, 230);
const QColor kRule(160, 160, 160);
const QColor kAlert(200, 0, 0);

double tableWidth(const Document &doc)
{
    double w = 0;
    for (const Column &c : doc.columns)
        w += c.width;
    return w;
}

bool acrossTheLine(Style s) { return s == Style::Heading || s == Style::Note || s == Style::Alert; }

bool hasHeads(const Document &doc)
{
    for (const Column &c : doc.columns)
        if (!c.head.isEmpty())
            return true;
    return false;
}

// The cells of a row at their places: x, width and alignment of each.
struct Cell {
    QString text;
    double x, width;
    int align;
};
QVector<Cell> cellsOf(const Row &row, const Document &doc, double x0)
{
    QVector<Cell> out;
    double x = x0;
    int column = 0;
    for (int i = 0; i < row.cells.size() && column < doc.columns.size(); ++i) {
        const int span = std::max(1, row.spans.value(i, 1));
        Cell c{row.cells[i], x, 0, doc.columns[column].align};
        for (int k = 0; k < span && column < doc.columns.size(); ++k)
            c.width += doc.columns[column++].width;
        x += c.width;
        out.append(c);
    }
    return out;
}

// A grey band with the heads in bold, centred in their cells.
void drawHeads(PrintTarget &target, double x0, double y, double width, double height, const QVector<Cell> &cells)
{
    target.Line(x0, y, x0 + width, y + height, kHeadFill, LineShape::FilledBox);
    target.Line(x0, y, x0 + width, y + height, Qt::black, LineShape::Box);
    target.setFontBold(true);
    for (const Cell &c : cells)
        PrintFitText(target, c.x, y + (height - kHeadSize * 20) / 2, c.text, 2, kHeadSize, c.width);
    target.setFontBold(false);
}

} // namespace

int Layout::rowsPerPage() const { return std::max(1, int((footTop() - 100 - bodyTop()) / rowHeight)); }

namespace {
// The heads a page repeats when it goes on with the lines under them: the
// Heads row of the block its first line belongs to; -1 for none.
int repeatedHeads(const Document &doc, int first)
{
    if (first <= 0 || first >= doc.rows.size() || doc.rows[first].style == Style::Heads ||
        acrossTheLine(doc.rows[first].style))
        return -1;
    for (int i = first - 1; i >= 0; --i) {
        if (doc.rows[i].style == Style::Heads)
            return i;
        if (acrossTheLine(doc.rows[i].style))
            return -1;
    }
    return -1;
}

QVector<Span> pages(const Document &doc, const Layout &layout)
{
    const int n = int(doc.rows.size());
    QVector<Span> out;
    for (int first = 0; first < n || out.isEmpty();) {
        const int per = std::max(1, layout.rowsPerPage() - (repeatedHeads(doc, first) >= 0 ? 1 : 0));
        int end = std::min(n, first + per);
        if (end < n) {
            int kept = end;
            while (kept > first + 1 && doc.rows[kept - 1].keepWithNext)
                --kept;
            if (kept > first + 1 || !doc.rows[first].keepWithNext)
                end = kept;
        }
        out.append({first, end - first});
        first = end;
        if (n == 0)
            break;
    }
    return out;
}
} // namespace

int pageCount(const Document &doc, const Layout &layout) { return int(pages(doc, layout).size()); }

Span pageRows(const Document &doc, int page, const Layout &layout)
{
    const QVector<Span> all = pages(doc, layout);
    return page >= 1 && page <= all.size() ? all[page - 1] : Span();
}

void drawPage(PrintTarget &target, double left, double top, const Document &doc, int page, const Layout &layout)
{
    const int count = pageCount(doc, layout);
    if (page < 1 || page > count)
        return;
    const double x0 = left + layout.margin;
    const double width = tableWidth(doc);
    const double y0 = top + layout.margin;
    target.DrawWidth = 1;
    target.DrawStyle = 0;

    target.setFontBold(true);
    PrintFitText(target, x0, y0, doc.title, 2, kTitleSize, width);
    target.setFontBold(false);
    PrintFitText(target, x0, y0 + 520, doc.owner, 0, kSubSize, width / 2);
    PrintFitText(target, x0 + width / 2, y0 + 520, doc.period, 1, kSubSize, width / 2);

    // The heads of the columns in a grey band.
    if (hasHeads(doc)) {
        Row heads;
        for (const Column &c : doc.columns)
            heads.cells << c.head;
        drawHeads(target, x0, top + layout.headTop(), width, layout.rowHeight + 40, cellsOf(heads, doc, x0));
    }

    const Span span = pageRows(doc, page, layout);
    const int heads = repeatedHeads(doc, span.first);
    const int shift = heads >= 0 ? 1 : 0;
    const double textDrop = (layout.rowHeight - kCellSize * 20) / 2;
    for (int i = -shift; i < span.count; ++i) {
        const Row &row = doc.rows[i < 0 ? heads : span.first + i];
        const double y = top + layout.bodyTop() + (i + shift) * layout.rowHeight;
        const bool bold = row.style != Style::Plain && row.style != Style::Note && row.style != Style::Heads;
        target.setFontBold(bold);
        if (row.style == Style::Subtotal || row.style == Style::Total)
            target.Line(x0, y, x0 + width, y, Qt::black);
        if (row.style == Style::Total)
            target.Line(x0, y + 30, x0 + width, y + 30, Qt::black);
        if (row.style == Style::Heads) {
            drawHeads(target, x0, y + 10, width, layout.rowHeight - 10, cellsOf(row, doc, x0));
        } else if (acrossTheLine(row.style)) {
            const QString text = row.cells.value(0);
            if (row.style == Style::Alert) {
                target.setFontSize(kCellSize);
                const double w = std::min(width, target.TextWidth(text) + 200);
                target.Line(x0, y + 10, x0 + w, y + layout.rowHeight - 10, kAlert, LineShape::Box);
                target.Line(x0 + 15, y + 25, x0 + w - 15, y + layout.rowHeight - 25, kAlert, LineShape::Box);
            }
            PrintFitText(target, x0 + (row.style == Style::Alert ? 60 : 0), y + textDrop, text, 0, kCellSize,
                         row.style == Style::Alert ? width - 60 : width);
        } else {
            for (const Cell &c : cellsOf(row, doc, x0))
                if (!c.text.isEmpty())
                    PrintFitText(target, c.x, y + textDrop, c.text, c.align, kCellSize, c.width);
        }
        if (row.style == Style::Plain)
            target.Line(x0, y + layout.rowHeight, x0 + width, y + layout.rowHeight, kRule);
    }
    target.setFontBold(false);

    PrintFitText(target, x0, top + layout.footTop(), QStringLiteral("%1 / %2").arg(page).arg(count), 2, kSubSize, width);
}

void drawPages(PrintTarget &target, double left, double top, const Document &doc, int firstPage, int lastPage)
{
    for (int page = std::max(1, firstPage); page <= lastPage && page <= pageCount(doc); ++page) {
        SetAppTitle(QStringLiteral("%1 %2ﾍﾟｰｼﾞ").arg(doc.title).arg(page));
        struct TitleBack {
            ~TitleBack() { SetAppTitle(QStringLiteral("Tillora")); }
        } titleBack;
        double offsetLeft = 0, offsetTop = 0;
        if (auto *printer = dynamic_cast<PageTarget *>(&target)) {
            GetPrintOffset(*printer, offsetLeft, offsetTop);
            SetPageSetup(*printer);
        }
        drawPage(target, left - offsetLeft, top - offsetTop, doc, page);
        target.EndDoc();
    }
}

} // namespace TablePages
