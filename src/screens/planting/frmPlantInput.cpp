#include "screens/planting/frmPlantInput.h"

#include "screens/planting/frmPlantList.h"

#include "ui/Entry.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "base/Msg.h"
#include "store/SqlText.h"
#include "screens/diary/frmDairyCal.h"
#include "store/Database.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <algorithm>
#include <cmath>

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

    {"fraPLANT", CtlKind::Frame, "作付", 300, 4450, 5900, 2830},
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

    {"fraSHIP", CtlKind::Frame, "出荷", 6400, 5460, 5700, 1820},
    {"lblCAP(18)", CtlKind::Label, "予定出荷量", 100, 380, 1300, 390, "fraSHIP"},
    {"txtDATA(12)", CtlKind::Text, "", 1500, 380, 1100, 390, "fraSHIP"},
    {"cmbDATA(5)", CtlKind::ComboEdit, "", 2700, 380, 1400, 390, "fraSHIP"},
    {"lblCAP(19)", CtlKind::Label, "出荷予定日", 100, 860, 1300, 390, "fraSHIP"},
    {"txtDATA(13)", CtlKind::Text, "", 1500, 860, 1500, 390, "fraSHIP"},
    {"lblUNIT(4)", CtlKind::Label, "～", 3000, 860, 400, 390, "fraSHIP"},
    {"txtDATA(14)", CtlKind::Text, "", 3400, 860, 1500, 390, "fraSHIP"},

    {"lblCAP(20)", CtlKind::Label, "備考１", 300, 7420, 1300, 390},
    {"txtDATA(15)", CtlKind::Text, "", 1700, 7420, 10400, 390},
    {"lblCAP(21)", CtlKind::Label, "備考２", 300, 7900, 1300, 390},
    {"txtDATA(16)", CtlKind::Text, "", 1700, 7900, 10400, 390},

    {"cmdMENU(1)", CtlKind::Button, "登録", 10500, 8500, 1600, 540},
    {"cmdMENU(2)", CtlKind::Button, "完了", 8700, 8500, 1600, 540},
    {"cmdMENU(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 300, 8500, 1600, 540},
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

const int kNumberBoxes[] = {0, 1, 4, 7, 12};
const int kDateBoxes[] = {9, 10, 11, 13, 14};

template <size_t N> bool among(const int (&set)[N], int i) { return std::find(std::begin(set), std::end(set), i) != std::end(set); }



// A number as typed ("１２", "1,200") kept as its value.
Value numberOrNull(const QString &t)
{
    double d;
    if (!parseNumber(t, d))
        return Value::null();
    if (d == std::floor(d) && std::fabs(d) <= 2147483647.0)
        return Value::int32(qint64(d));
    return Value(d);
}

Value dateOrNull(const QString &t)
{
    QDateTime dt;
    if (t.isEmpty() || !DateUtil::parse(t, dt))
        return Value::null();
    return Value(dt);
}

// A product code is a whole number the code column can hold.
bool isCode(const QString &t)
{
    double d;
    return parseNumber(t, d) && d == std::floor(d) && d >= 0 && d <= 99999999.0;
}

// A date the data tables can hold.
bool isStorableDate(const QString &t)
{
    QDateTime dt;
    return DateUtil::parse(t, dt) && dt.date().year() >= 1000 && dt.date().year() <= 9999;
}

} // namespace

