#include "ChemiStock.h"

#include "store/Database.h"

void ResetUnusedChemi(const Value &fmrId)
{
    const QString farmer = fmrId.toText();
    RecordsetPtr rs = gDB->GetFwdOnlyRst(
        QStringLiteral("SELECT D_CHEMI.CHEMI_ID FROM D_CHEMI LEFT JOIN D_DIARY_DTL ON D_CHEMI.CHEMI_ID = "
                       "D_DIARY_DTL.CHEMI_ID WHERE D_DIARY_DTL.FMR_ID IS NULL AND D_CHEMI.FMR_ID=") +
        farmer);
    for (; !rs->eof(); rs->MoveNext())
        gDB->EXEC(QStringLiteral("UPDATE D_CHEMI SET  D_CHEMI.USED_QTY=0,  D_CHEMI.REST_QTY=D_CHEMI.PUR_QTY  WHERE "
                                 "D_CHEMI.FMR_ID=") +
                  farmer + QStringLiteral(" AND D_CHEMI.CHEMI_ID=") + rs->Fields(0).toText());
}
