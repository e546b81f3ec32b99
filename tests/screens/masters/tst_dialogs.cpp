// The settings and farmer dialogs: what they load, what a save writes, and
// what they refuse.

#include "ui/Form.h"
#include "base/Globals.h"
#include "ui/Screens.h"
#include "screens/masters/fdlMstFmrEdit.h"
#include "screens/masters/fdlMstPrdEdit.h"
#include "screens/masters/fdlMstShopEdit.h"
#include "screens/masters/fdlSetConCtrl.h"
#include "screens/masters/fdlSetLocalCtrl.h"
#include "store/Database.h"
#include "support/GuiDriver.h"
#include "support/MsgRecorder.h"
#include "support/TestRoot.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest/QTest>

namespace {
// A dialog shown as the menu would show it (the menu being open, so that
// cancelling only closes).
}

class TestDialogs : public QObject {
    Q_OBJECT
private slots:
    void init() { gFMR_ID = Value(1); }

    void farmerDialogEditsTheCurrentFarmer()
    {
        TestRoot root;
        Gui::WithMenu menu;
        MsgRecorder rec;
        fdlMstFmrEdit f;
        Gui::show(&f);
        QCOMPARE(f.windowTitle(), QStringLiteral("生産者情報編集"));
        QCOMPARE(f.Mode(), qint16(2));
        auto *code = f.ctl<QLineEdit>("txtDATA(0)");
        auto *name = f.ctl<QLineEdit>("txtDATA(1)");
        QCOMPARE(code->text(), QStringLiteral("1"));
        QVERIFY(code->isReadOnly());
        QCOMPARE(name->text(), gMST->DLookup("FMR_NM", "M_FMR", "FMR_ID=1").toText());
        QCOMPARE(QApplication::focusWidget(), name);
        QCOMPARE(f.ctl<QPushButton>("Command1(0)")->text(), QStringLiteral("ｷｬﾝｾﾙ"));
        // fees must be numbers
        auto *fee = f.ctl<QLineEdit>("txtDATA(12)");
        Gui::type(fee, QStringLiteral("三百"));
        Gui::leave(fee);
        QCOMPARE(rec.lastPrompt(), QStringLiteral("数値を入力してください。"));
        QCOMPARE(QApplication::focusWidget(), fee);
        Gui::type(fee, QStringLiteral("440"));
        Gui::leave(fee);
        Gui::type(name, QStringLiteral("青葉 耕一"));
        Gui::type(f.ctl<QLineEdit>("txtDATA(5)"), QString());
        Gui::click(f.ctl<QPushButton>("Command1(1)"));
        QVERIFY(!f.isVisible());
        QCOMPARE(gMST->DLookup("FMR_NM", "M_FMR", "FMR_ID=1").toText(), QStringLiteral("青葉 耕一"));
        QCOMPARE(gMST->DLookup("FEE_1", "M_FMR", "FMR_ID=1"), Value(Currency::fromInt(440)));
        QVERIFY(gMST->DLookup("NOTES", "M_FMR", "FMR_ID=1").isNull());
        QCOMPARE(rec.count(), 1);
    }

    void farmerDialogAddsAFarmerUnderTheCurrentCode()
    {
        TestRoot root;
        Gui::WithMenu menu;
        gFMR_ID = Value(4);
        fdlMstFmrEdit f;
        Gui::show(&f);
        for (int i = 1; i < 14; ++i)
            QVERIFY(f.ctl<QLineEdit>(QStringLiteral("txtDATA(%1)").arg(i))->text().isEmpty());
        Gui::type(f.ctl<QLineEdit>("txtDATA(1)"), QStringLiteral("新 規子"));
        Gui::click(f.ctl<QPushButton>("Command1(1)"));
        QCOMPARE(gMST->DLookup("FMR_NM", "M_FMR", "FMR_ID=4").toText(), QStringLiteral("新 規子"));
        // cancel with the menu open only closes
        fdlMstFmrEdit again;
        Gui::show(&again);
        Gui::click(again.ctl<QPushButton>("Command1(0)"));
        QVERIFY(!again.isVisible());
        QVERIFY(gDB);
    }

