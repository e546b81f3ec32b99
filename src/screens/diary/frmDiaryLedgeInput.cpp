#include "screens/diary/frmDiaryLedgeInput.h"

#include "ui/Entry.h"
#include "rules/diary/BookPage.h"
#include "screens/diary/frmDairyInput.h"
#include "store/Database.h"
#include "store/Lookup.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "", 300, 150, 6000, 540},
    {"lblCAP(0)", CtlKind::Label, "ID", 300, 900, 900, 420},
    {"lblDATA(0)", CtlKind::Data, "", 1250, 880, 1500, 420},
    {"lblCAP(1)", CtlKind::Label, "日付", 3000, 900, 900, 420},
    {"txtDATA(0)", CtlKind::Text, "", 3950, 880, 1800, 420},
    {"lblCAP(2)", CtlKind::Label, "生産者", 6200, 900, 1000, 420},
    {"cmbDATA(0)", CtlKind::Combo, "", 7250, 880, 3000, 420},
    {"lblCAP(3)", CtlKind::Label, "相手先", 300, 1500, 900, 420},
    {"txtDATA(1)", CtlKind::Text, "", 1250, 1480, 5000, 420},
    {"fraOTHER", CtlKind::Frame, "相手科目", 300, 2100, 5900, 2300},
    {"lblCAP(4)", CtlKind::Label, "科目", 100, 420, 900, 420, "fraOTHER"},
    {"cmbDATA(1)", CtlKind::ComboEdit, "", 1050, 400, 4600, 420, "fraOTHER"},
    {"lblOPT_CAP(0)", CtlKind::Label, "補助", 100, 1020, 900, 420, "fraOTHER"},
    {"cmbDATA(2)", CtlKind::Combo, "", 1050, 1000, 4600, 420, "fraOTHER"},
    {"lblOPT_NM_CAP(0)", CtlKind::Label, "摘要", 100, 1620, 900, 420, "fraOTHER"},
    {"txtDATA(3)", CtlKind::Text, "", 1050, 1600, 4600, 420, "fraOTHER"},
    {"fraBOOK", CtlKind::Frame, "", 6400, 2100, 5700, 2300},
    {"lblOPT_CAP(1)", CtlKind::Label, "補助", 100, 1020, 1200, 420, "fraBOOK"},
    {"cmbDATA(3)", CtlKind::Combo, "", 1350, 1000, 4100, 420, "fraBOOK"},
    {"lblOPT_NM_CAP(1)", CtlKind::Label, "", 100, 1620, 1200, 420, "fraBOOK"},
    {"txtDATA(2)", CtlKind::Text, "", 1350, 1600, 4100, 420, "fraBOOK"},
    {"lblCAP(5)", CtlKind::Label, "備考", 300, 4650, 900, 420},
    {"txtDATA(4)", CtlKind::Text, "", 1250, 4630, 5000, 420},
    {"lblAMT_CAP(0)", CtlKind::Label, "", 300, 5250, 900, 420},
    {"txtDATA(5)", CtlKind::Text, "", 1250, 5230, 2000, 420},
    {"lblAMT_CAP(1)", CtlKind::Label, "", 3500, 5250, 900, 420},
    {"txtDATA(6)", CtlKind::Text, "", 4450, 5230, 2000, 420},
    {"cmdMENU(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 300, 6300, 1800, 600},
    {"cmdMENU(1)", CtlKind::Button, "設定", 10300, 6300, 1800, 600},
};

// Captions by book: heading, left amount, right amount, the book side's name.
struct BookCaptions {
    int book;
    const char *title, *left, *right, *ownName;
};
const BookCaptions kCaptions[] = {
    {1000, "現金出納帳入力", "入金", "出金", "現金適用"},
    {1010, "預金帳入力", "預入", "払出", "預金適用"},
    {1040, "売掛帳入力", "発生", "回収", "売掛金適用"},
    {2000, "買掛帳入力", "発生", "支払", "買掛金適用"},
};

double amountOf(const QString &t)
{
    double d = 0;
    return parseNumber(t, d) ? d : 0;
}
// The item data of the selection, Null with none (or an empty list).
Value chosen(const QComboBox *c) { return c->currentIndex() >= 0 ? currentItemData(c) : Value::null(); }

} // namespace

