#include "rules/diary/DiaryLists.h"

#include "rules/common/Ids.h"
#include "rules/shipping/ShipData.h"
#include "rules/common/Lists.h"
#include "store/Database.h"
#include "store/Stmt.h"

namespace DiaryLists {

namespace {

QStringList texts(DbObject *db, const QString &sql, const QString &column)
{
    QStringList out;
    RecordsetPtr rs = db->GetFwdOnlyRst(sql);
    for (; !rs->eof(); rs->MoveNext())
        out << textOf(rs->Fields(column));
    rs->Close();
    return out;
}

QVector<Choice> kinds(int kbn)
{
    return readChoices(gWORK.get(), Stmt("SELECT  L_KBN.ID,  L_KBN.NM  FROM L_KBN  WHERE KBN=? ORDER BY ID").num(kbn));
}

QVector<Choice> plantingsBetween(const Value &fmrId, const QDateTime &first, const QDateTime &last)
{
    return readChoices(gDB.get(), Stmt("SELECT  D_PLANT.PLANT_ID,  D_PLANT.PLANT_NM  FROM D_PLANT  WHERE FMR_ID=? AND "
                                "START_DATE<=? AND ((END_DATE IS NULL) OR (END_DATE>=?)) ORDER BY PLANT_DATE")
                               .num(fmrId)
                               .day(last)
                               .day(first));
}

} // namespace

QVector<Choice> weathers() { return kinds(10); }
QVector<Choice> workKinds() { return kinds(20); }

QVector<Choice> useUnits()
{
    return readChoices(gWORK.get(), Stmt("SELECT  L_CHEMI_UNIT.ID,  L_CHEMI_UNIT.NM  FROM L_CHEMI_UNIT  ORDER BY ID"));
}

QVector<Choice> lotsInUse()
{
    QVector<Choice> out;
    RecordsetPtr rs = gDB->GetFwdOnlyRst(Stmt(
        "SELECT  D_CHEMI.CHEMI_ID,  D_CHEMI.CHEMI_NM,  D_CHEMI.PUR_DATE  FROM D_CHEMI  WHERE CHK_FLG<>0 ORDER BY CHEMI_NM"));
    for (; !rs->eof(); rs->MoveNext()) {
        const Value d = rs->Fields(QStringLiteral("PUR_DATE"));
        const QString day = hasValue(d) ? d.toDate().toString(QStringLiteral("M/d")) : QString();
        out.append({rs->Fields(QStringLiteral("CHEMI_ID")), day + textOf(rs->Fields(QStringLiteral("CHEMI_NM")))});
    }
    rs->Close();
    return out;
}

QStringList purposesOfLot(const Value &chemiId)
{
    const Value reg = gDB->DLookup(QStringLiteral("REG_NO"), QStringLiteral("D_CHEMI"), Stmt("CHEMI_ID=?").num(chemiId));
    // The registration numbers of the purposes are numbers: a stored text
    // that is none compares as 0 and finds nothing.
    return texts(gWORK.get(),
                 Stmt("SELECT  L_CHEMI_PURPOSE.PURPOSE  FROM L_CHEMI_PURPOSE  WHERE L_CHEMI_PURPOSE.REG_NO=? ORDER BY "
                      "L_CHEMI_PURPOSE.PURPOSE")
                     .num(reg),
                 QStringLiteral("PURPOSE"));
}

QVector<Choice> plantingsAlive(const Value &fmrId, const QDateTime &day) { return plantingsBetween(fmrId, day, day); }

QVector<Choice> plantingsOfMonth(const Value &fmrId, const QDate &monthFirst)
{
    return plantingsBetween(fmrId, DateUtil::fromDate(monthFirst), DateUtil::fromDate(monthFirst.addMonths(1).addDays(-1)));
}

QStringList workNames(const Value &fmrId, const Value &plantId, const Value &workKbn)
{
    const QString crop = textOf(gDB->DLookup(QStringLiteral("CROP_NM"), QStringLiteral("D_PLANT"),
                                             Stmt("FMR_ID=? AND PLANT_ID=?").num(fmrId).num(plantId)));
    // CROP_MATCH sorts true first, as the engines are made to.
    return texts(gDB.get(),
                 Stmt("SELECT DISTINCT  D_PLANT.CROP_NM=? AS CROP_MATCH, D_DIARY_DTL.WORK_NM  FROM D_DIARY_DTL  "
                      "INNER JOIN D_PLANT  ON (D_DIARY_DTL.PLANT_ID = D_PLANT.PLANT_ID)  AND (D_DIARY_DTL.FMR_ID = "
                      "D_PLANT.FMR_ID) WHERE WORK_KBN=? ORDER BY D_PLANT.CROP_NM=?, D_DIARY_DTL.WORK_NM")
                     .text(crop)
                     .num(workKbn)
                     .text(crop),
                 QStringLiteral("WORK_NM"));
}

Planting planting(const Value &plantId)
{
    Planting p;
    RecordsetPtr rs = gDB->GetFwdOnlyRst(Stmt("SELECT D_PLANT.* FROM D_PLANT WHERE PLANT_ID=?").num(plantId));
    if (!rs->eof()) {
        p.found = true;
        p.crop = textOf(rs->Fields(QStringLiteral("CROP_NM1")));
        const Value ym = rs->Fields(QStringLiteral("HARVEST_SCHD_YM"));
        p.harvest = textOf(ym);
        if (p.harvest.size() == 6 && IsNumeric(ym))
            p.harvest = p.harvest.left(4) + QLatin1Char('/') + p.harvest.mid(4);
        const Value planted = rs->Fields(QStringLiteral("PLANT_DATE"));
        p.planted = hasValue(planted) ? planted.toDate().toString(QStringLiteral("yyyy/MM/dd")) : QString();
        p.area = textOf(rs->Fields(QStringLiteral("AREA")));
    }
    rs->Close();
    return p;
}

} // namespace DiaryLists
