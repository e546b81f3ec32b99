#include "rules/pesticide/ChemiStock.h"

#include "base/Helpers.h"
#include "store/Database.h"
#include "store/Stmt.h"

void ResetUnusedChemi(const Value &fmrId, const ProgressFn &progress)
{
    RecordsetPtr rs = gDB->GetStaticRst(
        Stmt("SELECT D_CHEMI.CHEMI_ID FROM D_CHEMI LEFT JOIN D_DIARY_DTL ON D_CHEMI.CHEMI_ID = "
             "D_DIARY_DTL.CHEMI_ID WHERE D_DIARY_DTL.FMR_ID IS NULL AND D_CHEMI.FMR_ID=?")
            .num(fmrId));
    const int total = rs->RecordCount();
    // The lots are set back a hundred a statement (on a server each
    // statement is a round trip); a stop comes between two statements.
    constexpr int kLotsAStatement = 100;
    int done = 0;
    while (!rs->eof()) {
        if (!goOn(progress, done, total, QStringLiteral("農薬の在庫を数え直しています")))
            return;
        QVector<Value> ids;
        for (; !rs->eof() && ids.size() < kLotsAStatement; rs->MoveNext())
            ids << rs->Fields(0);
        gDB->EXEC(Stmt("UPDATE D_CHEMI SET  D_CHEMI.USED_QTY=0,  D_CHEMI.REST_QTY=D_CHEMI.PUR_QTY  WHERE "
                       "D_CHEMI.FMR_ID=? AND D_CHEMI.CHEMI_ID IN (?)")
                      .num(fmrId)
                      .ids(ids));
        done += ids.size();
    }
}

void RecountChemiUse(const Value &fmrId, const QDateTime &workDate)
{
    // 1. the lots named on this day's lines (a line without one names 0)
    RecordsetPtr rs = gDB->GetFwdOnlyRst(
        Stmt("SELECT  D_DIARY_DTL.CHEMI_ID  FROM D_DIARY_DTL  WHERE D_DIARY_DTL.FMR_ID=? AND D_DIARY_DTL.WORK_DATE=?")
            .num(fmrId)
            .time(workDate));
    QVector<Value> ids;
    for (; !rs->eof(); rs->MoveNext())
        ids << rs->Fields(0);
    if (ids.isEmpty())
        return;
    // 2. their uses over all days
    rs = gDB->GetFwdOnlyRst(
        Stmt("SELECT  D_DIARY_DTL.CHEMI_ID,  D_CHEMI.PUR_UNIT AS PUR_UNIT_ID,  D_DIARY_DTL.UNIT_ID AS "
             "DTL_UNIT_ID,  D_DIARY_DTL.QTY FROM D_DIARY_DTL  INNER JOIN D_CHEMI  ON D_DIARY_DTL.CHEMI_ID = "
             "D_CHEMI.CHEMI_ID AND D_DIARY_DTL.FMR_ID = D_CHEMI.FMR_ID WHERE D_DIARY_DTL.FMR_ID=? AND "
             "D_DIARY_DTL.CHEMI_ID IN(?)")
            .num(fmrId)
            .ids(ids));
    // 3. into the scratch table of the work database (the scratch work is a
    // transaction of the work file; the updates of the lots one of the data
    // database, or part of the caller's, as in a day's save)
    inTransaction(gWORK.get(), [&] {
        if (!rs->eof()) {
            gWORK->EXEC(QStringLiteral("DELETE W_CHEMI_USE.* FROM W_CHEMI_USE"));
            RecordsetPtr w = gWORK->GetDynamicRst(QStringLiteral("SELECT W_CHEMI_USE.* FROM W_CHEMI_USE"));
            for (; !rs->eof(); rs->MoveNext()) {
                w->AddNew();
                w->SetField(QStringLiteral("CHEMI_ID"), rs->Fields(QStringLiteral("CHEMI_ID")));
                w->SetField(QStringLiteral("QTY"), rs->Fields(QStringLiteral("QTY")));
                w->SetField(QStringLiteral("PUR_UNIT_ID"), rs->Fields(QStringLiteral("PUR_UNIT_ID")));
                w->SetField(QStringLiteral("DTL_UNIT_ID"), rs->Fields(QStringLiteral("DTL_UNIT_ID")));
                w->Update();
            }
            w->Close();
        }
        // 4. the rate of each use, from the unit table
        gWORK->EXEC(QStringLiteral("UPDATE W_CHEMI_USE INNER JOIN L_CHEMI_UNIT ON (W_CHEMI_USE.PUR_UNIT_ID = "
                                   "L_CHEMI_UNIT.ID) AND (W_CHEMI_USE.DTL_UNIT_ID = L_CHEMI_UNIT.CHG_ID)  SET "
                                   "W_CHEMI_USE.RT = 1/ L_CHEMI_UNIT.RT"));
        gWORK->EXEC(QStringLiteral("UPDATE W_CHEMI_USE INNER JOIN L_CHEMI_UNIT ON (W_CHEMI_USE.PUR_UNIT_ID = "
                                   "L_CHEMI_UNIT.CHG_ID) AND (W_CHEMI_USE.DTL_UNIT_ID = L_CHEMI_UNIT.ID) SET "
                                   "W_CHEMI_USE.RT = L_CHEMI_UNIT.RT"));
        gWORK->EXEC(QStringLiteral("UPDATE W_CHEMI_USE  SET W_CHEMI_USE.RT=1 WHERE "
                                   "W_CHEMI_USE.PUR_UNIT_ID=W_CHEMI_USE.DTL_UNIT_ID"));
        gWORK->EXEC(QStringLiteral("UPDATE W_CHEMI_USE  SET W_CHEMI_USE.USE_QTY=W_CHEMI_USE.QTY * W_CHEMI_USE.RT"));
    });
    // 5. the sums into the lots
    rs = gWORK->GetFwdOnlyRst(QStringLiteral("SELECT  W_CHEMI_USE.CHEMI_ID,  SUM(W_CHEMI_USE.USE_QTY) AS USE_QTY FROM "
                                             "W_CHEMI_USE GROUP BY W_CHEMI_USE.CHEMI_ID"));
    inTransaction(gDB.get(), [&] {
        // Fifty lots a statement (on a server each statement is a round
        // trip), each lot set to its own sum.
        constexpr int kLotsAStatement = 50;
        while (!rs->eof()) {
            QVector<Value> ids;
            QVector<Stmt> sums;
            for (; !rs->eof() && ids.size() < kLotsAStatement; rs->MoveNext()) {
                ids << rs->Fields(0);
                sums << Stmt("D_CHEMI.CHEMI_ID=?, ?").num(rs->Fields(0)).num(rs->Fields(1));
            }
            gDB->EXEC(Stmt("UPDATE D_CHEMI SET  USED_QTY=Switch(?) WHERE D_CHEMI.CHEMI_ID IN (?)")
                          .part(Stmt::joined(sums, QStringLiteral(", ")))
                          .ids(ids));
        }
        // 6. what is left, for every lot
        gDB->EXEC(QStringLiteral("UPDATE D_CHEMI SET  REST_QTY=PUR_QTY-USED_QTY"));
    });
}

