#include "screens/diary/frmDairyInput.h"

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Msg.h"
#include "rules/common/Ids.h"
#include "rules/diary/DiaryLists.h"
#include "rules/diary/modOldCal.h"
#include "rules/pesticide/SprayCheck.h"
#include "rules/shipping/ShipData.h"
#include "screens/diary/frmDairyCal.h"
#include "screens/diary/frmDiaryLedgeInput.h"
#include "screens/shipping/frmShipInput.h"
#include "rules/books/Ledger.h"
#include "store/Lookup.h"
#include "ui/Entry.h"
#include "ui/Screens.h"
#include "ui/Skeletons.h"

#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>

namespace {

const CtlSpec kControls[] = {
    {"Option1(0)", CtlKind::Option, "作業日誌", 120, 120, 1400, 450},
    {"Option1(1)", CtlKind::Option, "出納帳", 1560, 120, 1300, 450},
    {"Option1(2)", CtlKind::Option, "預金帳", 2900, 120, 1300, 450},
    {"Option1(3)", CtlKind::Option, "売掛帳", 4240, 120, 1300, 450},
    {"Option1(4)", CtlKind::Option, "買掛帳", 5580, 120, 1300, 450},
    {"lblCAP(0)", CtlKind::Label, "作業日", 7050, 135, 800, 420},
    {"lblDATA(0)", CtlKind::Data, "", 7900, 135, 1500, 420},
    {"lblCAP(1)", CtlKind::Label, "名前", 9450, 135, 650, 420},
    {"lblDATA(1)", CtlKind::Data, "", 10150, 135, 2130, 420},

    {"Frame1(0)", CtlKind::Frame, "", 120, 650, 12160, 7600},
    {"Label1(0)", CtlKind::Label, "天候", 100, 300, 800, 420, "Frame1(0)"},
    {"cmbDATA(0)", CtlKind::Combo, "", 950, 280, 2200, 420, "Frame1(0)"},
    {"Label1(1)", CtlKind::Label, "最低気温", 3300, 300, 1000, 420, "Frame1(0)"},
    {"txtDATA(0)", CtlKind::Text, "", 4350, 280, 800, 420, "Frame1(0)"},
    {"Label1(19)", CtlKind::Label, "℃", 5150, 300, 300, 420, "Frame1(0)"},
    {"Label1(2)", CtlKind::Label, "最高気温", 5500, 300, 1000, 420, "Frame1(0)"},
    {"txtDATA(1)", CtlKind::Text, "", 6550, 280, 800, 420, "Frame1(0)"},
    {"Label1(20)", CtlKind::Label, "℃", 7350, 300, 300, 420, "Frame1(0)"},
    {"Label1(3)", CtlKind::Label, "ヒトコト", 100, 800, 800, 420, "Frame1(0)"},
    {"txtDATA(2)", CtlKind::Text, "", 950, 780, 11060, 420, "Frame1(0)"},
    {"Label1(4)", CtlKind::Label, "作付", 100, 1330, 3000, 360, "Frame1(0)"},
    {"List1(0)", CtlKind::List, "", 100, 1700, 3000, 4000, "Frame1(0)"},
    {"Label1(5)", CtlKind::Label, "作業", 3250, 1330, 2800, 360, "Frame1(0)"},
    {"List1(1)", CtlKind::List, "", 3250, 1700, 2800, 4000, "Frame1(0)"},
    {"cmdSUB(1)", CtlKind::Button, "追加", 3250, 5800, 1350, 500, "Frame1(0)"},
    {"cmdSUB(0)", CtlKind::Button, "削除", 4700, 5800, 1350, 500, "Frame1(0)"},
    {"Label1(6)", CtlKind::Label, "作物", 6250, 1350, 900, 420, "Frame1(0)"},
    {"lblDATA(2)", CtlKind::Data, "", 7200, 1330, 1950, 420, "Frame1(0)"},
    {"Label1(7)", CtlKind::Label, "収穫", 9200, 1350, 700, 420, "Frame1(0)"},
    {"lblDATA(3)", CtlKind::Data, "", 9950, 1330, 2060, 420, "Frame1(0)"},
    {"Label1(8)", CtlKind::Label, "作付日", 6250, 1850, 900, 420, "Frame1(0)"},
    {"lblDATA(4)", CtlKind::Data, "", 7200, 1830, 1950, 420, "Frame1(0)"},
    {"Label1(9)", CtlKind::Label, "面積", 9200, 1850, 700, 420, "Frame1(0)"},
    {"lblDATA(5)", CtlKind::Data, "", 9950, 1830, 1600, 420, "Frame1(0)"},
    {"Label1(10)", CtlKind::Label, "㌃", 11580, 1850, 400, 420, "Frame1(0)"},
    {"Label1(11)", CtlKind::Label, "作業区分", 6250, 2500, 900, 420, "Frame1(0)"},
    {"cmbDATA(1)", CtlKind::Combo, "", 7200, 2480, 2600, 420, "Frame1(0)"},
    {"Label1(16)", CtlKind::Label, "作業", 6250, 3000, 900, 420, "Frame1(0)"},
    {"Combo1(0)", CtlKind::ComboEdit, "", 7200, 2980, 4810, 420, "Frame1(0)"},
    {"Label1(12)", CtlKind::Label, "内容", 6250, 3500, 900, 420, "Frame1(0)"},
    {"txtDATA(3)", CtlKind::Text, "", 7200, 3480, 4810, 420, "Frame1(0)"},
    {"Frame2", CtlKind::Frame, "農薬", 6250, 4050, 5760, 1750, "Frame1(0)"},
    {"Label1(13)", CtlKind::Label, "使用農薬", 100, 330, 1000, 420, "Frame2"},
    {"cmbDATA(2)", CtlKind::Combo, "", 1150, 310, 4450, 420, "Frame2"},
    {"Label1(14)", CtlKind::Label, "使用目的", 100, 790, 1000, 420, "Frame2"},
    {"cmbDATA(3)", CtlKind::ComboEdit, "", 1150, 770, 4450, 420, "Frame2"},
    {"Label1(15)", CtlKind::Label, "使用量", 100, 1250, 1000, 420, "Frame2"},
    {"txtDATA(4)", CtlKind::Text, "", 1150, 1230, 1500, 420, "Frame2"},
    {"cmbDATA(4)", CtlKind::Combo, "", 2750, 1230, 1300, 420, "Frame2"},
    {"Label1(17)", CtlKind::Label, "メモ", 100, 6520, 800, 420, "Frame1(0)"},
    {"txtDATA(5)", CtlKind::Text, "", 950, 6500, 5100, 420, "Frame1(0)"},
    {"Label1(18)", CtlKind::Label, "備忘", 6250, 6520, 900, 420, "Frame1(0)"},
    {"txtDATA(6)", CtlKind::Text, "", 7200, 6500, 4810, 420, "Frame1(0)"},

    {"Frame1(1)", CtlKind::Frame, "", 120, 650, 12160, 7600},
    {"ListView1", CtlKind::ListView, "", 100, 300, 11960, 5600, "Frame1(1)"},
    {"lblSUM_CAP(0)", CtlKind::Label, "前日繰越", 100, 6050, 1200, 420, "Frame1(1)"},
    {"lblSUM(0)", CtlKind::Data, "", 1350, 6030, 1600, 420, "Frame1(1)"},
    {"lblSUM_CAP(1)", CtlKind::Label, "", 3050, 6050, 1200, 420, "Frame1(1)"},
    {"lblSUM(1)", CtlKind::Data, "", 4300, 6030, 1600, 420, "Frame1(1)"},
    {"lblSUM_CAP(2)", CtlKind::Label, "", 6000, 6050, 1200, 420, "Frame1(1)"},
    {"lblSUM(2)", CtlKind::Data, "", 7250, 6030, 1600, 420, "Frame1(1)"},
    {"lblSUM_CAP(3)", CtlKind::Label, "残高", 8950, 6050, 1200, 420, "Frame1(1)"},
    {"lblSUM(3)", CtlKind::Data, "", 10200, 6030, 1600, 420, "Frame1(1)"},
    {"cmdEDIT(0)", CtlKind::Button, "追加", 100, 6750, 1350, 550, "Frame1(1)"},
    {"cmdEDIT(1)", CtlKind::Button, "修正", 1550, 6750, 1350, 550, "Frame1(1)"},
    {"cmdEDIT(2)", CtlKind::Button, "削除", 3000, 6750, 1350, 550, "Frame1(1)"},

    {"cmdMENU(1)", CtlKind::Button, "登録", 10580, 8420, 1700, 620},
    {"cmdMENU(0)", CtlKind::Button, "閉じる", 120, 8420, 1700, 620},
};

// The book of each tab; the first is the work diary.
const int kBooks[5] = {0, Acc::Cash, Acc::Deposit, Acc::Receivable, Acc::Payable};

} // namespace

