// The statement builder: what a value becomes inside a statement, and the
// statements it makes running on both engines. A quote never ends a literal,
// a number place never brings anything but a number, a date place anything
// but a date, and a value that is no number finds nothing instead of failing.

#include "base/AppError.h"
#include "store/Database.h"
#include "store/Recordset.h"
#include "store/Stmt.h"
#include "support/Build.h"
#include "support/TestRoot.h"

#include <QtTest/QTest>

class TestStmt : public QObject {
    Q_OBJECT
private slots:
    void valuesByWhatTheyAre_data()
    {
        QTest::addColumn<QString>("made");
        QTest::addColumn<QString>("expected");
        auto row = [](const char *name, const Stmt &s, const char *expected) {
            QTest::newRow(name) << s.sql() << QString::fromUtf8(expected);
        };
        row("number", Stmt("A=?").num(Value(90001)), "A=90001");
        row("fraction", Stmt("A=?").num(Value(2.5)), "A=2.5");
        row("empty number", Stmt("A=?").num(Value()), "A=0");
        row("Null number", Stmt("A=?").num(Value::null()), "A=0");
        row("text with leading digits", Stmt("A=?").num(Value("3 OR 1=1")), "A=3");
        row("full-width digits", Stmt("A=?").num(Value("９０００１")), "A=90001");
        row("text that is no number", Stmt("A=?").num(Value("第123号")), "A=0");
        row("number or Null", Stmt("VALUES (?,?)").numOrNull(Value::null()).numOrNull(Value(7)), "VALUES (NULL,7)");
        row("amount", Stmt("AMT=?").amount(Currency::fromDouble(-1234.5)), "AMT=-1234.5");
        row("text", Stmt("NM=?").text(QStringLiteral("O'Neil")), "NM='O''Neil'");
        row("injection", Stmt("NM=?").text(QStringLiteral("a'); DROP TABLE D_SHIP; --")),
            "NM='a''); DROP TABLE D_SHIP; --'");
        row("text or Null", Stmt("(?,?,?)").textOrNull(Value()).textOrNull(Value(QString())).textOrNull(Value("x")),
            "(NULL,NULL,'x')");
        row("day", Stmt("D=?").day(Value("2024/5/1")), "D=#2024/05/01#");
        row("date and time", Stmt("D=?").time(Value(DateUtil::make(2024, 5, 1, 13, 4, 5))), "D=#2024-05-01 13:04:05#");
        row("time or Null", Stmt("D=?").timeOrNull(Value::null()), "D=NULL");
        row("ids", Stmt("ID IN(?)").ids({Value(3), Value("4x"), Value::null()}), "ID IN(3,4,0)");
        row("a ? inside a literal", Stmt("A='?' AND B=?").num(1), "A='?' AND B=1");
        row("a ? inside a value", Stmt("A=? AND B=?").text(QStringLiteral("?")).num(2), "A='?' AND B=2");
        row("a piece", Stmt("WHERE ? ORDER BY A").part(Stmt::joined({Stmt("A=?").num(1), Stmt("B=?").text("b")}, " AND ")),
            "WHERE A=1 AND B='b' ORDER BY A");
        row("a name", Stmt("SELECT ? FROM T").name(QStringLiteral("T.A_1")), "SELECT T.A_1 FROM T");
    }
    void valuesByWhatTheyAre()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        QFETCH(QString, made);
        QFETCH(QString, expected);
        QCOMPARE(made, expected);
    }

    void mistakesOfTheProgramRaise()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        auto raises = [](const std::function<QString()> &make, long number) {
            try {
                make();
            } catch (const AppError &e) {
                return e.number() == number;
            }
            return false;
        };
        QVERIFY(raises([] { return Stmt("A=? AND B=?").num(1).sql(); }, VbErr::InvalidCall));  // a ? left open
        QVERIFY(raises([] { return Stmt("A=1").num(1).sql(); }, VbErr::InvalidCall));          // no place for a value
        QVERIFY(raises([] { return Stmt("SELECT ?").name(QStringLiteral("A; DROP")).sql(); }, VbErr::InvalidCall));
        // a date place takes only a date: the engine never sees the text
        QVERIFY(raises([] { return Stmt("D=?").day(Value("いつか")).sql(); }, VbErr::DateSyntax));
        QVERIFY(raises([] { return Stmt("D=?").time(Value()).sql(); }, VbErr::DateSyntax));
        // a cell that could not be read is never written, least of all as 0
        const Value bad = Value::unreadable(VbErr::Overflow);
        QVERIFY(raises([&] { return Stmt("A=?").num(bad).sql(); }, VbErr::Overflow));
        QVERIFY(raises([&] { return Stmt("A=?").numOrNull(bad).sql(); }, VbErr::Overflow));
        QVERIFY(raises([&] { return Stmt("A=?").textOrNull(bad).sql(); }, VbErr::Overflow));
        QVERIFY(raises([&] { return Stmt("A=?").day(bad).sql(); }, VbErr::Overflow));
    }

    // Built statements as the engines run them: texts stored as typed, a
    // value that is no number finds nothing.
    void onTheEngines()
    {
        TestRoot root;
        const QString odd = QStringLiteral("O'Neil \"?\" #2024/01/01# ; --");
        gDB->EXEC(Stmt("INSERT INTO D_PLANT (FMR_ID, PLANT_ID, PLANT_NM, PLANT_DATE) VALUES (?, ?, ?, ?)")
                      .num(1)
                      .num(5)
                      .text(odd)
                      .day(Value("2024/5/1")));
        // (read by a statement: the look-ups of a server engine turn every # of
        // their criteria into a quote, text included, as they always have)
        RecordsetPtr rs = gDB->GetFwdOnlyRst(Stmt("SELECT D_PLANT.PLANT_ID, D_PLANT.PLANT_NM FROM D_PLANT WHERE PLANT_NM=?").text(odd));
        QVERIFY(!rs->eof());
        QCOMPARE(rs->Fields(0).toLong(), 5);
        QCOMPARE(rs->Fields(1).toText(), odd);
        rs->Close();
        QCOMPARE(gDB->DCount("*", "D_PLANT", Stmt("PLANT_DATE=?").day(Value("2024-05-01"))).toLong(), 1);
        QCOMPARE(gDB->DCount("*", "D_PLANT", Stmt("PLANT_ID=?").num(Value("第123号"))).toLong(), 0);
        QCOMPARE(gDB->DCount("*", "D_PLANT", Stmt("PLANT_ID IN(?)").ids({Value(5), Value(6)})).toLong(), 1);
    }
};

TILLORA_TEST_MAIN(TestStmt)
#include "tst_stmt.moc"
