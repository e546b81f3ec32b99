#include "support/Build.h"

#include "base/Currency.h"
#include "store/Database.h"

namespace Build {

Row &Row::set(const char *column, const Value &v)
{
    const QString name = QString::fromLatin1(column);
    for (auto &c : mColumns)
        if (c.first == name) {
            c.second = v;
            return *this;
        }
    mColumns.append({name, v});
    return *this;
}

void Row::add()
{
    RecordsetPtr rs = mDb->GetDynamicRst(QStringLiteral("SELECT ") + mTable + QStringLiteral(".* FROM ") + mTable +
                                         QStringLiteral(" WHERE 0=1"));
    rs->AddNew();
    for (const auto &c : mColumns)
        rs->SetField(c.first, c.second);
    rs->Update();
    rs->Close();
}

Row farmer(int id, const QString &name)
{
    return Row(gMST.get(), "M_FMR").set("FMR_ID", id).set("FMR_NM", Value(name)).set("CHK_FLG", Value(true));
}

Row planting(int id, const QString &name)
{
    Row r(gDB.get(), "D_PLANT");
    r.set("FMR_ID", 1).set("PLANT_ID", id);
    if (!name.isEmpty())
        r.set("PLANT_NM", Value(name));
    return r;
}

Row lot(int id, const QString &name)
{
    Row r(gDB.get(), "D_CHEMI");
    r.set("FMR_ID", 1).set("CHEMI_ID", id);
    if (!name.isEmpty())
        r.set("CHEMI_NM", Value(name));
    return r;
}

Row shipment(int id, const QDate &day)
{
    return Row(gDB.get(), "D_SHIP").set("FMR_ID", 1).set("SHIP_ID", id).set("SHIP_DATE", day).set("SHOP_ID", 1);
}

Row slip(int id, const QDate &day, int debit, int credit, double amount)
{
    return Row(gDB.get(), "D_LEDGE")
        .set("FMR_ID", 1)
        .set("LEDGE_ID", id)
        .set("LEDGE_DATE", day)
        .set("D_ACC_ID", debit)
        .set("C_ACC_ID", credit)
        .set("AMT", Value(Currency::fromDouble(amount)));
}

Row diaryDay(const QDate &day) { return Row(gDB.get(), "D_DIARY").set("FMR_ID", 1).set("WORK_DATE", day); }

Row diaryLine(const QDate &day, int no, int kind)
{
    return Row(gDB.get(), "D_DIARY_DTL").set("FMR_ID", 1).set("WORK_DATE", day).set("DTL_NO", no).set("WORK_KBN", kind);
}

} // namespace Build
