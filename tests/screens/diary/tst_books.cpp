// The day's book pages on the screen and the slip entry told from a book:
// the locks of owned slips, and the whole road from a new slip on the page to
// the next day's balance.

#include "base/Globals.h"
#include "rules/common/Ids.h"
#include "rules/diary/BookPage.h"
#include "screens/diary/frmDairyInput.h"
#include "store/Database.h"
#include "rules/books/Ledger.h"
#include "store/Lookup.h"
#include "support/Build.h"
#include "support/GuiDriver.h"
#include "support/MsgRecorder.h"
#include "support/TestRoot.h"
#include "ui/Entry.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>
#include <QtTest/QTest>

namespace {

const QDate kDay(2024, 5, 8);

QStringList column(QTreeWidget *t, int c)
{
    QStringList out;
    for (int i = 0; i < t->topLevelItemCount(); ++i)
        out << t->topLevelItem(i)->text(c);
    return out;
}

// Shows the day and the page of a tab (1 cash, 2 deposit, 3 receivables,
// 4 payables); the page's list.
QTreeWidget *showPage(frmDairyInput &f, int tab)
{
    Gui::show(&f);
    Gui::click(f.ctl<QRadioButton>(QStringLiteral("Option1(%1)").arg(tab)));
    return f.ctl<QTreeWidget>("ListView1");
}

} // namespace

