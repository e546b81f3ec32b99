#pragma once
// One slip of a book page of the day ("元帳入力"), told from the book's side:
// the other account and an amount on the book's left or right. It is opened
// with what it is for (a new slip, a change, a deletion), the row of
// gLEDGE_ROWS it shows (-1 for none) and the book. It changes an element of
// gLEDGE_ROWS only; the slip reaches the database with the save of the day.

#include "base/Globals.h"
#include "base/Mode.h"
#include "rules/common/Ids.h"
#include "ui/Form.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

class frmDiaryLedgeInput : public Form {
    Q_OBJECT
public:
    frmDiaryLedgeInput(Mode mode, int row, int book, QWidget *parent = nullptr);

    void InitForm();
    void SetCmb(int index);
    void SetCmbOpt(int index);
    void SetMode();
    void DispData();
    bool ChkData();
    bool SaveData();

    const LedgeRow &record() const { return mRec; }

protected:
    void onLoad() override;
    void onResize() override;

private:
    // Reads the option kind of the other account and shows or fills its list.
    void accountChosen();

    const Mode mMode;
    const int mRow;
    const int mBook;
    LedgeRow mRec;
    int mOptKbn = 0;
    QVector<QLineEdit *> txtDATA;
    QVector<QComboBox *> cmbDATA;
    QVector<QPushButton *> cmdMENU;
};
