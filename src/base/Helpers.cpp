#include "base/Helpers.h"

#include "base/AppError.h"

#include <QByteArray>
#include <QLocale>
#include <QSysInfo>

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <iconv.h>

namespace {

// A decimal: digits times ten to the power exp.
struct Decimal {
    __int128 digits = 0;
    int exp = 0;
};

// The double as a decimal of 15 significant digits, as the conversion of a
// floating-point value to the decimal type does.
Decimal toDecimal15(double x)
{
    const QByteArray e = QByteArray::number(x, 'e', 14);
    const int ePos = e.indexOf('e');
    QByteArray mant = e.left(ePos);
    int exp = e.mid(ePos + 1).toInt();
    mant.replace(".", "");
    Decimal d;
    for (char c : mant)
        d.digits = d.digits * 10 + (c - '0');
    d.exp = exp - (int(mant.size()) - 1);
    return d;
}

__int128 pow10i(int n)
{
    __int128 p = 1;
    for (int i = 0; i < n; ++i)
        p *= 10;
    return p;
}

QString gCompNameOverride;
void (*gEndHandler)(int) = nullptr;

} // namespace

Currency RoundEx(const Value &value, int mode, int digits)
{
    try {
        if (mode == 0)
            mode = 3;
        if (value.isNull())
            return Currency();
        const double v = value.toDouble();
        const double x = std::fabs(v) * std::pow(10.0, digits);
        if (!std::isfinite(x) || x > 7.9e28)
            raiseError(VbErr::Overflow);
        Decimal d = toDecimal15(x);
        // whole part and whether a fraction remains
        __int128 whole;
        bool fraction = false;
        bool halfOrMore = false;
        if (d.exp >= 0) {
            whole = d.digits * pow10i(d.exp);
        } else if (d.exp < -30) {
            whole = 0;
            fraction = d.digits != 0;
            halfOrMore = false;
        } else {
            const __int128 den = pow10i(-d.exp);
            whole = d.digits / den;
            const __int128 rest = d.digits % den;
            fraction = rest != 0;
            halfOrMore = rest * 2 >= den;
        }
        if (mode == 2) {
            if (fraction)
                whole += 1;
        } else if (mode != 1) {
            if (halfOrMore)
                whole += 1;
        }
        // whole / 10^digits as currency (four places, half to even)
        __int128 raw; // ten-thousandths
        const int shift = 4 - digits;
        if (shift >= 0) {
            raw = whole * pow10i(shift);
        } else {
            const __int128 den = pow10i(-shift);
            raw = whole / den;
            const __int128 r = whole % den;
            if (r * 2 > den || (r * 2 == den && (raw % 2 != 0)))
                raw += 1;
        }
        if (v < 0)
            raw = -raw;
        if (raw > __int128(INT64_MAX) || raw < __int128(INT64_MIN))
            raiseError(VbErr::Overflow);
        return Currency::fromRaw(int64_t(raw));
    } catch (const AppError &) {
        return Currency();
    }
}

Currency RoundAmount(double value)
{
    // the largest the rounding can make it
    const double up = std::fabs(value) + 0.5;
    Currency::fromDouble(value < 0 ? -up : up);
    return RoundEx(Value(value), 3, 0);
}

QString GetEanCheck(const QString &code)
{
    if (code.size() != 12)
        return QString();
    int total = 0;
    for (int pos = 1; pos <= 12; ++pos) {
        const QChar c = code.at(pos - 1);
        if (!c.isDigit() || c.unicode() > 0x7F)
            raiseError(VbErr::TypeMismatch);
        const int d = c.digitValue();
        total += (pos % 2 == 0) ? d * 3 : d;
    }
    const QString check = QString::number(10 - total % 10);
    return code + check.right(1);
}

double GetUnitRate(int fromUnit, int toUnit)
{
    if (fromUnit == toUnit || fromUnit == 0 || toUnit == 0)
        return 1;
    if (fromUnit < 1 || fromUnit > 5 || toUnit < 1 || toUnit > 5)
        return 0;
    // Rows: from; columns: to. The pair 3 -> 2 is computed in 16-bit
    // arithmetic (1000 * 1000) and overflows; that is kept.
    static const double table[5][5] = {
        {0, 1000, 1.0 / 1000, 0, 0},
        {1.0 / 1000, 0, 1.0 / 1000000, 0, 0},
        {1000, -1, 0, 0, 0},
        {0, 0, 0, 0, 1000},
        {0, 0, 0, 1.0 / 1000, 0},
    };
    const double r = table[fromUnit - 1][toUnit - 1];
    if (r < 0)
        raiseError(VbErr::Overflow);
    return r;
}

QString GetCompName()
{
    if (!gCompNameOverride.isNull())
        return gCompNameOverride;
    QString host = QSysInfo::machineHostName();
    const int dot = host.indexOf(QLatin1Char('.'));
    if (dot > 0)
        host.truncate(dot);
    return host.left(15).toUpper();
}

