#pragma once
// The trial balance print dialog ("試算表印刷"): a range of months and a
// farmer, and 印刷, which opens the common preview for report 10. The months
// and the farmer are used by nothing yet.

#include "ui/Form.h"

class QComboBox;
class QLineEdit;
class QPushButton;

class fdlPrintAccRep : public Form {
    Q_OBJECT
public:
    explicit fdlPrintAccRep(QWidget *parent = nullptr);

    void InitForm();

protected:
    void onLoad() override;
    void onResize() override;

private:
    QVector<QLineEdit *> txtCOND;
    QComboBox *cmbCOND = nullptr;
    QVector<QPushButton *> Command1;
};
