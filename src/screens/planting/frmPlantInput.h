#pragma once
// The planting entry ("作付入力"): one planting, opened from the planting
// list with gMODE (1 add or copy, 2 change, 3 view, 4 delete) and gROW_IDX
// (the row of gPLANT_ROWS, -1 for a new one).

#include "rules/planting/PlantData.h"

#include "ui/Form.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

class frmPlantInput : public Form {
    Q_OBJECT
public:
    explicit frmPlantInput(QWidget *parent = nullptr);

    void InitForm();
    void SetCmb(int index);
    void SetMode();
    void DispData();
    bool ChkData();
    void SaveData();

    const PlantRow &record() const { return mDATA[0]; }

protected:
    void onLoad() override;
    void onResize() override;
    void onActivate() override;
    void onUnload() override;

private:
    bool txtLeave(int index);
    bool cmbLeave(int index);
    void setCropList(const QString &group);
    QString chosenGroup() const;

    QVector<QLineEdit *> txtDATA;
    QVector<QComboBox *> cmbDATA;
    QVector<QLabel *> lblDATA;
    QVector<QPushButton *> cmdMENU;
    QVector<PlantRow> mDATA{PlantRow()};
    QString mGroup;      // the crop group the crop list was filled with
    bool mChanged = false;
};
