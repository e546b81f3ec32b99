#include "support/PrintProbe.h"

#include <QProcess>
#include <QRegularExpression>

void Recorder::Print(const QString &t)
{
    texts.append({t, CurrentX, CurrentY, fontSize(), fontBold()});
    CurrentX = 0;
    CurrentY += TextHeight(t);
}

void Recorder::Line(double x1, double y1, double x2, double y2, const QColor &color, LineShape shape)
{
    shapes.append({QRectF(QPointF(x1, y1), QPointF(x2, y2)), color, shape, DrawStyle});
}

void Recorder::PaintPicture(const QImage &p, double x, double y, double w, double h)
{
    pictures.append({QRectF(x, y, w, h), p.cacheKey()});
}

namespace Probe {

bool dark(const QImage &img, int x, int y) { return img.valid(x, y) && qGray(img.pixel(x, y)) < 128; }

QRect ink(const QImage &img, const QRect &area)
{
    QRect r;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (dark(img, x, y))
                r |= QRect(x, y, 1, 1);
    return r;
}

QString run(const QString &program, const QStringList &args)
{
    QProcess p;
    p.start(program, args);
    p.waitForFinished(30000);
    return QString::fromUtf8(p.readAllStandardOutput());
}

QStringList zbar(const QString &png)
{
    QProcess p;
    p.start(QStringLiteral("zbarimg"), {QStringLiteral("--raw"), QStringLiteral("-q"), QStringLiteral("--nodbus"), png});
    if (!p.waitForFinished(120000))
        return {QStringLiteral("!zbarimg did not finish")};
    QStringList found = QString::fromUtf8(p.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    found.sort();
    return found;
}

QString rasterise(const QString &pdf, int dpi, int page)
{
    const QString prefix = pdf + QStringLiteral(".page%1").arg(page);
    const int rc = QProcess::execute(
        QStringLiteral("pdftoppm"), {QStringLiteral("-r"), QString::number(dpi), QStringLiteral("-f"), QString::number(page),
                                     QStringLiteral("-l"), QString::number(page), QStringLiteral("-png"),
                                     QStringLiteral("-singlefile"), pdf, prefix});
    return rc == 0 ? prefix + QStringLiteral(".png") : QString();
}

QImage rasteriseArea(const QString &pdf, int dpi, int page, const QRect &area)
{
    const QString prefix = pdf + QStringLiteral(".area%1").arg(page);
    const int rc = QProcess::execute(
        QStringLiteral("pdftoppm"),
        {QStringLiteral("-r"), QString::number(dpi), QStringLiteral("-f"), QString::number(page), QStringLiteral("-l"),
         QString::number(page), QStringLiteral("-x"), QString::number(area.x()), QStringLiteral("-y"),
         QString::number(area.y()), QStringLiteral("-W"), QString::number(area.width()), QStringLiteral("-H"),
         QString::number(area.height()), QStringLiteral("-png"), QStringLiteral("-singlefile"), pdf, prefix});
    return rc == 0 ? QImage(prefix + QStringLiteral(".png")) : QImage();
}

int longestGreyRun(const QImage &img, const QRect &area)
{
    int longest = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        int run = 0;
        for (int x = area.left(); x <= area.right(); ++x) {
            const int g = img.valid(x, y) ? qGray(img.pixel(x, y)) : 255;
            run = g > 48 && g < 208 ? run + 1 : 0;
            longest = std::max(longest, run);
        }
    }
    return longest;
}

int pdfPages(const QString &pdf)
{
    const QRegularExpressionMatch m =
        QRegularExpression(QStringLiteral("Pages:\\s+(\\d+)\\n")).match(run(QStringLiteral("pdfinfo"), {pdf}));
    return m.hasMatch() ? m.captured(1).toInt() : -1;
}

QVector<PdfPicture> pdfPictures(const QString &pdf)
{
    const QStringList lines =
        run(QStringLiteral("pdfimages"), {QStringLiteral("-list"), pdf}).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QVector<PdfPicture> pictures;
    // page num type width height color comp bpc enc interp object ID x-ppi y-ppi size ratio
    for (const QString &line : lines.mid(2)) {
        const QStringList f = line.simplified().split(QLatin1Char(' '));
        if (f.size() < 14)
            continue;
        pictures.append({f[8], f[7].toInt(), f[9] == QLatin1String("yes"), std::min(f[12].toInt(), f[13].toInt())});
    }
    return pictures;
}

QStringList pictureEncodings(const QString &pdf)
{
    QStringList encodings;
    for (const PdfPicture &p : pdfPictures(pdf))
        encodings << p.encoding;
    return encodings;
}

} // namespace Probe
