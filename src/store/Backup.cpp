#include "store/Backup.h"

#include "base/AppError.h"
#include "base/Globals.h"
#include "store/Database.h"
#include "store/Engine.h"
#include "store/Setup.h"
#include "store/Stmt.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSaveFile>
#include <QTemporaryDir>

#include <cstring>
#include <functional>

namespace Backup {

const char *const kLastKey = "BACKUP_LAST";
const char *const kMonthsKey = "BACKUP_MONTHS";
const char *const kDirKey = "BACKUP_DIR";

namespace {

const char *const kManifest = "TILLORA-BACKUP";
const char *const kFirstLine = "Tillora backup 1";
constexpr int kBlock = 512;

AppError fileError(const QString &text) { return AppError(75, text); }

// ---------------------------------------------------------------- tar

// One ustar header: the name, the size, the mode 0600.
QByteArray tarHeader(const QByteArray &name, qint64 size, const QDateTime &at)
{
    QByteArray h(kBlock, '\0');
    const auto put = [&h](int offset, const QByteArray &field) { std::memcpy(h.data() + offset, field.constData(), field.size()); };
    const auto octal = [](qint64 v, int width) { return QByteArray::number(v, 8).rightJustified(width - 1, '0'); };
    put(0, name);
    put(100, octal(0600, 8));
    put(108, octal(0, 8));
    put(116, octal(0, 8));
    put(124, octal(size, 12));
    put(136, octal(at.toSecsSinceEpoch(), 12));
    put(148, QByteArray(8, ' '));
    h[156] = '0';
    put(257, QByteArrayLiteral("ustar"));
    put(263, QByteArrayLiteral("00"));
    unsigned sum = 0;
    for (char c : h)
        sum += static_cast<unsigned char>(c);
    put(148, octal(sum, 7));
    return h;
}

bool headerIsSound(const QByteArray &h)
{
    unsigned sum = 0;
    for (int i = 0; i < kBlock; ++i)
        sum += (i >= 148 && i < 156) ? unsigned(' ') : static_cast<unsigned char>(h[i]);
    bool ok = false;
    const unsigned stored = h.mid(148, 8).trimmed().replace('\0', "").toUInt(&ok, 8);
    return ok && stored == sum;
}

class TarWriter {
public:
    explicit TarWriter(QIODevice &out, const QDateTime &at) : mOut(out), mAt(at) {}

    void addData(const QString &name, const QByteArray &data)
    {
        write(tarHeader(name.toUtf8(), data.size(), mAt));
        write(data);
        pad(data.size());
    }

    void addFile(const QString &name, const QString &path)
    {
        QFile f(path);
        if (!f.open(QIODevice::ReadOnly))
            throw fileError(QStringLiteral("ファイル '%1' を読めません。").arg(path));
        write(tarHeader(name.toUtf8(), f.size(), mAt));
        qint64 written = 0;
        while (!f.atEnd()) {
            const QByteArray chunk = f.read(1 << 20);
            if (chunk.isEmpty())
                throw fileError(QStringLiteral("ファイル '%1' を読めません。").arg(path));
            write(chunk);
            written += chunk.size();
        }
        pad(written);
    }

    void finish() { write(QByteArray(2 * kBlock, '\0')); }

private:
    void pad(qint64 size)
    {
        if (size % kBlock)
            write(QByteArray(int(kBlock - size % kBlock), '\0'));
    }
    void write(const QByteArray &b)
    {
        if (mOut.write(b) != b.size())
            throw fileError(QStringLiteral("バックアップファイルを書き込めません。（%1）").arg(mOut.errorString()));
    }
    QIODevice &mOut;
    QDateTime mAt;
};

// Reads the parts of a tar file in order; each part's bytes go to `take`,
// which returns false to stop. Raises when the file is not a sound tar.
void readTar(const QString &file, const std::function<bool(const QString &, QIODevice &, qint64)> &take)
{
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly))
        throw fileError(QStringLiteral("ファイル '%1' を開けません。").arg(file));
    const AppError notBackup(
        75, QStringLiteral("'%1' は Tillora のバックアップファイルではないか、壊れています。").arg(file));
    for (;;) {
        const QByteArray h = f.read(kBlock);
        if (h.size() < kBlock)
            throw notBackup;
        if (h == QByteArray(kBlock, '\0'))
            return;
        if (!headerIsSound(h))
            throw notBackup;
        const QString name = QString::fromUtf8(h.left(100).constData());
        bool ok = false;
        const qint64 size = h.mid(124, 12).replace('\0', "").trimmed().toLongLong(&ok, 8);
        if (!ok || size < 0 || f.pos() + size > f.size())
            throw notBackup;
        const qint64 start = f.pos();
        if (!take(name, f, size))
            return;
        const qint64 next = start + (size + kBlock - 1) / kBlock * kBlock;
        if (!f.seek(next))
            throw notBackup;
    }
}

