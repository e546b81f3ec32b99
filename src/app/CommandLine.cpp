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

int wrongUse(const QString &program, const QString &message)
{
    err(QStringLiteral("%1: %2\n詳しくは '%1 --help' を実行してください。").arg(program, message));
    return 2;
}

}
