#include "screens/planting/frmPlantList.h"

#include "rules/pesticide/SprayCheck.h"
#include "rules/planting/PlantEntry.h"
#include "screens/planting/frmPlantInput.h"

#include "base/Globals.h"
#include "base/Msg.h"
#include "ui/Entry.h"
#include "ui/Skeletons.h"

#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>

namespace {

const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "作付一覧", 300, 150, 4000, 540},
    {"fraCOND", CtlKind::Frame, "検索条件", 300, 800, 11800, 960},
    {"lblCAP(0)", CtlKind::Label, "年", 100, 400, 500, 390, "fraCOND"},
    {"txtCOND(0)", CtlKind::Text, "", 700, 400, 900, 390, "fraCOND"},
    {"lblCAP(1)", CtlKind::Label, "作物", 1800, 400, 800, 390, "fraCOND"},
    {"cmbCOND(0)", CtlKind::ComboEdit, "", 2700, 400, 2700, 390, "fraCOND"},
    {"lblCAP(2)", CtlKind::Label, "区分", 5600, 400, 800, 390, "fraCOND"},
    {"cmbCOND(1)", CtlKind::ComboEdit, "", 6500, 400, 2100, 390, "fraCOND"},
    {"cmdFIND", CtlKind::Button, "検索", 10100, 340, 1500, 500, "fraCOND"},
    {"ListView1", CtlKind::ListView, "ID|作付名|作付日|収穫月|品種|耕作面積|出荷可能日|散布回数", 300, 1900, 11800, 6400},
    {"cmdMENU(1)", CtlKind::Button, "追加", 3200, 8500, 1400, 540},
    {"cmdMENU(2)", CtlKind::Button, "修正", 4700, 8500, 1400, 540},
    {"cmdMENU(3)", CtlKind::Button, "参照", 6200, 8500, 1400, 540},
    {"cmdMENU(4)", CtlKind::Button, "削除", 7700, 8500, 1400, 540},
    {"cmdMENU(5)", CtlKind::Button, "複写", 9200, 8500, 1400, 540},
    {"cmdMENU(6)", CtlKind::Button, "印刷", 10700, 8500, 1400, 540},
    {"cmdMENU(0)", CtlKind::Button, "閉じる", 300, 8500, 1600, 540},
};

// Widths of the columns (ID, 作付名, 作付日, 収穫月, 品種, 耕作面積, 出荷可能日, 散布回数) in
// twips at the design size.
const int kColumnWidths[8] = {800, 2400, 1300, 1000, 1700, 1100, 1400, 2000};

} // namespace

frmPlantList::frmPlantList(QWidget *parent) : Form(QStringLiteral("frmPlantList"), 12400, 9200, parent)
{
    setWindowTitle(QStringLiteral("作付一覧"));
    setSizable(true);
    buildControls(kControls, int(std::size(kControls)));
    txtCOND = ctl<QLineEdit>(QStringLiteral("txtCOND(0)"));
    cmbCOND = array<QComboBox>(QStringLiteral("cmbCOND"), 2);
    ListView1 = ctl<QTreeWidget>(QStringLiteral("ListView1"));
    cmdMENU = array<QPushButton>(QStringLiteral("cmdMENU"), 7);

    setFieldLimit(txtCOND, 4, ImeMode::None);
    // The year goes into the statement as a number.
    entry().setLeaveCheck(txtCOND, [this] {
        const QString refusal = Plant::yearFilterRefusal(txtCOND->text());
        if (!refusal.isEmpty())
            ShowMsg(refusal, Msg::Exclamation);
        return refusal.isEmpty();
    });
    for (QComboBox *c : cmbCOND)
        entry().setLeaveCheck(c, [c] { return settleComboText(c, QStringLiteral("一覧にある項目を選択してください。"), EmptyText::NoChoice); });

    ListView1->header()->setStretchLastSection(false);
    ListView1->headerItem()->setTextAlignment(0, Qt::AlignRight | Qt::AlignVCenter);
    ListView1->headerItem()->setTextAlignment(5, Qt::AlignRight | Qt::AlignVCenter);

    onClick(ctl<QPushButton>(QStringLiteral("cmdFIND")), [this] {
        WaitCursor wait;
        SetList();
    });
    ListScreen::wireButtons(this, cmdMENU, [this](Mode mode, bool withRow) { openEntry(mode, withRow); });
}

