// Plantings without a window: the harvest month, the list's statement and
// rows, the delete refusals, the save, and what leaving each box of the
// entry and choosing in its drop-downs does to the record.

#include "base/Globals.h"
#include "rules/planting/PlantData.h"
#include "rules/planting/PlantEntry.h"
#include "store/Database.h"
#include "support/Build.h"
#include "support/RowText.h"
#include "support/RulesTest.h"
#include "support/TestRoot.h"

#include "rules/planting/PlantSeed.h"

#include <QtTest/QTest>

namespace {

Value plantField(int farmer, int id, const char *column)
{
    return gDB->DLookup(QString::fromLatin1(column), QStringLiteral("D_PLANT"),
                        QStringLiteral("FMR_ID=%1 AND PLANT_ID=%2").arg(farmer).arg(id));
}

QString names(const QVector<Choice> &choices)
{
    QStringList out;
    for (const Choice &c : choices)
        out << c.text;
    return out.join(QLatin1Char('|'));
}

QString listedNames()
{
    QStringList out;
    for (const PlantRow &r : gPLANT_ROWS)
        out << r.PLANT_NM.toText();
    return out.join(QLatin1Char('|'));
}

const QDate kToday(2026, 5, 14);

} // namespace

class TestPlantData : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        gFMR_ID = Value(1);
        gLAST_PLANT_ID = Value();
        gPLANT_ROWS.clear();
    }

    // ---------------------------------------------------------------- harvest month

    void harvestMonth_data()
    {
        QTest::addColumn<QString>("year");
        QTest::addColumn<QString>("month");
        QTest::addColumn<QString>("ym");
        QTest::newRow("plain") << "2024" << "5" << "202405";
        QTest::newRow("month 13 rolls into the next year") << "2024" << "13" << "202501";
        QTest::newRow("month 25 two years on") << "2024" << "25" << "202601";
        QTest::newRow("month -1 goes back") << "2024" << "-1" << "202311";
        QTest::newRow("month 0 is this month") << "2024" << "0" << "202405";
        QTest::newRow("empty month is this month") << "2024" << "" << "202405";
        QTest::newRow("year 0 is this year") << "0" << "3" << "202603";
        QTest::newRow("empty year is this year") << "" << "3" << "202603";
        QTest::newRow("full-width digits") << "２０２４" << "１２" << "202412";
        QTest::newRow("two-digit year below 30") << "24" << "1" << "202401";
        QTest::newRow("two-digit year from 30") << "95" << "1" << "199501";
        QTest::newRow("halves go to even") << "2024" << "2.5" << "202402";
        QTest::newRow("beyond 9999") << "9999" << "13" << "";
        QTest::newRow("negative year") << "-5" << "1" << "";
    }
    void harvestMonth()
    {
        QFETCH(QString, year);
        QFETCH(QString, month);
        QFETCH(QString, ym);
        const Plant::HarvestMonth h = Plant::harvestMonth(year, month, kToday);
        QCOMPARE(h.ok, !ym.isEmpty());
        if (h.ok) {
            QCOMPARE(h.ym, ym);
            QCOMPARE(h.year, ym.left(4).toInt());
            QCOMPARE(h.month, ym.right(2).toInt());
        }
    }

    void harvestMonthShownInTheBoxesAndTheList()
    {
        // (the plain ones are shown on the screens: tst_planting)
        QCOMPARE(Plant::harvestListText(Value(202412)), QStringLiteral("2024/12"));
        // short numbers are padded, as the mask pads them
        QCOMPARE(Plant::harvestDigits(Value("2024")), QStringLiteral("002024"));
        QCOMPARE(Plant::harvestYearText(Value("2024")), QStringLiteral("0020"));
        QCOMPARE(Plant::harvestListText(Value("2024")), QStringLiteral("0020/24"));
        // empty and odd text
        QCOMPARE(Plant::harvestListText(Value::null()), QString());
        QCOMPARE(Plant::harvestYearText(Value::null()), QString());
        QCOMPARE(Plant::harvestListText(Value("未定")), QStringLiteral("未定"));
    }

    // ---------------------------------------------------------------- list

    void listReadsEveryFarmersRows_data()
    {
        QTest::addColumn<QString>("year");
        QTest::addColumn<QString>("crop");
        QTest::addColumn<int>("kind"); // 0: none
        QTest::addColumn<QString>("listed");
        QTest::newRow("a year, by crop and planting day") << "2024" << "" << 0
                                                          << "露地なす|隣の畑のなす|春トマト|夏トマト";
        QTest::newRow("all years") << "" << "" << 0 << "去年のキャベツ|露地なす|隣の畑のなす|春トマト|夏トマト";
        QTest::newRow("a full-width year") << "２０２３" << "" << 0 << "去年のキャベツ";
        QTest::newRow("a crop") << "" << "トマト" << 0 << "春トマト|夏トマト";
        QTest::newRow("a crop and a kind") << "2024" << "トマト" << 1 << "夏トマト";
        QTest::newRow("a crop with a quote finds nothing") << "2024" << "O'Neil" << 0 << "";
        QTest::newRow("a year that is no number finds nothing") << "第123号" << "" << 0 << "";
    }
    void listReadsEveryFarmersRows()
    {
        QFETCH(QString, year);
        QFETCH(QString, crop);
        QFETCH(int, kind);
        QFETCH(QString, listed);
        TestRoot root;
        seedPlantings();
        Plant::readList(year, crop, kind ? Value(kind) : Value::null());
        QCOMPARE(listedNames(), listed);
    }

    // ---------------------------------------------------------------- delete, save

    void deleteRefusalNamesTheEarliestDay()
    {
        TestRoot root;
        seedPlantings();
        // planting 1: work on 5/20 and 5/3, a shipment on 4/1; planting 2: shipments only
        Build::diaryLine(QDate(2024, 5, 20), 1, 3).set("PLANT_ID", 1).add();
        Build::diaryLine(QDate(2024, 5, 3), 2, 3).set("PLANT_ID", 1).add();
        Build::shipment(1, QDate(2024, 4, 1)).set("PLANT_ID", 1).add();
        Build::shipment(2, QDate(2024, 8, 12)).set("PLANT_ID", 2).add();
        Build::shipment(3, QDate(2024, 10, 2)).set("PLANT_ID", 2).add();
        // another farmer's lines under the same number count for nothing
        Build::diaryLine(QDate(2024, 1, 9), 1, 3).set("FMR_ID", 2).set("PLANT_ID", 3).add();
        QCOMPARE(Plant::deleteRefusal(Value(1), Value(1)),
                 QStringLiteral("5月3日に作業登録されていますので、削除できません。"));
        QCOMPARE(Plant::deleteRefusal(Value(1), Value(2)),
                 QStringLiteral("8月12日に出荷登録されていますので、削除できません。"));
        QCOMPARE(Plant::deleteRefusal(Value(1), Value(3)), QString());
        // the check before a delete gives the same message and no box
        PlantRow r;
        r.FMR_ID = Value(1);
        r.PLANT_ID = Value(2);
        const Plant::Refusal refusal = Plant::check(r, Mode::Delete, QString(), QString());
        QCOMPARE(refusal.message, QStringLiteral("8月12日に出荷登録されていますので、削除できません。"));
        QCOMPARE(refusal.box, -1);
    }

    void saveWritesByNumberAlone()
    {
        TestRoot root;
        // farmer 1's planting 5 comes first, then farmer 2's with the same number
        Build::planting(5, QStringLiteral("一の五")).set("YYYY", 2024).add();
        Build::planting(5, QStringLiteral("二の五")).set("FMR_ID", 2).set("YYYY", 2024).add();
        QCOMPARE(Plant::nextPlantId(Value(1)), Value(6));
        QCOMPARE(Plant::nextPlantId(Value(3)), Value(1));
        // a change of farmer 2's planting lands on the first row of that number
        PlantRow r;
        r.FMR_ID = Value(2);
        r.PLANT_ID = Value(5);
        r.PLANT_NM = Value("書き換え");
        r.YYYY = Value(2025);
        r.IMG_PATH1 = Value("C:\\img\\a.jpg");
        QVERIFY(Plant::saveRecord(Mode::Change, r, QStringLiteral("PC-1")));
        QCOMPARE(shownValue(plantField(1, 5, "PLANT_NM")), QStringLiteral("書き換え"));
        QCOMPARE(shownValue(plantField(1, 5, "YYYY")), QStringLiteral("2025"));
        QCOMPARE(shownValue(plantField(1, 5, "LAST_TM")), QStringLiteral("PC-1"));
        QCOMPARE(shownValue(plantField(1, 5, "HOLD_TM")), QStringLiteral("-"));
        QCOMPARE(shownValue(plantField(1, 5, "IMG_PATH1")), QStringLiteral("C:\\img\\a.jpg"));
        QCOMPARE(shownValue(plantField(2, 5, "PLANT_NM")), QStringLiteral("二の五"));
        QVERIFY(!plantField(1, 5, "UDATE").isNull());
        // a number that is gone: nothing written
        r.PLANT_ID = Value(9);
        QVERIFY(!Plant::saveRecord(Mode::Change, r, QStringLiteral("PC-1")));
        QVERIFY(!Plant::saveRecord(Mode::Delete, r, QStringLiteral("PC-1")));
        QCOMPARE(gDB->DCount(QStringLiteral("*"), QStringLiteral("D_PLANT")).toLong(), 2L);
        // a save of an added planting: its number and the farmer's
        PlantRow added;
        added.FMR_ID = Value(3);
        QCOMPARE(Plant::check(added, Mode::Add, QStringLiteral("新しい作付"), QStringLiteral("2026")).message, QString());
        QCOMPARE(added.PLANT_ID, Value(1));
        added.PLANT_NM = Value("新しい作付");
        QVERIFY(Plant::saveRecord(Mode::Add, added, QStringLiteral("PC-2")));
        QCOMPARE(shownValue(plantField(3, 1, "PLANT_NM")), QStringLiteral("新しい作付"));
        QVERIFY(!plantField(3, 1, "IDATE").isNull());
    }

    // ---------------------------------------------------------------- the entry's boxes

    void leavingABoxRefuses_data()
    {
        QTest::addColumn<int>("box");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("message");
        const QString number = QStringLiteral("数値を指定してください。");
        const QString date = QStringLiteral("日付を指定してください。");
        QTest::newRow("area in words") << int(Plant::Box::Area) << "広い" << number;
        QTest::newRow("planned shipment with a quote") << int(Plant::Box::ShipEst) << "1'0" << number;
        QTest::newRow("year in kanji") << int(Plant::Box::Year) << "二千" << number;
        QTest::newRow("month in kanji") << int(Plant::Box::Month) << "五" << number;
        QTest::newRow("product code with letters") << int(Plant::Box::PrdId) << "A-12" << number;
        QTest::newRow("product code with a fraction") << int(Plant::Box::PrdId) << "1.5"
                                                      << "商品コードは８桁までの整数で指定してください。";
        QTest::newRow("product code of nine digits") << int(Plant::Box::PrdId) << "123456789"
                                                     << "商品コードは８桁までの整数で指定してください。";
        QTest::newRow("day 40") << int(Plant::Box::StartDate) << "2024/13/40" << date;
        QTest::newRow("a word for a day") << int(Plant::Box::ShipTo) << "あした" << date;
        QTest::newRow("a year the tables can't hold") << int(Plant::Box::EndDate) << "0900/01/01"
                                                       << "日付は1000年から9999年までで指定してください。";
    }
    void leavingABoxRefuses()
    {
        QFETCH(int, box);
        QFETCH(QString, text);
        QFETCH(QString, message);
        PlantRow r;
        r.PLANT_NM = Value("そのまま");
        QCOMPARE(Plant::leaveBox(r, box, text, kToday), message);
        // the record is as it was
        QCOMPARE(r.PLANT_NM, Value("そのまま"));
        QVERIFY(r.AREA.isEmpty() && r.SHIP_EST.isEmpty() && r.PRD_ID.isEmpty() && r.START_DATE.isEmpty());
        QVERIFY(r.HARVEST_SCHD_YM.isEmpty() && r.END_DATE.isEmpty() && r.SHIP_SCHD_DATE2.isEmpty());
    }

    void leavingABoxSetsItsField_data()
    {
        QTest::addColumn<int>("box");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("column");
        QTest::addColumn<QString>("stored");
        QTest::newRow("name") << int(Plant::Box::Name) << "秋まきほうれんそう" << "PLANT_NM" << "秋まきほうれんそう";
        QTest::newRow("name emptied") << int(Plant::Box::Name) << "" << "PLANT_NM" << "-";
        QTest::newRow("quotes as typed") << int(Plant::Box::Notes2) << "'; DROP TABLE D_PLANT; --" << "NOTES2"
                                         << "'; DROP TABLE D_PLANT; --";
        QTest::newRow("area, full-width") << int(Plant::Box::Area) << "１５.５" << "AREA" << "15.5";
        QTest::newRow("area emptied") << int(Plant::Box::Area) << "" << "AREA" << "-";
        QTest::newRow("planned shipment") << int(Plant::Box::ShipEst) << "200" << "SHIP_EST" << "200";
        QTest::newRow("planting day") << int(Plant::Box::PlantDate) << "2024/09/03" << "PLANT_DATE" << "2024/09/03";
        QTest::newRow("start of work, typed short") << int(Plant::Box::StartDate) << "2024/9/1" << "START_DATE" << "2024/09/01";
        QTest::newRow("end emptied") << int(Plant::Box::EndDate) << "" << "END_DATE" << "-";
        QTest::newRow("shipping from") << int(Plant::Box::ShipFrom) << "2024/12/01" << "SHIP_SCHD_DATE1" << "2024/12/01";
        QTest::newRow("variety") << int(Plant::Box::Variety) << "手で打った品種" << "CROP_NM1" << "手で打った品種";
        QTest::newRow("field") << int(Plant::Box::Field) << "北の畑" << "FIELD_NM" << "北の畑";
    }
    void leavingABoxSetsItsField()
    {
        QFETCH(int, box);
        QFETCH(QString, text);
        QFETCH(QString, column);
        QFETCH(QString, stored);
        PlantRow r;
        r.PLANT_NM = r.AREA = r.END_DATE = Value("前の値");
        QCOMPARE(Plant::leaveBox(r, box, text, kToday), QString());
        QCOMPARE(shownValue(PlantRow::map().of(r, column)), stored);
    }

    void harvestBoxesReadEachOther()
    {
        PlantRow r;
        // the year alone: the month of today
        QCOMPARE(Plant::leaveBox(r, Plant::Box::Year, QStringLiteral("2024"), kToday), QString());
        QCOMPARE(r.HARVEST_SCHD_YM, Value("202405"));
        QCOMPARE(r.YYYY, Value(2024));
        // month 13 of that year is January of the next
        QCOMPARE(Plant::leaveBox(r, Plant::Box::Month, QStringLiteral("13"), kToday), QString());
        QCOMPARE(r.HARVEST_SCHD_YM, Value("202501"));
        QCOMPARE(r.YYYY, Value(2025));
        // a new year keeps the month
        QCOMPARE(Plant::leaveBox(r, Plant::Box::Year, QStringLiteral("2027"), kToday), QString());
        QCOMPARE(r.HARVEST_SCHD_YM, Value("202701"));
        // month 0 is the present month
        QCOMPARE(Plant::leaveBox(r, Plant::Box::Month, QStringLiteral("0"), kToday), QString());
        QCOMPARE(r.HARVEST_SCHD_YM, Value("202705"));
        // an emptied box empties the harvest month; the year stays
        QCOMPARE(Plant::leaveBox(r, Plant::Box::Month, QString(), kToday), QString());
        QVERIFY(r.HARVEST_SCHD_YM.isNull());
        QCOMPARE(r.YYYY, Value(2027));
        // a month beyond the years the tables hold is refused and changes nothing
        QCOMPARE(Plant::leaveBox(r, Plant::Box::Year, QStringLiteral("9999"), kToday), QString());
        QCOMPARE(Plant::leaveBox(r, Plant::Box::Month, QStringLiteral("13"), kToday),
                 QStringLiteral("収穫予定月を正しく指定してください。"));
        QCOMPARE(r.HARVEST_SCHD_YM, Value("999905"));
    }

    void productCodeFindsItsName()
    {
        TestRoot root;
        PlantRow r;
        QCOMPARE(Plant::leaveBox(r, Plant::Box::PrdId, QStringLiteral("３"), kToday), QString());
        QCOMPARE(r.PRD_ID, Value(3));
        QCOMPARE(r.PRD_NM, Value("きゅうり"));
        // a code of no product: the name goes empty
        QCOMPARE(Plant::leaveBox(r, Plant::Box::PrdId, QStringLiteral("99999999"), kToday), QString());
        QCOMPARE(r.PRD_ID, Value(99999999));
        QVERIFY(r.PRD_NM.isNull());
        // the name typed after it stands; an emptied code empties both
        QCOMPARE(Plant::leaveBox(r, Plant::Box::PrdNm, QStringLiteral("自家製"), kToday), QString());
        QCOMPARE(r.PRD_NM, Value("自家製"));
        QCOMPARE(Plant::leaveBox(r, Plant::Box::PrdId, QString(), kToday), QString());
        QVERIFY(r.PRD_ID.isNull() && r.PRD_NM.isNull());
    }

    // ---------------------------------------------------------------- the entry's drop-downs

    void dropDownsOffer()
    {
        TestRoot root;
        Build::farmer(2, QStringLiteral("隣の人")).add();
        Build::farmer(3, QStringLiteral("やめた人")).set("CHK_FLG", Value(false)).add();
        QCOMPARE(names(Plant::farmers()).split(QLatin1Char('|')).mid(1), QStringList{QStringLiteral("隣の人")});
        QCOMPARE(Plant::farmers().value(1).id, Value(2));
        // (the kinds and groups by their ids: the entry stores them, tst_planting)
        // a group narrows the crops; every crop is its own key
        const QVector<Choice> leaves = Plant::cropsOfGroup(QStringLiteral("02"));
        QVERIFY(names(leaves).contains(QStringLiteral("リーフレタス")));
        QVERIFY(!names(leaves).contains(QStringLiteral("トマト")));
        QCOMPARE(leaves.value(0).id, Value(leaves.value(0).text));
        QCOMPARE(Plant::cropsOfGroup(QString()).size(), Plant::crops().size());
        QCOMPARE(Plant::cropGroup(QStringLiteral("トマト")).toText(), QStringLiteral("01"));
        // names of no crop find nothing, quotes and all
        QVERIFY(Plant::cropGroup(QStringLiteral("O'Neil")).isNull());
        QVERIFY(Plant::cropsOfGroup(QStringLiteral("'")).isEmpty());
    }

    void choosingACropBringsVarietyAndItem()
    {
        TestRoot root;
        PlantRow r;
        r.CROP_NM1 = Value("手で打った品種");
        QVERIFY(Plant::chooseCrop(r, QStringLiteral("リーフレタス")));
        QCOMPARE(r.CROP_NM, Value("リーフレタス"));
        QCOMPARE(r.CROP_NM1, Value("リーフレタス"));
        QCOMPARE(r.CROP_NM2, Value("非結球レタス"));
        // the same crop again keeps what was typed since
        r.CROP_NM1 = Value("桃太郎");
        QVERIFY(!Plant::chooseCrop(r, QStringLiteral("リーフレタス")));
        QCOMPARE(r.CROP_NM1, Value("桃太郎"));
        // none: the crop goes, variety and item stay
        QVERIFY(!Plant::chooseCrop(r, QString()));
        QVERIFY(r.CROP_NM.isNull());
        QCOMPARE(r.CROP_NM2, Value("非結球レタス"));
        // keys of the other drop-downs; the cultivation is bound to no column
        Plant::chooseKey(r, Plant::Combo::Farmer, Value(2));
        Plant::chooseKey(r, Plant::Combo::PlantType, Value(3));
        Plant::chooseKey(r, Plant::Combo::ShipEstUnit, Value::null());
        Plant::chooseKey(r, Plant::Combo::Cultivation, Value(9));
        QCOMPARE(r.FMR_ID, Value(2));
        QCOMPARE(r.PLANT_TYPE, Value(3));
        QVERIFY(r.SHIP_EST_UNIT.isNull());
    }

    // ---------------------------------------------------------------- opening and checking

    void openingCopiesTheRow()
    {
        PlantRow row;
        row.PLANT_ID = Value(7);
        row.FMR_ID = Value(2);
        row.PLANT_NM = Value("隣の畑のなす");
        row.START_DATE = row.PLANT_DATE = row.END_DATE = Value(DateUtil::make(2024, 5, 5));
        row.SHIP_SCHD_DATE1 = row.SHIP_SCHD_DATE2 = Value(DateUtil::make(2024, 6, 1));
        gPLANT_ROWS = {PlantRow(), row};
        // a change shows the row as it is
        const PlantRow changed = Plant::openRecord(Mode::Change, 1, Value(1));
        QCOMPARE(changed.FMR_ID, Value(2));
        QCOMPARE(shownValue(changed.START_DATE), QStringLiteral("2024/05/05"));
        // a copy is this farmer's, with new dates
        const PlantRow copy = Plant::openRecord(Mode::Add, 1, Value(1));
        QCOMPARE(copy.PLANT_NM, Value("隣の畑のなす"));
        QCOMPARE(copy.FMR_ID, Value(1));
        for (const Value &d : {copy.START_DATE, copy.PLANT_DATE, copy.END_DATE, copy.SHIP_SCHD_DATE1, copy.SHIP_SCHD_DATE2})
            QVERIFY(d.isNull());
        // a new one, and a row that is none
        QVERIFY(Plant::openRecord(Mode::Add, -1, Value(1)).PLANT_NM.isEmpty());
        QVERIFY(Plant::openRecord(Mode::View, 5, Value(1)).PLANT_ID.isEmpty());
    }

    void checkBeforeSaving()
    {
        TestRoot root;
        seedPlantings();
        PlantRow r;
        r.FMR_ID = Value(1);
        Plant::Refusal no = Plant::check(r, Mode::Add, QString(), QStringLiteral("2024"));
        QCOMPARE(no.message, QStringLiteral("名称は必須入力です。"));
        QCOMPARE(no.box, int(Plant::Box::Name));
        QCOMPARE(r.PLANT_ID, Value(5)); // numbered first
        no = Plant::check(r, Mode::Change, QStringLiteral("名前"), QString());
        QCOMPARE(no.message, QStringLiteral("収穫年は必須入力です。"));
        QCOMPARE(no.box, int(Plant::Box::Year));
        QCOMPARE(Plant::check(r, Mode::Change, QStringLiteral("名前"), QStringLiteral("2024")).message, QString());
        QCOMPARE(Plant::check(r, Mode::View, QString(), QString()).message, QString());
    }
};

TILLORA_RULES_TEST_MAIN(TestPlantData)
#include "tst_plantdata.moc"
