#pragma once
// The slips both book test binaries read: farmer 1 has a sale of last year,
// sales and costs in April and May 2024, a slip with cash on both sides, an
// undated opening capital and a payment to a name with a quote; farmer 2 a
// sale in April.

#include "base/Value.h"
#include "rules/books/Ledger.h"
#include "rules/common/Ids.h"
#include "store/Database.h"
#include "store/Stmt.h"
#include "support/Build.h"

#include <QDate>
#include <QStringList>

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

inline Value slipField(int farmer, int id, const char *column)
{
    return gDB->DLookup(QString::fromLatin1(column), QStringLiteral("D_LEDGE"),
                        Stmt("FMR_ID=? AND LEDGE_ID=?").num(farmer).num(id));
}

// Columns of a stored slip as one text: dates "yyyy/mm/dd", Null "-".
inline QString slipText(int farmer, int id, const char *columns)
{
    QStringList out;
    for (const QString &c : QString::fromLatin1(columns).split(QLatin1Char(' '))) {
        const Value v = slipField(farmer, id, c.toLatin1().constData());
        out << (v.isNull() ? QStringLiteral("-") : v.isDateType() ? Ledger::dateText(v) : v.toText());
    }
    return out.join(QLatin1Char('|'));
}
