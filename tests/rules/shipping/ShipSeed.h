#pragma once
// The plantings the shipment tests ship from: farmer 1's tomatoes, open
// since 2024/4/1, and aubergines from 2024/4/20 to 2024/5/31.
#include "support/Build.h"

inline void seedPlantings()
{
    Build::planting(1, QStringLiteral("春トマト"))
        .set("YYYY", 2024)
        .set("CROP_NM1", "桃太郎")
        .set("CROP_NM2", "トマト")
        .set("PRD_ID", 1)
        .set("PRD_NM", "トマト")
        .set("AREA", Value(2.5))
        .set("START_DATE", QDate(2024, 4, 1))
        .set("PLANT_DATE", QDate(2024, 4, 5))
        .set("SHIP_SCHD_DATE1", QDate(2024, 6, 1))
        .add();
    Build::planting(2, QStringLiteral("早生なす"))
        .set("YYYY", 2024)
        .set("START_DATE", QDate(2024, 4, 20))
        .set("END_DATE", QDate(2024, 5, 31))
        .set("PLANT_DATE", QDate(2024, 4, 25))
        .add();
}
