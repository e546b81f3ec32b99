#include "rules/print/modPrinter.h"

#include "base/Globals.h"
#include "base/Msg.h"
#include "base/Value.h"
#include "store/Database.h"
#include "store/Stmt.h"

#include <QHash>
#include <QPaintDevice>

#include <cmath>

namespace {

QHash<int, ReportPainter> &painters()
{
    static QHash<int, ReportPainter> p;
    return p;
}

Stmt repCriteria(int repId) { return Stmt("REP_ID=?").num(repId); }

double numberOr0(const Value &v) { return hasValue(v) && IsNumeric(v) ? v.toDouble() : 0; }

Stmt selectReport(int repId) { return Stmt("SELECT S_REP.* FROM S_REP WHERE REP_ID=?").num(repId); }

} // namespace

// ---------------------------------------------------------------- reports

void setReportPainter(int repId, ReportPainter painter)
{
    if (painter)
        painters().insert(repId, std::move(painter));
    else
        painters().remove(repId);
}

void PrintReport(int repId, PrintTarget &target, double left, double top, int firstPage, int lastPage)
{
    const auto it = painters().constFind(repId);
    if (it == painters().constEnd())
        return;
    const ReportPainter draw = it.value(); // the routine may re-register itself
    draw(target, left, top, firstPage, lastPage);
}

ReportPaper reportPaper(int repId)
{
    ReportPaper p;
    RecordsetPtr rs = gWORK->GetFwdOnlyRst(Stmt("SELECT L_REP.* FROM L_REP WHERE REP_ID=?").num(repId));
    if (!rs->eof()) {
        p.name = textOf(rs->Fields(QStringLiteral("REP_NM")));
        p.height = numberOr0(rs->Fields(QStringLiteral("HEIGHT")));
        p.width = numberOr0(rs->Fields(QStringLiteral("WIDTH")));
        p.orientation = int(numberOr0(rs->Fields(QStringLiteral("ORIENTATION"))));
    }
    rs->Close();
    return p;
}

Margins reportMargins(int repId)
{
    const ReportSettings s = reportSettings(repId);
    return {s.left, s.top};
}

ReportSettings reportSettings(int repId)
{
    ReportSettings s;
    RecordsetPtr rs = gINI->GetFwdOnlyRst(selectReport(repId));
    if (!rs->eof()) {
        s.stored = true;
        s.left = numberOr0(rs->Fields(QStringLiteral("LEFT_MGN")));
        s.top = numberOr0(rs->Fields(QStringLiteral("TOP_MGN")));
        s.printer = textOf(rs->Fields(QStringLiteral("PRINTER_NM")));
        s.paperBin = Nz(rs->Fields(QStringLiteral("PAPER_BIN")), Value(0));
    }
    rs->Close();
    return s;
}

void saveReportSettings(int repId, const ReportSettings &s)
{
    inTransaction(gINI.get(), [&] {
        RecordsetPtr rs = gINI->GetDynamicRst(selectReport(repId));
        if (rs->eof()) {
            rs->AddNew();
            rs->SetField(QStringLiteral("REP_ID"), Value(repId));
        }
        rs->SetField(QStringLiteral("TOP_MGN"), Value(s.top));
        rs->SetField(QStringLiteral("LEFT_MGN"), Value(s.left));
        rs->SetField(QStringLiteral("PRINTER_NM"), textOrNull(s.printer));
        // No bin chosen keeps the printer's own, as the empty item does.
        rs->SetField(QStringLiteral("PAPER_BIN"), hasValue(s.paperBin) ? s.paperBin : Value(0));
        rs->Update();
        rs->Close();
    });
}

bool SaveReportPdf(int repId, const QString &path, int firstPage, int lastPage, const ProgressFn &progress)
{
    const ReportPaper paper = reportPaper(repId);
    const Margins m = reportMargins(repId);
    PdfTarget pdf(path, paper.width, paper.height, paper.name);
    pdf.setOrientation(paper.orientation);
    const int first = std::max(1, firstPage);
    for (int page = first; page <= lastPage; ++page) {
        if (!goOn(progress, page - first, lastPage - first + 1, QStringLiteral("%1 ﾍﾟｰｼﾞ目").arg(page)))
            return false;
        pdf.startPage();
        PrintReport(repId, pdf, m.left, m.top, page, page);
        pdf.EndDoc();
    }
    pdf.finish();
    return true;
}

// ---------------------------------------------------------------- the printer's settings

QString matchPrinter(const QStringList &installed, const QString &stored)
{
    for (const QString &n : installed)
        if (n.compare(stored, Qt::CaseInsensitive) == 0)
            return n;
    return QString();
}

QString storedPrinter(int repId)
{
    return textOf(gINI->DLookup(QStringLiteral("PRINTER_NM"), QStringLiteral("S_REP"), repCriteria(repId)));
}

void SetPageSetup(PageTarget &target)
{
    const QString crit = repCriteria(gREP_ID);
    try {
        const double orientation = numberOr0(gWORK->DLookup(QStringLiteral("ORIENTATION"), QStringLiteral("L_REP"), crit));
        if (orientation == 1 || orientation == 2)
            target.setOrientation(int(orientation));
    } catch (...) {
    }
    try {
        const double bin = numberOr0(gINI->DLookup(QStringLiteral("PAPER_BIN"), QStringLiteral("S_REP"), crit));
        if (bin > 0)
            target.setPaperBin(int(bin));
    } catch (...) {
    }
}

int PixelToMmX(const QPaintDevice *device, double pixels)
{
    if (!device || device->logicalDpiX() <= 0)
        return 0;
    return int(std::floor(pixels * 25.4 / device->logicalDpiX() + 0.5));
}

int PixelToMmY(const QPaintDevice *device, double pixels)
{
    if (!device || device->logicalDpiY() <= 0)
        return 0;
    return int(std::floor(pixels * 25.4 / device->logicalDpiY() + 0.5));
}

int MmToTwips(int mm) { return int(roundHalfEven(mm * kTwipsPerCm / 10)); }

void GetPrintOffset(PageTarget &target, double &left, double &top)
{
    left = 0;
    top = 0;
    const QPaintDevice *device = target.hDC();
    if (!device)
        return;
    const QPointF origin = target.printableOrigin();
    left = MmToTwips(PixelToMmX(device, origin.x()));
    top = MmToTwips(PixelToMmY(device, origin.y()));
}

double cmToTwips(const QString &cmText)
{
    const Value v(cmText);
    return IsNumeric(v) ? v.toDouble() * kTwipsPerCm : 0;
}

QString twipsToCmText(double twips) { return Value(Value(twips / kTwipsPerCm).toCurrency()).toText(); }
