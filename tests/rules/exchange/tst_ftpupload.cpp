// The upload of files to the shop's server against a real FTP server on
// 127.0.0.1: a nested set arrives byte for byte (and a second send replaces
// it), over TLS when the server offers it; the forms a server and a folder
// may be typed in; each kind of failure with its message and what it leaves
// sent; a dropped connection completed by a second send; a cancel between
// files and in the middle of one. And the settings read from the shop, and
// the command that sends a folder with them.

#include "base/Globals.h"
#include "rules/exchange/FtpUpload.h"
#include "store/Database.h"
#include "store/Stmt.h"
#include "support/FtpServer.h"
#include "support/RulesTest.h"
#include "support/TestRoot.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QtTest/QTest>

#include <memory>

using namespace FtpUpload;
Q_DECLARE_METATYPE(FtpUpload::Failure)

namespace {

// Bytes that a text transfer or a cut would change: every byte value, line
// ends of both kinds, and the name folded in so no two files are alike.
QByteArray contentOf(const QString &name, int size)
{
    QByteArray b = name.toUtf8() + "\r\n\n";
    for (int i = 0; b.size() < size; ++i)
        b += char((i * 7 + name.size()) % 256);
    b.truncate(size);
    return b;
}

// A local folder holding the files named, each of its size.
class LocalSet {
public:
    explicit LocalSet(const QVector<std::pair<QString, int>> &files)
    {
        for (const auto &f : files) {
            mNames << f.first;
            write(f.first, contentOf(f.first, f.second));
        }
    }
    void write(const QString &name, const QByteArray &bytes)
    {
        const QString path = mDir.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QByteArray bytes(const QString &name) const
    {
        QFile file(mDir.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
    }
    QString path() const { return mDir.path(); }
    const QStringList &names() const { return mNames; }

private:
    QTemporaryDir mDir;
    QStringList mNames;
};

// The files under the folder on the server are those sent, each whole.
void checkArrived(const FtpServer &server, const LocalSet &local, const QStringList &names,
                  const QString &folder = QString())
{
    for (const QString &n : names) {
        bool there = false;
        const QByteArray got = server.file(QDir(folder).filePath(n), &there);
        QVERIFY2(there, qPrintable(n));
        QVERIFY2(got == local.bytes(n), qPrintable(n + QStringLiteral(": not the same bytes")));
    }
}

QStringList filesOf(const QVector<NotSent> &notSent)
{
    QStringList out;
    for (const NotSent &n : notSent)
        out << n.file;
    return out;
}

// What the farmer reads is Japanese: no words of the library's English, and
// none of the technical detail.
void checkWording(const Outcome &o)
{
    static const QRegularExpression english(QStringLiteral("[a-z]{3,}"));
    QVERIFY2(!o.summary().contains(english), qPrintable(o.summary()));
    for (const NotSent &n : o.notSent) {
        QVERIFY(!n.reason.isEmpty());
        QVERIFY2(!n.reason.contains(english), qPrintable(n.reason));
    }
    for (const QString &m : o.messages())
        QVERIFY2(o.summary().contains(m), qPrintable(m));
}

const QVector<std::pair<QString, int>> kPages{
    {QStringLiteral("index.html"), 1800},
    {QStringLiteral("12/index.html"), 900},
    {QStringLiteral("12/7/index.html"), 4000},
    {QStringLiteral("12/7/なす 畑.html"), 700},
    {QStringLiteral("images/logo.png"), 70000},
    {QStringLiteral("style.css"), 300},
    {QStringLiteral("empty.txt"), 0},
};

} // namespace

class TestFtpUpload : public QObject {
    Q_OBJECT

    std::unique_ptr<FtpServer> mPlain; // shared by the tests that leave it as it was

    FtpServer &plain()
    {
        if (!mPlain)
            mPlain = std::make_unique<FtpServer>(FtpServer::Options{false, false, QStringLiteral("locked"), 0});
        return *mPlain;
    }

private slots:
    void cleanupTestCase() { mPlain.reset(); }

