// Values, amounts and their conversions: the rules every screen's checks and
// every posted amount rely on.

#include "base/AppError.h"
#include "base/Value.h"

#include <QtTest/QTest>

namespace {
long errorOf(const std::function<void()> &f)
{
    try {
        f();
    } catch (const AppError &e) {
        return e.number();
    }
    return 0;
}
}

class TestValues : public QObject {
    Q_OBJECT
private slots:
    void currencyRoundsHalfToEvenOnTheDecimalForm_data()
    {
        QTest::addColumn<double>("in");
        QTest::addColumn<QString>("out");
        QTest::newRow("tie down to even") << 1.00005 << "1";
        QTest::newRow("tie up to even") << 1.00015 << "1.0002";
        QTest::newRow("negative tie") << -2.00025 << "-2.0002";
        QTest::newRow("above tie") << 0.123451 << "0.1235";
        QTest::newRow("binary noise of 0.1+0.2") << (0.1 + 0.2) << "0.3";
        QTest::newRow("large") << 123456789012.3456 << "123456789012.3456";
        QTest::newRow("tiny") << 1e-9 << "0";
    }
    void currencyRoundsHalfToEvenOnTheDecimalForm()
    {
        QFETCH(double, in);
        QFETCH(QString, out);
        QCOMPARE(Currency::fromDouble(in).toString(), out);
    }

    void currencyArithmeticAndOverflow()
    {
        const Currency a = Currency::fromDouble(1234.5678);
        QCOMPARE((a + Currency::fromInt(1)).toString(), QStringLiteral("1235.5678"));
        QCOMPARE((a - a).toString(), QStringLiteral("0"));
        // amount * amount keeps four places, half to even
        QCOMPARE((Currency::fromDouble(0.0005) * Currency::fromDouble(0.5)).toString(), QStringLiteral("0.0002"));
        QCOMPARE(errorOf([] { Currency::fromDouble(1e16); }), VbErr::Overflow);
        QCOMPARE(errorOf([] { Currency::fromRaw(INT64_MAX) + Currency::fromRaw(1); }), VbErr::Overflow);
    }

    void textOfValues()
    {
        QCOMPARE(Value(true).toText(), QStringLiteral("True"));
        QCOMPARE(Value(0.5).toText(), QStringLiteral("0.5"));
        QCOMPARE(Value(1e20).toText(), QStringLiteral("1E+20"));
        QCOMPARE(Value(1.5e-7).toText(), QStringLiteral("1.5E-07"));
        QCOMPARE(Value(1.0 / 3).toText(), QStringLiteral("0.333333333333333"));
        QCOMPARE(Value(DateUtil::make(2024, 1, 5)).toText(), QStringLiteral("2024/01/05"));
        QCOMPARE(Value(DateUtil::make(2024, 1, 5, 9, 5, 3)).toText(), QStringLiteral("2024/01/05 9:05:03"));
        QCOMPARE(Value(Currency::fromDouble(12.5)).toText(), QStringLiteral("12.5"));
        QCOMPARE(Value().toText(), QString());
        QCOMPARE(errorOf([] { Value::null().toText(); }), VbErr::InvalidNull);
    }

    void numbersFromText()
    {
        QCOMPARE(Value("１,２００").toLong(), 1200);
        QCOMPARE(Value(" -3.5 ").toDouble(), -3.5);
        QCOMPARE(Value("1e3").toDouble(), 1000.0);
        QVERIFY(IsNumeric(Value("１２")));
        QVERIFY(!IsNumeric(Value("")));
        QVERIFY(!IsNumeric(Value("12a")));
        QVERIFY(!IsNumeric(Value::null()));
        QVERIFY(IsNumeric(Value()));
        QCOMPARE(errorOf([] { Value("abc").toDouble(); }), VbErr::TypeMismatch);
        QCOMPARE(errorOf([] { Value("").toLong(); }), VbErr::TypeMismatch);
        QCOMPARE(errorOf([] { Value::null().toLong(); }), VbErr::InvalidNull);
    }

    void wholeNumbersRoundHalfToEvenAndOverflow()
    {
        QCOMPARE(Value(2.5).toLong(), 2);
        QCOMPARE(Value(3.5).toLong(), 4);
        QCOMPARE(Value(-2.5).toInt(), qint16(-2));
        QCOMPARE(Value(true).toLong(), -1);
        QCOMPARE(errorOf([] { Value(40000).toInt(); }), VbErr::Overflow);
        QCOMPARE(errorOf([] { Value(256).toByte(); }), VbErr::Overflow);
        QCOMPARE(errorOf([] { Value(3e9).toLong(); }), VbErr::Overflow);
    }

