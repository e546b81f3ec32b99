#include "rules/print/Symbols.h"

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "store/Stmt.h"
#include "rules/print/PainterTarget.h"
#include "rules/print/PrintTarget.h"
#include "store/Database.h"

#include <QPainter>

#include <qrencode.h>

#include <cmath>
#include <vector>

const char *const DefaultTraceUrl = "http://trace.example.jp/";

namespace {


// ---- EAN-13 tables, as the standard gives them.

// Parity of the six left digits by the first digit: O odd (set A), E even (set B).
const char *const kParity[10] = {"OOOOOO", "OOEOEE", "OOEEOE", "OOEEEO", "OEOOEE",
                                 "OEEOOE", "OEEEOO", "OEOEOE", "OEOEEO", "OEEOEO"};
const char *const kSetA[10] = {"0001101", "0011001", "0010011", "0111101", "0100011",
                               "0110001", "0101111", "0111011", "0110111", "0001011"};
const char *const kSetB[10] = {"0100111", "0110011", "0011011", "0100001", "0011101",
                               "0111001", "0000101", "0010001", "0001001", "0010111"};
const char *const kSetC[10] = {"1110010", "1100110", "1101100", "1000010", "1011100",
                               "1001110", "1010000", "1000100", "1001000", "1110100"};

constexpr int kModules = 143;
// Modules under which a digit is printed, first digit to thirteenth.
const int kDigitAt[13] = {16, 27, 34, 41, 48, 55, 62, 74, 81, 88, 95, 102, 109};

bool guardModule(int i)
{
    return (i >= 22 && i <= 26) || (i >= 69 && i <= 73) || (i >= 116 && i <= 120);
}

// ---- QR

// Capacity by version (row) and error level (column).
const int kCapacity[10][4] = {
    {25, 20, 16, 10},     {47, 38, 29, 20},     {77, 61, 47, 35},     {114, 90, 67, 50},
    {154, 122, 87, 64},   {195, 154, 108, 84},  {224, 178, 125, 93},  {279, 221, 157, 122},
    {335, 262, 189, 143}, {395, 311, 221, 174},
};

Qr::Encoder &encoder()
{
    static Qr::Encoder e = &Qr::QRmodel2;
    return e;
}

// The program's words for what the encoder refused.
QString statusText(int status)
{
    switch (status) {
    case Qr::BadVersion: return QStringLiteral("ＱＲのバージョンの指定がおかしいです。");
    case Qr::BadLevel: return QStringLiteral("誤り訂正レベルの指定がおかしいです。");
    case Qr::BadLength:
        return QStringLiteral("文字数に誤りがあります。１文字以上、７０８９文字以内でお願いします。");
    default: return QStringLiteral("この条件ではデータ量が多すぎます。");
    }
}

void printAtOrigin(PrintTarget &target, const QString &text)
{
    target.CurrentX = 0;
    target.CurrentY = 0;
    target.Print(text);
}

} // namespace

int DrawEan13(PrintTarget &target, const QString &code, double x, double y, double width, double height)
{
    if (code.size() != 13)
        return -1;
    int d[13];
    for (int i = 0; i < 13; ++i) {
        const QChar c = code.at(i);
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return -2;
        d[i] = c.digitValue();
    }

    QByteArray modules(24, '0');
    modules += "101";
    for (int i = 1; i <= 6; ++i)
        modules += kParity[d[0]][i - 1] == 'O' ? kSetA[d[i]] : kSetB[d[i]];
    modules += "01010";
    for (int i = 7; i <= 12; ++i)
        modules += kSetC[d[i]];
    modules += "101";
    modules += QByteArray(24, '0');

    const double moduleWidth = width / (kModules + 1);
    const double barHeight = height * 4 / 5;
    target.DrawWidth = 1;
    target.DrawStyle = 5;
    for (int i = 0; i < kModules; ++i) {
        if (modules.at(i) != '1')
            continue;
        const double bottom = y + (guardModule(i) ? height : barHeight);
        target.Line(x + i * moduleWidth, y, x + (i + 1) * moduleWidth, bottom, Qt::black, LineShape::FilledBox);
    }
    for (int k = 0; k < 13; ++k)
        PrintFitText(target, x + kDigitAt[k] * moduleWidth, y + barHeight, code.mid(k, 1), 0, 7, 180);
    return 0;
}

namespace Qr {

QVector<qint32> charCodes(const QString &text)
{
    QVector<qint32> codes;
    codes.reserve(text.size());
    for (const uint cp : text.toUcs4()) {
        const QByteArray bytes = toSystemCodePage(QString::fromUcs4(reinterpret_cast<const char32_t *>(&cp), 1));
        qint32 code = 0;
        for (const char b : bytes)
            code = (code << 8) | quint8(b);
        codes.append(code);
    }
    return codes;
}

int QRmodel2(const qint32 *text, qint32 length, qint32 version, qint32 level, qint32 *matrix)
{
    if (version < 1 || version > 40)
        return BadVersion;
    if (level < 1 || level > 4)
        return BadLevel;
    if (length < 1 || length > MaxChars)
        return BadLength;

    QByteArray bytes;
    for (qint32 i = 0; i < length; ++i) {
        const quint32 code = quint32(text[i]);
        for (int shift = 24; shift > 0; shift -= 8) {
            if (code >> shift)
                bytes += char((code >> shift) & 0xFF);
        }
        bytes += char(code & 0xFF);
    }

    static const QRecLevel kLevels[4] = {QR_ECLEVEL_L, QR_ECLEVEL_M, QR_ECLEVEL_Q, QR_ECLEVEL_H};
    // Two-byte characters of the code page go in the kanji mode and the rest
    // in the mode that suits it; a text holding a NUL character, which would
    // end the encoder's string, goes whole in the 8-bit mode.
    QRcode *qr = bytes.contains('\0')
                     ? QRcode_encodeData(bytes.size(), reinterpret_cast<const unsigned char *>(bytes.constData()),
                                         version, kLevels[level - 1])
                     : QRcode_encodeString(bytes.constData(), version, kLevels[level - 1], QR_MODE_KANJI, 1);
    if (!qr)
        return TooMuchData;
    // The encoder grows the version to what the data needs; the symbol asked
    // for is of this version or none.
    if (qr->version != version) {
        QRcode_free(qr);
        return TooMuchData;
    }
    const int side = qr->width;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            matrix[x * side + y] = qr->data[y * side + x] & 1;
    }
    QRcode_free(qr);
    return Made;
}

