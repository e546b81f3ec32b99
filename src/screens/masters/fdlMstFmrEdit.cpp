#include "screens/masters/fdlMstFmrEdit.h"
#include "ui/MasterEdit.h"

#include "base/AppError.h"
#include "ui/Entry.h"
#include "base/Globals.h"
#include "base/Msg.h"
#include "store/Database.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>

namespace {

const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "生産者情報", 300, 150, 4800, 540},
    {"lblCAP(0)", CtlKind::Label, "生産者ｺｰﾄﾞ", 150, 900, 1500, 400},
    {"txtDATA(0)", CtlKind::Text, "", 1750, 880, 1300, 420},
    {"lblCAP(1)", CtlKind::Label, "生産者名", 150, 1480, 1500, 400},
    {"txtDATA(1)", CtlKind::Text, "", 1750, 1460, 2900, 420},
    {"lblCAP(2)", CtlKind::Label, "住所", 150, 2060, 1500, 400},
    {"txtDATA(2)", CtlKind::Text, "", 1750, 2040, 2900, 420},
    {"lblCAP(3)", CtlKind::Label, "電話番号", 150, 2640, 1500, 400},
    {"txtDATA(3)", CtlKind::Text, "", 1750, 2620, 2000, 420},
    {"lblCAP(4)", CtlKind::Label, "ﾗﾍﾞﾙ電話番号", 150, 3220, 1500, 400},
    {"txtDATA(4)", CtlKind::Text, "", 1750, 3200, 2000, 420},
    {"lblCAP(5)", CtlKind::Label, "備考", 150, 3800, 1500, 400},
    {"txtDATA(5)", CtlKind::Text, "", 1750, 3780, 2900, 420},
    {"lblCAP(6)", CtlKind::Label, "生産地", 150, 4380, 1500, 400},
    {"txtDATA(6)", CtlKind::Text, "", 1750, 4360, 2900, 420},
    {"Shape1", CtlKind::Shape, "", 4850, 880, 30, 4900},
    {"lblCAP(7)", CtlKind::Label, "金融機関名", 5000, 900, 1400, 400},
    {"txtDATA(7)", CtlKind::Text, "", 6500, 880, 2900, 420},
    {"lblCAP(8)", CtlKind::Label, "支店名", 5000, 1480, 1400, 400},
    {"txtDATA(8)", CtlKind::Text, "", 6500, 1460, 2900, 420},
    {"lblCAP(9)", CtlKind::Label, "口座種別", 5000, 2060, 1400, 400},
    {"txtDATA(9)", CtlKind::Text, "", 6500, 2040, 1300, 420},
    {"lblCAP(10)", CtlKind::Label, "口座番号", 5000, 2640, 1400, 400},
    {"txtDATA(10)", CtlKind::Text, "", 6500, 2620, 2000, 420},
    {"lblCAP(11)", CtlKind::Label, "口座名義", 5000, 3220, 1400, 400},
    {"txtDATA(11)", CtlKind::Text, "", 6500, 3200, 2900, 420},
    {"fraFEE", CtlKind::Frame, "振込手数料", 5000, 3800, 4400, 1500},
    {"lblCAP(12)", CtlKind::Label, "３万円未満", 100, 420, 1400, 400, "fraFEE"},
    {"txtDATA(12)", CtlKind::Text, "", 1600, 400, 1300, 420, "fraFEE"},
    {"lblCAP(13)", CtlKind::Label, "３万円以上", 100, 940, 1400, 400, "fraFEE"},
    {"txtDATA(13)", CtlKind::Text, "", 1600, 920, 1300, 420, "fraFEE"},
    {"Command1(0)", CtlKind::Button, "閉じる", 300, 6500, 1800, 600},
    {"Command1(1)", CtlKind::Button, "登録", 7500, 6500, 1800, 600},
};

const char *const kColumns[14] = {"FMR_ID", "FMR_NM",  "ADRS",   "TEL_NO_L", "TEL_NO_S", "NOTES",  "LOCATE",
                                  "BANK_NM", "BR_NM",  "ACC_KBN", "ACC_NO",  "ACC_NM",   "FEE_1", "FEE_2"};

