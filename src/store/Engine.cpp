#include "store/Engine.h"

#include "store/JetSql.h"
#include "store/SqliteReads.h"
#include "base/AppError.h"
#include "base/Helpers.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlField>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QStorageInfo>

#include <atomic>
#include <cmath>
#include <utility>
#include <limits>

namespace {

std::atomic<int> gConnectionCounter{0};

// The session of a server connection, set again whenever it is opened:
// backslashes in text are data, as in the file engine; strict typing.
// Transactions run serializable (what a save reads to decide is locked until
// it ends); a read outside a transaction stays a plain consistent read.
const char *const kMysqlSession[] = {"SET SESSION sql_mode='STRICT_ALL_TABLES,NO_BACKSLASH_ESCAPES,"
                                     "NO_ENGINE_SUBSTITUTION,ERROR_FOR_DIVISION_BY_ZERO'",
                                     "SET SESSION TRANSACTION ISOLATION LEVEL SERIALIZABLE"};

std::function<void(const Engine &, const QString &)> gReadObserver;

// Statements sent to the engines (each a round trip to a server), by kind.
std::atomic<quint64> gStatementsSent[2] = {{0}, {0}};

long nativeCode(const QSqlError &err)
{
    bool ok = false;
    const long n = err.nativeErrorCode().toLong(&ok);
    return ok ? n : 0;
}

// The engine's own words, for the brackets.
QString engineWords(const QSqlError &err)
{
    for (const QString &t : {err.databaseText(), err.driverText(), err.text()})
        if (!t.trimmed().isEmpty())
            return t.trimmed();
    return QString();
}

bool readOnlyByBits(const QFileInfo &fi)
{
    return !(fi.permissions() & QFileDevice::WriteOwner) || !fi.isWritable();
}

// Column types of what a query returns, from the table definitions: by the
// column's own table, else by a table of the statement that has a column of
// that name, else by the column an aggregate is taken over.
struct TypeResolver {
    JetSql::Sources src;

    const ColumnDef *inSources(const QString &name, const QString &qualifier = QString()) const
    {
        if (!qualifier.isEmpty()) {
            const QString real = src.alias.value(qualifier.toUpper(), qualifier);
            return Schema::column(real, name);
        }
        for (const QString &t : src.tables)
            if (const ColumnDef *c = Schema::column(t, name))
                return c;
        return nullptr;
    }

