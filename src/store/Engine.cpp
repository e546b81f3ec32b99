#include "store/Engine.h"

#include "store/JetSql.h"
#include "base/AppError.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlField>
#include <QSqlQuery>
#include <QSqlRecord>

#include <atomic>
#include <limits>

namespace {

std::atomic<int> gConnectionCounter{0};

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

} // namespace

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
    : mKind(kind), mSpec(conn), mConnName(QStringLiteral("tillora_%1").arg(++gConnectionCounter))
{
}

Engine::~Engine()
{
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

std::unique_ptr<Engine> Engine::open(const ConnectionSpec &conn)
{
    std::unique_ptr<Engine> e;
    if (conn.kind == EngineKind::Sqlite) {
        checkSqliteFile(conn.file);
        e.reset(new SqliteEngine(conn));
        QSqlDatabase d = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), e->mConnName);
        d.setDatabaseName(conn.file);
        d.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
        if (!d.open())
            e->raiseSqlError(d.lastError(), QString());
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
        d.setConnectOptions(QStringLiteral("MYSQL_OPT_CONNECT_TIMEOUT=5;CLIENT_FOUND_ROWS=1"));
        if (!d.open())
            e->raiseSqlError(d.lastError(), QString());
        // Backslashes in text are data, as in the file engine; strict typing.
        e->executeNative(QStringLiteral("SET SESSION sql_mode='STRICT_ALL_TABLES,NO_BACKSLASH_ESCAPES,"
                                        "NO_ENGINE_SUBSTITUTION,ERROR_FOR_DIVISION_BY_ZERO'"));
    }
    return e;
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
        e->raiseSqlError(d.lastError(), QString());
    return e;
}

void Engine::raiseSqlError(const QSqlError &err, const QString &sql) const
{
    bool ok = false;
    long number = err.nativeErrorCode().toLong(&ok);
    if (!ok || number == 0)
        number = -2147467259; // the platform's "unspecified error"
    QString text = err.databaseText().trimmed();
    if (text.isEmpty())
        text = err.driverText().trimmed();
    if (text.isEmpty())
        text = err.text().trimmed();
    Q_UNUSED(sql);
    throw AppError(number, text);
}

ResultSet Engine::select(const QString &jet)
{
    const QString sql = translate(jet);
    QSqlQuery q(db());
    q.setForwardOnly(true);
    q.setNumericalPrecisionPolicy(QSql::LowPrecisionDouble);
    if (!q.exec(sql))
        raiseSqlError(q.lastError(), sql);
    ResultSet rs;
    const QSqlRecord rec = q.record();
    TypeResolver resolver{JetSql::sources(jet)};
    rs.columns.resize(rec.count());
    for (int i = 0; i < rec.count(); ++i) {
        const QSqlField f = rec.field(i);
        ResultColumn &c = rs.columns[i];
        c.name = f.name();
        const QString table = f.tableName();
        c.typed = resolver.resolve(c.name, table, c.type);
        if (!table.isEmpty()) {
            const QString real = resolver.src.alias.value(table.toUpper(), table);
            if (Schema::column(real, c.name))
                c.table = Schema::table(real)->name;
        }
    }
    const int n = rs.columns.size();
    while (q.next()) {
        QVector<Value> row(n);
        for (int i = 0; i < n; ++i) {
            const QVariant v = q.value(i);
            row[i] = rs.columns[i].typed ? fromStorage(v, rs.columns[i].type) : fromUntyped(v, mKind);
        }
        rs.rows.append(std::move(row));
    }
    if (q.lastError().isValid())
        raiseSqlError(q.lastError(), sql);
    return rs;
}

qint64 Engine::execute(const QString &jet)
{
    return executeNative(translate(jet));
}

qint64 Engine::executeNative(const QString &sql, const QVector<QVariant> &params)
{
    QSqlQuery q(db());
    q.setForwardOnly(true);
    bool ok;
    if (params.isEmpty()) {
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
        raiseSqlError(q.lastError(), sql);
    return q.numRowsAffected();
}

QVariant Engine::toStorage(const Value &v, const ColumnDef &col) const
{
    if (!hasValue(v))
        return QVariant();
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
        if (col.size > 0 && s.size() > col.size)
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
    if (mKind == EngineKind::Sqlite) {
        executeNative(QStringLiteral("BEGIN IMMEDIATE"));
    } else {
        // For the next transaction only.
        executeNative(QStringLiteral("SET TRANSACTION ISOLATION LEVEL SERIALIZABLE"));
        QSqlDatabase d = db();
        if (!d.transaction())
            raiseSqlError(d.lastError(), QStringLiteral("BEGIN"));
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
    if (mDepth == 1 && mDoomed) {
        rollback();
        throw AppError(VbErr::InvalidCall, QStringLiteral("処理の途中で失敗したため、変更は取り消されました。"));
    }
    mDepth = 0;
    QSqlDatabase d = db();
    if (!d.commit()) {
        const QSqlError err = d.lastError();
        d.rollback(); // never left open after a failed commit
        raiseSqlError(err, QStringLiteral("COMMIT"));
    }
}

void Engine::rollback()
{
    if (mDepth > 1) {
        --mDepth;
        mDoomed = true;
        return;
    }
    mDepth = 0;
    mDoomed = false;
    QSqlDatabase d = db();
    if (!d.rollback())
        raiseSqlError(d.lastError(), QStringLiteral("ROLLBACK"));
}

QStringList Engine::tableNames() const { return db().tables(); }
