#pragma once
// The shop master: one shop found by its code, with its address data, fee
// rate, the layout of its barcode, the upload settings and the price tag
// logo. It always edits the current shop, and makes it when it is missing.

#include "ui/Form.h"
#include "base/Value.h"

#include <QStringList>
#include <QVector>

class QLineEdit;
class QPushButton;
class QRadioButton;

namespace ShopEdit {
// The number of text fields of the dialog (txtDATA(0) to (23)).
constexpr int FieldCount = 24;
// The column of M_SHOP behind each field.
QString column(int field);
// What a save writes for the fields 1 to 23 (index 0, the code, is not
// written this way): an empty text Null, any other as typed. The length of
// the price in tens goes by whether the length of the product number is
// empty: an old rule of the shop master that the stored layouts follow.
QVector<Value> columnValues(const QStringList &texts);
// The option of a stored upload kind (1 HTML, 2 PHP, 3 CGI) and of the
// sales account (1000 cash, 1040 receivables); -1 for any other value.
int uploadOption(const Value &v);
int accountOption(const Value &v);
// What a chosen option stores.
Value uploadValue(int option);
Value accountValue(int option);
}

class fdlMstShopEdit : public Form {
    Q_OBJECT
public:
    explicit fdlMstShopEdit(QWidget *parent = nullptr);

    qint16 Mode() const { return mMode; }
    void setMode(qint16 mode);
    bool GetData(const Value &id);
    bool SaveData(const Value &id);
    bool ChkData() { return true; }

protected:
    void onLoad() override;
    void onActivate() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void showImagesFolder();

    QVector<QLineEdit *> txtDATA;
    QVector<QRadioButton *> Option1; // upload file kind
    QVector<QRadioButton *> Option2; // sales account
    QPushButton *cmdClose;
    QPushButton *cmdSave;
    QPushButton *cmdRef;
    qint16 mMode = 0;
};
