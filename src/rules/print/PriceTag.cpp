#include "rules/print/PriceTag.h"

#include "base/Globals.h"
#include "base/Helpers.h"
#include "store/SqlText.h"
#include "rules/print/Symbols.h"
#include "rules/shipping/ShopBarcode.h"
#include "store/Database.h"
#include "store/Lookup.h"

#include <QFile>

#include <algorithm>

QVector<PriceTagSet> gPTAG_ROWS;
QVector<PriceTagLabel> gLABEL_LIST;

namespace {

qint32 wholeOr0(const Value &v) { return hasValue(v) && IsNumeric(v) ? Value(roundHalfEven(v.toDouble())).toLong() : 0; }

QString day(const QDateTime &d) { return d.toString(QStringLiteral("yyyy/MM/dd")); }

QString quoted(const QString &text) { return QLatin1Char('"') + text + QLatin1Char('"'); }

QString boolText(bool b) { return b ? QStringLiteral("#TRUE#") : QStringLiteral("#FALSE#"); }

// Dates always in the full form; an unset date is the zero date.
QString dateText(const QDateTime &d)
{
    const QDateTime v = d.isValid() ? d : DateUtil::fromSerial(0);
    return QLatin1Char('#') + DateUtil::sqlText(v) + QLatin1Char('#');
}

} // namespace

void SetPriceTagRows(Recordset &rs)
{
    if (gPTAG_ROWS.isEmpty())
        gPTAG_ROWS.resize(1);
    QVector<PriceTagRow> &rows = gPTAG_ROWS[0].Rows;
    rows.clear();
    // The trace address only when the shop has a web address of its own.
    const bool withQr = !textOf(gMST->DLookup(QStringLiteral("WWW_URL"), QStringLiteral("M_SHOP"),
                                              QStringLiteral("SHOP_ID=") + Sql::number(gSHOP_ID)))
                             .isEmpty();
    for (; !rs.eof(); rs.MoveNext()) {
        PriceTagRow r;
        const Value fmr = rs.Fields(QStringLiteral("FMR_ID"));
        const Value prd = rs.Fields(QStringLiteral("PRD_ID"));
        const Value price = rs.Fields(QStringLiteral("SHOP_PRC"));
        r.FmrId = wholeOr0(fmr);
        r.PrdId = wholeOr0(prd);
        r.PrdNm = textOf(rs.Fields(QStringLiteral("PRD_NM")));
        r.Qty = wholeOr0(rs.Fields(QStringLiteral("SHIP_QTY")));
        PriceTagLabel &l = r.Label;
        l.Price = hasValue(price) && IsNumeric(price) ? price.toCurrency() : Currency();
        l.Code = GetShopBarcode(r.PrdId, r.FmrId, l.Price, 0);
        if (withQr)
            l.QrText = GetTraceUrl(fmr, rs.Fields(QStringLiteral("PLANT_ID")));
        l.FmrNm = GetFmrNm(fmr);
        l.Tel = textOf(gMST->DLookup(QStringLiteral("TEL_NO_S"), QStringLiteral("M_FMR"),
                                     QStringLiteral("FMR_ID=") + Sql::number(fmr)));
        l.PrdNm = r.PrdNm;
        l.Locate = textOf(rs.Fields(QStringLiteral("LOCATE")));
        const Value plas = rs.Fields(QStringLiteral("PLAS"));
        l.Plas = hasValue(plas) && plas.toBool();
        rows.append(r);
    }
}

void SetLabelList()
{
    const int skip = gPTAG_ROWS.isEmpty() ? 0 : std::max<int>(0, gPTAG_ROWS[0].Skip);
    gLABEL_LIST = QVector<PriceTagLabel>(skip + 1);
    if (gPTAG_ROWS.isEmpty())
        return;
    int next = skip;
    for (const PriceTagRow &r : gPTAG_ROWS[0].Rows) {
        if (r.Label.Code.isEmpty() || r.RepId != 10)
            continue;
        for (int n = 0; n < r.Qty; ++n) {
            if (next >= gLABEL_LIST.size())
                gLABEL_LIST.resize(next + 1);
            gLABEL_LIST[next++] = r.Label;
        }
    }
}

int pagesFor(int labels) { return labels / PriceTag::PerSheet + (labels % PriceTag::PerSheet != 0 ? 1 : 0); }

TagTotals tagTotals(int skip, const QVector<PriceTagRow> &rows)
{
    TagTotals t;
    t.labels = skip;
    for (const PriceTagRow &r : rows)
        if (r.Qty != 0)
            t.labels += r.Qty;
    t.pages = pagesFor(t.labels);
    return t;
}

SheetRange sheetRange(int page, int listSize)
{
    SheetRange s;
    if (page < 1)
        return s;
    const int first = (page - 1) * PriceTag::PerSheet;
    int last = page * PriceTag::PerSheet - 1;
    const int lastIndex = listSize - 1;
    if (lastIndex < first)
        return s;
    if (lastIndex < last)
        last = lastIndex;
    s.first = first;
    s.last = last;
    return s;
}

