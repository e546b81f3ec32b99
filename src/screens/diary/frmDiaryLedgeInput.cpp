#include "screens/diary/frmDiaryLedgeInput.h"

#include "rules/diary/BookPage.h"
#include "rules/books/Ledger.h"
#include "screens/diary/frmDairyInput.h"
#include "store/Lookup.h"
#include "ui/Entry.h"
#include "ui/Skeletons.h"

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
    {"cmdMENU(1)", CtlKind::Button, "設定", 10300, 6300, 1800, 600},
    {"cmdMENU(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 300, 6300, 1800, 600},
};

// Captions by book: heading, left amount, right amount, the book side's name.
struct BookCaptions {
    int book;
    const char *title, *left, *right, *ownName;
};
const BookCaptions kCaptions[] = {
    {Acc::Cash, "現金出納帳入力", "入金", "出金", "現金適用"},
    {Acc::Deposit, "預金帳入力", "預入", "払出", "預金適用"},
    {Acc::Receivable, "売掛帳入力", "発生", "回収", "売掛金適用"},
    {Acc::Payable, "買掛帳入力", "発生", "支払", "買掛金適用"},
};

} // namespace

frmDiaryLedgeInput::frmDiaryLedgeInput(Mode mode, int row, int book, QWidget *parent)
    : Form(QStringLiteral("frmDiaryLedgeInput"), 12400, 7200, parent), mMode(mode), mRow(row), mBook(book),
      mRec(blankLedgeRow())
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

    // The other account: typed text must name an entry, else the focus
    // stays, silently; empty text chooses none.
    entry().setLeaveCheck(cmbDATA[1], [this] {
        if (!settleComboText(cmbDATA[1], QString(), EmptyText::NoChoice))
            return false;
        accountChosen();
        return true;
    });
    // One side carries the amount.
    entry().setLeaveCheck(txtDATA[5], [this] {
        if (BookPage::carriesAmount(txtDATA[5]->text()))
            txtDATA[6]->setText(QStringLiteral("0"));
        return true;
    });
    entry().setLeaveCheck(txtDATA[6], [this] {
        if (BookPage::carriesAmount(txtDATA[6]->text()))
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
            done(QDialog::Accepted); // the day now holds the slip

    });
}

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
    if (index == 0)
        fillChoices(cmbDATA[0], Ledger::farmers(), true);
    else if (index == 1)
        fillChoices(cmbDATA[1], Ledger::accounts(), true);
}

void frmDiaryLedgeInput::SetCmbOpt(int index)
{
    if (index == 2)
        fillChoices(cmbDATA[2], Ledger::subAccounts(mOptKbn, gFMR_ID), true);
}

void frmDiaryLedgeInput::accountChosen()
{
    const Value acc = currentItemData(cmbDATA[1]);
    if (!hasValue(acc))
        return;
    const int kind = Ledger::subAccountKind(acc);
    if (kind == mOptKbn)
        return;
    mOptKbn = kind;
    const bool shown = kind != 0;
    if (shown)
        SetCmbOpt(2);
    control(QStringLiteral("lblOPT_CAP(0)"))->setVisible(shown);
    cmbDATA[2]->setVisible(shown);
}

void frmDiaryLedgeInput::SetMode()
{
    mRec = BookPage::slipToEdit(gLEDGE_ROWS, mMode, mRow, gFMR_ID, gWORK_DATE, mBook);
    for (const BookCaptions &b : kCaptions)
        if (b.book == mBook) {
            ctl<QLabel>(QStringLiteral("lblTITLE"))->setText(QString::fromUtf8(b.title));
            ctl<QLabel>(QStringLiteral("lblAMT_CAP(0)"))->setText(QString::fromUtf8(b.left));
            ctl<QLabel>(QStringLiteral("lblAMT_CAP(1)"))->setText(QString::fromUtf8(b.right));
            ctl<QLabel>(QStringLiteral("lblOPT_NM_CAP(1)"))->setText(QString::fromUtf8(b.ownName));
        }
    ctl<QGroupBox>(QStringLiteral("fraBOOK"))->setTitle(GetAccNm(Value(mBook)));
    EntryScreen::setMode(this, cmdMENU[0], cmdMENU[1], mMode, QStringLiteral("設定"));
    DispData();
}

void frmDiaryLedgeInput::DispData()
{
    using namespace LedgeCol;
    const BookPage::SlipView v = BookPage::viewOf(mRec, mBook);
    const BookPage::SlipEntry &e = v.entry;
    auto setCombo = [](QComboBox *c, const Value &id) {
        if (hasValue(id))
            selectItemData(c, id);
        else
            c->setCurrentIndex(-1);
    };
    setCombo(cmbDATA[1], e.otherAcc);
    // the option kind of the other account, before its option is shown
    mOptKbn = -1;
    control(QStringLiteral("lblOPT_CAP(0)"))->setVisible(false);
    cmbDATA[2]->setVisible(false);
    if (hasValue(e.otherAcc))
        accountChosen();
    if (mOptKbn < 0)
        mOptKbn = 0;
    if (v.bookDebited && !hasValue(e.otherOptId))
        cmbDATA[3]->setCurrentIndex(-1); // so it has always cleared the other list
    else
        setCombo(cmbDATA[2], e.otherOptId);
    setCombo(cmbDATA[3], e.ownOptId);
    txtDATA[3]->setText(textOf(e.otherOptName));
    txtDATA[2]->setText(textOf(e.ownOptName));
    txtDATA[1]->setText(textOf(mRec[CTR_NM]));
    txtDATA[4]->setText(textOf(mRec[NOTES]));
    txtDATA[5]->setText(e.left);
    txtDATA[6]->setText(e.right);
    ctl<QLabel>(QStringLiteral("lblDATA(0)"))->setText(textOf(mRec[LEDGE_ID]));
    txtDATA[0]->setText(textOf(mRec[LEDGE_DATE]));
    setCombo(cmbDATA[0], mRec[FMR_ID]);
}

bool frmDiaryLedgeInput::ChkData()
{
    BookPage::SlipEntry e;
    e.otherAcc = currentItemData(cmbDATA[1]);
    e.otherOptId = currentItemData(cmbDATA[2]);
    e.ownOptId = currentItemData(cmbDATA[3]);
    e.ownOptName = textOrNull(txtDATA[2]->text());
    e.otherOptName = textOrNull(txtDATA[3]->text());
    e.left = txtDATA[5]->text();
    e.right = txtDATA[6]->text();
    BookPage::applyEntry(mRec, mBook, e);
    return true;
}

bool frmDiaryLedgeInput::SaveData()
{
    BookPage::putSlip(gLEDGE_ROWS, mRec, mMode, mRow);
    if (auto *day = qobject_cast<frmDairyInput *>(Form::find(QStringLiteral("frmDairyInput")))) {
        day->InitLedgeList(mBook);
        day->SetLedgeList(mBook);
    }
    return true;
}