frmDairyInput::frmDairyInput(QWidget *parent) : Form(QStringLiteral("frmDairyInput"), 12400, 9200, parent)
{
    setWindowTitle(QStringLiteral("日誌入力"));
    setSizable(true);
    setTrapStyle(TrapStyle::Description);
    buildControls(kControls, int(std::size(kControls)));
    // a control named "Com..." takes its height after its font, like a list
    scaleRules().heightAfterFont << QStringLiteral("Com");

    Option1 = array<QRadioButton>(QStringLiteral("Option1"), 5);
    txtDATA = array<QLineEdit>(QStringLiteral("txtDATA"), 7);
    cmbDATA = array<QComboBox>(QStringLiteral("cmbDATA"), 5);
    List1 = array<QListWidget>(QStringLiteral("List1"), 2);
    lblDATA = array<QLabel>(QStringLiteral("lblDATA"), 6);
    lblSUM = array<QLabel>(QStringLiteral("lblSUM"), 4);
    lblSUM_CAP = array<QLabel>(QStringLiteral("lblSUM_CAP"), 4);
    Combo1 = ctl<QComboBox>(QStringLiteral("Combo1(0)"));
    Frame2 = ctl<QGroupBox>(QStringLiteral("Frame2"));
    Frame1 = array<QGroupBox>(QStringLiteral("Frame1"), 2);
    cmdSUB = array<QPushButton>(QStringLiteral("cmdSUB"), 2);
    cmdEDIT = array<QPushButton>(QStringLiteral("cmdEDIT"), 3);
    cmdMENU = array<QPushButton>(QStringLiteral("cmdMENU"), 2);
    ListView1 = ctl<QTreeWidget>(QStringLiteral("ListView1"));
    for (QLabel *l : lblSUM)
        l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    // The tabs: option buttons that look like tabs.
    for (QRadioButton *o : Option1)
        o->setStyleSheet(QStringLiteral(
            "QRadioButton { border: 1px solid #9aa; border-radius: 4px; padding: 2px 8px; background: #e8e6df; }"
            "QRadioButton:checked { background: #ffffff; font-weight: bold; border-bottom: 3px solid #2a64c8; }"
            "QRadioButton::indicator { image: none; width: 0px; height: 0px; margin: 0px; border: none; }"));
    for (const char *caption : {"Label1(4)", "Label1(5)"})
        ctl<QLabel>(QString::fromLatin1(caption))->setAlignment(Qt::AlignLeft | Qt::AlignBottom);
    Option1[0]->setChecked(true);
    Frame1[1]->hide();

    setFieldLimit(txtDATA[0], 0, ImeMode::Disabled);
    setFieldLimit(txtDATA[1], 0, ImeMode::Disabled);
    setFieldLimit(txtDATA[2], 50, ImeMode::Hiragana);
    setFieldLimit(txtDATA[3], 50, ImeMode::Hiragana);
    setFieldLimit(txtDATA[4], 10, ImeMode::Disabled);
    setFieldLimit(txtDATA[5], 250, ImeMode::Hiragana);
    setFieldLimit(txtDATA[6], 250, ImeMode::Hiragana);

    // A value reaches the record when its control is left: an empty text is
    // Null, any other is kept as typed.
    QLineEdit **dayFields[] = {&txtDATA[0], &txtDATA[1], &txtDATA[2], &txtDATA[5], &txtDATA[6]};
    Value DiaryDayRec::*dayMembers[] = {&DiaryDayRec::LO_TMP, &DiaryDayRec::HI_TMP, &DiaryDayRec::ONE_MSG,
                                        &DiaryDayRec::NOTES1, &DiaryDayRec::NOTES2};
    for (int i = 0; i < 5; ++i) {
        QLineEdit *f = *dayFields[i];
        Value DiaryDayRec::*m = dayMembers[i];
        entry().setLeaveCheck(f, [this, f, m] {
            mDay.day.*m = textOrNull(f->text());
            return true;
        });
    }
    entry().setLeaveCheck(txtDATA[3], [this] {
        if (workSelected() && currentRow())
            currentRow()->NOTES = textOrNull(txtDATA[3]->text());
        return true;
    });
    entry().setLeaveCheck(txtDATA[4], [this] {
        if (workSelected() && currentRow())
            currentRow()->QTY = textOrNull(txtDATA[4]->text());
        return true;
    });
    entry().setLeaveCheck(cmbDATA[0], [this] {
        mDay.day.WTH_ID = currentItemData(cmbDATA[0]);
        return true;
    });
    entry().setLeaveCheck(cmbDATA[1], [this] {
        if (workSelected() && currentRow())
            currentRow()->WORK_KBN = currentItemData(cmbDATA[1]);
        SetCombo1(0);
        DispChemi();
        return true;
    });
    entry().setLeaveCheck(cmbDATA[2], [this] {
        if (workSelected() && currentRow()) {
            const bool chosen = cmbDATA[2]->currentIndex() >= 0;
            currentRow()->CHEMI_ID = chosen ? currentItemData(cmbDATA[2]) : Value::null();
            currentRow()->CHEMI_NM = chosen ? Value(cmbDATA[2]->currentText()) : Value::null();
        }
        SetCmb(3);
        return true;
    });
    entry().setLeaveCheck(cmbDATA[3], [this] {
        if (workSelected() && currentRow()) {
            // Only an entry of the list is kept: a typed text that is none is
            // dropped, and the field may be left all the same.
            QComboBox *c = cmbDATA[3];
            const bool listed = settleComboText(c, QString(), EmptyText::NoChoice);
            currentRow()->PURPOSE = listed && c->currentIndex() >= 0 ? Value(c->itemText(c->currentIndex())) : Value::null();
        }
        return true;
    });
    entry().setLeaveCheck(cmbDATA[4], [this] {
        if (workSelected() && currentRow())
            currentRow()->UNIT_ID = currentItemData(cmbDATA[4]);
        return true;
    });
    entry().setLeaveCheck(Combo1, [this] {
        if (mDtlIx < 0) {
            // So it has always answered: the number of the line, which is none.
            ShowMsg(QString::number(mDtlIx));
            return true;
        }
        mDay.dtl[mDtlIx].WORK_NM = textOrNull(Combo1->currentText());
        if (QListWidgetItem *item = List1[1]->currentItem())
            item->setText(Combo1->currentText());
        return true;
    });

    connect(List1[0], &QListWidget::itemClicked, this, [this] { trap([this] { plantClicked(); }); });
    connect(List1[1], &QListWidget::itemClicked, this, [this] { trap([this] { workClicked(); }); });
    onClick(cmdSUB[1], [this] {
        addClicked();
        entry().setEdited(true);
    });
    onClick(cmdSUB[0], [this] {
        deleteClicked();
        entry().setEdited(true);
    });
    for (int i = 0; i < 5; ++i) {
        onClick(Option1[i], [this, i] { tabClicked(i); });
        entry().notAnEdit(Option1[i]); // the book tabs only turn pages
    }
    onClick(cmdEDIT[0], [this] { editSlip(Mode::Add); });
    onClick(cmdEDIT[1], [this] { editSlip(Mode::Change); });
    onClick(cmdEDIT[2], [this] { editSlip(Mode::Delete); });
    onClick(cmdMENU[0], [this] { close(); }, false);
    onClick(cmdMENU[1], [this] {
        if (!ChkData() || !sprayingsAccepted())
            return;
        if (!EntryScreen::saveOrReload([this] { SaveData(); }, [this] { reload(); }))
            return;
        if (auto *cal = qobject_cast<frmDairyCal *>(Form::find(QStringLiteral("frmDairyCal"))))
            cal->DispData();
        done(QDialog::Accepted);
    });
    EntryScreen::askBeforeClose(this, cmdMENU[1], [] { return Mode::Change; });
}

