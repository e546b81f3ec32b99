// Printing from the screens: the preview checked by the pixels of its
// picture (paper edge, the page inside its margins, zoom, scrolling, page
// moves); a page printed into a real PDF file read back with the poppler
// tools; the margin and copies dialogs and the production history dialog.
// (Fitted text and the page dispatch are the rules tests'.)

#include "ui/Entry.h"
#include "ui/Form.h"
#include "ui/Progress.h"
#include "base/Globals.h"
#include "base/Msg.h"
#include "ui/Screens.h"
#include "screens/print/fdlPreview.h"
#include "rules/print/modPrinter.h"
#include "screens/print/Printer.h"
#include "store/Database.h"
#include "support/GuiDriver.h"
#include "support/PrintProbe.h"
#include "support/MsgRecorder.h"
#include "support/TestRoot.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QLineEdit>
#include <QPainter>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QPageLayout>
#include <QPageSize>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QtTest/QTest>

namespace {

// A report of the tests: a 1 cm black square at the margins and a line of
// text 1 cm under it; it remembers the pages it was asked for.
constexpr int kTestReport = 90;
QList<int> gPagesDrawn;

void drawTestPage(PrintTarget &t, double left, double top, int page)
{
    if (page < 1)
        return;
    gPagesDrawn << page;
    SetAppTitle(QStringLiteral("試験帳票 %1ﾍﾟｰｼﾞ").arg(page));
    t.DrawStyle = 5;
    t.Line(left, top, left + 567, top + 567, Qt::black, LineShape::FilledBox);
    t.DrawStyle = 0;
    t.setFontSize(12);
    t.CurrentX = left;
    t.CurrentY = top + 1134;
    t.Print(QStringLiteral("値札ページ%1").arg(page));
    t.EndDoc();
    SetAppTitle(QStringLiteral("Tillora"));
}

void drawTestPages(PrintTarget &t, double left, double top, int first, int last)
{
    for (int page = first; page <= last; ++page)
        drawTestPage(t, left, top, page);
}

// A4 upright, top margin 2 cm, left margin 1 cm.
void seedTestReport()
{
    gWORK->EXEC(QStringLiteral("INSERT INTO L_REP (REP_ID, REP_NM, HEIGHT, WIDTH, ORIENTATION) "
                               "VALUES (90, '試験帳票', 16838, 11906, 1)"));
    gINI->EXEC(QStringLiteral("INSERT INTO S_REP (REP_ID, TOP_MGN, LEFT_MGN, PAPER_BIN) VALUES (90, 1134, 567, 0)"));
}

using Probe::dark;
using Probe::ink;
using Probe::run;

fdlPreview *asPreview(Form &f) { return qobject_cast<fdlPreview *>(&f); }

} // namespace