    bool resolve(const QString &name, const QString &table, ColType &type) const
    {
        if (!table.isEmpty()) {
            const QString real = src.alias.value(table.toUpper(), table);
            if (const ColumnDef *c = Schema::column(real, name)) {
                type = c->type;
                return true;
            }
        }
        if (const ColumnDef *c = inSources(name)) {
            type = c->type;
            return true;
        }
        static const QRegularExpression agg(
            QStringLiteral("^\\s*(MAX|MIN|SUM|AVG|COUNT)\\s*\\(\\s*(?:DISTINCT\\s+)?(?:([A-Za-z_][\\w]*)\\.)?"
                           "([A-Za-z_][\\w]*|\\*)\\s*\\)\\s*$"),
            QRegularExpression::CaseInsensitiveOption);
        const auto m = agg.match(name);
        if (!m.hasMatch())
            return false;
        const QString fn = m.captured(1).toUpper();
        if (fn == QLatin1String("COUNT")) {
            type = ColType::Int32;
            return true;
        }
        if (fn == QLatin1String("AVG")) {
            type = ColType::Double;
            return true;
        }
        const ColumnDef *c = inSources(m.captured(3), m.captured(2));
        if (!c)
            return false;
        type = c->type;
        if (fn == QLatin1String("SUM") && type != ColType::Currency)
            type = ColType::Double;
        return true;
    }
};

// A cell of a file engine's read that needs no conversion rules: null,
// whole numbers, stored dates and texts (rows carry many), read from the
// library at once. False for any other, which goes the driver's way.
bool quickCell(const SqliteReads::Read &r, int i, const ResultColumn &c, Value &out)
{
    using S = SqliteReads::Read::Storage;
    const S s = r.storage(i);
    if (s == S::Null) {
        out = Value::null();
        return true;
    }
    if (!c.typed)
        return false;
    if (s == S::Integer) {
        const qint64 n = r.integer(i);
        switch (c.type) {
        case ColType::Bool: out = Value(n != 0); return true;
        case ColType::Int32:
            if (n < std::numeric_limits<qint32>::min() || n > std::numeric_limits<qint32>::max())
                return false; // the driver's way, to fail as it fails
            out = Value::int32(n);
            return true;
        default: return false;
        }
    }
    if (s != S::Text)
        return false;
    if (c.type == ColType::Text || c.type == ColType::Memo) {
        out = Value(QString::fromUtf8(r.text(i)));
        return true;
    }
    qint64 secs;
    if (c.type == ColType::Date && DateUtil::parseSqlSeconds(r.text(i), secs)) {
        out = Value::dateAt(secs);
        return true;
    }
    return false;
}

Value fromUntyped(const QVariant &v, EngineKind kind)
{
    if (v.isNull())
        return Value::null();
    switch (v.typeId()) {
    case QMetaType::Bool: return Value(v.toBool());
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::UChar: {
        const qlonglong i = v.toLongLong();
        if (i >= std::numeric_limits<qint32>::min() && i <= std::numeric_limits<qint32>::max())
            return Value(int(i));
        return Value(double(i));
    }
    case QMetaType::Double:
    case QMetaType::Float: return Value(v.toDouble());
    case QMetaType::QDateTime: {
        const QDateTime dt = v.toDateTime();
        return Value(QDateTime(dt.date(), dt.time(), Qt::UTC));
    }
    case QMetaType::QDate: return Value(DateUtil::fromDate(v.toDate()));
    case QMetaType::QByteArray: return Value(QString::fromUtf8(v.toByteArray()));
    default: break;
    }
    const QString s = v.toString();
    if (kind == EngineKind::Sqlite) {
        QDateTime dt;
        if (DateUtil::parseSql(s, dt))
            return Value(dt);
    }
    return Value(s);
}

class SqliteEngine final : public Engine {
public:
    SqliteEngine(const ConnectionSpec &conn) : Engine(EngineKind::Sqlite, conn) {}
    QString translate(const QString &jet) const override { return JetSql::translate(jet, JetSql::Dialect::Sqlite); }
};

class MysqlEngine final : public Engine {
public:
    MysqlEngine(const ConnectionSpec &conn) : Engine(EngineKind::Mysql, conn) {}
    QString translate(const QString &jet) const override { return JetSql::translate(jet, JetSql::Dialect::Mysql); }
};

void checkSqliteFile(const QString &path)
{
    if (path.isEmpty())
        throw AppError(VbErr::FileNotFound, QStringLiteral("データベースファイルが指定されていません。"));
    QFileInfo fi(path);
    if (!fi.exists() || !fi.isFile())
        throw AppError(VbErr::FileNotFound, QStringLiteral("ファイル '%1' が見つかりません。").arg(path));
    if (isJetFile(path))
        throw AppError(VbErr::OldFileFormat,
                       QStringLiteral("'%1' は旧形式（MDB）のデータベースファイルです。"
                                      "このプログラムは SQLite 形式のファイルを使います。"
                                      "tillora-admin init で新しいファイルを作成してください。")
                           .arg(path));
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        throw AppError(VbErr::FileNotFound, QStringLiteral("ファイル '%1' を開けません。").arg(path));
    const QByteArray head = f.read(16);
    if (!head.isEmpty() && head != QByteArray("SQLite format 3\0", 16))
        throw AppError(VbErr::OldFileFormat,
                       QStringLiteral("'%1' はデータベースファイルではありません。").arg(path));
}

// A database of that kind has all its tables; an empty file or another
// program's database has not.
void checkTables(Engine &e, DbKind kind)
{
    QStringList have;
    for (const QString &t : e.tableNames())
        have << t.toUpper();
    for (const TableDef *t : Schema::tablesOf(kind)) {
        if (have.contains(t->name.toUpper()))
            continue;
        const ConnectionSpec &c = e.target();
        const QString what = c.kind == EngineKind::Sqlite
                                 ? QStringLiteral("ファイル '%1'").arg(QDir::toNativeSeparators(c.file))
                                 : QStringLiteral("サーバーのデータベース '%1'").arg(c.database);
        throw AppError(VbErr::OldFileFormat,
                       QStringLiteral("%1 はこのプログラムのデータベースではありません（表 %2 がありません）。")
                           .arg(what, t->name));
    }
}

} // namespace

