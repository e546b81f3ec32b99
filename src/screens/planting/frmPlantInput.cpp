#include "screens/planting/frmPlantInput.h"

#include "rules/pesticide/SprayCheck.h"

#include "rules/planting/PlantEntry.h"
#include "screens/diary/frmDairyCal.h"
#include "screens/planting/frmPlantList.h"
#include "store/Database.h"

#include "base/Helpers.h"
#include "base/Msg.h"
#include "ui/Entry.h"
#include "ui/Skeletons.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

// In the order of entry: the tab order follows the table.
const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "作付入力", 300, 150, 4000, 540},
    {"lblCAP(0)", CtlKind::Label, "作付ID", 300, 850, 1300, 390},
    {"lblDATA(0)", CtlKind::Data, "", 1700, 850, 1000, 390},
    {"lblCAP(1)", CtlKind::Label, "名称", 2800, 850, 900, 390},
    {"txtDATA(8)", CtlKind::Text, "", 3800, 850, 5200, 390},
    {"lblCAP(2)", CtlKind::Label, "生産者", 300, 1350, 1300, 390},
    {"cmbDATA(0)", CtlKind::ComboEdit, "", 1700, 1350, 3000, 390},
    {"lblCAP(3)", CtlKind::Label, "収穫予定月", 6400, 1350, 1500, 390},
    {"txtDATA(0)", CtlKind::Text, "", 8000, 1350, 800, 390},
    {"lblUNIT(0)", CtlKind::Label, "年", 8850, 1350, 350, 390},
    {"txtDATA(1)", CtlKind::Text, "", 9250, 1350, 550, 390},
    {"lblUNIT(1)", CtlKind::Label, "月", 9850, 1350, 350, 390},

    {"fraCROP", CtlKind::Frame, "作物", 300, 2000, 5900, 2350},
    {"lblCAP(4)", CtlKind::Label, "区分", 100, 380, 1300, 390, "fraCROP"},
    {"cmbDATA(1)", CtlKind::ComboEdit, "", 1500, 380, 2400, 390, "fraCROP"},
    {"lblCAP(5)", CtlKind::Label, "作物", 100, 860, 1300, 390, "fraCROP"},
    {"cmbDATA(2)", CtlKind::ComboEdit, "", 1500, 860, 2400, 390, "fraCROP"},
    {"lblCAP(6)", CtlKind::Label, "品種", 100, 1340, 1300, 390, "fraCROP"},
    {"txtDATA(2)", CtlKind::Text, "", 1500, 1340, 4100, 390, "fraCROP"},
    {"lblCAP(7)", CtlKind::Label, "品目", 100, 1820, 1300, 390, "fraCROP"},
    {"txtDATA(3)", CtlKind::Text, "", 1500, 1820, 4100, 390, "fraCROP"},

    {"fraPLANT", CtlKind::Frame, "作付", 300, 4450, 5900, 3830},
    {"lblCAP(8)", CtlKind::Label, "作付区分", 100, 380, 1300, 390, "fraPLANT"},
    {"cmbDATA(3)", CtlKind::ComboEdit, "", 1500, 380, 2400, 390, "fraPLANT"},
    {"lblCAP(9)", CtlKind::Label, "栽培方式", 100, 860, 1300, 390, "fraPLANT"},
    {"cmbDATA(4)", CtlKind::ComboEdit, "", 1500, 860, 2400, 390, "fraPLANT"},
    {"lblCAP(10)", CtlKind::Label, "圃場/田畑", 100, 1340, 1300, 390, "fraPLANT"},
    {"txtDATA(6)", CtlKind::Text, "", 1500, 1340, 4100, 390, "fraPLANT"},
    {"lblCAP(11)", CtlKind::Label, "面積", 100, 1820, 1300, 390, "fraPLANT"},
    {"txtDATA(7)", CtlKind::Text, "", 1500, 1820, 1100, 390, "fraPLANT"},
    {"lblUNIT(2)", CtlKind::Label, "㌃", 2650, 1820, 500, 390, "fraPLANT"},
    {"lblCAP(12)", CtlKind::Label, "予定収量", 100, 2300, 1300, 390, "fraPLANT"},
    {"lblDATA(1)", CtlKind::Data, "", 1500, 2300, 1100, 390, "fraPLANT"},
    {"lblUNIT(3)", CtlKind::Label, "Kg", 2650, 2300, 500, 390, "fraPLANT"},

    {"fraPRD", CtlKind::Frame, "商品", 6400, 2000, 5700, 1390},
    {"lblCAP(13)", CtlKind::Label, "商品コード", 100, 380, 1300, 390, "fraPRD"},
    {"txtDATA(4)", CtlKind::Text, "", 1500, 380, 1300, 390, "fraPRD"},
    {"lblCAP(14)", CtlKind::Label, "商品名", 100, 860, 1300, 390, "fraPRD"},
    {"txtDATA(5)", CtlKind::Text, "", 1500, 860, 3950, 390, "fraPRD"},

    {"fraDATE", CtlKind::Frame, "作業期間", 6400, 3490, 5700, 1870},
    {"lblCAP(15)", CtlKind::Label, "作付日", 100, 380, 1300, 390, "fraDATE"},
    {"txtDATA(11)", CtlKind::Text, "", 1500, 380, 1500, 390, "fraDATE"},
    {"lblCAP(16)", CtlKind::Label, "作業開始日", 100, 860, 1300, 390, "fraDATE"},
    {"txtDATA(9)", CtlKind::Text, "", 1500, 860, 1500, 390, "fraDATE"},
    {"lblCAP(17)", CtlKind::Label, "作業終了日", 100, 1340, 1300, 390, "fraDATE"},
    {"txtDATA(10)", CtlKind::Text, "", 1500, 1340, 1500, 390, "fraDATE"},

    {"fraSHIP", CtlKind::Frame, "出荷", 6400, 5460, 5700, 2820},
    {"lblCAP(18)", CtlKind::Label, "予定出荷量", 100, 380, 1300, 390, "fraSHIP"},
    {"txtDATA(12)", CtlKind::Text, "", 1500, 380, 1100, 390, "fraSHIP"},
    {"cmbDATA(5)", CtlKind::ComboEdit, "", 2700, 380, 1400, 390, "fraSHIP"},
    {"lblCAP(19)", CtlKind::Label, "出荷予定日", 100, 860, 1300, 390, "fraSHIP"},
    {"txtDATA(13)", CtlKind::Text, "", 1500, 860, 1500, 390, "fraSHIP"},
    {"lblUNIT(4)", CtlKind::Label, "～", 3000, 860, 400, 390, "fraSHIP"},
    {"txtDATA(14)", CtlKind::Text, "", 3400, 860, 1500, 390, "fraSHIP"},
    // what the sprayings so far allow, read only
    {"lblCAP(22)", CtlKind::Label, "出荷可能日", 100, 1340, 1300, 390, "fraSHIP"},
    {"lblDATA(2)", CtlKind::Data, "", 1500, 1340, 4000, 390, "fraSHIP"},
    {"lblCAP(23)", CtlKind::Label, "散布回数", 100, 1820, 1300, 390, "fraSHIP"},
    {"lblDATA(3)", CtlKind::Data, "", 1500, 1820, 4000, 870, "fraSHIP"},

    {"lblCAP(20)", CtlKind::Label, "備考１", 300, 8420, 1300, 390},
    {"txtDATA(15)", CtlKind::Text, "", 1700, 8420, 10400, 390},
    {"lblCAP(21)", CtlKind::Label, "備考２", 300, 8900, 1300, 390},
    {"txtDATA(16)", CtlKind::Text, "", 1700, 8900, 10400, 390},

    {"cmdMENU(1)", CtlKind::Button, "登録", 10500, 9500, 1600, 540},
    {"cmdMENU(2)", CtlKind::Button, "完了", 8700, 9500, 1600, 540},
    {"cmdMENU(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 300, 9500, 1600, 540},
    {"MonthView1", CtlKind::Calendar, "", 8000, 3000, 3900, 2800},
};

