// Printing on the system's printers: a private print server started by
// test.sh (scripts/cups.sh) with two printers whose jobs stay in its spool.
// The stored printer is chosen by name, each page is a job of its own named
// after the page, and what the printer receives reads back label by label
// at the places the sheet gives, the printer's unprintable margin taken off.

#include "ui/Screens.h"
#include "rules/print/PriceTag.h"
#include "rules/print/PriceTagSheet.h"
#include "screens/print/fdlPreview.h"
#include "rules/print/modPrinter.h"
#include "screens/print/Printer.h"
#include "store/Database.h"
#include "support/GuiDriver.h"
#include "support/MsgRecorder.h"
#include "support/PrintProbe.h"
#include "support/TagDay.h"
#include "support/TestRoot.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest/QTest>

namespace {

QString spool() { return QFileInfo(qEnvironmentVariable("TILLORA_TEST_CUPS")).absolutePath() + QStringLiteral("/spool"); }

// The jobs in the spool, oldest first: their numbers.
QStringList jobs()
{
    QStringList ids;
    for (const QString &f : QDir(spool()).entryList({QStringLiteral("c*")}, QDir::Files, QDir::Name))
        ids << f.mid(1);
    return ids;
}

QString attribute(const QString &job, const QByteArray &name);

// The jobs that came after `before`, waited for: the server keeps a job's
// files a moment after it has taken the job.
QStringList newJobs(const QStringList &before, int count)
{
    QStringList made;
    for (int i = 0; i < 100; ++i) {
        made = jobs();
        for (const QString &j : before)
            made.removeAll(j);
        if (made.size() >= count && !attribute(made.last(), "job-name").isEmpty())
            break;
        QTest::qWait(50);
    }
    return made;
}

// A text attribute of a job as its control file keeps it (IPP encoding: the
// name, two bytes of length, the value).
QString attribute(const QString &job, const QByteArray &name)
{
    QFile f(spool() + QStringLiteral("/c") + job);
    if (!f.open(QIODevice::ReadOnly))
        return QStringLiteral("!unreadable");
    const QByteArray c = f.readAll();
    const int at = c.indexOf(name);
    if (at < 0 || at + name.size() + 2 > c.size())
        return QString();
    const int p = at + name.size();
    const int length = (uchar(c[p]) << 8) | uchar(c[p + 1]);
    return QString::fromUtf8(c.mid(p + 2, length));
}

// The document a job sent: a PDF, copied beside the test's other files once
// the server has written it whole.
QString document(const QString &job, const QString &dir)
{
    const QString spooled = spool() + QStringLiteral("/d") + job + QStringLiteral("-001");
    for (int i = 0; i < 100; ++i) {
        QFile f(spooled);
        if (f.open(QIODevice::ReadOnly) && f.readAll().trimmed().endsWith("%%EOF"))
            break;
        QTest::qWait(50);
    }
    const QString copy = dir + QStringLiteral("/job") + job + QStringLiteral(".pdf");
    QFile::remove(copy);
    QFile::copy(spooled, copy);
    return copy;
}

} // namespace

