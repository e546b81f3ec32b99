// The book screens driven as a user drives them: the slip list, the account
// ledger and the slip entry, with the rows checked in the data database after
// each save; and the trial balance dialog. The rules they show stand in
// tests/rules/books.

#include "rules/books/BookReports.h"
#include "rules/books/Ledger.h"
#include "rules/books/TrialBalance.h"
#include "screens/books/fdlPrintAccRep.h"
#include "screens/books/frmLedgeInput.h"
#include "screens/books/frmLedgeList.h"
#include "ui/Form.h"
#include "base/Globals.h"
#include "base/Msg.h"
#include "base/Helpers.h"
#include "ui/Screens.h"
#include "screens/diary/frmDairyCal.h"
#include "store/Database.h"
#include "store/Lookup.h"
#include "support/Build.h"
#include "support/EntryForm.h"
#include "support/GuiDriver.h"
#include "support/MsgRecorder.h"
#include "support/TestRoot.h"

#include "rules/books/SeedSlips.h"

#include <QApplication>
#include <QCalendarWidget>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QtTest/QTest>

#include <memory>

using namespace EntryForm;

namespace {

int slipCount(const QString &criteria = QString())
{
    return gDB->DCount(QStringLiteral("*"), QStringLiteral("D_LEDGE"), criteria).toLong();
}

QStringList heads(QTreeWidget *list)
{
    QStringList out;
    for (int i = 0; i < list->columnCount(); ++i)
        out << list->headerItem()->text(i);
    return out;
}

QString itemsOf(QComboBox *c)
{
    QStringList out;
    for (int i = 0; i < c->count(); ++i)
        out << c->itemText(i);
    return out.join(QLatin1Char('|'));
}

// The list as the calendar opens it, for farmer 1 and a month.
struct ListRig {
    MsgRecorder msgs;
    Gui::Modals modals;
    frmLedgeList list;
    QTreeWidget *view;
    explicit ListRig(const QDateTime &base = DateUtil::make(2024, 5, 1))
    {
        gFMR_ID = Value(1);
        gBASE_DATE = base;
        Gui::show(&list);
        view = list.ctl<QTreeWidget>("ListView1");
    }
    QLineEdit *cond(int i) { return list.ctl<QLineEdit>(QStringLiteral("txtCOND(%1)").arg(i)); }
    QString sum(int i) { return list.ctl<QLabel>(QStringLiteral("lblSUM(%1)").arg(i))->text(); }
    QString sums()
    {
        QStringList out;
        for (int i = 0; i < 5; ++i)
            out << sum(i);
        return out.join(QLatin1Char('|'));
    }
    void press(int button) { Gui::click(list.ctl<QPushButton>(QStringLiteral("cmdMENU(%1)").arg(button))); }
    void find() { Gui::click(list.ctl<QPushButton>("cmdFIND")); }
    void ledger() { Gui::click(list.ctl<QRadioButton>("Option1(1)")); Gui::closePopups(); }
    void account(const QString &name)
    {
        auto *c = list.ctl<QComboBox>("cmbCOND(0)");
        Gui::choose(c, c->findText(name, Qt::MatchExactly));
        Gui::closePopups();
    }
    void selectLine(int line)
    {
        view->clearSelection();
        view->setCurrentItem(view->topLevelItem(line - 1));
        view->topLevelItem(line - 1)->setSelected(true);
    }
};

} // namespace

