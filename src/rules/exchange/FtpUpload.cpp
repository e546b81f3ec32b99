#include "rules/exchange/FtpUpload.h"

#include "rules/masters/ShopMaster.h"

#include <QDir>
#include <QFile>
#include <QUrl>

#include <curl/curl.h>

#include <exception>
#include <mutex>
#include <utility>

namespace FtpUpload {

FtpTarget targetOfShop(const Value &shopId)
{
    ShopRecord shop;
    FtpTarget t;
    if (!ShopMaster::read(shopId, shop))
        return t;
    t.server = textOf(shop.FTP_SVR).trimmed();
    t.dir = textOf(shop.FTP_DIR).trimmed();
    t.user = textOf(shop.FTP_USR);
    t.password = textOf(shop.FTP_PWD);
    return t;
}

QString messageOf(Failure failure)
{
    switch (failure) {
    case Failure::NoServer:
        return QStringLiteral("アップロード先のサーバーが登録されていません。販売店情報の「ｻｰﾊﾞｰ」を入力してください。");
    case Failure::Unreachable:
        return QStringLiteral("サーバーにつながりません。販売店情報の「ｻｰﾊﾞｰ」と、インターネットへの接続を確かめてください。");
    case Failure::LoginRefused:
        return QStringLiteral("サーバーにログインできませんでした。販売店情報の「FTPﾕｰｻﾞｰ」と「PWD」を確かめてください。");
    case Failure::FolderRefused:
        return QStringLiteral("サーバーのフォルダがないか、書き込みが許されていません。販売店情報の「ｻｰﾊﾞｰﾃﾞｨﾚｸﾄﾘ」と、"
                              "サーバーの設定を確かめてください。");
    case Failure::Dropped:
        return QStringLiteral("送信の途中でサーバーとの接続が切れました。送ったファイルはサーバーに残っています。"
                              "送れなかったファイルは、もう一度アップロードすると送ります。");
    case Failure::Cancelled:
        return QStringLiteral("送信をキャンセルしました。送ったファイルはサーバーに残っています。");
    case Failure::LocalFile:
        return QStringLiteral("このパソコンのファイルに読めないものがありました。");
    case Failure::Other:
        return QStringLiteral("サーバーが送信を受け付けませんでした。しばらくしてからもう一度アップロードしてください。");
    }
    return QString();
}

QStringList Outcome::unsent() const
{
    QStringList out;
    for (const NotSent &n : notSent)
        out << n.file;
    return out;
}

QStringList Outcome::messages() const
{
    QStringList out;
    for (Failure f : failures)
        out << messageOf(f);
    return out;
}

QString Outcome::summary() const
{
    QStringList lines;
    if (!sent.isEmpty())
        lines << QStringLiteral("%1 個のファイルをサーバーに送りました（%2）。")
                     .arg(sent.size())
                     .arg(encrypted ? QStringLiteral("暗号化した接続") : QStringLiteral("暗号化なしの接続"));
    if (!notSent.isEmpty())
        lines << QStringLiteral("%1 個のファイルは送っていません。").arg(notSent.size());
    if (sent.isEmpty() && notSent.isEmpty())
        lines << QStringLiteral("送るファイルはありませんでした。");
    return (lines + messages()).join(QLatin1Char('\n'));
}

namespace {

void initCurlOnce()
{
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

// "ftp://host:port/" of a server text: spaces, the scheme and a trailing
// part after the host are left out. "" when no host is left.
QString serverUrl(const QString &server)
{
    QString s = server.trimmed();
    if (s.startsWith(QLatin1String("ftp://"), Qt::CaseInsensitive))
        s = s.mid(6);
    s = s.section(QLatin1Char('/'), 0, 0).trimmed();
    return s.isEmpty() ? QString() : QStringLiteral("ftp://") + s + QLatin1Char('/');
}

// The segments of a path, each percent-encoded, with "/" after each.
QString encodedPath(const QString &path)
{
    QString out;
    for (const QString &part : path.split(QLatin1Char('/'), Qt::SkipEmptyParts))
        out += QString::fromLatin1(QUrl::toPercentEncoding(part)) + QLatin1Char('/');
    return out;
}

// The folder on the server as a URL path: relative to the login folder, or
// from the server's root when it begins with "/" (an encoded "/" as the
// first step, so the server is asked to change to "/" first). A "\" typed
// as on Windows reads as "/".
QString folderPath(const QString &dir)
{
    const QString d = QString(dir).replace(QLatin1Char('\\'), QLatin1Char('/')).trimmed();
    return (d.startsWith(QLatin1Char('/')) ? QStringLiteral("%2F/") : QString()) + encodedPath(d);
}

QString fileUrl(const QString &base, const QString &relativeFile)
{
    QString path = encodedPath(relativeFile);
    path.chop(1);
    return base + path;
}

// What a failed transfer means, by libcurl's code, the server's last answer,
// whether the server had taken the login (on this or an earlier connection)
// and whether the user stopped it.
Failure failureOf(CURLcode code, const QString &lastReply, bool loggedIn, bool stopped)
{
    if (stopped || code == CURLE_ABORTED_BY_CALLBACK)
        return Failure::Cancelled;
    // The server closing the connection or breaking off the transfer.
    if (loggedIn && (lastReply.startsWith(QLatin1String("421")) || lastReply.startsWith(QLatin1String("426"))))
        return Failure::Dropped;
    switch (code) {
    case CURLE_LOGIN_DENIED:
        return Failure::LoginRefused;
    case CURLE_REMOTE_ACCESS_DENIED:
    case CURLE_UPLOAD_FAILED:
    case CURLE_REMOTE_FILE_NOT_FOUND:
    case CURLE_REMOTE_DISK_FULL:
    case CURLE_QUOTE_ERROR:
        if (loggedIn)
            return Failure::FolderRefused;
        break;
    case CURLE_READ_ERROR:
        return Failure::LocalFile;
    default:
        break;
    }
    if (!loggedIn) {
        switch (code) {
        case CURLE_COULDNT_RESOLVE_HOST:
        case CURLE_COULDNT_RESOLVE_PROXY:
        case CURLE_COULDNT_CONNECT:
        case CURLE_OPERATION_TIMEDOUT:
        case CURLE_GOT_NOTHING:
        case CURLE_RECV_ERROR:
        case CURLE_SEND_ERROR:
        case CURLE_WEIRD_SERVER_REPLY:
        case CURLE_URL_MALFORMAT:
            return Failure::Unreachable;
        default:
            return Failure::Other;
        }
    }
    switch (code) {
    case CURLE_COULDNT_CONNECT: // the data connection
    case CURLE_OPERATION_TIMEDOUT:
    case CURLE_PARTIAL_FILE:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_GOT_NOTHING:
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_FTP_WEIRD_PASV_REPLY:
    case CURLE_FTP_WEIRD_227_FORMAT:
    case CURLE_FTP_CANT_GET_HOST:
    case CURLE_FTP_ACCEPT_FAILED:
    case CURLE_FTP_ACCEPT_TIMEOUT:
    case CURLE_SSL_CONNECT_ERROR:
        return Failure::Dropped;
    default:
        return Failure::Other;
    }
}

// Why the file whose transfer failed was not sent.
QString reasonOf(Failure f)
{
    switch (f) {
    case Failure::NoServer:
        return QStringLiteral("サーバーが登録されていないため送っていません。");
    case Failure::Unreachable:
        return QStringLiteral("サーバーにつながらないため送っていません。");
    case Failure::LoginRefused:
        return QStringLiteral("サーバーにログインできないため送っていません。");
    case Failure::FolderRefused:
        return QStringLiteral("サーバーのフォルダに書き込めませんでした。");
    case Failure::Dropped:
        return QStringLiteral("送信中に接続が切れました（サーバーには途中までしかない場合があります）。");
    case Failure::Cancelled:
        return QStringLiteral("送信中にキャンセルしました（サーバーには途中までしかない場合があります）。");
    case Failure::LocalFile:
        return QStringLiteral("このパソコンのファイルを読めませんでした。");
    case Failure::Other:
        return QStringLiteral("サーバーが受け付けませんでした。");
    }
    return QString();
}

// Why a file after a failure that ends the send was not tried.
QString untriedReason(Failure f)
{
    switch (f) {
    case Failure::Dropped:
        return QStringLiteral("接続が切れたため送っていません。");
    case Failure::Cancelled:
        return QStringLiteral("キャンセルしたため送っていません。");
    case Failure::Other:
        return QStringLiteral("サーバーが受け付けなかったため送っていません。");
    default:
        return reasonOf(f);
    }
}

// A failure after which no further file is tried.
bool endsTheSend(Failure f) { return f != Failure::FolderRefused && f != Failure::LocalFile; }

// One send: the handle, kept over the files so that one login serves them.
class Session {
public:
    Session(const FtpTarget &target, const ProgressFn &progress) : mProgress(progress)
    {
        initCurlOnce();
        mCurl = curl_easy_init();
        const long timeout = qMax(1, target.timeoutSeconds);
        curl_easy_setopt(mCurl, CURLOPT_NOSIGNAL, 1L);
        curl_easy_setopt(mCurl, CURLOPT_ERRORBUFFER, mError);
        curl_easy_setopt(mCurl, CURLOPT_PROTOCOLS_STR, "ftp");
        curl_easy_setopt(mCurl, CURLOPT_UPLOAD, 1L);
        curl_easy_setopt(mCurl, CURLOPT_TRANSFERTEXT, 0L);
        curl_easy_setopt(mCurl, CURLOPT_FTP_CREATE_MISSING_DIRS, long(CURLFTP_CREATE_DIR_RETRY));
        // Passive: the computer opens the data connection, which passes the
        // home router. The address in the server's answer is not used (the
        // control connection's is), as a server behind a router gets it wrong.
        curl_easy_setopt(mCurl, CURLOPT_FTP_USE_EPSV, 1L);
        curl_easy_setopt(mCurl, CURLOPT_FTP_SKIP_PASV_IP, 1L);
        curl_easy_setopt(mCurl, CURLOPT_USE_SSL, long(CURLUSESSL_TRY));
        curl_easy_setopt(mCurl, CURLOPT_SSL_VERIFYPEER, 0L);
        curl_easy_setopt(mCurl, CURLOPT_SSL_VERIFYHOST, 0L);
        curl_easy_setopt(mCurl, CURLOPT_CONNECTTIMEOUT, timeout);
        curl_easy_setopt(mCurl, CURLOPT_SERVER_RESPONSE_TIMEOUT, timeout);
        curl_easy_setopt(mCurl, CURLOPT_LOW_SPEED_LIMIT, 1L);
        curl_easy_setopt(mCurl, CURLOPT_LOW_SPEED_TIME, timeout);
        curl_easy_setopt(mCurl, CURLOPT_TCP_KEEPALIVE, 1L);
        if (!target.user.isEmpty()) {
            const QByteArray user = target.user.toUtf8(), password = target.password.toUtf8();
            curl_easy_setopt(mCurl, CURLOPT_USERNAME, user.constData()); // copied by libcurl
            curl_easy_setopt(mCurl, CURLOPT_PASSWORD, password.constData());
        }
        curl_easy_setopt(mCurl, CURLOPT_HEADERFUNCTION, &Session::onReply);
        curl_easy_setopt(mCurl, CURLOPT_HEADERDATA, this);
        curl_easy_setopt(mCurl, CURLOPT_READFUNCTION, &Session::onRead);
        curl_easy_setopt(mCurl, CURLOPT_READDATA, this);
        curl_easy_setopt(mCurl, CURLOPT_NOPROGRESS, 0L);
        curl_easy_setopt(mCurl, CURLOPT_XFERINFOFUNCTION, &Session::onProgress);
        curl_easy_setopt(mCurl, CURLOPT_XFERINFODATA, this);
    }
    ~Session() { curl_easy_cleanup(mCurl); }
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    // Sends one file; CURLE_OK when the server has it whole.
    CURLcode put(const QString &url, QFile &file, const QString &name, qint64 doneBefore, qint64 total)
    {
        mFile = &file;
        mName = name;
        mDoneBefore = doneBefore;
        mTotal = total;
        mError[0] = 0;
        const QByteArray u = url.toUtf8();
        curl_easy_setopt(mCurl, CURLOPT_URL, u.constData());
        curl_easy_setopt(mCurl, CURLOPT_INFILESIZE_LARGE, curl_off_t(file.size()));
        const CURLcode code = curl_easy_perform(mCurl);
        mFile = nullptr;
        if (mThrown)
            std::rethrow_exception(std::exchange(mThrown, nullptr));
        return code;
    }

    bool loggedIn() const { return mLoggedIn; }
    bool encrypted() const { return mEncrypted; }
    bool stopped() const { return mStopped; }
    const QString &lastReply() const { return mLastReply; }
    QString detail(CURLcode code) const
    {
        QString d = QStringLiteral("libcurl %1: %2").arg(int(code)).arg(QString::fromUtf8(*mError ? mError : curl_easy_strerror(code)));
        if (!mLastReply.isEmpty())
            d += QStringLiteral(" / ") + mLastReply;
        return d;
    }

private:
    // Every answer line of the server: the login taken (230), encryption
    // agreed (234 to AUTH).
    static size_t onReply(char *data, size_t size, size_t count, void *self)
    {
        auto *s = static_cast<Session *>(self);
        const QString line = QString::fromUtf8(data, int(size * count)).trimmed();
        if (line.startsWith(QLatin1String("230")))
            s->mLoggedIn = true;
        else if (line.startsWith(QLatin1String("234")))
            s->mEncrypted = true;
        if (!line.isEmpty())
            s->mLastReply = line;
        return size * count;
    }

    static size_t onRead(char *buffer, size_t size, size_t count, void *self)
    {
        auto *s = static_cast<Session *>(self);
        const qint64 n = s->mFile->read(buffer, qint64(size * count));
        return n < 0 ? CURL_READFUNC_ABORT : size_t(n);
    }

    static int onProgress(void *self, curl_off_t, curl_off_t, curl_off_t, curl_off_t sent)
    {
        auto *s = static_cast<Session *>(self);
        try {
            if (goOn(s->mProgress, s->mDoneBefore + qint64(sent), s->mTotal, s->mName))
                return 0;
        } catch (...) {
            s->mThrown = std::current_exception();
        }
        s->mStopped = true;
        return 1;
    }

    CURL *mCurl = nullptr;
    char mError[CURL_ERROR_SIZE] = {};
    ProgressFn mProgress;
    QFile *mFile = nullptr;
    QString mName, mLastReply;
    qint64 mDoneBefore = 0, mTotal = 0;
    bool mLoggedIn = false, mEncrypted = false, mStopped = false;
    std::exception_ptr mThrown;
};

void noteFailure(Outcome &o, Failure f)
{
    if (!o.failures.contains(f))
        o.failures << f;
}

} // namespace

Outcome send(const FtpTarget &target, const QString &localDir, const QStringList &relativeFiles,
             const ProgressFn &progress)
{
    Outcome o;
    const QString base = serverUrl(target.server);
    if (base.isEmpty()) {
        if (!relativeFiles.isEmpty())
            noteFailure(o, Failure::NoServer);
        for (const QString &f : relativeFiles)
            o.notSent.append({f, reasonOf(Failure::NoServer)});
        return o;
    }
    const QString folder = base + folderPath(target.dir);
    const QDir local(localDir);
    qint64 total = 0;
    for (const QString &f : relativeFiles)
        total += QFileInfo(local.filePath(f)).size();

    Session session(target, progress);
    qint64 done = 0;
    int i = 0;
    for (; i < relativeFiles.size(); ++i) {
        const QString &name = relativeFiles.at(i);
        if (!goOn(progress, done, total, name)) {
            noteFailure(o, Failure::Cancelled);
            break;
        }
        QFile file(local.filePath(name));
        if (!file.open(QIODevice::ReadOnly)) {
            noteFailure(o, Failure::LocalFile);
            o.notSent.append({name, reasonOf(Failure::LocalFile)});
            o.detail = file.fileName() + QStringLiteral(": ") + file.errorString();
            continue;
        }
        const qint64 size = file.size();
        const CURLcode code = session.put(fileUrl(folder, name), file, name, done, total);
        if (code == CURLE_OK) {
            o.sent << name;
            done += size;
            continue;
        }
        const Failure f = failureOf(code, session.lastReply(), session.loggedIn(), session.stopped());
        noteFailure(o, f);
        o.detail = session.detail(code);
        o.notSent.append({name, reasonOf(f)});
        if (endsTheSend(f)) {
            ++i;
            break;
        }
    }
    if (i < relativeFiles.size()) {
        const QString why = untriedReason(o.failures.last());
        for (; i < relativeFiles.size(); ++i)
            o.notSent.append({relativeFiles.at(i), why});
    }
    o.encrypted = session.encrypted();
    return o;
}

} // namespace FtpUpload
