#include "screens/main/fmnMain.h"

#include "base/Globals.h"
#include "rules/masters/MasterLists.h"
#include "screens/main/BackupOffer.h"
#include "ui/Entry.h"
#include "ui/Screens.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

namespace {

// name, kind, caption, left, top, width, height (twips), frame
const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "処理メニュー", 480, 240, 4800, 600},
    {"lblCAP(0)", CtlKind::Label, "生産者", 6400, 330, 1200, 420},
    {"cmbDATA(0)", CtlKind::Combo, "", 7700, 300, 4100, 420},
    {"fraCal", CtlKind::Frame, "日誌入力", 600, 1200, 5400, 1500},
    {"cmdMENU(12)", CtlKind::Button, "ｶﾚﾝﾀﾞｰ", 300, 480, 2300, 720, "fraCal"},
    {"fraTrace", CtlKind::Frame, "トレーサビリティ", 600, 2900, 5400, 1500},
    {"cmdMENU(9)", CtlKind::Button, "帳票印刷", 300, 480, 2300, 720, "fraTrace"},
    {"cmdMENU(10)", CtlKind::Button, "ﾃﾞｰﾀｱｯﾌﾟﾛｰﾄﾞ", 2800, 480, 2300, 720, "fraTrace"},
    {"fraShip", CtlKind::Frame, "出荷関連", 600, 4600, 5400, 1500},
    {"cmdMENU(7)", CtlKind::Button, "値札印刷", 300, 480, 2300, 720, "fraShip"},
    {"cmdMENU(8)", CtlKind::Button, "ﾃﾞｰﾀ書出", 2800, 480, 2300, 720, "fraShip"},
    {"fraAcc", CtlKind::Frame, "会計帳票", 600, 6300, 5400, 1500},
    {"cmdMENU(5)", CtlKind::Button, "試算表", 300, 480, 2300, 720, "fraAcc"},
    {"cmdMENU(6)", CtlKind::Button, "損益計算書", 2800, 480, 2300, 720, "fraAcc"},
    {"fraSetting", CtlKind::Frame, "環境設定", 6400, 1200, 5400, 1500},
    {"cmdMENU(1)", CtlKind::Button, "接続設定", 300, 480, 2300, 720, "fraSetting"},
    {"cmdMENU(2)", CtlKind::Button, "基本設定", 2800, 480, 2300, 720, "fraSetting"},
    {"fraMst", CtlKind::Frame, "マスタメンテナンス", 6400, 2900, 5400, 2400},
    {"cmdMENU(3)", CtlKind::Button, "生産者", 300, 480, 2300, 720, "fraMst"},
    {"cmdMENU(4)", CtlKind::Button, "商品", 2800, 480, 2300, 720, "fraMst"},
    {"cmdMENU(11)", CtlKind::Button, "販売店", 300, 1380, 2300, 720, "fraMst"},
    {"fraAccData", CtlKind::Frame, "会計データ", 6400, 5500, 5400, 1500},
    {"cmdMENU(13)", CtlKind::Button, "仕訳帳書出", 300, 480, 2300, 720, "fraAccData"},
    {"cmdMENU(0)", CtlKind::Button, "閉じる", 600, 8250, 2000, 650},
    {"cmdBACKUP", CtlKind::Button, "ﾊﾞｯｸｱｯﾌﾟ...", 6400, 8250, 2300, 650},
};

// What each button opens.
const char *const kOpens[14] = {nullptr,          "fdlSetConCtrl",  "fdlSetLocalCtrl",    "fdlMstFmrEdit",
                                "fdlMstPrdEdit",  "fdlPrintAccRep", "fdlPrintPlRep",      "fdlPrintPriceTag",
                                "fdlExpPriceTag", "fdlPrintTraceRep", "fdlUploadTraceData", "fdlMstShopEdit",
                                "frmDairyCal",    "fdlExpJournal"};

} // namespace

fmnMain::fmnMain(QWidget *parent) : Form(QStringLiteral("fmnMain"), 12400, 9200, parent)
{
    setWindowTitle(QStringLiteral("メインメニュー"));
    setSizable(true);
    buildControls(kControls, int(std::size(kControls)));
    cmdMENU = array<QPushButton>(QStringLiteral("cmdMENU"), 14);
    cmbData0 = ctl<QComboBox>(QStringLiteral("cmbDATA(0)"));
    for (int i = 1; i < 14; ++i) {
        if (!cmdMENU[i])
            continue;
        const QString target = QString::fromLatin1(kOpens[i]);
        onClick(cmdMENU[i], [target] { openScreen(target); });
    }
    onClick(ctl<QPushButton>(QStringLiteral("cmdBACKUP")), [this] { TakeBackup(this); });
    onClick(
        cmdMENU[0],
        [this] {
            close();
            if (gUSE_TYPE == 2)
                EndProgram();
        },
        false);
    connect(cmbData0, qOverload<int>(&QComboBox::activated), this, [this](int index) {
        trap([&] { gFMR_ID = Value(int(itemData(cmbData0, index).toLong())); });
    });
}

void fmnMain::onLoad()
{
    SetDefSize();
    applyWindowState();
    const bool multi = gUSE_TYPE == 2;
    if (gUSE_TYPE != 1 && !multi) {
        EndProgram();
        return;
    }
    ctl<QGroupBox>(QStringLiteral("fraCal"))->setVisible(multi);
    ctl<QLabel>(QStringLiteral("lblCAP(0)"))->setVisible(multi);
    cmbData0->setVisible(multi);
    cmdMENU[0]->setText(multi ? QStringLiteral("終了") : QStringLiteral("閉じる"));
    if (multi)
        SetCmb(0);
}

void fmnMain::onActivate()
{
    applyWindowState();
    // The current farmer is selected again; with no match the selection stays.
    for (int i = 0; i < cmbData0->count(); ++i)
        if (itemData(cmbData0, i).toLong() == Nz(gFMR_ID, Value(0)).toLong()) {
            cmbData0->setCurrentIndex(i);
            break;
        }
}

void fmnMain::SetCmb(int index)
{
    if (index != 0)
        return;
    cmbData0->clear();
    addEmptyItem(cmbData0);
    for (const Choice &e : MasterLists::farmers())
        addItem(cmbData0, e.text, e.id);
}
