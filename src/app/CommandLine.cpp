#include "app/CommandLine.h"

#include <cstdio>

#ifndef TILLORA_VERSION
#error "TILLORA_VERSION comes from the project's version in CMake"
#endif

namespace CommandLine {

QString versionText(const QString &program)
{
    return QStringLiteral("%1 (Tillora) %2\n"
                          "Copyright (C) 2026 Tillora の開発者\n"
                          "このプログラムは無保証です。法律の許す限り、いかなる保証もありません。")
        .arg(program, QStringLiteral(TILLORA_VERSION));
}

void out(const QString &text) { std::fputs((text + QLatin1Char('\n')).toUtf8().constData(), stdout); }
void err(const QString &text) { std::fputs((text + QLatin1Char('\n')).toUtf8().constData(), stderr); }

Options readOptions(const QStringList &args, const QStringList &valued, const QStringList &flags)
{
    Options o;
    for (int i = 0; i < args.size(); ++i) {
        if (valued.contains(args[i]) && i + 1 < args.size()) {
            o.values.insert(args[i], args[i + 1]);
            ++i;
        } else if (flags.contains(args[i])) {
            o.flags.insert(args[i]);
        } else {
            o.ok = false;
        }
    }
    return o;
}

int wrongUse(const QString &program, const QString &message)
{
    err(QStringLiteral("%1: %2\n詳しくは '%1 --help' を実行してください。").arg(program, message));
    return 2;
}

}
