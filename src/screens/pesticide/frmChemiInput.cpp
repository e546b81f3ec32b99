#include "screens/pesticide/frmChemiInput.h"

#include "screens/pesticide/frmChemiList.h"

#include "ui/Entry.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "base/Msg.h"
#include "store/SqlText.h"
#include "screens/diary/frmDairyCal.h"
#include "store/Database.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>

#include <cmath>

namespace {

// In the order of entry: the tab order follows the table.
const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "農薬入力", 300, 150, 4000, 540},

    {"fraCHEMI", CtlKind::Frame, "農薬", 300, 800, 5900, 3860},
    {"lblCAP(0)", CtlKind::Label, "農薬ID", 100, 380, 1400, 390, "fraCHEMI"},
    {"lblDATA(0)", CtlKind::Data, "", 1600, 380, 1000, 390, "fraCHEMI"},
    {"lblCAP(1)", CtlKind::Label, "登録番号", 100, 860, 1400, 390, "fraCHEMI"},
    {"txtDATA(0)", CtlKind::Text, "", 1600, 860, 1000, 390, "fraCHEMI"},
    {"lblCAP(2)", CtlKind::Label, "農薬名", 100, 1340, 1400, 390, "fraCHEMI"},
    {"txtDATA(1)", CtlKind::Text, "", 1600, 1340, 4100, 390, "fraCHEMI"},
    {"lblCAP(3)", CtlKind::Label, "種類", 100, 1820, 1400, 390, "fraCHEMI"},
    {"txtDATA(2)", CtlKind::Text, "", 1600, 1820, 4100, 390, "fraCHEMI"},
    {"lblCAP(4)", CtlKind::Label, "メーカー名", 100, 2300, 1400, 390, "fraCHEMI"},
    {"txtDATA(3)", CtlKind::Text, "", 1600, 2300, 4100, 390, "fraCHEMI"},
    {"lblCAP(5)", CtlKind::Label, "用途", 100, 2780, 1400, 390, "fraCHEMI"},
    {"cmbDATA(0)", CtlKind::ComboEdit, "", 1600, 2780, 2600, 390, "fraCHEMI"},
    {"lblCAP(6)", CtlKind::Label, "剤型名", 100, 3260, 1400, 390, "fraCHEMI"},
    {"cmbDATA(1)", CtlKind::ComboEdit, "", 1600, 3260, 2600, 390, "fraCHEMI"},

    {"fraPUR", CtlKind::Frame, "購入", 6400, 800, 5700, 3860},
    {"lblCAP(7)", CtlKind::Label, "購入日", 100, 380, 1300, 390, "fraPUR"},
    {"txtDATA(4)", CtlKind::Text, "", 1500, 380, 1500, 390, "fraPUR"},
    {"lblCAP(8)", CtlKind::Label, "購入先", 100, 860, 1300, 390, "fraPUR"},
    {"txtDATA(5)", CtlKind::Text, "", 1500, 860, 4000, 390, "fraPUR"},
    {"lblCAP(9)", CtlKind::Label, "購入数", 100, 1340, 1300, 390, "fraPUR"},
    {"txtDATA(6)", CtlKind::Text, "", 1500, 1340, 1200, 390, "fraPUR"},
    {"cmbDATA(2)", CtlKind::ComboEdit, "", 2800, 1340, 1300, 390, "fraPUR"},
    {"lblCAP(10)", CtlKind::Label, "支払", 100, 1820, 1300, 390, "fraPUR"},
    {"Option1(0)", CtlKind::Option, "現金", 1500, 1820, 1000, 390, "fraPUR"},
    {"Option1(1)", CtlKind::Option, "買掛", 2600, 1820, 1000, 390, "fraPUR"},
    {"lblCAP(11)", CtlKind::Label, "購入額", 100, 2300, 1300, 390, "fraPUR"},
    {"txtDATA(7)", CtlKind::Text, "", 1500, 2300, 1500, 390, "fraPUR"},
    {"lblUNIT(0)", CtlKind::Label, "円", 3050, 2300, 400, 390, "fraPUR"},
    {"lblCAP(12)", CtlKind::Label, "使用量", 100, 2780, 1300, 390, "fraPUR"},
    {"lblDATA(1)", CtlKind::Data, "", 1500, 2780, 1200, 390, "fraPUR"},
    {"lblCAP(13)", CtlKind::Label, "残量", 100, 3260, 1300, 390, "fraPUR"},
    {"lblDATA(2)", CtlKind::Data, "", 1500, 3260, 1200, 390, "fraPUR"},

    {"lblCAP(14)", CtlKind::Label, "備考", 300, 4820, 1400, 390},
    {"txtDATA(8)", CtlKind::Text, "", 1900, 4820, 8300, 390},
    {"Check1", CtlKind::Check, "有効", 10700, 4820, 1300, 390},

    {"Frame2", CtlKind::Frame, "登録内容", 300, 5350, 11800, 2950},
    {"lblCAP(15)", CtlKind::Label, "作物", 100, 380, 2000, 390, "Frame2"},
    {"cmbINFO", CtlKind::ComboEdit, "", 2200, 380, 2600, 390, "Frame2"},
    {"lblCAP(16)", CtlKind::Label, "適用病害虫・目的", 100, 860, 2000, 390, "Frame2"},
    {"lblINFO(0)", CtlKind::Data, "", 2200, 860, 8900, 390, "Frame2"},
    {"lblCAP(17)", CtlKind::Label, "希釈倍数使用量散布量", 100, 1340, 2000, 390, "Frame2"},
    {"lblINFO(1)", CtlKind::Data, "", 2200, 1340, 8900, 390, "Frame2"},
    {"lblCAP(18)", CtlKind::Label, "使用時期", 100, 1820, 2000, 390, "Frame2"},
    {"lblINFO(2)", CtlKind::Data, "", 2200, 1820, 8900, 390, "Frame2"},
    {"lblCAP(19)", CtlKind::Label, "回数 使用方法", 100, 2300, 2000, 390, "Frame2"},
    {"lblINFO(3)", CtlKind::Data, "", 2200, 2300, 8900, 390, "Frame2"},
    {"VScroll1", CtlKind::VScroll, "", 11200, 860, 300, 1830, "Frame2"},

    {"cmdMENU(1)", CtlKind::Button, "登録", 10500, 8500, 1600, 540},
    {"cmdMENU(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 300, 8500, 1600, 540},
    {"MonthView1", CtlKind::Calendar, "", 8000, 1200, 3900, 2800},
};

