#include "screens/print/fdlSetPrintCopy.h"

#include "ui/Entry.h"
#include "base/Globals.h"
#include "rules/print/modPrinter.h"
#include "screens/print/Printer.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace {

const CtlSpec kControls[] = {
    {"lblCAP(3)", CtlKind::Label, "ﾍﾟｰｼﾞ数", 240, 240, 1300, 360},
    {"txtPAGES", CtlKind::Text, "", 1660, 240, 800, 360},
    {"Option1(0)", CtlKind::Option, "全ﾍﾟｰｼﾞ印刷", 360, 780, 2600, 360},
    {"Option1(1)", CtlKind::Option, "ﾍﾟｰｼﾞ選択", 360, 1220, 1800, 360},
    {"lblCAP(0)", CtlKind::Label, "ﾍﾟｰｼﾞ", 2160, 1220, 800, 360},
    {"txtDATA(0)", CtlKind::Text, "", 3000, 1220, 700, 360},
    {"lblCAP(1)", CtlKind::Label, "～", 3700, 1220, 400, 360},
    {"txtDATA(1)", CtlKind::Text, "", 4100, 1220, 700, 360},
    {"lblCAP(2)", CtlKind::Label, "部数", 240, 1800, 1300, 360},
    {"txtDATA(2)", CtlKind::Text, "", 1660, 1800, 800, 360},
    {"Command1(1)", CtlKind::Button, "印刷", 4060, 2640, 1400, 480},
    {"Command1(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 240, 2640, 1400, 480},
};

} // namespace

fdlSetPrintCopy::fdlSetPrintCopy(QWidget *parent) : Form(QStringLiteral("fdlSetPrintCopy"), 5700, 3400, parent)
{
    setWindowTitle(QStringLiteral("印刷ページ・部数設定"));
    buildControls(kControls, int(std::size(kControls)));
    Option1 = array<QRadioButton>(QStringLiteral("Option1"), 2);
    txtDATA = array<QLineEdit>(QStringLiteral("txtDATA"), 3);
    txtPAGES = ctl<QLineEdit>(QStringLiteral("txtPAGES"));
    Command1 = array<QPushButton>(QStringLiteral("Command1"), 2);
    for (QLineEdit *t : txtDATA) {
        setFieldLimit(t, 4, ImeMode::Disabled);
        t->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    }
    txtPAGES->setReadOnly(true);
    txtPAGES->setFocusPolicy(Qt::NoFocus);
    txtPAGES->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    ctl<QLabel>(QStringLiteral("lblCAP(1)"))->setAlignment(Qt::AlignCenter);

    onClick(Option1[0], [this] { setRangeEnabled(false); });
    onClick(Option1[1], [this] { setRangeEnabled(true); });
    onClick(Command1[0], [this] { close(); }, false);
    onClick(Command1[1], [this] {
        const Value copies(txtDATA[2]->text());
        if (IsNumeric(copies) && copies.toDouble() >= 1)
            Printer().setCopies(copies.toLong());
        // The page range goes nowhere: pages are printed one at a time from
        // the preview, and the copies go back to one.
        Printer().setCopies(1);
    });
}

void fdlSetPrintCopy::onLoad()
{
    txtPAGES->setText(QString::number(gREP_PAGES));
    txtDATA[0]->setText(QStringLiteral("1"));
    txtDATA[1]->setText(QString::number(gREP_PAGES));
    txtDATA[2]->setText(QStringLiteral("1"));
    Option1[0]->setChecked(true);
    setRangeEnabled(false);
}

void fdlSetPrintCopy::setRangeEnabled(bool on)
{
    txtDATA[0]->setEnabled(on);
    txtDATA[1]->setEnabled(on);
    ctl<QLabel>(QStringLiteral("lblCAP(0)"))->setEnabled(on);
    ctl<QLabel>(QStringLiteral("lblCAP(1)"))->setEnabled(on);
}
