#pragma once
// Farmer 1's records around May 2024, shared by the diary's rules tests and
// its screen tests (the include path names the tests' folder).
#include "rules/diary/DiaryDay.h"
#include "support/Build.h"

#include <QDate>

namespace DiaryFixture {

inline const QDate kDay(2024, 5, 8);

// For the day 2024-05-08: two plantings alive and one that ended in April;
// four lots bought in April (500 g for 2,000 yen, registered as 90001; 2 kg
// for 6,000 yen; 1 L for 3,000 yen; 300 mg for 900 yen); a fertiliser slip
// of the day paid in cash.
inline void seedDay()
{
    Build::planting(1, "春トマト")
        .set("CROP_NM", "トマト")
        .set("CROP_NM1", "桃太郎")
        .set("START_DATE", QDate(2024, 4, 1))
        .set("PLANT_DATE", QDate(2024, 4, 5))
        .set("AREA", 12.5)
        .set("HARVEST_SCHD_YM", "202407")
        .add();
    Build::planting(2, "露地なす").set("CROP_NM", "なす").set("START_DATE", QDate(2024, 4, 20)).set("PLANT_DATE", QDate(2024, 4, 25)).add();
    Build::planting(3, "冬キャベツ")
        .set("CROP_NM", "キャベツ")
        .set("START_DATE", QDate(2023, 10, 1))
        .set("END_DATE", QDate(2024, 4, 30))
        .set("PLANT_DATE", QDate(2023, 10, 1))
        .add();
    auto lot = [](int id, const char *name, const QDate &bought, double qty, int unit, int amount) {
        return Build::lot(id, QString::fromUtf8(name))
            .set("PUR_DATE", bought)
            .set("PUR_QTY", qty)
            .set("PUR_UNIT", unit)
            .set("PUR_AMT", amount)
            .set("USED_QTY", Value(0))
            .set("REST_QTY", qty)
            .set("CHK_FLG", true);
    };
    lot(1, "見本水和剤", QDate(2024, 4, 2), 500, 1, 2000).set("REG_NO", "90001").add();
    lot(2, "見本粒剤", QDate(2024, 4, 3), 2, 2, 6000).add();
    lot(3, "見本乳剤", QDate(2024, 4, 4), 1, 5, 3000).add();
    lot(4, "見本微量剤", QDate(2024, 4, 4), 300, 3, 900).add();
    Build::slip(1, kDay, 4130, 1000, 1500).set("NOTES", "肥料").add();
}

// A spraying line of farmer 1 on the day.
inline DiaryDtlRec spraying(int plant, int chemi, const Value &qty, int unit, const QString &notes = QString())
{
    DiaryDtlRec r;
    r.FMR_ID = Value(1);
    r.WORK_DATE = Value(QDateTime(kDay, QTime()));
    r.PLANT_ID = Value(plant);
    r.WORK_KBN = Value(WorkKbn::Spraying);
    r.WORK_NM = Value("農薬散布");
    r.CHEMI_ID = Value(chemi);
    r.QTY = qty;
    r.UNIT_ID = Value(unit);
    if (!notes.isEmpty())
        r.NOTES = Value(notes);
    return r;
}

// May 2024 of farmer 1: plantings touching the month, two diary days, slips
// that move money (cash on the 3rd, deposit on the 4th) and one that doesn't
// (a sale on credit on the 5th), pesticide on the 6th (planting 1) and the
// 7th (planting 2), a line without pesticide on the 8th, shipments on the
// 9th (planting 1) and the 10th (planting 2); and farmer 2's day and slip,
// which must never show.
inline void seedMay()
{
    Build::planting(1, "春トマト").set("START_DATE", QDate(2024, 4, 1)).set("PLANT_DATE", QDate(2024, 4, 5)).add();
    Build::planting(2, "露地なす")
        .set("START_DATE", QDate(2024, 4, 20))
        .set("END_DATE", QDate(2024, 5, 10))
        .set("PLANT_DATE", QDate(2024, 4, 25))
        .add();
    Build::planting(3, "冬キャベツ")
        .set("START_DATE", QDate(2023, 10, 1))
        .set("END_DATE", QDate(2024, 4, 30))
        .set("PLANT_DATE", QDate(2023, 10, 1))
        .add();
    Build::diaryDay(QDate(2024, 5, 3)).set("WTH_ID", 1).set("LO_TMP", 12).set("HI_TMP", 24).set("ONE_MSG", "定植").add();
    Build::diaryDay(QDate(2024, 5, 20)).set("WTH_ID", 11).set("HI_TMP", 18).add();
    Build::diaryDay(QDate(2024, 5, 4)).set("FMR_ID", 2).set("WTH_ID", 3).add();
    Build::slip(1, QDate(2024, 5, 3), 4130, 1000, 800).add();
    Build::slip(2, QDate(2024, 5, 4), 1010, 1040, 5000).add();
    Build::slip(3, QDate(2024, 5, 5), 1040, 4000, 3000).add();
    Build::slip(1, QDate(2024, 5, 6), 4130, 1000, 800).set("FMR_ID", 2).add();
    Build::diaryLine(QDate(2024, 5, 6), 1, WorkKbn::Spraying).set("PLANT_ID", 1).set("CHEMI_ID", 4).add();
    Build::diaryLine(QDate(2024, 5, 7), 1, WorkKbn::Spraying).set("PLANT_ID", 2).set("CHEMI_ID", 4).add();
    // (a literal 0 would be taken for a text pointer: Value(0))
    Build::diaryLine(QDate(2024, 5, 8), 1, 3).set("PLANT_ID", 1).set("CHEMI_ID", Value(0)).add();
    Build::shipment(1, QDate(2024, 5, 9)).set("PLANT_ID", 1).add();
    Build::shipment(2, QDate(2024, 5, 10)).set("PLANT_ID", 2).add();
}

} // namespace DiaryFixture