EngineFault classifyEngineError(EngineKind kind, long code, const QString &engineText)
{
    using K = EngineFault::Kind;
    const QString low = engineText.toLower();
    K k = K::Other;
    if (kind == EngineKind::Sqlite) {
        // Extended codes: the primary code is the low byte.
        switch (code & 0xFF) {
        case 1:
            k = low.contains(QLatin1String("no such table"))   ? K::NoTable
                : low.contains(QLatin1String("no such column")) || low.contains(QLatin1String("has no column"))
                    ? K::NoColumn
                    : K::Statement;
            break;
        case 5:
        case 6: k = K::Busy; break;
        case 8: k = K::ReadOnly; break;
        case 10: k = K::IoError; break;
        case 11:
        case 26: k = K::Corrupt; break;
        case 13: k = K::DiskFull; break;
        case 14: k = K::CantOpen; break;
        case 18: k = K::TooLong; break;
        case 19:
            if (code == 1555 || code == 2067)
                k = K::Duplicate;
            else if (code == 3091)
                k = K::TypeMismatch;
            else if (low.contains(QLatin1String("range_")))
                k = K::OutOfRange;
            else if (low.contains(QLatin1String("length(")))
                k = K::TooLong;
            else if (low.contains(QLatin1String(" glob ")))
                k = K::TypeMismatch; // a date column's text that is no date
            else
                k = K::Constraint;
            break;
        case 20: k = K::TypeMismatch; break;
        case 23: k = K::NoRights; break;
        default: break;
        }
    } else {
        static const QHash<long, K> byCode = {
            {1146, K::NoTable},      {1109, K::NoTable},      {1054, K::NoColumn},     {1064, K::Statement},
            {1149, K::Statement},    {1062, K::Duplicate},    {1586, K::Duplicate},    {1048, K::Constraint},
            {1364, K::Constraint},   {1451, K::Constraint},   {1452, K::Constraint},   {4025, K::Constraint},
            {3819, K::Constraint},   {1366, K::TypeMismatch}, {1292, K::TypeMismatch}, {1265, K::TypeMismatch},
            {1367, K::TypeMismatch}, {1406, K::TooLong},      {1264, K::OutOfRange},   {1690, K::OutOfRange},
            {1365, K::DivByZero},    {1205, K::Busy},         {1213, K::Busy},         {1099, K::Busy},
            {1100, K::Busy},         {1036, K::ReadOnly},     {1290, K::ReadOnly},     {1792, K::ReadOnly},
            {1836, K::ReadOnly},     {1021, K::DiskFull},     {1114, K::DiskFull},     {2006, K::Lost},
            {2013, K::Lost},         {2055, K::Lost},         {1927, K::Lost},         {4031, K::Lost},
            {1053, K::Lost},         {1152, K::Lost},         {1158, K::Lost},         {1159, K::Lost},
            {1160, K::Lost},         {1161, K::Lost},         {2002, K::Unreachable},  {2003, K::Unreachable},
            {2005, K::Unreachable},  {1040, K::Unreachable},  {1129, K::Unreachable},  {1045, K::AccessDenied},
            {1044, K::AccessDenied}, {1698, K::AccessDenied}, {1130, K::AccessDenied}, {1142, K::NoRights},
            {1143, K::NoRights},     {1227, K::NoRights},     {1370, K::NoRights},     {1049, K::NoDatabase},
        };
        k = byCode.value(code, K::Other);
        if (k == K::Constraint && low.contains(QLatin1String("range_")))
            k = K::OutOfRange;
        // the storage engine's or the file system's "No space left on device"
        if ((code == 1030 || code == 3) && low.contains(QLatin1String("no space")))
            k = K::DiskFull;
    }

    EngineFault f;
    f.kind = k;
    f.number = code;
    switch (k) {
    case K::Statement: f.text = QStringLiteral("データベースの命令を実行できませんでした。"); break;
    case K::NoTable:
        f.text = QStringLiteral("データベースに必要な表がありません。データベースの設定を確認してください。");
        break;
    case K::NoColumn:
        f.text = QStringLiteral("データベースの表に必要な列がありません。データベースの設定を確認してください。");
        break;
    case K::Duplicate: f.text = QStringLiteral("同じキーのデータが既に登録されています。"); break;
    case K::Constraint: f.text = QStringLiteral("データベースの制約に合わないため書き込めません。"); break;
    case K::TypeMismatch: f.number = VbErr::TypeMismatch; break;
    case K::TooLong: f.number = VbErr::FieldTooSmall; break;
    case K::OutOfRange: f.number = VbErr::Overflow; break;
    case K::DivByZero: f.number = VbErr::DivByZero; break;
    case K::Busy:
        f.text = QStringLiteral("データベースが他の処理で使用中です。しばらくしてからもう一度操作してください。");
        break;
    case K::ReadOnly: f.text = QStringLiteral("データを書き込めません。データベースが読み取り専用です。"); break;
    case K::DiskFull: f.text = QStringLiteral("データを書き込めません。ディスクの空き容量が足りません。"); break;
    case K::IoError: f.text = QStringLiteral("データベースの読み書きに失敗しました。"); break;
    case K::Corrupt:
        f.text = QStringLiteral("データベースファイルが壊れているか、データベースのファイルではありません。");
        break;
    case K::CantOpen: f.text = QStringLiteral("データベースファイルを開けません。"); break;
    case K::Lost: f.text = QStringLiteral("サーバーとの接続が切れました。もう一度操作してください。"); break;
    case K::Unreachable:
        f.text = QStringLiteral("サーバーに接続できません。サーバーが動いているか、接続設定とネットワークを確認してください。");
        break;
    case K::AccessDenied:
        f.text = QStringLiteral("サーバーへの接続が拒否されました。ユーザー名とパスワードを確認してください。");
        break;
    case K::NoRights: f.text = QStringLiteral("この操作を行う権限がありません。"); break;
    case K::NoDatabase:
        f.text = QStringLiteral("サーバーに指定のデータベースがありません。接続設定を確認してください。");
        break;
    case K::Other: f.text = QStringLiteral("データベースでエラーが発生しました。"); break;
    }
    if (f.text.isEmpty())
        f.text = standardErrorText(f.number);
    if (f.number == 0)
        f.number = -2147467259; // the platform's "unspecified error"
    return f;
}

