#pragma once
// The price tag sheet ("値札印刷"): the shipments of one day, a label for each
// unit shipped, on sheets of 24; 印刷 shows them in the preview, which prints.
#include "ui/Form.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;

class fdlPrintPriceTag : public Form {
    Q_OBJECT
public:
    explicit fdlPrintPriceTag(QWidget *parent = nullptr);
    ~fdlPrintPriceTag() override;

    void InitForm();
    void InitList();
    void SetList();

protected:
    void onLoad() override;
    void onResize() override;
    void onUnload() override;

private:
    QVector<QLineEdit *> txtCOND;
    QComboBox *cmbCOND = nullptr;
    QCheckBox *Check1 = nullptr;
    QTreeWidget *ListView1 = nullptr;
    QVector<QLabel *> lblSUM;
    QVector<QPushButton *> Command1;
};
