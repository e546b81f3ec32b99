#include "rules/common/Pictures.h"

#include <QHash>
#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace Pictures {

namespace {

const QColor kSun(0xF2, 0x8C, 0x1C);
const QColor kSunRay(0xF5, 0xB0, 0x2E);
const QColor kCloud(0x9A, 0xA4, 0xAE);
const QColor kCloudEdge(0x6E, 0x78, 0x82);
const QColor kRain(0x2F, 0x6F, 0xD6);
const QColor kSnow(0x5B, 0x9B, 0xD5);
const QColor kBolt(0xF4, 0xC4, 0x30);

void sun(QPainter &p, const QRectF &b)
{
    const QPointF c = b.center();
    const double r = std::min(b.width(), b.height()) * 0.24;
    p.setPen(QPen(kSunRay, std::max(1.0, r * 0.28), Qt::SolidLine, Qt::RoundCap));
    for (int i = 0; i < 8; ++i) {
        const double a = i * M_PI / 4;
        p.drawLine(QPointF(c.x() + std::cos(a) * r * 1.35, c.y() + std::sin(a) * r * 1.35),
                   QPointF(c.x() + std::cos(a) * r * 1.85, c.y() + std::sin(a) * r * 1.85));
    }
    p.setPen(Qt::NoPen);
    p.setBrush(kSun);
    p.drawEllipse(c, r, r);
}

void cloud(QPainter &p, const QRectF &b)
{
    const double w = b.width(), h = b.height();
    QPainterPath path;
    path.addEllipse(QRectF(b.left() + w * 0.08, b.top() + h * 0.38, w * 0.40, h * 0.40));
    path.addEllipse(QRectF(b.left() + w * 0.28, b.top() + h * 0.20, w * 0.46, h * 0.50));
    path.addEllipse(QRectF(b.left() + w * 0.52, b.top() + h * 0.36, w * 0.40, h * 0.40));
    path.addRect(QRectF(b.left() + w * 0.28, b.top() + h * 0.50, w * 0.44, h * 0.28));
    p.setPen(QPen(kCloudEdge, std::max(1.0, w * 0.03)));
    p.setBrush(kCloud);
    p.drawPath(path.simplified());
}

void drops(QPainter &p, const QRectF &b)
{
    p.setPen(QPen(kRain, std::max(1.0, b.width() * 0.07), Qt::SolidLine, Qt::RoundCap));
    const double w = b.width(), h = b.height();
    for (int i = 0; i < 3; ++i) {
        const double x = b.left() + w * (0.28 + i * 0.22);
        p.drawLine(QPointF(x, b.top() + h * 0.74), QPointF(x - w * 0.07, b.top() + h * 0.96));
    }
}

void flakes(QPainter &p, const QRectF &b)
{
    const double w = b.width(), h = b.height();
    p.setPen(QPen(kSnow, std::max(1.0, w * 0.05), Qt::SolidLine, Qt::RoundCap));
    for (int i = 0; i < 3; ++i) {
        const QPointF c(b.left() + w * (0.25 + i * 0.25), b.top() + h * (i == 1 ? 0.86 : 0.72));
        const double r = w * 0.09;
        for (int k = 0; k < 3; ++k) {
            const double a = k * M_PI / 3;
            p.drawLine(QPointF(c.x() - std::cos(a) * r, c.y() - std::sin(a) * r),
                       QPointF(c.x() + std::cos(a) * r, c.y() + std::sin(a) * r));
        }
    }
}

void bolt(QPainter &p, const QRectF &b)
{
    const double w = b.width(), h = b.height();
    QPolygonF z;
    z << QPointF(b.left() + w * 0.52, b.top() + h * 0.58) << QPointF(b.left() + w * 0.36, b.top() + h * 0.82)
      << QPointF(b.left() + w * 0.50, b.top() + h * 0.80) << QPointF(b.left() + w * 0.42, b.top() + h * 0.99)
      << QPointF(b.left() + w * 0.68, b.top() + h * 0.72) << QPointF(b.left() + w * 0.54, b.top() + h * 0.74)
      << QPointF(b.left() + w * 0.64, b.top() + h * 0.58);
    p.setPen(QPen(QColor(0xA0, 0x70, 0x00), std::max(1.0, w * 0.02)));
    p.setBrush(kBolt);
    p.drawPolygon(z);
}

void fog(QPainter &p, const QRectF &b)
{
    const double w = b.width(), h = b.height();
    p.setPen(QPen(kCloudEdge, std::max(1.0, h * 0.08), Qt::SolidLine, Qt::RoundCap));
    for (int i = 0; i < 4; ++i) {
        const double y = b.top() + h * (0.22 + i * 0.19);
        const double indent = (i % 2) ? w * 0.18 : w * 0.08;
        p.drawLine(QPointF(b.left() + indent, y), QPointF(b.right() - w * 0.26 + indent, y));
    }
}

// "のち": the first weather small at the top left, an arrow, the second at the bottom right.
void changeTo(QPainter &p, const QRectF &b, void (*first)(QPainter &, const QRectF &),
              void (*second)(QPainter &, const QRectF &))
{
    const double w = b.width(), h = b.height();
    first(p, QRectF(b.left(), b.top(), w * 0.55, h * 0.55));
    second(p, QRectF(b.left() + w * 0.45, b.top() + h * 0.45, w * 0.55, h * 0.55));
    p.setPen(QPen(Qt::black, std::max(1.0, w * 0.04)));
    p.drawLine(QPointF(b.left() + w * 0.60, b.top() + h * 0.18), QPointF(b.left() + w * 0.86, b.top() + h * 0.18));
    p.drawLine(QPointF(b.left() + w * 0.78, b.top() + h * 0.10), QPointF(b.left() + w * 0.86, b.top() + h * 0.18));
}

void rain(QPainter &p, const QRectF &b)
{
    cloud(p, QRectF(b.left(), b.top() - b.height() * 0.12, b.width(), b.height()));
    drops(p, b);
}

void snow(QPainter &p, const QRectF &b)
{
    cloud(p, QRectF(b.left(), b.top() - b.height() * 0.12, b.width(), b.height()));
    flakes(p, b);
}

void badge(QPainter &p, const QRectF &b, const QColor &fill, const QString &letter)
{
    const double m = b.width() * 0.06;
    const QRectF r = b.adjusted(m, m, -m, -m);
    p.setPen(QPen(fill.darker(140), std::max(1.0, b.width() * 0.05)));
    p.setBrush(fill);
    p.drawRoundedRect(r, r.width() * 0.22, r.height() * 0.22);
    QFont f = p.font();
    f.setPixelSize(std::max(1, int(r.height() * 0.72)));
    f.setBold(true);
    p.setFont(f);
    p.setPen(Qt::white);
    p.drawText(r, Qt::AlignCenter, letter);
}

} // namespace

