#include "screens/shipping/frmShipInput.h"

#include "base/Msg.h"
#include "rules/books/Ledger.h"
#include "rules/common/Ids.h"
#include "rules/diary/BookPage.h"
#include "rules/pesticide/SprayCheck.h"
#include "screens/diary/frmDairyCal.h"
#include "screens/shipping/frmShipList.h"
#include "ui/Entry.h"
#include "ui/Skeletons.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>

namespace {

// In the order of entry: what is known at dispatch, then the shop's report.
const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "出荷入力", 300, 120, 4000, 540},
    {"lblCAP(0)", CtlKind::Label, "出荷ID", 4500, 180, 900, 420},
    {"lblDATA(0)", CtlKind::Data, "", 5450, 160, 1200, 420},
    {"lblCAP(1)", CtlKind::Label, "出荷日", 300, 800, 1000, 420},
    {"txtDATA(0)", CtlKind::Text, "", 1350, 780, 1600, 420},
    {"lblCAP(2)", CtlKind::Label, "生産者", 3200, 800, 900, 420},
    {"cmbDATA(0)", CtlKind::Combo, "", 4150, 780, 2500, 420},
    {"fraPLANT", CtlKind::Frame, "作付", 300, 1400, 6350, 5000},
    {"List1", CtlKind::List, "", 150, 350, 2800, 4450, "fraPLANT"},
    {"lblCAP(3)", CtlKind::Label, "品種", 3050, 400, 900, 420, "fraPLANT"},
    {"lblDATA(1)", CtlKind::Data, "", 4000, 380, 2200, 420, "fraPLANT"},
    {"lblCAP(4)", CtlKind::Label, "品名", 3050, 950, 900, 420, "fraPLANT"},
    {"lblDATA(2)", CtlKind::Data, "", 4000, 930, 2200, 420, "fraPLANT"},
    {"lblCAP(5)", CtlKind::Label, "作付日", 3050, 1500, 900, 420, "fraPLANT"},
    {"lblDATA(3)", CtlKind::Data, "", 4000, 1480, 2200, 420, "fraPLANT"},
    {"lblCAP(6)", CtlKind::Label, "面積", 3050, 2050, 900, 420, "fraPLANT"},
    {"lblDATA(4)", CtlKind::Data, "", 4000, 2030, 1700, 420, "fraPLANT"},
    {"lblCAP(7)", CtlKind::Label, "㌃", 5750, 2050, 400, 420, "fraPLANT"},
    {"lblCAP(8)", CtlKind::Label, "出荷予定", 3050, 2600, 900, 420, "fraPLANT"},
    {"lblDATA(5)", CtlKind::Data, "", 4000, 2580, 2200, 420, "fraPLANT"},
    {"lblCAP(9)", CtlKind::Label, "～", 3050, 3130, 900, 420, "fraPLANT"},
    {"lblDATA(6)", CtlKind::Data, "", 4000, 3110, 2200, 420, "fraPLANT"},
    {"fraSHOP", CtlKind::Frame, "出荷先・商品", 6850, 780, 5250, 3200},
    {"lblCAP(10)", CtlKind::Label, "販売店", 100, 380, 1100, 420, "fraSHOP"},
    {"cmbDATA(1)", CtlKind::Combo, "", 1250, 360, 3800, 420, "fraSHOP"},
    {"lblCAP(11)", CtlKind::Label, "入金", 100, 880, 1100, 420, "fraSHOP"},
    {"Option1(0)", CtlKind::Option, "現金", 1250, 880, 1200, 420, "fraSHOP"},
    {"Option1(1)", CtlKind::Option, "売掛", 2550, 880, 1200, 420, "fraSHOP"},
    {"lblCAP(12)", CtlKind::Label, "商品コード", 100, 1380, 1100, 420, "fraSHOP"},
    {"txtDATA(2)", CtlKind::Text, "", 1250, 1360, 1500, 420, "fraSHOP"},
    {"lblCAP(13)", CtlKind::Label, "品名", 100, 1880, 1100, 420, "fraSHOP"},
    {"txtDATA(3)", CtlKind::Text, "", 1250, 1860, 3800, 420, "fraSHOP"},
    {"lblCAP(14)", CtlKind::Label, "生産地", 100, 2380, 1100, 420, "fraSHOP"},
    {"txtDATA(1)", CtlKind::Text, "", 1250, 2360, 3800, 420, "fraSHOP"},
    {"Check1", CtlKind::Check, "ﾌﾟﾗｽﾁｯｸ包装", 1250, 2800, 3000, 380, "fraSHOP"},
    {"fraAMT", CtlKind::Frame, "数量・金額", 6850, 4100, 5250, 2550},
    {"lblCAP(15)", CtlKind::Label, "売価", 100, 380, 1100, 420, "fraAMT"},
    {"txtDATA(4)", CtlKind::Text, "", 1250, 360, 1300, 420, "fraAMT"},
    {"lblCAP(16)", CtlKind::Label, "出荷数", 2650, 380, 1000, 420, "fraAMT"},
    {"txtDATA(5)", CtlKind::Text, "", 3700, 360, 1300, 420, "fraAMT"},
    {"lblCAP(17)", CtlKind::Label, "返品数", 100, 900, 1100, 420, "fraAMT"},
    {"txtDATA(6)", CtlKind::Text, "", 1250, 880, 1300, 420, "fraAMT"},
    {"lblCAP(18)", CtlKind::Label, "売上数", 2650, 900, 1000, 420, "fraAMT"},
    {"txtDATA(7)", CtlKind::Text, "", 3700, 880, 1300, 420, "fraAMT"},
    {"lblCAP(19)", CtlKind::Label, "値引額", 100, 1420, 1100, 420, "fraAMT"},
    {"txtDATA(8)", CtlKind::Text, "", 1250, 1400, 1300, 420, "fraAMT"},
    {"lblCAP(20)", CtlKind::Label, "金額", 2650, 1420, 1000, 420, "fraAMT"},
    {"lblDATA(7)", CtlKind::Data, "", 3700, 1400, 1300, 420, "fraAMT"},
    {"lblCAP(21)", CtlKind::Label, "手数料率", 100, 1940, 1100, 420, "fraAMT"},
    {"txtDATA(9)", CtlKind::Text, "", 1250, 1920, 1000, 420, "fraAMT"},
    {"lblCAP(22)", CtlKind::Label, "%", 2270, 1940, 300, 420, "fraAMT"},
    {"lblCAP(23)", CtlKind::Label, "手数料", 2650, 1940, 1000, 420, "fraAMT"},
    {"txtDATA(10)", CtlKind::Text, "", 3700, 1920, 1300, 420, "fraAMT"},
    {"lblCAP(24)", CtlKind::Label, "備考", 300, 6650, 1000, 420},
    {"txtDATA(11)", CtlKind::Text, "", 1350, 6630, 5300, 420},
    {"MonthView1", CtlKind::Calendar, "", 0, 0, 3900, 2700},
    {"cmdMENU(1)", CtlKind::Button, "登録", 10300, 8300, 1800, 620},
    {"cmdMENU(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 300, 8300, 1800, 620},
};