// ---------------------------------------------------------------- the databases kept

struct Kept {
    DbKind kind;
    QString fileEntry; // "data/DATA.MDB"
    QString sqlEntry;  // "data.sql"
};
const Kept kKept[] = {
    {DbKind::Ini, QStringLiteral("ini/INFO.MDB"), QString()},
    {DbKind::Work, QStringLiteral("work/WORK.MDB"), QString()},
    {DbKind::Data, QStringLiteral("data/DATA.MDB"), QStringLiteral("data.sql")},
    {DbKind::Master, QStringLiteral("data/MASTER.MDB"), QStringLiteral("master.sql")},
};

DbObject *openObject(DbKind kind)
{
    if (!gINI)
        OpenIni();
    switch (kind) {
    case DbKind::Ini: return gINI.get();
    case DbKind::Work:
        if (!gWORK)
            OpenWork();
        return gWORK.get();
    case DbKind::Data:
        if (!gDB)
            OpenDb();
        return gDB.get();
    case DbKind::Master:
        if (!gMST)
            OpenMst();
        return gMST.get();
    }
    return nullptr;
}

QString stamp(const QDateTime &at) { return at.toString(QStringLiteral("yyyyMMdd-HHmmss")); }

// Renames a file (and the journal files SQLite keeps beside it) aside with
// the time; the name it got, or empty when there was nothing.
QString putAside(const QString &path, const QString &suffix)
{
    if (!QFileInfo::exists(path))
        return QString();
    const QString aside = path + QLatin1Char('.') + suffix;
    for (const char *extra : {"", "-wal", "-shm"}) {
        const QString from = path + QLatin1String(extra);
        if (QFileInfo::exists(from) && !QFile::rename(from, aside + QLatin1String(extra)))
            throw fileError(QStringLiteral("ファイル '%1' を退避できません。").arg(from));
    }
    return aside;
}

