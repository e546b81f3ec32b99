#include "rules/exchange/TracePages.h"

#include "base/Globals.h"
#include "rules/masters/ShopMaster.h"

#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QHash>
#include <QMap>
#include <QRegularExpression>
#include <QSaveFile>

namespace TracePages {

namespace {

using TraceHistory::dayText;
using TraceHistory::History;

// Text made safe for HTML: <, >, &, " and ' as references.
QString escaped(const QString &text) { return text.toHtmlEscaped().replace(QLatin1Char('\''), QStringLiteral("&#39;")); }

const char *const kStyle = R"(body{margin:0 auto;max-width:46em;padding:0 .8em 2em;font-family:sans-serif;font-size:16px;line-height:1.5;color:#222;background:#fff}
header{display:flex;align-items:center;gap:.8em;padding:.6em 0;border-bottom:3px solid #4a7d2c}
header img{max-height:3em;max-width:50%}
.shop{margin:0;font-weight:bold;color:#4a7d2c}
h1{font-size:1.4em;margin:.6em 0 .2em}
h2{font-size:1.1em;margin:1.4em 0 .4em;padding-left:.4em;border-left:.3em solid #4a7d2c}
h3{font-size:1em;margin:1em 0 .3em}
.who{margin:0;color:#555}
dl{display:grid;grid-template-columns:auto 1fr;gap:.2em .8em;margin:0}
dt{font-weight:bold;color:#555}
dd{margin:0}
.scroll{overflow-x:auto}
table{border-collapse:collapse;width:100%;font-size:.9em}
th,td{border-bottom:1px solid #ccc;padding:.3em .4em;text-align:left;vertical-align:top}
th{background:#eef3ea;white-space:nowrap}
td.n{text-align:right;white-space:nowrap}
td.d{white-space:nowrap}
.none{color:#777}
ul.list{padding-left:1.2em}
footer{margin-top:2em;font-size:.8em;color:#777}
@media (max-width:30em){body{font-size:15px}table{font-size:.8em}th,td{padding:.25em .3em}}
)";

const char *const kScript = R"(<?php
// The trace page of a planting for the address a price tag carries:
// cropvia.php?fmr=<FMR_ID>?plant=<PLANT_ID>. The second separator on the
// tags is "?", so the query is split here on "?" as well as on "&". The page
// itself is the static one of cropvia/<FMR_ID>/<PLANT_ID>/index.html, sent
// with the base of its folder so that its stylesheet and logo are found.
$query = isset($_SERVER['QUERY_STRING']) ? $_SERVER['QUERY_STRING'] : '';
$values = array();
foreach (preg_split('/[?&]/', $query) as $pair) {
    $kv = explode('=', $pair, 2);
    if (count($kv) == 2) {
        $values[urldecode($kv[0])] = urldecode($kv[1]);
    }
}
$fmr = isset($values['fmr']) ? $values['fmr'] : '';
$plant = isset($values['plant']) ? $values['plant'] : '';
header('Content-Type: text/html; charset=utf-8');
$folder = 'cropvia/' . $fmr . '/' . $plant . '/';
$page = __DIR__ . '/' . $folder . 'index.html';
if (!ctype_digit($fmr) || !ctype_digit($plant) || !is_file($page)) {
    http_response_code(404);
    echo '<!DOCTYPE html><html lang="ja"><head><meta charset="utf-8"><meta name="viewport" content="width=device-width, initial-scale=1"><title>生産履歴</title></head><body><p>この作付の生産履歴はまだ公開されていません。</p></body></html>';
    exit;
}
echo str_replace('<head>', '<head><base href="' . $folder . '">', file_get_contents($page));
)";

QString idText(const Value &v) { return QString::number(hasValue(v) ? qint64(v.toDouble()) : 0); }

QString pagePath(const History &h)
{
    return QStringLiteral("cropvia/%1/%2/index.html").arg(idText(h.farmer), idText(h.plantId));
}

QString head(const QString &title, const QString &up)
{
    return QStringLiteral("<!DOCTYPE html>\n<html lang=\"ja\">\n<head>\n<meta charset=\"utf-8\" />\n"
                          "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\" />\n"
                          "<title>%1</title>\n<link rel=\"stylesheet\" href=\"%2style.css\" />\n</head>\n<body>\n")
        .arg(escaped(title), up);
}

QString banner(const QString &shopName, const QString &logo, const QString &up)
{
    QString out = QStringLiteral("<header>");
    if (!logo.isEmpty())
        out += QStringLiteral("<img src=\"%1%2\" alt=\"%3\" />").arg(up, escaped(logo), escaped(shopName));
    if (!shopName.isEmpty())
        out += QStringLiteral("<p class=\"shop\">%1</p>").arg(escaped(shopName));
    return out + QStringLiteral("</header>\n");
}

QString footer()
{
    return QStringLiteral("<footer>%1 作成</footer>\n</body>\n</html>\n").arg(dayText(DateUtil::today().date()));
}

// A table: heads, then rows of cells; a cell's class ("n" a number, "d" a
// day) by column.
QString table(const QStringList &heads, const QStringList &classes, const QVector<QStringList> &rows)
{
    QString out = QStringLiteral("<div class=\"scroll\"><table>\n<thead><tr>");
    for (const QString &h : heads)
        out += QStringLiteral("<th>%1</th>").arg(escaped(h));
    out += QStringLiteral("</tr></thead>\n<tbody>\n");
    for (const QStringList &r : rows) {
        out += QStringLiteral("<tr>");
        for (int i = 0; i < r.size(); ++i) {
            const QString cls = classes.value(i);
            out += cls.isEmpty() ? QStringLiteral("<td>") : QStringLiteral("<td class=\"%1\">").arg(cls);
            out += escaped(r[i]).replace(QLatin1Char('\n'), QStringLiteral("<br />")) + QStringLiteral("</td>");
        }
        out += QStringLiteral("</tr>\n");
    }
    return out + QStringLiteral("</tbody>\n</table></div>\n");
}

bool writeFile(const QString &outDir, const QString &relative, const QByteArray &bytes, Outcome &out)
{
    const QString path = QDir(outDir).filePath(relative);
    QSaveFile f(path);
    if (!QDir().mkpath(QFileInfo(path).absolutePath()) || !f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size() ||
        !f.commit()) {
        out.refusal = QStringLiteral("ファイルを書き込めません。\n") + QDir::toNativeSeparators(path);
        return false;
    }
    out.files << relative;
    return true;
}

// The shop's logo copied beside the stylesheet as logo.<ext>; its name, ""
// when the shop names none or it can't be read (said so in the notes).
QString copyLogo(const QString &outDir, const ShopRecord &shop, Outcome &out)
{
    const QString name = textOf(shop.PTAG_LOGO);
    if (name.isEmpty())
        return QString();
    const QString source = AppPaths::resolve(QStringLiteral("..\\images\\") + name);
    QFile f(source);
    QImageReader reader(source);
    if (!reader.canRead() || !f.open(QIODevice::ReadOnly)) {
        out.notes << QStringLiteral("直売所のロゴ画像「%1」を読み込めないため、ロゴなしで作りました。").arg(name);
        return QString();
    }
    QString ext = QFileInfo(name).suffix().toLower();
    if (!QRegularExpression(QStringLiteral("^[a-z0-9]{1,5}$")).match(ext).hasMatch())
        ext = QString::fromLatin1(reader.format()).toLower();
    const QString logo = QStringLiteral("logo.") + ext;
    return writeFile(outDir, QStringLiteral("cropvia/") + logo, f.readAll(), out) ? logo : QString();
}

QString indexHtml(const QVector<const History *> &pages, const QString &shopName, const QString &logo)
{
    const History &first = *pages.first();
    const QString title = QStringLiteral("%1年の生産履歴").arg(first.year);
    QString out = head(title + QStringLiteral(" ") + first.farmerName, QStringLiteral("../")) +
                  banner(shopName, logo, QStringLiteral("../"));
    out += QStringLiteral("<h1>%1</h1>\n<p class=\"who\">生産者: %2</p>\n<ul class=\"list\">\n")
               .arg(escaped(title), escaped(first.farmerName));
    for (const History *h : pages)
        out += QStringLiteral("<li><a href=\"%1/index.html\">%2</a>（%3）</li>\n")
                   .arg(idText(h->plantId), escaped(h->name.isEmpty() ? QStringLiteral("作付") + idText(h->plantId) : h->name),
                        escaped(TraceHistory::cropText(*h)));
    return out + QStringLiteral("</ul>\n") + footer();
}

QString pageHtml(const History &h, const QString &shopName, const QString &logo)
{
    const QString up = QStringLiteral("../../");
    QString out = head(QStringLiteral("生産履歴 ") + h.name, up) + banner(shopName, logo, up);
    out += QStringLiteral("<h1>生産履歴</h1>\n<p class=\"who\">生産者: %1</p>\n").arg(escaped(h.farmerName));

    out += QStringLiteral("<h2>作付</h2>\n<dl>\n");
    for (const auto &f : TraceHistory::facts(h))
        out += QStringLiteral("<dt>%1</dt><dd>%2</dd>\n").arg(escaped(f.first), escaped(f.second));
    out += QStringLiteral("</dl>\n");
    for (const TraceHistory::Block &b : TraceHistory::blocks(h)) {
        // The class of each cell: "d" a day, "n" a number.
        static const QHash<int, QStringList> classes{
            {TraceHistory::Block::Work, {QStringLiteral("d")}},
            {TraceHistory::Block::Sprays, {QStringLiteral("d"), {}, {}, {}, QStringLiteral("n")}},
            {TraceHistory::Block::Shipments, {QStringLiteral("d"), {}, {}, QStringLiteral("n"), QStringLiteral("n")}}};
        const QString level = b.kind == TraceHistory::Block::Uses ? QStringLiteral("h3") : QStringLiteral("h2");
        out += QStringLiteral("<%1>%2</%1>\n").arg(level, escaped(b.title));
        if (b.rows.isEmpty())
            out += QStringLiteral("<p class=\"none\">%1</p>\n").arg(escaped(b.empty));
        else
            out += table(b.heads, classes.value(b.kind), b.rows);
    }
    return out + footer();
}

} // namespace

QStringList Outcome::summary(int named) const
{
    QStringList out;
    out << QStringLiteral("作付のページを%1件作りました（ファイル%2件）。").arg(pages).arg(files.size());
    const int shown = named < 0 ? int(skipped.size()) : qMin(named, int(skipped.size()));
    for (int i = 0; i < shown; ++i) {
        const Skipped &s = skipped[i];
        out << QStringLiteral("生産者%1 作付%2「%3」: %4").arg(idText(s.farmer), idText(s.plantId), s.name, s.reason);
    }
    if (shown < skipped.size())
        out << QStringLiteral("ほか%1件の作付にもページを作りませんでした。").arg(skipped.size() - shown);
    out << notes;
    if (cancelled)
        out << QStringLiteral("途中で中止しました。残りの作付のページは作っていません。");
    if (!refusal.isEmpty())
        out << refusal;
    return out;
}

Outcome write(const QString &outDir, int year, const Value &plantId, const ProgressFn &progress)
{
    Outcome out;
    if (outDir.trimmed().isEmpty()) {
        out.refusal = QStringLiteral("出力先を指定してください。");
        return out;
    }
    if (!QDir().mkpath(outDir)) {
        out.refusal = QStringLiteral("出力先のフォルダを作れません。\n") + QDir::toNativeSeparators(outDir);
        return out;
    }
    const bool one = hasValue(plantId) && plantId.toDouble() != 0;
    const QVector<History> all = TraceHistory::readYear(year, plantId, DateUtil::today().date());
    if (all.isEmpty()) {
        out.refusal = one ? QStringLiteral("%1年の作付%2は登録されていません。").arg(year).arg(idText(plantId))
                          : QStringLiteral("%1年の作付は登録されていません。").arg(year);
        return out;
    }
    QVector<const History *> shipped;
    for (const History &h : all) {
        if (h.shipments.isEmpty())
            out.skipped.append({h.farmer, h.plantId, h.name, QStringLiteral("出荷の記録がないため、ページを作りませんでした。")});
        else
            shipped.append(&h);
    }
    if (shipped.isEmpty())
        return out;

    ShopRecord shop;
    ShopMaster::read(Nz(gSHOP_ID, Value(1)), shop);
    const QString shopName = textOf(shop.SHOP_NM);
    const int type = int(Nz(shop.UPLOAD_FILE_TYPE, Value(0)).toDouble());
    if (!writeFile(outDir, QStringLiteral("cropvia/style.css"), QByteArray(kStyle), out))
        return out;
    const QString logo = copyLogo(outDir, shop, out);
    if (!out.refusal.isEmpty())
        return out;
    if ((type == 2 || type == 3) && !writeFile(outDir, QStringLiteral("cropvia.php"), QByteArray(kScript), out))
        return out;

    QMap<qint64, QVector<const History *>> byFarmer;
    for (int i = 0; i < shipped.size(); ++i) {
        const History &h = *shipped[i];
        if (!goOn(progress, i, shipped.size(), h.name)) {
            out.cancelled = true;
            return out;
        }
        if (!writeFile(outDir, pagePath(h), pageHtml(h, shopName, logo).toUtf8(), out))
            return out;
        ++out.pages;
        byFarmer[qint64(h.farmer.toDouble())].append(&h);
    }
    goOn(progress, shipped.size(), shipped.size(), QString());
    if (one)
        return out;
    for (auto it = byFarmer.constBegin(); it != byFarmer.constEnd(); ++it)
        if (!writeFile(outDir, QStringLiteral("cropvia/%1/index.html").arg(it.key()),
                       indexHtml(*it, shopName, logo).toUtf8(), out))
            return out;
    return out;
}

} // namespace TracePages
