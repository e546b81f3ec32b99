#pragma once
// The two symbols of a price tag: the EAN-13 symbol, drawn bar by bar, and
// the QR symbol, whose module matrix comes from the QR encoder and is drawn
// module by module; and the text of the QR symbol, the address of a
// planting's trace page.
//
// Positions and sizes are twips, as everywhere on a print target.
#include "base/Value.h"

#include <QImage>
#include <QString>
#include <QVector>

#include <functional>

class PrintTarget;

// ---- EAN-13

// Draws the symbol of a 13-digit code (check digit included; none is
// computed here) in the box at (x, y): 24 quiet modules, the guards and the
// twelve encoded digits, 24 quiet modules again, each module width / 144
// wide. Bars take four fifths of the height, the guards all of it, and the
// digits stand under the bars in 7 points. Leaves DrawWidth 1, DrawStyle 5
// and the font at 7 points on the target.
// 0 when drawn; -1 for a code not 13 characters long, -2 for one with a
// character that is no digit: neither draws anything.
int DrawEan13(PrintTarget &target, const QString &code, double x, double y, double width, double height);

// ---- QR

namespace Qr {
// The longest text a symbol takes, in characters.
constexpr int MaxChars = 7089;
// Statuses of the encoder.
enum Status { Made = 0, BadVersion = 1, BadLevel = 2, BadLength = 3, TooMuchData = 4 };

// The modules of a symbol. text holds one element a character, its code in
// the system code page (a two-byte character is one element, lead byte
// high); level 1 to 4 is L, M, Q, H. matrix receives side x side elements,
// side = version x 4 + 17, column by column (column x, row y at
// x x side + y): 0 light, 1 dark. The symbol has exactly the version asked
// for: data that needs a bigger one is TooMuchData. Returns a Status.
int QRmodel2(const qint32 *text, qint32 length, qint32 version, qint32 level, qint32 *matrix);

// The character codes that QRmodel2 takes for a text.
QVector<qint32> charCodes(const QString &text);

// The encoder that DrawQr calls: QRmodel2 unless replaced (tests watch the
// calls through this). Returns the one it replaced.
using Encoder = std::function<int(const qint32 *, qint32, qint32, qint32, qint32 *)>;
Encoder setEncoder(Encoder encoder);
} // namespace Qr

// The version for a text at an error level (1 to 4): the first of versions 1
// to 10 whose capacity is greater than twice the number of characters, else
// 11. Counting two bytes a character gives a roomier symbol than the text
// needs; symbols are sized by it, so it stays. A level outside 1 to 4 raises
// AppError 9.
int GetQrVersion(const QString &text, int level);

// Draws the symbol of text, version and level in the square box of side size
// at (x, y). The symbol's side plus ten modules fill the box, the first
// module at the box's corner, so the quiet zone lies on the right and at the
// bottom. Light modules are drawn white, too. An empty text draws nothing; a
// text the encoder refuses draws the reason at (0, 0) of the target instead.
void DrawQr(PrintTarget &target, const QString &text, double x, double y, double size, int version, int level);

// The last symbol drawn, kept as a picture so that a sheet of equal labels
// makes the symbol once and paints it many times, at any zoom. The print
// dialog owns one for as long as it is open.
class QrPicture {
public:
    // The box the symbol is drawn in, in twips, and about the pixels of its
    // picture to a twip (the picture gives each module a whole number of them).
    static constexpr double BoxTwips = 4725;
    static constexpr double PixelsPerTwip = 0.08;

    const QString &lastText() const { return mLastText; }
    const QImage &picture() const { return mPicture; }
    // Symbols drawn into the picture so far.
    int made() const { return mMade; }
    void clear();

private:
    friend void DrawQrCached(PrintTarget &, QrPicture &, const QString &, double, double, double, int, int);
    QString mLastText;
    QImage mPicture;
    int mMade = 0;
};

// DrawQr through the picture: when the picture is missing or was made for
// another text, the symbol is drawn afresh on a white picture of the whole
// box; then the picture is painted into the square box of side size at (x, y).
void DrawQrCached(PrintTarget &target, QrPicture &cache, const QString &text, double x, double y, double size,
                  int version, int level);

// The address of a planting's trace page on the current shop's web server
// (M_SHOP.WWW_URL of gSHOP_ID, "http://" put in front when it doesn't begin
// with "http", "/" added at the end): "<url>cropvia.php?fmr=F?plant=P" for
// the script forms (UPLOAD_FILE_TYPE 2, 3), "<url>cropvia/F/P/" for pages.
// The second separator of the script form is "?" and not "&": tags already
// printed carry it so, and it stays. A missing shop row gives DefaultTraceUrl.
QString GetTraceUrl(const Value &fmrId, const Value &plantId);
extern const char *const DefaultTraceUrl;
