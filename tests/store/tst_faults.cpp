// The store when things go wrong, on the real engines: amounts beyond the
// currency range, databases that are not the program's, the engines' errors
// as the farmer reads them, a server connection that is lost and comes back,
// read-only files, and text limits counted as the engines count characters.

#include "base/AppError.h"
#include "base/Globals.h"
#include "store/Database.h"
#include "store/Setup.h"
#include "store/Stmt.h"
#include "support/TestRoot.h"

#include <QFile>
#include <QRegularExpression>
#include <QThread>
#include <QtTest/QTest>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <mutex>
#include <thread>
#include <vector>

namespace {

// What the farmer reads of an engine error: the part before the engine's own
// words in brackets.
QString farmerPart(const AppError &e) { return e.description().section(QStringLiteral("（"), 0, 0); }

bool onServer() { return TestEnv::engine() == TestEngine::Mysql; }

// Writes an amount into D_LEDGE as an older version did, whose tables had no
// range check.
void writeAsAnOlderVersion(const QString &sql)
{
    Engine *e = gDB->engine();
    if (onServer()) {
        e->executeNative(QStringLiteral("ALTER TABLE D_LEDGE DROP CONSTRAINT RANGE_D_LEDGE_AMT"));
        e->executeNative(sql);
    } else {
        e->executeNative(QStringLiteral("PRAGMA ignore_check_constraints=1"));
        e->executeNative(sql);
        e->executeNative(QStringLiteral("PRAGMA ignore_check_constraints=0"));
    }
}

// Ends the program's own server connection from a second one.
void killConnection(Engine &killer)
{
    RecordsetPtr rs = gDB->GetFwdOnlyRst(QStringLiteral("SELECT CONNECTION_ID()"));
    killer.executeNative(QStringLiteral("KILL %1").arg(rs->Fields(0).toLong()));
}

// A stand-in for the network between the program and the server: it relays
// connections on a port of its own to the server, and can go down (every
// connection cut, none taken) and come up again on the same port.
class Relay {
public:
    explicit Relay(int serverPort) : mServerPort(serverPort) { up(); }
    ~Relay() { down(); }
    int port() const { return mPort; }

    void up()
    {
        mListener = ::socket(AF_INET, SOCK_STREAM, 0);
        const int yes = 1;
        ::setsockopt(mListener, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        sockaddr_in a = local(mPort);
        socklen_t len = sizeof a;
        ::bind(mListener, reinterpret_cast<sockaddr *>(&a), len);
        ::listen(mListener, 8);
        ::getsockname(mListener, reinterpret_cast<sockaddr *>(&a), &len);
        mPort = ntohs(a.sin_port);
        mThreads.emplace_back([this] {
            for (int client; (client = ::accept(mListener, nullptr, nullptr)) >= 0;) {
                const int server = ::socket(AF_INET, SOCK_STREAM, 0);
                const sockaddr_in to = local(mServerPort);
                ::connect(server, reinterpret_cast<const sockaddr *>(&to), sizeof to);
                std::lock_guard<std::mutex> lock(mMutex);
                mSockets << client << server;
                mThreads.emplace_back(pump, client, server);
                mThreads.emplace_back(pump, server, client);
            }
        });
    }
    // Shut down first, which wakes every thread, then close.
    void down()
    {
        if (mListener < 0)
            return;
        ::shutdown(mListener, SHUT_RDWR);
        std::vector<std::thread> threads;
        {
            std::lock_guard<std::mutex> lock(mMutex);
            for (int fd : mSockets)
                ::shutdown(fd, SHUT_RDWR);
            threads.swap(mThreads);
        }
        for (std::thread &t : threads)
            t.join();
        for (int fd : mSockets)
            ::close(fd);
        mSockets.clear();
        ::close(mListener);
        mListener = -1;
    }

private:
    static sockaddr_in local(int port)
    {
        sockaddr_in a{};
        a.sin_family = AF_INET;
        a.sin_port = htons(quint16(port));
        a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        return a;
    }
    static void pump(int from, int to)
    {
        char buf[16384];
        for (ssize_t n; (n = ::read(from, buf, sizeof buf)) > 0;)
            if (::write(to, buf, size_t(n)) != n)
                break;
        ::shutdown(to, SHUT_RDWR);
    }

    int mServerPort;
    int mPort = 0;
    int mListener = -1;
    QVector<int> mSockets;
    std::vector<std::thread> mThreads;
    std::mutex mMutex;
};

const QString kLost = QStringLiteral("サーバーとの接続が切れました。もう一度操作してください。");
const QString kUnreachable =
    QStringLiteral("サーバーに接続できません。サーバーが動いているか、接続設定とネットワークを確認してください。");

} // namespace

class TestFaults : public QObject {
    Q_OBJECT
private slots:
    // ------------------------------------------------------------ amounts

