// The price tag export without its dialog: a line of the file field by
// field, the file in each encoding with CR LF line ends replacing an
// earlier one, the period it opens with, its refusals in their order, the
// rows of a period of one farmer to one shop, and the plantings of a year
// that the trace dialogs offer.

#include "base/Globals.h"
#include "base/Helpers.h"
#include "rules/exchange/PriceTagCsv.h"
#include "rules/exchange/TraceData.h"
#include "store/Database.h"
#include "support/Build.h"
#include "support/RulesTest.h"
#include "support/TagDay.h"
#include "support/TestRoot.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest/QTest>

using namespace PriceTagCsv;

namespace {

QDateTime day(int y, int m, int d) { return DateUtil::make(y, m, d); }

QString entries(const Choices &list)
{
    QStringList out;
    for (const Choice &e : list)
        out << e.text + QLatin1Char('=') + e.id.toText();
    return out.join(QLatin1Char(','));
}

} // namespace

class TestPriceTagCsv : public QObject {
    Q_OBJECT


private slots:
    void init()
    {
        gFMR_ID = Value(1);
        gSHOP_ID = Value(1);
        gPTAG_ROWS.clear();
    }

    void aLineFieldByField()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        PriceTagRow r;
        r.FmrId = 12;
        r.PrdId = 5;
        r.PrdNm = QStringLiteral("トマト");
        r.Qty = 3;
        r.Label.Code = QStringLiteral("0000120501294");
        r.Label.QrText = QStringLiteral("http://trace.example.jp/cropvia/12/7/");
        r.Label.FmrNm = QStringLiteral("青葉 耕作");
        r.Label.Tel = QStringLiteral("000-1111-2233");
        r.Label.PrdNm = QStringLiteral("トマト");
        r.Label.Price = Currency::fromDouble(1280.5);
        r.Label.Locate = QStringLiteral("緑川県");
        r.Label.Plas = true;
        QCOMPARE(csvLine(r), QStringLiteral("#FALSE#,1,0,\"0000120501294\",\"http://trace.example.jp/cropvia/12/7/\",12,"
                                            "\"青葉 耕作\",5,\"トマト\",\"000-1111-2233\",\"トマト\",0,1280.5,\"\",\"\",0,0,"
                                            "\"\",0,#1899-12-30 00:00:00#,\"\",3,\"緑川県\",#TRUE#"));
        QCOMPARE(csvLine(r).count(QLatin1Char(',')), 23);
        // a double quote in a name goes as it stands
        r.Label.FmrNm = QStringLiteral("\"屋号\"");
        QVERIFY(csvLine(r).contains(QStringLiteral(",\"\"屋号\"\",")));
    }

    // The bytes of a written file in each encoding: every line with CR LF,
    // an earlier longer file replaced whole, a character the code page lacks
    // written as "?" (UTF-8 keeps it); then the files that can't be written.
    void theFileInEachEncoding()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("260501-260510-1-1.csv"));
        PriceTagRow a, b;
        a.PrdNm = QStringLiteral("なす");
        b.PrdNm = QStringLiteral("𠮷野菜");
        const QString lineA = csvLine(a) + QStringLiteral("\r\n"), lineB = csvLine(b) + QStringLiteral("\r\n");
        QString error;
        for (const Encoding e : {Encoding::CodePage, Encoding::Utf8Bom}) {
            QFile old(path);
            QVERIFY(old.open(QIODevice::WriteOnly));
            old.write(QByteArray(5000, 'x'));
            old.close();
            QVERIFY(writeCsv(path, {a, b}, e, &error));
            QFile f(path);
            QVERIFY(f.open(QIODevice::ReadOnly));
            const QByteArray bytes = f.readAll();
            if (e == Encoding::CodePage) {
                QVERIFY(bytes.startsWith("#FALSE#,1,0,\"\""));
                QVERIFY(bytes.contains(QByteArray(",\"\x82\xC8\x82\xB7\","))); // なす in CP932
                QVERIFY(bytes.contains(QByteArray(",\"?\x96\xEC\x8D\xD8\","))); // 𠮷 lacking, 野菜 kept
                // the rest is ASCII: なす and 野菜 take two bytes a character, 𠮷 (two
                // UTF-16 units) one "?"
                QCOMPARE(bytes.size(), lineA.size() + 2 + lineB.size() - 1 + 2);
            } else {
                QCOMPARE(bytes, QByteArray("\xEF\xBB\xBF") + (lineA + lineB).toUtf8());
            }
            QCOMPARE(bytes.count("\r\n"), 2);
            QCOMPARE(bytes.count('\n'), 2);
        }
        // a folder that is not there, a folder standing where the file goes
        QVERIFY(!writeCsv(dir.filePath(QStringLiteral("no/such/x.csv")), {a}, Encoding::CodePage, &error));
        QVERIFY2(error.startsWith(QStringLiteral("出力先に書き込めません。")), qPrintable(error));
        QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("taken.csv")));
        QVERIFY(!writeCsv(dir.filePath(QStringLiteral("taken.csv")), {a}, Encoding::CodePage, &error));
        QVERIFY2(error.startsWith(QStringLiteral("同じ名前のフォルダがあるため")), qPrintable(error));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{"260501-260510-1-1.csv"}); // no scraps left
    }

    // The period the dialog offers, from the last export and the latest shipment.
    void period_data()
    {
        QTest::addColumn<QDateTime>("today");
        QTest::addColumn<QDateTime>("lastExport");
        QTest::addColumn<QDateTime>("latest");
        QTest::addColumn<QDateTime>("first");
        QTest::addColumn<QDateTime>("last");
        QTest::newRow("exported today, opened today")
            << day(2026, 5, 10) << day(2026, 5, 10) << day(2026, 5, 10) << day(2026, 5, 10) << day(2026, 5, 10);
        QTest::newRow("opened the next day")
            << day(2026, 5, 11) << day(2026, 5, 10) << day(2026, 5, 11) << day(2026, 5, 11) << day(2026, 5, 11);
        QTest::newRow("shipped since")
            << day(2026, 5, 20) << day(2026, 5, 1) << day(2026, 5, 18) << day(2026, 5, 2) << day(2026, 5, 18);
        QTest::newRow("nothing shipped since")
            << day(2026, 5, 20) << day(2026, 5, 10) << day(2026, 5, 9) << day(2026, 5, 20) << day(2026, 5, 20);
    }
    void period()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        QFETCH(QDateTime, today);
        QFETCH(QDateTime, lastExport);
        QFETCH(QDateTime, latest);
        const Period p = PriceTagCsv::period(today, lastExport, latest);
        QTEST(p.first, "first");
        QTEST(p.last, "last");
    }

    // As the dialog opens: the last export kept here, the latest shipment of
    // the farmer to the shop; the folder is kept here as well.
    void openingPeriodAndFolder()
    {
        TestRoot root;
        TagDay::seed(QDate(2026, 5, 10));
        Build::shipment(20, QDate(2026, 6, 1)).set("FMR_ID", 2).add();
        Build::shipment(21, QDate(2026, 6, 2)).set("SHOP_ID", 2).add();
        const QDateTime today = day(2026, 5, 15);
        saveLastExport(QStringLiteral("2026/05/01"));
        Period p = openingPeriod(today, Value(1), Value(1));
        QCOMPARE(p.first, day(2026, 5, 2));
        QCOMPARE(p.last, day(2026, 5, 10));
        // nothing exported yet, nothing shipped: today
        gINI->EXEC(QStringLiteral("DELETE S_CTRL.* FROM S_CTRL WHERE CTRL_CD='LAST_EXP_PTAG_DATE'"));
        p = openingPeriod(today, Value(3), Value(1));
        QCOMPARE(p.first, today);
        QCOMPARE(p.last, today);
        QCOMPARE(folder(), QString());
        saveFolder(QStringLiteral("/srv/o'brien"));
        QCOMPARE(folder(), QStringLiteral("/srv/o'brien"));
    }

    // The refusals in their order, each with the field it concerns; then the
    // file named after the period, farmer and shop, holding the period's rows
    // of that farmer and shop, rows of quantity 0 too.
    void exportChecksInOrderThenWrites()
    {
        TestRoot root;
        TagDay::seed(QDate(2026, 5, 10));
        Build::shipment(22, QDate(2026, 5, 10)).set("SHOP_ID", 2).set("SHIP_QTY", 3).add();
        QTemporaryDir dir;
        const QString missing = dir.filePath(QStringLiteral("none"));
        struct Case {
            const char *first, *last;
            QString folder;
            const char *refusal;
            int field;
        };
        const Case cases[] = {
            {"", "2026/05/10", dir.path(), "出荷日を指定してください。", 0},
            {"2026/13/01", "2026/05/10", dir.path(), "日付を指定してください。", 0},
            {"0001/01/01", "2026/05/10", dir.path(), "日付を指定してください。", 0},
            {"2026/05/01", "x", dir.path(), "日付を指定してください。", 1},
            {"2026/05/01", "", dir.path(), "出荷日を指定してください。", 1},
            {"2026/05/11", "2026/05/31", dir.path(), "出力対象データが登録されていません。", -1},
            {"2026/05/01", "2026/05/10", QString(), "出力先を指定してください。", 2},
            {"2026/05/01", "2026/05/10", missing, "出力先ディレクトリが存在しません。", 2},
        };
        for (const Case &c : cases) {
            const Outcome o = exportRows({QString::fromUtf8(c.first), QString::fromUtf8(c.last), c.folder, Value(1), Value(1), Encoding::CodePage, {}});
            QCOMPARE(o.refusal, QString::fromUtf8(c.refusal));
            QCOMPARE(o.field, c.field);
            QCOMPARE(o.written, 0);
        }
        QVERIFY(QDir(dir.path()).entryList(QDir::Files).isEmpty());
        // stopped while the rows are made: no file
        int reports = 0;
        Request stopped{QStringLiteral("2026/05/01"), QStringLiteral("2026/05/10"), dir.path(), Value(1), Value(1), Encoding::CodePage, {}};
        stopped.progress = [&](qint64, qint64, const QString &) { return ++reports < 2; };
        QCOMPARE(exportRows(stopped).refusal, QStringLiteral("書き出しを中止しました。"));
        QVERIFY(QDir(dir.path()).entryList(QDir::Files).isEmpty());

        const Outcome o = exportRows({QStringLiteral("2026/05/01"), QStringLiteral("2026/05/10"), dir.path(), Value(1), Value(1), Encoding::CodePage, {}});
        QVERIFY(o.refusal.isEmpty());
        QCOMPARE(o.written, 3); // farmer 1's three rows to shop 1, the one of quantity 0 too
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{"260501-260510-1-1.csv"});
        QFile f(dir.filePath(QStringLiteral("260501-260510-1-1.csv")));
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(f.readAll().count("\r\n"), 3);
        QCOMPARE(fileName(day(2026, 5, 1), day(2026, 5, 10), Value(2), Value(1)), QStringLiteral("260501-260510-2-1.csv"));
        QCOMPARE(loadPeriodRows(day(2026, 5, 10), day(2026, 5, 10), Value(2), Value(1)), 1);
        // a farmer code that is no number finds nothing, and the rows stay
        QCOMPARE(loadPeriodRows(day(2026, 5, 1), day(2026, 5, 31), Value(QStringLiteral("第1号")), Value(1)), 0);
        QCOMPARE(gPTAG_ROWS[0].Rows.size(), 1);
    }

    // The plantings of a year, by number; a year that is no number finds none.
    void plantingsOfAYear()
    {
        TestRoot root;
        Build::planting(2, QStringLiteral("秋なす")).set("YYYY", 2024).add();
        Build::planting(1, QStringLiteral("春トマト")).set("YYYY", 2024).add();
        Build::planting(3, QStringLiteral("古株")).set("YYYY", 2020).add();
        Build::shipment(1, QDate(2024, 5, 1)).set("PLANT_ID", 1).add();
        QCOMPARE(entries(TraceData::yearPlantings(QStringLiteral("2024"))), QStringLiteral("春トマト=1,秋なす=2"));
        QCOMPARE(entries(TraceData::yearPlantings(QStringLiteral("２０２０"))), QStringLiteral("古株=3"));
        QVERIFY(TraceData::yearPlantings(QStringLiteral("令和6年")).isEmpty());
        QVERIFY(TraceData::yearPlantings(QStringLiteral("'; DROP TABLE D_PLANT")).isEmpty());
        QCOMPARE(gDB->DCount("*", "D_PLANT").toLong(), 3);
    }
};

TILLORA_RULES_TEST_MAIN(TestPriceTagCsv)
#include "tst_pricetagcsv.moc"
