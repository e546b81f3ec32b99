#pragma once
// What the two programs share on their command line: --help and --version
// as the system's other programs answer them (to standard output, exit 0),
// the message for an option they don't know (to standard error, exit 2),
// and the run-time tree they use (--root, TILLORA_ROOT, else as
// AppPaths::chooseRoot decides).

#include <QString>

namespace CommandLine {

// "tillora-admin (Tillora) 0.1.0" and the copyright lines.
QString versionText(const QString &program);

// Prints to standard output or standard error, in UTF-8.
void out(const QString &text);
void err(const QString &text);

// "tillora-admin: 不明なオプション '--x' です。" and the hint to --help, to
// standard error; returns 2, the exit code of a wrong use.
int wrongUse(const QString &program, const QString &message);

}
