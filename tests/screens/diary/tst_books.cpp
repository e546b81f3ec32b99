// The day's book pages and the slip entry told from a book: balances brought
// forward, the columns per book, the locks of owned slips, and the whole road
// from a new slip on the page to the next day's balance.

#include "ui/Form.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "rules/diary/BookPage.h"
#include "rules/diary/DiaryDay.h"
#include "screens/diary/frmDairyInput.h"
#include "store/Database.h"
#include "store/Lookup.h"
#include "support/GuiDriver.h"
#include "support/MsgRecorder.h"
#include "support/TestRoot.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>
#include <QtTest/QTest>

namespace {

const QDateTime kDay = DateUtil::make(2024, 5, 8);

void slip(int id, const char *date, int debit, int credit, double amt, const char *ctr = "")
{
    gDB->EXEC(QStringLiteral("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, LEDGE_DATE, D_ACC_ID, C_ACC_ID, AMT, CTR_NM) "
                             "VALUES (1, %1, #%2#, %3, %4, %5, '%6')")
                  .arg(id)
                  .arg(QString::fromLatin1(date))
                  .arg(debit)
                  .arg(credit)
                  .arg(amt)
                  .arg(QString::fromUtf8(ctr)));
}

LedgeRow row(int id, const Value &debit, const Value &credit, const Value &amt)
{
    LedgeRow r = blankLedgeRow();
    r[LedgeCol::FMR_ID] = Value(1);
    r[LedgeCol::LEDGE_ID] = Value(id);
    r[LedgeCol::LEDGE_DATE] = Value(kDay);
    r[LedgeCol::D_ACC_ID] = debit;
    r[LedgeCol::C_ACC_ID] = credit;
    r[LedgeCol::AMT] = amt;
    return r;
}

QString lines(const BookPage::Page &p)
{
    QStringList out;
    for (const auto &l : p.lines)
        out << QStringLiteral("%1:%2/%3/%4").arg(l.account, l.first.toString(), l.second.toString(), l.balance.toString());
    return out.join(QLatin1Char(' '));
}

QString name(const Value &id) { return QString::number(Nz(id, Value(0)).toLong()); }

QStringList column(QTreeWidget *t, int c)
{
    QStringList out;
    for (int i = 0; i < t->topLevelItemCount(); ++i)
        out << t->topLevelItem(i)->text(c);
    return out;
}

} // namespace

