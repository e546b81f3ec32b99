#pragma once
// The farmer master: one farmer at a time, found by its code. Opened from the
// menu and by start-up when the farmer is missing; it always edits the
// current farmer.

#include "screens/masters/CodeMasterDialog.h"

class fdlMstFmrEdit : public CodeMasterDialog {
    Q_OBJECT
public:
    explicit fdlMstFmrEdit(QWidget *parent = nullptr);

    bool GetData(const Value &id) override;

protected:
    void save(const Value &id) override;
};
