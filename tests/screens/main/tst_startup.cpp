// Start-up as a user meets it: the checks of the default farmer and shop,
// the dialogs they open, a broken connection repaired in its dialog, the
// first screen by the way of use, and the menu.

#include "ui/Form.h"
#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "ui/Screens.h"
#include "screens/main/modMain.h"
#include "store/Database.h"
#include "support/GuiDriver.h"
#include "support/MsgRecorder.h"
#include "support/TestRoot.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest/QTest>

#include <memory>

namespace {

struct Ended {};
void throwEnded(int) { throw Ended{}; }

// Everything a start-up test needs around Main: scripted screens, recorded
// messages, the end of the program recorded instead of done, the repair of a
// connection through its dialog.
struct StartupRig {
    MsgRecorder msgs;
    Gui::Modals modals;
    int ends = 0;
    StartupRig()
    {
        setEndProgramHook([this] { ++ends; });
        setConnectionRepair([] { openScreen(QStringLiteral("fdlSetConCtrl")); });
        setEndProcessHandler(throwEnded);
    }
    ~StartupRig()
    {
        for (Form *f : Form::openForms())
            f->close();
        Gui::settle();
        setEndProgramHook(nullptr);
        setConnectionRepair(nullptr);
        setEndProcessHandler(nullptr);
        CloseAllDatabases();
    }
    QStringList prompts() const
    {
        QStringList out;
        for (const auto &m : msgs.messages)
            out << m.prompt;
        return out;
    }
};

void pressButton(Form &f, const char *name) { Gui::click(f.ctl<QPushButton>(QString::fromLatin1(name))); }

} // namespace

