#pragma once
// The file engine's reads, run with the SQLite library on the connection's
// own handle. Each read is kept prepared by its engine text, so a statement
// run again costs the engine's work, and its cells come straight from the
// library as the driver would give them, without the driver's row cache or
// its text conversions.

#include "store/Engine.h"

#include <QByteArrayList>
#include <QByteArrayView>
#include <QSqlDatabase>
#include <QSqlError>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <map>
#include <memory>

struct sqlite3;
struct sqlite3_stmt;

class SqliteReads {
public:
    // One kept read. What the caller makes of its columns stays with it
    // (described) until the statement's columns change under it.
    class Read {
    public:
        ~Read();
        // The next row; false at the end, or with failure set when the
        // engine fails. The statement is reset at the end and on a failure,
        // so that it holds no read of the file open.
        bool next(QSqlError &failure);
        // A cell of the current row, as the driver gives it: a whole number
        // as qlonglong, a real as double, text as QString, a blob as
        // QByteArray, and NULL as a null value.
        QVariant cell(int column) const;
        // The same cell in the library's own terms, for a reader that
        // converts it itself: how it is stored, and its number or its
        // UTF-8 text.
        enum class Storage { Integer, Real, Text, Blob, Null };
        Storage storage(int column) const;
        qint64 integer(int column) const;
        QByteArrayView text(int column) const;
        // Called after the first next(): when the columns are no longer the
        // ones described (a changed table can change them under a kept
        // statement), names and tables are read again and the description
        // is dropped.
        void columnsChanged();
        const QStringList &names() const { return mNameTexts; }
        const QStringList &tables() const { return mTables; }
        // Finishes a read left before its end.
        void reset();

        // The caller's description of the columns, kept with the statement.
        QVector<ResultColumn> columns;
        bool described = false;

    private:
        friend class SqliteReads;
        void readColumns();
        sqlite3 *mDb = nullptr;
        sqlite3_stmt *mSt = nullptr;
        QByteArrayList mNames; // as the library names them, to compare cheaply
        QStringList mNameTexts;
        QStringList mTables;
    };

    explicit SqliteReads(const QSqlDatabase &db);
    ~SqliteReads();
    SqliteReads(const SqliteReads &) = delete;
    SqliteReads &operator=(const SqliteReads &) = delete;

    // The read of that engine text, prepared the first time; null with the
    // engine's error when it can't be prepared.
    Read *prepare(const QString &sql, QSqlError &failure);

private:
    sqlite3 *mDb = nullptr;
    std::map<QString, std::unique_ptr<Read>> mReads;
};
