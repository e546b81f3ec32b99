#include "support/TagDay.h"

#include "base/Currency.h"
#include "support/Build.h"

namespace {

// A day of shipments: (farmer, ship, plant, product, name, price, quantity).
struct Ship {
    int fmr, ship, plant, prd;
    const char *name;
    int price, qty;
};
const Ship kDay[] = {
    {1, 1, 7, 3, "トマト", 260, 5},   {1, 2, 8, 12, "なす", 1280, 0},     {2, 3, 9, 5, "きゅうり", 98, 17},
    {1, 4, 7, 3, "トマト", 300, 2},
};

} // namespace

namespace TagDay {

QString shopCode(int farmer, int product, int price)
{
    const QString twelve = QStringLiteral("00%1%2%3")
                               .arg(farmer, 4, 10, QLatin1Char('0'))
                               .arg(product, 2, 10, QLatin1Char('0'))
                               .arg(price / 10, 4, 10, QLatin1Char('0'));
    int sum = 0;
    for (int i = 0; i < 12; ++i)
        sum += twelve[i].digitValue() * (i % 2 ? 3 : 1);
    return twelve + QString::number((10 - sum % 10) % 10);
}

void seed(const QDate &day)
{
    Build::farmer(2, QStringLiteral("緑 次郎")).add();
    for (const Ship &s : kDay)
        Build::shipment(s.ship, day)
            .set("FMR_ID", s.fmr)
            .set("PLANT_ID", s.plant)
            .set("PRD_ID", s.prd)
            .set("PRD_NM", s.name)
            .set("LOCATE", "緑川県")
            .set("PLAS", Value(s.ship == 1))
            .set("SHOP_PRC", Value(Currency::fromInt(s.price)))
            .set("SHIP_QTY", s.qty)
            .add();
    // another day, another farmer's day: not on the sheet
    Build::shipment(9, QDate(2026, 1, 2)).set("PLANT_ID", 7).set("PRD_ID", 3).set("PRD_NM", "トマト")
        .set("SHOP_PRC", Value(Currency::fromInt(260))).set("SHIP_QTY", 4).add();
}

// The labels the day above gives after `skip` blank ones: code and trace
// address, in the order they are printed.
QVector<QStringList> expectedLabels(int skip)
{
    QVector<QStringList> labels(skip);
    for (const Ship &s : kDay)
        for (int n = 0; n < s.qty; ++n)
            labels.append({shopCode(s.fmr, s.prd, s.price),
                           QStringLiteral("http://trace.example.jp/cropvia/%1/%2/").arg(s.fmr).arg(s.plant)});
    return labels;
}


} // namespace TagDay
