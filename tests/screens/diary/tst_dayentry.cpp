// The day screen as a user drives it: its title, a day entered and saved,
// closing without saving, deleting a line with its slip, and the purposes of
// a spraying line's lot.

#include "base/Globals.h"
#include "base/Helpers.h"
#include "base/Msg.h"
#include "rules/diary/DiaryDay.h"
#include "rules/diary/DiaryFixture.h"
#include "screens/diary/frmDairyInput.h"
#include "store/Database.h"
#include "store/Stmt.h"
#include "support/GuiDriver.h"
#include "support/MsgRecorder.h"
#include "support/SaveProbe.h"
#include "support/TestRoot.h"

#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QtTest/QTest>

using namespace DiaryFixture;

namespace {

// A day with one spraying line of lot 1 saved, its planting and line chosen
// on the screen.
void openTheSprayingLine(frmDairyInput &f)
{
    saveSprayingDay();
    Gui::show(&f);
    auto *plants = f.ctl<QListWidget>("List1(0)");
    plants->setCurrentRow(0);
    emit plants->itemClicked(plants->item(0));
    auto *works = f.ctl<QListWidget>("List1(1)");
    works->setCurrentRow(0);
    emit works->itemClicked(works->item(0));
    Gui::settle();
}

} // namespace

class TestDayEntry : public QObject {
    Q_OBJECT
private slots:
    void init() { chooseTheDay(); }
    void cleanup() { leaveTheDay(); }

    void theScreenShowsTheDayAndItsTitle()
    {
        TestRoot root;
        seedDay();
        gWORK_DATE = Value(DateUtil::make(2024, 2, 10));
        frmDairyInput f;
        Gui::show(&f);
        QCOMPARE(f.windowTitle(), QStringLiteral("日誌入力（2024/02/10） 旧1/1 甲辰 先勝"));
        for (const auto &day : {qMakePair(DateUtil::make(2000, 1, 1), QStringLiteral("日誌入力（2000/01/01） 旧11/25 戊午 大安")),
                                qMakePair(DateUtil::make(2009, 5, 1), QStringLiteral("日誌入力（2009/05/01） 旧4/7 丁未 仏滅"))}) {
            gWORK_DATE = Value(day.first);
            frmDairyInput other;
            Gui::show(&other);
            QCOMPARE(other.windowTitle(), day.second);
        }
        // a day the old calendar can't place: no title, the screen works
        gWORK_DATE = Value(DateUtil::make(2020, 6, 21));
        frmDairyInput odd;
        Gui::show(&odd);
        QCOMPARE(odd.windowTitle(), QStringLiteral("日誌入力"));
        QCOMPARE(odd.ctl<QLabel>("lblDATA(0)")->text(), QStringLiteral("2020/06/21"));
    }

