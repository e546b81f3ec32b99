#pragma once
// Backups of a run-time tree: one file, tillora-backup-YYYYMMDD-HHMMSS.tar,
// a tar archive that the system's own `tar` also reads. It holds
//
//   TILLORA-BACKUP          what the file is: a first line that names it, the
//                           program's version, the time, one line a part
//   ini/INFO.MDB            the settings, a SQLite file
//   work/WORK.MDB           the look-up lists
//   data/DATA.MDB           the farm's records, when they are a file ...
//   data.sql                ... or, when they are on a server, every row of
//                           every table as INSERT statements of the program's
//                           own dialect (restored through either engine)
//   data/MASTER.MDB, master.sql   the same for the masters
//   images/...              the pictures
//
// A file database is copied by SQLite itself (VACUUM INTO) from one read
// transaction, so the copy is whole while the program goes on saving: a save
// is in the copy entirely or not at all. A server database is read in one
// snapshot transaction, which sees no save half done either.

#include "base/Progress.h"
#include "base/Value.h"
#include "store/Schema.h"

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QStringList>

class Engine;

namespace Backup {

// The name of a backup taken at that time.
QString fileName(const QDateTime &at);

// Writes a backup of the databases that the settings of the current tree
// name (opening them when they are not open) and of its pictures to out.
// Nothing is left under out unless the whole was written. Returns false when
// the progress callback asked to stop. Raises AppError (in Japanese).
bool take(const QString &out, const ProgressFn &progress = {});

// What a backup file holds, read from its first part.
struct Contents {
    QString version;        // of the program that wrote it
    QDateTime taken;
    QStringList parts;      // "ini/INFO.MDB", "data.sql", "images/logo.png" ...
};
// Reads the description of a backup; raises a Japanese message when the file
// is not a backup of this program (or is damaged).
Contents describe(const QString &file);

// Puts a backup back into the tree at root: the settings, the look-up lists,
// the data and master databases where the restored settings keep them (a
// file, or the rows of a server database), the pictures. What is replaced is
// kept aside, renamed with the time (DATA.MDB.20240105-103000; a server
// database's rows as <database>-20240105-103000.sql beside the data file).
// The databases are closed first. Returns a line per part for the user.
QStringList restore(const QString &file, const QString &root, const ProgressFn &progress = {});

// The rows of the tables of that kind in the database as INSERT statements,
// one to a line ending in ";", read in one snapshot.
QString dumpRows(Engine &engine, DbKind kind, const ProgressFn &progress = {});
// Replaces the rows of every table of that kind by those of a dump, in one
// transaction.
void loadRows(Engine &engine, DbKind kind, const QString &dump);

// Whether start-up should offer a backup: the last one (a date, or empty when
// none was ever taken) is `months` or more months ago; months 0 never asks.
bool due(const Value &last, int months, const QDate &today);

// Reads the settings of this computer: true when start-up should offer a
// backup. The first start without a backup day begins the count (the day is
// recorded and nothing is asked).
bool dueNow(const QDate &today);
// Records a backup written to file on that day (the day and its folder).
void remember(const QString &file, const QDate &day);
// The folder the last backup went to; the home folder before any.
QString lastFolder();
// The day of the last backup as kept ("2026/01/05"); empty before any.
QString lastDay();

// Settings keys: the day of the last backup, the months between backups
// (1 when unset), the folder the last one went to.
extern const char *const kLastKey;
extern const char *const kMonthsKey;
extern const char *const kDirKey;
}
