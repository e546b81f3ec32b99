// tillora-admin trial-balance and journal: the current farmer's books for
// scripts. The trial balance as tab-separated lines; the slips as a journal
// that plain-text accounting tools read.

#include "base/Globals.h"
#include "app/AdminCommands.h"
#include "app/CommandLine.h"
#include "rules/books/Journal.h"
#include "rules/books/TrialBalance.h"
#include "store/Database.h"

#include <QFile>
#include <QStringList>

#include <cstdio>

namespace {

void openBooks()
{
    OpenIni();
    OpenDb();
    OpenMst();
    OpenWork();
    // The farmer the program starts with.
    gFMR_ID = Nz(gINI->GetCtrl(QStringLiteral("DEF_FMR_ID")), Value(1));
}

QString figure(Currency c) { return c.toString(); }

void reportFaults(const QVector<TrialBalance::Fault> &faults)
{
    for (const TrialBalance::Fault &f : faults)
        CommandLine::err(QStringLiteral("不備のある伝票: ") + TrialBalance::faultText(f));
}

bool readDay(const QString &text, QDate &day)
{
    if (text.isEmpty())
        return true;
    QDateTime d;
    if (!DateUtil::parseStorable(text, d))
        return false;
    day = d.date();
    return true;
}

} // namespace

int runTrialBalance(const QStringList &args)
{
    const CommandLine::Options o = CommandLine::readOptions(args, {QStringLiteral("--from"), QStringLiteral("--to")});
    const char *use = "使い方: tillora-admin trial-balance [--root DIR] --from yyyy-mm --to yyyy-mm";
    if (!o.ok) {
        CommandLine::err(QString::fromUtf8(use));
        return 2;
    }
    auto month = [](QString t) { return t.replace(QLatin1Char('-'), QLatin1Char('/')); };
    const TrialBalance::Period period = TrialBalance::monthsPeriod(month(o.value("--from")), month(o.value("--to")));
    if (!period.error.isEmpty()) {
        CommandLine::err(period.error);
        CommandLine::err(QString::fromUtf8(use));
        return 2;
    }
    openBooks();
    const TrialBalance::Sheet sheet = TrialBalance::compute(gFMR_ID, period.from, period.to);
    // kind, account, name, brought in, debits, credits, balance (each on the
    // account's own side)
    for (const TrialBalance::Line &l : sheet.lines)
        if (l.active())
            CommandLine::out(QStringList{TrialBalance::kindName(l.kind), l.accId ? QString::number(l.accId) : QString(), l.name,
                                    figure(l.opening), figure(l.debit), figure(l.credit), figure(l.closing)}
                            .join(QLatin1Char('\t')));
    const TrialBalance::Totals d = sheet.debitSide(), c = sheet.creditSide();
    CommandLine::out(QStringList{QStringLiteral("合計"), QString(), QStringLiteral("借方"), figure(d.opening), figure(d.debit),
                            QString(), figure(d.closing)}
                    .join(QLatin1Char('\t')));
    CommandLine::out(QStringList{QStringLiteral("合計"), QString(), QStringLiteral("貸方"), figure(c.opening), QString(),
                            figure(c.credit), figure(c.closing)}
                    .join(QLatin1Char('\t')));
    if (sheet.slips == 0)
        CommandLine::err(QStringLiteral("この期間の伝票はありません。"));
    reportFaults(sheet.faults);
    if (!sheet.balanced())
        CommandLine::err(QStringLiteral("貸借が一致しません。"));
    return 0;
}

int runJournal(const QStringList &args)
{
    const CommandLine::Options o = CommandLine::readOptions(args, {QStringLiteral("--from"), QStringLiteral("--to")});
    QDate from, to;
    if (!o.ok || !readDay(o.value("--from"), from) || !readDay(o.value("--to"), to) ||
        (from.isValid() && to.isValid() && to < from)) {
        CommandLine::err(QStringLiteral("使い方: tillora-admin journal [--root DIR] [--from yyyy-mm-dd] [--to yyyy-mm-dd] "
                                   "> farm.journal"));
        return 2;
    }
    openBooks();
    QFile out;
    if (!out.open(stdout, QIODevice::WriteOnly))
        return 1;
    const Journal::Written w = Journal::write(out, gFMR_ID, from, to);
    out.close();
    reportFaults(w.faults);
    return 0;
}
