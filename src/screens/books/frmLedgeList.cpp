#include "screens/books/frmLedgeList.h"

#include "rules/books/Ledger.h"
#include "screens/books/frmLedgeInput.h"

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
    {"lblTITLE", CtlKind::Label, "伝票一覧", 300, 150, 4000, 540},
    {"fraCOND", CtlKind::Frame, "検索条件", 300, 750, 11800, 1400},
    {"lblCAP(0)", CtlKind::Label, "種類", 100, 330, 800, 390, "fraCOND"},
    {"Option1(0)", CtlKind::Option, "伝票", 1000, 330, 1000, 390, "fraCOND"},
    {"Option1(1)", CtlKind::Option, "元帳", 2100, 330, 1000, 390, "fraCOND"},
    {"lblCAP(1)", CtlKind::Label, "科目", 4700, 330, 1000, 390, "fraCOND"},
    {"cmbCOND(0)", CtlKind::Combo, "", 5800, 330, 3000, 390, "fraCOND"},
    {"lblCAP(5)", CtlKind::Label, "年度", 9000, 330, 800, 390, "fraCOND"},
    {"txtCOND(3)", CtlKind::Text, "", 9900, 330, 1000, 390, "fraCOND"},
    {"lblCAP(3)", CtlKind::Label, "日付", 100, 850, 800, 390, "fraCOND"},
    {"txtCOND(1)", CtlKind::Text, "", 1000, 850, 1500, 390, "fraCOND"},
    {"lblCAP(4)", CtlKind::Label, "～", 2500, 850, 400, 390, "fraCOND"},
    {"txtCOND(2)", CtlKind::Text, "", 2900, 850, 1500, 390, "fraCOND"},
    {"lblCAP(2)", CtlKind::Label, "相手名", 4700, 850, 1000, 390, "fraCOND"},
    {"txtCOND(0)", CtlKind::Text, "", 5800, 850, 3000, 390, "fraCOND"},
    {"cmdFIND", CtlKind::Button, "検索", 9900, 800, 1600, 480, "fraCOND"},
    {"ListView1", CtlKind::ListView, "", 300, 2250, 11800, 5500},
    {"lblSUM_CAP(0)", CtlKind::Label, "件数", 300, 7850, 800, 390},
    {"lblSUM(0)", CtlKind::Data, "", 1200, 7850, 1000, 390},
    {"lblSUM_CAP(1)", CtlKind::Label, "前期繰越", 5000, 7850, 1450, 390},
    {"lblSUM(1)", CtlKind::Data, "", 6550, 7850, 1300, 390},
    {"lblSUM(2)", CtlKind::Data, "", 7900, 7850, 1300, 390},
    {"lblSUM(3)", CtlKind::Data, "", 9200, 7850, 1300, 390},
    {"lblSUM_CAP(2)", CtlKind::Label, "合計", 9200, 7850, 1200, 390},
    {"lblSUM(4)", CtlKind::Data, "", 10500, 7850, 1300, 390},
    {"cmdMENU(1)", CtlKind::Button, "追加", 3200, 8500, 1400, 540},
    {"cmdMENU(2)", CtlKind::Button, "修正", 4700, 8500, 1400, 540},
    {"cmdMENU(3)", CtlKind::Button, "参照", 6200, 8500, 1400, 540},
    {"cmdMENU(4)", CtlKind::Button, "削除", 7700, 8500, 1400, 540},
    {"cmdMENU(5)", CtlKind::Button, "複写", 9200, 8500, 1400, 540},
    {"cmdMENU(6)", CtlKind::Button, "印刷", 10700, 8500, 1400, 540},
    {"cmdMENU(0)", CtlKind::Button, "閉じる", 300, 8500, 1600, 540},
    {"MonthView1", CtlKind::Calendar, "", 4800, 2250, 3900, 2800},
};

struct Column {
    const char *head, *key;
    int width; // twips at the design size
    bool right;
};
// The ID is carried, not seen. The amounts line up with the sums below.
const Column kSlipColumns[] = {
    {"ID", "LEDGE_ID", 0, true},   {"日付", "LEDGE_DATE", 1300, false}, {"借方", "D_ACC_ID", 2000, false},
    {"貸方", "C_ACC_ID", 2000, false}, {"相手先", "CTR_NM", 2300, false}, {"備考", "NOTES", 2600, false},
    {"金額", "AMT", 1300, true},
};
const Column kLedgerColumns[] = {
    {"ID", "LEDGE_ID", 0, true},  {"日付", "LEDGE_DATE", 1300, false}, {"科目", "ID", 1900, false},
    {"相手先", "CTR_NM", 2200, false}, {"備考", "NOTES", 2200, false},   {"借方", "D_AMT", 1300, true},
    {"貸方", "C_AMT", 1300, true},     {"残高", "BLC", 1300, true},
};

} // namespace