namespace {

// A picture drawn on a raster target (the screen, an image) is kept as an
// image of its size, its kind and its font, and the next one of the same is
// copied: the calendar draws the same few pictures dozens of times a redraw.
// Printers and PDF files get the vectors every time.
void drawKept(QPainter &p, const QRectF &box, const QString &kind, void (*draw)(QPainter &, const QRectF &, int),
              int id)
{
    QPaintEngine *engine = p.paintEngine();
    if (!engine || engine->type() != QPaintEngine::Raster || p.transform().type() > QTransform::TxTranslate) {
        draw(p, box, id);
        return;
    }
    const qreal dpr = p.device()->devicePixelRatioF();
    const QSize size(int(std::ceil(box.width() * dpr)), int(std::ceil(box.height() * dpr)));
    const QString key = QStringLiteral("%1%2 %3x%4 %5 %6")
                            .arg(kind)
                            .arg(id)
                            .arg(size.width())
                            .arg(size.height())
                            .arg(dpr)
                            .arg(p.font().key());
    static QHash<QString, QImage> kept;
    auto it = kept.constFind(key);
    if (it == kept.constEnd()) {
        if (kept.size() >= 256)
            kept.clear();
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(dpr);
        image.fill(Qt::transparent);
        QPainter ip(&image);
        ip.setFont(p.font());
        draw(ip, QRectF(QPointF(0, 0), box.size()), id);
        ip.end();
        it = kept.insert(key, image);
    }
    p.drawImage(box.topLeft(), *it);
}

void weatherVectors(QPainter &p, const QRectF &box, int id)
{
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    switch (id) {
    case 1: sun(p, box); break;
    case 2: cloud(p, box); break;
    case 3: rain(p, box); break;
    case 4: snow(p, box); break;
    case 5: // 時々: a sun behind a cloud
        sun(p, QRectF(box.left(), box.top(), box.width() * 0.7, box.height() * 0.7));
        cloud(p, QRectF(box.left() + box.width() * 0.2, box.top() + box.height() * 0.25, box.width() * 0.8,
                        box.height() * 0.75));
        break;
    case 6: // a cloud with a few drops
        cloud(p, QRectF(box.left(), box.top() - box.height() * 0.12, box.width(), box.height()));
        drops(p, QRectF(box.left() + box.width() * 0.15, box.top(), box.width() * 0.7, box.height()));
        break;
    case 7: changeTo(p, box, sun, rain); break;
    case 8: changeTo(p, box, rain, sun); break;
    case 9: fog(p, box); break;
    case 10:
        cloud(p, QRectF(box.left(), box.top() - box.height() * 0.15, box.width(), box.height()));
        bolt(p, box);
        break;
    }
    p.restore();
}

void markVectors(QPainter &p, const QRectF &box, int kind)
{
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    switch (kind) {
    case 1: badge(p, box, QColor(0xD4, 0x9A, 0x06), QStringLiteral("¥")); break;
    case 2: badge(p, box, QColor(0x2E, 0x8B, 0x3A), QStringLiteral("薬")); break;
    case 3: badge(p, box, QColor(0x2A, 0x64, 0xC8), QStringLiteral("出")); break;
    case 4: badge(p, box, QColor(0xC6, 0x28, 0x28), QStringLiteral("薬")); break;
    default: break;
    }
    p.restore();
}

} // namespace

