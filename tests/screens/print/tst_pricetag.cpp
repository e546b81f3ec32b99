// Price tags on screen and paper: the dialog of a day's shipments, and a
// day printed into a PDF file by the command-line companion, read back label
// by label with zbarimg as the shop's scanner would read the paper. (The
// labels of a run and their places on a sheet are the rules tests'.)

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

QString admin() { return QStringLiteral(TILLORA_ADMIN); }

} // namespace

class TestPriceTag : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        gPTAG_ROWS.clear();
        PriceTagSheet::reset();
        PriceTagSheet::setFrame(false);
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
