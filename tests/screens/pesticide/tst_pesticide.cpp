// The pesticide list and the pesticide entry driven as a user drives them,
// with the lot, its purchase slip and its stock checked in the data database
// after each save.

#include "ui/Form.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "screens/diary/frmDairyCal.h"
#include "rules/common/Ids.h"
#include "rules/pesticide/ChemiData.h"
#include "rules/pesticide/ChemiStock.h"
#include "rules/pesticide/LotFixture.h"
#include "screens/pesticide/frmChemiInput.h"
#include "screens/pesticide/frmChemiList.h"
#include "store/Database.h"
#include "rules/books/Ledger.h"
#include "store/Lookup.h"
#include "support/Build.h"
#include "support/EntryForm.h"
#include "support/GuiDriver.h"
#include "support/MsgRecorder.h"
#include "support/RowText.h"
#include "support/TestRoot.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTreeWidget>
#include <QtTest/QTest>

using namespace EntryForm;

namespace {

QString lotText(int id, const char *columns) { return rowText("D_CHEMI", QStringLiteral("CHEMI_ID=%1").arg(id), columns); }
QString slipText(int farmer, int id, const char *columns)
{
    return rowText("D_LEDGE", QStringLiteral("FMR_ID=%1 AND LEDGE_ID=%2").arg(farmer).arg(id), columns);
}
int countOf(const char *table, const QString &where = QString())
{
    return gDB->DCount(QStringLiteral("*"), QString::fromLatin1(table), where).toLong();
}

void selectLot(QTreeWidget *list, int id)
{
    const int row = column(list, 0).indexOf(QString::number(id));
    QVERIFY2(row >= 0, qPrintable(QStringLiteral("lot %1 is not listed").arg(id)));
    list->clearSelection();
    list->setCurrentItem(list->topLevelItem(row));
    list->topLevelItem(row)->setSelected(true);
}

QLabel *lbl(Form &f, const char *name) { return f.ctl<QLabel>(QString::fromLatin1(name)); }
bool paneShown(Form &f) { return f.ctl<QGroupBox>("Frame2")->isVisible(); }

QStringList infoTexts(Form &f)
{
    QStringList out;
    for (int i = 0; i < 4; ++i)
        out << f.ctl<QLabel>(QStringLiteral("lblINFO(%1)").arg(i))->text();
    return out;
}

// The list as the calendar opens it, for farmer 1.
struct ListRig {
    MsgRecorder msgs;
    Gui::Modals modals;
    frmChemiList list;
    QTreeWidget *view;
    ListRig()
    {
        gFMR_ID = Value(1);
        Gui::show(&list);
        view = list.ctl<QTreeWidget>("ListView1");
    }
    void press(int button) { Gui::click(list.ctl<QPushButton>(QStringLiteral("cmdMENU(%1)").arg(button))); }
    void find() { Gui::click(list.ctl<QPushButton>("cmdFIND")); }
    void stock(int option) { Gui::click(list.ctl<QRadioButton>(QStringLiteral("Option1(%1)").arg(option))); }
    QLineEdit *cond(int i) { return list.ctl<QLineEdit>(QStringLiteral("txtCOND(%1)").arg(i)); }
};

} // namespace