    void settingsOfTheShop()
    {
        TestRoot root;
        gMST->EXEC(Stmt("UPDATE M_SHOP SET FTP_SVR=?, FTP_DIR=?, FTP_USR=?, FTP_PWD=? WHERE SHOP_ID=1")
                       .text(QStringLiteral(" ftp.example.jp:2121 "))
                       .text(QStringLiteral("/trace/"))
                       .text(QStringLiteral("tanaka"))
                       .text(QStringLiteral("p'ass word")));
        FtpTarget t = targetOfShop(Value(1));
        QCOMPARE(QStringList({t.server, t.dir, t.user, t.password}),
                 QStringList({QStringLiteral("ftp.example.jp:2121"), QStringLiteral("/trace/"), QStringLiteral("tanaka"),
                              QStringLiteral("p'ass word")}));
        gMST->EXEC(QStringLiteral("UPDATE M_SHOP SET FTP_SVR=NULL, FTP_DIR=NULL, FTP_USR=NULL, FTP_PWD=NULL WHERE SHOP_ID=1"));
        t = targetOfShop(Value(1));
        QVERIFY(t.server.isEmpty() && t.dir.isEmpty() && t.user.isEmpty() && t.password.isEmpty());
        QVERIFY(targetOfShop(Value(99)).server.isEmpty());
        // an empty server sends nothing and says the shop has none
        const Outcome o = send(t, QDir::tempPath(), {QStringLiteral("a.html")});
        QCOMPARE(o.failures, QVector<Failure>{Failure::NoServer});
        QCOMPARE(o.unsent(), QStringList{QStringLiteral("a.html")});
    }

    // tillora-admin upload-dir: a folder sent with the shop's settings, and
    // the same refused: the summary, and the exit code.
    void theCommandSendsAFolderWithTheShopsSettings_data()
    {
        QTest::addColumn<QString>("password");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("says");
        QTest::newRow("sent") << FtpServer::password() << 0 << "2 個のファイルをサーバーに送りました（暗号化なしの接続）。\n";
        QTest::newRow("login refused") << "wrong" << 1 << messageOf(Failure::LoginRefused) + QLatin1Char('\n');
    }
    void theCommandSendsAFolderWithTheShopsSettings()
    {
        QFETCH(QString, password);
        QFETCH(int, exitCode);
        QFETCH(QString, says);
        TestRoot root;
        QVERIFY2(plain().started(), qPrintable(plain().error()));
        const QString folder = QStringLiteral("command-") + password;
        gMST->EXEC(Stmt("UPDATE M_SHOP SET FTP_SVR=?, FTP_DIR=?, FTP_USR=?, FTP_PWD=? WHERE SHOP_ID=1")
                       .text(QStringLiteral("ftp://127.0.0.1:%1").arg(plain().port()))
                       .text(folder)
                       .text(FtpServer::user())
                       .text(password));
        root.closeAll();
        LocalSet local({{QStringLiteral("index.html"), 600}, {QStringLiteral("12/7/index.html"), 900}});
        QProcess p;
        p.start(QStringLiteral(TILLORA_ADMIN),
                {"upload-dir", "--root", root.root(), "--shop", "1", "--dir", local.path()});
        QVERIFY(p.waitForFinished(60000));
        QCOMPARE(p.exitCode(), exitCode);
        QVERIFY2(QString::fromUtf8(p.readAllStandardOutput()).endsWith(says), qPrintable(says));
        checkArrived(plain(), local, exitCode == 0 ? local.names() : QStringList(), folder);
        if (exitCode != 0)
            QVERIFY(!QFileInfo::exists(QDir(plain().home()).filePath(folder)));
    }

    // The whole set, nested, with an empty file and a Japanese name, in the
    // bytes it has here, into folders made on the way; the progress counts
    // the bytes of all files and names each. A second send replaces what is
    // there.
    void aNestedSetArrivesWhole_data()
    {
        QTest::addColumn<bool>("tls");
        QTest::newRow("plain") << false;
        QTest::newRow("TLS required by the server") << true;
    }
    void aNestedSetArrivesWhole()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        QFETCH(bool, tls);
        FtpServer server(FtpServer::Options{tls, tls, QString(), 0});
        QVERIFY2(server.started(), qPrintable(server.error()));
        LocalSet local(kPages);
        qint64 total = 0, lastDone = -1, lastTotal = 0;
        for (const auto &p : kPages)
            total += p.second;
        QStringList named;
        bool monotonic = true;
        const Outcome o = send(server.target(QStringLiteral("trace/2024")), local.path(), local.names(),
                               [&](qint64 done, qint64 all, const QString &what) {
                                   monotonic = monotonic && done >= lastDone;
                                   lastDone = done;
                                   lastTotal = all;
                                   if (!named.contains(what))
                                       named << what;
                                   return true;
                               });
        QVERIFY2(o.complete(), qPrintable(o.summary() + QLatin1Char('\n') + o.detail));
        QCOMPARE(o.sent, local.names());
        QCOMPARE(o.encrypted, tls);
        checkArrived(server, local, local.names(), QStringLiteral("trace/2024"));
        QCOMPARE(server.files().size(), kPages.size());
        QVERIFY(monotonic);
        QCOMPARE(lastTotal, total);
        QCOMPARE(lastDone, total);
        QCOMPARE(named, local.names());
        checkWording(o);