void drawWeather(QPainter &p, const QRectF &box, int id)
{
    if (id < 1 || id > 10 || box.width() <= 0 || box.height() <= 0)
        return;
    drawKept(p, box, QStringLiteral("w"), weatherVectors, id);
}

void drawMark(QPainter &p, const QRectF &box, int kind)
{
    if (kind < 1 || kind > 4 || box.width() <= 0 || box.height() <= 0)
        return;
    drawKept(p, box, QStringLiteral("m"), markVectors, kind);
}


void drawPlasticMark(QPainter &p, const QRectF &box)
{
    if (box.width() <= 0 || box.height() <= 0)
        return;
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    const double w = box.width(), h = box.height();
    const double stroke = std::max(1.0, std::min(w, h) * 0.07);
    // The loop: four arrows round a square, each pointing on to the next side.
    const QRectF loop(box.left() + w * 0.22, box.top() + h * 0.06, w * 0.56, h * 0.50);
    QPen pen(Qt::black, stroke, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    p.setPen(pen);
    p.setBrush(Qt::NoBrush);
    const QPointF c[4] = {loop.topLeft(), loop.topRight(), loop.bottomRight(), loop.bottomLeft()};
    const double gap = std::min(loop.width(), loop.height()) * 0.18;
    for (int i = 0; i < 4; ++i) {
        const QPointF a = c[i], b = c[(i + 1) % 4];
        const QPointF d = (b - a) / std::hypot(b.x() - a.x(), b.y() - a.y());
        const QPointF from = a + d * (gap * 0.5), to = b - d * gap;
        p.drawLine(from, to);
        // the head, a filled triangle at the end of each side
        const QPointF n(-d.y(), d.x());
        const double head = gap * 0.9;
        QPolygonF tri;
        tri << to + d * head << to + n * (head * 0.6) << to - n * (head * 0.6);
        p.save();
        p.setPen(Qt::NoPen);
        p.setBrush(Qt::black);
        p.drawPolygon(tri);
        p.restore();
    }
    QFont f(QStringLiteral("Noto Sans CJK JP"));
    f.setBold(true);
    f.setPixelSize(std::max(1, int(h * 0.36)));
    p.setFont(f);
    p.setPen(Qt::black);
    p.drawText(QRectF(box.left(), box.top() + h * 0.60, w, h * 0.40), Qt::AlignCenter, QStringLiteral("プラ"));
    p.restore();
}
}
