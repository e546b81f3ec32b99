#include "rules/books/TrialBalance.h"

QStringList accRepMonths(const QDate &today)
{
    return {QString::number(today.year()) + QStringLiteral("/01"), today.toString(QStringLiteral("yyyy/MM"))};
}
