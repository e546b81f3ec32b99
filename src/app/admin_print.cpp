// tillora-admin print-ptag: the price tag sheets of a day written to a PDF
// file without a window, by the same drawing routine as the preview and the
// printer, with the margins kept for the report on this computer.

#include "base/AppError.h"
#include "app/AdminCommands.h"
#include "app/CommandLine.h"
#include "base/Globals.h"
#include "rules/print/PriceTag.h"
#include "rules/print/PriceTagSheet.h"
#include "rules/print/modPrinter.h"
#include "store/Database.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

int runPrintPtag(const QStringList &args)
{
    const CommandLine::Options opt = CommandLine::readOptions(args, {"--date", "--skip", "--pdf"}, {"--frame"});
    const QString date = opt.value("--date"), skip = opt.value("--skip"), pdf = opt.value("--pdf");
    const bool frame = opt.has("--frame");
    QDateTime day;
    if (!opt.ok || date.isEmpty() || pdf.isEmpty() || !DateUtil::parse(date, day)) {
        CommandLine::err(QStringLiteral("使い方: tillora-admin print-ptag [--root DIR] --date yyyy-mm-dd [--skip N] [--frame] "
                                   "--pdf out.pdf"));
        return 2;
    }
    openAllDatabases();
    gREP_ID = kPriceTagReport;
    PriceTagSheet::registerReport();
    PriceTagSheet::reset();
    PriceTagSheet::setFrame(frame);
    try {
        PriceTagSheet::loadShopLogo();
    } catch (const AppError &e) {
        CommandLine::err(e.description()); // the tags are made without the logo
    }
    const TagTotals totals = loadPriceTagDay(day, skipValue(skip));
    const QString dayText = day.toString(QStringLiteral("yyyy/MM/dd"));
    if (totals.pages == 0) {
        CommandLine::out(QStringLiteral("%1 の値札はありません（0ﾍﾟｰｼﾞ）。PDFは作りません。").arg(dayText));
        return 0;
    }
    SaveReportPdf(kPriceTagReport, pdf, 1, totals.pages);
    CommandLine::out(QStringLiteral("%1: %2ﾍﾟｰｼﾞ %3枚 → %4")
                    .arg(dayText)
                    .arg(totals.pages)
                    .arg(totals.labels)
                    .arg(QDir::toNativeSeparators(QFileInfo(pdf).absoluteFilePath())));
    return 0;
}
