#include "rules/print/PainterTarget.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>

PainterTarget::PainterTarget(QPainter &painter, double unitsPerTwip, bool printer)
    : mPainter(painter), mScale(unitsPerTwip), mPrinter(printer), mFont(QStringLiteral("Noto Sans CJK JP"))
{
    // The same outlines at every size, so that a text measures alike on
    // screen and paper.
    mFont.setHintingPreference(QFont::PreferNoHinting);
    mFont.setStyleStrategy(QFont::PreferOutline);
    updateFont();
}

void PainterTarget::updateFont()
{
    // A point is 20 twips; font sizes step by 0.25 point, 5 twips, so a whole
    // number of twips is exact.
    mFont.setPixelSize(std::max(1, int(std::lround(mFontSize * 20))));
    mFont.setBold(mBold);
}

void PainterTarget::setFontSize(double points)
{
    PrintTarget::setFontSize(points);
    updateFont();
}

void PainterTarget::setFontBold(bool bold)
{
    PrintTarget::setFontBold(bold);
    updateFont();
}

double PainterTarget::TextWidth(const QString &text) const
{
    if (mFontSize <= 0)
        return 0;
    return QFontMetricsF(mFont).horizontalAdvance(text);
}

double PainterTarget::TextHeight(const QString &) const
{
    if (mFontSize <= 0)
        return 0;
    return mFont.pixelSize();
}

void PainterTarget::Print(const QString &text)
{
    if (mFontSize > 0 && !text.isEmpty()) {
        mPainter.save();
        mPainter.scale(mScale, mScale);
        mPainter.setFont(mFont);
        mPainter.setPen(Qt::black);
        const QFontMetricsF m(mFont);
        const double baseline = mFont.pixelSize() * m.ascent() / (m.ascent() + m.descent());
        mPainter.drawText(QPointF(CurrentX, CurrentY + baseline), text);
        mPainter.restore();
    }
    CurrentY += TextHeight(text);
    CurrentX = 0;
}

void PainterTarget::Line(double x1, double y1, double x2, double y2, const QColor &color, LineShape shape)
{
    mPainter.save();
    mPainter.scale(mScale, mScale);
    QPen pen(color);
    pen.setCosmetic(true); // the width is in device pixels
    pen.setWidth(std::max(1, DrawWidth));
    const QRectF box = QRectF(QPointF(x1, y1), QPointF(x2, y2)).normalized();
    switch (shape) {
    case LineShape::Line:
        mPainter.setPen(pen);
        mPainter.drawLine(QPointF(x1, y1), QPointF(x2, y2));
        break;
    case LineShape::Box:
        mPainter.setPen(DrawStyle == 5 ? QPen(Qt::NoPen) : pen);
        mPainter.setBrush(Qt::NoBrush);
        mPainter.drawRect(box);
        break;
    case LineShape::FilledBox:
        mPainter.fillRect(box, color);
        if (DrawStyle != 5) {
            mPainter.setPen(pen);
            mPainter.setBrush(Qt::NoBrush);
            mPainter.drawRect(box);
        }
        break;
    }
    mPainter.restore();
}

void PainterTarget::PaintPicture(const QImage &picture, double x, double y, double width, double height)
{
    if (picture.isNull())
        return;
    mPainter.save();
    mPainter.scale(mScale, mScale);
    mPainter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    mPainter.drawImage(QRectF(x, y, width, height), picture);
    mPainter.restore();
}
