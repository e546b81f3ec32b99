#pragma once
// "生産履歴印刷": the dialog of a planting's production history. Its choices
// lead to no report of their own: "印刷" opens the common preview for the
// price tag sheet.

#include "ui/Form.h"

class QComboBox;
class QLineEdit;
class QPushButton;

class fdlPrintTraceRep : public Form {
    Q_OBJECT
public:
    explicit fdlPrintTraceRep(QWidget *parent = nullptr);

    void InitForm();
    void SetCmb(int index);

protected:
    void onLoad() override;
    void onResize() override;

private:
    QVector<QLineEdit *> txtCOND;
    QVector<QComboBox *> cmbCOND;
    QVector<QPushButton *> Command1;
};

// Fills a list with the plantings of a year (an empty item first, PLANT_ID as
// item data). An empty year leaves the list as it is.
void SetYearPlantCmb(QComboBox *combo, const QString &yearText);
