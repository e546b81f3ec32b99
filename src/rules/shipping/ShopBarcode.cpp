#include "rules/shipping/ShopBarcode.h"

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "store/Database.h"
#include "store/Stmt.h"

namespace {

// One field of the layout: the columns of M_SHOP that place it and the name
// the shop master shows for it.
struct LayoutField {
    const char *column; // BCD_<column>_STA, BCD_<column>_LEN
    const char *caption;
};

// The order in which the fields are written: a later one wins where they overlap.
enum { Option, Product, PriceUnits, PriceTens, Farmer, FieldCount };
const LayoutField kFields[FieldCount] = {
    {"OPT", "その他"}, {"PRD_ID", "商品ID"}, {"AMT_01", "金額（1円）"}, {"AMT_10", "金額（10円）"}, {"FMR_ID", "生産者ID"}};

struct Placement {
    int start = 0;  // 1-based digit position
    int length = 0; // 0 leaves the field out
};

Placement placementOf(Recordset *rs, int field)
{
    Placement p;
    if (!rs)
        return p;
    const QString col = QString::fromLatin1(kFields[field].column);
    p.start = Nz(rs->Fields(QStringLiteral("BCD_%1_STA").arg(col)), Value(0)).toLong();
    p.length = Nz(rs->Fields(QStringLiteral("BCD_%1_LEN").arg(col)), Value(0)).toLong();
    return p;
}

[[noreturn]] void layoutFault(int field, const Placement &p)
{
    throw AppError(VbErr::Subscript,
                   QStringLiteral("販売店のバーコード設定が正しくありません。「%1」の先頭 %2、長さ %3 では、"
                                  "1～12 桁目に収まりません。販売店マスタで直してください。")
                       .arg(QString::fromUtf8(kFields[field].caption))
                       .arg(p.start)
                       .arg(p.length));
}

} // namespace

QString GetShopBarcode(qint32 product, qint32 farmer, Currency price, qint32 option)
{
    RecordsetPtr rs = gMST->GetFwdOnlyRst(Stmt("SELECT M_SHOP.* FROM M_SHOP WHERE SHOP_ID=?").num(gSHOP_ID));
    Recordset *shop = rs->eof() ? nullptr : rs.get();

    const QString values[FieldCount] = {
        QString::number(option),
        QString::number(product),
        Value(price).toText(),
        // the price as a whole number (half to even), then tens cut toward zero
        QString::number(Value(price).toLong() / 10),
        QString::number(farmer),
    };

    int digits[12] = {};
    for (int f = 0; f < FieldCount; ++f) {
        const Placement p = placementOf(shop, f);
        if (p.length <= 0)
            continue;
        if (p.start < 1 || p.start > 12 || p.length > 12 - p.start + 1)
            layoutFault(f, p);
        const QString text = (QString(p.length, QLatin1Char('0')) + values[f]).right(p.length);
        for (int i = 0; i < p.length; ++i) {
            const QChar c = text.at(i);
            digits[p.start - 1 + i] = (c >= QLatin1Char('0') && c <= QLatin1Char('9')) ? c.digitValue() : 0;
        }
    }
    rs->Close();

    QString code;
    for (int d : digits)
        code += QChar(QLatin1Char(char('0' + d)));
    return GetEanCheck(code);
}
