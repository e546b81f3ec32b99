#pragma once
// The pesticide entry ("農薬入力"): one purchased lot, opened from the
// pesticide list with gMODE (1 add or copy, 2 change, 3 view, 4 delete) and
// gROW_IDX (the row of gCHEMI_ROWS, -1 for a new one). Its lower part shows,
// crop by crop, the uses that the pesticide's registration allows.

#include "rules/pesticide/ChemiData.h"

#include "ui/Form.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QScrollBar;

class frmChemiInput : public Form {
    Q_OBJECT
public:
    explicit frmChemiInput(QWidget *parent = nullptr);

    void InitForm();
    void SetCmb(int index);
    void SetCmbInfo();
    void SetMode();
    void DispData();
    void SetChemiData();
    void SetAppl();
    void DispAppl();
    bool ChkData();
    bool SaveData();

    const ChemiRow &record() const { return mDATA[0]; }
    const QVector<ApplRow> &appl() const { return mAPPL; }

protected:
    void onLoad() override;
    void onResize() override;
    void onActivate() override;
    void onUnload() override;

private:
    bool txtLeave(int index);
    bool cmbLeave(int index);
    bool cmbInfoLeave();
    void lockFields();

    QVector<QLineEdit *> txtDATA;
    QVector<QComboBox *> cmbDATA;
    QVector<QLabel *> lblDATA;
    QVector<QLabel *> lblINFO;
    QVector<QRadioButton *> Option1;
    QVector<QPushButton *> cmdMENU;
    QCheckBox *Check1;
    QComboBox *cmbINFO;
    QScrollBar *VScroll1;
    QGroupBox *Frame2;
    QVector<ChemiRow> mDATA{ChemiRow()};
    QVector<ApplRow> mAPPL;
    bool mChanged = false;
};
