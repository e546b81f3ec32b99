// Backups: a copy taken while another computer saves holds each save whole
// or not at all; a server's rows come back the same through either engine;
// a file that is no backup replaces nothing.

#include "base/AppError.h"
#include "base/Globals.h"
#include "store/Backup.h"
#include "store/Database.h"
#include "store/Engine.h"
#include "store/Setup.h"
#include "store/Stmt.h"
#include "support/Build.h"
#include "support/TestRoot.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest/QTest>

namespace {

// One save of another computer: a day with two slips, on a connection of
// its own, begun and not yet ended.
class OtherSave {
public:
    OtherSave() : mEngine(Engine::open(gDB->engine()->target()))
    {
        mEngine->begin();
        mEngine->execute(Stmt("INSERT INTO D_DIARY (FMR_ID, WORK_DATE, ONE_MSG) VALUES (1, ?, ?)")
                             .time(QDateTime(QDate(2024, 6, 1), QTime(), Qt::UTC))
                             .text(QStringLiteral("他の端末の保存")));
        for (int id : {901, 902})
            mEngine->execute(Stmt("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, LEDGE_DATE, AMT) VALUES (1, ?, ?, 500)")
                                 .num(id)
                                 .time(QDateTime(QDate(2024, 6, 1), QTime(), Qt::UTC)));
    }
    void commit() { mEngine->commit(); }

private:
    std::unique_ptr<Engine> mEngine;
};

// The rows of the save found in the data: 3 when whole.
qint64 rowsOfTheSave()
{
    OpenIni();
    OpenDb();
    const auto count = [](const char *sql) { return gDB->engine()->select(QString::fromUtf8(sql)).rows[0][0].toLong(); };
    return count("SELECT COUNT(*) FROM D_DIARY WHERE ONE_MSG='他の端末の保存'") +
           count("SELECT COUNT(*) FROM D_LEDGE WHERE LEDGE_ID IN (901, 902)");
}

QString integrity(const QString &file)
{
    ConnectionSpec conn;
    conn.file = file;
    return Engine::open(conn)->select(QStringLiteral("PRAGMA integrity_check")).rows[0][0].toText();
}

} // namespace

class TestBackup : public QObject {
    Q_OBJECT
private slots:
    void takenDuringASave_data()
    {
        QTest::addColumn<int>("commitAtStep"); // -1 before the backup, 99 after it
        QTest::addColumn<qint64>("rowsRestored");
        QTest::newRow("save ended before") << -1 << qint64(3);
        QTest::newRow("save ends while the masters are copied") << 3 << qint64(0);
        QTest::newRow("save ends after the backup") << 99 << qint64(0);
    }
    void takenDuringASave()
    {
        QFETCH(int, commitAtStep);
        QFETCH(qint64, rowsRestored);
        TestRoot root;
        Build::diaryDay(QDate(2024, 5, 1)).set("ONE_MSG", "前からの日").add();
        auto save = std::make_unique<OtherSave>();
        if (commitAtStep < 0)
            save->commit();
        const QString file = root.root() + QStringLiteral("/b.tar");
        int step = 0;
        QVERIFY(Backup::take(file, [&](qint64, qint64, const QString &) {
            if (step++ == commitAtStep)
                save->commit();
            return true;
        }));
        if (commitAtStep >= step)
            save->commit();
        save.reset();
        QCOMPARE(rowsOfTheSave(), qint64(3));

        const QStringList lines = Backup::restore(file, root.root());
        QVERIFY(!lines.isEmpty());
        QCOMPARE(rowsOfTheSave(), rowsRestored);
        QCOMPARE(gDB->engine()->select(QStringLiteral("SELECT ONE_MSG FROM D_DIARY WHERE ONE_MSG='前からの日'")).rows.size(), 1);
        if (root.engine() == TestEngine::Sqlite) {
            QCOMPARE(integrity(Setup::fileOf(root.root(), DbKind::Data)), QStringLiteral("ok"));
            // the replaced file is kept aside, with the time in its name
            QCOMPARE(QDir(root.root() + QStringLiteral("/data")).entryList({"DATA.MDB.2*"}).size(), 1);
        } else {
            QCOMPARE(QDir(root.root() + QStringLiteral("/data")).entryList({"*.sql"}).size(), 2);
        }
    }

    void cancelledLeavesNoFile()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        TestRoot root;
        const QString file = root.root() + QStringLiteral("/b.tar");
        int step = 0;
        QVERIFY(!Backup::take(file, [&](qint64, qint64, const QString &) { return ++step < 3; }));
        QVERIFY(!QFile::exists(file));
        QCOMPARE(QDir(root.root()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 5);
    }

