#include "screens/print/fdlSetMgn.h"

#include "ui/Entry.h"
#include "base/Globals.h"
#include "base/Msg.h"
#include "rules/print/modPrinter.h"
#include "screens/print/Printer.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

const CtlSpec kControls[] = {
    {"lblCAP(0)", CtlKind::Label, "上余白", 240, 300, 1200, 360},
    {"Text1(0)", CtlKind::Text, "", 1560, 300, 900, 360},
    {"lblCAP(1)", CtlKind::Label, "cm", 2520, 300, 500, 360},
    {"lblCAP(2)", CtlKind::Label, "左余白", 240, 780, 1200, 360},
    {"Text1(1)", CtlKind::Text, "", 1560, 780, 900, 360},
    {"lblCAP(3)", CtlKind::Label, "cm", 2520, 780, 500, 360},
    {"lblCAP(4)", CtlKind::Label, "ﾌﾟﾘﾝﾀ", 240, 1260, 1200, 360},
    {"cmbDATA(0)", CtlKind::Combo, "", 1560, 1260, 3900, 360},
    {"lblCAP(5)", CtlKind::Label, "給紙", 240, 1740, 1200, 360},
    {"cmbDATA(1)", CtlKind::Combo, "", 1560, 1740, 2000, 360},
    {"Command1(1)", CtlKind::Button, "設定", 4060, 2640, 1400, 480},
    {"Command1(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 240, 2640, 1400, 480},
};

// The paper bins: the code is what S_REP keeps and the printer is given.
const struct {
    const char *name;
    int code;
} kBins[] = {{"既定", 7}, {"トレイ", 1}, {"手差し", 6}};

} // namespace

fdlSetMgn::fdlSetMgn(QWidget *parent) : Form(QStringLiteral("fdlSetMgn"), 5700, 3400, parent)
{
    setWindowTitle(QStringLiteral("余白・給紙設定"));
    buildControls(kControls, int(std::size(kControls)));
    Text1 = array<QLineEdit>(QStringLiteral("Text1"), 2);
    cmbDATA = array<QComboBox>(QStringLiteral("cmbDATA"), 2);
    Command1 = array<QPushButton>(QStringLiteral("Command1"), 2);
    for (QLineEdit *t : Text1) {
        setFieldLimit(t, 5, ImeMode::Disabled);
        t->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    }
    for (int i : {1, 3})
        ctl<QLabel>(QStringLiteral("lblCAP(%1)").arg(i))->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);

    onClick(Command1[0], [this] { close(); }, false);
    onClick(Command1[1], [this] {
        if (!ChkData())
            return;
        if (SaveData())
            close();
        else
            ShowMsg(QStringLiteral("データの登録に失敗しました。"), Msg::Exclamation);
    });
}

void fdlSetMgn::onLoad()
{
    SetCmb();
    LoadData();
}

void fdlSetMgn::SetCmb()
{
    cmbDATA[0]->clear();
    for (const QString &name : PrinterTarget::installedPrinters())
        cmbDATA[0]->addItem(name);
    cmbDATA[0]->setCurrentIndex(-1);
    cmbDATA[1]->clear();
    addEmptyItem(cmbDATA[1]);
    for (const auto &b : kBins)
        addItem(cmbDATA[1], QString::fromUtf8(b.name), Value(b.code));
    cmbDATA[1]->setCurrentIndex(-1);
}

void fdlSetMgn::LoadData()
{
    const ReportSettings s = reportSettings(gREP_ID);
    if (!s.stored) {
        // A report never set on this computer: 1.5 cm, the printer of the day.
        Text1[0]->setText(QStringLiteral("1.5"));
        Text1[1]->setText(QStringLiteral("1.5"));
        return;
    }
    showFieldText(Text1[0], twipsToCmText(s.top));
    showFieldText(Text1[1], twipsToCmText(s.left));
    cmbDATA[0]->setCurrentIndex(s.printer.isEmpty() ? -1 : cmbDATA[0]->findText(s.printer, Qt::MatchExactly));
    selectItemData(cmbDATA[1], s.paperBin);
}

bool fdlSetMgn::ChkData() { return true; }

bool fdlSetMgn::SaveData()
{
    ReportSettings s;
    s.top = cmToTwips(Text1[0]->text());
    s.left = cmToTwips(Text1[1]->text());
    s.printer = cmbDATA[0]->currentText();
    s.paperBin = currentItemData(cmbDATA[1]);
    try {
        saveReportSettings(gREP_ID, s);
        return true;
    } catch (const std::exception &) {
        return false;
    }
}
