#include "rules/exchange/TraceData.h"

#include "store/Database.h"
#include "store/Stmt.h"

namespace TraceData {

Choices yearPlantings(const QString &yearText)
{
    // The join compares the planting with the shipment date, so it finds
    // nothing on the right: the left join still yields every planting of the
    // year. The statement is kept as it stands.
    RecordsetPtr rs = gDB->GetFwdOnlyRst(
        Stmt("SELECT DISTINCT  D_PLANT.PLANT_ID,  D_PLANT.PLANT_NM FROM D_PLANT  LEFT JOIN D_SHIP  ON "
             "(D_PLANT.PLANT_ID = D_SHIP.SHIP_DATE)  AND (D_PLANT.FMR_ID = D_SHIP.FMR_ID) WHERE YYYY=? ORDER BY "
             "D_PLANT.PLANT_ID")
            .num(Value(yearText)));
    Choices out;
    for (; !rs->eof(); rs->MoveNext())
        out.append({rs->Fields(QStringLiteral("PLANT_ID")), textOf(rs->Fields(QStringLiteral("PLANT_NM")))});
    rs->Close();
    return out;
}

}
