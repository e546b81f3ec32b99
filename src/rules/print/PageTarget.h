#pragma once
// Targets made of pages on a device: the printer (screens/print/Printer.h),
// and a PDF file standing in for it. A page begins with the first drawing
// after the last EndDoc, so a report draws as it would on the preview and
// ends each page with EndDoc. A PDF file holds all the pages of a run and
// stands under its name only once it is complete.
#include "rules/print/PainterTarget.h"

#include <QPainter>
#include <QPointF>
#include <QSaveFile>

#include <memory>

class QPaintDevice;
class QPdfWriter;

// The painter of a page target, made before the target that draws with it.
struct PagePainter {
    QPainter mPage;
};

class PageTarget : protected PagePainter, public PainterTarget {
public:
    ~PageTarget() override = default;

    bool isPrinter() const override { return true; }
    void Print(const QString &text) override;
    void Line(double x1, double y1, double x2, double y2, const QColor &color = Qt::black,
              LineShape shape = LineShape::Line) override;
    void PaintPicture(const QImage &picture, double x, double y, double width, double height) override;

    // Begins a page now, so that a page with nothing on it still counts.
    void startPage() { beginPage(); }
    bool pageOpen() const { return mPage.isActive() && mOpen; }

    // 1 portrait, 2 landscape.
    virtual int Orientation() const = 0;
    virtual void setOrientation(int orientation) = 0;
    // The paper bin by its code (1 upper tray, 6 manual, 7 automatic ...).
    virtual void setPaperBin(int bin) { mPaperBin = bin; }
    int PaperBin() const { return mPaperBin; }
    // The printer's device, whose unprintable margin applies; none for a file.
    virtual const QPaintDevice *hDC() const { return nullptr; }
    // Where the printable area begins on the paper, in the device's pixels.
    virtual QPointF printableOrigin() const { return {}; }

protected:
    PageTarget() : PainterTarget(mPage, 1, true) {}
    // Makes sure a page is open for drawing; false draws nothing.
    virtual bool beginPage() = 0;
    bool mOpen = false; // a page is being drawn
    int mPaperBin = 0;
};

// A PDF file of pages on the report's paper (twips).
class PdfTarget : public PageTarget {
public:
    PdfTarget(const QString &path, double paperWidth, double paperHeight, const QString &title);
    // A file never finished is not left behind.
    ~PdfTarget() override;

    // Ends the page; the next drawing starts a new one.
    void EndDoc() override { mOpen = false; }
    int Orientation() const override { return mOrientation; }
    void setOrientation(int orientation) override;

    // Writes the file. Raises an error (with a Japanese text) when it can't
    // be written; nothing then stands under its name.
    void finish();
    int pages() const { return mPages; }

private:
    bool beginPage() override;
    [[noreturn]] void fail(const QString &reason);

    QSaveFile mFile;
    std::unique_ptr<QPdfWriter> mWriter;
    double mWidth, mHeight;
    QString mTitle;
    int mOrientation = 1;
    int mPages = 0;
};