    void amountsBeyondTheRangeAreRefused_data()
    {
        QTest::addColumn<QString>("amount");
        QTest::addColumn<bool>("kept");
        QTest::newRow("as once written") << "1.8e302" << false;
        QTest::newRow("just beyond") << "922337203685478" << false;
        QTest::newRow("just below") << "-922337203685478" << false;
        QTest::newRow("largest kept") << "922337203685477.5" << true;
        QTest::newRow("ordinary") << "-1234.5" << true;
    }
    void amountsBeyondTheRangeAreRefused()
    {
        QFETCH(QString, amount);
        QFETCH(bool, kept);
        TestRoot root;
        // by statement text
        const AppError byText = failureOf([&] {
            gDB->EXEC(QStringLiteral("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, AMT) VALUES (1, 1, %1)").arg(amount));
        });
        QCOMPARE(byText.number(), kept ? 0L : VbErr::Overflow);
        if (!kept)
            QCOMPARE(farmerPart(byText), QStringLiteral("オーバーフローしました。"));
        // by a record
        RecordsetPtr rs = gDB->GetDynamicRst("SELECT D_LEDGE.* FROM D_LEDGE WHERE LEDGE_ID=2");
        rs->AddNew();
        rs->SetField("FMR_ID", Value(1));
        rs->SetField("LEDGE_ID", Value(2));
        QCOMPARE(failureOf([&] { rs->SetField("AMT", Value(amount)); rs->Update(); }).number(),
                 kept ? 0L : VbErr::Overflow);
        // what was kept reads back as written
        QCOMPARE(gDB->DCount("*", "D_LEDGE", "AMT IS NOT NULL").toLong(), kept ? 2 : 0);
        if (kept)
            QCOMPARE(gDB->DMax("AMT", "D_LEDGE").toText(), amount);
    }

    // An amount an older version wrote beyond the range spoils its own cell
    // only: the list reads, the cell shows a mark, and any use of it as an
    // amount is the overflow error.
    void anAmountBeyondTheRangeSpoilsOnlyItsCell()
    {
        TestRoot root;
        gDB->EXEC("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, LEDGE_DATE, AMT) VALUES (1, 1, #2024/11/2#, 1800)");
        // (the server's column holds no more than 15 digits: beyond the range all the same)
        writeAsAnOlderVersion(QStringLiteral("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, LEDGE_DATE, AMT) VALUES "
                                      "(1, 2, '2024-11-03 00:00:00', %1)")
                           .arg(onServer() ? QStringLiteral("950000000000000") : QStringLiteral("1.8e302")));
        RecordsetPtr rs = gDB->GetDynamicRst(
            "SELECT D_LEDGE.* FROM D_LEDGE WHERE LEDGE_DATE>=#2024/11/01# AND LEDGE_DATE<=#2024/11/30# ORDER BY LEDGE_ID");
        QCOMPARE(rs->RecordCount(), 2);
        QCOMPARE(rs->Fields("AMT"), Value(Currency::fromInt(1800)));
        rs->MoveNext();
        const Value bad = rs->Fields("AMT");
        QVERIFY(bad.isUnreadable());
        QCOMPARE(bad.toText(), QStringLiteral("#範囲外#"));
        QCOMPARE(rs->Fields("LEDGE_DATE"), Value(DateUtil::make(2024, 11, 3)));
        // saved back, it is refused; the rest of its row can still be changed
        QCOMPARE(failureOf([&] { rs->SetField("AMT", bad); }).number(), VbErr::Overflow);
        rs->SetField("NOTES", Value("直す"));
        rs->Update();
        QCOMPARE(gDB->DLookup("NOTES", "D_LEDGE", "LEDGE_ID=2").toText(), QStringLiteral("直す"));
        // a sum over it is beyond the range too
        QVERIFY(gDB->DSUM("AMT", "D_LEDGE").isUnreadable());
        QCOMPARE(failureOf([] { gDB->DSUM("AMT", "D_LEDGE").toCurrency(); }).number(), VbErr::Overflow);
    }

    // ------------------------------------------------------------ foreign databases

