#pragma once
// The way into shipments ("出荷一覧"): plantings by status on the left, the
// chosen planting's shipments on the right, and their totals.

#include "base/Mode.h"
#include "rules/shipping/ShipList.h"
#include "ui/Form.h"

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;
class QTreeWidget;

class frmShipList : public Form {
    Q_OBJECT
public:
    explicit frmShipList(QWidget *parent = nullptr);
    ~frmShipList() override;

    void InitForm();
    void InitList();
    void SetList1();
    void SetList2();

protected:
    void onLoad() override;
    void onResize() override;

private:
    void openInput(Mode mode, bool needsRow);
    void alignTotals();
    // The filters and the plantings' list as they stand.
    Ship::ListFilter filter() const;

    QVector<QLineEdit *> txtCOND;
    QVector<QRadioButton *> Option1;
    QVector<QLabel *> lblSUM;
    QVector<QPushButton *> cmdMENU;
    QListWidget *List1;
    QTreeWidget *ListView1;
};