Currency chemiAmount(const LotPurchase &purchase, const Value &qty, const Value &unitId)
{
    const Currency q = qty.toCurrency();
    const qint32 unit = unitId.toLong(); // a missing unit is the Null error
    const double rate = GetUnitRate(purchase.unit, unit);
    const Currency price =
        purchase.qty == 0 ? Currency() : Currency::fromDouble(purchase.amount.toDouble() / purchase.qty);
    return RoundAmount((price * q).toDouble() * rate);
}

QHash<qint32, LotPurchase> readPurchases(const Value &fmrId, const QVector<Value> &chemiIds)
{
    QHash<qint32, LotPurchase> out;
    if (chemiIds.isEmpty())
        return out;
    RecordsetPtr rs = gDB->GetFwdOnlyRst(
        Stmt("SELECT D_CHEMI.CHEMI_ID, D_CHEMI.PUR_QTY, D_CHEMI.PUR_UNIT,D_CHEMI.PUR_AMT FROM D_CHEMI WHERE FMR_ID=? "
             "AND CHEMI_ID IN (?)")
            .num(fmrId)
            .ids(chemiIds));
    for (; !rs->eof(); rs->MoveNext()) {
        const qint32 id = rs->Fields(0).toLong();
        if (out.contains(id))
            continue; // the first row of a number, as a look-up by it finds it
        LotPurchase p;
        p.qty = Nz(rs->Fields(1), Value(0)).toDouble();
        p.unit = Nz(rs->Fields(2), Value(0)).toLong();
        p.amount = Nz(rs->Fields(3), Value(0)).toCurrency();
        out.insert(id, p);
    }
    return out;
}

Currency CalChemiAmt(const Value &fmrId, const Value &chemiId, const Value &qty, const Value &unitId)
{
    const qint32 chemi = chemiId.toLong();
    return chemiAmount(readPurchases(fmrId, {Value(chemi)}).value(chemi), qty, unitId);
}
