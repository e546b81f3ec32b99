#pragma once
// One slip of a book page of the day ("元帳入力"), told from the book's side:
// the other account and an amount on the book's left or right. It changes an
// element of gLEDGE_ROWS only; the slip reaches the database with the save
// of the day.

#include "ui/Form.h"
#include "base/Globals.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

class frmDiaryLedgeInput : public Form {
    Q_OBJECT
public:
    explicit frmDiaryLedgeInput(QWidget *parent = nullptr);

    void InitForm();
    void SetCmb(int index);
    void SetCmbOpt(int index);
    void SetMode();
    void DispData();
    bool ChkData();
    bool SaveData();
    qint32 GetNewLedgeID();

    const LedgeRow &record() const { return mRec; }

protected:
    void onLoad() override;
    void onResize() override;

private:
    int book() const;
    // Reads the option kind of the other account and shows or fills its list.
    void accountChosen();

    LedgeRow mRec;
    int mOptKbn = 0;
    QVector<QLineEdit *> txtDATA;
    QVector<QComboBox *> cmbDATA;
    QVector<QPushButton *> cmdMENU;
};