void frmDairyInput::onLoad()
{
    SetDefSize();
    applyWindowState();
    setTitle();
    lblDATA[0]->setText(gWORK_DATE.toDate().toString(QStringLiteral("yyyy/MM/dd")));
}

void frmDairyInput::setTitle()
{
    const QDateTime day = gWORK_DATE.toDate();
    try {
        const QString old = modOldCal::OldDateText(day);
        const QString eto = GetEtoYm(day);
        const QString six = QString::fromUtf8(modOldCal::SixDayNames[modOldCal::SixDayIndex(day)]);
        setWindowTitle(QStringLiteral("日誌入力（") + day.toString(QStringLiteral("yyyy/MM/dd")) + QStringLiteral("）") +
                       QLatin1Char(' ') + old + QLatin1Char(' ') + eto + QLatin1Char(' ') + six);
    } catch (const AppError &e) {
        // Days the old calendar can't place leave the title as it is; the
        // rest of the screen works.
        if (e.number() != VbErr::Subscript)
            throw;
    }
}

void frmDairyInput::onResize()
{
    SetSize();
    InitForm();
    LoadData();
    DispData();
}

void frmDairyInput::onUnload() { DiaryDay::releaseHolds(); }

// ---------------------------------------------------------------- filling

void frmDairyInput::InitForm()
{
    mDtlIx = -1;
    mDay.clear();
    gLEDGE_ROWS = {blankLedgeRow()};
    for (int i = 0; i < cmbDATA.size(); ++i)
        SetCmb(i);
    for (int i = 0; i < List1.size(); ++i)
        SetList(i);
    SetCombo1(0);
}

