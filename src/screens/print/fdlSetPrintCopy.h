#pragma once
// "印刷ページ・部数設定": a page range and the number of copies. The printer
// takes the copies for the moment of the button only; nothing is printed
// from here.

#include "ui/Form.h"

class QLineEdit;
class QPushButton;
class QRadioButton;

class fdlSetPrintCopy : public Form {
    Q_OBJECT
public:
    explicit fdlSetPrintCopy(QWidget *parent = nullptr);

protected:
    void onLoad() override;
    void onResize() override {} // keeps its size

private:
    void setRangeEnabled(bool on);

    QVector<QRadioButton *> Option1;
    QVector<QLineEdit *> txtDATA;
    QLineEdit *txtPAGES;
    QVector<QPushButton *> Command1;
};
