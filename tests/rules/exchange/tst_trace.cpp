// The production history of a planting, read once and shown twice: the
// report of a generated planting against the tables counted here, drawn
// into a PDF; and the trace pages of a generated year read back as a
// browser would: every tag's QR address finds its page, every link its
// file, no user text turns into markup, and a planting without shipments
// has no page and is named with its reason.

#include "base/Globals.h"
#include "rules/exchange/PriceTagCsv.h"
#include "rules/exchange/TracePages.h"
#include "rules/print/PriceTag.h"
#include "rules/print/TraceReport.h"
#include "rules/print/modPrinter.h"
#include "store/Database.h"
#include "store/Stmt.h"
#include "support/Build.h"
#include "support/PrintProbe.h"
#include "support/RulesTest.h"

#include "generate.h"

#include <QDirIterator>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QUrl>
#include <QXmlStreamReader>
#include <QtTest/QTest>

#include <memory>

namespace {

constexpr int kYear = 2024;
const QString kWww = QStringLiteral("http://trace.example.jp/");
// Names that would be markup if they were not escaped.
const QString kFarmer = QStringLiteral("山田 <b>&amp;\"太郎'");
const QString kPlanting = QStringLiteral("<script>alert(\"苺\")</script> & 'いちご'");
const QString kShop = QStringLiteral("直売所 <i>\"ひだまり\"</i> & Co.");
const QString kUnshipped = QStringLiteral("<img src=x onerror='y'> 試作");

using Key = QPair<int, int>; // farmer, planting

qint64 number(const QString &sql)
{
    RecordsetPtr rs = gDB->GetFwdOnlyRst(sql);
    const qint64 n = rs->eof() ? 0 : qint64(Nz(rs->Fields(0), Value(0)).toDouble());
    rs->Close();
    return n;
}

QSet<Key> keys(const QString &sql)
{
    QSet<Key> out;
    RecordsetPtr rs = gDB->GetFwdOnlyRst(sql);
    for (; !rs->eof(); rs->MoveNext())
        out.insert({rs->Fields(0).toLong(), rs->Fields(1).toLong()});
    rs->Close();
    return out;
}

// What a page holds as a browser reads it: its text, the names of its
// elements and attributes, and the files its links name.
struct Parsed {
    QString error;
    QString text;
    QStringList elements, attributes, links;
};

Parsed parse(const QString &path)
{
    QFile f(path);
    f.open(QIODevice::ReadOnly);
    Parsed p;
    QXmlStreamReader xml(&f);
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            p.elements << xml.name().toString();
            for (const QXmlStreamAttribute &a : xml.attributes()) {
                p.attributes << a.name().toString();
                if (a.name() == QLatin1String("href") || a.name() == QLatin1String("src"))
                    p.links << a.value().toString();
            }
        } else if (xml.isCharacters()) {
            p.text += xml.text();
        }
    }
    if (xml.hasError())
        p.error = xml.errorString();
    return p;
}

// The page a tag's address opens when WWW_URL is the folder: the folder
// form's index page, or the script form's query read as its script reads it
// ("?" and "&" both separate) — "" when the address is of neither form.
QString pageOf(const QString &qr, const QString &folder)
{
    if (!qr.startsWith(kWww))
        return QString();
    const QString rest = qr.mid(kWww.size());
    if (rest.startsWith(QLatin1String("cropvia/")))
        return folder + QLatin1Char('/') + rest + QStringLiteral("index.html");
    if (!rest.startsWith(QLatin1String("cropvia.php?")) || !QFileInfo::exists(folder + QStringLiteral("/cropvia.php")))
        return QString();
    QHash<QString, QString> values;
    for (const QString &pair : rest.mid(12).split(QRegularExpression(QStringLiteral("[?&]"))))
        values.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
    return QStringLiteral("%1/cropvia/%2/%3/index.html").arg(folder, values.value("fmr"), values.value("plant"));
}

} // namespace

class TestTrace : public QObject {
    Q_OBJECT

    std::unique_ptr<TestRoot> mYears; // generated years and the odd names, made once per engine
    Key mSprayed;                     // a generated planting of the year with sprayings and shipments