    void oddTextIsStoredAsTyped()
    {
        TestRoot root;
        Gui::WithMenu menu;
        MsgRecorder rec;
        fdlMstFmrEdit f;
        Gui::show(&f);
        Gui::type(f.ctl<QLineEdit>("txtDATA(1)"), QStringLiteral("O'Brien 農園; DROP TABLE M_FMR"));
        Gui::type(f.ctl<QLineEdit>("txtDATA(5)"), QString(80, QChar(0x3042)));
        Gui::type(f.ctl<QLineEdit>("txtDATA(13)"), QStringLiteral("１１００"));
        Gui::leave(f.ctl<QLineEdit>("txtDATA(13)"));
        Gui::click(f.ctl<QPushButton>("Command1(1)"));
        QVERIFY(rec.messages.isEmpty());
        QCOMPARE(gMST->DLookup("FMR_NM", "M_FMR", "FMR_ID=1").toText(), QStringLiteral("O'Brien 農園; DROP TABLE M_FMR"));
        QCOMPARE(gMST->DLookup("NOTES", "M_FMR", "FMR_ID=1").toText(), QString(50, QChar(0x3042)));
        QCOMPARE(gMST->DLookup("FEE_2", "M_FMR", "FMR_ID=1"), Value(Currency::fromInt(1100)));
        // a stored text longer than its field is shown and saved whole
        const QString notes(90, QChar(0x3044));
        gMST->EXEC(QStringLiteral("UPDATE M_FMR SET NOTES='%1' WHERE FMR_ID=1").arg(notes));
        fdlMstFmrEdit again;
        Gui::show(&again);
        QCOMPARE(again.ctl<QLineEdit>("txtDATA(5)")->text(), notes);
        Gui::click(again.ctl<QPushButton>("Command1(1)"));
        QCOMPARE(gMST->DLookup("NOTES", "M_FMR", "FMR_ID=1").toText(), notes);
    }

    void farmerDialogLooksUpACodeBeforeEditing()
    {
        TestRoot root;
        fdlMstFmrEdit f;
        f.load();
        // before activation the dialog looks for a code
        QCOMPARE(f.Mode(), qint16(0));
        QVERIFY(!f.ctl<QPushButton>("Command1(1)")->isEnabled());
        QCOMPARE(f.ctl<QPushButton>("Command1(0)")->text(), QStringLiteral("閉じる"));
        QVERIFY(f.GetData(Value(1)));
        QVERIFY(!f.GetData(Value(99)));
        QVERIFY(!f.ctl<QLineEdit>("txtDATA(1)")->text().isEmpty()); // kept as they were
    }

    void localSettingsLoadAndSave()
    {
        TestRoot root;
        Gui::WithMenu menu;
        MsgRecorder rec;
        fdlSetLocalCtrl f;
        Gui::show(&f);
        auto opt = f.array<QRadioButton>("Option1", 2);
        auto txt = f.array<QLineEdit>("txtDATA", 3);
        QVERIFY(opt[0]->isChecked());
        QCOMPARE(txt[0]->text(), QStringLiteral("1"));
        QCOMPARE(txt[1]->text(), QStringLiteral("1"));
        QVERIFY(!f.ctl<QCheckBox>("Check1")->isChecked());
        // codes must be numbers; an empty one is allowed
        Gui::type(txt[1], QStringLiteral("x"));
        Gui::leave(txt[1]);
        QCOMPARE(rec.lastPrompt(), QStringLiteral("販売店ｺｰﾄﾞには数値を指定してください。"));
        QCOMPARE(QApplication::focusWidget(), txt[1]);
        Gui::type(txt[1], QStringLiteral("２"));
        Gui::leave(txt[1]);
        Gui::type(txt[0], QString());
        Gui::leave(txt[0]);
        setOpenDirHook([](const QString &title) {
            return title == QStringLiteral("ﾊﾞｯｸｱｯﾌﾟﾌｫﾙﾀﾞを指定してください。") ? QStringLiteral("/srv/backup")
                                                                                   : QString();
        });
        Gui::click(f.ctl<QPushButton>("Command1(2)"));
        setOpenDirHook(nullptr);
        QCOMPARE(txt[2]->text(), QStringLiteral("/srv/backup"));
        opt[1]->setChecked(true);
        f.ctl<QCheckBox>("Check1")->setChecked(true);
        Gui::click(f.ctl<QPushButton>("Command1(1)"));
        QVERIFY(!f.isVisible());
        QCOMPARE(gINI->GetCtrl("USE_TYPE"), Value(2));
        QCOMPARE(gINI->GetCtrl("DEF_FMR_ID"), Value::null());
        QCOMPARE(gINI->GetCtrl("DEF_SHOP_ID"), Value(2));
        QCOMPARE(gINI->GetCtrl("BACK_DIR"), Value("/srv/backup"));
        QCOMPARE(gINI->GetCtrl("WINDOW_STA"), Value(true));
        QCOMPARE(rec.count(), 1);
    }

