// Price tags: the labels of a run and their places on the sheets, the
// dialog of a day's shipments, and a day printed into a PDF file by the
// command-line companion, read back label by label with zbarimg as the
// shop's scanner would read the paper.

#include "ui/Entry.h"
#include "ui/Form.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "ui/Screens.h"
#include "rules/print/PriceTag.h"
#include "rules/print/PriceTagSheet.h"
#include "screens/print/fdlPreview.h"
#include "rules/print/modPrinter.h"
#include "store/Database.h"
#include "support/GuiDriver.h"
#include "support/MsgRecorder.h"
#include "support/PrintProbe.h"
#include "support/TagDay.h"
#include "support/TestRoot.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QtTest/QTest>

namespace {

using Probe::dark;
using Probe::ink;

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

QString admin() { return QStringLiteral(TILLORA_ADMIN); }

} // namespace

class TestPriceTag : public QObject {
    Q_OBJECT

    void pureOnce()
    {
        if (TestEnv::engine() == TestEngine::Mysql)
            QSKIP("reads no database: checked on the first engine");
    }

private slots:
    void init()
    {
        gPTAG_ROWS.clear();
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
        pureOnce();
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

    // The dialog lists the day's rows with a quantity, counts labels and
    // sheets with the skip, keeps the frame at once and opens the preview.
    void dialogOfADay()
    {
        TestRoot root;
        MsgRecorder msgs;
        TagDay::seed(QDate(2026, 5, 10));
        Gui::Modals modals;
        QImage shown;
        int shownPages = -1;
        modals.on(QStringLiteral("fdlPreview"), [&](Form &p) {
            QVERIFY(p.isVisible());
            shown = qobject_cast<fdlPreview *>(&p)->picture();
            shownPages = gREP_PAGES;
        });
        Form *f = createScreen(QStringLiteral("fdlPrintPriceTag"));
        Gui::show(f);
        QCOMPARE(f->windowTitle(), QStringLiteral("値札印刷"));
        auto cond = f->array<QLineEdit>(QStringLiteral("txtCOND"), 2);
        auto sums = f->array<QLabel>(QStringLiteral("lblSUM"), 2);
        auto *list = f->ctl<QTreeWidget>(QStringLiteral("ListView1"));
        QCOMPARE(cond[0]->text(), DateUtil::today().toString(QStringLiteral("yyyy/MM/dd")));
        QCOMPARE(sums[0]->text() + QLatin1Char('/') + sums[1]->text(), QStringLiteral("0/0"));

        Gui::type(cond[0], QStringLiteral("20260510")); // the slashes come as typed
        QCOMPARE(cond[0]->text(), QStringLiteral("2026/05/10"));
        Gui::type(cond[1], QStringLiteral("3"));
        Gui::leave(cond[1]);
        QStringList lines;
        for (int i = 0; i < list->topLevelItemCount(); ++i) {
            const QTreeWidgetItem *it = list->topLevelItem(i);
            lines << QStringLiteral("%1 %2 %3 %4").arg(it->text(0), it->text(1), it->text(2), it->text(3));
        }
        QCOMPARE(lines, (QStringList{"1 トマト 260 5", "3 きゅうり 98 17", "4 トマト 300 2"}));
        QCOMPARE(sums[0]->text() + QLatin1Char('/') + sums[1]->text(), QStringLiteral("2/27"));

        // the frame is kept at once, and drawn
        auto *frame = f->ctl<QCheckBox>(QStringLiteral("Check1"));
        QVERIFY(!frame->isChecked());
        Gui::click(frame);
        QCOMPARE(gINI->GetCtrl(QStringLiteral("PRINT_PTAG_FRAME")).toText(), QStringLiteral("1"));
        Gui::click(f->ctl<QPushButton>(QStringLiteral("Command1(1)")));
        QCOMPARE(shownPages, 2);
        // page 1: three places left blank, then labels; the frame of the
        // fourth place is 3 x 1922.13 twips down (384.4 px at 15 twips a pixel)
        QVERIFY(!shown.isNull());
        QVERIFY(!ink(shown, QRect(2, 2, 240, 380)).isValid());
        QVERIFY(dark(shown, 100, 384) || dark(shown, 100, 385));

        // odd skips are taken by their number, never a failure
        for (const QString &odd : {QStringLiteral("abc"), QStringLiteral("-5"), QStringLiteral("999")}) {
            Gui::type(cond[1], odd);
            Gui::leave(cond[1]);
        }
        QCOMPARE(sums[0]->text() + QLatin1Char('/') + sums[1]->text(), QStringLiteral("43/1023"));
        // a day without shipments: no rows, 0 pages, and the preview shows the
        // empty sheet inside its outline
        modals.on(QStringLiteral("fdlPreview"), [&](Form &p) {
            shown = qobject_cast<fdlPreview *>(&p)->picture();
            shownPages = gREP_PAGES;
        });
        Gui::type(cond[0], QStringLiteral("20260511"));
        Gui::type(cond[1], QString());
        Gui::leave(cond[1]);
        QCOMPARE(list->topLevelItemCount(), 0);
        QCOMPARE(sums[0]->text() + QLatin1Char('/') + sums[1]->text(), QStringLiteral("0/0"));
        Gui::click(f->ctl<QPushButton>(QStringLiteral("Command1(1)")));
        QCOMPARE(shownPages, 0);
        QVERIFY(dark(shown, 0, 100) && dark(shown, 100, 0));
        QVERIFY(!ink(shown, QRect(2, 2, shown.width() - 4, shown.height() - 4)).isValid());
        QVERIFY(msgs.messages.isEmpty());
        delete f;

        // opened again, the frame is still on
        f = createScreen(QStringLiteral("fdlPrintPriceTag"));
        Gui::show(f);
        QVERIFY(f->ctl<QCheckBox>(QStringLiteral("Check1"))->isChecked());
        delete f;
    }

    // A shop logo that can't be read: said once, and the tags are drawn without it.
    void unreadableLogo()
    {
        TestRoot root;
        MsgRecorder msgs;
        TagDay::seed(QDate(2026, 5, 10));
        QDir(root.root()).mkpath(QStringLiteral("images"));
        QFile bad(root.root() + QStringLiteral("/images/logo.png"));
        QVERIFY(bad.open(QIODevice::WriteOnly));
        bad.write("not a picture");
        bad.close();
        gMST->EXEC(QStringLiteral("UPDATE M_SHOP SET PTAG_LOGO='logo.png' WHERE SHOP_ID=1"));
        Form *f = createScreen(QStringLiteral("fdlPrintPriceTag"));
        Gui::show(f);
        QCOMPARE(msgs.count(), 1);
        QVERIFY(msgs.lastPrompt().contains(QStringLiteral("ロゴ")));
        QVERIFY(PriceTagSheet::logo().isNull());
        Gui::type(f->ctl<QLineEdit>(QStringLiteral("txtCOND(0)")), QStringLiteral("20260510"));
        Gui::leave(f->ctl<QLineEdit>(QStringLiteral("txtCOND(0)")));
        QCOMPARE(f->ctl<QLabel>(QStringLiteral("lblSUM(1)"))->text(), QStringLiteral("24"));
        delete f;

        // a real logo is drawn in its box at the top left of each label
        QImage logo(200, 20, QImage::Format_RGB32);
        logo.fill(Qt::black);
        QVERIFY(logo.save(root.root() + QStringLiteral("/images/logo.png"), "PNG"));
        PriceTagSheet::loadShopLogo();
        QCOMPARE(PriceTagSheet::logo().size(), QSize(200, 20));
    }

    // A day printed into a PDF by the companion: the pages, and every label's
    // symbols read back by zbarimg from the page at 300 dpi, cut out label by label.
    void aDayOnPaperReadsBack()
    {
        TestRoot root;
        TagDay::seed(QDate(2026, 5, 10));
        gINI->EXEC(QStringLiteral("INSERT INTO S_REP (REP_ID, TOP_MGN, LEFT_MGN) VALUES (10, 567, 283.5)"));
        CloseAllDatabases();
        QTemporaryDir dir;
        const QString pdf = dir.filePath(QStringLiteral("tags.pdf"));
        QProcess p;
        p.start(admin(), {QStringLiteral("print-ptag"), QStringLiteral("--root"), root.root(), QStringLiteral("--date"),
                          QStringLiteral("2026-05-10"), QStringLiteral("--skip"), QStringLiteral("3"), QStringLiteral("--pdf"), pdf});
        QVERIFY(p.waitForFinished(60000));
        const QString said = QString::fromUtf8(p.readAllStandardOutput());
        QVERIFY2(p.exitCode() == 0, qPrintable(said + QString::fromUtf8(p.readAllStandardError())));
        QVERIFY2(said.contains(QStringLiteral("2ﾍﾟｰｼﾞ 27枚")), qPrintable(said));
        QCOMPARE(Probe::pdfPages(pdf), 2);
        const QVector<QStringList> expected = TagDay::expectedLabels(3);
        // the pictures (QR symbols, the recycling mark) are kept as they are,
        // in two colours, never smoothed, and finer than the page zoomed to
        // 800% (576 dpi): their edges stay clean at any zoom
        const QVector<Probe::PdfPicture> pictures = Probe::pdfPictures(pdf);
        QVERIFY(!pictures.isEmpty());
        for (const Probe::PdfPicture &pic : pictures)
            QVERIFY2(pic.encoding == QLatin1String("image") && pic.bitsPerComponent == 1 && !pic.interpolated &&
                         pic.ppi >= 576,
                     qPrintable(QStringLiteral("%1 %2 bits %3 ppi").arg(pic.encoding).arg(pic.bitsPerComponent).arg(pic.ppi)));

        const double px = 300.0 / 1440; // pixels a twip at 300 dpi
        for (int page = 1; page <= 2; ++page) {
            const QImage sheet(Probe::rasterise(pdf, 300, page));
            QVERIFY(sheet.width() == 2480 && qAbs(sheet.height() - 3508) <= 1); // A4
            for (int place = 0; place < 24; ++place) {
                const int i = (page - 1) * 24 + place;
                const QPointF at = labelOrigin(place) + QPointF(283.5, 567);
                const QRect cut(int(at.x() * px), int(at.y() * px), int(PriceTag::Width * px), int(PriceTag::Height * px));
                const QString png = dir.filePath(QStringLiteral("label-%1.png").arg(i));
                QVERIFY(sheet.copy(cut).save(png));
                QStringList want = i < expected.size() ? expected[i] : QStringList();
                want.sort();
                QCOMPARE(Probe::zbar(png), want);
            }
        }
        // zoomed to 800%, the bars keep clean edges (no edge smeared over more
        // than a pixel) and the QR symbol still reads
        {
            const double at800 = 576.0 / 1440;
            const QPointF label = labelOrigin(3) + QPointF(283.5, 567) + QPointF(170.1, 56.7);
            const QRect qr(int((label.x() + 2700) * at800), int(label.y() * at800), int(1000 * at800), int(900 * at800));
            const QRect bars(int(label.x() * at800), int((label.y() + 1077.3) * at800), int(1728 * at800), int(500 * at800));
            const QImage zoomedBars = Probe::rasteriseArea(pdf, 576, 1, bars);
            QVERIFY(Probe::ink(zoomedBars, zoomedBars.rect()).isValid());
            QVERIFY(Probe::longestGreyRun(zoomedBars, zoomedBars.rect()) <= 1);
            const QString zoomedQr = dir.filePath(QStringLiteral("qr800.png"));
            QVERIFY(Probe::rasteriseArea(pdf, 576, 1, qr).save(zoomedQr));
            QCOMPARE(Probe::zbar(zoomedQr), QStringList{expected[3][1]});
        }

        // the text of the labels, as a shop's computer reads it (compared in
        // compatibility form: the PDF names some kanji of the font by their
        // radicals, 生 as ⽣, which this form folds back)
        const auto kc = [](const QString &t) { return t.normalized(QString::NormalizationForm_KC); };
        const QString text = kc(Probe::run(QStringLiteral("pdftotext"), {pdf, QStringLiteral("-")}));
        QVERIFY2(text.contains(kc(QStringLiteral("生産者："))) && text.contains(kc(QStringLiteral("耕作(000-1111-2233)"))),
                 qPrintable(text.left(200)));
        QVERIFY(text.contains(kc(QStringLiteral("生産者：緑 次郎"))) && !text.contains(kc(QStringLiteral("緑 次郎("))));
        QVERIFY(text.contains(kc(QStringLiteral("価格: ￥２６０"))));
        QVERIFY(!text.contains(kc(QStringLiteral("￥１，２８０")))); // shipped 0: no tag
        QVERIFY(text.contains(kc(QStringLiteral("緑川県産"))));

        // a day without shipments makes no file; a file that can't be written
        // is said in Japanese and leaves nothing behind
        p.start(admin(), {QStringLiteral("print-ptag"), QStringLiteral("--root"), root.root(), QStringLiteral("--date"),
                          QStringLiteral("2026-05-11"), QStringLiteral("--pdf"), dir.filePath(QStringLiteral("none.pdf"))});
        QVERIFY(p.waitForFinished(60000));
        QCOMPARE(p.exitCode(), 0);
        QVERIFY(QString::fromUtf8(p.readAllStandardOutput()).contains(QStringLiteral("0ﾍﾟｰｼﾞ")));
        QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("none.pdf"))));
        const QString nowhere = dir.filePath(QStringLiteral("no/such/tags.pdf"));
        p.start(admin(), {QStringLiteral("print-ptag"), QStringLiteral("--root"), root.root(), QStringLiteral("--date"),
                          QStringLiteral("2026-05-10"), QStringLiteral("--pdf"), nowhere});
        QVERIFY(p.waitForFinished(60000));
        QCOMPARE(p.exitCode(), 1);
        QVERIFY(QString::fromUtf8(p.readAllStandardError()).contains(QStringLiteral("PDFファイルを保存できません")));
        QVERIFY(!QFile::exists(nowhere));
        root.openAll();
    }
};

TILLORA_GUI_TEST_MAIN(TestPriceTag)
#include "tst_pricetag.moc"
