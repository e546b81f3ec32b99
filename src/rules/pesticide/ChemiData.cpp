#include "rules/pesticide/ChemiData.h"

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "rules/common/Ids.h"
#include "rules/common/Lists.h"
#include "store/Database.h"
#include "rules/books/Ledger.h"
#include "store/Lookup.h"
#include "store/Stmt.h"

#include <cmath>

namespace {

// The items of a "," list, or none for an empty column.
bool listHas(const QString &list, const QString &a, const QString *b = nullptr)
{
    if (list.isEmpty())
        return false;
    for (const QString &item : list.split(QLatin1Char(',')))
        if (item == a || (b && item == *b))
            return true;
    return false;
}

QString textField(const Recordset &rs, const char *column)
{
    return Nz(rs.Fields(QString::fromLatin1(column)), Value(QString())).toText();
}

// A registration number as the register is searched by it: the leading
// number of what was typed, as a number typed into a code field is read
// (第123号 and an empty number are 0, which no pesticide has).
Value regNumber(const QString &typed) { return Value(leadingNumber(typed)); }

// A typed purchase date of the list's filter. The filter's boxes let only
// dates the tables can hold through; anything else is the date error.
QDateTime filterDay(const QString &typed)
{
    QDateTime d;
    if (!DateUtil::parseStorable(typed, d))
        raiseError(VbErr::DateSyntax, typed);
    return d;
}

// A number as typed ("１２", "1,200") kept as its value; none for other text.
Value numberOrNull(const QString &t)
{
    double d;
    if (t.isEmpty() || !parseNumber(t, d) || !std::isfinite(d))
        return Value::null();
    return Value(d);
}

// A date the data tables can hold; none for other text.
Value dateOrNull(const QString &t)
{
    QDateTime dt;
    if (!DateUtil::parseStorable(t, dt))
        return Value::null();
    return Value(dt);
}

double numberOf(const Value &v) { return hasValue(v) ? v.toDouble() : 0; }

Currency amountOf(const Value &v) { return hasValue(v) ? v.toCurrency() : Currency(); }

} // namespace

ChemiRow::ChemiRow()
{
    for (const QString &c : map().names())
        map().of(*this, c) = Value::null();
}

const ColumnMap<ChemiRow> &ChemiRow::map()
{
    static const ColumnMap<ChemiRow> m{
        {"FMR_ID", &ChemiRow::FMR_ID},         {"CHEMI_ID", &ChemiRow::CHEMI_ID},
        {"CHEMI_NM", &ChemiRow::CHEMI_NM},     {"REG_NO", &ChemiRow::REG_NO},
        {"USES", &ChemiRow::USES},             {"MAKER_NM", &ChemiRow::MAKER_NM},
        {"CHEMI_TYPE", &ChemiRow::CHEMI_TYPE}, {"CHEMI_KIND", &ChemiRow::CHEMI_KIND},
        {"PUR_DATE", &ChemiRow::PUR_DATE},     {"PUR_SHOP", &ChemiRow::PUR_SHOP},
        {"PUR_QTY", &ChemiRow::PUR_QTY},       {"PUR_UNIT", &ChemiRow::PUR_UNIT},
        {"ACC_ID", &ChemiRow::ACC_ID},         {"PUR_AMT", &ChemiRow::PUR_AMT},
        {"USED_QTY", &ChemiRow::USED_QTY},     {"REST_QTY", &ChemiRow::REST_QTY},
        {"NOTES", &ChemiRow::NOTES},           {"LEDGE_ID", &ChemiRow::LEDGE_ID},
        {"CHK_FLG", &ChemiRow::CHK_FLG},       {"IDATE", &ChemiRow::IDATE},
        {"UDATE", &ChemiRow::UDATE},           {"LAST_TM", &ChemiRow::LAST_TM},
        {"HOLD_TM", &ChemiRow::HOLD_TM},
    };
    return m;
}

