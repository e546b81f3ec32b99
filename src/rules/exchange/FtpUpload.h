#pragma once
// Sending files to the shop's web server over FTP: the trace pages that the
// QR of a price tag opens. The files of a local folder go under the shop's
// server folder with their relative paths; missing folders are made on the
// way, and nothing on the server is ever deleted.
//
// The connection is encrypted (explicit TLS, "AUTH TLS") whenever the server
// offers it and plain otherwise. The certificate is not checked: the servers
// of direct-sale shops commonly carry a self-signed one, and refusing it
// would leave the farmer only the plain connection, which hides nothing. The
// encryption keeps the password and the pages from being read on the way; it
// does not prove the server's identity.
//
// Transfers are passive and binary. A server that does not answer is given
// up after the target's timeout, so a dead server never hangs the program.
//
// What a failure leaves behind: the files sent stay on the server; a file
// whose transfer broke off (dropped connection, キャンセル) may lie there
// cut short and is reported as not sent; after a dropped connection, a
// cancel, a refused login or an unreachable server the remaining files are
// not tried. A second send of the files not sent (Outcome::unsent(), or the
// whole set again) completes the set: every file is written whole, over what
// is there.
#include "base/Progress.h"
#include "base/Value.h"

#include <QString>
#include <QStringList>
#include <QVector>

struct FtpTarget {
    QString server;   // "host", "host:port", with or without "ftp://"
    QString dir;      // the folder on the server; "" the login folder, "/..." from the server's root ("\\" reads as "/")
    QString user;     // "" logs in as anonymous
    QString password;
    int timeoutSeconds = 30; // connecting, each answer of the server, a stalled transfer
};

namespace FtpUpload {

// The upload settings of a shop of the master (FTP_SVR, FTP_DIR, FTP_USR,
// FTP_PWD); Null columns read as "" and a shop that is not there gives an
// empty target.
FtpTarget targetOfShop(const Value &shopId);

// The kinds of failure, each with one message for the farmer.
enum class Failure {
    NoServer,     // the shop has no server set
    Unreachable,  // name unknown, connection refused, no answer
    LoginRefused, // user or password refused
    FolderRefused, // a folder missing that can't be made, or not writable
    Dropped,      // the connection broke off halfway
    Cancelled,    // キャンセル
    LocalFile,    // a file of the computer that can't be read
    Other,        // the server answered something else
};

// The message of a failure kind, in Japanese.
QString messageOf(Failure failure);

struct NotSent {
    QString file;   // relative path, as given
    QString reason; // why, in Japanese
};

struct Outcome {
    QStringList sent;         // relative paths, in the order sent
    QVector<NotSent> notSent; // in the order given
    QVector<Failure> failures; // each kind that happened, once, in the order met
    bool encrypted = false;   // the connection was encrypted (TLS)
    QString detail;           // the technical text of the last failure, for support; never shown alone

    bool complete() const { return notSent.isEmpty(); }
    // The files not sent: what a second send is given.
    QStringList unsent() const;
    // One message per failure kind met, in Japanese.
    QStringList messages() const;
    // What the farmer reads at the end: how many files were sent where, and
    // the messages.
    QString summary() const;
};

// Sends the files (paths relative to localDir, "/" between folders) to the
// target's folder, each to the same relative path. progress gets the bytes
// sent of all the files and the file being sent; when it returns false the
// send stops: between files, or the current transfer is broken off and that
// file counts as not sent.
Outcome send(const FtpTarget &target, const QString &localDir, const QStringList &relativeFiles,
             const ProgressFn &progress = ProgressFn());

} // namespace FtpUpload
