#pragma once
// A print target over a QPainter: the preview's picture, an image, a PDF
// page or the printer's page. Drawing is in twips, scaled to the device by
// unitsPerTwip (device units per twip, zoom included).
//
// A text of n points is n x 20 twips high: TextHeight is the font's em, and
// Print sets the em box of the text from CurrentY down, its baseline placed
// in the em as the font divides its ascent and descent. The reports' layouts
// count on that height (a 12-point name on a 240-twip line); the font's own
// line spacing, far taller for the Japanese faces, would make every fitted
// text shrink to about two thirds of its size.
#include "rules/print/PrintTarget.h"

#include <QFont>

class QPainter;

class PainterTarget : public PrintTarget {
public:
    PainterTarget(QPainter &painter, double unitsPerTwip, bool printer = false);

    void setFontSize(double points) override;
    void setFontBold(bool bold) override;
    double TextWidth(const QString &text) const override;
    double TextHeight(const QString &text) const override;
    void Print(const QString &text) override;
    void Line(double x1, double y1, double x2, double y2, const QColor &color = Qt::black,
              LineShape shape = LineShape::Line) override;
    void PaintPicture(const QImage &picture, double x, double y, double width, double height) override;
    bool isPrinter() const override { return mPrinter; }

    QPainter &painter() { return mPainter; }
    double unitsPerTwip() const { return mScale; }
    void setUnitsPerTwip(double unitsPerTwip) { mScale = unitsPerTwip; }
    // The font of the current size and weight, sized in twips.
    const QFont &font() const { return mFont; }

private:
    void updateFont();

    QPainter &mPainter;
    double mScale;
    bool mPrinter;
    QFont mFont;
};
