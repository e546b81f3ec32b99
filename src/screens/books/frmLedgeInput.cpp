#include "screens/books/frmLedgeInput.h"

#include "rules/books/Ledger.h"
#include "screens/books/frmLedgeList.h"

#include "base/AppError.h"
#include "ui/Entry.h"
#include "base/Helpers.h"
#include "base/Msg.h"
#include "screens/diary/frmDairyCal.h"
#include "store/Database.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <cmath>

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

// The largest amount the currency column holds.
constexpr double kMaxAmount = 922337203685477.0;

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

frmLedgeInput::frmLedgeInput(QWidget *parent)
    : Form(QStringLiteral("frmLedgeInput"), 12400, 9200, parent), mRec(blankLedgeRow())
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
        if (!ChkData() || !SaveData())
            return;
        if (auto *list = qobject_cast<frmLedgeList *>(Form::find(QStringLiteral("frmLedgeList"))))
            list->SetList();
        if (auto *cal = qobject_cast<frmDairyCal *>(Form::find(QStringLiteral("frmDairyCal"))))
            cal->DispData();
        close();
    });
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
    if (gMODE == Mode::View || gMODE == Mode::Delete) {
        QWidget *from = focusWidget();
        sendTab(from ? from : this);
    }
}

void frmLedgeInput::onUnload()
{
    if (gDB)
        gDB->ReleaseData(QStringLiteral("D_LEDGE"), QString());
}

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
    DbObject *db = nullptr;
    QString sql;
    if (index == 0) {
        db = gMST.get();
        sql = QStringLiteral("SELECT M_FMR.FMR_ID, M_FMR.FMR_NM FROM M_FMR WHERE CHK_FLG<>0 ORDER BY FMR_ID");
    } else if (index == 1 || index == 2) {
        db = gWORK.get();
        sql = QStringLiteral("SELECT L_ACC.ACC_ID, L_ACC.ACC_NM FROM L_ACC ORDER BY ACC_ID");
    } else {
        return;
    }
    QComboBox *c = cmbDATA[index];
    c->clear();
    addEmptyItem(c);
    RecordsetPtr rs = db->GetFwdOnlyRst(sql);
    for (; !rs->eof(); rs->MoveNext())
        addItem(c, Nz(rs->Fields(1), Value(QString())).toText(), rs->Fields(0));
    rs->Close();
}

void frmLedgeInput::SetCmbOpt(int index)
{
    if (index != 3 && index != 4)
        return;
    QComboBox *c = cmbDATA[index];
    c->clear();
    addEmptyItem(c);
    c->setCurrentIndex(-1);
    const int kind = mOptKbn[index == 3 ? 0 : 1];
    const QString farmer = Nz(gFMR_ID, Value(0)).toText();
    QString sql;
    if (kind == 2)
        sql = QStringLiteral("SELECT D_PLANT.PLANT_ID, D_PLANT.PLANT_NM FROM D_PLANT WHERE FMR_ID=") + farmer +
              QStringLiteral(" ORDER BY PLANT_ID");
    else if (kind == 3)
        sql = QStringLiteral("SELECT D_CHEMI.CHEMI_ID, D_CHEMI.CHEMI_NM FROM D_CHEMI WHERE FMR_ID=") + farmer +
              QStringLiteral(" AND CHK_FLG<>0 ORDER BY CHEMI_ID");
    if (sql.isEmpty())
        return;
    RecordsetPtr rs = gDB->GetFwdOnlyRst(sql);
    for (; !rs->eof(); rs->MoveNext())
        addItem(c, Nz(rs->Fields(1), Value(QString())).toText(), rs->Fields(0));
    rs->Close();
    c->setCurrentIndex(-1);
}

void frmLedgeInput::accountKind(int side)
{
    const Value acc = chosenId(cmbDATA[1 + side]);
    const int kind = int(Nz(gWORK->DLookup(QStringLiteral("OPT_KBN"), QStringLiteral("L_ACC"),
                                           QStringLiteral("ACC_ID=") + acc.toText()),
                            Value(0))
                             .toLong());
    QComboBox *list = cmbDATA[3 + side];
    if (kind != mOptKbn[side]) {
        mOptKbn[side] = kind;
        if (kind != 0)
            SetCmbOpt(3 + side);
    }
    // A locked slip keeps its lists locked.
    list->setEnabled(kind != 0 && !list->property("locked").toBool());
}

void frmLedgeInput::SetMode()
{
    using namespace LedgeCol;
    mRec = blankLedgeRow();
    if (gROW_IDX >= 0 && gROW_IDX < gLEDGE_ROWS.size())
        mRec = gLEDGE_ROWS[gROW_IDX];
    if (gMODE == Mode::Add) {
        // Also after 複写: a blank slip of today, only the sub-account kinds
        // of the source stay.
        mRec[FMR_ID] = gFMR_ID;
        mRec[LEDGE_DATE] = Value(DateUtil::today());
        for (int c : {LEDGE_ID, CTR_NM, D_ACC_ID, C_ACC_ID, D_OPT_ID, C_OPT_ID, D_OPT_NM, C_OPT_NM, AMT, NOTES, UDATE})
            mRec[c] = Value::null();
    }
    switch (gMODE) {
    case Mode::Add:
    case Mode::Change:
        cmdMENU[0]->setText(QStringLiteral("ｷｬﾝｾﾙ"));
        cmdMENU[1]->setText(QStringLiteral("登録"));
        cmdMENU[1]->setVisible(true);
        break;
    case Mode::View:
        cmdMENU[0]->setText(QStringLiteral("閉じる"));
        cmdMENU[1]->setVisible(false);
        break;
    case Mode::Delete:
        cmdMENU[0]->setText(QStringLiteral("ｷｬﾝｾﾙ"));
        cmdMENU[1]->setText(QStringLiteral("削除"));
        cmdMENU[1]->setVisible(true);
        break;
    default: break;
    }
    if (gMODE == Mode::View || gMODE == Mode::Delete)
        lockRecordFields(this);
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
    if (index == 4 && !text.isEmpty()) {
        double d = 0;
        if (!parseNumber(text, d)) {
            ShowMsg(QStringLiteral("数値を入力してください。"), Msg::Exclamation);
            return false;
        }
        if (std::fabs(d) > kMaxAmount) {
            ShowMsg(QStringLiteral("金額が大きすぎます。"), Msg::Exclamation);
            return false;
        }
        v = Value(Currency::fromDouble(d));
    }
    mRec[kTextColumn[index]] = v;
    mChanged = false;
    return true;
}

bool frmLedgeInput::cmbLeave(int index)
{
    QComboBox *c = cmbDATA[index];
    if (c->isEditable()) {
        const QString text = c->currentText();
        if (text.isEmpty()) {
            c->setCurrentIndex(-1);
        } else if (c->currentIndex() < 0 || c->itemText(c->currentIndex()) != text) {
            const int at = c->findText(text, Qt::MatchExactly);
            if (at < 0) {
                ShowMsg(QStringLiteral("一覧にある項目を選択してください。"), Msg::Exclamation);
                return false;
            }
            c->setCurrentIndex(at);
        }
    }
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
        if (!Ledger::saveSlip(gMODE, mRec, gFMR_ID, GetCompName())) {
            ShowMsg(QStringLiteral("該当データが存在しません。"), Msg::Critical);
            return false;
        }
        gLAST_LEDGE_ID = mRec[LedgeCol::LEDGE_ID];
        return true;
    } catch (const AppError &e) {
        ShowMsg(e.text(), Msg::Critical);
        return false;
    }
}

void frmLedgeInput::SaveCreditCashData() {}
