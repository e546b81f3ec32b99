#pragma once
// The shop master: one shop found by its code, with its address data, fee
// rate, the layout of its barcode, the upload settings and the price tag
// logo. It always edits the current shop, and makes it when it is missing.

#include "screens/masters/CodeMasterDialog.h"

class QRadioButton;

class fdlMstShopEdit : public CodeMasterDialog {
    Q_OBJECT
public:
    explicit fdlMstShopEdit(QWidget *parent = nullptr);

    bool GetData(const Value &id) override;

protected:
    void save(const Value &id) override;
    void setOthersEditable(bool on) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void showImagesFolder();

    QVector<QRadioButton *> Option1; // upload file kind
    QVector<QRadioButton *> Option2; // sales account
    QPushButton *cmdRef;
};