void setCompNameForTests(const QString &name) { gCompNameOverride = name; }

void EndProcessNow(int code)
{
    if (gEndHandler)
        gEndHandler(code);
    std::exit(code);
}

void setEndProcessHandler(void (*handler)(int)) { gEndHandler = handler; }

namespace {

// Half-width katakana U+FF66 .. U+FF9D in full width.
const char16_t kKana[] = {
    0x30F2, 0x30A1, 0x30A3, 0x30A5, 0x30A7, 0x30A9, 0x30E3, 0x30E5, 0x30E7, 0x30C3, 0x30FC, 0x30A2, 0x30A4, 0x30A6,
    0x30A8, 0x30AA, 0x30AB, 0x30AD, 0x30AF, 0x30B1, 0x30B3, 0x30B5, 0x30B7, 0x30B9, 0x30BB, 0x30BD, 0x30BF, 0x30C1,
    0x30C4, 0x30C6, 0x30C8, 0x30CA, 0x30CB, 0x30CC, 0x30CD, 0x30CE, 0x30CF, 0x30D2, 0x30D5, 0x30D8, 0x30DB, 0x30DE,
    0x30DF, 0x30E0, 0x30E1, 0x30E2, 0x30E4, 0x30E6, 0x30E8, 0x30E9, 0x30EA, 0x30EB, 0x30EC, 0x30ED, 0x30EF, 0x30F3,
};

bool takesVoicedMark(char16_t c)
{
    return (c >= 0x30AB && c <= 0x30C8 && c != 0x30C3) || (c >= 0x30CF && c <= 0x30DB && (c - 0x30CF) % 3 == 0) ||
           c == 0x30A6;
}
bool takesSemiVoicedMark(char16_t c) { return c >= 0x30CF && c <= 0x30DB && (c - 0x30CF) % 3 == 0; }

} // namespace

QString toWide(const QString &text)
{
    QString out;
    out.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const char16_t c = text.at(i).unicode();
        if (c == 0x20) {
            out += QChar(0x3000);
        } else if (c > 0x20 && c < 0x7F) {
            // As a Japanese code page widens them: the backslash is the yen
            // sign there, the tilde an overline, and quotes become the
            // typographic ones.
            switch (c) {
            case u'\\': out += QChar(0xFFE5); break;
            case u'~': out += QChar(0xFFE3); break;
            case u'\'': out += QChar(0x2019); break;
            case u'"': out += QChar(0x201D); break;
            case u'`': out += QChar(0x2018); break;
            default: out += QChar(char16_t(c + 0xFEE0)); break;
            }
        } else if (c >= 0xFF66 && c <= 0xFF9D) {
            char16_t k = kKana[c - 0xFF66];
            const char16_t next = i + 1 < text.size() ? text.at(i + 1).unicode() : 0;
            if (next == 0xFF9E && takesVoicedMark(k)) {
                k = k == 0x30A6 ? char16_t(0x30F4) : char16_t(k + 1);
                ++i;
            } else if (next == 0xFF9F && takesSemiVoicedMark(k)) {
                k = char16_t(k + 2);
                ++i;
            }
            out += QChar(k);
        } else {
            switch (c) {
            case 0xFF61: out += QChar(0x3002); break;
            case 0xFF62: out += QChar(0x300C); break;
            case 0xFF63: out += QChar(0x300D); break;
            case 0xFF64: out += QChar(0x3001); break;
            case 0xFF65: out += QChar(0x30FB); break;
            case 0xFF9E: out += QChar(0x309B); break;
            case 0xFF9F: out += QChar(0x309C); break;
            default: out += QChar(c); break;
            }
        }
    }
    return out;
}

QByteArray toSystemCodePage(const QString &text)
{
    // One character at a time, so that one the code page lacks becomes "?"
    // and the rest goes on.
    iconv_t cd = iconv_open("CP932", "UTF-32LE");
    if (cd == iconv_t(-1))
        return text.toUtf8(); // a system without the code page: the text is not lost
    QByteArray out;
    out.reserve(text.size() * 2);
    for (const char32_t cp : text.toUcs4()) {
        char in[4] = {char(cp & 0xFF), char((cp >> 8) & 0xFF), char((cp >> 16) & 0xFF), char((cp >> 24) & 0xFF)};
        char buf[8];
        char *src = in, *dst = buf;
        size_t inLeft = sizeof in, outLeft = sizeof buf;
        if (iconv(cd, &src, &inLeft, &dst, &outLeft) == size_t(-1)) {
            iconv(cd, nullptr, nullptr, nullptr, nullptr);
            out += '?';
            continue;
        }
        out.append(buf, int(dst - buf));
    }
    iconv_close(cd);
    return out;
}

int charCount(const QString &text)
{
    int n = 0;
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        ++n;
    }
    return n;
}

QString leftChars(const QString &text, int count)
{
    int i = 0;
    for (int n = 0; n < count && i < text.size(); ++n)
        i += (text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) ? 2 : 1;
    return text.left(i);
}
