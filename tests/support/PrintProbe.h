#pragma once
// What the print tests look at: a target that keeps what was drawn on it,
// the ink of a picture, and the outside readers (poppler's tools, zbarimg)
// that check a PDF as a shop's computer would.

#include "rules/print/PrintTarget.h"

#include <QColor>
#include <QImage>
#include <QRect>
#include <QRectF>
#include <QString>
#include <QStringList>
#include <QVector>

// A target that keeps what was drawn on it. Text is half an em wide a
// character and an em high.
class Recorder : public PrintTarget {
public:
    struct Shape {
        QRectF box;
        QColor color;
        LineShape shape;
        int style;
    };
    struct Text {
        QString text;
        double x, y, size;
        bool bold;
    };
    struct Picture {
        QRectF box;
        qint64 key;
    };
    QVector<Shape> shapes;
    QVector<Text> texts;
    QVector<Picture> pictures;
    int ends = 0; // EndDoc calls

    double TextWidth(const QString &t) const override { return t.size() * fontSize() * 10; }
    double TextHeight(const QString &) const override { return fontSize() * 20; }
    void Print(const QString &t) override;
    void Line(double x1, double y1, double x2, double y2, const QColor &color, LineShape shape) override;
    void PaintPicture(const QImage &p, double x, double y, double w, double h) override;
    void EndDoc() override { ++ends; }
};

namespace Probe {
// A pixel darker than middle grey.
bool dark(const QImage &img, int x, int y);
// The bounding box of the dark pixels in an area (invalid when none).
QRect ink(const QImage &img, const QRect &area);
// Standard output of a program run to its end (30 s at the most).
QString run(const QString &program, const QStringList &args);
// What zbarimg reads in a PNG file, sorted; "!..." when it cannot run.
QStringList zbar(const QString &png);
// One page of a PDF as a PNG file at dpi; "" when it can't be made.
QString rasterise(const QString &pdf, int dpi, int page = 1);
// An area of one page (pixels at dpi from the page's top left) as a picture.
QImage rasteriseArea(const QString &pdf, int dpi, int page, const QRect &area);
// The longest run of grey pixels (neither black nor white) along the rows of
// an area: 1 where every edge is one pixel, more where edges are blurred.
int longestGreyRun(const QImage &img, const QRect &area);
// The number of pages of a PDF (pdfinfo); -1 when it can't be read.
int pdfPages(const QString &pdf);
// The pictures of a PDF as pdfimages lists them.
struct PdfPicture {
    QString encoding; // "image" (kept as it is), "jpeg" ...
    int bitsPerComponent = 0;
    bool interpolated = false; // smoothed when a viewer enlarges it
    int ppi = 0;               // pixels to the inch as placed on the page
};
QVector<PdfPicture> pdfPictures(const QString &pdf);
QStringList pictureEncodings(const QString &pdf);
}
