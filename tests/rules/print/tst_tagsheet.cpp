// The price tag sheet apart from its dialog: the labels of a run and the
// sheets they fill (skipped places, rows of quantity 0, rows without a
// code), each label at its place and every item of a label at its place and
// size, and the rows of a day read from the shipments.

#include "base/Globals.h"
#include "base/Helpers.h"
#include "rules/print/PriceTag.h"
#include "rules/print/PriceTagSheet.h"
#include "store/Database.h"
#include "support/Build.h"
#include "support/PrintProbe.h"
#include "support/RulesTest.h"
#include "support/TagDay.h"
#include "support/TestRoot.h"

#include <QtTest/QTest>

#include <algorithm>

namespace {

// A row of the run as the shipments give it: code, quantity.
PriceTagRow row(const QString &code, int qty)
{
    PriceTagRow r;
    r.Qty = qty;
    r.Label.Code = code;
    r.Label.PrdNm = code;
    return r;
}

// The frames drawn on a page: one outlined box a label when the frame is on.
QVector<QPointF> framesOf(const Recorder &page)
{
    QVector<QPointF> at;
    for (const auto &s : page.shapes)
        if (s.shape == LineShape::Box && qAbs(s.box.width() - PriceTag::Width) < 0.01)
            at << s.box.topLeft();
    return at;
}

} // namespace

class TestTagSheet : public QObject {
    Q_OBJECT


private slots:
    void init()
    {
        gPTAG_ROWS.clear();
        gSHOP_ID = Value(1);
        PriceTagSheet::reset();
        PriceTagSheet::setFrame(false);
    }

    // Sheets and pages count the skipped places; quantity 0 gives no label;
    // a row without a code counts but prints nothing.
    void labelsAndSheets_data()
    {
        QTest::addColumn<int>("skip");
        QTest::addColumn<QVector<PriceTagRow>>("rows");
        QTest::addColumn<int>("labels");
        QTest::addColumn<int>("pages");
        QTest::addColumn<int>("listed"); // places in the list of the run, blanks included
        QTest::addColumn<int>("lastPagePlaces");
        QTest::newRow("skip 5 and 20") << 5 << QVector<PriceTagRow>{row("A", 20)} << 25 << 2 << 25 << 1;
        QTest::newRow("exactly 24") << 0 << QVector<PriceTagRow>{row("A", 10), row("B", 14)} << 24 << 1 << 24 << 24;
        QTest::newRow("quantity 0") << 0 << QVector<PriceTagRow>{row("A", 0), row("B", 3)} << 3 << 1 << 3 << 3;
        QTest::newRow("no code") << 0 << QVector<PriceTagRow>{row("", 4), row("B", 2)} << 6 << 1 << 2 << 2;
        QTest::newRow("nothing") << 0 << QVector<PriceTagRow>{} << 0 << 0 << 1 << 1;
        QTest::newRow("skip past a sheet") << 30 << QVector<PriceTagRow>{row("A", 1)} << 31 << 2 << 31 << 7;
    }
    void labelsAndSheets()
    {
        QFETCH(int, skip);
        QFETCH(QVector<PriceTagRow>, rows);
        const TagTotals t = tagTotals(skip, rows);
        QTEST(t.labels, "labels");
        QTEST(t.pages, "pages");
        gPTAG_ROWS = QVector<PriceTagSet>(1);
        gPTAG_ROWS[0].Skip = qint16(skip);
        gPTAG_ROWS[0].Rows = rows;
        SetLabelList();
        // the list keeps a place for the blank at Skip even when nothing follows
        QTEST(int(gLABEL_LIST.size()), "listed");
        for (int i = 0; i < std::min(skip, int(gLABEL_LIST.size())); ++i)
            QVERIFY(gLABEL_LIST[i].isBlank());
        const int lastPage = std::max(1, t.pages);
        const SheetRange r = sheetRange(lastPage, int(gLABEL_LIST.size()));
        QTEST(r.last - r.first + 1, "lastPagePlaces");
    }

    void skipTakesItsLeadingNumber()
    {
        const QStringList typed{"5", "0", "", "abc", "-3", "12x", "９", "999", "5000", "1e3", "3.7"};
        QList<int> got;
        for (const QString &t : typed)
            got << skipValue(t);
        QCOMPARE(got, (QList<int>{5, 0, 0, 0, 0, 12, 9, 999, 999, 1, 3}));
    }

    // Labels run down a column first, 3 by 8 of 66.0 by 33.9 mm; the first
    // sheet of a skip of 5 starts at the sixth row of the first column.
    void labelsStandAtTheirPlaces()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        gPTAG_ROWS = QVector<PriceTagSet>(1);
        gPTAG_ROWS[0].Skip = 5;
        gPTAG_ROWS[0].Rows = {row("4901234567894", 20)};
        PriceTagSheet::setFrame(true);
        Recorder page1, page2, page3;
        PriceTagSheet::PrintPriceTagPages(page1, 100, 200, 1, 1);
        PriceTagSheet::PrintPriceTagPage(page2, 100, 200, 2);
        PriceTagSheet::PrintPriceTagPage(page3, 100, 200, 3);
        const QVector<QPointF> first = framesOf(page1), second = framesOf(page2);
        QCOMPARE(first.size(), 19);
        QCOMPARE(second.size(), 1);
        QVERIFY(framesOf(page3).isEmpty());
        QCOMPARE(page3.ends, 0); // a page beyond the labels is not even begun
        QCOMPARE(page1.ends, 1);
        auto near = [](QPointF a, QPointF b) { return qAbs(a.x() - b.x()) < 0.01 && qAbs(a.y() - b.y()) < 0.01; };
        QVERIFY(near(first[0], QPointF(100, 200 + 5 * 1922.13)));
        QVERIFY(near(first[2], QPointF(100, 200 + 7 * 1922.13)));
        QVERIFY(near(first[3], QPointF(100 + 3742.2, 200)));
        QVERIFY(near(first[18], QPointF(100 + 2 * 3742.2, 200 + 7 * 1922.13)));
        QVERIFY(near(second[0], QPointF(100, 200)));
        QCOMPARE(AppTitle(), QStringLiteral("Tillora"));

