#include "rules/pesticide/LotFixture.h"

#include "base/Value.h"
#include "rules/common/Ids.h"
#include "support/Build.h"

void seedLots()
{
    Build::lot(1, QStringLiteral("ハルカゼ乳剤（見本）"))
        .set("REG_NO", "90001").set("USES", 1).set("MAKER_NM", "あおば農化株式会社（見本）").set("CHEMI_TYPE", 1)
        .set("CHEMI_KIND", "ピレスロイド系殺虫剤（見本）").set("PUR_DATE", QDate(2024, 4, 3)).set("PUR_SHOP", "JAみどり")
        .set("PUR_QTY", 3).set("PUR_UNIT", 2).set("ACC_ID", Acc::Payable).set("PUR_AMT", 4500).set("USED_QTY", 1)
        .set("REST_QTY", 2).set("NOTES", "春の分").set("LEDGE_ID", 3).set("CHK_FLG", true)
        .set("IDATE", Value(DateUtil::make(2024, 4, 3, 10))).add();
    Build::lot(2, QStringLiteral("ミナモフロアブル（見本）"))
        .set("REG_NO", "90003").set("USES", 2).set("PUR_DATE", QDate(2024, 5, 10)).set("PUR_QTY", 500)
        .set("PUR_UNIT", 4).set("ACC_ID", Acc::Cash).set("PUR_AMT", Value(0)).set("USED_QTY", 500)
        .set("REST_QTY", Value(0)).set("LEDGE_ID", Value(0)).set("CHK_FLG", true).add();
    Build::lot(3, QStringLiteral("自家製の木酢液"))
        .set("USES", 8).set("PUR_DATE", QDate(2024, 3, 1)).set("PUR_AMT", Value(0)).set("CHK_FLG", true).add();
    Build::lot(4, QStringLiteral("コモレビ水和剤（見本）"))
        .set("REG_NO", "90002").set("USES", 2).set("PUR_DATE", QDate(2024, 6, 20)).set("PUR_QTY", 2)
        .set("PUR_UNIT", 2).set("ACC_ID", Acc::Cash).set("PUR_AMT", 1800).set("USED_QTY", 0.5)
        .set("REST_QTY", 1.5).set("LEDGE_ID", 4).set("CHK_FLG", true).add();
    Build::lot(5, QStringLiteral("ハルカゼ乳剤（見本）"))
        .set("FMR_ID", 2).set("REG_NO", "90001").set("USES", 1).set("PUR_DATE", QDate(2024, 4, 5))
        .set("PUR_QTY", 5).set("USED_QTY", Value(0)).set("REST_QTY", 5).set("CHK_FLG", true).add();

    // the purchase slips: stock on the debit side, named by the lot
    const auto purchase = [](int farmer, int slip, const QDate &day, int lot, const char *name, int paidFrom,
                             double amount) {
        Build::Row r = Build::slip(slip, day, Acc::PesticideStock, paidFrom, amount);
        r.set("FMR_ID", farmer)
            .set("D_OPT_KBN", OptKbn::PesticideLot)
            .set("D_OPT_ID", lot)
            .set("C_OPT_KBN", OptKbn::None)
            .set("C_OPT_ID", Value(0));
        if (name)
            r.set("D_OPT_NM", name);
        r.add();
    };
    purchase(1, 3, QDate(2024, 4, 3), 1, "3.0kg", Acc::Payable, 4500);
    purchase(1, 4, QDate(2024, 6, 20), 4, "2.0kg", Acc::Cash, 1800);
    purchase(2, 9, QDate(2024, 4, 5), 5, nullptr, Acc::Cash, 900);

    // lot 1: 500 g and 0.5 kg; lot 2: all of it
    const auto use = [](const QDate &day, int lot, double qty, int unit) {
        Build::diaryLine(day, 1, WorkKbn::Spraying)
            .set("PLANT_ID", 1)
            .set("CHEMI_ID", lot)
            .set("QTY", qty)
            .set("UNIT_ID", unit)
            .add();
    };
    use(QDate(2024, 6, 9), 1, 500, 1);
    use(QDate(2024, 5, 20), 1, 0.5, 2);
    use(QDate(2024, 5, 21), 2, 500, 4);
}