frmLedgeList::frmLedgeList(QWidget *parent) : Form(QStringLiteral("frmLedgeList"), 12400, 9200, parent)
{
    setWindowTitle(QStringLiteral("伝票一覧"));
    setSizable(true);
    buildControls(kControls, int(std::size(kControls)));
    Option1 = array<QRadioButton>(QStringLiteral("Option1"), 2);
    cmbCOND = ctl<QComboBox>(QStringLiteral("cmbCOND(0)"));
    txtCOND = array<QLineEdit>(QStringLiteral("txtCOND"), 4);
    ListView1 = ctl<QTreeWidget>(QStringLiteral("ListView1"));
    lblSUM = array<QLabel>(QStringLiteral("lblSUM"), 5);
    cmdMENU = array<QPushButton>(QStringLiteral("cmdMENU"), 7);
    for (QLabel *l : lblSUM)
        l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    ctl<QLabel>(QStringLiteral("lblCAP(4)"))->setAlignment(Qt::AlignCenter);
    ListView1->header()->setStretchLastSection(false);
    Option1[0]->setChecked(true);

    setFieldLimit(txtCOND[0], 50, ImeMode::Hiragana);
    setFieldLimit(txtCOND[1], 10, ImeMode::Disabled);
    setFieldLimit(txtCOND[2], 10, ImeMode::Disabled);
    setFieldLimit(txtCOND[3], 10, ImeMode::None);
    entry().registerDateField(txtCOND[1], 1);
    entry().registerDateField(txtCOND[2], 2);

    for (int i = 0; i < 2; ++i)
        connect(Option1[i], &QRadioButton::toggled, this, [this, i](bool on) {
            if (!on || !loaded())
                return;
            trap([this, i] {
                mView = i;
                DispForm();
            });
        });
    onClick(ctl<QPushButton>(QStringLiteral("cmdFIND")), [this] {
        WaitCursor wait;
        SetList();
    });
    ListScreen::wireButtons(this, cmdMENU, [this](Mode mode, bool withRow) { openEntry(mode, withRow); });
}

void frmLedgeList::onLoad()
{
    SetDefSize();
    applyWindowState();
}

void frmLedgeList::onResize()
{
    // A new size starts the list over with its first filters.
    SetSize();
    InitForm();
    DispForm();
}

void frmLedgeList::InitForm()
{
    SetCmb(0);
    SetCmb(1);
    cmbCOND->setCurrentIndex(0);
    const QDateTime base = gBASE_DATE.isValid() ? gBASE_DATE : DateUtil::today();
    const QDate first = base.date();
    txtCOND[1]->setText(first.toString(QStringLiteral("yyyy/MM/dd")));
    txtCOND[2]->setText(first.addMonths(1).addDays(-1).toString(QStringLiteral("yyyy/MM/dd")));
    txtCOND[3]->setText(QString::number(first.year()));
}

void frmLedgeList::SetCmb(int index)
{
    if (index != 0)
        return;
    cmbCOND->clear();
    addEmptyItem(cmbCOND);
    for (const Choice &c : Ledger::accounts())
        addItem(cmbCOND, c.text, c.id);
}

