#include "screens/pesticide/frmChemiInput.h"

#include "base/Globals.h"
#include "base/Helpers.h"
#include "base/Msg.h"
#include "rules/common/Ids.h"
#include "screens/diary/frmDairyCal.h"
#include "store/Database.h"
#include "ui/Entry.h"
#include "ui/Skeletons.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>

namespace {

// In the order of entry: the tab order follows the table.
const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "農薬入力", 300, 150, 4000, 540},

    {"fraCHEMI", CtlKind::Frame, "農薬", 300, 800, 5900, 3860},
    {"lblCAP(0)", CtlKind::Label, "農薬ID", 100, 380, 1400, 390, "fraCHEMI"},
    {"lblDATA(0)", CtlKind::Data, "", 1600, 380, 1000, 390, "fraCHEMI"},
    {"lblCAP(1)", CtlKind::Label, "登録番号", 100, 860, 1400, 390, "fraCHEMI"},
    {"txtDATA(0)", CtlKind::Text, "", 1600, 860, 1000, 390, "fraCHEMI"},
    {"lblCAP(2)", CtlKind::Label, "農薬名", 100, 1340, 1400, 390, "fraCHEMI"},
    {"txtDATA(1)", CtlKind::Text, "", 1600, 1340, 4100, 390, "fraCHEMI"},
    {"lblCAP(3)", CtlKind::Label, "種類", 100, 1820, 1400, 390, "fraCHEMI"},
    {"txtDATA(2)", CtlKind::Text, "", 1600, 1820, 4100, 390, "fraCHEMI"},
    {"lblCAP(4)", CtlKind::Label, "メーカー名", 100, 2300, 1400, 390, "fraCHEMI"},
    {"txtDATA(3)", CtlKind::Text, "", 1600, 2300, 4100, 390, "fraCHEMI"},
    {"lblCAP(5)", CtlKind::Label, "用途", 100, 2780, 1400, 390, "fraCHEMI"},
    {"cmbDATA(0)", CtlKind::ComboEdit, "", 1600, 2780, 2600, 390, "fraCHEMI"},
    {"lblCAP(6)", CtlKind::Label, "剤型名", 100, 3260, 1400, 390, "fraCHEMI"},
    {"cmbDATA(1)", CtlKind::ComboEdit, "", 1600, 3260, 2600, 390, "fraCHEMI"},

    {"fraPUR", CtlKind::Frame, "購入", 6400, 800, 5700, 3860},
    {"lblCAP(7)", CtlKind::Label, "購入日", 100, 380, 1300, 390, "fraPUR"},
    {"txtDATA(4)", CtlKind::Text, "", 1500, 380, 1500, 390, "fraPUR"},
    {"lblCAP(8)", CtlKind::Label, "購入先", 100, 860, 1300, 390, "fraPUR"},
    {"txtDATA(5)", CtlKind::Text, "", 1500, 860, 4000, 390, "fraPUR"},
    {"lblCAP(9)", CtlKind::Label, "購入数", 100, 1340, 1300, 390, "fraPUR"},
    {"txtDATA(6)", CtlKind::Text, "", 1500, 1340, 1200, 390, "fraPUR"},
    {"cmbDATA(2)", CtlKind::ComboEdit, "", 2800, 1340, 1300, 390, "fraPUR"},
    {"lblCAP(10)", CtlKind::Label, "支払", 100, 1820, 1300, 390, "fraPUR"},
    {"Option1(0)", CtlKind::Option, "現金", 1500, 1820, 1000, 390, "fraPUR"},
    {"Option1(1)", CtlKind::Option, "買掛", 2600, 1820, 1000, 390, "fraPUR"},
    {"lblCAP(11)", CtlKind::Label, "購入額", 100, 2300, 1300, 390, "fraPUR"},
    {"txtDATA(7)", CtlKind::Text, "", 1500, 2300, 1500, 390, "fraPUR"},
    {"lblUNIT(0)", CtlKind::Label, "円", 3050, 2300, 400, 390, "fraPUR"},
    {"lblCAP(12)", CtlKind::Label, "使用量", 100, 2780, 1300, 390, "fraPUR"},
    {"lblDATA(1)", CtlKind::Data, "", 1500, 2780, 1200, 390, "fraPUR"},
    {"lblCAP(13)", CtlKind::Label, "残量", 100, 3260, 1300, 390, "fraPUR"},
    {"lblDATA(2)", CtlKind::Data, "", 1500, 3260, 1200, 390, "fraPUR"},

    {"lblCAP(14)", CtlKind::Label, "備考", 300, 4820, 1400, 390},
    {"txtDATA(8)", CtlKind::Text, "", 1900, 4820, 8300, 390},
    {"Check1", CtlKind::Check, "有効", 10700, 4820, 1300, 390},

    {"Frame2", CtlKind::Frame, "登録内容", 300, 5350, 11800, 2950},
    {"lblCAP(15)", CtlKind::Label, "作物", 100, 380, 2000, 390, "Frame2"},
    {"cmbINFO", CtlKind::ComboEdit, "", 2200, 380, 2600, 390, "Frame2"},
    {"lblCAP(16)", CtlKind::Label, "適用病害虫・目的", 100, 860, 2000, 390, "Frame2"},
    {"lblINFO(0)", CtlKind::Data, "", 2200, 860, 8900, 390, "Frame2"},
    {"lblCAP(17)", CtlKind::Label, "希釈倍数使用量散布量", 100, 1340, 2000, 390, "Frame2"},
    {"lblINFO(1)", CtlKind::Data, "", 2200, 1340, 8900, 390, "Frame2"},
    {"lblCAP(18)", CtlKind::Label, "使用時期", 100, 1820, 2000, 390, "Frame2"},
    {"lblINFO(2)", CtlKind::Data, "", 2200, 1820, 8900, 390, "Frame2"},
    {"lblCAP(19)", CtlKind::Label, "回数 使用方法", 100, 2300, 2000, 390, "Frame2"},
    {"lblINFO(3)", CtlKind::Data, "", 2200, 2300, 8900, 390, "Frame2"},
    {"VScroll1", CtlKind::VScroll, "", 11200, 860, 300, 1830, "Frame2"},

    {"cmdMENU(1)", CtlKind::Button, "登録", 10500, 8500, 1600, 540},
    {"cmdMENU(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 300, 8500, 1600, 540},
    {"MonthView1", CtlKind::Calendar, "", 8000, 1200, 3900, 2800},
};

