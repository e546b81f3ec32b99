#pragma once
// The books' print dialog ("試算表印刷"): a choice of 試算表 (the months
// from and to), 損益計算書 (a year) and 仕訳帳 (the months, written to a
// file), and a farmer. 印刷 opens the common preview of the report; for the
// journal the button asks where to write the file.

#include "base/Value.h"
#include "ui/Form.h"

#include <QDate>

class QComboBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

class fdlPrintAccRep : public Form {
    Q_OBJECT
public:
    enum Choice { TrialBalanceChoice = 0, IncomeChoice = 1, JournalChoice = 2 };
    explicit fdlPrintAccRep(Choice start = TrialBalanceChoice, QWidget *parent = nullptr);

    void InitForm();
    void SetCmb();
    // The controls of the chosen report, and the title that names it.
    void SetMode();

protected:
    void onLoad() override;
    void onResize() override;

private:
    Choice choice() const;
    // The chosen farmer, or a message and the focus on the list.
    bool readFarmer(Value &farmer);
    // The months as days, or a message and the focus on the first month.
    bool readPeriod(QDate &from, QDate &to);
    void printReport();
    void writeJournal();

    QVector<QLineEdit *> txtCOND;
    QComboBox *cmbCOND = nullptr;
    QVector<QRadioButton *> Option1;
    QVector<QPushButton *> Command1;
    Choice mStart;
};
