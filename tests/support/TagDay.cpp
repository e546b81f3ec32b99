#include "support/TagDay.h"

#include "base/Globals.h"
#include "store/Database.h"

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

void seed(const QString &day)
{
    gMST->EXEC(QStringLiteral("INSERT INTO M_FMR (FMR_ID, FMR_NM) VALUES (2, '緑 次郎')"));
    for (const Ship &s : kDay)
        gDB->EXEC(QStringLiteral("INSERT INTO D_SHIP (FMR_ID, SHIP_ID, SHIP_DATE, PLANT_ID, SHOP_ID, PRD_ID, PRD_NM, LOCATE, "
                                 "PLAS, SHOP_PRC, SHIP_QTY) VALUES (%1, %2, #%3#, %4, 1, %5, '%6', '緑川県', %7, %8, %9)")
                      .arg(s.fmr)
                      .arg(s.ship)
                      .arg(day)
                      .arg(s.plant)
                      .arg(s.prd)
                      .arg(QString::fromUtf8(s.name))
                      .arg(s.ship == 1 ? QStringLiteral("True") : QStringLiteral("False"))
                      .arg(s.price)
                      .arg(s.qty));
    // another day, another farmer's day: not on the sheet
    gDB->EXEC(QStringLiteral("INSERT INTO D_SHIP (FMR_ID, SHIP_ID, SHIP_DATE, PLANT_ID, SHOP_ID, PRD_ID, PRD_NM, SHOP_PRC, "
                             "SHIP_QTY) VALUES (1, 9, #2026/01/02#, 7, 1, 3, 'トマト', 260, 4)"));
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
