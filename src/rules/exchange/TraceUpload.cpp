#include "rules/exchange/TraceUpload.h"

#include "rules/exchange/FtpUpload.h"
#include "rules/exchange/TracePages.h"

#include <QTemporaryDir>

namespace TraceUpload {

Result run(int year, const Value &plantId, const Value &shopId, const ProgressFn &progress)
{
    Result r;
    const FtpTarget target = FtpUpload::targetOfShop(shopId);
    if (target.server.isEmpty()) {
        r.text = FtpUpload::messageOf(FtpUpload::Failure::NoServer);
        return r;
    }
    QTemporaryDir folder;
    if (!folder.isValid()) {
        r.text = QStringLiteral("ページを書き出す一時フォルダを作成できません。");
        return r;
    }
    // The box says which step it is in.
    const auto step = [&progress](const QString &doing) -> ProgressFn {
        if (!progress)
            return ProgressFn();
        return [&progress, doing](qint64 done, qint64 total, const QString &what) {
            return progress(done, total, doing + what);
        };
    };
    const TracePages::Outcome pages =
        TracePages::write(folder.path(), year, plantId, step(QStringLiteral("ページを作成しています: ")));
    // A long list of plantings left without a page is cut short: the box
    // must stay on the screen.
    constexpr int kNamed = 5;
    QStringList lines = pages.summary(kNamed);
    if (pages.cancelled || !pages.refusal.isEmpty() || pages.pages == 0) {
        if (pages.cancelled)
            lines << QStringLiteral("中止したため、何も送っていません。");
        else if (pages.pages == 0 && pages.refusal.isEmpty())
            lines << QStringLiteral("送るページがありません。");
        r.text = lines.join(QLatin1Char('\n'));
        return r;
    }
    const FtpUpload::Outcome sent =
        FtpUpload::send(target, folder.path(), pages.files, step(QStringLiteral("送信しています: ")));
    lines << QString() << sent.summary();
    r.complete = sent.complete();
    r.text = lines.join(QLatin1Char('\n')).trimmed();
    return r;
}

} // namespace TraceUpload
