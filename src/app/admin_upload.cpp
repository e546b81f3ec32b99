// tillora-admin upload-dir: the files of a local folder sent to a shop's web
// server with the upload settings of the shop master, as the upload dialog
// sends the trace pages: each file under the shop's server folder with its
// path in the local folder.

#include "base/Globals.h"
#include "app/AdminCommands.h"
#include "app/CommandLine.h"
#include "rules/exchange/FtpUpload.h"
#include "store/Database.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QStringList>

namespace {

// Every file under the folder, relative, in name order.
QStringList filesUnder(const QString &dir)
{
    QStringList out;
    QDirIterator it(dir, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext())
        out << QDir(dir).relativeFilePath(it.next());
    out.sort();
    return out;
}
} // namespace

int runUploadDir(const QStringList &args)
{
    const CommandLine::Options opt = CommandLine::readOptions(args, {"--shop", "--dir"});
    const QString shop = opt.value("--shop"), dir = opt.value("--dir");
    bool numeric = false;
    shop.toInt(&numeric);
    if (!opt.ok || !numeric || dir.isEmpty()) {
        CommandLine::err(QStringLiteral("使い方: tillora-admin upload-dir [--root DIR] --shop N --dir LOCALDIR"));
        return 2;
    }
    if (!QFileInfo(dir).isDir()) {
        CommandLine::err(QStringLiteral("フォルダがありません: ") + QDir::toNativeSeparators(dir));
        return 1;
    }
    OpenIni();
    OpenMst();
    QString last;
    const FtpUpload::Outcome o = FtpUpload::send(FtpUpload::targetOfShop(Value(shop)), dir, filesUnder(dir),
                                                 [&last](qint64, qint64, const QString &what) {
                                                     if (what != last)
                                                         CommandLine::err(QStringLiteral("送信: ") + (last = what));
                                                     return true;
                                                 });
    for (const FtpUpload::NotSent &n : o.notSent)
        CommandLine::out(n.file + QLatin1Char('\t') + n.reason);
    CommandLine::out(o.summary());
    if (!o.detail.isEmpty())
        CommandLine::err(QStringLiteral("詳細: ") + o.detail);
    return o.complete() ? 0 : 1;
}