// Length limits and input modes of txtDATA(0) .. txtDATA(8).
const struct {
    int length;
    ImeMode mode;
} kLimits[9] = {
    {5, ImeMode::Disabled},   {100, ImeMode::Hiragana}, {100, ImeMode::Hiragana},
    {50, ImeMode::Hiragana},  {10, ImeMode::Disabled},  {50, ImeMode::Hiragana},
    {10, ImeMode::Disabled},  {10, ImeMode::Disabled},  {50, ImeMode::Hiragana},
};

} // namespace

frmChemiInput::frmChemiInput(Mode mode, const ChemiRow &row, QWidget *parent)
    : Form(QStringLiteral("frmChemiInput"), 12400, 9200, parent), mMode(mode), mOpened(row)
{
    setWindowTitle(QStringLiteral("農薬入力"));
    setSizable(true);
    setTrapStyle(TrapStyle::Description);
    // The scroll bar keeps its own size.
    scaleRules().skip << QStringLiteral("VSc");
    buildControls(kControls, int(std::size(kControls)));
    txtDATA = array<QLineEdit>(QStringLiteral("txtDATA"), Chemi::BoxCount);
    cmbDATA = array<QComboBox>(QStringLiteral("cmbDATA"), 3);
    lblDATA = array<QLabel>(QStringLiteral("lblDATA"), 3);
    lblINFO = array<QLabel>(QStringLiteral("lblINFO"), 4);
    Option1 = array<QRadioButton>(QStringLiteral("Option1"), 2);
    cmdMENU = array<QPushButton>(QStringLiteral("cmdMENU"), 2);
    Check1 = ctl<QCheckBox>(QStringLiteral("Check1"));
    cmbINFO = ctl<QComboBox>(QStringLiteral("cmbINFO"));
    VScroll1 = ctl<QScrollBar>(QStringLiteral("VScroll1"));
    Frame2 = ctl<QGroupBox>(QStringLiteral("Frame2"));

    ctl<QLabel>(QStringLiteral("lblUNIT(0)"))->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    for (QLabel *l : lblDATA)
        l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    for (int i : {Chemi::QtyBox, Chemi::AmountBox})
        txtDATA[i]->setAlignment(Qt::AlignRight);
    VScroll1->setRange(0, 0);
    VScroll1->setPageStep(1);

    for (int i = 0; i < Chemi::BoxCount; ++i) {
        setFieldLimit(txtDATA[i], kLimits[i].length, kLimits[i].mode);
        connect(txtDATA[i], &QLineEdit::textChanged, this, [this] { mChanged = true; });
        entry().setLeaveCheck(txtDATA[i], [this, i] { return txtLeave(i); });
    }
    entry().registerDateField(txtDATA[Chemi::DateBox], Chemi::DateBox);
    for (int i = 0; i < 3; ++i)
        entry().setLeaveCheck(cmbDATA[i], [this, i] { return cmbLeave(i); });
    entry().setLeaveCheck(cmbINFO, [this] { return cmbInfoLeave(); });
    connect(Option1[0], &QRadioButton::clicked, this, [this] { mDATA[0].ACC_ID = Value(Acc::Cash); });
    connect(Option1[1], &QRadioButton::clicked, this, [this] { mDATA[0].ACC_ID = Value(Acc::Payable); });
    connect(Check1, &QCheckBox::clicked, this, [this] { mDATA[0].CHK_FLG = Value(Check1->isChecked() ? 1 : 0); });
    connect(VScroll1, &QScrollBar::valueChanged, this, [this] { trap([this] { DispAppl(); }); });

    onClick(cmdMENU[0], [this] { close(); }, false);
    onClick(cmdMENU[1], [this] {
        if (!ChkData())
            return;
        bool saved = false;
        if (!EntryScreen::saveOrReload([this, &saved] { saved = SaveData(); }, [this] { reload(); }) || !saved)
            return;
        // The list reads its lots again when the screen is accepted.
        if (auto *cal = qobject_cast<frmDairyCal *>(Form::find(QStringLiteral("frmDairyCal"))))
            cal->DispData();
        done(QDialog::Accepted);
    });
    EntryScreen::askBeforeClose(this, cmdMENU[1], [this] { return mMode; });
}

