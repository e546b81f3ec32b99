// The command-line companion as a script would use it.

#include "store/Engine.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest/QTest>

namespace {
struct Run {
    int code;
    QString out, err;
};

Run admin(const QStringList &args)
{
    QProcess p;
    p.start(QStringLiteral(TILLORA_ADMIN), args);
    p.waitForFinished(60000);
    return {p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()), QString::fromUtf8(p.readAllStandardError())};
}
}

class TestAdmin : public QObject {
    Q_OBJECT
private slots:
    void initThenSql()
    {
        QTemporaryDir dir;
        const QString root = dir.path();
        Run r = admin({"init", "--root", root});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out.count(QStringLiteral("作成: ")), 4);

        r = admin({"sql", "--root", root, "--db", "work", "SELECT L_ETO.ETO_YM FROM L_ETO WHERE ID=1"});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, QStringLiteral("甲子\n"));

        // Null prints as an empty field, cells are separated by a TAB
        r = admin({"sql", "--root", root, "--db", "master",
                   "SELECT M_SHOP.SHOP_ID, M_SHOP.FTP_SVR, M_SHOP.ACC_ID FROM M_SHOP WHERE SHOP_ID=1"});
        QCOMPARE(r.out, QStringLiteral("1\t\t1040\n"));

        r = admin({"sql", "--root", root, "--db", "data",
                   "INSERT INTO D_DIARY (FMR_ID, WORK_DATE, ONE_MSG) VALUES (1, #2024/4/1#, '晴れて暖か')"});
        QCOMPARE(r.code, 0);
        r = admin({"sql", "--root", root, "--db", "data", "SELECT WORK_DATE, ONE_MSG FROM D_DIARY"});
        QCOMPARE(r.out, QStringLiteral("2024/04/01\t晴れて暖か\n"));

        // a failing statement prints the error and exits non-zero
        r = admin({"sql", "--root", root, "--db", "data", "SELECT * FROM NO_SUCH_TABLE"});
        QVERIFY(r.code != 0);
        QVERIFY(r.err.startsWith(QLatin1Char('(')));
        r = admin({"sql", "--root", root, "--db", "data", "SELECT * FROM D_DIARY WHERE WORK_DATE=#2024/2/30#"});
        QVERIFY(r.code != 0);
        QVERIFY(r.err.startsWith(QStringLiteral("(3075)")));

        // settings
        r = admin({"ctrl", "--root", root, "USE_TYPE"});
        QCOMPARE(r.out, QStringLiteral("1\n"));
        QCOMPARE(admin({"ctrl", "--root", root, "USE_TYPE", "2"}).code, 0);
        QCOMPARE(admin({"ctrl", "--root", root, "USE_TYPE"}).out, QStringLiteral("2\n"));

        // a second init keeps the data
        r = admin({"init", "--root", root});
        QCOMPARE(r.out.count(QStringLiteral("既存: ")), 4);
        QCOMPARE(admin({"sql", "--root", root, "--db", "data", "SELECT COUNT(*) FROM D_DIARY"}).out,
                 QStringLiteral("1\n"));
    }

    // An amount an older version wrote beyond the currency range: the other
    // rows print, the cell prints as a mark.
    void anAmountBeyondTheRangePrintsAsAMark()
    {
        QTemporaryDir dir;
        QCOMPARE(admin({"init", "--root", dir.path()}).code, 0);
        {
            ConnectionSpec file;
            file.file = dir.path() + QStringLiteral("/data/DATA.MDB");
            auto e = Engine::open(file);
            e->executeNative(QStringLiteral("PRAGMA ignore_check_constraints=1"));
            e->executeNative(QStringLiteral("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, AMT) VALUES (1, 1, 1800), (1, 2, 1.8e302)"));
        }
        const Run r = admin({"sql", "--root", dir.path(), "--db", "data",
                             "SELECT LEDGE_ID, AMT FROM D_LEDGE ORDER BY LEDGE_ID"});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, QStringLiteral("1\t1800\n2\t#範囲外#\n"));
    }

    void wrongUsage()
    {
        QCOMPARE(admin({}).code, 2);
        QCOMPARE(admin({"sql", "--db", "nowhere", "SELECT 1"}).code, 2);
        for (const char *wrong : {"frob", "--frob"}) {
            const Run r = admin({wrong});
            QCOMPARE(r.code, 2);
            QVERIFY(r.err.contains(QStringLiteral("詳しくは 'tillora-admin --help'")));
        }
    }

    // As the system's other programs: to standard output, exit 0.
    void helpAndVersion()
    {
        Run r = admin({"--help"});
        QCOMPARE(r.code, 0);
        QVERIFY(r.out.startsWith(QStringLiteral("使い方: tillora-admin")));
        QVERIFY(r.out.contains(QStringLiteral("restore FILE")));
        r = admin({"--version"});
        QCOMPARE(r.code, 0);
        QVERIFY(QRegularExpression(QStringLiteral("^tillora-admin \\(Tillora\\) \\d+\\.\\d+\\.\\d+\n")).match(r.out).hasMatch());
    }
};

QTEST_GUILESS_MAIN(TestAdmin)
#include "tst_admin.moc"
