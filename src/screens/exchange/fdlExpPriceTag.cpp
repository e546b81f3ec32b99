#include "screens/exchange/fdlExpPriceTag.h"

#include "base/Globals.h"
#include "base/Msg.h"
#include "rules/exchange/PriceTagCsv.h"
#include "rules/masters/MasterLists.h"
#include "ui/Progress.h"
#include "ui/Entry.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "値札ﾃﾞｰﾀ書出", 300, 150, 4800, 540},
    {"fraCOND", CtlKind::Frame, "書出条件", 600, 900, 8400, 3000},
    {"lblCAP(0)", CtlKind::Label, "出荷日", 200, 450, 1200, 420, "fraCOND"},
    {"txtCOND(0)", CtlKind::Text, "", 1550, 450, 1600, 420, "fraCOND"},
    {"lblCAP(1)", CtlKind::Label, "～", 3150, 450, 500, 420, "fraCOND"},
    {"txtCOND(1)", CtlKind::Text, "", 3650, 450, 1600, 420, "fraCOND"},
    {"lblCAP(2)", CtlKind::Label, "生産者", 200, 1150, 1200, 420, "fraCOND"},
    {"cmbCOND", CtlKind::Combo, "", 1550, 1150, 4000, 420, "fraCOND"},
    {"lblCAP(3)", CtlKind::Label, "出力先", 200, 1850, 1200, 420, "fraCOND"},
    {"txtCOND(2)", CtlKind::Text, "", 1550, 1850, 5300, 420, "fraCOND"},
    {"Command1(2)", CtlKind::Button, "参照...", 6950, 1820, 1200, 480, "fraCOND"},
    {"chkUTF8", CtlKind::Check, "UTF-8（BOM付き）で書き出す", 1550, 2400, 5300, 420, "fraCOND"},
    {"MonthView1", CtlKind::Calendar, "", 0, 0, 3900, 2700},
    {"Command1(1)", CtlKind::Button, "書出", 7200, 6100, 1800, 600},
    {"Command1(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 600, 6100, 1800, 600},
};

} // namespace

fdlExpPriceTag::fdlExpPriceTag(QWidget *parent) : Form(QStringLiteral("fdlExpPriceTag"), 9600, 7200, parent)
{
    setWindowTitle(QStringLiteral("値札ﾃﾞｰﾀ書出"));
    buildControls(kControls, int(std::size(kControls)));
    txtCOND = array<QLineEdit>(QStringLiteral("txtCOND"), 3);
    cmbCOND = ctl<QComboBox>(QStringLiteral("cmbCOND"));
    Command1 = array<QPushButton>(QStringLiteral("Command1"), 3);
    chkUTF8 = ctl<QCheckBox>(QStringLiteral("chkUTF8"));
    ctl<QLabel>(QStringLiteral("lblCAP(1)"))->setAlignment(Qt::AlignCenter);
    for (int i = 0; i < 2; ++i) {
        setFieldLimit(txtCOND[i], 10, ImeMode::Disabled);
        entry().registerDateField(txtCOND[i], i);
    }
    setFieldLimit(txtCOND[2], 255, ImeMode::Off);
    // The folder is remembered as soon as it is left.
    entry().setLeaveCheck(txtCOND[2], [this] {
        saveFolder();
        return true;
    });
    // The encoding is kept as soon as it is chosen, like the folder.
    connect(chkUTF8, &QCheckBox::toggled, this, [this](bool on) {
        if (mReady)
            trap([on] { PriceTagCsv::saveEncoding(on ? PriceTagCsv::Encoding::Utf8Bom : PriceTagCsv::Encoding::CodePage); });
    });
    onClick(Command1[0], [this] { closeOrEndProgram(this); }, false);
    onClick(Command1[1], [this] {
        const int n = ExpData();
        if (n <= 0)
            return;
        PriceTagCsv::saveLastExport(txtCOND[1]->text());
        ShowMsg(QString::number(n) + QStringLiteral("件のラベルデータを書き出しました。"), Msg::Information);
        close();
    });
    onClick(Command1[2], [this] {
        const QString dir = OpenDir(this, QStringLiteral("書出先ﾌｫﾙﾀﾞを指定してください。"));
        if (dir.isEmpty())
            return;
        txtCOND[2]->setText(QDir::toNativeSeparators(dir));
        saveFolder();
        txtCOND[2]->setFocus(Qt::OtherFocusReason);
    }, false);
}

void fdlExpPriceTag::onLoad()
{
    SetDefSize();
    applyWindowState();
    InitForm();
}

void fdlExpPriceTag::onResize() { SetSize(); }

void fdlExpPriceTag::InitForm()
{
    const PriceTagCsv::Period p = PriceTagCsv::openingPeriod(DateUtil::today(), gFMR_ID, gSHOP_ID);
    txtCOND[0]->setText(p.first.toString(QStringLiteral("yyyy/MM/dd")));
    txtCOND[1]->setText(p.last.toString(QStringLiteral("yyyy/MM/dd")));
    txtCOND[2]->setText(PriceTagCsv::folder());
    // Whose shipments are written: the farmer being worked on, shown only.
    fillChoices(cmbCOND, MasterLists::farmers(), false);
    selectItemData(cmbCOND, gFMR_ID);
    setComboLocked(cmbCOND, true);
    cmbCOND->setFocusPolicy(Qt::NoFocus);
    chkUTF8->setChecked(PriceTagCsv::encoding() == PriceTagCsv::Encoding::Utf8Bom);
    mReady = true;
}

void fdlExpPriceTag::saveFolder() { PriceTagCsv::saveFolder(txtCOND[2]->text()); }

int fdlExpPriceTag::GetData(const QDateTime &first, const QDateTime &last)
{
    return PriceTagCsv::loadPeriodRows(first, last, gFMR_ID, gSHOP_ID);
}

int fdlExpPriceTag::ExpData()
{
    ProgressBox box(this, QStringLiteral("値札データ書出"));
    const PriceTagCsv::Outcome out = PriceTagCsv::exportRows(
        {txtCOND[0]->text(), txtCOND[1]->text(), txtCOND[2]->text(), gFMR_ID, gSHOP_ID,
         chkUTF8->isChecked() ? PriceTagCsv::Encoding::Utf8Bom : PriceTagCsv::Encoding::CodePage, box.callback()});
    if (!out.refusal.isEmpty()) {
        ShowMsg(out.refusal, Msg::Exclamation);
        if (out.field >= 0)
            txtCOND[out.field]->setFocus(Qt::OtherFocusReason);
    }
    return out.written;
}