const struct {
    int length;
    ImeMode mode;
} kLimits[12] = {{10, ImeMode::Disabled}, {50, ImeMode::Hiragana}, {8, ImeMode::Off},     {50, ImeMode::Hiragana},
                 {8, ImeMode::Disabled},  {8, ImeMode::Disabled},  {8, ImeMode::Disabled}, {8, ImeMode::Disabled},
                 {8, ImeMode::Disabled},  {8, ImeMode::Disabled},  {8, ImeMode::Disabled}, {50, ImeMode::Hiragana}};

} // namespace

frmShipInput::frmShipInput(Mode mode, int row, QWidget *parent)
    : Form(QStringLiteral("frmShipInput"), 12400, 9200, parent), mMode(mode), mRowIdx(row)
{
    setWindowTitle(QStringLiteral("出荷入力"));
    setSizable(true);
    setTrapStyle(TrapStyle::Description);
    buildControls(kControls, int(std::size(kControls)));
    txtDATA = array<QLineEdit>(QStringLiteral("txtDATA"), 12);
    cmbDATA = array<QComboBox>(QStringLiteral("cmbDATA"), 2);
    lblDATA = array<QLabel>(QStringLiteral("lblDATA"), 8);
    Option1 = array<QRadioButton>(QStringLiteral("Option1"), 2);
    cmdMENU = array<QPushButton>(QStringLiteral("cmdMENU"), 2);
    List1 = ctl<QListWidget>(QStringLiteral("List1"));
    Check1 = ctl<QCheckBox>(QStringLiteral("Check1"));
    lblDATA[7]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    entry().registerDateField(txtDATA[0], 0);
    for (int i = 0; i < 12; ++i) {
        setFieldLimit(txtDATA[i], kLimits[i].length, kLimits[i].mode);
        if (i >= 4 && i <= 10)
            txtDATA[i]->setAlignment(Qt::AlignRight);
        connect(txtDATA[i], &QLineEdit::textChanged, this, [this] { mChanged = true; });
        QLineEdit *box = txtDATA[i];
        entry().setLeaveCheck(box, [this, box, i] {
            if (mChanged) {
                Ship::leaveBox(mRow, i, box->text());
                DispData();
            }
            return true;
        });
    }
    entry().setLeaveCheck(cmbDATA[0], [this] {
        mRow.FMR_ID = cmbDATA[0]->currentIndex() >= 0 ? currentItemData(cmbDATA[0]) : Value::null();
        DispData();
        return true;
    });
    entry().setLeaveCheck(cmbDATA[1], [this] {
        Ship::chooseShop(mRow, cmbDATA[1]->currentIndex() >= 0 ? currentItemData(cmbDATA[1]) : Value::null());
        DispData();
        return true;
    });
    connect(List1, &QListWidget::itemClicked, this, [this] {
        trap([this] {
            if (List1->currentRow() >= 0) {
                mRow.PLANT_ID = itemData(List1, List1->currentRow());
                DispPlantData();
            }
        });
    });
    // The product of the planting, whatever was typed before.
    entry().setLeaveCheck(List1, [this] {
        if (mMode != Mode::Add && mMode != Mode::Change)
            return true;
        Ship::takePlantingProduct(mRow);
        txtDATA[2]->setText(mRow.PRD_ID.toText());
        txtDATA[3]->setText(mRow.PRD_NM.toText());
        mChanged = false;
        return true;
    });
    onClick(Option1[0], [this] { mRow.ACC_ID = Value(Acc::Cash); });
    onClick(Option1[1], [this] { mRow.ACC_ID = Value(Acc::Receivable); });
    onClick(Check1, [this] { mRow.PLAS = Value(Check1->isChecked()); });
    onClick(cmdMENU[0], [this] { close(); }, false);
    onClick(cmdMENU[1], [this] {
        if (!ChkData() || !sprayingsAccepted())
            return;
        if (!EntryScreen::saveOrReload([this] { SaveData(); }, [this] { reload(); }))
            return;
        if (auto *list = qobject_cast<frmShipList *>(Form::find(QStringLiteral("frmShipList")))) {
            list->SetList1();
            list->SetList2();
        }
        if (auto *cal = qobject_cast<frmDairyCal *>(Form::find(QStringLiteral("frmDairyCal"))))
            cal->DispData();
        done(QDialog::Accepted);
    });
    EntryScreen::askBeforeClose(this, cmdMENU[1], [this] { return mMode; });
}

