#pragma once
// The slips both book test binaries read: farmer 1 has a sale of last year,
// sales and costs in April and May 2024, a slip with cash on both sides, an
// undated opening capital and a payment to a name with a quote; farmer 2 a
// sale in April.

#include "base/Value.h"
#include "rules/common/Ids.h"
#include "support/Build.h"

#include <QDate>

inline void seedSlips()
{
    constexpr int Seedlings = 4110; // 種苗費
    constexpr int Capital = 3000;   // 元入金
    using namespace Acc;
    Build::slip(1, QDate(2023, 12, 20), Cash, Sales, 1000).set("CTR_NM", "道の駅").add();
    Build::slip(2, QDate(2024, 4, 15), Cash, Sales, 2000).set("CTR_NM", "直売所").add();
    Build::slip(3, QDate(2024, 5, 2), Seedlings, Cash, 300).set("CTR_NM", "種苗店").add();
    Build::slip(4, QDate(2024, 5, 10), Cash, Sales, 5000).set("CTR_NM", "道の駅").add();
    Build::slip(5, QDate(2024, 5, 20), Cash, Cash, 700).add();
    Build::slip(6, QDate(), Cash, Capital, 10000).set("LEDGE_DATE", Value::null()).add();
    Build::slip(7, QDate(2024, 5, 25), Payable, Cash, 400).set("CTR_NM", "O'Neil 商店").add();
    Build::slip(1, QDate(2024, 4, 1), Cash, Sales, 9000).set("FMR_ID", 2).add();
}
