#include "screens/masters/fdlMstShopEdit.h"

#include "base/Globals.h"
#include "base/Msg.h"
#include "rules/masters/ShopMaster.h"
#include "ui/Entry.h"

#include <QDropEvent>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QRadioButton>
#include <QUrl>

namespace {

// name, kind, caption, left, top, width, height (twips), frame. The order is
// the order of the Tab key: the shop on the left, then the barcode and the
// upload settings, then the confirming button.
const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "販売店情報", 300, 150, 4800, 540},
    {"lblCAP(0)", CtlKind::Label, "販売店ｺｰﾄﾞ", 150, 900, 1500, 400},
    {"txtDATA(0)", CtlKind::Text, "", 1750, 880, 1300, 420},
    {"lblCAP(1)", CtlKind::Label, "店舗名", 150, 1440, 1500, 400},
    {"txtDATA(1)", CtlKind::Text, "", 1750, 1420, 4200, 420},
    {"lblCAP(2)", CtlKind::Label, "母体名", 150, 1980, 1500, 400},
    {"txtDATA(2)", CtlKind::Text, "", 1750, 1960, 4200, 420},
    {"lblCAP(3)", CtlKind::Label, "住所", 150, 2520, 1500, 400},
    {"txtDATA(3)", CtlKind::Text, "", 1750, 2500, 4200, 420},
    {"lblCAP(4)", CtlKind::Label, "電話番号", 150, 3060, 1500, 400},
    {"txtDATA(4)", CtlKind::Text, "", 1750, 3040, 2200, 420},
    {"lblCAP(5)", CtlKind::Label, "FAX番号", 150, 3600, 1500, 400},
    {"txtDATA(5)", CtlKind::Text, "", 1750, 3580, 2200, 420},
    {"lblCAP(6)", CtlKind::Label, "手数料率", 150, 4140, 1500, 400},
    {"txtDATA(6)", CtlKind::Text, "", 1750, 4120, 900, 420},
    {"lblPCT", CtlKind::Label, "%", 2650, 4140, 300, 400},
    {"lblACC", CtlKind::Label, "決済方法", 150, 4680, 1500, 400},
    {"Option2(0)", CtlKind::Option, "現金", 1800, 4680, 1200, 400},
    {"Option2(1)", CtlKind::Option, "売掛", 3100, 4680, 1200, 400},
    {"lblCAP(22)", CtlKind::Label, "値札ロゴ", 150, 5220, 1500, 400},
    {"txtDATA(22)", CtlKind::Text, "", 1750, 5200, 3050, 420},
    {"Command1(2)", CtlKind::Button, "参照...", 4850, 5180, 1100, 460},
    {"lblCAP(23)", CtlKind::Label, "備考", 150, 5760, 1500, 400},
    {"txtDATA(23)", CtlKind::Text, "", 1750, 5740, 4200, 420},
    {"Shape1", CtlKind::Shape, "", 6100, 880, 30, 5300},

    {"fraBCD", CtlKind::Frame, "バーコード", 6250, 800, 6000, 1700},
    {"lblCAP(7)", CtlKind::Label, "生産者ID", 600, 300, 1070, 360, "fraBCD"},
    {"lblCAP(9)", CtlKind::Label, "商品ID", 1670, 300, 1070, 360, "fraBCD"},
    {"lblCAP(11)", CtlKind::Label, "金額（ 1円)", 2740, 300, 1070, 360, "fraBCD"},
    {"lblCAP(13)", CtlKind::Label, "金額（10円)", 3810, 300, 1070, 360, "fraBCD"},
    {"lblCAP(15)", CtlKind::Label, "その他", 4880, 300, 1070, 360, "fraBCD"},
    {"lblSTA", CtlKind::Label, "先頭", 50, 720, 500, 400, "fraBCD"},
    {"lblLEN", CtlKind::Label, "長さ", 50, 1180, 500, 400, "fraBCD"},
    {"txtDATA(7)", CtlKind::Text, "", 785, 700, 700, 420, "fraBCD"},
    {"txtDATA(8)", CtlKind::Text, "", 785, 1160, 700, 420, "fraBCD"},
    {"txtDATA(9)", CtlKind::Text, "", 1855, 700, 700, 420, "fraBCD"},
    {"txtDATA(10)", CtlKind::Text, "", 1855, 1160, 700, 420, "fraBCD"},
    {"txtDATA(11)", CtlKind::Text, "", 2925, 700, 700, 420, "fraBCD"},
    {"txtDATA(12)", CtlKind::Text, "", 2925, 1160, 700, 420, "fraBCD"},
    {"txtDATA(13)", CtlKind::Text, "", 3995, 700, 700, 420, "fraBCD"},
    {"txtDATA(14)", CtlKind::Text, "", 3995, 1160, 700, 420, "fraBCD"},
    {"txtDATA(15)", CtlKind::Text, "", 5065, 700, 700, 420, "fraBCD"},
    {"txtDATA(16)", CtlKind::Text, "", 5065, 1160, 700, 420, "fraBCD"},

    {"fraUP", CtlKind::Frame, "アップロード", 6250, 2650, 6000, 3350},
    {"lblCAP(17)", CtlKind::Label, "ｻｰﾊﾞｰ", 100, 380, 1600, 400, "fraUP"},
    {"txtDATA(17)", CtlKind::Text, "", 1800, 360, 4000, 420, "fraUP"},
    {"lblCAP(18)", CtlKind::Label, "ｻｰﾊﾞｰﾃﾞｨﾚｸﾄﾘ", 100, 860, 1600, 400, "fraUP"},
    {"txtDATA(18)", CtlKind::Text, "", 1800, 840, 4000, 420, "fraUP"},
    {"lblCAP(19)", CtlKind::Label, "FTPﾕｰｻﾞｰ", 100, 1340, 1600, 400, "fraUP"},
    {"txtDATA(19)", CtlKind::Text, "", 1800, 1320, 2500, 420, "fraUP"},
    {"lblCAP(20)", CtlKind::Label, "PWD", 100, 1820, 1600, 400, "fraUP"},
    {"txtDATA(20)", CtlKind::Password, "", 1800, 1800, 2500, 420, "fraUP"},
    {"lblCAP(21)", CtlKind::Label, "WEBｻｰﾊﾞｰ", 100, 2300, 1600, 400, "fraUP"},
    {"txtDATA(21)", CtlKind::Text, "", 1800, 2280, 4000, 420, "fraUP"},
    {"lblFILE", CtlKind::Label, "ファイル形式", 100, 2800, 1600, 400, "fraUP"},
    {"Option1(0)", CtlKind::Option, "HTML", 1850, 2800, 1200, 400, "fraUP"},
    {"Option1(1)", CtlKind::Option, "PHP", 3150, 2800, 1200, 400, "fraUP"},
    {"Option1(2)", CtlKind::Option, "CGI", 4450, 2800, 1200, 400, "fraUP"},

    {"Command1(1)", CtlKind::Button, "登録", 10300, 6750, 1800, 600},
    {"Command1(0)", CtlKind::Button, "閉じる", 300, 6750, 1800, 600},
};

