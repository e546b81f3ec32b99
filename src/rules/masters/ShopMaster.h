#pragma once
// The shop master (M_SHOP): one shop found by its code, with its address
// data, fee rate, the layout of its barcode, the upload settings and the
// price tag logo. The dialog's text fields stand in the order of the
// record's first 24 columns; the two option groups follow.
#include "base/Value.h"
#include "rules/common/Record.h"
#include "rules/shipping/ShopBarcode.h"
#include "store/Stmt.h"

#include <QStringList>

struct ShopRecord {
    Value SHOP_ID, SHOP_NM, OWNER_NM, ADRS, TEL, FAX, FEE_RT, BCD_FMR_ID_STA, BCD_FMR_ID_LEN, BCD_PRD_ID_STA,
        BCD_PRD_ID_LEN, BCD_AMT_01_STA, BCD_AMT_01_LEN, BCD_AMT_10_STA, BCD_AMT_10_LEN, BCD_OPT_STA, BCD_OPT_LEN,
        FTP_SVR, FTP_DIR, FTP_USR, FTP_PWD, WWW_URL, PTAG_LOGO, NOTES, UPLOAD_FILE_TYPE, ACC_ID;
    static const ColumnMap<ShopRecord> &map();
    static constexpr const char *Key = "SHOP_ID";
    static Stmt select(const Value &code);
};

namespace ShopMaster {
// The number of text fields of the dialog (txtDATA(0) to (23)).
constexpr int FieldCount = 24;
// The column of M_SHOP behind each field.
QString column(int field);
// Fields that take a number: the code, the fee rate and the barcode layout.
bool isNumberField(int field);

// The option of a stored upload kind (1 HTML, 2 PHP, 3 CGI) and of the
// sales account (1000 cash, 1040 receivables); -1 for any other value.
int uploadOption(const Value &v);
int accountOption(const Value &v);
// What a chosen option stores.
Value uploadValue(int option);
Value accountValue(int option);

// What a save writes: the record and the columns to write. The fields 1 to
// 23 (the code is the key): an empty text Null, any other as typed. The
// length of the price in tens goes by whether the length of the product
// number is empty: an old rule of the shop master that the stored layouts
// follow. A group with no option chosen (-1) leaves its column as it was.
struct Entry {
    ShopRecord record;
    QStringList columns;
};
Entry entryOf(const QStringList &fieldTexts, int uploadOption, int accountOption);

// The barcode layout an entry stores, and the text field of each layout
// field's start (the length follows it).
ShopLayout::Layout layoutOf(const ShopRecord &record);
int startField(int layoutField);

// The price tag logo taken from a picture file: copied into the images
// folder beside the program (unless it lies there already) under its own
// name, which is what the shop stores. A file that is no picture, or that
// can't be copied, is refused with a message and nothing is copied.
struct Logo {
    QString name;    // the name to store, "" when refused
    QString refusal; // why, in Japanese
};
// The images folder, made when missing.
QString imagesFolder();
// True when the images folder holds another file of the picture's name.
bool logoNameTaken(const QString &picture);
Logo adoptLogo(const QString &picture);

// A shop read by its code; false (the record as it was) when there is none.
bool read(const Value &code, ShopRecord &record);
// Writes the entry under the code in one transaction; the row is made when
// missing. An error is passed on with nothing written.
void save(const Value &code, const Entry &entry);
}
