#pragma once
// The commands of tillora-admin, each in a file of its own, as admin.cpp
// calls them.

#include <QString>
#include <QStringList>

// admin_oldcal.cpp: one line per day of the old calendar.
int runOldCal(const QStringList &args);
// shoot.cpp: a screen rendered offscreen into a PNG.
int runShoot(QStringList args);
// admin_print.cpp: the price tag sheets of a day into a PDF file.
int runPrintPtag(const QStringList &args);
// admin_export.cpp: the price tag rows of a period into the CSV file.
int runExportPtag(const QStringList &args);
// admin_books.cpp: the trial balance and the journal of the books.
int runTrialBalance(const QStringList &args);
int runJournal(const QStringList &args);
// admin_sprays.cpp: the sprayings that break or can't be checked against their registration.
int runCheckSprays(const QStringList &args);
// admin_backup.cpp: a backup into one file, and putting one back.
int runBackup(const QStringList &args);
int runRestore(const QStringList &args, const QString &root);
// admin_trace.cpp: the trace pages of a year's plantings into a folder.
int runTracePages(const QStringList &args);
// admin_upload.cpp: the files of a folder sent to a shop's web server.
int runUploadDir(const QStringList &args);

// admin.cpp: the four databases opened as the program opens them, with
// shop 1 the current shop (for the commands that print or write what the
// screens do).
void openAllDatabases();
