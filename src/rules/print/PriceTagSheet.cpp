#include "rules/print/PriceTagSheet.h"

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "rules/common/Pictures.h"
#include "rules/print/Symbols.h"
#include "rules/print/modPrinter.h"
#include "store/Database.h"
#include "store/Stmt.h"

#include <QDir>
#include <QImage>
#include <QImageReader>
#include <QLocale>
#include <QPainter>

namespace PriceTagSheet {

namespace {

QImage gLogo;
QrPicture gQr;
bool gFrame = false;

// Places on a label, in twips from its inner corner (3 mm and 1 mm in).
constexpr double InsetX = 170.1, InsetY = 56.7;

} // namespace

void reset()
{
    gLogo = QImage();
    gQr.clear();
}

void loadShopLogo()
{
    gLogo = QImage();
    const QString name =
        textOf(gMST->DLookup(QStringLiteral("PTAG_LOGO"), QStringLiteral("M_SHOP"), Stmt("SHOP_ID=?").num(gSHOP_ID)));
    if (name.isEmpty())
        return;
    const QString path = AppPaths::resolve(QStringLiteral("..\\images\\") + name);
    QImageReader reader(path);
    if (!reader.read(&gLogo)) {
        gLogo = QImage();
        throw AppError(53, QStringLiteral("値札のロゴ画像を読み込めません。ロゴなしで印刷します。\n") +
                               QDir::toNativeSeparators(path));
    }
}

const QImage &logo() { return gLogo; }

const QImage &plasticMark()
{
    // 6.0 by 5.1 mm at 600 dots to the inch, in two colours: a PDF keeps it
    // sharp as it is, where a picture of many colours would be stored with
    // lossy compression.
    static const QImage mark = [] {
        QImage img(142, 120, QImage::Format_RGB32);
        img.fill(Qt::white);
        QPainter p(&img);
        Pictures::drawPlasticMark(p, QRectF(0, 0, img.width(), img.height()));
        p.end();
        return img.convertToFormat(QImage::Format_Mono, {QColor(Qt::black).rgba(), QColor(Qt::white).rgba()},
                                   Qt::ThresholdDither);
    }();
    return mark;
}

QrPicture &qrPicture() { return gQr; }

void setFrame(bool on) { gFrame = on; }

bool frame() { return gFrame; }

bool storedFrame()
{
    const Value v = gINI->GetCtrl(QStringLiteral("PRINT_PTAG_FRAME"));
    return IsNumeric(v) ? v.toDouble() != 0 : hasValue(v) && v.toBool();
}

void storeFrame(bool on)
{
    int type = 0;
    gINI->SaveCtrl(QStringLiteral("PRINT_PTAG_FRAME"), Value(on ? 1 : 0), type);
}

QString priceText(const Currency &price)
{
    const QString digits = QLocale(QLocale::English).toString(qlonglong(std::llround(price.toDouble())));
    return toWide(QStringLiteral("￥") + digits);
}

void DrawPriceTag(PrintTarget &target, double x, double y, const PriceTagLabel &label)
{
    if (label.Code.isEmpty())
        return;
    target.DrawWidth = 1;
    target.DrawStyle = 0;
    const double X = x + InsetX, Y = y + InsetY;
    target.PaintPicture(gLogo, X, Y, 2268, 226.8);
    QString farmer = QStringLiteral("生産者：") + label.FmrNm;
    if (!label.Tel.isEmpty())
        farmer += QStringLiteral("(") + label.Tel + QStringLiteral(")");
    PrintFitText(target, X, Y + 283.5, farmer, 0, 10, 2721.6);
    PrintFitText(target, X, Y + 481.95, QStringLiteral("品名：") + label.PrdNm, 0, 12, 3402);
    PrintFitText(target, X, Y + 793.8, QStringLiteral("価格: "), 0, 12, 567);
    target.CurrentY = Y + 737.1;
    target.setFontSize(16);
    target.setFontBold(true);
    PrintFitText(target, X + 567, Y + 737.1, priceText(label.Price), 0, 16, 1701);
    target.setFontBold(false);
    DrawQrCached(target, gQr, label.QrText, X + 2778.3, Y, 850, GetQrVersion(label.QrText, 3), 3);
    if (!label.Locate.isEmpty())
        PrintFitText(target, X + 2324.7, Y + 850.5, label.Locate + QStringLiteral("産"), 1, 9, 623.7);
    if (label.Plas)
        target.PaintPicture(plasticMark(), X + 3061.8, Y + 737.1, 340.2, 289.17);
    target.setFontSize(8);
    DrawEan13(target, label.Code, X, Y + 1077.3, 1728, 680.4);
    // The box beside the symbol, left empty for the shop's own stamp.
    target.DrawStyle = 0;
    const double boxLeft = x + PriceTag::Width / 2 + 170.1;
    target.Line(boxLeft, Y + 1077.3, x + PriceTag::Width - 170.1, Y + 1077.3 + 680.4, Qt::black, LineShape::Box);
    if (gFrame)
        target.Line(x, y, x + PriceTag::Width, y + PriceTag::Height, Qt::black, LineShape::Box);
}

void PrintPriceTagPage(PrintTarget &target, double left, double top, int page)
{
    if (page < 1)
        return;
    SetLabelList();
    const SheetRange range = sheetRange(page, int(gLABEL_LIST.size()));
    if (range.first > range.last)
        return;
    double offsetLeft = 0, offsetTop = 0;
    // Each page is a job of its own in the print queue, named after the page;
    // the title is the program's again afterwards, also when the page fails.
    SetAppTitle(QStringLiteral("農産物値札 ") + QString::number(page) + QStringLiteral("ﾍﾟｰｼﾞ"));
    struct TitleBack {
        ~TitleBack() { SetAppTitle(QStringLiteral("Tillora")); }
    } titleBack;
    if (auto *printer = dynamic_cast<PageTarget *>(&target)) {
        GetPrintOffset(*printer, offsetLeft, offsetTop);
        SetPageSetup(*printer);
    }
    for (int i = range.first; i <= range.last; ++i) {
        const QPointF at = labelOrigin(i);
        DrawPriceTag(target, left - offsetLeft + at.x(), top - offsetTop + at.y(), gLABEL_LIST[i]);
    }
    target.EndDoc();
}

void PrintPriceTagPages(PrintTarget &target, double left, double top, int firstPage, int lastPage)
{
    for (int page = firstPage; page <= lastPage; ++page)
        PrintPriceTagPage(target, left, top, page);
}

void registerReport() { setReportPainter(kPriceTagReport, PrintPriceTagPages); }

} // namespace PriceTagSheet
