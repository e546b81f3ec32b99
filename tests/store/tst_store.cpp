// The database objects against real engines: every statement form of the
// program's dialect, the look-ups with their Null/0/Empty results, typed
// writes through recordsets, the stamps, and bad input. Each test runs on
// SQLite and on MariaDB.

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "store/Database.h"
#include "store/Engine.h"
#include "store/Lookup.h"
#include "support/MsgRecorder.h"
#include "support/TestRoot.h"

#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest/QTest>

#include <ctime>

namespace {

QString q(const QString &s) { return s; }

// A day of diary lines, slips and plantings for farmer 1 (and a line of farmer 2).
void seedDiary()
{
    gDB->EXEC(q("INSERT INTO D_PLANT (FMR_ID, PLANT_ID, PLANT_NM, CROP_NM, START_DATE) VALUES "
                "(1, 1, '春トマト', 'トマト', #2024/03/01#)"));
    gDB->EXEC(q("INSERT INTO D_PLANT (FMR_ID, PLANT_ID, PLANT_NM, CROP_NM, START_DATE) VALUES "
                "(1, 2, '秋なす', 'なす', #2024/07/01#)"));
    const char *lines[] = {
        "(1, #2024-05-01 00:00:00#, 1, 1, 3, '誘引', NULL)",
        "(1, #2024-05-01 00:00:00#, 2, 2, 3, '芽かき', NULL)",
        "(1, #2024-05-02 00:00:00#, 1, 2, 3, 'あ誘引', NULL)",
        "(1, #2024-05-02 00:00:00#, 2, 1, 3, '芽かき', 7)",
        "(2, #2024-05-02 00:00:00#, 1, 1, 3, '別の人', NULL)",
    };
    for (const char *l : lines)
        gDB->EXEC(q("INSERT INTO D_DIARY_DTL (FMR_ID, WORK_DATE, DTL_NO, PLANT_ID, WORK_KBN, WORK_NM, LEDGE_ID) "
                    "VALUES ") +
                  QString::fromUtf8(l));
}

} // namespace

