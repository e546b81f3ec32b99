#include "screens/masters/fdlMstPrdEdit.h"

#include "base/Globals.h"
#include "base/Helpers.h"
#include "base/Msg.h"
#include "rules/masters/MasterLists.h"
#include "ui/Entry.h"
#include "ui/Skeletons.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>

namespace {

// name, kind, caption, left, top, width, height (twips), frame. The order is
// the order of the Tab key.
const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "商品マスタ", 300, 150, 4800, 540},
    {"lblCOND(0)", CtlKind::Label, "商品名", 150, 900, 1000, 400},
    {"txtCOND(0)", CtlKind::Text, "", 1250, 880, 2750, 420},
    {"List1", CtlKind::List, "", 300, 1420, 3700, 4200},
    {"cmdSUB(1)", CtlKind::Button, "追加", 300, 5720, 1750, 500},
    {"cmdSUB(0)", CtlKind::Button, "削除", 2250, 5720, 1750, 500},
    {"Shape1", CtlKind::Shape, "", 4300, 880, 30, 5340},
    {"lblCAP(0)", CtlKind::Label, "販売店", 4450, 900, 1300, 400},
    {"cmbDATA(0)", CtlKind::Combo, "", 5850, 880, 3450, 420},
    {"lblCAP(1)", CtlKind::Label, "商品ID", 4450, 1480, 1300, 400},
    {"txtDATA(0)", CtlKind::Text, "", 5850, 1460, 1300, 420},
    {"lblCAP(2)", CtlKind::Label, "商品名", 4450, 2060, 1300, 400},
    {"txtDATA(1)", CtlKind::Text, "", 5850, 2040, 3450, 420},
    {"lblCAP(3)", CtlKind::Label, "略名", 4450, 2640, 1300, 400},
    {"txtDATA(2)", CtlKind::Text, "", 5850, 2620, 3450, 420},
    {"lblCAP(4)", CtlKind::Label, "ヨミ", 4450, 3220, 1300, 400},
    {"txtDATA(3)", CtlKind::Text, "", 5850, 3200, 3450, 420},
    {"Check1", CtlKind::Check, "一覧に表示する", 5850, 3780, 3450, 420},
    {"cmdMENU(1)", CtlKind::Button, "登録", 7500, 6450, 1800, 550},
    {"cmdMENU(0)", CtlKind::Button, "閉じる", 300, 6450, 1800, 550},
};

// The column behind txtDATA(i).
Value PrdRow::*const kTextColumns[4] = {&PrdRow::PRD_ID, &PrdRow::PRD_NM, &PrdRow::PRD_OMT, &PrdRow::PRD_YM};

} // namespace

fdlMstPrdEdit::fdlMstPrdEdit(QWidget *parent) : Form(QStringLiteral("fdlMstPrdEdit"), 9600, 7200, parent)
{
    setWindowTitle(QStringLiteral("商品マスタ編集"));
    buildControls(kControls, int(std::size(kControls)));
    cmbDATA0 = ctl<QComboBox>(QStringLiteral("cmbDATA(0)"));
    txtDATA = array<QLineEdit>(QStringLiteral("txtDATA"), 4);
    txtCOND0 = ctl<QLineEdit>(QStringLiteral("txtCOND(0)"));
    Check1 = ctl<QCheckBox>(QStringLiteral("Check1"));
    List1 = ctl<QListWidget>(QStringLiteral("List1"));
    cmdSUB = array<QPushButton>(QStringLiteral("cmdSUB"), 2);
    cmdMENU = array<QPushButton>(QStringLiteral("cmdMENU"), 2);

    setFieldLimit(txtDATA[0], 8, ImeMode::Disabled);
    setFieldLimit(txtDATA[1], 50, ImeMode::Hiragana);
    setFieldLimit(txtDATA[2], 50, ImeMode::Hiragana);
    setFieldLimit(txtDATA[3], 50, ImeMode::Katakana);
    setFieldLimit(txtCOND0, 50, ImeMode::Hiragana);

    entry().setLeaveCheck(txtDATA[0], [this] { return idLeave(); });
    connect(&entry(), &EntryConventions::fieldLeft, this, [this](QWidget *field) {
        for (int i = 1; i < 4; ++i)
            if (field == txtDATA[i])
                trap([&] { textLeft(i); });
    });
    connect(txtCOND0, &QLineEdit::textChanged, this, [this] { trap([this] { SetList(); }); });
    connect(cmbDATA0, qOverload<int>(&QComboBox::activated), this, [this](int index) {
        trap([&] {
            if (mIdx >= 0 && mIdx < mRows.size())
                mRows[mIdx].SHOP_ID = itemData(cmbDATA0, index);
        });
    });
    connect(Check1, &QCheckBox::clicked, this, [this](bool on) {
        if (mIdx >= 0 && mIdx < mRows.size())
            mRows[mIdx].CHK_FLG = Value(on);
    });
    // A row picked in the list (by mouse or keys). The move is handled once
    // the field left for the list has had its check, on the row it belongs to.
    connect(List1, &QListWidget::currentRowChanged, this, [this](int row) {
        if (mFilling || row < 0)
            return;
        const Value id = itemData(List1, row);
        QTimer::singleShot(0, this, [this, id] { listPicked(id); });
    });
    onClick(cmdSUB[1], [this] { addClicked(); });
    onClick(cmdSUB[0], [this] { removeClicked(); });
    onClick(cmdMENU[1], [this] {
        if (SaveData())
            done(QDialog::Accepted);
    });
    onClick(cmdMENU[0], [this] { closeOrEndProgram(this); }, false);
    // The filter only looks for products; the rows added or removed are changes.
    entry().notAnEdit(txtCOND0);
    EntryScreen::askBeforeClose(this, cmdMENU[1]);
}

