// A diary day: what opening takes, what a save writes (slips, pesticide cost
// slips, the day, the lines, the stock recount) and in what order, and the
// day screen as a user drives it.

#include "base/AppError.h"
#include "ui/Form.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "rules/diary/DiaryDay.h"
#include "screens/diary/frmDairyInput.h"
#include "rules/pesticide/ChemiStock.h"
#include "store/Database.h"
#include "support/GuiDriver.h"
#include "support/MsgRecorder.h"
#include "support/TestRoot.h"

#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QtTest/QTest>

namespace {

const QDateTime kDay = DateUtil::make(2024, 5, 8);

// Plantings, lots and a slip for farmer 1 around 2024-05-08.
void seed()
{
    gDB->EXEC("INSERT INTO D_PLANT (FMR_ID, PLANT_ID, PLANT_NM, CROP_NM, CROP_NM1, START_DATE, PLANT_DATE, AREA, "
              "HARVEST_SCHD_YM) VALUES (1, 1, '春トマト', 'トマト', '桃太郎', #2024/4/1#, #2024/4/5#, 12.5, '202407')");
    gDB->EXEC("INSERT INTO D_PLANT (FMR_ID, PLANT_ID, PLANT_NM, CROP_NM, START_DATE, PLANT_DATE) VALUES "
              "(1, 2, '露地なす', 'なす', #2024/4/20#, #2024/4/25#)");
    gDB->EXEC("INSERT INTO D_PLANT (FMR_ID, PLANT_ID, PLANT_NM, CROP_NM, START_DATE, END_DATE, PLANT_DATE) VALUES "
              "(1, 3, '冬キャベツ', 'キャベツ', #2023/10/1#, #2024/4/30#, #2023/10/1#)");
    // lots: 500 g for 2,000 yen; 2 kg for 6,000 yen; 1 L for 3,000 yen; 300 mg for 900 yen
    gDB->EXEC("INSERT INTO D_CHEMI (FMR_ID, CHEMI_ID, CHEMI_NM, REG_NO, PUR_DATE, PUR_QTY, PUR_UNIT, PUR_AMT, "
              "USED_QTY, REST_QTY, CHK_FLG) VALUES (1, 1, '見本水和剤', '90001', #2024/4/2#, 500, 1, 2000, 0, 500, -1)");
    gDB->EXEC("INSERT INTO D_CHEMI (FMR_ID, CHEMI_ID, CHEMI_NM, PUR_DATE, PUR_QTY, PUR_UNIT, PUR_AMT, USED_QTY, "
              "REST_QTY, CHK_FLG) VALUES (1, 2, '見本粒剤', #2024/4/3#, 2, 2, 6000, 0, 2, -1)");
    gDB->EXEC("INSERT INTO D_CHEMI (FMR_ID, CHEMI_ID, CHEMI_NM, PUR_DATE, PUR_QTY, PUR_UNIT, PUR_AMT, USED_QTY, "
              "REST_QTY, CHK_FLG) VALUES (1, 3, '見本乳剤', #2024/4/4#, 1, 5, 3000, 0, 1, -1)");
    gDB->EXEC("INSERT INTO D_CHEMI (FMR_ID, CHEMI_ID, CHEMI_NM, PUR_DATE, PUR_QTY, PUR_UNIT, PUR_AMT, USED_QTY, "
              "REST_QTY, CHK_FLG) VALUES (1, 4, '見本微量剤', #2024/4/4#, 300, 3, 900, 0, 300, -1)");
    gDB->EXEC("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, LEDGE_DATE, D_ACC_ID, C_ACC_ID, AMT, NOTES) VALUES "
              "(1, 1, #2024/5/8#, 4130, 1000, 1500, '肥料')");
}

DiaryDtlRec spraying(int plant, int chemi, const Value &qty, int unit, const QString &notes = QString())
{
    DiaryDtlRec r;
    r.FMR_ID = Value(1);
    r.WORK_DATE = Value(kDay);
    r.PLANT_ID = Value(plant);
    r.WORK_KBN = Value(5);
    r.WORK_NM = Value("農薬散布");
    r.CHEMI_ID = Value(chemi);
    r.QTY = qty;
    r.UNIT_ID = Value(unit);
    if (!notes.isEmpty())
        r.NOTES = Value(notes);
    return r;
}

// The day's slip made for a line: debit account, credit account, amount.
QString slipOf(const Value &ledgeId)
{
    RecordsetPtr rs = gDB->GetFwdOnlyRst(QStringLiteral("SELECT D_ACC_ID, C_ACC_ID, AMT, D_OPT_KBN, C_OPT_KBN, C_OPT_NM, "
                                                        "D_OPT_NM FROM D_LEDGE WHERE FMR_ID=1 AND LEDGE_ID=") +
                                         ledgeId.toText());
    if (rs->eof())
        return QStringLiteral("none");
    QStringList cells;
    for (int i = 0; i < rs->FieldCount(); ++i)
        cells << (rs->Fields(i).isNull() ? QStringLiteral("-") : rs->Fields(i).toText());
    return cells.join(QLatin1Char(' '));
}

double lot(int id, const char *column)
{
    return gDB->DLookup(QString::fromLatin1(column), "D_CHEMI", QStringLiteral("CHEMI_ID=%1").arg(id)).toDouble();
}

} // namespace

