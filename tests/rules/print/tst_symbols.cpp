// The symbols of a price tag, checked by reading them back: EAN-13 and QR
// symbols drawn onto an image and into a PDF (rasterised by pdftoppm) must
// decode with zbarimg to exactly what was drawn. Also the shop's code layout,
// the trace address, the QR version table, the encoder's refusals as drawn
// messages, and the cached symbol of a run of equal labels.

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "rules/print/PainterTarget.h"
#include "rules/print/Symbols.h"
#include "rules/shipping/ShopBarcode.h"
#include "store/Database.h"
#include "support/PrintProbe.h"
#include "support/RulesTest.h"
#include "support/TestRoot.h"

#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest/QTest>

#include <functional>
#include <memory>

namespace {

// Counts the encoder's calls for as long as it lives.
struct EncoderCalls {
    int count = 0;
    Qr::Encoder previous;
    explicit EncoderCalls(Qr::Encoder fake = nullptr)
    {
        Qr::Encoder inner = fake ? fake : Qr::Encoder(&Qr::QRmodel2);
        previous = Qr::setEncoder([this, inner](const qint32 *t, qint32 n, qint32 v, qint32 l, qint32 *m) {
            ++count;
            return inner(t, n, v, l, m);
        });
    }
    ~EncoderCalls() { Qr::setEncoder(previous); }
};

using Drawing = std::function<void(PrintTarget &)>;

// Draws on a white image of the page size (twips) at dpi.
QImage drawImage(QSizeF twips, int dpi, const Drawing &draw)
{
    const double scale = dpi / 1440.0;
    QImage img(int(twips.width() * scale), int(twips.height() * scale), QImage::Format_RGB32);
    img.fill(Qt::white);
    QPainter p(&img);
    PainterTarget t(p, scale);
    draw(t);
    return img;
}

// Draws one page of a PDF (page size in twips), as the printer's stand-in does.
void drawPdf(const QString &file, QSizeF twips, const Drawing &draw)
{
    QPdfWriter w(file);
    w.setResolution(1200);
    w.setPageSize(QPageSize(twips / 1440, QPageSize::Inch));
    w.setPageMargins(QMarginsF(0, 0, 0, 0));
    QPainter p(&w);
    PainterTarget t(p, w.resolution() / 1440.0, true);
    draw(t);
}

using Probe::pictureEncodings;
using Probe::zbar;
QString rasterise(const QString &pdf, int dpi) { return Probe::rasterise(pdf, dpi); }

QString ean(const QString &twelve) { return GetEanCheck(twelve); }

// The layout of shop 1: start and length of option, product, price in
// units, price in tens, farmer (a missing pair leaves its field out).
using Layout = QVector<std::pair<int, int>>;
void setLayout(const Layout &fields)
{
    static const char *const names[] = {"OPT", "PRD_ID", "AMT_01", "AMT_10", "FMR_ID"};
    QStringList sets;
    int i = 0;
    for (auto f : fields) {
        sets << QStringLiteral("BCD_%1_STA=%2, BCD_%1_LEN=%3").arg(QLatin1String(names[i])).arg(f.first).arg(f.second);
        ++i;
    }
    for (; i < 5; ++i)
        sets << QStringLiteral("BCD_%1_STA=NULL, BCD_%1_LEN=NULL").arg(QLatin1String(names[i]));
    gMST->EXEC(QStringLiteral("UPDATE M_SHOP SET ") + sets.join(QStringLiteral(", ")) + QStringLiteral(" WHERE SHOP_ID=1"));
}

Currency yen(double v) { return Currency::fromDouble(v); }

const QString kLongText = QStringLiteral("http://trace.example.jp/cropvia.php?fmr=12345?plant=67890&crop=tomato"
                                         "&field=north-3&note=organic-greenhouse-2024-spring");

} // namespace

class TestSymbols : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> mDir;

    QString file(const QString &name) const { return mDir->filePath(name); }