// Length limits and input modes of txtDATA(0) .. txtDATA(16).
const struct {
    int length;
    ImeMode mode;
} kLimits[17] = {
    {4, ImeMode::Disabled},  {2, ImeMode::Disabled},  {50, ImeMode::Hiragana}, {50, ImeMode::Hiragana},
    {8, ImeMode::Disabled},  {50, ImeMode::Hiragana}, {50, ImeMode::Hiragana}, {5, ImeMode::Disabled},
    {50, ImeMode::Hiragana}, {10, ImeMode::Disabled}, {10, ImeMode::Disabled}, {10, ImeMode::Disabled},
    {5, ImeMode::Disabled},  {10, ImeMode::Disabled}, {10, ImeMode::Disabled}, {50, ImeMode::Hiragana},
    {50, ImeMode::Hiragana},
};

} // namespace

frmPlantInput::frmPlantInput(Mode mode, int row, QWidget *parent)
    : Form(QStringLiteral("frmPlantInput"), 12400, 10200, parent), mMode(mode), mRow(row)
{
    setWindowTitle(QStringLiteral("作付入力"));
    setSizable(true);
    setTrapStyle(TrapStyle::Description);
    buildControls(kControls, int(std::size(kControls)));
    txtDATA = array<QLineEdit>(QStringLiteral("txtDATA"), Plant::Box::Count);
    cmbDATA = array<QComboBox>(QStringLiteral("cmbDATA"), Plant::Combo::Count);
    lblDATA = array<QLabel>(QStringLiteral("lblDATA"), 4);
    lblDATA[3]->setWordWrap(true);
    lblDATA[3]->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    cmdMENU = array<QPushButton>(QStringLiteral("cmdMENU"), 3);
    for (QLabel *unit : array<QLabel>(QStringLiteral("lblUNIT"), 5))
        unit->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    ctl<QLabel>(QStringLiteral("lblUNIT(4)"))->setAlignment(Qt::AlignCenter);
    // The unit sign of ares is small in most fonts.
    auto *ares = ctl<QLabel>(QStringLiteral("lblUNIT(2)"));
    QFont big = ares->font();
    big.setPointSizeF(big.pointSizeF() * 1.4);
    ares->setFont(big);
    lblDATA[0]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    lblDATA[1]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    for (int i = 0; i < Plant::Box::Count; ++i) {
        setFieldLimit(txtDATA[i], kLimits[i].length, kLimits[i].mode);
        connect(txtDATA[i], &QLineEdit::textChanged, this, [this] { mChanged = true; });
        entry().setLeaveCheck(txtDATA[i], [this, i] { return txtLeave(i); });
        if (Plant::isNumberBox(i))
            txtDATA[i]->setAlignment(Qt::AlignRight);
        if (Plant::isDateBox(i))
            entry().registerDateField(txtDATA[i], i);
    }
    for (int i = 0; i < Plant::Combo::Count; ++i)
        entry().setLeaveCheck(cmbDATA[i], [this, i] { return cmbLeave(i); });

    onClick(cmdMENU[0], [this] { close(); }, false);
    onClick(cmdMENU[1], [this] {
        if (!ChkData())
            return;
        if (!EntryScreen::saveOrReload([this] { SaveData(); }, [this] { reload(); }))
            return;
        if (auto *list = qobject_cast<frmPlantList *>(Form::find(QStringLiteral("frmPlantList"))))
            list->SetList();
        if (auto *cal = qobject_cast<frmDairyCal *>(Form::find(QStringLiteral("frmDairyCal"))))
            cal->DispData();
        done(QDialog::Accepted);
    });
    EntryScreen::askBeforeClose(this, cmdMENU[1], [this] { return mMode; });
    // The work is over today; it is kept with the next 登録.
    onClick(cmdMENU[2], [this] {
        Plant::finish(mDATA[0], DateUtil::today());
        txtDATA[Plant::Box::EndDate]->setText(DateUtil::dayText(mDATA[0].END_DATE));
    });
}

