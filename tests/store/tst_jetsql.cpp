// The translation of the program's SQL dialect, as text: the forms the
// engine tests (tst_store) can't tell apart by their rows.

#include "base/AppError.h"
#include "store/JetSql.h"

#include <QtTest/QTest>

using JetSql::Dialect;

class TestJetSql : public QObject {
    Q_OBJECT
private slots:
    // What both engines get alike: date literals in every form typed, and a
    // choice (IIf, Switch) as CASE, nested ones and parts with their own
    // commas and brackets too; text in quotes and a choice without its parts
    // stay as written.
    void translatedAlike_data()
    {
        QTest::addColumn<QString>("jet");
        QTest::addColumn<QString>("out");
        QTest::newRow("key form") << "WORK_DATE=#2024-01-02 00:00:00#" << "WORK_DATE='2024-01-02 00:00:00'";
        QTest::newRow("list form") << "LEDGE_DATE>=#2024/01/01#" << "LEDGE_DATE>='2024-01-01 00:00:00'";
        QTest::newRow("as typed") << "X<=#2024/1/5#" << "X<='2024-01-05 00:00:00'";
        QTest::newRow("month first") << "X=#1/5/2024#" << "X='2024-01-05 00:00:00'";
        QTest::newRow("full width typed") << "X=#２０２４/１/５#" << "X='2024-01-05 00:00:00'";
        QTest::newRow("inside quotes stays") << "NOTES='#2024/1/5#' AND X=#2024/1/6#"
                                             << "NOTES='#2024/1/5#' AND X='2024-01-06 00:00:00'";
        QTest::newRow("quote doubled") << "N='a''#b' AND X=#2024/1/6#" << "N='a''#b' AND X='2024-01-06 00:00:00'";
        QTest::newRow("a choice") << "SELECT IIf(A>1, 'x', B) FROM T" << "SELECT (CASE WHEN A>1 THEN 'x' ELSE B END) FROM T";
        QTest::newRow("nested, from the inside out")
            << "UPDATE T SET X=IIf(K=1, 2.5, iif(K=2, MAX(A, B), X)) WHERE K IN (1,2)"
            << "UPDATE T SET X=(CASE WHEN K=1 THEN 2.5 ELSE (CASE WHEN K=2 THEN MAX(A, B) ELSE X END) END) WHERE K IN (1,2)";
        QTest::newRow("brackets in a part") << "SELECT IIf((A=1) AND (B=2), (C+1)*2, 0) FROM T"
                                            << "SELECT (CASE WHEN (A=1) AND (B=2) THEN (C+1)*2 ELSE 0 END) FROM T";
        QTest::newRow("a switch") << "UPDATE T SET X=Switch(K=1, 2.5, K=2 , -1) WHERE K IN (1,2)"
                                  << "UPDATE T SET X=(CASE WHEN K=1 THEN 2.5 WHEN K=2 THEN -1 END) WHERE K IN (1,2)";
        QTest::newRow("a switch of one part stays") << "SELECT Switch(A) FROM T" << "SELECT Switch(A) FROM T";
        QTest::newRow("quoted text stays") << "SELECT 'IIf(a, b, c)' FROM T" << "SELECT 'IIf(a, b, c)' FROM T";
        QTest::newRow("two parts stay") << "SELECT IIf(A, B) FROM T" << "SELECT IIf(A, B) FROM T";
        QTest::newRow("a column named like it stays") << "SELECT IIF_NO FROM T" << "SELECT IIF_NO FROM T";
    }
    void translatedAlike()
    {
        QFETCH(QString, jet);
        QFETCH(QString, out);
        QCOMPARE(JetSql::translate(jet, Dialect::Sqlite), out);
        QCOMPARE(JetSql::translate(jet, Dialect::Mysql), out);
    }

    void badDatesFailLikeTheEngine_data()
    {
        QTest::addColumn<QString>("jet");
        QTest::newRow("year only") << "X>=#/01/01#";
        QTest::newRow("no day 30 in February") << "X=#2024/2/30#";
        QTest::newRow("words") << "X=#tomorrow#";
        QTest::newRow("no closing mark") << "X=#2024/1/5";
    }
    void badDatesFailLikeTheEngine()
    {
        QFETCH(QString, jet);
        for (Dialect d : {Dialect::Sqlite, Dialect::Mysql}) {
            try {
                JetSql::translate(QStringLiteral("SELECT * FROM T WHERE ") + jet, d);
                QFAIL("a date that is none must fail");
            } catch (const AppError &e) {
                QCOMPARE(e.number(), VbErr::DateSyntax);
            }
        }
    }

