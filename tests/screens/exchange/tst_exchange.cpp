// The exchange dialogs as a user works them: the price tag export opens
// with the period since the last export, asks for a folder, remembers it,
// writes the file and the end of the period; the upload dialog offers the
// plantings of the year typed and sends nothing.

#include "base/Globals.h"
#include "base/Msg.h"
#include "rules/exchange/PriceTagCsv.h"
#include "store/Database.h"
#include "support/Build.h"
#include "support/GuiDriver.h"
#include "support/MsgRecorder.h"
#include "support/TagDay.h"
#include "support/TestRoot.h"
#include "ui/Entry.h"
#include "screens/exchange/fdlExpPriceTag.h"
#include "screens/exchange/fdlUploadTraceData.h"
#include "store/Database.h"
#include "store/Stmt.h"
#include "support/FtpServer.h"
#include "ui/Screens.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDate>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest/QTest>

namespace {

// A fresh tree with the menu open (so that closing a dialog only closes it)
// and the messages recorded.
struct Rig {
    TestRoot root;
    MsgRecorder rec;
    Gui::WithMenu withMenu;
    Form *menu = withMenu.menu;
    Rig()
    {
        gFMR_ID = Value(1);
        gSHOP_ID = Value(1);
    }
};

QByteArray readAll(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

QStringList items(QComboBox *c)
{
    QStringList out;
    for (int i = 0; i < c->count(); ++i)
        out << c->itemText(i) + QLatin1Char('=') + itemData(c, i).toText();
    return out;
}

} // namespace

class TestExchange : public QObject {
    Q_OBJECT
private slots:
    void exportWritesThePeriodAndRemembersIt()
    {
        Rig rig;
        TagDay::seed(QDate(2026, 5, 10));
        rig.root.setCtrl(QStringLiteral("LAST_EXP_PTAG_DATE"), Value(QStringLiteral("2026/05/01")));
        QTemporaryDir out;
        Form *f = new fdlExpPriceTag;
        Gui::show(f);
        QCOMPARE(f->windowTitle(), QStringLiteral("値札ﾃﾞｰﾀ書出"));
        auto cond = f->array<QLineEdit>(QStringLiteral("txtCOND"), 3);
        auto cmd = f->array<QPushButton>(QStringLiteral("Command1"), 3);
        QCOMPARE(cond[0]->text() + QLatin1Char('-') + cond[1]->text(), QStringLiteral("2026/05/02-2026/05/10"));
        QVERIFY(cond[2]->text().isEmpty());
        // whose shipments: the farmer worked on, shown and not to be changed
        auto *farmer = f->ctl<QComboBox>(QStringLiteral("cmbCOND"));
        QCOMPARE(farmer->currentText(), gMST->DLookup("FMR_NM", "M_FMR", "FMR_ID=1").toText());
        QVERIFY(Gui::isLocked(farmer));

        // no folder yet: said, and the folder field takes the focus
        Gui::click(cmd[1]);
        QCOMPARE(rig.rec.lastPrompt(), QStringLiteral("出力先を指定してください。"));
        QCOMPARE(QApplication::focusWidget(), cond[2]);
        // a folder chosen is kept at once
        setOpenDirHook([&](const QString &) { return out.path(); });
        Gui::click(cmd[2]);
        setOpenDirHook(nullptr);
        QCOMPARE(QDir(cond[2]->text()), QDir(out.path()));
        QCOMPARE(QDir(PriceTagCsv::folder()), QDir(out.path()));

        rig.rec.clear();
        Gui::click(cmd[1]);
        QCOMPARE(rig.rec.messages.size(), 1);
        QCOMPARE(rig.rec.lastPrompt(), QStringLiteral("3件のラベルデータを書き出しました。"));
        QVERIFY(!f->isVisible());
        QVERIFY(QFile::exists(out.filePath(QStringLiteral("260502-260510-1-1.csv"))));
        QCOMPARE(gINI->GetCtrl(QStringLiteral("LAST_EXP_PTAG_DATE")).toText(), QStringLiteral("2026/05/10"));
        delete f;
        // the companion writes the same bytes without a window
        QTemporaryDir script;
        QProcess p;
        p.start(QStringLiteral(TILLORA_ADMIN), {"export-ptag", "--root", rig.root.root(), "--from", "2026-05-02", "--to",
                                                "2026/05/10", "--dir", script.path()});
        QVERIFY(p.waitForFinished(60000));
        QVERIFY2(p.exitCode() == 0, p.readAllStandardError().constData());
        QVERIFY(QString::fromUtf8(p.readAllStandardOutput()).startsWith(QStringLiteral("3件のラベルデータを書き出しました。")));
        QCOMPARE(readAll(script.filePath(QStringLiteral("260502-260510-1-1.csv"))),
                 readAll(out.filePath(QStringLiteral("260502-260510-1-1.csv"))));

        // opened again: nothing shipped since, so today alone, in the same folder
        f = new fdlExpPriceTag;
        Gui::show(f);
        cond = f->array<QLineEdit>(QStringLiteral("txtCOND"), 3);
        const QString today = DateUtil::today().toString(QStringLiteral("yyyy/MM/dd"));
        QCOMPARE(cond[0]->text() + QLatin1Char('-') + cond[1]->text(), today + QLatin1Char('-') + today);
        QCOMPARE(QDir(cond[2]->text()), QDir(out.path()));
        cmd = f->array<QPushButton>(QStringLiteral("Command1"), 3);
        Gui::click(cmd[1]);
        QCOMPARE(rig.rec.lastPrompt(), QStringLiteral("出力対象データが登録されていません。"));
        // the same period again, in UTF-8: the choice is kept at once; a
        // folder standing where the file goes is said, and nothing is kept
        auto *utf8 = f->ctl<QCheckBox>(QStringLiteral("chkUTF8"));
        QVERIFY(!utf8->isChecked());
        Gui::click(utf8);
        QCOMPARE(PriceTagCsv::encoding(), PriceTagCsv::Encoding::Utf8Bom);
        Gui::type(cond[0], QStringLiteral("2026/05/02"));
        Gui::type(cond[1], QStringLiteral("2026/05/10"));
        const QString file = out.filePath(QStringLiteral("260502-260510-1-1.csv"));
        QVERIFY(QFile::remove(file) && QDir().mkdir(file));
        Gui::click(cmd[1]);
        QVERIFY(rig.rec.lastPrompt().startsWith(QStringLiteral("同じ名前のフォルダがあるため")));
        QVERIFY(f->isVisible());
        QCOMPARE(gINI->GetCtrl(QStringLiteral("LAST_EXP_PTAG_DATE")).toText(), QStringLiteral("2026/05/10"));
        QVERIFY(QDir().rmdir(file));
        Gui::click(cmd[1]);
        QCOMPARE(rig.rec.lastPrompt(), QStringLiteral("3件のラベルデータを書き出しました。"));
        QVERIFY(readAll(file).startsWith("\xEF\xBB\xBF#FALSE#,1,0,"));
        delete f;
        // the next opening offers UTF-8 again; キャンセル closes
        f = new fdlExpPriceTag;
        Gui::show(f);
        QVERIFY(f->ctl<QCheckBox>(QStringLiteral("chkUTF8"))->isChecked());
        Gui::click(f->ctl<QPushButton>(QStringLiteral("Command1(0)")));
        QVERIFY(!f->isVisible());
        delete f;
    }