frmDiaryLedgeInput::frmDiaryLedgeInput(QWidget *parent)
    : Form(QStringLiteral("frmDiaryLedgeInput"), 12400, 7200, parent), mRec(blankLedgeRow())
{
    setWindowTitle(QStringLiteral("元帳入力"));
    setSizable(true);
    setTrapStyle(TrapStyle::Description);
    buildControls(kControls, int(std::size(kControls)));
    txtDATA = array<QLineEdit>(QStringLiteral("txtDATA"), 7);
    cmbDATA = array<QComboBox>(QStringLiteral("cmbDATA"), 4);
    cmdMENU = array<QPushButton>(QStringLiteral("cmdMENU"), 2);
    setFieldLimit(txtDATA[0], 10, ImeMode::Disabled);
    for (int i = 1; i <= 4; ++i)
        setFieldLimit(txtDATA[i], 50, ImeMode::Hiragana);
    setFieldLimit(txtDATA[5], 12, ImeMode::Disabled);
    setFieldLimit(txtDATA[6], 12, ImeMode::Disabled);
    for (int i : {5, 6})
        txtDATA[i]->setAlignment(Qt::AlignRight);

    // The other account: typed text must name an entry; empty text chooses none.
    entry().setLeaveCheck(cmbDATA[1], [this] {
        QComboBox *c = cmbDATA[1];
        const QString t = c->currentText();
        if (t.isEmpty()) {
            c->setCurrentIndex(-1);
            return true;
        }
        const int at = c->findText(t, Qt::MatchExactly);
        if (at < 0)
            return false; // the focus stays, silently
        c->setCurrentIndex(at);
        accountChosen();
        return true;
    });
    // One side carries the amount.
    entry().setLeaveCheck(txtDATA[5], [this] {
        if (amountOf(txtDATA[5]->text()) > 0)
            txtDATA[6]->setText(QStringLiteral("0"));
        return true;
    });
    entry().setLeaveCheck(txtDATA[6], [this] {
        if (amountOf(txtDATA[6]->text()) > 0)
            txtDATA[5]->setText(QStringLiteral("0"));
        return true;
    });
    const struct {
        int field, column;
    } kept[] = {{0, LedgeCol::LEDGE_DATE}, {1, LedgeCol::CTR_NM}, {4, LedgeCol::NOTES}};
    for (const auto &k : kept) {
        QLineEdit *f = txtDATA[k.field];
        const int col = k.column;
        entry().setLeaveCheck(f, [this, f, col] {
            mRec[col] = textOrNull(f->text());
            return true;
        });
    }
    onClick(cmdMENU[0], [this] { close(); }, false);
    onClick(cmdMENU[1], [this] {
        if (ChkData() && SaveData())
            close();
    });
}

int frmDiaryLedgeInput::book() const { return int(Nz(gBOOK_ACC_ID, Value(0)).toLong()); }

void frmDiaryLedgeInput::onLoad()
{
    SetDefSize();
    applyWindowState();
}

void frmDiaryLedgeInput::onResize()
{
    SetSize();
    InitForm();
    SetMode();
}

void frmDiaryLedgeInput::InitForm()
{
    mRec = blankLedgeRow();
    mOptKbn = 0;
    for (int i = 0; i < cmbDATA.size(); ++i)
        SetCmb(i);
}

void frmDiaryLedgeInput::SetCmb(int index)
{
    QComboBox *c = cmbDATA[index];
    auto fill = [c](DbObject *db, const QString &sql) {
        c->clear();
        addEmptyItem(c);
        RecordsetPtr rs = db->GetFwdOnlyRst(sql);
        for (; !rs->eof(); rs->MoveNext())
            addItem(c, textOf(rs->Fields(1)), rs->Fields(0));
        c->setCurrentIndex(-1);
    };
    if (index == 0)
        fill(gMST.get(), QStringLiteral("SELECT  M_FMR.FMR_ID,  M_FMR.FMR_NM  FROM M_FMR  WHERE CHK_FLG<>0 ORDER BY FMR_ID"));
    else if (index == 1)
        fill(gWORK.get(), QStringLiteral("SELECT  L_ACC.ACC_ID,  L_ACC.ACC_NM  FROM L_ACC  ORDER BY ACC_ID"));
}