void fdlMstPrdEdit::onLoad()
{
    SetDefSize();
    applyWindowState();
    InitFrm();
    LoadData();
}

void fdlMstPrdEdit::onResize()
{
    SetSize();
    SetList();
}

void fdlMstPrdEdit::InitFrm()
{
    mRows = {Prd::blankRow()};
    mIdx = 0;
    SetCmb(0);
}

void fdlMstPrdEdit::SetCmb(int index)
{
    if (index != 0)
        return;
    cmbDATA0->clear();
    addEmptyItem(cmbDATA0);
    for (const Choice &e : MasterLists::shops())
        addItem(cmbDATA0, e.text, e.id);
}

void fdlMstPrdEdit::LoadData()
{
    mRows = Prd::load();
    SetList();
    DispData();
}

void fdlMstPrdEdit::SetList()
{
    mFilling = true;
    List1->clear();
    const QString filter = txtCOND0->text();
    for (const Prd::Row &r : mRows)
        if (Prd::passes(r, filter))
            addItem(List1, textOf(r.PRD_NM), Nz(r.PRD_ID, Value(0)));
    mFilling = false;
    markShownRow();
}

void fdlMstPrdEdit::markShownRow()
{
    // The row on show is the one marked in the list, when the filter lets it in.
    mFilling = true;
    int mark = -1;
    if (mIdx >= 0 && mIdx < mRows.size() && Prd::passes(mRows[mIdx], txtCOND0->text()))
        for (int i = 0; i < List1->count() && mark < 0; ++i)
            if (Prd::indexOf(mRows, itemData(List1, i)) == mIdx)
                mark = i;
    List1->setCurrentRow(mark);
    mFilling = false;
}

int fdlMstPrdEdit::GetIdx(const Value &id)
{
    mIdx = Prd::indexOf(mRows, id);
    return mIdx;
}

void fdlMstPrdEdit::DispData()
{
    const bool shown = mIdx >= 0 && mIdx < mRows.size();
    const Prd::Row row = shown ? mRows[mIdx] : Prd::blankRow();
    for (int i = 0; i < 4; ++i)
        showFieldText(txtDATA[i], textOf(row.*kTextColumns[i]));
    Check1->setChecked(hasValue(row.CHK_FLG) && row.CHK_FLG.toBool());
    selectItemData(cmbDATA0, row.SHOP_ID);
}

void fdlMstPrdEdit::listPicked(const Value &id)
{
    if (!entry().settleLeaveChecks()) {
        // The field left for the list keeps the focus: so does the row.
        markShownRow();
        return;
    }
    trap([&] {
        GetIdx(id);
        DispData();
    });
    markShownRow();
}

bool fdlMstPrdEdit::idLeave()
{
    if (mIdx < 0 || mIdx >= mRows.size())
        return true;
    const Prd::TypedId typed = Prd::checkTypedId(mRows, mIdx, txtDATA[0]->text());
    if (!typed.refusal.isEmpty()) {
        ShowMsg(typed.refusal, Msg::Exclamation);
        return false;
    }
    const bool changed = Prd::idOf(mRows[mIdx]) != (hasValue(typed.id) ? typed.id.toDouble() : 0);
    mRows[mIdx].PRD_ID = typed.id;
    // The list carries the numbers as item data.
    if (changed)
        SetList();
    return true;
}

void fdlMstPrdEdit::textLeft(int index)
{
    if (mIdx < 0 || mIdx >= mRows.size())
        return;
    Value &cell = mRows[mIdx].*kTextColumns[index];
    const Value v = textOrNull(txtDATA[index]->text());
    const bool changed = textOf(cell) != textOf(v);
    cell = v;
    if (index == 1 && changed)
        SetList();
}

void fdlMstPrdEdit::addClicked()
{
    mIdx = Prd::addRow(mRows, gSHOP_ID);
    entry().setEdited(true);
    SetList();
    DispData();
    txtDATA[0]->setFocus();
}

void fdlMstPrdEdit::removeClicked()
{
    if (mIdx < 0 || mIdx >= mRows.size())
        return;
    mIdx = Prd::removeRow(mRows, mIdx);
    entry().setEdited(true);
    SetList();
    DispData();
}

bool fdlMstPrdEdit::SaveData()
{
    // An error leaves the table as it was and the array as it is, so that
    // "登録" can be pressed again.
    return trap([this] { Prd::save(mRows, GetCompName()); });
}