void frmDairyInput::SetCmb(int index)
{
    QComboBox *c = cmbDATA[index];
    switch (index) {
    case 0:
        fillChoices(c, DiaryLists::weathers(), true);
        break;
    case 1:
        fillChoices(c, DiaryLists::workKinds(), true);
        break;
    case 2:
        fillChoices(c, DiaryLists::lotsInUse(), true);
        break;
    case 3:
        // The purposes of the chosen lot's registration, as texts; the text
        // shown stays as it is.
        c->clear();
        if (cmbDATA[2]->currentIndex() >= 0)
            c->addItems(DiaryLists::purposesOfLot(currentItemData(cmbDATA[2])));
        break;
    case 4:
        fillChoices(c, DiaryLists::useUnits(), false);
        break;
    }
}

void frmDairyInput::SetList(int index)
{
    QListWidget *list = List1[index];
    if (index == 0) {
        fillChoices(list, DiaryLists::plantingsAlive(gFMR_ID, gWORK_DATE.toDate()));
        return;
    }
    list->clear();
    QListWidgetItem *plant = List1[0]->currentItem();
    if (!plant)
        return;
    for (int i : mDay.linesOf(itemData(List1[0], List1[0]->row(plant))))
        addItem(list, textOf(mDay.dtl[i].WORK_NM), mDay.dtl[i].DTL_NO);
}

