// tillora-admin trace-pages: the trace pages of a year's plantings written
// into a folder laid out as the shop's web folder, as the upload dialog
// writes them before sending; the files written and the plantings without a
// page are listed.

#include "base/Globals.h"
#include "app/AdminCommands.h"
#include "app/CommandLine.h"
#include "rules/exchange/TracePages.h"
#include "store/Database.h"

#include <QStringList>

int runTracePages(const QStringList &args)
{
    const CommandLine::Options opt = CommandLine::readOptions(args, {"--year", "--out", "--plant"});
    const QString dir = opt.value("--out");
    bool ok = opt.ok, yearOk = false;
    const int year = opt.value("--year").toInt(&yearOk);
    ok = ok && yearOk && year >= 100 && year <= 9999;
    Value plant;
    if (opt.values.contains(QStringLiteral("--plant"))) {
        bool plantOk = false;
        const int n = opt.value("--plant").toInt(&plantOk);
        ok = ok && plantOk && n > 0;
        plant = Value(n);
    }
    if (!ok || dir.isEmpty()) {
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