    void oneStatementOnly()
    {
        QCOMPARE(JetSql::translate(QStringLiteral("SELECT 1;  "), Dialect::Sqlite), QStringLiteral("SELECT 1"));
        // user text with a quote ends the literal: what follows ';' never runs
        const QString injected = QStringLiteral("UPDATE D_LEDGE SET NOTES='a'; DELETE FROM D_LEDGE; --' WHERE 1=1");
        for (Dialect d : {Dialect::Sqlite, Dialect::Mysql}) {
            try {
                JetSql::translate(injected, d);
                QFAIL("a second statement must be refused");
            } catch (const AppError &e) {
                QCOMPARE(e.number(), VbErr::CharsAfterEnd);
            }
        }
        // a ';' inside quotes is data
        QCOMPARE(JetSql::translate(QStringLiteral("SELECT 'a;b'"), Dialect::Sqlite), QStringLiteral("SELECT 'a;b'"));
    }

    // Forms the engine tests don't send (tst_store and the stock count run
    // the others on both engines).
    void formsOnlyTheFileEngineRewrites_data()
    {
        QTest::addColumn<QString>("jet");
        QTest::addColumn<QString>("sqlite");
        QTest::newRow("delete all") << "DELETE * FROM M_PRD" << "DELETE FROM M_PRD";
        QTest::newRow("a statement that names no table stays broken")
            << "DELETE D_LEDGE.* FROM DELETE WHERE FMR_ID=1" << "DELETE FROM DELETE WHERE FMR_ID=1";
        QTest::newRow("joined update with a condition")
            << "UPDATE A INNER JOIN B ON A.K=B.K SET A.X=B.Y WHERE A.Z=#2024/1/1#"
            << "UPDATE A SET X=B.Y FROM B WHERE (A.K=B.K) AND (A.Z='2024-01-01 00:00:00')";
        QTest::newRow("a comparison inside a function or a plain column is left alone")
            << "SELECT COUNT(*), MAX(A) FROM T WHERE A=1 ORDER BY A DESC, B"
            << "SELECT COUNT(*), MAX(A) FROM T WHERE A=1 ORDER BY A DESC, B";
        QTest::newRow("a sorted comparison") << "SELECT A FROM T ORDER BY A<>1 DESC" << "SELECT A FROM T ORDER BY -(A<>1) DESC";
    }
    void formsOnlyTheFileEngineRewrites()
    {
        QFETCH(QString, jet);
        QFETCH(QString, sqlite);
        QCOMPARE(JetSql::translate(jet, Dialect::Sqlite), sqlite);
    }

    void sourcesOfAStatement()
    {
        const JetSql::Sources s = JetSql::sources(QStringLiteral(
            "SELECT L_CHEMI.*, L_KBN_1.ID FROM ((L_CHEMI LEFT JOIN L_MAKER ON L_CHEMI.MAKER_OMT = L_MAKER.MAKER_OMT) "
            "LEFT JOIN L_KBN ON L_CHEMI.USES = L_KBN.NOTE) LEFT JOIN L_KBN AS L_KBN_1 ON L_CHEMI.CHEMI_TYPE = "
            "L_KBN_1.NOTE WHERE L_KBN.KBN=15"));
        QCOMPARE(s.tables, (QStringList{"L_CHEMI", "L_MAKER", "L_KBN", "L_KBN"}));
        QCOMPARE(s.alias.value("L_KBN_1"), QStringLiteral("L_KBN"));
        QVERIFY(s.hasJoin);
        const JetSql::Sources one = JetSql::sources(QStringLiteral("SELECT * FROM S_CTRL WHERE CTRL_CD='FROM X'"));
        QCOMPARE(one.tables, QStringList{"S_CTRL"});
        QVERIFY(!one.hasJoin);
        QCOMPARE(JetSql::sources(QStringLiteral("SELECT * FROM A, B AS C WHERE 1=1")).tables,
                 (QStringList{"A", "B"}));
    }
};

QTEST_APPLESS_MAIN(TestJetSql)
#include "tst_jetsql.moc"