QString sqliteReadOnlyReason(const QString &file)
{
    const QFileInfo fi(file);
    if (!fi.exists())
        return QString();
    if (readOnlyByBits(fi))
        return QStringLiteral("ファイル '%1' が読み取り専用です。").arg(QDir::cleanPath(fi.absoluteFilePath()));
    const QFileInfo dir(QDir::cleanPath(fi.absolutePath()));
    if (readOnlyByBits(dir))
        return QStringLiteral("フォルダ '%1' が読み取り専用です（データベースの作業用ファイルをそこに作れません）。")
            .arg(dir.absoluteFilePath());
    const QStorageInfo disk(fi.absolutePath());
    if (disk.isValid() && disk.isReadOnly())
        return QStringLiteral("ディスク '%1' が読み取り専用です。").arg(disk.rootPath());
    return QString();
}

bool isJetFile(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = f.read(20);
    return head.size() >= 19 &&
           (head.mid(4, 15) == QByteArray("Standard Jet DB") || head.mid(4, 15) == QByteArray("Standard ACE DB"));
}

int ResultSet::columnIndex(const QString &name) const
{
    for (int i = 0; i < columns.size(); ++i)
        if (columns[i].name.compare(name, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

Engine::Engine(EngineKind kind, const ConnectionSpec &conn)
    : mKind(kind), mSpec(conn), mSerial(++gConnectionCounter), mConnName(QStringLiteral("tillora_%1").arg(mSerial))
{
}

Engine::~Engine()
{
    mReads.reset(); // before the connection goes
    {
        QSqlDatabase d = QSqlDatabase::database(mConnName, false);
        if (d.isOpen()) {
            // Statistics for the planner, where this connection's queries
            // show they are wanted: cheap, and the plans keep up with the data.
            if (mKind == EngineKind::Sqlite)
                QSqlQuery(d).exec(QStringLiteral("PRAGMA optimize"));
            d.close();
        }
    }
    QSqlDatabase::removeDatabase(mConnName);
}

QSqlDatabase Engine::db() const { return QSqlDatabase::database(mConnName, false); }

std::unique_ptr<Engine> Engine::open(const ConnectionSpec &conn) { return openAs(conn, nullptr); }

std::unique_ptr<Engine> Engine::open(const ConnectionSpec &conn, DbKind kind) { return openAs(conn, &kind); }

std::unique_ptr<Engine> Engine::openAs(const ConnectionSpec &conn, const DbKind *kind)
{
    std::unique_ptr<Engine> e;
    if (conn.kind == EngineKind::Sqlite) {
        checkSqliteFile(conn.file);
        e.reset(new SqliteEngine(conn));
        QSqlDatabase d = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), e->mConnName);
        d.setDatabaseName(conn.file);
        // A file its owner made read-only is only read, whoever runs the program.
        QString options = QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000");
        if (!sqliteReadOnlyReason(conn.file).isEmpty())
            options += QStringLiteral(";QSQLITE_OPEN_READONLY");
        d.setConnectOptions(options);
        e->connectNow();
        if (kind)
            checkTables(*e, *kind);
        // A write-ahead journal: each commit is one synced append instead of
        // several syncs, and readers don't wait for writers. Still synced in
        // full, so a saved day survives a power cut.
        QSqlQuery pragma(d);
        pragma.exec(QStringLiteral("PRAGMA journal_mode=WAL"));
        pragma.exec(QStringLiteral("PRAGMA synchronous=FULL"));
    } else {
        if (conn.host.isEmpty())
            throw AppError(3146, QStringLiteral("接続先のサーバーが指定されていません。"));
        e.reset(new MysqlEngine(conn));
        QSqlDatabase d = QSqlDatabase::addDatabase(QStringLiteral("QMYSQL"), e->mConnName);
        d.setHostName(conn.host);
        d.setPort(conn.port);
        d.setDatabaseName(conn.database);
        d.setUserName(conn.user);
        d.setPassword(conn.password);
        // Rows touched count the rows matched, as the file engine counts them.
        // A server out of reach is told within seconds, and a connection that
        // stops answering as well.
        d.setConnectOptions(QStringLiteral("MYSQL_OPT_CONNECT_TIMEOUT=5;MYSQL_OPT_READ_TIMEOUT=120;"
                                           "MYSQL_OPT_WRITE_TIMEOUT=120;CLIENT_FOUND_ROWS=1"));
        e->connectNow();
        if (kind)
            checkTables(*e, *kind);
    }
    return e;
}

void Engine::connectNow()
{
    QSqlDatabase d = db();
    if (!d.open())
        raiseSqlError(d.lastError());
    if (mKind == EngineKind::Mysql) {
        for (const char *statement : kMysqlSession) {
            QSqlQuery q(d);
            ++gStatementsSent[int(mKind)];
            if (!q.exec(QString::fromLatin1(statement)))
                raiseSqlError(q.lastError());
        }
    }
}

void Engine::reopenIfLost()
{
    if (!mLost)
        return;
    db().close();
    connectNow(); // raises while the server is out of reach; tried again on the next statement
    mLost = false;
}

bool Engine::lostConnection(const QSqlError &err) const
{
    if (mKind != EngineKind::Mysql)
        return false;
    const EngineFault::Kind k = classifyEngineError(mKind, nativeCode(err), engineWords(err)).kind;
    return k == EngineFault::Lost || k == EngineFault::Unreachable;
}

QString Engine::readOnlyReason() const
{
    return mKind == EngineKind::Sqlite ? sqliteReadOnlyReason(mSpec.file) : QString();
}

std::unique_ptr<Engine> Engine::createSqliteFile(const QString &path)
{
    if (QFileInfo::exists(path))
        throw AppError(58, QStringLiteral("ファイル '%1' は既に存在します。").arg(path));
    ConnectionSpec conn;
    conn.kind = EngineKind::Sqlite;
    conn.file = path;
    std::unique_ptr<Engine> e(new SqliteEngine(conn));
    QSqlDatabase d = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), e->mConnName);
    d.setDatabaseName(path);
    if (!d.open())
        e->raiseSqlError(d.lastError());
    return e;
}