    void aDayEnteredOnTheScreen()
    {
        TestRoot root;
        seedDay();
        // names used before on this kind of work: the same crop first
        Build::diaryLine(QDate(2024, 4, 9), 1, WorkKbn::Spraying).set("PLANT_ID", 2).set("WORK_NM", "なす消毒").add();
        Build::diaryLine(QDate(2024, 4, 10), 1, WorkKbn::Spraying).set("PLANT_ID", 1).set("WORK_NM", "トマト消毒").add();
        Build::diaryLine(QDate(2024, 4, 10), 2, WorkKbn::Spraying).set("PLANT_ID", 1).set("WORK_NM", "アブラムシ防除").add();
        MsgRecorder rec;
        frmDairyInput f;
        Gui::show(&f);
        QCOMPARE(f.ctl<QLabel>("lblDATA(1)")->text(), GetFmrNameForDay());
        auto *plants = f.ctl<QListWidget>("List1(0)");
        QCOMPARE(plants->count(), 2); // the cabbage ended in April
        Gui::choose(f.ctl<QComboBox>("cmbDATA(0)"), 2);
        Gui::type(f.ctl<QLineEdit>("txtDATA(0)"), QStringLiteral("11.5"));
        Gui::type(f.ctl<QLineEdit>("txtDATA(1)"), QStringLiteral("23"));
        Gui::type(f.ctl<QLineEdit>("txtDATA(2)"), QStringLiteral("晴れ間に消毒"));
        Gui::leave(f.ctl<QLineEdit>("txtDATA(2)"));

        // a spraying line on the tomatoes
        plants->setCurrentRow(0);
        emit plants->itemClicked(plants->item(0));
        Gui::settle();
        QCOMPARE(f.ctl<QLabel>("lblDATA(2)")->text(), QStringLiteral("桃太郎"));
        QCOMPARE(f.ctl<QLabel>("lblDATA(3)")->text(), QStringLiteral("2024/07"));
        Gui::click(f.ctl<QPushButton>("cmdSUB(1)"));
        auto *kind = f.ctl<QComboBox>("cmbDATA(1)");
        kind->hidePopup();
        Gui::choose(kind, 5); // 農薬散布
        Gui::leave(kind);
        auto *name = f.ctl<QComboBox>("Combo1(0)");
        QCOMPARE(name->count(), 3);
        QCOMPARE(name->itemText(0), QStringLiteral("アブラムシ防除"));
        QCOMPARE(name->itemText(1), QStringLiteral("トマト消毒"));
        QCOMPARE(name->itemText(2), QStringLiteral("なす消毒"));
        QVERIFY(f.ctl<QGroupBox>("Frame2")->isVisible());
        Gui::focus(name);
        name->hidePopup();
        name->setEditText(QStringLiteral("トマト消毒"));
        Gui::leave(name);
        QCOMPARE(f.ctl<QListWidget>("List1(1)")->item(0)->text(), QStringLiteral("トマト消毒"));
        auto *lotBox = f.ctl<QComboBox>("cmbDATA(2)");
        QCOMPARE(lotBox->itemText(1), QStringLiteral("4/4見本乳剤"));
        Gui::choose(lotBox, lotBox->findText(QStringLiteral("4/2見本水和剤")));
        Gui::leave(lotBox);
        auto *purpose = f.ctl<QComboBox>("cmbDATA(3)");
        QVERIFY(purpose->count() > 0); // the purposes of the lot's registration
        // a purpose that isn't listed is dropped, and the field may be left
        Gui::focus(purpose);
        purpose->hidePopup();
        purpose->setEditText(QStringLiteral("一覧にない目的"));
        Gui::leave(purpose);
        QVERIFY(QApplication::focusWidget() != purpose);
        QVERIFY(f.dayData().dtl[f.detailIndex()].PURPOSE.isNull());
        const QString listed = purpose->itemText(purpose->count() - 1);
        Gui::focus(purpose);
        purpose->hidePopup();
        purpose->setEditText(listed);
        Gui::leave(purpose);
        QCOMPARE(f.dayData().dtl[f.detailIndex()].PURPOSE, Value(listed));
        Gui::type(f.ctl<QLineEdit>("txtDATA(4)"), QStringLiteral("250"));
        Gui::choose(f.ctl<QComboBox>("cmbDATA(4)"), 0); // g
        Gui::leave(f.ctl<QComboBox>("cmbDATA(4)"));

        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QVERIFY(rec.messages.isEmpty());
        QVERIFY(!f.isVisible());
        QCOMPARE(gDB->DLookup("WTH_ID", "D_DIARY", "FMR_ID=1 AND WORK_DATE=#2024/5/8#"), Value(2));
        QCOMPARE(gDB->DLookup("LO_TMP", "D_DIARY", "FMR_ID=1 AND WORK_DATE=#2024/5/8#"), Value(11.5));
        QCOMPARE(gDB->DLookup("ONE_MSG", "D_DIARY", "FMR_ID=1 AND WORK_DATE=#2024/5/8#"), Value("晴れ間に消毒"));
        QCOMPARE(gDB->DLookup("CHEMI_NM", "D_DIARY_DTL", "FMR_ID=1 AND WORK_DATE=#2024/5/8#"),
                 Value("4/2見本水和剤"));
        QCOMPARE(gDB->DLookup("WORK_NM", "D_DIARY_DTL", "FMR_ID=1 AND WORK_DATE=#2024/5/8#"), Value("トマト消毒"));
        QCOMPARE(gDB->DLookup("PURPOSE", "D_DIARY_DTL", "FMR_ID=1 AND WORK_DATE=#2024/5/8#"), Value(listed));
        QCOMPARE(slipOf(gDB->DLookup("LEDGE_ID", "D_DIARY_DTL", "FMR_ID=1 AND WORK_DATE=#2024/5/8#")),
                 QStringLiteral("4160 1130 1000 2 3 250.0g -"));
        QCOMPARE(gDB->DLookup("USED_QTY", "D_CHEMI", "CHEMI_ID=1"), Value(250.0));
        // closing released the hold
        QVERIFY(gDB->DLookup("HOLD_TM", "D_DIARY", "FMR_ID=1").isNull());
    }

