#include "screens/shipping/frmShipList.h"

#include "base/Globals.h"
#include "rules/books/Ledger.h"
#include "rules/diary/BookPage.h"
#include "rules/shipping/ShipList.h"
#include "screens/shipping/frmShipInput.h"
#include "ui/Entry.h"
#include "ui/Skeletons.h"

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QScrollBar>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>

namespace {

const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "出荷一覧", 300, 120, 4000, 540},
    {"fraCOND", CtlKind::Frame, "検索条件", 300, 750, 11800, 1150},
    {"lblCAP(0)", CtlKind::Label, "年", 100, 430, 500, 420, "fraCOND"},
    {"txtCOND(0)", CtlKind::Text, "", 650, 410, 900, 420, "fraCOND"},
    {"Option1(0)", CtlKind::Option, "出荷前", 1800, 430, 1200, 420, "fraCOND"},
    {"Option1(1)", CtlKind::Option, "出荷中", 3000, 430, 1200, 420, "fraCOND"},
    {"Option1(2)", CtlKind::Option, "完了", 4200, 430, 1000, 420, "fraCOND"},
    {"Option1(3)", CtlKind::Option, "全て", 5200, 430, 1000, 420, "fraCOND"},
    {"lblCAP(1)", CtlKind::Label, "出荷日", 6300, 430, 900, 420, "fraCOND"},
    {"txtCOND(1)", CtlKind::Text, "", 7250, 410, 1500, 420, "fraCOND"},
    {"lblCAP(2)", CtlKind::Label, "～", 8750, 430, 350, 420, "fraCOND"},
    {"txtCOND(2)", CtlKind::Text, "", 9150, 410, 1500, 420, "fraCOND"},
    {"cmdFIND", CtlKind::Button, "検索", 10750, 380, 950, 500, "fraCOND"},
    {"lblCAP(3)", CtlKind::Label, "作付", 300, 2000, 2900, 360},
    {"List1", CtlKind::List, "", 300, 2380, 2900, 5300},
    {"ListView1", CtlKind::ListView, "ID|月日|売価|出荷数|売上数|値引額|売上額|手数料", 3350, 2380, 8750, 4700},
    {"lblCAP(4)", CtlKind::Label, "合　計", 3350, 7200, 900, 420},
    {"lblSUM(0)", CtlKind::Data, "", 4300, 7180, 1500, 420},
    {"lblSUM(1)", CtlKind::Data, "", 5850, 7180, 1500, 420},
    {"lblSUM(2)", CtlKind::Data, "", 7400, 7180, 1500, 420},
    {"lblSUM(3)", CtlKind::Data, "", 8950, 7180, 1500, 420},
    {"lblSUM(4)", CtlKind::Data, "", 10500, 7180, 1600, 420},
    {"MonthView1", CtlKind::Calendar, "", 0, 0, 3900, 2700},
    {"cmdMENU(0)", CtlKind::Button, "閉じる", 300, 8300, 1500, 620},
    {"cmdMENU(1)", CtlKind::Button, "追加", 3550, 8300, 1350, 620},
    {"cmdMENU(2)", CtlKind::Button, "修正", 4950, 8300, 1350, 620},
    {"cmdMENU(3)", CtlKind::Button, "参照", 6350, 8300, 1350, 620},
    {"cmdMENU(4)", CtlKind::Button, "削除", 7750, 8300, 1350, 620},
    {"cmdMENU(5)", CtlKind::Button, "複写", 9150, 8300, 1350, 620},
    {"cmdMENU(6)", CtlKind::Button, "印刷", 10750, 8300, 1350, 620},
};

QString amount(const Value &v) { return hasValue(v) && IsNumeric(v) ? Ledger::amountText(v.toCurrency()) : textOf(v); }

} // namespace

frmShipList::frmShipList(QWidget *parent) : Form(QStringLiteral("frmShipList"), 12400, 9200, parent)
{
    setWindowTitle(QStringLiteral("出荷一覧"));
    setSizable(true);
    buildControls(kControls, int(std::size(kControls)));
    txtCOND = array<QLineEdit>(QStringLiteral("txtCOND"), 3);
    Option1 = array<QRadioButton>(QStringLiteral("Option1"), 4);
    lblSUM = array<QLabel>(QStringLiteral("lblSUM"), 5);
    cmdMENU = array<QPushButton>(QStringLiteral("cmdMENU"), 7);
    List1 = ctl<QListWidget>(QStringLiteral("List1"));
    ListView1 = ctl<QTreeWidget>(QStringLiteral("ListView1"));
    connect(ListView1->header(), &QHeaderView::sectionResized, this, [this] { alignTotals(); });
    connect(ListView1->horizontalScrollBar(), &QScrollBar::valueChanged, this, [this] { alignTotals(); });
    ctl<QLabel>(QStringLiteral("lblCAP(3)"))->setAlignment(Qt::AlignLeft | Qt::AlignBottom);
    for (QLabel *l : lblSUM)
        l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setFieldLimit(txtCOND[0], 4, ImeMode::Disabled);
    setFieldLimit(txtCOND[1], 10, ImeMode::Disabled);
    setFieldLimit(txtCOND[2], 10, ImeMode::Disabled);
    entry().registerDateField(txtCOND[1], 1);
    entry().registerDateField(txtCOND[2], 2);

    auto busy = [this](const std::function<void()> &work) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        trap(work);
        QApplication::restoreOverrideCursor();
    };
    // No statement runs with a date filter that is no date.
    auto datesReadable = [this] { return ListScreen::filterDatesReadable({txtCOND[1], txtCOND[2]}); };
    onClick(ctl<QPushButton>(QStringLiteral("cmdFIND")), [this, busy, datesReadable] {
        if (!datesReadable())
            return;
        busy([this] {
            SetList1();
            SetList2();
        });
    });
    connect(List1, &QListWidget::itemClicked, this, [this, busy, datesReadable] {
        if (datesReadable())
            busy([this] { SetList2(); });
    });
    ListScreen::wireButtons(this, cmdMENU, [this](Mode mode, bool withRow) { openInput(mode, withRow); });
}