AppError engineError(EngineKind kind, const QSqlError &err, const QString &why)
{
    const long code = nativeCode(err);
    const QString words = engineWords(err);
    const EngineFault f = classifyEngineError(kind, code, words);
    QString text = f.text;
    if (!why.isEmpty() && f.kind == EngineFault::ReadOnly)
        text = QStringLiteral("データを書き込めません。") + why; // the reason in place of the engine's guess
    else if (f.kind == EngineFault::CantOpen || f.kind == EngineFault::IoError)
        text += why;
    const QString engine = kind == EngineKind::Sqlite ? QStringLiteral("SQLite") : QStringLiteral("MySQL");
    if (!words.isEmpty())
        text += code ? QStringLiteral("（%1 %2: %3）").arg(engine).arg(code).arg(words)
                     : QStringLiteral("（%1: %2）").arg(engine, words);
    return AppError(f.number, text);
}

void Engine::raiseSqlError(const QSqlError &err)
{
    if (lostConnection(err)) {
        // The server dropped the connection and any transaction with it.
        mLost = true;
        mDepth = 0;
        mDoomed = false;
    }
    throw engineError(mKind, err, readOnlyReason());
}

namespace {
// Translations kept per connection.
constexpr int kTranslatedKept = 2000;
} // namespace

const QString &Engine::translated(const QString &jet)
{
    auto it = mTranslated.constFind(jet);
    if (it != mTranslated.constEnd())
        return *it;
    if (mTranslated.size() >= kTranslatedKept)
        mTranslated.clear();
    return *mTranslated.insert(jet, translate(jet));
}

