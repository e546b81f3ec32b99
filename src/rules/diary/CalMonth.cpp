#include "rules/diary/CalMonth.h"

#include "rules/common/Ids.h"
#include "rules/common/Pictures.h"
#include "rules/pesticide/SprayCheck.h"
#include "store/Database.h"
#include "store/Stmt.h"

#include <QHash>
#include <QPainter>

#include <optional>

namespace CalMonth {

namespace {

constexpr double kTwipsPerPixel = 15.0;
double px(double twips) { return twips / kTwipsPerPixel; }

// Colours as the program gives them: the red of the Sundays, the blue of the
// Saturdays, the pale yellow of today, the green of the temperature bar.
const QColor kRed(255, 0, 0);
const QColor kBlue(0, 0, 255);
const QColor kToday(255, 255, 127);
const QColor kBar(0, 255, 0);
// The canvas's own colour: a warm paper tone, on which the header's white
// shadow shows.
const QColor kPaper(0xF6, 0xF3, 0xEA);

QColor columnColour(int col)
{
    if (col == 0)
        return kRed;
    if (col == 6)
        return kBlue;
    return Qt::black;
}

// Where the top of a Japanese character stands below the top of its line,
// as a part of the font size: the line's own leading is left out.
constexpr double kEmTop = 0.88;
// The weekday letters' size, as a part of the header's height: room for the
// shadow and clear of the line below.
constexpr double kHeaderLetter = 0.7;

// The text broken into lines of the width, a character at a time; when it
// needs more than the lines, the last one ends in "…".
QStringList fitLines(const QString &text, const QFontMetricsF &fm, double width, int maxLines)
{
    QStringList lines;
    QString current;
    int i = 0;
    while (i < text.size()) {
        const int n = text[i].isHighSurrogate() && i + 1 < text.size() ? 2 : 1;
        const QString ch = text.mid(i, n);
        if (!current.isEmpty() && fm.horizontalAdvance(current + ch) > width) {
            if (lines.size() + 1 == maxLines)
                return lines << fm.elidedText(current + text.mid(i), Qt::ElideRight, width);
            lines << current;
            current.clear();
        }
        current += ch;
        i += n;
    }
    if (!current.isEmpty())
        lines << current;
    return lines;
}

// fitLines for a font, kept: a month shows the same lines redraw after
// redraw, and measuring them a character at a time is most of the drawing.
QStringList keptLines(const QString &text, const QFont &font, double width, int maxLines)
{
    static QHash<QString, QStringList> kept;
    const QString key = QStringLiteral("%1 %2 %3\n").arg(font.key()).arg(width).arg(maxLines) + text;
    auto it = kept.constFind(key);
    if (it != kept.constEnd())
        return *it;
    if (kept.size() >= 512)
        kept.clear();
    return *kept.insert(key, fitLines(text, QFontMetricsF(font), width, maxLines));
}

QFont pointFont(const QFont &base, double points)
{
    QFont f = base;
    f.setPointSizeF(std::max(0.5, points));
    return f;
}

} // namespace

Geometry geometry(const QDate &monthFirst, int canvasW, int canvasH)
{
    Geometry g;
    g.canvasW = canvasW;
    g.canvasH = canvasH;
    g.firstCol = monthFirst.dayOfWeek() % 7;
    g.days = monthFirst.daysInMonth();
    g.rows = (g.firstCol + g.days - 1) / 7 + 1;
    g.headerH = canvasH / 10;
    g.cellH = (canvasH - g.headerH) / g.rows;
    g.cellW = canvasW / 7;
    return g;
}

int dayAt(const Geometry &g, int x, int y)
{
    if (y < g.headerH || g.cellW <= 0 || g.cellH <= 0 || x < 0)
        return 0;
    const int col = x / g.cellW;
    const int row = (y - g.headerH) / g.cellH;
    const int day = row * 7 + col - g.firstCol + 1;
    return (day >= 1 && day <= g.days) ? day : 0;
}

Options loadOptions()
{
    Options o;
    for (int i = 0; i < 5; ++i) {
        const Value v = gINI->GetCtrl(QStringLiteral("CAL_OPT%1").arg(i));
        o.on[i] = hasValue(v) && IsNumeric(v) && v.toDouble() != 0;
    }
    return o;
}

void saveOption(int index, bool on)
{
    int type = 0;
    gINI->SaveCtrl(QStringLiteral("CAL_OPT%1").arg(index), Value(on ? 1 : 0), type);
}

namespace {

// The days of the month that one mark's statement finds: its distinct dates
// of the month, read in one statement. Only a date without a time of day
// marks its day, as a day's own condition (column = the day) finds it.
QVector<bool> markedDays(const char *column, const char *table, const Stmt &condition, const QDate &first,
                         const QDate &last)
{
    QVector<bool> days(32, false);
    const QString col = QString::fromLatin1(column);
    RecordsetPtr rs = gDB->GetFwdOnlyRst(Stmt("SELECT DISTINCT ? FROM ? WHERE ? AND ?>=? AND ?<=?")
                                             .name(col)
                                             .name(QString::fromLatin1(table))
                                             .part(condition)
                                             .name(col)
                                             .day(DateUtil::fromDate(first))
                                             .name(col)
                                             .day(DateUtil::fromDate(last)));
    for (; !rs->eof(); rs->MoveNext()) {
        const Value v = rs->Fields(0);
        if (!hasValue(v))
            continue;
        const QDateTime at = v.toDate();
        if (at.time() == QTime(0, 0) && at.date() >= first && at.date() <= last)
            days[at.date().day()] = true;
    }
    rs->Close();
    return days;
}

} // namespace

QVector<Cell> collect(const Geometry &g, const QDate &monthFirst, const QDate &today, const Value &fmrId,
                      const Options &options, const Value &plantId)
{
    const bool currentMonth = monthFirst.toString(QStringLiteral("yyyyMM")) == today.toString(QStringLiteral("yyyyMM"));
    const int todayNo = currentMonth ? today.day() : 0;
    const QDate monthLast = monthFirst.addDays(monthFirst.daysInMonth() - 1);
    const Stmt plantTerm = hasValue(plantId) && plantId.toLong() != 0 ? Stmt(" AND PLANT_ID=?").num(plantId) : Stmt("");

    // The farmer's pages of the month: a day shows the first page dated
    // that day, at midnight (as a search for the day finds it). Only the
    // month's pages are read, so the redraw stays as quick after ten years
    // as in the first.
    struct Page {
        Value wthId, loTmp, hiTmp, oneMsg;
    };
    QVector<std::optional<Page>> pages(32);
    {
        RecordsetPtr rs = gDB->GetFwdOnlyRst(
            Stmt("SELECT D_DIARY.* FROM D_DIARY WHERE FMR_ID=? AND WORK_DATE>=? AND WORK_DATE<=? ORDER BY WORK_DATE")
                .num(fmrId)
                .day(DateUtil::fromDate(monthFirst))
                .day(DateUtil::fromDate(monthLast)));
        for (; !rs->eof(); rs->MoveNext()) {
            const Value at = rs->Fields(QStringLiteral("WORK_DATE"));
            if (!at.isDateType())
                continue;
            const QDateTime when = at.toDate();
            if (when.time() != QTime(0, 0) || when.date() < monthFirst || when.date() > monthLast)
                continue;
            std::optional<Page> &page = pages[when.date().day()];
            if (!page)
                page = Page{rs->Fields(QStringLiteral("WTH_ID")), rs->Fields(QStringLiteral("LO_TMP")),
                            rs->Fields(QStringLiteral("HI_TMP")), rs->Fields(QStringLiteral("ONE_MSG"))};
        }
        rs->Close();
    }
    // The marks, each read for the whole month in one statement (a day has
    // its mark when one row of the month falls on it):
    // a slip marks the day when it moves cash or the deposit; the pesticide
    // and shipment marks follow the planting's condition (or nothing).
    const QVector<bool> none(32, false);
    const QVector<bool> money =
        options.on[2] ? markedDays("LEDGE_DATE", "D_LEDGE",
                                   Stmt(" FMR_ID = ? AND ((D_ACC_ID IN(?))  OR (C_ACC_ID IN(?)))")
                                       .num(fmrId)
                                       .ids({Value(Acc::Cash), Value(Acc::Deposit)})
                                       .ids({Value(Acc::Cash), Value(Acc::Deposit)}),
                                   monthFirst, monthLast)
                      : none;
    const QVector<bool> chemi =
        options.on[3] ? markedDays("WORK_DATE", "D_DIARY_DTL", Stmt(" FMR_ID = ? AND CHEMI_ID>0?").num(fmrId).part(plantTerm),
                                   monthFirst, monthLast)
                      : none;
    const QVector<bool> ship =
        options.on[4]
            ? markedDays("SHIP_DATE", "D_SHIP", Stmt(" FMR_ID = ??").num(fmrId).part(plantTerm), monthFirst, monthLast)
            : none;
    // The days whose sprayings break their registration: their pesticide
    // mark turns red (looked for only when the month has a pesticide mark).
    const QVector<QDate> warned = chemi.contains(true)
                                      ? Spray::warnedDays(fmrId, plantId, monthFirst, monthLast, today)
                                      : QVector<QDate>();
    QVector<Cell> cells;
    for (int n = 0; n < 42; ++n) {
        const int col = n % 7, row = n / 7;
        const int day = n - g.firstCol + 1;
        if (day < 1 || day > g.days)
            continue;
        Cell c;
        c.day = day;
        c.x = col * g.cellW;
        c.y = row * g.cellH + g.headerH;
        c.today = day == todayNo;
        const QDate date = monthFirst.addDays(day - 1);
        if (const std::optional<Page> &page = pages[day]) {
            c.hasRow = true;
            c.wthId = page->wthId;
            c.loTmp = page->loTmp;
            c.hiTmp = page->hiTmp;
            c.oneMsg = page->oneMsg;
        }
        c.money = money[day];
        c.chemi = chemi[day];
        c.chemiWarn = c.chemi && warned.contains(date);
        c.ship = ship[day];
        cells.append(c);
    }
    return cells;
}

void paint(QPainter &p, const Geometry &g, const QVector<Cell> &cells, const Options &options)
{
    p.save();
    p.fillRect(QRectF(0, 0, px(g.canvasW), px(g.canvasH)), kPaper);
    const double s = g.cellH / 4.0; // mark size, twips
    const QFont base = p.font();
    for (const Cell &c : cells) {
        const double x = c.x, y = c.y;
        if (c.today)
            p.fillRect(QRectF(px(x + 40), px(y + 40), px(g.cellW - 80), px(g.cellH - 80)), kToday);
        if (c.hasRow && options.on[0]) {
            // 40 degrees at the top of the cell, -10 at the bottom
            auto level = [&](const Value &t) { return y + g.cellH * (40 - Nz(t, Value(0)).toDouble()) / 50; };
            const double top = level(c.hiTmp), bottom = level(c.loTmp);
            p.fillRect(QRectF(px(x), px(std::min(top, bottom)), px(g.cellW), px(std::fabs(bottom - top))), kBar);
        }
        if (c.hasRow && options.on[1] && !c.wthId.isNull() && IsNumeric(c.wthId)) {
            const int w = c.wthId.toLong();
            if (w >= 1 && w <= 10)
                Pictures::drawWeather(p, QRectF(px(x), px(y), px(s), px(s)), w);
        }
        if (c.hasRow && !c.oneMsg.isNull()) {
            // The line of the day in the lower half, at most two lines of
            // the mark size; what does not fit ends in "…", and nothing
            // is drawn outside the cell.
            p.save();
            p.setClipRect(QRectF(px(x), px(y), px(g.cellW), px(g.cellH)));
            p.setFont(pointFont(base, s / 20));
            p.setPen(Qt::black);
            const QStringList lines = keptLines(c.oneMsg.toText(), p.font(), px(g.cellW), 2);
            for (int i = 0; i < lines.size(); ++i)
                p.drawText(QPointF(px(x), px(y + g.cellH / 2.0 + i * s) + kEmTop * px(s)), lines[i]);
            p.restore();
        }
        if (c.money && options.on[2])
            Pictures::drawMark(p, QRectF(px(x), px(y + s), px(s), px(s)), 1);
        if (c.chemi && options.on[3])
            Pictures::drawMark(p, QRectF(px(x + g.cellW - s), px(y), px(s), px(s)), c.chemiWarn ? 4 : 2);
        if (c.ship && options.on[4])
            Pictures::drawMark(p, QRectF(px(x + g.cellW - s), px(y + s), px(s), px(s)), 3);
        // the day number, centred at the top
        p.setFont(pointFont(base, (g.cellH / 2.0) / 20));
        p.setPen(columnColour((c.x / std::max(1, g.cellW)) % 7));
        const QFontMetricsF fm(p.font());
        const QString num = QString::number(c.day);
        // The top of the figures at the top of the cell (the font's own
        // leading above the figures is left out).
        p.drawText(QPointF(px(x) + (px(g.cellW) - fm.horizontalAdvance(num)) / 2, px(y) + fm.capHeight() * 1.15),
                   num);
    }
    // the header: weekday letters with a white shadow, and the column lines;
    // the letters keep clear of the line below them
    const QString letters = QStringLiteral("日月火水木金土");
    const double em = g.headerH * kHeaderLetter;
    p.setFont(pointFont(base, em / 20.0));
    const QFontMetricsF fm(p.font());
    for (int col = 0; col < 7; ++col) {
        const QString l = letters.mid(col, 1);
        const double lx = px(col * g.cellW) + (px(g.cellW) - fm.horizontalAdvance(l)) / 2;
        const double ly = px(g.headerH - em - 20) / 2 + kEmTop * px(em);
        p.setPen(Qt::white);
        p.drawText(QPointF(lx + px(20), ly + px(20)), l);
        p.setPen(columnColour(col));
        p.drawText(QPointF(lx, ly), l);
        if (col > 0) {
            p.setPen(QPen(Qt::black, 0));
            p.drawLine(QPointF(px(col * g.cellW), 0), QPointF(px(col * g.cellW), px(g.canvasH)));
        }
    }
    p.setPen(QPen(Qt::black, 0));
    for (int row = 0; row < g.rows; ++row) {
        const double y = px(row * g.cellH + g.headerH);
        p.drawLine(QPointF(0, y), QPointF(px(g.canvasW), y));
    }
    p.restore();
}

}
