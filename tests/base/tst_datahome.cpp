// The run-time tree a program uses: --root, TILLORA_ROOT, the tree beside
// the program, the user's data folder.

#include "base/Globals.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest/QTest>

Q_DECLARE_METATYPE(AppPaths::RootSource)

class TestDataHome : public QObject {
    Q_OBJECT
private slots:
    void chosen_data()
    {
        using S = AppPaths::RootSource;
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("environment");
        QTest::addColumn<QString>("beside");      // what lies beside bin/: "", "ini", "cmake"
        QTest::addColumn<QString>("xdgDataHome"); // "@" stands for the test's folder
        QTest::addColumn<QString>("expected");    // under the test's folder
        QTest::addColumn<S>("source");
        QTest::newRow("--root wins") << "@/mine" << "@/env" << "ini" << "@/xdg" << "mine" << S::Option;
        QTest::newRow("environment over the tree beside") << "" << "@/env" << "ini" << "" << "env" << S::Environment;
        QTest::newRow("checkout with its tree") << "" << "" << "ini" << "@/xdg" << "app" << S::BesideProgram;
        QTest::newRow("build folder before init") << "" << "" << "cmake" << "@/xdg" << "app" << S::BesideProgram;
        QTest::newRow("installed: XDG_DATA_HOME") << "" << "" << "" << "@/xdg" << "xdg/tillora" << S::DataHome;
        QTest::newRow("installed: default data folder") << "" << "" << "" << "" << "home/.local/share/tillora" << S::DataHome;
        QTest::newRow("relative XDG_DATA_HOME ignored") << "" << "" << "" << "rel" << "home/.local/share/tillora" << S::DataHome;
    }
    void chosen()
    {
        QFETCH(QString, option);
        QFETCH(QString, environment);
        QFETCH(QString, beside);
        QFETCH(QString, xdgDataHome);
        QFETCH(QString, expected);
        QFETCH(AppPaths::RootSource, source);
        QTemporaryDir dir;
        const QString base = dir.path();
        QDir(base).mkpath(QStringLiteral("app/bin"));
        if (beside == QLatin1String("ini")) {
            QDir(base).mkpath(QStringLiteral("app/ini"));
            QFile f(base + QStringLiteral("/app/ini/INFO.MDB"));
            QVERIFY(f.open(QIODevice::WriteOnly));
        } else if (beside == QLatin1String("cmake")) {
            QFile f(base + QStringLiteral("/app/CMakeCache.txt"));
            QVERIFY(f.open(QIODevice::WriteOnly));
        }
        const auto here = [&](QString s) { return s.replace(QLatin1Char('@'), base); };
        AppPaths::RootInputs in;
        in.option = here(option);
        in.environment = here(environment);
        in.programDir = base + QStringLiteral("/app/bin");
        in.xdgDataHome = here(xdgDataHome);
        in.home = base + QStringLiteral("/home");
        const AppPaths::RootChoice c = AppPaths::chooseRoot(in);
        QCOMPARE(c.root, QDir::cleanPath(base + QLatin1Char('/') + expected));
        QCOMPARE(c.source, source);
    }
};

QTEST_GUILESS_MAIN(TestDataHome)
#include "tst_datahome.moc"
