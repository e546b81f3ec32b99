#pragma once
// The pesticide list ("農薬一覧"): the farmer's pesticide lots with their
// stock, narrowed by use, name, purchase dates, registration number and what
// is left, and the way into the pesticide entry for adding, changing,
// viewing, deleting and copying: the entry is opened with its mode and the
// lot's row, and the list is read again when a save closes it.

#include "base/Mode.h"
#include "rules/pesticide/ChemiData.h"
#include "ui/Form.h"

class QComboBox;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTreeWidget;

class frmChemiList : public Form {
    Q_OBJECT
public:
    explicit frmChemiList(QWidget *parent = nullptr);

    void InitForm();
    void InitList();
    void SetCmb();
    // Reads the lots again and selects the one saved last.
    void SetList();

    // The place of the selected row from 0; -1 with none.
    int selectedRow() const;
    // The lots listed, a row a line.
    const QVector<ChemiRow> &rows() const { return mRows; }

protected:
    void onLoad() override;
    void onResize() override;

private:
    void openEntry(Mode mode, bool needsRow);

    QComboBox *cmbCOND;
    QVector<QLineEdit *> txtCOND;
    QVector<QRadioButton *> Option1;
    QTreeWidget *ListView1;
    QVector<QPushButton *> cmdMENU;
    QVector<ChemiRow> mRows;
};