void frmPlantInput::onLoad()
{
    SetDefSize();
    applyWindowState();
}

void frmPlantInput::onResize()
{
    // A new size starts the entry over from the row it was opened for.
    SetSize();
    InitForm();
    SetMode();
}

void frmPlantInput::onActivate()
{
    applyWindowState();
    // Viewing and deleting leave the locked first box.
    if (mMode == Mode::View || mMode == Mode::Delete) {
        QWidget *from = focusWidget();
        sendTab(from ? from : this);
    }
}

void frmPlantInput::onUnload()
{
    if (gDB)
        gDB->ReleaseData(QStringLiteral("D_PLANT"), QString());
}

void frmPlantInput::InitForm()
{
    mDATA = QVector<PlantRow>(1);
    for (int i = 0; i < Plant::Combo::Count; ++i)
        SetCmb(i);
}

void frmPlantInput::SetCmb(int index)
{
    switch (index) {
    case Plant::Combo::Farmer: fillChoices(cmbDATA[index], Plant::farmers()); break;
    case Plant::Combo::CropGroup: fillChoices(cmbDATA[index], Plant::cropGroups()); break;
    case Plant::Combo::Crop: setCropList(chosenGroup()); break;
    case Plant::Combo::PlantType: fillChoices(cmbDATA[index], Plant::kinds(Plant::Kbn::PlantType)); break;
    case Plant::Combo::Cultivation: fillChoices(cmbDATA[index], Plant::kinds(Plant::Kbn::Cultivation)); break;
    case Plant::Combo::ShipEstUnit: fillChoices(cmbDATA[index], Plant::kinds(Plant::Kbn::ShipEstUnit)); break;
    default: break;
    }
}

