// tillora-admin oldcal FROM [TO]: the old calendar of each day, one line a
// day, for people who plan work by it and for scripts:
//   yyyy-mm-dd <TAB> old date <TAB> six-day name <TAB> old year <TAB> sexagenary name
// A day whose old date can't be computed (the subscript error) reads
// "ERROR" with the six-day name and the old year left empty.

#include "base/AppError.h"
#include "app/AdminCommands.h"
#include "app/CommandLine.h"
#include "base/Value.h"
#include "rules/diary/modOldCal.h"
#include "store/Database.h"

#include <QDate>
#include <QHash>
#include <QRegularExpression>
#include <QStringList>

#include <cstdio>

namespace {

bool parseDay(const QString &text, QDate &out)
{
    static const QRegularExpression form(QStringLiteral("^(\\d{4})-(\\d{2})-(\\d{2})$"));
    const QRegularExpressionMatch m = form.match(text);
    if (!m.hasMatch())
        return false;
    out = QDate(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
    return out.isValid();
}

} // namespace

int runOldCal(const QStringList &args)
{
    if (args.isEmpty() || args.size() > 2) {
        CommandLine::err(QStringLiteral("使い方: tillora-admin oldcal [--root DIR] FROM [TO]（日付は yyyy-mm-dd）"));
        return 2;
    }
    QDate from, to;
    for (int i = 0; i < args.size(); ++i) {
        QDate &d = i == 0 ? from : to;
        if (!parseDay(args[i], d)) {
            CommandLine::err(QStringLiteral("日付が正しくありません（yyyy-mm-dd で指定してください）: ") + args[i]);
            return 2;
        }
    }
    if (args.size() == 1)
        to = from;
    if (to < from) {
        CommandLine::err(QStringLiteral("終了日が開始日より前です: ") + args[0] + QStringLiteral(" ～ ") + args[1]);
        return 2;
    }

    OpenWork();
    // The sexagenary name repeats every 60 days: each index is read once
    // through GetEtoYm.
    QHash<int, QString> etoNames;
    const QString tab = QStringLiteral("\t");
    for (QDate day = from; day <= to; day = day.addDays(1)) {
        const QDateTime date = DateUtil::fromDate(day);
        QString line = day.toString(QStringLiteral("yyyy-MM-dd")) + tab;
        try {
            const modOldCal::OldDate old = modOldCal::OldDateOf(date);
            line += modOldCal::OldDateText(old) + tab +
                    QString::fromUtf8(modOldCal::SixDayNames[modOldCal::SixDayIndex(old)]) + tab +
                    QString::number(old[modOldCal::OldYear]) + tab;
        } catch (const AppError &e) {
            if (e.number() != VbErr::Subscript)
                throw;
            line += QStringLiteral("ERROR\t\t\t");
        }
        const int index = modOldCal::DayCycleIndex(date);
        auto it = etoNames.constFind(index);
        if (it == etoNames.constEnd())
            it = etoNames.insert(index, GetEtoYm(date));
        line += *it + QLatin1Char('\n');
        std::fputs(line.toUtf8().constData(), stdout);
    }
    return 0;
}