// Length limits and input modes of txtDATA(0) .. txtDATA(8).
const struct {
    int length;
    ImeMode mode;
} kLimits[9] = {
    {5, ImeMode::Disabled},   {100, ImeMode::Hiragana}, {100, ImeMode::Hiragana},
    {50, ImeMode::Hiragana},  {10, ImeMode::Disabled},  {50, ImeMode::Hiragana},
    {10, ImeMode::Disabled},  {10, ImeMode::Disabled},  {50, ImeMode::Hiragana},
};

// A number as typed ("１２", "1,200") kept as its value; none for other text.
Value numberOrNull(const QString &t)
{
    double d;
    if (t.isEmpty() || !parseNumber(t, d) || !std::isfinite(d))
        return Value::null();
    return Value(d);
}

// A date the data tables can hold; none for other text.
Value dateOrNull(const QString &t)
{
    QDateTime dt;
    if (t.isEmpty() || !DateUtil::parse(t, dt) || dt.date().year() < 1000 || dt.date().year() > 9999)
        return Value::null();
    return Value(dt);
}

QString infoText(const Value &v) { return Nz(v, Value(QString())).toText(); }

} // namespace

frmChemiInput::frmChemiInput(QWidget *parent) : Form(QStringLiteral("frmChemiInput"), 12400, 9200, parent)
{
    setWindowTitle(QStringLiteral("農薬入力"));
    setSizable(true);
    setTrapStyle(TrapStyle::Description);
    // The scroll bar keeps its own size.
    scaleRules().skip << QStringLiteral("VSc");
    buildControls(kControls, int(std::size(kControls)));
    txtDATA = array<QLineEdit>(QStringLiteral("txtDATA"), 9);
    cmbDATA = array<QComboBox>(QStringLiteral("cmbDATA"), 3);
    lblDATA = array<QLabel>(QStringLiteral("lblDATA"), 3);
    lblINFO = array<QLabel>(QStringLiteral("lblINFO"), 4);
    Option1 = array<QRadioButton>(QStringLiteral("Option1"), 2);
    cmdMENU = array<QPushButton>(QStringLiteral("cmdMENU"), 2);
    Check1 = ctl<QCheckBox>(QStringLiteral("Check1"));
    cmbINFO = ctl<QComboBox>(QStringLiteral("cmbINFO"));
    VScroll1 = ctl<QScrollBar>(QStringLiteral("VScroll1"));
    Frame2 = ctl<QGroupBox>(QStringLiteral("Frame2"));

    ctl<QLabel>(QStringLiteral("lblUNIT(0)"))->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    for (QLabel *l : lblDATA)
        l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    for (int i : {6, 7})
        txtDATA[i]->setAlignment(Qt::AlignRight);
    VScroll1->setRange(0, 0);
    VScroll1->setPageStep(1);

    for (int i = 0; i < 9; ++i) {
        setFieldLimit(txtDATA[i], kLimits[i].length, kLimits[i].mode);
        connect(txtDATA[i], &QLineEdit::textChanged, this, [this] { mChanged = true; });
        entry().setLeaveCheck(txtDATA[i], [this, i] { return txtLeave(i); });
    }
    entry().registerDateField(txtDATA[4], 4);
    for (int i = 0; i < 3; ++i)
        entry().setLeaveCheck(cmbDATA[i], [this, i] { return cmbLeave(i); });
    entry().setLeaveCheck(cmbINFO, [this] { return cmbInfoLeave(); });
    connect(Option1[0], &QRadioButton::clicked, this, [this] { mDATA[0].ACC_ID = Value(Chemi::CashAccount); });
    connect(Option1[1], &QRadioButton::clicked, this, [this] { mDATA[0].ACC_ID = Value(Chemi::PayableAccount); });
    connect(Check1, &QCheckBox::clicked, this, [this] { mDATA[0].CHK_FLG = Value(Check1->isChecked() ? 1 : 0); });
    connect(VScroll1, &QScrollBar::valueChanged, this, [this] { trap([this] { DispAppl(); }); });

    onClick(cmdMENU[0], [this] { close(); }, false);
    onClick(cmdMENU[1], [this] {
        if (!ChkData())
            return;
        if (!SaveData())
            return;
        if (auto *list = qobject_cast<frmChemiList *>(Form::find(QStringLiteral("frmChemiList"))))
            list->SetList();
        if (auto *cal = qobject_cast<frmDairyCal *>(Form::find(QStringLiteral("frmDairyCal"))))
            cal->DispData();
        done(QDialog::Accepted);
    });
}

