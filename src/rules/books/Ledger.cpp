#include "rules/books/Ledger.h"

#include "store/SqlText.h"
#include "rules/diary/BookPage.h"
#include "store/Database.h"
#include "store/Lookup.h"
#include "store/Recordset.h"

#include <QStringList>

namespace Ledger {

namespace {

QString idText(const Value &v) { return Nz(v, Value(0)).toText(); }

// A name goes into the statement between quotes: a quote in it is doubled.
QString likeTerm(const QString &ctr)
{
    return QStringLiteral(" D_LEDGE.CTR_NM LIKE '%") + Sql::escaped(ctr) + QStringLiteral("%'");
}

} // namespace

bool hasAccount(const Filter &f) { return hasValue(f.accId) && !isNumber(f.accId, 0); }

QString listCriteria(const Filter &f)
{
    QStringList terms;
    terms << QStringLiteral(" D_LEDGE.FMR_ID=") + idText(f.fmrId);
    if (hasAccount(f)) {
        const QString id = f.accId.toText();
        terms << QStringLiteral("((D_LEDGE.D_ACC_ID=") + id + QStringLiteral(")") + QStringLiteral(" OR ") +
                     QStringLiteral("(D_LEDGE.C_ACC_ID=") + id + QStringLiteral("))");
    }
    if (!f.ctr.isEmpty())
        terms << likeTerm(f.ctr);
    if (!f.from.isEmpty())
        terms << QStringLiteral(" D_LEDGE.LEDGE_DATE>=#") + f.from + QStringLiteral("#");
    if (!f.to.isEmpty())
        terms << QStringLiteral(" D_LEDGE.LEDGE_DATE<=#") + f.to + QStringLiteral("#");
    if (!f.year.isEmpty())
        terms << QStringLiteral(" D_LEDGE.LEDGE_DATE>=#") + f.year + QStringLiteral("/01/01#");
    return terms.join(QStringLiteral(" AND "));
}

QString openingCriteria(const Filter &f, const Value &pgKbn)
{
    QStringList terms;
    if (!f.ctr.isEmpty())
        terms << likeTerm(f.ctr);
    if (!f.from.isEmpty())
        terms << QStringLiteral(" D_LEDGE.LEDGE_DATE<#") + f.from + QStringLiteral("#");
    else
        terms << QStringLiteral(" D_LEDGE.LEDGE_DATE IS NULL");
    // Income and expenses start again each year; an empty year is sent as
    // it stands, and the statement fails on it.
    if (!isNumber(pgKbn, 1))
        terms << QStringLiteral(" D_LEDGE.LEDGE_DATE>=#") + f.year + QStringLiteral("/01/01#");
    return terms.join(QStringLiteral(" AND "));
}

QString listSql(const QString &criteria)
{
    return QStringLiteral("SELECT D_LEDGE.* FROM D_LEDGE WHERE ") + criteria +
           QStringLiteral(" ORDER BY D_LEDGE.LEDGE_DATE, D_LEDGE.LEDGE_ID");
}

QString countSql(const QString &criteria)
{
    return QStringLiteral("SELECT COUNT(*), SUM(D_LEDGE.AMT) FROM D_LEDGE WHERE ") + criteria;
}

AccountKinds accountKinds(const Value &accId)
{
    const QString where = QStringLiteral("ACC_ID=") + idText(accId);
    return {gWORK->DLookup(QStringLiteral("DC_KBN"), QStringLiteral("L_ACC"), where),
            gWORK->DLookup(QStringLiteral("PG_KBN"), QStringLiteral("L_ACC"), where)};
}

bool creditNormal(const Value &dcKbn) { return isNumber(dcKbn, 2); }

Currency openingBalance(const Value &accId, const Value &dcKbn, const QString &criteria)
{
    const QString id = idText(accId);
    const Currency debit =
        Nz(gDB->DSUM(QStringLiteral("AMT"), QStringLiteral("D_LEDGE"), criteria + QStringLiteral(" AND D_ACC_ID=") + id),
           Value(0))
            .toCurrency();
    const Currency credit =
        Nz(gDB->DSUM(QStringLiteral("AMT"), QStringLiteral("D_LEDGE"), criteria + QStringLiteral(" AND C_ACC_ID=") + id),
           Value(0))
            .toCurrency();
    return creditNormal(dcKbn) ? credit - debit : debit - credit;
}

namespace {
bool same(const Value &a, const Value &b) { return hasValue(a) && hasValue(b) && a.toDouble() == b.toDouble(); }
}

bool raises(const Value &dcKbn, const Value &accId, const LedgeRow &row)
{
    const bool creditSide = same(row[LedgeCol::C_ACC_ID], accId);
    return creditNormal(dcKbn) ? creditSide : !creditSide;
}

Value otherAccount(const Value &accId, const LedgeRow &row)
{
    return same(row[LedgeCol::D_ACC_ID], accId) ? row[LedgeCol::C_ACC_ID] : row[LedgeCol::D_ACC_ID];
}

Page compute(const Value &accId, const Value &dcKbn, const QVector<LedgeRow> &rows, Currency opening)
{
    Page page;
    page.opening = opening;
    Currency balance = opening;
    for (const LedgeRow &r : rows) {
        Line l;
        l.other = otherAccount(accId, r);
        const Currency amt = hasValue(r[LedgeCol::AMT]) ? r[LedgeCol::AMT].toCurrency() : Currency();
        if (raises(dcKbn, accId, r))
            l.first = amt;
        else
            l.second = amt;
        balance = balance + l.first - l.second;
        l.balance = balance;
        page.sumFirst += l.first;
        page.sumSecond += l.second;
        page.lines.append(l);
    }
    page.closing = balance;
    return page;
}

LedgeRow rowOf(const Recordset &rs)
{
    LedgeRow r = blankLedgeRow();
    for (int c = 0; c < LedgeCol::Count; ++c)
        r[c] = rs.Fields(QString::fromLatin1(LedgeCol::Names[c]));
    return r;
}

QString dateText(const Value &v)
{
    if (!hasValue(v))
        return QString();
    if (v.isDateType() || IsDate(v))
        return DateUtil::format(v.toDate(), QStringLiteral("yyyy/MM/dd"));
    return v.toText();
}

QString amountText(const Value &v)
{
    if (!hasValue(v) || !IsNumeric(v))
        return hasValue(v) ? v.toText() : QString();
    return BookPage::amountText(v.toCurrency());
}

bool saveSlip(Mode mode, LedgeRow &row, const Value &fmrId, const QString &computer)
{
    using namespace LedgeCol;
    if (mode == Mode::Add) {
        row[FMR_ID] = fmrId;
        row[LEDGE_ID] = Value(GetNewLedgeId(fmrId));
    }
    RecordsetPtr rs =
        gDB->GetDynamicRst(QStringLiteral("SELECT D_LEDGE.* FROM D_LEDGE WHERE D_LEDGE.LEDGE_ID=") + idText(row[LEDGE_ID]));
    if (mode == Mode::Add) {
        rs->AddNew();
        rs->SetField(QStringLiteral("FMR_ID"), row[FMR_ID]);
        rs->SetField(QStringLiteral("LEDGE_ID"), row[LEDGE_ID]);
        row[IDATE] = Value(DateUtil::now());
        rs->SetField(QStringLiteral("IDATE"), row[IDATE]);
    } else if (mode == Mode::Change || mode == Mode::Delete) {
        if (rs->eof()) {
            rs->Close();
            return false;
        }
        if (mode == Mode::Change) {
            row[UDATE] = Value(DateUtil::now());
            rs->SetField(QStringLiteral("UDATE"), row[UDATE]);
        }
    }
    if (mode == Mode::Add || mode == Mode::Change) {
        for (int c : {LEDGE_DATE, D_ACC_ID, D_OPT_KBN, D_OPT_ID, D_OPT_NM, C_ACC_ID, C_OPT_KBN, C_OPT_ID, C_OPT_NM, CTR_NM,
                      AMT, NOTES})
            rs->SetField(QString::fromLatin1(Names[c]), row[c].isEmpty() ? Value::null() : row[c]);
        row[LAST_TM] = Value(computer);
        row[HOLD_TM] = Value::null();
        rs->SetField(QStringLiteral("LAST_TM"), row[LAST_TM]);
        rs->SetField(QStringLiteral("HOLD_TM"), row[HOLD_TM]);
        rs->Update();
    } else if (mode == Mode::Delete) {
        rs->Delete();
    }
    rs->Close();
    return true;
}

} // namespace Ledger
