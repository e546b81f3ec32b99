#include "base/Currency.h"

#include "base/AppError.h"

#include <QByteArray>
#include <QLocale>

#include <cmath>
#include <limits>

namespace {
int64_t checked(__int128 v)
{
    if (v > std::numeric_limits<int64_t>::max() || v < std::numeric_limits<int64_t>::min())
        raiseError(VbErr::Overflow);
    return int64_t(v);
}

// Divides by the scale with half-to-even rounding.
__int128 divRoundEven(__int128 num, int64_t den)
{
    __int128 q = num / den;
    __int128 r = num % den;
    __int128 twice = r * 2;
    if (twice < 0)
        twice = -twice;
    if (twice > den || (twice == den && (q % 2 != 0)))
        q += (num < 0) ? -1 : 1;
    return q;
}
}

Currency Currency::fromInt(int64_t whole)
{
    return Currency(checked(__int128(whole) * Scale));
}

Currency Currency::fromDouble(double value)
{
    if (!std::isfinite(value) || std::fabs(value) >= 922337203685477.5808)
        raiseError(VbErr::Overflow);
    // Round the shortest decimal form of the value, so that 1.00005 is a tie
    // (as typed) and not the binary neighbour just below it.
    const QByteArray e = QByteArray::number(value, 'e', QLocale::FloatingPointShortest);
    const int ePos = e.indexOf('e');
    QByteArray mant = e.left(ePos);
    const int exp10 = e.mid(ePos + 1).toInt();
    const bool neg = mant.startsWith('-');
    if (neg)
        mant.remove(0, 1);
    mant.replace(".", "");
    // value = 0.mant * 10^(exp10+1); we need value * 10^4 as an integer
    int shift = exp10 + 1 + 4 - int(mant.size()); // power of ten applied to the mantissa digits
    __int128 digits = 0;
    for (char c : mant)
        digits = digits * 10 + (c - '0');
    __int128 result;
    if (shift >= 0) {
        result = digits;
        for (int i = 0; i < shift; ++i)
            result *= 10;
    } else if (shift < -30) {
        result = 0;
    } else {
        __int128 den = 1;
        for (int i = 0; i < -shift; ++i)
            den *= 10;
        __int128 q = digits / den, r = digits % den;
        if (r * 2 > den || (r * 2 == den && (q % 2 != 0)))
            ++q;
        result = q;
    }
    return Currency(checked(neg ? -result : result));
}

QString Currency::toString() const
{
    const bool neg = mRaw < 0;
    const unsigned long long a = neg ? 0ULL - static_cast<unsigned long long>(mRaw)
                                     : static_cast<unsigned long long>(mRaw);
    QString s = QString::number(a / Scale);
    unsigned long long frac = a % Scale;
    if (frac) {
        QString f = QStringLiteral("%1").arg(frac, 4, 10, QLatin1Char('0'));
        while (f.endsWith(QLatin1Char('0')))
            f.chop(1);
        s += QLatin1Char('.') + f;
    }
    return neg ? QLatin1Char('-') + s : s;
}

Currency Currency::operator+(Currency o) const { return Currency(checked(__int128(mRaw) + o.mRaw)); }
Currency Currency::operator-(Currency o) const { return Currency(checked(__int128(mRaw) - o.mRaw)); }
Currency Currency::operator-() const { return Currency(checked(-__int128(mRaw))); }
Currency Currency::operator*(Currency o) const
{
    return Currency(checked(divRoundEven(__int128(mRaw) * o.mRaw, Scale)));
}
