#include "rules/print/PrintTarget.h"

#include <algorithm>

void PrintFitText(PrintTarget &target, double x, double y, const QString &text, int align, double fontSize,
                  double width)
{
    double size = fontSize;
    target.setFontSize(size);
    const double targetHeight = size * 20;
    if (targetHeight != 0) {
        double h = target.TextHeight(text);
        if (h > targetHeight) {
            while (h > targetHeight && size > 0) {
                size = std::max(0.0, size - 0.25);
                target.setFontSize(size);
                h = target.TextHeight(text);
            }
        } else if (h < targetHeight) {
            // Grows until the text is as high as asked (a target whose text
            // never grows stops at four times the size).
            do {
                target.setFontSize(size);
                h = target.TextHeight(text);
                size += 0.25;
            } while (h < targetHeight && size < fontSize * 4 + 4);
        }
    }
    const double targetWidth = width - 28;
    if (targetWidth != 0) {
        size = target.fontSize();
        while (target.TextWidth(text) > targetWidth && size > 0) {
            size = std::max(0.0, size - 0.25);
            target.setFontSize(size);
        }
    }
    switch (align) {
    case 1: target.CurrentX = x + targetWidth - target.TextWidth(text); break;
    case 2: target.CurrentX = x + (targetWidth - target.TextWidth(text)) / 2; break;
    default: target.CurrentX = x + 14; break;
    }
    target.CurrentY = y;
    target.Print(text);
    target.setFontSize(fontSize);
}