QPointF labelOrigin(int index)
{
    // Labels run down a column first.
    const int column = (index % PriceTag::PerSheet) / PriceTag::PerColumn;
    const int row = index % PriceTag::PerColumn;
    return {column * PriceTag::Width, row * PriceTag::Height};
}

QString dayRowsSql(const QDateTime &d, const QString &farmerTerm)
{
    return QStringLiteral("SELECT D_SHIP.* FROM D_SHIP WHERE ") + farmerTerm +
           QStringLiteral("D_SHIP.SHIP_DATE=#") + day(d) +
           QStringLiteral("# ORDER BY D_SHIP.SHIP_ID, D_SHIP.PRD_NM, D_SHIP.SHOP_PRC DESC");
}

qint16 skipValue(const QString &text)
{
    return qint16(std::clamp(Sql::leadingNumber(text).toDouble(), 0.0, 999.0));
}

TagTotals loadPriceTagDay(const QDateTime &day, qint16 skip, const Value &farmer)
{
    const QString farmerTerm =
        hasValue(farmer) ? QStringLiteral("D_SHIP.FMR_ID=") + Sql::number(farmer) + QStringLiteral(" AND ") : QString();
    RecordsetPtr rs = gDB->GetStaticRst(dayRowsSql(day, farmerTerm));
    gPTAG_ROWS = QVector<PriceTagSet>(1);
    gPTAG_ROWS[0].Skip = skip;
    SetPriceTagRows(*rs);
    rs->Close();
    return tagTotals(skip, gPTAG_ROWS[0].Rows);
}

ExportPeriod exportPeriod(const QDateTime &today, const QDateTime &lastExport, const QDateTime &latestShipment)
{
    // Exported today and opened again today: today is offered once more.
    const QDateTime start = today.date() != lastExport.date() ? DateUtil::addDays(lastExport, 1) : lastExport;
    if (latestShipment.date() < start.date())
        return {today, today};
    return {start, latestShipment};
}

QString periodRowsSql(const QDateTime &first, const QDateTime &last, const Value &farmer, const Value &shop)
{
    return QStringLiteral("SELECT D_SHIP.* FROM D_SHIP  WHERE D_SHIP.SHIP_DATE>=#") + DateUtil::sqlText(first) +
           QStringLiteral("# AND D_SHIP.SHIP_DATE<=#") + DateUtil::sqlText(last) +
           QStringLiteral("# AND D_SHIP.FMR_ID=") + Sql::number(farmer) + QStringLiteral(" AND D_SHIP.SHOP_ID=") +
           Sql::number(shop);
}

QString exportFileName(const QDateTime &first, const QDateTime &last, const Value &farmer, const Value &shop)
{
    return first.toString(QStringLiteral("yyMMdd")) + QLatin1Char('-') + last.toString(QStringLiteral("yyMMdd")) +
           QLatin1Char('-') + Nz(farmer, Value(QString())).toText() + QLatin1Char('-') +
           Nz(shop, Value(QString())).toText() + QStringLiteral(".csv");
}

QString csvLine(const PriceTagRow &r)
{
    const PriceTagLabel &l = r.Label;
    // Text goes between double quotes as it stands: a double quote inside a
    // name breaks the quoting of its line, which the readers of the file accept.
    const QStringList fields{
        boolText(r.Flag),           QStringLiteral("1"),           QString::number(r.Extra1),
        quoted(l.Code),             quoted(l.QrText),              QString::number(r.FmrId),
        quoted(l.FmrNm),            QString::number(r.PrdId),      quoted(r.PrdNm),
        quoted(l.Tel),              quoted(l.PrdNm),               QString::number(r.Extra2),
        l.Price.toString(),         quoted(l.Label2),              quoted(l.Label3),
        l.Price2.toString(),        QString::number(l.Opt1),       quoted(l.Label4),
        QString::number(l.Opt2),    dateText(l.LabelDate),         quoted(l.Label5),
        QString::number(r.Qty),     quoted(l.Locate),              boolText(l.Plas),
    };
    return fields.join(QLatin1Char(','));
}

bool writeCsv(const QString &path, const QVector<PriceTagRow> &rows, QString *error)
{
    QFile::remove(path); // an earlier file of the same period is replaced without a question
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly)) {
        if (error)
            *error = f.errorString();
        return false;
    }
    QString text;
    for (const PriceTagRow &r : rows)
        text += csvLine(r) + QStringLiteral("\r\n");
    const QByteArray bytes = toSystemCodePage(text);
    if (f.write(bytes) != bytes.size() || !f.flush()) {
        if (error)
            *error = f.errorString();
        return false;
    }
    return true;
}
