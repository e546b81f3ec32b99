#pragma once
// The farmer master: one farmer at a time, found by its code. Opened from the
// menu and by start-up when the farmer is missing; it always edits the
// current farmer.

#include "ui/Form.h"
#include "base/Value.h"

class QLineEdit;
class QPushButton;

class fdlMstFmrEdit : public Form {
    Q_OBJECT
public:
    explicit fdlMstFmrEdit(QWidget *parent = nullptr);

    qint16 Mode() const { return mMode; }
    void setMode(qint16 mode);
    bool GetData(const Value &id);
    bool SaveData(const Value &id);
    bool ChkData() { return true; }

protected:
    void onLoad() override;
    void onActivate() override;

private:
    QVector<QLineEdit *> txtDATA;
    QPushButton *cmdClose;
    QPushButton *cmdSave;
    qint16 mMode = 0;
};
