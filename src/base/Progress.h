#pragma once
// Long work tells how far it has come and learns whether to go on. The work
// calls the callback at points where stopping is safe; the callback returns
// false when the user asked to stop, and the work then ends at that point,
// leaving behind only what is whole. Work run without a callback goes on to
// the end.

#include <QString>

#include <functional>

using ProgressFn = std::function<bool(qint64 done, qint64 total, const QString &what)>;

// True when the work may go on (always, without a callback).
inline bool goOn(const ProgressFn &progress, qint64 done, qint64 total, const QString &what = QString())
{
    return !progress || progress(done, total, what);
}
