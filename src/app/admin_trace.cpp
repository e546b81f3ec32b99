// tillora-admin trace-pages: the trace pages of a year's plantings written
// into a folder laid out as the shop's web folder, as the upload dialog
// writes them before sending; the files written and the plantings without a
// page are listed.

#include "base/Globals.h"
#include "rules/exchange/TracePages.h"
#include "store/Database.h"

#include <QStringList>

#include <cstdio>

// admin.cpp
void openAllDatabases();

namespace {
void say(std::FILE *to, const QString &s) { std::fputs((s + QLatin1Char('\n')).toUtf8().constData(), to); }
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
        say(stderr, QStringLiteral("使い方: tillora-admin trace-pages [--root DIR] --year 西暦年 --out 出力先 [--plant 作付ID]"));
        return 2;
    }
    openAllDatabases();
    const TracePages::Outcome out = TracePages::write(dir, year, plant);
    for (const QString &f : out.files)
        say(stdout, f);
    for (const QString &line : out.summary())
        say(out.refusal.isEmpty() ? stdout : stderr, line);
    return out.refusal.isEmpty() ? 0 : 1;
}