class TestLedger : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        gFMR_ID = Value(1);
        gUSE_TYPE = 1;
        gMODE = Mode::None;
        gLAST_LEDGE_ID = Value();
        gLEDGE_ROWS.clear();
    }

    // ---------------------------------------------------------------- list

    void slipListOfTheMonth()
    {
        TestRoot root;
        seedSlips();
        ListRig rig;
        QCOMPARE(rig.list.windowTitle(), QStringLiteral("伝票一覧"));
        QCOMPARE(rig.cond(1)->text(), QStringLiteral("2024/05/01"));
        QCOMPARE(rig.cond(2)->text(), QStringLiteral("2024/05/31"));
        QCOMPARE(rig.cond(3)->text(), QStringLiteral("2024"));
        QCOMPARE(heads(rig.view), (QStringList{"ID", "日付", "借方", "貸方", "相手先", "備考", "金額"}));
        QCOMPARE(rig.view->columnWidth(0), 0);
        QCOMPARE(column(rig.view, 0), (QStringList{"3", "4", "5", "7"}));
        const QTreeWidgetItem *first = rig.view->topLevelItem(0);
        QCOMPARE(first->text(1) + first->text(2) + first->text(3) + first->text(4),
                 QStringLiteral("2024/05/02種苗費現金種苗店"));
        QCOMPARE(column(rig.view, 6), (QStringList{"300", "5,000", "700", "400"}));
        QCOMPARE(rig.sum(0), QStringLiteral("4"));
        QCOMPARE(rig.sum(4), QStringLiteral("6,400"));
        QVERIFY(!rig.list.ctl<QLabel>("lblSUM(1)")->isVisible());
        QVERIFY(rig.list.ctl<QLabel>("lblSUM_CAP(2)")->isVisible());
        QCOMPARE(rig.list.selectedLine(), 1);
        QVERIFY(!rig.list.ctl<QPushButton>("cmdMENU(6)")->isEnabled());

        // by name, quotes and all
        Gui::type(rig.cond(0), QStringLiteral("O'Neil"));
        rig.find();
        QCOMPARE(column(rig.view, 0), QStringList{"7"});
        // no dates and no year: every slip of the farmer, undated first
        Gui::type(rig.cond(0), QString());
        for (int i = 1; i <= 3; ++i)
            Gui::type(rig.cond(i), QString());
        rig.find();
        QCOMPARE(column(rig.view, 0), (QStringList{"6", "1", "2", "3", "4", "5", "7"}));
        QCOMPARE(rig.view->topLevelItem(0)->text(1), QString());
        // an account on either side
        rig.account(QStringLiteral("売上"));
        rig.find();
        QCOMPARE(column(rig.view, 0), (QStringList{"1", "2", "4"}));
        QVERIFY(rig.msgs.messages.isEmpty());

        // a month with nothing: empty sum, and the row buttons do nothing
        Gui::type(rig.cond(1), QStringLiteral("20300101"));
        rig.find();
        QCOMPARE(rig.view->topLevelItemCount(), 0);
        QCOMPARE(rig.sum(0) + QLatin1Char('|') + rig.sum(4), QStringLiteral("0|"));
        for (int b = 2; b <= 5; ++b)
            rig.press(b);
        QVERIFY(rig.modals.opened.isEmpty());
    }

    void accountLedger()
    {
        TestRoot root;
        seedSlips();
        ListRig rig;
        rig.ledger();
        QCOMPARE(rig.list.windowTitle(), QStringLiteral("元帳一覧"));
        QCOMPARE(heads(rig.view), (QStringList{"ID", "日付", "科目", "相手先", "備考", "借方", "貸方", "残高"}));
        // no account: an empty list and empty totals, not zero
        QCOMPARE(rig.view->topLevelItemCount(), 0);
        QCOMPARE(rig.sums(), QStringLiteral("||||"));
        QVERIFY(rig.list.ctl<QLabel>("lblSUM(2)")->isVisible());
        QVERIFY(!rig.list.ctl<QLabel>("lblSUM_CAP(2)")->isVisible());

        // cash in May: opened with every farmer's cash before May
        rig.account(QStringLiteral("現金"));
        rig.find();
        QCOMPARE(column(rig.view, 0), (QStringList{"3", "4", "5", "7"}));
        QCOMPARE(column(rig.view, 2), (QStringList{"種苗費", "売上", "現金", "買掛金"}));
        QCOMPARE(column(rig.view, 5), (QStringList{"0", "5,000", "0", "0"}));
        QCOMPARE(column(rig.view, 6), (QStringList{"300", "0", "700", "400"}));
        QCOMPARE(column(rig.view, 7), (QStringList{"11,700", "16,700", "16,000", "15,600"}));
        QCOMPARE(rig.sums(), QStringLiteral("4|12,000|5,000|1,400|15,600"));

        // sales: a credit shows under 借方, the year starts on 1 January
        rig.account(QStringLiteral("売上"));
        rig.find();
        QCOMPARE(column(rig.view, 0), QStringList{"4"});
        QCOMPARE(column(rig.view, 5), QStringList{"5,000"});
        QCOMPARE(rig.sums(), QStringLiteral("1|11,000|5,000|0|16,000"));
        // no start date: the opening is of the undated slips only
        Gui::type(rig.cond(1), QString());
        rig.find();
        QCOMPARE(rig.sum(1), QStringLiteral("0"));
        QCOMPARE(column(rig.view, 0), (QStringList{"2", "4"}));
        // an empty year is no 1 January for an account that starts each
        // year: the date error on either engine, and the list stays
        Gui::type(rig.cond(3), QString());
        rig.find();
        QCOMPARE(rig.msgs.count(), 1);
        QVERIFY(rig.msgs.lastPrompt().startsWith(QStringLiteral("(3075)")));
        QVERIFY(rig.msgs.lastPrompt().contains(QStringLiteral("/01/01")));
        QCOMPARE(rig.msgs.messages[0].buttons, 16);
        QCOMPARE(column(rig.view, 0), (QStringList{"2", "4"}));

        // back to the slips: the account stays a filter
        rig.msgs.clear();
        Gui::click(rig.list.ctl<QRadioButton>("Option1(0)"));
        Gui::closePopups();
        QCOMPARE(rig.list.view(), 0);
        QCOMPARE(rig.list.windowTitle(), QStringLiteral("伝票一覧"));
        QCOMPARE(column(rig.view, 0), (QStringList{"1", "2", "4"}));
        QVERIFY(rig.msgs.messages.isEmpty());
    }

    void oddFilterTextNeverBreaksTheList()
    {
        TestRoot root;
        seedSlips();
        ListRig rig;
        rig.ledger();
        rig.account(QStringLiteral("現金"));
        const QStringList odd = {QStringLiteral("'"), QStringLiteral("a#b"), QStringLiteral("50%"),
                                 QStringLiteral("_"), QStringLiteral("\\"), QStringLiteral("\";--"),
                                 QStringLiteral("１２３"), QString(50, QChar(0x3042))};
        TraceRecorder trace;
        for (int field = 0; field < 4; ++field) {
            for (const QString &text : odd) {
                rig.msgs.clear();
                Gui::type(rig.cond(field), text);
                trace.lines.clear();
                rig.find();
                QVERIFY(rig.list.isVisible());
                if (field == 0) {
                    // a refusal is one message of the store, with its number and the stop sign
                    QVERIFY2(rig.msgs.count() <= 1, qPrintable(text));
                    if (rig.msgs.count() == 1) {
                        QVERIFY2(rig.msgs.lastPrompt().startsWith(QLatin1Char('(')), qPrintable(rig.msgs.lastPrompt()));
                        QCOMPARE(rig.msgs.messages[0].buttons, 16);
                    }
                    continue;
                }
                // a date (or year) that is no date is refused with the date
                // message before any statement runs
                QCOMPARE(rig.msgs.count(), 1);
                QCOMPARE(rig.msgs.lastPrompt(), QStringLiteral("日付を指定してください。"));
                QCOMPARE(rig.msgs.messages[0].buttons, 48);
                QVERIFY2(trace.with(QStringLiteral("SELECT")).isEmpty(), qPrintable(trace.lines.join('\n')));
            }
            Gui::type(rig.cond(field), field == 3 ? QStringLiteral("2024") : QString());
        }
        // names are matched as typed, quotes included
        Gui::type(rig.cond(0), QStringLiteral("'Neil"));
        rig.find();
        QCOMPARE(column(rig.view, 0), QStringList{"7"});
    }

    void lockedSlipsAreRefused()
    {
        TestRoot root;
        seedSlips();
        Build::diaryLine(QDate(2024, 5, 2), 1, 9).set("LEDGE_ID", 3).add();
        Build::lot(1, QStringLiteral("ダコニール")).set("LEDGE_ID", 4).add();
        Build::shipment(1, QDate(2024, 5, 20)).set("LEDGE_ID_F", 5).add();
        // another farmer's line under number 7 locks nothing
        Build::lot(2, QStringLiteral("よその薬")).set("FMR_ID", 2).set("LEDGE_ID", 7).add();
        ListRig rig;
        const struct {
            int line;
            const char *change, *remove;
        } locked[] = {
            {1, "この伝票は修正できません。日誌詳細から修正してください。", "この伝票は削除できません。日誌詳細から削除してください。"},
            {2, "この伝票は修正できません。農薬入力から修正してください。", "この伝票は削除できません。農薬入力から削除してください。"},
            {3, "この伝票は修正できません。出荷入力から修正してください。", "この伝票は削除できません。出荷入力から削除してください。"},
        };
        for (const auto &l : locked) {
            rig.selectLine(l.line);
            rig.press(2);
            QCOMPARE(rig.msgs.lastPrompt(), QString::fromUtf8(l.change));
            QCOMPARE(rig.msgs.messages.last().buttons, 48);
            rig.press(4);
            QCOMPARE(rig.msgs.lastPrompt(), QString::fromUtf8(l.remove));
            // viewing and copying are never locked
            rig.press(3);
            rig.press(5);
        }
        QCOMPARE(rig.msgs.count(), 6);
        QCOMPARE(rig.modals.opened.size(), 6);
        QCOMPARE(slipCount(), 8);
        // slip 7 is free
        rig.selectLine(4);
        rig.press(2);
        QCOMPARE(rig.msgs.count(), 6);
        QCOMPARE(rig.modals.opened.size(), 7);
    }

    // ---------------------------------------------------------------- entry

    void anEmptyNewSlipIsSaved()
    {
        TestRoot root;
        seedSlips();
        const QDate today = QDate::currentDate();
        ListRig rig(DateUtil::make(today.year(), today.month(), 1));
        QCOMPARE(rig.view->topLevelItemCount(), 0);
        rig.modals.on("frmLedgeInput", [&](Form &f) {
            QCOMPARE(gMODE, Mode::Add);
            QCOMPARE(gROW_IDX, -1);
            QCOMPARE(f.windowTitle(), QStringLiteral("伝票入力"));
            QCOMPARE(btn(f, 0)->text(), QStringLiteral("ｷｬﾝｾﾙ"));
            QCOMPARE(btn(f, 1)->text(), QStringLiteral("登録"));
            QCOMPARE(txt(f, 0)->text(), today.toString(QStringLiteral("yyyy/MM/dd")));
            QCOMPARE(f.ctl<QLabel>("lblDATA(0)")->text(), QString());
            QCOMPARE(cmb(f, 0)->currentText(), gMST->DLookup("FMR_NM", "M_FMR", "FMR_ID=1").toText());
            QVERIFY(!cmb(f, 3)->isEnabled());
            QVERIFY(!cmb(f, 4)->isEnabled());
            Gui::click(btn(f, 1));
            QVERIFY(!f.isVisible());
        });
        rig.press(1);
        QVERIFY(rig.msgs.messages.isEmpty());
        QCOMPARE(slipCount(), 9);
        QCOMPARE(slipText(1, 8, "LEDGE_DATE D_ACC_ID C_ACC_ID AMT CTR_NM NOTES D_OPT_ID UDATE HOLD_TM"),
                 today.toString(QStringLiteral("yyyy/MM/dd")) + QStringLiteral("|-|-|-|-|-|-|-|-"));
        QCOMPARE(slipText(1, 8, "LAST_TM"), GetCompName());
        QCOMPARE(gLAST_LEDGE_ID, Value(8));
        // the list read again selects the new slip
        QCOMPARE(column(rig.view, 0), QStringList{"8"});
        QCOMPARE(rig.list.selectedLine(), 1);
    }

    // The amount is read as it is left: a text that is no number, or an
    // amount past the currency's range on either side, is refused with its
    // message, the focus stays, and 登録 waits; an amount is saved as read.
    void theAmountIsReadOnLeaving_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("refusal");
        QTest::addColumn<QString>("stored"); // the new slip's AMT
        QTest::newRow("full-width with commas") << "１,２００" << "" << "1200";
        QTest::newRow("words") << "千円" << "数値を入力してください。" << "";
        QTest::newRow("too large") << "9e15" << "金額が大きすぎます。" << "";
        QTest::newRow("too large below zero") << "-9e15" << "金額が大きすぎます。" << "";
    }
    void theAmountIsReadOnLeaving()
    {
        QFETCH(QString, typed);
        QFETCH(QString, refusal);
        QFETCH(QString, stored);
        TestRoot root;
        seedSlips();
        ListRig rig;
        rig.modals.on("frmLedgeInput", [&](Form &f) {
            typeAndLeave(txt(f, 4), typed);
            Gui::click(btn(f, 1));
            if (refusal.isEmpty()) {
                QVERIFY(rig.msgs.messages.isEmpty());
                QVERIFY(!f.isVisible());
                return;
            }
            QVERIFY(!rig.msgs.messages.isEmpty());
            QCOMPARE(rig.msgs.messages.first().prompt, refusal);
            QCOMPARE(rig.msgs.lastPrompt(), refusal);
            QCOMPARE(QApplication::focusWidget(), txt(f, 4));
            QVERIFY(f.isVisible());
        });
        rig.press(1);
        QCOMPARE(slipCount(), refusal.isEmpty() ? 9 : 8);
        if (refusal.isEmpty())
            QCOMPARE(slipText(1, 8, "AMT"), stored);
    }

    void aSlipWithSubAccounts()
    {
        TestRoot root;
        seedSlips();
        Build::planting(1, QStringLiteral("春トマト")).set("YYYY", 2024).add();
        Build::planting(2, QStringLiteral("露地なす")).set("YYYY", 2024).add();
        Build::planting(3, QStringLiteral("よそのなす")).set("FMR_ID", 2).set("YYYY", 2024).add();
        Build::lot(1, QStringLiteral("ダコニール")).add();
        Build::lot(2, QStringLiteral("使い切り")).set("CHK_FLG", Value(false)).add();
        ListRig rig;
        rig.modals.on("frmLedgeInput", [&](Form &f) {
            auto *in = static_cast<frmLedgeInput *>(&f);
            typeAndLeave(txt(f, 0), QStringLiteral("20240512"));
            QCOMPARE(txt(f, 0)->text(), QStringLiteral("2024/05/12"));
            typeAndLeave(txt(f, 1), QStringLiteral("ホームセンター"));
            // 種苗費 typed and Enter: the sub-account opens before the move,
            // so the move lands in it
            focusCombo(cmb(f, 1));
            Gui::type(cmb(f, 1)->lineEdit(), QStringLiteral("種苗費"));
            Gui::enter(cmb(f, 1)->lineEdit());
            QVERIFY(QApplication::focusWidget() == cmb(f, 3) || QApplication::focusWidget() == cmb(f, 3)->view());
            Gui::closePopups();
            // 種苗費 takes plantings of the farmer
            chooseText(cmb(f, 1), QStringLiteral("種苗費"));
            QVERIFY(cmb(f, 3)->isEnabled());
            QCOMPARE(itemsOf(cmb(f, 3)), QStringLiteral("|春トマト|露地なす"));
            chooseText(cmb(f, 3), QStringLiteral("露地なす"));
            // 肥料費 is of the same kind: the list is not filled again
            cmb(f, 3)->addItem(QStringLiteral("印"));
            chooseText(cmb(f, 1), QStringLiteral("肥料費"));
            QVERIFY(cmb(f, 3)->findText(QStringLiteral("印")) >= 0);
            QCOMPARE(cmb(f, 3)->currentText(), QStringLiteral("露地なす"));
            // 農薬 takes the pesticides still offered
            chooseText(cmb(f, 1), QStringLiteral("農薬"));
            QCOMPARE(in->optKind(0), 3);
            QCOMPARE(itemsOf(cmb(f, 3)), QStringLiteral("|ダコニール"));
            chooseText(cmb(f, 1), QStringLiteral("肥料費"));
            QCOMPARE(itemsOf(cmb(f, 3)), QStringLiteral("|春トマト|露地なす"));
            chooseText(cmb(f, 3), QStringLiteral("春トマト"));
            typeAndLeave(txt(f, 2), QStringLiteral("元肥"));
            // cash has no sub-accounts
            chooseText(cmb(f, 2), QStringLiteral("現金"));
            QVERIFY(!cmb(f, 4)->isEnabled());
            typeAndLeave(txt(f, 3), QStringLiteral("支払"));
            typeAndLeave(txt(f, 5), QStringLiteral("10袋"));
            // an amount that is no number holds the field
            typeAndLeave(txt(f, 4), QStringLiteral("千円"));
            QCOMPARE(rig.msgs.lastPrompt(), QStringLiteral("数値を入力してください。"));
            QCOMPARE(QApplication::focusWidget(), txt(f, 4));
            typeAndLeave(txt(f, 4), QStringLiteral("１,２００"));
            // an account typed that the list doesn't have holds its list
            focusCombo(cmb(f, 2));
            cmb(f, 2)->lineEdit()->setText(QStringLiteral("へそくり"));
            Gui::leave(cmb(f, 2));
            Gui::closePopups();
            QCOMPARE(rig.msgs.lastPrompt(), QStringLiteral("一覧にある項目を選択してください。"));
            QCOMPARE(QApplication::focusWidget(), cmb(f, 2));
            cmb(f, 2)->lineEdit()->setText(QStringLiteral("現金"));
            Gui::leave(cmb(f, 2));
            Gui::closePopups();
            Gui::click(btn(f, 1));
            QVERIFY(!f.isVisible());
        });
        rig.press(1);
        QCOMPARE(rig.msgs.count(), 2);
        QCOMPARE(slipText(1, 8, "LEDGE_DATE CTR_NM D_ACC_ID D_OPT_ID D_OPT_NM C_ACC_ID C_OPT_ID C_OPT_NM NOTES AMT"),
                 QStringLiteral("2024/05/12|ホームセンター|4130|1|元肥|1000|-|支払|10袋|1200"));
        // the new slip is the selected line
        QCOMPARE(rig.view->selectedItems().value(0)->text(0), QStringLiteral("8"));
    }

    void changeKeepsWhatIsNotTouched()
    {
        TestRoot root;
        seedSlips();
        gDB->EXEC("UPDATE D_LEDGE SET D_OPT_KBN=2, D_OPT_ID=1, D_OPT_NM='苗', NOTES='前の備考' WHERE FMR_ID=1 AND LEDGE_ID=3");
        Build::planting(1, QStringLiteral("春トマト")).set("YYYY", 2024).add();
        ListRig rig;
        rig.selectLine(1);
        rig.modals.on("frmLedgeInput", [&](Form &f) {
            QCOMPARE(gMODE, Mode::Change);
            QCOMPARE(gROW_IDX, 0);
            QCOMPARE(f.ctl<QLabel>("lblDATA(0)")->text(), QStringLiteral("3"));
            QCOMPARE(txt(f, 0)->text(), QStringLiteral("2024/05/02"));
            QCOMPARE(cmb(f, 1)->currentText(), QStringLiteral("種苗費"));
            QCOMPARE(cmb(f, 3)->currentText(), QStringLiteral("春トマト"));
            QCOMPARE(cmb(f, 2)->currentText(), QStringLiteral("現金"));
            QCOMPARE(txt(f, 4)->text(), QStringLiteral("300"));
            // the description is free text: the sub-account stays
            typeAndLeave(txt(f, 2), QStringLiteral("ミニトマト苗"));
            typeAndLeave(txt(f, 4), QStringLiteral("350"));
            Gui::click(btn(f, 1));
        });
        rig.press(2);
        QVERIFY(rig.msgs.messages.isEmpty());
        QCOMPARE(slipText(1, 3, "D_OPT_KBN D_OPT_ID D_OPT_NM AMT NOTES CTR_NM IDATE HOLD_TM"),
                 QStringLiteral("2|1|ミニトマト苗|350|前の備考|種苗店|-|-"));
        QVERIFY(!slipField(1, 3, "UDATE").isNull());
        QCOMPARE(rig.list.selectedLine(), 1);
        QCOMPARE(rig.view->topLevelItem(0)->text(6), QStringLiteral("350"));

        // a slip gone meanwhile: the message, nothing written, the entry stays
        rig.selectLine(2);
        rig.modals.on("frmLedgeInput", [&](Form &f) {
            gDB->EXEC("DELETE FROM D_LEDGE WHERE LEDGE_ID=4");
            typeAndLeave(txt(f, 1), QStringLiteral("消えた"));
            Gui::click(btn(f, 1));
            QVERIFY(f.isVisible());
            Gui::click(btn(f, 0));
        });
        rig.msgs.answer(Msg::ResOK);
        rig.msgs.answer(Msg::ResNo); // closing with what was typed: not saved
        rig.press(2);
        QCOMPARE(rig.msgs.count(), 2);
        QCOMPARE(rig.msgs.messages[0].prompt, QStringLiteral("該当データが存在しません。"));
        QCOMPARE(rig.msgs.messages[0].buttons, 16);
        QCOMPARE(rig.msgs.lastPrompt(), QStringLiteral("変更内容を登録しますか？"));
        QCOMPARE(slipCount(QStringLiteral("CTR_NM='消えた'")), 0);
        // a date the store can't hold is its error, and the entry stays open
        rig.msgs.clear();
        rig.selectLine(1);
        rig.modals.on("frmLedgeInput", [&](Form &f) {
            typeAndLeave(txt(f, 0), QStringLiteral("20240230"));
            Gui::click(btn(f, 1));
            QVERIFY(f.isVisible());
            Gui::click(btn(f, 0));
        });
        rig.msgs.answer(Msg::ResOK);
        rig.msgs.answer(Msg::ResNo);
        rig.press(2);
        QCOMPARE(rig.msgs.count(), 2);
        QCOMPARE(rig.msgs.messages[0].buttons, 16);
        QCOMPARE(slipText(1, 3, "LEDGE_DATE"), QStringLiteral("2024/05/02"));
    }

    void copyOpensABlankSlipOfToday()
    {
        TestRoot root;
        seedSlips();
        gDB->EXEC("UPDATE D_LEDGE SET D_OPT_KBN=2, C_OPT_KBN=3, NOTES='元' WHERE FMR_ID=1 AND LEDGE_ID=4");
        ListRig rig;
        rig.selectLine(2);
        rig.modals.on("frmLedgeInput", [&](Form &f) {
            QCOMPARE(gMODE, Mode::Add);
            QCOMPARE(gROW_IDX, 1);
            QCOMPARE(txt(f, 0)->text(), QDate::currentDate().toString(QStringLiteral("yyyy/MM/dd")));
            QCOMPARE(txt(f, 1)->text() + txt(f, 4)->text() + txt(f, 5)->text(), QString());
            QCOMPARE(cmb(f, 1)->currentIndex(), 0);
            QCOMPARE(f.ctl<QLabel>("lblDATA(0)")->text(), QString());
            // a new size starts the entry over: what was typed is gone
            Gui::type(txt(f, 1), QStringLiteral("途中まで"));
            f.resize(f.width() + 120, f.height() + 60);
            Gui::settle();
            QCOMPARE(txt(f, 1)->text(), QString());
            Gui::click(btn(f, 1));
        });
        rig.press(5);
        QCOMPARE(slipText(1, 8, "D_ACC_ID C_ACC_ID AMT NOTES D_OPT_KBN C_OPT_KBN"), QStringLiteral("-|-|-|-|2|3"));
        QCOMPARE(slipText(1, 4, "AMT NOTES"), QStringLiteral("5000|元"));
    }

    void viewAndDelete()
    {
        TestRoot root;
        seedSlips();
        gDB->EXEC(Stmt("UPDATE D_LEDGE SET HOLD_TM=? WHERE LEDGE_ID=6").text(GetCompName()));
        ListRig rig;
        rig.selectLine(3);
        rig.modals.on("frmLedgeInput", [&](Form &f) {
            QCOMPARE(gMODE, Mode::View);
            QCOMPARE(btn(f, 0)->text(), QStringLiteral("閉じる"));
            QVERIFY(!btn(f, 1)->isVisible());
            QVERIFY(txt(f, 1)->isReadOnly());
            QVERIFY(Gui::isLocked(cmb(f, 1)));
            Gui::focus(txt(f, 0));
            QVERIFY(!f.ctl<QCalendarWidget>("MonthView1")->isVisible());
            Gui::click(btn(f, 0));
        });
        rig.press(3);
        // closing the entry frees this computer's holds
        QCOMPARE(slipText(1, 6, "HOLD_TM LAST_TM"), QStringLiteral("-|") + GetCompName());

        // delete: the slip shown locked, nothing gone until 削除 is pressed
        Build::planting(1, QStringLiteral("春トマト")).set("YYYY", 2024).add();
        gDB->EXEC("UPDATE D_LEDGE SET D_OPT_ID=1 WHERE LEDGE_ID=3");
        rig.find();
        rig.selectLine(1);
        rig.modals.on("frmLedgeInput", [&](Form &f) {
            QCOMPARE(gMODE, Mode::Delete);
            QCOMPARE(btn(f, 0)->text(), QStringLiteral("ｷｬﾝｾﾙ"));
            QCOMPARE(btn(f, 1)->text(), QStringLiteral("削除"));
            QVERIFY(txt(f, 4)->isReadOnly());
            // the sub-account of a locked slip stays locked
            QCOMPARE(cmb(f, 3)->currentText(), QStringLiteral("春トマト"));
            QVERIFY(Gui::isLocked(cmb(f, 3)));
            QCOMPARE(slipCount(QStringLiteral("FMR_ID=1 AND LEDGE_ID=3")), 1);
            Gui::click(btn(f, 1));
        });
        rig.press(4);
        QVERIFY(rig.msgs.messages.isEmpty());
        QCOMPARE(slipCount(QStringLiteral("FMR_ID=1 AND LEDGE_ID=3")), 0);
        QCOMPARE(column(rig.view, 0), (QStringList{"4", "5", "7"}));
        QCOMPARE(rig.list.selectedLine(), 1);
        // cancelling a delete keeps the slip
        rig.modals.on("frmLedgeInput", [&](Form &f) { Gui::click(btn(f, 0)); });
        rig.press(4);
        QCOMPARE(slipCount(QStringLiteral("FMR_ID=1 AND LEDGE_ID=4")), 1);
    }

    // ---------------------------------------------------------------- trial balance

    // The books' print dialog: the months of the trial balance, the year of
    // the income statement and the journal's file, each chosen in the
    // dialog or opened so from the menu.
    void trialBalanceDialog()
    {
        TestRoot root;
        seedSlips();
        gFMR_ID = Value(1);
        MsgRecorder msgs;
        Gui::Modals modals;
        int ends = 0;
        setEndProgramHook([&] { ++ends; });
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("farm.journal"));
        setSaveFileHook([&](const QString &, const QString &) { return file; });
        // the menu's buttons open the dialog with their report chosen
        for (const auto &[screen, title] : {std::pair{"fdlPrintPlRep", "損益計算書印刷"}, {"fdlExpJournal", "仕訳帳書出"}}) {
            std::unique_ptr<Form> f(createScreen(QString::fromLatin1(screen)));
            Gui::show(f.get());
            QCOMPARE(f->windowTitle(), QString::fromUtf8(title));
        }
        {
            fdlPrintAccRep dlg;
            Gui::show(&dlg);
            QCOMPARE(dlg.windowTitle(), QStringLiteral("試算表印刷"));
            const QStringList months = accRepMonths(QDate::currentDate());
            auto *from = dlg.ctl<QLineEdit>("txtCOND(0)");
            auto *to = dlg.ctl<QLineEdit>("txtCOND(1)");
            QCOMPARE(from->text(), months[0]);
            QCOMPARE(to->text(), months[1]);
            QCOMPARE(dlg.ctl<QComboBox>("cmbCOND")->currentText(), GetFmrNm(Value(1)));
            auto *print = dlg.ctl<QPushButton>("Command1(1)");
            // months typed as the fields complete them
            Gui::type(from, QStringLiteral("2024/13"));
            Gui::click(print);
            QCOMPARE(msgs.lastPrompt(), QStringLiteral("年月を正しく入力してください。"));
            QVERIFY(modals.opened.isEmpty());
            from->clear();
            Gui::typeKeys(from, QStringLiteral("202405"));
            to->clear();
            Gui::typeKeys(to, QStringLiteral("202405"));
            QCOMPARE(to->text(), QStringLiteral("2024/05"));
            Gui::click(print);
            QCOMPARE(modals.opened, QStringList{QStringLiteral("fdlPreview")});
            QCOMPARE(gREP_ID, qint16(kTrialBalanceReport));
            QCOMPARE(gREP_PAGES, qint16(1));
            QCOMPARE(BookReports::current(kTrialBalanceReport).period, QStringLiteral("2024年5月"));

            Gui::click(dlg.ctl<QRadioButton>("Option1(1)"));
            QCOMPARE(dlg.windowTitle(), QStringLiteral("損益計算書印刷"));
            QVERIFY(!from->isEnabled());
            auto *year = dlg.ctl<QLineEdit>("txtCOND(2)");
            QVERIFY(year->isEnabled());
            Gui::type(year, QStringLiteral("2024"));
            Gui::click(print);
            QCOMPARE(gREP_ID, qint16(kIncomeReport));
            QCOMPARE(BookReports::current(kIncomeReport).title, QStringLiteral("損益計算書（2024年分）"));

            Gui::click(dlg.ctl<QRadioButton>("Option1(2)"));
            QCOMPARE(print->text(), QStringLiteral("書出"));
            QVERIFY(from->isEnabled());
            Gui::click(print);
            QCOMPARE(modals.opened.size(), 2);
            QFile written(file);
            QVERIFY(written.open(QIODevice::ReadOnly));
            const QString text = QString::fromUtf8(written.readAll());
            QVERIFY(text.contains(QStringLiteral("commodity ¥1,000.\n")));
            QVERIFY(text.contains(QStringLiteral("2024-05-25 (7) O'Neil 商店\n")));
            // four slips of May and the balances brought in; the undated slip is named
            QCOMPARE(msgs.lastPrompt(), QStringLiteral("5件の取引を書き出しました。\n%1\n\n不備のある伝票が1件あります（科目のない側は "
                                                       "未確定:科目なし に、日付のない伝票は注記として書き出しました）。")
                                            .arg(QDir::toNativeSeparators(file)));
            // without the menu, cancel ends the program
            Gui::click(dlg.ctl<QPushButton>("Command1(0)"));
            QCOMPARE(ends, 1);
        }
        setSaveFileHook(nullptr);
        setEndProgramHook(nullptr);
    }
};

TILLORA_GUI_TEST_MAIN(TestLedger)
#include "tst_ledger.moc"
