#include "screens/exchange/fdlUploadTraceData.h"

#include "ui/Entry.h"
#include "store/SqlText.h"
#include "store/Database.h"

#include <QComboBox>
#include <QDate>
#include <QLineEdit>
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

QString uploadPlantingsSql(const QString &year)
{
    // The join compares the planting with the shipment date, so it finds
    // nothing on the right: the left join still yields every planting of the
    // year. The statement is kept as it stands.
    return QStringLiteral("SELECT DISTINCT  D_PLANT.PLANT_ID,  D_PLANT.PLANT_NM FROM D_PLANT  LEFT JOIN D_SHIP "
                          " ON (D_PLANT.PLANT_ID = D_SHIP.SHIP_DATE)  AND (D_PLANT.FMR_ID = D_SHIP.FMR_ID) WHERE YYYY=") +
           Sql::number(Value(year)) + QStringLiteral(" ORDER BY D_PLANT.PLANT_ID");
}

fdlUploadTraceData::fdlUploadTraceData(QWidget *parent)
    : Form(QStringLiteral("fdlUploadTraceData"), 9600, 7200, parent)
{
    buildControls(kControls, int(std::size(kControls)));
    txtCOND = ctl<QLineEdit>(QStringLiteral("txtCOND(0)"));
    cmbCOND = array<QComboBox>(QStringLiteral("cmbCOND"), 2);
    Command1 = array<QPushButton>(QStringLiteral("Command1"), 2);
    setFieldLimit(txtCOND, 4, ImeMode::Disabled);
    entry().setLeaveCheck(txtCOND, [this] {
        SetCmb(1);
        return true;
    });
    onClick(Command1[0], [this] { closeOrEndProgram(this); }, false);
    onClick(Command1[1], [] {}); // nothing is sent from here yet
}

void fdlUploadTraceData::onLoad()
{
    SetDefSize();
    applyWindowState();
    InitForm();
    txtCOND->setText(QString::number(QDate::currentDate().year()));
    SetCmb(0);
    SetCmb(1);
}

void fdlUploadTraceData::onResize() { SetSize(); }

void fdlUploadTraceData::InitForm() { setWindowTitle(QStringLiteral("ﾃﾞｰﾀｱｯﾌﾟﾛｰﾄﾞ")); }

void fdlUploadTraceData::SetCmb(int index)
{
    if (index != 1 || txtCOND->text().isEmpty())
        return; // the farmer list stays empty; an empty year leaves the plantings as they were
    QComboBox *c = cmbCOND[1];
    c->clear();
    addEmptyItem(c);
    RecordsetPtr rs = gDB->GetFwdOnlyRst(uploadPlantingsSql(txtCOND->text()));
    for (; !rs->eof(); rs->MoveNext())
        addItem(c, textOf(rs->Fields(1)), rs->Fields(0));
    c->setCurrentIndex(-1);
}
