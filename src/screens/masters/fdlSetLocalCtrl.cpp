#include "screens/masters/fdlSetLocalCtrl.h"

#include "base/Msg.h"
#include "rules/masters/Settings.h"
#include "ui/Entry.h"
#include "ui/Skeletons.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace {

const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "基本設定", 300, 150, 4800, 540},
    {"fraUSE", CtlKind::Frame, "利用方法", 600, 900, 8400, 1000},
    {"Option1(0)", CtlKind::Option, "シングル", 400, 420, 2400, 420, "fraUSE"},
    {"Option1(1)", CtlKind::Option, "マルチ", 3200, 420, 2400, 420, "fraUSE"},
    {"lblCAP(0)", CtlKind::Label, "既定生産者ｺｰﾄﾞ", 600, 2250, 2200, 420},
    {"txtDATA(0)", CtlKind::Text, "", 2950, 2230, 1500, 420},
    {"lblCAP(1)", CtlKind::Label, "既定販売店ｺｰﾄﾞ", 600, 2950, 2200, 420},
    {"txtDATA(1)", CtlKind::Text, "", 2950, 2930, 1500, 420},
    {"lblCAP(2)", CtlKind::Label, "ﾊﾞｯｸｱｯﾌﾟﾌｫﾙﾀﾞ", 600, 3650, 2200, 420},
    {"txtDATA(2)", CtlKind::Text, "", 2950, 3630, 4600, 420},
    {"Command1(2)", CtlKind::Button, "参照...", 7650, 3610, 1350, 460},
    {"Check1", CtlKind::Check, "画面を最大化して表示する", 2950, 4400, 5000, 420},
    {"Command1(1)", CtlKind::Button, "登録", 7200, 6100, 1800, 600},
    {"Command1(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 600, 6100, 1800, 600},
};

const CtlSpec kMstControls[] = {
    {"lblTITLE", CtlKind::Label, "共通設定", 300, 150, 4800, 540},
    {"fraUP", CtlKind::Frame, "アップロード情報", 600, 900, 8400, 1000},
    {"Option1(0)", CtlKind::Option, "HTML", 400, 420, 1800, 420, "fraUP"},
    {"Option1(1)", CtlKind::Option, "PHP", 2600, 420, 1800, 420, "fraUP"},
    {"Option1(2)", CtlKind::Option, "CGI", 4800, 420, 1800, 420, "fraUP"},
    {"fraFTP", CtlKind::Frame, "FTP情報", 600, 2100, 8400, 3200},
    {"lblCAP(10)", CtlKind::Label, "ｻｰﾊﾞｰ", 200, 420, 2000, 420, "fraFTP"},
    {"txtDATA(10)", CtlKind::Text, "", 2350, 400, 5600, 420, "fraFTP"},
    {"lblCAP(11)", CtlKind::Label, "ｻｰﾊﾞｰﾃﾞｨﾚｸﾄﾘ", 200, 1080, 2000, 420, "fraFTP"},
    {"txtDATA(11)", CtlKind::Text, "", 2350, 1060, 5600, 420, "fraFTP"},
    {"lblCAP(12)", CtlKind::Label, "FTPﾕｰｻﾞｰ", 200, 1740, 2000, 420, "fraFTP"},
    {"txtDATA(12)", CtlKind::Text, "", 2350, 1720, 5600, 420, "fraFTP"},
    {"lblCAP(13)", CtlKind::Label, "ﾊﾟｽﾜｰﾄﾞ", 200, 2400, 2000, 420, "fraFTP"},
    {"txtDATA(13)", CtlKind::Password, "", 2350, 2380, 5600, 420, "fraFTP"},
    {"Command1(1)", CtlKind::Button, "登録", 7200, 6100, 1800, 600},
    {"Command1(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 600, 6100, 1800, 600},
};

} // namespace