frmPlantInput::frmPlantInput(QWidget *parent) : Form(QStringLiteral("frmPlantInput"), 12400, 9200, parent)
{
    setWindowTitle(QStringLiteral("作付入力"));
    setSizable(true);
    setTrapStyle(TrapStyle::Description);
    buildControls(kControls, int(std::size(kControls)));
    txtDATA = array<QLineEdit>(QStringLiteral("txtDATA"), 17);
    cmbDATA = array<QComboBox>(QStringLiteral("cmbDATA"), 6);
    lblDATA = array<QLabel>(QStringLiteral("lblDATA"), 2);
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
    for (int i : kNumberBoxes)
        txtDATA[i]->setAlignment(Qt::AlignRight);

    for (int i = 0; i < 17; ++i) {
        setFieldLimit(txtDATA[i], kLimits[i].length, kLimits[i].mode);
        connect(txtDATA[i], &QLineEdit::textChanged, this, [this] { mChanged = true; });
        entry().setLeaveCheck(txtDATA[i], [this, i] { return txtLeave(i); });
    }
    for (int i : kDateBoxes)
        entry().registerDateField(txtDATA[i], i);
    for (int i = 0; i < 6; ++i)
        entry().setLeaveCheck(cmbDATA[i], [this, i] { return cmbLeave(i); });

    onClick(cmdMENU[0], [this] { close(); }, false);
    onClick(cmdMENU[1], [this] {
        if (!ChkData())
            return;
        SaveData();
        if (auto *list = qobject_cast<frmPlantList *>(Form::find(QStringLiteral("frmPlantList"))))
            list->SetList();
        if (auto *cal = qobject_cast<frmDairyCal *>(Form::find(QStringLiteral("frmDairyCal"))))
            cal->DispData();
        done(QDialog::Accepted);
    });
    // The work is over today; it is kept with the next 登録.
    onClick(cmdMENU[2], [this] {
        mDATA[0].END_DATE = Value(DateUtil::today());
        txtDATA[10]->setText(Sql::dayText(mDATA[0].END_DATE));
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
    if (gMODE == Mode::View || gMODE == Mode::Delete) {
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
    for (int i = 0; i < 6; ++i)
        SetCmb(i);
}

void frmPlantInput::SetCmb(int index)
{
    if (index == 2) {
        setCropList(chosenGroup());
        return;
    }
    QComboBox *c = cmbDATA[index];
    c->clear();
    addEmptyItem(c);
    RecordsetPtr rs;
    QString idCol = QStringLiteral("ID"), nameCol = QStringLiteral("NM");
    switch (index) {
    case 0:
        rs = gMST->GetFwdOnlyRst(
            QStringLiteral("SELECT M_FMR.FMR_ID, M_FMR.FMR_NM FROM M_FMR WHERE CHK_FLG<>0 ORDER BY M_FMR.FMR_ID"));
        idCol = QStringLiteral("FMR_ID");
        nameCol = QStringLiteral("FMR_NM");
        break;
    case 1:
        rs = gWORK->GetFwdOnlyRst(QStringLiteral("SELECT DISTINCT L_CROP_KBN.CROP_KBN, L_CROP_KBN.CROP_KBN_NM "
                                                 "FROM L_CROP_KBN ORDER BY L_CROP_KBN.CROP_KBN"));
        idCol = QStringLiteral("CROP_KBN");
        nameCol = QStringLiteral("CROP_KBN_NM");
        break;
    case 3:
        rs = gWORK->GetFwdOnlyRst(QStringLiteral("SELECT L_KBN.ID, L_KBN.NM FROM L_KBN WHERE KBN=11 ORDER BY L_KBN.ID"));
        break;
    case 4:
        rs = gWORK->GetFwdOnlyRst(QStringLiteral("SELECT L_KBN.ID, L_KBN.NM FROM L_KBN WHERE KBN=13 ORDER BY L_KBN.ID"));
        break;
    case 5:
        rs = gWORK->GetFwdOnlyRst(QStringLiteral("SELECT L_KBN.ID, L_KBN.NM FROM L_KBN WHERE KBN=12 ORDER BY L_KBN.ID"));
        break;
    default: return;
    }
    for (; !rs->eof(); rs->MoveNext())
        addItem(c, Nz(rs->Fields(nameCol), Value(QString())).toText(), Nz(rs->Fields(idCol), Value(0)));
    c->setCurrentIndex(-1);
}

void frmPlantInput::setCropList(const QString &group)
{
    mGroup = group;
    QComboBox *c = cmbDATA[2];
    c->clear();
    addEmptyItem(c);
    const QString like = Sql::escaped(group);
    RecordsetPtr rs = gWORK->GetFwdOnlyRst(QStringLiteral("SELECT L_CROP.CROP_NM1 FROM L_CROP WHERE L_CROP.CROP_KBN LIKE '") +
                                           like + QStringLiteral("%' ORDER BY L_CROP.CROP_NM1"));
    for (; !rs->eof(); rs->MoveNext()) {
        const QString nm = Nz(rs->Fields(QStringLiteral("CROP_NM1")), Value(QString())).toText();
        addItem(c, nm, Value(nm));
    }
    c->setCurrentIndex(-1);
}

QString frmPlantInput::chosenGroup() const
{
    // The empty first entry is no group: every crop is offered.
    const QComboBox *c = cmbDATA[1];
    if (c->currentIndex() <= 0)
        return QString();
    return Nz(currentItemData(c), Value(QString())).toText();
}

void frmPlantInput::SetMode()
{
    mDATA.resize(1);
    if (gROW_IDX >= 0 && gROW_IDX < gPLANT_ROWS.size())
        mDATA[0] = gPLANT_ROWS[gROW_IDX];
    PlantRow &r = mDATA[0];
    if (gMODE == Mode::Add) {
        // A copy repeats the planting with new dates.
        r.FMR_ID = gFMR_ID;
        r.START_DATE = r.PLANT_DATE = r.END_DATE = Value::null();
        r.SHIP_SCHD_DATE1 = r.SHIP_SCHD_DATE2 = Value::null();
    }
    switch (gMODE) {
    case Mode::Add:
    case Mode::Change:
        cmdMENU[0]->setText(QStringLiteral("ｷｬﾝｾﾙ"));
        cmdMENU[1]->setText(QStringLiteral("登録"));
        cmdMENU[2]->setText(QStringLiteral("完了"));
        cmdMENU[1]->setVisible(true);
        cmdMENU[2]->setVisible(true);
        break;
    case Mode::View:
        cmdMENU[0]->setText(QStringLiteral("閉じる"));
        cmdMENU[1]->setVisible(false);
        cmdMENU[2]->setVisible(false);
        break;
    case Mode::Delete:
        cmdMENU[0]->setText(QStringLiteral("ｷｬﾝｾﾙ"));
        cmdMENU[1]->setText(QStringLiteral("削除"));
        cmdMENU[1]->setVisible(true);
        cmdMENU[2]->setVisible(false);
        break;
    default: break;
    }
    if (gMODE == Mode::View || gMODE == Mode::Delete)
        lockRecordFields(this);
    DispData();
}

void frmPlantInput::DispData()
{
    const PlantRow &r = mDATA[0];
    lblDATA[0]->setText(textOf(r.PLANT_ID));
    txtDATA[8]->setText(textOf(r.PLANT_NM));
    txtDATA[0]->setText(Plant::harvestYearText(r.HARVEST_SCHD_YM));
    txtDATA[1]->setText(Plant::harvestMonthText(r.HARVEST_SCHD_YM));
    txtDATA[2]->setText(textOf(r.CROP_NM1));
    txtDATA[3]->setText(textOf(r.CROP_NM2));
    txtDATA[4]->setText(textOf(r.PRD_ID));
    txtDATA[5]->setText(textOf(r.PRD_NM));
    txtDATA[6]->setText(textOf(r.FIELD_NM));
    txtDATA[7]->setText(textOf(r.AREA));
    lblDATA[1]->setText(textOf(r.CROP_EST));
    txtDATA[11]->setText(Sql::dayText(r.PLANT_DATE));
    txtDATA[9]->setText(Sql::dayText(r.START_DATE));
    txtDATA[10]->setText(Sql::dayText(r.END_DATE));
    txtDATA[12]->setText(textOf(r.SHIP_EST));
    txtDATA[13]->setText(Sql::dayText(r.SHIP_SCHD_DATE1));
    txtDATA[14]->setText(Sql::dayText(r.SHIP_SCHD_DATE2));
    txtDATA[15]->setText(textOf(r.NOTES1));
    txtDATA[16]->setText(textOf(r.NOTES2));

    // The crop's group, then the crops of that group.
    const QString crop = textOf(r.CROP_NM);
    const Value group = gWORK->DLookup(QStringLiteral("CROP_KBN"), QStringLiteral("L_CROP"),
                                       QStringLiteral("CROP_NM1=") + Sql::quoted(crop));
    selectItemData(cmbDATA[1], group);
    setCropList(Nz(group, Value(QString())).toText());
    cmbDATA[2]->setCurrentIndex(crop.isEmpty() ? -1 : cmbDATA[2]->findText(crop, Qt::MatchExactly));
    selectItemData(cmbDATA[0], r.FMR_ID);
    selectItemData(cmbDATA[3], r.PLANT_TYPE);
    selectItemData(cmbDATA[5], r.SHIP_EST_UNIT);
    mChanged = false;
}

bool frmPlantInput::txtLeave(int index)
{
    if (!mChanged)
        return true;
    PlantRow &r = mDATA[0];
    const QString text = txtDATA[index]->text();
    if (among(kNumberBoxes, index) && !text.isEmpty() && !IsNumeric(Value(text))) {
        ShowMsg(QStringLiteral("数値を指定してください。"), Msg::Exclamation);
        return false;
    }
    if (index == 4 && !text.isEmpty() && !isCode(text)) {
        ShowMsg(QStringLiteral("商品コードは８桁までの整数で指定してください。"), Msg::Exclamation);
        return false;
    }
    if (among(kDateBoxes, index) && !text.isEmpty()) {
        if (!IsDate(Value(text))) {
            ShowMsg(QStringLiteral("日付を指定してください。"), Msg::Exclamation);
            return false;
        }
        if (!isStorableDate(text)) {
            ShowMsg(QStringLiteral("日付は1000年から9999年までで指定してください。"), Msg::Exclamation);
            return false;
        }
    }
    switch (index) {
    case 0:
    case 1:
        if (text.isEmpty()) {
            r.HARVEST_SCHD_YM = Value::null();
        } else {
            // The first of the month: a month 13 is January of the next year.
            const Plant::HarvestMonth h =
                Plant::harvestMonth(txtDATA[0]->text(), txtDATA[1]->text(), QDate::currentDate());
            if (!h.ok) {
                ShowMsg(QStringLiteral("収穫予定月を正しく指定してください。"), Msg::Exclamation);
                return false;
            }
            r.YYYY = Value(h.year);
            r.HARVEST_SCHD_YM = Value(h.ym);
            txtDATA[0]->setText(QString::number(h.year));
            txtDATA[1]->setText(QString::number(h.month));
        }
        break;
    case 4:
        if (!text.isEmpty()) {
            r.PRD_ID = numberOrNull(text);
            const Value nm = gMST->DLookup(QStringLiteral("PRD_NM"), QStringLiteral("M_PRD"),
                                           QStringLiteral("PRD_ID=") + Sql::number(r.PRD_ID));
            r.PRD_NM = textOrNull(textOf(nm));
        } else {
            r.PRD_ID = r.PRD_NM = Value::null();
        }
        break;
    case 2: r.CROP_NM1 = textOrNull(text); break;
    case 3: r.CROP_NM2 = textOrNull(text); break;
    case 5: r.PRD_NM = textOrNull(text); break;
    case 6: r.FIELD_NM = textOrNull(text); break;
    case 8: r.PLANT_NM = textOrNull(text); break;
    case 15: r.NOTES1 = textOrNull(text); break;
    case 16: r.NOTES2 = textOrNull(text); break;
    case 7: r.AREA = numberOrNull(text); break;
    case 12: r.SHIP_EST = numberOrNull(text); break;
    case 9: r.START_DATE = dateOrNull(text); break;
    case 10: r.END_DATE = dateOrNull(text); break;
    case 11: r.PLANT_DATE = dateOrNull(text); break;
    case 13: r.SHIP_SCHD_DATE1 = dateOrNull(text); break;
    case 14: r.SHIP_SCHD_DATE2 = dateOrNull(text); break;
    default: break;
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
    const Value id = c->currentIndex() >= 0 ? currentItemData(c) : Value::null();
    switch (index) {
    case 0: r.FMR_ID = id; break;
    case 3: r.PLANT_TYPE = id; break;
    case 5: r.SHIP_EST_UNIT = id; break;
    case 1: {
        const QString group = chosenGroup();
        if (group != mGroup) {
            setCropList(group);
            const QString crop = textOf(r.CROP_NM);
            cmbDATA[2]->setCurrentIndex(crop.isEmpty() ? -1 : cmbDATA[2]->findText(crop, Qt::MatchExactly));
        }
        break;
    }
    case 2: {
        if (c->currentIndex() <= 0) {
            r.CROP_NM = Value::null();
            break;
        }
        const QString crop = c->itemText(c->currentIndex());
        if (crop == textOf(r.CROP_NM))
            break;
        // Another crop: its name is the variety, and its item comes with it.
        r.CROP_NM = Value(crop);
        txtDATA[2]->setText(crop);
        txtLeave(2);
        const Value item = gWORK->DLookup(QStringLiteral("CROP_NM2"), QStringLiteral("L_CROP"),
                                          QStringLiteral("CROP_NM1=") + Sql::quoted(crop));
        txtDATA[3]->setText(textOf(item));
        txtLeave(3);
        break;
    }
    default: break;
    }
    return true;
}

bool frmPlantInput::ChkData()
{
    PlantRow &r = mDATA[0];
    if (gMODE == Mode::Add)
        r.PLANT_ID = Plant::nextPlantId(r.FMR_ID);
    if (gMODE == Mode::Delete) {
        const QString refusal = Plant::deleteRefusal(r.FMR_ID, r.PLANT_ID);
        if (!refusal.isEmpty()) {
            ShowMsg(refusal, Msg::Exclamation);
            return false;
        }
        return true;
    }
    if (gMODE == Mode::Add || gMODE == Mode::Change) {
        if (txtDATA[8]->text().isEmpty()) {
            ShowMsg(QStringLiteral("名称は必須入力です。"), Msg::Exclamation);
            txtDATA[8]->setFocus();
            return false;
        }
        if (txtDATA[0]->text().isEmpty()) {
            ShowMsg(QStringLiteral("収穫年は必須入力です。"), Msg::Exclamation);
            txtDATA[0]->setFocus();
            return false;
        }
    }
    return true;
}

void frmPlantInput::SaveData()
{
    gLAST_PLANT_ID = mDATA[0].PLANT_ID;
    if (!Plant::saveRecord(gMODE, mDATA[0], GetCompName()))
        ShowMsg(QStringLiteral("該当データが存在しません。"), Msg::Critical);
}