        local.write(QStringLiteral("12/7/index.html"), "corrected");
        QVERIFY(send(server.target(QStringLiteral("trace/2024")), local.path(), {QStringLiteral("12/7/index.html")}).complete());
        QCOMPARE(server.file(QStringLiteral("trace/2024/12/7/index.html")), QByteArray("corrected"));
    }

    // The server as it may be typed in the shop master, and the folder: with
    // or without "ftp://", spaces, slashes before and after, backslashes.
    void serverAndFolderForms_data()
    {
        QTest::addColumn<QString>("server"); // %1 the port
        QTest::addColumn<QString>("dir");
        QTest::addColumn<QString>("arrives"); // the folder under home
        QTest::newRow("host:port, no folder") << "127.0.0.1:%1" << "" << "";
        QTest::newRow("ftp://, root folder") << "ftp://127.0.0.1:%1" << "/" << "";
        QTest::newRow("FTP:// and a slash after the host") << "FTP://127.0.0.1:%1/" << "forms1" << "forms1";
        QTest::newRow("spaces, slashes around the folder") << "  127.0.0.1:%1 " << "/forms2/2024/" << "forms2/2024";
        QTest::newRow("localhost, folder ending in a slash") << "ftp://localhost:%1" << "forms3/" << "forms3";
        QTest::newRow("Japanese folder") << "127.0.0.1:%1" << "直売所/生産履歴" << "直売所/生産履歴";
        QTest::newRow("folder typed with backslashes") << "127.0.0.1:%1" << "\\forms4\\sub\\" << "forms4/sub";
    }
    void serverAndFolderForms()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        QFETCH(QString, server);
        QFETCH(QString, dir);
        QFETCH(QString, arrives);
        QVERIFY2(plain().started(), qPrintable(plain().error()));
        const QString name = QStringLiteral("p%1/a.html").arg(qHash(QString::fromUtf8(QTest::currentDataTag())));
        LocalSet local({{name, 120}});
        FtpTarget t = plain().target(dir);
        t.server = server.arg(plain().port());
        const Outcome o = send(t, local.path(), local.names());
        QVERIFY2(o.complete(), qPrintable(o.summary() + QLatin1Char('\n') + o.detail));
        checkArrived(plain(), local, local.names(), arrives);
    }

    // Each failure: its one message, the files sent and not sent, and
    // nothing on the server but what was sent.
    void failures_data()
    {
        QTest::addColumn<QString>("server"); // "ftp": the test server; %1 its port
        QTest::addColumn<QString>("password");
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QStringList>("sent");
        QTest::addColumn<Failure>("failure");
        const QStringList three{QStringLiteral("a.html"), QStringLiteral("locked/new/b.html"), QStringLiteral("c.html")};
        const QStringList two{QStringLiteral("a.html"), QStringLiteral("c.html")};
        QTest::newRow("login refused") << "ftp" << "wrong" << two << QStringList() << Failure::LoginRefused;
        QTest::newRow("closed port") << "closed" << "" << two << QStringList() << Failure::Unreachable;
        QTest::newRow("unknown name") << "no-such-host.invalid" << "" << two << QStringList() << Failure::Unreachable;
        QTest::newRow("server that never answers") << "silent" << "" << two << QStringList() << Failure::Unreachable;
        QTest::newRow("folder that can't be made: the others go")
            << "ftp" << FtpServer::password() << three << two << Failure::FolderRefused;
        QTest::newRow("a file missing here: the others go")
            << "ftp" << FtpServer::password() << QStringList{"a.html", "gone.html", "c.html"} << two << Failure::LocalFile;
    }
    void failures()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        QFETCH(QString, server);
        QFETCH(QString, password);
        QFETCH(QStringList, files);
        QFETCH(QStringList, sent);
        QFETCH(Failure, failure);
        FtpServer ftp(FtpServer::Options{false, false, QStringLiteral("locked"), 0});
        QVERIFY2(ftp.started(), qPrintable(ftp.error()));
        QTcpServer silent; // takes connections and says nothing
        FtpTarget t = ftp.target();
        t.password = password;
        t.timeoutSeconds = 2;
        if (server == QLatin1String("closed")) {
            QTcpServer probe;
            QVERIFY(probe.listen(QHostAddress::LocalHost));
            t.server = QStringLiteral("127.0.0.1:%1").arg(probe.serverPort());
        } else if (server == QLatin1String("silent")) {
            QVERIFY(silent.listen(QHostAddress::LocalHost));
            t.server = QStringLiteral("127.0.0.1:%1").arg(silent.serverPort());
        } else if (server != QLatin1String("ftp")) {
            t.server = server;
        }
        QVector<std::pair<QString, int>> made;
        for (const QString &f : files)
            if (f != QLatin1String("gone.html"))
                made.append({f, 500});
        LocalSet local(made);

