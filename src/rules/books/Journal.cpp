#include "rules/books/Journal.h"

#include "rules/books/Ledger.h"
#include "store/Database.h"
#include "store/Lookup.h"
#include "store/Recordset.h"
#include "store/Stmt.h"

#include <QHash>
#include <QIODevice>
#include <QSaveFile>

namespace Journal {

namespace {

using TrialBalance::Kind;

// The account types the readers know the top accounts by.
const char *typeOf(Kind kind)
{
    switch (kind) {
    case Kind::Asset: return "A";
    case Kind::Liability: return "L";
    case Kind::Equity: return "E";
    case Kind::Income: return "R";
    case Kind::Expense: return "X";
    }
    return "A";
}

// A text on one line that starts no comment: the readers take ';' for one
// and end an account name at two spaces.
QString plain(const QString &text)
{
    QString t = text;
    t.replace(QLatin1Char(';'), QStringLiteral("；"));
    t.replace(QLatin1Char('|'), QStringLiteral("｜"));
    return t.simplified();
}

QString description(const LedgeRow &r)
{
    QStringList parts;
    for (int c : {LedgeCol::CTR_NM, LedgeCol::NOTES}) {
        const QString t = plain(textOf(r[c]));
        if (!t.isEmpty())
            parts << t;
    }
    return parts.join(QStringLiteral(" | "));
}

class Writer {
public:
    explicit Writer(QIODevice &out) : mOut(out) {}
    void line(const QString &text = QString()) { mOut.write((text + QLatin1Char('\n')).toUtf8()); }
    void posting(const QString &account, Currency amount)
    {
        // Two spaces at least between the account and the amount.
        const int pad = std::max(2, 36 - int(account.size()) * 2);
        line(QStringLiteral("    ") + account + QString(pad, QLatin1Char(' ')) + yen(amount));
    }

private:
    QIODevice &mOut;
};

qint64 idOf(const Value &v) { return hasValue(v) && IsNumeric(v) ? qint64(v.toDouble()) : 0; }

QString slipSummary(const LedgeRow &r, const QHash<qint64, QString> &names)
{
    auto side = [&](int c) {
        const QString n = names.value(idOf(r[c]));
        return n.isEmpty() ? textOf(r[c]) : n;
    };
    return QStringLiteral("伝票 %1: %2 / %3 %4 %5")
        .arg(textOf(r[LedgeCol::LEDGE_ID]), side(LedgeCol::D_ACC_ID), side(LedgeCol::C_ACC_ID),
             hasValue(r[LedgeCol::AMT]) ? yen(r[LedgeCol::AMT].toCurrency()) : QString(), description(r))
        .simplified();
}

} // namespace

QString yen(Currency amount)
{
    const qint64 raw = amount.raw();
    const quint64 abs = quint64(raw < 0 ? -raw : raw);
    QString whole = QString::number(abs / Currency::Scale);
    for (int i = whole.size() - 3; i > 0; i -= 3)
        whole.insert(i, QLatin1Char(','));
    QString fraction;
    if (const quint64 rest = abs % Currency::Scale) {
        fraction = QStringLiteral(".%1").arg(rest, 4, 10, QLatin1Char('0'));
        while (fraction.endsWith(QLatin1Char('0')))
            fraction.chop(1);
    }
    return QStringLiteral("¥") + (raw < 0 ? QStringLiteral("-") : QString()) + whole + fraction;
}

QString accountName(Kind kind, const QString &name)
{
    QString n = plain(name);
    n.replace(QLatin1Char(':'), QStringLiteral("："));
    return TrialBalance::kindName(kind) + QLatin1Char(':') + (n.isEmpty() ? QStringLiteral("名称なし") : n);
}

QString unsettledName() { return QStringLiteral("未確定:科目なし"); }

Written write(QIODevice &out, const Value &fmrId, const QDate &from, const QDate &to)
{
    Written done;
    Writer w(out);
    const QVector<TrialBalance::Account> accounts = TrialBalance::chart();
    QHash<qint64, QString> names, plainNames;
    for (const TrialBalance::Account &a : accounts) {
        names.insert(a.id, accountName(a.kind, a.name));
        plainNames.insert(a.id, a.name);
    }
    w.line(QStringLiteral("; Tillora 仕訳帳"));
    w.line(QStringLiteral("commodity ¥1,000."));
    w.line();
    for (int k = 0; k < TrialBalance::kKinds; ++k)
        w.line(QStringLiteral("account %1    ; type: %2")
                   .arg(TrialBalance::kindName(Kind(k)), QString::fromLatin1(typeOf(Kind(k)))));
    for (const TrialBalance::Account &a : accounts)
        w.line(QStringLiteral("account ") + names.value(a.id));
    w.line(QStringLiteral("account ") + accountName(Kind::Equity, TrialBalance::earlierYearsName()));
    w.line(QStringLiteral("account ") + unsettledName());

    // What came before the first day, as the trial balance brings it in.
    if (from.isValid()) {
        const TrialBalance::Sheet sheet = TrialBalance::compute(fmrId, from, from);
        QVector<std::pair<QString, Currency>> postings;
        Currency sum;
        for (const TrialBalance::Line &l : sheet.lines) {
            if (l.opening == Currency())
                continue;
            const Currency amount = l.creditSide ? -l.opening : l.opening;
            postings.append({l.accId ? names.value(l.accId) : accountName(l.kind, l.name), amount});
            sum += amount;
        }
        if (sum != Currency())
            postings.append({unsettledName(), -sum});
        if (!postings.isEmpty()) {
            w.line();
            w.line(QStringLiteral("%1 開始残高").arg(from.toString(Qt::ISODate)));
            for (const auto &p : postings)
                w.posting(p.first, p.second);
            ++done.transactions;
        }
    }

    QHash<qint64, bool> known;
    for (const TrialBalance::Account &a : accounts)
        known.insert(a.id, true);
    Ledger::Filter f;
    f.fmrId = fmrId;
    if (from.isValid())
        f.from = from.toString(QStringLiteral("yyyy/MM/dd"));
    if (to.isValid())
        f.to = to.toString(QStringLiteral("yyyy/MM/dd"));
    const Stmt farmer = Stmt(" D_LEDGE.FMR_ID=?").num(fmrId);
    // Only the columns the journal writes, in the list's order.
    auto rows = [](const Stmt &criteria, const std::function<void(const LedgeRow &)> &each) {
        static const int columns[] = {LedgeCol::LEDGE_ID, LedgeCol::LEDGE_DATE, LedgeCol::D_ACC_ID,
                                      LedgeCol::C_ACC_ID, LedgeCol::AMT,        LedgeCol::CTR_NM,
                                      LedgeCol::NOTES};
        QStringList names;
        for (int c : columns)
            names << QStringLiteral("D_LEDGE.") + QString::fromLatin1(LedgeCol::Names[c]);
        RecordsetPtr rs = gDB->GetFwdOnlyRst(
            Stmt("SELECT ? FROM D_LEDGE WHERE ? ORDER BY D_LEDGE.LEDGE_DATE, D_LEDGE.LEDGE_ID")
                .part(Stmt(names.join(QStringLiteral(", "))))
                .part(criteria));
        LedgeRow r = blankLedgeRow();
        for (; !rs->eof(); rs->MoveNext()) {
            for (int i = 0; i < int(std::size(columns)); ++i)
                r[columns[i]] = rs->Fields(i);
            each(r);
        }
        rs->Close();
    };
    // No date: no transaction, but the slip is not lost from sight.
    bool headed = false;
    rows(Stmt("? AND D_LEDGE.LEDGE_DATE IS NULL").part(farmer), [&](const LedgeRow &r) {
        if (!headed) {
            w.line();
            headed = true;
        }
        w.line(QStringLiteral("; 日付のない") + slipSummary(r, plainNames));
        done.faults.append({r, QStringLiteral("日付なし")});
    });
    rows(Stmt("? AND D_LEDGE.LEDGE_DATE IS NOT NULL").part(Ledger::listCriteria(f)), [&](const LedgeRow &r) {
        QStringList missing;
        auto side = [&](int c, const QString &what) {
            const qint64 id = idOf(r[c]);
            if (known.contains(id))
                return names.value(id);
            missing << (id ? QStringLiteral("%1科目 %2 は未登録").arg(what).arg(id) : what + QStringLiteral("科目なし"));
            return unsettledName();
        };
        const QString debit = side(LedgeCol::D_ACC_ID, QStringLiteral("借方"));
        const QString credit = side(LedgeCol::C_ACC_ID, QStringLiteral("貸方"));
        if (!hasValue(r[LedgeCol::AMT]))
            missing << QStringLiteral("金額なし");
        const Currency amount = hasValue(r[LedgeCol::AMT]) ? r[LedgeCol::AMT].toCurrency() : Currency();
        w.line();
        w.line(QStringLiteral("%1 (%2) %3")
                   .arg(r[LedgeCol::LEDGE_DATE].toDate().toString(QStringLiteral("yyyy-MM-dd")),
                        textOf(r[LedgeCol::LEDGE_ID]), description(r))
                   .trimmed());
        if (!missing.isEmpty()) {
            w.line(QStringLiteral("    ; ") + missing.join(QStringLiteral("・")));
            done.faults.append({r, missing.join(QStringLiteral("・"))});
        }
        w.posting(debit, amount);
        w.posting(credit, -amount);
        ++done.transactions;
    });
    return done;
}

QString writeFile(const QString &path, const Value &fmrId, const QDate &from, const QDate &to, Written &written)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return QStringLiteral("ファイルを作成できません。\n%1").arg(path);
    written = write(file, fmrId, from, to);
    if (!file.commit())
        return QStringLiteral("ファイルを書き込めません。\n%1").arg(path);
    return QString();
}

QString fileName(const Value &fmrId, const QDate &from, const QDate &to)
{
    QString farmer = GetFmrNm(fmrId).simplified();
    for (const QChar bad : QStringLiteral("/\\:*?\"<>| "))
        farmer.replace(bad, QLatin1Char('_'));
    return QStringLiteral("仕訳帳_%1_%2-%3.journal")
        .arg(farmer.isEmpty() ? textOf(fmrId) : farmer, from.toString(QStringLiteral("yyyyMM")),
             to.toString(QStringLiteral("yyyyMM")));
}

} // namespace Journal