    void years()
    {
        if (!mYears) {
            mYears = std::make_unique<TestRoot>();
            BenchData::Targets t;
            t.detailLines = 4000;
            t.slips = 4000;
            t.shipments = 1000;
            t.plantings = 80;
            t.lots = 60;
            t.sprayLines = 500;
            t.linkedSlips = 300;
            BenchData::generate(*gDB->engine(), *gWORK->engine(), *gMST->engine(), t);
            Build::farmer(2, kFarmer).add();
            Build::planting(1, kPlanting).set("FMR_ID", 2).set("YYYY", kYear).set("CROP_NM", "いちご")
                .set("CROP_NM1", "<章姫>").set("FIELD_NM", "A&B \"畑\"").set("AREA", 3.5)
                .set("PLANT_DATE", QDate(kYear, 1, 10)).add();
            Build::planting(2, kUnshipped).set("FMR_ID", 2).set("YYYY", kYear).add();
            Build::diaryLine(QDate(kYear, 2, 1), 1, 3).set("FMR_ID", 2).set("PLANT_ID", 1)
                .set("WORK_NM", "<u>収穫</u>").set("NOTES", "甘い & \"大粒\"\n二行目 <br>").add();
            Build::shipment(1, QDate(kYear, 3, 1)).set("FMR_ID", 2).set("PLANT_ID", 1).set("SHIP_QTY", 12)
                .set("PRD_NM", "いちご <1パック>").add();
            QImage logo(40, 20, QImage::Format_RGB32);
            logo.fill(Qt::darkGreen);
            logo.save(mYears->root() + QStringLiteral("/images/ひだまり.png"));
            gMST->EXEC(Stmt("UPDATE M_SHOP SET SHOP_NM=?, PTAG_LOGO=? WHERE SHOP_ID=1")
                           .text(kShop).text(QStringLiteral("ひだまり.png")));
            const QSet<Key> both =
                keys(Stmt("SELECT D_PLANT.FMR_ID, D_PLANT.PLANT_ID FROM D_PLANT WHERE D_PLANT.YYYY=? AND "
                          "D_PLANT.PLANT_ID IN (SELECT D_SHIP.PLANT_ID FROM D_SHIP WHERE D_SHIP.FMR_ID=1) AND "
                          "D_PLANT.PLANT_ID IN (SELECT D_DIARY_DTL.PLANT_ID FROM D_DIARY_DTL WHERE "
                          "D_DIARY_DTL.WORK_KBN=5 AND D_DIARY_DTL.FMR_ID=1) AND D_PLANT.FMR_ID=1")
                         .num(kYear));
            QVERIFY(!both.isEmpty());
            mSprayed = *std::min_element(both.begin(), both.end());
        }
        gFMR_ID = Value(1);
        gSHOP_ID = Value(1);
    }

    TraceHistory::History history(const Key &k)
    {
        for (const TraceHistory::History &h : TraceHistory::readYear(kYear, Value(k.second), QDate(kYear, 12, 31)))
            if (h.farmer.toLong() == k.first)
                return h;
        return {};
    }

private slots:
    void cleanupTestCase() { mYears.reset(); }

    // The history holds what the tables hold, counted here; the report shows
    // each block with its heads and the shipments' total.
    void reportOfAPlanting_data()
    {
        QTest::addColumn<int>("farmer");
        QTest::addColumn<int>("plant"); // 0: the generated planting with sprayings
        QTest::addColumn<QStringList>("titles");
        QTest::newRow("generated, sprayed") << 1 << 0
                                            << QStringList{"作付", "作業記録", "農薬の使用",
                                                           "登録番号ごとの使用回数（この作付の期間）", "出荷"};
        QTest::newRow("odd names, unsprayed") << 2 << 1 << QStringList{"作付", "作業記録", "農薬の使用", "出荷"};
        QTest::newRow("nothing recorded") << 2 << 2 << QStringList{"作付", "作業記録", "農薬の使用", "出荷"};
    }

