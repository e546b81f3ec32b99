#pragma once
// The plantings the planting tests start from: three of farmer 1 in 2024,
// one of 2023, one of farmer 2 in 2024.
#include "support/Build.h"

#include <QDate>

inline void seedPlantings()
{
    Build::planting(1, QStringLiteral("春トマト"))
        .set("YYYY", 2024).set("HARVEST_SCHD_YM", "202407").set("CROP_NM", "トマト").set("CROP_NM1", "桃太郎")
        .set("CROP_NM2", "トマト").set("PLANT_TYPE", 2).set("FIELD_NM", "東の畑").set("AREA", 12.5)
        .set("PLANT_DATE", QDate(2024, 4, 10)).set("START_DATE", QDate(2024, 3, 1))
        .set("IMG_PATH1", "C:\\img\\a.jpg").set("IMG_PATH2", "C:\\img\\b.jpg").set("NOTES1", "ハウス２棟")
        .add();
    Build::planting(2, QStringLiteral("露地なす"))
        .set("YYYY", 2024).set("HARVEST_SCHD_YM", "202408").set("CROP_NM", "なす").set("CROP_NM1", "千両二号")
        .set("CROP_NM2", "なす").set("PLANT_TYPE", 1).set("AREA", 8)
        .set("PLANT_DATE", QDate(2024, 5, 2)).set("START_DATE", QDate(2024, 5, 1))
        .add();
    Build::planting(3, QStringLiteral("夏トマト"))
        .set("YYYY", 2024).set("HARVEST_SCHD_YM", "202409").set("CROP_NM", "トマト").set("CROP_NM1", "ミニトマト")
        .set("PLANT_TYPE", 1).set("PLANT_DATE", QDate(2024, 6, 1)).set("START_DATE", QDate(2024, 6, 1))
        .add();
    Build::planting(4, QStringLiteral("去年のキャベツ"))
        .set("YYYY", 2023).set("HARVEST_SCHD_YM", "202311").set("CROP_NM", "キャベツ")
        .set("PLANT_DATE", QDate(2023, 8, 20)).set("START_DATE", QDate(2023, 8, 1))
        .add();
    Build::planting(7, QStringLiteral("隣の畑のなす"))
        .set("FMR_ID", 2).set("YYYY", 2024).set("HARVEST_SCHD_YM", "202408").set("CROP_NM", "なす")
        .set("PLANT_DATE", QDate(2024, 5, 5)).set("START_DATE", QDate(2024, 5, 5))
        .add();
}
