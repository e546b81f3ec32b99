#pragma once
// The planting entry ("作付入力"): one planting, opened from the planting
// list with its mode (add or copy, change, view, delete) and the row of
// gPLANT_ROWS it starts from (-1 for a new one).

#include "rules/planting/PlantData.h"

#include "base/Globals.h"
#include "ui/Form.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

class frmPlantInput : public Form {
    Q_OBJECT
public:
    explicit frmPlantInput(Mode mode = gMODE, int row = gROW_IDX, QWidget *parent = nullptr);

    void InitForm();
    void SetCmb(int index);
    void SetMode();
    void DispData();
    bool ChkData();
    void SaveData();

    Mode mode() const { return mMode; }
    const PlantRow &record() const { return mDATA[0]; }

protected:
    void onLoad() override;
    void onResize() override;
    void onActivate() override;
    void onUnload() override;

private:
    // The record read again after another computer saved it.
    void reload();
    bool txtLeave(int index);
    bool cmbLeave(int index);
    void setCropList(const QString &group);
    QString chosenGroup() const;

    const Mode mMode;
    const int mRow;
    QVector<QLineEdit *> txtDATA;
    QVector<QComboBox *> cmbDATA;
    QVector<QLabel *> lblDATA;
    QVector<QPushButton *> cmdMENU;
    QVector<PlantRow> mDATA{PlantRow()};
    QString mGroup;      // the crop group the crop list was filled with
    bool mChanged = false;
};
