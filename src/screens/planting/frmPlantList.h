#pragma once
// The planting list ("作付一覧"): the plantings of a harvest year, narrowed
// by crop and kind, and the way into the planting entry for adding,
// changing, viewing, deleting and copying.

#include "base/Mode.h"
#include "ui/Form.h"

class QComboBox;
class QLineEdit;
class QPushButton;
class QTreeWidget;

class frmPlantList : public Form {
    Q_OBJECT
public:
    explicit frmPlantList(QWidget *parent = nullptr);

    void InitForm();
    void InitList();
    void SetCmb(int index);
    // Reads the plantings again and selects the one saved last.
    void SetList();

protected:
    void onLoad() override;
    void onResize() override;

private:
    void openEntry(Mode mode, bool needsRow);

    QLineEdit *txtCOND;
    QVector<QComboBox *> cmbCOND;
    QTreeWidget *ListView1;
    QVector<QPushButton *> cmdMENU;
};
