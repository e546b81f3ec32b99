#include "rules/masters/ShopMaster.h"

#include "rules/common/Ids.h"
#include "rules/masters/CodeMaster.h"

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

bool read(const Value &code, ShopRecord &record) { return CodeMaster::read(code, record); }

void save(const Value &code, const Entry &entry) { CodeMaster::save(code, entry.record, entry.columns); }

} // namespace ShopMaster