void frmChemiInput::onLoad()
{
    SetDefSize();
    applyWindowState();
}

void frmChemiInput::onResize()
{
    // A new size starts the entry over from the row it was opened for. The
    // registered uses are offered only for a lot that had its number then.
    SetSize();
    InitForm();
    SetMode();
    if (!Chemi::registered(mDATA[0])) {
        Frame2->setVisible(false);
    } else {
        SetCmbInfo();
        Frame2->setVisible(true);
    }
}

void frmChemiInput::onActivate()
{
    applyWindowState();
    // Viewing and deleting leave the locked first box.
    if (mMode == Mode::View || mMode == Mode::Delete) {
        QWidget *from = focusWidget();
        sendTab(from ? from : this);
    }
}

void frmChemiInput::onUnload()
{
    if (gDB)
        gDB->ReleaseData(QStringLiteral("D_CHEMI"), QString());
}

void frmChemiInput::InitForm()
{
    mDATA = QVector<ChemiRow>(1);
    for (int i = 0; i < 3; ++i)
        SetCmb(i);
}

void frmChemiInput::SetCmb(int index)
{
    QVector<Choice> entries;
    switch (index) {
    case Chemi::UsesList: entries = Chemi::uses(); break;
    case Chemi::TypeList: entries = Chemi::formulations(); break;
    case Chemi::UnitList: entries = Chemi::units(); break;
    default: return;
    }
    fillChoices(cmbDATA[index], entries);
}

void frmChemiInput::SetCmbInfo()
{
    const QStringList crops = Chemi::crops();
    cmbINFO->clear();
    for (const QString &nm : crops)
        addItem(cmbINFO, nm, Value(nm));
    cmbINFO->setCurrentIndex(-1);
    mAPPL.clear();
    VScroll1->setRange(0, 0);
    DispAppl();
}

void frmChemiInput::SetMode()
{
    mDATA.resize(1);
    mDATA[0] = Chemi::openRecord(mMode, mOpened, gFMR_ID);
    // The crop of the registered uses stays open while the lot is only shown
    // or deleted, so that the uses can be read; the payment is locked too.
    const Qt::FocusPolicy cropFocus = cmbINFO->focusPolicy();
    EntryScreen::setMode(this, cmdMENU[0], cmdMENU[1], mMode);
    if (mMode == Mode::View || mMode == Mode::Delete) {
        setComboLocked(cmbINFO, false);
        cmbINFO->setFocusPolicy(cropFocus);
        for (QRadioButton *o : Option1)
            o->setEnabled(false);
    }
    DispData();
}

