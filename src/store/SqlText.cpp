#include "store/SqlText.h"

#include <QRegularExpression>

#include <cmath>

namespace Sql {

namespace {

QString plainNumber(double d)
{
    if (d == std::floor(d) && std::fabs(d) < 1e15)
        return QString::number(qint64(d));
    return QString::number(d, 'g', 15);
}

} // namespace

QString escaped(const QString &text)
{
    QString t = text;
    t.replace(QLatin1Char('\''), QStringLiteral("''"));
    return t;
}

QString quoted(const QString &text) { return QLatin1Char('\'') + escaped(text) + QLatin1Char('\''); }

QString quotedOrNull(const Value &v)
{
    const QString t = textOf(v);
    return t.isEmpty() ? QStringLiteral("NULL") : quoted(t);
}

QString leadingNumber(const QString &text) { return plainNumber(::leadingNumber(text)); }

QString number(const Value &v)
{
    if (!hasValue(v))
        return QStringLiteral("0");
    if (!IsNumeric(v))
        return Sql::leadingNumber(v.toText());
    return plainNumber(v.toDouble());
}

QString dayText(const Value &date)
{
    if (!hasValue(date))
        return QString();
    if (date.isDateType() || IsDate(date))
        return DateUtil::format(date.toDate(), QStringLiteral("yyyy/MM/dd"));
    return date.toText();
}

} // namespace Sql