void frmChemiInput::onLoad()
{
    SetDefSize();
    applyWindowState();
}

void frmChemiInput::onResize()
{
    // A new size starts the entry over from the row it was opened for. The
    // registered uses are offered only for a lot that had its number then.
    SetSize();
    InitForm();
    SetMode();
    if (!hasValue(mDATA[0].REG_NO) || mDATA[0].REG_NO.toText().isEmpty()) {
        Frame2->setVisible(false);
    } else {
        SetCmbInfo();
        Frame2->setVisible(true);
    }
}

void frmChemiInput::onActivate()
{
    applyWindowState();
    // Viewing and deleting leave the locked first box.
    if (gMODE == Mode::View || gMODE == Mode::Delete) {
        QWidget *from = focusWidget();
        sendTab(from ? from : this);
    }
}

void frmChemiInput::onUnload()
{
    if (gDB)
        gDB->ReleaseData(QStringLiteral("D_CHEMI"), QString());
}

void frmChemiInput::InitForm()
{
    mDATA = QVector<ChemiRow>(1);
    for (int i = 0; i < 3; ++i)
        SetCmb(i);
}

void frmChemiInput::SetCmb(int index)
{
    QComboBox *c = cmbDATA[index];
    c->clear();
    addEmptyItem(c);
    QString sql;
    switch (index) {
    case 0: sql = QStringLiteral("SELECT L_KBN.ID, L_KBN.NM FROM L_KBN WHERE KBN=15 ORDER BY L_KBN.ID"); break;
    case 1: sql = QStringLiteral("SELECT L_KBN.ID, L_KBN.NM FROM L_KBN WHERE KBN=16 ORDER BY L_KBN.ID"); break;
    case 2: sql = QStringLiteral("SELECT L_CHEMI_UNIT.ID, L_CHEMI_UNIT.NM FROM L_CHEMI_UNIT ORDER BY L_CHEMI_UNIT.ID"); break;
    default: return;
    }
    RecordsetPtr rs = gWORK->GetFwdOnlyRst(sql);
    for (; !rs->eof(); rs->MoveNext())
        addItem(c, Nz(rs->Fields(QStringLiteral("NM")), Value(QString())).toText(),
                Nz(rs->Fields(QStringLiteral("ID")), Value(0)));
    rs->Close();
    c->setCurrentIndex(-1);
}