struct Limit {
    int length;
    ImeMode mode;
};
Limit limitOf(int field)
{
    if (field == 0)
        return {8, ImeMode::Disabled};
    if (field <= 3 || field == 23)
        return {50, ImeMode::Hiragana};
    if (field <= 5)
        return {15, ImeMode::Disabled};
    if (field == 6)
        return {4, ImeMode::Disabled};
    if (field <= 16)
        return {2, ImeMode::Disabled};
    if (field == 18 || field == 21 || field == 22)
        return {50, ImeMode::Off};
    return {50, ImeMode::Disabled};
}

// Selects one option of a group, or none (index -1).
void checkOption(const QVector<QRadioButton *> &group, int index)
{
    for (int i = 0; i < group.size(); ++i) {
        group[i]->setAutoExclusive(false);
        group[i]->setChecked(i == index);
        group[i]->setAutoExclusive(true);
    }
}

int checkedOption(const QVector<QRadioButton *> &group)
{
    for (int i = 0; i < group.size(); ++i)
        if (group[i]->isChecked())
            return i;
    return -1;
}

// The first file of a drop, or "" when the drop brings none.
QString firstDroppedFile(const QMimeData *data)
{
    if (!data || !data->hasUrls() || data->urls().isEmpty())
        return QString();
    const QUrl url = data->urls().first();
    return url.isLocalFile() ? url.toLocalFile() : QString();
}

Value currentShop() { return gSHOP_ID; }

} // namespace

fdlMstShopEdit::fdlMstShopEdit(QWidget *parent)
    : CodeMasterDialog(QStringLiteral("fdlMstShopEdit"), 12400, 7600, kControls, int(std::size(kControls)),
                       ShopMaster::FieldCount, currentShop, parent)
{
    setWindowTitle(QStringLiteral("販売店編集"));
    Option1 = array<QRadioButton>(QStringLiteral("Option1"), 3);
    Option2 = array<QRadioButton>(QStringLiteral("Option2"), 2);
    cmdRef = ctl<QPushButton>(QStringLiteral("Command1(2)"));
    ctl<QLabel>(QStringLiteral("lblPCT"))->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    for (int i : {7, 9, 11, 13, 15})
        ctl<QLabel>(QStringLiteral("lblCAP(%1)").arg(i))->setAlignment(Qt::AlignCenter);

    for (int i = 0; i < ShopMaster::FieldCount; ++i) {
        const Limit l = limitOf(i);
        setFieldLimit(txtDATA[i], l.length, l.mode);
        if (ShopMaster::isNumberField(i))
            entry().setNumberCheck(txtDATA[i], QStringLiteral("数値を指定してください。"));
    }
    txtDATA[22]->installEventFilter(this);
    onClick(cmdRef, [this] { chooseLogo(); });
}

