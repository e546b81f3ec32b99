// The spraying checks where the farmer meets them: the diary day's save and
// the shipment's save ask before going on and save when told to, and the
// calendar's pesticide mark turns red on the day of a spraying that breaks
// its registration; the planting list and entry show the first shipping day
// and the uses against their limits.

#include "base/Globals.h"
#include "base/Msg.h"
#include "rules/common/Ids.h"
#include "rules/diary/CalMonth.h"
#include "rules/planting/PlantData.h"
#include "rules/shipping/ShipData.h"
#include "screens/diary/frmDairyInput.h"
#include "screens/planting/frmPlantInput.h"
#include "screens/planting/frmPlantList.h"
#include "screens/shipping/frmShipInput.h"
#include "store/Database.h"
#include "support/Build.h"
#include "support/GuiDriver.h"
#include "support/MsgRecorder.h"
#include "support/TestRoot.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QtTest/QTest>

namespace {

// Tomatoes from 4/1 sprayed with lot 1 (2回以内, 収穫前日まで) on 6/1 and 6/10.
void seedTwoSprayings()
{
    Build::planting(1, QStringLiteral("夏トマト")).set("CROP_NM", "トマト")
        .set("PLANT_DATE", QDate(2024, 4, 1))
        .set("START_DATE", QDate(2024, 4, 1))
        .add();
    Build::lot(1, QStringLiteral("アサギリ")).set("REG_NO", "90005").set("CHK_FLG", true).add();
    for (const QDate &d : {QDate(2024, 6, 1), QDate(2024, 6, 10)})
        Build::diaryLine(d, 1, WorkKbn::Spraying).set("PLANT_ID", 1).set("CHEMI_ID", 1).add();
}

double linesOn(const QDate &day)
{
    return gDB->DCount("*", "D_DIARY_DTL", QStringLiteral("FMR_ID=1 AND WORK_DATE=#%1#").arg(day.toString("yyyy/MM/dd")))
        .toDouble();
}

} // namespace

class TestSprayWarn : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        gFMR_ID = Value(1);
        gSHOP_ID = Value(1);
    }

    void theDayAsksAndSavesAnyway()
    {
        TestRoot root;
        seedTwoSprayings();
        MsgRecorder rec;
        gWORK_DATE = Value(DateUtil::make(2024, 6, 20));
        frmDairyInput f;
        Gui::show(&f);
        DiaryDtlRec &line = f.dayData().dtl[f.dayData().addDetail(Value(1))];
        line.WORK_KBN = Value(WorkKbn::Spraying);
        line.CHEMI_ID = Value(1);
        line.CHEMI_NM = Value(QStringLiteral("アサギリ"));

        rec.answer(Msg::ResNo); // not yet: back to the day, nothing written
        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QCOMPARE(rec.count(), 1);
        QCOMPARE(rec.lastPrompt(),
                 QStringLiteral("農薬の登録内容に合わない散布があります。\n\n"
                                "「夏トマト」: アサギリ（登録番号90005）の使用回数は「2回以内」ですが、この作付で3回目の使用です。\n\n"
                                "記録は実際のとおりに残せます。このまま登録しますか？"));
        QVERIFY(f.isVisible());
        QCOMPARE(linesOn(QDate(2024, 6, 20)), 0.0);

        rec.answer(Msg::ResYes); // kept as it happened
        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QVERIFY(!f.isVisible());
        QCOMPARE(linesOn(QDate(2024, 6, 20)), 1.0);

        // the calendar: the day's pesticide mark in red, the days within the rules as before
        CalMonth::Options o;
        o.on[3] = true;
        const QDate june(2024, 6, 1);
        QStringList marks;
        for (const CalMonth::Cell &c : CalMonth::collect(CalMonth::geometry(june, 11920, 6680), june,
                                                         QDate(2024, 12, 31), Value(1), o, Value()))
            if (c.chemi)
                marks << QStringLiteral("%1%2").arg(c.day).arg(c.chemiWarn ? "!" : "");
        QCOMPARE(marks.join(QLatin1Char(' ')), QStringLiteral("1 10 20!"));
    }

    void theShipmentAsksAndSavesAnyway()
    {
        TestRoot root;
        seedTwoSprayings();
        Build::shipment(1, QDate(2024, 6, 10)).set("PLANT_ID", 1).set("SHOP_PRC", 200).set("SHIP_QTY", 5).add();
        MsgRecorder rec;
        rec.answer(Msg::ResYes);
        QCOMPARE(Ship::loadShipment(Value(1)), 1);
        frmShipInput f(Mode::Change, 0);
        Gui::show(&f);
        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QCOMPARE(rec.count(), 1);
        QVERIFY(rec.lastPrompt().contains(
            QStringLiteral("アサギリ（登録番号90005）を2024/06/10に散布しています。使用時期「収穫前日まで」により、出荷は2024/06/11からです。")));
        QVERIFY(!f.isVisible());
        QCOMPARE(gDB->DCount("*", "D_DIARY_DTL", "FMR_ID=1 AND SHIP_ID=1").toDouble(), 1.0);
    }

    void thePlantingScreensShowWhatTheSpraysAllow()
    {
        TestRoot root;
        seedTwoSprayings();
        Build::planting(2, QStringLiteral("秋なす")).set("CROP_NM", "なす").set("PLANT_DATE", QDate(2024, 7, 1)).add();
        gPLANT_ROWS.clear();
        frmPlantList list;
        Gui::show(&list);
        list.ctl<QLineEdit>("txtCOND(0)")->clear();
        list.SetList();
        auto *view = list.ctl<QTreeWidget>("ListView1");
        QCOMPARE(view->topLevelItemCount(), 2);
        QStringList cells;
        for (int i = 0; i < 2; ++i)
            cells << view->topLevelItem(i)->text(1) + QLatin1Char('|') + view->topLevelItem(i)->text(6) +
                         QLatin1Char('|') + view->topLevelItem(i)->text(7);
        QCOMPARE(cells.join(QLatin1Char(' ')), QStringLiteral("秋なす|| 夏トマト|2024/06/11|90005 2/2回"));

        frmPlantInput f(Mode::Change, 1);
        Gui::show(&f);
        QCOMPARE(f.ctl<QLabel>("lblDATA(2)")->text(), QStringLiteral("2024/06/11"));
        QCOMPARE(f.ctl<QLabel>("lblDATA(3)")->text(), QStringLiteral("アサギリ（90005） 2回／2回まで"));
    }
};

TILLORA_GUI_TEST_MAIN(TestSprayWarn)
#include "tst_spraywarn.moc"
