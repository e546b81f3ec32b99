#include "rules/exchange/PriceTagCsv.h"

#include "base/Helpers.h"
#include "store/Database.h"
#include "store/Stmt.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace PriceTagCsv {

namespace {

QString quoted(const QString &text) { return QLatin1Char('"') + text + QLatin1Char('"'); }

QString boolText(bool b) { return b ? QStringLiteral("#TRUE#") : QStringLiteral("#FALSE#"); }

// Dates always in the full form; an unset date is the zero date.
QString dateText(const QDateTime &d)
{
    const QDateTime v = d.isValid() ? d : DateUtil::fromSerial(0);
    return QLatin1Char('#') + DateUtil::sqlText(v) + QLatin1Char('#');
}

// The day of a stored date, or def when it is none.
QDateTime dayOr(const Value &v, const QDateTime &def)
{
    return hasValue(v) && IsDate(v) ? DateUtil::fromDate(v.toDate().date()) : def;
}

Outcome refused(const char *message, int field)
{
    Outcome o;
    o.refusal = QString::fromUtf8(message);
    o.field = field;
    return o;
}

} // namespace

Period period(const QDateTime &today, const QDateTime &lastExport, const QDateTime &latestShipment)
{
    // Exported today and opened again today: today is offered once more.
    const QDateTime start = today.date() != lastExport.date() ? DateUtil::addDays(lastExport, 1) : lastExport;
    if (latestShipment.date() < start.date())
        return {today, today};
    return {start, latestShipment};
}

Period openingPeriod(const QDateTime &today, const Value &farmer, const Value &shop)
{
    const QDateTime last = dayOr(gINI->GetCtrl(QStringLiteral("LAST_EXP_PTAG_DATE")), today);
    const Value latest = gDB->DMax(QStringLiteral("SHIP_DATE"), QStringLiteral("D_SHIP"),
                                   Stmt("SHOP_ID=? AND FMR_ID=?").num(shop).num(farmer));
    return period(today, last, dayOr(latest, today));
}

QString folder() { return textOf(gINI->GetCtrl(QStringLiteral("EXP_PTAG_DIR"))); }

void saveFolder(const QString &folder)
{
    int type = 0;
    gINI->SaveCtrl(QStringLiteral("EXP_PTAG_DIR"), Value(folder), type);
}

Encoding encoding()
{
    const Value v = gINI->GetCtrl(QStringLiteral("EXP_PTAG_UTF8"));
    return hasValue(v) && IsNumeric(v) && v.toLong() != 0 ? Encoding::Utf8Bom : Encoding::CodePage;
}

void saveEncoding(Encoding e)
{
    int type = 4;
    gINI->SaveCtrl(QStringLiteral("EXP_PTAG_UTF8"), Value(e == Encoding::Utf8Bom ? QStringLiteral("1") : QStringLiteral("0")),
                   type);
}

void saveLastExport(const QString &lastDay)
{
    int type = 0;
    gINI->SaveCtrl(QStringLiteral("LAST_EXP_PTAG_DATE"), Value(lastDay), type);
}

QString periodRowsSql(const QDateTime &first, const QDateTime &last, const Value &farmer, const Value &shop)
{
    return Stmt("SELECT D_SHIP.* FROM D_SHIP  WHERE D_SHIP.SHIP_DATE>=? AND D_SHIP.SHIP_DATE<=? AND "
                "D_SHIP.FMR_ID=? AND D_SHIP.SHOP_ID=?")
        .time(first)
        .time(last)
        .num(farmer)
        .num(shop);
}

int loadPeriodRows(const QDateTime &first, const QDateTime &last, const Value &farmer, const Value &shop,
                   const ProgressFn &progress)
{
    RecordsetPtr rs = gDB->GetStaticRst(periodRowsSql(first, last, farmer, shop));
    if (rs->eof())
        return 0;
    gPTAG_ROWS = QVector<PriceTagSet>(1);
    if (!SetPriceTagRows(*rs, progress))
        return -1;
    rs->Close();
    return int(gPTAG_ROWS[0].Rows.size());
}

