// A save killed at a random statement (SIGKILL, as a power cut or the task
// manager would end it) leaves the records exactly as before the save or
// exactly as after it, never between, and the data file sound. Fifty saves
// of every kind, one after the other, each in a child process killed before
// its Nth statement (N drawn with a fixed seed, sometimes past the end).
//
// The binary is its own child: "tst_crash --save-child ROOT KIND FORM N"
// opens the run-time tree ROOT, opens the save and sends SIGKILL to itself
// before the save's Nth statement.

#include "base/Globals.h"
#include "base/Helpers.h"
#include "base/Msg.h"
#include "rules/common/SaveKinds.h"
#include "store/Database.h"
#include "support/TestRoot.h"
#include "support/SaveProbe.h"

#include <QCoreApplication>
#include <QProcess>
#include <QRandomGenerator>
#include <QtTest/QTest>

#include <csignal>
#include <cstdlib>

using namespace SaveKinds;

namespace {

constexpr int kSaves = 50;

int saveChild(char **argv)
{
    AppPaths::setRoot(QString::fromLocal8Bit(argv[2]));
    OpenIni();
    OpenDb();
    OpenMst();
    OpenWork();
    choose();
    const std::function<void()> save = open(atoi(argv[3]), atoi(argv[4]));
    const int killAt = atoi(argv[5]);
    int sent = 0;
    setLogHook([&](const QString &) {
        if (++sent == killAt)
            std::raise(SIGKILL);
    });
    save();
    CloseAllDatabases();
    return 0;
}

// Runs the save in a child; true when the child was killed, false when it
// ended by itself (it must end well then).
bool killedInChild(const TestRoot &root, int kind, int form, int killAt)
{
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("--save-child"), root.root(), QString::number(kind), QString::number(form),
                 QString::number(killAt)});
    if (!child.waitForFinished(60000))
        qFatal("the child did not end");
    if (child.exitStatus() == QProcess::CrashExit)
        return true;
    if (child.exitCode() != 0)
        qFatal("the child failed");
    return false;
}

} // namespace

class TestCrash : public QObject {
    Q_OBJECT
private slots:
    void init() { choose(); }
    void cleanup() { setCompNameForTests(QString()); }

    void aKilledSaveLeavesTheRecordsAsBeforeOrAsAfter()
    {
        TestRoot root;
        seed();
        QRandomGenerator draw(20240508);
        int killed = 0, ended = 0;
        for (int i = 0; i < kSaves; ++i) {
            const int kind = i % Count;
            const QString what = QStringLiteral("save %1 (%2)").arg(i).arg(QString::fromLatin1(name(kind)));
            const QStringList unsaved = SaveProbe::records();
            int statements = 0;
            const QStringList saved =
                SaveProbe::recordsAfter([&] { statements = SaveProbe::statementsOf(open(kind, i)); });
            // one past the last: the save ends before it
            const int killAt = 1 + int(draw.bounded(statements + 1));
            const bool wasKilled = killedInChild(root, kind, i, killAt);
            QVERIFY2(SaveProbe::integrity() == QLatin1String("ok"), qPrintable(what));
            const QStringList now = SaveProbe::records();
            if (now == saved) {
                ++(wasKilled ? killed : ended);
                continue;
            }
            QVERIFY2(wasKilled, qPrintable(what + QStringLiteral(" ended, but not as it should:\n") +
                                          SaveProbe::difference(saved, now)));
            QVERIFY2(now == unsaved,
                     qPrintable(what + QStringLiteral(" left a part:\n") + SaveProbe::difference(unsaved, now)));
            ++killed;
            // made now, so that the records move on as the forms expect
            open(kind, i)();
            QVERIFY2(SaveProbe::records() == saved, qPrintable(what));
        }
        QVERIFY(killed > kSaves / 2);
        QVERIFY(ended > 0);
    }
};

int main(int argc, char **argv)
{
    prepareProcess();
    if (argc == 6 && qstrcmp(argv[1], "--save-child") == 0) {
        QCoreApplication app(argc, argv);
        return saveChild(argv);
    }
    QCoreApplication app(argc, argv);
    TestCrash t;
    return TestEnv::runOnEngines(&t, argc, argv);
}

#include "tst_crash.moc"