class TestBooks : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        gFMR_ID = Value(1);
        gWORK_DATE = Value(QDateTime(kDay, QTime()));
    }

    void slipsAddedOnThePageReachTheBooks()
    {
        TestRoot root;
        Build::slip(1, QDate(2024, 5, 1), 1000, 4000, 20000).add();
        Build::slip(40, kDay, 1010, 1040, 3000).set("CTR_NM", "ひだまり").add(); // a slip of the day
        MsgRecorder rec;
        Gui::Modals modals;
        frmDairyInput f;
        auto *list = showPage(f, 1);
        QCOMPARE(list->topLevelItemCount(), 0);
        QCOMPARE(f.ctl<QLabel>("lblSUM(0)")->text(), QStringLiteral("20,000"));
        QCOMPARE(f.ctl<QLabel>("lblSUM(3)")->text(), QStringLiteral("20,000"));

        // two new slips: a cash sale on the left, a purchase on the right
        modals.on("frmDiaryLedgeInput", [](Form &d) {
            QCOMPARE(d.ctl<QLabel>("lblTITLE")->text(), QStringLiteral("現金出納帳入力"));
            QCOMPARE(d.ctl<QLabel>("lblDATA(0)")->text(), QStringLiteral("41"));
            auto *acc = d.ctl<QComboBox>("cmbDATA(1)");
            Gui::focus(acc);
            acc->setEditText(QStringLiteral("売上"));
            Gui::leave(acc);
            Gui::type(d.ctl<QLineEdit>("txtDATA(1)"), QStringLiteral("朝市"));
            Gui::type(d.ctl<QLineEdit>("txtDATA(5)"), QStringLiteral("4500"));
            Gui::leave(d.ctl<QLineEdit>("txtDATA(5)"));
            QCOMPARE(d.ctl<QLineEdit>("txtDATA(6)")->text(), QStringLiteral("0"));
            Gui::click(d.ctl<QPushButton>("cmdMENU(1)"));
        });
        modals.on("frmDiaryLedgeInput", [](Form &d) {
            QCOMPARE(d.ctl<QLabel>("lblDATA(0)")->text(), QStringLiteral("42")); // after the unsaved 41
            auto *acc = d.ctl<QComboBox>("cmbDATA(1)");
            Gui::focus(acc);
            acc->setEditText(QStringLiteral("該当なしの科目"));
            Gui::leave(acc);
            QCOMPARE(QApplication::focusWidget(), acc); // a name not in the list holds the focus
            acc->setEditText(QStringLiteral("種苗費"));
            Gui::leave(acc);
            QVERIFY(d.ctl<QComboBox>("cmbDATA(2)")->isVisible()); // a planting may be named
            Gui::type(d.ctl<QLineEdit>("txtDATA(6)"), QStringLiteral("1200"));
            Gui::leave(d.ctl<QLineEdit>("txtDATA(6)"));
            Gui::click(d.ctl<QPushButton>("cmdMENU(1)"));
        });
        Gui::click(f.ctl<QPushButton>("cmdEDIT(0)"));
        Gui::click(f.ctl<QPushButton>("cmdEDIT(0)"));
        QCOMPARE(modals.opened.size(), 2);
        QCOMPARE(column(list, 0), (QStringList{"41", "42"}));
        QCOMPARE(column(list, 2), (QStringList{"売上", "種苗費"}));
        QCOMPARE(column(list, 5), (QStringList{"4,500", "0"}));
        QCOMPARE(column(list, 7), (QStringList{"24,500", "23,300"}));
        QCOMPARE(f.ctl<QLabel>("lblSUM(3)")->text(), QStringLiteral("23,300"));
        QCOMPARE(gDB->DCount("*", "D_LEDGE", "LEDGE_ID>40").toLong(), 0); // nothing written yet

        // the receivables page shows the day's slip
        Gui::click(f.ctl<QRadioButton>("Option1(3)"));
        QCOMPARE(column(list, 3), QStringList{"ひだまり"});
        QCOMPARE(column(list, 6), QStringList{"3,000"});

        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QVERIFY(rec.messages.isEmpty());
        QCOMPARE(gDB->DLookup("C_ACC_ID", "D_LEDGE", "LEDGE_ID=41"), Value(4000));
        QCOMPARE(gDB->DLookup("D_ACC_ID", "D_LEDGE", "LEDGE_ID=42"), Value(4110));
        QCOMPARE(gDB->DLookup("CTR_NM", "D_LEDGE", "LEDGE_ID=41"), Value("朝市"));
        // the next day brings the day forward
        QCOMPARE(BookPage::broughtForward(Value(1), DateUtil::make(2024, 5, 9), 1000), Currency::fromInt(23300));
        // reopened, the day shows its slips
        frmDairyInput again;
        QCOMPARE(column(showPage(again, 1), 0), (QStringList{"41", "42"}));
    }

    void ownedSlipsAreLockedAndDeleteRemovesNothing()
    {
        TestRoot root;
        Build::slip(5, kDay, 1000, 4000, 800).add();
        Build::slip(6, kDay, 4170, 1000, 300).add();
        // a diary line owns slip 5
        Build::diaryLine(kDay, 1, WorkKbn::Spraying)
            .set("PLANT_ID", 1)
            .set("CHEMI_ID", 1)
            .set("QTY", 10)
            .set("UNIT_ID", 1)
            .set("LEDGE_ID", 5)
            .add();
        MsgRecorder rec;
        Gui::Modals modals;
        frmDairyInput f;
        auto *list = showPage(f, 1);
        QCOMPARE(list->topLevelItemCount(), 2);
        list->setCurrentItem(list->topLevelItem(0));
        Gui::click(f.ctl<QPushButton>("cmdEDIT(1)"));
        QCOMPARE(rec.lastPrompt(), QStringLiteral("この伝票は修正できません。日誌詳細から修正してください。"));
        QCOMPARE(rec.messages.last().buttons, 48);
        Gui::click(f.ctl<QPushButton>("cmdEDIT(2)"));
        QCOMPARE(rec.lastPrompt(), QStringLiteral("この伝票は削除できません。日誌詳細から削除してください。"));
        QVERIFY(modals.opened.isEmpty());
        // a free slip opens; its "削除" closes and the slip stays
        modals.on("frmDiaryLedgeInput", [](Form &dlg) {
            auto *b = dlg.ctl<QPushButton>("cmdMENU(1)");
            QCOMPARE(b->text(), QStringLiteral("削除"));
            QVERIFY(dlg.ctl<QLineEdit>("txtDATA(1)")->isReadOnly());
            Gui::click(b);
        });
        list->setCurrentItem(list->topLevelItem(1));
        Gui::click(f.ctl<QPushButton>("cmdEDIT(2)"));
        QCOMPARE(modals.opened, QStringList{"frmDiaryLedgeInput"});
        QCOMPARE(list->topLevelItemCount(), 2);
        // the lock messages by owner
        QCOMPARE(ledgeLockMessage(2, false), QStringLiteral("この伝票は修正できません。農薬入力から修正してください。"));
        QCOMPARE(ledgeLockMessage(3, true), QStringLiteral("この伝票は削除できません。出荷入力から削除してください。"));
        QCOMPARE(ledgeLockMessage(0, true), QString());
    }

    void aFreeSlipChangedOnItsPage()
    {
        TestRoot root;
        Build::slip(6, kDay, 4170, 1000, 300).set("NOTES", "苗").add();
        MsgRecorder rec;
        Gui::Modals modals;
        frmDairyInput f;
        auto *list = showPage(f, 1);
        list->setCurrentItem(list->topLevelItem(0));
        // the cash paid out shows on the right; moved to the left it comes in
        modals.on("frmDiaryLedgeInput", [](Form &d) {
            QCOMPARE(d.ctl<QPushButton>("cmdMENU(1)")->text(), QStringLiteral("設定"));
            QCOMPARE(d.ctl<QLabel>("lblDATA(0)")->text(), QStringLiteral("6"));
            QCOMPARE(currentItemData(d.ctl<QComboBox>("cmbDATA(1)")), Value(4170));
            QCOMPARE(d.ctl<QLineEdit>("txtDATA(5)")->text(), QString());
            QCOMPARE(Value(d.ctl<QLineEdit>("txtDATA(6)")->text()).toDouble(), 300.0);
            QCOMPARE(d.ctl<QLineEdit>("txtDATA(4)")->text(), QStringLiteral("苗"));
            Gui::type(d.ctl<QLineEdit>("txtDATA(5)"), QStringLiteral("500"));
            Gui::leave(d.ctl<QLineEdit>("txtDATA(5)"));
            QCOMPARE(d.ctl<QLineEdit>("txtDATA(6)")->text(), QStringLiteral("0"));
            Gui::click(d.ctl<QPushButton>("cmdMENU(1)"));
        });
        Gui::click(f.ctl<QPushButton>("cmdEDIT(1)"));
        QCOMPARE(modals.opened, QStringList{"frmDiaryLedgeInput"});
        QVERIFY(rec.messages.isEmpty());
        QCOMPARE(gLEDGE_ROWS.size(), 1);
        QCOMPARE(gLEDGE_ROWS[0][LedgeCol::D_ACC_ID], Value(Acc::Cash));
        QCOMPARE(gLEDGE_ROWS[0][LedgeCol::C_ACC_ID], Value(4170));
        QCOMPARE(column(list, 5), QStringList{"500"});
        QCOMPARE(column(list, 6), QStringList{"0"});
    }

    void aNewSlipWithoutAmountKeepsTheBookOnTheDebit()
    {
        TestRoot root;
        Gui::Modals modals;
        frmDairyInput f;
        auto *list = showPage(f, 2);
        modals.on("frmDiaryLedgeInput", [](Form &d) {
            auto *acc = d.ctl<QComboBox>("cmbDATA(1)");
            Gui::focus(acc);
            acc->setEditText(QStringLiteral("現金"));
            Gui::leave(acc);
            Gui::click(d.ctl<QPushButton>("cmdMENU(1)"));
        });
        Gui::click(f.ctl<QPushButton>("cmdEDIT(0)"));
        QCOMPARE(gLEDGE_ROWS.size(), 1);
        const LedgeRow &r = gLEDGE_ROWS[0];
        QCOMPARE(r[LedgeCol::D_ACC_ID], Value(1010));
        QVERIFY(r[LedgeCol::C_ACC_ID].isNull());
        QVERIFY(r[LedgeCol::AMT].isNull());
        QCOMPARE(column(list, 5), QStringList{"0"});
        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QCOMPARE(gDB->DCount("*", "D_LEDGE", "D_ACC_ID=1010 AND C_ACC_ID IS NULL AND AMT IS NULL").toLong(), 1);
    }
};

TILLORA_GUI_TEST_MAIN(TestBooks)
#include "tst_books.moc"
