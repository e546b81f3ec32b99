#include "screens/books/frmLedgeInput.h"

#include "rules/books/Ledger.h"
#include "screens/books/frmLedgeList.h"

#include "base/AppError.h"
#include "base/Helpers.h"
#include "base/Msg.h"
#include "screens/diary/frmDairyCal.h"
#include "ui/Entry.h"
#include "ui/Skeletons.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>


namespace {

// In the order of entry: the tab order follows the table.
const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "伝票入力", 300, 150, 4000, 540},
    {"lblCAP(0)", CtlKind::Label, "ID", 300, 950, 1000, 420},
    {"lblDATA(0)", CtlKind::Data, "", 1400, 950, 1300, 420},
    {"lblCAP(1)", CtlKind::Label, "日付", 2900, 950, 900, 420},
    {"txtDATA(0)", CtlKind::Text, "", 3900, 950, 1800, 420},
    {"lblCAP(2)", CtlKind::Label, "生産者", 6400, 950, 1100, 420},
    {"cmbDATA(0)", CtlKind::Combo, "", 7600, 950, 4500, 420},
    {"lblCAP(3)", CtlKind::Label, "相手先", 300, 1650, 1000, 420},
    {"txtDATA(1)", CtlKind::Text, "", 1400, 1650, 5700, 420},

    {"fraDEBIT", CtlKind::Frame, "借方", 300, 2400, 5800, 2500},
    {"lblCAP(4)", CtlKind::Label, "科目", 100, 450, 900, 420, "fraDEBIT"},
    {"cmbDATA(1)", CtlKind::ComboEdit, "", 1100, 450, 4450, 420, "fraDEBIT"},
    {"lblCAP(5)", CtlKind::Label, "補助", 100, 1150, 900, 420, "fraDEBIT"},
    {"cmbDATA(3)", CtlKind::ComboEdit, "", 1100, 1150, 4450, 420, "fraDEBIT"},
    {"lblCAP(6)", CtlKind::Label, "摘要", 100, 1850, 900, 420, "fraDEBIT"},
    {"txtDATA(2)", CtlKind::Text, "", 1100, 1850, 4450, 420, "fraDEBIT"},

    {"fraCREDIT", CtlKind::Frame, "貸方", 6300, 2400, 5800, 2500},
    {"lblCAP(7)", CtlKind::Label, "科目", 100, 450, 900, 420, "fraCREDIT"},
    {"cmbDATA(2)", CtlKind::ComboEdit, "", 1100, 450, 4450, 420, "fraCREDIT"},
    {"lblCAP(8)", CtlKind::Label, "補助", 100, 1150, 900, 420, "fraCREDIT"},
    {"cmbDATA(4)", CtlKind::ComboEdit, "", 1100, 1150, 4450, 420, "fraCREDIT"},
    {"lblCAP(9)", CtlKind::Label, "摘要", 100, 1850, 900, 420, "fraCREDIT"},
    {"txtDATA(3)", CtlKind::Text, "", 1100, 1850, 4450, 420, "fraCREDIT"},

    {"lblCAP(10)", CtlKind::Label, "備考", 300, 5250, 1000, 420},
    {"txtDATA(5)", CtlKind::Text, "", 1400, 5250, 10700, 420},
    {"lblCAP(11)", CtlKind::Label, "金額", 300, 5950, 1000, 420},
    {"txtDATA(4)", CtlKind::Text, "", 1400, 5950, 2200, 420},
    {"lblUNIT(0)", CtlKind::Label, "円", 3650, 5950, 400, 420},

    {"Shape1", CtlKind::Shape, "", 300, 8250, 11800, 30},
    {"cmdMENU(1)", CtlKind::Button, "登録", 10500, 8500, 1600, 540},
    {"cmdMENU(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 300, 8500, 1600, 540},
    {"MonthView1", CtlKind::Calendar, "", 5800, 950, 3900, 2800},
};

// The column of the row each text box holds.
const int kTextColumn[6] = {LedgeCol::LEDGE_DATE, LedgeCol::CTR_NM, LedgeCol::D_OPT_NM,
                            LedgeCol::C_OPT_NM,   LedgeCol::AMT,    LedgeCol::NOTES};

