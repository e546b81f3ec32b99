#pragma once
// What a cell of a row, a record field or a look-up result holds: Empty, Null,
// or a typed value. The conversions follow the platform the farm program was
// first written for, because the screens' rules are stated in its terms:
//
//  * toText()      "CStr": Null is an error (94); Empty is ""; booleans are
//                  "True"/"False"; doubles have up to 15 significant digits
//                  ("1E+20", "1.5E-07"); dates are "yyyy/mm/dd", with
//                  " h:mm:ss" when there is a time.
//  * toDouble(), toLong(), toInt(), toByte(), toCurrency(), toSingle()
//                  Null is an error (94); Empty is 0; text must read as a
//                  number (isNumeric) or the error is 13; whole-number
//                  conversions round half to even and fail with 6 out of range;
//                  True is -1.
//  * toBool()      numbers: not 0; text: "True"/"False" in any case, or a number.
//  * toDate()      dates; text that reads as a date (isDate); numbers as day
//                  serials from 1899-12-30.
//
// Text reads as a number after full-width digits and signs are made narrow,
// blanks are trimmed and thousands separators dropped: "１,２００" is 1200.
// Text reads as a date in the forms "2024/1/5", "2024-01-05", "2024年1月5日",
// "24/1/5" (years 30-99 are 19xx, 00-29 20xx), "1/5" (this year), each with an
// optional time "h:mm[:ss]", or a time alone.
//
// A cell that the store could not read as its column's type (an amount beyond
// the currency range, written by an older version) is an Error value: it
// shows as a mark ("#範囲外#") where it is shown as text, is no number and no
// date, and raises its error (6) when it is used as one or saved.

#include "base/Currency.h"

#include <QByteArrayView>
#include <QDateTime>
#include <QString>

// Local date and time without time zone (held as a UTC QDateTime so that no
// daylight-saving rule can move it).
class Value;

namespace DateUtil {
QDateTime make(int y, int m, int d, int h = 0, int n = 0, int s = 0);
QDateTime fromDate(const QDate &d);
QDateTime now();                      // the wall clock, to the second
QDateTime today();                    // today at 0:00
QDateTime addDays(const QDateTime &dt, int days);
double toSerial(const QDateTime &dt); // days since 1899-12-30, time as fraction
QDateTime fromSerial(double serial);
QString sqlText(const QDateTime &dt); // "yyyy-mm-dd hh:nn:ss"
QString vbText(const QDateTime &dt);  // "yyyy/mm/dd[ h:nn:ss]"
QString format(const QDateTime &dt, const QString &qtFormat);
// Reads a date as typed by a user (see the header comment). False when it is none.
bool parse(const QString &text, QDateTime &out);
// A date as the user reads it, "yyyy/mm/dd"; a text that is no date as it
// stands; "" for an empty value.
QString dayText(const Value &date);
// parse(), and only a date the tables can hold: years 1000 to 9999.
bool parseStorable(const QString &text, QDateTime &out);
// Reads the stored form "yyyy-mm-dd hh:nn:ss" by position (fast: rows carry
// many dates). False for any other text.
bool parseSql(const QString &text, QDateTime &out);
// The same from the stored UTF-8 bytes, as the seconds since 1970-01-01
// that a date value keeps.
bool parseSqlSeconds(QByteArrayView text, qint64 &secs);
}

// Turns full-width ASCII (digits, letters, signs, the ideographic space) into
// the narrow forms.
QString narrowAscii(const QString &text);
// Reads a number as the numeric conversions do; false when the text is none.
bool parseNumber(const QString &text, double &out);
// The leading number of a text ("12x" is 12, "abc" and "" are 0, full-width
// digits count), as a number typed into a filter or a code field is read.
double leadingNumber(const QString &text);

class Value {
public:
    enum Type { Empty, Null, Bool, Byte, Int16, Int32, Cur, Single, Double, Date, Text, Error };

    Value() : mType(Empty) {}
    static Value null() { Value v; v.mType = Null; return v; }
    Value(bool b) : mType(Bool) { mI = b ? 1 : 0; }
    Value(int i) : mType(Int32) { mI = i; }
    Value(double d) : mType(Double) { mD = d; }
    Value(Currency c) : mType(Cur) { mI = c.raw(); }
    Value(const QDateTime &dt);
    Value(const QString &s) : mType(Text), mS(s) {}
    Value(const char *s) : mType(Text), mS(QString::fromUtf8(s)) {}
    static Value byte(int b);
    static Value int16(int i);
    static Value int32(qint64 i); // fails with 6 outside the 32-bit range
    static Value single(float f);
    // A date and time given as seconds since 1970-01-01 00:00 (UTC).
    static Value dateAt(qint64 secs)
    {
        Value v;
        v.mType = Date;
        v.mI = secs;
        return v;
    }
    // A cell that could not be read; it raises errorNumber when used.
    static Value unreadable(long errorNumber);

    Type type() const { return mType; }
    bool isEmpty() const { return mType == Empty; }
    bool isNull() const { return mType == Null; }
    bool isText() const { return mType == Text; }
    bool isDateType() const { return mType == Date; }
    bool isUnreadable() const { return mType == Error; }
    // Raises the error of an unreadable cell; does nothing for any other value.
    void checkReadable() const;
    bool isNumberType() const
    {
        return mType == Bool || mType == Byte || mType == Int16 || mType == Int32 || mType == Cur ||
               mType == Single || mType == Double;
    }

    QString toText() const;
    double toDouble() const;
    qint32 toLong() const;
    qint16 toInt() const;
    quint8 toByte() const;
    float toSingle() const;
    Currency toCurrency() const;
    bool toBool() const;
    QDateTime toDate() const;

    // Same type and same value (Empty equals Empty, Null equals Null).
    bool operator==(const Value &o) const;
    bool operator!=(const Value &o) const { return !(*this == o); }
    // A readable form for tests and traces: Empty, Null, Text("x"), Int32(5) ...
    QString debugText() const;
    static QString typeName(Type t);

private:
    Type mType;
    qint64 mI = 0;   // Bool, Byte, Int16, Int32, Currency (raw), Date (seconds since epoch)
    double mD = 0;   // Single, Double
    QString mS;      // Text
};

// A typed value: neither Null nor Empty.
inline bool hasValue(const Value &v) { return !v.isNull() && !v.isEmpty(); }
// The value as a field shows it: Null and Empty as "".
inline QString textOf(const Value &v) { return hasValue(v) ? v.toText() : QString(); }
// What a field left empty stores: Null; any other text as typed.
inline Value textOrNull(const QString &t) { return t.isEmpty() ? Value::null() : Value(t); }
// A value that reads as a number equal to n (Null, Empty and text that is no
// number are none).
bool isNumber(const Value &v, double n);

// default when value is Null, else value; Empty stays Empty.
inline Value Nz(const Value &value, const Value &def = Value(QString()))
{
    return value.isNull() ? def : value;
}
bool IsNumeric(const Value &v);
bool IsDate(const Value &v);
// The whole-number rounding of the conversions: half to even.
double roundHalfEven(double x);
