#pragma once
// The diary's month calendar ("日誌一覧"): the home screen of the single way
// of use. One month of the farmer's diary as a grid of day cells with the
// temperature, the weather, the line of the day and the money, pesticide and
// shipment marks; a click on a day opens that day's entry.

#include "base/Choice.h"
#include "ui/Form.h"
#include "rules/diary/CalMonth.h"

#include <QPixmap>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;

class CalCanvas : public QWidget {
    Q_OBJECT
public:
    explicit CalCanvas(QWidget *parent = nullptr) : QWidget(parent) {}
    QPixmap picture;
    QPoint lastPress;

signals:
    void clickedAt(QPoint pos);

protected:
    void paintEvent(QPaintEvent *) override;
    void mousePressEvent(QMouseEvent *e) override;
    void mouseReleaseEvent(QMouseEvent *e) override;
};

class frmDairyCal : public Form {
    Q_OBJECT
public:
    explicit frmDairyCal(QWidget *parent = nullptr);

    // Reads and shows the month of gBASE_DATE.
    void DispData();
    // Draws the grid again for the chosen planting and marks.
    void DispCal();

    // What the grid shows now (for tests and the day click).
    const CalMonth::Geometry &geometry() const { return mGeo; }
    const QVector<CalMonth::Cell> &cells() const { return mCells; }
    CalCanvas *canvas() const { return mCanvas; }

protected:
    void onLoad() override;
    void onResize() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void stepMonths(int months);
    void showMonth(const QDateTime &first);
    // Fills the planting filter (index 0) with the month's plantings, read
    // beforehand, and the blank item first; no item is selected.
    void SetCmb(int index, const Choices &plantings);
    CalMonth::Geometry geometryFor(const QDate &first) const;
    void paintMonth(const CalMonth::Geometry &geo, QVector<CalMonth::Cell> cells, const CalMonth::Options &o);
    void dayClicked(QPoint pos);

    CalCanvas *mCanvas;
    QLabel *lblYM;
    QComboBox *cmbCOND;
    QVector<QCheckBox *> chkCOND;
    QVector<QPushButton *> cmdMENU;
    CalMonth::Geometry mGeo;
    QVector<CalMonth::Cell> mCells;
    bool mReady = false;
};