QVector<ResultColumn> Engine::describe(const QString &jet, const QStringList &names, const QStringList &tables) const
{
    TypeResolver resolver{JetSql::sources(jet)};
    QVector<ResultColumn> columns(names.size());
    for (int i = 0; i < names.size(); ++i) {
        ResultColumn &c = columns[i];
        c.name = names[i];
        const QString &table = tables[i];
        c.typed = resolver.resolve(c.name, table, c.type);
        if (!table.isEmpty()) {
            const QString real = resolver.src.alias.value(table.toUpper(), table);
            if (Schema::column(real, c.name))
                c.table = Schema::table(real)->name;
        }
    }
    return columns;
}

Value Engine::cellValue(const QVariant &v, const ResultColumn &c) const
{
    try {
        return c.typed ? fromStorage(v, c.type) : fromUntyped(v, mKind);
    } catch (const AppError &e) {
        // This cell only: the rest of the row and the list read on.
        return Value::unreadable(e.number());
    }
}

bool Engine::readRows(const QString &jet, const QString &sql, ResultSet &rs, QSqlError &failure)
{
    ++gStatementsSent[int(mKind)];
    if (gReadObserver)
        gReadObserver(*this, sql);
    if (mKind == EngineKind::Sqlite) {
        // The file engine keeps its reads prepared and reads their cells
        // with the library itself: a statement run again costs the engine's
        // work and little more.
        SqliteReads::Read *r = reads().prepare(sql, failure);
        if (!r)
            return false;
        // A read given up before its end holds no read of the file open.
        struct Reset {
            SqliteReads::Read *r;
            ~Reset() { r->reset(); }
        } reset{r};
        bool more = r->next(failure);
        if (failure.isValid())
            return false;
        // The columns as the program types them, worked out once for the
        // kept statement, and again when its table changed under it (looked
        // at once a run).
        r->columnsChanged();
        if (!r->described) {
            r->columns = describe(jet, r->names(), r->tables());
            r->described = true;
        }
        const QVector<ResultColumn> &cols = r->columns;
        for (; more; more = r->next(failure)) {
            QVector<Value> row(cols.size());
            for (int i = 0; i < cols.size(); ++i)
                if (!quickCell(*r, i, cols[i], row[i]))
                    row[i] = cellValue(r->cell(i), cols[i]);
            rs.rows.append(std::move(row));
        }
        if (failure.isValid())
            return false;
        rs.columns = cols;
        return true;
    }
    // A server gets the text: one round trip, where a prepared statement
    // would take two the first time.
    QSqlQuery q(db());
    q.setForwardOnly(true);
    q.setNumericalPrecisionPolicy(QSql::LowPrecisionDouble);
    if (!q.exec(sql)) {
        failure = q.lastError();
        return false;
    }
    const QSqlRecord rec = q.record();
    QStringList names, tables;
    for (int i = 0; i < rec.count(); ++i) {
        names.append(rec.field(i).name());
        tables.append(rec.field(i).tableName());
    }
    rs.columns = describe(jet, names, tables);
    const int n = rs.columns.size();
    while (q.next()) {
        QVector<Value> row(n);
        for (int i = 0; i < n; ++i)
            row[i] = cellValue(q.value(i), rs.columns[i]);
        rs.rows.append(std::move(row));
    }
    if (q.lastError().isValid()) {
        failure = q.lastError();
        return false;
    }
    return true;
}

ResultSet Engine::select(const QString &jet)
{
    const QString sql = translated(jet);
    for (int attempt = 0;; ++attempt) {
        reopenIfLost();
        ResultSet rs;
        QSqlError failure;
        if (readRows(jet, sql, rs, failure))
            return rs;
        // A read writes nothing: on a lost connection it is sent once more.
        if (attempt == 0 && mDepth == 0 && lostConnection(failure)) {
            mLost = true;
            continue;
        }
        raiseSqlError(failure);
    }
}

