// The masters' rules without their dialogs: the start-up check of a default
// code, a record found by its code (odd codes find nothing, odd texts are
// kept as typed), what a shop save writes, the product numbers typed into
// the product master, the local settings as stored, and the lists in use.

#include "base/Globals.h"
#include "rules/masters/Defaults.h"
#include "rules/masters/FmrMaster.h"
#include "rules/masters/MasterLists.h"
#include "rules/masters/PrdMaster.h"
#include "rules/masters/Settings.h"
#include "rules/masters/ShopMaster.h"
#include "store/Database.h"
#include "support/Build.h"
#include "support/RulesTest.h"
#include "support/TestRoot.h"

#include <QtTest/QTest>

Q_DECLARE_METATYPE(Defaults::Check)

namespace {

QString name(const Choices &list)
{
    QStringList out;
    for (const Choice &e : list)
        out << e.text + QLatin1Char('=') + e.id.toText();
    return out.join(QLatin1Char(','));
}

} // namespace

class TestMasters : public QObject {
    Q_OBJECT


private slots:
    // The default farmer as start-up checks it: set, a number, not 0, and a
    // row of M_FMR. A text that is no number is "not set", never an error.
    void defaultCodeCheck_data()
    {
        QTest::addColumn<Value>("setting");
        QTest::addColumn<bool>("emptyTable");
        QTest::addColumn<Defaults::Check>("result");
        QTest::newRow("delivered") << Value(QStringLiteral("1")) << false << Defaults::Check::Passed;
        QTest::newRow("full-width") << Value(QStringLiteral("１")) << false << Defaults::Check::Passed;
        QTest::newRow("Null") << Value::null() << false << Defaults::Check::NotSet;
        QTest::newRow("missing") << Value() << false << Defaults::Check::NotSet;
        QTest::newRow("0") << Value(QStringLiteral("0")) << false << Defaults::Check::NotSet;
        QTest::newRow("no number") << Value(QStringLiteral("第1号")) << false << Defaults::Check::NotSet;
        QTest::newRow("deleted farmer") << Value(QStringLiteral("7")) << false << Defaults::Check::Missing;
        QTest::newRow("no farmers") << Value(QStringLiteral("1")) << true << Defaults::Check::NoRows;
    }
    void defaultCodeCheck()
    {
        QFETCH(Value, setting);
        QFETCH(bool, emptyTable);
        TestRoot root;
        if (emptyTable)
            gMST->EXEC(QStringLiteral("DELETE M_FMR.* FROM M_FMR"));
        Value id;
        QTEST(Defaults::check(setting, "M_FMR", "FMR_ID=?", id), "result");
        QVERIFY(hasValue(id));
    }

    // A farmer kept under its code: texts as typed (quotes too), empty texts
    // as Null, numbers by their column; a missing code is made; a code that
    // is no number finds no farmer.
    void farmerByItsCode()
    {
        TestRoot root;
        QStringList texts(FmrMaster::FieldCount);
        texts[1] = QStringLiteral("O'Brien 農園");
        texts[12] = QStringLiteral("３３０");
        FmrMaster::save(Value(QStringLiteral("4")), texts);
        FmrRecord r;
        QVERIFY(FmrMaster::read(Value(4), r));
        QCOMPARE(r.FMR_ID.toLong(), 4);
        QCOMPARE(r.FMR_NM.toText(), QStringLiteral("O'Brien 農園"));
        QVERIFY(r.ADRS.isNull());
        QCOMPARE(r.FEE_1.toDouble(), 330.0);
        QVERIFY(r.FEE_2.isNull());

        // the delivered farmer is changed in place, his code unchanged
        texts[1] = QStringLiteral("青葉 耕一");
        FmrMaster::save(Value(1), texts);
        QCOMPARE(gMST->DCount("*", "M_FMR").toLong(), 2);
        QCOMPARE(gMST->DLookup("FMR_NM", "M_FMR", "FMR_ID=1").toText(), QStringLiteral("青葉 耕一"));

        FmrRecord untouched;
        untouched.FMR_NM = Value(QStringLiteral("元のまま"));
        for (const Value &code : {Value(QStringLiteral("第123号")), Value::null(), Value(99)})
            QVERIFY(!FmrMaster::read(code, untouched));
        QCOMPARE(untouched.FMR_NM.toText(), QStringLiteral("元のまま"));
        QCOMPARE(FmrMaster::column(13), QStringLiteral("FEE_2"));
    }

