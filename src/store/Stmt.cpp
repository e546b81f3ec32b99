#include "store/Stmt.h"

#include "base/AppError.h"

#include <cmath>

namespace {

// A number as statements write it: whole numbers without a point, others
// with up to 15 significant digits.
QString plainNumber(double d)
{
    if (!std::isfinite(d))
        raiseError(VbErr::Overflow);
    if (d == std::floor(d) && std::fabs(d) < 1e15)
        return QString::number(qint64(d));
    return QString::number(d, 'g', 15);
}

QDateTime dateOf(const Value &v)
{
    v.checkReadable();
    if (!hasValue(v) || !(v.isDateType() || IsDate(v)))
        raiseError(VbErr::DateSyntax, textOf(v));
    return v.toDate();
}

} // namespace

Stmt::Stmt(const QString &text) : mRest(text)
{
    bool quoted = false;
    for (const QChar c : text) {
        if (c == QLatin1Char('\''))
            quoted = !quoted;
        else if (c == QLatin1Char('?') && !quoted)
            ++mOpen;
    }
}

Stmt &Stmt::put(const QString &piece)
{
    bool quoted = false;
    for (int i = 0; i < mRest.size(); ++i) {
        const QChar c = mRest[i];
        if (c == QLatin1Char('\'')) {
            quoted = !quoted;
        } else if (c == QLatin1Char('?') && !quoted) {
            mText += mRest.left(i) + piece;
            mRest = mRest.mid(i + 1);
            --mOpen;
            return *this;
        }
    }
    throw AppError(VbErr::InvalidCall, QStringLiteral("文に値の入る所がありません: ") + mText + mRest);
}

Stmt &Stmt::num(const Value &v)
{
    v.checkReadable(); // a cell that could not be read is never written as 0
    if (!hasValue(v))
        return put(QStringLiteral("0"));
    if (IsNumeric(v))
        return put(plainNumber(v.toDouble()));
    return put(plainNumber(leadingNumber(v.toText())));
}

Stmt &Stmt::num(qint64 n) { return put(QString::number(n)); }

Stmt &Stmt::numOrNull(const Value &v) { return hasValue(v) ? num(v) : put(QStringLiteral("NULL")); }

Stmt &Stmt::amount(const Currency &c) { return put(c.toString()); }

Stmt &Stmt::day(const Value &v) { return day(dateOf(v)); }

Stmt &Stmt::day(const QDateTime &d)
{
    return put(QLatin1Char('#') + DateUtil::format(d, QStringLiteral("yyyy/MM/dd")) + QLatin1Char('#'));
}

Stmt &Stmt::time(const Value &v) { return time(dateOf(v)); }

Stmt &Stmt::time(const QDateTime &d) { return put(QLatin1Char('#') + DateUtil::sqlText(d) + QLatin1Char('#')); }

Stmt &Stmt::timeOrNull(const Value &v) { return hasValue(v) ? time(v) : put(QStringLiteral("NULL")); }

Stmt &Stmt::text(const QString &t)
{
    QString doubled = t;
    doubled.replace(QLatin1Char('\''), QStringLiteral("''"));
    return put(QLatin1Char('\'') + doubled + QLatin1Char('\''));
}

Stmt &Stmt::textOrNull(const Value &v)
{
    v.checkReadable();
    const QString t = textOf(v);
    return t.isEmpty() ? put(QStringLiteral("NULL")) : text(t);
}

Stmt &Stmt::ids(const QVector<Value> &values)
{
    QStringList out;
    for (const Value &v : values)
        out << Stmt("?").num(v).sql();
    return put(out.join(QLatin1Char(',')));
}

Stmt &Stmt::part(const Stmt &piece) { return put(piece.sql()); }

Stmt &Stmt::name(const QString &identifier)
{
    const bool plain = !identifier.isEmpty() && std::all_of(identifier.begin(), identifier.end(), [](QChar c) {
        return (c >= QLatin1Char('A') && c <= QLatin1Char('Z')) || (c >= QLatin1Char('a') && c <= QLatin1Char('z')) ||
               (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || c == QLatin1Char('_') || c == QLatin1Char('.') ||
               c == QLatin1Char('*');
    });
    if (!plain)
        throw AppError(VbErr::InvalidCall, QStringLiteral("表や列の名前ではありません: ") + identifier);
    return put(identifier);
}

QString Stmt::sql() const
{
    if (mOpen != 0)
        throw AppError(VbErr::InvalidCall, QStringLiteral("文に値が足りません: ") + mText + mRest);
    return mText + mRest;
}

Stmt Stmt::joined(const QVector<Stmt> &pieces, const QString &separator)
{
    QStringList parts;
    for (const Stmt &p : pieces)
        parts << p.sql();
    // The pieces are finished statements: the ? they may hold in their
    // literals stay literal, so the whole is taken as done.
    Stmt whole(QString{});
    whole.mText = parts.join(separator);
    return whole;
}
