// tillora-admin check-sprays: every spraying of the farm that breaks its
// lot's registration, or that can't be checked against it, one line each.

#include "base/Globals.h"
#include "app/AdminCommands.h"
#include "app/CommandLine.h"
#include "rules/pesticide/SprayCheck.h"
#include "store/Database.h"

#include <QStringList>

int runCheckSprays(const QStringList &args)
{
    const CommandLine::Options opt = CommandLine::readOptions(args, {"--year"});
    bool ok = opt.ok;
    int year = 0;
    if (ok && opt.values.contains(QStringLiteral("--year"))) {
        year = opt.value("--year").toInt(&ok);
        ok = ok && year >= 100 && year <= 9999;
    }
    if (!ok) {
        CommandLine::err(QStringLiteral("使い方: tillora-admin check-sprays [--root DIR] [--year 西暦年]"));
        return 2;
    }
    OpenIni();
    OpenDb();
    OpenWork();
    const QVector<Spray::ReportLine> lines = Spray::farmReport(year, DateUtil::today().date());
    for (const Spray::ReportLine &l : lines)
        CommandLine::out(QStringLiteral("生産者%1\t%2\t%3\t%4")
                        .arg(textOf(l.farmer), l.day.toString(QStringLiteral("yyyy/MM/dd")), l.planting, l.message));
    const QString period = year == 0 ? QString() : QStringLiteral("%1年の").arg(year);
    CommandLine::out(lines.isEmpty() ? QStringLiteral("%1散布はすべて登録どおりです。").arg(period)
                                : QStringLiteral("%1散布の指摘 %2件").arg(period).arg(lines.size()));
    return 0;
}
