#pragma once
// "余白・給紙設定": the margins, printer and paper bin of the current report
// (gREP_ID) on this computer, kept in S_REP of the settings database. The
// margins are shown in centimetres and kept in twips.

#include "ui/Form.h"

class QComboBox;
class QLineEdit;
class QPushButton;

class fdlSetMgn : public Form {
    Q_OBJECT
public:
    explicit fdlSetMgn(QWidget *parent = nullptr);

    void SetCmb();
    bool ChkData();
    bool SaveData();

protected:
    void onLoad() override;
    void onResize() override {} // keeps its size

private:
    void LoadData();

    QVector<QLineEdit *> Text1;
    QVector<QComboBox *> cmbDATA;
    QVector<QPushButton *> Command1;
};
