#include "screens/print/fdlPrintTraceRep.h"

#include "ui/Entry.h"
#include "base/Globals.h"
#include "store/SqlText.h"
#include "screens/print/fdlPreview.h"
#include "rules/print/modPrinter.h"
#include "store/Database.h"

#include <QComboBox>
#include <QDate>
#include <QLabel>
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
    {"Command1(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 600, 6100, 1800, 600},
    {"Command1(1)", CtlKind::Button, "印刷", 7200, 6100, 1800, 600},
};

} // namespace

fdlPrintTraceRep::fdlPrintTraceRep(QWidget *parent) : Form(QStringLiteral("fdlPrintTraceRep"), 9600, 7200, parent)
{
    setWindowTitle(QStringLiteral("生産履歴印刷"));
    buildControls(kControls, int(std::size(kControls)));
    txtCOND = array<QLineEdit>(QStringLiteral("txtCOND"), 1);
    cmbCOND = array<QComboBox>(QStringLiteral("cmbCOND"), 2);
    Command1 = array<QPushButton>(QStringLiteral("Command1"), 2);
    setFieldLimit(txtCOND[0], 4, ImeMode::Disabled);
    // Another year, its plantings.
    connect(&entry(), &EntryConventions::fieldLeft, this, [this](QWidget *field) {
        if (field == txtCOND[0])
            trap([this] { SetCmb(1); });
    });
    onClick(Command1[0], [this] { closeOrEndProgram(this); }, false);
    // Draws whatever the last price tag run left, on one page.
    onClick(Command1[1], [] { openPreview(kPriceTagReport, 1); });
}

void fdlPrintTraceRep::onLoad()
{
    SetDefSize();
    applyWindowState();
    txtCOND[0]->setText(QString::number(QDate::currentDate().year()));
    SetCmb(0);
    SetCmb(1);
}

void fdlPrintTraceRep::onResize()
{
    SetSize();
    InitForm();
}

void fdlPrintTraceRep::InitForm()
{
    setWindowTitle(QStringLiteral("生産履歴印刷"));
    ctl<QLabel>(QStringLiteral("lblTITLE"))->setText(QStringLiteral("生産履歴印刷"));
}

void fdlPrintTraceRep::SetCmb(int index)
{
    // The farmer list is not filled.
    if (index == 1)
        SetYearPlantCmb(cmbCOND[1], txtCOND[0]->text());
}

void SetYearPlantCmb(QComboBox *combo, const QString &yearText)
{
    if (yearText.isEmpty())
        return;
    // The join of PLANT_ID with SHIP_DATE finds no shipment; the left join
    // still yields every planting of the year.
    RecordsetPtr rs = gDB->GetFwdOnlyRst(
        QStringLiteral("SELECT DISTINCT  D_PLANT.PLANT_ID,  D_PLANT.PLANT_NM FROM D_PLANT  LEFT JOIN D_SHIP  ON "
                       "(D_PLANT.PLANT_ID = D_SHIP.SHIP_DATE)  AND (D_PLANT.FMR_ID = D_SHIP.FMR_ID) WHERE YYYY=") +
        Sql::number(Value(yearText)) + QStringLiteral(" ORDER BY D_PLANT.PLANT_ID"));
    combo->clear();
    addEmptyItem(combo);
    for (; !rs->eof(); rs->MoveNext())
        addItem(combo, textOf(rs->Fields(QStringLiteral("PLANT_NM"))), rs->Fields(QStringLiteral("PLANT_ID")));
    rs->Close();
}
