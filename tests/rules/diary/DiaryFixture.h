#pragma once
// Farmer 1's records around May 2024 and the readings of them, shared by the
// diary's rules tests and its screen tests (the include path names the
// tests' folder).
#include "base/Globals.h"
#include "base/Helpers.h"
#include "rules/diary/CalMonth.h"
#include "rules/diary/DiaryDay.h"
#include "store/Database.h"
#include "store/Stmt.h"
#include "support/Build.h"

#include <QDate>
#include <QStringList>
#include <QtTest/QTest>

namespace DiaryFixture {

inline const QDate kDay(2024, 5, 8);
inline const QDateTime kDayTime(kDay, QTime());

// Farmer 1's day kDay chosen, on the computer "PC-A"; and the computer's
// name given back.
inline void chooseTheDay()
{
    gFMR_ID = Value(1);
    gWORK_DATE = Value(kDayTime);
    setCompNameForTests(QStringLiteral("PC-A"));
}
inline void leaveTheDay() { setCompNameForTests(QString()); }

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
    r.WORK_DATE = Value(kDayTime);
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

// Saves the day with one spraying line: 100 g of lot 1 on planting 1.
inline void saveSprayingDay()
{
    DiaryDay d;
    d.load(Value(1), kDayTime);
    d.dtl[0] = spraying(1, 1, Value(100), 1);
    d.save();
}

// Registration numbers of lot 1 as they may be stored (a lot may be bought
// without one), as test data: "regNo" (empty for none) and whether the lot
// has "purposes".
inline void registrationRows()
{
    QTest::addColumn<QString>("regNo");
    QTest::addColumn<bool>("purposes");
    QTest::newRow("registered") << "90001" << true;
    QTest::newRow("without a number") << "" << false;
    QTest::newRow("a number in words") << "第123号" << false;
    QTest::newRow("a quote in it") << "9'1" << false;
    QTest::newRow("a statement in it") << "1 OR 1=1" << false;
}
inline void setRegistration(const QString &regNo)
{
    gDB->EXEC(Stmt("UPDATE D_CHEMI SET REG_NO=? WHERE CHEMI_ID=1").textOrNull(Value(regNo)));
}

// The slip of farmer 1 by its number: debit and credit account, amount, the
// option kinds, and the option names of the credit and the debit side; or
// "none".
inline QString slipOf(const Value &ledgeId)
{
    RecordsetPtr rs = gDB->GetFwdOnlyRst(
        Stmt("SELECT D_ACC_ID, C_ACC_ID, AMT, D_OPT_KBN, C_OPT_KBN, C_OPT_NM, D_OPT_NM FROM D_LEDGE WHERE FMR_ID=1 AND "
             "LEDGE_ID=?")
            .num(ledgeId));
    if (rs->eof())
        return QStringLiteral("none");
    QStringList cells;
    for (int i = 0; i < rs->FieldCount(); ++i)
        cells << (rs->Fields(i).isNull() ? QStringLiteral("-") : rs->Fields(i).toText());
    return cells.join(QLatin1Char(' '));
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

// The cell of a day of the month grid (an empty one for none).
inline const CalMonth::Cell &cellOf(const QVector<CalMonth::Cell> &cells, int day)
{
    for (const auto &c : cells)
        if (c.day == day)
            return c;
    static CalMonth::Cell none;
    return none;
}

// The marks of a cell: money, pesticide, shipment ("M-S").
inline QString marks(const CalMonth::Cell &c)
{
    return QStringLiteral("%1%2%3").arg(c.money ? "M" : "-", c.chemi ? "P" : "-", c.ship ? "S" : "-");
}

} // namespace DiaryFixture