        const Outcome o = send(t, local.path(), files);
        QCOMPARE(o.failures, QVector<Failure>{failure});
        QCOMPARE(o.messages(), QStringList{messageOf(failure)});
        QCOMPARE(o.sent, sent);
        QStringList unsent = files;
        for (const QString &s : sent)
            unsent.removeOne(s);
        QCOMPARE(o.unsent(), unsent);
        QCOMPARE(ftp.files(), sent);
        checkArrived(ftp, local, sent);
        QVERIFY(!o.detail.isEmpty() || failure == Failure::LocalFile);
        checkWording(o);
    }

    // The connection drops in the third file: the two before stay sent, the
    // third and fourth are reported, and a second send of those completes
    // the set.
    void aDroppedConnectionIsCompletedBySendingAgain()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        FtpServer server(FtpServer::Options{false, false, QString(), 250000});
        QVERIFY2(server.started(), qPrintable(server.error()));
        LocalSet local({{QStringLiteral("1/a.html"), 100000},
                        {QStringLiteral("1/b.html"), 100000},
                        {QStringLiteral("2/c.html"), 100000},
                        {QStringLiteral("2/d.html"), 100000}});
        const Outcome first = send(server.target(), local.path(), local.names());
        QCOMPARE(first.failures, QVector<Failure>{Failure::Dropped});
        QCOMPARE(first.sent, local.names().mid(0, 2));
        QCOMPARE(filesOf(first.notSent), local.names().mid(2));
        QVERIFY(first.notSent[0].reason != first.notSent[1].reason); // cut off, and not tried
        checkArrived(server, local, first.sent);
        checkWording(first);

        const Outcome second = send(server.target(), local.path(), first.unsent());
        QVERIFY2(second.complete(), qPrintable(second.summary() + QLatin1Char('\n') + second.detail));
        checkArrived(server, local, local.names());
    }

    // キャンセル between files and in the middle of a file: a file broken
    // off is not counted as sent, and the rest are reported.
    void cancel_data()
    {
        QTest::addColumn<int>("atFile");  // the file during which the callback says stop
        QTest::addColumn<bool>("midway"); // once bytes of it were sent, or before it starts
        QTest::newRow("before the second file") << 1 << false;
        QTest::newRow("in the middle of the second file") << 1 << true;
        QTest::newRow("before the first file") << 0 << false;
    }
    void cancel()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        QFETCH(int, atFile);
        QFETCH(bool, midway);
        QVERIFY2(plain().started(), qPrintable(plain().error()));
        const QString folder = QStringLiteral("cancel%1%2").arg(atFile).arg(midway);
        LocalSet local({{QStringLiteral("a.html"), 3000},
                        {QStringLiteral("big.png"), 4 << 20},
                        {QStringLiteral("c.html"), 3000}});
        const QString stopAt = local.names().at(atFile);
        const qint64 before = atFile == 0 ? 0 : 3000;
        const Outcome o = send(plain().target(folder), local.path(), local.names(),
                               [&](qint64 done, qint64, const QString &what) {
                                   return what != stopAt || (midway && done == before);
                               });
        QCOMPARE(o.failures, QVector<Failure>{Failure::Cancelled});
        QCOMPARE(o.sent, local.names().mid(0, atFile));
        QCOMPARE(o.unsent(), local.names().mid(atFile));
        checkArrived(plain(), local, o.sent, folder);
        checkWording(o);
    }
};

TILLORA_RULES_TEST_MAIN(TestFtpUpload)
#include "tst_ftpupload.moc"
