#include "support/FtpServer.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QStringList>

FtpServer::FtpServer(const Options &o)
{
    QStringList args{QStringLiteral(TILLORA_FTP_SERVER_SCRIPT), QStringLiteral("--home"), home(),
                     QStringLiteral("--user"), user(), QStringLiteral("--password"), password()};
    if (o.tls)
        args << QStringLiteral("--tls") << mCert.path();
    if (o.tlsRequired)
        args << QStringLiteral("--tls-required");
    if (!o.locked.isEmpty())
        args << QStringLiteral("--locked") << o.locked;
    if (o.dropAfterBytes > 0)
        args << QStringLiteral("--drop-after-bytes") << QString::number(o.dropAfterBytes);
    // The system's Python, where Debian puts pyftpdlib.
    mProcess.start(QStringLiteral("/usr/bin/python3"), args);
    QByteArray line;
    while (!line.endsWith('\n') && mProcess.waitForReadyRead(15000))
        line += mProcess.readLine();
    if (line.startsWith("PORT "))
        mPort = line.mid(5).trimmed().toInt();
    if (mPort <= 0) {
        mProcess.kill();
        mProcess.waitForFinished(3000);
        mError = QStringLiteral("the test FTP server did not start (python3-pyftpdlib installed?): ") +
                 QString::fromUtf8(mProcess.readAllStandardError());
    }
}

FtpServer::~FtpServer()
{
    if (mProcess.state() == QProcess::NotRunning)
        return;
    mProcess.terminate();
    if (!mProcess.waitForFinished(3000)) {
        mProcess.kill();
        mProcess.waitForFinished(3000);
    }
}

FtpTarget FtpServer::target(const QString &dir) const
{
    FtpTarget t;
    t.server = QStringLiteral("127.0.0.1:%1").arg(mPort);
    t.dir = dir;
    t.user = user();
    t.password = password();
    t.timeoutSeconds = 10;
    return t;
}

QByteArray FtpServer::file(const QString &relativePath, bool *ok) const
{
    QFile f(QDir(home()).filePath(relativePath));
    const bool opened = f.open(QIODevice::ReadOnly);
    if (ok)
        *ok = opened;
    return opened ? f.readAll() : QByteArray();
}

QStringList FtpServer::files() const
{
    QStringList out;
    QDirIterator it(home(), QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        out << QDir(home()).relativeFilePath(it.next());
    out.sort();
    return out;
}