// The key of the chosen entry; 0 with none.
Value chosenId(const QComboBox *c)
{
    if (c->currentIndex() < 0)
        return Value(0);
    return Nz(currentItemData(c), Value(0));
}

// An empty value chooses the empty first entry, any other the entry with
// that key (or none).
void showChoice(QComboBox *c, const Value &v)
{
    if (!hasValue(v))
        c->setCurrentIndex(c->count() > 0 ? 0 : -1);
    else
        selectItemData(c, v);
}

} // namespace

frmLedgeInput::frmLedgeInput(Mode mode, int row, QWidget *parent)
    : Form(QStringLiteral("frmLedgeInput"), 12400, 9200, parent), mMode(mode), mRow(row), mRec(blankLedgeRow())
{
    setWindowTitle(QStringLiteral("伝票入力"));
    setSizable(true);
    setTrapStyle(TrapStyle::Description);
    scaleRules().noFont << QStringLiteral("Shape1");
    buildControls(kControls, int(std::size(kControls)));
    txtDATA = array<QLineEdit>(QStringLiteral("txtDATA"), 6);
    cmbDATA = array<QComboBox>(QStringLiteral("cmbDATA"), 5);
    lblDATA = ctl<QLabel>(QStringLiteral("lblDATA(0)"));
    cmdMENU = array<QPushButton>(QStringLiteral("cmdMENU"), 2);
    lblDATA->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    ctl<QLabel>(QStringLiteral("lblUNIT(0)"))->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    txtDATA[4]->setAlignment(Qt::AlignRight);

    setFieldLimit(txtDATA[0], 10, ImeMode::Disabled);
    for (int i = 1; i <= 3; ++i)
        setFieldLimit(txtDATA[i], 50, ImeMode::Hiragana);
    setFieldLimit(txtDATA[4], 12, ImeMode::Disabled);
    setFieldLimit(txtDATA[5], 50, ImeMode::Hiragana);
    entry().registerDateField(txtDATA[0], 0);

    for (int i = 0; i < 6; ++i) {
        connect(txtDATA[i], &QLineEdit::textChanged, this, [this] { mChanged = true; });
        entry().setLeaveCheck(txtDATA[i], [this, i] { return txtLeave(i); });
    }
    for (int i = 1; i <= 4; ++i)
        entry().setLeaveCheck(cmbDATA[i], [this, i] { return cmbLeave(i); });

    onClick(cmdMENU[0], [this] { close(); }, false);
    onClick(cmdMENU[1], [this] {
        bool saved = false;
        if (!ChkData() || !EntryScreen::saveOrReload([this, &saved] { saved = SaveData(); }, [this] { reload(); }) ||
            !saved)
            return;
        if (auto *list = qobject_cast<frmLedgeList *>(Form::find(QStringLiteral("frmLedgeList"))))
            list->SetList();
        if (auto *cal = qobject_cast<frmDairyCal *>(Form::find(QStringLiteral("frmDairyCal"))))
            cal->DispData();
        done(QDialog::Accepted);
    });
    EntryScreen::askBeforeClose(this, cmdMENU[1], [this] { return mMode; });
}

void frmLedgeInput::onLoad()
{
    SetDefSize();
    applyWindowState();
}

void frmLedgeInput::onResize()
{
    // A new size starts the slip over from the row it was opened for.
    SetSize();
    InitForm();
    SetMode();
}

void frmLedgeInput::onActivate()
{
    applyWindowState();
    // Viewing and deleting leave the locked first box.
    if (mMode == Mode::View || mMode == Mode::Delete) {
        QWidget *from = focusWidget();
        sendTab(from ? from : this);
    }
}

void frmLedgeInput::onUnload() { Ledger::releaseHolds(); }

void frmLedgeInput::InitForm()
{
    mRec = blankLedgeRow();
    mOptKbn[0] = mOptKbn[1] = 0;
    for (int i = 0; i < cmbDATA.size(); ++i)
        SetCmb(i);
    // No account yet: no sub-account either.
    cmbDATA[3]->setEnabled(false);
    cmbDATA[4]->setEnabled(false);
}

void frmLedgeInput::SetCmb(int index)
{
    if (index < 0 || index > 2)
        return;
    QComboBox *c = cmbDATA[index];
    c->clear();
    addEmptyItem(c);
    for (const Choice &ch : index == 0 ? Ledger::farmers() : Ledger::accounts())
        addItem(c, ch.text, ch.id);
}

