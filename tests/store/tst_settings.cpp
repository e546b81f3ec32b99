// Settings rows and opening the configured connections: typed reads, the
// Null/Empty distinctions, saves by the row's own type, file names completed
// from the program's folder, and what a bad connection does.

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "store/Database.h"
#include "store/Setup.h"
#include "support/MsgRecorder.h"
#include "support/TestRoot.h"

#include <QFile>
#include <QtTest/QTest>

namespace {
struct EndCalled {
    int code;
};
void throwOnEnd(int code) { throw EndCalled{code}; }
}

class TestSettings : public QObject {
    Q_OBJECT
private slots:
    void readsByStoredType()
    {
        TestRoot root;
        root.setCtrl("K_BOOL", Value("True"), Value(1));
        root.setCtrl("K_BYTE", Value("200"), Value(2));
        root.setCtrl("K_INT", Value("-3"), Value(3));
        root.setCtrl("K_LONG", Value("70000"), Value(4));
        root.setCtrl("K_CUR", Value("1234.5678"), Value(5));
        root.setCtrl("K_DBL", Value("0.125"), Value(7));
        root.setCtrl("K_DATE", Value("2024/01/05 08:30:00"), Value(8));
        root.setCtrl("K_TEXT", Value("0012"), Value(10));
        root.setCtrl("K_UNTYPED", Value("0012"));
        root.setCtrl("K_NULL", Value::null(), Value(4));
        QCOMPARE(gINI->GetCtrl("K_BOOL"), Value(true));
        QCOMPARE(gINI->GetCtrl("K_BYTE"), Value::byte(200));
        QCOMPARE(gINI->GetCtrl("K_INT"), Value::int16(-3));
        QCOMPARE(gINI->GetCtrl("K_LONG"), Value(70000));
        QCOMPARE(gINI->GetCtrl("K_CUR"), Value(Currency::fromDouble(1234.5678)));
        QCOMPARE(gINI->GetCtrl("K_DBL"), Value(0.125));
        QCOMPARE(gINI->GetCtrl("K_DATE"), Value(DateUtil::make(2024, 1, 5, 8, 30, 0)));
        QCOMPARE(gINI->GetCtrl("K_TEXT"), Value("0012"));
        QCOMPARE(gINI->GetCtrl("K_UNTYPED"), Value("0012"));
        QCOMPARE(gINI->GetCtrl("K_NULL"), Value::null());
        // unknown key: Empty, which reads as 0
        const Value unknown = gINI->GetCtrl("NO_SUCH_KEY");
        QVERIFY(unknown.isEmpty());
        QCOMPARE(unknown.toLong(), 0);
    }

    // A row that can't be read is raised for the caller's trap; a key is
    // quoted like any text, so a key with an apostrophe is just a key.
    void badRowsRaiseAndKeysAreQuoted()
    {
        TestRoot root;
        root.setCtrl("K_BAD", Value("abc"), Value(4));
        MsgRecorder rec;
        try {
            gINI->GetCtrl("K_BAD");
            QFAIL("a number row holding text was read");
        } catch (const AppError &e) {
            QCOMPARE(e.text(), QStringLiteral("(13)型が一致しません。"));
        }
        QVERIFY(gINI->GetCtrl("O'BRIEN").isEmpty());
        int type = 0;
        QVERIFY(gINI->SaveCtrl("O'BRIEN", Value("x"), type));
        QCOMPARE(gINI->GetCtrl("O'BRIEN"), Value("x"));
        QVERIFY(rec.messages.isEmpty());
    }

