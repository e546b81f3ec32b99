#include "screens/print/fdlPrintTraceRep.h"

#include "rules/print/modPrinter.h"
#include "screens/print/fdlPreview.h"

#include <QPushButton>

namespace {

const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "生産履歴印刷", 300, 150, 4800, 540},
    {"fraCOND", CtlKind::Frame, "印刷条件", 600, 1000, 8400, 2700},
    {"lblCAP(0)", CtlKind::Label, "年", 200, 520, 1200, 420, "fraCOND"},
    {"txtCOND(0)", CtlKind::Text, "", 1550, 520, 1000, 420, "fraCOND"},
    {"lblCAP(1)", CtlKind::Label, "生産者", 200, 1250, 1200, 420, "fraCOND"},
    {"cmbCOND(0)", CtlKind::Combo, "", 1550, 1250, 4000, 420, "fraCOND"},
    {"lblCAP(2)", CtlKind::Label, "作付", 200, 1980, 1200, 420, "fraCOND"},
    {"cmbCOND(1)", CtlKind::Combo, "", 1550, 1980, 6400, 420, "fraCOND"},
    {"Command1(1)", CtlKind::Button, "印刷", 7200, 6100, 1800, 600},
    {"Command1(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 600, 6100, 1800, 600},
};

} // namespace

fdlPrintTraceRep::fdlPrintTraceRep(QWidget *parent)
    : TraceDialog(QStringLiteral("fdlPrintTraceRep"), QStringLiteral("生産履歴印刷"), kControls,
                  int(std::size(kControls)), parent)
{
    // Draws whatever the last price tag run left, on one page.
    onClick(Command1[1], [] { openPreview(kPriceTagReport, 1); });
}
