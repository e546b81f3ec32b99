// The sprayings held against their registrations: every wording of the
// delivered register read (and the ones that can't be read said so), and the
// checks of a planting's sprayings over the tables on both engines.

#include "base/Globals.h"
#include "rules/common/Ids.h"
#include "rules/pesticide/SprayCheck.h"
#include "store/Database.h"
#include "store/Engine.h"
#include "support/Build.h"
#include "support/RulesTest.h"

#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest/QTest>

namespace {

const QDate kToday(2024, 12, 31);

// "6/1 6/10" as days of 2024.
QVector<QDate> days(const QString &list)
{
    QVector<QDate> out;
    for (const QString &d : list.split(QLatin1Char(' '), Qt::SkipEmptyParts))
        out << QDate(2024, d.section(QLatin1Char('/'), 0, 0).toInt(), d.section(QLatin1Char('/'), 1, 1).toInt());
    return out;
}

QString kindName(Spray::Finding::Kind k)
{
    static const char *names[] = {"登録なし", "回数", "収穫", "出荷", "確認不可"};
    return QString::fromUtf8(names[k]);
}

// The wording of every distinct value of a register column.
QStringList delivered(const char *column)
{
    QStringList out;
    RecordsetPtr rs = gWORK->GetFwdOnlyRst(QStringLiteral("SELECT DISTINCT %1 FROM L_CHEMI_APPL").arg(QLatin1String(column)));
    for (; !rs->eof(); rs->MoveNext())
        out << textOf(rs->Fields(0));
    rs->Close();
    return out;
}

} // namespace

class TestSprayCheck : public QObject {
    Q_OBJECT
private slots:
    void init() { gFMR_ID = Value(1); }

    // Every wording the delivered register holds has its reading here; a new
    // wording in the data fails until it is added.
    void deliveredWordings()
    {
        TestRoot root;
        const QHash<QString, QString> times{
            {"1回", "1回まで"},     {"2回以内", "2回まで"}, {"3回以内", "3回まで"}, {"4回以内", "4回まで"},
            {"5回以内", "5回まで"}, {"6回以内", "6回まで"}, {"－", "制限なし"},
        };
        const QString none = QStringLiteral("収穫前の日数なし");
        const QHash<QString, QString> seasons{
            {"収穫前日まで", "散布の1日後から収穫"},
            {"収穫7日前まで", "散布の7日後から収穫"},
            {"収穫14日前まで", "散布の14日後から収穫"},
            {"収穫21日前まで", "散布の21日後から収穫"},
            {"収穫30日前まで", "散布の30日後から収穫"},
            {"収穫45日前まで", "散布の45日後から収穫"},
            {"発生初期（収穫前日まで）", "散布の1日後から収穫"},
            {"冬期", none}, {"夏期", none}, {"定植時", none}, {"播種または植付前", none}, {"播種前または植付前", none},
            {"植付前", none}, {"満開10～15日後", none}, {"発生初期", none}, {"発芽前", none},
            {"移植3日前～移植当日", none}, {"移植後5日～ノビエ2.5葉期（移植後30日まで）", none}, {"育苗期", none},
            {"開花前まで", none}, {"開花前日～開花当日", none}, {"開花当日～開花3日後", none}, {"－", none},
        };
        const QHash<QString, QString> dilutions{
            {"", "指定なし"},           {"1000倍", "1000倍"},          {"1000～2000倍", "1000～2000倍"},
            {"100倍", "100倍"},         {"100～200倍", "100～200倍"},  {"16～24倍", "16～24倍"},
            {"2000倍", "2000倍"},       {"200倍", "200倍"},            {"3000倍", "3000倍"},
            {"3000～10000倍", "3000～10000倍"}, {"4000倍", "4000倍"}, {"5000～10000倍", "5000～10000倍"},
            {"500倍", "500倍"},         {"500～800倍", "500～800倍"},  {"50倍", "50倍"},
            {"50～100倍", "50～100倍"}, {"600倍", "600倍"},            {"60～100倍", "60～100倍"},
            {"800倍", "800倍"},         {"原液", "1倍"},
        };
        for (const QString &w : delivered("USE_TIMES")) {
            QVERIFY2(times.contains(w), qPrintable(w));
            QCOMPARE(Spray::timesText(Spray::readTimes(w)), times.value(w));
        }
        for (const QString &w : delivered("SEASON")) {
            QVERIFY2(seasons.contains(w), qPrintable(w));
            QCOMPARE(Spray::intervalText(Spray::readInterval(w)), seasons.value(w));
        }
        for (const QString &w : delivered("DILUTION")) {
            QVERIFY2(dilutions.contains(w), qPrintable(w));
            QCOMPARE(Spray::dilutionText(Spray::readDilution(w)), dilutions.value(w));
        }
    }