void place(const QString &from, const QString &to)
{
    QDir().mkpath(QFileInfo(to).absolutePath());
    if (!QFile::rename(from, to))
        throw fileError(QStringLiteral("ファイル '%1' を置けません。").arg(to));
    QFile::setPermissions(to, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

QString sqlOfValue(const Value &v, const ColumnDef &c)
{
    if (v.isNull() || v.isEmpty())
        return QStringLiteral("NULL");
    switch (c.type) {
    case ColType::Bool: return Stmt("?").num(v.toBool() ? -1 : 0);
    case ColType::Currency: return Stmt("?").amount(v.toCurrency());
    case ColType::Byte:
    case ColType::Int16:
    case ColType::Int32:
    case ColType::Single:
    case ColType::Double: return Stmt("?").num(v);
    case ColType::Date: return Stmt("?").time(v);
    case ColType::Text:
    case ColType::Memo: return Stmt("?").text(v.toText());
    }
    return QStringLiteral("NULL");
}

// Splits a dump into its statements: each ends in ";" at the end of a line
// outside a quoted text (a text may hold line breaks and ";").
QStringList statementsOf(const QString &dump)
{
    QStringList out;
    bool quoted = false;
    int start = 0;
    for (int i = 0; i < dump.size(); ++i) {
        const QChar c = dump[i];
        if (c == QLatin1Char('\''))
            quoted = !quoted;
        else if (!quoted && c == QLatin1Char(';') && (i + 1 == dump.size() || dump[i + 1] == QLatin1Char('\n'))) {
            const QString s = dump.mid(start, i - start).trimmed();
            if (!s.isEmpty())
                out << s;
            start = i + 1;
        }
    }
    if (!dump.mid(start).trimmed().isEmpty())
        throw AppError(75, QStringLiteral("バックアップのデータが途中で終わっています。"));
    return out;
}

} // namespace

QString fileName(const QDateTime &at) { return QStringLiteral("tillora-backup-%1.tar").arg(stamp(at)); }

bool due(const Value &last, int months, const QDate &today)
{
    if (months <= 0)
        return false;
    if (!hasValue(last) || !IsDate(last))
        return true;
    return last.toDate().date().addMonths(months) <= today;
}

namespace {
QString setting(const char *key)
{
    if (!gINI)
        OpenIni();
    const Value v = gINI->GetCtrl(QString::fromLatin1(key));
    return hasValue(v) ? v.toText().trimmed() : QString();
}
void saveSetting(const char *key, const QString &value)
{
    if (!gINI)
        OpenIni();
    int type = 0;
    gINI->SaveCtrl(QString::fromLatin1(key), Value(value), type);
}
} // namespace

bool dueNow(const QDate &today)
{
    const QString last = setting(kLastKey);
    if (last.isEmpty()) {
        saveSetting(kLastKey, today.toString(QStringLiteral("yyyy/MM/dd")));
        return false;
    }
    bool ok = false;
    const int months = setting(kMonthsKey).toInt(&ok);
    return due(Value(last), ok ? months : 1, today);
}

void remember(const QString &file, const QDate &day)
{
    saveSetting(kLastKey, day.toString(QStringLiteral("yyyy/MM/dd")));
    saveSetting(kDirKey, QFileInfo(file).absolutePath());
}

QString lastDay() { return setting(kLastKey); }

QString lastFolder()
{
    const QString dir = setting(kDirKey);
    return !dir.isEmpty() && QFileInfo(dir).isDir() ? dir : QDir::homePath();
}

QString dumpRows(Engine &engine, DbKind kind, const ProgressFn &progress)
{
    const QVector<const TableDef *> tables = Schema::tablesOf(kind);
    QString out;
    // One snapshot for every table, without the locks of a save's
    // transaction: saves on other computers go on meanwhile.
    const bool server = engine.kind() == EngineKind::Mysql;
    if (server) {
        engine.executeNative(QStringLiteral("SET TRANSACTION ISOLATION LEVEL REPEATABLE READ"));
        engine.executeNative(QStringLiteral("START TRANSACTION WITH CONSISTENT SNAPSHOT, READ ONLY"));
    } else {
        engine.executeNative(QStringLiteral("BEGIN"));
    }
    try {
        qint64 done = 0;
        for (const TableDef *t : tables) {
            if (!goOn(progress, done++, tables.size(), t->name)) {
                engine.executeNative(QStringLiteral("ROLLBACK"));
                return QString();
            }
            QVector<Stmt> names;
            for (const ColumnDef &c : t->columns)
                names << Stmt("?").name(c.name);
            const QString head = Stmt("INSERT INTO ? (?) VALUES (")
                                     .name(t->name)
                                     .part(Stmt::joined(names, QStringLiteral(", ")))
                                     .sql();
            const ResultSet rs = engine.select(Stmt("SELECT ? FROM ?").part(Stmt::joined(names, QStringLiteral(", "))).name(t->name));
            for (const QVector<Value> &row : rs.rows) {
                QStringList cells;
                for (int i = 0; i < t->columns.size(); ++i)
                    cells << sqlOfValue(row[i], t->columns[i]);
                out += head + cells.join(QStringLiteral(", ")) + QStringLiteral(");\n");
            }
        }
        engine.executeNative(QStringLiteral("COMMIT"));
    } catch (...) {
        try {
            engine.executeNative(QStringLiteral("ROLLBACK"));
        } catch (const AppError &) {
        }
        throw;
    }
    return out;
}

void loadRows(Engine &engine, DbKind kind, const QString &dump)
{
    const QStringList statements = statementsOf(dump);
    engine.begin();
    try {
        for (const TableDef *t : Schema::tablesOf(kind))
            engine.execute(Stmt("DELETE FROM ?").name(t->name));
        for (const QString &s : statements) {
            if (!s.startsWith(QLatin1String("INSERT INTO "), Qt::CaseInsensitive))
                throw AppError(75, QStringLiteral("バックアップのデータに INSERT 以外の文があります。"));
            engine.execute(s);
        }
        engine.commit();
    } catch (...) {
        engine.rollback();
        throw;
    }
}

bool take(const QString &out, const ProgressFn &progress)
{
    const QDateTime at = QDateTime::currentDateTime();
    QTemporaryDir scratch(QFileInfo(out).absolutePath() + QStringLiteral("/.tillora-backup-XXXXXX"));
    if (!scratch.isValid())
        throw fileError(QStringLiteral("フォルダ '%1' にバックアップを書き込めません。").arg(QFileInfo(out).absolutePath()));
    QSaveFile file(out);
    if (!file.open(QIODevice::WriteOnly))
        throw fileError(QStringLiteral("ファイル '%1' を作成できません。").arg(out));
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    TarWriter tar(file, at);

    // Each database is copied first, then the description is written ahead
    // of the copies.
    QStringList lines{QString::fromLatin1(kFirstLine), QStringLiteral("version=") + QStringLiteral(TILLORA_VERSION),
                      QStringLiteral("taken=") + at.toString(Qt::ISODate)};
    QVector<QPair<QString, QString>> files; // entry, copy
    const QDir images(AppPaths::root() + QStringLiteral("/images"));
    const QStringList pictures = images.entryList(QDir::Files, QDir::Name);
    const qint64 total = std::size(kKept) + pictures.size();
    qint64 done = 0;
    for (const Kept &p : kKept) {
        const QString what = QStringLiteral("%1 を複写しています").arg(p.fileEntry.section(QLatin1Char('/'), -1));
        if (!goOn(progress, done++, total, what))
            return false;
        DbObject *object = openObject(p.kind);
        const ConnectionSpec target = object->engine()->target();
        std::unique_ptr<Engine> own = Engine::open(target);
        if (target.kind == EngineKind::Sqlite) {
            const QString copy = scratch.filePath(QString::number(int(p.kind)));
            own->executeNative(QStringLiteral("VACUUM INTO ?"), {copy});
            files << qMakePair(p.fileEntry, copy);
            lines << QStringLiteral("part=") + p.fileEntry;
        } else {
            bool stopped = false;
            const QString dump = dumpRows(*own, p.kind, [&](qint64 d, qint64 t, const QString &) {
                stopped = !goOn(progress, done - 1, total, QStringLiteral("%1 (%2/%3)").arg(what).arg(d + 1).arg(t));
                return !stopped;
            });
            if (stopped)
                return false;
            const QString copy = scratch.filePath(QString::number(int(p.kind)));
            QFile f(copy);
            if (!f.open(QIODevice::WriteOnly) || f.write(dump.toUtf8()) < 0)
                throw fileError(QStringLiteral("ファイル '%1' を作成できません。").arg(copy));
            files << qMakePair(p.sqlEntry, copy);
            lines << QStringLiteral("part=") + p.sqlEntry;
        }
    }
    for (const QString &name : pictures) {
        if (!goOn(progress, done++, total, QStringLiteral("画像 %1").arg(name)))
            return false;
        if (name.toUtf8().size() > 90)
            continue; // beyond what a tar header names; a shop logo is never so long
        files << qMakePair(QStringLiteral("images/") + name, images.filePath(name));
        lines << QStringLiteral("part=images/") + name;
    }
    tar.addData(QString::fromLatin1(kManifest), (lines.join(QLatin1Char('\n')) + QLatin1Char('\n')).toUtf8());
    for (const auto &f : files)
        tar.addFile(f.first, f.second);
    tar.finish();
    if (!goOn(progress, total, total, QStringLiteral("書き込んでいます")))
        return false;
    if (!file.commit())
        throw fileError(QStringLiteral("ファイル '%1' を書き込めません。（%2）").arg(out, file.errorString()));
    return true;
}

Contents describe(const QString &file)
{
    Contents c;
    bool first = true;
    readTar(file, [&](const QString &name, QIODevice &in, qint64 size) {
        if (first) {
            first = false;
            const QStringList lines = QString::fromUtf8(in.read(qMin<qint64>(size, 1 << 16))).split(QLatin1Char('\n'));
            if (name != QLatin1String(kManifest) || lines.value(0) != QLatin1String(kFirstLine))
                throw AppError(75, QStringLiteral("'%1' は Tillora のバックアップファイルではありません。").arg(file));
            for (const QString &l : lines) {
                if (l.startsWith(QLatin1String("version=")))
                    c.version = l.mid(8);
                else if (l.startsWith(QLatin1String("taken=")))
                    c.taken = QDateTime::fromString(l.mid(6), Qt::ISODate);
            }
            return true;
        }
        c.parts << name;
        return true;
    });
    if (first)
        throw AppError(75, QStringLiteral("'%1' は Tillora のバックアップファイルではありません。").arg(file));
    return c;
}

QStringList restore(const QString &file, const QString &root, const ProgressFn &progress)
{
    const Contents contents = describe(file);
    CloseAllDatabases();
    AppPaths::setRoot(root);
    const QString suffix = stamp(QDateTime::currentDateTime());
    QTemporaryDir scratch(root + QStringLiteral("/.tillora-restore-XXXXXX"));
    if (!scratch.isValid())
        throw fileError(QStringLiteral("フォルダ '%1' に書き込めません。").arg(root));

    // Everything is unpacked first: a damaged file replaces nothing.
    QHash<QString, QString> unpacked;
    int n = 0;
    readTar(file, [&](const QString &name, QIODevice &in, qint64 size) {
        if (name == QLatin1String(kManifest))
            return true;
        if (name.contains(QLatin1String("..")) || name.startsWith(QLatin1Char('/')))
            throw AppError(75, QStringLiteral("'%1' に不正な名前 '%2' があります。").arg(file, name));
        const QString to = scratch.filePath(QString::number(n++));
        QFile f(to);
        if (!f.open(QIODevice::WriteOnly))
            throw fileError(QStringLiteral("ファイル '%1' を作成できません。").arg(to));
        for (qint64 left = size; left > 0;) {
            const QByteArray chunk = in.read(qMin<qint64>(left, 1 << 20));
            if (chunk.isEmpty() || f.write(chunk) != chunk.size())
                throw fileError(QStringLiteral("'%1' を展開できません。").arg(file));
            left -= chunk.size();
        }
        unpacked.insert(name, to);
        return true;
    });
    if (!unpacked.contains(QStringLiteral("ini/INFO.MDB")))
        throw AppError(75, QStringLiteral("'%1' には設定ファイルがありません。").arg(file));

    QStringList lines;
    const auto report = [&](const QString &what, const QString &aside) {
        lines << (aside.isEmpty() ? QStringLiteral("復元: %1").arg(what)
                                  : QStringLiteral("復元: %1（元のものは %2）").arg(what, aside));
    };
    qint64 done = 0;
    const qint64 total = std::size(kKept) + 1;
    for (const Kept &p : kKept) {
        goOn(progress, done++, total, p.fileEntry);
        if (unpacked.contains(p.fileEntry)) {
            // Where the restored settings keep the file (the settings and
            // the look-up lists always in the tree).
            QString target = Setup::fileOf(root, p.kind);
            if (p.kind == DbKind::Data || p.kind == DbKind::Master) {
                OpenIni();
                const QString key = p.kind == DbKind::Data ? QStringLiteral("DB") : QStringLiteral("MST");
                const auto setting = [](const QString &k) {
                    const Value v = gINI->GetCtrl(k);
                    return hasValue(v) ? v.toText() : QString();
                };
                const QString name = setting(key + QStringLiteral("_NAME"));
                if (setting(key + QStringLiteral("_TYPE")) == QLatin1String("2") && name.size() >= 2)
                    target = AppPaths::resolve(name);
                CloseAllDatabases();
            }
            const QString aside = putAside(target, suffix);
            place(unpacked.value(p.fileEntry), target);
            report(target, aside);
        } else if (unpacked.contains(p.sqlEntry)) {
            QFile f(unpacked.value(p.sqlEntry));
            if (!f.open(QIODevice::ReadOnly))
                throw fileError(QStringLiteral("'%1' を展開できません。").arg(file));
            const QString dump = QString::fromUtf8(f.readAll());
            OpenIni();
            p.kind == DbKind::Data ? OpenDb() : OpenMst();
            Engine &engine = *(p.kind == DbKind::Data ? gDB->engine() : gMST->engine());
            Setup::createTables(engine, p.kind);
            // The rows replaced are kept as a dump of their own.
            const QString aside = QFileInfo(Setup::fileOf(root, DbKind::Data)).absolutePath() +
                                  QStringLiteral("/%1-%2.sql").arg(engine.target().database, suffix);
            QFile keep(aside);
            if (!keep.open(QIODevice::WriteOnly) || keep.write(dumpRows(engine, p.kind).toUtf8()) < 0)
                throw fileError(QStringLiteral("ファイル '%1' を作成できません。").arg(aside));
            keep.close();
            loadRows(engine, p.kind, dump);
            report(QStringLiteral("%1:%2/%3").arg(engine.target().host).arg(engine.target().port).arg(engine.target().database),
                   aside);
            CloseAllDatabases();
        }
    }
    goOn(progress, done++, total, QStringLiteral("images"));
    for (auto it = unpacked.cbegin(); it != unpacked.cend(); ++it) {
        if (!it.key().startsWith(QLatin1String("images/")))
            continue;
        const QString target = QDir(root).filePath(it.key());
        const QString aside = putAside(target, suffix);
        place(it.value(), target);
        report(target, aside);
    }
    return lines;
}

}
