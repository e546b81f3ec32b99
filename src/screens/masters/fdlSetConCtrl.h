#pragma once
// Connection settings: the S_CTRL keys from which the data and master
// connections are made. Each field's tag names its key.

#include "ui/Form.h"

class fdlSetConCtrl : public Form {
    Q_OBJECT
public:
    explicit fdlSetConCtrl(QWidget *parent = nullptr);
    void LoadData();
    bool ChkData() { return true; }
    bool SaveData();

protected:
    void onLoad() override;

private:
    void register_();
    QStringList keys() const;
    QVector<QWidget *> mTagged; // controls with a key in their tag, in order
};