class TestPrint : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { setReportPainter(kTestReport, drawTestPages); }
    void init()
    {
        gPagesDrawn.clear();
        gREP_ID = kTestReport;
        gREP_PAGES = 3;
        setSaveFileHook(nullptr);
    }

    void withoutAPrinterTheSettingsStillApply()
    {
        TestRoot root;
        seedTestReport();
        QVERIFY(!PrinterTarget::exists()); // this machine has none
        QStringList trace;
        setLogHook([&](const QString &t) { trace << t; });
        SetPrinter(kTestReport);
        setLogHook(nullptr);
        QVERIFY(!trace.contains(QStringLiteral("プリンタを規定に設定")));
        double left = -1, top = -1;
        GetPrintOffset(Printer(), left, top);
        QCOMPARE(left, 0.0);
        QCOMPARE(top, 0.0);

        gINI->EXEC(QStringLiteral("UPDATE S_REP SET PAPER_BIN=6 WHERE REP_ID=90"));
        gWORK->EXEC(QStringLiteral("UPDATE L_REP SET ORIENTATION=2 WHERE REP_ID=90"));
        SetPageSetup(Printer());
        QCOMPARE(Printer().PaperBin(), 6);
        QCOMPARE(Printer().Orientation(), 2);
        // bin 0 leaves the printer's bin alone; an odd orientation too
        gINI->EXEC(QStringLiteral("UPDATE S_REP SET PAPER_BIN=0 WHERE REP_ID=90"));
        gWORK->EXEC(QStringLiteral("UPDATE L_REP SET ORIENTATION=0 WHERE REP_ID=90"));
        SetPageSetup(Printer());
        QCOMPARE(Printer().PaperBin(), 6);
        QCOMPARE(Printer().Orientation(), 2);
        Printer().setOrientation(1);
        // a report without rows changes nothing and fails nothing
        gREP_ID = 55;
        SetPageSetup(Printer());
        QCOMPARE(Printer().Orientation(), 1);
    }

    void previewDrawsThePageInsideItsMarginsAtEachZoom()
    {
        TestRoot root;
        seedTestReport();
        fdlPreview f;
        Gui::show(&f);
        QCOMPARE(f.windowTitle(), QStringLiteral("試験帳票"));
        QCOMPARE(gPagesDrawn.last(), 1);
        QImage img = f.picture();
        QCOMPARE(img.size(), f.findChild<QWidget *>(QStringLiteral("pctPreview"))->size());
        // the paper's edge at the picture's top left
        QVERIFY(dark(img, 0, 300) && dark(img, 300, 0));
        // the square 1 cm in and 2 cm down: 37.8 to 75.6 px across, 75.6 to 113.4 down
        QRect box = ink(img, QRect(2, 2, 200, 120));
        QVERIFY2(qAbs(box.left() - 38) <= 1 && qAbs(box.top() - 76) <= 1, qPrintable(QStringLiteral("%1,%2").arg(box.left()).arg(box.top())));
        QVERIFY(qAbs(box.width() - 38) <= 1 && qAbs(box.height() - 38) <= 1);
        // the text under it, inside the margins
        const QRect text = ink(img, QRect(2, 140, 400, 40));
        QVERIFY(text.isValid());
        QVERIFY(text.left() >= 37 && text.top() >= 150 && text.bottom() <= 168);
        auto *h = f.findChild<QScrollBar *>(QStringLiteral("HScrl"));
        auto *v = f.findChild<QScrollBar *>(QStringLiteral("VScrl"));
        const int hMax100 = h->maximum();
        QCOMPARE(hMax100, PreviewPages::scrollMax(11906, f.scaleWidth()));
        QCOMPARE(v->maximum(), PreviewPages::scrollMax(16838, f.scaleHeight()));
        QVERIFY(v->maximum() > 0);

        // 50%: everything half as large, the whole width on view
        f.menuAction(QStringLiteral("mnuDISP(0)"))->trigger();
        Gui::settle();
        img = f.picture();
        box = ink(img, QRect(2, 2, 100, 60));
        QVERIFY(qAbs(box.left() - 19) <= 1 && qAbs(box.width() - 19) <= 1);
        QVERIFY(dark(img, 396, 300) || dark(img, 397, 300)); // right edge at 396.9 px
        QVERIFY(!ink(img, QRect(400, 2, 50, 500)).isValid());
        QCOMPARE(h->maximum(), 0);
        QCOMPARE(f.findChild<QWidget *>(QStringLiteral("Slider1"))->property("value").toInt(), -4);

        // 200%: twice as large, the scroll range grows as less is shown
        f.menuAction(QStringLiteral("mnuDISP(2)"))->trigger();
        Gui::settle();
        img = f.picture();
        box = ink(img, QRect(2, 2, 300, 300));
        QVERIFY2(qAbs(box.left() - 76) <= 1 && qAbs(box.width() - 76) <= 1, qPrintable(QStringLiteral("%1 %2 %3 %4").arg(box.left()).arg(box.top()).arg(box.width()).arg(box.height())));
        QVERIFY(h->maximum() > hMax100);
        QCOMPARE(h->maximum(), PreviewPages::scrollMax(11906, f.scaleWidth()));
        QCOMPARE(h->pageStep(), qRound(f.scaleWidth()));
        // scrolled by the left margin: the square comes to the picture's edge
        h->setValue(567);
        Gui::settle();
        img = f.picture();
        box = ink(img, QRect(0, 2, 300, 300)); // under the paper's top edge
        QCOMPARE(box.left(), 0);
        QVERIFY2(qAbs(box.width() - 76) <= 1, qPrintable(QStringLiteral("%1 %2 %3 %4").arg(box.left()).arg(box.top()).arg(box.width()).arg(box.height())));
        QVERIFY(!dark(img, 0, 50)); // the paper's left edge has gone off the picture
        QCOMPARE(gPagesDrawn.last(), 1);
    }

    void pageMovesAndTheirButtons()
    {
        TestRoot root;
        seedTestReport();
        fdlPreview f;
        Gui::show(&f);
        auto cmd = f.array<QPushButton>(QStringLiteral("Command1"), 7);
        auto *page = f.ctl<QLineEdit>(QStringLiteral("txtPAGE"));
        auto state = [&] {
            QString s;
            for (int i = 3; i <= 6; ++i)
                s += cmd[i]->isEnabled() ? QLatin1Char('1') : QLatin1Char('0');
            for (int i = 0; i < 4; ++i)
                s += f.menuAction(QStringLiteral("mnuMOVE(%1)").arg(i))->isEnabled() ? QLatin1Char('1') : QLatin1Char('0');
            return s;
        };
        QCOMPARE(f.ctl<QLineEdit>(QStringLiteral("txtPAGES"))->text(), QStringLiteral("3"));
        QCOMPARE(page->text(), QStringLiteral("1"));
        QCOMPARE(state(), QStringLiteral("00110011"));
        Gui::click(cmd[5]);
        QCOMPARE(page->text(), QStringLiteral("2"));
        QCOMPARE(gPagesDrawn.last(), 2);
        QCOMPARE(state(), QStringLiteral("11111111"));
        Gui::click(cmd[6]);
        QCOMPARE(gPagesDrawn.last(), 3);
        QCOMPARE(state(), QStringLiteral("11001100"));
        f.menuAction(QStringLiteral("mnuMOVE(1)"))->trigger();
        QCOMPARE(page->text(), QStringLiteral("2"));
        Gui::click(cmd[3]);
        QCOMPARE(page->text(), QStringLiteral("1"));
        QCOMPARE(gPagesDrawn.last(), 1);
        // a page typed beyond the last is drawn (empty for a real report);
        // next and last stay on, since it isn't the last
        Gui::type(page, QStringLiteral("7"));
        Gui::leave(page);
        QCOMPARE(gPagesDrawn.last(), 7);
        QCOMPARE(state(), QStringLiteral("11111111"));
        Gui::click(cmd[6]);
        QCOMPARE(page->text(), QStringLiteral("3"));
        // text that is no page draws no page
        const int drawn = gPagesDrawn.size();
        Gui::type(page, QStringLiteral("x"));
        Gui::leave(page);
        QCOMPARE(gPagesDrawn.size(), drawn);
        // a resize starts the preview over at page 1
        Gui::click(cmd[6]);
        f.resize(f.width() + 120, f.height() + 80);
        Gui::settle();
        QCOMPARE(page->text(), QStringLiteral("1"));
        QCOMPARE(f.picture().size(), f.findChild<QWidget *>(QStringLiteral("pctPreview"))->size());
        // the slider keeps its size beside its caption
        auto *slider = f.findChild<QWidget *>(QStringLiteral("Slider1"));
        QCOMPARE(slider->size(), QSize(140, 26));
        QVERIFY(slider->x() > f.findChild<QWidget *>(QStringLiteral("lblCAP(1)"))->geometry().right());

        // a single page: the number is locked and no move is offered
        gREP_PAGES = 1;
        fdlPreview one;
        Gui::show(&one);
        QVERIFY(one.ctl<QLineEdit>(QStringLiteral("txtPAGE"))->isReadOnly());
        for (int i = 3; i <= 6; ++i)
            QVERIFY(!one.ctl<QPushButton>(QStringLiteral("Command1(%1)").arg(i))->isEnabled());
    }

    void otherReportsShowAnEmptyPage()
    {
        TestRoot root;
        // a report with paper and no drawing routine: only the paper's edge
        gWORK->EXEC(QStringLiteral("INSERT INTO L_REP (REP_ID, REP_NM, HEIGHT, WIDTH, ORIENTATION) "
                                   "VALUES (11, '別帳票', 7000, 6000, 1)"));
        gREP_ID = 11;
        fdlPreview f;
        Gui::show(&f);
        QCOMPARE(f.windowTitle(), QStringLiteral("別帳票"));
        QImage img = f.picture();
        QVERIFY(dark(img, 0, 200) && dark(img, 200, 0));
        QVERIFY(dark(img, 200, 466) || dark(img, 200, 467));
        QVERIFY(dark(img, 400, 200) || dark(img, 399, 200));
        QVERIFY(!ink(img, QRect(2, 2, 396, 462)).isValid());
        QVERIFY(!ink(img, QRect(402, 2, 300, 500)).isValid());
        // no paper either: a blank picture
        gREP_ID = 12;
        fdlPreview none;
        Gui::show(&none);
        QVERIFY(!ink(none.picture(), none.picture().rect()).isValid());
        QVERIFY(gPagesDrawn.isEmpty());
    }

    void marginsSetFromThePreviewRedrawAtOnce()
    {
        TestRoot root;
        seedTestReport();
        MsgRecorder rec;
        Gui::Modals modals;
        modals.on(QStringLiteral("fdlSetMgn"), [](Form &m) {
            auto text = m.array<QLineEdit>(QStringLiteral("Text1"), 2);
            QCOMPARE(text[0]->text(), QStringLiteral("2"));
            QCOMPARE(text[1]->text(), QStringLiteral("1"));
            Gui::type(text[0], QStringLiteral("3"));
            Gui::type(text[1], QStringLiteral("0.5"));
            Gui::click(m.ctl<QPushButton>(QStringLiteral("Command1(1)")));
            QVERIFY(!m.isVisible());
        });
        fdlPreview f;
        Gui::show(&f);
        Gui::click(f.ctl<QPushButton>(QStringLiteral("Command1(2)")));
        QCOMPARE(modals.opened, QStringList({QStringLiteral("fdlSetMgn")}));
        QCOMPARE(gINI->DLookup("TOP_MGN", "S_REP", "REP_ID=90").toDouble(), 1701.0);
        QCOMPARE(gINI->DLookup("LEFT_MGN", "S_REP", "REP_ID=90").toDouble(), 283.5);
        // 3 cm down is 113.4 px, 0.5 cm in 18.9 px
        const QRect box = ink(f.picture(), QRect(2, 2, 200, 200));
        QVERIFY(qAbs(box.left() - 19) <= 1 && qAbs(box.top() - 113) <= 1);
        QVERIFY(rec.messages.isEmpty());
    }

    void withoutAPrinterPagesBecomeAPdf()
    {
        TestRoot root;
        seedTestReport();
        MsgRecorder rec;
        QTemporaryDir dir;
        QStringList suggested;
        QString answer = dir.filePath(QStringLiteral("page2"));
        setSaveFileHook([&](const QString &, const QString &s) {
            suggested << s;
            return answer;
        });
        fdlPreview f;
        Gui::show(&f);
        auto cmd = f.array<QPushButton>(QStringLiteral("Command1"), 7);
        // ﾍﾟｰｼﾞ印刷 says there is no printer and offers the page shown as a file
        Gui::click(cmd[5]);
        rec.answer(Msg::ResYes);
        Gui::click(cmd[1]);
        QCOMPARE(rec.messages.size(), 2);
        QVERIFY(rec.messages[0].prompt.contains(QStringLiteral("プリンタが見つかりません")));
        QVERIFY(rec.messages[1].prompt.startsWith(QStringLiteral("1ﾍﾟｰｼﾞをPDFファイルに保存しました。")));
        const QString pdf = dir.filePath(QStringLiteral("page2.pdf"));
        QVERIFY(QFile::exists(pdf));
        QCOMPARE(suggested.size(), 1);
        QVERIFY(suggested[0].endsWith(QStringLiteral("試験帳票 2ﾍﾟｰｼﾞ.pdf")));
        // one A4 page of the report's name, with the page's text
        QString info = run(QStringLiteral("pdfinfo"), {pdf});
        QVERIFY2(info.contains(QRegularExpression(QStringLiteral("Pages:\\s+1\\n"))), qPrintable(info));
        QVERIFY(info.contains(QStringLiteral("(A4)")));
        QVERIFY(info.contains(QRegularExpression(QStringLiteral("Title:\\s+試験帳票\\n"))));
        QVERIFY(run(QStringLiteral("pdftotext"), {pdf, QStringLiteral("-")}).contains(QStringLiteral("値札ページ2")));
        // at 72 dpi the square is 28.35 pt in and 56.7 pt down, 28.35 pt across:
        // plain margins on paper, no preview zoom or scroll
        const QString png = dir.filePath(QStringLiteral("p"));
        run(QStringLiteral("pdftoppm"), {QStringLiteral("-r"), QStringLiteral("72"), QStringLiteral("-png"),
                                         QStringLiteral("-singlefile"), pdf, png});
        const QImage img(png + QStringLiteral(".png"));
        QCOMPARE(img.size(), QSize(595, 842));
        const QRect box = ink(img, QRect(0, 0, 200, 100));
        QVERIFY2(qAbs(box.left() - 28) <= 1 && qAbs(box.top() - 57) <= 1 && qAbs(box.width() - 28) <= 2,
                 qPrintable(QStringLiteral("%1,%2 %3").arg(box.left()).arg(box.top()).arg(box.width())));
        QVERIFY(ink(img, QRect(28, 110, 200, 20)).isValid()); // the text line
        QCOMPARE(AppTitle(), QStringLiteral("Tillora"));

        // "no" to the question writes nothing and asks for no file
        rec.clear();
        rec.answer(Msg::ResNo);
        Gui::click(cmd[1]);
        QCOMPARE(rec.count(), 1);
        QCOMPARE(suggested.size(), 1);

        // PDF保存 writes every page of the report, whichever is shown
        rec.clear();
        answer = dir.filePath(QStringLiteral("all.PDF"));
        f.menuAction(QStringLiteral("mnuSAVE_PDF"))->trigger();
        QVERIFY(suggested.last().endsWith(QStringLiteral("/試験帳票.pdf")));
        QVERIFY(rec.lastPrompt().startsWith(QStringLiteral("3ﾍﾟｰｼﾞをPDFファイルに保存しました。")));
        info = run(QStringLiteral("pdfinfo"), {answer});
        QVERIFY2(info.contains(QRegularExpression(QStringLiteral("Pages:\\s+3\\n"))), qPrintable(info));
        const QString text = run(QStringLiteral("pdftotext"), {answer, QStringLiteral("-")});
        QVERIFY(text.indexOf(QStringLiteral("値札ページ1")) < text.indexOf(QStringLiteral("値札ページ3")));
        QVERIFY(text.contains(QStringLiteral("値札ページ2")));

        // キャンセル between the pages: no file, and an earlier one stays whole
        rec.clear();
        ProgressBox::setCancelAfterForTest(2);
        f.menuAction(QStringLiteral("mnuSAVE_PDF"))->trigger();
        ProgressBox::setCancelAfterForTest(0);
        QCOMPARE(rec.lastPrompt(), QStringLiteral("PDF の保存を中止しました。"));
        QVERIFY(run(QStringLiteral("pdfinfo"), {answer}).contains(QRegularExpression(QStringLiteral("Pages:\\s+3\\n"))));

        // a file that can't be written: a message, nothing left under its name,
        // and a file already there stays as it was
        rec.clear();
        answer = dir.filePath(QStringLiteral("no/such/folder/x.pdf"));
        f.menuAction(QStringLiteral("mnuSAVE_PDF"))->trigger();
        QVERIFY2(rec.lastPrompt().contains(QStringLiteral("PDFファイルを保存できません")), qPrintable(rec.lastPrompt()));
        QVERIFY(!QFile::exists(answer));
        // a name taken by a folder: the folder stays a folder
        QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("taken.pdf")));
        answer = dir.filePath(QStringLiteral("taken.pdf"));
        rec.clear();
        f.menuAction(QStringLiteral("mnuSAVE_PDF"))->trigger();
        QVERIFY(rec.lastPrompt().contains(QStringLiteral("PDFファイルを保存できません")));
        QVERIFY(QFileInfo(answer).isDir());
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).size(), 3); // page2.pdf, all.PDF, p.png

        // a cancelled file dialog writes nothing; a report of no pages has nothing to save
        rec.clear();
        answer.clear();
        f.menuAction(QStringLiteral("mnuSAVE_PDF"))->trigger();
        QVERIFY(rec.messages.isEmpty());
        gREP_PAGES = 0;
        fdlPreview none;
        Gui::show(&none);
        none.menuAction(QStringLiteral("mnuSAVE_PDF"))->trigger();
        QCOMPARE(rec.lastPrompt(), QStringLiteral("保存するﾍﾟｰｼﾞがありません。"));
        QCOMPARE(AppTitle(), QStringLiteral("Tillora"));
    }

    void marginDialogStoresTwipsPerReport()
    {
        TestRoot root;
        MsgRecorder rec;
        gREP_ID = kPriceTagReport;
        auto open = [] {
            Form *f = createScreen(QStringLiteral("fdlSetMgn"));
            Gui::show(f);
            return f;
        };
        Form *f = open();
        auto text = f->array<QLineEdit>(QStringLiteral("Text1"), 2);
        auto cmb = f->array<QComboBox>(QStringLiteral("cmbDATA"), 2);
        // no row yet: 1.5 cm each, nothing chosen
        QCOMPARE(text[0]->text(), QStringLiteral("1.5"));
        QCOMPARE(text[1]->text(), QStringLiteral("1.5"));
        QCOMPARE(cmb[0]->count(), PrinterTarget::installedPrinters().size());
        QCOMPARE(cmb[1]->currentIndex(), -1);
        QStringList bins;
        for (int i = 0; i < cmb[1]->count(); ++i)
            bins << cmb[1]->itemText(i) + QLatin1Char('=') + itemData(cmb[1], i).toText();
        QCOMPARE(bins, QStringList({"=0", "既定=7", "トレイ=1", "手差し=6"}));
        Gui::type(text[1], QStringLiteral("ab"));
        Gui::click(f->ctl<QPushButton>(QStringLiteral("Command1(1)")));
        QVERIFY(!f->isVisible());
        delete f;
        QCOMPARE(gINI->DLookup("TOP_MGN", "S_REP", "REP_ID=10").toDouble(), 850.5);
        QCOMPARE(gINI->DLookup("LEFT_MGN", "S_REP", "REP_ID=10").toDouble(), 0.0);
        QCOMPARE(gINI->DLookup("PAPER_BIN", "S_REP", "REP_ID=10").toDouble(), 0.0);

        gINI->EXEC(QStringLiteral("UPDATE S_REP SET TOP_MGN=1000 WHERE REP_ID=10"));
        f = open();
        text = f->array<QLineEdit>(QStringLiteral("Text1"), 2);
        cmb = f->array<QComboBox>(QStringLiteral("cmbDATA"), 2);
        QCOMPARE(text[0]->text(), QStringLiteral("1.7637"));
        QCOMPARE(text[1]->text(), QStringLiteral("0"));
        QCOMPARE(cmb[1]->currentIndex(), 0);
        Gui::choose(cmb[1], 3);
        Gui::type(text[0], QStringLiteral("1.5"));
        Gui::click(f->ctl<QPushButton>(QStringLiteral("Command1(1)")));
        delete f;
        QCOMPARE(gINI->DCount("*", "S_REP", "").toLong(), 1);
        QCOMPARE(gINI->DLookup("TOP_MGN", "S_REP", "REP_ID=10").toDouble(), 850.5);
        QCOMPARE(gINI->DLookup("PAPER_BIN", "S_REP", "REP_ID=10").toDouble(), 6.0);
        f = open();
        QCOMPARE(f->ctl<QComboBox>(QStringLiteral("cmbDATA(1)"))->currentText(), QStringLiteral("手差し"));
        // a store that fails: the message, the dialog stays, nothing half written
        gINI->EXEC(QStringLiteral("DROP TABLE S_REP"));
        Gui::click(f->ctl<QPushButton>(QStringLiteral("Command1(1)")));
        QCOMPARE(rec.lastPrompt(), QStringLiteral("データの登録に失敗しました。"));
        QVERIFY(f->isVisible());
        Gui::click(f->ctl<QPushButton>(QStringLiteral("Command1(0)")));
        QVERIFY(!f->isVisible());
        delete f;
    }

    void copiesDialogPrintsNothingAndResetsCopies()
    {
        TestRoot root;
        gREP_PAGES = 4;
        Form *f = createScreen(QStringLiteral("fdlSetPrintCopy"));
        Gui::show(f);
        auto txt = f->array<QLineEdit>(QStringLiteral("txtDATA"), 3);
        QCOMPARE(f->ctl<QLineEdit>(QStringLiteral("txtPAGES"))->text(), QStringLiteral("4"));
        QCOMPARE(txt[0]->text() + txt[1]->text(), QStringLiteral("14"));
        QVERIFY(!txt[0]->isEnabled() && !txt[1]->isEnabled());
        Gui::click(f->ctl<QRadioButton>(QStringLiteral("Option1(1)")));
        QVERIFY(txt[0]->isEnabled() && txt[1]->isEnabled());
        Gui::click(f->ctl<QRadioButton>(QStringLiteral("Option1(0)")));
        QVERIFY(!txt[1]->isEnabled());
        Gui::type(txt[2], QStringLiteral("3"));
        Gui::click(f->ctl<QPushButton>(QStringLiteral("Command1(1)")));
        QCOMPARE(Printer().Copies(), 1);
        QVERIFY(f->isVisible());
        QVERIFY(!Printer().jobActive());
        delete f;
    }

    void traceReportDialogPrintsTheChosenPlanting()
    {
        TestRoot root;
        MsgRecorder rec;
        const int year = QDate::currentDate().year();
        gDB->EXEC(QStringLiteral("INSERT INTO D_PLANT (FMR_ID, PLANT_ID, PLANT_NM, YYYY) VALUES (1, 2, '秋なす', %1)").arg(year));
        gDB->EXEC(QStringLiteral("INSERT INTO D_PLANT (FMR_ID, PLANT_ID, PLANT_NM, YYYY) VALUES (1, 1, '春トマト', %1)").arg(year));
        gDB->EXEC(QStringLiteral("INSERT INTO D_PLANT (FMR_ID, PLANT_ID, PLANT_NM, YYYY) VALUES (1, 3, '古株', 2020)"));
        gDB->EXEC(QStringLiteral("INSERT INTO D_SHIP (FMR_ID, SHIP_ID, SHIP_DATE, PLANT_ID) VALUES (1, 1, #%1/05/01#, 1)").arg(year));
        Gui::Modals modals;
        QImage shown;
        modals.on(QStringLiteral("fdlPreview"), [&](Form &p) {
            QCOMPARE(gREP_ID, qint16(30));
            QCOMPARE(gREP_PAGES, qint16(1));
            shown = asPreview(p)->picture();
            QCOMPARE(p.windowTitle(), QStringLiteral("生産履歴"));
        });
        gREP_ID = 0;
        Form *f = createScreen(QStringLiteral("fdlPrintTraceRep"));
        Gui::show(f);
        auto *yearBox = f->ctl<QLineEdit>(QStringLiteral("txtCOND(0)"));
        auto *plants = f->ctl<QComboBox>(QStringLiteral("cmbCOND(1)"));
        auto *print = f->ctl<QPushButton>(QStringLiteral("Command1(1)"));
        auto items = [plants] {
            QStringList out;
            for (int i = 0; i < plants->count(); ++i)
                out << plants->itemText(i) + QLatin1Char('=') + itemData(plants, i).toText();
            return out;
        };
        QCOMPARE(yearBox->text(), QString::number(year));
        QCOMPARE(items(), QStringList({"=0", "春トマト=1", "秋なす=2"}));
        QCOMPARE(f->ctl<QComboBox>(QStringLiteral("cmbCOND(0)"))->count(), 0);
        Gui::type(yearBox, QStringLiteral("2020"));
        Gui::leave(yearBox);
        QCOMPARE(items(), QStringList({"=0", "古株=3"}));
        Gui::type(yearBox, QString());
        Gui::leave(yearBox);
        QCOMPARE(items(), QStringList({"=0", "古株=3"}));

        // no year, no planting, a planting removed since the list was read:
        // said so, no preview
        Gui::click(print);
        Gui::type(yearBox, QString::number(year));
        Gui::click(print);
        Gui::choose(plants, 2);
        gDB->EXEC(QStringLiteral("DELETE FROM D_PLANT WHERE PLANT_ID=2"));
        Gui::click(print);
        QCOMPARE(rec.count(), 3);
        QCOMPARE(rec.messages[0].prompt, QStringLiteral("年を入力してください。"));
        QCOMPARE(rec.messages[1].prompt, QStringLiteral("作付を選択してください。"));
        QCOMPARE(rec.messages[2].prompt, QStringLiteral("%1年の作付に、選択した作付が見つかりません。").arg(year));
        QVERIFY(modals.opened.isEmpty());

        rec.clear();
        Gui::choose(plants, 1);
        Gui::click(print);
        QCOMPARE(modals.opened, QStringList({QStringLiteral("fdlPreview")}));
        QVERIFY(!shown.isNull());
        QVERIFY(ink(shown, QRect(2, 2, shown.width() - 4, shown.height() - 4)).isValid());
        QVERIFY(rec.messages.isEmpty());
        delete f;

        // the trial balance dialog reaches the same preview
        Form *acc = createScreen(QStringLiteral("fdlPrintAccRep"));
        Gui::show(acc);
        modals.on(QStringLiteral("fdlPreview"), [](Form &) {});
        Gui::click(acc->ctl<QPushButton>(QStringLiteral("Command1(1)")));
        QCOMPARE(modals.opened.size(), 2);
        QVERIFY(rec.messages.isEmpty());
        delete acc;
    }
};

TILLORA_GUI_TEST_MAIN(TestPrint)
#include "tst_print.moc"
