// The saves a farmer starts, whatever their kind: each is one transaction
// (a failure at any statement leaves the records as before, and the same
// record saves on the next 登録), and a record that another computer saved
// since it was opened is never written over.

#include "base/AppError.h"
#include "base/Globals.h"
#include "rules/common/SaveKinds.h"
#include "rules/diary/DiaryDay.h"
#include "rules/diary/DiaryFixture.h"
#include "store/Database.h"
#include "support/RulesTest.h"
#include "support/SaveProbe.h"

#include <QtTest/QTest>

using namespace SaveKinds;
using SaveProbe::records;

namespace {

#define COMPARE_RECORDS(actual, expected)                                                                    \
    do {                                                                                                     \
        const QStringList a_ = (actual), e_ = (expected);                                                    \
        if (a_ != e_)                                                                                        \
            QFAIL(qPrintable(SaveProbe::difference(e_, a_)));                                                \
    } while (false)

const QString kChangedOnB = QStringLiteral("この記録は他のコンピュータ（PC-B）で変更されています。");

// Saves of forms 0 .. n-1 of the kind: the records form n works on.
void before(int kind, int n)
{
    for (int i = 0; i < n; ++i)
        open(kind, i)();
}

// The forms of each kind that change a record some form before it made.
void changingForms()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("form");
    QTest::newRow("a new day") << int(Day) << 0;
    QTest::newRow("a day with its slip") << int(Day) << 2;
    QTest::newRow("a shipment reported") << int(Shipment) << 1;
    QTest::newRow("a slip changed") << int(Slip) << 1;
    QTest::newRow("a lot bought dearer") << int(Lot) << 1;
    QTest::newRow("a planting noted") << int(Planting) << 1;
}

} // namespace

class TestSaves : public QObject {
    Q_OBJECT
private slots:
    void init() { choose(); }
    void cleanup() { setCompNameForTests(QString()); }

    void everySaveIsOneTransaction_data()
    {
        changingForms();
        QTest::newRow("a slip deleted") << int(Slip) << 2;
        QTest::newRow("a shipment dispatched") << int(Shipment) << 0;
        QTest::newRow("a slip added") << int(Slip) << 0;
        QTest::newRow("a lot bought") << int(Lot) << 0;
        QTest::newRow("a planting added") << int(Planting) << 0;
    }
    void everySaveIsOneTransaction()
    {
        QFETCH(int, kind);
        QFETCH(int, form);
        TestRoot root;
        seed();
        before(kind, form);
        const QStringList unsaved = records();
        int statements = 0;
        const QStringList saved = SaveProbe::recordsAfter([&] { statements = SaveProbe::statementsOf(open(kind, form)); });
        QVERIFY(saved != unsaved);
        QVERIFY(statements > 0);
        // the screen's record, kept over every failed 登録
        const std::function<void()> save = open(kind, form);
        for (int n = 1; n <= statements; ++n) {
            SaveProbe::FailAt failure(n);
            QVERIFY2(failureOf(save).number() != 0, qPrintable(QStringLiteral("statement %1").arg(n)));
            COMPARE_RECORDS(records(), unsaved);
        }
        save();
        COMPARE_RECORDS(records(), saved);
    }

    void aRecordSavedElsewhereIsNotWrittenOver_data() { changingForms(); }
    void aRecordSavedElsewhereIsNotWrittenOver()
    {
        QFETCH(int, kind);
        QFETCH(int, form);
        TestRoot root;
        seed();
        before(kind, form);
        OtherComputer b(QStringLiteral("PC-B"));
        // both open the record before either saves; B saves first
        const std::function<void()> mine = open(kind, form);
        b.act([&] { open(kind, form)(); });
        const QStringList theirs = records();
        const AppError e = failureOf(mine);
        QCOMPARE(e.number(), VbErr::RecordChanged);
        QCOMPARE(e.description(), kChangedOnB);
        COMPARE_RECORDS(records(), theirs);
        // opened again, it saves; and its memory, stamps taken, saves again
        const std::function<void()> again = open(kind, form);
        again();
        again();
    }

    void aDayOnlyLookedAtElsewhereStillSaves()
    {
        TestRoot root;
        seed();
        open(Day, 2)();
        OtherComputer b(QStringLiteral("PC-B"));
        DiaryDay mine;
        mine.load(Value(1), DiaryFixture::kDayTime);
        // B's hold, given up, names B as the day's last writer
        b.act([] {
            DiaryDay looked;
            looked.load(Value(1), DiaryFixture::kDayTime);
            DiaryDay::releaseHolds();
        });
        QCOMPARE(gDB->DLookup("LAST_TM", "D_DIARY", "FMR_ID=1"), Value("PC-B"));
        mine.day.NOTES1 = Value("追肥した");
        mine.save();
        QCOMPARE(gDB->DLookup("NOTES1", "D_DIARY", "FMR_ID=1"), Value("追肥した"));
        QCOMPARE(gDB->DLookup("ONE_MSG", "D_DIARY", "FMR_ID=1"), Value("メモ2"));
    }

    void aDayKeepsWhatOthersPostedOntoIt_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("form");
        QTest::addColumn<QString>("message");
        // forms on 8 May, the day opened here
        QTest::newRow("a shipment dispatched") << int(Shipment) << 2 << kChangedOnB;
        QTest::newRow("a slip added") << int(Slip) << 0 << kChangedOnB;
        QTest::newRow("the day's slip changed") << int(Slip) << 1 << kChangedOnB;
        QTest::newRow("the day's slip deleted")
            << int(Slip) << 2 << QStringLiteral("この記録は他のコンピュータで変更されています。");
        QTest::newRow("a lot bought that day") << int(Lot) << 2 << kChangedOnB;
    }
    void aDayKeepsWhatOthersPostedOntoIt()
    {
        QFETCH(int, kind);
        QFETCH(int, form);
        QFETCH(QString, message);
        TestRoot root;
        seed();
        OtherComputer b(QStringLiteral("PC-B"));
        const std::function<void()> day = open(Day, 2);
        b.act([&] { open(kind, form)(); });
        const QStringList theirs = records();
        QCOMPARE(failureOf(day).description(), message);
        COMPARE_RECORDS(records(), theirs);
    }
};

TILLORA_RULES_TEST_MAIN(TestSaves)
#include "tst_saves.moc"