void frmChemiInput::DispData()
{
    const ChemiRow &r = mDATA[0];
    lblDATA[0]->setText(textOf(r.CHEMI_ID));
    lblDATA[1]->setText(textOf(r.USED_QTY));
    lblDATA[2]->setText(textOf(r.REST_QTY));
    txtDATA[Chemi::RegNoBox]->setText(textOf(r.REG_NO));
    txtDATA[Chemi::NameBox]->setText(textOf(r.CHEMI_NM));
    txtDATA[Chemi::KindBox]->setText(textOf(r.CHEMI_KIND));
    txtDATA[Chemi::MakerBox]->setText(textOf(r.MAKER_NM));
    txtDATA[Chemi::DateBox]->setText(DateUtil::dayText(r.PUR_DATE));
    txtDATA[Chemi::ShopBox]->setText(textOf(r.PUR_SHOP));
    txtDATA[Chemi::QtyBox]->setText(textOf(r.PUR_QTY));
    txtDATA[Chemi::AmountBox]->setText(textOf(r.PUR_AMT));
    txtDATA[Chemi::NotesBox]->setText(textOf(r.NOTES));
    selectItemData(cmbDATA[Chemi::UsesList], r.USES);
    selectItemData(cmbDATA[Chemi::TypeList], r.CHEMI_TYPE);
    selectItemData(cmbDATA[Chemi::UnitList], r.PUR_UNIT);
    // Neither option stands for an account that is neither.
    for (QRadioButton *o : Option1)
        o->setAutoExclusive(false);
    Option1[0]->setChecked(isNumber(r.ACC_ID, Acc::Cash));
    Option1[1]->setChecked(isNumber(r.ACC_ID, Acc::Payable));
    for (QRadioButton *o : Option1)
        o->setAutoExclusive(true);
    Check1->setChecked(hasValue(r.CHK_FLG) && r.CHK_FLG.toBool());
    mChanged = false;
}

void frmChemiInput::SetChemiData() { Chemi::setChemiData(mDATA[0]); }

bool frmChemiInput::txtLeave(int index)
{
    if (!mChanged)
        return true;
    Chemi::leaveBox(mDATA[0], index, txtDATA[index]->text());
    DispData();
    return true;
}

bool frmChemiInput::cmbLeave(int index)
{
    QComboBox *c = cmbDATA[index];
    if (!settleComboText(c))
        return false;
    Chemi::leaveList(mDATA[0], index, c->currentIndex() >= 0 ? currentItemData(c) : Value::null());
    return true;
}

bool frmChemiInput::cmbInfoLeave()
{
    if (!settleComboText(cmbINFO, QStringLiteral("一覧にある作物を選択してください。"), EmptyText::NoChoice))
        return false;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    struct Restore {
        ~Restore() { QApplication::restoreOverrideCursor(); }
    } restore;
    SetAppl();
    return true;
}

void frmChemiInput::SetAppl()
{
    const QString crop = cmbINFO->currentIndex() >= 0 ? cmbINFO->itemText(cmbINFO->currentIndex()) : QString();
    mAPPL.clear();
    VScroll1->setRange(0, 0);
    VScroll1->setValue(0);
    mAPPL = Chemi::applicationsFor(mDATA[0], crop);
    VScroll1->setRange(0, std::max(0, int(mAPPL.size()) - 1));
    VScroll1->setValue(0);
    DispAppl();
}

void frmChemiInput::DispAppl()
{
    const int at = VScroll1->value();
    const QStringList texts =
        at >= 0 && at < mAPPL.size() ? Chemi::applTexts(mAPPL[at]) : QStringList(lblINFO.size(), QString());
    for (int i = 0; i < lblINFO.size(); ++i)
        lblINFO[i]->setText(texts[i]);
}

bool frmChemiInput::ChkData()
{
    const Chemi::Refusal refusal = Chemi::check(mDATA[0], mMode);
    if (refusal.ok())
        return true;
    ShowMsg(refusal.message, Msg::Exclamation);
    if (refusal.box >= 0)
        txtDATA[refusal.box]->setFocus();
    return false;
}

void frmChemiInput::reload()
{
    if (!Chemi::rereadLot(mDATA[0])) {
        ShowMsg(QStringLiteral("該当データが存在しません。"), Msg::Critical);
        return;
    }
    DispData();
}

bool frmChemiInput::SaveData()
{
    if (!Chemi::saveLot(mMode, mDATA[0], GetCompName())) {
        ShowMsg(QStringLiteral("該当データが存在しません。"), Msg::Critical);
        return false;
    }
    return true;
}