void frmPlantInput::setCropList(const QString &group)
{
    mGroup = group;
    fillChoices(cmbDATA[Plant::Combo::Crop], Plant::cropsOfGroup(group));
}

QString frmPlantInput::chosenGroup() const
{
    // The empty first entry is no group: every crop is offered.
    const QComboBox *c = cmbDATA[Plant::Combo::CropGroup];
    if (c->currentIndex() <= 0)
        return QString();
    return Nz(currentItemData(c), Value(QString())).toText();
}

void frmPlantInput::SetMode()
{
    mDATA.resize(1);
    mDATA[0] = Plant::openRecord(mMode, mRow, gFMR_ID);
    EntryScreen::setMode(this, cmdMENU[0], cmdMENU[1], mMode);
    // 完了 closes the period of a planting being added or changed.
    cmdMENU[2]->setText(QStringLiteral("完了"));
    cmdMENU[2]->setVisible(mMode == Mode::Add || mMode == Mode::Change);
    DispData();
}

void frmPlantInput::DispData()
{
    using namespace Plant;
    const PlantRow &r = mDATA[0];
    lblDATA[0]->setText(textOf(r.PLANT_ID));
    txtDATA[Box::Name]->setText(textOf(r.PLANT_NM));
    txtDATA[Box::Year]->setText(harvestYearText(r.HARVEST_SCHD_YM));
    txtDATA[Box::Month]->setText(harvestMonthText(r.HARVEST_SCHD_YM));
    txtDATA[Box::Variety]->setText(textOf(r.CROP_NM1));
    txtDATA[Box::Item]->setText(textOf(r.CROP_NM2));
    txtDATA[Box::PrdId]->setText(textOf(r.PRD_ID));
    txtDATA[Box::PrdNm]->setText(textOf(r.PRD_NM));
    txtDATA[Box::Field]->setText(textOf(r.FIELD_NM));
    txtDATA[Box::Area]->setText(textOf(r.AREA));
    lblDATA[1]->setText(textOf(r.CROP_EST));
    // A planting on record: what its sprayings allow.
    Spray::PlantSummary sprays;
    if (mMode != Mode::Add && hasValue(r.PLANT_ID))
        sprays = Spray::summaries(r.FMR_ID, {r.PLANT_ID}, DateUtil::today().date())
                     .value(qint64(r.PLANT_ID.toDouble()));
    lblDATA[2]->setText(sprays.shipFrom);
    lblDATA[3]->setText(sprays.uses.join(QLatin1Char('\n')));
    txtDATA[Box::PlantDate]->setText(DateUtil::dayText(r.PLANT_DATE));
    txtDATA[Box::StartDate]->setText(DateUtil::dayText(r.START_DATE));
    txtDATA[Box::EndDate]->setText(DateUtil::dayText(r.END_DATE));
    txtDATA[Box::ShipEst]->setText(textOf(r.SHIP_EST));
    txtDATA[Box::ShipFrom]->setText(DateUtil::dayText(r.SHIP_SCHD_DATE1));
    txtDATA[Box::ShipTo]->setText(DateUtil::dayText(r.SHIP_SCHD_DATE2));
    txtDATA[Box::Notes1]->setText(textOf(r.NOTES1));
    txtDATA[Box::Notes2]->setText(textOf(r.NOTES2));

    // The crop's group, then the crops of that group.
    const QString crop = textOf(r.CROP_NM);
    const Value group = cropGroup(crop);
    selectItemData(cmbDATA[Combo::CropGroup], group);
    setCropList(Nz(group, Value(QString())).toText());
    cmbDATA[Combo::Crop]->setCurrentIndex(crop.isEmpty() ? -1 : cmbDATA[Combo::Crop]->findText(crop, Qt::MatchExactly));
    selectItemData(cmbDATA[Combo::Farmer], r.FMR_ID);
    selectItemData(cmbDATA[Combo::PlantType], r.PLANT_TYPE);
    selectItemData(cmbDATA[Combo::ShipEstUnit], r.SHIP_EST_UNIT);
    mChanged = false;
}

