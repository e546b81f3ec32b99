#include "screens/print/fdlPrintTraceRep.h"

#include "base/Globals.h"
#include "base/Msg.h"
#include "rules/print/TraceReport.h"
#include "screens/print/fdlPreview.h"
#include "ui/Entry.h"

#include <QComboBox>
#include <QLineEdit>
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
    onClick(Command1[1], [this] { printReport(); });
}

void fdlPrintTraceRep::printReport()
{
    const int year = chosenYear();
    if (year == 0)
        return;
    const Value plantId = currentItemData(cmbCOND[1]);
    if (!hasValue(plantId) || plantId.toDouble() == 0) {
        ShowMsg(QStringLiteral("作付を選択してください。"), Msg::Exclamation);
        cmbCOND[1]->setFocus(Qt::OtherFocusReason);
        return;
    }
    int pages = 0;
    {
        WaitCursor wait;
        pages = TraceReport::prepare(year, plantId, gFMR_ID);
    }
    if (pages == 0) {
        ShowMsg(QStringLiteral("%1年の作付に、選択した作付が見つかりません。").arg(year), Msg::Exclamation);
        cmbCOND[1]->setFocus(Qt::OtherFocusReason);
        return;
    }
    openPreview(kTraceReport, pages);
}