class TestPesticide : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        gFMR_ID = Value(1);
        gUSE_TYPE = 1;
        gLAST_CHEMI_ID = Value();
        setCompNameForTests(QStringLiteral("PC-PEST"));
    }

    // ---------------------------------------------------------------- list

    void listFiltersAndStock()
    {
        TestRoot root;
        seedLots();
        ListRig rig;
        QVERIFY(rig.list.ctl<QRadioButton>("Option1(0)")->isChecked());
        // lots with something left, by purchase date
        QCOMPARE(column(rig.view, 0), (QStringList{"1", "4"}));
        QTreeWidgetItem *first = rig.view->topLevelItem(0);
        QStringList cells;
        for (int c = 0; c < 8; ++c)
            cells << first->text(c);
        QCOMPARE(cells.join(QLatin1Char('|')), QStringLiteral("1|殺虫剤|ハルカゼ乳剤（見本）|90001|2024/04/03|3|1|2"));
        QCOMPARE(rig.view->headerItem()->data(1, Qt::UserRole).toString(), QStringLiteral("USED"));
        QCOMPARE(rig.list.rows().size(), 2);
        QCOMPARE(rig.list.rows()[0].NOTES.toText(), QStringLiteral("春の分"));
        QVERIFY(!rig.list.ctl<QPushButton>("cmdMENU(6)")->isEnabled());
        // no lot saved yet matches: nothing is chosen and the buttons that act
        // on a row open nothing
        QCOMPARE(rig.list.selectedRow(), -1);
        for (int button = 2; button <= 5; ++button)
            rig.press(button);
        QVERIFY(rig.modals.opened.isEmpty());

        // 検索 first gives back what no diary line uses: lot 4's stale count goes
        rig.find();
        QCOMPARE(column(rig.view, 6), (QStringList{"1", "0"}));
        QCOMPARE(column(rig.view, 7), (QStringList{"2", "2"}));
        QCOMPARE(lotText(4, "USED_QTY REST_QTY"), QStringLiteral("0|2"));
        QCOMPARE(lotText(5, "USED_QTY REST_QTY"), QStringLiteral("0|5"));
        // used up: nothing left, or no figure at all
        rig.stock(1);
        rig.find();
        QCOMPARE(column(rig.view, 0), (QStringList{"3", "2"}));
        QCOMPARE(column(rig.view, 7), (QStringList{"", "0"}));
        // all of this farmer's lots, never another farmer's
        rig.stock(2);
        rig.find();
        QCOMPARE(column(rig.view, 0), (QStringList{"3", "1", "2", "4"}));
        // each filter on its own: a part of the name, the purchase dates (both
        // ends kept), the registration number, the use
        const struct {
            QStringList conditions;
            const char *use;
            QStringList listed;
        } filters[] = {
            {{"フロア", "", "", ""}, "", {"2"}},
            {{"", "20240403", "20240510", ""}, "", {"1", "2"}},
            {{"", "", "", "90001"}, "", {"1"}},
            {{"", "", "", ""}, "殺菌剤", {"2", "4"}},
        };
        for (const auto &f : filters) {
            for (int i = 0; i < 4; ++i)
                Gui::type(rig.cond(i), f.conditions[i]);
            if (*f.use)
                chooseText(rig.list.ctl<QComboBox>("cmbCOND"), QString::fromUtf8(f.use));
            rig.find();
            QCOMPARE(column(rig.view, 0), f.listed);
        }
        QCOMPARE(column(rig.view, 1), (QStringList{"殺菌剤", "殺菌剤"}));
        QVERIFY(rig.msgs.messages.isEmpty());

        // odd filters hold their field
        typeAndLeave(rig.cond(1), QStringLiteral("あした"));
        QCOMPARE(rig.msgs.lastPrompt(), QStringLiteral("日付を指定してください。"));
        QCOMPARE(QApplication::focusWidget(), rig.cond(1));
        Gui::type(rig.cond(1), QString());
        typeAndLeave(rig.cond(3), QStringLiteral("abc"));
        QCOMPARE(rig.msgs.lastPrompt(), QStringLiteral("数値を指定してください。"));
        QCOMPARE(QApplication::focusWidget(), rig.cond(3));
        Gui::type(rig.cond(3), QString());
        chooseText(rig.list.ctl<QComboBox>("cmbCOND"), QStringLiteral("肥料"));
        QCOMPARE(rig.msgs.lastPrompt(), QStringLiteral("一覧にある用途を選択してください。"));
        rig.list.ctl<QComboBox>("cmbCOND")->lineEdit()->clear();
        Gui::leave(rig.list.ctl<QComboBox>("cmbCOND"));
        // nothing found: the row buttons do nothing
        Gui::type(rig.cond(0), QStringLiteral("ない名前"));
        rig.find();
        QCOMPARE(rig.view->topLevelItemCount(), 0);
        for (int b = 2; b <= 5; ++b)
            rig.press(b);
        QVERIFY(rig.modals.opened.isEmpty());
    }

    // ---------------------------------------------------------------- entry

    void purchasePostsItsSlip()
    {
        TestRoot root;
        seedLots();
        ListRig rig;
        rig.modals.on("frmChemiInput", [&](Form &f) {
            QVERIFY(!paneShown(f));
            QVERIFY(f.ctl<QCheckBox>("Check1")->isChecked());
            // the number brings the names, full width, and the two lists
            typeAndLeave(f, 1, QStringLiteral("上書きされる名前"));
            typeAndLeave(f, 0, QStringLiteral("90013"));
            QCOMPARE(txt(f, 1)->text(), QStringLiteral("ミズカガミ１キロ粒剤（見本）"));
            QCOMPARE(txt(f, 2)->text(), QStringLiteral("水田用除草剤（見本）"));
            QCOMPARE(txt(f, 3)->text(), QStringLiteral("ひなた化成工業株式会社（見本）"));
            QCOMPARE(cmb(f, 0)->currentText(), QStringLiteral("除草剤"));
            QCOMPARE(cmb(f, 1)->currentText(), QStringLiteral("粒剤"));
            // the pane of registered uses waits for the next opening
            QVERIFY(!paneShown(f));
            typeAndLeave(f, 4, QStringLiteral("20240403"));
            QCOMPARE(txt(f, 4)->text(), QStringLiteral("2024/04/03"));
            typeAndLeave(f, 5, QStringLiteral("O'Neil農園"));
            typeAndLeave(f, 6, QStringLiteral("３"));
            QCOMPARE(lbl(f, "lblDATA(2)")->text(), QStringLiteral("3"));
            chooseText(cmb(f, 2), QStringLiteral("kg"));
            Gui::click(f.ctl<QRadioButton>("Option1(1)"));
            typeAndLeave(f, 7, QStringLiteral("4,500"));
            typeAndLeave(f, 8, QStringLiteral("田植え前に"));
            Gui::click(btn(f, 1));
            QVERIFY(!f.isVisible());
        });
        rig.press(1);
        QVERIFY(rig.msgs.messages.isEmpty());
        // the next lot number over all farmers; the farmer's next slip number
        QCOMPARE(gLAST_CHEMI_ID, Value(6));
        QCOMPARE(lotText(6, "FMR_ID CHEMI_NM REG_NO USES CHEMI_TYPE PUR_DATE PUR_SHOP PUR_QTY PUR_UNIT ACC_ID PUR_AMT"),
                 QStringLiteral("1|ミズカガミ１キロ粒剤（見本）|90013|4|8|2024/04/03|O'Neil農園|3|2|2000|4500"));
        QCOMPARE(lotText(6, "USED_QTY REST_QTY NOTES LEDGE_ID CHK_FLG UDATE LAST_TM HOLD_TM"),
                 QStringLiteral("0|3|田植え前に|5|True|-|PC-PEST|-"));
        QVERIFY(!gDB->DLookup("IDATE", "D_CHEMI", "CHEMI_ID=6").isNull());
        // stock on the debit side, named by the lot; the payable on the credit side
        QCOMPARE(slipText(1, 5, "LEDGE_DATE D_ACC_ID D_OPT_KBN D_OPT_ID D_OPT_NM C_ACC_ID C_OPT_KBN C_OPT_ID C_OPT_NM"),
                 QStringLiteral("2024/04/03|1130|3|6|3.0kg|2000|0|0|-"));
        QCOMPARE(slipText(1, 5, "CTR_NM NOTES AMT UDATE LAST_TM HOLD_TM"),
                 QStringLiteral("O'Neil農園|田植え前に|4500|-|PC-PEST|-"));
        QVERIFY(!gDB->DLookup("IDATE", "D_LEDGE", "FMR_ID=1 AND LEDGE_ID=5").isNull());
        // the lot owns its slip: the slip screens refuse it
        QCOMPARE(ChkLedgeUse(Value(1), Value(5)), 2);
        // the list was read again with the new lot selected
        QCOMPARE(column(rig.view, 0), (QStringList{"1", "6", "4"}));
        QCOMPARE(rig.list.selectedRow(), 1);
    }

    void changesRewriteTheSlip()
    {
        TestRoot root;
        seedLots();
        // lot 1's uses counted in its purchase unit: 500 g and 0.5 kg
        gDB->EXEC("UPDATE D_CHEMI SET USED_QTY=0, REST_QTY=3 WHERE CHEMI_ID=1");
        RecountChemiUse(Value(1), DateUtil::make(2024, 6, 9));
        ListRig rig;
        auto edit = [&](std::function<void(Form &)> script) {
            selectLot(rig.view, 1);
            rig.modals.on("frmChemiInput", [&](Form &f) {
                QCOMPARE(qobject_cast<frmChemiInput *>(&f)->mode(), Mode::Change);
                script(f);
                Gui::click(btn(f, 1));
                QVERIFY(!f.isVisible());
            });
            rig.press(2);
        };
        edit([](Form &f) {
            QCOMPARE(lbl(f, "lblDATA(0)")->text(), QStringLiteral("1"));
            QCOMPARE(txt(f, 4)->text(), QStringLiteral("2024/04/03"));
            QCOMPARE(cmb(f, 2)->currentText(), QStringLiteral("kg"));
            QCOMPARE(lbl(f, "lblDATA(1)")->text(), QStringLiteral("1"));
            QVERIFY(f.ctl<QRadioButton>("Option1(1)")->isChecked());
            QVERIFY(!f.ctl<QRadioButton>("Option1(0)")->isChecked());
            QVERIFY(paneShown(f));
            typeAndLeave(f, 6, QStringLiteral("2"));
            QCOMPARE(lbl(f, "lblDATA(2)")->text(), QStringLiteral("1"));
            typeAndLeave(f, 7, QStringLiteral("6000"));
            Gui::click(f.ctl<QRadioButton>("Option1(0)"));
            // switched off: no longer offered for use
            Gui::click(f.ctl<QCheckBox>("Check1"));
        });
        QCOMPARE(lotText(1, "PUR_QTY USED_QTY REST_QTY PUR_AMT ACC_ID LEDGE_ID CHK_FLG"),
                 QStringLiteral("2|1|1|6000|1000|3|False"));
        QVERIFY(!gDB->DLookup("UDATE", "D_CHEMI", "CHEMI_ID=1").isNull());
        // the same number, the new amount and account; created when the lot was
        QCOMPARE(slipText(1, 3, "D_ACC_ID D_OPT_ID D_OPT_NM C_ACC_ID AMT IDATE"),
                 QStringLiteral("1130|1|2.0kg|1000|6000|2024/04/03 10:00"));
        QVERIFY(!gDB->DLookup("UDATE", "D_LEDGE", "FMR_ID=1 AND LEDGE_ID=3").isNull());
        QCOMPARE(countOf("D_LEDGE"), 3);

        // an amount of 0: no slip
        edit([](Form &f) { typeAndLeave(f, 7, QStringLiteral("0")); });
        QCOMPARE(lotText(1, "PUR_AMT LEDGE_ID"), QStringLiteral("0|0"));
        QCOMPARE(countOf("D_LEDGE", "FMR_ID=1"), 1);
        // a return: the sides change places, the amount stays positive, a new number
        edit([](Form &f) { typeAndLeave(f, 7, QStringLiteral("-500")); });
        QCOMPARE(lotText(1, "LEDGE_ID"), QStringLiteral("5"));
        QCOMPARE(slipText(1, 5, "D_ACC_ID D_OPT_KBN D_OPT_ID D_OPT_NM C_ACC_ID C_OPT_KBN C_OPT_ID C_OPT_NM AMT"),
                 QStringLiteral("1000|0|0|-|1130|3|1|2.0kg|500"));
        // no purchase date: the slip goes, the lot keeps the number
        edit([](Form &f) { typeAndLeave(f, 4, QString()); });
        QCOMPARE(lotText(1, "PUR_DATE LEDGE_ID PUR_AMT"), QStringLiteral("-|5|-500"));
        QCOMPARE(countOf("D_LEDGE", "FMR_ID=1"), 1);
        QCOMPARE(countOf("D_LEDGE", "FMR_ID=2"), 1);
        QVERIFY(rig.msgs.messages.isEmpty());
    }

    void amountAndNameRules()
    {
        TestRoot root;
        seedLots();
        ListRig rig;
        const int lots = countOf("D_CHEMI"), slips = countOf("D_LEDGE");
        rig.modals.on("frmChemiInput", [&](Form &f) {
            Gui::click(btn(f, 1));
            QCOMPARE(rig.msgs.lastPrompt(), QStringLiteral("名称は必須入力です。"));
            QCOMPARE(QApplication::focusWidget(), txt(f, 1));
            typeAndLeave(f, 1, QStringLiteral("石灰硫黄合剤"));
            typeAndLeave(f, 4, QStringLiteral("20240701"));
            // what is no number or no date goes quietly
            rig.msgs.clear();
            typeAndLeave(f, 6, QStringLiteral("たくさん"));
            typeAndLeave(f, 7, QStringLiteral("千円"));
            typeAndLeave(f, 4, QStringLiteral("20241345"));
            QVERIFY(rig.msgs.messages.isEmpty());
            QVERIFY(txt(f, 6)->text().isEmpty() && txt(f, 7)->text().isEmpty() && txt(f, 4)->text().isEmpty());
            QVERIFY(lbl(f, "lblDATA(2)")->text().isEmpty());
            chooseText(cmb(f, 2), QStringLiteral("トン"));
            QCOMPARE(rig.msgs.lastPrompt(), QStringLiteral("一覧にある項目を選択してください。"));
            QCOMPARE(QApplication::focusWidget(), cmb(f, 2));
            cmb(f, 2)->lineEdit()->clear();
            Gui::leave(cmb(f, 2));
            // no amount: the write stops with the error, nothing is stored
            typeAndLeave(f, 4, QStringLiteral("20240701"));
            rig.msgs.clear();
            Gui::click(btn(f, 1));
            QCOMPARE(rig.msgs.count(), 1);
            QCOMPARE(rig.msgs.lastPrompt(), QStringLiteral("Null の使い方が不正です。"));
            QCOMPARE(rig.msgs.messages[0].buttons, 48);
            QVERIFY(f.isVisible());
            QCOMPARE(countOf("D_CHEMI"), lots);
            QCOMPARE(countOf("D_LEDGE"), slips);
            // 0 is an amount
            typeAndLeave(f, 7, QStringLiteral("0"));
            Gui::click(btn(f, 1));
            QVERIFY(!f.isVisible());
        });
        rig.press(1);
        QCOMPARE(lotText(6, "CHEMI_NM PUR_DATE PUR_QTY USED_QTY REST_QTY ACC_ID PUR_AMT LEDGE_ID"),
                 QStringLiteral("石灰硫黄合剤|2024/07/01|0|0|0|-|0|0"));
        // an amount with no purchase date posts nothing
        rig.modals.on("frmChemiInput", [&](Form &f) {
            typeAndLeave(f, 1, QStringLiteral("日付のない農薬"));
            typeAndLeave(f, 6, QStringLiteral("1.5"));
            typeAndLeave(f, 7, QStringLiteral("1200"));
            Gui::click(btn(f, 1));
        });
        rig.press(1);
        QCOMPARE(lotText(7, "PUR_QTY REST_QTY PUR_AMT LEDGE_ID"), QStringLiteral("1.5|1.5|1200|-"));
        QCOMPARE(countOf("D_LEDGE"), slips);
        QCOMPARE(rig.msgs.count(), 1);
    }

    void deleteRefusedWhileUsed()
    {
        TestRoot root;
        seedLots();
        // another farmer's line under lot 4's number
        Build::diaryLine(QDate(2024, 7, 1), 1, WorkKbn::Spraying)
            .set("FMR_ID", 2)
            .set("PLANT_ID", 1)
            .set("CHEMI_ID", 4)
            .set("QTY", 1)
            .set("UNIT_ID", 2)
            .add();
        ListRig rig;
        auto remove = [&](int lot) {
            selectLot(rig.view, lot);
            rig.modals.on("frmChemiInput", [&](Form &f) {
                QCOMPARE(qobject_cast<frmChemiInput *>(&f)->mode(), Mode::Delete);
                QCOMPARE(btn(f, 1)->text(), QStringLiteral("削除"));
                QVERIFY(txt(f, 1)->isReadOnly());
                Gui::click(btn(f, 1));
            });
            rig.press(4);
        };
        remove(1);
        QCOMPARE(rig.msgs.count(), 1);
        QCOMPARE(rig.msgs.lastPrompt(), QStringLiteral("この農薬は5/20に使用されています。削除できません。"));
        QCOMPARE(countOf("D_CHEMI", "CHEMI_ID=1"), 1);
        QCOMPARE(countOf("D_LEDGE", "FMR_ID=1 AND LEDGE_ID=3"), 1);
        // another farmer's line under the number doesn't hold lot 4
        rig.msgs.clear();
        remove(4);
        QVERIFY(rig.msgs.messages.isEmpty());
        QCOMPARE(countOf("D_CHEMI", "CHEMI_ID=4"), 0);
        QCOMPARE(countOf("D_LEDGE", "FMR_ID=1 AND LEDGE_ID=4"), 0);
        QCOMPARE(countOf("D_LEDGE"), 2);
        QCOMPARE(column(rig.view, 0), QStringList{"1"});
    }

    void copyKeepsTheSlipNumber()
    {
        TestRoot root;
        seedLots();
        ListRig rig;
        selectLot(rig.view, 1);
        rig.modals.on("frmChemiInput", [&](Form &f) {
            QCOMPARE(qobject_cast<frmChemiInput *>(&f)->mode(), Mode::Add);
            QVERIFY(paneShown(f));
            const QStringList kept{txt(f, 0)->text(), txt(f, 1)->text(), txt(f, 5)->text(), txt(f, 6)->text(),
                                   txt(f, 7)->text(), txt(f, 8)->text()};
            QCOMPARE(kept.join(QLatin1Char('|')), QStringLiteral("90001|ハルカゼ乳剤（見本）|JAみどり|3|4500|春の分"));
            QVERIFY(lbl(f, "lblDATA(0)")->text().isEmpty());
            QVERIFY(txt(f, 4)->text().isEmpty());
            QVERIFY(lbl(f, "lblDATA(1)")->text().isEmpty() && lbl(f, "lblDATA(2)")->text().isEmpty());
            Gui::click(btn(f, 1));
        });
        rig.press(5);
        // no date, so no slip: the copy points at its model's slip
        QCOMPARE(lotText(6, "CHEMI_NM USED_QTY REST_QTY LEDGE_ID PUR_DATE"), QStringLiteral("ハルカゼ乳剤（見本）|0|3|3|-"));
        QCOMPARE(countOf("D_LEDGE"), 3);
        // with a date the slip would go in under that number, which is taken
        selectLot(rig.view, 1);
        rig.modals.on("frmChemiInput", [&](Form &f) {
            typeAndLeave(f, 4, QStringLiteral("20240801"));
            Gui::click(btn(f, 1));
            QVERIFY(f.isVisible());
        });
        rig.press(5);
        QCOMPARE(rig.msgs.count(), 1);
        QCOMPARE(rig.msgs.lastPrompt(),
                 QStringLiteral("伝票番号3は既に他の伝票に使われているため、購入の伝票を登録できません。"));
        QCOMPARE(countOf("D_CHEMI"), 6);
        QCOMPARE(slipText(1, 3, "D_OPT_ID AMT"), QStringLiteral("1|4500"));
    }

    void aLotThatIsGone()
    {
        TestRoot root;
        seedLots();
        ListRig rig;
        for (int mode : {2, 4}) {
            selectLot(rig.view, 4);
            rig.modals.on("frmChemiInput", [&](Form &f) {
                gDB->EXEC("DELETE D_CHEMI.* FROM D_CHEMI WHERE CHEMI_ID=4");
                Gui::click(btn(f, 1));
                QVERIFY(f.isVisible());
            });
            rig.press(mode);
            QCOMPARE(rig.msgs.lastPrompt(), QStringLiteral("該当データが存在しません。"));
            QCOMPARE(rig.msgs.messages.last().buttons, 16);
            Build::lot(4, QStringLiteral("コモレビ水和剤（見本）")).set("PUR_QTY", 2).set("REST_QTY", 2).add();
        }
        QCOMPARE(rig.msgs.count(), 2);
        // a save of a lot that is gone writes nothing: its purchase slip stays
        QCOMPARE(slipText(1, 4, "D_OPT_ID AMT"), QStringLiteral("4|1800"));
        QCOMPARE(lotText(4, "UDATE LAST_TM"), QStringLiteral("-|-"));
    }

    void registeredUsesWhileViewing()
    {
        TestRoot root;
        seedLots();
        ListRig rig;
        rig.stock(2);
        rig.find();
        selectLot(rig.view, 2);
        rig.modals.on("frmChemiInput", [&](Form &f) {
            QCOMPARE(btn(f, 0)->text(), QStringLiteral("閉じる"));
            QVERIFY(!btn(f, 1)->isVisible());
            QVERIFY(txt(f, 1)->isReadOnly());
            QCOMPARE(txt(f, 1)->focusPolicy(), Qt::NoFocus);
            QVERIFY(Gui::isLocked(cmb(f, 0)));
            QVERIFY(!f.ctl<QRadioButton>("Option1(0)")->isEnabled());
            QVERIFY(!f.ctl<QCheckBox>("Check1")->isEnabled());
            auto *crop = f.ctl<QComboBox>("cmbINFO");
            auto *bar = f.ctl<QScrollBar>("VScroll1");
            QVERIFY(crop->isEnabled());
            chooseText(crop, QStringLiteral("ミニトマト"));
            QCOMPARE(bar->maximum(), 1);
            QCOMPARE(infoTexts(f).join(QLatin1Char('|')),
                     QStringLiteral("灰色かび病|2000倍100～300L/10a|収穫前日まで|3回以内 散布"));
            bar->setValue(1);
            QCOMPARE(infoTexts(f)[0], QStringLiteral("灰色かび病"));
            chooseText(crop, QStringLiteral("いちご"));
            QCOMPARE(bar->value(), 0);
            QStringList seen{infoTexts(f)[0]};
            bar->setValue(1);
            seen << infoTexts(f)[0] + QLatin1Char('/') + infoTexts(f)[2];
            seen.sort();
            QCOMPARE(seen.join(QLatin1Char(' ')), QStringLiteral("うどんこ病 炭疽病/育苗期"));
            // nothing registered for the crop: empty labels
            chooseText(crop, QStringLiteral("なす"));
            QCOMPARE(infoTexts(f).join(QString()), QString());
            // a crop the list doesn't know holds the box
            chooseText(crop, QStringLiteral("バナナ"));
            QCOMPARE(rig.msgs.lastPrompt(), QStringLiteral("一覧にある作物を選択してください。"));
            QCOMPARE(QApplication::focusWidget(), crop);
            crop->lineEdit()->clear();
            Gui::leave(crop);
            QCOMPARE(crop->currentIndex(), -1);
            Gui::click(btn(f, 0));
        });
        rig.press(3);
        QCOMPARE(rig.msgs.count(), 1);
        QCOMPARE(lotText(2, "UDATE"), QStringLiteral("-"));
    }

    void paneFollowsTheNumberAtOpening()
    {
        TestRoot root;
        seedLots();
        ListRig rig;
        rig.modals.on("frmChemiInput", [&](Form &f) {
            typeAndLeave(f, 0, QStringLiteral("90003"));
            QCOMPARE(txt(f, 1)->text(), QStringLiteral("ミナモフロアブル（見本）"));
            QVERIFY(!paneShown(f));
            // a number the register doesn't know empties the five fields
            typeAndLeave(f, 2, QStringLiteral("手で書いた種類"));
            typeAndLeave(f, 0, QStringLiteral("12345"));
            const QStringList five{txt(f, 1)->text(), txt(f, 2)->text(), txt(f, 3)->text(), cmb(f, 0)->currentText(),
                                   cmb(f, 1)->currentText()};
            QCOMPARE(five.join(QString()), QString());
            QCOMPARE(cmb(f, 0)->currentIndex(), -1);
            // a new size starts over, and the pane stays hidden
            f.resize(f.width() + 120, f.height() + 60);
            Gui::settle();
            QVERIFY(txt(f, 0)->text().isEmpty());
            QVERIFY(!paneShown(f));
            QCOMPARE(f.ctl<QScrollBar>("VScroll1")->width(), 300 / Form::TwipsPerPixel);
            Gui::click(btn(f, 0));
        });
        rig.press(1);
        QCOMPARE(countOf("D_CHEMI"), 5);
        // a lot with no number has no pane either
        rig.stock(2);
        rig.find();
        selectLot(rig.view, 3);
        rig.modals.on("frmChemiInput", [&](Form &f) { QVERIFY(!paneShown(f)); });
        rig.press(2);
        QCOMPARE(rig.modals.opened.size(), 2);
    }
};

TILLORA_GUI_TEST_MAIN(TestPesticide)
#include "tst_pesticide.moc"