void frmDairyInput::SetCombo1(int)
{
    if (mDtlIx < 0)
        return;
    const DiaryDtlRec &r = mDay.dtl[mDtlIx];
    const QString text = Combo1->currentText();
    Combo1->clear();
    Combo1->addItems(DiaryLists::workNames(gFMR_ID, r.PLANT_ID, r.WORK_KBN));
    Combo1->setCurrentIndex(-1);
    Combo1->setEditText(text);
}

void frmDairyInput::LoadData()
{
    mDay.load(gFMR_ID, gWORK_DATE.toDate());
    ListView1->clear();
}

void frmDairyInput::DispData()
{
    lblDATA[0]->setText(mDay.day.WORK_DATE.toDate().toString(QStringLiteral("yyyy/MM/dd")));
    lblDATA[1]->setText(GetFmrNm(gFMR_ID));
    txtDATA[1]->setText(textOf(mDay.day.HI_TMP));
    txtDATA[0]->setText(textOf(mDay.day.LO_TMP));
    txtDATA[2]->setText(textOf(mDay.day.ONE_MSG));
    txtDATA[3]->clear();
    txtDATA[4]->clear();
    txtDATA[5]->setText(textOf(mDay.day.NOTES1));
    txtDATA[6]->setText(textOf(mDay.day.NOTES2));
    if (!hasValue(mDay.day.WTH_ID))
        cmbDATA[0]->setCurrentIndex(-1);
    else
        selectItemData(cmbDATA[0], mDay.day.WTH_ID);
    DispDtl();
}