class TestDayEntry : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        gFMR_ID = Value(1);
        gWORK_DATE = Value(kDay);
        setCompNameForTests(QStringLiteral("PC-A"));
    }
    void cleanup() { setCompNameForTests(QString()); }

    void aBlankDayWritesNothingUntilSaved()
    {
        TestRoot root;
        DiaryDay d;
        d.load(gFMR_ID, DateUtil::make(2024, 6, 1));
        QCOMPARE(d.dtl.size(), 1);
        QCOMPARE(gLEDGE_ROWS.size(), 1);
        QCOMPARE(gDB->DCount("*", "D_DIARY").toLong(), 0);
        gWORK_DATE = Value(DateUtil::make(2024, 6, 1));
        d.save();
        QCOMPARE(gDB->DCount("*", "D_DIARY").toLong(), 1);
        // an empty day keeps one empty line numbered 1
        QCOMPARE(gDB->DCount("*", "D_DIARY_DTL").toLong(), 1);
        QCOMPARE(gDB->DLookup("DTL_NO", "D_DIARY_DTL", "FMR_ID=1"), Value(1));
        QVERIFY(gDB->DLookup("PLANT_ID", "D_DIARY_DTL", "FMR_ID=1").isNull());
        QVERIFY(gDB->DLookup("HOLD_TM", "D_DIARY", "FMR_ID=1").isNull());
        QCOMPARE(gDB->DLookup("LAST_TM", "D_DIARY", "FMR_ID=1").toText(), QStringLiteral("PC-A"));
        QVERIFY(!gDB->DLookup("IDATE", "D_DIARY", "FMR_ID=1").isNull());
    }

    void anUnchangedDayIsRewrittenAndRenumbered()
    {
        TestRoot root;
        seed();
        gDB->EXEC("INSERT INTO D_DIARY (FMR_ID, WORK_DATE, WTH_ID, ONE_MSG, HOLD_TM) VALUES (1, #2024/5/8#, 2, '曇り', "
                  "'PC-B')");
        for (int no : {2, 5, 9})
            gDB->EXEC(QStringLiteral("INSERT INTO D_DIARY_DTL (FMR_ID, WORK_DATE, DTL_NO, PLANT_ID, WORK_KBN, WORK_NM) "
                                     "VALUES (1, #2024/5/8#, %1, %2, 3, '作業%1')")
                          .arg(no)
                          .arg(no == 9 ? 3 : 1)); // the last on a planting that ended in April
        DiaryDay d;
        d.load(gFMR_ID, kDay);
        // opening holds the day for this computer, whoever held it
        QCOMPARE(gDB->DLookup("HOLD_TM", "D_DIARY", "FMR_ID=1").toText(), QStringLiteral("PC-A"));
        QCOMPARE(d.dtl.size(), 3);
        QCOMPARE(gLEDGE_ROWS.size(), 1);
        QCOMPARE(gLEDGE_ROWS[0][LedgeCol::NOTES], Value("肥料"));
        const Value before = gDB->DLookup("IDATE", "D_LEDGE", "LEDGE_ID=1");
        d.save();
        QCOMPARE(gDB->DJoin("DTL_NO", "D_DIARY_DTL", "FMR_ID=1 ORDER BY DTL_NO"), Value("1 2 3"));
        QCOMPARE(gDB->DJoin("WORK_NM", "D_DIARY_DTL", "FMR_ID=1 ORDER BY DTL_NO"), Value("作業2 作業5 作業9"));
        QCOMPARE(gDB->DLookup("PLANT_ID", "D_DIARY_DTL", "DTL_NO=3"), Value(3)); // kept, though not listed
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 1);
        QVERIFY(gDB->DLookup("IDATE", "D_LEDGE", "LEDGE_ID=1") != before || before.isNull());
        QVERIFY(gDB->DLookup("HOLD_TM", "D_DIARY", "FMR_ID=1").isNull());
        QVERIFY(!gDB->DLookup("UDATE", "D_DIARY", "FMR_ID=1").isNull());
        QCOMPARE(gDB->DLookup("ONE_MSG", "D_DIARY", "FMR_ID=1"), Value("曇り"));
    }

    void pesticideCostSlips_data()
    {
        QTest::addColumn<int>("chemi");
        QTest::addColumn<double>("qty");
        QTest::addColumn<int>("unit");
        QTest::addColumn<QString>("slip"); // debit credit amount dkind ckind cname dname
        QTest::newRow("grams of a gram lot") << 1 << 250.0 << 1 << "4160 1130 1000 2 3 250.0g -";
        QTest::newRow("kilograms of a gram lot") << 1 << 0.1 << 2 << "4160 1130 400 2 3 0.1kg -";
        QTest::newRow("grams of a kilogram lot") << 2 << 300.0 << 1 << "4160 1130 900 2 3 300.0g -";
        QTest::newRow("millilitres of a litre lot") << 3 << 200.0 << 4 << "4160 1130 600 2 3 200.0mL -";
        QTest::newRow("a correction changes the sides") << 1 << -50.0 << 1 << "1130 4160 200 3 2 - -50.0g";
        QTest::newRow("weight used of a volume lot costs nothing") << 3 << 10.0 << 1 << "4160 1130 0 2 3 10.0g -";
        QTest::newRow("rounded half up") << 1 << 0.125 << 1 << "4160 1130 1 2 3 0.1g -";
    }
    void pesticideCostSlips()
    {
        QFETCH(int, chemi);
        QFETCH(double, qty);
        QFETCH(int, unit);
        QFETCH(QString, slip);
        TestRoot root;
        seed();
        DiaryDay d;
        d.load(gFMR_ID, kDay);
        d.dtl[0] = spraying(1, chemi, Value(qty), unit, QStringLiteral("朝'露'"));
        d.dtl[0].DTL_NO = Value(1);
        d.save();
        // the new slip's number comes after the day's slips
        QCOMPARE(d.dtl[0].LEDGE_ID, Value(2));
        QCOMPARE(gDB->DLookup("LEDGE_ID", "D_DIARY_DTL", "FMR_ID=1"), Value(2));
        QCOMPARE(slipOf(Value(2)), slip);
        QCOMPARE(gDB->DLookup("NOTES", "D_LEDGE", "LEDGE_ID=2"), Value("朝'露'"));
        QCOMPARE(gDB->DLookup("D_OPT_ID", "D_LEDGE", "LEDGE_ID=2"), Value(qty > 0 ? 1 : chemi));
    }

    void aZeroQuantityMakesNoSlipAndASecondSaveReplacesTheSlip()
    {
        TestRoot root;
        seed();
        DiaryDay d;
        d.load(gFMR_ID, kDay);
        d.dtl[0] = spraying(1, 1, Value(100), 1);
        d.dtl[0].DTL_NO = Value(1);
        d.save();
        QCOMPARE(slipOf(Value(2)).section(' ', 2, 2), QStringLiteral("400"));
        // the same line, more used: the slip is replaced under its number
        DiaryDay again;
        again.load(gFMR_ID, kDay);
        QCOMPARE(gLEDGE_ROWS.size(), 2);
        again.dtl[0].QTY = Value("150");
        again.save();
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 2);
        QCOMPARE(slipOf(Value(2)).section(' ', 2, 2), QStringLiteral("600"));
        // quantity 0: the slip goes and the line keeps no slip
        DiaryDay zero;
        zero.load(gFMR_ID, kDay);
        zero.dtl[0].QTY = Value(0);
        zero.save();
        QCOMPARE(slipOf(Value(2)), QStringLiteral("none"));
        QCOMPARE(gDB->DLookup("LEDGE_ID", "D_DIARY_DTL", "FMR_ID=1"), Value(0));
        QCOMPARE(lot(1, "USED_QTY"), 0.0);
    }

    void badUnitsStopTheSaveAfterTheSlips()
    {
        TestRoot root;
        seed();
        DiaryDay d;
        d.load(gFMR_ID, kDay);
        d.day.ONE_MSG = Value("保存されない");
        gLEDGE_ROWS[0][LedgeCol::AMT] = Value(1800);
        // milligrams bought, kilograms used: the fixed rate overflows
        d.dtl[0] = spraying(1, 4, Value(1), 2);
        try {
            d.save();
            QFAIL("the mg-to-kg pair must fail");
        } catch (const AppError &e) {
            QCOMPARE(e.number(), VbErr::Overflow);
        }
        // the slips of step 1 stand, the day itself was not reached
        QCOMPARE(gDB->DLookup("AMT", "D_LEDGE", "LEDGE_ID=1"), Value(Currency::fromInt(1800)));
        QCOMPARE(gDB->DCount("*", "D_DIARY").toLong(), 0);
        // a use with no unit fails with the Null error
        d.dtl[0] = spraying(1, 1, Value(5), 1);
        d.dtl[0].UNIT_ID = Value::null();
        try {
            d.save();
            QFAIL("a quantity without unit must fail");
        } catch (const AppError &e) {
            QCOMPARE(e.number(), VbErr::InvalidNull);
        }
    }

    void aFailingStepKeepsWhatItWasReplacing()
    {
        TestRoot root;
        seed();
        DiaryDay d;
        d.load(gFMR_ID, kDay);
        // a second slip whose date is no date: the slips step fails as a
        // whole, so the day's slips in the tables are still the old ones
        LedgeRow bad = gLEDGE_ROWS[0];
        bad[LedgeCol::LEDGE_ID] = Value(2);
        bad[LedgeCol::LEDGE_DATE] = Value("5月の末");
        gLEDGE_ROWS[0][LedgeCol::AMT] = Value(9999);
        gLEDGE_ROWS.append(bad);
        QVERIFY_THROWS_EXCEPTION(AppError, d.save());
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 1);
        QCOMPARE(gDB->DLookup("AMT", "D_LEDGE", "LEDGE_ID=1"), Value(Currency::fromInt(1500)));
        // mended, a second save replaces everything
        gLEDGE_ROWS.removeLast();
        d.save();
        QCOMPARE(gDB->DLookup("AMT", "D_LEDGE", "LEDGE_ID=1"), Value(Currency::fromInt(9999)));
    }

    void aClearedPesticideWithASlipFailsInTheEngine()
    {
        TestRoot root;
        seed();
        DiaryDay d;
        d.load(gFMR_ID, kDay);
        d.dtl[0] = spraying(1, 1, Value(100), 1);
        d.save();
        DiaryDay again;
        again.load(gFMR_ID, kDay);
        again.dtl[0].CHEMI_ID = Value::null();
        again.day.ONE_MSG = Value("二度目");
        try {
            again.save();
            QFAIL("the statement naming no table must fail");
        } catch (const AppError &e) {
            QVERIFY(e.number() != 0);
        }
        QVERIFY(gDB->DLookup("ONE_MSG", "D_DIARY", "FMR_ID=1").isNull());
        // deleting the line (and its slip) lets the day be saved again
        QVERIFY(again.removeDetail(0));
        QCOMPARE(gLEDGE_ROWS.size(), 1);
        again.save();
        QCOMPARE(gDB->DLookup("ONE_MSG", "D_DIARY", "FMR_ID=1"), Value("二度目"));
        QCOMPARE(slipOf(Value(2)), QStringLiteral("none"));
    }

    void stockIsRecountedOverTheDays()
    {
        TestRoot root;
        seed();
        gDB->EXEC("INSERT INTO D_CHEMI (FMR_ID, CHEMI_ID, CHEMI_NM, PUR_QTY, PUR_UNIT, PUR_AMT, USED_QTY, REST_QTY) "
                  "VALUES (2, 9, '他の人の剤', 2, 2, 100, 0, 2)");
        gDB->EXEC("INSERT INTO D_DIARY_DTL (FMR_ID, WORK_DATE, DTL_NO, WORK_KBN, CHEMI_ID, QTY, UNIT_ID) VALUES "
                  "(2, #2024/5/1#, 1, 5, 2, 700, 1)"); // another farmer's line on lot 2: not counted
        auto saveDay = [](const QDateTime &day, QVector<DiaryDtlRec> lines) {
            gWORK_DATE = Value(day);
            DiaryDay d;
            d.load(gFMR_ID, day);
            for (DiaryDtlRec &l : lines)
                l.WORK_DATE = Value(day);
            d.dtl = lines;
            d.save();
        };
        saveDay(DateUtil::make(2024, 5, 6), {spraying(1, 2, Value(250), 1)});       // 0.25 kg
        saveDay(DateUtil::make(2024, 5, 7), {spraying(2, 2, Value(0.5), 2),          // 0.5 kg
                                             spraying(2, 1, Value(-20), 1)});        // a correction of lot 1
        QCOMPARE(lot(2, "USED_QTY"), 0.75);
        QCOMPARE(lot(2, "REST_QTY"), 1.25);
        QCOMPARE(lot(1, "USED_QTY"), -20.0);
        QCOMPARE(lot(1, "REST_QTY"), 520.0);
        QCOMPARE(lot(3, "REST_QTY"), 1.0);
        // the only use of lot 1 is removed: its count stays until the start-up reset
        saveDay(DateUtil::make(2024, 5, 7), {spraying(2, 2, Value(0.5), 2)});
        QCOMPARE(lot(1, "USED_QTY"), -20.0);
        ResetUnusedChemi(Value(1));
        QCOMPARE(lot(1, "USED_QTY"), 0.0);
        QCOMPARE(lot(1, "REST_QTY"), 500.0);
        QCOMPARE(lot(2, "USED_QTY"), 0.75);
    }

    void theScreenShowsTheDayAndItsTitle()
    {
        TestRoot root;
        seed();
        gWORK_DATE = Value(DateUtil::make(2024, 2, 10));
        frmDairyInput f;
        Gui::show(&f);
        QCOMPARE(f.windowTitle(), QStringLiteral("日誌入力（2024/02/10） 旧1/1 甲辰 先勝"));
        for (const auto &day : {qMakePair(DateUtil::make(2000, 1, 1), QStringLiteral("日誌入力（2000/01/01） 旧11/25 戊午 大安")),
                                qMakePair(DateUtil::make(2009, 5, 1), QStringLiteral("日誌入力（2009/05/01） 旧4/7 丁未 仏滅"))}) {
            gWORK_DATE = Value(day.first);
            frmDairyInput other;
            Gui::show(&other);
            QCOMPARE(other.windowTitle(), day.second);
        }
        // a day the old calendar can't place: no title, the screen works
        gWORK_DATE = Value(DateUtil::make(2020, 6, 21));
        frmDairyInput odd;
        Gui::show(&odd);
        QCOMPARE(odd.windowTitle(), QStringLiteral("日誌入力"));
        QCOMPARE(odd.ctl<QLabel>("lblDATA(0)")->text(), QStringLiteral("2020/06/21"));
    }

    void aDayEnteredOnTheScreen()
    {
        TestRoot root;
        seed();
        // names used before on this kind of work: the same crop first
        gDB->EXEC("INSERT INTO D_DIARY_DTL (FMR_ID, WORK_DATE, DTL_NO, PLANT_ID, WORK_KBN, WORK_NM) VALUES "
                  "(1, #2024/4/9#, 1, 2, 5, 'なす消毒')");
        gDB->EXEC("INSERT INTO D_DIARY_DTL (FMR_ID, WORK_DATE, DTL_NO, PLANT_ID, WORK_KBN, WORK_NM) VALUES "
                  "(1, #2024/4/10#, 1, 1, 5, 'トマト消毒')");
        gDB->EXEC("INSERT INTO D_DIARY_DTL (FMR_ID, WORK_DATE, DTL_NO, PLANT_ID, WORK_KBN, WORK_NM) VALUES "
                  "(1, #2024/4/10#, 2, 1, 5, 'アブラムシ防除')");
        MsgRecorder rec;
        frmDairyInput f;
        Gui::show(&f);
        QCOMPARE(f.ctl<QLabel>("lblDATA(1)")->text(), GetFmrNameForDay());
        auto *plants = f.ctl<QListWidget>("List1(0)");
        QCOMPARE(plants->count(), 2); // the cabbage ended in April
        Gui::choose(f.ctl<QComboBox>("cmbDATA(0)"), 2);
        Gui::type(f.ctl<QLineEdit>("txtDATA(0)"), QStringLiteral("11.5"));
        Gui::type(f.ctl<QLineEdit>("txtDATA(1)"), QStringLiteral("23"));
        Gui::type(f.ctl<QLineEdit>("txtDATA(2)"), QStringLiteral("晴れ間に消毒"));
        Gui::leave(f.ctl<QLineEdit>("txtDATA(2)"));

        // a spraying line on the tomatoes
        plants->setCurrentRow(0);
        emit plants->itemClicked(plants->item(0));
        Gui::settle();
        QCOMPARE(f.ctl<QLabel>("lblDATA(2)")->text(), QStringLiteral("桃太郎"));
        QCOMPARE(f.ctl<QLabel>("lblDATA(3)")->text(), QStringLiteral("2024/07"));
        Gui::click(f.ctl<QPushButton>("cmdSUB(1)"));
        auto *kind = f.ctl<QComboBox>("cmbDATA(1)");
        kind->hidePopup();
        Gui::choose(kind, 5); // 農薬散布
        Gui::leave(kind);
        auto *name = f.ctl<QComboBox>("Combo1(0)");
        QCOMPARE(name->count(), 3);
        QCOMPARE(name->itemText(0), QStringLiteral("アブラムシ防除"));
        QCOMPARE(name->itemText(1), QStringLiteral("トマト消毒"));
        QCOMPARE(name->itemText(2), QStringLiteral("なす消毒"));
        QVERIFY(f.ctl<QGroupBox>("Frame2")->isVisible());
        Gui::focus(name);
        name->hidePopup();
        name->setEditText(QStringLiteral("トマト消毒"));
        Gui::leave(name);
        QCOMPARE(f.ctl<QListWidget>("List1(1)")->item(0)->text(), QStringLiteral("トマト消毒"));
        auto *lotBox = f.ctl<QComboBox>("cmbDATA(2)");
        QCOMPARE(lotBox->itemText(1), QStringLiteral("4/4見本乳剤"));
        Gui::choose(lotBox, lotBox->findText(QStringLiteral("4/2見本水和剤")));
        Gui::leave(lotBox);
        auto *purpose = f.ctl<QComboBox>("cmbDATA(3)");
        QVERIFY(purpose->count() > 0); // the purposes of the lot's registration
        Gui::type(f.ctl<QLineEdit>("txtDATA(4)"), QStringLiteral("250"));
        Gui::choose(f.ctl<QComboBox>("cmbDATA(4)"), 0); // g
        Gui::leave(f.ctl<QComboBox>("cmbDATA(4)"));

        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QVERIFY(rec.messages.isEmpty());
        QVERIFY(!f.isVisible());
        QCOMPARE(gDB->DLookup("WTH_ID", "D_DIARY", "FMR_ID=1 AND WORK_DATE=#2024/5/8#"), Value(2));
        QCOMPARE(gDB->DLookup("LO_TMP", "D_DIARY", "FMR_ID=1 AND WORK_DATE=#2024/5/8#"), Value(11.5));
        QCOMPARE(gDB->DLookup("ONE_MSG", "D_DIARY", "FMR_ID=1 AND WORK_DATE=#2024/5/8#"), Value("晴れ間に消毒"));
        QCOMPARE(gDB->DLookup("CHEMI_NM", "D_DIARY_DTL", "FMR_ID=1 AND WORK_DATE=#2024/5/8#"),
                 Value("4/2見本水和剤"));
        QCOMPARE(gDB->DLookup("WORK_NM", "D_DIARY_DTL", "FMR_ID=1 AND WORK_DATE=#2024/5/8#"), Value("トマト消毒"));
        QCOMPARE(slipOf(gDB->DLookup("LEDGE_ID", "D_DIARY_DTL", "FMR_ID=1 AND WORK_DATE=#2024/5/8#")),
                 QStringLiteral("4160 1130 1000 2 3 250.0g -"));
        QCOMPARE(lot(1, "USED_QTY"), 250.0);
        // closing released the hold
        QVERIFY(gDB->DLookup("HOLD_TM", "D_DIARY", "FMR_ID=1").isNull());
    }

    // A lot may be bought without a registration number, or with one that
    // is no number: its spraying line opens with an empty purpose list.
    void thePurposesOfALotByItsRegistration_data()
    {
        QTest::addColumn<QVariant>("regNo");
        QTest::addColumn<bool>("purposes");
        QTest::newRow("registered") << QVariant(QStringLiteral("90001")) << true;
        QTest::newRow("no registration number") << QVariant() << false;
        QTest::newRow("a number in words") << QVariant(QStringLiteral("第123号")) << false;
        QTest::newRow("a quote") << QVariant(QStringLiteral("9'1")) << false;
    }
    void thePurposesOfALotByItsRegistration()
    {
        QFETCH(QVariant, regNo);
        QFETCH(bool, purposes);
        TestRoot root;
        seed();
        gDB->EXEC("UPDATE D_CHEMI SET REG_NO=NULL WHERE CHEMI_ID=1");
        if (regNo.isValid())
            gDB->EXEC(QStringLiteral("UPDATE D_CHEMI SET REG_NO='%1' WHERE CHEMI_ID=1").arg(regNo.toString().replace("'", "''")));
        DiaryDay d;
        d.load(gFMR_ID, kDay);
        d.dtl[0] = spraying(1, 1, Value(100), 1);
        d.save();
        MsgRecorder rec;
        frmDairyInput f;
        Gui::show(&f);
        auto *plants = f.ctl<QListWidget>("List1(0)");
        plants->setCurrentRow(0);
        emit plants->itemClicked(plants->item(0));
        auto *works = f.ctl<QListWidget>("List1(1)");
        works->setCurrentRow(0);
        emit works->itemClicked(works->item(0));
        Gui::settle();
        QVERIFY2(rec.messages.isEmpty(), qPrintable(rec.messages.isEmpty() ? QString() : rec.lastPrompt()));
        QVERIFY(f.ctl<QGroupBox>("Frame2")->isVisible());
        QCOMPARE(f.ctl<QComboBox>("cmbDATA(3)")->count() > 0, purposes);
    }

    void closingDropsWhatWasntSaved()
    {
        TestRoot root;
        seed();
        frmDairyInput f;
        Gui::show(&f);
        Gui::type(f.ctl<QLineEdit>("txtDATA(2)"), QStringLiteral("消える"));
        Gui::click(f.ctl<QPushButton>("cmdMENU(0)"));
        QVERIFY(!f.isVisible());
        QCOMPARE(gDB->DCount("*", "D_DIARY").toLong(), 0);
    }

    void deletingALineTakesItsSlipAlong()
    {
        TestRoot root;
        seed();
        DiaryDay d;
        d.load(gFMR_ID, kDay);
        d.dtl[0] = spraying(1, 1, Value(100), 1);
        d.save();
        frmDairyInput f;
        Gui::show(&f);
        QCOMPARE(gLEDGE_ROWS.size(), 2);
        auto *plants = f.ctl<QListWidget>("List1(0)");
        plants->setCurrentRow(0);
        emit plants->itemClicked(plants->item(0));
        auto *works = f.ctl<QListWidget>("List1(1)");
        works->setCurrentRow(0);
        emit works->itemClicked(works->item(0));
        Gui::settle();
        QCOMPARE(f.detailIndex(), 0);
        Gui::click(f.ctl<QPushButton>("cmdSUB(0)"));
        QCOMPARE(works->count(), 0);
        QCOMPARE(gLEDGE_ROWS.size(), 1);
        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 1);
        QCOMPARE(gDB->DCount("*", "D_DIARY_DTL", "FMR_ID=1 AND CHEMI_ID>0").toLong(), 0);
    }

private:
    static QString GetFmrNameForDay() { return gMST->DLookup("FMR_NM", "M_FMR", "FMR_ID=1").toText(); }
};

TILLORA_GUI_TEST_MAIN(TestDayEntry)
#include "tst_dayentry.moc"
