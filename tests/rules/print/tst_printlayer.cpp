// The print layer apart from the screens: text fitted into its box (on a
// target that measures by rule and on a real painter), the pages a report
// is asked to draw, the units and printer names, and what S_REP keeps of a
// report on this computer.

#include "base/Globals.h"
#include "rules/print/PainterTarget.h"
#include "rules/print/modPrinter.h"
#include "store/Database.h"
#include "support/PrintProbe.h"
#include "support/RulesTest.h"
#include "support/TestRoot.h"

#include <QImage>
#include <QPainter>
#include <QtTest/QTest>

namespace {

using Probe::ink;

// A target that measures by rule: a text is size x 20 x heightRate high and
// half a size wide a character; it records what it prints.
class RuleTarget : public PrintTarget {
public:
    explicit RuleTarget(double heightRate) : mRate(heightRate) {}
    double TextWidth(const QString &text) const override { return mFontSize * 10 * text.size(); }
    double TextHeight(const QString &) const override { return mFontSize * 20 * mRate; }
    void Print(const QString &text) override { printed.append({text, CurrentX, CurrentY, mFontSize}); }
    void Line(double, double, double, double, const QColor &, LineShape) override {}
    void PaintPicture(const QImage &, double, double, double, double) override {}
    struct Printed {
        QString text;
        double x, y, size;
    };
    QVector<Printed> printed;

private:
    double mRate;
};

} // namespace

class TestPrintLayer : public QObject {
    Q_OBJECT
private slots:
    void fittedTextShrinksGrowsAndKeepsTheGivenSize()
    {
        // taller than its size: steps down until 12 pt is 240 twips high
        RuleTarget tall(1.5);
        PrintFitText(tall, 1000, 500, QStringLiteral("ab"), 0, 12, 2000);
        QCOMPARE(tall.printed.size(), 1);
        QCOMPARE(tall.printed[0].size, 8.0);
        QCOMPARE(tall.printed[0].x, 1014.0);
        QCOMPARE(tall.printed[0].y, 500.0);
        QCOMPARE(tall.fontSize(), 12.0);
        // lower than its size: grows until it reaches the height
        RuleTarget low(0.8);
        PrintFitText(low, 0, 0, QStringLiteral("ab"), 0, 12, 2000);
        QCOMPARE(low.printed[0].size, 15.0);
        // too wide: 10 characters of 10 pt are 1000 twips; the box holds 528
        RuleTarget wide(1.0);
        PrintFitText(wide, 0, 0, QStringLiteral("0123456789"), 1, 10, 556);
        QCOMPARE(wide.printed[0].size, 5.25);
        QCOMPARE(wide.printed[0].x, 528.0 - 525.0);
        PrintFitText(wide, 100, 0, QStringLiteral("0123456789"), 2, 2, 556);
        QCOMPARE(wide.printed[1].x, 100 + (528.0 - 200.0) / 2);
        QCOMPARE(wide.fontSize(), 2.0);

        // on a real painter the ink stays inside the box, 14 twips in
        QImage img(400, 100, QImage::Format_RGB32);
        img.fill(Qt::white);
        QPainter p(&img);
        PainterTarget t(p, 0.1); // 10 twips a pixel
        const QString text = QStringLiteral("生産者：山田太郎(090-1234-5678)");
        PrintFitText(t, 1000, 100, text, 0, 10, 2000);
        PrintFitText(t, 1000, 400, text, 1, 10, 2000);
        PrintFitText(t, 1000, 700, QStringLiteral("北海道産"), 2, 9, 2000);
        p.end();
        QCOMPARE(t.fontSize(), 9.0);
        const QRect left = ink(img, QRect(0, 5, 400, 25));
        const QRect right = ink(img, QRect(0, 35, 400, 25));
        const QRect centre = ink(img, QRect(0, 65, 400, 30));
        QVERIFY2(left.left() >= 101 && left.right() <= 299, qPrintable(QStringLiteral("%1..%2").arg(left.left()).arg(left.right())));
        QVERIFY(left.width() > 150); // shrunk to the box, not to nothing
        QVERIFY(qAbs(right.right() - 297) <= 2);
        QVERIFY(qAbs((centre.left() + centre.right()) / 2 - 198) <= 2);
        // a 9 pt line is 180 twips high: its ink stays on its line
        QVERIFY(centre.top() >= 68 && centre.bottom() <= 89);
    }