Encoder setEncoder(Encoder e)
{
    Encoder previous = std::move(encoder());
    encoder() = e ? std::move(e) : Encoder(&QRmodel2);
    return previous;
}

} // namespace Qr

int GetQrVersion(const QString &text, int level)
{
    if (level < 1 || level > 4)
        raiseError(VbErr::Subscript);
    const int bytes = int(text.size()) * 2;
    for (int version = 1; version <= 10; ++version) {
        if (kCapacity[version - 1][level - 1] > bytes)
            return version;
    }
    return 11;
}

void DrawQr(PrintTarget &target, const QString &text, double x, double y, double size, int version, int level)
{
    if (text.isEmpty())
        return;
    const int side = version * 4 + 17;
    if (text.size() > Qr::MaxChars) {
        printAtOrigin(target, QStringLiteral("QRコード文字数が限度を超えています"));
        return;
    }
    // No room is made for a version no symbol has.
    std::vector<qint32> matrix(version >= 1 && version <= 40 ? size_t(side) * size_t(side) : 0);
    const QVector<qint32> codes = Qr::charCodes(text);
    int status = encoder()(codes.constData(), qint32(codes.size()), version, level, matrix.data());
    if (status == Qr::Made && matrix.empty())
        status = Qr::BadVersion;
    // No events are let through here: a timer or a resize run in the middle
    // of a page would draw into the page being drawn (a sheet of 24 labels
    // takes milliseconds, so the window never looks stuck).
    if (status != Qr::Made) {
        printAtOrigin(target, statusText(status));
        return;
    }

    const double cell = size / (side + 10);
    for (int row = 0; row < side; ++row) {
        for (int col = 0; col < side; ++col) {
            const bool dark = matrix[size_t(col) * side + row] >= 1;
            const double left = x + col * cell;
            const double top = y + row * cell;
            target.Line(left, top, left + cell, top + cell, dark ? Qt::black : Qt::white, LineShape::FilledBox);
        }
    }
}

void QrPicture::clear()
{
    mLastText.clear();
    mPicture = QImage();
}

void DrawQrCached(PrintTarget &target, QrPicture &cache, const QString &text, double x, double y, double size,
                  int version, int level)
{
    if (cache.mPicture.isNull() || text != cache.mLastText) {
        cache.mLastText = text;
        // Every module a whole number of pixels, so that no module comes out
        // a pixel wider than its neighbour when the picture is stretched.
        const int cells = (version >= 1 && version <= 40 ? version * 4 + 17 : 21) + 10;
        const int perModule = std::max(1, int(std::lround(QrPicture::BoxTwips * QrPicture::PixelsPerTwip / cells)));
        const int pixels = perModule * cells;
        QImage picture(pixels, pixels, QImage::Format_RGB32);
        picture.fill(Qt::white);
        {
            QPainter painter(&picture);
            PainterTarget box(painter, pixels / QrPicture::BoxTwips);
            DrawQr(box, text, 0, 0, QrPicture::BoxTwips, version, level);
        }
        // Two colours exactly: a PDF keeps such a picture as it is, where it
        // would store a colour one with lossy compression, blurring the modules.
        cache.mPicture = picture.convertToFormat(QImage::Format_Mono, {QColor(Qt::black).rgba(), QColor(Qt::white).rgba()},
                                                 Qt::ThresholdDither);
        ++cache.mMade;
    }
    target.PaintPicture(cache.mPicture, x, y, size, size);
}

QString GetTraceUrl(const Value &fmrId, const Value &plantId)
{
    RecordsetPtr rs = gMST->GetFwdOnlyRst(Stmt("SELECT M_SHOP.* FROM M_SHOP WHERE SHOP_ID=?").num(Nz(gSHOP_ID, Value(1))));
    if (rs->eof())
        return QString::fromLatin1(DefaultTraceUrl);
    QString url = textOf(rs->Fields(QStringLiteral("WWW_URL")));
    if (url.left(4) != QLatin1String("http"))
        url = QStringLiteral("http://") + url;
    if (!url.endsWith(QLatin1Char('/')))
        url += QLatin1Char('/');
    const int type = Nz(rs->Fields(QStringLiteral("UPLOAD_FILE_TYPE")), Value(0)).toLong();
    rs->Close();
    if (type == 2 || type == 3)
        return url + QStringLiteral("cropvia.php?fmr=") + textOf(fmrId) + QStringLiteral("?plant=") + textOf(plantId);
    return url + QStringLiteral("cropvia/") + textOf(fmrId) + QLatin1Char('/') + textOf(plantId) + QLatin1Char('/');
}