class TestStartup : public QObject {
    Q_OBJECT
private slots:
    // Enter on a screen's last field goes to the next control in the tab
    // order: that must be the confirming button, so that a further Enter
    // saves instead of throwing the entry away.
    void theConfirmingButtonComesBeforeTheClosingOne()
    {
        TestRoot root;
        QStringList wrong;
        for (const QString &name : screenNames()) {
            std::unique_ptr<Form> f(createScreen(name));
            if (!f)
                continue;
            int confirm = -1, closing = -1, at = 0;
            for (QWidget *w = f->nextInFocusChain(); w != f.get(); w = w->nextInFocusChain(), ++at) {
                auto *b = qobject_cast<QPushButton *>(w);
                if (!b)
                    continue;
                const QString n = b->objectName(), t = b->text();
                if ((n == QLatin1String("cmdMENU(1)") || n == QLatin1String("Command1(1)")) &&
                    (t == QStringLiteral("登録") || t == QStringLiteral("設定") || t == QStringLiteral("印刷")))
                    confirm = at;
                if ((n == QLatin1String("cmdMENU(0)") || n == QLatin1String("Command1(0)")) &&
                    (t == QStringLiteral("ｷｬﾝｾﾙ") || t == QStringLiteral("閉じる")))
                    closing = at;
            }
            if (confirm >= 0 && closing >= 0 && closing < confirm)
                wrong << name;
        }
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QLatin1Char(' '))));
    }

    void singleUseOpensTheCalendar()
    {
        TestRoot root(TestEnv::engine(), false);
        StartupRig rig;
        QVERIFY(Main());
        QVERIFY(rig.msgs.messages.isEmpty());
        QCOMPARE(gUSE_TYPE, qint16(1));
        QCOMPARE(gFMR_ID.toLong(), 1);
        QCOMPARE(gSHOP_ID.toLong(), 1);
        Form *cal = Form::find(QStringLiteral("frmDairyCal"));
        QVERIFY(cal && cal->isVisible());
        QCOMPARE(cal->ctl<QPushButton>("cmdMENU(0)")->text(), QStringLiteral("終了"));
        // its menu button opens the menu, whose closing button only closes
        rig.modals.on("fmnMain", [](Form &m) {
            QVERIFY(!m.ctl<QComboBox>("cmbDATA(0)")->isVisible());
            QVERIFY(!m.ctl<QGroupBox>("fraCal")->isVisible());
            QCOMPARE(m.ctl<QPushButton>("cmdMENU(0)")->text(), QStringLiteral("閉じる"));
            pressButton(m, "cmdMENU(0)");
        });
        Gui::click(cal->ctl<QPushButton>("cmdMENU(5)"));
        QCOMPARE(rig.modals.opened, QStringList{"fmnMain"});
        QCOMPARE(rig.ends, 0);
        Gui::click(cal->ctl<QPushButton>("cmdMENU(0)"));
        QCOMPARE(rig.ends, 1);
    }

    void missingFarmerOpensTheFarmerDialog()
    {
        TestRoot root(TestEnv::engine(), false);
        root.openAll();
        gMST->EXEC("DELETE M_FMR.* FROM M_FMR");
        root.closeAll();
        StartupRig rig;
        rig.modals.on("fdlMstFmrEdit", [](Form &f) {
            QCOMPARE(f.ctl<QLineEdit>("txtDATA(0)")->text(), QStringLiteral("1"));
            QVERIFY(f.ctl<QLineEdit>("txtDATA(0)")->isReadOnly());
            Gui::type(f.ctl<QLineEdit>("txtDATA(1)"), QStringLiteral("新しい 生産者"));
            pressButton(f, "Command1(1)");
        });
        QVERIFY(Main());
        QCOMPARE(rig.prompts(), QStringList{"生産者情報を設定してください。"});
        QCOMPARE(rig.modals.opened, QStringList{"fdlMstFmrEdit"});
        QCOMPARE(gMST->DLookup("FMR_NM", "M_FMR", "FMR_ID=1").toText(), QStringLiteral("新しい 生産者"));
        // a farmer added here is offered in the lists
        QVERIFY(gMST->DLookup("CHK_FLG", "M_FMR", "FMR_ID=1").toBool());
        QVERIFY(Form::find(QStringLiteral("frmDairyCal")));
    }

    void deletedDefaultFarmerAsksForTheSetting()
    {
        TestRoot root(TestEnv::engine(), false);
        root.setCtrl("DEF_FMR_ID", Value("7"), Value(4));
        StartupRig rig;
        rig.modals.on("fdlSetLocalCtrl", [](Form &f) {
            auto *code = f.ctl<QLineEdit>("txtDATA(0)");
            QCOMPARE(code->text(), QStringLiteral("7"));
            Gui::type(code, QStringLiteral("1"));
            Gui::leave(code);
            pressButton(f, "Command1(1)");
        });
        QVERIFY(Main());
        QCOMPARE(rig.prompts(), QStringList{"既定生産者IDを設定してください。"});
        QCOMPARE(gFMR_ID.toLong(), 1);
        QCOMPARE(gINI->GetCtrl("DEF_FMR_ID"), Value(1));
    }

    void emptiedDefaultFarmerAsksForTheSetting()
    {
        TestRoot root(TestEnv::engine(), false);
        root.setCtrl("DEF_FMR_ID", Value::null(), Value(4));
        StartupRig rig;
        // cancelling at start-up ends the program
        rig.modals.on("fdlSetLocalCtrl", [](Form &f) { pressButton(f, "Command1(0)"); });
        QVERIFY(!Main());
        QCOMPARE(rig.prompts(), QStringList{"既定生産者IDを設定してください。"});
        QCOMPARE(rig.ends, 1);
        QVERIFY(!gDB); // the databases were emptied
    }

    void missingShopOpensTheFarmerDialogAsItAlwaysHas()
    {
        TestRoot root(TestEnv::engine(), false);
        root.openAll();
        gMST->EXEC("DELETE M_SHOP.* FROM M_SHOP");
        root.closeAll();
        StartupRig rig;
        rig.modals.on("fdlMstFmrEdit", [](Form &f) { pressButton(f, "Command1(1)"); });
        rig.modals.on("fdlMstFmrEdit", [](Form &f) {
            QCOMPARE(f.ctl<QPushButton>("Command1(0)")->text(), QStringLiteral("ｷｬﾝｾﾙ"));
            pressButton(f, "Command1(0)");
        });
        QVERIFY(!Main());
        QCOMPARE(rig.prompts(), (QStringList{"販売店情報を設定してください。", "販売店情報を設定してください。"}));
        QCOMPARE(rig.modals.opened, (QStringList{"fdlMstFmrEdit", "fdlMstFmrEdit"}));
        QCOMPARE(rig.ends, 1);
    }

    void anotherDefaultShopPassesAndShopOneStays()
    {
        TestRoot root(TestEnv::engine(), false);
        root.openAll();
        gMST->EXEC("INSERT INTO M_SHOP (SHOP_ID, SHOP_NM) VALUES (5, '駅前の店')");
        root.closeAll();
        root.setCtrl("DEF_SHOP_ID", Value("5"), Value(4));
        StartupRig rig;
        QVERIFY(Main());
        QVERIFY(rig.msgs.messages.isEmpty());
        QCOMPARE(gSHOP_ID.toLong(), 1);
        QCOMPARE(gLAST_SHIP_ID.toLong(), 5);
    }

    void otherUseTypesEndAfterTheChecksAndTheRecount()
    {
        TestRoot root(TestEnv::engine(), false);
        root.openAll();
        gDB->EXEC("INSERT INTO D_CHEMI (FMR_ID, CHEMI_ID, CHEMI_NM, PUR_QTY, USED_QTY, REST_QTY) VALUES "
                  "(1, 1, '見本乳剤', 500, 120, 380)");
        gDB->EXEC("INSERT INTO D_CHEMI (FMR_ID, CHEMI_ID, CHEMI_NM, PUR_QTY, USED_QTY, REST_QTY) VALUES "
                  "(1, 2, '見本粒剤', 3, 1, 2)");
        gDB->EXEC("INSERT INTO D_DIARY_DTL (FMR_ID, WORK_DATE, DTL_NO, WORK_KBN, CHEMI_ID, QTY) VALUES "
                  "(1, #2024/5/1#, 1, 5, 2, 1)");
        root.closeAll();
        for (const char *use : {"0", "3"}) {
            root.setCtrl("USE_TYPE", Value(use), Value(4));
            StartupRig rig;
            QVERIFY(!Main());
            QCOMPARE(rig.ends, 1);
            QVERIFY(Form::openForms().isEmpty());
        }
        root.openAll();
        // the unused lot has its stock back; the used one is left as it was
        QCOMPARE(gDB->DLookup("REST_QTY", "D_CHEMI", "CHEMI_ID=1").toDouble(), 500.0);
        QCOMPARE(gDB->DLookup("USED_QTY", "D_CHEMI", "CHEMI_ID=1").toDouble(), 0.0);
        QCOMPARE(gDB->DLookup("REST_QTY", "D_CHEMI", "CHEMI_ID=2").toDouble(), 2.0);
    }

    // Nothing can start without a way of use: a missing or empty one stops.
    void noUseTypeStopsTheStart()
    {
        TestRoot root(TestEnv::engine(), false);
        for (bool deleted : {true, false}) {
            if (deleted) {
                root.openAll();
                gINI->EXEC("DELETE S_CTRL.* FROM S_CTRL WHERE CTRL_CD='USE_TYPE'");
                root.closeAll();
            } else {
                root.setCtrl("USE_TYPE", Value::null(), Value(4));
            }
            StartupRig rig;
            try {
                Main();
                QFAIL("started without a way of use");
            } catch (const AppError &e) {
                QCOMPARE(e.number(), VbErr::InvalidNull);
            }
            QVERIFY(Form::openForms().isEmpty());
        }
    }

    void brokenConnectionIsRepairedInItsDialog()
    {
        TestRoot root(TestEnv::engine(), false);
        const int rightType = root.engine() == TestEngine::Mysql ? 1 : 2;
        root.setCtrl("DB_TYPE", Value("0"));
        StartupRig rig;
        rig.modals.on("fdlSetConCtrl", [rightType](Form &f) {
            auto *type = f.ctl<QComboBox>("cmbTYPE(5)");
            QCOMPARE(type->currentIndex(), 0);
            Gui::choose(type, rightType);
            pressButton(f, "Command1(1)");
        });
        QVERIFY(Main());
        QCOMPARE(rig.prompts(), QStringList{"ﾃﾞｰﾀﾍﾞｰｽが不正ですので設定してください。"});
        QCOMPARE(rig.msgs.messages[0].buttons, 20);
        QCOMPARE(gINI->GetCtrl("DB_TYPE").toText(), QString::number(rightType));
        QVERIFY(gDB && gDB->isOpen());
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 0);
    }

    // A database that can't be opened, or that isn't the program's, asks for
    // the connection settings; No ends the program at once.
    void badDatabaseAnsweredNoEndsAtOnce_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("question");
        QTest::newRow("master file missing") << "missing" << "ﾏｽﾀﾃﾞｰﾀが不正ですので設定してください。";
        QTest::newRow("data not the program's") << "foreign" << "ﾃﾞｰﾀﾍﾞｰｽが不正ですので設定してください。";
    }
    void badDatabaseAnsweredNoEndsAtOnce()
    {
        QFETCH(QString, fault);
        QFETCH(QString, question);
        TestRoot root(TestEnv::engine(), false);
        if (fault == QLatin1String("missing")) {
            root.setCtrl("MST_NAME", Value("..\\data\\NOWHERE.MDB"));
            root.setCtrl("MST_TYPE", Value("2"));
        } else if (root.engine() == TestEngine::Mysql) {
            // a database on the server without the data tables: the master one
            OpenIni();
            const QString master = gINI->property(QStringLiteral("MST_NAME"));
            CloseAllDatabases();
            root.setCtrl("DB_NAME", Value(master));
        } else {
            QFile empty(root.root() + QStringLiteral("/data/DATA.MDB"));
            QVERIFY(empty.open(QIODevice::WriteOnly | QIODevice::Truncate));
        }
        StartupRig rig;
        rig.msgs.answer(Msg::ResNo);
        bool ended = false;
        try {
            Main();
        } catch (const Ended &) {
            ended = true;
        }
        QVERIFY(ended);
        QCOMPARE(rig.prompts(), QStringList{question});
        QVERIFY(rig.modals.opened.isEmpty());
    }

    // Data that can't be written is said at start-up, and the program still
    // opens to show it.
    void readOnlyDataIsSaidAtStartUp()
    {
        if (TestEnv::engine() == TestEngine::Mysql)
            QSKIP("files");
        TestRoot root(TestEngine::Sqlite, true);
        // an unused lot, whose recount would write
        gDB->EXEC("INSERT INTO D_CHEMI (FMR_ID, CHEMI_ID, CHEMI_NM, PUR_QTY, USED_QTY, REST_QTY) VALUES "
                  "(1, 1, '見本乳剤', 500, 120, 380)");
        root.closeAll();
        const QString file = root.root() + QStringLiteral("/data/DATA.MDB");
        const QFile::Permissions was = QFile::permissions(file);
        QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadUser);
        StartupRig rig;
        QVERIFY(Main());
        QCOMPARE(rig.msgs.count(), 1);
        QVERIFY2(rig.msgs.lastPrompt().startsWith(QStringLiteral("データを書き込めません。")), qPrintable(rig.msgs.lastPrompt()));
        QVERIFY(rig.msgs.lastPrompt().contains(QStringLiteral("ファイル '%1' が読み取り専用です。").arg(file)));
        QCOMPARE(rig.msgs.messages[0].buttons, int(Msg::Exclamation));
        QVERIFY(Form::find(QStringLiteral("frmDairyCal")));
        QCOMPARE(gDB->DLookup("REST_QTY", "D_CHEMI", "CHEMI_ID=1").toDouble(), 380.0);
        CloseAllDatabases();
        QFile::setPermissions(file, was);
    }

    void multiUseOpensTheMenuWithTheFarmerList()
    {
        TestRoot root(TestEnv::engine(), false);
        root.setCtrl("USE_TYPE", Value("2"), Value(4));
        root.openAll();
        gMST->EXEC("INSERT INTO M_FMR (FMR_ID, FMR_NM, CHK_FLG) VALUES (2, '緑 次郎', -1)");
        gMST->EXEC("INSERT INTO M_FMR (FMR_ID, FMR_NM, CHK_FLG) VALUES (3, 'やめた人', 0)");
        root.closeAll();
        StartupRig rig;
        QVERIFY(Main());
        Form *menu = Form::find(QStringLiteral("fmnMain"));
        QVERIFY(menu && menu->isVisible());
        QVERIFY(QTest::qWaitForWindowActive(menu));
        Gui::settle();
        QCOMPARE(menu->windowTitle(), QStringLiteral("メインメニュー"));
        QCOMPARE(menu->ctl<QLabel>("lblTITLE")->text(), QStringLiteral("処理メニュー"));
        QCOMPARE(menu->ctl<QPushButton>("cmdMENU(0)")->text(), QStringLiteral("終了"));
        auto *list = menu->ctl<QComboBox>("cmbDATA(0)");
        QVERIFY(list->isVisible());
        QCOMPARE(list->count(), 3); // the empty item, farmers 1 and 2
        QCOMPARE(list->itemText(2), QStringLiteral("緑 次郎"));
        QCOMPARE(list->currentIndex(), 1); // the current farmer is selected
        Gui::choose(list, 2);
        QCOMPARE(gFMR_ID.toLong(), 2);
        Gui::choose(list, 0);
        QCOMPARE(gFMR_ID.toLong(), 0);
        // every entry of the menu opens its own screen (closed at once here);
        // the income statement and the journal are choices of the books' dialog
        const QStringList targets{"fdlSetConCtrl",    "fdlSetLocalCtrl",    "fdlMstFmrEdit",  "fdlMstPrdEdit",
                                  "fdlPrintAccRep",   "fdlPrintAccRep",      "fdlPrintPriceTag", "fdlExpPriceTag",
                                  "fdlPrintTraceRep", "fdlUploadTraceData", "fdlMstShopEdit", "fdlPrintAccRep"};
        const int said = rig.msgs.count();
        for (int i : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 13})
            Gui::click(menu->ctl<QPushButton>(QStringLiteral("cmdMENU(%1)").arg(i)));
        QCOMPARE(rig.modals.opened, targets);
        QCOMPARE(rig.msgs.count(), said);
        rig.modals.opened.clear();
        // the calendar opens from the menu and only closes there
        gFMR_ID = Value(1);
        rig.modals.on("frmDairyCal", [](Form &c) {
            QCOMPARE(c.ctl<QPushButton>("cmdMENU(0)")->text(), QStringLiteral("閉じる"));
            pressButton(c, "cmdMENU(0)");
        });
        Gui::click(menu->ctl<QPushButton>("cmdMENU(12)"));
        QCOMPARE(rig.ends, 0);
        Gui::settle();
        QCOMPARE(list->currentIndex(), 1); // chosen again on activation
        Gui::click(menu->ctl<QPushButton>("cmdMENU(0)"));
        QCOMPARE(rig.ends, 1);
    }

    // The question at start-up, and the backup it leads to through the
    // save dialog; the calendar's ﾌｧｲﾙ menu takes one at any time.
    void aBackupIsOfferedWhenTheLastIsOld_data()
    {
        QTest::addColumn<QString>("last");
        QTest::addColumn<QString>("months");
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("asked");
        QTest::newRow("first start begins the count") << "" << "" << 0 << false;
        QTest::newRow("a month ago, taken") << "2000/01/01" << "" << int(Msg::ResYes) << true;
        QTest::newRow("a month ago, not now") << "2000/01/01" << "" << int(Msg::ResNo) << true;
        QTest::newRow("months 0 never asks") << "2000/01/01" << "0" << 0 << false;
    }
    void aBackupIsOfferedWhenTheLastIsOld()
    {
        QFETCH(QString, last);
        QFETCH(QString, months);
        QFETCH(int, answer);
        QFETCH(bool, asked);
        TestRoot root(TestEnv::engine(), false);
        if (!last.isEmpty())
            root.setCtrl("BACKUP_LAST", Value(last));
        if (!months.isEmpty())
            root.setCtrl("BACKUP_MONTHS", Value(months));
        const QString file = root.root() + QStringLiteral("/b.tar");
        QString suggestedName;
        setSaveFileHook([&](const QString &, const QString &suggested) {
            suggestedName = QFileInfo(suggested).fileName();
            return file;
        });
        StartupRig rig;
        if (asked)
            rig.msgs.answer(answer);
        QVERIFY(Main());
        const bool taken = answer == Msg::ResYes;
        QCOMPARE(rig.msgs.count(), int(asked) + int(taken));
        if (asked)
            QVERIFY(rig.msgs.messages[0].prompt.startsWith(QStringLiteral("前回のバックアップ（2000/01/01）から")));
        QCOMPARE(QFile::exists(file), taken);
        QCOMPARE(suggestedName.startsWith(QStringLiteral("tillora-backup-")), taken);
        const QString today = QDate::currentDate().toString(QStringLiteral("yyyy/MM/dd"));
        QCOMPARE(gINI->GetCtrl("BACKUP_LAST").toText(), last.isEmpty() || taken ? today : last);

        // ﾌｧｲﾙ - ﾊﾞｯｸｱｯﾌﾟ... of the calendar
        QFile::remove(file);
        Form *cal = Form::find(QStringLiteral("frmDairyCal"));
        QAction *menu = cal->findChild<QAction *>(QStringLiteral("mnuBACKUP"));
        QVERIFY(menu);
        menu->trigger();
        QVERIFY(QFile::exists(file));
        QCOMPARE(rig.msgs.lastPrompt(), QStringLiteral("バックアップを保存しました。\n") + QDir::toNativeSeparators(file));
        setSaveFileHook(nullptr);
    }
};

TILLORA_GUI_TEST_MAIN(TestStartup)
#include "tst_startup.moc"
