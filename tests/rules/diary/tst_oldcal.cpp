// The old calendar: day numbers, angles, solar terms and new moons, the old
// date with its leap months, the days that raise the subscript error, the
// sexagenary name from L_ETO, and the oldcal command. A fault here puts a
// wrong title on every diary day, so the texts are pinned exactly.

#include "base/AppError.h"
#include "base/Value.h"
#include "rules/diary/modOldCal.h"
#include "store/Database.h"
#include "support/TestRoot.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QtTest/QTest>

using namespace modOldCal;

namespace {

QDateTime day(const QString &ymd)
{
    return DateUtil::fromDate(QDate::fromString(ymd, QStringLiteral("yyyy-MM-dd")));
}

struct Run {
    int code;
    QString out, err;
};

QString adminBinary()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/../bin/tillora-admin");
}

Run admin(const QStringList &args)
{
    QProcess p;
    p.start(adminBinary(), args);
    p.waitForFinished(120000);
    return {p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()), QString::fromUtf8(p.readAllStandardError())};
}

} // namespace

class TestOldCal : public QObject {
    Q_OBJECT
private slots:
    void dayNumbers_data()
    {
        QTest::addColumn<QDateTime>("date");
        QTest::addColumn<double>("dayNo");
        // the month term leaves a fraction on a midnight: .49 in January,
        // .08 in February, .77 in May, .95 in July
        QTest::newRow("2000-01-01") << DateUtil::make(2000, 1, 1) << 2451544.49;
        QTest::newRow("2009-05-01") << DateUtil::make(2009, 5, 1) << 2454952.77;
        QTest::newRow("2009-05-01 12:00") << DateUtil::make(2009, 5, 1, 12) << 2454953.27;
        QTest::newRow("leap day") << DateUtil::make(2024, 2, 29) << 2460369.08;
        QTest::newRow("July with time") << DateUtil::make(2024, 7, 31, 6, 30, 15)
                                        << 2460522.95 + (15.0 / 3600 + 30.0 / 60 + 6) / 24;
    }
    void dayNumbers()
    {
        QFETCH(QDateTime, date);
        QFETCH(double, dayNo);
        QVERIFY2(std::fabs(DateToDayNo(date) - dayNo) < 1e-7, qPrintable(QString::number(DateToDayNo(date), 'f', 9)));
    }

    void dayNumbersRoundTrip()
    {
        // every day of 1900 to 2100: the whole day numbers run on by one and
        // come back to the same date
        QDate d(1900, 1, 1);
        double prev = std::floor(DateToDayNo(DateUtil::fromDate(d))) - 1;
        for (; d <= QDate(2100, 12, 31); d = d.addDays(1)) {
            const double tm = DateToDayNo(DateUtil::fromDate(d));
            QCOMPARE(std::floor(tm), prev + 1);
            prev = std::floor(tm);
            const CivilDate c = DayNoToDate(tm);
            if (c[0] != d.year() || c[1] != d.month() || c[2] != d.day())
                QFAIL(qPrintable(d.toString(Qt::ISODate) + QStringLiteral(" came back as %1-%2-%3")
                                                                .arg(c[0]).arg(c[1]).arg(c[2])));
        }
        // the time of day is read from the fraction
        QCOMPARE(DayNoToDate(2451544.49), (CivilDate{2000, 1, 1, 11, 45, 36}));
        QCOMPARE(DayNoToDate(2460350.75), (CivilDate{2024, 2, 10, 18, 0, 0}));
    }

    void wrapAngle_data()
    {
        QTest::addColumn<double>("in");
        QTest::addColumn<double>("out");
        QTest::newRow("-360 stays a full turn") << -360.0 << 360.0;
        QTest::newRow("-720") << -720.0 << 360.0;
        QTest::newRow("-10") << -10.0 << 350.0;
        QTest::newRow("-725") << -725.0 << 355.0;
        QTest::newRow("0") << 0.0 << 0.0;
        QTest::newRow("360") << 360.0 << 0.0;
        QTest::newRow("725.5") << 725.5 << 5.5;
    }
    void wrapAngle()
    {
        QFETCH(double, in);
        QFETCH(double, out);
        QCOMPARE(WrapAngle(in), out);
    }

    void longitudes()
    {
        // pins of the two series (a changed coefficient moves these)
        QVERIFY(std::fabs(SunLongitude(0) - 280.3773624988) < 1e-8);
        QVERIFY(std::fabs(MoonLongitude(0) - 223.3139267251) < 1e-8);
        QVERIFY(std::fabs(SunLongitude(0.24) - 280.5543243552) < 1e-8);
        QVERIFY(std::fabs(MoonLongitude(0.24) - 161.8980670127) < 1e-8);
        QVERIFY(std::fabs(MoonLongitude(-0.1) - 326.5471697874) < 1e-8);
    }