void frmPlantList::onLoad()
{
    SetDefSize();
    applyWindowState();
}

void frmPlantList::onResize()
{
    // A new size starts the list over with its first filters.
    SetSize();
    InitForm();
    SetList();
}

void frmPlantList::InitForm()
{
    const QDateTime base = gBASE_DATE.isValid() ? gBASE_DATE : DateUtil::today();
    txtCOND->setText(QString::number(base.date().year()));
    SetCmb(0);
    SetCmb(1);
    InitList();
}

void frmPlantList::InitList()
{
    ListView1->clear();
    for (int i = 0; i < 8; ++i)
        ListView1->setColumnWidth(i, int(kColumnWidths[i] * rateX() / TwipsPerPixel));
}

void frmPlantList::SetCmb(int index)
{
    if (index == 0)
        fillChoices(cmbCOND[0], Plant::crops());
    else
        fillChoices(cmbCOND[1], Plant::kinds(Plant::Kbn::PlantType));
}

void frmPlantList::SetList()
{
    const QString year = txtCOND->text();
    const QString crop = cmbCOND[0]->currentIndex() > 0 ? cmbCOND[0]->itemText(cmbCOND[0]->currentIndex()) : QString();
    const Value kind = cmbCOND[1]->currentIndex() > 0 ? currentItemData(cmbCOND[1]) : Value::null();
    const QString refusal = Plant::yearFilterRefusal(year);
    if (!refusal.isEmpty()) {
        ShowMsg(refusal, Msg::Exclamation);
        return;
    }
    Plant::readList(year, crop, kind);
    ListView1->clear();
    QList<QTreeWidgetItem *> items;
    QVector<Value> ids;
    for (const PlantRow &r : gPLANT_ROWS)
        ids.append(r.PLANT_ID);
    const QHash<qint64, Spray::PlantSummary> sprays =
        Spray::summaries(gFMR_ID, ids, DateUtil::today().date());
    for (const PlantRow &r : gPLANT_ROWS) {
        auto *item = new QTreeWidgetItem;
        item->setText(0, textOf(r.PLANT_ID));
        item->setText(1, textOf(r.PLANT_NM));
        item->setText(2, DateUtil::dayText(r.PLANT_DATE));
        item->setText(3, Plant::harvestListText(r.HARVEST_SCHD_YM));
        item->setText(4, textOf(r.CROP_NM1));
        item->setText(5, textOf(r.AREA));
        const Spray::PlantSummary s = hasValue(r.PLANT_ID) ? sprays.value(qint64(r.PLANT_ID.toDouble())) : Spray::PlantSummary();
        item->setText(6, s.shipFrom);
        item->setText(7, s.usesShort);
        item->setToolTip(7, s.uses.join(QLatin1Char('\n')));
        item->setTextAlignment(0, Qt::AlignRight | Qt::AlignVCenter);
        item->setTextAlignment(5, Qt::AlignRight | Qt::AlignVCenter);
        items << item;
    }
    ListView1->addTopLevelItems(items);
    if (items.isEmpty())
        return;
    // The planting saved last; when it is not in the list, no row is chosen.
    ListScreen::chooseRow(ListView1, Plant::rowOfPlant(gLAST_PLANT_ID));
}

void frmPlantList::openEntry(Mode mode, bool needsRow)
{
    const int row = needsRow ? ListScreen::chosenRow(ListView1) : -1;
    if (needsRow && row < 0)
        return;
    // The mode stays readable for the entry conventions (the pop-up
    // calendar of a date field shows only while adding or changing).
    gMODE = mode;
    gROW_IDX = row;
    openModal(new frmPlantInput(mode, row));
}
