#include "rules/print/PageTarget.h"

#include "base/AppError.h"

#include <QDir>
#include <QFileInfo>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>

#include <algorithm>

namespace {
// Drawing resolution of a PDF page: fine enough for bars of a tenth of a
// millimetre, and whole twips at 1200 dots to the inch.
constexpr int kPdfDpi = 1200;
}

// ---------------------------------------------------------------- pages

void PageTarget::Print(const QString &text)
{
    if (beginPage()) {
        PainterTarget::Print(text);
    } else {
        CurrentY += TextHeight(text);
        CurrentX = 0;
    }
}

void PageTarget::Line(double x1, double y1, double x2, double y2, const QColor &color, LineShape shape)
{
    if (beginPage())
        PainterTarget::Line(x1, y1, x2, y2, color, shape);
}

void PageTarget::PaintPicture(const QImage &picture, double x, double y, double width, double height)
{
    if (beginPage())
        PainterTarget::PaintPicture(picture, x, y, width, height);
}

// ---------------------------------------------------------------- a PDF file

PdfTarget::PdfTarget(const QString &path, double paperWidth, double paperHeight, const QString &title)
    : mFile(path), mWidth(paperWidth), mHeight(paperHeight), mTitle(title)
{
}

PdfTarget::~PdfTarget()
{
    if (mPage.isActive())
        mPage.end();
    mWriter.reset();
    if (mFile.isOpen())
        mFile.cancelWriting(); // the file under the name is left as it was
}

void PdfTarget::setOrientation(int orientation)
{
    if ((orientation == 1 || orientation == 2) && !mWriter)
        mOrientation = orientation;
}

void PdfTarget::fail(const QString &reason)
{
    const QString name = QDir::toNativeSeparators(mFile.fileName());
    throw AppError(75, QStringLiteral("PDFファイルを保存できません。\n%1\n（%2）").arg(name, reason));
}

bool PdfTarget::beginPage()
{
    if (mPage.isActive()) {
        if (!mOpen) {
            if (!mWriter->newPage())
                fail(mFile.errorString());
            ++mPages;
            mOpen = true;
        }
        return true;
    }
    if (!QFileInfo(QFileInfo(mFile.fileName()).absolutePath()).isDir())
        fail(QStringLiteral("フォルダがありません"));
    if (!mFile.open(QIODevice::WriteOnly))
        fail(mFile.errorString());
    mWriter = std::make_unique<QPdfWriter>(&mFile);
    mWriter->setResolution(kPdfDpi);
    mWriter->setTitle(mTitle);
    mWriter->setCreator(QStringLiteral("Tillora"));
    // The paper of the report, short side across; a landscape report turns it.
    const double w = mWidth > 0 ? mWidth : 11906, h = mHeight > 0 ? mHeight : 16838;
    const QPageSize size(QSizeF(std::min(w, h) / 20, std::max(w, h) / 20), QPageSize::Point, QString(),
                         QPageSize::FuzzyMatch);
    mWriter->setPageLayout(QPageLayout(size, mOrientation == 2 ? QPageLayout::Landscape : QPageLayout::Portrait,
                                       QMarginsF(0, 0, 0, 0)));
    setUnitsPerTwip(kPdfDpi / 1440.0);
    if (!mPage.begin(mWriter.get()))
        fail(mFile.errorString());
    mPages = 1;
    mOpen = true;
    return true;
}

void PdfTarget::finish()
{
    if (!mPage.isActive())
        startPage(); // a run without a drawing is one blank page
    mPage.end();
    mOpen = false;
    mWriter.reset();
    if (!mFile.commit())
        fail(mFile.errorString());
}