    void booleans()
    {
        QVERIFY(Value("true").toBool());
        QVERIFY(!Value("False").toBool());
        QVERIFY(Value("-1").toBool());
        QVERIFY(!Value(0).toBool());
        QCOMPARE(errorOf([] { Value("yes").toBool(); }), VbErr::TypeMismatch);
    }

    void datesAsTyped_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("iso"); // empty: not a date
        QTest::newRow("slashes") << "2024/1/5" << "2024-01-05 00:00:00";
        QTest::newRow("dashes") << "2024-01-05" << "2024-01-05 00:00:00";
        QTest::newRow("kanji") << "2024年1月5日" << "2024-01-05 00:00:00";
        QTest::newRow("full width") << "２０２４／０１／０５" << "2024-01-05 00:00:00";
        QTest::newRow("with time") << "2024/01/05 13:04" << "2024-01-05 13:04:00";
        QTest::newRow("two-digit year") << "24/1/5" << "2024-01-05 00:00:00";
        QTest::newRow("two-digit year 19xx") << "95/1/5" << "1995-01-05 00:00:00";
        QTest::newRow("no such day") << "2024/2/30" << "";
        QTest::newRow("month 13") << "2024/13/1" << "";
        QTest::newRow("half typed") << "2024/" << "";
        QTest::newRow("number") << "20240105" << "";
        QTest::newRow("bad time") << "2024/1/5 25:00" << "";
    }
    void datesAsTyped()
    {
        QFETCH(QString, text);
        QFETCH(QString, iso);
        QDateTime dt;
        const bool ok = DateUtil::parse(text, dt);
        QCOMPARE(ok, !iso.isEmpty());
        QCOMPARE(IsDate(Value(text)), !iso.isEmpty());
        if (ok)
            QCOMPARE(DateUtil::sqlText(dt), iso);
    }

    void dateSerials()
    {
        QCOMPARE(DateUtil::toSerial(DateUtil::make(1899, 12, 30)), 0.0);
        QCOMPARE(DateUtil::toSerial(DateUtil::make(2000, 1, 1, 12)), 36526.5);
        QCOMPARE(DateUtil::fromSerial(36526.5), DateUtil::make(2000, 1, 1, 12));
        QCOMPARE(Value(45000).toDate(), DateUtil::make(2023, 3, 15));
    }

    // A date as the user reads it.
    void dayText()
    {
        QCOMPARE(DateUtil::dayText(Value(DateUtil::make(2024, 5, 1))), QStringLiteral("2024/05/01"));
        QCOMPARE(DateUtil::dayText(Value("2024-5-1")), QStringLiteral("2024/05/01"));
        QCOMPARE(DateUtil::dayText(Value("いつか")), QStringLiteral("いつか"));
        QCOMPARE(DateUtil::dayText(Value()), QString());
    }

    // A cell the store could not read: shown as a mark, never taken for a
    // number, a date or 0; any use as one raises its error.
    void anUnreadableCellShowsAMarkAndRaisesWhenUsed()
    {
        const Value bad = Value::unreadable(VbErr::Overflow);
        QCOMPARE(bad.toText(), QStringLiteral("#範囲外#"));
        QCOMPARE(textOf(bad), QStringLiteral("#範囲外#"));
        QVERIFY(hasValue(bad));
        QVERIFY(!IsNumeric(bad));
        QVERIFY(!IsDate(bad));
        QVERIFY(!isNumber(bad, 0));
        const std::function<void()> uses[] = {[&] { bad.toDouble(); }, [&] { bad.toCurrency(); },
                                              [&] { bad.toLong(); },   [&] { bad.toInt(); },
                                              [&] { bad.toBool(); },   [&] { bad.toDate(); },
                                              [&] { bad.toSingle(); }, [&] { bad.checkReadable(); }};
        for (const auto &use : uses)
            QCOMPARE(errorOf(use), VbErr::Overflow);
        QCOMPARE(errorOf([] { Value(5).checkReadable(); }), 0L);
        QCOMPARE(Nz(bad, Value(0)), bad);
    }

    void nzKeepsEmptyAndZero()
    {
        QCOMPARE(Nz(Value::null(), Value("")), Value(""));
        QCOMPARE(Nz(Value(0), Value(5)), Value(0));
        QCOMPARE(Nz(Value(), Value(5)), Value());
    }
};

QTEST_APPLESS_MAIN(TestValues)
#include "tst_values.moc"