void fdlMstShopEdit::setOthersEditable(bool on)
{
    for (QRadioButton *o : Option1 + Option2)
        o->setEnabled(on);
    cmdRef->setEnabled(on);
}

bool fdlMstShopEdit::eventFilter(QObject *watched, QEvent *event)
{
    // A file dropped on the logo field gives it its path.
    if (watched == txtDATA[22]) {
        switch (event->type()) {
        case QEvent::DragEnter:
        case QEvent::DragMove: {
            auto *drag = static_cast<QDropEvent *>(event);
            if (firstDroppedFile(drag->mimeData()).isEmpty())
                return false;
            drag->acceptProposedAction();
            return true;
        }
        case QEvent::Drop: {
            auto *drop = static_cast<QDropEvent *>(event);
            const QString path = firstDroppedFile(drop->mimeData());
            if (path.isEmpty())
                return false;
            drop->acceptProposedAction();
            trap([&] { takeLogo(path); });
            return true;
        }
        default: break;
        }
    }
    return Form::eventFilter(watched, event);
}

void fdlMstShopEdit::chooseLogo()
{
    const QString picture = OpenFileName(this, QStringLiteral("値札ロゴの画像を選択してください。"),
                                         ShopMaster::imagesFolder(),
                                         QStringLiteral("画像 (*.png *.jpg *.jpeg *.bmp *.gif);;すべてのファイル (*)"));
    if (!picture.isEmpty())
        takeLogo(picture);
}

void fdlMstShopEdit::takeLogo(const QString &picture)
{
    if (ShopMaster::logoNameTaken(picture) &&
        ShowMsg(QStringLiteral("画像フォルダに同じ名前の別の画像があります。置き換えますか？\n") +
                    QFileInfo(picture).fileName(),
                Msg::YesNo | Msg::Question) != Msg::ResYes)
        return;
    const ShopMaster::Logo logo = ShopMaster::adoptLogo(picture);
    if (!logo.refusal.isEmpty()) {
        ShowMsg(logo.refusal, Msg::Exclamation);
        return;
    }
    showFieldText(txtDATA[22], logo.name);
    entry().setEdited(true);
    txtDATA[22]->setFocus(Qt::OtherFocusReason);
}

ShopMaster::Entry fdlMstShopEdit::entryNow() const
{
    QStringList texts;
    for (QLineEdit *e : txtDATA)
        texts << e->text();
    return ShopMaster::entryOf(texts, checkedOption(Option1), checkedOption(Option2));
}

bool fdlMstShopEdit::ChkData()
{
    // The layout as it will be stored.
    const ShopLayout::Layout layout = ShopMaster::layoutOf(entryNow().record);
    int field = -1;
    const QString fault = ShopLayout::fault(layout, &field);
    if (!fault.isEmpty()) {
        ShowMsg(fault, Msg::Exclamation);
        txtDATA[ShopMaster::startField(field)]->setFocus(Qt::OtherFocusReason);
        return false;
    }
    // Fields may share digits (the later written wins): allowed, after a question.
    const QStringList shared = ShopLayout::overlaps(layout);
    return shared.isEmpty() ||
           ShowMsg(QStringLiteral("バーコードの次の項目が同じ桁を使っています。\n後に書く項目が優先されます。\n") +
                       shared.join(QLatin1Char('\n')) + QStringLiteral("\nこのまま登録しますか？"),
                   Msg::YesNo | Msg::Question) == Msg::ResYes;
}

bool fdlMstShopEdit::GetData(const Value &id)
{
    ShopRecord r;
    if (!ShopMaster::read(id, r))
        return false;
    for (int i = 1; i < ShopMaster::FieldCount; ++i)
        showFieldText(txtDATA[i], textOf(ShopRecord::map().of(r, ShopMaster::column(i))));
    checkOption(Option1, ShopMaster::uploadOption(r.UPLOAD_FILE_TYPE));
    checkOption(Option2, ShopMaster::accountOption(r.ACC_ID));
    return true;
}

void fdlMstShopEdit::save(const Value &id) { ShopMaster::save(id, entryNow()); }
