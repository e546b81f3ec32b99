// The planting list and entry driven as a user drives them, with the rows
// checked in the data database after each save. The rules behind them are
// tested without a window in tests/rules/planting.

#include "ui/Form.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "ui/Screens.h"
#include "screens/diary/frmDairyCal.h"
#include "rules/planting/PlantData.h"
#include "screens/planting/frmPlantInput.h"
#include "screens/planting/frmPlantList.h"
#include "store/Database.h"
#include "support/Build.h"
#include "support/EntryForm.h"
#include "support/GuiDriver.h"
#include "support/MsgRecorder.h"
#include "support/RowText.h"
#include "support/TestRoot.h"
#include "ui/Skeletons.h"

#include "rules/planting/PlantSeed.h"

#include <QApplication>
#include <QCalendarWidget>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QtTest/QTest>

using namespace EntryForm;

namespace {

Value plantField(int farmer, int id, const char *column)
{
    return gDB->DLookup(QString::fromLatin1(column), QStringLiteral("D_PLANT"),
                        QStringLiteral("FMR_ID=%1 AND PLANT_ID=%2").arg(farmer).arg(id));
}
QString plantText(int farmer, int id, const char *columns)
{
    return rowText("D_PLANT", QStringLiteral("FMR_ID=%1 AND PLANT_ID=%2").arg(farmer).arg(id), columns);
}

int plantCount(const QString &criteria = QString())
{
    return gDB->DCount(QStringLiteral("*"), QStringLiteral("D_PLANT"), criteria).toLong();
}

int rowOf(QTreeWidget *list, const QString &name) { return column(list, 1).indexOf(name); }

// The list, open as the calendar opens it, with the farmer 1 and a month of 2024.
struct ListRig {
    MsgRecorder msgs;
    Gui::Modals modals;
    frmPlantList list;
    QTreeWidget *view;
    ListRig()
    {
        gFMR_ID = Value(1);
        gBASE_DATE = DateUtil::make(2024, 5, 1);
        Gui::show(&list);
        view = list.ctl<QTreeWidget>("ListView1");
    }
    void press(int button) { Gui::click(list.ctl<QPushButton>(QStringLiteral("cmdMENU(%1)").arg(button))); }
};

} // namespace

