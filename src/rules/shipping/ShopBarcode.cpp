#include "rules/shipping/ShopBarcode.h"

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "store/Database.h"
#include "store/Stmt.h"

namespace ShopLayout {

namespace {

// The columns of M_SHOP that place each field (BCD_<stem>_STA, _LEN) and the
// name the shop master shows for it.
struct FieldName {
    const char *stem;
    const char *caption;
};
const FieldName kFields[FieldCount] = {
    {"OPT", "その他"}, {"PRD_ID", "商品ID"}, {"AMT_01", "金額（1円）"}, {"AMT_10", "金額（10円）"}, {"FMR_ID", "生産者ID"}};

QString caption(int field) { return QStringLiteral("「%1」").arg(QString::fromUtf8(kFields[field].caption)); }

bool outside(const Placement &p) { return p.length > 0 && (p.start < 1 || p.start > 12 || p.length > 12 - p.start + 1); }

} // namespace

Placement placement(const Value &start, const Value &length)
{
    auto whole = [](const Value &v) { return hasValue(v) && IsNumeric(v) ? int(v.toDouble()) : 0; };
    return {whole(start), whole(length)};
}

QString fault(const Layout &layout, int *field)
{
    for (int f = 0; f < FieldCount; ++f) {
        const Placement &p = layout[f];
        if (!outside(p))
            continue;
        if (field)
            *field = f;
        return QStringLiteral("販売店のバーコード設定が正しくありません。%1の先頭 %2、長さ %3 では、"
                                  "1～12 桁目に収まりません。")
                .arg(caption(f))
                .arg(p.start)
                .arg(p.length);
    }
    return QString();
}

QStringList overlaps(const Layout &layout)
{
    QStringList out;
    for (int later = 0; later < FieldCount; ++later)
        for (int earlier = 0; earlier < later; ++earlier) {
            const Placement &a = layout[earlier], &b = layout[later];
            if (a.length > 0 && b.length > 0 && a.start < b.start + b.length && b.start < a.start + a.length)
                out << caption(later) + QStringLiteral("と") + caption(earlier);
        }
    return out;
}

} // namespace ShopLayout

namespace {

ShopLayout::Layout layoutOf(Recordset *rs)
{
    ShopLayout::Layout l;
    if (!rs)
        return l;
    for (int f = 0; f < ShopLayout::FieldCount; ++f) {
        const QString stem = QString::fromLatin1(ShopLayout::kFields[f].stem);
        l[f] = ShopLayout::placement(rs->Fields(QStringLiteral("BCD_%1_STA").arg(stem)),
                                     rs->Fields(QStringLiteral("BCD_%1_LEN").arg(stem)));
    }
    return l;
}

} // namespace

QString GetShopBarcode(qint32 product, qint32 farmer, Currency price, qint32 option)
{
    RecordsetPtr rs = gMST->GetFwdOnlyRst(Stmt("SELECT M_SHOP.* FROM M_SHOP WHERE SHOP_ID=?").num(gSHOP_ID));
    Recordset *shop = rs->eof() ? nullptr : rs.get();

    const QString values[ShopLayout::FieldCount] = {
        QString::number(option),
        QString::number(product),
        Value(price).toText(),
        // the price as a whole number (half to even), then tens cut toward zero
        QString::number(Value(price).toLong() / 10),
        QString::number(farmer),
    };

    const ShopLayout::Layout layout = layoutOf(shop);
    rs->Close();
    const QString fault = ShopLayout::fault(layout);
    if (!fault.isEmpty())
        throw AppError(VbErr::Subscript, fault + QStringLiteral("販売店マスタで直してください。"));
    int digits[12] = {};
    for (int f = 0; f < ShopLayout::FieldCount; ++f) {
        const ShopLayout::Placement &p = layout[f];
        if (p.length <= 0)
            continue;
        const QString text = (QString(p.length, QLatin1Char('0')) + values[f]).right(p.length);
        for (int i = 0; i < p.length; ++i) {
            const QChar c = text.at(i);
            digits[p.start - 1 + i] = (c >= QLatin1Char('0') && c <= QLatin1Char('9')) ? c.digitValue() : 0;
        }
    }

    QString code;
    for (int d : digits)
        code += QChar(QLatin1Char(char('0' + d)));
    return GetEanCheck(code);
}