void frmLedgeInput::SetCmbOpt(int index)
{
    if (index != 3 && index != 4)
        return;
    QComboBox *c = cmbDATA[index];
    c->clear();
    addEmptyItem(c);
    for (const Choice &ch : Ledger::subAccounts(mOptKbn[index == 3 ? 0 : 1], gFMR_ID))
        addItem(c, ch.text, ch.id);
    c->setCurrentIndex(-1);
}

void frmLedgeInput::accountKind(int side)
{
    const int kind = Ledger::subAccountKind(chosenId(cmbDATA[1 + side]));
    QComboBox *list = cmbDATA[3 + side];
    if (kind != mOptKbn[side]) {
        mOptKbn[side] = kind;
        if (kind != 0)
            SetCmbOpt(3 + side);
    }
    // A locked slip keeps its lists locked, and readable.
    if (!list->property("locked").toBool())
        list->setEnabled(kind != 0);
}

void frmLedgeInput::SetMode()
{
    const bool hasRow = mRow >= 0 && mRow < gLEDGE_ROWS.size();
    mRec = Ledger::startSlip(mMode, hasRow ? gLEDGE_ROWS[mRow] : blankLedgeRow(), gFMR_ID);
    EntryScreen::setMode(this, cmdMENU[0], cmdMENU[1], mMode);
    DispData();
}

void frmLedgeInput::DispData()
{
    using namespace LedgeCol;
    lblDATA->setText(textOf(mRec[LEDGE_ID]));
    for (int i = 0; i < 6; ++i)
        txtDATA[i]->setText(textOf(mRec[kTextColumn[i]]));
    showChoice(cmbDATA[0], mRec[FMR_ID]);
    showChoice(cmbDATA[1], mRec[D_ACC_ID]);
    accountKind(0);
    showChoice(cmbDATA[2], mRec[C_ACC_ID]);
    accountKind(1);
    showChoice(cmbDATA[3], mRec[D_OPT_ID]);
    showChoice(cmbDATA[4], mRec[C_OPT_ID]);
    mChanged = false;
}

bool frmLedgeInput::txtLeave(int index)
{
    if (!mChanged)
        return true;
    const QString text = txtDATA[index]->text();
    Value v = textOrNull(text);
    if (index == 4) {
        const QString refused = Ledger::readAmount(text, v);
        if (!refused.isEmpty()) {
            ShowMsg(refused, Msg::Exclamation);
            return false;
        }
    }
    mRec[kTextColumn[index]] = v;
    mChanged = false;
    return true;
}

bool frmLedgeInput::cmbLeave(int index)
{
    QComboBox *c = cmbDATA[index];
    // Empty text chooses nothing: the slip keeps 0 for the side.
    if (!settleComboText(c, QStringLiteral("一覧にある項目を選択してください。"), EmptyText::NoChoice))
        return false;
    using namespace LedgeCol;
    const Value id = chosenId(c);
    switch (index) {
    case 1:
        mRec[D_ACC_ID] = id;
        accountKind(0);
        break;
    case 2:
        mRec[C_ACC_ID] = id;
        accountKind(1);
        break;
    case 3: mRec[D_OPT_ID] = id; break;
    case 4: mRec[C_OPT_ID] = id; break;
    default: break;
    }
    return true;
}

// Nothing is refused here: a slip without a date, an account or an amount is
// saved as it is.
bool frmLedgeInput::ChkData() { return true; }

bool frmLedgeInput::SaveData()
{
    try {
        if (!Ledger::saveSlip(mMode, mRec, gFMR_ID, GetCompName())) {
            ShowMsg(QStringLiteral("該当データが存在しません。"), Msg::Critical);
            return false;
        }
        gLAST_LEDGE_ID = mRec[LedgeCol::LEDGE_ID];
        return true;
    } catch (const AppError &e) {
        if (e.number() == VbErr::RecordChanged)
            throw;
        ShowMsg(e.text(), Msg::Critical);
        return false;
    }
}

void frmLedgeInput::reload()
{
    if (!Ledger::rereadSlip(mRec)) {
        ShowMsg(QStringLiteral("該当データが存在しません。"), Msg::Critical);
        return;
    }
    DispData();
}