void frmDairyInput::DispPlant()
{
    QListWidgetItem *plant = List1[0]->currentItem();
    if (!plant) {
        for (int i = 2; i <= 5; ++i)
            lblDATA[i]->clear();
    } else {
        // a planting no longer there leaves the labels as they are
        const DiaryLists::Planting p = DiaryLists::planting(itemData(List1[0], List1[0]->row(plant)));
        if (p.found) {
            lblDATA[2]->setText(p.crop);
            lblDATA[3]->setText(p.harvest);
            lblDATA[4]->setText(p.planted);
            lblDATA[5]->setText(p.area);
        }
    }
    DispDtl();
}

void frmDairyInput::DispDtl()
{
    cmbDATA[1]->setCurrentIndex(-1);
    txtDATA[3]->clear();
    QWidget *editor[] = {cmbDATA[1], Combo1, txtDATA[3], control(QStringLiteral("Label1(11)")),
                         control(QStringLiteral("Label1(16)")), control(QStringLiteral("Label1(12)"))};
    for (QWidget *w : editor)
        w->setVisible(false);
    cmdSUB[0]->setText(QStringLiteral("削除"));
    if (List1[0]->currentItem()) {
        if (QListWidgetItem *work = List1[1]->currentItem())
            mDtlIx = mDay.findDetail(itemData(List1[1], List1[1]->row(work)));
        if (mDtlIx >= 0) {
            const DiaryDtlRec &r = mDay.dtl[mDtlIx];
            if (!hasValue(r.WORK_KBN) || (IsNumeric(r.WORK_KBN) && r.WORK_KBN.toDouble() == 0))
                cmbDATA[1]->setCurrentIndex(-1);
            else
                selectItemData(cmbDATA[1], r.WORK_KBN);
            Combo1->setEditText(textOf(r.WORK_NM));
            txtDATA[3]->setText(textOf(r.NOTES));
            for (QWidget *w : editor)
                w->setVisible(true);
            cmdSUB[0]->setText(r.shipment() ? QStringLiteral("参照") : QStringLiteral("削除"));
        }
    }
    DispChemi();
}

