#pragma once
// The trace data upload ("ﾃﾞｰﾀｱｯﾌﾟﾛｰﾄﾞ"): the year and the planting whose
// production history would go to the shop's web server. Nothing is sent
// yet: its button has no action, and the shop master only keeps the server
// settings.
#include "ui/Form.h"

class QComboBox;
class QLineEdit;
class QPushButton;

class fdlUploadTraceData : public Form {
    Q_OBJECT
public:
    explicit fdlUploadTraceData(QWidget *parent = nullptr);

    void InitForm();
    void SetCmb(int index);

protected:
    void onLoad() override;
    void onResize() override;

private:
    QLineEdit *txtCOND = nullptr;
    QVector<QComboBox *> cmbCOND;
    QVector<QPushButton *> Command1;
};

// The plantings of a year offered for upload.
QString uploadPlantingsSql(const QString &year);