qint64 Engine::execute(const QString &jet)
{
    return executeNative(translate(jet));
}

namespace {

// A value written into a server statement as its literal; false for a kind
// of value that is not written so (it goes as a bound value instead). Text is
// quoted with its quotes doubled: the session takes backslashes as data.
bool serverLiteral(const QVariant &v, QString &out)
{
    if (v.isNull()) {
        out = QStringLiteral("NULL");
        return true;
    }
    switch (v.typeId()) {
    case QMetaType::LongLong:
    case QMetaType::Int:
        out = QString::number(v.toLongLong());
        return true;
    case QMetaType::Double: {
        const double d = v.toDouble();
        if (!std::isfinite(d))
            return false;
        out = QString::number(d, 'g', 17);
        return true;
    }
    case QMetaType::QString: {
        QString t = v.toString();
        t.replace(QLatin1Char('\''), QStringLiteral("''"));
        out = QLatin1Char('\'') + t + QLatin1Char('\'');
        return true;
    }
    default:
        return false;
    }
}

// The statement with its markers replaced by the values' literals (markers
// inside quoted text or names are left alone); empty when a value has no
// literal or the markers and values don't pair.
QString withLiterals(const QString &sql, const QVector<QVariant> &params)
{
    QString out;
    out.reserve(sql.size() + params.size() * 8);
    int next = 0;
    QChar quote;
    for (const QChar c : sql) {
        if (!quote.isNull()) {
            if (c == quote)
                quote = QChar();
            out += c;
        } else if (c == QLatin1Char('\'') || c == QLatin1Char('`') || c == QLatin1Char('"')) {
            quote = c;
            out += c;
        } else if (c == QLatin1Char('?')) {
            QString literal;
            if (next >= params.size() || !serverLiteral(params[next++], literal))
                return QString();
            out += literal;
        } else {
            out += c;
        }
    }
    return next == params.size() ? out : QString();
}

} // namespace

qint64 Engine::executeNative(const QString &sql, const QVector<QVariant> &params)
{
    reopenIfLost();
    QSqlQuery q(db());
    q.setForwardOnly(true);
    ++gStatementsSent[int(mKind)];
    ++mWrites;
    // On a server a statement with bound values costs two round trips (its
    // preparation, then its run); with the values written in, one.
    const QString written = mKind == EngineKind::Mysql && !params.isEmpty() ? withLiterals(sql, params) : QString();
    bool ok;
    if (!written.isEmpty()) {
        ok = q.exec(written);
    } else if (params.isEmpty()) {
        ok = q.exec(sql);
    } else {
        ok = q.prepare(sql);
        if (ok) {
            for (int i = 0; i < params.size(); ++i)
                q.bindValue(i, params[i]);
            ok = q.exec();
        }
    }
    if (!ok)
        raiseSqlError(q.lastError());
    return q.numRowsAffected();
}

QVariant Engine::toStorage(const Value &v, const ColumnDef &col) const
{
    if (!hasValue(v))
        return QVariant();
    v.checkReadable();
    switch (col.type) {
    case ColType::Bool: return QVariant(qlonglong(v.toBool() ? -1 : 0));
    case ColType::Byte: return QVariant(qlonglong(v.toByte()));
    case ColType::Int16: return QVariant(qlonglong(v.toInt()));
    case ColType::Int32: return QVariant(qlonglong(v.toLong()));
    case ColType::Currency: {
        const Currency c = v.toCurrency();
        if (mKind == EngineKind::Mysql)
            return QVariant(c.toString());
        return QVariant(c.toDouble());
    }
    case ColType::Single: return QVariant(double(v.toSingle()));
    case ColType::Double: return QVariant(v.toDouble());
    case ColType::Date: return QVariant(DateUtil::sqlText(v.toDate()));
    case ColType::Text: {
        const QString s = v.toText();
        if (col.size > 0 && s.size() > col.size && charCount(s) > col.size)
            throw AppError(VbErr::FieldTooSmall,
                           QStringLiteral("フィールド '%1' に入る文字数（%2）を超えています。")
                               .arg(col.name)
                               .arg(col.size));
        return QVariant(s);
    }
    case ColType::Memo: return QVariant(v.toText());
    }
    return QVariant();
}

