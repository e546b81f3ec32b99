#include "rules/books/Ledger.h"

#include "rules/common/Ids.h"
#include "rules/common/Lists.h"
#include "rules/common/Record.h"
#include "store/Database.h"
#include "store/Lookup.h"
#include "store/Recordset.h"

#include <cmath>

namespace Ledger {

namespace {

// L_ACC.DC_KBN of an account whose balance is on the credit side.
constexpr int kCreditSide = 2;
// The largest amount the currency column holds.
constexpr double kMaxAmount = 922337203685477.0;

Stmt likeTerm(const QString &ctr)
{
    return Stmt(" D_LEDGE.CTR_NM LIKE ?").text(QLatin1Char('%') + ctr + QLatin1Char('%'));
}

// The 1 January of the year as typed.
Stmt newYearTerm(const QString &year)
{
    return Stmt(" D_LEDGE.LEDGE_DATE>=?").day(Value(year + QStringLiteral("/01/01")));
}

bool same(const Value &a, const Value &b) { return hasValue(a) && hasValue(b) && a.toDouble() == b.toDouble(); }

} // namespace

bool hasAccount(const Filter &f) { return hasValue(f.accId) && !isNumber(f.accId, 0); }

Stmt listCriteria(const Filter &f)
{
    QVector<Stmt> terms;
    terms << Stmt(" D_LEDGE.FMR_ID=?").num(f.fmrId);
    if (hasAccount(f))
        terms << Stmt("((D_LEDGE.D_ACC_ID=?) OR (D_LEDGE.C_ACC_ID=?))").num(f.accId).num(f.accId);
    if (!f.ctr.isEmpty())
        terms << likeTerm(f.ctr);
    if (!f.from.isEmpty())
        terms << Stmt(" D_LEDGE.LEDGE_DATE>=?").day(Value(f.from));
    if (!f.to.isEmpty())
        terms << Stmt(" D_LEDGE.LEDGE_DATE<=?").day(Value(f.to));
    if (!f.year.isEmpty())
        terms << newYearTerm(f.year);
    return Stmt::joined(terms, QStringLiteral(" AND "));
}

Stmt openingCriteria(const Filter &f, const Value &pgKbn)
{
    QVector<Stmt> terms;
    if (!f.ctr.isEmpty())
        terms << likeTerm(f.ctr);
    if (!f.from.isEmpty())
        terms << Stmt(" D_LEDGE.LEDGE_DATE<?").day(Value(f.from));
    else
        terms << Stmt(" D_LEDGE.LEDGE_DATE IS NULL");
    // Income and expenses start again each year.
    if (!carriedOver(pgKbn))
        terms << newYearTerm(f.year);
    return Stmt::joined(terms, QStringLiteral(" AND "));
}

Stmt listSql(const Stmt &criteria)
{
    return Stmt("SELECT D_LEDGE.* FROM D_LEDGE WHERE ? ORDER BY D_LEDGE.LEDGE_DATE, D_LEDGE.LEDGE_ID").part(criteria);
}

Stmt countSql(const Stmt &criteria)
{
    return Stmt("SELECT COUNT(*), SUM(D_LEDGE.AMT) FROM D_LEDGE WHERE ?").part(criteria);
}

AccountKinds accountKinds(const Value &accId)
{
    const Stmt where = Stmt("ACC_ID=?").num(accId);
    return {gWORK->DLookup(QStringLiteral("DC_KBN"), QStringLiteral("L_ACC"), where),
            gWORK->DLookup(QStringLiteral("PG_KBN"), QStringLiteral("L_ACC"), where)};
}

bool creditNormal(const Value &dcKbn) { return isNumber(dcKbn, kCreditSide); }

bool carriedOver(const Value &pgKbn) { return isNumber(pgKbn, kCarriedOver); }

Currency sideBalance(const Value &dcKbn, Currency debit, Currency credit)
{
    return creditNormal(dcKbn) ? credit - debit : debit - credit;
}

Currency openingBalance(const Value &accId, const Value &dcKbn, const Stmt &criteria)
{
    auto total = [](const Stmt &where) {
        return Nz(gDB->DSUM(QStringLiteral("AMT"), QStringLiteral("D_LEDGE"), where), Value(0)).toCurrency();
    };
    const Currency debit = total(Stmt("? AND D_ACC_ID=?").part(criteria).num(accId));
    const Currency credit = total(Stmt("? AND C_ACC_ID=?").part(criteria).num(accId));
    return sideBalance(dcKbn, debit, credit);
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

Listing readList(const Filter &f, bool ledger)
{
    Listing out;
    if (ledger && !hasAccount(f))
        return out;
    const Stmt criteria = listCriteria(f);
    AccountKinds kinds;
    Currency opening;
    if (ledger) {
        kinds = accountKinds(f.accId);
        opening = openingBalance(f.accId, kinds.dcKbn, openingCriteria(f, kinds.pgKbn));
    }
    RecordsetPtr rs = gDB->GetFwdOnlyRst(listSql(criteria));
    for (; !rs->eof(); rs->MoveNext())
        out.rows.append(rowOf(*rs));
    rs->Close();
    if (ledger)
        out.page = compute(f.accId, kinds.dcKbn, out.rows, opening);
    RecordsetPtr sums = gDB->GetFwdOnlyRst(countSql(criteria));
    if (!sums->eof()) {
        out.counted = true;
        out.count = sums->Fields(0);
        out.sum = sums->Fields(1);
    }
    sums->Close();
    return out;
}

int rowToChoose(const QVector<LedgeRow> &rows, const Value &ledgeId)
{
    if (rows.isEmpty())
        return -1;
    for (int i = 0; i < rows.size(); ++i)
        if (same(rows[i][LedgeCol::LEDGE_ID], ledgeId))
            return i;
    return 0;
}

QString AccountNames::operator()(const Value &accId)
{
    const qint64 key = hasValue(accId) && IsNumeric(accId) ? qint64(accId.toDouble()) : 0;
    if (!mNames)
        mNames = NameTable::accounts();
    return (*mNames)(Value::int32(qint32(key)));
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

QString amountText(Currency c)
{
    // rounded half away from zero to a whole amount
    const double v = c.toDouble();
    const long long whole = (long long)(v < 0 ? -std::floor(-v + 0.5) : std::floor(v + 0.5));
    QString digits = QString::number(whole < 0 ? -whole : whole);
    for (int i = digits.size() - 3; i > 0; i -= 3)
        digits.insert(i, QLatin1Char(','));
    return whole < 0 ? QLatin1Char('-') + digits : digits;
}

QString amountText(const Value &v)
{
    if (!hasValue(v) || !IsNumeric(v))
        return hasValue(v) ? v.toText() : QString();
    return amountText(v.toCurrency());
}

QVector<Choice> farmers()
{
    return readChoices(gMST.get(), Stmt("SELECT M_FMR.FMR_ID, M_FMR.FMR_NM FROM M_FMR WHERE CHK_FLG<>0 ORDER BY FMR_ID"));
}

QVector<Choice> accounts()
{
    return readChoices(gWORK.get(), Stmt("SELECT L_ACC.ACC_ID, L_ACC.ACC_NM FROM L_ACC ORDER BY ACC_ID"));
}

int subAccountKind(const Value &accId)
{
    const Value kind = gWORK->DLookup(QStringLiteral("OPT_KBN"), QStringLiteral("L_ACC"), Stmt("ACC_ID=?").num(accId));
    return int(Nz(kind, Value(0)).toLong());
}

QVector<Choice> subAccounts(int kind, const Value &fmrId)
{
    switch (kind) {
    case OptKbn::Planting:
        return readChoices(gDB.get(),
                       Stmt("SELECT D_PLANT.PLANT_ID, D_PLANT.PLANT_NM FROM D_PLANT WHERE FMR_ID=? ORDER BY PLANT_ID")
                           .num(fmrId));
    case OptKbn::PesticideLot:
        return readChoices(gDB.get(), Stmt("SELECT D_CHEMI.CHEMI_ID, D_CHEMI.CHEMI_NM FROM D_CHEMI WHERE FMR_ID=? AND "
                                       "CHK_FLG<>0 ORDER BY CHEMI_ID")
                                      .num(fmrId));
    default: return {};
    }
}

LedgeRow startSlip(Mode mode, const LedgeRow &source, const Value &fmrId)
{
    using namespace LedgeCol;
    LedgeRow r = source.size() == Count ? source : blankLedgeRow();
    if (mode == Mode::Add) {
        r[FMR_ID] = fmrId;
        r[LEDGE_DATE] = Value(DateUtil::today());
        for (int c : {LEDGE_ID, CTR_NM, D_ACC_ID, C_ACC_ID, D_OPT_ID, C_OPT_ID, D_OPT_NM, C_OPT_NM, AMT, NOTES, UDATE})
            r[c] = Value::null();
    }
    return r;
}

QString readAmount(const QString &text, Value &amount)
{
    if (text.isEmpty()) {
        amount = Value::null();
        return QString();
    }
    double d = 0;
    if (!parseNumber(text, d))
        return QStringLiteral("数値を入力してください。");
    if (std::fabs(d) > kMaxAmount)
        return QStringLiteral("金額が大きすぎます。");
    amount = Value(Currency::fromDouble(d));
    return QString();
}

QString refusal(Mode mode, const LedgeRow &row)
{
    if (mode != Mode::Change && mode != Mode::Delete)
        return QString();
    return ledgeLockMessage(ChkLedgeUse(row[LedgeCol::FMR_ID], row[LedgeCol::LEDGE_ID]), mode == Mode::Delete);
}

namespace {

Stmt slipKey(const LedgeRow &row)
{
    return Stmt("FMR_ID=? AND LEDGE_ID=?").num(row[LedgeCol::FMR_ID]).num(row[LedgeCol::LEDGE_ID]);
}

bool slipSteps(Mode mode, LedgeRow &row, const Value &fmrId, const QString &computer)
{
    using namespace LedgeCol;
    if ((mode == Mode::Change || mode == Mode::Delete) &&
        !claimRow(QStringLiteral("D_LEDGE"), slipKey(row), {row[IDATE], row[UDATE], row[LAST_TM]}))
        return false;
    if (mode == Mode::Add) {
        row[FMR_ID] = fmrId;
        row[LEDGE_ID] = Value(nextLedgeId(fmrId));
    }
    RecordsetPtr rs = gDB->GetDynamicRst(Stmt("SELECT D_LEDGE.* FROM D_LEDGE WHERE D_LEDGE.LEDGE_ID=?").num(row[LEDGE_ID]));
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

} // namespace

bool saveSlip(Mode mode, LedgeRow &row, const Value &fmrId, const QString &computer)
{
    return saveAsOne(row, [&](LedgeRow &w) { return slipSteps(mode, w, fmrId, computer); });
}

bool rereadSlip(LedgeRow &row)
{
    RecordsetPtr rs = gDB->GetFwdOnlyRst(Stmt("SELECT D_LEDGE.* FROM D_LEDGE WHERE ?").part(slipKey(row)));
    if (rs->eof())
        return false;
    row = rowOf(*rs);
    return true;
}

void releaseHolds()
{
    if (gDB)
        gDB->ReleaseData(QStringLiteral("D_LEDGE"), QString());
}

} // namespace Ledger

namespace {
qint32 wholeId(const Value &v) { return v.isNull() ? 0 : v.toLong(); }
} // namespace

qint32 nextLedgeId(const Value &fmrId)
{
    const Value max = gDB->DMax(QStringLiteral("LEDGE_ID"), QStringLiteral("D_LEDGE"), Stmt("FMR_ID=?").num(fmrId));
    return Nz(max, Value(0)).toLong() + 1;
}

int ChkLedgeUse(const Value &fmrId, const Value &ledgeId)
{
    const qint32 farmer = wholeId(fmrId), slip = wholeId(ledgeId);
    auto used = [&](const char *table, const char *column) {
        return gDB->DCount(QStringLiteral("*"), QString::fromLatin1(table),
                           Stmt("FMR_ID=? AND ?=?").num(farmer).name(QString::fromLatin1(column)).num(slip))
                   .toLong() != 0;
    };
    if (used("D_DIARY_DTL", "LEDGE_ID"))
        return 1;
    if (used("D_CHEMI", "LEDGE_ID"))
        return 2;
    if (used("D_SHIP", "LEDGE_ID_S") || used("D_SHIP", "LEDGE_ID_F"))
        return 3;
    return 0;
}

QString ledgeLockMessage(int owner, bool deleting)
{
    const char *where = nullptr;
    switch (owner) {
    case 1: where = "日誌詳細"; break;
    case 2: where = "農薬入力"; break;
    case 3: where = "出荷入力"; break;
    default: return QString();
    }
    return deleting ? QStringLiteral("この伝票は削除できません。%1から削除してください。").arg(QString::fromUtf8(where))
                    : QStringLiteral("この伝票は修正できません。%1から修正してください。").arg(QString::fromUtf8(where));
}
