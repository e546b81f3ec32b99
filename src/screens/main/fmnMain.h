#pragma once
// The menu: masters, settings, prints and exports, and in the multi way of
// use the farmer list and the calendar.

#include "ui/Form.h"

class QComboBox;
class QLabel;
class QPushButton;

class fmnMain : public Form {
    Q_OBJECT
public:
    explicit fmnMain(QWidget *parent = nullptr);
    void SetCmb(int index);

protected:
    void onLoad() override;
    void onActivate() override;

private:
    QVector<QPushButton *> cmdMENU;
    QComboBox *cmbData0;
};