    void savesByTheRowsOwnType()
    {
        TestRoot root;
        int type = 0;
        // a new key: no type, reads back as its text
        QVERIFY(gINI->SaveCtrl("NEW_KEY", Value(42), type));
        QCOMPARE(type, 10);
        QCOMPARE(gINI->GetCtrl("NEW_KEY"), Value("42"));
        QVERIFY(gINI->DLookup("CTRL_TYPE", "S_CTRL", "CTRL_CD='NEW_KEY'").isNull());
        // an empty value makes the row Null, not ""
        type = 4;
        QVERIFY(gINI->SaveCtrl("DEF_FMR_ID", Value(""), type));
        QCOMPARE(type, 4);
        QCOMPARE(gINI->GetCtrl("DEF_FMR_ID"), Value::null());
        // a boolean row stores the text of the boolean, whatever is passed
        type = 0;
        QVERIFY(gINI->SaveCtrl("WINDOW_STA", Value(-1), type));
        QCOMPARE(gINI->DLookup("CTRL_VALUE", "S_CTRL", "CTRL_CD='WINDOW_STA'"), Value("True"));
        QCOMPARE(gINI->GetCtrl("WINDOW_STA"), Value(true));
        // a date row stores the full date text
        root.setCtrl("LAST_DAY", Value::null(), Value(8));
        QVERIFY(gINI->SaveCtrl("LAST_DAY", Value("2024/3/9"), type));
        QCOMPARE(gINI->DLookup("CTRL_VALUE", "S_CTRL", "CTRL_CD='LAST_DAY'"), Value("2024/03/09 00:00:00"));
        QCOMPARE(gINI->GetCtrl("LAST_DAY"), Value(DateUtil::make(2024, 3, 9)));
        // a number row keeps the text
        QVERIFY(gINI->SaveCtrl("DEF_SHOP_ID", Value("5"), type));
        QCOMPARE(gINI->GetCtrl("DEF_SHOP_ID"), Value(5));
    }

    void fileNamesAreCompletedFromTheProgramFolder()
    {
        TestRoot root;
        if (root.engine() == TestEngine::Mysql)
            QSKIP("file names apply to the file engine");
        QCOMPARE(gINI->DB_NAME(), root.root() + QStringLiteral("/data/DATA.MDB"));
        QCOMPARE(gINI->MST_NAME(), root.root() + QStringLiteral("/data/MASTER.MDB"));
        root.setCtrl("DB_NAME", Value(root.root() + QStringLiteral("/data/DATA.MDB")));
        QCOMPARE(gINI->DB_NAME(), root.root() + QStringLiteral("/data/DATA.MDB"));
        root.setCtrl("DB_NAME", Value("..\\data\\NONE.MDB"));
        QCOMPARE(gINI->DB_NAME(), QString());
        root.setCtrl("DB_NAME", Value("x"));
        QCOMPARE(gINI->DB_NAME(), QString());
        // not the file engine: the text as it stands
        root.setCtrl("DB_TYPE", Value("1"));
        QCOMPARE(gINI->DB_NAME(), QStringLiteral("x"));
    }

