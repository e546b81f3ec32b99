// tillora-admin backup / restore: a backup of the tree's databases and
// pictures into one file, and putting one back.

#include "app/AdminCommands.h"
#include "app/CommandLine.h"
#include "base/AppError.h"
#include "base/Globals.h"
#include "store/Backup.h"
#include "store/Database.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QTextStream>

#include <cstdio>

namespace {
using CommandLine::err;
using CommandLine::out;

// Progress on standard error, one line a step.
bool say(qint64, qint64, const QString &what)
{
    if (!what.isEmpty())
        err(QStringLiteral("  ") + what);
    return true;
}

} // namespace

int runBackup(const QStringList &args)
{
    if (args.size() != 1 || args[0].startsWith(QLatin1String("--")))
        return CommandLine::wrongUse(QStringLiteral("tillora-admin"),
                                     QStringLiteral("使い方: tillora-admin backup [--root DIR] OUT（OUT はファイルかフォルダ）"));
    QString file = args[0];
    // A folder gets a dated file of its own.
    if (QFileInfo(file).isDir())
        file = QDir(file).filePath(Backup::fileName(QDateTime::currentDateTime()));
    Backup::take(file, say);
    Backup::remember(file, QDate::currentDate());
    out(file);
    return 0;
}

int runRestore(const QStringList &args, const QString &root)
{
    bool yes = false;
    QStringList files;
    for (const QString &a : args) {
        if (a == QLatin1String("--yes") || a == QLatin1String("-y"))
            yes = true;
        else if (a.startsWith(QLatin1String("--")))
            return CommandLine::wrongUse(QStringLiteral("tillora-admin"), QStringLiteral("不明なオプション '%1' です。").arg(a));
        else
            files << a;
    }
    if (files.size() != 1)
        return CommandLine::wrongUse(QStringLiteral("tillora-admin"),
                                     QStringLiteral("使い方: tillora-admin restore FILE [--root DIR] [--yes]"));
    const Backup::Contents c = Backup::describe(files[0]);
    out(QStringLiteral("バックアップ: %1（%2、版 %3）")
            .arg(files[0], c.taken.toString(QStringLiteral("yyyy/MM/dd HH:mm:ss")), c.version));
    out(QStringLiteral("復元先: %1").arg(root));
    if (!yes) {
        std::fputs("今のデータを置き換えます（元のものは日時を付けて残します）。プログラムを閉じてから行ってください。\n"
                   "復元しますか？ [y/N] ",
                   stdout);
        std::fflush(stdout);
        QTextStream in(stdin);
        const QString answer = in.readLine().trimmed().toLower();
        if (answer != QLatin1String("y") && answer != QLatin1String("yes")) {
            out(QStringLiteral("中止しました。"));
            return 1;
        }
    }
    for (const QString &line : Backup::restore(files[0], root, say))
        out(line);
    return 0;
}
