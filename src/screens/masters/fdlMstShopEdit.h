#pragma once
// The shop master: one shop found by its code, with its address data, fee
// rate, the layout of its barcode, the upload settings and the price tag
// logo. It always edits the current shop, and makes it when it is missing.

#include "rules/masters/ShopMaster.h"
#include "screens/masters/CodeMasterDialog.h"

class QRadioButton;

class fdlMstShopEdit : public CodeMasterDialog {
    Q_OBJECT
public:
    explicit fdlMstShopEdit(QWidget *parent = nullptr);

    bool GetData(const Value &id) override;
    // The barcode layout within the twelve digits (said, with the focus on
    // the field's start, when not); fields sharing digits after a question.
    bool ChkData() override;

protected:
    void save(const Value &id) override;
    void setOthersEditable(bool on) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // The logo from a file chooser or a drop: copied into the images folder,
    // its name into the field.
    void chooseLogo();
    void takeLogo(const QString &picture);
    // What a save would write, from the fields and options as they stand.
    ShopMaster::Entry entryNow() const;

    QVector<QRadioButton *> Option1; // upload file kind
    QVector<QRadioButton *> Option2; // sales account
    QPushButton *cmdRef;
};
