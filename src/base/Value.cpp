#include "base/Value.h"

#include "base/AppError.h"

#include <QRegularExpression>
#include <QTimeZone>

#include <cmath>
#include <limits>

// ---------------------------------------------------------------- dates

namespace DateUtil {

namespace {
const QDate kSerialBase(1899, 12, 30);
}

QDateTime make(int y, int m, int d, int h, int n, int s)
{
    return QDateTime(QDate(y, m, d), QTime(h, n, s), Qt::UTC);
}

QDateTime fromDate(const QDate &d) { return QDateTime(d, QTime(0, 0), Qt::UTC); }

QDateTime now()
{
    const QDateTime local = QDateTime::currentDateTime();
    const QTime t = local.time();
    return QDateTime(local.date(), QTime(t.hour(), t.minute(), t.second()), Qt::UTC);
}

QDateTime today() { return fromDate(QDate::currentDate()); }

QDateTime addDays(const QDateTime &dt, int days) { return dt.addDays(days); }

double toSerial(const QDateTime &dt)
{
    const qint64 days = kSerialBase.daysTo(dt.date());
    const double frac = dt.time().msecsSinceStartOfDay() / 86400000.0;
    // Before the base the serial's fraction still counts forward from the day.
    return days >= 0 ? days + frac : days - frac;
}

QDateTime fromSerial(double serial)
{
    if (!std::isfinite(serial) || serial < -657434.0 || serial > 2958466.0)
        raiseError(VbErr::Overflow);
    double whole = std::trunc(serial);
    double frac = std::fabs(serial - whole);
    qint64 ms = qint64(std::llround(frac * 86400000.0));
    if (ms >= 86400000) {
        ms -= 86400000;
        whole += serial < 0 ? -1 : 1;
    }
    const QDate d = kSerialBase.addDays(qint64(whole));
    const qint64 secs = (ms + 500) / 1000;
    return QDateTime(d, QTime(0, 0).addSecs(int(secs)), Qt::UTC);
}

QString sqlText(const QDateTime &dt) { return dt.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")); }

QString vbText(const QDateTime &dt)
{
    const bool hasTime = dt.time() != QTime(0, 0);
    if (dt.date() == kSerialBase && hasTime)
        return dt.toString(QStringLiteral("H:mm:ss"));
    if (!hasTime)
        return dt.toString(QStringLiteral("yyyy/MM/dd"));
    return dt.toString(QStringLiteral("yyyy/MM/dd H:mm:ss"));
}

QString format(const QDateTime &dt, const QString &qtFormat) { return dt.toString(qtFormat); }

namespace {
// The six numbers of the stored form "yyyy-mm-dd hh:nn:ss", read by
// position from text of either kind; false for any other text or a day
// that does not exist.
template <typename Text, typename CharAt>
bool sqlParts(const Text &t, CharAt at, int (&p)[6])
{
    if (t.size() != 19 || at(t, 4) != '-' || at(t, 7) != '-' || at(t, 10) != ' ' || at(t, 13) != ':' ||
        at(t, 16) != ':')
        return false;
    bool ok = true;
    auto num = [&](int from, int len) {
        int v = 0;
        for (int i = from; i < from + len; ++i) {
            const int c = at(t, i);
            if (c < '0' || c > '9')
                ok = false;
            v = v * 10 + (c - '0');
        }
        return v;
    };
    p[0] = num(0, 4);
    p[1] = num(5, 2);
    p[2] = num(8, 2);
    p[3] = num(11, 2);
    p[4] = num(14, 2);
    p[5] = num(17, 2);
    return ok && QDate::isValid(p[0], p[1], p[2]) && p[3] <= 23 && p[4] <= 59 && p[5] <= 59;
}
} // namespace

bool parseSql(const QString &t, QDateTime &out)
{
    int p[6];
    if (!sqlParts(t, [](const QString &s, int i) { return int(s[i].unicode()); }, p))
        return false;
    out = QDateTime(QDate(p[0], p[1], p[2]), QTime(p[3], p[4], p[5]), Qt::UTC);
    return true;
}

bool parseSqlSeconds(QByteArrayView t, qint64 &secs)
{
    int p[6];
    if (!sqlParts(t, [](QByteArrayView s, int i) { return int(static_cast<unsigned char>(s[i])); }, p))
        return false;
    constexpr qint64 kEpochDay = 2440588; // the Julian day of 1970-01-01
    secs = (QDate(p[0], p[1], p[2]).toJulianDay() - kEpochDay) * 86400 + p[3] * 3600 + p[4] * 60 + p[5];
    return true;
}

namespace {
bool parseTime(const QString &t, QTime &out)
{
    static const QRegularExpression re(QStringLiteral("^(\\d{1,2}):(\\d{1,2})(?::(\\d{1,2}))?$"));
    const auto m = re.match(t);
    if (!m.hasMatch())
        return false;
    const int h = m.captured(1).toInt(), n = m.captured(2).toInt();
    const int s = m.captured(3).isEmpty() ? 0 : m.captured(3).toInt();
    if (h > 23 || n > 59 || s > 59)
        return false;
    out = QTime(h, n, s);
    return true;
}

bool parseDay(const QString &t, QDate &out)
{
    static const QRegularExpression ymd(
        QStringLiteral("^(\\d{1,4})\\s*[/\\-.年]\\s*(\\d{1,2})\\s*[/\\-.月]\\s*(\\d{1,2})\\s*日?$"));
    static const QRegularExpression md(QStringLiteral("^(\\d{1,2})\\s*[/\\-月]\\s*(\\d{1,2})\\s*日?$"));
    int y, m, d;
    auto mm = ymd.match(t);
    if (mm.hasMatch()) {
        y = mm.captured(1).toInt();
        m = mm.captured(2).toInt();
        d = mm.captured(3).toInt();
        if (mm.captured(1).size() <= 2)
            y += (y < 30) ? 2000 : 1900;
    } else {
        mm = md.match(t);
        if (!mm.hasMatch())
            return false;
        y = QDate::currentDate().year();
        m = mm.captured(1).toInt();
        d = mm.captured(2).toInt();
    }
    if (y < 100 || y > 9999)
        return false;
    const QDate date(y, m, d);
    if (!date.isValid())
        return false;
    out = date;
    return true;
}
}

bool parseStorable(const QString &text, QDateTime &out)
{
    QDateTime d;
    if (!parse(text, d) || d.date().year() < 1000 || d.date().year() > 9999)
        return false;
    out = d;
    return true;
}

bool parse(const QString &text, QDateTime &out)
{
    const QString t = narrowAscii(text).trimmed();
    if (t.isEmpty())
        return false;
    QDate day;
    QTime time(0, 0);
    const int sp = t.indexOf(QLatin1Char(' '));
    if (sp > 0) {
        if (!parseDay(t.left(sp).trimmed(), day) || !parseTime(t.mid(sp + 1).trimmed(), time))
            return false;
    } else if (t.contains(QLatin1Char(':'))) {
        if (!parseTime(t, time))
            return false;
        day = kSerialBase;
    } else if (!parseDay(t, day)) {
        return false;
    }
    out = QDateTime(day, time, Qt::UTC);
    return true;
}

} // namespace DateUtil

// ---------------------------------------------------------------- numbers

double leadingNumber(const QString &text)
{
    static const QRegularExpression re(QStringLiteral("^\\s*([+-]?(\\d+(\\.\\d*)?|\\.\\d+))"));
    const QRegularExpressionMatch m = re.match(narrowAscii(text));
    return m.hasMatch() ? m.captured(1).toDouble() : 0;
}

QString narrowAscii(const QString &text)
{
    QString out = text;
    for (QChar &c : out) {
        const ushort u = c.unicode();
        if (u >= 0xFF01 && u <= 0xFF5E)
            c = QChar(u - 0xFEE0);
        else if (u == 0x3000)
            c = QLatin1Char(' ');
        else if (u == 0x2212) // minus sign
            c = QLatin1Char('-');
    }
    return out;
}

bool parseNumber(const QString &text, double &out)
{
    QString t = narrowAscii(text).trimmed();
    if (t.isEmpty())
        return false;
    static const QRegularExpression re(
        QStringLiteral("^[+-]?\\s*(\\d[\\d,]*(\\.\\d*)?|\\.\\d+)([eEdD][+-]?\\d+)?$"));
    if (!re.match(t).hasMatch())
        return false;
    t.remove(QLatin1Char(','));
    t.remove(QLatin1Char(' '));
    t.replace(QLatin1Char('d'), QLatin1Char('e'));
    t.replace(QLatin1Char('D'), QLatin1Char('e'));
    bool ok = false;
    const double d = t.toDouble(&ok);
    if (!ok || !std::isfinite(d))
        return false;
    out = d;
    return true;
}

double roundHalfEven(double x) { return std::nearbyint(x); }

// ---------------------------------------------------------------- Value

Value::Value(const QDateTime &dt) : mType(Date)
{
    mI = dt.isValid() ? QDateTime(dt.date(), dt.time(), Qt::UTC).toSecsSinceEpoch() : 0;
}

Value Value::byte(int b)
{
    if (b < 0 || b > 255)
        raiseError(VbErr::Overflow);
    Value v;
    v.mType = Byte;
    v.mI = b;
    return v;
}

Value Value::int16(int i)
{
    if (i < -32768 || i > 32767)
        raiseError(VbErr::Overflow);
    Value v;
    v.mType = Int16;
    v.mI = i;
    return v;
}

Value Value::int32(qint64 i)
{
    if (i < std::numeric_limits<qint32>::min() || i > std::numeric_limits<qint32>::max())
        raiseError(VbErr::Overflow);
    Value v;
    v.mType = Int32;
    v.mI = i;
    return v;
}

Value Value::unreadable(long errorNumber)
{
    Value v;
    v.mType = Error;
    v.mI = errorNumber;
    return v;
}

void Value::checkReadable() const
{
    if (mType == Error)
        raiseError(long(mI));
}

Value Value::single(float f)
{
    Value v;
    v.mType = Single;
    v.mD = f;
    return v;
}

namespace {
QString doubleText(double d, int digits)
{
    if (d == 0)
        return QStringLiteral("0");
    QString s = QString::number(d, 'g', digits);
    const int e = s.indexOf(QLatin1Char('e'));
    if (e >= 0) {
        // "1.5e-07" -> "1.5E-07", "1e+20" -> "1E+20"
        QString mant = s.left(e);
        QString exp = s.mid(e + 1);
        QChar sign = exp.at(0);
        exp = exp.mid(1);
        while (exp.size() < 2)
            exp.prepend(QLatin1Char('0'));
        s = mant + QLatin1Char('E') + sign + exp;
    }
    return s;
}
}

QString Value::toText() const
{
    switch (mType) {
    case Empty: return QString();
    case Null: raiseError(VbErr::InvalidNull);
    case Bool: return mI ? QStringLiteral("True") : QStringLiteral("False");
    case Byte:
    case Int16:
    case Int32: return QString::number(mI);
    case Cur: return Currency::fromRaw(mI).toString();
    case Single: return doubleText(mD, 7);
    case Double: return doubleText(mD, 15);
    case Date: return DateUtil::vbText(QDateTime::fromSecsSinceEpoch(mI, Qt::UTC));
    case Text: return mS;
    case Error: return mI == VbErr::Overflow ? QStringLiteral("#範囲外#") : QStringLiteral("#エラー#");
    }
    return QString();
}

double Value::toDouble() const
{
    switch (mType) {
    case Empty: return 0;
    case Null: raiseError(VbErr::InvalidNull);
    case Bool: return mI ? -1 : 0;
    case Byte:
    case Int16:
    case Int32: return double(mI);
    case Cur: return Currency::fromRaw(mI).toDouble();
    case Single:
    case Double: return mD;
    case Date: return DateUtil::toSerial(QDateTime::fromSecsSinceEpoch(mI, Qt::UTC));
    case Text: {
        double d;
        if (!parseNumber(mS, d))
            raiseError(VbErr::TypeMismatch);
        return d;
    }
    case Error: checkReadable();
    }
    return 0;
}

namespace {
qint64 roundedWhole(const Value &v, qint64 lo, qint64 hi)
{
    const double d = v.toDouble();
    const double r = roundHalfEven(d);
    if (!(r >= double(lo) && r <= double(hi)))
        raiseError(VbErr::Overflow);
    return qint64(r);
}
}

qint32 Value::toLong() const
{
    if (mType == Int32 || mType == Int16 || mType == Byte)
        return qint32(mI);
    return qint32(roundedWhole(*this, std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max()));
}

qint16 Value::toInt() const { return qint16(roundedWhole(*this, -32768, 32767)); }

quint8 Value::toByte() const { return quint8(roundedWhole(*this, 0, 255)); }

float Value::toSingle() const
{
    const double d = toDouble();
    if (std::fabs(d) > 3.402823466e38)
        raiseError(VbErr::Overflow);
    return float(d);
}

Currency Value::toCurrency() const
{
    if (mType == Cur)
        return Currency::fromRaw(mI);
    if (mType == Int32 || mType == Int16 || mType == Byte || mType == Bool)
        return Currency::fromInt(mType == Bool ? (mI ? -1 : 0) : mI);
    if (mType == Text) {
        // Exact for decimal text: no detour through binary fractions.
        double d;
        if (!parseNumber(mS, d))
            raiseError(VbErr::TypeMismatch);
        return Currency::fromDouble(d);
    }
    return Currency::fromDouble(toDouble());
}

bool Value::toBool() const
{
    switch (mType) {
    case Empty: return false;
    case Null: raiseError(VbErr::InvalidNull);
    case Text: {
        const QString t = narrowAscii(mS).trimmed();
        if (t.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0 || t == QLatin1String("#TRUE#"))
            return true;
        if (t.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0 || t == QLatin1String("#FALSE#"))
            return false;
        double d;
        if (!parseNumber(t, d))
            raiseError(VbErr::TypeMismatch);
        return d != 0;
    }
    case Date: return mI != QDateTime(QDate(1899, 12, 30), QTime(0, 0), Qt::UTC).toSecsSinceEpoch();
    default: return toDouble() != 0;
    }
}

QDateTime Value::toDate() const
{
    switch (mType) {
    case Date: return QDateTime::fromSecsSinceEpoch(mI, Qt::UTC);
    case Null: raiseError(VbErr::InvalidNull);
    case Text: {
        QDateTime dt;
        if (DateUtil::parse(mS, dt))
            return dt;
        double d;
        if (parseNumber(mS, d))
            return DateUtil::fromSerial(d);
        raiseError(VbErr::TypeMismatch);
    }
    default: return DateUtil::fromSerial(toDouble());
    }
}

bool Value::operator==(const Value &o) const
{
    if (mType != o.mType)
        return false;
    switch (mType) {
    case Empty:
    case Null: return true;
    case Single:
    case Double: return mD == o.mD;
    case Text: return mS == o.mS;
    default: return mI == o.mI;
    }
}

QString Value::typeName(Type t)
{
    switch (t) {
    case Empty: return QStringLiteral("Empty");
    case Null: return QStringLiteral("Null");
    case Bool: return QStringLiteral("Bool");
    case Byte: return QStringLiteral("Byte");
    case Int16: return QStringLiteral("Int16");
    case Int32: return QStringLiteral("Int32");
    case Cur: return QStringLiteral("Currency");
    case Single: return QStringLiteral("Single");
    case Double: return QStringLiteral("Double");
    case Date: return QStringLiteral("Date");
    case Text: return QStringLiteral("Text");
    case Error: return QStringLiteral("Error");
    }
    return QString();
}

QString Value::debugText() const
{
    if (mType == Empty || mType == Null)
        return typeName(mType);
    return typeName(mType) + QLatin1Char('(') + toText() + QLatin1Char(')');
}

bool IsNumeric(const Value &v)
{
    switch (v.type()) {
    case Value::Empty: return true;
    case Value::Null: return false;
    case Value::Date: return false;
    case Value::Error: return false;
    case Value::Text: {
        double d;
        return parseNumber(v.toText(), d);
    }
    default: return true;
    }
}

bool isNumber(const Value &v, double n) { return hasValue(v) && IsNumeric(v) && v.toDouble() == n; }

bool IsDate(const Value &v)
{
    if (v.type() == Value::Date)
        return true;
    if (v.type() != Value::Text)
        return false;
    QDateTime dt;
    return DateUtil::parse(v.toText(), dt);
}

QString DateUtil::dayText(const Value &date)
{
    if (!hasValue(date))
        return QString();
    if (date.isDateType() || IsDate(date))
        return format(date.toDate(), QStringLiteral("yyyy/MM/dd"));
    return date.toText();
}