class TestStore : public QObject {
    Q_OBJECT
private slots:
    void deliveredDataIsThere()
    {
        TestRoot root;
        QCOMPARE(GetAccNm(Value(1000)), QStringLiteral("現金"));
        QCOMPARE(GetAccNm(Value(1130)), QStringLiteral("農薬"));
        QCOMPARE(gWORK->DLookup("OPT_KBN", "L_ACC", "ACC_ID=1130").toLong(), 3);
        QCOMPARE(gWORK->DLookup("OPT_KBN", "L_ACC", "ACC_ID=4160").toLong(), 2);
        QCOMPARE(gWORK->DLookup("DC_KBN", "L_ACC", "ACC_ID=4000").toLong(), 2);
        QCOMPARE(gWORK->DLookup("NM", "L_KBN", "KBN=20 AND ID=5").toText(), QStringLiteral("農薬散布"));
        QCOMPARE(gWORK->DLookup("NM", "L_KBN", "KBN=20 AND ID=8").toText(), QStringLiteral("出荷"));
        QCOMPARE(gWORK->DCount("*", "L_KBN", "KBN=10").toLong(), 10);
        QCOMPARE(gWORK->DLookup("ORIENTATION", "L_REP", "REP_ID=10").toLong(), 1);
        QCOMPARE(gMST->DCount("*", "M_FMR", "FMR_ID=1").toLong(), 1);
        QCOMPARE(gMST->DCount("*", "M_SHOP", "SHOP_ID=1").toLong(), 1);
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 0);
        QCOMPARE(gINI->GetCtrl("USE_TYPE"), Value(1));
        QCOMPARE(gINI->GetCtrl("WINDOW_STA"), Value(false));
    }

    void unitTableAgreesWithTheFixedRates()
    {
        // Stock uses the table, costs the fixed rates: both must say the same
        // for every pair the table converts.
        TestRoot root;
        RecordsetPtr rs = gWORK->GetFwdOnlyRst("SELECT ID, CHG_ID, RT FROM L_CHEMI_UNIT WHERE CHG_ID IS NOT NULL");
        int pairs = 0;
        for (; !rs->eof(); rs->MoveNext()) {
            const int id = rs->Fields("ID").toLong(), chg = rs->Fields("CHG_ID").toLong();
            const double rt = rs->Fields("RT").toDouble();
            // bought in CHG_ID, used in ID: a use of 1 ID is rt purchase units
            QCOMPARE(GetUnitRate(chg, id), rt);
            QCOMPARE(GetUnitRate(id, chg), 1 / rt);
            ++pairs;
        }
        QVERIFY(pairs >= 3);
        QCOMPARE(GetChemiUnitNm(Value(2)), QStringLiteral("kg"));
        QCOMPARE(GetChemiUnitNm(Value(5)), QStringLiteral("L"));
    }

    void lookupsNullZeroEmpty()
    {
        TestRoot root;
        QCOMPARE(gDB->DCount("*", "D_LEDGE", ""), Value(0));
        QCOMPARE(gDB->DMax("LEDGE_ID", "D_LEDGE", ""), Value::null());
        QCOMPARE(gDB->DSUM("AMT", "D_LEDGE", ""), Value::null());
        QCOMPARE(gMST->DLookup("FMR_NM", "M_FMR", "FMR_ID=99"), Value::null());
        gMST->EXEC("UPDATE M_FMR SET NOTES=NULL WHERE FMR_ID=1");
        QCOMPARE(gMST->DLookup("NOTES", "M_FMR", "FMR_ID=1"), Value::null());
        QCOMPARE(GetFmrNm(Value::null()), QString());
        QCOMPARE(GetShopNm(Value(1)), gMST->DLookup("SHOP_NM", "M_SHOP", "SHOP_ID=1").toText());
        QCOMPARE(GetKbn15Nm(Value(2)), gWORK->DLookup("NM", "L_KBN", "KBN=15 AND ID=2").toText());

        // A list's names read at once are the names looked up one by one.
        gWORK->EXEC("UPDATE L_ACC SET ACC_NM=NULL WHERE ACC_ID=1010");
        const NameTable uses = NameTable::kinds15(), accounts = NameTable::accounts(), shops = NameTable::shops();
        const QVector<Value> ids = {Value::null(), Value(0), Value(1), Value(2), Value(20), Value(1000),
                                    Value(1010), Value(4520), Value(99999), Value(2.0), Value("1000")};
        for (const Value &id : ids) {
            QCOMPARE(uses(id), GetKbn15Nm(id));
            QCOMPARE(accounts(id), GetAccNm(id));
            QCOMPARE(shops(id), GetShopNm(id));
        }
        QCOMPARE(accounts(Value(1000)).isEmpty(), false);
        QCOMPARE(failureOf([&] { uses(Value("x")); }).number(), failureOf([&] { GetKbn15Nm(Value("x")); }).number());
    }

    void lookupTypesFollowTheColumns()
    {
        TestRoot root;
        gDB->EXEC("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, LEDGE_DATE, AMT) VALUES (1, 1, #2024/1/5#, 1200.5)");
        gDB->EXEC("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, LEDGE_DATE, AMT) VALUES (1, 2, #2024/1/7#, 0.25)");
        gDB->EXEC("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, LEDGE_DATE, AMT) VALUES (3, 9, #2024/1/6#, 1)");
        const Value last = gDB->DMax("LEDGE_DATE", "D_LEDGE", "FMR_ID=1");
        QCOMPARE(last, Value(DateUtil::make(2024, 1, 7)));
        QCOMPARE(gDB->DSUM("AMT", "D_LEDGE", "FMR_ID=1"), Value(Currency::fromDouble(1200.75)));
        QCOMPARE(gDB->DSUM("D_LEDGE.AMT", "D_LEDGE", "FMR_ID=1"), Value(Currency::fromDouble(1200.75)));
        QCOMPARE(gDB->DCount("*", "D_LEDGE", "FMR_ID=1"), Value(2));
        QCOMPARE(gDB->DMin("LEDGE_ID", "D_LEDGE"), Value(1));
        QCOMPARE(gDB->DLookup("LEDGE_DATE", "D_LEDGE", "LEDGE_ID=9"), Value(DateUtil::make(2024, 1, 6)));
        // key form and list form of dates find the same row
        QCOMPARE(gDB->DCount("*", "D_LEDGE", "LEDGE_DATE=#2024-01-05 00:00:00#").toLong(), 1);
        QCOMPARE(gDB->DCount("*", "D_LEDGE", "LEDGE_DATE>=#2024/1/6# AND LEDGE_DATE<=#2024/01/07#").toLong(), 2);
    }

    void djoinJoinsWithBlanks()
    {
        TestRoot root;
        gWORK->EXEC("INSERT INTO W_CHEMI_USE (CHEMI_ID, QTY) VALUES (1, 1)");
        gWORK->EXEC("INSERT INTO W_CHEMI_USE (CHEMI_ID, QTY) VALUES (2, NULL)");
        gWORK->EXEC("INSERT INTO W_CHEMI_USE (CHEMI_ID, QTY) VALUES (3, 3)");
        QCOMPARE(gWORK->DJoin("QTY", "W_CHEMI_USE", "CHEMI_ID>0 ORDER BY CHEMI_ID"), Value("1  3"));
        QCOMPARE(gWORK->DJoin("QTY", "W_CHEMI_USE", "CHEMI_ID>5"), Value::null());
    }

    void criteriaOfTheServerEngine()
    {
        TestRoot root;
        const QString crit = q("WORK_DATE=#2024-01-02 00:00:00# AND NM LIKE '*a*' AND X='x*y' AND N='#1'");
        if (root.engine() == TestEngine::Mysql) {
            QCOMPARE(gDB->DBTYPE(), QStringLiteral("MYSQL"));
            QCOMPARE(gDB->convertCriteria(crit),
                     q("WORK_DATE='2024-01-02 00:00:00' AND NM LIKE '%a%' AND X='x*y' AND N=''1'"));
        } else {
            QCOMPARE(gDB->DBTYPE(), QStringLiteral("ACCESS"));
            QCOMPARE(gDB->convertCriteria(crit), crit);
        }
        QCOMPARE(gWORK->DBTYPE(), QStringLiteral("ACCESS"));
        QCOMPARE(gINI->DBTYPE(), QStringLiteral("ACCESS"));
        // a date criteria finds its row on either engine
        gDB->EXEC("INSERT INTO D_DIARY (FMR_ID, WORK_DATE, ONE_MSG) VALUES (1, #2024-01-02 00:00:00#, 'abc')");
        QCOMPARE(gDB->DCount("*", "D_DIARY", "WORK_DATE=#2024-01-02 00:00:00#").toLong(), 1);
        const QString wild = root.engine() == TestEngine::Mysql ? q("ONE_MSG LIKE '*b*'") : q("ONE_MSG LIKE '%b%'");
        QCOMPARE(gDB->DCount("*", "D_DIARY", wild).toLong(), 1);
    }

    void everyStatementFormRuns()
    {
        TestRoot root;
        seedDiary();
        // DELETE t.* FROM t (the stock count's joined and qualified updates run in tst_chemi)
        gDB->EXEC("DELETE D_DIARY_DTL.* FROM D_DIARY_DTL WHERE FMR_ID=2 AND WORK_DATE=#2024-05-02 00:00:00#");
        QCOMPARE(gDB->DCount("*", "D_DIARY_DTL", "FMR_ID=2").toLong(), 0);
        QCOMPARE(gDB->DCount("*", "D_DIARY_DTL", "FMR_ID=1").toLong(), 4);
        // a comparison selected and sorted on: the same crop first
        RecordsetPtr rs = gDB->GetFwdOnlyRst(
            "SELECT DISTINCT  D_PLANT.CROP_NM='なす' AS CROP_MATCH, D_DIARY_DTL.WORK_NM  FROM D_DIARY_DTL  INNER "
            "JOIN D_PLANT  ON (D_DIARY_DTL.PLANT_ID = D_PLANT.PLANT_ID)  AND (D_DIARY_DTL.FMR_ID = D_PLANT.FMR_ID) "
            "WHERE WORK_KBN=3 ORDER BY D_PLANT.CROP_NM='なす', D_DIARY_DTL.WORK_NM");
        QStringList names;
        for (; !rs->eof(); rs->MoveNext()) {
            names << rs->Fields("WORK_NM").toText();
            QVERIFY(rs->Fields("CROP_MATCH").toBool() == (names.size() <= 2));
        }
        QCOMPARE(names, (QStringList{"あ誘引", "芽かき", "芽かき", "誘引"}));
        QCOMPARE(gDB->DCount("*", "D_DIARY_DTL", "FMR_ID=1 AND LEDGE_ID=7").toLong(), 1);
    }

    void likeAndCaseAsTheFileEngine()
    {
        TestRoot root;
        RecordsetPtr rs = gWORK->GetFwdOnlyRst(
            "SELECT L_CROP.CROP_NM1 FROM L_CROP WHERE L_CROP.CROP_KBN LIKE '01%' ORDER BY CROP_NM1");
        QVERIFY(rs->RecordCount() >= 5);
        QCOMPARE(gWORK->DCount("*", "L_CROP", "CROP_NM1 LIKE '%トマト%'").toLong(),
                 gWORK->DCount("*", "L_CROP", "CROP_NM1='トマト' OR CROP_NM1='ミニトマト'").toLong());
        gMST->EXEC("UPDATE M_FMR SET NOTES='Organic JAS' WHERE FMR_ID=1");
        QCOMPARE(gMST->DCount("*", "M_FMR", "NOTES LIKE '%organic%'").toLong(), 1);
        QCOMPARE(gMST->DCount("*", "M_FMR", "NOTES='organic jas'").toLong(), 1);
        // a backslash in text is data on both engines
        gMST->EXEC("UPDATE M_FMR SET NOTES='C:\\farm\\new' WHERE FMR_ID=1");
        QCOMPARE(gMST->DLookup("NOTES", "M_FMR", "FMR_ID=1").toText(), QStringLiteral("C:\\farm\\new"));
    }

    void userTextWithAQuoteBreaksOnlyItsStatement()
    {
        TestRoot root;
        const QString notes = q("it's; DELETE FROM D_LEDGE; --");
        gDB->EXEC("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, AMT) VALUES (1, 1, 100)");
        const long n = failureOf([&] {
            gDB->EXEC(q("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, NOTES, AMT) VALUES (1, 2, '") + notes + q("', 5)"));
        }).number();
        QVERIFY(n != 0);
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 1);
        // a ';' inside quotes is data
        gDB->EXEC("UPDATE D_LEDGE SET NOTES='a;b' WHERE LEDGE_ID=1");
        QCOMPARE(gDB->DLookup("NOTES", "D_LEDGE", "LEDGE_ID=1"), Value("a;b"));
    }

    void typedWritesFailLikeTheEngine()
    {
        TestRoot root;
        RecordsetPtr rs = gDB->GetDynamicRst("SELECT D_LEDGE.* FROM D_LEDGE WHERE 0=1");
        QVERIFY(rs->eof());
        rs->AddNew();
        rs->SetField("FMR_ID", Value(1));
        rs->SetField("LEDGE_ID", Value("7"));            // numeric text is taken
        rs->SetField("LEDGE_DATE", Value("2024/1/5"));   // a date as typed
        QCOMPARE(failureOf([&] { rs->SetField("AMT", Value("abc")); }).number(), VbErr::TypeMismatch);
        QCOMPARE(failureOf([&] { rs->SetField("AMT", Value("")); }).number(), VbErr::TypeMismatch);
        QCOMPARE(failureOf([&] { rs->SetField("D_ACC_ID", Value(3e10)); }).number(), VbErr::Overflow);
        QCOMPARE(failureOf([&] { rs->SetField("LEDGE_DATE", Value("2024/2/30")); }).number(), VbErr::TypeMismatch);
        QCOMPARE(failureOf([&] { rs->SetField("NO_SUCH", Value(1)); }).number(), VbErr::ItemNotFound);
        rs->SetField("AMT", Value("1,234.5"));
        rs->SetField("NOTES", Value::null());
        QCOMPARE(rs->Fields("LEDGE_ID"), Value(7));
        rs->Update();
        rs->Close();
        QCOMPARE(gDB->DLookup("AMT", "D_LEDGE", "LEDGE_ID=7"), Value(Currency::fromDouble(1234.5)));
        QCOMPARE(gDB->DLookup("LEDGE_DATE", "D_LEDGE", "LEDGE_ID=7"), Value(DateUtil::make(2024, 1, 5)));
        QCOMPARE(gDB->DLookup("NOTES", "D_LEDGE", "LEDGE_ID=7"), Value::null());
        // the SQL path refuses text in number columns too
        QVERIFY(failureOf([] { gDB->EXEC("UPDATE D_LEDGE SET AMT='abc' WHERE LEDGE_ID=7"); }).number() != 0);
        QCOMPARE(gDB->DLookup("AMT", "D_LEDGE", "LEDGE_ID=7"), Value(Currency::fromDouble(1234.5)));
    }

    void dynamicSetsWriteByKey()
    {
        TestRoot root;
        seedDiary();
        // the planting screen's statement names no farmer: the first row of the number is changed
        gDB->EXEC("INSERT INTO D_PLANT (FMR_ID, PLANT_ID, PLANT_NM) VALUES (2, 1, '他の人の作付')");
        RecordsetPtr rs = gDB->GetDynamicRst("SELECT D_PLANT.* FROM D_PLANT WHERE D_PLANT.PLANT_ID=1 ORDER BY FMR_ID");
        QCOMPARE(rs->RecordCount(), 2);
        rs->SetField("PLANT_NM", Value("夏トマト"));
        rs->SetField("UDATE", Value(DateUtil::make(2024, 6, 1, 10, 30, 0)));
        rs->Update();
        QCOMPARE(gDB->DLookup("PLANT_NM", "D_PLANT", "FMR_ID=1 AND PLANT_ID=1").toText(), QStringLiteral("夏トマト"));
        QCOMPARE(gDB->DLookup("PLANT_NM", "D_PLANT", "FMR_ID=2 AND PLANT_ID=1").toText(), QStringLiteral("他の人の作付"));
        QCOMPARE(gDB->DLookup("UDATE", "D_PLANT", "FMR_ID=1 AND PLANT_ID=1"), Value(DateUtil::make(2024, 6, 1, 10, 30, 0)));
        // saving a row unchanged is a save, not a lost row
        rs->SetField("PLANT_NM", Value("夏トマト"));
        rs->Update();
        qint64 touched = 0;
        gDB->EXEC("UPDATE D_PLANT SET PLANT_NM='夏トマト' WHERE FMR_ID=1 AND PLANT_ID=1", &touched);
        QCOMPARE(touched, qint64(1));
        // Delete leaves the position on the removed row; MoveNext goes on
        rs = gDB->GetDynamicRst("SELECT D_DIARY_DTL.* FROM D_DIARY_DTL WHERE FMR_ID=1 ORDER BY WORK_DATE, DTL_NO");
        QCOMPARE(rs->RecordCount(), 4);
        int seen = 0;
        for (; !rs->eof(); rs->MoveNext()) {
            ++seen;
            if (rs->Fields("WORK_NM").toText() == QStringLiteral("芽かき"))
                rs->Delete();
        }
        QCOMPARE(seen, 4);
        QCOMPARE(gDB->DCount("*", "D_DIARY_DTL", "FMR_ID=1").toLong(), 2);
        // a set over a join is read-only
        rs = gDB->GetDynamicRst("SELECT D_DIARY_DTL.WORK_NM FROM D_DIARY_DTL INNER JOIN D_PLANT ON "
                                "D_DIARY_DTL.PLANT_ID = D_PLANT.PLANT_ID");
        QCOMPARE(failureOf([&] { rs->SetField("WORK_NM", Value("x")); }).number(), VbErr::NotUpdatable);
        // readers refuse writes, and a row past the end is no row
        rs = gDB->GetFwdOnlyRst("SELECT D_PLANT.* FROM D_PLANT WHERE 0=1");
        QCOMPARE(failureOf([&] { rs->AddNew(); }).number(), VbErr::NotUpdatable);
        QCOMPARE(failureOf([&] { rs->Fields("PLANT_ID"); }).number(), VbErr::NoCurrentRecord);
    }

    // What the record layer writes comes back as it was, whatever the text
    // holds (on a server the values are written into the statement).
    void writtenValuesComeBack_data()
    {
        QTest::addColumn<QString>("column");
        QTest::addColumn<Value>("value");
        QTest::newRow("quotes and a marker") << "NOTES" << Value("O'Brien \"?\" `x` ?");
        QTest::newRow("backslashes") << "NOTES" << Value("C:\\\\data\\'\\");
        QTest::newRow("Japanese and a symbol outside the basic plane") << "NOTES" << Value("ｶﾅ漢字𠮷");
        QTest::newRow("a line break") << "NOTES" << Value("一行目\r\n二行目");
        QTest::newRow("a fraction") << "QTY" << Value(0.1 + 0.2);
        QTest::newRow("a tiny number") << "QTY" << Value(1e-300);
        QTest::newRow("a negative") << "QTY" << Value(-1234.5);
        QTest::newRow("nothing") << "QTY" << Value::null();
    }
    void writtenValuesComeBack()
    {
        QFETCH(QString, column);
        QFETCH(Value, value);
        TestRoot root;
        RecordsetPtr rs = gDB->GetDynamicRst("SELECT D_DIARY_DTL.* FROM D_DIARY_DTL WHERE 0=1");
        rs->AddNew();
        rs->SetField("FMR_ID", Value(1));
        rs->SetField("WORK_DATE", Value(DateUtil::make(2024, 6, 1, 0, 0, 0)));
        rs->SetField("DTL_NO", Value(1));
        rs->SetField(column, value);
        rs->Update();
        QCOMPARE(gDB->DLookup(column, "D_DIARY_DTL", "FMR_ID=1 AND DTL_NO=1"), value);
        // and once more through a change of the row
        rs = gDB->GetDynamicRst("SELECT D_DIARY_DTL.* FROM D_DIARY_DTL WHERE FMR_ID=1");
        rs->SetField("WORK_NM", value.isNull() ? Value("?") : Value(value.toText()));
        rs->Update();
        QCOMPARE(gDB->DLookup("WORK_NM", "D_DIARY_DTL", "FMR_ID=1 AND DTL_NO=1").toText(),
                 value.isNull() ? QStringLiteral("?") : value.toText());
    }

    // Rows added in a batch arrive as rows added one by one do, however the
    // statements split them; a key taken twice fails where the batch is
    // written, and the transaction keeps none of it.
    void batchedRowsArriveWhole_data()
    {
        QTest::addColumn<int>("rows");
        QTest::newRow("one") << 1;
        QTest::newRow("a statement full") << 50;
        QTest::newRow("one over") << 51;
        QTest::newRow("three statements") << 120;
    }
    void batchedRowsArriveWhole()
    {
        QFETCH(int, rows);
        TestRoot root;
        RecordsetPtr rs = gDB->GetDynamicRst("SELECT D_DIARY_DTL.* FROM D_DIARY_DTL WHERE 0=1");
        rs->BeginBatch();
        for (int i = 1; i <= rows; ++i) {
            rs->AddNew();
            rs->SetField("FMR_ID", Value(1));
            rs->SetField("WORK_DATE", Value(DateUtil::make(2024, 6, 1, 0, 0, 0)));
            rs->SetField("DTL_NO", Value(i));
            if (i % 7 != 0) // every seventh row leaves its name out: other columns, another statement
                rs->SetField("WORK_NM", Value(QStringLiteral("行%1 'x'").arg(i)));
            rs->Update();
        }
        rs->EndBatch();
        QCOMPARE(gDB->DCount("*", "D_DIARY_DTL", "FMR_ID=1").toLong(), rows);
        QCOMPARE(gDB->DCount("*", "D_DIARY_DTL", "WORK_NM IS NULL").toLong(), rows / 7);
        QCOMPARE(gDB->DLookup("WORK_NM", "D_DIARY_DTL", QStringLiteral("DTL_NO=%1").arg(rows)).toText(),
                 rows % 7 ? QStringLiteral("行%1 'x'").arg(rows) : QString());

        // a key taken twice: the batch fails as it is written, the transaction keeps nothing
        gDB->Begintrans();
        const AppError e = failureOf([&] {
            RecordsetPtr w = gDB->GetDynamicRst("SELECT D_DIARY_DTL.* FROM D_DIARY_DTL WHERE 0=1");
            w->BeginBatch();
            for (int no : {900, 901, 900}) {
                w->AddNew();
                w->SetField("FMR_ID", Value(1));
                w->SetField("WORK_DATE", Value(DateUtil::make(2024, 6, 2, 0, 0, 0)));
                w->SetField("DTL_NO", Value(no));
                w->Update();
            }
            w->EndBatch();
        });
        gDB->RollbackTrans();
        QVERIFY(e.number() != 0);
        QCOMPARE(gDB->DCount("*", "D_DIARY_DTL", "DTL_NO>=900").toLong(), 0);
    }

    // The file engine reads its cells with the library itself: every kind of
    // stored value, in every kind of column, reads as the driver's cell read
    // through the column's type does (an unreadable cell included).
    void fileCellsReadAsTheDriverGivesThem()
    {
        TestRoot root;
        if (root.engine() != TestEngine::Sqlite)
            QSKIP("the server's cells come through the driver");
        // Stored as they stand, as far as the tables' types let them in.
        const QStringList rows = {
            "1, '2024-02-29 00:00:00', 1, 2147483647, '春 ﾄﾏﾄ 𠮷', 0.1, -1",
            "1, '2024-06-01 13:05:09', 2, 2147483648, '', 1e300, NULL",
            "1, '2024-13-01 00:00:00', 3, -2147483649, 12, 2, 0",
            "1, '2023-02-29 00:00:00', 4, NULL, 'a''b', -0.0, 40000",
            "1, '2024-06-01 24:00:00', 5, 7, NULL, NULL, -2147483648",
            "1, '1899-12-30 00:00:00', 6, 0, 'x', 3, NULL",
        };
        for (const QString &r : rows) {
            const AppError err = failureOf([&] { gDB->engine()->executeNative(
                "INSERT INTO D_DIARY_DTL (FMR_ID, WORK_DATE, DTL_NO, PLANT_ID, WORK_NM, QTY, CHEMI_ID) VALUES (" + r +
                ")"); });
            QVERIFY2(err.number() == 0, qPrintable(r + ": " + err.text()));
        }
        const QString sql = "SELECT D_DIARY_DTL.DTL_NO, D_DIARY_DTL.WORK_DATE, D_DIARY_DTL.PLANT_ID, "
                            "D_DIARY_DTL.WORK_NM, D_DIARY_DTL.QTY, D_DIARY_DTL.CHEMI_ID, MAX(D_DIARY_DTL.WORK_DATE), "
                            "SUM(D_DIARY_DTL.PLANT_ID), COUNT(*) AS N "
                            "FROM D_DIARY_DTL GROUP BY D_DIARY_DTL.DTL_NO ORDER BY D_DIARY_DTL.DTL_NO";
        Engine &e = *gDB->engine();
        const ResultSet got = e.select(sql);
        const ResultSet again = e.select(sql); // kept prepared
        QCOMPARE(got.rows.size(), rows.size());

        QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("driver"));
        other.setDatabaseName(e.target().file);
        QVERIFY(other.open());
        {
            QSqlQuery q(other);
            q.setNumericalPrecisionPolicy(QSql::LowPrecisionDouble);
            QVERIFY(q.exec(e.translate(sql)));
            for (int r = 0; q.next(); ++r)
                for (int c = 0; c < got.columns.size(); ++c) {
                    const ResultColumn &col = got.columns[c];
                    QVERIFY2(col.typed || col.name == QLatin1String("N"), qPrintable(col.name));
                    Value want;
                    try {
                        want = col.typed ? e.fromStorage(q.value(c), col.type) : Value::int32(q.value(c).toLongLong());
                    } catch (const AppError &err) {
                        want = Value::unreadable(err.number());
                    }
                    const QString where = QStringLiteral("row %1 %2").arg(r).arg(col.name);
                    QVERIFY2(got.rows[r][c] == want, qPrintable(where + ": " + got.rows[r][c].debugText() +
                                                                 " / " + want.debugText()));
                    QVERIFY2(again.rows[r][c] == want, qPrintable(where));
                }
        }
        other.close();
        other = QSqlDatabase();
        QSqlDatabase::removeDatabase(QStringLiteral("driver"));
    }

    // A read kept prepared follows its table when the table changes: a
    // column added, or the table made again with other column names.
    void keptReadsFollowTheirTable()
    {
        TestRoot root;
        Engine &e = *gDB->engine();
        e.executeNative("CREATE TABLE T_SCRATCH (A INTEGER, B VARCHAR(10))");
        e.executeNative("INSERT INTO T_SCRATCH (A, B) VALUES (1, 'x')");
        auto names = [](const ResultSet &rs) {
            QStringList n;
            for (const ResultColumn &c : rs.columns)
                n << c.name.toUpper();
            return n.join(QLatin1Char(','));
        };
        QCOMPARE(names(e.select("SELECT * FROM T_SCRATCH")), QStringLiteral("A,B"));
        e.executeNative("ALTER TABLE T_SCRATCH ADD COLUMN C VARCHAR(10)");
        e.executeNative("UPDATE T_SCRATCH SET C='y'");
        ResultSet rs = e.select("SELECT * FROM T_SCRATCH");
        QCOMPARE(names(rs), QStringLiteral("A,B,C"));
        QCOMPARE(rs.rows.value(0).value(2), Value("y"));
        e.executeNative("DROP TABLE T_SCRATCH");
        e.executeNative("CREATE TABLE T_SCRATCH (P INTEGER, Q VARCHAR(10), R VARCHAR(10))");
        rs = e.select("SELECT * FROM T_SCRATCH");
        QCOMPARE(names(rs), QStringLiteral("P,Q,R"));
        QCOMPARE(rs.rows.size(), 0);
        e.executeNative("DROP TABLE T_SCRATCH");
        QCOMPARE(failureOf([&] { e.select("SELECT * FROM T_SCRATCH"); }).number() != 0, true);
    }

    void findWalksForward()
    {
        TestRoot root;
        RecordsetPtr rs = gINI->GetDynamicRst("SELECT S_CTRL.* FROM S_CTRL ORDER BY CTRL_CD");
        rs->MoveFirst();
        rs->Find("CTRL_CD='USE_TYPE'");
        QVERIFY(!rs->eof());
        QCOMPARE(rs->Fields("CTRL_VALUE").toText(), QStringLiteral("1"));
        rs->Find("CTRL_CD='NO_SUCH_KEY'");
        QVERIFY(rs->eof());
        rs->MoveFirst();
        rs->Find("CTRL_CD LIKE 'DB_*'");
        QVERIFY(rs->Fields("CTRL_CD").toText().startsWith(QLatin1String("DB_")));
        rs = gWORK->GetStaticRst("SELECT * FROM L_ACC ORDER BY ACC_ID");
        rs->Find("ACC_ID>=4000");
        QCOMPARE(rs->Fields("ACC_ID"), Value(4000));
    }

    void datesDontMoveWithTheTimeZone()
    {
        // Stored dates are local dates without a zone: the zone of the
        // machine must not move them, in reading, writing or searching.
        const QByteArray before = qgetenv("TZ");
        qputenv("TZ", "Asia/Tokyo");
        tzset();
        {
            TestRoot root;
            gDB->EXEC("INSERT INTO D_DIARY (FMR_ID, WORK_DATE) VALUES (1, #2024/1/5#)");
            RecordsetPtr rs = gDB->GetDynamicRst("SELECT D_DIARY.* FROM D_DIARY WHERE FMR_ID=1");
            QCOMPARE(rs->Fields("WORK_DATE"), Value(DateUtil::make(2024, 1, 5)));
            rs->Find("WORK_DATE=#2024/01/05#");
            QVERIFY(!rs->eof());
            rs->SetField("UDATE", Value(DateUtil::make(2024, 1, 5, 23, 30, 0)));
            rs->Update();
            QCOMPARE(gDB->DLookup("UDATE", "D_DIARY", "FMR_ID=1"), Value(DateUtil::make(2024, 1, 5, 23, 30, 0)));
            QCOMPARE(gDB->DMax("WORK_DATE", "D_DIARY"), Value(DateUtil::make(2024, 1, 5)));
        }
        if (before.isNull())
            qunsetenv("TZ");
        else
            qputenv("TZ", before);
        tzset();
    }

    void stampsAreReleasedByComputerName()
    {
        TestRoot root;
        setCompNameForTests(QStringLiteral("PC-A"));
        gDB->EXEC("INSERT INTO D_DIARY (FMR_ID, WORK_DATE, LAST_TM, HOLD_TM) VALUES (1, #2024/5/1#, 'PC-B', 'PC-A')");
        gDB->EXEC("INSERT INTO D_DIARY (FMR_ID, WORK_DATE, LAST_TM, HOLD_TM) VALUES (1, #2024/5/2#, 'PC-A', 'PC-B')");
        gDB->EXEC("INSERT INTO D_DIARY (FMR_ID, WORK_DATE, LAST_TM, HOLD_TM) VALUES (2, #2024/5/1#, NULL, 'PC-A')");
        gDB->ReleaseData("D_DIARY", "FMR_ID=1");
        QCOMPARE(gDB->DLookup("LAST_TM", "D_DIARY", "FMR_ID=1 AND WORK_DATE=#2024-05-01 00:00:00#").toText(),
                 QStringLiteral("PC-A"));
        QCOMPARE(gDB->DLookup("HOLD_TM", "D_DIARY", "FMR_ID=1 AND WORK_DATE=#2024-05-01 00:00:00#"), Value::null());
        QCOMPARE(gDB->DLookup("HOLD_TM", "D_DIARY", "FMR_ID=1 AND WORK_DATE=#2024-05-02 00:00:00#").toText(),
                 QStringLiteral("PC-B"));
        QCOMPARE(gDB->DLookup("HOLD_TM", "D_DIARY", "FMR_ID=2").toText(), QStringLiteral("PC-A"));
        gDB->ReleaseData("D_DIARY");
        QCOMPARE(gDB->DLookup("HOLD_TM", "D_DIARY", "FMR_ID=2"), Value::null());

        // the work object's release goes to the master database: a table that
        // only the data database has fails there, silently, into the trace
        QStringList trace;
        setLogHook([&](const QString &t) { trace << t; });
        gDB->EXEC("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, HOLD_TM) VALUES (1, 1, 'PC-A')");
        gWORK->ReleaseData("D_LEDGE");
        QCOMPARE(gDB->DLookup("HOLD_TM", "D_LEDGE", "LEDGE_ID=1").toText(), QStringLiteral("PC-A"));
        // (the trace holds every statement; a failure is the one "(number)..." line)
        const QStringList failures = trace.filter(QRegularExpression(QStringLiteral("^\\(\\d+\\)")));
        QCOMPARE(failures.size(), 1);
        QVERIFY(failures[0].contains(QLatin1String(" SQL:UPDATE D_LEDGE SET LAST_TM=HOLD_TM,")));
        gMST->EXEC("UPDATE M_PRD SET HOLD_TM='PC-A' WHERE PRD_ID=1");
        gWORK->ReleaseData("M_PRD");
        QCOMPARE(gMST->DLookup("LAST_TM", "M_PRD", "PRD_ID=1").toText(), QStringLiteral("PC-A"));
        // the settings object counts its errors instead
        QCOMPARE(gINI->ReleaseData("S_REP"), Value(1));
        setLogHook(nullptr);
        setCompNameForTests(QString());
    }

    void transactionsNest_data()
    {
        QTest::addColumn<bool>("innerFails");
        QTest::addColumn<bool>("innerCaught"); // the outer work carries on after it
        QTest::addColumn<bool>("outerFails");
        QTest::addColumn<bool>("written");
        QTest::newRow("both end well") << false << false << false << true;
        QTest::newRow("the outer fails after the inner ended well") << false << false << true << false;
        QTest::newRow("the inner fails, the outer passes it on") << true << false << false << false;
        QTest::newRow("the inner failure caught: the outer can't commit") << true << true << false << false;
    }
    void transactionsNest()
    {
        QFETCH(bool, innerFails);
        QFETCH(bool, innerCaught);
        QFETCH(bool, outerFails);
        QFETCH(bool, written);
        TestRoot root;
        const Value name = gMST->DLookup("FMR_NM", "M_FMR", "FMR_ID=1");
        const auto inner = [&] {
            inTransaction(gMST.get(), [&] {
                gMST->EXEC("UPDATE M_FMR SET NOTES='内' WHERE FMR_ID=1");
                if (innerFails)
                    raiseError(VbErr::InvalidCall);
            });
        };
        const long error = failureOf([&] {
            inTransaction(gMST.get(), [&] {
                gMST->EXEC("UPDATE M_FMR SET FMR_NM='外' WHERE FMR_ID=1");
                if (innerCaught)
                    QVERIFY(failureOf(inner).number() != 0);
                else
                    inner();
                if (outerFails)
                    raiseError(VbErr::Overflow);
            });
        }).number();
        QCOMPARE(error == 0, written);
        QCOMPARE(gMST->DLookup("FMR_NM", "M_FMR", "FMR_ID=1"), written ? Value("外") : name);
        QCOMPARE(gMST->DLookup("NOTES", "M_FMR", "FMR_ID=1") == Value("内"), written);
        // whatever happened, the next transaction stands by itself
        QVERIFY(!gMST->engine()->inTransaction());
        inTransaction(gMST.get(), [] { gMST->EXEC("UPDATE M_FMR SET NOTES='次' WHERE FMR_ID=1"); });
        QCOMPARE(gMST->DLookup("NOTES", "M_FMR", "FMR_ID=1"), Value("次"));
    }

    void aTransactionHoldsTheFileForWritingFromItsStart()
    {
        TestRoot root;
        if (root.engine() != TestEngine::Sqlite)
            QSKIP("the server locks rows, not the database");
        QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("other computer"));
        other.setDatabaseName(gDB->engine()->target().file);
        other.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=0"));
        QVERIFY(other.open());
        {
            QSqlQuery q(other);
            inTransaction(gDB.get(), [&] {
                // nothing written yet, and another writer already waits
                QVERIFY(!q.exec(QStringLiteral("BEGIN IMMEDIATE")));
            });
            QVERIFY(q.exec(QStringLiteral("BEGIN IMMEDIATE")));
            QVERIFY(q.exec(QStringLiteral("ROLLBACK")));
        }
        other.close();
        other = QSqlDatabase();
        QSqlDatabase::removeDatabase(QStringLiteral("other computer"));
    }

    void closedConnectionReopensForLookupsOnly()
    {
        TestRoot root;
        gMST->CloseCnn();
        QCOMPARE(failureOf([] { gMST->GetFwdOnlyRst("SELECT * FROM M_FMR"); }).number(), VbErr::NotConnected);
        QCOMPARE(gMST->DCount("*", "M_FMR").toLong(), 1);
        QVERIFY(gMST->isOpen());
    }
};

TILLORA_TEST_MAIN(TestStore)
#include "tst_store.moc"
