#pragma once
// What the dialogs of a planting's production history share (the report
// "生産履歴印刷" and the upload "ﾃﾞｰﾀｱｯﾌﾟﾛｰﾄﾞ"): the year (this year when
// opened), the farmer list (never filled), the plantings of the year (read
// again when the year is left), the cancel button that ends the program
// when no menu is open, and a button of the dialog's own.
#include "ui/Form.h"

class QComboBox;
class QLineEdit;
class QPushButton;

class TraceDialog : public Form {
    Q_OBJECT
public:
    // Sets the title.
    void InitForm();
    // 0: the farmer list, which stays empty; 1: the plantings of the year
    // (an empty year leaves them as they are).
    void SetCmb(int index);

protected:
    // The controls txtCOND(0), cmbCOND(0), cmbCOND(1), Command1(0) and (1)
    // stand in the screen's control table.
    TraceDialog(const QString &name, const QString &title, const CtlSpec *controls, int count, QWidget *parent);

    void onLoad() override;
    void onResize() override;
    // The year typed; 0 after saying that one is wanted (the year field then
    // has the focus).
    int chosenYear();

    QLineEdit *txtCOND = nullptr;
    QVector<QComboBox *> cmbCOND;
    QVector<QPushButton *> Command1;

private:
    QString mTitle;
};
