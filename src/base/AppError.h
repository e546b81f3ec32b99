#pragma once
// The one error type of the program. Every failure that a caller may trap
// (an engine error, a run-time conversion error, a fault of a layout) reaches
// it as a number and a description, and the screens show both through the
// common trap: "(number) description".

#include <QString>
#include <exception>

class AppError : public std::exception {
public:
    AppError(long number, QString description)
        : mNumber(number), mDescription(std::move(description)),
          mUtf8(QStringLiteral("(%1) %2").arg(number).arg(mDescription).toUtf8()) {}

    long number() const { return mNumber; }
    const QString &description() const { return mDescription; }
    // "(number) description", the form the error trap shows.
    QString text() const { return QStringLiteral("(%1)%2").arg(mNumber).arg(mDescription); }
    const char *what() const noexcept override { return mUtf8.constData(); }

private:
    long mNumber;
    QString mDescription;
    QByteArray mUtf8;
};

// The run-time errors of the original platform keep their classic numbers
// and Japanese texts.
namespace VbErr {
constexpr long InvalidCall = 5;
constexpr long Overflow = 6;
constexpr long Subscript = 9;
constexpr long DivByZero = 11;
constexpr long TypeMismatch = 13;
constexpr long InvalidNull = 94;
// Errors of the record layer, with the numbers the data engine used.
constexpr long NoCurrentRecord = 3021;
constexpr long ItemNotFound = 3265;
constexpr long DateSyntax = 3075;
constexpr long CharsAfterEnd = 3142;
constexpr long FieldTooSmall = 3163;
constexpr long NotUpdatable = 3251;
constexpr long NotConnected = 3709;
constexpr long OldFileFormat = 3343;
constexpr long FileNotFound = 3024;
// A save found its record saved by another computer since it was opened.
constexpr long RecordChanged = 3197;
}

// Throws AppError with the number's standard text (and an optional detail).
[[noreturn]] void raiseError(long number, const QString &detail = QString());
QString standardErrorText(long number);
