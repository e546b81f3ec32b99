#pragma once
// One farmer's one day ("日誌入力"): weather, temperatures, the line of the
// day and notes; the plantings alive that day with their work lines, the
// pesticide of a spraying line; and the day's pages of the four books. All
// is held in memory until "登録", which replaces the day as a whole.

#include "base/Mode.h"
#include "ui/Form.h"
#include "rules/diary/BookPage.h"
#include "rules/diary/DiaryDay.h"

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;
class QTreeWidget;

class frmDairyInput : public Form {
    Q_OBJECT
public:
    explicit frmDairyInput(QWidget *parent = nullptr);

    void InitForm();
    void SetCmb(int index);
    void SetCombo1(int index);
    void LoadData();
    void DispData();
    void DispPlant();
    void DispDtl();
    void DispChemi();
    bool ChkData() { return true; }
    void SaveData();
    void SetList(int index);
    void InitLedgeList(int acc);
    void SetLedgeList(int acc);
    void DispLedgeList();

    // The day as held in memory, and the line being edited.
    DiaryDay &dayData() { return mDay; }
    int detailIndex() const { return mDtlIx; }
    // The book of the tab that is on (0 for the work diary).
    int currentBook() const;

protected:
    void onLoad() override;
    void onResize() override;
    void onUnload() override;

private:
    // The sprayings of the day held against their registrations before the
    // save: false when the farmer, warned, chose not to save yet.
    bool sprayingsAccepted();
    // The record read again after another computer saved it.
    void reload();
    void plantClicked();
    void workClicked();
    void addClicked();
    void deleteClicked();
    void tabClicked(int index);
    void editSlip(Mode mode);
    bool workSelected() const;
    DiaryDtlRec *currentRow();
    void setTitle();

    DiaryDay mDay;
    int mDtlIx = -1;
    QVector<QRadioButton *> Option1;
    QVector<QLineEdit *> txtDATA;
    QVector<QComboBox *> cmbDATA;
    QVector<QListWidget *> List1;
    QVector<QLabel *> lblDATA;
    QVector<QLabel *> lblSUM;
    QVector<QLabel *> lblSUM_CAP;
    QComboBox *Combo1;
    QGroupBox *Frame2;
    QVector<QGroupBox *> Frame1;
    QVector<QPushButton *> cmdSUB;
    QVector<QPushButton *> cmdEDIT;
    QVector<QPushButton *> cmdMENU;
    QTreeWidget *ListView1;
};