// length, input mode
const struct {
    int length;
    ImeMode mode;
} kLimits[14] = {{8, ImeMode::Disabled},  {50, ImeMode::Hiragana}, {50, ImeMode::Hiragana},
                 {15, ImeMode::Disabled}, {15, ImeMode::Disabled}, {50, ImeMode::Hiragana},
                 {50, ImeMode::Hiragana}, {50, ImeMode::Hiragana}, {50, ImeMode::Hiragana},
                 {4, ImeMode::Hiragana},  {10, ImeMode::FullWidthAlpha}, {50, ImeMode::Hiragana},
                 {4, ImeMode::Disabled},  {4, ImeMode::Disabled}};

} // namespace

fdlMstFmrEdit::fdlMstFmrEdit(QWidget *parent) : Form(QStringLiteral("fdlMstFmrEdit"), 9600, 7500, parent)
{
    setWindowTitle(QStringLiteral("生産者情報編集"));
    buildControls(kControls, int(std::size(kControls)));
    scaleRules().noFont << QStringLiteral("Sha");
    txtDATA = array<QLineEdit>(QStringLiteral("txtDATA"), 14);
    cmdClose = ctl<QPushButton>(QStringLiteral("Command1(0)"));
    cmdSave = ctl<QPushButton>(QStringLiteral("Command1(1)"));
    for (int i = 0; i < 14; ++i)
        setFieldLimit(txtDATA[i], kLimits[i].length, kLimits[i].mode);
    for (int i : {0, 12, 13})
        entry().setNumberCheck(txtDATA[i], QStringLiteral("数値を入力してください。"));
    // Enter in the code field looks the farmer up (only while looking for a code).
    MasterEdit::onCodeEnter(this, txtDATA[0], [this] { return mMode != 2; }, [this](const Value &code) {
        if (!GetData(code))
            return false;
        setMode(2);
        cmdClose->setFocus();
        return true;
    });
    onClick(cmdClose, [this] { closeOrEndProgram(this); }, false);
    onClick(cmdSave, [this] {
        const Value id(txtDATA[0]->text());
        ChkData();
        if (SaveData(id))
            close();
        else
            ShowMsg(QStringLiteral("データの登録に失敗しました。"), Msg::Exclamation);
    });
}

void fdlMstFmrEdit::setMode(qint16 mode)
{
    mMode = mode;
    const bool editing = mode == 2;
    MasterEdit::setEditable(txtDATA[0], !editing);
    for (int i = 1; i < 14; ++i)
        MasterEdit::setEditable(txtDATA[i], editing);
    cmdSave->setEnabled(editing);
    cmdClose->setText(editing ? QStringLiteral("ｷｬﾝｾﾙ") : QStringLiteral("閉じる"));
}

void fdlMstFmrEdit::onLoad()
{
    SetDefSize();
    applyWindowState();
    setMode(0);
}

void fdlMstFmrEdit::onActivate()
{
    applyWindowState();
    txtDATA[0]->setText(Nz(gFMR_ID, Value(QString())).toText());
    GetData(gFMR_ID);
    setMode(2);
    txtDATA[1]->setFocus();
}

bool fdlMstFmrEdit::GetData(const Value &id)
{
    const QString key = textOf(id);
    RecordsetPtr rs = gMST->GetFwdOnlyRst(QStringLiteral("SELECT M_FMR.* FROM M_FMR WHERE FMR_ID=") + key);
    if (rs->eof())
        return false;
    for (int i = 1; i < 14; ++i)
        txtDATA[i]->setText(Nz(rs->Fields(QString::fromLatin1(kColumns[i])), Value(QString())).toText());
    return true;
}

bool fdlMstFmrEdit::SaveData(const Value &id)
{
    try {
        gMST->Begintrans();
    } catch (const AppError &) {
    }
    try {
        const QString key = textOf(id);
        RecordsetPtr rs = gMST->GetDynamicRst(QStringLiteral("SELECT M_FMR.* FROM M_FMR WHERE FMR_ID=") + key);
        if (rs->eof()) {
            rs->AddNew();
            rs->SetField(QStringLiteral("FMR_ID"), id);
        }
        for (int i = 1; i < 14; ++i) {
            const QString t = txtDATA[i]->text();
            rs->SetField(QString::fromLatin1(kColumns[i]), t.isEmpty() ? Value::null() : Value(t));
        }
        rs->Update();
        rs->Close();
        gMST->CommitTrans();
        return true;
    } catch (const AppError &e) {
        try {
            gMST->RollbackTrans();
        } catch (const AppError &) {
        }
        ShowMsg(e.text(), Msg::Critical);
        return false;
    }
}
