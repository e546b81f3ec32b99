#pragma once
// The five settings of one installation: way of use, default farmer and shop,
// backup folder, maximised screens.

#include "ui/Form.h"

class QCheckBox;
class QLineEdit;
class QRadioButton;

class fdlSetLocalCtrl : public Form {
    Q_OBJECT
public:
    explicit fdlSetLocalCtrl(QWidget *parent = nullptr);
    void LoadData();
    bool SaveData();

protected:
    void onLoad() override;

private:
    QVector<QRadioButton *> Option1;
    QVector<QLineEdit *> txtDATA;
    QCheckBox *Check1;
};

// The placeholder of the shared settings: no load, no save.
class fdlSetMstCtrl : public Form {
    Q_OBJECT
public:
    explicit fdlSetMstCtrl(QWidget *parent = nullptr);

protected:
    void onLoad() override;
};