fdlSetLocalCtrl::fdlSetLocalCtrl(QWidget *parent) : Form(QStringLiteral("fdlSetLocalCtrl"), 9600, 7200, parent)
{
    setWindowTitle(QStringLiteral("基本設定"));
    buildControls(kControls, int(std::size(kControls)));
    Option1 = array<QRadioButton>(QStringLiteral("Option1"), 2);
    txtDATA = array<QLineEdit>(QStringLiteral("txtDATA"), 3);
    Check1 = ctl<QCheckBox>(QStringLiteral("Check1"));
    setFieldLimit(txtDATA[0], 8, ImeMode::Disabled);
    setFieldLimit(txtDATA[1], 8, ImeMode::Disabled);
    setFieldLimit(txtDATA[2], 250, ImeMode::Off);

    const char *const numberMessages[] = {"生産者ｺｰﾄﾞには数値を指定してください。", "販売店ｺｰﾄﾞには数値を指定してください。"};
    for (int i = 0; i < 2; ++i) {
        QLineEdit *field = txtDATA[i];
        const QString message = QString::fromUtf8(numberMessages[i]);
        entry().setLeaveCheck(field, [field, message] {
            if (field->text().isEmpty() || IsNumeric(Value(field->text())))
                return true;
            ShowMsg(message, Msg::Exclamation);
            return false;
        });
    }
    onClick(
        ctl<QPushButton>(QStringLiteral("Command1(0)")),
        [this] { closeOrEndProgram(this); },
        false);
    onClick(ctl<QPushButton>(QStringLiteral("Command1(1)")), [this] {
        if (SaveData())
            done(QDialog::Accepted);
    });
    EntryScreen::askBeforeClose(this, ctl<QPushButton>(QStringLiteral("Command1(1)")));
    onClick(ctl<QPushButton>(QStringLiteral("Command1(2)")), [this] {
        const QString dir = OpenDir(this, QStringLiteral("ﾊﾞｯｸｱｯﾌﾟﾌｫﾙﾀﾞを指定してください。"));
        if (!dir.isEmpty()) {
            showFieldText(txtDATA[2], dir);
            entry().setEdited(true);
            txtDATA[2]->setFocus();
        }
    });
}

void fdlSetLocalCtrl::onLoad()
{
    SetDefSize();
    applyWindowState();
    LoadData();
}

void fdlSetLocalCtrl::LoadData()
{
    const LocalSettings::Values v = LocalSettings::load();
    Option1[0]->setChecked(v.useType == 1);
    Option1[1]->setChecked(v.useType == 2);
    showFieldText(txtDATA[0], v.farmer);
    showFieldText(txtDATA[1], v.shop);
    showFieldText(txtDATA[2], v.backupDir);
    Check1->setChecked(v.maximised);
}

bool fdlSetLocalCtrl::SaveData()
{
    LocalSettings::Values v;
    v.useType = Option1[0]->isChecked() ? 1 : (Option1[1]->isChecked() ? 2 : 0);
    if (v.useType == 0) {
        // The program can't start without a way of use.
        ShowMsg(QStringLiteral("利用方法（シングルまたはマルチ）を選択してください。"), Msg::Exclamation);
        Option1[0]->setFocus();
        return false;
    }
    v.farmer = txtDATA[0]->text();
    v.shop = txtDATA[1]->text();
    v.backupDir = txtDATA[2]->text();
    v.maximised = Check1->isChecked();
    LocalSettings::save(v);
    return true;
}

fdlSetMstCtrl::fdlSetMstCtrl(QWidget *parent) : Form(QStringLiteral("fdlSetMstCtrl"), 9600, 7200, parent)
{
    setWindowTitle(QStringLiteral("共通設定"));
    buildControls(kMstControls, int(std::size(kMstControls)));
    for (int i = 10; i <= 13; ++i)
        setFieldLimit(ctl<QLineEdit>(QStringLiteral("txtDATA(%1)").arg(i)), 50, ImeMode::Disabled);
    onClick(
        ctl<QPushButton>(QStringLiteral("Command1(0)")),
        [this] { closeOrEndProgram(this); },
        false);
    // "登録" stores nothing: these settings live per shop in the shop master.
    onClick(ctl<QPushButton>(QStringLiteral("Command1(1)")), [] {});
}

void fdlSetMstCtrl::onLoad()
{
    SetDefSize();
    applyWindowState();
}
