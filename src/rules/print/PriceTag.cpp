#include "rules/print/PriceTag.h"

#include "base/Globals.h"
#include "base/Helpers.h"
#include "rules/print/Symbols.h"
#include "rules/shipping/ShopBarcode.h"
#include "store/Database.h"
#include "store/Lookup.h"
#include "store/Stmt.h"

#include <algorithm>

QVector<PriceTagSet> gPTAG_ROWS;
QVector<PriceTagLabel> gLABEL_LIST;

namespace {

qint32 wholeOr0(const Value &v) { return hasValue(v) && IsNumeric(v) ? Value(roundHalfEven(v.toDouble())).toLong() : 0; }

} // namespace

bool SetPriceTagRows(Recordset &rs, const ProgressFn &progress)
{
    if (gPTAG_ROWS.isEmpty())
        gPTAG_ROWS.resize(1);
    QVector<PriceTagRow> &rows = gPTAG_ROWS[0].Rows;
    rows.clear();
    // The trace address only when the shop has a web address of its own.
    const bool withQr =
        !textOf(gMST->DLookup(QStringLiteral("WWW_URL"), QStringLiteral("M_SHOP"), Stmt("SHOP_ID=?").num(gSHOP_ID)))
             .isEmpty();
    const int total = rs.RecordCount();
    for (int done = 0; !rs.eof(); rs.MoveNext(), ++done) {
        if (!goOn(progress, done, total, QStringLiteral("値札を作成しています")))
            return false;
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
        l.Tel = textOf(gMST->DLookup(QStringLiteral("TEL_NO_S"), QStringLiteral("M_FMR"), Stmt("FMR_ID=?").num(fmr)));
        l.PrdNm = r.PrdNm;
        l.Locate = textOf(rs.Fields(QStringLiteral("LOCATE")));
        const Value plas = rs.Fields(QStringLiteral("PLAS"));
        l.Plas = hasValue(plas) && plas.toBool();
        rows.append(r);
    }
    return true;
}

void SetLabelList()
{
    const int skip = gPTAG_ROWS.isEmpty() ? 0 : std::max<int>(0, gPTAG_ROWS[0].Skip);
    gLABEL_LIST = QVector<PriceTagLabel>(skip + 1);
    if (gPTAG_ROWS.isEmpty())
        return;
    int next = skip;
    for (const PriceTagRow &r : gPTAG_ROWS[0].Rows) {
        if (r.Label.Code.isEmpty() || r.RepId != kPriceTagReport)
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

QString dayRowsSql(const QDateTime &day, const Value &farmer)
{
    // The farmer's term, when there is one, stands first in the condition.
    const Stmt farmerTerm = hasValue(farmer) ? Stmt("D_SHIP.FMR_ID=? AND ").num(farmer) : Stmt("");
    return Stmt("SELECT D_SHIP.* FROM D_SHIP WHERE ?D_SHIP.SHIP_DATE=? ORDER BY D_SHIP.SHIP_ID, D_SHIP.PRD_NM, "
                "D_SHIP.SHOP_PRC DESC")
        .part(farmerTerm)
        .day(day);
}

qint16 skipValue(const QString &text)
{
    return qint16(std::clamp(leadingNumber(text), 0.0, 999.0));
}

TagTotals loadPriceTagDay(const QDateTime &day, qint16 skip, const Value &farmer)
{
    RecordsetPtr rs = gDB->GetStaticRst(dayRowsSql(day, farmer));
    gPTAG_ROWS = QVector<PriceTagSet>(1);
    gPTAG_ROWS[0].Skip = skip;
    SetPriceTagRows(*rs);
    rs->Close();
    return tagTotals(skip, gPTAG_ROWS[0].Rows);
}
