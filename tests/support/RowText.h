#pragma once
// Stored rows and records as one text, the way the tests write what they
// expect: the columns joined by '|', no value "-", a day "yyyy/MM/dd" (with
// " hh:mm" when it has a time), anything else its text.
#include "base/Value.h"
#include "store/Database.h"

#include <QStringList>

inline QString shownValue(const Value &v)
{
    if (!hasValue(v))
        return QStringLiteral("-");
    if (v.isDateType())
        return DateUtil::format(v.toDate(), v.toDate().time() == QTime(0, 0) ? QStringLiteral("yyyy/MM/dd")
                                                                               : QStringLiteral("yyyy/MM/dd hh:mm"));
    return v.toText();
}

// The columns ("A B C") of a record through its column map.
template <class Row> QString recordText(const Row &r, const char *columns)
{
    QStringList out;
    for (const QString &c : QString::fromLatin1(columns).split(QLatin1Char(' ')))
        out << shownValue(Row::map().of(r, c));
    return out.join(QLatin1Char('|'));
}

// The columns of the data database's row found by where.
inline QString rowText(const char *table, const QString &where, const char *columns)
{
    QStringList out;
    for (const QString &c : QString::fromLatin1(columns).split(QLatin1Char(' ')))
        out << shownValue(gDB->DLookup(c, QString::fromLatin1(table), where));
    return out.join(QLatin1Char('|'));
}