    // A report draws the pages asked for; a report without a routine, or
    // whose routine was taken away, draws nothing.
    void reportsDrawTheirPagesAndOthersNothing()
    {
        QList<int> drawn;
        setReportPainter(90, [&](PrintTarget &t, double left, double top, int first, int last) {
            for (int page = first; page <= last; ++page) {
                drawn << page;
                t.CurrentX = left;
                t.CurrentY = top;
                t.Print(QString::number(page));
            }
        });
        RuleTarget t(1);
        PrintReport(90, t, 10, 20, 1, 3);
        QCOMPARE(drawn, QList<int>({1, 2, 3}));
        QCOMPARE(t.printed.size(), 3);
        QCOMPARE(t.printed[0].x, 10.0);
        QCOMPARE(t.printed[0].y, 20.0);
        drawn.clear();
        PrintReport(91, t, 0, 0, 1, 1);
        setReportPainter(90, nullptr);
        PrintReport(90, t, 0, 0, 1, 1);
        QVERIFY(drawn.isEmpty());
        QCOMPARE(t.printed.size(), 3);
    }

    void unitsAndPrinterNames()
    {
        QCOMPARE(cmToTwips(QStringLiteral("1.5")), 850.5);
        QCOMPARE(cmToTwips(QStringLiteral("１．５")), 850.5);
        QCOMPARE(cmToTwips(QStringLiteral("abc")), 0.0);
        QCOMPARE(twipsToCmText(850.5), QStringLiteral("1.5"));
        QCOMPARE(twipsToCmText(1000), QStringLiteral("1.7637"));
        QImage img(10, 10, QImage::Format_RGB32);
        img.setDotsPerMeterX(23622); // 600 dpi
        img.setDotsPerMeterY(11811); // 300 dpi
        QCOMPARE(PixelToMmX(&img, 118), 5);
        QCOMPARE(PixelToMmY(&img, 118), 10);
        QCOMPARE(PixelToMmX(nullptr, 118), 0);
        QCOMPARE(MmToTwips(5), 284);
        QCOMPARE(matchPrinter({QStringLiteral("Office-A"), QStringLiteral("Label_Printer")}, QStringLiteral("label_printer")),
                 QStringLiteral("Label_Printer"));
        QCOMPARE(matchPrinter({QStringLiteral("Office-A")}, QStringLiteral("Gone")), QString());
        QCOMPARE(matchPrinter({QStringLiteral("Office-A")}, QString()), QString());
    }

    // No row: nothing stored and no margins. A save makes the row; a second
    // save changes it; no printer is kept as Null and no bin as 0.
    void reportSettingsAreKeptPerReport()
    {
        TestRoot root;
        QVERIFY(!reportSettings(10).stored);
        QCOMPARE(reportMargins(10).top, 0.0);
        ReportSettings s;
        s.top = cmToTwips(QStringLiteral("1.5"));
        s.left = 283.5;
        s.printer = QStringLiteral("Label_Printer");
        s.paperBin = Value(6);
        saveReportSettings(10, s);
        ReportSettings back = reportSettings(10);
        QVERIFY(back.stored);
        QCOMPARE(back.top, 850.5);
        QCOMPARE(back.left, 283.5);
        QCOMPARE(back.printer, QStringLiteral("Label_Printer"));
        QCOMPARE(back.paperBin.toLong(), 6);
        QCOMPARE(storedPrinter(10), QStringLiteral("Label_Printer"));
        QCOMPARE(reportMargins(10).left, 283.5);

        s.printer.clear();
        s.paperBin = Value::null();
        saveReportSettings(10, s);
        QCOMPARE(gINI->DCount("*", "S_REP", "REP_ID=10").toLong(), 1);
        QVERIFY(gINI->DLookup("PRINTER_NM", "S_REP", "REP_ID=10").isNull());
        QCOMPARE(reportSettings(10).paperBin.toLong(), 0);
        QVERIFY(!reportSettings(11).stored);
    }
};

TILLORA_RULES_TEST_MAIN(TestPrintLayer)
#include "tst_printlayer.moc"