private slots:
    void init()
    {
        mDir = std::make_unique<QTemporaryDir>();
        gSHOP_ID = Value(1);
    }

    void shopBarcodeLayouts()
    {
        TestRoot root;
        // the delivered shop: option 1-2, farmer 3-6, product 7-8, price in tens 9-12
        QCOMPARE(GetShopBarcode(5, 12, yen(1290), 0), ean("000012050129"));

        struct Case {
            const char *what;
            Layout layout;
            qint32 product, farmer;
            double price;
            qint32 option;
            const char *digits;
        };
        const Case cases[] = {
            {"no field", {{1, 0}, {0, 0}, {5, 0}, {0, 0}, {9, 0}}, 5, 12, 1290, 3, "000000000000"},
            {"short value padded", {{0, 0}, {3, 5}}, 12, 0, 0, 0, "000001200000"},
            {"high digits cut", {{0, 0}, {0, 0}, {1, 4}, {5, 3}}, 0, 0, 12345, 0, "234523400000"},
            {"later field wins", {{1, 12}, {1, 6}, {0, 0}, {0, 0}, {4, 2}}, 123456, 99, 0, 777, "123996000777"},
            {"farmer beats all", {{1, 2}, {1, 2}, {1, 2}, {1, 2}, {1, 2}}, 11, 44, 22, 55, "440000000000"},
            {"a fraction's point stores 0", {{0, 0}, {0, 0}, {1, 6}}, 0, 0, 1290.5, 0, "129005000000"},
            // the price made whole first (half to even), then cut to tens
            {"tens of a rounded price", {{0, 0}, {0, 0}, {1, 4}, {5, 2}}, 0, 0, 19.5, 0, "190502000000"},
            {"a sign stores 0", {{0, 0}, {10, 3}}, -5, 0, 0, 0, "000000000005"},
            {"last position", {{0, 0}, {0, 0}, {0, 0}, {0, 0}, {12, 1}}, 0, 7, 0, 0, "000000000007"},
        };
        for (const Case &c : cases) {
            setLayout(c.layout);
            QVERIFY2(GetShopBarcode(c.product, c.farmer, yen(c.price), c.option) == ean(QString::fromLatin1(c.digits)),
                     c.what);
        }

        // impossible layouts: the field is named by the shop master's caption
        struct Bad {
            Layout layout;
            const char *field;
        };
        const Bad bad[] = {{{{0, 0}, {0, 2}}, "商品ID"},
                           {{{0, 0}, {0, 0}, {0, 0}, {0, 0}, {11, 3}}, "生産者ID"},
                           {{{13, 1}}, "その他"},
                           {{{0, 0}, {0, 0}, {0, 0}, {-1, 2}}, "金額（10円）"}};
        for (const Bad &b : bad) {
            setLayout(b.layout);
            try {
                GetShopBarcode(1, 1, yen(100), 0);
                QFAIL(b.field);
            } catch (const AppError &e) {
                QVERIFY2(e.description().contains(QString::fromUtf8(b.field)), qPrintable(e.description()));
                QVERIFY(e.description().startsWith(QStringLiteral("販売店のバーコード設定が正しくありません。")));
            }
        }

        // no shop row: thirteen zeros, the check digit being 0 too
        gMST->EXEC(QStringLiteral("DELETE FROM M_SHOP WHERE SHOP_ID=1"));
        QCOMPARE(GetShopBarcode(5, 12, yen(1290), 0), QStringLiteral("0000000000000"));
    }

    void traceUrl()
    {
        TestRoot root;
        const Value fmr(3), plant(12);
        QCOMPARE(GetTraceUrl(fmr, plant), QStringLiteral("http://trace.example.jp/cropvia/3/12/"));
        gMST->EXEC(QStringLiteral("UPDATE M_SHOP SET WWW_URL='www.example.jp/farm', UPLOAD_FILE_TYPE=2 WHERE SHOP_ID=1"));
        QCOMPARE(GetTraceUrl(fmr, plant), QStringLiteral("http://www.example.jp/farm/cropvia.php?fmr=3?plant=12"));
        gMST->EXEC(QStringLiteral("UPDATE M_SHOP SET WWW_URL='https://example.jp/', UPLOAD_FILE_TYPE=3 WHERE SHOP_ID=1"));
        QCOMPARE(GetTraceUrl(fmr, plant), QStringLiteral("https://example.jp/cropvia.php?fmr=3?plant=12"));
        gMST->EXEC(QStringLiteral("UPDATE M_SHOP SET UPLOAD_FILE_TYPE=NULL WHERE SHOP_ID=1"));
        QCOMPARE(GetTraceUrl(fmr, plant), QStringLiteral("https://example.jp/cropvia/3/12/"));
        gMST->EXEC(QStringLiteral("DELETE FROM M_SHOP WHERE SHOP_ID=1"));
        QCOMPARE(GetTraceUrl(fmr, plant), QString::fromLatin1(DefaultTraceUrl));
    }

    void qrVersionTable_data()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        QTest::addColumn<int>("chars");
        QTest::addColumn<int>("level");
        QTest::addColumn<int>("version");
        // the capacity must be greater than twice the characters
        QTest::newRow("14 bytes in 16") << 7 << 3 << 1;
        QTest::newRow("16 bytes not in 16") << 8 << 3 << 2;
        QTest::newRow("level 1 first") << 12 << 1 << 1;
        QTest::newRow("level 1 second") << 13 << 1 << 2;
        QTest::newRow("level 4 first") << 4 << 4 << 1;
        QTest::newRow("level 4 second") << 5 << 4 << 2;
        QTest::newRow("last row") << 110 << 3 << 10;
        QTest::newRow("past the table") << 111 << 3 << 11;
        QTest::newRow("far past") << 2000 << 1 << 11;
        QTest::newRow("empty") << 0 << 2 << 1;
    }
    void qrVersionTable()
    {
        QFETCH(int, chars);
        QFETCH(int, level);
        QFETCH(int, version);
        QCOMPARE(GetQrVersion(QString(chars, QChar(0x3042)), level), version);
        QCOMPARE(GetQrVersion(QString(chars, QLatin1Char('a')), level), version); // two bytes a character, whatever it is
    }

    void qrVersionLevelOutOfTable()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        for (int level : {0, 5}) {
            try {
                GetQrVersion(QStringLiteral("abc"), level);
                QFAIL("no error");
            } catch (const AppError &e) {
                QCOMPARE(e.number(), long(VbErr::Subscript));
            }
        }
    }

    // Codes in the system code page, and the matrix the right way round.
    void qrEncoderInterface()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        QCOMPARE(Qr::charCodes(QStringLiteral("Aｱあ髙")), (QVector<qint32>{0x41, 0xB1, 0x82A0, 0xFBFC}));

        // the always-dark module stands at column 8, row side - 8; the
        // mirrored place belongs to the format bits, light for this text
        const QVector<qint32> codes = Qr::charCodes(QStringLiteral("ABC123"));
        const int side = 21;
        std::vector<qint32> m(side * side, -1);
        QCOMPARE(Qr::QRmodel2(codes.constData(), codes.size(), 1, 3, m.data()), 0);
        QCOMPARE(m[8 * side + (side - 8)], 1);
        QCOMPARE(m[(side - 8) * side + 8], 0);
        for (qint32 v : m)
            QVERIFY(v == 0 || v == 1);
    }

    void ean13Drawing()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        // refused codes draw nothing
        const QVector<std::pair<QString, int>> refused = {{QStringLiteral("490123456789"), -1},
                                                          {QStringLiteral("49012345678901"), -1},
                                                          {QStringLiteral("490123456789a"), -2},
                                                          {QStringLiteral("4901234 67894"), -2},
                                                          {QStringLiteral("４９０１２３４５６７８９４"), -2}};
        for (const auto &r : refused) {
            Recorder t;
            QCOMPARE(DrawEan13(t, r.first, 0, 0, 1728, 680.4), r.second);
            QVERIFY(t.shapes.isEmpty() && t.texts.isEmpty());
        }

        // bars without outline, guards down to the full height, digits in
        // order under the bars at 7 points
        Recorder t;
        const QString code = ean(QStringLiteral("490123456789"));
        QCOMPARE(DrawEan13(t, code, 1000, 2000, 1728, 680), 0);
        int guards = 0;
        for (const auto &s : t.shapes) {
            QCOMPARE(s.shape, LineShape::FilledBox);
            QCOMPARE(s.style, 5);
            QCOMPARE(s.box.top(), 2000.0);
            if (qFuzzyCompare(s.box.bottom(), 2680.0))
                ++guards;
            else
                QCOMPARE(s.box.bottom(), 2000 + 680 * 0.8);
        }
        QCOMPARE(guards, 6);
        QString printed;
        for (const auto &d : t.texts) {
            printed += d.text;
            QCOMPARE(d.y, 2000 + 680 * 0.8);
            QCOMPARE(d.size, 7.0);
        }
        QCOMPARE(printed, code);
        QVERIFY(t.texts.first().x < t.shapes.first().box.left()); // the first digit left of the start guard
    }

    // Every first digit (each parity pattern) and a shop's code, at the size
    // a label gives them, read back from an image and from a PDF.
    void ean13Decodes()
    {
        TestRoot root;
        QStringList codes;
        for (const char *twelve : {"012345678901", "123456789012", "234567890123", "345678901234", "456789012345",
                                   "567890123456", "678901234567", "789012345678", "890123456789", "901234567890"})
            codes << ean(QString::fromLatin1(twelve));
        codes << GetShopBarcode(5, 12, yen(1290), 0);
        const Drawing draw = [&](PrintTarget &t) {
            for (int i = 0; i < codes.size(); ++i)
                DrawEan13(t, codes[i], 600 + (i % 2) * 5000, 600 + (i / 2) * 1300, 1728, 680.4);
        };
        QStringList expected = codes;
        expected.sort();

        // a label's barcode at 300 dpi: a module is 2.5 dots
        const QSizeF page(8200, 8400);
        const QString png = file(QStringLiteral("ean.png"));
        QVERIFY(drawImage(page, 300, draw).save(png));
        QCOMPARE(zbar(png), expected);

        const QString pdf = file(QStringLiteral("ean.pdf"));
        drawPdf(pdf, page, draw);
        const QString raster = rasterise(pdf, 300);
        QVERIFY(!raster.isEmpty());
        QCOMPARE(zbar(raster), expected);
    }

    // Short, Japanese and mixed texts, a trace address and a text of version
    // 11: drawn module by module onto an image, and through the cache at a
    // label's size into a PDF.
    void qrDecodes()
    {
        TestRoot root;
        gMST->EXEC(QStringLiteral("UPDATE M_SHOP SET UPLOAD_FILE_TYPE=2 WHERE SHOP_ID=1"));
        const QStringList texts = {QStringLiteral("ABC123"), QStringLiteral("山里市の春トマト"),
                                   QStringLiteral("トマト 桃太郎 No.5"), GetTraceUrl(Value(3), Value(12)), kLongText};
        QCOMPARE(texts[3], QStringLiteral("http://trace.example.jp/cropvia.php?fmr=3?plant=12"));
        QCOMPARE(GetQrVersion(kLongText, 3), 11);
        QStringList expected = texts;
        expected.sort();

        const QString png = file(QStringLiteral("qr.png"));
        QVERIFY(drawImage(QSizeF(10800, 6200), 300, [&](PrintTarget &t) {
                    for (int i = 0; i < texts.size(); ++i)
                        DrawQr(t, texts[i], 400 + (i % 3) * 3800, 400 + (i / 3) * 3000, 2400, GetQrVersion(texts[i], 3), 3);
                }).save(png));
        QCOMPARE(zbar(png), expected);

        const QString pdf = file(QStringLiteral("qr.pdf"));
        QrPicture cache;
        drawPdf(pdf, QSizeF(6100, 4100), [&](PrintTarget &t) {
            for (int i = 0; i < texts.size(); ++i)
                DrawQrCached(t, cache, texts[i], 600 + (i % 3) * 2000, 600 + (i / 3) * 2000, 850,
                             GetQrVersion(texts[i], 3), 3);
        });
        // the pictures kept exact, not blurred by a lossy compression
        QCOMPARE(pictureEncodings(pdf), QStringList(texts.size(), QStringLiteral("image")));
        // at a printer's 600 dpi: a module of the version 11 symbol is 5 dots
        const QString raster = rasterise(pdf, 600);
        QVERIFY(!raster.isEmpty());
        QCOMPARE(zbar(raster), expected);
    }

    // What the encoder refuses is drawn as the program's message at (0, 0),
    // with no module; the over-long text never reaches the encoder.
    void qrMessages()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        const QString twoRows = QString(14, QChar(0x7530)); // 田 x 14: version 2 by the table, too much for it
        struct Case {
            QString text;
            int version, level;
            Qr::Encoder fake;
            int calls;
            QString message;
        };
        const Case cases[] = {
            {QString(7090, QLatin1Char('a')), 11, 3, nullptr, 0, QStringLiteral("QRコード文字数が限度を超えています")},
            {QString(7089, QLatin1Char('a')), 11, 3, nullptr, 1, QStringLiteral("この条件ではデータ量が多すぎます。")},
            {twoRows, GetQrVersion(twoRows, 3), 3, nullptr, 1, QStringLiteral("この条件ではデータ量が多すぎます。")},
            {QStringLiteral("abc"), 41, 3, nullptr, 1, QStringLiteral("ＱＲのバージョンの指定がおかしいです。")},
            {QStringLiteral("abc"), 1, 5, nullptr, 1, QStringLiteral("誤り訂正レベルの指定がおかしいです。")},
            {QStringLiteral("abc"), 1, 3, [](const qint32 *, qint32, qint32, qint32, qint32 *) { return 3; }, 1,
             QStringLiteral("文字数に誤りがあります。１文字以上、７０８９文字以内でお願いします。")},
            {QStringLiteral("abc"), 1, 3, [](const qint32 *, qint32, qint32, qint32, qint32 *) { return 9; }, 1,
             QStringLiteral("この条件ではデータ量が多すぎます。")},
        };
        for (const Case &c : cases) {
            EncoderCalls calls(c.fake);
            Recorder t;
            DrawQr(t, c.text, 500, 700, 850, c.version, c.level);
            QCOMPARE(calls.count, c.calls);
            QVERIFY(t.shapes.isEmpty());
            QCOMPARE(t.texts.size(), 1);
            QCOMPARE(t.texts[0].text, c.message);
            QCOMPARE(QPointF(t.texts[0].x, t.texts[0].y), QPointF(0, 0));
        }

        EncoderCalls calls;
        Recorder t;
        DrawQr(t, QString(), 0, 0, 850, 1, 3);
        QCOMPARE(calls.count, 0);
        QVERIFY(t.shapes.isEmpty() && t.texts.isEmpty());
    }

    // A run of equal labels makes the symbol once and paints it on each; a
    // new text makes it again, and only the last is kept.
    void qrCacheForRunOfLabels()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        EncoderCalls calls;
        QrPicture cache;
        Recorder page;
        const QString text = QStringLiteral("http://trace.example.jp/cropvia/1/2/");
        for (int i = 0; i < 24; ++i)
            DrawQrCached(page, cache, text, (i / 8) * 3742.2, (i % 8) * 1922.13, 850, 11, 3);
        QCOMPARE(calls.count, 1);
        QCOMPARE(cache.made(), 1);
        QCOMPARE(page.pictures.size(), 24);
        QVERIFY(page.shapes.isEmpty());
        for (const auto &p : page.pictures) {
            QCOMPARE(p.key, page.pictures[0].key);
            QCOMPARE(p.box.size(), QSizeF(850, 850));
        }
        QCOMPARE(page.pictures[9].box.topLeft(), QPointF(3742.2, 1922.13));

        // the picture is the symbol over the whole box, with ten modules of
        // quiet zone on the right and at the bottom; each of the 61 + 10
        // modules across is 5 pixels, so none comes out wider than another
        const QImage &pic = cache.picture();
        QCOMPARE(pic.size(), QSize(5 * 71, 5 * 71));
        QCOMPARE(QColor(pic.pixel(2, 2)), QColor(Qt::black));
        QCOMPARE(QColor(pic.pixel(355 - 2, 355 - 2)), QColor(Qt::white));
        // the finder pattern: seven dark modules, then a light one, in whole modules
        QCOMPARE(QColor(pic.pixel(7 * 5 - 1, 0)), QColor(Qt::black));
        QCOMPARE(QColor(pic.pixel(7 * 5, 0)), QColor(Qt::white));
        QCOMPARE(QColor(pic.pixel(5 + 4, 5)), QColor(Qt::white));
        QCOMPARE(QColor(pic.pixel(4, 5)), QColor(Qt::black));
        const QString png = file(QStringLiteral("cache.png"));
        QVERIFY(pic.save(png));
        QCOMPARE(zbar(png), QStringList{text});

        DrawQrCached(page, cache, QStringLiteral("other"), 0, 0, 850, 1, 3);
        DrawQrCached(page, cache, text, 0, 0, 850, 11, 3);
        QCOMPARE(cache.made(), 3);
        QCOMPARE(calls.count, 3);

        // a label without a text: a blank picture, no symbol
        DrawQrCached(page, cache, QString(), 0, 0, 850, 1, 3);
        QCOMPARE(calls.count, 3);
        QImage blank(12 * 31, 12 * 31, QImage::Format_RGB32);
        blank.fill(Qt::white);
        QCOMPARE(cache.picture().convertToFormat(QImage::Format_RGB32), blank);
    }
};

TILLORA_RULES_TEST_MAIN(TestSymbols)
#include "tst_symbols.moc"
