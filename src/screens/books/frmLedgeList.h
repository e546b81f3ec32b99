#pragma once
// The farmer's slips in two views: the slip list ("伝票一覧", one line a
// slip) and the account ledger ("元帳一覧", the slips of one account with the
// opening balance, a running balance and the sums). The way into the slip
// entry for adding, changing, viewing, deleting and copying.

#include "base/Mode.h"
#include "ui/Form.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTreeWidget;

class frmLedgeList : public Form {
    Q_OBJECT
public:
    explicit frmLedgeList(QWidget *parent = nullptr);

    void InitForm();
    void InitList();
    void DispForm();
    // Reads the slips again and selects the one saved last (else line 1).
    void SetList();
    void SetCmb(int index);

    // 0 slips, 1 ledger.
    int view() const { return mView; }
    // The selected line from 1; 0 with none.
    int selectedLine() const;

protected:
    void onLoad() override;
    void onResize() override;

private:
    // Opens the slip entry for the mode, with the chosen row when the mode
    // needs one (nothing happens without); a slip another record owns is
    // refused for changing and deleting.
    void openEntry(Mode mode, bool needsLine);

    int mView = 0;
    QVector<QRadioButton *> Option1;
    QComboBox *cmbCOND = nullptr;
    QVector<QLineEdit *> txtCOND;
    QTreeWidget *ListView1 = nullptr;
    QVector<QLabel *> lblSUM;
    QVector<QPushButton *> cmdMENU;
};