class TestPrinter : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        const QString server = qEnvironmentVariable("TILLORA_TEST_CUPS");
        if (server.isEmpty())
            QSKIP("no print server: test.sh starts one (scripts/cups.sh)");
        // Read by the print system when it is first asked for printers.
        qputenv("CUPS_SERVER", server.toLocal8Bit());
    }

    void thePrintersAreTheSystems()
    {
        TestRoot root;
        QVERIFY(PrinterTarget::exists());
        QCOMPARE(PrinterTarget::installedPrinters(), (QStringList{"Office-A", "Label_Printer"}));
        gREP_ID = kPriceTagReport;
        Form *f = createScreen(QStringLiteral("fdlSetMgn"));
        Gui::show(f);
        auto *printers = f->ctl<QComboBox>(QStringLiteral("cmbDATA(0)"));
        QCOMPARE(printers->count(), 2);
        Gui::choose(printers, 1);
        Gui::click(f->ctl<QPushButton>(QStringLiteral("Command1(1)")));
        QCOMPARE(gINI->DLookup("PRINTER_NM", "S_REP", "REP_ID=10").toText(), QStringLiteral("Label_Printer"));
        delete f;
        f = createScreen(QStringLiteral("fdlSetMgn"));
        Gui::show(f);
        QCOMPARE(f->ctl<QComboBox>(QStringLiteral("cmbDATA(0)"))->currentText(), QStringLiteral("Label_Printer"));
        delete f;
    }

    // ﾍﾟｰｼﾞ印刷 on a day of two sheets: the stored printer (named in another
    // case), one job for the page shown, named after it; the labels stand on
    // the paper where the sheet puts them, margins included.
    void aPageIsAJobOfItsOwn()
    {
        TestRoot root;
        MsgRecorder msgs;
        TagDay::seed(QDate(2026, 5, 10));
        gINI->EXEC(QStringLiteral("INSERT INTO S_REP (REP_ID, TOP_MGN, LEFT_MGN, PRINTER_NM, PAPER_BIN) "
                                  "VALUES (10, 567, 283.5, 'label_printer', 0)"));
        gSHOP_ID = Value(1);
        PriceTagSheet::reset();
        PriceTagSheet::setFrame(false);
        const TagTotals totals = loadPriceTagDay(QDateTime(QDate(2026, 5, 10), QTime()), 3);
        QCOMPARE(totals.pages, 2);
        gREP_ID = kPriceTagReport;
        gREP_PAGES = qint16(totals.pages);
        const QStringList before = jobs();

        fdlPreview preview;
        Gui::show(&preview);
        Gui::click(preview.ctl<QPushButton>(QStringLiteral("Command1(5)")));
        Gui::click(preview.ctl<QPushButton>(QStringLiteral("Command1(1)")));
        QVERIFY2(msgs.messages.isEmpty(), qPrintable(msgs.lastPrompt()));
        QCOMPARE(AppTitle(), QStringLiteral("Tillora"));
        const QStringList made = newJobs(before, 1);
        QCOMPARE(made.size(), 1);
        QCOMPARE(attribute(made[0], "job-name"), QStringLiteral("農産物値札 2ﾍﾟｰｼﾞ"));
        QVERIFY(attribute(made[0], "printer-uri").endsWith(QStringLiteral("/printers/Label_Printer")));

        // page 2 holds the last three labels, at the first places of the sheet
        QTemporaryDir dir;
        const QString pdf = document(made[0], dir.path());
        QCOMPARE(Probe::pdfPages(pdf), 1);
        const QImage sheet(Probe::rasterise(pdf, 300));
        QVERIFY(!sheet.isNull());
        const QVector<QStringList> expected = TagDay::expectedLabels(3);
        const double px = 300.0 / 1440;
        for (int place = 0; place < 4; ++place) {
            const QPointF at = labelOrigin(place) + QPointF(283.5, 567);
            const QRect cut(int(at.x() * px), int(at.y() * px), int(PriceTag::Width * px), int(PriceTag::Height * px));
            const QString png = dir.filePath(QStringLiteral("p%1.png").arg(place));
            QVERIFY(sheet.copy(cut).save(png));
            QStringList want = 24 + place < expected.size() ? expected[24 + place] : QStringList();
            want.sort();
            QCOMPARE(Probe::zbar(png), want);
        }

        // a stored printer that is gone: the default printer, without a word
        gINI->EXEC(QStringLiteral("UPDATE S_REP SET PRINTER_NM='Gone' WHERE REP_ID=10"));
        Printer().setDeviceName(QStringLiteral("Office-A"));
        Gui::click(preview.ctl<QPushButton>(QStringLiteral("Command1(3)")));
        Gui::click(preview.ctl<QPushButton>(QStringLiteral("Command1(1)")));
        QVERIFY(msgs.messages.isEmpty());
        const QStringList again = newJobs(before + made, 1);
        QCOMPARE(again.size(), 1);
        const QString last = again.last();
        QCOMPARE(attribute(last, "job-name"), QStringLiteral("農産物値札 1ﾍﾟｰｼﾞ"));
        QVERIFY(attribute(last, "printer-uri").endsWith(QStringLiteral("/printers/Office-A")));
    }
};

TILLORA_GUI_TEST_MAIN(TestPrinter)
#include "tst_printer.moc"
