// Draws the program's icon into PNG files of the sizes given on the command
// line: a field in rows under the sun, with a young plant. Run at build time.
//
//   tillora-icon OUTDIR 16 32 48 ...   writes OUTDIR/<n>x<n>.png

#include <QColor>
#include <QDir>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <cstdio>

namespace {

// Drawn on a 256 grid, scaled to the size.
QImage draw(int size)
{
    QImage img(size, size, QImage::Format_ARGB32_Premultiplied);
    img.fill(Qt::transparent);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(size / 256.0, size / 256.0);

    // the tile: a sky that turns to the field
    QPainterPath tile;
    tile.addRoundedRect(QRectF(8, 8, 240, 240), 44, 44);
    p.setClipPath(tile);
    p.fillRect(QRectF(0, 0, 256, 256), QColor(0xe8, 0xf4, 0xfb));
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0xf2, 0xb7, 0x2e));
    p.drawEllipse(QPointF(196, 64), 30, 30);

    // the field: furrows that meet far away
    p.setBrush(QColor(0x8a, 0x5a, 0x34));
    p.drawRect(QRectF(0, 150, 256, 106));
    p.setBrush(QColor(0x6b, 0x42, 0x24));
    for (int i = -3; i <= 3; ++i) {
        QPainterPath furrow;
        const double near = 128 + i * 62, far = 128 + i * 16;
        furrow.moveTo(far - 3, 150);
        furrow.lineTo(far + 3, 150);
        furrow.lineTo(near + 12, 256);
        furrow.lineTo(near - 12, 256);
        furrow.closeSubpath();
        p.drawPath(furrow);
    }
    p.setClipping(false);

    // the plant: a stem and two leaves
    p.setPen(QPen(QColor(0x2e, 0x7d, 0x32), 10, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(128, 176), QPointF(128, 108));
    p.setPen(Qt::NoPen);
    const auto leaf = [&p](QPointF base, QPointF c1, QPointF c2, QPointF tip, QPointF c3, QPointF c4, QColor colour) {
        QPainterPath path;
        path.moveTo(base);
        path.cubicTo(c1, c2, tip);
        path.cubicTo(c3, c4, base);
        p.setBrush(colour);
        p.drawPath(path);
    };
    leaf({126, 124}, {104, 80}, {64, 84}, {52, 96}, {66, 126}, {100, 136}, QColor(0x43, 0xa0, 0x47));
    leaf({130, 108}, {146, 60}, {190, 52}, {206, 62}, {196, 96}, {162, 116}, QColor(0x66, 0xbb, 0x6a));

    // the tile's edge
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(QColor(0x2e, 0x5e, 0x2f), 6));
    p.drawRoundedRect(QRectF(8, 8, 240, 240), 44, 44);
    return img;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3) {
        std::fputs("usage: tillora-icon OUTDIR SIZE...\n", stderr);
        return 2;
    }
    const QDir out(QString::fromLocal8Bit(argv[1]));
    out.mkpath(QStringLiteral("."));
    for (int i = 2; i < argc; ++i) {
        const int size = QByteArray(argv[i]).toInt();
        if (size <= 0 || !draw(size).save(out.filePath(QStringLiteral("%1x%1.png").arg(size)), "PNG")) {
            std::fprintf(stderr, "tillora-icon: cannot write size %s\n", argv[i]);
            return 1;
        }
    }
    return 0;
}
