#pragma once
// The slip entry ("伝票入力"): adds, changes, shows and deletes one slip of
// D_LEDGE, opened from the slip list with its mode and the row of the list's
// array (gLEDGE_ROWS) it is for; -1 for none. It works on a copy of the row
// and writes it only when 登録 (or 削除) is pressed.

#include "base/Globals.h"
#include "base/Mode.h"
#include "ui/Form.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

class frmLedgeInput : public Form {
    Q_OBJECT
public:
    explicit frmLedgeInput(Mode mode = gMODE, int row = gROW_IDX, QWidget *parent = nullptr);

    void InitForm();
    void SetCmb(int index);
    void SetCmbOpt(int index);
    void SetMode();
    void DispData();
    bool ChkData();
    bool SaveData();

    const LedgeRow &record() const { return mRec; }
    // The sub-account kind remembered for the debit (0) or credit (1) side.
    int optKind(int side) const { return mOptKbn[side]; }

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
    // Reads OPT_KBN of the side's account; a new kind refills the side's
    // sub-account list, and the list is usable only for a kind other than 0.
    void accountKind(int side);

    Mode mMode;
    int mRow;
    LedgeRow mRec;
    int mOptKbn[2] = {0, 0};
    bool mChanged = false;
    QVector<QLineEdit *> txtDATA;
    QVector<QComboBox *> cmbDATA;
    QLabel *lblDATA = nullptr;
    QVector<QPushButton *> cmdMENU;
};
