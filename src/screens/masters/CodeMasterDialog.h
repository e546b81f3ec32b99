#pragma once
// What the farmer and shop dialogs share: one record found by its code in
// txtDATA(0), the other fields txtDATA(1..) open to entry only while a
// record is edited, Enter in the code field looking a record up, "閉じる" or
// "ｷｬﾝｾﾙ" that ends the program at start-up (asking first about a record
// changed), and "登録" that saves and closes or says the save failed. On becoming active the dialog always
// edits the current record (made by the save when it is missing).

#include "base/Mode.h"
#include "base/Value.h"
#include "ui/Form.h"

#include <QVector>

class QLineEdit;
class QPushButton;

class CodeMasterDialog : public Form {
    Q_OBJECT
public:
    // The dialog's mode as a number: 2 while a record is edited, else 0
    // (looking for a code).
    qint16 Mode() const { return qint16(mMode); }
    void setMode(::Mode mode);
    bool editing() const { return mMode == ::Mode::Change; }

    // Shows the record of the code in the fields; false (the fields as they
    // were) when there is none.
    virtual bool GetData(const Value &id) = 0;
    // Saves the fields under the code; false when the save failed (its error
    // shown).
    bool SaveData(const Value &id);
    // The fields fit to be saved; false (said) when not. The farmer's fields
    // are always fit.
    virtual bool ChkData() { return true; }

protected:
    // fieldCount text fields txtDATA(0..); the code the dialog edits when
    // it becomes active (gFMR_ID, gSHOP_ID).
    CodeMasterDialog(const QString &name, int designWidth, int designHeight, const CtlSpec *controls, int count,
                     int fieldCount, Value (*current)(), QWidget *parent);

    void onLoad() override;
    void onActivate() override;
    // Writes the fields under the code; an error is raised.
    virtual void save(const Value &id) = 0;
    // The controls besides the text fields that follow the mode.
    virtual void setOthersEditable(bool) {}

    QVector<QLineEdit *> txtDATA;
    QPushButton *cmdClose;
    QPushButton *cmdSave;

private:
    Value (*mCurrent)();
    ::Mode mMode = ::Mode::None;
};
