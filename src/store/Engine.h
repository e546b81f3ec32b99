#pragma once
// One open connection to one database, on SQLite or on MySQL/MariaDB. The
// program's statements arrive in its own dialect and pass the engine's one
// translation point; results come back as rows of typed values.

#include "store/Schema.h"
#include "base/Value.h"

#include <QSqlDatabase>
#include <QString>
#include <QVariant>
#include <QVector>

#include <memory>

enum class EngineKind { Sqlite, Mysql };

struct ConnectionSpec {
    EngineKind kind = EngineKind::Sqlite;
    QString file;      // SQLite
    QString host;      // MySQL
    int port = 3306;
    QString database;
    QString user;
    QString password;
};

struct ResultColumn {
    QString name;
    QString table;     // real table name, when the column comes from one
    bool typed = false;
    ColType type = ColType::Text;
};

struct ResultSet {
    QVector<ResultColumn> columns;
    QVector<QVector<Value>> rows;
    int columnIndex(const QString &name) const; // case-insensitive; -1 when absent
};

class Engine {
public:
    virtual ~Engine();

    // Opens a connection; raises AppError when it can't. A SQLite file must
    // exist (it is never made here) and must not be an old Jet file.
    static std::unique_ptr<Engine> open(const ConnectionSpec &conn);
    // Makes a new SQLite file (for set-up only).
    static std::unique_ptr<Engine> createSqliteFile(const QString &path);

    EngineKind kind() const { return mKind; }
    const ConnectionSpec &target() const { return mSpec; }

    // The engine's one translation point.
    virtual QString translate(const QString &jet) const = 0;

    // Runs a statement of the program's dialect that returns rows.
    ResultSet select(const QString &jet);
    // Runs a statement of the program's dialect; the number of rows touched.
    qint64 execute(const QString &jet);
    // Runs an engine statement (already in its dialect) with bound values;
    // used by the record layer's writes and by set-up.
    qint64 executeNative(const QString &sql, const QVector<QVariant> &params = {});

    // A value as the engine stores it in a column of that type. Raises the
    // conversion errors (13 type mismatch, 6 overflow, 3163 too long).
    QVariant toStorage(const Value &v, const ColumnDef &col) const;
    // A stored value as the program's value of that type.
    Value fromStorage(const QVariant &v, ColType type) const;

    // Transactions nest: an inner begin joins the one already open, and only
    // the outermost commit writes. An inner rollback dooms the whole: its
    // outer commit then rolls back and raises. A transaction holds the
    // database for writing from its first statement (SQLite: BEGIN
    // IMMEDIATE, so two computers' saves take turns instead of failing at
    // their first write) and on the server runs serializable (what it reads
    // to decide is locked until it ends).
    void begin();
    void commit();
    void rollback();
    bool inTransaction() const { return mDepth > 0; }

    QStringList tableNames() const;

protected:
    Engine(EngineKind kind, const ConnectionSpec &conn);
    QSqlDatabase db() const;
    [[noreturn]] void raiseSqlError(const class QSqlError &err, const QString &sql) const;

private:
    EngineKind mKind;
    ConnectionSpec mSpec;
    QString mConnName;
    int mDepth = 0;
    bool mDoomed = false;
    friend class SqliteEngine;
    friend class MysqlEngine;
};

// Tells whether a file starts as an old Jet/ACE database file.
bool isJetFile(const QString &path);
