#pragma once
// The pesticide entry ("農薬入力"): one purchased lot, opened from the
// pesticide list with its mode (add, which copies the row handed over when
// there is one; change; view; delete) and the lot's row. Its lower part
// shows, crop by crop, the uses that the pesticide's registration allows.
// The fields' rules, the check and the save are those of Chemi.

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
    explicit frmChemiInput(Mode mode, const ChemiRow &row = ChemiRow(), QWidget *parent = nullptr);

    Mode mode() const { return mMode; }

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
    // The record read again after another computer saved it.
    void reload();
    bool txtLeave(int index);
    bool cmbLeave(int index);
    bool cmbInfoLeave();

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
    const Mode mMode;
    const ChemiRow mOpened; // the row handed over
    QVector<ChemiRow> mDATA{ChemiRow()};
    QVector<ApplRow> mAPPL;
    bool mChanged = false;
};
