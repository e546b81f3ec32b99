#pragma once
// The old Japanese lunisolar calendar: from a civil date to the old date, the
// six-day name and the place in the sexagenary cycle. New moons and solar
// terms are computed from trigonometric series for any date, with Japan
// Standard Time (9 hours ahead of universal time) fixed in the formulas.
// Nothing is kept between calls.
//
// Two kinds of time value are used:
//  * a day number: the whole part counts days, the whole number falling at
//    0:00 local time (see DateToDayNo for the fraction a midnight carries);
//  * Julian centuries from the epoch 2451545, universal time.

#include <QDateTime>
#include <QString>

#include <array>
#include <cstdint>

namespace modOldCal {

// The old date: old year, leap flag (1 in a leap month), old month, old day.
using OldDate = std::array<std::int16_t, 4>;
enum OldDatePart { OldYear = 0, OldLeap = 1, OldMonth = 2, OldDay = 3 };

// Year, month, day, hour, minute, second.
using CivilDate = std::array<int, 6>;

// A solar term: its day number and its solar longitude in degrees.
struct Term {
    double dayNo = 0;
    double longitude = 0;
};

// The 24 solar terms from longitude 0 in steps of 15 degrees.
extern const char *const TermNames[24];
// The six-day names by SixDayIndex: 大安, 赤口, 先勝, 友引, 先負, 仏滅.
extern const char *const SixDayNames[6];

// The old date of a date. Raises the subscript range error (9) for the days
// whose computation starts at an equinox or solstice on or after the second
// new moon (up to the next equinox or solstice).
OldDate OldDateOf(const QDateTime &date);
// "旧4/7", "旧閏5/1".
QString OldDateText(const QDateTime &date);
QString OldDateText(const OldDate &old);
// (old month + old day) mod 6; the leap flag plays no part.
int SixDayIndex(const QDateTime &date);
int SixDayIndex(const OldDate &old);
// 1 to 60 (runs one ahead in some months; see the source).
int DayCycleIndex(const QDateTime &date);

double DateToDayNo(const QDateTime &date);
CivilDate DayNoToDate(double tm);
// Into 0..360; a negative whole turn gives 360.
double WrapAngle(double a);
double SunLongitude(double t);
double MoonLongitude(double t);
// The last moment at or before tm when the solar longitude was a multiple of
// 30 (90) degrees, and that longitude.
Term PrevTerm30(double tm);
Term PrevTerm90(double tm);
// The day number of the new moon before tm.
double PrevNewMoon(double tm);

} // namespace modOldCal

// One of the common functions: the sexagenary name of a date, read from L_ETO
// of the work database through gWORK (gMST is opened first when missing).
// A missing row gives "".
QString GetEtoYm(const QDateTime &date);
