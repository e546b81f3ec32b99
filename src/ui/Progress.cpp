#include "ui/Progress.h"

#include <QApplication>
#include <QProgressDialog>

namespace {
int gCancelAfterForTest = 0;
// The wait before the box appears: quick work shows nothing.
constexpr int kShowAfterMs = 500;
} // namespace

ProgressBox::ProgressBox(QWidget *parent, const QString &title, bool cancellable)
    : mCancelAfter(gCancelAfterForTest)
{
    mBox = new QProgressDialog(parent ? parent : QApplication::activeWindow());
    mBox->setWindowTitle(title);
    mBox->setWindowModality(Qt::WindowModal);
    mBox->setMinimumDuration(kShowAfterMs);
    mBox->setAutoClose(false);
    mBox->setAutoReset(false);
    mBox->setMinimumWidth(360);
    if (cancellable)
        mBox->setCancelButtonText(QStringLiteral("キャンセル"));
    else
        mBox->setCancelButton(nullptr);
    mBox->setRange(0, 0);
    mBox->setValue(0);
}

ProgressBox::~ProgressBox()
{
    if (mBox) {
        mBox->close();
        mBox->deleteLater();
    }
}

ProgressFn ProgressBox::callback()
{
    return [this](qint64 done, qint64 total, const QString &what) { return report(done, total, what); };
}

bool ProgressBox::report(qint64 done, qint64 total, const QString &what)
{
    if (mCancelled)
        return false;
    ++mReports;
    if (mBox) {
        // The bar counts in per mille so that byte counts past int fit.
        if (total > 0) {
            mBox->setRange(0, 1000);
            mBox->setValue(int(qBound(qint64(0), done * 1000 / total, qint64(1000))));
        } else {
            mBox->setRange(0, 0);
        }
        if (!what.isEmpty())
            mBox->setLabelText(what);
        QApplication::processEvents();
        if (mBox->wasCanceled())
            mCancelled = true;
    }
    if (mCancelAfter > 0 && mReports >= mCancelAfter)
        mCancelled = true;
    return !mCancelled;
}

void ProgressBox::setCancelAfterForTest(int steps) { gCancelAfterForTest = steps; }
