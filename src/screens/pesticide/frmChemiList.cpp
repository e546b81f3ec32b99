#include "screens/pesticide/frmChemiList.h"

#include "rules/pesticide/ChemiData.h"
#include "rules/pesticide/ChemiStock.h"
#include "screens/pesticide/frmChemiInput.h"

#include "base/Globals.h"
#include "base/Msg.h"
#include "ui/Entry.h"
#include "ui/Skeletons.h"

#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>

namespace {

const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "農薬一覧", 300, 150, 4000, 540},
    {"fraCOND", CtlKind::Frame, "検索条件", 300, 800, 11800, 1440},
    {"lblCAP(0)", CtlKind::Label, "用途", 100, 380, 900, 390, "fraCOND"},
    {"cmbCOND", CtlKind::ComboEdit, "", 1100, 380, 2200, 390, "fraCOND"},
    {"lblCAP(1)", CtlKind::Label, "名称", 3400, 380, 900, 390, "fraCOND"},
    {"txtCOND(0)", CtlKind::Text, "", 4400, 380, 3300, 390, "fraCOND"},
    {"lblCAP(3)", CtlKind::Label, "登録番号", 7800, 380, 1100, 390, "fraCOND"},
    {"txtCOND(3)", CtlKind::Text, "", 9000, 380, 900, 390, "fraCOND"},
    {"lblCAP(2)", CtlKind::Label, "購入日", 100, 880, 900, 390, "fraCOND"},
    {"txtCOND(1)", CtlKind::Text, "", 1100, 880, 1400, 390, "fraCOND"},
    {"lblCAP(4)", CtlKind::Label, "～", 2500, 880, 400, 390, "fraCOND"},
    {"txtCOND(2)", CtlKind::Text, "", 2900, 880, 1400, 390, "fraCOND"},
    {"lblCAP(5)", CtlKind::Label, "残量", 4400, 880, 900, 390, "fraCOND"},
    {"Option1(0)", CtlKind::Option, "あり", 5400, 880, 900, 390, "fraCOND"},
    {"Option1(1)", CtlKind::Option, "なし", 6400, 880, 900, 390, "fraCOND"},
    {"Option1(2)", CtlKind::Option, "全て", 7400, 880, 900, 390, "fraCOND"},
    {"cmdFIND", CtlKind::Button, "検索", 10100, 580, 1500, 540, "fraCOND"},
    {"ListView1", CtlKind::ListView, "ID|用途|農薬名|登録番号|購入日|購入量|使用量|残量", 300, 2400, 11800, 5900},
    {"cmdMENU(1)", CtlKind::Button, "追加", 3200, 8500, 1400, 540},
    {"cmdMENU(2)", CtlKind::Button, "修正", 4700, 8500, 1400, 540},
    {"cmdMENU(3)", CtlKind::Button, "参照", 6200, 8500, 1400, 540},
    {"cmdMENU(4)", CtlKind::Button, "削除", 7700, 8500, 1400, 540},
    {"cmdMENU(5)", CtlKind::Button, "複写", 9200, 8500, 1400, 540},
    {"cmdMENU(6)", CtlKind::Button, "印刷", 10700, 8500, 1400, 540},
    {"cmdMENU(0)", CtlKind::Button, "閉じる", 300, 8500, 1600, 540},
    {"MonthView1", CtlKind::Calendar, "", 4400, 2200, 3900, 2800},
};

// The columns: key and width in twips at the design size. The key of the
// use column is USED.
const struct {
    const char *key;
    int width;
    bool number;
} kColumns[8] = {
    {"CHEMI_ID", 800, true}, {"USED", 1500, false},    {"CHEMI_NM", 3700, false}, {"REG_NO", 1100, false},
    {"PUR_DATE", 1400, false}, {"PUR_QTY", 1000, true}, {"USED_QTY", 1000, true}, {"REST_QTY", 1000, true},
};

} // namespace

