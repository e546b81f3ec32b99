#include "store/SqliteReads.h"

#include <QCoreApplication>
#include <QSqlDriver>

#include <sqlite3.h>

#include <cctype>
#include <cstring>

namespace {

// Reads kept per connection; past this many the kept ones go.
constexpr size_t kKept = 200;

// The engine's error as the driver reports it: its words, and its
// extended code as the native code.
QSqlError failureOf(sqlite3 *db, const char *what)
{
    return QSqlError(QCoreApplication::translate("QSQLiteResult", what),
                     QString::fromUtf8(sqlite3_errmsg(db)), QSqlError::StatementError,
                     QString::number(sqlite3_extended_errcode(db)));
}

} // namespace

SqliteReads::SqliteReads(const QSqlDatabase &db)
{
    const QVariant h = db.driver() ? db.driver()->handle() : QVariant();
    if (h.isValid() && qstrcmp(h.typeName(), "sqlite3*") == 0)
        mDb = *static_cast<sqlite3 *const *>(h.constData());
}

SqliteReads::~SqliteReads() = default;

SqliteReads::Read::~Read()
{
    if (mSt)
        sqlite3_finalize(mSt);
}

SqliteReads::Read *SqliteReads::prepare(const QString &sql, QSqlError &failure)
{
    auto it = mReads.find(sql);
    if (it != mReads.end())
        return it->second.get();
    if (!mDb) {
        failure = QSqlError(QStringLiteral("Driver not loaded"), QString(), QSqlError::ConnectionError);
        return nullptr;
    }
    if (mReads.size() >= kKept)
        mReads.clear();
    auto r = std::make_unique<Read>();
    r->mDb = mDb;
    const QByteArray text = sql.toUtf8();
    const char *tail = nullptr;
    if (sqlite3_prepare_v2(mDb, text.constData(), int(text.size()) + 1, &r->mSt, &tail) != SQLITE_OK) {
        failure = failureOf(mDb, "Unable to execute statement");
        return nullptr;
    }
    if (!r->mSt) { // only a comment or spaces
        failure = QSqlError(QStringLiteral("Unable to execute statement"), QStringLiteral("not a statement"),
                            QSqlError::StatementError, QString::number(SQLITE_MISUSE));
        return nullptr;
    }
    if (tail && *tail) {
        // A second statement after the first: the driver refuses it too.
        for (const char *c = tail; *c; ++c)
            if (!std::isspace(static_cast<unsigned char>(*c)) && *c != ';') {
                failure = QSqlError(QStringLiteral("Unable to execute multiple statements at a time"), QString(),
                                    QSqlError::StatementError, QString::number(SQLITE_MISUSE));
                return nullptr;
            }
    }
    r->readColumns();
    return mReads.emplace(sql, std::move(r)).first->second.get();
}

void SqliteReads::Read::readColumns()
{
    const int n = sqlite3_column_count(mSt);
    mNames.clear();
    mNameTexts.clear();
    mTables.clear();
    for (int i = 0; i < n; ++i) {
        const char *name = sqlite3_column_name(mSt, i);
        const char *table = sqlite3_column_table_name(mSt, i);
        mNames.append(QByteArray(name ? name : ""));
        mNameTexts.append(QString::fromUtf8(name ? name : "").remove(QLatin1Char('"')));
        mTables.append(QString::fromUtf8(table ? table : "").remove(QLatin1Char('"')));
    }
    described = false;
}

void SqliteReads::Read::columnsChanged()
{
    const int n = sqlite3_column_count(mSt);
    bool changed = n != mNames.size();
    for (int i = 0; !changed && i < n; ++i) {
        const char *name = sqlite3_column_name(mSt, i);
        changed = !name || std::strcmp(name, mNames[i].constData()) != 0;
    }
    if (changed)
        readColumns();
}

bool SqliteReads::Read::next(QSqlError &failure)
{
    const int rc = sqlite3_step(mSt);
    if (rc == SQLITE_ROW)
        return true;
    if (rc != SQLITE_DONE)
        failure = failureOf(mDb, "Unable to fetch row");
    sqlite3_reset(mSt);
    return false;
}

void SqliteReads::Read::reset() { sqlite3_reset(mSt); }

QVariant SqliteReads::Read::cell(int column) const
{
    switch (sqlite3_column_type(mSt, column)) {
    case SQLITE_INTEGER: return QVariant(qlonglong(sqlite3_column_int64(mSt, column)));
    case SQLITE_FLOAT: return QVariant(sqlite3_column_double(mSt, column));
    case SQLITE_NULL: return QVariant(QMetaType::fromType<QString>());
    case SQLITE_BLOB:
        return QVariant(QByteArray(static_cast<const char *>(sqlite3_column_blob(mSt, column)),
                                   sqlite3_column_bytes(mSt, column)));
    default: {
        const char *text = reinterpret_cast<const char *>(sqlite3_column_text(mSt, column));
        return QVariant(QString::fromUtf8(text, sqlite3_column_bytes(mSt, column)));
    }
    }
}

SqliteReads::Read::Storage SqliteReads::Read::storage(int column) const
{
    switch (sqlite3_column_type(mSt, column)) {
    case SQLITE_INTEGER: return Storage::Integer;
    case SQLITE_FLOAT: return Storage::Real;
    case SQLITE_BLOB: return Storage::Blob;
    case SQLITE_NULL: return Storage::Null;
    default: return Storage::Text;
    }
}

qint64 SqliteReads::Read::integer(int column) const { return sqlite3_column_int64(mSt, column); }

QByteArrayView SqliteReads::Read::text(int column) const
{
    const char *t = reinterpret_cast<const char *>(sqlite3_column_text(mSt, column));
    return QByteArrayView(t, sqlite3_column_bytes(mSt, column));
}
