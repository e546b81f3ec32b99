// The shared helpers: rounding of amounts, the EAN check digit, the unit
// table of pesticide costs, and the message trace.

#include "base/AppError.h"
#include "base/Helpers.h"
#include "base/Msg.h"
#include "support/MsgRecorder.h"

#include <QtTest/QTest>

class TestHelpers : public QObject {
    Q_OBJECT
private slots:
    // Names from the register are kept full width: narrow signs and half-width
    // katakana (with their voiced marks) become their wide forms.
    void wideText()
    {
        QCOMPARE(toWide(QStringLiteral("ミズカガミ1キロ粒剤")), QStringLiteral("ミズカガミ１キロ粒剤"));
        QCOMPARE(toWide(QStringLiteral("BT a-1")), QStringLiteral("ＢＴ　ａ－１"));
        QCOMPARE(toWide(QStringLiteral("\\1'~\"`")), QStringLiteral("￥１’￣”‘"));
        QCOMPARE(toWide(QStringLiteral("ｶﾞｯﾂ ﾎﾟﾝｳﾞｧ｡")), QStringLiteral("ガッツ　ポンヴァ。"));
        QCOMPARE(toWide(QStringLiteral("ﾝﾞ")), QStringLiteral("ン゛"));
        QCOMPARE(toWide(QStringLiteral("全角（見本）")), QStringLiteral("全角（見本）"));
    }

