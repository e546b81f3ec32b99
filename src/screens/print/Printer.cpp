#include "screens/print/Printer.h"

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Msg.h"
#include "rules/print/modPrinter.h"
#include "store/Database.h"

#include <QCoreApplication>
#include <QPageLayout>
#include <QPrinterInfo>

#include <algorithm>

PrinterTarget::PrinterTarget() : mDevice(QPrinter::HighResolution) {}

PrinterTarget::~PrinterTarget()
{
    // The painter outlives the device it may still be drawing on.
    if (mPage.isActive())
        mPage.end();
}

QStringList PrinterTarget::installedPrinters()
{
    QStringList names;
    const QString def = QPrinterInfo::defaultPrinterName();
    if (!def.isEmpty())
        names << def;
    for (const QString &n : QPrinterInfo::availablePrinterNames())
        if (n != def)
            names << n;
    return names;
}

bool PrinterTarget::exists() { return !QPrinterInfo::availablePrinterNames().isEmpty(); }

const QPaintDevice *PrinterTarget::hDC() const
{
    return exists() && mDevice.isValid() && !mDevice.printerName().isEmpty() ? &mDevice : nullptr;
}

QPointF PrinterTarget::printableOrigin() const
{
    const QRectF paper = mDevice.paperRect(QPrinter::DevicePixel);
    const QRectF page = mDevice.pageRect(QPrinter::DevicePixel);
    return page.topLeft() - paper.topLeft();
}

QString PrinterTarget::DeviceName() const { return mDevice.printerName(); }

void PrinterTarget::setDeviceName(const QString &name)
{
    if (mPage.isActive() || !installedPrinters().contains(name))
        return;
    mDevice.setPrinterName(name);
    if (mPaperBin > 0)
        setPaperBin(mPaperBin);
}

int PrinterTarget::Orientation() const
{
    return mDevice.pageLayout().orientation() == QPageLayout::Landscape ? 2 : 1;
}

void PrinterTarget::setOrientation(int orientation)
{
    if (orientation == 1 || orientation == 2)
        mDevice.setPageOrientation(orientation == 2 ? QPageLayout::Landscape : QPageLayout::Portrait);
}

void PrinterTarget::setPaperBin(int bin)
{
    PageTarget::setPaperBin(bin);
    // The bin codes run from 1 (upper tray) as the printer's own list does.
    if (bin >= 1 && bin <= QPrinter::Cassette + 1)
        mDevice.setPaperSource(QPrinter::PaperSource(bin - 1));
}

int PrinterTarget::Copies() const { return mDevice.copyCount(); }

void PrinterTarget::setCopies(int copies) { mDevice.setCopyCount(std::max(1, copies)); }

bool PrinterTarget::beginPage()
{
    if (mPage.isActive())
        return true;
    mDevice.setDocName(AppTitle());
    setUnitsPerTwip(mDevice.resolution() / 1440.0);
    if (!mPage.begin(&mDevice))
        throw AppError(482, QStringLiteral("プリンタ（%1）に印刷できません。プリンタの電源と接続を確かめてください。")
                                .arg(mDevice.printerName()));
    mOpen = true;
    return true;
}

void PrinterTarget::EndDoc()
{
    mOpen = false;
    if (mPage.isActive())
        mPage.end();
}

PrinterTarget &Printer()
{
    static PrinterTarget *printer = nullptr;
    if (!printer) {
        printer = new PrinterTarget;
        // The printer goes with the application, before the window system does.
        qAddPostRoutine([] {
            delete printer;
            printer = nullptr;
        });
    }
    return *printer;
}


void SetPrinter(int repId)
{
    if (!PrinterTarget::exists())
        return;
    PutLog(QStringLiteral("プリンタを規定に設定"));
    const QString name = matchPrinter(PrinterTarget::installedPrinters(), storedPrinter(repId));
    if (!name.isEmpty())
        Printer().setDeviceName(name);
}