Value Engine::fromStorage(const QVariant &v, ColType type) const
{
    if (v.isNull())
        return Value::null();
    switch (type) {
    case ColType::Bool: return Value(v.toLongLong() != 0);
    case ColType::Byte: return Value::byte(int(v.toLongLong()));
    case ColType::Int16: return Value::int16(int(v.toLongLong()));
    case ColType::Int32:
        if (v.typeId() == QMetaType::Double)
            return Value(v.toDouble()); // an aggregate beyond whole numbers
        return Value::int32(v.toLongLong());
    case ColType::Currency: return Value(Currency::fromDouble(v.toDouble()));
    case ColType::Single: return Value::single(v.toFloat());
    case ColType::Double: return Value(v.toDouble());
    case ColType::Date: {
        if (v.typeId() == QMetaType::QDateTime) {
            const QDateTime dt = v.toDateTime();
            return Value(QDateTime(dt.date(), dt.time(), Qt::UTC));
        }
        if (v.typeId() == QMetaType::QDate)
            return Value(DateUtil::fromDate(v.toDate()));
        const QString s = v.toString();
        QDateTime dt;
        if (DateUtil::parseSql(s, dt) || DateUtil::parse(s, dt))
            return Value(dt);
        return Value(s);
    }
    case ColType::Text:
    case ColType::Memo:
        if (v.typeId() == QMetaType::QByteArray)
            return Value(QString::fromUtf8(v.toByteArray()));
        return Value(v.toString());
    }
    return Value(v.toString());
}

void Engine::begin()
{
    if (mDepth > 0) {
        ++mDepth;
        return;
    }
    for (int attempt = 0;; ++attempt) {
        try {
            if (mKind == EngineKind::Sqlite) {
                // The save holds the write lock from its first statement.
                executeNative(QStringLiteral("BEGIN IMMEDIATE"));
            } else {
                // The session runs its transactions serializable.
                reopenIfLost();
                QSqlDatabase d = db();
                ++gStatementsSent[int(mKind)];
                if (!d.transaction())
                    raiseSqlError(d.lastError());
            }
            break;
        } catch (const AppError &) {
            // Nothing is written yet: a lost connection is opened again at once.
            if (attempt == 0 && mLost)
                continue;
            throw;
        }
    }
    mDepth = 1;
    mDoomed = false;
}

void Engine::commit()
{
    if (mDepth > 1) {
        --mDepth;
        return;
    }
    if (mLost) {
        mDepth = 0;
        mDoomed = false;
        throw AppError(2013, QStringLiteral("サーバーとの接続が切れました。もう一度操作してください。"));
    }
    if (mDepth == 1 && mDoomed) {
        rollback();
        throw AppError(VbErr::InvalidCall, QStringLiteral("処理の途中で失敗したため、変更は取り消されました。"));
    }
    mDepth = 0;
    QSqlDatabase d = db();
    ++gStatementsSent[int(mKind)];
    if (!d.commit()) {
        const QSqlError err = d.lastError();
        d.rollback(); // never left open after a failed commit
        raiseSqlError(err);
    }
}

void Engine::rollback()
{
    if (mDepth > 1) {
        --mDepth;
        mDoomed = true;
        return;
    }
    ++mWrites; // what was read inside it may be gone
    mDepth = 0;
    mDoomed = false;
    // A lost connection took its transaction with it.
    if (mLost)
        return;
    QSqlDatabase d = db();
    ++gStatementsSent[int(mKind)];
    if (!d.rollback()) {
        if (!lostConnection(d.lastError()))
            raiseSqlError(d.lastError());
        mLost = true;
    }
}

QStringList Engine::tableNames() const { return db().tables(); }

SqliteReads &Engine::reads()
{
    if (!mReads)
        mReads = std::make_unique<SqliteReads>(db());
    return *mReads;
}

Engine::ChangeMark Engine::changeMark()
{
    static std::atomic<qint64> never{0};
    ChangeMark m;
    m.connection = mSerial;
    m.writes = mWrites;
    if (mKind != EngineKind::Sqlite) {
        m.others = --never;
        return m;
    }
    QSqlError failure;
    SqliteReads::Read *r = reads().prepare(QStringLiteral("PRAGMA data_version"), failure);
    if (r && r->next(failure)) {
        m.others = r->integer(0);
        r->reset();
    } else {
        m.others = --never; // unknown: as changed
    }
    return m;
}

void Engine::setReadObserver(std::function<void(const Engine &, const QString &)> observer)
{
    gReadObserver = std::move(observer);
}

quint64 Engine::statementsSent(EngineKind kind) { return gStatementsSent[int(kind)].load(); }