void frmDairyInput::DispChemi()
{
    const DiaryDtlRec *r = mDtlIx >= 0 ? &mDay.dtl[mDtlIx] : nullptr;
    if (!r || !r->spraying()) {
        cmbDATA[2]->setCurrentIndex(-1);
        cmbDATA[3]->clear();
        cmbDATA[4]->setCurrentIndex(-1);
        txtDATA[4]->clear();
        Frame2->hide();
        return;
    }
    Frame2->show();
    if (hasValue(r->CHEMI_ID))
        selectItemData(cmbDATA[2], r->CHEMI_ID);
    else
        cmbDATA[2]->setCurrentIndex(-1);
    SetCmb(3);
    cmbDATA[3]->setEditText(textOf(r->PURPOSE));
    txtDATA[4]->setText(textOf(r->QTY));
    if (hasValue(r->UNIT_ID))
        selectItemData(cmbDATA[4], r->UNIT_ID);
    else
        cmbDATA[4]->setCurrentIndex(-1);
}

bool frmDairyInput::workSelected() const { return List1[1]->currentItem() != nullptr && mDtlIx >= 0; }

DiaryDtlRec *frmDairyInput::currentRow() { return mDtlIx >= 0 && mDtlIx < mDay.dtl.size() ? &mDay.dtl[mDtlIx] : nullptr; }

// ---------------------------------------------------------------- actions

void frmDairyInput::plantClicked()
{
    mDtlIx = -1;
    SetList(1);
    DispPlant();
    cmdSUB[0]->setText(QStringLiteral("削除"));
}

void frmDairyInput::workClicked()
{
    mDtlIx = -1;
    if (QListWidgetItem *work = List1[1]->currentItem())
        mDtlIx = mDay.findDetail(itemData(List1[1], List1[1]->row(work)));
    SetCombo1(0);
    DispDtl();
}

void frmDairyInput::addClicked()
{
    QListWidgetItem *plant = List1[0]->currentItem();
    mDay.addDetail(plant ? itemData(List1[0], List1[0]->row(plant)) : Value());
    plantClicked();
    if (List1[1]->count() > 0) {
        List1[1]->setCurrentRow(List1[1]->count() - 1);
        workClicked();
    }
    if (cmbDATA[1]->isVisible() && cmbDATA[1]->isEnabled())
        cmbDATA[1]->setFocus(Qt::TabFocusReason);
}

void frmDairyInput::deleteClicked()
{
    if (cmdSUB[0]->text() == QStringLiteral("参照")) {
        // A shipment line is looked at in the shipment screen, not changed here.
        const DiaryDtlRec *r = currentRow();
        if (!r || !hasValue(r->SHIP_ID) || r->SHIP_ID.toDouble() == 0)
            return;
        Ship::loadShipment(r->SHIP_ID);
        openModal<frmShipInput>(Mode::View, 0);
        return;
    }
    if (mDtlIx < 0)
        return;
    if (mDay.removeDetail(mDtlIx))
        DispLedgeList();
    plantClicked();
}

void frmDairyInput::SaveData() { mDay.save(); }

bool frmDairyInput::sprayingsAccepted()
{
    return Spray::saveAnyway(QStringLiteral("農薬の登録内容に合わない散布があります。"),
                             [this] { return Spray::checkDay(mDay, DateUtil::today().date()); });
}

void frmDairyInput::reload()
{
    InitForm();
    LoadData();
    DispData();
}

// ---------------------------------------------------------------- book pages

int frmDairyInput::currentBook() const
{
    for (int i = 1; i < 5; ++i)
        if (Option1[i]->isChecked())
            return kBooks[i];
    return 0;
}