void frmDiaryLedgeInput::SetCmbOpt(int index)
{
    if (index != 2)
        return;
    QComboBox *c = cmbDATA[2];
    c->clear();
    addEmptyItem(c);
    const QString farmer = Nz(gFMR_ID, Value(0)).toText();
    QString sql;
    if (mOptKbn == 2)
        sql = QStringLiteral("SELECT  D_PLANT.PLANT_ID,  D_PLANT.PLANT_NM  FROM D_PLANT  WHERE FMR_ID=") + farmer +
              QStringLiteral(" ORDER BY PLANT_ID");
    else if (mOptKbn == 3)
        sql = QStringLiteral("SELECT  D_CHEMI.CHEMI_ID,  D_CHEMI.CHEMI_NM  FROM D_CHEMI  WHERE FMR_ID=") + farmer +
              QStringLiteral(" AND CHK_FLG<>0 ORDER BY CHEMI_ID");
    if (!sql.isEmpty()) {
        RecordsetPtr rs = gDB->GetFwdOnlyRst(sql);
        for (; !rs->eof(); rs->MoveNext())
            addItem(c, textOf(rs->Fields(1)), rs->Fields(0));
    }
    c->setCurrentIndex(-1);
}

void frmDiaryLedgeInput::accountChosen()
{
    const Value acc = chosen(cmbDATA[1]);
    if (!hasValue(acc))
        return;
    const int kind = int(Nz(gWORK->DLookup(QStringLiteral("OPT_KBN"), QStringLiteral("L_ACC"),
                                           QStringLiteral("ACC_ID=") + acc.toText()),
                            Value(0))
                             .toLong());
    if (kind == mOptKbn)
        return;
    mOptKbn = kind;
    const bool shown = kind != 0;
    if (shown)
        SetCmbOpt(2);
    control(QStringLiteral("lblOPT_CAP(0)"))->setVisible(shown);
    cmbDATA[2]->setVisible(shown);
}

qint32 frmDiaryLedgeInput::GetNewLedgeID() { return BookPage::newSlipId(gFMR_ID, gLEDGE_ROWS); }

void frmDiaryLedgeInput::SetMode()
{
    mRec = blankLedgeRow();
    if (gROW_IDX >= 0 && gROW_IDX < gLEDGE_ROWS.size())
        mRec = gLEDGE_ROWS[gROW_IDX];
    using namespace LedgeCol;
    if (gMODE == Mode::Add) {
        mRec[FMR_ID] = gFMR_ID;
        mRec[LEDGE_ID] = Value(GetNewLedgeID());
        mRec[LEDGE_DATE] = gWORK_DATE;
        for (int c : {CTR_NM, C_ACC_ID, D_OPT_ID, C_OPT_ID, D_OPT_NM, C_OPT_NM, AMT, NOTES, UDATE})
            mRec[c] = Value::null();
        mRec[D_ACC_ID] = gBOOK_ACC_ID;
    }
    for (const BookCaptions &b : kCaptions)
        if (b.book == book()) {
            ctl<QLabel>(QStringLiteral("lblTITLE"))->setText(QString::fromUtf8(b.title));
            ctl<QLabel>(QStringLiteral("lblAMT_CAP(0)"))->setText(QString::fromUtf8(b.left));
            ctl<QLabel>(QStringLiteral("lblAMT_CAP(1)"))->setText(QString::fromUtf8(b.right));
            ctl<QLabel>(QStringLiteral("lblOPT_NM_CAP(1)"))->setText(QString::fromUtf8(b.ownName));
        }
    ctl<QGroupBox>(QStringLiteral("fraBOOK"))->setTitle(GetAccNm(Value(book())));
    cmdMENU[0]->setText(QStringLiteral("ｷｬﾝｾﾙ"));
    cmdMENU[1]->setText(gMODE == Mode::Delete ? QStringLiteral("削除") : QStringLiteral("設定"));
    if (gMODE == Mode::View || gMODE == Mode::Delete)
        lockRecordFields(this);
    DispData();
}