    void localSettingsMakeTypedRows()
    {
        TestRoot root;
        Gui::WithMenu menu;
        gINI->EXEC("DELETE S_CTRL.* FROM S_CTRL WHERE CTRL_CD IN ('USE_TYPE','DEF_FMR_ID','DEF_SHOP_ID','BACK_DIR',"
                   "'WINDOW_STA')");
        fdlSetLocalCtrl f;
        Gui::show(&f);
        QVERIFY(!f.ctl<QRadioButton>("Option1(0)")->isChecked());
        Gui::type(f.ctl<QLineEdit>("txtDATA(0)"), QStringLiteral("3"));
        // without a way of use nothing is written: the next start could not go on
        MsgRecorder rec;
        Gui::click(f.ctl<QPushButton>("Command1(1)"));
        QCOMPARE(rec.lastPrompt(), QStringLiteral("利用方法（シングルまたはマルチ）を選択してください。"));
        QVERIFY(f.isVisible());
        QVERIFY(gINI->DLookup("CTRL_TYPE", "S_CTRL", "CTRL_CD='USE_TYPE'").isNull());
        f.ctl<QRadioButton>("Option1(0)")->setChecked(true);
        Gui::click(f.ctl<QPushButton>("Command1(1)"));
        const char *keys[] = {"USE_TYPE", "DEF_FMR_ID", "DEF_SHOP_ID", "BACK_DIR", "WINDOW_STA"};
        const int types[] = {4, 4, 4, 10, 1};
        for (int i = 0; i < 5; ++i)
            QCOMPARE(gINI->DLookup("CTRL_TYPE", "S_CTRL", QStringLiteral("CTRL_CD='%1'").arg(keys[i])).toLong(),
                     types[i]);
        QCOMPARE(gINI->GetCtrl("DEF_FMR_ID"), Value(3));
        QCOMPARE(gINI->GetCtrl("USE_TYPE"), Value(1));
        QCOMPARE(gINI->GetCtrl("WINDOW_STA"), Value(false));
        QVERIFY(gINI->GetCtrl("BACK_DIR").isNull());
    }

    void connectionSettingsSaveAndReconnect()
    {
        TestRoot root;
        Gui::WithMenu menu;
        MsgRecorder rec;
        fdlSetConCtrl f;
        Gui::show(&f);
        auto *type = f.ctl<QComboBox>("cmbTYPE(5)");
        type->hidePopup();
        const bool server = root.engine() == TestEngine::Mysql;
        QCOMPARE(type->currentText(), server ? QStringLiteral("MYSQL") : QStringLiteral("MDB"));
        QCOMPARE(f.ctl<QLineEdit>("Text1(4)")->echoMode(), QLineEdit::Password);
        QCOMPARE(f.ctl<QLineEdit>("Text1(2)")->property("fieldLimit").toInt(), 50);
        if (!server)
            QCOMPARE(f.ctl<QLineEdit>("Text1(8)")->text(), QStringLiteral("..\\data\\MASTER.MDB"));
        Gui::type(f.ctl<QLineEdit>("Text1(11)"), QStringLiteral("pw"));
        Gui::click(f.ctl<QPushButton>("Command1(1)"));
        QVERIFY(!f.isVisible());
        QCOMPARE(gINI->GetCtrl("MST_DBPW").toText(), QStringLiteral("pw"));
        QCOMPARE(gINI->GetCtrl("DB_TYPE").toText(), server ? QStringLiteral("1") : QStringLiteral("2"));
        QVERIFY(gDB->isOpen() && gMST->isOpen());
        QCOMPARE(gMST->DCount("*", "M_FMR").toLong(), 1);
        QVERIFY(rec.messages.isEmpty());
    }

