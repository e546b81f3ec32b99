#pragma once
// A throw-away FTP server on 127.0.0.1 for the upload tests: ftp_server.py
// (Debian's pyftpdlib) started on a free port, with one user whose folder is
// a temporary folder of its own; stopped with the object.
#include "rules/exchange/FtpUpload.h"

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

class FtpServer {
public:
    struct Options {
        bool tls = false;         // offers explicit TLS, with a certificate made now
        bool tlsRequired = false; // and refuses the plain connection
        QString locked;           // a folder under home where nothing may be made or written
        qint64 dropAfterBytes = 0; // once, closes the connection mid-transfer after so many bytes
    };
    explicit FtpServer(const Options &options);
    FtpServer() : FtpServer(Options()) {}
    ~FtpServer();
    FtpServer(const FtpServer &) = delete;
    FtpServer &operator=(const FtpServer &) = delete;

    // Listening; otherwise error() says why.
    bool started() const { return mPort > 0; }
    QString error() const { return mError; }
    int port() const { return mPort; }
    QString home() const { return mHome.path(); }

    static QString user() { return QStringLiteral("farmer"); }
    static QString password() { return QStringLiteral("Tag-pass.19"); }
    // The server with the user's name and password, and the folder given.
    FtpTarget target(const QString &dir = QString()) const;
    // The bytes of a file under home; an empty array with ok false when it is missing.
    QByteArray file(const QString &relativePath, bool *ok = nullptr) const;
    // Every file under home, relative, sorted.
    QStringList files() const;

private:
    QTemporaryDir mHome, mCert;
    QProcess mProcess;
    int mPort = 0;
    QString mError;
};
