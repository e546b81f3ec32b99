#include "rules/books/BookReports.h"

#include "rules/books/Ledger.h"
#include "rules/print/modPrinter.h"
#include "store/Lookup.h"

#include <QHash>

namespace BookReports {

namespace {

using TablePages::Row;
using TablePages::Style;
using TrialBalance::Kind;

QString amount(Currency c) { return Ledger::amountText(c); }

QString ownerText(const QString &farmer) { return QStringLiteral("生産者: ") + farmer; }

QHash<int, TablePages::Document> &documents()
{
    static QHash<int, TablePages::Document> d;
    return d;
}

void faultRows(TablePages::Document &doc, const QVector<TrialBalance::Fault> &faults)
{
    if (faults.isEmpty())
        return;
    doc.rows.append({{QStringLiteral("※ 不備のある伝票が %1 件あります（科目・金額・日付のない分は集計されていません）")
                          .arg(faults.size())},
                     Style::Alert,
                     true});
    for (const TrialBalance::Fault &f : faults)
        doc.rows.append({{QStringLiteral("　") + TrialBalance::faultText(f)}, Style::Note});
}

} // namespace

TablePages::Document trialBalancePages(const TrialBalance::Sheet &sheet, const QString &farmer)
{
    TablePages::Document doc;
    doc.title = QStringLiteral("試算表");
    doc.owner = ownerText(farmer);
    doc.period = TrialBalance::periodText(sheet.from, sheet.to);
    doc.columns = {{QStringLiteral("勘定科目"), 3238, 0},
                   {QStringLiteral("前期繰越"), 1600, 1},
                   {QStringLiteral("借方"), 1600, 1},
                   {QStringLiteral("貸方"), 1600, 1},
                   {QStringLiteral("残高"), 1600, 1}};
    if (sheet.slips == 0)
        doc.rows.append({{QStringLiteral("この期間（%1）の伝票はありません。").arg(doc.period)}, Style::Note});
    for (int k = 0; k < TrialBalance::kKinds; ++k) {
        const Kind kind = Kind(k);
        bool any = false;
        for (const TrialBalance::Line &l : sheet.lines) {
            if (l.kind != kind || !l.active())
                continue;
            if (!any)
                doc.rows.append({{TrialBalance::kindName(kind)}, Style::Heading, true});
            any = true;
            doc.rows.append({{QStringLiteral("　") + l.name, amount(l.opening), amount(l.debit), amount(l.credit),
                              amount(l.closing)},
                             Style::Plain});
        }
        if (any) {
            const TrialBalance::Totals t = sheet.kindTotals(kind);
            doc.rows.append({{TrialBalance::kindName(kind) + QStringLiteral("計"), amount(t.opening), amount(t.debit),
                              amount(t.credit), amount(t.closing)},
                             Style::Subtotal});
        }
    }
    const TrialBalance::Totals d = sheet.debitSide(), c = sheet.creditSide();
    doc.rows.append({{QStringLiteral("借方合計（資産・費用）"), amount(d.opening), amount(d.debit), QString(),
                      amount(d.closing)},
                     Style::Total,
                     true});
    doc.rows.append({{QStringLiteral("貸方合計（負債・資本・収益）"), amount(c.opening), QString(), amount(c.credit),
                      amount(c.closing)},
                     Style::Subtotal,
                     true});
    if (sheet.balanced())
        doc.rows.append({{QStringLiteral("借方合計と貸方合計は一致しています。")}, Style::Note});
    else
        doc.rows.append({{QStringLiteral("※ 貸借不一致　差額 前期繰越 %1　借方・貸方 %2　残高 %3")
                              .arg(amount(d.opening - c.opening), amount(d.debit - c.credit),
                                   amount(d.closing - c.closing))},
                         Style::Alert});
    faultRows(doc, sheet.faults);
    return doc;
}

TablePages::Document incomePages(const TrialBalance::Income &income, const QString &farmer)
{
    TablePages::Document doc;
    doc.title = QStringLiteral("損益計算書（%1年分）").arg(income.year);
    doc.owner = ownerText(farmer);
    doc.period = QStringLiteral("自 %1年1月1日　至 %1年12月31日").arg(income.year);
    doc.columns = {{QStringLiteral("科目"), 6038, 0}, {QStringLiteral("金額"), 3600, 1}};
    if (income.slips == 0)
        doc.rows.append({{QStringLiteral("%1年の伝票はありません。").arg(income.year)}, Style::Note});
    auto block = [&doc](const QString &head, const QVector<TrialBalance::Line> &lines, Currency total,
                        const QString &totalName) {
        doc.rows.append({{head}, Style::Heading, true});
        for (const TrialBalance::Line &l : lines)
            doc.rows.append({{QStringLiteral("　") + l.name, amount(l.closing)}, Style::Plain});
        doc.rows.append({{totalName, amount(total)}, Style::Subtotal});
    };
    block(QStringLiteral("収入金額"), income.income, income.incomeTotal, QStringLiteral("収入金額計"));
    block(QStringLiteral("経費"), income.expenses, income.expenseTotal, QStringLiteral("経費計"));
    doc.rows.append({{QStringLiteral("差引金額"), amount(income.result)}, Style::Total});
    faultRows(doc, income.faults);
    return doc;
}

int prepareTrialBalance(const Value &fmrId, const QDate &from, const QDate &to)
{
    TablePages::Document &doc = documents()[kTrialBalanceReport];
    doc = trialBalancePages(TrialBalance::compute(fmrId, from, to), GetFmrNm(fmrId));
    return TablePages::pageCount(doc);
}

int prepareIncome(const Value &fmrId, int year)
{
    TablePages::Document &doc = documents()[kIncomeReport];
    doc = incomePages(TrialBalance::incomeStatement(fmrId, year), GetFmrNm(fmrId));
    return TablePages::pageCount(doc);
}

const TablePages::Document &current(int repId)
{
    static const TablePages::Document none;
    const auto it = documents().constFind(repId);
    return it == documents().constEnd() ? none : it.value();
}

void registerReports()
{
    for (int id : {kTrialBalanceReport, kIncomeReport})
        setReportPainter(id, [id](PrintTarget &target, double left, double top, int first, int last) {
            TablePages::drawPages(target, left, top, current(id), first, last);
        });
}

} // namespace BookReports
