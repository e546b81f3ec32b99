// Speed of the price tag sheets: a busy day of 960 labels (40 sheets) of
// varied products, plantings and prices, each with its QR symbol, written
// to a PDF file by `tillora-admin print-ptag`, and the parts of it in the
// process (reading the day's rows, drawing the pages into the file).

#include "env.h"

#include "base/Globals.h"
#include "rules/print/PriceTag.h"
#include "rules/print/PriceTagSheet.h"
#include "rules/print/modPrinter.h"
#include "store/Database.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <string>

namespace Bench {

namespace {

// A day after the generated years: 120 shipments of 8 units, 40 plantings,
// 30 products at prices from 98 to 1,580 yen.
const QDate kTagDay(2026, 3, 14);
constexpr int kShipments = 120, kUnits = 8;

void seedTagDay()
{
    const QString day = kTagDay.toString(QStringLiteral("yyyy/MM/dd"));
    if (gDB->DCount(QStringLiteral("*"), QStringLiteral("D_SHIP"), QStringLiteral("SHIP_DATE=#") + day + QLatin1Char('#'))
            .toLong() > 0)
        return;
    static const char *const names[] = {"トマト", "ミニトマト", "なす", "きゅうり", "ピーマン", "ほうれん草", "小松菜",
                                        "大根", "にんじん", "玉ねぎ"};
    inTransaction(gDB.get(), [&] {
        for (int i = 0; i < kShipments; ++i) {
            const int prd = 1 + i % 30;
            const int price = 98 + (i * 37) % 1483;
            gDB->EXEC(QStringLiteral("INSERT INTO D_SHIP (FMR_ID, SHIP_ID, SHIP_DATE, PLANT_ID, SHOP_ID, PRD_ID, PRD_NM, "
                                     "LOCATE, PLAS, SHOP_PRC, SHIP_QTY) VALUES (1, %1, #%2#, %3, 1, %4, '%5 %6', "
                                     "'緑川県山里市', %7, %8, %9)")
                          .arg(900001 + i)
                          .arg(day)
                          .arg(1 + (i * 7) % 40)
                          .arg(prd)
                          .arg(QString::fromUtf8(names[i % 10]))
                          .arg(prd)
                          .arg(i % 3 == 0 ? QStringLiteral("True") : QStringLiteral("False"))
                          .arg(price)
                          .arg(kUnits));
        }
    });
}

// The whole command, as a script or the shop's computer runs it.
void PrintPtagCommand(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        Store &s = use(kind);
        seedTagDay();
        const QString admin = adminProgram();
        if (!QFileInfo(admin).isExecutable())
            return state.SkipWithError(qPrintable(QStringLiteral("no program %1").arg(admin)));
        QTemporaryDir out;
        const QString pdf = out.filePath(QStringLiteral("tags.pdf"));
        for (auto _ : state) {
            QProcess p;
            p.start(admin, {QStringLiteral("print-ptag"), QStringLiteral("--root"), s.root(), QStringLiteral("--date"),
                            kTagDay.toString(Qt::ISODate), QStringLiteral("--pdf"), pdf});
            if (!p.waitForFinished(-1) || p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0)
                return state.SkipWithError(qPrintable(QString::fromLocal8Bit(p.readAllStandardError())));
        }
        state.counters["pdf_kB"] = double(QFileInfo(pdf).size()) / 1024;
    });
}

// Reading the day's rows into the labels (barcodes, trace addresses, names).
void ReadTagDay(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        use(kind);
        seedTagDay();
        gSHOP_ID = Value(1);
        TagTotals t;
        for (auto _ : state)
            t = loadPriceTagDay(QDateTime(kTagDay, QTime()), 0);
        state.counters["labels"] = t.labels;
        state.counters["pages"] = t.pages;
    });
}

// Drawing the 40 pages into the PDF file, the rows already read.
void DrawTagPdf(benchmark::State &state, Kind kind)
{
    guarded(state, [&] {
        use(kind);
        seedTagDay();
        gSHOP_ID = Value(1);
        gREP_ID = kPriceTagReport;
        PriceTagSheet::registerReport();
        PriceTagSheet::reset();
        const TagTotals t = loadPriceTagDay(QDateTime(kTagDay, QTime()), 0);
        QTemporaryDir out;
        const QString pdf = out.filePath(QStringLiteral("tags.pdf"));
        for (auto _ : state)
            SaveReportPdf(kPriceTagReport, pdf, 1, t.pages);
        state.counters["pdf_kB"] = double(QFileInfo(pdf).size()) / 1024;
    });
}

} // namespace

void registerPrintBenchmarks(Kind kind)
{
    const std::string k = std::string("/") + kindName(kind);
    benchmark::RegisterBenchmark(("PrintPtag_Command_960" + k).c_str(), PrintPtagCommand, kind)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(5);
    benchmark::RegisterBenchmark(("Parts/PrintPtag_ReadDay_960" + k).c_str(), ReadTagDay, kind)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(("Parts/PrintPtag_DrawPdf_960" + k).c_str(), DrawTagPdf, kind)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
}

} // namespace Bench