    void termsAndNewMoons()
    {
        // vernal equinox 2024: 3/20 about noon
        Term t = PrevTerm90(DateToDayNo(DateUtil::make(2024, 3, 25)));
        QCOMPARE(t.longitude, 0.0);
        QCOMPARE(DayNoToDate(t.dayNo), (CivilDate{2024, 3, 20, 11, 56, 37}));
        // a March midnight carries .59 of a day: from 3/20 0:00 the equinox
        // of that same day is found already; from 3/19 the winter solstice
        t = PrevTerm90(DateToDayNo(DateUtil::make(2024, 3, 20)));
        QCOMPARE(t.longitude, 0.0);
        t = PrevTerm90(DateToDayNo(DateUtil::make(2024, 3, 19)));
        QCOMPARE(t.longitude, 270.0);
        QCOMPARE(DayNoToDate(t.dayNo)[2], 22);
        // 大寒 2024 (300 degrees) on 1/20 late in the evening
        t = PrevTerm30(DateToDayNo(DateUtil::make(2024, 2, 10)));
        QCOMPARE(t.longitude, 300.0);
        QCOMPARE(DayNoToDate(t.dayNo), (CivilDate{2024, 1, 20, 22, 59, 24}));
        // the new moon of the old new year 2024, in the morning of 2/10
        const double nm = PrevNewMoon(DateToDayNo(DateUtil::make(2024, 2, 15)));
        QCOMPARE(DayNoToDate(nm), (CivilDate{2024, 2, 10, 8, 1, 6}));
        // found again from just after it, and from a day before the next one
        QVERIFY(std::fabs(PrevNewMoon(nm + 0.1) - nm) < 2.0 / 86400);
        QVERIFY(std::fabs(PrevNewMoon(nm + 28) - nm) < 2.0 / 86400);
        QCOMPARE(QString::fromUtf8(TermNames[0]), QStringLiteral("春分"));
        QCOMPARE(QString::fromUtf8(TermNames[23]), QStringLiteral("啓蟄"));
    }

    void oldDates_data()
    {
        QTest::addColumn<QDateTime>("date");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("sixDay");
        QTest::addColumn<int>("oldYear");
        QTest::addColumn<int>("leap");
        auto row = [](const char *d, const char *text, int sixDay, int year, int leap = 0) {
            QTest::newRow(d) << day(QString::fromLatin1(d)) << QString::fromUtf8(text) << sixDay << year << leap;
        };
        row("2009-05-01", "旧4/7", 5, 2009);
        row("2017-06-24", "旧閏5/1", 0, 2017, 1);
        row("2017-07-23", "旧6/1", 1, 2017);
        row("2023-03-21", "旧2/30", 2, 2023);
        row("2023-03-22", "旧閏2/1", 3, 2023, 1);
        row("2033-08-25", "旧閏7/1", 2, 2033, 1);
        row("2033-12-22", "旧閏11/1", 0, 2033, 1);
        row("2034-02-19", "旧1/1", 2, 2034);
        row("2000-01-01", "旧11/25", 0, 1999);
        row("1990-01-01", "旧12/5", 5, 1989);
        row("2024-01-01", "旧11/20", 1, 2023);
        row("2024-02-09", "旧12/30", 0, 2023);
        row("2024-02-10", "旧1/1", 2, 2024);
        row("2023-01-22", "旧1/1", 2, 2023);
        row("2025-01-29", "旧1/1", 2, 2025);
        row("2020-05-22", "旧4/30", 4, 2020);
        row("2020-05-23", "旧閏4/1", 5, 2020, 1);
        row("2025-07-24", "旧6/30", 0, 2025);
        row("1995-12-22", "旧11/1", 0, 1995); // new moon on the solstice day
        row("2014-12-21", "旧10/30", 4, 2014);
        row("2015-03-21", "旧2/2", 4, 2015);
        row("2001-06-21", "旧5/1", 0, 2001);
        row("2001-09-24", "旧8/8", 4, 2001);
        row("2035-12-31", "旧12/3", 3, 2035);
    }
    void oldDates()
    {
        QFETCH(QDateTime, date);
        QFETCH(QString, text);
        QFETCH(int, sixDay);
        QFETCH(int, oldYear);
        QFETCH(int, leap);
        QCOMPARE(OldDateText(date), text);
        QCOMPARE(SixDayIndex(date), sixDay);
        const OldDate d = OldDateOf(date);
        QCOMPARE(int(d[OldYear]), oldYear);
        QCOMPARE(int(d[OldLeap]), leap);
    }