    void reportOfAPlanting()
    {
        QFETCH(int, farmer);
        QFETCH(int, plant);
        QFETCH(QStringList, titles);
        years();
        const Key k = plant == 0 ? mSprayed : Key(farmer, plant);
        const TraceHistory::History h = history(k);
        QCOMPARE(h.farmer.toLong(), k.first);
        const QString where = QStringLiteral(" WHERE FMR_ID=%1 AND PLANT_ID=%2").arg(k.first).arg(k.second);
        QCOMPARE(h.work.size(), number(QStringLiteral("SELECT COUNT(*) FROM D_DIARY_DTL") + where));
        QCOMPARE(h.sprays.size(), number(QStringLiteral("SELECT COUNT(*) FROM D_DIARY_DTL") + where +
                                         QStringLiteral(" AND WORK_KBN=5")));
        QCOMPARE(h.shipments.size(), number(QStringLiteral("SELECT COUNT(*) FROM D_SHIP") + where));
        for (int i = 1; i < h.work.size(); ++i)
            QVERIFY(h.work[i - 1].day <= h.work[i].day);
        int used = 0;
        for (const Spray::UseCount &c : h.uses) {
            used += c.used;
            QVERIFY(std::any_of(h.sprays.begin(), h.sprays.end(),
                                [&](const TraceHistory::Spraying &s) { return s.regNo == c.regNo; }));
        }
        QVERIFY(used <= h.sprays.size());
        QCOMPARE(h.uses.isEmpty(), h.sprays.isEmpty());

        const TablePages::Document doc = TraceReport::pages(h);
        QStringList shown;
        for (const TablePages::Row &r : doc.rows)
            if (r.style == TablePages::Style::Heading || (r.style == TablePages::Style::Note && r.keepWithNext))
                shown << r.cells.value(0);
        QCOMPARE(shown, titles);
        QVERIFY(std::any_of(doc.rows.begin(), doc.rows.end(), [&](const TablePages::Row &r) {
            return r.cells == QStringList{QStringLiteral("作付名"), h.name};
        }));
        if (!h.shipments.isEmpty()) {
            const TablePages::Row &total = doc.rows.last();
            QCOMPARE(total.style, TablePages::Style::Subtotal);
            QCOMPARE(total.cells.value(3).toLongLong(), number(QStringLiteral("SELECT SUM(SHIP_QTY) FROM D_SHIP") + where));
        }
    }

    // Report 30 through the common print layer into a PDF: every page
    // numbered, the planting named.
    void reportDrawnIntoAPdf()
    {
        years();
        TraceReport::registerReport();
        const int pages = TraceReport::prepare(kYear, Value(mSprayed.second), Value(mSprayed.first));
        QVERIFY(pages >= 1);
        QTemporaryDir dir;
        const QString pdf = dir.filePath(QStringLiteral("trace.pdf"));
        SaveReportPdf(kTraceReport, pdf, 1, pages);
        QCOMPARE(Probe::pdfPages(pdf), pages);
        // pdftotext reads some kanji as their radicals (生 as ⽣), which the
        // compatibility form folds back, and drops spaces as it likes
        const auto text = [&pdf](int page) {
            QStringList args{pdf, QStringLiteral("-")};
            if (page > 0)
                args = QStringList{QStringLiteral("-f"), QString::number(page), QStringLiteral("-l"),
                                   QString::number(page)} + args;
            return Probe::run(QStringLiteral("pdftotext"), args).normalized(QString::NormalizationForm_KC);
        };
        for (int page = 1; page <= pages; ++page) {
            const QString t = text(page);
            QVERIFY(t.contains(QRegularExpression(QStringLiteral("(^|\\s)%1\\s*/\\s*%2(\\s|$)").arg(page).arg(pages))));
            QVERIFY(t.startsWith(QStringLiteral("生産履歴")));
            // a page that goes on with a block's lines shows its heads again
            QVERIFY(page == 1 || t.contains(QStringLiteral("日付")));
        }
        QVERIFY(text(0).contains(history(mSprayed).name.normalized(QString::NormalizationForm_KC)));
    }

    // The year's pages in both forms of the tags' address.
    void pagesOfAGeneratedYear_data()
    {
        QTest::addColumn<int>("uploadType");
        QTest::newRow("folder form") << 1;
        QTest::newRow("script form (PHP)") << 2;
        QTest::newRow("script form (CGI)") << 3;
    }