    // Cancel at start-up ends the program; with a change it asks first, and
    // staying keeps the program too.
    void cancelAtStartUpEndsTheProgram()
    {
        TestRoot root;
        int ends = 0;
        setEndProgramHook([&] { ++ends; });
        MsgRecorder rec;
        for (const char *name : {"fdlSetConCtrl", "fdlSetLocalCtrl", "fdlMstFmrEdit"}) {
            TestRoot fresh;
            Form *f = createScreen(QString::fromLatin1(name));
            Gui::show(f);
            auto *cancel = f->ctl<QPushButton>("Command1(0)");
            Gui::click(cancel);
            QCOMPARE(ends, 1);
            delete f;
            fresh.openAll(); // the end closed the databases
            f = createScreen(QString::fromLatin1(name));
            Gui::show(f);
            Gui::type(f->findChildren<QLineEdit *>().last(), QStringLiteral("9"));
            rec.answer(Msg::ResCancel);
            rec.answer(Msg::ResNo);
            Gui::click(f->ctl<QPushButton>("Command1(0)"));
            QVERIFY(f->isVisible());
            QCOMPARE(ends, 1);
            Gui::click(f->ctl<QPushButton>("Command1(0)"));
            QCOMPARE(rec.lastPrompt(), QStringLiteral("変更内容を登録しますか？"));
            QCOMPARE(ends, 2);
            delete f;
            ends = 0;
        }
        setEndProgramHook(nullptr);
    }

    // Closing a dialog with a change asks first: Cancel stays with the focus
    // back in the field, No closes without saving, Yes saves what the field
    // holds and closes (by the window's own close, the field still in
    // focus). A record only shown closes without a word.
    void closingAsksAboutAChange()
    {
        TestRoot root;
        Gui::WithMenu menu;
        gSHOP_ID = Value(1);
        const auto mst = [](const char *table, const char *column, const QString &text) {
            return gMST->DCount("*", table, QStringLiteral("%1='%2'").arg(column, text)).toLong() > 0;
        };
        const struct {
            const char *screen, *field;
            std::function<bool(const QString &)> stored;
        } dialogs[] = {
            {"fdlMstFmrEdit", "txtDATA(1)", [&](const QString &t) { return mst("M_FMR", "FMR_NM", t); }},
            {"fdlMstShopEdit", "txtDATA(1)", [&](const QString &t) { return mst("M_SHOP", "SHOP_NM", t); }},
            {"fdlMstPrdEdit", "txtDATA(1)", [&](const QString &t) { return mst("M_PRD", "PRD_NM", t); }},
            {"fdlSetLocalCtrl", "txtDATA(2)", [](const QString &t) { return textOf(gINI->GetCtrl("BACK_DIR")) == t; }},
            {"fdlSetConCtrl", "Text1(11)", [](const QString &t) { return textOf(gINI->GetCtrl("MST_DBPW")) == t; }},
        };
        const struct {
            int answer;
            bool byWindow, open, saved;
        } answers[] = {{Msg::ResCancel, false, true, false}, {Msg::ResNo, false, false, false}, {Msg::ResYes, true, false, true}};
        MsgRecorder rec;
        for (const auto &d : dialogs) {
            const QString name = QString::fromLatin1(d.screen);
            rec.clear();
            {
                Form *f = createScreen(name);
                Gui::show(f);
                Gui::click(f->findChild<QPushButton *>(name == "fdlMstPrdEdit" ? "cmdMENU(0)" : "Command1(0)"));
                QVERIFY2(!f->isVisible() && rec.messages.isEmpty(), qPrintable(name + rec.lastPrompt()));
                delete f;
            }
            for (const auto &a : answers) {
                rec.clear();
                const QString text = QStringLiteral("変更%1").arg(a.answer);
                Form *f = createScreen(name);
                Gui::show(f);
                auto *field = f->ctl<QLineEdit>(QString::fromLatin1(d.field));
                Gui::type(field, text);
                rec.answer(a.answer);
                if (a.byWindow)
                    f->close();
                else
                    Gui::click(f->findChild<QPushButton *>(name == "fdlMstPrdEdit" ? "cmdMENU(0)" : "Command1(0)"));
                Gui::settle();
                QVERIFY2(rec.count() == 1, d.screen);
                QCOMPARE(rec.messages[0].prompt, QStringLiteral("変更内容を登録しますか？"));
                QCOMPARE(rec.messages[0].buttons, Msg::YesNoCancel + Msg::Question);
                QVERIFY2(f->isVisible() == a.open, d.screen);
                QVERIFY2(d.stored(text) == a.saved, d.screen);
                if (a.open)
                    QVERIFY2(QApplication::focusWidget() == field, d.screen);
                f->done(QDialog::Rejected);
                delete f;
            }
        }
    }
};

TILLORA_GUI_TEST_MAIN(TestDialogs)
#include "tst_dialogs.moc"