    // What a shop save writes: the length of the price in tens only with the
    // length of the product number; an option group left empty is not written.
    void shopEntry()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        QStringList texts(ShopMaster::FieldCount);
        texts[1] = QStringLiteral("ひだまり");
        texts[14] = QStringLiteral("3");
        ShopMaster::Entry e = ShopMaster::entryOf(texts, -1, 1);
        QVERIFY(e.record.BCD_AMT_10_LEN.isNull());
        QCOMPARE(e.record.SHOP_NM.toText(), QStringLiteral("ひだまり"));
        QVERIFY(!e.columns.contains(QStringLiteral("SHOP_ID")));
        QVERIFY(!e.columns.contains(QStringLiteral("UPLOAD_FILE_TYPE")));
        QCOMPARE(e.record.ACC_ID.toLong(), 1040);
        QCOMPARE(e.columns.size(), ShopMaster::FieldCount - 1 + 1);
        texts[10] = QStringLiteral("2");
        e = ShopMaster::entryOf(texts, 2, -1);
        QCOMPARE(e.record.BCD_AMT_10_LEN.toText(), QStringLiteral("3"));
        QCOMPARE(e.record.UPLOAD_FILE_TYPE.toLong(), 3);
        QVERIFY(!e.columns.contains(QStringLiteral("ACC_ID")));