class TestPlanting : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        gFMR_ID = Value(1);
        gUSE_TYPE = 1;
        gLAST_PLANT_ID = Value();
        gPLANT_ROWS.clear();
    }

    // ---------------------------------------------------------------- list

    void listFiltersAndShowsItsColumns()
    {
        TestRoot root;
        seedPlantings();
        ListRig rig;
        QCOMPARE(rig.list.ctl<QLineEdit>("txtCOND(0)")->text(), QStringLiteral("2024"));
        // every farmer's plantings of the year, by crop and planting day
        QCOMPARE(column(rig.view, 1), (QStringList{"露地なす", "隣の畑のなす", "春トマト", "夏トマト"}));
        QTreeWidgetItem *first = rig.view->topLevelItem(2);
        QCOMPARE(first->text(0), QStringLiteral("1"));
        QCOMPARE(first->text(2), QStringLiteral("2024/04/10"));
        QCOMPARE(first->text(3), QStringLiteral("2024/07"));
        QCOMPARE(first->text(4), QStringLiteral("桃太郎"));
        QCOMPARE(first->text(5), QStringLiteral("12.5"));
        QCOMPARE(rig.view->topLevelItem(3)->text(5), QString());
        QCOMPARE(gPLANT_ROWS.size(), 4);
        QVERIFY(gPLANT_ROWS[2].IMG_PATH1.isEmpty()); // the image paths are not read
        QCOMPARE(gPLANT_ROWS[2].NOTES1.toText(), QStringLiteral("ハウス２棟"));
        QVERIFY(!rig.list.ctl<QPushButton>("cmdMENU(6)")->isEnabled());
        // no planting saved yet matches: no row is chosen, the row buttons wait
        QVERIFY(rig.view->selectedItems().isEmpty());
        for (int b = 2; b <= 5; ++b)
            rig.press(b);
        QVERIFY(rig.modals.opened.isEmpty());

        // an empty year lists all years
        auto *year = rig.list.ctl<QLineEdit>("txtCOND(0)");
        auto *find = rig.list.ctl<QPushButton>("cmdFIND");
        Gui::type(year, QString());
        Gui::click(find);
        QCOMPARE(rig.view->topLevelItemCount(), 5);
        QCOMPARE(rig.view->topLevelItem(0)->text(1), QStringLiteral("去年のキャベツ"));
        // by crop, then also by kind
        chooseText(rig.list.ctl<QComboBox>("cmbCOND(0)"), QStringLiteral("トマト"));
        Gui::click(find);
        QCOMPARE(column(rig.view, 1), (QStringList{"春トマト", "夏トマト"}));
        chooseText(rig.list.ctl<QComboBox>("cmbCOND(1)"), QStringLiteral("露地"));
        Gui::click(find);
        QCOMPARE(column(rig.view, 1), (QStringList{"夏トマト"}));
        QVERIFY(rig.msgs.messages.isEmpty());

        // a crop typed that the list doesn't offer holds the focus
        auto *crop = rig.list.ctl<QComboBox>("cmbCOND(0)");
        chooseText(crop, QStringLiteral("バナナ"));
        QCOMPARE(QApplication::focusWidget(), crop);
        QCOMPARE(rig.msgs.count(), 1);
        // emptied, it filters nothing
        crop->lineEdit()->clear();
        Gui::leave(crop);
        Gui::closePopups();
        QCOMPARE(crop->currentIndex(), -1);
        // a year that is no number holds the focus too
        typeAndLeave(year, QStringLiteral("令和"));
        QCOMPARE(rig.msgs.lastPrompt(), QStringLiteral("数値を指定してください。"));
        QCOMPARE(QApplication::focusWidget(), year);
        Gui::type(year, QStringLiteral("２０２３"));
        Gui::click(find);
        QCOMPARE(column(rig.view, 1), QStringList());
        // with no rows the row buttons do nothing
        for (int b = 2; b <= 5; ++b)
            rig.press(b);
        QVERIFY(rig.modals.opened.isEmpty());
    }

    // ---------------------------------------------------------------- entry

    void addThroughTheList()
    {
        TestRoot root;
        seedPlantings();
        ListRig rig;
        rig.modals.on("frmPlantInput", [&](Form &f) {
            QCOMPARE(gMODE, Mode::Add);
            QCOMPARE(gROW_IDX, -1);
            QCOMPARE(cmb(f, 0)->currentText(), gMST->DLookup("FMR_NM", "M_FMR", "FMR_ID=1").toText());
            QVERIFY(txt(f, 0)->text().isEmpty());
            typeAndLeave(f, 8, QStringLiteral("秋まきほうれんそう"));
            // month 13 of 2024 is January 2025
            typeAndLeave(f, 0, QStringLiteral("2024"));
            typeAndLeave(f, 1, QStringLiteral("13"));
            QCOMPARE(txt(f, 0)->text(), QStringLiteral("2025"));
            QCOMPARE(txt(f, 1)->text(), QStringLiteral("01"));
            // the group narrows the crops; the crop brings variety and item
            chooseText(cmb(f, 1), QStringLiteral("葉茎菜類"));
            QVERIFY(cmb(f, 2)->findText(QStringLiteral("トマト")) < 0);
            typeAndLeave(f, 2, QStringLiteral("手で打った品種"));
            chooseText(cmb(f, 2), QStringLiteral("リーフレタス"));
            QCOMPARE(txt(f, 2)->text(), QStringLiteral("リーフレタス"));
            QCOMPARE(txt(f, 3)->text(), QStringLiteral("非結球レタス"));
            // the product by its code, found in any shop
            typeAndLeave(f, 4, QStringLiteral("３"));
            QCOMPARE(txt(f, 4)->text(), QStringLiteral("3"));
            QCOMPARE(txt(f, 5)->text(), QStringLiteral("きゅうり"));
            chooseText(cmb(f, 3), QStringLiteral("トンネル"));
            chooseText(cmb(f, 4), QStringLiteral("有機栽培"));
            typeAndLeave(f, 6, QStringLiteral("北の畑"));
            typeAndLeave(f, 7, QStringLiteral("１５.５"));
            QCOMPARE(txt(f, 7)->text(), QStringLiteral("15.5"));
            // dates complete as typed and show in full
            Gui::type(txt(f, 11), QString());
            Gui::typeKeys(txt(f, 11), QStringLiteral("2024"));
            QCOMPARE(txt(f, 11)->text(), QStringLiteral("2024/"));
            Gui::typeKeys(txt(f, 11), QStringLiteral("0903"));
            Gui::leave(txt(f, 11));
            QCOMPARE(txt(f, 11)->text(), QStringLiteral("2024/09/03"));
            Gui::focus(txt(f, 9));
            QVERIFY(f.ctl<QCalendarWidget>("MonthView1")->isVisible());
            typeAndLeave(f, 9, QStringLiteral("20240901"));
            typeAndLeave(f, 12, QStringLiteral("200"));
            chooseText(cmb(f, 5), QStringLiteral("束"));
            typeAndLeave(f, 13, QStringLiteral("20241201"));
            typeAndLeave(f, 14, QStringLiteral("20250131"));
            typeAndLeave(f, 15, QStringLiteral("O'Neil さんの種"));
            Gui::click(btn(f, 1));
            QVERIFY(!f.isVisible());
        });
        rig.press(1);
        QCOMPARE(rig.modals.opened, QStringList{QStringLiteral("frmPlantInput")});
        QVERIFY(rig.msgs.messages.isEmpty());
        // farmer 1's next number
        QCOMPARE(plantCount(), 6);
        QCOMPARE(gLAST_PLANT_ID, Value(5));
        QCOMPARE(plantText(1, 5, "PLANT_NM YYYY HARVEST_SCHD_YM CROP_NM CROP_NM1 CROP_NM2 PRD_ID PRD_NM PLANT_TYPE"),
                 QStringLiteral("秋まきほうれんそう|2025|202501|リーフレタス|リーフレタス|非結球レタス|3|きゅうり|3"));
        QCOMPARE(plantText(1, 5, "FIELD_NM AREA PLANT_DATE START_DATE END_DATE SHIP_EST SHIP_EST_UNIT SHIP_SCHD_DATE1 "
                               "SHIP_SCHD_DATE2 NOTES1 NOTES2 UDATE HOLD_TM"),
                 QStringLiteral("北の畑|15.5|2024/09/03|2024/09/01|-|200|6|2024/12/01|2025/01/31|O'Neil さんの種|-|-|-"));
        QCOMPARE(plantText(1, 5, "LAST_TM"), GetCompName());
        QVERIFY(!plantField(1, 5, "IDATE").isNull());
        // the list was read again; the new planting (of 2025) is not in 2024's list
        QCOMPARE(rig.view->topLevelItemCount(), 4);
        Gui::type(rig.list.ctl<QLineEdit>("txtCOND(0)"), QStringLiteral("2025"));
        Gui::click(rig.list.ctl<QPushButton>("cmdFIND"));
        QCOMPARE(ListScreen::chosenRow(rig.view), 0);
        QCOMPARE(rig.view->topLevelItem(0)->text(3), QStringLiteral("2025/01"));
    }

    void changeThroughTheList()
    {
        TestRoot root;
        seedPlantings();
        ListRig rig;
        const int row = rowOf(rig.view, QStringLiteral("春トマト"));
        ListScreen::chooseRow(rig.view, row);
        rig.modals.on("frmPlantInput", [&](Form &f) {
            QCOMPARE(gMODE, Mode::Change);
            QCOMPARE(gROW_IDX, row);
            const QStringList shown{f.ctl<QLabel>("lblDATA(0)")->text(), txt(f, 8)->text(), txt(f, 0)->text(),
                                    txt(f, 1)->text(), cmb(f, 1)->currentText(), cmb(f, 2)->currentText(),
                                    txt(f, 2)->text(), cmb(f, 3)->currentText(), txt(f, 7)->text(), txt(f, 11)->text()};
            QCOMPARE(shown.join(QLatin1Char('|')), QStringLiteral("1|春トマト|2024|07|果菜類|トマト|桃太郎|ハウス|12.5|2024/04/10"));
            // leaving the crop as it is keeps the typed variety
            focusCombo(cmb(f, 2));
            Gui::leave(cmb(f, 2));
            QCOMPARE(txt(f, 2)->text(), QStringLiteral("桃太郎"));
            typeAndLeave(f, 8, QStringLiteral("春トマト（大玉）"));
            // the month box emptied empties the harvest month, the year box follows it
            typeAndLeave(f, 1, QString());
            QVERIFY(txt(f, 0)->text().isEmpty());
            typeAndLeave(f, 0, QStringLiteral("2024"));
            typeAndLeave(f, 1, QStringLiteral("8"));
            Gui::click(btn(f, 1));
            QVERIFY(!f.isVisible());
        });
        rig.press(2);
        QVERIFY(rig.msgs.messages.isEmpty());
        QCOMPARE(plantCount(), 5);
        // the image paths go empty at each save
        QCOMPARE(plantText(1, 1, "PLANT_NM HARVEST_SCHD_YM CROP_NM1 NOTES1 START_DATE IMG_PATH1 IMG_PATH2"),
                 QStringLiteral("春トマト（大玉）|202408|桃太郎|ハウス２棟|2024/03/01|-|-"));
        QVERIFY(!plantField(1, 1, "UDATE").isNull());
        // the saved planting is selected in the list read again
        QCOMPARE(ListScreen::chosenRow(rig.view), rowOf(rig.view, QStringLiteral("春トマト（大玉）")));
        QCOMPARE(gLAST_PLANT_ID, Value(1));
    }

    void aChangedPlantingThatIsGone()
    {
        TestRoot root;
        seedPlantings();
        ListRig rig;
        ListScreen::chooseRow(rig.view, rowOf(rig.view, QStringLiteral("夏トマト")));
        rig.modals.on("frmPlantInput", [&](Form &f) {
            gDB->EXEC("DELETE D_PLANT.* FROM D_PLANT WHERE PLANT_ID=3");
            typeAndLeave(f, 8, QStringLiteral("夏トマト２"));
            Gui::click(btn(f, 1));
            QVERIFY(!f.isVisible());
        });
        rig.press(2);
        QCOMPARE(rig.msgs.count(), 1);
        QCOMPARE(rig.msgs.lastPrompt(), QStringLiteral("該当データが存在しません。"));
        QCOMPARE(rig.msgs.messages[0].buttons, 16);
        QCOMPARE(plantCount(), 4);
        QCOMPARE(rowOf(rig.view, QStringLiteral("夏トマト")), -1);
    }

    void aSaveRefreshesTheCalendar()
    {
        TestRoot root;
        frmDairyCal cal;
        Gui::show(&cal);
        ListRig rig; // the month of the calendar is now May 2024
        rig.modals.on("frmPlantInput", [&](Form &f) {
            typeAndLeave(f, 8, QStringLiteral("五月のえだまめ"));
            typeAndLeave(f, 0, QStringLiteral("2024"));
            typeAndLeave(f, 9, QStringLiteral("20240510"));
            Gui::click(btn(f, 1));
        });
        rig.press(1);
        auto *filter = cal.ctl<QComboBox>("cmbCOND");
        QCOMPARE(filter->count(), 2);
        QCOMPARE(filter->itemText(1), QStringLiteral("五月のえだまめ"));
    }

    void copyThroughTheList()
    {
        TestRoot root;
        seedPlantings();
        ListRig rig;
        const int row = rowOf(rig.view, QStringLiteral("隣の畑のなす"));
        ListScreen::chooseRow(rig.view, row);
        rig.modals.on("frmPlantInput", [&](Form &f) {
            QCOMPARE(gMODE, Mode::Add);
            QCOMPARE(gROW_IDX, row);
            // the planting again for this farmer, with new dates
            QCOMPARE(txt(f, 8)->text(), QStringLiteral("隣の畑のなす"));
            QCOMPARE(cmb(f, 0)->currentText(), gMST->DLookup("FMR_NM", "M_FMR", "FMR_ID=1").toText());
            QVERIFY(txt(f, 11)->text().isEmpty());
            QVERIFY(txt(f, 9)->text().isEmpty());
            typeAndLeave(f, 9, QStringLiteral("20240601"));
            Gui::click(btn(f, 1));
        });
        rig.press(5);
        QCOMPARE(plantCount(), 6);
        QCOMPARE(plantText(1, 5, "PLANT_NM CROP_NM HARVEST_SCHD_YM START_DATE PLANT_DATE"),
                 QStringLiteral("隣の畑のなす|なす|202408|2024/06/01|-"));
        QCOMPARE(plantText(2, 7, "START_DATE"), QStringLiteral("2024/05/05"));
        QCOMPARE(rig.view->selectedItems().value(0)->text(0), QStringLiteral("5"));
    }

    void viewThroughTheList()
    {
        TestRoot root;
        seedPlantings();
        // a hold of this computer, left from before, is released as the entry closes
        gDB->EXEC(QStringLiteral("UPDATE D_PLANT SET HOLD_TM='%1' WHERE PLANT_ID=2").arg(GetCompName()));
        ListRig rig;
        ListScreen::chooseRow(rig.view, rowOf(rig.view, QStringLiteral("春トマト")));
        rig.modals.on("frmPlantInput", [&](Form &f) {
            QCOMPARE(gMODE, Mode::View);
            QCOMPARE(btn(f, 0)->text(), QStringLiteral("閉じる"));
            QVERIFY(!btn(f, 1)->isVisible());
            QVERIFY(!btn(f, 2)->isVisible());
            QVERIFY(txt(f, 8)->isReadOnly());
            QCOMPARE(txt(f, 8)->focusPolicy(), Qt::NoFocus);
            QVERIFY(Gui::isLocked(cmb(f, 2)));
            QVERIFY(!qobject_cast<QLineEdit *>(QApplication::focusWidget()));
            Gui::click(btn(f, 0));
            QVERIFY(!f.isVisible());
        });
        rig.press(3);
        QVERIFY(rig.msgs.messages.isEmpty());
        QCOMPARE(plantText(1, 1, "UDATE IMG_PATH1"), QStringLiteral("-|C:\\img\\a.jpg"));
        QCOMPARE(plantText(1, 2, "HOLD_TM LAST_TM"), QStringLiteral("-|") + GetCompName());
    }

    void deleteThroughTheList()
    {
        TestRoot root;
        seedPlantings();
        // work on 露地なす (planting 2); which day the refusal names is the rules' (tst_plantdata)
        Build::diaryLine(QDate(2024, 5, 15), 1, 3).set("PLANT_ID", 2).add();
        ListRig rig;
        auto deleteRow = [&](const QString &name) {
            ListScreen::chooseRow(rig.view, rowOf(rig.view, name));
            rig.modals.on("frmPlantInput", [&](Form &f) {
                QCOMPARE(gMODE, Mode::Delete);
                QCOMPARE(btn(f, 1)->text(), QStringLiteral("削除"));
                QVERIFY(!btn(f, 2)->isVisible());
                QVERIFY(txt(f, 8)->isReadOnly());
                Gui::click(btn(f, 1));
            });
            rig.press(4);
        };
        deleteRow(QStringLiteral("露地なす"));
        QCOMPARE(rig.msgs.count(), 1);
        QCOMPARE(rig.msgs.lastPrompt(), QStringLiteral("5月15日に作業登録されていますので、削除できません。"));
        QCOMPARE(plantCount(QStringLiteral("FMR_ID=1 AND PLANT_ID=2")), 1);
        // a planting with nothing on it goes
        rig.msgs.clear();
        deleteRow(QStringLiteral("春トマト"));
        QVERIFY(rig.msgs.messages.isEmpty());
        QCOMPARE(plantCount(QStringLiteral("PLANT_ID=1")), 0);
        QCOMPARE(plantCount(), 4);
        QCOMPARE(column(rig.view, 1), (QStringList{"露地なす", "隣の畑のなす", "夏トマト"}));
    }

    void requiredFieldsHoldTheirBox()
    {
        TestRoot root;
        ListRig rig;
        rig.modals.on("frmPlantInput", [&](Form &f) {
            Gui::click(btn(f, 1));
            QCOMPARE(rig.msgs.lastPrompt(), QStringLiteral("名称は必須入力です。"));
            QCOMPARE(QApplication::focusWidget(), txt(f, 8));
            typeAndLeave(f, 8, QStringLiteral("名前だけ"));
            Gui::click(btn(f, 1));
            QCOMPARE(rig.msgs.lastPrompt(), QStringLiteral("収穫年は必須入力です。"));
            QCOMPARE(QApplication::focusWidget(), txt(f, 0));
            typeAndLeave(f, 0, QStringLiteral("2026"));
            Gui::click(btn(f, 1));
            QVERIFY(!f.isVisible());
        });
        rig.press(1);
        QCOMPARE(rig.msgs.count(), 2);
        QCOMPARE(plantText(1, 1, "PLANT_NM YYYY"), QStringLiteral("名前だけ|2026"));
    }

    void finishingThenCancellingStoresNothing()
    {
        TestRoot root;
        seedPlantings();
        ListRig rig;
        const QString today = QDate::currentDate().toString(QStringLiteral("yyyy/MM/dd"));
        ListScreen::chooseRow(rig.view, rowOf(rig.view, QStringLiteral("春トマト")));
        rig.modals.on("frmPlantInput", [&](Form &f) {
            Gui::click(btn(f, 2));
            QCOMPARE(txt(f, 10)->text(), today);
            QVERIFY(f.isVisible());
            Gui::click(btn(f, 0));
            QVERIFY(!f.isVisible());
        });
        rig.press(2);
        QCOMPARE(plantText(1, 1, "END_DATE UDATE"), QStringLiteral("-|-"));
        // 完了 and then 登録 closes the planting today
        rig.modals.on("frmPlantInput", [&](Form &f) {
            Gui::click(btn(f, 2));
            Gui::click(btn(f, 1));
        });
        rig.press(2);
        QCOMPARE(plantField(1, 1, "END_DATE").toDate(), DateUtil::today());
        QVERIFY(rig.msgs.messages.isEmpty());
    }

    void badInputHoldsTheField()
    {
        TestRoot root;
        ListRig rig;
        rig.modals.on("frmPlantInput", [&](Form &f) {
            auto holds = [&](int box, const QString &text, const QString &message) {
                rig.msgs.clear();
                typeAndLeave(f, box, text);
                QCOMPARE(rig.msgs.lastPrompt(), message);
                QCOMPARE(QApplication::focusWidget(), txt(f, box));
                Gui::type(txt(f, box), QString());
            };
            // one of each refusal: the rest box by box is the rules' (tst_plantdata)
            holds(7, QStringLiteral("広い"), QStringLiteral("数値を指定してください。"));
            holds(4, QStringLiteral("1.5"), QStringLiteral("商品コードは８桁までの整数で指定してください。"));
            holds(14, QStringLiteral("あした"), QStringLiteral("日付を指定してください。"));
            typeAndLeave(f, 0, QStringLiteral("9999"));
            holds(1, QStringLiteral("13"), QStringLiteral("収穫予定月を正しく指定してください。"));
            // a crop typed that the list doesn't offer holds the combo
            rig.msgs.clear();
            chooseText(cmb(f, 2), QStringLiteral("バナナ"));
            QCOMPARE(rig.msgs.count(), 1);
            QCOMPARE(QApplication::focusWidget(), cmb(f, 2));
            cmb(f, 2)->lineEdit()->clear();
            Gui::leave(cmb(f, 2));
            // long text is cut at the box's length; quotes go in as typed
            typeAndLeave(f, 8, QString(80, QChar(0x3042)));
            QCOMPARE(txt(f, 8)->text().size(), 50);
            typeAndLeave(f, 16, QStringLiteral("'; DROP TABLE D_PLANT; --"));
            typeAndLeave(f, 4, QStringLiteral("99999999"));
            QVERIFY(txt(f, 5)->text().isEmpty()); // no such product
            typeAndLeave(f, 0, QStringLiteral("2024"));
            typeAndLeave(f, 1, QStringLiteral("6"));
            rig.msgs.clear();
            Gui::click(btn(f, 1));
            QVERIFY(rig.msgs.messages.isEmpty());
        });
        rig.press(1);
        QCOMPARE(plantText(1, 1, "PLANT_NM NOTES2 PRD_ID PRD_NM"),
                 QString(50, QChar(0x3042)) + QStringLiteral("|'; DROP TABLE D_PLANT; --|99999999|-"));
    }

    void openedWithItsModeAndRow()
    {
        TestRoot root;
        seedPlantings();
        MsgRecorder msgs;
        Plant::readList(QStringLiteral("2024"), QString(), Value::null());
        // what the screen is opened with counts, not what was handed over last
        gMODE = Mode::Add;
        gROW_IDX = -1;
        frmPlantInput f(Mode::View, 2);
        Gui::show(&f);
        QCOMPARE(f.mode(), Mode::View);
        QCOMPARE(txt(f, 8)->text(), gPLANT_ROWS[2].PLANT_NM.toText());
        QVERIFY(txt(f, 8)->isReadOnly());
        f.close();
        QVERIFY(msgs.messages.isEmpty());
    }

    void resizingStartsTheEntryOver()
    {
        TestRoot root;
        seedPlantings();
        ListRig rig;
        ListScreen::chooseRow(rig.view, rowOf(rig.view, QStringLiteral("春トマト")));
        rig.modals.on("frmPlantInput", [&](Form &f) {
            typeAndLeave(f, 8, QStringLiteral("消える名前"));
            f.resize(f.width() + 120, f.height() + 60);
            Gui::settle();
            QCOMPARE(txt(f, 8)->text(), QStringLiteral("春トマト"));
            Gui::click(btn(f, 1));
        });
        rig.press(2);
        QCOMPARE(plantField(1, 1, "PLANT_NM").toText(), QStringLiteral("春トマト"));
        // the list starts over with its first filters too
        Gui::type(rig.list.ctl<QLineEdit>("txtCOND(0)"), QString());
        Gui::click(rig.list.ctl<QPushButton>("cmdFIND"));
        QCOMPARE(rig.view->topLevelItemCount(), 5);
        rig.list.resize(rig.list.width() + 100, rig.list.height());
        Gui::settle();
        QCOMPARE(rig.list.ctl<QLineEdit>("txtCOND(0)")->text(), QStringLiteral("2024"));
        QCOMPARE(rig.view->topLevelItemCount(), 4);
    }
};

TILLORA_GUI_TEST_MAIN(TestPlanting)
#include "tst_planting.moc"
