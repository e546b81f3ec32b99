#include "rules/masters/ShopMaster.h"

#include "base/Globals.h"
#include "rules/common/Ids.h"
#include "rules/masters/CodeMaster.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QSaveFile>

const ColumnMap<ShopRecord> &ShopRecord::map()
{
    using R = ShopRecord;
    static const ColumnMap<ShopRecord> m{
        {"SHOP_ID", &R::SHOP_ID},
        {"SHOP_NM", &R::SHOP_NM},
        {"OWNER_NM", &R::OWNER_NM},
        {"ADRS", &R::ADRS},
        {"TEL", &R::TEL},
        {"FAX", &R::FAX},
        {"FEE_RT", &R::FEE_RT},
        {"BCD_FMR_ID_STA", &R::BCD_FMR_ID_STA},
        {"BCD_FMR_ID_LEN", &R::BCD_FMR_ID_LEN},
        {"BCD_PRD_ID_STA", &R::BCD_PRD_ID_STA},
        {"BCD_PRD_ID_LEN", &R::BCD_PRD_ID_LEN},
        {"BCD_AMT_01_STA", &R::BCD_AMT_01_STA},
        {"BCD_AMT_01_LEN", &R::BCD_AMT_01_LEN},
        {"BCD_AMT_10_STA", &R::BCD_AMT_10_STA},
        {"BCD_AMT_10_LEN", &R::BCD_AMT_10_LEN},
        {"BCD_OPT_STA", &R::BCD_OPT_STA},
        {"BCD_OPT_LEN", &R::BCD_OPT_LEN},
        {"FTP_SVR", &R::FTP_SVR},
        {"FTP_DIR", &R::FTP_DIR},
        {"FTP_USR", &R::FTP_USR},
        {"FTP_PWD", &R::FTP_PWD},
        {"WWW_URL", &R::WWW_URL},
        {"PTAG_LOGO", &R::PTAG_LOGO},
        {"NOTES", &R::NOTES},
        {"UPLOAD_FILE_TYPE", &R::UPLOAD_FILE_TYPE},
        {"ACC_ID", &R::ACC_ID}};
    return m;
}

Stmt ShopRecord::select(const Value &code) { return Stmt("SELECT M_SHOP.* FROM M_SHOP WHERE SHOP_ID=?").num(code); }

namespace ShopMaster {

namespace {

const int kUploadKinds[3] = {1, 2, 3};
const int kAccounts[2] = {Acc::Cash, Acc::Receivable};

int optionOf(const Value &v, const int *values, int count)
{
    if (!hasValue(v) || !IsNumeric(v))
        return -1;
    for (int i = 0; i < count; ++i)
        if (isNumber(v, values[i]))
            return i;
    return -1;
}

} // namespace

QString column(int field) { return ShopRecord::map().names().value(field); }

bool isNumberField(int field) { return field == 0 || (field >= 6 && field <= 16); }

int uploadOption(const Value &v) { return optionOf(v, kUploadKinds, 3); }

int accountOption(const Value &v) { return optionOf(v, kAccounts, 2); }

Value uploadValue(int option) { return option >= 0 && option < 3 ? Value(kUploadKinds[option]) : Value::null(); }

Value accountValue(int option) { return option >= 0 && option < 2 ? Value(kAccounts[option]) : Value::null(); }

Entry entryOf(const QStringList &fieldTexts, int upload, int account)
{
    Entry e;
    const auto &map = ShopRecord::map();
    for (int i = 1; i < FieldCount; ++i) {
        e.columns << column(i);
        map.of(e.record, column(i)) = textOrNull(fieldTexts.value(i));
    }
    // The length of the price in tens is written only when the length of the
    // product number is there. An empty length itself stays Null.
    e.record.BCD_AMT_10_LEN =
        fieldTexts.value(10).isEmpty() ? Value::null() : textOrNull(fieldTexts.value(14));
    if (upload >= 0) {
        e.record.UPLOAD_FILE_TYPE = uploadValue(upload);
        e.columns << QStringLiteral("UPLOAD_FILE_TYPE");
    }
    if (account >= 0) {
        e.record.ACC_ID = accountValue(account);
        e.columns << QStringLiteral("ACC_ID");
    }
    return e;
}

ShopLayout::Layout layoutOf(const ShopRecord &r)
{
    using namespace ShopLayout;
    Layout l;
    l[Option] = placement(r.BCD_OPT_STA, r.BCD_OPT_LEN);
    l[Product] = placement(r.BCD_PRD_ID_STA, r.BCD_PRD_ID_LEN);
    l[PriceUnits] = placement(r.BCD_AMT_01_STA, r.BCD_AMT_01_LEN);
    l[PriceTens] = placement(r.BCD_AMT_10_STA, r.BCD_AMT_10_LEN);
    l[Farmer] = placement(r.BCD_FMR_ID_STA, r.BCD_FMR_ID_LEN);
    return l;
}

int startField(int layoutField)
{
    static const int kStart[ShopLayout::FieldCount] = {15, 9, 11, 13, 7};
    return kStart[layoutField];
}

QString imagesFolder()
{
    const QString dir = QDir::cleanPath(AppPaths::resolve(QStringLiteral("..\\images\\")));
    QDir().mkpath(dir);
    return dir;
}

namespace {
QString storedPath(const QString &picture) { return QDir(imagesFolder()).filePath(QFileInfo(picture).fileName()); }

bool sameFile(const QString &a, const QString &b)
{
    const QString ca = QFileInfo(a).canonicalFilePath(), cb = QFileInfo(b).canonicalFilePath();
    return !ca.isEmpty() && ca == cb;
}
} // namespace

bool logoNameTaken(const QString &picture)
{
    const QString target = storedPath(picture);
    return QFileInfo::exists(target) && !sameFile(picture, target);
}

Logo adoptLogo(const QString &picture)
{
    const QString shown = QDir::toNativeSeparators(picture);
    QImageReader reader(picture);
    if (!QFileInfo(picture).isFile() || reader.read().isNull())
        return {QString(), QStringLiteral("画像ファイルではありません。値札ロゴには画像（PNG、JPEG、BMP など）を選んでください。\n") +
                               shown};
    const QString target = storedPath(picture);
    if (!sameFile(picture, target)) {
        QFile from(picture);
        QSaveFile to(target);
        if (!from.open(QIODevice::ReadOnly) || !to.open(QIODevice::WriteOnly) || to.write(from.readAll()) < 0 ||
            !to.commit())
            return {QString(), QStringLiteral("画像を画像フォルダに写せませんでした。\n") + QDir::toNativeSeparators(target)};
    }
    return {QFileInfo(target).fileName(), QString()};
}

bool read(const Value &code, ShopRecord &record) { return CodeMaster::read(code, record); }

void save(const Value &code, const Entry &entry) { CodeMaster::save(code, entry.record, entry.columns); }

} // namespace ShopMaster
