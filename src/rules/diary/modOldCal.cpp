#include "rules/diary/modOldCal.h"

#include "base/AppError.h"
#include "base/Value.h"
#include "store/Database.h"
#include "store/Stmt.h"

#include <cmath>

namespace modOldCal {

const char *const TermNames[24] = {
    "春分", "清明", "穀雨", "立夏", "小満", "芒種", "夏至", "小暑", "大暑", "立秋", "処暑", "白露",
    "秋分", "寒露", "霜降", "立冬", "小雪", "大雪", "冬至", "小寒", "大寒", "立春", "雨水", "啓蟄",
};

const char *const SixDayNames[6] = {"大安", "赤口", "先勝", "友引", "先負", "仏滅"};

namespace {

// Degrees to radians, the program's constant as it was stored.
constexpr double K = 0.017453292519943278;
// Japan Standard Time ahead of universal time, in days.
constexpr double JST = 9.0 / 24.0;
// Convergence limit of the searches: one second.
constexpr double OneSecond = 1.0 / 86400.0;

struct Wave {
    double a, b, c;
};

constexpr Wave SunWaves[14] = {
    {0.0004, 31557, 161},  {0.0004, 29930, 48},     {0.0005, 2281, 221},  {0.0005, 155, 118},
    {0.0006, 33718, 316},  {0.0007, 9038, 64},      {0.0007, 3035, 110},  {0.0007, 65929, 45},
    {0.0013, 22519, 352},  {0.0015, 45038, 254},    {0.0018, 445267, 208}, {0.0018, 19, 159},
    {0.002, 32964, 158},   {0.02, 71998.1, 265.1},
};

constexpr Wave MoonWaves[61] = {
    {0.0003, 2322131.0, 191.0},  {0.0003, 4067.0, 70.0},       {0.0003, 549197.0, 220.0},
    {0.0003, 1808933.0, 58.0},   {0.0003, 349472.0, 337.0},    {0.0003, 381404.0, 354.0},
    {0.0003, 958465.0, 340.0},   {0.0004, 12006.0, 187.0},     {0.0004, 39871.0, 223.0},
    {0.0005, 509131.0, 242.0},   {0.0005, 1745069.0, 24.0},    {0.0005, 1908795.0, 90.0},
    {0.0006, 2258267.0, 156.0},  {0.0006, 111869.0, 38.0},     {0.0007, 27864.0, 127.0},
    {0.0007, 485333.0, 186.0},   {0.0007, 405201.0, 50.0},     {0.0007, 790672.0, 114.0},
    {0.0008, 1403732.0, 98.0},   {0.0009, 858602.0, 129.0},    {0.0011, 1920802.0, 186.0},
    {0.0012, 1267871.0, 249.0},  {0.0016, 1856938.0, 152.0},   {0.0018, 401329.0, 274.0},
    {0.0021, 341337.0, 16.0},    {0.0021, 71998.0, 85.0},      {0.0021, 990397.0, 357.0},
    {0.0022, 818536.0, 151.0},   {0.0023, 922466.0, 163.0},    {0.0024, 99863.0, 122.0},
    {0.0026, 1379739.0, 17.0},   {0.0027, 918399.0, 182.0},    {0.0028, 1934.0, 145.0},
    {0.0037, 541062.0, 259.0},   {0.0038, 1781068.0, 21.0},    {0.004, 133.0, 29.0},
    {0.004, 1844932.0, 56.0},    {0.004, 1331734.0, 283.0},    {0.005, 481266.0, 205.0},
    {0.0052, 31932.0, 107.0},    {0.0068, 926533.0, 323.0},    {0.0079, 449334.0, 188.0},
    {0.0085, 826671.0, 111.0},   {0.01, 1431597.0, 315.0},     {0.0107, 1303870.0, 246.0},
    {0.011, 489205.0, 142.0},    {0.0125, 1443603.0, 52.0},    {0.0154, 75870.0, 41.0},
    {0.0304, 513197.9, 222.5},   {0.0347, 445267.1, 27.9},     {0.0409, 441199.8, 47.4},
    {0.0458, 854535.2, 148.2},   {0.0533, 1367733.1, 280.7},   {0.0571, 377336.3, 13.2},
    {0.0588, 63863.5, 124.2},    {0.1144, 966404.0, 276.5},    {0.1851, 35999.05, 87.53},
    {0.2136, 954397.74, 179.93}, {0.6583, 890534.22, 145.7},   {1.274, 413335.35, 10.74},
    {6.2888, 477198.868, 44.963},
};

inline double INT(double x) { return std::floor(x); }

// Centuries of the moment tm1 + tm2, tm1 whole and tm2 the fraction already
// shifted back to universal time.
inline double centuries(double tm1, double tm2)
{
    return (tm2 + 0.5) / 36525.0 + (tm1 - 2451545.0) / 36525.0;
}

template <std::size_t N>
double series(const Wave (&waves)[N], double t)
{
    double th = 0;
    for (const Wave &w : waves)
        th += w.a * std::cos(K * WrapAngle(w.b * t + w.c));
    return th;
}

Term prevTerm(double tm, double w)
{
    double tm1 = INT(tm);
    double tm2 = tm - tm1 - JST;
    const double l0 = w * INT(SunLongitude(centuries(tm1, tm2)) / w);
    double dt1 = 0, dt2 = 1;
    while (std::fabs(dt1 + dt2) > OneSecond) {
        double d = SunLongitude(centuries(tm1, tm2)) - l0;
        if (d > 180)
            d -= 360;
        else if (d < -180)
            d += 360;
        dt1 = INT(d * 365.2 / 360);
        dt2 = d * 365.2 / 360 - dt1;
        tm1 -= dt1;
        tm2 -= dt2;
        if (tm2 < 0) {
            tm2 += 1;
            tm1 -= 1;
        }
    }
    return {tm2 + JST + tm1, l0};
}

[[noreturn]] void subscriptOutOfRange()
{
    throw AppError(VbErr::Subscript, standardErrorText(VbErr::Subscript));
}

} // namespace

double WrapAngle(double a)
{
    if (a < 0) {
        double b = -a;
        b = b - 360 * INT(b / 360);
        return 360 - b;
    }
    return a - 360 * INT(a / 360);
}

double DateToDayNo(const QDateTime &date)
{
    const QDate d = date.date();
    const QTime tod = date.time();
    double y = d.year(), m = d.month();
    const double day = d.day(), h = tod.hour(), n = tod.minute(), s = tod.second();
    if (m < 3) {
        y -= 1;
        m += 12;
    }
    // The month term is not cut to a whole number: a midnight carries a
    // fraction from .08 (February) to .95 (July). INT gives the true day.
    return INT(365.25 * y) + INT(y / 400) - INT(y / 100) + 30.59 * (m - 2) + 1721088 + day +
           (s / 3600 + n / 60 + h) / 24;
}

CivilDate DayNoToDate(double tm)
{
    const double x0 = INT(tm + 68570);
    const double x1 = INT(x0 / 36524.25);
    const double x2 = x0 - INT(36524.25 * x1 + 0.75);
    const double x3 = INT((x2 + 1) / 365.2425);
    const double x4 = x2 - INT(365.25 * x3) + 31;
    const double x5 = INT(x4 / 30.59);
    const double x6 = INT(x5 / 11);

    CivilDate r{};
    r[2] = int(x4 - INT(30.59 * x5));
    r[1] = int(x5 - 12 * x6 + 2);
    r[0] = int(100 * (x1 - 49) + x3 + x6);
    if (r[1] == 2 && r[2] > 28) {
        // Century years count as leap years here unless divisible by 400 too;
        // that is how the program has always done it.
        if (r[0] % 400 == 0 && r[0] % 100 == 0)
            r[2] = 29;
        else if (r[0] % 4 == 0)
            r[2] = 29;
        else
            r[2] = 28;
    }
    const double f = (tm - INT(tm)) * 86400;
    const double hour = INT(f / 3600);
    const double minute = INT((f - 3600 * hour) / 60);
    const double second = INT(f - 3600 * hour - 60 * minute);
    r[3] = int(hour);
    r[4] = int(minute);
    r[5] = int(second);
    return r;
}

double SunLongitude(double t)
{
    double th = series(SunWaves, t);
    double a = WrapAngle(35999.05 * t + 267.52);
    th = th - 0.0048 * t * std::cos(K * a);
    th = th + 1.9147 * std::cos(K * a);
    a = WrapAngle(36000.7695 * t);
    a = WrapAngle(a + 280.4659);
    return WrapAngle(th + a);
}

double MoonLongitude(double t)
{
    const double th = series(MoonWaves, t);
    double a = WrapAngle(481267.8809 * t);
    a = WrapAngle(a + 218.3162);
    return WrapAngle(th + a);
}

Term PrevTerm30(double tm) { return prevTerm(tm, 30); }
Term PrevTerm90(double tm) { return prevTerm(tm, 90); }

double PrevNewMoon(double tm)
{
    double tm1 = INT(tm);
    double tm2 = tm - tm1 - JST;
    double dt1 = 0, dt2 = 1;
    int c = 1;
    do {
        const double t = centuries(tm1, tm2);
        const double s = SunLongitude(t);
        const double m = MoonLongitude(t);
        double d = m - s;
        if (c == 1 && d < 0)
            d = WrapAngle(d);
        else if (s >= 0 && s <= 20 && m >= 300)
            d = 360 - WrapAngle(d);
        else if (std::fabs(d) > 40)
            d = WrapAngle(d);
        dt1 = INT(d * 29.530589 / 360);
        dt2 = d * 29.530589 / 360 - dt1;
        tm1 -= dt1;
        tm2 -= dt2;
        if (tm2 < 0) {
            tm2 += 1;
            tm1 -= 1;
        }
        if (std::fabs(dt1 + dt2) > OneSecond) {
            if (c == 15) {
                // start again lower down
                tm1 = INT(tm - 26);
                tm2 = 0;
            } else if (c > 30) {
                // give up: the moment asked for, in local time
                tm1 = tm;
                tm2 = 0;
                break;
            }
        }
        ++c;
    } while (std::fabs(dt1 + dt2) > OneSecond);
    return tm2 + tm1 + JST;
}

OldDate OldDateOf(const QDateTime &date)
{
    const double tm0 = DateToDayNo(date);
    const double day0 = INT(tm0);

    // The last equinox or solstice, then the three solar terms after it.
    Term term[4];
    term[0] = PrevTerm90(tm0);
    for (int i = 1; i <= 3; ++i)
        term[i] = PrevTerm30(term[i - 1].dayNo + 32);

    double moon[5];
    moon[0] = PrevNewMoon(term[0].dayNo);
    for (int i = 1; i <= 4; ++i) {
        moon[i] = PrevNewMoon(moon[i - 1] + 30);
        if (std::fabs(INT(moon[i - 1]) - INT(moon[i])) <= 26)
            moon[i] = PrevNewMoon(moon[i - 1] + 35);
    }

    if (INT(moon[1]) <= INT(term[0].dayNo)) {
        // The second new moon falls on or before the day of the equinox or
        // solstice. The new moons would be moved down one place by a loop that
        // reads one past the last of them: the subscript error stands, for
        // every day up to the next equinox or solstice.
        subscriptOutOfRange();
    } else if (INT(moon[0]) > INT(term[0].dayNo)) {
        // The first new moon came late: one more before it.
        for (int i = 4; i >= 1; --i)
            moon[i] = moon[i - 1];
        moon[0] = PrevNewMoon(moon[0] - 27);
    }

    // A leap month lies within when five new moons fit before the third term.
    int leap = INT(moon[4]) <= INT(term[3].dayNo) ? 1 : 0;

    struct Month {
        int number;
        int leap;
        double day;
    } month[5];
    // Only 2, 5, 8 or 11 here; no wrap.
    month[0] = {int(INT(term[0].longitude / 30)) + 2, 0, INT(moon[0])};
    for (int i = 1; i <= 4; ++i) {
        if (leap == 1 && i != 1) {
            const double termDay = INT(term[i - 1].dayNo);
            const bool holdsTerm = INT(moon[i - 1]) < termDay && INT(moon[i]) > termDay;
            if (!holdsTerm) {
                month[i - 1] = {month[i - 2].number, 1, INT(moon[i - 1])};
                leap = 0;
            }
        }
        int number = month[i - 1].number + 1;
        if (number > 12)
            number -= 12;
        month[i] = {number, 0, INT(moon[i])};
    }

    int i = 0;
    int state = 0;
    for (; i <= 4; ++i) {
        if (day0 < month[i].day) {
            state = 1;
            break;
        }
        if (day0 == month[i].day) {
            state = 2;
            break;
        }
    }
    if (state == 0 || state == 1)
        --i;
    if (i < 0)
        subscriptOutOfRange();

    OldDate r{};
    r[OldLeap] = std::int16_t(month[i].leap);
    r[OldMonth] = std::int16_t(month[i].number);
    r[OldDay] = std::int16_t(day0 - month[i].day + 1);
    const CivilDate civil = DayNoToDate(tm0);
    int year = civil[0];
    if (r[OldMonth] > 9 && r[OldMonth] > civil[1])
        --year;
    r[OldYear] = std::int16_t(year);
    return r;
}

QString OldDateText(const QDateTime &date) { return OldDateText(OldDateOf(date)); }

QString OldDateText(const OldDate &d)
{
    QString s = QStringLiteral("旧");
    if (d[OldLeap] == 1)
        s += QStringLiteral("閏");
    return s + QString::number(d[OldMonth]) + QLatin1Char('/') + QString::number(d[OldDay]);
}

int SixDayIndex(const QDateTime &date) { return SixDayIndex(OldDateOf(date)); }

int SixDayIndex(const OldDate &d) { return (d[OldMonth] + d[OldDay]) % 6; }

int DayCycleIndex(const QDateTime &date)
{
    double tm = DateToDayNo(date);
    // The day fraction goes in a second time; since it comes from the month
    // term, the index runs one ahead in March, May, July, October and
    // December. That is kept.
    tm = tm + (tm - INT(tm)) + JST;
    const long long whole = static_cast<long long>(roundHalfEven(tm + 49));
    return int(whole % 60) + 1;
}

} // namespace modOldCal

QString GetEtoYm(const QDateTime &date)
{
    if (!gMST)
        OpenMst();
    const int index = modOldCal::DayCycleIndex(date);
    if (!gWORK)
        throw AppError(91, QStringLiteral("オブジェクト変数または With ブロック変数が設定されていません。"));
    const Value v = gWORK->DLookup(QStringLiteral("ETO_YM"), QStringLiteral("L_ETO"),
                                   Stmt("ID=?").num(index));
    return v.isNull() ? QString() : v.toText();
}