void frmLedgeList::InitList()
{
    ListView1->clear();
    const Column *cols = mView == 0 ? kSlipColumns : kLedgerColumns;
    const int n = mView == 0 ? int(std::size(kSlipColumns)) : int(std::size(kLedgerColumns));
    auto *head = new QTreeWidgetItem;
    for (int i = 0; i < n; ++i) {
        head->setText(i, QString::fromUtf8(cols[i].head));
        head->setData(i, Qt::UserRole, QString::fromLatin1(cols[i].key));
        head->setTextAlignment(i, (cols[i].right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    }
    ListView1->setColumnCount(n);
    ListView1->setHeaderItem(head);
    for (int i = 0; i < n; ++i)
        ListView1->setColumnWidth(i, int(cols[i].width * rateX() / TwipsPerPixel));
}

void frmLedgeList::DispForm()
{
    InitList();
    const bool ledger = mView == 1;
    const QString title = ledger ? QStringLiteral("元帳一覧") : QStringLiteral("伝票一覧");
    ctl<QLabel>(QStringLiteral("lblTITLE"))->setText(title);
    setWindowTitle(title);
    for (int i = 1; i <= 3; ++i)
        lblSUM[i]->setVisible(ledger);
    lblSUM[4]->setVisible(true);
    control(QStringLiteral("lblSUM_CAP(1)"))->setVisible(ledger);
    control(QStringLiteral("lblSUM_CAP(2)"))->setVisible(!ledger);
    SetList();
    // On to the next field; not while the screen is still coming up.
    if (QWidget *from = focusWidget(); from && isActiveWindow())
        sendTab(from);
}

void frmLedgeList::SetList()
{
    // No statement runs with a date filter that is no date.
    if (!ListScreen::filterDatesReadable({txtCOND[1], txtCOND[2]}, txtCOND[3]))
        return;
    const bool ledger = mView == 1;
    Ledger::Filter f;
    f.fmrId = gFMR_ID;
    f.accId = cmbCOND->currentIndex() >= 1 ? currentItemData(cmbCOND) : Value::null();
    f.ctr = txtCOND[0]->text();
    f.from = txtCOND[1]->text();
    f.to = txtCOND[2]->text();
    f.year = txtCOND[3]->text();
    const Ledger::Listing listing = Ledger::readList(f, ledger);

    ListView1->clearSelection();
    ListView1->clear();
    gLEDGE_ROWS = listing.rows;
    Ledger::AccountNames accName;
    using namespace LedgeCol;
    QList<QTreeWidgetItem *> items;
    for (int i = 0; i < gLEDGE_ROWS.size(); ++i) {
        const LedgeRow &r = gLEDGE_ROWS[i];
        auto *item = new QTreeWidgetItem;
        item->setText(0, textOf(r[LEDGE_ID]));
        item->setText(1, Ledger::dateText(r[LEDGE_DATE]));
        if (!ledger) {
            item->setText(2, accName(r[D_ACC_ID]));
            item->setText(3, accName(r[C_ACC_ID]));
            item->setText(4, textOf(r[CTR_NM]));
            item->setText(5, textOf(r[NOTES]));
            item->setText(6, Ledger::amountText(r[AMT]));
            item->setTextAlignment(6, Qt::AlignRight | Qt::AlignVCenter);
        } else {
            const Ledger::Line &l = listing.page.lines[i];
            item->setText(2, accName(l.other));
            item->setText(3, textOf(r[CTR_NM]));
            item->setText(4, textOf(r[NOTES]));
            item->setText(5, Ledger::amountText(Value(l.first)));
            item->setText(6, Ledger::amountText(Value(l.second)));
            item->setText(7, Ledger::amountText(Value(l.balance)));
            for (int c = 5; c <= 7; ++c)
                item->setTextAlignment(c, Qt::AlignRight | Qt::AlignVCenter);
        }
        items << item;
    }
    ListView1->addTopLevelItems(items);
    if (!items.isEmpty())
        ListScreen::chooseRow(ListView1, Ledger::rowToChoose(gLEDGE_ROWS, gLAST_LEDGE_ID));

    for (QLabel *l : lblSUM)
        l->setText(QString());
    if (!listing.counted)
        return;
    lblSUM[0]->setText(Ledger::amountText(listing.count));
    if (ledger) {
        lblSUM[1]->setText(Ledger::amountText(Value(listing.page.opening)));
        lblSUM[2]->setText(Ledger::amountText(Value(listing.page.sumFirst)));
        lblSUM[3]->setText(Ledger::amountText(Value(listing.page.sumSecond)));
        lblSUM[4]->setText(Ledger::amountText(Value(listing.page.closing)));
    } else {
        lblSUM[4]->setText(Ledger::amountText(listing.sum));
    }
}

int frmLedgeList::selectedLine() const { return ListScreen::chosenRow(ListView1) + 1; }

void frmLedgeList::openEntry(Mode mode, bool needsLine)
{
    const int row = needsLine ? ListScreen::chosenRow(ListView1) : -1;
    if (needsLine && (row < 0 || row >= gLEDGE_ROWS.size()))
        return;
    if (needsLine) {
        const QString refused = Ledger::refusal(mode, gLEDGE_ROWS[row]);
        if (!refused.isEmpty()) {
            ShowMsg(refused, Msg::Exclamation);
            return;
        }
    }
    // The list hands over through the process-wide mode and row as well.
    gMODE = mode;
    gROW_IDX = row;
    openModal<frmLedgeInput>(mode, row);
}
