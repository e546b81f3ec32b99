#include "screens/masters/fdlSetConCtrl.h"

#include "base/Msg.h"
#include "rules/masters/Settings.h"
#include "store/Database.h"
#include "ui/Entry.h"
#include "ui/Skeletons.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QThread>

namespace {

const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "接続設定", 300, 150, 4800, 540},
    {"Shape1", CtlKind::Shape, "", 300, 720, 10200, 30},
    {"fraDB", CtlKind::Frame, "ﾃﾞｰﾀﾍﾞｰｽ情報", 300, 900, 5000, 4300},
    {"Label1(0)", CtlKind::Label, "種類", 120, 420, 1500, 400, "fraDB"},
    {"cmbTYPE(5)", CtlKind::Combo, "", 1750, 400, 3000, 420, "fraDB"},
    {"Label1(1)", CtlKind::Label, "ﾃﾞｰﾀｿｰｽ名", 120, 1060, 1500, 400, "fraDB"},
    {"Text1(1)", CtlKind::Text, "", 1750, 1040, 3000, 420, "fraDB"},
    {"Label1(2)", CtlKind::Label, "名前", 120, 1700, 1500, 400, "fraDB"},
    {"Text1(2)", CtlKind::Text, "", 1750, 1680, 3000, 420, "fraDB"},
    {"Label1(3)", CtlKind::Label, "ﾕｰｻﾞｰ", 120, 2340, 1500, 400, "fraDB"},
    {"Text1(3)", CtlKind::Text, "", 1750, 2320, 3000, 420, "fraDB"},
    {"Label1(4)", CtlKind::Label, "ﾊﾟｽﾜｰﾄﾞ", 120, 2980, 1500, 400, "fraDB"},
    {"Text1(4)", CtlKind::Password, "", 1750, 2960, 3000, 420, "fraDB"},
    {"Label1(5)", CtlKind::Label, "MDBﾊﾟｽﾜｰﾄﾞ", 120, 3620, 1500, 400, "fraDB"},
    {"Text1(5)", CtlKind::Password, "", 1750, 3600, 3000, 420, "fraDB"},
    {"fraMST", CtlKind::Frame, "ﾏｽﾀDB情報", 5500, 900, 5000, 4300},
    {"Label1(6)", CtlKind::Label, "種類", 120, 420, 1500, 400, "fraMST"},
    {"cmbTYPE(6)", CtlKind::Combo, "", 1750, 400, 3000, 420, "fraMST"},
    {"Label1(7)", CtlKind::Label, "ﾃﾞｰﾀｿｰｽ名", 120, 1060, 1500, 400, "fraMST"},
    {"Text1(7)", CtlKind::Text, "", 1750, 1040, 3000, 420, "fraMST"},
    {"Label1(8)", CtlKind::Label, "名前", 120, 1700, 1500, 400, "fraMST"},
    {"Text1(8)", CtlKind::Text, "", 1750, 1680, 3000, 420, "fraMST"},
    {"Label1(9)", CtlKind::Label, "ﾕｰｻﾞｰ", 120, 2340, 1500, 400, "fraMST"},
    {"Text1(9)", CtlKind::Text, "", 1750, 2320, 3000, 420, "fraMST"},
    {"Label1(10)", CtlKind::Label, "ﾊﾟｽﾜｰﾄﾞ", 120, 2980, 1500, 400, "fraMST"},
    {"Text1(10)", CtlKind::Password, "", 1750, 2960, 3000, 420, "fraMST"},
    {"Label1(11)", CtlKind::Label, "MDBﾊﾟｽﾜｰﾄﾞ", 120, 3620, 1500, 400, "fraMST"},
    {"Text1(11)", CtlKind::Password, "", 1750, 3600, 3000, 420, "fraMST"},
    {"Command1(1)", CtlKind::Button, "登録", 8700, 5500, 1800, 600},
    {"Command1(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 300, 5500, 1800, 600},
};