    void aDaySavedElsewhereIsReadAgainOnRequest()
    {
        TestRoot root;
        seedDay();
        Build::diaryDay(kDay).set("ONE_MSG", "晴れ").add();
        OtherComputer b(QStringLiteral("PC-B"));
        MsgRecorder rec;
        frmDairyInput f;
        Gui::show(&f);
        b.act([] {
            DiaryDay theirs;
            theirs.load(Value(1), kDayTime);
            theirs.day.ONE_MSG = Value("夕立");
            theirs.save();
        });
        auto *notes = f.ctl<QLineEdit>("txtDATA(5)");
        Gui::type(notes, QStringLiteral("草取り"));
        Gui::leave(notes);
        rec.answer(Msg::ResYes);
        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QCOMPARE(rec.lastPrompt(), QStringLiteral("この記録は他のコンピュータ（PC-B）で変更されています。\n"
                                                  "最新の内容を読み込みますか？"));
        // the day as B saved it, on the screen still open
        QVERIFY(f.isVisible());
        QCOMPARE(f.ctl<QLineEdit>("txtDATA(2)")->text(), QStringLiteral("夕立"));
        QCOMPARE(notes->text(), QString());
        Gui::type(notes, QStringLiteral("草取り"));
        Gui::leave(notes);
        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QVERIFY(!f.isVisible());
        QCOMPARE(rec.count(), 1);
        QCOMPARE(gDB->DLookup("ONE_MSG", "D_DIARY", "FMR_ID=1"), Value("夕立"));
        QCOMPARE(gDB->DLookup("NOTES1", "D_DIARY", "FMR_ID=1"), Value("草取り"));
    }

    // A lot may be bought without a registration number, or with one that
    // is no number: its spraying line opens with an empty purpose list and
    // no message.
    void thePurposesOfALotByItsRegistration_data() { registrationRows(); }
    void thePurposesOfALotByItsRegistration()
    {
        QFETCH(QString, regNo);
        QFETCH(bool, purposes);
        TestRoot root;
        seedDay();
        setRegistration(regNo);
        MsgRecorder rec;
        frmDairyInput f;
        openTheSprayingLine(f);
        QVERIFY2(rec.messages.isEmpty(), qPrintable(rec.lastPrompt()));
        QVERIFY(f.ctl<QGroupBox>("Frame2")->isVisible());
        QCOMPARE(f.ctl<QComboBox>("cmbDATA(3)")->count() > 0, purposes);
        // the blank entry is no lot: no purposes, and no message
        auto *lotBox = f.ctl<QComboBox>("cmbDATA(2)");
        Gui::choose(lotBox, 0);
        Gui::leave(lotBox);
        QVERIFY2(rec.messages.isEmpty(), qPrintable(rec.lastPrompt()));
        QCOMPARE(f.ctl<QComboBox>("cmbDATA(3)")->count(), 0);
    }

    // Closing a day with unsaved changes asks first: Cancel stays, No drops
    // what was typed, Yes saves and closes. A day only looked at closes
    // without a word.
    void closingAsksAboutUnsavedChanges()
    {
        TestRoot root;
        seedDay();
        MsgRecorder rec;
        {
            frmDairyInput f;
            Gui::show(&f);
            Gui::click(f.ctl<QPushButton>("cmdMENU(0)"));
            QVERIFY(!f.isVisible());
            QCOMPARE(rec.count(), 0);
        }
        const struct {
            int answer;
            bool open;
            long days;
        } answers[] = {{Msg::ResCancel, true, 0}, {Msg::ResNo, false, 0}, {Msg::ResYes, false, 1}};
        for (const auto &a : answers) {
            rec.clear();
            frmDairyInput f;
            Gui::show(&f);
            Gui::type(f.ctl<QLineEdit>("txtDATA(2)"), QStringLiteral("晴れのち曇り"));
            rec.answer(a.answer);
            Gui::click(f.ctl<QPushButton>("cmdMENU(0)"));
            QCOMPARE(rec.lastPrompt(), QStringLiteral("変更内容を登録しますか？"));
            QCOMPARE(rec.messages[0].buttons, Msg::YesNoCancel + Msg::Question);
            QCOMPARE(f.isVisible(), a.open);
            QCOMPARE(gDB->DCount("*", "D_DIARY").toLong(), a.days);
            if (a.open)
                f.done(QDialog::Rejected);
        }
    }

    void deletingALineTakesItsSlipAlong()
    {
        TestRoot root;
        seedDay();
        frmDairyInput f;
        openTheSprayingLine(f);
        QCOMPARE(gLEDGE_ROWS.size(), 2);
        auto *works = f.ctl<QListWidget>("List1(1)");
        QCOMPARE(f.detailIndex(), 0);
        Gui::click(f.ctl<QPushButton>("cmdSUB(0)"));
        QCOMPARE(works->count(), 0);
        QCOMPARE(gLEDGE_ROWS.size(), 1);
        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QCOMPARE(gDB->DCount("*", "D_LEDGE").toLong(), 1);
        QCOMPARE(gDB->DCount("*", "D_DIARY_DTL", "FMR_ID=1 AND CHEMI_ID>0").toLong(), 0);
    }

private:
    static QString GetFmrNameForDay() { return gMST->DLookup("FMR_NM", "M_FMR", "FMR_ID=1").toText(); }
};

TILLORA_GUI_TEST_MAIN(TestDayEntry)
#include "tst_dayentry.moc"
