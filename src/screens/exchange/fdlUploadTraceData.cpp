#include "screens/exchange/fdlUploadTraceData.h"

#include "base/Globals.h"
#include "base/Msg.h"
#include "rules/exchange/TraceUpload.h"
#include "ui/Entry.h"
#include "ui/Progress.h"

#include <QComboBox>
#include <QPushButton>

namespace {

const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "ﾃﾞｰﾀｱｯﾌﾟﾛｰﾄﾞ", 300, 150, 4800, 540},
    {"fraCOND", CtlKind::Frame, "ｱｯﾌﾟﾛｰﾄﾞ条件", 600, 1000, 8400, 2700},
    {"lblCAP(0)", CtlKind::Label, "年", 200, 500, 1200, 420, "fraCOND"},
    {"txtCOND(0)", CtlKind::Text, "", 1550, 500, 1000, 420, "fraCOND"},
    {"lblCAP(1)", CtlKind::Label, "生産者", 200, 1150, 1200, 420, "fraCOND"},
    {"cmbCOND(0)", CtlKind::Combo, "", 1550, 1150, 4000, 420, "fraCOND"},
    {"lblCAP(2)", CtlKind::Label, "作物", 200, 1800, 1200, 420, "fraCOND"},
    {"cmbCOND(1)", CtlKind::Combo, "", 1550, 1800, 4000, 420, "fraCOND"},
    {"Command1(1)", CtlKind::Button, "ｱｯﾌﾟﾛｰﾄﾞ", 7200, 6100, 1800, 600},
    {"Command1(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 600, 6100, 1800, 600},
};

} // namespace

fdlUploadTraceData::fdlUploadTraceData(QWidget *parent)
    : TraceDialog(QStringLiteral("fdlUploadTraceData"), QStringLiteral("ﾃﾞｰﾀｱｯﾌﾟﾛｰﾄﾞ"), kControls,
                  int(std::size(kControls)), parent)
{
    onClick(Command1[1], [this] { upload(); });
}

void fdlUploadTraceData::upload()
{
    const int year = chosenYear();
    if (year == 0)
        return;
    // No planting chosen: every planting of the year.
    const Value plantId = currentItemData(cmbCOND[1]);
    TraceUpload::Result r;
    {
        ProgressBox box(this, QStringLiteral("ｱｯﾌﾟﾛｰﾄﾞ"));
        WaitCursor wait;
        r = TraceUpload::run(year, plantId, hasValue(gSHOP_ID) ? gSHOP_ID : Value(1), box.callback());
    }
    ShowMsg(r.text, r.complete ? Msg::Information : Msg::Exclamation);
}