    // Wordings beyond the sample: read when their meaning is sure, else said
    // to be unreadable.
    void otherWordings_data()
    {
        QTest::addColumn<QString>("times");
        QTest::addColumn<QString>("season");
        QTest::addColumn<QString>("dilution");
        QTest::addColumn<QString>("read");
        QTest::newRow("full width") << "３回以内" << "収穫７日前まで" << "１０００～２０００倍"
                                    << "3回まで|散布の7日後から収穫|1000～2000倍";
        QTest::newRow("before the first harvest") << "2回まで" << "収穫開始21日前まで" << "1,000倍"
                                                  << "2回まで|散布の21日後から収穫開始|1000倍";
        QTest::newRow("wave dash and blanks") << " 1回 " << "収穫 前日 まで" << "500〜800倍"
                                              << "1回まで|散布の1日後から収穫|500～800倍";
        QTest::newRow("limits split by stage") << "3回以内（育苗期は1回以内）" << "収穫7日前まで（ハウスは収穫前日まで）"
                                               << "約1000倍"
                                               << "確認できません|確認できません|確認できません";
        QTest::newRow("harvest named otherwise") << "0回" << "収穫期まで" << "2000～1000倍"
                                                 << "確認できません|確認できません|確認できません";
    }
    void otherWordings()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        QFETCH(QString, times);
        QFETCH(QString, season);
        QFETCH(QString, dilution);
        QFETCH(QString, read);
        QCOMPARE(QStringList({Spray::timesText(Spray::readTimes(times)),
                              Spray::intervalText(Spray::readInterval(season)),
                              Spray::dilutionText(Spray::readDilution(dilution))})
                     .join(QLatin1Char('|')),
                 read);
    }

    // One planting of a crop (from 4/1, under way), one lot of a registration
    // sprayed on the days given, harvests and shipments: the findings, as
    // "day:kind" in the order of the sprayings.
    void checks_data()
    {
        QTest::addColumn<QString>("regNo");
        QTest::addColumn<QString>("crop");
        QTest::addColumn<QString>("purpose");
        QTest::addColumn<QString>("sprays");
        QTest::addColumn<QString>("harvests");
        QTest::addColumn<QString>("ships");
        QTest::addColumn<QString>("found");
        QTest::newRow("within the rules") << "90005" << "トマト" << "" << "6/1 6/10" << "6/2" << "6/11" << "";
        QTest::newRow("third use over 2回以内") << "90005" << "トマト" << "" << "6/1 6/10 6/20" << "" << ""
                                              << "6/20:回数";
        QTest::newRow("shipped two days after, 収穫7日前まで") << "90001" << "キャベツ" << "" << "6/1" << ""
                                                             << "5/30 6/3 6/8" << "6/1:出荷";
        QTest::newRow("same-day harvest, 収穫前日まで") << "90003" << "トマト" << "" << "6/1" << "6/1" << ""
                                                      << "6/1:収穫";
        QTest::newRow("crop excluded by the match") << "90008" << "ねぎ" << "" << "5/1" << "" << "" << "5/1:登録なし";
        QTest::newRow("covered by its group") << "90008" << "キャベツ" << "" << "5/1" << "5/2" << "" << "";
        QTest::newRow("the target picks its season") << "90003" << "いちご" << "うどんこ病" << "6/1" << "6/1" << ""
                                                     << "6/1:収穫";
        QTest::newRow("no target: the lenient season") << "90003" << "いちご" << "" << "6/1" << "6/1" << "" << "";
        QTest::newRow("no registration number") << "" << "トマト" << "" << "6/1" << "" << "" << "6/1:確認不可";
        QTest::newRow("a number the register lacks") << "12345" << "トマト" << "" << "6/1" << "" << "" << "6/1:確認不可";
        QTest::newRow("a crop the list lacks") << "90001" << "ドラゴンフルーツ" << "" << "6/1" << "" << ""
                                               << "6/1:確認不可";
        QTest::newRow("uses before the season not counted") << "90016" << "いちご" << "" << "3/1 6/1" << "" << ""
                                                            << "";
    }
    void checks()
    {
        QFETCH(QString, regNo);
        QFETCH(QString, crop);
        QFETCH(QString, purpose);
        QFETCH(QString, sprays);
        QFETCH(QString, harvests);
        QFETCH(QString, ships);
        QFETCH(QString, found);
        TestRoot root;
        Build::planting(1, QStringLiteral("畑A")).set("CROP_NM", Value(crop)).set("START_DATE", QDate(2024, 4, 1)).add();
        Build::lot(1, QStringLiteral("薬A")).set("REG_NO", regNo.isEmpty() ? Value::null() : Value(regNo)).add();
        int no = 1;
        for (const QDate &d : days(sprays))
            Build::diaryLine(d, no++, WorkKbn::Spraying)
                .set("PLANT_ID", 1)
                .set("CHEMI_ID", 1)
                .set("PURPOSE", purpose.isEmpty() ? Value::null() : Value(purpose))
                .add();
        for (const QDate &d : days(harvests))
            Build::diaryLine(d, no++, Spray::Register().harvestKind()).set("PLANT_ID", 1).add();
        int ship = 1;
        for (const QDate &d : days(ships))
            Build::shipment(ship++, d).set("PLANT_ID", 1).add();

        Spray::Register reg;
        const QVector<Spray::Planting> ps = Spray::readPlantings(Value(1), Value(1), reg);
        QCOMPARE(ps.size(), 1);
        QStringList got;
        for (const Spray::Finding &f : Spray::check(ps[0], reg, kToday))
            got << ps[0].sprays[f.spray].day.toString(QStringLiteral("M/d")) + QLatin1Char(':') + kindName(f.kind);
        QCOMPARE(got.join(QLatin1Char(' ')), found);
    }

    // The shipment entry's warning, and the planting's first shipping day and
    // use counts, from the same sprayings.
    void shipmentAndShipFrom()
    {
        TestRoot root;
        Build::planting(1, QStringLiteral("春キャベツ")).set("CROP_NM", "キャベツ").set("START_DATE", QDate(2024, 4, 1)).add();
        Build::lot(1, QStringLiteral("ハルカゼ")).set("REG_NO", "90001").add();
        Build::lot(2, QStringLiteral("シズク")).set("REG_NO", "90007").add();
        Build::diaryLine(QDate(2024, 6, 1), 1, WorkKbn::Spraying).set("PLANT_ID", 1).set("CHEMI_ID", 1).add();
        Build::diaryLine(QDate(2024, 6, 5), 1, WorkKbn::Spraying).set("PLANT_ID", 1).set("CHEMI_ID", 2).add();
        Build::diaryLine(QDate(2024, 6, 9), 1, WorkKbn::Spraying).set("PLANT_ID", 1).set("CHEMI_ID", 1).add();

        const QStringList w = Spray::checkShipment(Value(1), Value(1), Value(QDateTime(QDate(2024, 6, 7), QTime())));
        QCOMPARE(w.join(QLatin1Char('\n')),
                 QStringLiteral("ハルカゼ（登録番号90001）を2024/06/01に散布しています。使用時期「収穫7日前まで」により、出荷は2024/06/08からです。\n"
                                "シズク（登録番号90007）を2024/06/05に散布しています。使用時期「収穫7日前まで」により、出荷は2024/06/12からです。"));
        QVERIFY(Spray::checkShipment(Value(1), Value(1), Value(QDateTime(QDate(2024, 6, 30), QTime()))).isEmpty());

        Spray::Register reg;
        const Spray::Planting p = Spray::readPlantings(Value(1), Value(1), reg).value(0);
        QCOMPARE(Spray::shipFromText(Spray::shipFrom(p, reg)), QStringLiteral("2024/06/16"));
        QCOMPARE(Spray::useCounts(p, reg, kToday).join(QLatin1Char('|')),
                 QStringLiteral("ハルカゼ（90001） 2回／3回まで|シズク（90007） 1回／3回まで"));
    }

    // The register is kept between checks only while its file is unchanged:
    // a change written by the program, or by another program on the same
    // file, is what the next check reads.
    void theKeptRegisterFollowsItsFile()
    {
        TestRoot root;
        Build::planting(1, QStringLiteral("畑A")).set("CROP_NM", "トマト").set("START_DATE", QDate(2024, 4, 1)).add();
        Build::lot(1, QStringLiteral("薬A")).set("REG_NO", "90005").add();
        for (int d : {1, 10, 20})
            Build::diaryLine(QDate(2024, 6, d), 1, WorkKbn::Spraying).set("PLANT_ID", 1).set("CHEMI_ID", 1).add();
        auto warned = [] {
            QStringList out;
            for (const QDate &d : Spray::warnedDays(Value(1), Value(0), QDate(2024, 6, 1), QDate(2024, 6, 30), kToday))
                out << d.toString(QStringLiteral("M/d"));
            return out.join(QLatin1Char(' '));
        };
        QCOMPARE(warned(), QStringLiteral("6/20")); // 2回以内
        gWORK->EXEC("UPDATE L_CHEMI_APPL SET USE_TIMES='3回以内' WHERE REG_NO=90005");
        QCOMPARE(warned(), QString());

        QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("other program"));
        other.setDatabaseName(gWORK->engine()->target().file);
        QVERIFY(other.open());
        QVERIFY(QSqlQuery(other).exec(QStringLiteral("UPDATE L_CHEMI_APPL SET USE_TIMES='1回以内' WHERE REG_NO=90005")));
        other.close();
        other = QSqlDatabase();
        QSqlDatabase::removeDatabase(QStringLiteral("other program"));
        QCOMPARE(warned(), QStringLiteral("6/10 6/20"));
    }

    // The farm's report by the companion: every farmer, the year asked for.
    void checkSpraysCommand()
    {
        TestRoot root;
        Build::planting(1, QStringLiteral("ねぎ畑")).set("CROP_NM", "ねぎ").set("START_DATE", QDate(2023, 4, 1)).add();
        Build::lot(1, QStringLiteral("ユウナギ")).set("REG_NO", "90008").add();
        Build::diaryLine(QDate(2023, 5, 1), 1, WorkKbn::Spraying).set("PLANT_ID", 1).set("CHEMI_ID", 1).add();
        Build::diaryLine(QDate(2024, 5, 1), 1, WorkKbn::Spraying).set("PLANT_ID", 1).set("CHEMI_ID", 1).add();
        Build::diaryLine(QDate(2024, 5, 2), 1, WorkKbn::Spraying).set("FMR_ID", 2).add();
        auto run = [&](const QStringList &more) {
            QProcess p;
            p.start(QStringLiteral(TILLORA_ADMIN), QStringList{"check-sprays", "--root", root.root()} + more);
            p.waitForFinished(60000);
            return QString::number(p.exitCode()) + QLatin1Char('\n') + QString::fromUtf8(p.readAllStandardOutput()) +
                   QString::fromUtf8(p.readAllStandardError());
        };
        QCOMPARE(run({"--year", "2024"}),
                 QStringLiteral("0\n"
                                "生産者1\t2024/05/01\t1 ねぎ畑\tユウナギ（登録番号90008）は作物「ねぎ」に登録がありません。\n"
                                "生産者2\t2024/05/02\t（作付なし）\t農薬は、作付がないため確認できません。\n"
                                "2024年の散布の指摘 2件\n"));
        QVERIFY(run({}).endsWith(QStringLiteral("散布の指摘 3件\n")));
        QVERIFY(run({"--year", "二〇二四"}).startsWith(QStringLiteral("2\n使い方: tillora-admin check-sprays")));
    }
};

TILLORA_RULES_TEST_MAIN(TestSprayCheck)
#include "tst_spraycheck.moc"
