#include "screens/masters/fdlSetLocalCtrl.h"

#include "ui/Entry.h"
#include "base/Msg.h"
#include "store/Database.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QMessageBox>
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
    {"Command1(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 600, 6100, 1800, 600},
    {"Command1(1)", CtlKind::Button, "登録", 7200, 6100, 1800, 600},
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
    {"Command1(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 600, 6100, 1800, 600},
    {"Command1(1)", CtlKind::Button, "登録", 7200, 6100, 1800, 600},
};

// key, CTRL_TYPE given when the row is made
const struct {
    const char *key;
    int type;
} kKeys[] = {{"USE_TYPE", 4}, {"DEF_FMR_ID", 4}, {"DEF_SHOP_ID", 4}, {"BACK_DIR", 10}, {"WINDOW_STA", 1}};

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
            close();
    });
    onClick(ctl<QPushButton>(QStringLiteral("Command1(2)")), [this] {
        const QString dir = OpenDir(this, QStringLiteral("ﾊﾞｯｸｱｯﾌﾟﾌｫﾙﾀﾞを指定してください。"));
        if (!dir.isEmpty()) {
            txtDATA[2]->setText(dir);
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
    RecordsetPtr rs = gINI->GetFwdOnlyRst(QStringLiteral("SELECT S_CTRL.* FROM S_CTRL"));
    for (; !rs->eof(); rs->MoveNext()) {
        const QString key = Nz(rs->Fields(QStringLiteral("CTRL_CD")), Value(QString())).toText();
        const Value v = rs->Fields(QStringLiteral("CTRL_VALUE"));
        const QString text = v.isNull() ? QString() : v.toText();
        if (key == QLatin1String("USE_TYPE")) {
            const int use = (v.isNull() || !IsNumeric(v)) ? 0 : Value(text).toLong();
            Option1[0]->setChecked(use == 1);
            Option1[1]->setChecked(use == 2);
        } else if (key == QLatin1String("DEF_FMR_ID")) {
            txtDATA[0]->setText(text);
        } else if (key == QLatin1String("DEF_SHOP_ID")) {
            txtDATA[1]->setText(text);
        } else if (key == QLatin1String("BACK_DIR")) {
            txtDATA[2]->setText(text);
        } else if (key == QLatin1String("WINDOW_STA")) {
            Check1->setChecked(!v.isNull() && Value(text).toBool());
        }
    }
}

bool fdlSetLocalCtrl::SaveData()
{
    auto numberText = [](const QString &t) {
        return t.isEmpty() ? Value::null() : Value(Value(Value(t).toDouble()).toText());
    };
    const Value values[] = {
        Option1[0]->isChecked() ? Value(QStringLiteral("1"))
                                : (Option1[1]->isChecked() ? Value(QStringLiteral("2")) : Value::null()),
        numberText(txtDATA[0]->text()),
        numberText(txtDATA[1]->text()),
        txtDATA[2]->text().isEmpty() ? Value::null() : Value(txtDATA[2]->text()),
        Value(Value(Check1->isChecked()).toText()),
    };
    RecordsetPtr rs = gINI->GetDynamicRst(QStringLiteral("SELECT S_CTRL.* FROM S_CTRL"));
    for (int i = 0; i < int(std::size(kKeys)); ++i) {
        const QString key = QString::fromLatin1(kKeys[i].key);
        if (rs->RecordCount() > 0) {
            rs->MoveFirst();
            rs->Find(QStringLiteral("CTRL_CD='%1'").arg(key));
        }
        if (rs->RecordCount() == 0 || rs->eof()) {
            rs->AddNew();
            rs->SetField(QStringLiteral("CTRL_CD"), Value(key));
            rs->SetField(QStringLiteral("CTRL_TYPE"), Value(kKeys[i].type));
        }
        rs->SetField(QStringLiteral("CTRL_VALUE"), values[i]);
        rs->Update();
    }
    rs->Close();
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