bool frmPlantInput::txtLeave(int index)
{
    if (!mChanged)
        return true;
    const QString refusal = Plant::leaveBox(mDATA[0], index, txtDATA[index]->text());
    if (!refusal.isEmpty()) {
        ShowMsg(refusal, Msg::Exclamation);
        return false;
    }
    DispData();
    return true;
}

bool frmPlantInput::cmbLeave(int index)
{
    QComboBox *c = cmbDATA[index];
    if (!settleComboText(c))
        return false;
    PlantRow &r = mDATA[0];
    switch (index) {
    case Plant::Combo::CropGroup: {
        const QString group = chosenGroup();
        if (group != mGroup) {
            setCropList(group);
            const QString crop = textOf(r.CROP_NM);
            QComboBox *crops = cmbDATA[Plant::Combo::Crop];
            crops->setCurrentIndex(crop.isEmpty() ? -1 : crops->findText(crop, Qt::MatchExactly));
        }
        break;
    }
    case Plant::Combo::Crop:
        if (Plant::chooseCrop(r, c->currentIndex() > 0 ? c->itemText(c->currentIndex()) : QString()))
            DispData();
        break;
    default:
        Plant::chooseKey(r, index, c->currentIndex() >= 0 ? currentItemData(c) : Value::null());
        break;
    }
    return true;
}

bool frmPlantInput::ChkData()
{
    const Plant::Refusal refusal =
        Plant::check(mDATA[0], mMode, txtDATA[Plant::Box::Name]->text(), txtDATA[Plant::Box::Year]->text());
    if (refusal.message.isEmpty())
        return true;
    ShowMsg(refusal.message, Msg::Exclamation);
    if (refusal.box >= 0)
        txtDATA[refusal.box]->setFocus();
    return false;
}

void frmPlantInput::reload()
{
    if (!Plant::rereadRecord(mDATA[0])) {
        ShowMsg(QStringLiteral("該当データが存在しません。"), Msg::Critical);
        return;
    }
    DispData();
}

void frmPlantInput::SaveData()
{
    gLAST_PLANT_ID = mDATA[0].PLANT_ID;
    if (!Plant::saveRecord(mMode, mDATA[0], GetCompName()))
        ShowMsg(QStringLiteral("該当データが存在しません。"), Msg::Critical);
}