const ColumnMap<ApplRow> &ApplRow::map()
{
    static const ColumnMap<ApplRow> m{
        {"TARGET", &ApplRow::TARGET}, {"PURPOSE", &ApplRow::PURPOSE},     {"DILUTION", &ApplRow::DILUTION},
        {"USE_QTY", &ApplRow::USE_QTY}, {"SEASON", &ApplRow::SEASON}, {"USE_TIMES", &ApplRow::USE_TIMES},
        {"USE_WAY", &ApplRow::USE_WAY},
    };
    return m;
}

namespace Chemi {

// ---------------------------------------------------------------- lists offered

QVector<Choice> uses() { return readChoices(gWORK.get(), QStringLiteral("SELECT L_KBN.ID, L_KBN.NM FROM L_KBN WHERE KBN=15 ORDER BY L_KBN.ID"), QStringLiteral("ID"), QStringLiteral("NM")); }

QVector<Choice> formulations()
{
    return readChoices(gWORK.get(), QStringLiteral("SELECT L_KBN.ID, L_KBN.NM FROM L_KBN WHERE KBN=16 ORDER BY L_KBN.ID"), QStringLiteral("ID"), QStringLiteral("NM"));
}

QVector<Choice> units()
{
    return readChoices(gWORK.get(), QStringLiteral("SELECT L_CHEMI_UNIT.ID, L_CHEMI_UNIT.NM FROM L_CHEMI_UNIT ORDER BY L_CHEMI_UNIT.ID"), QStringLiteral("ID"), QStringLiteral("NM"));
}

QStringList crops()
{
    QStringList out;
    RecordsetPtr rs =
        gWORK->GetFwdOnlyRst(QStringLiteral("SELECT L_CROP.CROP_NM1 FROM L_CROP ORDER BY L_CROP.CROP_NM1"));
    for (; !rs->eof(); rs->MoveNext())
        out << textField(*rs, "CROP_NM1");
    rs->Close();
    return out;
}

// ---------------------------------------------------------------- the list

QString listSql(const ListFilter &f)
{
    QVector<Stmt> criteria{Stmt(" D_CHEMI.FMR_ID=?").num(f.farmer)};
    if (hasValue(f.uses) && !isNumber(f.uses, 0))
        criteria << Stmt(" D_CHEMI.USES=?").num(f.uses);
    if (!f.name.isEmpty())
        criteria << Stmt(" D_CHEMI.CHEMI_NM LIKE ?").text(QLatin1Char('%') + f.name + QLatin1Char('%'));
    if (!f.dateFrom.isEmpty())
        criteria << Stmt(" D_CHEMI.PUR_DATE>=?").day(filterDay(f.dateFrom));
    if (!f.dateTo.isEmpty())
        criteria << Stmt(" D_CHEMI.PUR_DATE<=?").day(filterDay(f.dateTo));
    if (!f.regNo.isEmpty())
        criteria << Stmt(" D_CHEMI.REG_NO=?").num(regNumber(f.regNo));
    if (f.stock == Stock::InHand)
        criteria << Stmt(" D_CHEMI.REST_QTY>0");
    else if (f.stock == Stock::UsedUp)
        criteria << Stmt(" ((D_CHEMI.REST_QTY<=0) OR (D_CHEMI.REST_QTY IS NULL))");
    return Stmt("SELECT D_CHEMI.*  FROM D_CHEMI  WHERE? ORDER BY D_CHEMI.PUR_DATE, D_CHEMI.CHEMI_NM")
        .part(Stmt::joined(criteria, QStringLiteral(" AND ")));
}

QVector<ChemiRow> readLots(const ListFilter &f)
{
    QVector<ChemiRow> rows;
    RecordsetPtr rs = gDB->GetFwdOnlyRst(listSql(f));
    for (; !rs->eof(); rs->MoveNext())
        rows.append(ChemiRow::map().read(*rs));
    rs->Close();
    return rows;
}

QStringList listLine(const ChemiRow &r, const NameTable &uses)
{
    return {textOf(r.CHEMI_ID), uses(r.USES),    textOf(r.CHEMI_NM),  textOf(r.REG_NO),
            DateUtil::dayText(r.PUR_DATE), textOf(r.PUR_QTY), textOf(r.USED_QTY), textOf(r.REST_QTY)};
}

int rowOfChemi(const QVector<ChemiRow> &rows, const Value &id)
{
    if (!hasValue(id) || !IsNumeric(id))
        return -1;
    const double want = id.toDouble();
    for (int i = 0; i < rows.size(); ++i) {
        const Value &v = rows[i].CHEMI_ID;
        if (hasValue(v) && IsNumeric(v) && v.toDouble() == want)
            return i;
    }
    return -1;
}

// ---------------------------------------------------------------- the entry

ChemiRow openRecord(Mode mode, const ChemiRow &row, const Value &farmer)
{
    ChemiRow r = row;
    if (mode == Mode::Add) {
        // A copy is a new lot of the same pesticide: a new purchase date,
        // and the whole quantity in hand. The slip's number and the day the
        // model was made stay with it.
        r.FMR_ID = farmer;
        r.CHEMI_ID = r.PUR_DATE = r.USED_QTY = r.REST_QTY = r.UDATE = Value::null();
        r.CHK_FLG = Value(1);
    }
    return r;
}

bool registered(const ChemiRow &r) { return !textOf(r.REG_NO).isEmpty(); }

void leaveBox(ChemiRow &r, int box, const QString &text)
{
    switch (box) {
    case RegNoBox:
        r.REG_NO = textOrNull(text);
        setChemiData(r);
        break;
    case NameBox: r.CHEMI_NM = textOrNull(text); break;
    case KindBox: r.CHEMI_KIND = textOrNull(text); break;
    case MakerBox: r.MAKER_NM = textOrNull(text); break;
    case ShopBox: r.PUR_SHOP = textOrNull(text); break;
    case NotesBox: r.NOTES = textOrNull(text); break;
    case DateBox: r.PUR_DATE = dateOrNull(text); break;
    case QtyBox:
        r.PUR_QTY = numberOrNull(text);
        computeRest(r);
        break;
    case AmountBox: r.PUR_AMT = numberOrNull(text); break;
    default: break;
    }
}

void leaveList(ChemiRow &r, int list, const Value &id)
{
    switch (list) {
    case UsesList: r.USES = id; break;
    case TypeList: r.CHEMI_TYPE = id; break;
    case UnitList: r.PUR_UNIT = id; break;
    default: break;
    }
}

Refusal check(ChemiRow &r, Mode mode)
{
    if (mode == Mode::Delete)
        return {deleteRefusal(r.FMR_ID, r.CHEMI_ID), -1};
    computeRest(r);
    if (textOf(r.CHEMI_NM).isEmpty())
        return {QStringLiteral("名称は必須入力です。"), NameBox};
    // A purchase that makes a slip must say what it was paid from: a slip
    // with one side only would leave the books out of balance.
    const bool slip = hasValue(r.PUR_DATE) && amountOf(r.PUR_AMT) != Currency();
    if (slip && !isNumber(r.ACC_ID, Acc::Cash) && !isNumber(r.ACC_ID, Acc::Payable))
        return {QStringLiteral("支払方法（現金または買掛）を選択してください。"), -1};
    return {};
}

void setChemiData(ChemiRow &r)
{
    RecordsetPtr rs = gWORK->GetFwdOnlyRst(
        Stmt("SELECT L_CHEMI.*, L_MAKER.MAKER_NM, L_KBN.ID AS USES_ID, L_KBN_1.ID AS CHEMI_TYPE_ID"
             " FROM ((L_CHEMI LEFT JOIN L_MAKER ON L_CHEMI.MAKER_OMT = L_MAKER.MAKER_OMT)"
             " LEFT JOIN L_KBN ON L_CHEMI.USES = L_KBN.NOTE)"
             " LEFT JOIN L_KBN AS L_KBN_1 ON L_CHEMI.CHEMI_TYPE = L_KBN_1.NOTE"
             " WHERE L_KBN.KBN=15 AND L_KBN_1.KBN=16 AND L_CHEMI.REG_NO=?")
            .num(regNumber(textOf(r.REG_NO))));
    if (rs->eof()) {
        r.CHEMI_NM = r.CHEMI_KIND = r.MAKER_NM = r.CHEMI_TYPE = r.USES = Value::null();
    } else {
        r.CHEMI_NM = Value(toWide(textField(*rs, "CHEMI_NM")));
        r.CHEMI_KIND = Value(toWide(textField(*rs, "CHEMI_KIND")));
        r.MAKER_NM = Value(textField(*rs, "MAKER_NM"));
        r.CHEMI_TYPE = Nz(rs->Fields(QStringLiteral("CHEMI_TYPE_ID")), Value(0));
        r.USES = Nz(rs->Fields(QStringLiteral("USES_ID")), Value(0));
    }
    rs->Close();
}

bool cropApplies(const CropMatch &m, const Crop &crop)
{
    const bool nameAllowed = listHas(m.names, crop.name, &crop.item);
    const bool groupAllowed = listHas(m.groups, crop.group);
    // The exclusion by name looks at the item name alone.
    const bool nameExcluded = listHas(m.namesNg, crop.item);
    const bool groupExcluded = listHas(m.groupsNg, crop.group);
    return (nameAllowed || groupAllowed) && !nameExcluded && !groupExcluded;
}

Crop cropOf(const QString &name)
{
    Crop c;
    c.name = name;
    const QString where = Stmt("CROP_NM1=?").text(name);
    c.group = Nz(gWORK->DLookup(QStringLiteral("CROP_KBN"), QStringLiteral("L_CROP"), where), Value(QString())).toText();
    c.item = Nz(gWORK->DLookup(QStringLiteral("CROP_NM2"), QStringLiteral("L_CROP"), where), Value(QString())).toText();
    return c;
}

QVector<ApplRow> applications(const Value &regNo, const Crop &crop)
{
    QVector<ApplRow> out;
    RecordsetPtr rs = gWORK->GetFwdOnlyRst(
        Stmt("SELECT DISTINCT L_CHEMI_APPL.TARGET, L_CHEMI_APPL.PURPOSE, L_CHEMI_APPL.DILUTION, "
             "L_CHEMI_APPL.USE_QTY, L_CHEMI_APPL.SEASON, L_CHEMI_APPL.USE_TIMES, L_CHEMI_APPL.USE_WAY, "
             "L_CHEMI_APPL_MATCH.CROP_NM, L_CHEMI_APPL_MATCH.CROP_KBN, L_CHEMI_APPL_MATCH.CROP_NM_NG, "
             "L_CHEMI_APPL_MATCH.CROP_KBN_NG"
             " FROM L_CHEMI_APPL INNER JOIN L_CHEMI_APPL_MATCH ON L_CHEMI_APPL.CROP_NM = "
             "L_CHEMI_APPL_MATCH.CHEMI_CROP_NM"
             " WHERE L_CHEMI_APPL.REG_NO=?"
             // in the order of the distinct rows, the same on every engine
             " ORDER BY L_CHEMI_APPL.TARGET, L_CHEMI_APPL.PURPOSE, L_CHEMI_APPL.DILUTION, "
             "L_CHEMI_APPL.USE_QTY, L_CHEMI_APPL.SEASON, L_CHEMI_APPL.USE_TIMES, L_CHEMI_APPL.USE_WAY, "
             "L_CHEMI_APPL_MATCH.CROP_NM, L_CHEMI_APPL_MATCH.CROP_KBN, L_CHEMI_APPL_MATCH.CROP_NM_NG, "
             "L_CHEMI_APPL_MATCH.CROP_KBN_NG")
            .num(regNumber(textOf(regNo))));
    for (; !rs->eof(); rs->MoveNext()) {
        const CropMatch m{textField(*rs, "CROP_NM"), textField(*rs, "CROP_KBN"), textField(*rs, "CROP_NM_NG"),
                          textField(*rs, "CROP_KBN_NG")};
        if (!cropApplies(m, crop))
            continue;
        out.append(ApplRow::map().read(*rs));
    }
    rs->Close();
    return out;
}

QVector<ApplRow> applicationsFor(const ChemiRow &r, const QString &crop)
{
    if (!registered(r) || crop.isEmpty())
        return {};
    return applications(r.REG_NO, cropOf(crop));
}

QStringList applTexts(const ApplRow &a)
{
    const auto t = [](const Value &v) { return Nz(v, Value(QString())).toText(); };
    return {t(a.TARGET) + t(a.PURPOSE), t(a.DILUTION) + t(a.USE_QTY), t(a.SEASON),
            t(a.USE_TIMES) + QLatin1Char(' ') + t(a.USE_WAY)};
}

QString deleteRefusal(const Value &farmer, const Value &chemiId)
{
    const QString key = Stmt("FMR_ID=? AND CHEMI_ID=?").num(farmer).num(chemiId);
    if (Nz(gDB->DCount(QStringLiteral("*"), QStringLiteral("D_DIARY_DTL"), key), Value(0)).toDouble() == 0)
        return QString();
    const Value day = gDB->DMin(QStringLiteral("WORK_DATE"), QStringLiteral("D_DIARY_DTL"), key);
    return QStringLiteral("この農薬は") + DateUtil::format(day.toDate(), QStringLiteral("M/d")) +
           QStringLiteral("に使用されています。削除できません。");
}

void computeRest(ChemiRow &r)
{
    if (!hasValue(r.PUR_QTY))
        r.REST_QTY = Value::null();
    else
        r.REST_QTY = Value(r.PUR_QTY.toDouble() - numberOf(r.USED_QTY));
}

QString slipLotText(const ChemiRow &r)
{
    const QString qty = hasValue(r.PUR_QTY) ? QString::number(r.PUR_QTY.toDouble(), 'f', 1) : QString();
    return qty + GetChemiUnitNm(r.PUR_UNIT);
}

QString purchaseSlipSql(Mode mode, const ChemiRow &r, const QString &computer)
{
    const Currency amount = amountOf(r.PUR_AMT);
    if (amount == Currency())
        return QString();
    // The lot's side: the stock account, named by the lot with its quantity;
    // the money's side: the account paid from.
    const Stmt lot = Stmt("?,?,?,?")
                         .num(Acc::PesticideStock)
                         .num(OptKbn::PesticideLot)
                         .num(r.CHEMI_ID)
                         .textOrNull(Value(slipLotText(r)));
    const Stmt money = Stmt("?,?,?,NULL").numOrNull(r.ACC_ID).num(OptKbn::None).num(0);
    // A purchase puts stock on the debit side; a negative one (a return)
    // turns the sides round and keeps the amount positive.
    const bool purchase = amount > Currency();
    Stmt s("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, LEDGE_DATE, D_ACC_ID, D_OPT_KBN, D_OPT_ID, D_OPT_NM, C_ACC_ID, "
           "C_OPT_KBN, C_OPT_ID, C_OPT_NM, CTR_NM, NOTES, AMT, IDATE, UDATE, LAST_TM, HOLD_TM) "
           "VALUES (?,?,?,?,?,?,?,?,?,?,?,NULL)");
    s.num(r.FMR_ID)
        .num(r.LEDGE_ID)
        .time(r.PUR_DATE)
        .part(purchase ? lot : money)
        .part(purchase ? money : lot)
        .textOrNull(r.PUR_SHOP)
        .text(textOf(r.NOTES))
        .amount(purchase ? amount : -amount);
    const QDateTime now = DateUtil::now();
    if (mode == Mode::Add)
        s.time(now).part(Stmt("NULL"));
    else
        s.timeOrNull(r.IDATE).time(now);
    return s.text(computer);
}

namespace {

Stmt lotKey(const ChemiRow &r) { return Stmt("CHEMI_ID=?").num(r.CHEMI_ID); }

bool lotSteps(Mode mode, ChemiRow &r, const QString &computer)
{
    if ((mode == Mode::Change || mode == Mode::Delete) && !claimRow(QStringLiteral("D_CHEMI"), lotKey(r), stampsOf(r)))
        return false;
    // 1. a new lot takes the next number over all farmers
    if (mode == Mode::Add) {
        r.FMR_ID = gFMR_ID;
        const Value max = gDB->DMax(QStringLiteral("CHEMI_ID"), QStringLiteral("D_CHEMI"));
        r.CHEMI_ID = Value::int32(qint64(Nz(max, Value(0)).toDouble()) + 1);
    }
    // 2. the old purchase slip goes
    if ((mode == Mode::Change || mode == Mode::Delete) && numberOf(r.LEDGE_ID) > 0)
        gDB->EXEC(Stmt("DELETE D_LEDGE.* FROM D_LEDGE WHERE FMR_ID=? AND LEDGE_ID=?").num(r.FMR_ID).num(r.LEDGE_ID));
    // 3. the new one, for a purchase with a date
    if ((mode == Mode::Add || mode == Mode::Change) && hasValue(r.PUR_DATE)) {
        if (amountOf(r.PUR_AMT) == Currency()) {
            r.LEDGE_ID = Value(0);
        } else {
            if (numberOf(r.LEDGE_ID) == 0)
                r.LEDGE_ID = Value(nextLedgeId(r.FMR_ID));
            // A copied lot keeps the number of its model's slip, which the
            // slip table takes only once per farmer.
            const QString slipKey = Stmt("FMR_ID=? AND LEDGE_ID=?").num(r.FMR_ID).num(r.LEDGE_ID);
            if (Nz(gDB->DCount(QStringLiteral("*"), QStringLiteral("D_LEDGE"), slipKey), Value(0)).toDouble() != 0)
                throw AppError(VbErr::InvalidCall,
                               QStringLiteral("伝票番号%1は既に他の伝票に使われているため、購入の伝票を登録できません。")
                                   .arg(textOf(r.LEDGE_ID)));
            gDB->EXEC(purchaseSlipSql(mode, r, computer));
        }
    }
    // 4. the lot
    RecordsetPtr rs =
        gDB->GetDynamicRst(Stmt("SELECT D_CHEMI.* FROM D_CHEMI WHERE D_CHEMI.CHEMI_ID=?").num(r.CHEMI_ID));
    if (!beginSave(*rs, mode, {{QStringLiteral("FMR_ID"), r.FMR_ID}, {QStringLiteral("CHEMI_ID"), r.CHEMI_ID}})) {
        rs->Close();
        return false;
    }
    if (mode == Mode::Add || mode == Mode::Change) {
        gLAST_CHEMI_ID = r.CHEMI_ID;
        ChemiRow::map().write(*rs, r,
                              {"CHEMI_NM", "REG_NO", "USES", "MAKER_NM", "CHEMI_TYPE", "CHEMI_KIND", "PUR_DATE",
                               "PUR_SHOP"});
        rs->SetField(QStringLiteral("PUR_QTY"), Value(numberOf(r.PUR_QTY)));
        rs->SetField(QStringLiteral("PUR_UNIT"), r.PUR_UNIT);
        rs->SetField(QStringLiteral("ACC_ID"), r.ACC_ID);
        // No default for the amount: a lot without one stops here, unwritten.
        rs->SetField(QStringLiteral("PUR_AMT"), Value(r.PUR_AMT.toCurrency()));
        rs->SetField(QStringLiteral("USED_QTY"), Value(numberOf(r.USED_QTY)));
        rs->SetField(QStringLiteral("REST_QTY"), Value(numberOf(r.REST_QTY)));
        rs->SetField(QStringLiteral("LEDGE_ID"), r.LEDGE_ID);
        rs->SetField(QStringLiteral("NOTES"), r.NOTES);
        rs->SetField(QStringLiteral("CHK_FLG"), Value(hasValue(r.CHK_FLG) ? r.CHK_FLG.toBool() : true));
    }
    endSave(*rs, mode, computer);
    if (mode == Mode::Add || mode == Mode::Change)
        ChemiRow::map().read(*rs, r, stampColumns());
    rs->Close();
    return true;
}

} // namespace

bool saveLot(Mode mode, ChemiRow &r, const QString &computer)
{
    // The purchase amount as the books will hold it, before anything is
    // written: beyond their range it is the overflow error.
    if (mode == Mode::Add || mode == Mode::Change)
        amountOf(r.PUR_AMT);
    return saveAsOne(r, [&](ChemiRow &w) { return lotSteps(mode, w, computer); });
}

bool rereadLot(ChemiRow &r) { return rereadRow(r, QStringLiteral("D_CHEMI"), lotKey(r)); }

} // namespace Chemi