    void databasesNotTheProgramsAreRefused_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("empty");
        for (DbKind k : {DbKind::Ini, DbKind::Work, DbKind::Data, DbKind::Master}) {
            QTest::addRow("%s empty", qPrintable(dbKindName(k))) << int(k) << true;
            QTest::addRow("%s of another program", qPrintable(dbKindName(k))) << int(k) << false;
        }
    }
    void databasesNotTheProgramsAreRefused()
    {
        QFETCH(int, kind);
        QFETCH(bool, empty);
        if (onServer())
            QSKIP("files");
        TestRoot root(TestEngine::Sqlite, false);
        const QString path = Setup::fileOf(root.root(), DbKind(kind));
        QFile::remove(path);
        if (empty) {
            QFile f(path);
            QVERIFY(f.open(QIODevice::WriteOnly));
        } else {
            auto other = Engine::createSqliteFile(path);
            other->executeNative(QStringLiteral("CREATE TABLE D_NOTES (ID INTEGER, BODY TEXT)"));
            other->executeNative(QStringLiteral("INSERT INTO D_NOTES VALUES (1, 'not ours')"));
        }
        QFile f(path);
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QByteArray before = f.readAll();
        f.close();
        const std::function<void()> open[] = {OpenDb, OpenMst, OpenIni, OpenWork};
        const AppError e = failureOf(open[kind]);
        CloseAllDatabases();
        QVERIFY(e.number() != 0);
        QVERIFY2(e.description().contains(QStringLiteral("はこのプログラムのデータベースではありません")),
                 qPrintable(e.description()));
        if (DbKind(kind) == DbKind::Data)
            QVERIFY(e.description().startsWith(QStringLiteral("ﾃﾞｰﾀﾍﾞｰｽが不正ですので設定してください。")));
        // the file is left exactly as it was
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(f.readAll(), before);
    }

    void aServerDatabaseWithoutTheTablesIsRefused()
    {
        if (!onServer())
            QSKIP("a server");
        TestRoot root(TestEngine::Mysql, false);
        OpenIni();
        // the master database has none of the data tables
        root.setCtrl("DB_NAME", Value(gINI->property("MST_NAME")));
        CloseAllDatabases();
        const AppError e = failureOf(OpenDb);
        CloseAllDatabases();
        QVERIFY2(e.description().contains(QStringLiteral("はこのプログラムのデータベースではありません")),
                 qPrintable(e.description()));
    }

    // ------------------------------------------------------------ engine errors