        QCOMPARE(ShopMaster::uploadOption(Value(7)), -1);
        QCOMPARE(ShopMaster::uploadOption(Value(QStringLiteral("2"))), 1);
        QCOMPARE(ShopMaster::accountOption(Value(1000)), 0);
        QCOMPARE(ShopMaster::accountOption(Value::null()), -1);
        QCOMPARE(ShopMaster::column(22), QStringLiteral("PTAG_LOGO"));
    }

    // The product number typed into the product master: whole, not below 0,
    // no other row's; empty is allowed.
    void typedProductNumbers_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("refusal");
        QTest::addColumn<Value>("id");
        QTest::newRow("free") << "40" << "" << Value::int32(40);
        QTest::newRow("full-width") << "４０" << "" << Value::int32(40);
        QTest::newRow("its own") << "2" << "" << Value::int32(2);
        QTest::newRow("empty") << "" << "" << Value::null();
        QTest::newRow("zero") << "0" << "" << Value::int32(0);
        QTest::newRow("text") << "abc" << "数値を入力してください。" << Value();
        QTest::newRow("taken") << "3" << "商品IDが重複しています。" << Value();
        QTest::newRow("fraction") << "1.5" << "商品IDは0以上の整数で入力してください。" << Value();
        QTest::newRow("below 0") << "-4" << "商品IDは0以上の整数で入力してください。" << Value();
    }
    void typedProductNumbers()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        QFETCH(QString, typed);
        Prd::Rows rows(3);
        rows[0].PRD_ID = Value(1);
        rows[1].PRD_ID = Value(2);
        rows[2].PRD_ID = Value(3);
        const Prd::TypedId t = Prd::checkTypedId(rows, 1, typed);
        QTEST(t.refusal, "refusal");
        QTEST(t.id, "id");
    }

    // Rows numbered 0 or none are not saved; what the dialog doesn't show
    // passes through, stamped by the computer.
    void productsSavedAtOnce()
    {
        TestRoot root;
        Prd::Rows rows = Prd::load();
        const int count = rows.size();
        const Value term = rows[0].I_TERM;
        rows[0].PRD_NM = Value(QStringLiteral("完熟 'トマト'"));
        const int added = Prd::addRow(rows, Value(1));
        QCOMPARE(rows[added].PRD_ID.toLong(), Prd::maxId(rows));
        Prd::addRow(rows, Value(1));
        rows.last().PRD_ID = Value(0);
        Prd::save(rows, QStringLiteral("TESTPC"));
        QCOMPARE(gMST->DCount("*", "M_PRD").toLong(), count + 1);
        const Prd::Rows back = Prd::load();
        QCOMPARE(back[0].PRD_NM.toText(), QStringLiteral("完熟 'トマト'"));
        QCOMPARE(back[0].I_TERM, term);
        QCOMPARE(back[0].LAST_TM.toText(), QStringLiteral("TESTPC"));
        QVERIFY(back[0].HOLD_TM.isNull());
        QVERIFY(back.last().IDATE.isDateType());

        // an empty table: one blank row, which the first add fills
        gMST->EXEC(QStringLiteral("DELETE M_PRD.* FROM M_PRD"));
        rows = Prd::load();
        QCOMPARE(rows.size(), 1);
        QCOMPARE(Prd::addRow(rows, Value(1)), 0);
        QCOMPARE(rows.size(), 1);
        QCOMPARE(Prd::removeRow(rows, 0), 0);
        QCOMPARE(rows.size(), 1);
        QVERIFY(!hasValue(rows[0].PRD_ID));
    }

    // Settings as stored: odd values read as none; a save writes the five
    // keys typed, each once.
    void localSettings()
    {
        TestRoot root;
        root.setCtrl(QStringLiteral("USE_TYPE"), Value(QStringLiteral("abc")), Value(4));
        root.setCtrl(QStringLiteral("WINDOW_STA"), Value::null(), Value(1));
        LocalSettings::Values v = LocalSettings::load();
        QCOMPARE(v.useType, 0);
        QVERIFY(!v.maximised);
        QCOMPARE(v.farmer, QStringLiteral("1"));
        v.useType = 2;
        v.farmer = QStringLiteral("０３");
        v.shop.clear();
        v.backupDir = QStringLiteral("/srv/o'brien");
        v.maximised = true;
        LocalSettings::save(v);
        QCOMPARE(gINI->GetCtrl("USE_TYPE"), Value(2));
        QCOMPARE(gINI->GetCtrl("DEF_FMR_ID"), Value(3));
        QVERIFY(gINI->GetCtrl("DEF_SHOP_ID").isNull());
        QCOMPARE(gINI->GetCtrl("BACK_DIR").toText(), QStringLiteral("/srv/o'brien"));
        QCOMPARE(gINI->GetCtrl("WINDOW_STA"), Value(true));
        QCOMPARE(gINI->DCount("*", "S_CTRL", "CTRL_CD='USE_TYPE'").toLong(), 1);
        const LocalSettings::Values back = LocalSettings::load();
        QCOMPARE(back.useType, 2);
        QCOMPARE(back.backupDir, QStringLiteral("/srv/o'brien"));
        QVERIFY(back.maximised);

        ConnectionSettings::save({{QStringLiteral("MST_DBPW"), Value(QStringLiteral("p'w"))}});
        QCOMPARE(ConnectionSettings::load({QStringLiteral("MST_DBPW"), QStringLiteral("DB_DBPW")}),
                 (QStringList{"p'w", ""}));
    }

    // Only the farmers and shops in use are offered, by code.
    void listsInUse()
    {
        TestRoot root;
        Build::farmer(3, QStringLiteral("緑 次郎")).add();
        Build::farmer(2, QStringLiteral("やめた人")).set("CHK_FLG", Value(false)).add();
        gMST->EXEC(QStringLiteral("UPDATE M_FMR SET FMR_NM=NULL WHERE FMR_ID=1"));
        QCOMPARE(name(MasterLists::farmers()), QStringLiteral("=1,緑 次郎=3"));
        QCOMPARE(MasterLists::shops().size(), 1);
        QCOMPARE(MasterLists::shops()[0].id.toLong(), 1);
    }
};

TILLORA_RULES_TEST_MAIN(TestMasters)
#include "tst_masters.moc"