    // Every value kind, and texts that look like the ends of statements.
    void rowsComeBackTheSameThroughEitherEngine()
    {
        TestRoot root;
        Build::diaryDay(QDate(2024, 5, 1)).set("ONE_MSG", "it's; a day").set("NOTES1", "行1;\n行2 '引用' ;\n").add();
        Build::diaryDay(QDate(2024, 5, 2)).set("ONE_MSG", "").set("LO_TMP", 12.25).add();
        Build::slip(7, QDate(2024, 5, 2), 1010, 4010, 1234.5678).add();
        Build::planting(3, "秋なす").add();
        const QString dump = Backup::dumpRows(*gDB->engine(), DbKind::Data);
        QVERIFY(dump.contains(QStringLiteral("'it''s; a day'")));

        // into a fresh file ...
        QTemporaryDir other;
        Setup::initRoot(other.path());
        ConnectionSpec conn;
        conn.file = Setup::fileOf(other.path(), DbKind::Data);
        std::unique_ptr<Engine> file = Engine::open(conn);
        Backup::loadRows(*file, DbKind::Data, dump);
        QCOMPARE(Backup::dumpRows(*file, DbKind::Data), dump);
        // ... and back into the engine under test, over changed rows
        gDB->EXEC(QStringLiteral("DELETE FROM D_DIARY WHERE WORK_DATE=#2024/05/01#"));
        Build::diaryDay(QDate(2024, 7, 1)).add();
        Backup::loadRows(*gDB->engine(), DbKind::Data, Backup::dumpRows(*file, DbKind::Data));
        QCOMPARE(Backup::dumpRows(*gDB->engine(), DbKind::Data), dump);
    }

    void refusesWhatIsNoBackup_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("says");
        QTest::newRow("text") << QByteArray("DATA.MDB\n") << QStringLiteral("ではないか、壊れています");
        QTest::newRow("empty") << QByteArray() << QStringLiteral("ではないか、壊れています");
        QTest::newRow("another tar") << QByteArray() << QStringLiteral("バックアップファイルではありません");
        QTest::newRow("cut short") << QByteArray() << QStringLiteral("壊れています");
    }
    void refusesWhatIsNoBackup()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        QFETCH(QByteArray, bytes);
        QFETCH(QString, says);
        TestRoot root;
        const QString file = root.root() + QStringLiteral("/x.tar");
        if (QByteArray(QTest::currentDataTag()) == "another tar" || QByteArray(QTest::currentDataTag()) == "cut short") {
            // a sound tar of other files, or a backup cut in the middle
            QVERIFY(Backup::take(file));
            QFile f(file);
            QVERIFY(f.open(QIODevice::ReadWrite));
            bytes = f.readAll();
            if (QByteArray(QTest::currentDataTag()) == "cut short") {
                bytes.truncate(bytes.size() / 2);
            } else {
                bytes.replace(0, 14, "OTHER-FILE.TXT");
                // the header's checksum as tar writes it
                unsigned sum = 0;
                for (int i = 0; i < 512; ++i)
                    sum += (i >= 148 && i < 156) ? unsigned(' ') : static_cast<unsigned char>(bytes[i]);
                bytes.replace(148, 7, QByteArray::number(sum, 8).rightJustified(6, '0') + '\0');
            }
            f.close();
        }
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
        out.write(bytes);
        out.close();
        const QString data = Setup::fileOf(root.root(), DbKind::Data);
        const QDateTime before = QFileInfo(data).lastModified();
        const AppError e = failureOf([&] { Backup::restore(file, root.root()); });
        QVERIFY2(e.description().contains(says), qPrintable(e.description()));
        QCOMPARE(QFileInfo(data).lastModified(), before);
        QCOMPARE(QDir(root.root() + QStringLiteral("/data")).entryList({"*.2*"}), QStringList());
    }

    void dueAfterTheMonths_data()
    {
        QTest::addColumn<Value>("last");
        QTest::addColumn<int>("months");
        QTest::addColumn<bool>("due");
        QTest::newRow("never taken") << Value() << 1 << true;
        QTest::newRow("a month ago to the day") << Value("2024/04/15") << 1 << true;
        QTest::newRow("a day short of the month") << Value("2024/04/16") << 1 << false;
        QTest::newRow("three months setting") << Value("2024/02/16") << 3 << false;
        QTest::newRow("zero never asks") << Value() << 0 << false;
        QTest::newRow("unreadable date") << Value("いつか") << 1 << true;
    }
    void dueAfterTheMonths()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        QFETCH(Value, last);
        QFETCH(int, months);
        QFETCH(bool, due);
        QCOMPARE(Backup::due(last, months, QDate(2024, 5, 15)), due);
    }
};

TILLORA_TEST_MAIN(TestBackup)
#include "tst_backup.moc"