    // Each error a farmer can meet, provoked on the engine itself: Japanese
    // first, the engine's code and words after it in brackets.
    void engineErrorsAreSaidInJapanese()
    {
        TestRoot root;
        Engine &e = *gDB->engine();
        const bool server = onServer();
        gDB->EXEC("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, AMT) VALUES (1, 1, 100)");
        auto other = Engine::open(e.target());
        const struct {
            const char *name;
            QString prepare, statement, undo;
            QString says;
        } cases[] = {
            {"no such table", {}, "SELECT * FROM D_CHEMI_OLD", {}, "データベースに必要な表がありません。"},
            {"no such column", {}, "SELECT NO_SUCH FROM D_LEDGE", {}, "データベースの表に必要な列がありません。"},
            {"syntax", {}, "SELECT * FROM D_LEDGE ORDER", {}, "データベースの命令を実行できませんでした。"},
            {"same key", {}, "INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID) VALUES (1, 1)", {},
             "同じキーのデータが既に登録されています。"},
            {"no key", {}, "INSERT INTO D_LEDGE (FMR_ID) VALUES (1)", {}, "データベースの制約に合わないため書き込めません。"},
            {"text into a number", {}, "UPDATE D_LEDGE SET AMT='abc'", {}, "型が一致しません。"},
            {"too long", {}, "UPDATE D_LEDGE SET NOTES='" + QString(256, QLatin1Char('x')) + "'", {},
             standardErrorText(VbErr::FieldTooSmall)},
            {"out of range", {}, "UPDATE D_LEDGE SET AMT=1e300", {}, "オーバーフローしました。"},
            {"read-only", server ? "SET SESSION TRANSACTION READ ONLY" : "PRAGMA query_only=1",
             "DELETE FROM D_LEDGE", server ? "SET SESSION TRANSACTION READ WRITE" : "PRAGMA query_only=0",
             "データを書き込めません。データベースが読み取り専用です。"},
            {"busy", server ? "SET SESSION innodb_lock_wait_timeout=1" : "PRAGMA busy_timeout=10",
             "UPDATE D_LEDGE SET NOTES='a' WHERE LEDGE_ID=1", {},
             "データベースが他の処理で使用中です。しばらくしてからもう一度操作してください。"},
        };
        for (const auto &c : cases) {
            const bool busy = QByteArray(c.name) == "busy";
            if (busy) {
                other->begin();
                other->executeNative(QStringLiteral("UPDATE D_LEDGE SET NOTES='b' WHERE LEDGE_ID=1"));
            }
            if (!c.prepare.isEmpty())
                e.executeNative(c.prepare);
            const AppError err = failureOf([&] { gDB->EXEC(c.statement); });
            if (!c.undo.isEmpty())
                e.executeNative(c.undo);
            if (busy)
                other->rollback();
            QVERIFY2(err.number() != 0, c.name);
            QVERIFY2(err.description().startsWith(c.says), qPrintable(err.description()));
            QVERIFY2(!farmerPart(err).contains(QRegularExpression(QStringLiteral("[A-Za-z]"))),
                     qPrintable(err.description()));
            // the engine's words follow, for support
            QVERIFY2(err.description().endsWith(QStringLiteral("）")), qPrintable(err.description()));
        }
        // a full disk
        if (!server) {
            e.executeNative(QStringLiteral("PRAGMA max_page_count=1"));
            const AppError full = failureOf([] {
                gDB->engine()->executeNative(QStringLiteral(
                    "INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, NOTES) WITH RECURSIVE n(i) AS (SELECT 2 UNION ALL "
                    "SELECT i+1 FROM n WHERE i<3000) SELECT 1, i, hex(randomblob(100)) FROM n"));
            });
            QVERIFY2(full.description().startsWith(QStringLiteral("データを書き込めません。ディスクの空き容量が足りません。")),
                     qPrintable(full.description()));
        }
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 1);
    }

    // Connections that can't be made say why, in Japanese, within seconds.
    void connectionsThatFailSayWhy()
    {
        ConnectionSpec closed;
        closed.kind = EngineKind::Mysql;
        closed.host = QStringLiteral("127.0.0.1");
        closed.port = 1; // nothing listens there
        closed.database = QStringLiteral("tillora");
        QCOMPARE(farmerPart(failureOf([&] { Engine::open(closed); })), kUnreachable);
        if (!onServer())
            return;
        TestRoot root;
        ConnectionSpec unknown = gDB->engine()->target();
        unknown.database = QStringLiteral("no_such_farm");
        QCOMPARE(farmerPart(failureOf([&] { Engine::open(unknown); })),
                 QStringLiteral("サーバーに指定のデータベースがありません。接続設定を確認してください。"));
        ConnectionSpec wrong = gDB->engine()->target();
        wrong.password = QStringLiteral("not the password");
        QCOMPARE(farmerPart(failureOf([&] { Engine::open(wrong); })),
                 QStringLiteral("サーバーへの接続が拒否されました。ユーザー名とパスワードを確認してください。"));
    }

    // ------------------------------------------------------------ lost connections

    void aKilledConnectionComesBack()
    {
        if (!onServer())
            QSKIP("a server");
        TestRoot root;
        auto killer = Engine::open(gDB->engine()->target());
        gDB->EXEC("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, AMT, NOTES) VALUES (1, 1, 100, 'a\\b')");
        killConnection(*killer);
        // a read is sent again on a new connection, with the session's settings
        QCOMPARE(gDB->DCount("*", "D_LEDGE", "NOTES='a\\b'").toLong(), 1);
        // a write inside a transaction is not: the farmer is told, the server
        // has dropped the half-done transaction, and the next action works
        gDB->Begintrans();
        gDB->EXEC("UPDATE D_LEDGE SET AMT=200 WHERE LEDGE_ID=1");
        killConnection(*killer);
        QCOMPARE(farmerPart(failureOf([] { gDB->EXEC("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID) VALUES (1, 2)"); })),
                 kLost);
        gDB->RollbackTrans();
        QCOMPARE(gDB->DLookup("AMT", "D_LEDGE", "LEDGE_ID=1"), Value(Currency::fromInt(100)));
        gDB->EXEC("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID) VALUES (1, 2)");
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 2);
        // a write outside a transaction is told too, and not sent twice
        killConnection(*killer);
        QCOMPARE(farmerPart(failureOf([] { gDB->EXEC("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID) VALUES (1, 3)"); })),
                 kLost);
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 2);
    }

    // The server's idle timeout (overnight) is no outage: the next read
    // works; a save begun on the stale connection starts on a new one.
    void anIdleConnectionComesBack()
    {
        if (!onServer())
            QSKIP("a server");
        TestRoot root;
        auto idle = [] {
            gDB->engine()->executeNative(QStringLiteral("SET SESSION wait_timeout=1"));
            QThread::msleep(1600);
        };
        idle();
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 0);
        idle();
        gDB->Begintrans();
        gDB->EXEC("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID) VALUES (1, 1)");
        gDB->CommitTrans();
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 1);
        // idle in the middle of a transaction: told, and the next one works
        gDB->engine()->executeNative(QStringLiteral("SET SESSION wait_timeout=1"));
        gDB->Begintrans();
        QThread::msleep(1600);
        QCOMPARE(farmerPart(failureOf([] { gDB->EXEC("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID) VALUES (1, 2)"); })),
                 kLost);
        gDB->RollbackTrans();
        gDB->EXEC("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID) VALUES (1, 2)");
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 2);
    }

    // The server goes away while the program runs: every action says it
    // can't be reached, and all works again once it is back.
    void aServerThatWasDownComesBack()
    {
        if (!onServer())
            QSKIP("a server");
        TestRoot root;
        Relay net(TestEnv::mysql().port);
        ConnectionSpec viaRelay = gDB->engine()->target();
        viaRelay.port = net.port();
        auto e = Engine::open(viaRelay, DbKind::Data);
        const QString count = QStringLiteral("SELECT COUNT(*) FROM D_LEDGE");
        QCOMPARE(e->select(count).rows[0][0].toLong(), 0);
        net.down();
        for (int i = 0; i < 2; ++i)
            QCOMPARE(farmerPart(failureOf([&] { e->select(count); })), kUnreachable);
        QCOMPARE(farmerPart(failureOf([&] { e->execute("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID) VALUES (1, 1)"); })),
                 kUnreachable);
        net.up();
        QCOMPARE(e->execute("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID) VALUES (1, 1)"), qint64(1));
        // down and up again in the middle of a save: told, and nothing of it kept
        e->begin();
        e->execute("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID) VALUES (1, 2)");
        net.down();
        net.up();
        QCOMPARE(farmerPart(failureOf([&] { e->execute("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID) VALUES (1, 3)"); })),
                 kLost);
        e->rollback();
        QCOMPARE(e->select(count).rows[0][0].toLong(), 1);
    }

    // ------------------------------------------------------------ read-only files

    void readOnlyFilesAreSaidSo_data()
    {
        QTest::addColumn<QString>("made");   // what is made read-only, under the root
        QTest::addColumn<QString>("reason");
        QTest::newRow("data file") << "data/DATA.MDB" << "ファイル '%1' が読み取り専用です。";
        QTest::newRow("data folder") << "data" << "フォルダ '%1' が読み取り専用です";
    }
    void readOnlyFilesAreSaidSo()
    {
        QFETCH(QString, made);
        QFETCH(QString, reason);
        if (onServer())
            QSKIP("files");
        TestRoot root(TestEngine::Sqlite, false);
        // (the permission bits: an administrator running the tests would write anyway)
        const QString path = root.root() + QLatin1Char('/') + made;
        const QFile::Permissions was = QFile::permissions(path);
        QFile::setPermissions(path, was & ~(QFile::WriteOwner | QFile::WriteUser | QFile::WriteGroup | QFile::WriteOther));
        root.openAll();
        const QString why = reason.arg(path);
        QVERIFY2(readOnlyWarning().contains(why), qPrintable(readOnlyWarning()));
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 0);
        const AppError e = failureOf([] { gDB->EXEC("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID) VALUES (1, 1)"); });
        QVERIFY2(e.description().startsWith(QStringLiteral("データを書き込めません。")), qPrintable(e.description()));
        QVERIFY2(e.description().contains(why), qPrintable(e.description()));
        CloseAllDatabases();
        QFile::setPermissions(path, was);
        root.openAll();
        QVERIFY(readOnlyWarning().isEmpty());
    }

    // ------------------------------------------------------------ characters

    void limitsCountCharactersAsTheEnginesDo()
    {
        TestRoot root;
        const QString emoji = QStringLiteral("😀");
        RecordsetPtr rs = gDB->GetDynamicRst("SELECT D_LEDGE.* FROM D_LEDGE WHERE LEDGE_ID=1");
        rs->AddNew();
        rs->SetField("FMR_ID", Value(1));
        rs->SetField("LEDGE_ID", Value(1));
        QCOMPARE(failureOf([&] { rs->SetField("CTR_NM", Value(emoji.repeated(101))); }).number(), VbErr::FieldTooSmall);
        rs->SetField("CTR_NM", Value(emoji.repeated(99) + QStringLiteral("あ")));
        rs->Update();
        QCOMPARE(gDB->DLookup("CTR_NM", "D_LEDGE", "LEDGE_ID=1").toText(), emoji.repeated(99) + QStringLiteral("あ"));
    }
};

TILLORA_TEST_MAIN(TestFaults)
#include "tst_faults.moc"
