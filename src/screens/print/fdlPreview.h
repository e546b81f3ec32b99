#pragma once
// The print preview: one page of the current report (gREP_ID, gREP_PAGES),
// drawn by the report's own routine on the screen's picture, the page drawn
// afresh at each zoom, scroll or page move. "ﾍﾟｰｼﾞ印刷" sends the page shown
// to the printer through the same routine.

#include "ui/Form.h"

#include <QImage>
#include <QPalette>

class QAction;
class QLineEdit;
class QPushButton;
class QScrollBar;
class QSlider;
class QMenuBar;

// The arithmetic of the preview, apart from its widgets.
namespace PreviewPages {
// Zoom of the slider value: 2 to the power value / 4 (-4 half, 4 double).
double zoomFactor(int sliderValue);
// Scroll range over the paper when the picture shows `shown` twips of it.
int scrollMax(double paper, double shown);
enum class Move { First, Previous, Next, Last };
// The page after a move from page among pages.
int movePage(int page, int pages, Move move);
// Which page controls are on.
struct Buttons {
    bool pageEditable = true;
    bool first = true, previous = true, next = true, last = true;
};
Buttons pageButtons(int page, int pages);
}

// The picture the page is drawn on.
class PreviewCanvas : public QWidget {
    Q_OBJECT
public:
    explicit PreviewCanvas(QWidget *parent = nullptr) : QWidget(parent) {}
    QImage picture;

protected:
    void paintEvent(QPaintEvent *) override;
};

class fdlPreview : public Form {
    Q_OBJECT
public:
    explicit fdlPreview(QWidget *parent = nullptr);

    void InitForm();
    void PrintPreview();
    void SetTbrBtn();
    void PrintPage();
    // Writes every page of the report to a PDF file that the user names.
    void SavePdf();
    void SetSize();

    // What the picture shows now.
    const QImage &picture() const { return pctPreview->picture; }
    double scaleWidth() const { return mScaleW; }
    double scaleHeight() const { return mScaleH; }
    double paperWidth() const { return mWidth; }
    double paperHeight() const { return mHeight; }
    QAction *menuAction(const QString &name) const;

protected:
    void onLoad() override;
    void onResize() override;

private:
    // The page number typed in txtPAGE; 0 when it is no number.
    int page() const;
    int pages() const;
    void moveTo(PreviewPages::Move move);
    void scrolled();
    // Asks for a PDF file's name (suggested after the report); "" when cancelled.
    QString askPdfName(const QString &suggestedName);
    void writePdf(int firstPage, int lastPage, const QString &suggestedName);

    PreviewCanvas *pctPreview;
    QMenuBar *mnuBAR;
    QScrollBar *HScrl, *VScrl;
    QSlider *Slider1;
    QLineEdit *txtPAGE, *txtPAGES;
    QVector<QPushButton *> Command1;
    QVector<QAction *> mnuMOVE;
    double mWidth = 0, mHeight = 0;  // paper, twips
    double mScaleW = 0, mScaleH = 0; // twips shown across and down
    double mOffX = 0, mOffY = 0;     // scroll offsets, 0 or below
    QPalette mPagePalette;
    bool mDrawing = false;
};

// Opens the preview of a report of so many pages (gREP_ID and gREP_PAGES
// hold them while it is open, as the print dialogs leave them).
void openPreview(int repId, int pages);
