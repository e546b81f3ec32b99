#pragma once
// Drawing the price tag sheet: a label at its place on a sheet of 3 columns
// by 8 rows, and the sheets of a run. It draws on any print target, so the
// preview and the printer show the same labels.
#include "rules/print/PriceTag.h"

class PrintTarget;
class QImage;
class QrPicture;

namespace PriceTagSheet {

// Forgets the shop's logo and the last QR symbol (the dialog opens or closes).
void reset();
// The logo of the shop (M_SHOP.PTAG_LOGO of gSHOP_ID, a file in the images
// folder); none when the shop names none. A file that cannot be read raises
// an error, and the sheet is drawn without a logo.
void loadShopLogo();
const QImage &logo();
// The recycling mark of plastic packaging, 6.0 by 5.1 mm.
const QImage &plasticMark();
QrPicture &qrPicture();
// The label frame is printed (the sheet dialog's 枠線印刷).
void setFrame(bool on);
bool frame();
// The frame choice kept on this computer (PRINT_PTAG_FRAME), and keeping it.
bool storedFrame();
void storeFrame(bool on);

// One label with its top left corner at (x, y); a label without a code
// draws nothing.
void DrawPriceTag(PrintTarget &target, double x, double y, const PriceTagLabel &label);
// One sheet of the run: the labels of that page at their places. On the
// printer the unprintable margin is taken off and the page is set up first;
// every page is a job of its own, named after the page.
void PrintPriceTagPage(PrintTarget &target, double left, double top, int page);
void PrintPriceTagPages(PrintTarget &target, double left, double top, int firstPage, int lastPage);
// Makes the sheet the drawing of its report.
void registerReport();

// The price "￥1,280" in full-width characters.
QString priceText(const Currency &price);

} // namespace PriceTagSheet
