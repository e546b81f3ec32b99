#pragma once
// What a report is drawn on: the printer, a PDF file or the preview's
// picture. One drawing routine serves them all, so the page on screen and on
// paper comes from the same code and the same numbers.
//
// Positions and sizes are twips (1440 to the inch, 567 to the centimetre);
// font sizes are points (20 twips). Text metrics are in twips too, and do not
// depend on the device, so a text fits its box alike on every target.
#include <QColor>
#include <QString>

class QImage;

enum class LineShape {
    Line,     // a line between the two points
    Box,      // an outlined rectangle
    FilledBox // a rectangle filled with the colour
};

class PrintTarget {
public:
    virtual ~PrintTarget() = default;

    // The text position: where the next Print starts (its top left).
    double CurrentX = 0;
    double CurrentY = 0;
    // Pen width in device pixels for lines and outlines.
    int DrawWidth = 1;
    // 0 solid outline; 5 no outline (filled boxes drawn without their edge).
    int DrawStyle = 0;

    double fontSize() const { return mFontSize; }
    virtual void setFontSize(double points) { mFontSize = points; }
    bool fontBold() const { return mBold; }
    virtual void setFontBold(bool bold) { mBold = bold; }

    // Measures with the current font, in twips.
    virtual double TextWidth(const QString &text) const = 0;
    virtual double TextHeight(const QString &text) const = 0;
    // Draws the text at (CurrentX, CurrentY); afterwards CurrentX is back at 0
    // and CurrentY one text height lower, as a printed line ends.
    virtual void Print(const QString &text) = 0;
    // A line or rectangle from (x1, y1) to (x2, y2), both absolute.
    virtual void Line(double x1, double y1, double x2, double y2, const QColor &color = Qt::black,
                      LineShape shape = LineShape::Line) = 0;
    // A picture stretched to the box.
    virtual void PaintPicture(const QImage &picture, double x, double y, double width, double height) = 0;

    // True for the real printer (and a PDF standing in for it): the printer's
    // unprintable margin and page set-up apply.
    virtual bool isPrinter() const { return false; }
    // Ends the current job; nothing to end on the preview.
    virtual void EndDoc() {}

protected:
    double mFontSize = 9;
    bool mBold = false;
};

// Text fitted into a box: the font steps by 0.25 point until the text is as
// high as the size asks and no wider than width less 14 twips a side; placed
// left (align 0, 14 twips in), right (1) or centred (2) at y. The target's
// font size is the given one again afterwards.
void PrintFitText(PrintTarget &target, double x, double y, const QString &text, int align, double fontSize,
                  double width);
