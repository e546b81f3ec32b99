#pragma once
// The progress box of long work: a window-modal box over the screen that
// started it, with what is being done, a bar and キャンセル. It shows itself
// only when the work lasts (a short look-up shows nothing); its callback is
// the one the rules take, and returns false once キャンセル was pressed.

#include "base/Progress.h"

#include <QPointer>

class QProgressDialog;
class QWidget;

class ProgressBox {
public:
    // `cancellable` false: the box has no キャンセル (work that cannot stop safely).
    ProgressBox(QWidget *parent, const QString &title, bool cancellable = true);
    ~ProgressBox();
    ProgressBox(const ProgressBox &) = delete;
    ProgressBox &operator=(const ProgressBox &) = delete;

    ProgressFn callback();
    bool cancelled() const { return mCancelled; }

    // Tests: every box created from now on behaves as if キャンセル were
    // pressed once the work has reported `steps` times (0: never).
    static void setCancelAfterForTest(int steps);

private:
    bool report(qint64 done, qint64 total, const QString &what);
    QPointer<QProgressDialog> mBox;
    bool mCancelled = false;
    int mReports = 0;
    int mCancelAfter = 0;
};