class TestBooks : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        gFMR_ID = Value(1);
        gWORK_DATE = Value(kDay);
    }

    void columnsPerBook()
    {
        QCOMPARE(BookPage::headingsFor(1000).first, QStringLiteral("入金"));
        QCOMPARE(BookPage::headingsFor(1010).second, QStringLiteral("払出"));
        QCOMPARE(BookPage::headingsFor(1040).second, QStringLiteral("回収"));
        QCOMPARE(BookPage::headingsFor(2000).second, QStringLiteral("支払"));
        QCOMPARE(BookPage::headingsFor(1020).first, QStringLiteral("預入"));
        QVERIFY(!BookPage::headingsFor(4000).amounts);
        QCOMPARE(BookPage::amountText(Currency::fromDouble(1234567.5)), QStringLiteral("1,234,568"));
        QCOMPARE(BookPage::amountText(Currency::fromInt(-1200)), QStringLiteral("-1,200"));
        QCOMPARE(BookPage::amountText(Currency()), QStringLiteral("0"));
    }

    void pagesOfADay()
    {
        // a cash sale between 1000 and 1040 is on both pages; the pesticide
        // cost slip is on none; a slip on both sides of the book counts once,
        // on its credit side; a slip with no accounts is passed over
        const QVector<LedgeRow> rows = {row(1, Value(1000), Value(1040), Value(5000)),
                                        row(2, Value(4160), Value(1130), Value(700)),
                                        row(3, Value(4170), Value(1000), Value(1200)),
                                        row(4, Value(1000), Value(1000), Value(300)),
                                        row(5, Value::null(), Value::null(), Value(9)),
                                        row(6, Value(1000), Value(4000), Value::null())};
        const BookPage::Page cash = BookPage::compute(1000, rows, Currency::fromInt(10000), name);
        QCOMPARE(lines(cash), QStringLiteral("1040:5000/0/15000 4170:0/1200/13800 1000:0/300/13500 4000:0/0/13500"));
        QCOMPARE(cash.sumFirst, Currency::fromInt(5000));
        QCOMPARE(cash.sumSecond, Currency::fromInt(1500));
        QCOMPARE(cash.closing, Currency::fromInt(13500));
        const BookPage::Page recv = BookPage::compute(1040, rows, Currency(), name);
        QCOMPARE(lines(recv), QStringLiteral("1000:0/5000/-5000"));
        QVERIFY(BookPage::compute(1130, rows, Currency(), name).lines.size() == 1);
        QVERIFY(BookPage::compute(2000, rows, Currency(), name).lines.isEmpty());
        // the payables: a purchase on credit arises, a payment pays
        const QVector<LedgeRow> pay = {row(1, Value(4130), Value(2000), Value(8000)),
                                       row(2, Value(2000), Value(1010), Value(3000))};
        QCOMPARE(lines(BookPage::compute(2000, pay, Currency::fromInt(100), name)),
                 QStringLiteral("4130:8000/0/8100 1010:0/3000/5100"));
    }

    void balancesBroughtForwardFromTheDatabase()
    {
        TestRoot root;
        slip(1, "2024/5/1", 1000, 4000, 20000);
        slip(2, "2024/5/7", 4170, 1000, 2500);
        slip(3, "2024/5/8", 1000, 1040, 999); // the day itself: not brought forward
        slip(4, "2024/5/2", 4130, 2000, 4000);
        slip(5, "2024/5/3", 2000, 1010, 1500);
        QCOMPARE(BookPage::broughtForward(Value(1), kDay, 1000), Currency::fromInt(17500));
        QCOMPARE(BookPage::broughtForward(Value(1), kDay, 2000), Currency::fromInt(2500));
        QCOMPARE(BookPage::broughtForward(Value(1), kDay, 1010), Currency::fromInt(-1500));
        QCOMPARE(BookPage::broughtForward(Value(2), kDay, 1000), Currency());
        // a day with no slips: brought forward is the closing balance
        const BookPage::Page empty = BookPage::compute(1000, {blankLedgeRow()}, Currency::fromInt(17500), name);
        QCOMPARE(empty.closing, Currency::fromInt(17500));
        QCOMPARE(empty.sumFirst, Currency());
        QCOMPARE(empty.sumSecond, Currency());
    }

    void theSidesFollowTheAmount()
    {
        LedgeRow r = row(7, Value(1000), Value::null(), Value::null());
        BookPage::SlipEntry e;
        e.otherAcc = Value(4000);
        e.ownOptName = Value("売上");
        e.left = QStringLiteral("3000");
        BookPage::applyEntry(r, 1000, e);
        QCOMPARE(r[LedgeCol::D_ACC_ID], Value(1000));
        QCOMPARE(r[LedgeCol::C_ACC_ID], Value(4000));
        QCOMPARE(r[LedgeCol::D_OPT_NM], Value("売上"));
        QCOMPARE(r[LedgeCol::AMT], Value("3000"));
        // from the left amount to the right: debit and credit change places
        e.left = QStringLiteral("0");
        e.right = QStringLiteral("3000");
        BookPage::applyEntry(r, 1000, e);
        QCOMPARE(r[LedgeCol::D_ACC_ID], Value(4000));
        QCOMPARE(r[LedgeCol::C_ACC_ID], Value(1000));
        QCOMPARE(r[LedgeCol::C_OPT_NM], Value("売上"));
        // the payables the other way round
        e.left = QStringLiteral("500");
        BookPage::applyEntry(r, 2000, e);
        QCOMPARE(r[LedgeCol::C_ACC_ID], Value(2000));
        // no amount: the slip stays as it was
        LedgeRow blank = row(8, Value(1000), Value::null(), Value::null());
        e.left = e.right = QString();
        BookPage::applyEntry(blank, 1000, e);
        QVERIFY(blank[LedgeCol::C_ACC_ID].isNull());
        QVERIFY(blank[LedgeCol::AMT].isNull());
    }

    void slipsAddedOnThePageReachTheBooks()
    {
        TestRoot root;
        slip(1, "2024/5/1", 1000, 4000, 20000);
        slip(40, "2024/5/8", 1010, 1040, 3000, "ひだまり"); // a slip of the day
        MsgRecorder rec;
        Gui::Modals modals;
        frmDairyInput f;
        Gui::show(&f);
        Gui::click(f.ctl<QRadioButton>("Option1(1)"));
        auto *list = f.ctl<QTreeWidget>("ListView1");
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
        Gui::show(&again);
        Gui::click(again.ctl<QRadioButton>("Option1(1)"));
        QCOMPARE(column(again.ctl<QTreeWidget>("ListView1"), 0), (QStringList{"41", "42"}));
    }

    void ownedSlipsAreLockedAndDeleteRemovesNothing()
    {
        TestRoot root;
        slip(5, "2024/5/8", 1000, 4000, 800);
        slip(6, "2024/5/8", 4170, 1000, 300);
        // a diary line owns slip 5
        gDB->EXEC("INSERT INTO D_DIARY_DTL (FMR_ID, WORK_DATE, DTL_NO, PLANT_ID, WORK_KBN, CHEMI_ID, QTY, UNIT_ID, "
                  "LEDGE_ID) VALUES (1, #2024/5/8#, 1, 1, 5, 1, 10, 1, 5)");
        MsgRecorder rec;
        Gui::Modals modals;
        frmDairyInput f;
        Gui::show(&f);
        Gui::click(f.ctl<QRadioButton>("Option1(1)"));
        auto *list = f.ctl<QTreeWidget>("ListView1");
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

    void aNewSlipWithoutAmountKeepsTheBookOnTheDebit()
    {
        TestRoot root;
        Gui::Modals modals;
        frmDairyInput f;
        Gui::show(&f);
        Gui::click(f.ctl<QRadioButton>("Option1(2)"));
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
        auto *list = f.ctl<QTreeWidget>("ListView1");
        QCOMPARE(column(list, 5), QStringList{"0"});
        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QCOMPARE(gDB->DCount("*", "D_LEDGE", "D_ACC_ID=1010 AND C_ACC_ID IS NULL AND AMT IS NULL").toLong(), 1);
    }
};

TILLORA_GUI_TEST_MAIN(TestBooks)
#include "tst_books.moc"
