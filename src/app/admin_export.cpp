// tillora-admin export-ptag: the price tag rows of a period written to the
// same CSV file as the export dialog writes, without a window. The farmer is
// the default farmer of this computer unless --farmer names another; the
// dialog's remembered period and folder are left as they are.

#include "base/Globals.h"
#include "app/AdminCommands.h"
#include "app/CommandLine.h"
#include "rules/exchange/PriceTagCsv.h"
#include "store/Database.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

int runExportPtag(const QStringList &args)
{
    const CommandLine::Options opt =
        CommandLine::readOptions(args, {"--from", "--to", "--dir", "--farmer"}, {"--utf8"});
    const QString from = opt.value("--from"), to = opt.value("--to"), dir = opt.value("--dir"), farmer = opt.value("--farmer");
    const bool utf8 = opt.has("--utf8");
    if (!opt.ok || from.isEmpty() || to.isEmpty() || dir.isEmpty()) {
        CommandLine::err(QStringLiteral("使い方: tillora-admin export-ptag [--root DIR] --from yyyy-mm-dd --to yyyy-mm-dd "
                                   "--dir OUT [--utf8] [--farmer N]"));
        return 2;
    }
    OpenIni();
    OpenDb();
    OpenMst();
    gSHOP_ID = Value(1);
    gFMR_ID = farmer.isEmpty() ? Nz(gINI->GetCtrl(QStringLiteral("DEF_FMR_ID")), Value(0)) : Value(farmer);
    const PriceTagCsv::Outcome out = PriceTagCsv::exportRows(
        {from, to, dir, gFMR_ID, gSHOP_ID, utf8 ? PriceTagCsv::Encoding::Utf8Bom : PriceTagCsv::Encoding::CodePage, ProgressFn()});
    if (!out.refusal.isEmpty()) {
        CommandLine::err(out.refusal);
        return 1;
    }
    CommandLine::out(QString::number(out.written) + QStringLiteral("件のラベルデータを書き出しました。 → ") +
                    QDir::toNativeSeparators(QFileInfo(out.path).absoluteFilePath()));
    return 0;
}