    void uploadOffersThePlantingsOfTheYear()
    {
        Rig rig;
        const int year = QDate::currentDate().year();
        Build::planting(2, QStringLiteral("秋なす")).set("YYYY", year).add();
        Build::planting(1, QStringLiteral("春トマト")).set("YYYY", year).add();
        Build::planting(3, QStringLiteral("古株")).set("YYYY", 2020).add();
        Form *f = new fdlUploadTraceData;
        Gui::show(f);
        QCOMPARE(f->windowTitle(), QStringLiteral("ﾃﾞｰﾀｱｯﾌﾟﾛｰﾄﾞ"));
        auto *yearBox = f->ctl<QLineEdit>(QStringLiteral("txtCOND(0)"));
        auto *plants = f->ctl<QComboBox>(QStringLiteral("cmbCOND(1)"));
        QCOMPARE(yearBox->text(), QString::number(year));
        QCOMPARE(items(plants), (QStringList{"=0", "春トマト=1", "秋なす=2"}));
        QCOMPARE(f->ctl<QComboBox>(QStringLiteral("cmbCOND(0)"))->count(), 0);
        for (const char *typed : {"2020", "", "x"}) {
            Gui::type(yearBox, QString::fromLatin1(typed));
            Gui::leave(yearBox);
        }
        QCOMPARE(items(plants), QStringList{"=0"}); // "x" is no year: none
        Gui::type(yearBox, QStringLiteral("2020"));
        Gui::leave(yearBox);
        QCOMPARE(items(plants), (QStringList{"=0", "古株=3"}));
        auto *upload = f->ctl<QPushButton>(QStringLiteral("Command1(1)"));
        // no server in the shop master: said, nothing written
        Gui::click(upload);
        QCOMPARE(rig.rec.lastPrompt(), FtpUpload::messageOf(FtpUpload::Failure::NoServer));
        // the year's pages go to the shop's server; a planting without
        // shipments is named and left out
        FtpServer server;
        QVERIFY2(server.started(), qPrintable(server.error()));
        const FtpTarget t = server.target(QStringLiteral("www"));
        gMST->EXEC(Stmt("UPDATE M_SHOP SET FTP_SVR=?, FTP_DIR=?, FTP_USR=?, FTP_PWD=? WHERE SHOP_ID=1")
                       .text(t.server).text(t.dir).text(t.user).text(t.password));
        Build::planting(4, QStringLiteral("出荷なし")).set("YYYY", 2020).add();
        Build::shipment(1, QDate(2020, 6, 1)).set("PLANT_ID", 3).add();
        Gui::click(upload);
        QCOMPARE(rig.rec.messages.last().buttons & Msg::Information, int(Msg::Information));
        QVERIFY(rig.rec.lastPrompt().contains(QStringLiteral("「出荷なし」")));
        QVERIFY(server.files().contains(QStringLiteral("www/cropvia/1/3/index.html")));
        QVERIFY(!server.files().contains(QStringLiteral("www/cropvia/1/4/index.html")));
        // an empty year is asked for
        Gui::type(yearBox, QString());
        Gui::click(upload);
        QCOMPARE(rig.rec.lastPrompt(), QStringLiteral("年を入力してください。"));
        QVERIFY(f->isVisible());
        Gui::click(f->ctl<QPushButton>(QStringLiteral("Command1(0)")));
        QVERIFY(!f->isVisible());
        delete f;
    }
};

TILLORA_GUI_TEST_MAIN(TestExchange)
#include "tst_exchange.moc"