    void errorPeriodsAndLeapMonths()
    {
        // every day of 1990 to 2035: the days raising the subscript error
        // form exactly these periods, and the leap months begin on these days
        QStringList periods, leapStarts;
        QDate first, last;
        for (QDate d(1990, 1, 1); d <= QDate(2035, 12, 31); d = d.addDays(1)) {
            try {
                const OldDate o = OldDateOf(DateUtil::fromDate(d));
                if (o[OldLeap] == 1 && o[OldDay] == 1)
                    leapStarts << d.toString(Qt::ISODate) + QLatin1Char(' ') + QString::number(o[OldMonth]);
            } catch (const AppError &e) {
                QCOMPARE(e.number(), long(VbErr::Subscript));
                QCOMPARE(e.description(), QStringLiteral("インデックスが有効範囲にありません。"));
                if (!last.isValid() || last.addDays(1) != d) {
                    if (first.isValid())
                        periods << first.toString(Qt::ISODate) + QStringLiteral("..") + last.toString(Qt::ISODate);
                    first = d;
                }
                last = d;
            }
        }
        if (first.isValid())
            periods << first.toString(Qt::ISODate) + QStringLiteral("..") + last.toString(Qt::ISODate);
        QCOMPARE(periods, (QStringList{"2001-06-22..2001-09-23", "2014-12-22..2015-03-20",
                                       "2020-06-21..2020-09-22", "2033-09-23..2033-12-21"}));
        // 2033 gets two: the 7th month, and the 11th right after the error period
        QCOMPARE(leapStarts, (QStringList{"1990-06-23 5", "1993-04-22 3", "1995-09-25 8", "1998-06-24 5",
                                          "2001-05-23 4", "2004-03-21 2", "2006-08-24 7", "2009-06-23 5",
                                          "2012-04-21 3", "2014-10-24 9", "2017-06-24 5", "2020-05-23 4",
                                          "2023-03-22 2", "2025-07-25 6", "2028-06-23 5", "2031-04-22 3",
                                          "2033-08-25 7", "2033-12-22 11"}));
        // the text and the six-day index fail the same way
        QVERIFY_THROWS_EXCEPTION(AppError, OldDateText(day("2014-12-22")));
        QVERIFY_THROWS_EXCEPTION(AppError, SixDayIndex(day("2033-12-21")));
    }

    void dayCycle_data()
    {
        QTest::addColumn<QDateTime>("date");
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("name");
        // the index runs one ahead in March, May, July, October, December
        QTest::newRow("2000-01-01") << day("2000-01-01") << 55 << "戊午";
        QTest::newRow("2000-02-29") << day("2000-02-29") << 54 << "丁巳";
        QTest::newRow("2000-03-01 skips one") << day("2000-03-01") << 56 << "己未";
        QTest::newRow("2000-03-31") << day("2000-03-31") << 26 << "己丑";
        QTest::newRow("2000-04-01 repeats") << day("2000-04-01") << 26 << "己丑";
        QTest::newRow("2023-12-31") << day("2023-12-31") << 1 << "甲子";
        QTest::newRow("2024-01-01") << day("2024-01-01") << 1 << "甲子";
        QTest::newRow("2024-02-10") << day("2024-02-10") << 41 << "甲辰";
    }
    void dayCycle()
    {
        QFETCH(QDateTime, date);
        QFETCH(int, index);
        QFETCH(QString, name);
        QCOMPARE(DayCycleIndex(date), index);
        TestRoot root;
        QCOMPARE(GetEtoYm(date), name);
    }

    void etoOpensMasterAndMissingRowIsEmpty()
    {
        TestRoot root;
        gMST.reset();
        QCOMPARE(GetEtoYm(day("2009-05-01")), QStringLiteral("丁未"));
        QVERIFY(gMST);
        gWORK->EXEC(QStringLiteral("DELETE FROM L_ETO WHERE ID=55"));
        QCOMPARE(GetEtoYm(day("2000-01-01")), QString());
    }

    void command()
    {
        if (!QFileInfo::exists(adminBinary()))
            QFAIL("tillora-admin is not built");
        QTemporaryDir dir;
        const QString root = dir.path();
        QCOMPARE(admin({"init", "--root", root}).code, 0);

        Run r = admin({"oldcal", "--root", root, "2009-05-01"});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, QStringLiteral("2009-05-01\t旧4/7\t仏滅\t2009\t丁未\n"));

        // a range across the start of an error period
        r = admin({"oldcal", "--root", root, "2014-12-20", "2014-12-22"});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, QStringLiteral("2014-12-20\t旧10/29\t友引\t2014\t丙寅\n"
                                       "2014-12-21\t旧10/30\t先負\t2014\t丁卯\n"
                                       "2014-12-22\tERROR\t\t\t戊辰\n"));

        // more than 60 days: the names keep coming from L_ETO day by day
        r = admin({"oldcal", "--root", root, "2023-12-01", "2024-02-10"});
        const QStringList lines = r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 72);
        QCOMPARE(lines[30], QStringLiteral("2023-12-31\t旧11/19\t大安\t2023\t甲子"));
        QCOMPARE(lines[31], QStringLiteral("2024-01-01\t旧11/20\t赤口\t2023\t甲子"));
        QCOMPARE(lines[71], QStringLiteral("2024-02-10\t旧1/1\t先勝\t2024\t甲辰"));

        // wrong use: a message on stderr, nothing on stdout, exit code 2
        const QList<QStringList> bad = {{}, {"2024-02-30"}, {"2024/01/01"}, {"2024-1-5"},
                                        {"2024-01-02", "2024-01-01"}, {"2024-01-01", "2024-01-02", "x"}};
        for (const QStringList &args : bad) {
            r = admin(QStringList{"oldcal", "--root", root} + args);
            QCOMPARE(r.code, 2);
            QVERIFY(r.out.isEmpty());
            QVERIFY(!r.err.isEmpty());
        }
    }
};

QTEST_GUILESS_MAIN(TestOldCal)
#include "tst_oldcal.moc"
