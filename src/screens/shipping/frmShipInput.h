#pragma once
// One shipment to a shop ("出荷入力"): at dispatch date, planting, shop,
// product, price and quantity; later the returns, discount and fee. Every
// field left goes into the working record, and the screen is drawn again
// from it.

#include "base/Globals.h"
#include "base/Mode.h"
#include "rules/shipping/ShipData.h"
#include "ui/Form.h"

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
    // Opened for a mode with a row of gSHIP_ROWS (-1 none). Opened by its
    // name, as the diary opens a shipment to look at, it takes the mode and
    // the row handed over in gMODE and gROW_IDX.
    explicit frmShipInput(Mode mode = gMODE, int row = gROW_IDX, QWidget *parent = nullptr);

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
    // The planting's sprayings against the day shipped: false when the
    // farmer, warned, chose not to save yet.
    bool sprayingsAccepted();
    // The record read again after another computer saved it.
    void reload();
    Mode mMode;
    int mRowIdx;
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
