#pragma once
// The product master: the whole of M_PRD in memory. The user adds, changes
// and removes rows in the array, and "登録" writes it all back at once.

#include "rules/masters/PrdMaster.h"

#include "ui/Form.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QListWidget;
class QPushButton;

class fdlMstPrdEdit : public Form {
    Q_OBJECT
public:
    explicit fdlMstPrdEdit(QWidget *parent = nullptr);

    void InitFrm();
    void LoadData();
    void SetList();
    int GetMaxPrdId() const { return Prd::maxId(mRows); }
    int GetIdx(const Value &id);
    void DispData();
    bool SaveData();
    void SetCmb(int index);

    const Prd::Rows &rows() const { return mRows; }
    int shownIndex() const { return mIdx; }

protected:
    void onLoad() override;
    void onResize() override;

private:
    void addClicked();
    void removeClicked();
    void listPicked(const Value &id);
    void markShownRow();
    bool idLeave();
    void textLeft(int index);

    QComboBox *cmbDATA0;
    QVector<QLineEdit *> txtDATA;
    QLineEdit *txtCOND0;
    QCheckBox *Check1;
    QListWidget *List1;
    QVector<QPushButton *> cmdSUB;
    QVector<QPushButton *> cmdMENU;

    Prd::Rows mRows;
    int mIdx = -1;
    bool mFilling = false; // the list is being filled or re-selected by the program
};
