#pragma once
// One open connection to one database, on SQLite or on MySQL/MariaDB. The
// program's statements arrive in its own dialect and pass the engine's one
// translation point; results come back as rows of typed values.

#include "store/Schema.h"
#include "base/AppError.h"
#include "base/Value.h"

#include <QSqlDatabase>
#include <QString>
#include <QHash>
#include <QVariant>
#include <QVector>

#include <functional>
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

// What an engine's error means for the farmer: the number shown and the
// Japanese text, before the engine's own code and words are added in brackets.
struct EngineFault {
    enum Kind {
        Statement, NoTable, NoColumn, Duplicate, Constraint, TypeMismatch, TooLong, OutOfRange, DivByZero, Busy,
        ReadOnly, DiskFull, IoError, Corrupt, CantOpen, Lost, Unreachable, AccessDenied, NoRights, NoDatabase, Other
    };
    Kind kind = Other;
    long number = 0;
    QString text;
};
// Reads an engine's error code and words (the extended code for SQLite, the
// server's or client's number for MySQL).
EngineFault classifyEngineError(EngineKind kind, long code, const QString &engineText);

// An engine's error as the program raises it: the number and the Japanese
// text of classifyEngineError, why (the file's read-only reason) after a
// failed write, and the engine's own code and words in brackets.
AppError engineError(EngineKind kind, const class QSqlError &err, const QString &why = QString());

// Why a SQLite database file can't be written, as a sentence: its file or
// its folder (where the engine keeps its journal) is read-only by its
// permission bits, or its disk is mounted read-only. Empty when it can be
// written. The bits count even for an administrator, who could otherwise
// write anyway.
QString sqliteReadOnlyReason(const QString &file);

struct ResultSet {
    QVector<ResultColumn> columns;
    QVector<QVector<Value>> rows;
    int columnIndex(const QString &name) const; // case-insensitive; -1 when absent
};

class Engine {
public:
    virtual ~Engine();

    // Opens a connection; raises AppError when it can't. A SQLite file must
    // exist (it is never made here) and must not be an old Jet file; one
    // that is read-only (sqliteReadOnlyReason) is opened for reading only.
    static std::unique_ptr<Engine> open(const ConnectionSpec &conn);
    // The same, for a database of that kind: one that lacks a table of the
    // kind (an empty file, another program's database) is refused before
    // anything is written to it.
    static std::unique_ptr<Engine> open(const ConnectionSpec &conn, DbKind kind);
    // Makes a new SQLite file (for set-up only).
    static std::unique_ptr<Engine> createSqliteFile(const QString &path);

    EngineKind kind() const { return mKind; }
    const ConnectionSpec &target() const { return mSpec; }

    // The engine's one translation point.
    virtual QString translate(const QString &jet) const = 0;

    // Runs a statement of the program's dialect that returns rows. A cell
    // that can't be read as its column's type (an amount beyond the currency
    // range) becomes Value::unreadable; the other cells and rows read as
    // they are.
    //
    // A server connection that is found lost is opened again before the next
    // statement. A read outside a transaction is sent again once at once;
    // anything else fails with the message that the connection was lost.
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
    // After a lost connection there is nothing left to roll back: the server
    // has dropped the transaction.
    void rollback();
    bool inTransaction() const { return mDepth > 0; }

    QStringList tableNames() const;

    // Tells whether the database may have changed since a copy of some of
    // it was read: equal marks, no change. The file engine knows this
    // connection's writes and, from the library, other connections'
    // commits; a server can't tell without a round trip, so its marks are
    // never equal.
    struct ChangeMark {
        int connection = 0;
        quint64 writes = 0;
        qint64 others = -1;
        bool operator==(const ChangeMark &o) const
        {
            return connection == o.connection && writes == o.writes && others == o.others;
        }
    };
    ChangeMark changeMark();
    // Statements sent to engines of a kind since the program started, each a
    // round trip on a server (transaction ends included): what the
    // benchmarks count.
    static quint64 statementsSent(EngineKind kind);
    // Benchmarks: sees the engine text of every read before it runs (null:
    // none).
    static void setReadObserver(std::function<void(const Engine &, const QString &sql)> observer);
    // Why this database can't be written (see sqliteReadOnlyReason); always
    // empty for a server.
    QString readOnlyReason() const;

protected:
    Engine(EngineKind kind, const ConnectionSpec &conn);
    QSqlDatabase db() const;
    // Throws the engine's error in Japanese, with the engine's own code and
    // words in brackets. An error that means the server connection is gone
    // marks it for opening again.
    [[noreturn]] void raiseSqlError(const class QSqlError &err);

private:
    static std::unique_ptr<Engine> openAs(const ConnectionSpec &conn, const DbKind *kind);
    void connectNow();           // opens the connection and sets up the session
    void reopenIfLost();
    // Runs a read; false with the engine's error when it fails.
    bool readRows(const QString &jet, const QString &sql, ResultSet &rs, class QSqlError &failure);
    bool lostConnection(const class QSqlError &err) const;
    // The engine text of a statement, translated once per connection.
    const QString &translated(const QString &jet);
    // The columns of a read as the program types them: by the column's own
    // table, else by a table of the statement, else by an aggregate's column.
    QVector<ResultColumn> describe(const QString &jet, const QStringList &names, const QStringList &tables) const;
    // A cell as its column's value; a cell that can't be read so becomes
    // Value::unreadable.
    Value cellValue(const QVariant &v, const ResultColumn &c) const;

    EngineKind mKind;
    ConnectionSpec mSpec;
    int mSerial;                 // this connection's number in the program
    QString mConnName;
    quint64 mWrites = 0;         // statements sent that may have written
    int mDepth = 0;              // transactions begun and not yet ended; inner ones join the outer
    bool mDoomed = false;        // an inner transaction failed: the outer one can only roll back
    bool mLost = false;          // the server connection is gone; opened again on the next statement
    QHash<QString, QString> mTranslated;                        // Jet text -> engine text
    std::unique_ptr<class SqliteReads> mReads;                  // file engine: reads kept prepared
    class SqliteReads &reads();                                 // made on first use
    friend class SqliteEngine;
    friend class MysqlEngine;
};

// Tells whether a file starts as an old Jet/ACE database file.
bool isJetFile(const QString &path);
