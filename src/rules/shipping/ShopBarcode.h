#pragma once
// The shop's own 13-digit product code. Each shop lays out its twelve data
// digits in the shop master (M_SHOP.BCD_*_STA / _LEN): where the option,
// product, price and farmer go and how many digits each takes. The layout is
// only ever used to compose a code, so that a tag prints what the shop's
// register expects; nothing takes a scanned code apart.
#include "base/Currency.h"
#include "base/Value.h"

#include <array>
#include <QStringList>

#include <QString>

// The code of the current shop (gSHOP_ID, read through gMST) for a product,
// farmer, price and option: twelve digits composed by the layout and the
// check digit. Fields are written in the order option, product, price in
// units, price in tens, farmer, a later one overwriting an earlier where they
// overlap; each value is padded with zeros in front or loses its high digits
// to fit its length, and a character that is no digit stores 0. A missing
// shop row or a layout of lengths 0 gives "0000000000000".
//
// A layout that puts a digit outside positions 1 to 12 (a start of 0 with a
// length, a field running past the end) raises AppError.
QString GetShopBarcode(qint32 product, qint32 farmer, Currency price, qint32 option);

namespace ShopLayout {
// The fields in the order they are written: a later one wins where they overlap.
enum Field { Option, Product, PriceUnits, PriceTens, Farmer, FieldCount };
struct Placement {
    int start = 0;  // 1-based digit position
    int length = 0; // 0 leaves the field out
};
using Layout = std::array<Placement, FieldCount>;
// The layout of stored start and length values (Null or empty as 0, text
// that is no number as 0).
Placement placement(const Value &start, const Value &length);
// "" when every field with a length lies within digits 1 to 12; else what
// is wrong, naming the first field that does not (its index in *field).
QString fault(const Layout &layout, int *field = nullptr);
// The fields that share a digit with a field written before them, as
// "「生産者ID」と「商品ID」" lines; empty when none overlap.
QStringList overlaps(const Layout &layout);
} // namespace ShopLayout