// control, key
const char *const kTags[][2] = {
    {"cmbTYPE(5)", "DB_TYPE"},   {"Text1(1)", "DB_DSN"},   {"Text1(2)", "DB_NAME"},  {"Text1(3)", "DB_USER"},
    {"Text1(4)", "DB_PSWD"},     {"Text1(5)", "DB_DBPW"},  {"cmbTYPE(6)", "MST_TYPE"}, {"Text1(7)", "MST_DSN"},
    {"Text1(8)", "MST_NAME"},    {"Text1(9)", "MST_USER"}, {"Text1(10)", "MST_PSWD"}, {"Text1(11)", "MST_DBPW"},
};

} // namespace

fdlSetConCtrl::fdlSetConCtrl(QWidget *parent) : Form(QStringLiteral("fdlSetConCtrl"), 10800, 6400, parent)
{
    setWindowTitle(QStringLiteral("接続設定"));
    buildControls(kControls, int(std::size(kControls)));
    scaleRules().noFont << QStringLiteral("Sha");
    for (const auto &t : kTags) {
        QWidget *w = control(QString::fromLatin1(t[0]));
        w->setProperty("tag", QString::fromLatin1(t[1]));
        mTagged << w;
    }
    for (int i : {5, 6}) {
        auto *c = ctl<QComboBox>(QStringLiteral("cmbTYPE(%1)").arg(i));
        c->addItems({QString(), QStringLiteral("MYSQL"), QStringLiteral("MDB")});
    }
    for (int i : {1, 2, 3, 4, 5, 7, 8, 9, 10, 11})
        setFieldLimit(ctl<QLineEdit>(QStringLiteral("Text1(%1)").arg(i)), 50, ImeMode::Disabled);

    onClick(
        ctl<QPushButton>(QStringLiteral("Command1(0)")),
        [this] { closeOrEndProgram(this); },
        false);
    onClick(ctl<QPushButton>(QStringLiteral("Command1(1)")), [this] { register_(); });
    EntryScreen::askBeforeClose(this, ctl<QPushButton>(QStringLiteral("Command1(1)")));
}

void fdlSetConCtrl::onLoad()
{
    SetDefSize();
    applyWindowState();
    LoadData();
}

QStringList fdlSetConCtrl::keys() const
{
    QStringList out;
    for (QWidget *w : mTagged)
        out << w->property("tag").toString();
    return out;
}

void fdlSetConCtrl::LoadData()
{
    const QStringList texts = ConnectionSettings::load(keys());
    for (int i = 0; i < mTagged.size(); ++i) {
        QWidget *w = mTagged[i];
        const QString &text = texts[i];
        if (auto *e = qobject_cast<QLineEdit *>(w)) {
            showFieldText(e, text);
        } else if (auto *c = qobject_cast<QComboBox *>(w)) {
            // A list takes the value as its index; a list of another layout
            // ("Combo2") would take it as text.
            if (c->objectName().startsWith(QLatin1String("Combo2")))
                c->setCurrentText(text);
            else
                c->setCurrentIndex(text.isEmpty() ? 0 : Value(text).toLong());
        }
    }
}

bool fdlSetConCtrl::SaveData()
{
    QVector<QPair<QString, Value>> values;
    for (QWidget *w : mTagged) {
        Value value;
        if (auto *e = qobject_cast<QLineEdit *>(w))
            value = Value(e->text());
        else if (auto *c = qobject_cast<QComboBox *>(w))
            value = Value(c->currentIndex());
        values.append({w->property("tag").toString(), value});
    }
    return trap([&] { ConnectionSettings::save(values); });
}

void fdlSetConCtrl::register_()
{
    ChkData();
    if (!SaveData()) {
        ShowMsg(QStringLiteral("データの登録に失敗しました。"), Msg::Exclamation);
        return;
    }
    QThread::msleep(100);
    // Both connections are made anew with the new settings.
    OpenDb();
    OpenMst();
    done(QDialog::Accepted);
}