    void badConnectionRaisesAClearError_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("name");
        QTest::newRow("engine code 0") << "0" << "..\\data\\DATA.MDB";
        QTest::newRow("no engine code") << "" << "..\\data\\DATA.MDB";
        QTest::newRow("missing relative file") << "2" << "..\\data\\GONE.MDB";
    }
    void badConnectionRaisesAClearError()
    {
        QFETCH(QString, type);
        QFETCH(QString, name);
        TestRoot root(TestEngine::Sqlite, false);
        root.setCtrl("DB_TYPE", type.isEmpty() ? Value::null() : Value(type));
        root.setCtrl("DB_NAME", Value(name));
        OpenIni();
        try {
            OpenDb();
            QFAIL("a bad connection must fail");
        } catch (const AppError &e) {
            QVERIFY(e.description().startsWith(QStringLiteral("ﾃﾞｰﾀﾍﾞｰｽが不正ですので設定してください。")));
        }
        QVERIFY(!QFile::exists(root.root() + QStringLiteral("/data/GONE.MDB")));
    }

    void oldFileFormatIsNamed()
    {
        TestRoot root(TestEngine::Sqlite, false);
        QFile f(root.root() + QStringLiteral("/data/OLD.MDB"));
        QVERIFY(f.open(QIODevice::WriteOnly));
        QByteArray head(2048, '\0');
        head.replace(0, 19, QByteArray("\x00\x01\x00\x00Standard Jet DB", 19));
        f.write(head);
        f.close();
        root.setCtrl("MST_NAME", Value("..\\data\\OLD.MDB"));
        OpenIni();
        try {
            OpenMst();
            QFAIL("an old file must be refused");
        } catch (const AppError &e) {
            QVERIFY(e.description().startsWith(QStringLiteral("ﾏｽﾀﾃﾞｰﾀが不正ですので設定してください。")));
            QVERIFY(e.description().contains(QStringLiteral("旧形式")));
        }
    }

    void theUserRepairsOrEnds()
    {
        TestRoot root(TestEngine::Sqlite, false);
        root.setCtrl("DB_TYPE", Value("0"));
        OpenIni();
        MsgRecorder rec;
        int repairs = 0;
        // Yes: the settings dialog (here: a repair) runs, and the open is tried again
        setConnectionRepair([&] {
            ++repairs;
            int t = 0;
            if (repairs == 2)
                gINI->SaveCtrl("DB_TYPE", Value("2"), t);
        });
        rec.answer(Msg::ResYes);
        rec.answer(Msg::ResYes);
        OpenDb();
        QCOMPARE(repairs, 2);
        QCOMPARE(rec.count(), 2);
        QCOMPARE(rec.messages[0].prompt, QStringLiteral("ﾃﾞｰﾀﾍﾞｰｽが不正ですので設定してください。"));
        QCOMPARE(rec.messages[0].buttons, 20);
        QVERIFY(gDB->isOpen());
        QCOMPARE(gDB->DBTYPE(), QStringLiteral("ACCESS"));
        // No: the program ends at once
        root.setCtrl("MST_TYPE", Value("9"));
        rec.answer(Msg::ResNo);
        setEndProcessHandler(throwOnEnd);
        bool ended = false;
        try {
            OpenMst();
        } catch (const EndCalled &) {
            ended = true;
        }
        setEndProcessHandler(nullptr);
        setConnectionRepair(nullptr);
        QVERIFY(ended);
        QCOMPARE(rec.lastPrompt(), QStringLiteral("ﾏｽﾀﾃﾞｰﾀが不正ですので設定してください。"));
    }

    // The connection texts are only read back: what goes in comes out.
    void connectionTextsReadBack()
    {
        ConnectionSpec s = parseConnectionString(mysqlConnectionString("192.0.2.7:3307", "", "farm", "u", "p"));
        QCOMPARE(s.host, QStringLiteral("192.0.2.7"));
        QCOMPARE(s.port, 3307);
        QCOMPARE(s.database, QStringLiteral("farm"));
        QCOMPARE(s.user + s.password, QStringLiteral("up"));
        s = parseConnectionString(mysqlConnectionString("ignored", "db.example.jp", "farm", "u", "p;"));
        QCOMPARE(s.host, QStringLiteral("db.example.jp"));
        QCOMPARE(s.port, 3306);
        AppPaths::setProgramDir("/opt/tillora/bin");
        s = parseConnectionString(jetConnectionString("..\\data\\DATA.MDB", "admin", "", ""));
        QCOMPARE(s.kind, EngineKind::Sqlite);
        QCOMPARE(s.file, QStringLiteral("/opt/tillora/data/DATA.MDB"));
        QVERIFY_THROWS_EXCEPTION(AppError, parseConnectionString(QString()));
    }

    void initKeepsWhatIsThere()
    {
        TestRoot root(TestEngine::Sqlite);
        gMST->EXEC("UPDATE M_FMR SET FMR_NM='書き換え' WHERE FMR_ID=1");
        CloseAllDatabases();
        const Setup::InitReport again = Setup::initRoot(root.root());
        QCOMPARE(again.created.size(), 0);
        QCOMPARE(again.kept.size(), 4);
        root.openAll();
        QCOMPARE(GetFmrNameForTest(), QStringLiteral("書き換え"));
        // passwords and the farm's books: readable by their owner only
        for (DbKind k : {DbKind::Ini, DbKind::Work, DbKind::Data, DbKind::Master})
            QVERIFY2(QFile::permissions(Setup::fileOf(root.root(), k)) ==
                         (QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadUser | QFileDevice::WriteUser),
                     qPrintable(dbKindName(k)));
    }

private:
    static QString GetFmrNameForTest() { return gMST->DLookup("FMR_NM", "M_FMR", "FMR_ID=1").toText(); }
};

TILLORA_TEST_MAIN(TestSettings)
#include "tst_settings.moc"