    // The farms' code page: a character it lacks is one "?", the rest goes on.
    void systemCodePage_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("ascii and katakana") << QStringLiteral("A1ｱ") << QByteArray("A1\xB1");
        QTest::newRow("kanji") << QStringLiteral("農薬") << QByteArray("\x94\x5F\x96\xF2");
        QTest::newRow("wave dash of the input method") << QStringLiteral("〜") << QByteArray("\x81\x60");
        QTest::newRow("full-width tilde") << QStringLiteral("～") << QByteArray("\x81\x60");
        QTest::newRow("circled digit") << QStringLiteral("①") << QByteArray("\x87\x40");
        QTest::newRow("emoji") << QStringLiteral("a😀b") << QByteArray("a?b");
        QTest::newRow("outside the code page") << QStringLiteral("ü𠮷") << QByteArray("??");
        QTest::newRow("half an emoji") << QString(QChar(0xD83D)) << QByteArray("?");
    }
    void systemCodePage()
    {
        QFETCH(QString, text);
        QFETCH(QByteArray, bytes);
        QCOMPARE(toSystemCodePage(text), bytes);
    }

    // Characters as the databases count them: an emoji is one.
    void charactersCountedWhole()
    {
        const QString text = QStringLiteral("a😀b😀");
        QCOMPARE(charCount(text), 4);
        QCOMPARE(leftChars(text, 2), QStringLiteral("a😀"));
        QCOMPARE(leftChars(text, 9), text);
        QCOMPARE(charCount(QString(QChar(0xD83D))), 1);
    }

    void roundEx_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("mode");
        QTest::addColumn<int>("digits");
        QTest::addColumn<QString>("out");
        QTest::newRow("half up") << 2.5 << 3 << 0 << "3";
        QTest::newRow("half up, negative") << -2.5 << 3 << 0 << "-3";
        QTest::newRow("mode 0 is 3") << 2.5 << 0 << 0 << "3";
        QTest::newRow("round up any fraction") << -2.1 << 2 << 0 << "-3";
        QTest::newRow("cut") << -2.9 << 1 << 0 << "-2";
        QTest::newRow("whole stays with mode 2") << 4.0 << 2 << 0 << "4";
        // 1.005 is 1.00499999... in binary; the 15-digit decimal form is a tie
        QTest::newRow("decimal form of 1.005") << 1.005 << 3 << 2 << "1.01";
        QTest::newRow("binary noise around a half") << (0.1 * 3 * 5) << 3 << 0 << "2";
        QTest::newRow("digits beyond four places") << 1.234567 << 3 << 6 << "1.2346";
        QTest::newRow("tens") << 1234.0 << 3 << -1 << "1230";
        QTest::newRow("cost of a pesticide use") << (250.0 * 0.3 * 1000) << 3 << 0 << "75000";
    }
    void roundEx()
    {
        QFETCH(double, value);
        QFETCH(int, mode);
        QFETCH(int, digits);
        QFETCH(QString, out);
        QCOMPARE(RoundEx(Value(value), mode, digits).toString(), out);
    }

    void roundExDefaultsOnNullAndFailure()
    {
        QCOMPARE(RoundEx(Value::null(), 3, 0).toString(), QStringLiteral("0"));
        QCOMPARE(RoundEx(Value("abc"), 3, 0).toString(), QStringLiteral("0"));
        QCOMPARE(RoundEx(Value(1e300), 3, 0).toString(), QStringLiteral("0"));
        QCOMPARE(RoundEx(Value("12.5"), 1, 0).toString(), QStringLiteral("12"));
    }

    void eanCheckDigit()
    {
        QCOMPARE(GetEanCheck(QStringLiteral("490000000000")), QStringLiteral("4900000000009"));
        QCOMPARE(GetEanCheck(QStringLiteral("456995111617")), QStringLiteral("4569951116179"));
        QCOMPARE(GetEanCheck(QStringLiteral("000000000000")), QStringLiteral("0000000000000"));
        QCOMPARE(GetEanCheck(QStringLiteral("49")), QString());
        QCOMPARE(GetEanCheck(QStringLiteral("4900000000000")), QString());
        QVERIFY_THROWS_EXCEPTION(AppError, GetEanCheck(QStringLiteral("49000000000A")));
    }

    void unitRates()
    {
        QCOMPARE(GetUnitRate(1, 2), 1000.0); // bought in g, used in kg
        QCOMPARE(GetUnitRate(2, 1), 0.001);
        QCOMPARE(GetUnitRate(2, 3), 1e-6);
        QCOMPARE(GetUnitRate(1, 3), 0.001);
        QCOMPARE(GetUnitRate(3, 1), 1000.0);
        QCOMPARE(GetUnitRate(4, 5), 1000.0);
        QCOMPARE(GetUnitRate(5, 4), 0.001);
        QCOMPARE(GetUnitRate(1, 4), 0.0); // weight and volume don't convert
        QCOMPARE(GetUnitRate(5, 2), 0.0);
        QCOMPARE(GetUnitRate(3, 3), 1.0);
        QCOMPARE(GetUnitRate(0, 4), 1.0);
        QCOMPARE(GetUnitRate(7, 7), 1.0);
        QCOMPARE(GetUnitRate(6, 1), 0.0);
        try {
            GetUnitRate(3, 2);
            QFAIL("mg to kg must overflow");
        } catch (const AppError &e) {
            QCOMPARE(e.number(), VbErr::Overflow);
            QCOMPARE(e.description(), QStringLiteral("オーバーフローしました。"));
        }
    }

    void messageTraceKinds()
    {
        // The masks overlap: every later hit overwrites the kind.
        QCOMPARE(msgTraceText(QStringLiteral("T"), 48, QStringLiteral("p"), 1), QStringLiteral("T[注意]p[OK]"));
        QCOMPARE(msgTraceText(QStringLiteral("T"), 16, QStringLiteral("p"), 1), QStringLiteral("T[注意]p[OK]"));
        QCOMPARE(msgTraceText(QStringLiteral("T"), 32, QStringLiteral("p"), 1), QStringLiteral("T[注意]p[OK]"));
        QCOMPARE(msgTraceText(QStringLiteral("T"), 64, QStringLiteral("p"), 1), QStringLiteral("T[情報]p[OK]"));
        QCOMPARE(msgTraceText(QStringLiteral("T"), 4, QStringLiteral("p"), 7), QStringLiteral("T[RETRY-CANCEL]p[NO]"));
        QCOMPARE(msgTraceText(QStringLiteral("T"), 1, QStringLiteral("p"), 2), QStringLiteral("T[RETRY-CANCEL]p[CANCEL]"));
        QCOMPARE(msgTraceText(QStringLiteral("T"), 0, QStringLiteral("p"), 1), QStringLiteral("Tp[OK]"));
    }

    void showMsgGoesThroughTheSinkAndTheTrace()
    {
        MsgRecorder rec;
        QStringList trace;
        setLogHook([&](const QString &t) { trace << t; });
        rec.answer(Msg::ResNo);
        QCOMPARE(ShowMsg(QStringLiteral("削除しますか？"), Msg::YesNo + Msg::Question, QString()), Msg::ResNo);
        setLogHook(nullptr);
        QCOMPARE(rec.count(), 1);
        QCOMPARE(rec.messages[0].title, QStringLiteral("Tillora"));
        QCOMPARE(rec.messages[0].buttons, 36);
        QCOMPARE(trace, QStringList{QStringLiteral("Tillora[注意]削除しますか？[NO]")});
    }

    void computerNameIsShortAndStable()
    {
        const QString a = GetCompName();
        QVERIFY(!a.isEmpty());
        QVERIFY(a.size() <= 15);
        QCOMPARE(GetCompName(), a);
    }
};

QTEST_APPLESS_MAIN(TestHelpers)
#include "tst_helpers.moc"
