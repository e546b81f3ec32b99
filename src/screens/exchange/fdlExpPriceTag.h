#pragma once
// The price tag export ("値札ﾃﾞｰﾀ書出"): the tag rows of a period written to a
// CSV file for an outside label printer. The period opens where the last
// export ended; the folder is remembered.
#include "ui/Form.h"

#include <QDateTime>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;

class fdlExpPriceTag : public Form {
    Q_OBJECT
public:
    explicit fdlExpPriceTag(QWidget *parent = nullptr);

    void InitForm();
    // The number of rows written; 0 when refused (the message has been shown).
    int ExpData();
    // Reads the rows of the period into the tag rows; their number.
    int GetData(const QDateTime &first, const QDateTime &last);

protected:
    void onLoad() override;
    void onResize() override;

private:
    void saveFolder();

    QVector<QLineEdit *> txtCOND;
    QComboBox *cmbCOND = nullptr;
    QVector<QPushButton *> Command1;
    QCheckBox *chkUTF8 = nullptr;
    bool mReady = false;
};