void frmChemiInput::SetCmbInfo()
{
    cmbINFO->clear();
    RecordsetPtr rs =
        gWORK->GetFwdOnlyRst(QStringLiteral("SELECT L_CROP.CROP_NM1 FROM L_CROP ORDER BY L_CROP.CROP_NM1"));
    for (; !rs->eof(); rs->MoveNext()) {
        const QString nm = Nz(rs->Fields(QStringLiteral("CROP_NM1")), Value(QString())).toText();
        addItem(cmbINFO, nm, Value(nm));
    }
    rs->Close();
    cmbINFO->setCurrentIndex(-1);
    mAPPL.clear();
    VScroll1->setRange(0, 0);
    DispAppl();
}

void frmChemiInput::SetMode()
{
    mDATA.resize(1);
    if (gROW_IDX >= 0 && gROW_IDX < gCHEMI_ROWS.size())
        mDATA[0] = gCHEMI_ROWS[gROW_IDX];
    ChemiRow &r = mDATA[0];
    if (gMODE == Mode::Add) {
        // A copy is a new lot of the same pesticide: a new purchase date,
        // and the whole quantity in hand.
        r.FMR_ID = gFMR_ID;
        r.CHEMI_ID = r.PUR_DATE = r.USED_QTY = r.REST_QTY = r.UDATE = Value::null();
        r.CHK_FLG = Value(1);
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
        lockFields();
    DispData();
}

void frmChemiInput::lockFields()
{
    // The crop of the registered uses stays open: the uses can be read.
    for (QWidget *w : controls()) {
        const QString n = w->objectName();
        if (n == QLatin1String("cmbINFO"))
            continue;
        if (n.startsWith(QLatin1String("txt")) || n.startsWith(QLatin1String("cmb"))) {
            w->setFocusPolicy(Qt::NoFocus);
            w->setProperty("locked", true);
            if (auto *e = qobject_cast<QLineEdit *>(w)) {
                e->setReadOnly(true);
                QPalette p = e->palette();
                p.setColor(QPalette::Base, palette().color(QPalette::Window));
                e->setPalette(p);
            } else {
                w->setEnabled(false);
            }
        } else if (n.startsWith(QLatin1String("Che")) || n.startsWith(QLatin1String("Opt"))) {
            w->setEnabled(false);
        }
    }
}

void frmChemiInput::DispData()
{
    const ChemiRow &r = mDATA[0];
    lblDATA[0]->setText(textOf(r.CHEMI_ID));
    lblDATA[1]->setText(textOf(r.USED_QTY));
    lblDATA[2]->setText(textOf(r.REST_QTY));
    txtDATA[0]->setText(textOf(r.REG_NO));
    txtDATA[1]->setText(textOf(r.CHEMI_NM));
    txtDATA[2]->setText(textOf(r.CHEMI_KIND));
    txtDATA[3]->setText(textOf(r.MAKER_NM));
    txtDATA[4]->setText(Sql::dayText(r.PUR_DATE));
    txtDATA[5]->setText(textOf(r.PUR_SHOP));
    txtDATA[6]->setText(textOf(r.PUR_QTY));
    txtDATA[7]->setText(textOf(r.PUR_AMT));
    txtDATA[8]->setText(textOf(r.NOTES));
    selectItemData(cmbDATA[0], r.USES);
    selectItemData(cmbDATA[1], r.CHEMI_TYPE);
    selectItemData(cmbDATA[2], r.PUR_UNIT);
    // Neither option stands for an account that is neither.
    for (QRadioButton *o : Option1)
        o->setAutoExclusive(false);
    Option1[0]->setChecked(isNumber(r.ACC_ID, Chemi::CashAccount));
    Option1[1]->setChecked(isNumber(r.ACC_ID, Chemi::PayableAccount));
    for (QRadioButton *o : Option1)
        o->setAutoExclusive(true);
    Check1->setChecked(hasValue(r.CHK_FLG) && r.CHK_FLG.toBool());
    mChanged = false;
}

void frmChemiInput::SetChemiData() { Chemi::setChemiData(mDATA[0]); }

bool frmChemiInput::txtLeave(int index)
{
    if (!mChanged)
        return true;
    ChemiRow &r = mDATA[0];
    const QString text = txtDATA[index]->text();
    switch (index) {
    case 0:
        r.REG_NO = textOrNull(text);
        SetChemiData();
        break;
    case 1: r.CHEMI_NM = textOrNull(text); break;
    case 2: r.CHEMI_KIND = textOrNull(text); break;
    case 3: r.MAKER_NM = textOrNull(text); break;
    case 5: r.PUR_SHOP = textOrNull(text); break;
    case 8: r.NOTES = textOrNull(text); break;
    case 4: r.PUR_DATE = dateOrNull(text); break;
    case 6:
        r.PUR_QTY = numberOrNull(text);
        Chemi::computeRest(r);
        break;
    case 7: r.PUR_AMT = numberOrNull(text); break;
    default: break;
    }
    DispData();
    return true;
}

bool frmChemiInput::cmbLeave(int index)
{
    QComboBox *c = cmbDATA[index];
    if (!settleComboText(c))
        return false;
    const Value id = c->currentIndex() >= 0 ? currentItemData(c) : Value::null();
    ChemiRow &r = mDATA[0];
    switch (index) {
    case 0: r.USES = id; break;
    case 1: r.CHEMI_TYPE = id; break;
    case 2: r.PUR_UNIT = id; break;
    default: break;
    }
    return true;
}

bool frmChemiInput::cmbInfoLeave()
{
    if (!settleComboText(cmbINFO, QStringLiteral("一覧にある作物を選択してください。"), EmptyText::NoChoice))
        return false;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    struct Restore {
        ~Restore() { QApplication::restoreOverrideCursor(); }
    } restore;
    SetAppl();
    return true;
}

void frmChemiInput::SetAppl()
{
    const QString crop = cmbINFO->currentIndex() >= 0 ? cmbINFO->itemText(cmbINFO->currentIndex()) : QString();
    mAPPL.clear();
    VScroll1->setRange(0, 0);
    VScroll1->setValue(0);
    const ChemiRow &r = mDATA[0];
    if (hasValue(r.REG_NO) && !r.REG_NO.toText().isEmpty() && !crop.isEmpty()) {
        mAPPL = Chemi::applications(r.REG_NO, Chemi::cropOf(crop));
        VScroll1->setRange(0, std::max(0, int(mAPPL.size()) - 1));
        VScroll1->setValue(0);
    }
    DispAppl();
}

void frmChemiInput::DispAppl()
{
    const int at = VScroll1->value();
    if (mAPPL.isEmpty() || at < 0 || at >= mAPPL.size()) {
        for (QLabel *l : lblINFO)
            l->clear();
        return;
    }
    const ApplRow &a = mAPPL[at];
    lblINFO[0]->setText(infoText(a.TARGET) + infoText(a.PURPOSE));
    lblINFO[1]->setText(infoText(a.DILUTION) + infoText(a.USE_QTY));
    lblINFO[2]->setText(infoText(a.SEASON));
    lblINFO[3]->setText(infoText(a.USE_TIMES) + QLatin1Char(' ') + infoText(a.USE_WAY));
}

bool frmChemiInput::ChkData()
{
    ChemiRow &r = mDATA[0];
    if (gMODE == Mode::Delete) {
        const QString refusal = Chemi::deleteRefusal(r.FMR_ID, r.CHEMI_ID);
        if (!refusal.isEmpty()) {
            ShowMsg(refusal, Msg::Exclamation);
            return false;
        }
        return true;
    }
    Chemi::computeRest(r);
    if (txtDATA[1]->text().isEmpty()) {
        ShowMsg(QStringLiteral("名称は必須入力です。"), Msg::Exclamation);
        txtDATA[1]->setFocus();
        return false;
    }
    return true;
}

bool frmChemiInput::SaveData()
{
    if (!Chemi::saveLot(gMODE, mDATA[0], GetCompName())) {
        ShowMsg(QStringLiteral("該当データが存在しません。"), Msg::Critical);
        return false;
    }
    return true;
}