frmChemiList::frmChemiList(QWidget *parent) : Form(QStringLiteral("frmChemiList"), 12400, 9200, parent)
{
    setWindowTitle(QStringLiteral("農薬一覧"));
    setSizable(true);
    buildControls(kControls, int(std::size(kControls)));
    cmbCOND = ctl<QComboBox>(QStringLiteral("cmbCOND"));
    txtCOND = array<QLineEdit>(QStringLiteral("txtCOND"), 4);
    Option1 = array<QRadioButton>(QStringLiteral("Option1"), 3);
    ListView1 = ctl<QTreeWidget>(QStringLiteral("ListView1"));
    cmdMENU = array<QPushButton>(QStringLiteral("cmdMENU"), 7);
    ctl<QLabel>(QStringLiteral("lblCAP(4)"))->setAlignment(Qt::AlignCenter);

    setFieldLimit(txtCOND[0], 50, ImeMode::Hiragana);
    setFieldLimit(txtCOND[1], 10, ImeMode::Disabled);
    setFieldLimit(txtCOND[2], 10, ImeMode::Disabled);
    setFieldLimit(txtCOND[3], 5, ImeMode::Disabled);
    txtCOND[3]->setAlignment(Qt::AlignRight);
    for (int i : {1, 2}) {
        entry().registerDateField(txtCOND[i], i);
        entry().setLeaveCheck(txtCOND[i], [this, i] {
            const QString t = txtCOND[i]->text();
            QDateTime day;
            if (t.isEmpty() || DateUtil::parseStorable(t, day))
                return true;
            ShowMsg(QStringLiteral("日付を指定してください。"), Msg::Exclamation);
            return false;
        });
    }
    entry().setLeaveCheck(txtCOND[3], [this] {
        const QString t = txtCOND[3]->text();
        if (t.isEmpty() || IsNumeric(Value(t)))
            return true;
        ShowMsg(QStringLiteral("数値を指定してください。"), Msg::Exclamation);
        return false;
    });
    entry().setLeaveCheck(cmbCOND, [this] {
        return settleComboText(cmbCOND, QStringLiteral("一覧にある用途を選択してください。"));
    });

    ListView1->header()->setStretchLastSection(false);
    for (int i = 0; i < 8; ++i) {
        ListView1->headerItem()->setData(i, Qt::UserRole, QString::fromLatin1(kColumns[i].key));
        if (kColumns[i].number)
            ListView1->headerItem()->setTextAlignment(i, Qt::AlignRight | Qt::AlignVCenter);
    }

    // The stock figures are made exact first: lots whose uses are all gone
    // get their quantity back.
    onClick(ctl<QPushButton>(QStringLiteral("cmdFIND")), [this] {
        WaitCursor wait;
        ResetUnusedChemi(gFMR_ID);
        SetList();
    });
    ListScreen::wireButtons(this, cmdMENU, [this](Mode mode, bool withRow) { openEntry(mode, withRow); });
}

void frmChemiList::onLoad()
{
    SetDefSize();
    applyWindowState();
}

void frmChemiList::onResize()
{
    // A new size starts the list over with its first filters.
    SetSize();
    InitForm();
    SetList();
}

void frmChemiList::InitForm()
{
    for (QLineEdit *t : txtCOND)
        t->clear();
    SetCmb();
    Option1[0]->setChecked(true);
    InitList();
}

void frmChemiList::InitList()
{
    ListView1->clear();
    for (int i = 0; i < 8; ++i)
        ListView1->setColumnWidth(i, int(kColumns[i].width * rateX() / TwipsPerPixel));
}

void frmChemiList::SetCmb() { fillChoices(cmbCOND, Chemi::uses()); }

void frmChemiList::SetList()
{
    Chemi::ListFilter f;
    f.farmer = gFMR_ID;
    f.uses = cmbCOND->currentIndex() > 0 ? currentItemData(cmbCOND) : Value::null();
    f.name = txtCOND[0]->text();
    f.dateFrom = txtCOND[1]->text();
    f.dateTo = txtCOND[2]->text();
    f.regNo = txtCOND[3]->text();
    f.stock = Option1[0]->isChecked()   ? Chemi::Stock::InHand
              : Option1[1]->isChecked() ? Chemi::Stock::UsedUp
                                        : Chemi::Stock::All;
    mRows = Chemi::readLots(f);
    ListView1->clear();
    QList<QTreeWidgetItem *> items;
    const NameTable uses = NameTable::kinds15();
    for (const ChemiRow &r : mRows) {
        auto *item = new QTreeWidgetItem(Chemi::listLine(r, uses));
        for (int i = 0; i < 8; ++i)
            if (kColumns[i].number)
                item->setTextAlignment(i, Qt::AlignRight | Qt::AlignVCenter);
        items << item;
    }
    ListView1->addTopLevelItems(items);
    if (items.isEmpty())
        return;
    // The lot saved last; when it is not in the list, no row is chosen.
    ListScreen::chooseRow(ListView1, Chemi::rowOfChemi(mRows, gLAST_CHEMI_ID));
}

int frmChemiList::selectedRow() const { return ListScreen::chosenRow(ListView1); }

void frmChemiList::openEntry(Mode mode, bool needsRow)
{
    const int row = needsRow ? selectedRow() : -1;
    if (needsRow && (row < 0 || row >= mRows.size()))
        return;
    if (openModal(new frmChemiInput(mode, row >= 0 ? mRows[row] : ChemiRow())) == QDialog::Accepted)
        SetList();
}
