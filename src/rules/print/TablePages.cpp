#include "rules/print/TablePages.h"

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

} // namespace

int Layout::rowsPerPage() const { return std::max(1, int((footTop() - 100 - bodyTop()) / rowHeight)); }

namespace {
QVector<Span> pages(const Document &doc, const Layout &layout)
{
    const int per = layout.rowsPerPage(), n = int(doc.rows.size());
    QVector<Span> out;
    for (int first = 0; first < n || out.isEmpty();) {
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
    const double headY = top + layout.headTop();
    target.Line(x0, headY, x0 + width, headY + layout.rowHeight + 40, kHeadFill, LineShape::FilledBox);
    target.Line(x0, headY, x0 + width, headY + layout.rowHeight + 40, Qt::black, LineShape::Box);
    target.setFontBold(true);
    double x = x0;
    for (const Column &c : doc.columns) {
        PrintFitText(target, x, headY + 20 + (layout.rowHeight - kHeadSize * 20) / 2, c.head, 2, kHeadSize, c.width);
        x += c.width;
    }
    target.setFontBold(false);

    const Span span = pageRows(doc, page, layout);
    const double textDrop = (layout.rowHeight - kCellSize * 20) / 2;
    for (int i = 0; i < span.count; ++i) {
        const Row &row = doc.rows[span.first + i];
        const double y = top + layout.bodyTop() + i * layout.rowHeight;
        const bool bold = row.style != Style::Plain && row.style != Style::Note;
        target.setFontBold(bold);
        if (row.style == Style::Subtotal || row.style == Style::Total)
            target.Line(x0, y, x0 + width, y, Qt::black);
        if (row.style == Style::Total)
            target.Line(x0, y + 30, x0 + width, y + 30, Qt::black);
        if (acrossTheLine(row.style)) {
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
            x = x0;
            for (int c = 0; c < doc.columns.size(); ++c) {
                const Column &col = doc.columns[c];
                const QString text = row.cells.value(c);
                if (!text.isEmpty())
                    PrintFitText(target, x, y + textDrop, text, col.align, kCellSize, col.width);
                x += col.width;
            }
        }
        if (row.style == Style::Plain)
            target.Line(x0, y + layout.rowHeight, x0 + width, y + layout.rowHeight, kRule);
    }
    target.setFontBold(false);

    PrintFitText(target, x0, top + layout.footTop(), QStringLiteral("%1 / %2").arg(page).arg(count), 2, kSubSize, width);
}

} // namespace TablePages
