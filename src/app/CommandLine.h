#pragma once
// What the two programs share on their command line: --help and --version
// as the system's other programs answer them (to standard output, exit 0),
// the message for an option they don't know (to standard error, exit 2),
// and the run-time tree they use (--root, TILLORA_ROOT, else as
// AppPaths::chooseRoot decides).

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

namespace CommandLine {

// "tillora-admin (Tillora) 0.1.0" and the copyright lines.
QString versionText(const QString &program);

// Prints to standard output or standard error, in UTF-8.
void out(const QString &text);
void err(const QString &text);

// "tillora-admin: 不明なオプション '--x' です。" and the hint to --help, to
// standard error; returns 2, the exit code of a wrong use.
int wrongUse(const QString &program, const QString &message);

// A command's options: each name of `valued` takes the argument after it
// (the last one given counts), each of `flags` stands alone. Anything else,
// or a valued name with nothing after it, makes `ok` false.
struct Options {
    QHash<QString, QString> values;
    QSet<QString> flags;
    bool ok = true;
    QString value(const char *name) const { return values.value(QLatin1String(name)); }
    bool has(const char *flag) const { return flags.contains(QLatin1String(flag)); }
};
Options readOptions(const QStringList &args, const QStringList &valued, const QStringList &flags = {});

}
