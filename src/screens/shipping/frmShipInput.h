#pragma once
// One shipment to a shop ("出荷入力"): at dispatch date, planting, shop,
// product, price and quantity; later the returns, discount and fee. Every
// field left goes into the working record, and the screen is drawn again
// from it.

#include "ui/Form.h"
#include "rules/shipping/ShipData.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;

class frmShipInput : public Form {
    Q_OBJECT
public:
    explicit frmShipInput(QWidget *parent = nullptr);

    void InitForm();
    void SetCmb(int index);
    void SetList();
    void SetMode();
    void DispData();
    void DispPlantData();
    bool ChkData();
    void SaveData();

    const ShipRow &record() const { return mRow; }

protected:
    void onLoad() override;
    void onResize() override;
    void onUnload() override;

private:
    ShipRow mRow;
    bool mChanged = false;
    QVector<QLineEdit *> txtDATA;
    QVector<QComboBox *> cmbDATA;
    QVector<QLabel *> lblDATA;
    QVector<QRadioButton *> Option1;
    QVector<QPushButton *> cmdMENU;
    QListWidget *List1;
    QCheckBox *Check1;
};
