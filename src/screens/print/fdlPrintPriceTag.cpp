#include "screens/print/fdlPrintPriceTag.h"

#include "ui/Entry.h"
#include "base/Globals.h"
#include "screens/print/fdlPreview.h"
#include "rules/print/modPrinter.h"
#include "rules/print/PriceTag.h"
#include "rules/print/PriceTagSheet.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>

namespace {

const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "値札印刷", 300, 150, 4800, 540},
    {"fraCOND", CtlKind::Frame, "印刷条件", 300, 850, 9000, 1500},
    {"lblCAP(0)", CtlKind::Label, "出荷日", 150, 420, 1000, 420, "fraCOND"},
    {"txtCOND(0)", CtlKind::Text, "", 1200, 420, 1600, 420, "fraCOND"},
    {"lblCAP(1)", CtlKind::Label, "スキップ", 3000, 420, 1000, 420, "fraCOND"},
    {"txtCOND(1)", CtlKind::Text, "", 4050, 420, 800, 420, "fraCOND"},
    {"lblCAP(2)", CtlKind::Label, "生産者", 150, 960, 1000, 420, "fraCOND"},
    {"cmbCOND", CtlKind::Combo, "", 1200, 960, 3650, 420, "fraCOND"},
    {"Check1", CtlKind::Check, "枠線印刷", 5300, 420, 2000, 420, "fraCOND"},
    {"ListView1", CtlKind::ListView, "ID|品名|単価|数量", 300, 2450, 9000, 3150},
    {"lblCAP(3)", CtlKind::Label, "ﾍﾟｰｼﾞ数", 4000, 5700, 1000, 420},
    {"lblSUM(0)", CtlKind::Data, "", 5050, 5680, 900, 420},
    {"lblCAP(4)", CtlKind::Label, "枚数", 6150, 5700, 800, 420},
    {"lblSUM(1)", CtlKind::Data, "", 7000, 5680, 900, 420},
    {"MonthView1", CtlKind::Calendar, "", 0, 0, 3900, 2700},
    {"Command1(1)", CtlKind::Button, "印刷", 7500, 6300, 1800, 600},
    {"Command1(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 300, 6300, 1800, 600},
};

} // namespace

fdlPrintPriceTag::fdlPrintPriceTag(QWidget *parent) : Form(QStringLiteral("fdlPrintPriceTag"), 9600, 7200, parent)
{
    buildControls(kControls, int(std::size(kControls)));
    txtCOND = array<QLineEdit>(QStringLiteral("txtCOND"), 2);
    cmbCOND = ctl<QComboBox>(QStringLiteral("cmbCOND"));
    Check1 = ctl<QCheckBox>(QStringLiteral("Check1"));
    ListView1 = ctl<QTreeWidget>(QStringLiteral("ListView1"));
    lblSUM = array<QLabel>(QStringLiteral("lblSUM"), 2);
    Command1 = array<QPushButton>(QStringLiteral("Command1"), 2);
    for (QLabel *l : lblSUM)
        l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setFieldLimit(txtCOND[0], 10, ImeMode::Disabled);
    entry().registerDateField(txtCOND[0], 0);
    setFieldLimit(txtCOND[1], 3, ImeMode::Disabled);
    txtCOND[1]->setAlignment(Qt::AlignRight);
    for (QLineEdit *f : txtCOND)
        entry().setLeaveCheck(f, [this] {
            SetList();
            return true;
        });
    // The frame choice is kept at once.
    onClick(Check1, [this] {
        PriceTagSheet::setFrame(Check1->isChecked());
        PriceTagSheet::storeFrame(Check1->isChecked());
    }, false);
    onClick(Command1[0], [this] { closeOrEndProgram(this); }, false);
    onClick(Command1[1], [this] { openPreview(kPriceTagReport, lblSUM[0]->text().toInt()); });
}

fdlPrintPriceTag::~fdlPrintPriceTag() = default;

void fdlPrintPriceTag::onLoad()
{
    SetDefSize();
    applyWindowState();
    InitForm();
}

void fdlPrintPriceTag::onResize()
{
    SetSize();
    InitList();
    SetList();
}

void fdlPrintPriceTag::onUnload() { PriceTagSheet::reset(); }

void fdlPrintPriceTag::InitForm()
{
    setWindowTitle(QStringLiteral("値札印刷"));
    txtCOND[0]->setText(DateUtil::today().toString(QStringLiteral("yyyy/MM/dd")));
    Check1->setChecked(PriceTagSheet::storedFrame());
    PriceTagSheet::setFrame(Check1->isChecked());
    // The sheet's pictures and symbol cache live as long as this dialog.
    PriceTagSheet::reset();
    PriceTagSheet::loadShopLogo();
}

void fdlPrintPriceTag::InitList()
{
    ListView1->clear();
    const int widths[4] = {700, 4800, 1500, 1300};
    for (int i = 0; i < 4; ++i) {
        ListView1->setColumnWidth(i, int(widths[i] * rateX() / TwipsPerPixel));
        ListView1->headerItem()->setTextAlignment(i, (i >= 2 ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    }
}

void fdlPrintPriceTag::SetList()
{
    if (txtCOND[0]->text().isEmpty())
        return;
    QDateTime day;
    ListView1->clear();
    TagTotals totals;
    if (DateUtil::parseStorable(txtCOND[0]->text(), day)) {
        // The farmer list is never filled, so the farmer term never applies.
        const Value farmer = cmbCOND->currentIndex() > 0 ? currentItemData(cmbCOND) : Value();
        totals = loadPriceTagDay(day, skipValue(txtCOND[1]->text()), farmer);
    } else {
        // Not a day: nothing can be listed for it.
        gPTAG_ROWS = QVector<PriceTagSet>(1);
    }
    const QVector<PriceTagRow> &rows = gPTAG_ROWS[0].Rows;
    for (int i = 0; i < rows.size(); ++i) {
        const PriceTagRow &r = rows[i];
        if (r.Qty == 0)
            continue;
        auto *item = new QTreeWidgetItem(ListView1);
        item->setText(0, QString::number(i + 1));
        item->setText(1, r.Label.PrdNm);
        item->setText(2, r.Label.Price.toString());
        item->setText(3, QString::number(r.Qty));
        item->setTextAlignment(2, Qt::AlignRight | Qt::AlignVCenter);
        item->setTextAlignment(3, Qt::AlignRight | Qt::AlignVCenter);
    }
    lblSUM[0]->setText(QString::number(totals.pages));
    lblSUM[1]->setText(QString::number(totals.labels));
}