void frmDairyInput::tabClicked(int index)
{
    if (index == 0) {
        Frame1[0]->show();
        Frame1[1]->hide();
        return;
    }
    DispLedgeList();
    Frame1[0]->hide();
    Frame1[1]->show();
}

void frmDairyInput::DispLedgeList()
{
    const int book = currentBook();
    if (book == 0)
        return;
    InitLedgeList(book);
    SetLedgeList(book);
}

void frmDairyInput::InitLedgeList(int acc)
{
    const BookPage::Headings h = BookPage::headingsFor(acc);
    QStringList titles = {QStringLiteral("ID"), QStringLiteral("№"), QStringLiteral("科目"), QStringLiteral("相手"),
                          QStringLiteral("備考")};
    const int widths[8] = {0, 500, 1800, 2200, 2200, 1600, 1600, 1600};
    if (h.amounts)
        titles << h.first << h.second << QStringLiteral("残高");
    ListView1->clear();
    ListView1->setColumnCount(titles.size());
    ListView1->setHeaderLabels(titles);
    for (int i = 0; i < titles.size(); ++i) {
        ListView1->setColumnWidth(i, int(widths[i] * rateX() / TwipsPerPixel));
        if (i >= 5)
            ListView1->headerItem()->setTextAlignment(i, Qt::AlignRight | Qt::AlignVCenter);
    }
    ListView1->setColumnHidden(0, true);
    lblSUM_CAP[1]->setText(h.first);
    lblSUM_CAP[2]->setText(h.second);
}

void frmDairyInput::SetLedgeList(int acc)
{
    const Currency forward = BookPage::broughtForward(gFMR_ID, gWORK_DATE.toDate(), acc);
    const BookPage::Page page =
        BookPage::compute(acc, gLEDGE_ROWS, forward, [](const Value &id) { return GetAccNm(Nz(id, Value(0))); });
    ListView1->clear();
    const bool amounts = BookPage::headingsFor(acc).amounts;
    for (const BookPage::Line &l : page.lines) {
        auto *item = new QTreeWidgetItem(ListView1);
        item->setText(0, textOf(l.ledgeId));
        item->setText(1, QString::number(l.no));
        item->setText(2, l.account);
        item->setText(3, l.ctr);
        item->setText(4, l.notes);
        if (amounts) {
            item->setText(5, Ledger::amountText(l.first));
            item->setText(6, Ledger::amountText(l.second));
            item->setText(7, Ledger::amountText(l.balance));
            for (int c = 5; c < 8; ++c)
                item->setTextAlignment(c, Qt::AlignRight | Qt::AlignVCenter);
        }
    }
    lblSUM[0]->setText(Ledger::amountText(page.forward));
    lblSUM[1]->setText(Ledger::amountText(page.sumFirst));
    lblSUM[2]->setText(Ledger::amountText(page.sumSecond));
    lblSUM[3]->setText(Ledger::amountText(page.closing));
}

void frmDairyInput::editSlip(Mode mode)
{
    const int book = currentBook();
    if (mode == Mode::Add) {
        gBOOK_ACC_ID = Value(book);
        if (openModal<frmDiaryLedgeInput>(Mode::Add, -1, book) == QDialog::Accepted)
            entry().setEdited(true);
        return;
    }
    QTreeWidgetItem *line = ListView1->currentItem();
    if (!line)
        return;
    const Value id(line->text(0));
    const int row = BookPage::rowOfSlip(gLEDGE_ROWS, id);
    if (row < 0)
        return;
    const QString refused = Ledger::refusal(mode, gLEDGE_ROWS[row]);
    if (!refused.isEmpty()) {
        ShowMsg(refused, Msg::Exclamation, QString());
        return;
    }
    if (openModal<frmDiaryLedgeInput>(mode, row, book) == QDialog::Accepted)
        entry().setEdited(true);
}
