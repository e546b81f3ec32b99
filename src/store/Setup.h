#pragma once
// Making databases: the tables of a kind of database from the table
// definitions, and the rows delivered with the program (CSV files under data/,
// built into the programs). Used by `tillora-admin init`, the tests and the
// benchmark's generator.

#include "base/Globals.h"
#include "store/Engine.h"
#include "store/Schema.h"

#include <QString>
#include <QStringList>

namespace Setup {

// Creates the tables of that kind that the database lacks; returns their names.
QStringList createTables(Engine &engine, DbKind kind);

// Loads the delivered rows of that kind into tables that are still empty;
// returns the names of the tables filled.
QStringList loadDelivered(Engine &engine, DbKind kind);

// The rows of one delivered file (data/<kind>/<TABLE>.csv): column names and
// rows of text cells, Null for an empty unquoted cell. False when there is no
// such file.
bool readDelivered(DbKind kind, const QString &table, QStringList &columns, QVector<QVector<Value>> &rows);
// The CSV reader behind it.
void parseCsv(const QString &text, QStringList &header, QVector<QVector<Value>> &rows);

// The file of each kind under a run-time root.
QString fileOf(const QString &root, DbKind kind);

struct InitReport {
    QStringList created; // files made
    QStringList kept;    // files that were there already
};
// Makes the run-time folders and the four database files under root. A file
// that exists is kept as it is unless force is set.
InitReport initRoot(const QString &root, bool force = false);

// Makes root the run-time tree of this process (see AppPaths::chooseRoot).
// The user's data folder is set up on the first start, as `init` does; a
// tree named otherwise is used as it is.
void useRoot(const AppPaths::RootChoice &choice);

// Writes a settings row straight into the settings file of a run-time root
// (for set-up and scripts; the program itself goes through gINI).
void writeCtrl(const QString &root, const QString &key, const Value &value, const Value &type = Value::null());

// A login to a MySQL/MariaDB server.
struct ServerLogin {
    QString host;
    int port = 3306;
    QString user, password;
};
// Points the data and master databases of a run-time root at two databases
// on a server (the keys DB_* and MST_*).
void pointAtServer(const QString &root, const ServerLogin &login, const QString &dataDb, const QString &masterDb);
// Drops databases on a server, where they exist (clean-up of tests and
// benchmarks).
void dropServerDatabases(const ServerLogin &login, const QStringList &names);

// For the data and master databases that the settings put on a MySQL server:
// creates the database if the server lacks it, the tables, and the delivered
// master rows. Returns a line per database for the user.
QStringList initServers();

}
