#pragma once
// The diary's month calendar, the home screen of the single way of use.
// For now a stand-in that opens the menu and ends the program; the month
// grid comes with the calendar itself.

#include "core/Form.h"

class QPushButton;

class frmDairyCal : public Form {
    Q_OBJECT
public:
    explicit frmDairyCal(QWidget *parent = nullptr);
    void DispData() {}

protected:
    void onLoad() override;

private:
    QPushButton *cmdClose;
};
