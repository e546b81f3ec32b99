#include "screens/books/fdlPrintAccRep.h"

#include "rules/books/TrialBalance.h"
#include "rules/print/modPrinter.h"
#include "screens/print/fdlPreview.h"
#include "ui/Entry.h"

#include <QComboBox>
#include <QDate>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "試算表印刷", 300, 150, 4800, 540},
    {"fraCOND", CtlKind::Frame, "印刷条件", 600, 1000, 8400, 2100},
    {"lblCAP(0)", CtlKind::Label, "年月", 200, 520, 1200, 420, "fraCOND"},
    {"txtCOND(0)", CtlKind::Text, "", 1550, 520, 1300, 420, "fraCOND"},
    {"lblCAP(1)", CtlKind::Label, "～", 2850, 520, 500, 420, "fraCOND"},
    {"txtCOND(1)", CtlKind::Text, "", 3350, 520, 1300, 420, "fraCOND"},
    {"lblCAP(2)", CtlKind::Label, "生産者", 200, 1250, 1200, 420, "fraCOND"},
    {"cmbCOND", CtlKind::Combo, "", 1550, 1250, 4000, 420, "fraCOND"},
    {"Command1(1)", CtlKind::Button, "印刷", 7200, 6100, 1800, 600},
    {"Command1(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 600, 6100, 1800, 600},
};

} // namespace

fdlPrintAccRep::fdlPrintAccRep(QWidget *parent) : Form(QStringLiteral("fdlPrintAccRep"), 9600, 7200, parent)
{
    setWindowTitle(QStringLiteral("試算表印刷"));
    buildControls(kControls, int(std::size(kControls)));
    txtCOND = array<QLineEdit>(QStringLiteral("txtCOND"), 2);
    cmbCOND = ctl<QComboBox>(QStringLiteral("cmbCOND"));
    Command1 = array<QPushButton>(QStringLiteral("Command1"), 2);
    ctl<QLabel>(QStringLiteral("lblCAP(1)"))->setAlignment(Qt::AlignCenter);
    for (QLineEdit *f : txtCOND) {
        setFieldLimit(f, 7, ImeMode::Disabled);
        entry().registerYmField(f);
    }
    onClick(Command1[0], [this] { closeOrEndProgram(this); }, false);
    // Draws whatever the last price tag run left, on one page.
    onClick(Command1[1], [] { openPreview(kPriceTagReport, 1); });
}

void fdlPrintAccRep::onLoad()
{
    SetDefSize();
    applyWindowState();
}

void fdlPrintAccRep::onResize()
{
    SetSize();
    InitForm();
}

void fdlPrintAccRep::InitForm()
{
    setWindowTitle(QStringLiteral("試算表印刷"));
    ctl<QLabel>(QStringLiteral("lblTITLE"))->setText(QStringLiteral("試算表印刷"));
    const QStringList months = accRepMonths(QDate::currentDate());
    txtCOND[0]->setText(months[0]);
    txtCOND[1]->setText(months[1]);
}