    void pagesOfAGeneratedYear()
    {
        QFETCH(int, uploadType);
        years();
        gMST->EXEC(Stmt("UPDATE M_SHOP SET UPLOAD_FILE_TYPE=? WHERE SHOP_ID=1").num(uploadType));
        QTemporaryDir dir;
        const QString out = dir.path();
        const TracePages::Outcome written = TracePages::write(out, kYear, Value());
        QVERIFY2(written.refusal.isEmpty(), qPrintable(written.refusal));
        QVERIFY(!written.cancelled);
        QVERIFY(written.notes.isEmpty());

        // Exactly the files listed stand in the folder, the script only for its form.
        QStringList onDisk;
        for (QDirIterator it(out, QDir::Files, QDirIterator::Subdirectories); it.hasNext();)
            onDisk << QDir(out).relativeFilePath(it.next());
        onDisk.sort();
        QStringList listed = written.files;
        listed.sort();
        QCOMPARE(onDisk, listed);
        QCOMPARE(listed.contains(QStringLiteral("cropvia.php")), uploadType != 1);
        QVERIFY(listed.contains(QStringLiteral("cropvia/logo.png")));

        // The plantings of the year with shipments have a page, the others
        // are named with the reason.
        const QSet<Key> ofYear = keys(Stmt("SELECT FMR_ID, PLANT_ID FROM D_PLANT WHERE YYYY=?").num(kYear));
        QSet<Key> shipped, skipped;
        for (const Key &k : ofYear)
            if (number(QStringLiteral("SELECT COUNT(*) FROM D_SHIP WHERE FMR_ID=%1 AND PLANT_ID=%2").arg(k.first).arg(k.second)))
                shipped.insert(k);
        for (const TracePages::Skipped &s : written.skipped) {
            skipped.insert({s.farmer.toLong(), s.plantId.toLong()});
            QCOMPARE(s.reason, QStringLiteral("出荷の記録がないため、ページを作りませんでした。"));
        }
        QCOMPARE(skipped, ofYear - shipped);
        QVERIFY(skipped.contains({2, 2}));
        QCOMPARE(written.pages, shipped.size());
        QVERIFY(written.summary().contains(
            QStringLiteral("生産者2 作付2「%1」: 出荷の記録がないため、ページを作りませんでした。").arg(kUnshipped)));
        // an upload's box names the first skipped plantings and counts the rest
        QVERIFY(written.skipped.size() > 2);
        const QStringList whole = written.summary(), cut = written.summary(2);
        QCOMPARE(cut.mid(0, 3), whole.mid(0, 3));
        QCOMPARE(cut[3], QStringLiteral("ほか%1件の作付にもページを作りませんでした。").arg(written.skipped.size() - 2));
        QCOMPARE(cut.mid(4), whole.mid(1 + written.skipped.size()));

        // Every tag of every shipment opens a page exactly when its planting is of the year.
        int opened = 0;
        for (int farmer : {1, 2}) {
            QVERIFY(PriceTagCsv::loadPeriodRows(DateUtil::make(2000, 1, 1), DateUtil::make(2030, 12, 31), Value(farmer),
                                                Value(1)) > 0);
            for (const PriceTagRow &row : gPTAG_ROWS[0].Rows) {
                const QString page = pageOf(row.Label.QrText, out);
                QVERIFY2(!page.isEmpty(), qPrintable(row.Label.QrText));
                const QStringList parts = page.split(QLatin1Char('/'));
                const Key k(parts[parts.size() - 3].toInt(), parts[parts.size() - 2].toInt());
                QCOMPARE(QFileInfo::exists(page), shipped.contains(k));
                opened += QFileInfo::exists(page);
            }
        }
        QVERIFY(opened > 0);

        // Each page read back: well formed, no script, no user text as
        // markup, every link to a file written.
        const QSet<QString> kinds{"html", "head", "meta", "title", "link", "body", "header", "img", "p", "h1",
                                  "h2", "h3", "dl", "dt", "dd", "div", "table", "thead", "tbody", "tr", "th",
                                  "td", "br", "footer", "ul", "li", "a"};
        for (const QString &file : written.files) {
            if (!file.endsWith(QLatin1String(".html")))
                continue;
            const QString path = QDir(out).filePath(file);
            const Parsed p = parse(path);
            QVERIFY2(p.error.isEmpty(), qPrintable(file + QLatin1Char(' ') + p.error));
            for (const QString &e : p.elements)
                QVERIFY2(kinds.contains(e), qPrintable(file + QLatin1Char(' ') + e));
            for (const QString &a : p.attributes)
                QVERIFY2(!a.startsWith(QLatin1String("on")), qPrintable(file + QLatin1Char(' ') + a));
            for (const QString &link : p.links)
                QVERIFY2(QFileInfo::exists(QFileInfo(path).dir().filePath(link)), qPrintable(file + QLatin1String(" → ") + link));
            QCOMPARE(p.links.filter(QStringLiteral("style.css")).size(), 1);
            if (file.startsWith(QLatin1String("cropvia/2/")))
                for (const QString &name : {kFarmer, kShop})
                    QVERIFY2(p.text.contains(name), qPrintable(file + QLatin1Char(' ') + name));
        }
        const Parsed odd = parse(out + QStringLiteral("/cropvia/2/1/index.html"));
        for (const QString &text : {kPlanting, QStringLiteral("A&B \"畑\""), QStringLiteral("いちご（<章姫>）"),
                                    QStringLiteral("<u>収穫</u>"), QStringLiteral("いちご <1パック>")})
            QVERIFY2(odd.text.contains(text), qPrintable(text));
        QVERIFY(parse(out + QStringLiteral("/cropvia/2/index.html")).text.contains(kPlanting));
    }