void frmShipInput::onLoad()
{
    SetDefSize();
    applyWindowState();
}

void frmShipInput::onResize()
{
    SetSize();
    InitForm();
    SetMode();
}

void frmShipInput::onUnload() { Ship::releaseShipments(); }

void frmShipInput::InitForm()
{
    mRow = ShipRow();
    for (int i = 0; i < cmbDATA.size(); ++i)
        SetCmb(i);
}

void frmShipInput::SetCmb(int index)
{
    QComboBox *c = cmbDATA[index];
    c->clear();
    addEmptyItem(c);
    for (const Choice &choice : index == 0 ? Ship::farmerChoices() : Ship::shopChoices())
        addItem(c, choice.text, choice.id);
    c->setCurrentIndex(-1);
}

void frmShipInput::SetList()
{
    List1->clear();
    for (const Choice &choice : Ship::openPlantings(mRow.SHIP_DATE))
        addItem(List1, choice.text, choice.id);
}

void frmShipInput::SetMode()
{
    mRow = ShipRow();
    if (mRowIdx >= 0 && mRowIdx < gSHIP_ROWS.size())
        mRow = gSHIP_ROWS[mRowIdx];
    if (mMode == Mode::Add)
        mRow = Ship::newShipment(); // a copy starts as blank as a new one
    EntryScreen::setMode(this, cmdMENU[0], cmdMENU[1], mMode);
    // The tab order follows the stage: dispatch in mode 1, the report in mode 2.
    if (mMode == Mode::Add) {
        for (int i = 6; i <= 10; ++i)
            txtDATA[i]->setFocusPolicy(Qt::ClickFocus);
    } else if (mMode == Mode::Change) {
        for (int i : {0, 1, 2, 3, 4, 5, 7})
            txtDATA[i]->setFocusPolicy(Qt::ClickFocus);
        List1->setFocusPolicy(Qt::ClickFocus);
        Check1->setFocusPolicy(Qt::ClickFocus);
    } else {
        List1->setEnabled(false);
        for (QRadioButton *o : Option1)
            o->setEnabled(false);
    }
    DispData();
    if (mMode == Mode::Change)
        txtDATA[6]->setFocus(Qt::TabFocusReason);
}