void frmDiaryLedgeInput::DispData()
{
    using namespace LedgeCol;
    const int b = book();
    const bool bookDebit = isNumber(mRec[D_ACC_ID], b);
    const Value other = bookDebit ? mRec[C_ACC_ID] : mRec[D_ACC_ID];
    auto setCombo = [](QComboBox *c, const Value &v) {
        if (hasValue(v))
            selectItemData(c, v);
        else
            c->setCurrentIndex(-1);
    };
    setCombo(cmbDATA[1], other);
    // the option kind of the other account, before its option is shown
    mOptKbn = -1;
    control(QStringLiteral("lblOPT_CAP(0)"))->setVisible(false);
    cmbDATA[2]->setVisible(false);
    if (hasValue(other))
        accountChosen();
    if (mOptKbn < 0)
        mOptKbn = 0;
    if (bookDebit) {
        if (hasValue(mRec[C_OPT_ID]))
            selectItemData(cmbDATA[2], mRec[C_OPT_ID]);
        else
            cmbDATA[3]->setCurrentIndex(-1); // so it has always cleared the other list
        setCombo(cmbDATA[3], mRec[D_OPT_ID]);
        txtDATA[3]->setText(textOf(mRec[C_OPT_NM]));
        txtDATA[2]->setText(textOf(mRec[D_OPT_NM]));
    } else {
        setCombo(cmbDATA[2], mRec[D_OPT_ID]);
        setCombo(cmbDATA[3], mRec[D_OPT_ID]); // the same id twice: kept as it is
        txtDATA[3]->setText(textOf(mRec[D_OPT_NM]));
        txtDATA[2]->setText(textOf(mRec[C_OPT_NM]));
    }
    txtDATA[1]->setText(textOf(mRec[CTR_NM]));
    txtDATA[4]->setText(textOf(mRec[NOTES]));
    const bool left = b == 2000 ? isNumber(mRec[C_ACC_ID], b) : isNumber(mRec[D_ACC_ID], b);
    txtDATA[5]->setText(left ? textOf(mRec[AMT]) : QString());
    txtDATA[6]->setText(left ? QString() : textOf(mRec[AMT]));
    ctl<QLabel>(QStringLiteral("lblDATA(0)"))->setText(textOf(mRec[LEDGE_ID]));
    txtDATA[0]->setText(textOf(mRec[LEDGE_DATE]));
    setCombo(cmbDATA[0], mRec[FMR_ID]);
}

bool frmDiaryLedgeInput::ChkData()
{
    BookPage::SlipEntry e;
    e.otherAcc = chosen(cmbDATA[1]);
    e.otherOptId = chosen(cmbDATA[2]);
    e.ownOptId = chosen(cmbDATA[3]);
    e.ownOptName = textOrNull(txtDATA[2]->text());
    e.otherOptName = textOrNull(txtDATA[3]->text());
    e.left = txtDATA[5]->text();
    e.right = txtDATA[6]->text();
    BookPage::applyEntry(mRec, book(), e);
    return true;
}

bool frmDiaryLedgeInput::SaveData()
{
    if (gMODE == Mode::Add) {
        const Value &first = gLEDGE_ROWS.isEmpty() ? Value() : gLEDGE_ROWS[0][LedgeCol::LEDGE_ID];
        if (gLEDGE_ROWS.isEmpty() || (hasValue(first) && IsNumeric(first) && first.toDouble() > 0))
            gLEDGE_ROWS.append(mRec);
        else
            gLEDGE_ROWS.last() = mRec;
    } else if (gMODE == Mode::Change && gROW_IDX >= 0 && gROW_IDX < gLEDGE_ROWS.size()) {
        gLEDGE_ROWS[gROW_IDX] = mRec;
    }
    // Any other mode changes nothing: "削除" here removes no slip.
    if (auto *day = qobject_cast<frmDairyInput *>(Form::find(QStringLiteral("frmDairyInput")))) {
        day->InitLedgeList(book());
        day->SetLedgeList(book());
    }
    return true;
}