    // One planting alone leaves the indexes as they are; a stop keeps the
    // pages written so far and lists just those; an empty year is refused.
    void narrowedStoppedAndRefused_data()
    {
        QTest::addColumn<int>("year");
        QTest::addColumn<int>("plant");
        QTest::addColumn<int>("stopAfter"); // pages; -1 never
        QTest::addColumn<int>("pages");
        QTest::addColumn<QString>("last"); // the summary's last line
        QTest::newRow("one planting") << kYear << 1 << -1 << 1 << QStringLiteral("作付のページを1件作りました（ファイル3件）。");
        QTest::newRow("stopped") << kYear << 0 << 2 << 2
                                 << QStringLiteral("途中で中止しました。残りの作付のページは作っていません。");
        QTest::newRow("empty year") << 1990 << 0 << -1 << 0 << QStringLiteral("1990年の作付は登録されていません。");
        QTest::newRow("no such planting") << kYear << 999 << -1 << 0
                                          << QStringLiteral("2024年の作付999は登録されていません。");
    }

    void narrowedStoppedAndRefused()
    {
        QFETCH(int, year);
        QFETCH(int, plant);
        QFETCH(int, stopAfter);
        QFETCH(int, pages);
        QFETCH(QString, last);
        years();
        gMST->EXEC(QStringLiteral("UPDATE M_SHOP SET UPLOAD_FILE_TYPE=1 WHERE SHOP_ID=1"));
        QTemporaryDir dir;
        const TracePages::Outcome written =
            TracePages::write(dir.path(), year, Value(plant), [stopAfter](qint64 done, qint64, const QString &) {
                return stopAfter < 0 || done < stopAfter;
            });
        QCOMPARE(written.pages, pages);
        QCOMPARE(written.cancelled, stopAfter >= 0);
        QCOMPARE(written.summary().last(), last);
        QVERIFY(written.files.filter(QStringLiteral("index.html")).size() == pages);
        for (const QString &f : written.files)
            QVERIFY(QFileInfo::exists(dir.filePath(f)));
    }

    // The command writes the same files as the upload would and names what it left out.
    void command()
    {
        years();
        QTemporaryDir dir;
        auto run = [&](const QStringList &args) {
            QProcess p;
            p.start(QStringLiteral(TILLORA_ADMIN), QStringList{"trace-pages", "--root", mYears->root()} + args);
            p.waitForFinished(60000);
            return std::make_pair(p.exitCode(), QString::fromUtf8(p.readAllStandardOutput() + p.readAllStandardError()));
        };
        const auto ok = run({"--year", QString::number(kYear), "--out", dir.path(), "--plant", "1"});
        QCOMPARE(ok.first, 0);
        QVERIFY2(ok.second.startsWith(QStringLiteral("cropvia/style.css\ncropvia/logo.png\n")), qPrintable(ok.second));
        QVERIFY(QFileInfo::exists(dir.filePath(QStringLiteral("cropvia/2/1/index.html"))));
        QVERIFY(ok.second.contains(QStringLiteral("作付のページを")));
        QCOMPARE(run({"--year", QString::number(kYear)}).first, 2);
        QCOMPARE(run({"--year", "1990", "--out", dir.path()}).first, 1);
    }
};

TILLORA_RULES_TEST_MAIN(TestTrace)
#include "tst_trace.moc"
