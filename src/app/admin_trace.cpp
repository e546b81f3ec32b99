// tillora-admin trace-pages: the trace pages of a year's plantings written
// into a folder laid out as the shop's web folder, as the upload dialog
// writes them before sending; the files written and the plantings without a
// page are listed.

#include "base/Globals.h"
#include "app/CommandLine.h"
#include "rules/exchange/TracePages.h"
#include "store/Database.h"

#include <QStringList>

#include <cstdio>

// admin.cpp
void openAllDatabases();

namespace {
}

int runTracePages(const QStringList &args)
{
    int year = 0;
    QString dir;
    Value plant;
    bool ok = true;
    for (int i = 0; i < args.size() && ok; ++i) {
        const QString &s = args[i];
        if (s == QLatin1String("--year") && i + 1 < args.size()) {
            year = args[++i].toInt(&ok);
            ok = ok && year >= 100 && year <= 9999;
        } else if (s == QLatin1String("--out") && i + 1 < args.size()) {
            dir = args[++i];
        } else if (s == QLatin1String("--plant") && i + 1 < args.size()) {
            const int n = args[++i].toInt(&ok);
            ok = ok && n > 0;
            plant = Value(n);
        } else {
            ok = false;
        }
    }
    if (!ok || year == 0 || dir.isEmpty()) {
        CommandLine::err(QStringLiteral("使い方: tillora-admin trace-pages [--root DIR] --year 西暦年 --out 出力先 [--plant 作付ID]"));
        return 2;
    }
    openAllDatabases();
    const TracePages::Outcome out = TracePages::write(dir, year, plant);
    for (const QString &f : out.files)
        CommandLine::out(f);
    for (const QString &line : out.summary())
        (out.refusal.isEmpty() ? CommandLine::out : CommandLine::err)(line);
    return out.refusal.isEmpty() ? 0 : 1;
}