QString fileName(const QDateTime &first, const QDateTime &last, const Value &farmer, const Value &shop)
{
    return first.toString(QStringLiteral("yyMMdd")) + QLatin1Char('-') + last.toString(QStringLiteral("yyMMdd")) +
           QLatin1Char('-') + textOf(farmer) + QLatin1Char('-') + textOf(shop) + QStringLiteral(".csv");
}

QString csvLine(const PriceTagRow &r)
{
    const PriceTagLabel &l = r.Label;
    // Text goes between double quotes as it stands: a double quote inside a
    // name breaks the quoting of its line, which the readers of the file accept.
    const QStringList fields{
        boolText(r.Flag),           QStringLiteral("1"),           QString::number(r.Extra1),
        quoted(l.Code),             quoted(l.QrText),              QString::number(r.FmrId),
        quoted(l.FmrNm),            QString::number(r.PrdId),      quoted(r.PrdNm),
        quoted(l.Tel),              quoted(l.PrdNm),               QString::number(r.Extra2),
        l.Price.toString(),         quoted(l.Label2),              quoted(l.Label3),
        l.Price2.toString(),        QString::number(l.Opt1),       quoted(l.Label4),
        QString::number(l.Opt2),    dateText(l.LabelDate),         quoted(l.Label5),
        QString::number(r.Qty),     quoted(l.Locate),              boolText(l.Plas),
    };
    return fields.join(QLatin1Char(','));
}

QByteArray csvBytes(const QVector<PriceTagRow> &rows, Encoding encoding)
{
    QString text;
    for (const PriceTagRow &r : rows)
        text += csvLine(r) + QStringLiteral("\r\n");
    if (encoding == Encoding::Utf8Bom)
        return QByteArrayLiteral("\xEF\xBB\xBF") + text.toUtf8();
    return toSystemCodePage(text);
}

bool writeCsv(const QString &path, const QVector<PriceTagRow> &rows, Encoding encoding, QString *error)
{
    const QString shown = QDir::toNativeSeparators(path);
    auto fail = [&](const QString &why) {
        if (error)
            *error = why;
        return false;
    };
    if (QFileInfo(path).isDir())
        return fail(QStringLiteral("同じ名前のフォルダがあるため、ファイルを書き出せません。\n") + shown);
    QSaveFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return fail(QStringLiteral("出力先に書き込めません。書き込みできるフォルダを指定してください。\n") + shown);
    const QByteArray bytes = csvBytes(rows, encoding);
    if (f.write(bytes) != bytes.size()) {
        f.cancelWriting();
        return fail(QStringLiteral("ファイルを書き出せませんでした。ディスクの空きを確かめてください。\n") + shown);
    }
    if (!f.commit())
        return fail(QStringLiteral("ファイルを置き換えられませんでした。他のプログラムで開いていないか確かめてください。\n") +
                    shown);
    return true;
}

Outcome exportRows(const Request &q)
{
    QDateTime first, last;
    if (q.first.isEmpty())
        return refused("出荷日を指定してください。", 0);
    if (!DateUtil::parseStorable(q.first, first))
        return refused("日付を指定してください。", 0);
    if (!q.last.isEmpty() && !DateUtil::parseStorable(q.last, last))
        return refused("日付を指定してください。", 1);
    if (q.last.isEmpty())
        return refused("出荷日を指定してください。", 1);
    const int found = loadPeriodRows(first, last, q.farmer, q.shop, q.progress);
    if (found == 0)
        return refused("出力対象データが登録されていません。", -1);
    if (found < 0)
        return refused("書き出しを中止しました。", -1);
    if (q.folder.isEmpty())
        return refused("出力先を指定してください。", 2);
    if (!QFileInfo(q.folder).isDir())
        return refused("出力先ディレクトリが存在しません。", 2);
    const QString path = QDir(q.folder).filePath(fileName(first, last, q.farmer, q.shop));
    const QVector<PriceTagRow> &rows = gPTAG_ROWS[0].Rows;
    QString error;
    if (!writeCsv(path, rows, q.encoding, &error))
        return {0, error, 2, path};
    return {int(rows.size()), QString(), -1, path};
}

} // namespace PriceTagCsv
