#include "rules/shipping/ShipList.h"

#include "store/Database.h"
#include "store/Stmt.h"

namespace Ship {

namespace {

Stmt whereClause(const QVector<Stmt> &terms)
{
    if (terms.isEmpty())
        return Stmt(QString());
    return Stmt(" WHERE ?").part(Stmt::joined(terms, QStringLiteral(" AND ")));
}

void addYear(QVector<Stmt> &terms, const ListFilter &f)
{
    if (!f.year.isEmpty())
        terms << Stmt(" D_PLANT.YYYY=?").num(Value(f.year));
}

// The shipments' criteria: year, planting, days.
Stmt shipmentWhere(const ListFilter &f)
{
    QVector<Stmt> terms;
    addYear(terms, f);
    if (f.chosen > 1 && f.chosen < f.plantings.size()) {
        terms << Stmt(" D_SHIP.PLANT_ID=?").num(f.plantings[f.chosen]);
    } else {
        // an empty list still makes a statement, one that finds nothing
        terms << Stmt(" D_SHIP.PLANT_ID IN(?)").ids(f.plantings.isEmpty() ? QVector<Value>{Value(0)} : f.plantings);
    }
    if (!f.from.isEmpty())
        terms << Stmt(" D_SHIP.SHIP_DATE>=?").day(Value(f.from));
    if (!f.to.isEmpty())
        terms << Stmt(" D_SHIP.SHIP_DATE<=?").day(Value(f.to));
    return whereClause(terms);
}

const char *const kFrom = " FROM D_SHIP INNER JOIN D_PLANT ON D_SHIP.PLANT_ID=D_PLANT.PLANT_ID";

} // namespace

QVector<Choice> plantingsByStatus(const ListFilter &f)
{
    QVector<Stmt> terms;
    addYear(terms, f);
    switch (f.status) {
    case PlantStatus::NotShipped: terms << Stmt(" D_SHIP.SHIP_ID IS NULL"); break;
    case PlantStatus::Shipping: terms << Stmt(" D_SHIP.SHIP_ID IS NOT NULL AND D_PLANT.END_DATE IS NULL"); break;
    case PlantStatus::Finished: terms << Stmt(" D_SHIP.SHIP_ID IS NOT NULL AND D_PLANT.END_DATE IS NOT NULL"); break;
    case PlantStatus::All: break;
    }
    RecordsetPtr rs = gDB->GetFwdOnlyRst(Stmt("SELECT DISTINCT  D_PLANT.PLANT_ID,  D_PLANT.PLANT_NM  FROM D_PLANT "
                                              " LEFT JOIN D_SHIP  ON (D_PLANT.PLANT_ID = D_SHIP.PLANT_ID) "
                                              " AND (D_PLANT.FMR_ID = D_SHIP.FMR_ID)? ORDER BY D_PLANT.PLANT_ID")
                                             .part(whereClause(terms)));
    QVector<Choice> out;
    for (; !rs->eof(); rs->MoveNext())
        out.append({rs->Fields(0), textOf(rs->Fields(1))});
    rs->Close();
    return out;
}

int loadShipments(const ListFilter &f)
{
    RecordsetPtr rs = gDB->GetStaticRst(Stmt("SELECT  D_SHIP.* ?? ORDER BY D_SHIP.SHIP_DATE,D_SHIP.PLANT_ID,D_SHIP.SHIP_ID")
                                            .part(Stmt(kFrom))
                                            .part(shipmentWhere(f)));
    const int n = LoadShipRows(*rs);
    rs->Close();
    return n;
}

std::array<Currency, 5> shipmentTotals(const ListFilter &f)
{
    RecordsetPtr rs = gDB->GetFwdOnlyRst(Stmt("SELECT  SUM(D_SHIP.SHIP_QTY),  SUM(D_SHIP.SALES_QTY),  SUM(D_SHIP.DSC_AMT), "
                                              " SUM(D_SHIP.SALES_AMT),  SUM(D_SHIP.FEE_AMT) ??")
                                             .part(Stmt(kFrom))
                                             .part(shipmentWhere(f)));
    std::array<Currency, 5> sums{};
    if (!rs->eof())
        for (int i = 0; i < 5; ++i)
            sums[i] = Nz(rs->Fields(i), Value(0)).toCurrency();
    rs->Close();
    return sums;
}

}