        // one label: every item at its place and size, the frame last
        const PriceTagLabel &l = gLABEL_LIST[5];
        PriceTagLabel full = l;
        full.FmrNm = QStringLiteral("青葉 耕作");
        full.Tel = QStringLiteral("000-1111-2233");
        full.PrdNm = QStringLiteral("トマト");
        full.Price = Currency::fromDouble(1280);
        full.Locate = QStringLiteral("緑川県");
        full.Plas = true;
        full.QrText = QStringLiteral("http://trace.example.jp/cropvia/1/7/");
        Recorder one;
        PriceTagSheet::DrawPriceTag(one, 1000, 2000, full);
        const double X = 1000 + 170.1, Y = 2000 + 56.7;
        QStringList texts;
        for (const auto &t : one.texts)
            texts << t.text;
        QCOMPARE(texts.mid(0, 4), (QStringList{"生産者：青葉 耕作(000-1111-2233)", "品名：トマト", "価格: ",
                                               "￥１，２８０"}));
        QVERIFY(one.texts[3].bold && !one.texts[2].bold);
        QCOMPARE(one.texts[4].text, QStringLiteral("緑川県産"));
        QCOMPARE(one.texts[1].y, Y + 481.95);
        QCOMPARE(one.texts[3].y, Y + 737.1);
        QCOMPARE(one.pictures.size(), 3); // logo (none loaded), QR, recycling mark
        QCOMPARE(one.pictures[1].box, QRectF(X + 2778.3, Y, 850, 850));
        QCOMPARE(one.pictures[2].box, QRectF(X + 3061.8, Y + 737.1, 340.2, 289.17));
        const Recorder::Shape &box = one.shapes[one.shapes.size() - 2];
        QCOMPARE(box.shape, LineShape::Box);
        QVERIFY(qAbs(box.box.left() - (1000 + 3742.2 / 2 + 170.1)) < 0.01 && qAbs(box.box.top() - (Y + 1077.3)) < 0.01);
        QVERIFY(qAbs(box.box.height() - 680.4) < 0.01);
        // without a phone number the brackets go; without a place no origin
        full.Tel.clear();
        full.Locate.clear();
        Recorder bare;
        PriceTagSheet::DrawPriceTag(bare, 0, 0, full);
        QCOMPARE(bare.texts[0].text, QStringLiteral("生産者：青葉 耕作"));
        QVERIFY(std::none_of(bare.texts.begin(), bare.texts.end(), [](const auto &t) { return t.text.endsWith(QStringLiteral("産")); }));
    }

    // The rows of a day: every shipment of the day in the order of its
    // number, of one farmer when one is named; the totals count the skip.
    void rowsOfADay()
    {
        TestRoot root;
        const QDate day(2026, 5, 10);
        TagDay::seed(day);
        TagTotals t = loadPriceTagDay(DateUtil::fromDate(day), 3);
        QCOMPARE(t.labels, 3 + 5 + 17 + 2);
        QCOMPARE(t.pages, 2);
        QCOMPARE(gPTAG_ROWS.size(), 1);
        QCOMPARE(gPTAG_ROWS[0].Skip, qint16(3));
        QStringList rows;
        for (const PriceTagRow &r : gPTAG_ROWS[0].Rows)
            rows << QStringLiteral("%1 %2 %3 %4").arg(r.FmrId).arg(r.PrdNm).arg(r.Label.Price.toString()).arg(r.Qty);
        QCOMPARE(rows, (QStringList{"1 トマト 260 5", "1 なす 1280 0", "2 きゅうり 98 17", "1 トマト 300 2"}));
        const PriceTagRow &first = gPTAG_ROWS[0].Rows[0];
        QCOMPARE(first.Label.Code, TagDay::shopCode(1, 3, 260));
        QCOMPARE(first.Label.QrText, QStringLiteral("http://trace.example.jp/cropvia/1/7/"));
        QCOMPARE(first.Label.Locate, QStringLiteral("緑川県"));
        QVERIFY(first.Label.Plas && !gPTAG_ROWS[0].Rows[3].Label.Plas);
        QVERIFY(!first.Label.Tel.isEmpty());
        QVERIFY(gPTAG_ROWS[0].Rows[2].Label.Tel.isEmpty());

        // one farmer's rows; a farmer code that is no number finds none
        t = loadPriceTagDay(DateUtil::fromDate(day), 0, Value(2));
        QCOMPARE(gPTAG_ROWS[0].Rows.size(), 1);
        QCOMPARE(t.labels, 17);
        t = loadPriceTagDay(DateUtil::fromDate(day), 0, Value(QStringLiteral("第2号")));
        QVERIFY(gPTAG_ROWS[0].Rows.isEmpty());
        QCOMPARE(t.pages, 0);

        // a shop without a web address: no trace address on the labels
        gMST->EXEC(QStringLiteral("UPDATE M_SHOP SET WWW_URL=NULL WHERE SHOP_ID=1"));
        loadPriceTagDay(DateUtil::fromDate(day), 0);
        QVERIFY(std::all_of(gPTAG_ROWS[0].Rows.begin(), gPTAG_ROWS[0].Rows.end(),
                            [](const PriceTagRow &r) { return r.Label.QrText.isEmpty(); }));
    }
};

TILLORA_RULES_TEST_MAIN(TestTagSheet)
#include "tst_tagsheet.moc"