void frmShipInput::DispData()
{
    Ship::computeSalesAmount(mRow); // a stored amount is never trusted
    txtDATA[0]->setText(DateUtil::dayText(mRow.SHIP_DATE));
    Value ShipRow::*const boxes[12] = {nullptr,           &ShipRow::LOCATE,    &ShipRow::PRD_ID,  &ShipRow::PRD_NM,
                                       &ShipRow::SHOP_PRC, &ShipRow::SHIP_QTY, &ShipRow::RTN_QTY, &ShipRow::SALES_QTY,
                                       &ShipRow::DSC_AMT,  &ShipRow::FEE_RT,   &ShipRow::FEE_AMT, &ShipRow::NOTES};
    for (int i = 1; i < 12; ++i)
        txtDATA[i]->setText(textOf(mRow.*boxes[i]));
    SetList();
    if (mMode != Mode::Add)
        lblDATA[0]->setText(textOf(mRow.SHIP_ID));
    lblDATA[7]->setText(hasValue(mRow.SALES_AMT) ? Ledger::amountText(mRow.SALES_AMT.toCurrency()) : QString());
    if (hasValue(mRow.PLANT_ID))
        selectItemData(List1, mRow.PLANT_ID);
    else
        List1->setCurrentRow(-1);
    for (int i = 0; i < 2; ++i) {
        const Value &v = i == 0 ? mRow.FMR_ID : mRow.SHOP_ID;
        if (hasValue(v))
            selectItemData(cmbDATA[i], v);
        else
            cmbDATA[i]->setCurrentIndex(-1);
    }
    Check1->setChecked(hasValue(mRow.PLAS) && mRow.PLAS.toBool());
    if (isNumber(mRow.ACC_ID, Acc::Cash))
        Option1[0]->setChecked(true);
    else if (isNumber(mRow.ACC_ID, Acc::Receivable))
        Option1[1]->setChecked(true);
    DispPlantData();
    mChanged = false;
}

void frmShipInput::DispPlantData()
{
    const Ship::PlantingInfo p = Ship::plantingInfo(mRow.PLANT_ID);
    lblDATA[1]->setText(textOf(p.CROP_NM1));
    lblDATA[2]->setText(textOf(p.CROP_NM2));
    lblDATA[3]->setText(DateUtil::dayText(p.PLANT_DATE));
    lblDATA[4]->setText(textOf(p.AREA));
    lblDATA[5]->setText(DateUtil::dayText(p.SHIP_SCHD_DATE1));
    lblDATA[6]->setText(DateUtil::dayText(p.SHIP_SCHD_DATE2));
}

bool frmShipInput::ChkData()
{
    const QString message = Ship::check(mRow, mMode);
    if (message.isEmpty())
        return true;
    ShowMsg(message, Msg::Exclamation);
    return false;
}

void frmShipInput::SaveData() { Ship::post(mRow, mMode); }

bool frmShipInput::sprayingsAccepted()
{
    if (mMode != Mode::Add && mMode != Mode::Change)
        return true;
    return Spray::saveAnyway(QStringLiteral("収穫前の日数が過ぎていない出荷です。"), [this] {
        return Spray::checkShipment(mRow.FMR_ID, mRow.PLANT_ID, mRow.SHIP_DATE);
    });
}

void frmShipInput::reload()
{
    if (!Ship::reread(mRow)) {
        ShowMsg(QStringLiteral("該当データが存在しません。"), Msg::Critical);
        return;
    }
    DispData();
}
