#include "screens/masters/fdlMstFmrEdit.h"

#include "base/Globals.h"
#include "rules/masters/FmrMaster.h"
#include "ui/Entry.h"

#include <QLineEdit>

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
    {"Command1(1)", CtlKind::Button, "登録", 7500, 6500, 1800, 600},
    {"Command1(0)", CtlKind::Button, "閉じる", 300, 6500, 1800, 600},
};

// length, input mode
const struct {
    int length;
    ImeMode mode;
} kLimits[14] = {{8, ImeMode::Disabled},  {50, ImeMode::Hiragana}, {50, ImeMode::Hiragana},
                 {15, ImeMode::Disabled}, {15, ImeMode::Disabled}, {50, ImeMode::Hiragana},
                 {50, ImeMode::Hiragana}, {50, ImeMode::Hiragana}, {50, ImeMode::Hiragana},
                 {4, ImeMode::Hiragana},  {10, ImeMode::FullWidthAlpha}, {50, ImeMode::Hiragana},
                 {4, ImeMode::Disabled},  {4, ImeMode::Disabled}};

Value currentFarmer() { return gFMR_ID; }

} // namespace

fdlMstFmrEdit::fdlMstFmrEdit(QWidget *parent)
    : CodeMasterDialog(QStringLiteral("fdlMstFmrEdit"), 9600, 7500, kControls, int(std::size(kControls)),
                       FmrMaster::FieldCount, currentFarmer, parent)
{
    setWindowTitle(QStringLiteral("生産者情報編集"));
    for (int i = 0; i < FmrMaster::FieldCount; ++i)
        setFieldLimit(txtDATA[i], kLimits[i].length, kLimits[i].mode);
    for (int i : {0, 12, 13})
        entry().setNumberCheck(txtDATA[i], QStringLiteral("数値を入力してください。"));
}

bool fdlMstFmrEdit::GetData(const Value &id)
{
    FmrRecord r;
    if (!FmrMaster::read(id, r))
        return false;
    for (int i = 1; i < FmrMaster::FieldCount; ++i)
        showFieldText(txtDATA[i], textOf(FmrRecord::map().of(r, FmrMaster::column(i))));
    return true;
}

void fdlMstFmrEdit::save(const Value &id)
{
    QStringList texts;
    for (QLineEdit *e : txtDATA)
        texts << e->text();
    FmrMaster::save(id, texts);
}
