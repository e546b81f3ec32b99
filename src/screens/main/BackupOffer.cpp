#include "screens/main/BackupOffer.h"

#include "base/AppError.h"
#include "base/Msg.h"
#include "store/Backup.h"
#include "ui/Form.h"
#include "ui/Progress.h"

#include <QDateTime>
#include <QDir>

bool TakeBackup(QWidget *owner)
{
    const QString suggested = QDir(Backup::lastFolder()).filePath(Backup::fileName(QDateTime::currentDateTime()));
    QString file = SaveFileName(owner, QStringLiteral("バックアップの保存先"), suggested,
                                QStringLiteral("バックアップ (*.tar);;すべてのファイル (*)"));
    if (file.isEmpty())
        return false;
    if (!file.endsWith(QLatin1String(".tar"), Qt::CaseInsensitive))
        file += QStringLiteral(".tar");
    bool written = false;
    {
        WaitCursor wait;
        ProgressBox box(owner, QStringLiteral("バックアップ"));
        written = Backup::take(file, box.callback());
    }
    if (!written) {
        ShowMsg(QStringLiteral("バックアップを中止しました。"), Msg::Information);
        return false;
    }
    Backup::remember(file, QDate::currentDate());
    ShowMsg(QStringLiteral("バックアップを保存しました。\n%1").arg(QDir::toNativeSeparators(file)), Msg::Information);
    return true;
}

void OfferBackup(QWidget *owner)
{
    try {
        if (!Backup::dueNow(QDate::currentDate()))
            return;
        if (ShowMsg(QStringLiteral("前回のバックアップ（%1）から期間がたっています。\n今バックアップを取りますか？")
                        .arg(Backup::lastDay()),
                    Msg::YesNo + Msg::Question) == Msg::ResYes)
            TakeBackup(owner);
    } catch (const AppError &e) {
        // A backup that fails at start-up is said, and the program goes on.
        ShowError(e);
    }
}
