#include "rules/print/TraceReport.h"

#include "base/Value.h"
#include "rules/print/modPrinter.h"

#include <QDate>
#include <QHash>

namespace TraceReport {

namespace {

using TablePages::Row;
using TablePages::Style;

// The columns of every block: a day, then five of the block's own (a block
// joins some with the spans of its rows). A4 less the margins.
const QVector<TablePages::Column> kColumns = {
    {QString(), 1250, 2}, {QString(), 2000, 0}, {QString(), 1250, 0},
    {QString(), 2000, 0}, {QString(), 1300, 1}, {QString(), 1838, 2},
};

// A text cut into lines of the width of `columns` columns from `first` on,
// at the size of the report's cells: a narrow character is half a wide one,
// a line break of the text breaks the line.
QStringList wrapped(const QString &text, int first, int columns)
{
    double width = -60;
    for (int c = first; c < first + columns; ++c)
        width += kColumns[c].width;
    const int units = std::max(2, int(width / 95)); // 9.5 pt: a narrow character is 95 twips
    QStringList out;
    for (const QString &para : text.split(QLatin1Char('\n'))) {
        QString line;
        int used = 0;
        for (const QChar ch : para) {
            if (ch == QLatin1Char('\r'))
                continue;
            const int w = ch.unicode() < 0x80 || (ch.unicode() >= 0xFF61 && ch.unicode() <= 0xFF9F) ? 1 : 2;
            if (used + w > units) {
                out << line;
                line.clear();
                used = 0;
            }
            line += ch;
            used += w;
        }
        out << line;
    }
    return out;
}

// A row whose last cell may run over several lines: the lines after the
// first stand alone in the last cell's place.
void wrappedRow(TablePages::Document &doc, QStringList cells, const QVector<int> &spans)
{
    int first = 0;
    for (int i = 0; i + 1 < cells.size(); ++i)
        first += spans.value(i, 1);
    const QStringList lines = wrapped(cells.last(), first, spans.value(cells.size() - 1, 1));
    cells.last() = lines.first();
    doc.rows.append({cells, Style::Plain, false, spans});
    QStringList blank;
    for (int i = 0; i + 1 < cells.size(); ++i)
        blank << QString();
    for (int i = 1; i < lines.size(); ++i)
        doc.rows.append({blank + QStringList{lines[i]}, Style::Plain, false, spans});
}

QString total(const QVector<TraceHistory::Shipment> &ships, QString TraceHistory::Shipment::*field)
{
    double sum = 0;
    for (const TraceHistory::Shipment &s : ships) {
        double n = 0;
        if (parseNumber(s.*field, n))
            sum += n;
    }
    return Value(sum).toText();
}

TablePages::Document &document()
{
    static TablePages::Document d;
    return d;
}

} // namespace

TablePages::Document pages(const TraceHistory::History &h)
{
    using Block = TraceHistory::Block;
    TablePages::Document doc;
    doc.title = QStringLiteral("生産履歴");
    doc.owner = QStringLiteral("生産者: ") + h.farmerName;
    doc.period = QStringLiteral("%1年　作付 %2").arg(h.year).arg(textOf(h.plantId));
    doc.columns = kColumns;

    doc.rows.append({{QStringLiteral("作付")}, Style::Heading, true});
    for (const auto &f : TraceHistory::facts(h))
        wrappedRow(doc, {f.first, f.second}, {1, 5});
    for (const Block &b : TraceHistory::blocks(h)) {
        // Where the cells of each block go: the day, then the columns joined.
        static const QHash<int, QVector<int>> spans{{Block::Work, {1, 1, 4}},
                                                    {Block::Sprays, {1, 1, 1, 2, 1}},
                                                    {Block::Uses, {1, 1, 4}},
                                                    {Block::Shipments, {1, 1, 2, 1, 1}}};
        const QVector<int> span = spans.value(b.kind);
        doc.rows.append({{b.title}, b.kind == Block::Uses ? Style::Note : Style::Heading, true});
        if (b.rows.isEmpty()) {
            doc.rows.append({{b.empty}, Style::Note});
            continue;
        }
        doc.rows.append({b.heads, Style::Heads, true, span});
        for (const QStringList &r : b.rows)
            wrappedRow(doc, r, span);
        if (b.kind == Block::Shipments)
            doc.rows.append({{QStringLiteral("計"), QStringLiteral("%1件").arg(h.shipments.size()), QString(),
                              total(h.shipments, &TraceHistory::Shipment::quantity),
                              total(h.shipments, &TraceHistory::Shipment::returned)},
                             Style::Subtotal,
                             false,
                             span});
    }
    return doc;
}

int prepare(int year, const Value &plantId, const Value &farmer)
{
    if (!hasValue(plantId) || plantId.toDouble() == 0)
        return 0;
    const QVector<TraceHistory::History> found = TraceHistory::readYear(year, plantId, DateUtil::today().date());
    if (found.isEmpty())
        return 0;
    const TraceHistory::History *chosen = &found.first();
    for (const TraceHistory::History &h : found)
        if (hasValue(farmer) && isNumber(h.farmer, farmer.toDouble()))
            chosen = &h;
    document() = pages(*chosen);
    return TablePages::pageCount(document());
}

void registerReport()
{
    setReportPainter(kTraceReport, [](PrintTarget &target, double left, double top, int first, int last) {
        TablePages::drawPages(target, left, top, document(), first, last);
    });
}

} // namespace TraceReport