frmShipList::~frmShipList()
{
    // The list outlives the totals while the screen's children go.
    ListView1->header()->disconnect(this);
    ListView1->horizontalScrollBar()->disconnect(this);
}

void frmShipList::onLoad()
{
    SetDefSize();
    applyWindowState();
}

void frmShipList::onResize()
{
    SetSize();
    InitForm();
    SetList1();
    SetList2();
}

void frmShipList::InitForm()
{
    const QDate base = gBASE_DATE.isValid() ? gBASE_DATE.date() : QDate::currentDate();
    txtCOND[0]->setText(QString::number(base.year()));
    txtCOND[1]->setText(base.toString(QStringLiteral("yyyy/MM/dd")));
    txtCOND[2]->setText(base.addMonths(1).addDays(-1).toString(QStringLiteral("yyyy/MM/dd")));
    Option1[3]->setChecked(true);
    InitList();
    alignTotals();
}

void frmShipList::InitList()
{
    ListView1->clear();
    // The columns keep their widths, the last one too, so that the totals
    // below can stand under them.
    ListView1->header()->setStretchLastSection(false);
    const int widths[8] = {600, 800, 1000, 1000, 1000, 1000, 1300, 1000};
    for (int i = 0; i < 8; ++i) {
        ListView1->setColumnWidth(i, int(widths[i] * rateX() / TwipsPerPixel));
        ListView1->headerItem()->setTextAlignment(i, (i >= 2 ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    }
}

void frmShipList::alignTotals()
{
    // Each total stands under the column it adds up (出荷数 to 手数料),
    // wherever the columns are sized or scrolled to.
    const QHeaderView *head = ListView1->header();
    for (int i = 0; i < lblSUM.size(); ++i) {
        const int column = i + 3;
        const QPoint left = ListView1->viewport()->mapTo(lblSUM[i]->parentWidget(),
                                                          QPoint(head->sectionViewportPosition(column), 0));
        lblSUM[i]->setGeometry(left.x(), lblSUM[i]->y(), head->sectionSize(column), lblSUM[i]->height());
    }
}

Ship::ListFilter frmShipList::filter() const
{
    Ship::ListFilter f;
    f.year = txtCOND[0]->text();
    for (int i = 0; i < Option1.size(); ++i)
        if (Option1[i]->isChecked())
            f.status = Ship::PlantStatus(i);
    f.from = txtCOND[1]->text();
    f.to = txtCOND[2]->text();
    for (int i = 0; i < List1->count(); ++i)
        f.plantings << itemData(List1, i);
    f.chosen = List1->currentRow();
    return f;
}

void frmShipList::SetList1()
{
    const QVector<Choice> plantings = Ship::plantingsByStatus(filter());
    ListView1->clear();
    List1->clear();
    addItem(List1, QString(), Value(0));
    for (const Choice &p : plantings)
        addItem(List1, p.text, p.id);
    if (List1->count() > 1)
        selectItemData(List1, gLAST_PLANT_ID);
}

void frmShipList::SetList2()
{
    const Ship::ListFilter f = filter();
    const int rows = Ship::loadShipments(f);
    ListView1->clear();
    int saved = -1;
    for (int i = 0; i < rows; ++i) {
        const ShipRow &r = gSHIP_ROWS[i];
        auto *item = new QTreeWidgetItem(ListView1);
        item->setText(0, textOf(r.SHIP_ID));
        item->setText(1, hasValue(r.SHIP_DATE) ? r.SHIP_DATE.toDate().toString(QStringLiteral("MM/dd")) : QString());
        const Value *cols[6] = {&r.SHOP_PRC, &r.SHIP_QTY, &r.SALES_QTY, &r.DSC_AMT, &r.SALES_AMT, &r.FEE_AMT};
        for (int c = 0; c < 6; ++c) {
            item->setText(c + 2, amount(*cols[c]));
            item->setTextAlignment(c + 2, Qt::AlignRight | Qt::AlignVCenter);
        }
        if (hasValue(gLAST_SHIP_ID) && isNumber(r.SHIP_ID, Nz(gLAST_SHIP_ID, Value(0)).toDouble()))
            saved = i;
    }
    if (saved >= 0)
        ListScreen::chooseRow(ListView1, saved);
    const std::array<Currency, 5> sums = Ship::shipmentTotals(f);
    for (int i = 0; i < 5; ++i)
        lblSUM[i]->setText(Ledger::amountText(sums[i]));
}

void frmShipList::openInput(Mode mode, bool needsRow)
{
    const int row = needsRow ? ListScreen::chosenRow(ListView1) : -1;
    if (needsRow && row < 0)
        return;
    openModal<frmShipInput>(mode, row);
}
