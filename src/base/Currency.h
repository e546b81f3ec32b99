#pragma once
// Amounts: a 64-bit count of ten-thousandths, like the currency type of the
// platform the rules were written for. Conversion from floating point rounds
// half to even at the fourth decimal; leaving the range is the overflow error.

#include <QString>
#include <cstdint>

class Currency {
public:
    static constexpr int64_t Scale = 10000;

    constexpr Currency() : mRaw(0) {}
    static constexpr Currency fromRaw(int64_t raw) { return Currency(raw); }
    static Currency fromInt(int64_t whole);
    static Currency fromDouble(double value);

    constexpr int64_t raw() const { return mRaw; }
    double toDouble() const { return double(mRaw) / Scale; }
    // "12.5", "-3", "0.0001": no trailing zeros, "." as the decimal point.
    QString toString() const;

    Currency operator+(Currency o) const;
    Currency operator-(Currency o) const;
    Currency operator-() const;
    // Product of two amounts, rounded half to even to four places.
    Currency operator*(Currency o) const;
    Currency &operator+=(Currency o) { return *this = *this + o; }
    Currency &operator-=(Currency o) { return *this = *this - o; }

    constexpr bool operator==(Currency o) const { return mRaw == o.mRaw; }
    constexpr bool operator!=(Currency o) const { return mRaw != o.mRaw; }
    constexpr bool operator<(Currency o) const { return mRaw < o.mRaw; }
    constexpr bool operator>(Currency o) const { return mRaw > o.mRaw; }
    constexpr bool operator<=(Currency o) const { return mRaw <= o.mRaw; }
    constexpr bool operator>=(Currency o) const { return mRaw >= o.mRaw; }

private:
    constexpr explicit Currency(int64_t raw) : mRaw(raw) {}
    int64_t mRaw;
};
