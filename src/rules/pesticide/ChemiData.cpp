#include "rules/pesticide/ChemiData.h"

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "store/SqlText.h"
#include "store/Database.h"
#include "store/Lookup.h"

#include <QHash>
#include <QRegularExpression>

#include <cmath>

QVector<ChemiRow> gCHEMI_ROWS;

namespace {

using Member = Value ChemiRow::*;

struct ColumnMember {
    const char *name;
    Member member;
};

const ColumnMember kMembers[] = {
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

const QHash<QString, Member> &memberIndex()
{
    static const QHash<QString, Member> index = [] {
        QHash<QString, Member> h;
        for (const ColumnMember &c : kMembers)
            h.insert(QString::fromLatin1(c.name), c.member);
        return h;
    }();
    return index;
}

Member memberOf(const QString &column)
{
    const Member m = memberIndex().value(column.toUpper(), nullptr);
    if (!m)
        raiseError(VbErr::ItemNotFound, column);
    return m;
}

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

QString dateLiteral(const QDateTime &dt) { return QLatin1Char('#') + DateUtil::sqlText(dt) + QLatin1Char('#'); }

// A typed date as the statement takes it; text that is no date as typed.
QString filterDate(const QString &typed)
{
    QDateTime dt;
    if (DateUtil::parse(typed, dt))
        return DateUtil::format(dt, QStringLiteral("yyyy/MM/dd"));
    return typed;
}

double numberOf(const Value &v) { return hasValue(v) ? v.toDouble() : 0; }

Currency amountOf(const Value &v) { return hasValue(v) ? v.toCurrency() : Currency(); }

} // namespace

ChemiRow::ChemiRow()
{
    for (const ColumnMember &c : kMembers)
        this->*c.member = Value::null();
}

Value &ChemiRow::field(const QString &column) { return this->*memberOf(column); }

const Value &ChemiRow::field(const QString &column) const { return this->*memberOf(column); }

const QStringList &ChemiRow::columns()
{
    static const QStringList all = [] {
        QStringList out;
        for (const ColumnMember &c : kMembers)
            out << QString::fromLatin1(c.name);
        return out;
    }();
    return all;
}

namespace Chemi {

QString listSql(const ListFilter &f)
{
    QStringList criteria{QStringLiteral(" D_CHEMI.FMR_ID=") + Sql::number(f.farmer)};
    if (hasValue(f.uses) && !isNumber(f.uses, 0))
        criteria << QStringLiteral(" D_CHEMI.USES=") + Sql::number(f.uses);
    if (!f.name.isEmpty()) {
        criteria << QStringLiteral(" D_CHEMI.CHEMI_NM LIKE '%") + Sql::escaped(f.name) + QStringLiteral("%'");
    }
    if (!f.dateFrom.isEmpty())
        criteria << QStringLiteral(" D_CHEMI.PUR_DATE>=#") + filterDate(f.dateFrom) + QStringLiteral("#");
    if (!f.dateTo.isEmpty())
        criteria << QStringLiteral(" D_CHEMI.PUR_DATE<=#") + filterDate(f.dateTo) + QStringLiteral("#");
    if (!f.regNo.isEmpty())
        criteria << QStringLiteral(" D_CHEMI.REG_NO=") + Sql::leadingNumber(f.regNo);
    if (f.stock == Stock::InHand)
        criteria << QStringLiteral(" D_CHEMI.REST_QTY>0");
    else if (f.stock == Stock::UsedUp)
        criteria << QStringLiteral(" ((D_CHEMI.REST_QTY<=0) OR (D_CHEMI.REST_QTY IS NULL))");
    return QStringLiteral("SELECT") + QStringLiteral(" D_CHEMI.* ") + QStringLiteral(" FROM D_CHEMI ") +
           QStringLiteral(" WHERE") + criteria.join(QStringLiteral(" AND ")) +
           QStringLiteral(" ORDER BY D_CHEMI.PUR_DATE, D_CHEMI.CHEMI_NM");
}

void loadRows(Recordset &rs)
{
    gCHEMI_ROWS.clear();
    const QStringList &cols = ChemiRow::columns();
    for (; !rs.eof(); rs.MoveNext()) {
        ChemiRow row;
        for (const QString &c : cols)
            row.field(c) = rs.Fields(c);
        gCHEMI_ROWS.append(row);
    }
}

int rowOfChemi(const Value &id)
{
    if (!hasValue(id) || !IsNumeric(id))
        return -1;
    const double want = id.toDouble();
    for (int i = 0; i < gCHEMI_ROWS.size(); ++i) {
        const Value &v = gCHEMI_ROWS[i].CHEMI_ID;
        if (hasValue(v) && IsNumeric(v) && v.toDouble() == want)
            return i;
    }
    return -1;
}

void setChemiData(ChemiRow &r)
{
    const QString regNo = hasValue(r.REG_NO) ? r.REG_NO.toText() : QString();
    RecordsetPtr rs = gWORK->GetFwdOnlyRst(
        QStringLiteral("SELECT L_CHEMI.*, L_MAKER.MAKER_NM, L_KBN.ID AS USES_ID, L_KBN_1.ID AS CHEMI_TYPE_ID") +
        QStringLiteral(" FROM ((L_CHEMI LEFT JOIN L_MAKER ON L_CHEMI.MAKER_OMT = L_MAKER.MAKER_OMT)") +
        QStringLiteral(" LEFT JOIN L_KBN ON L_CHEMI.USES = L_KBN.NOTE)") +
        QStringLiteral(" LEFT JOIN L_KBN AS L_KBN_1 ON L_CHEMI.CHEMI_TYPE = L_KBN_1.NOTE") +
        QStringLiteral(" WHERE L_KBN.KBN=15") + QStringLiteral(" AND L_KBN_1.KBN=16") +
        QStringLiteral(" AND L_CHEMI.REG_NO=") + Sql::leadingNumber(regNo));
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
    const QString where = QStringLiteral("CROP_NM1=") + Sql::quoted(name);
    c.group = Nz(gWORK->DLookup(QStringLiteral("CROP_KBN"), QStringLiteral("L_CROP"), where), Value(QString())).toText();
    c.item = Nz(gWORK->DLookup(QStringLiteral("CROP_NM2"), QStringLiteral("L_CROP"), where), Value(QString())).toText();
    return c;
}

QVector<ApplRow> applications(const Value &regNo, const Crop &crop)
{
    QVector<ApplRow> out;
    RecordsetPtr rs = gWORK->GetFwdOnlyRst(
        QStringLiteral("SELECT DISTINCT L_CHEMI_APPL.TARGET, L_CHEMI_APPL.PURPOSE, L_CHEMI_APPL.DILUTION, "
                       "L_CHEMI_APPL.USE_QTY, L_CHEMI_APPL.SEASON, L_CHEMI_APPL.USE_TIMES, L_CHEMI_APPL.USE_WAY, "
                       "L_CHEMI_APPL_MATCH.CROP_NM, L_CHEMI_APPL_MATCH.CROP_KBN, L_CHEMI_APPL_MATCH.CROP_NM_NG, "
                       "L_CHEMI_APPL_MATCH.CROP_KBN_NG") +
        QStringLiteral(" FROM L_CHEMI_APPL INNER JOIN L_CHEMI_APPL_MATCH ON L_CHEMI_APPL.CROP_NM = "
                       "L_CHEMI_APPL_MATCH.CHEMI_CROP_NM") +
        QStringLiteral(" WHERE L_CHEMI_APPL.REG_NO=") + Sql::leadingNumber(hasValue(regNo) ? regNo.toText() : QString()) +
        // in the order of the distinct rows, the same on every engine
        QStringLiteral(" ORDER BY L_CHEMI_APPL.TARGET, L_CHEMI_APPL.PURPOSE, L_CHEMI_APPL.DILUTION, "
                       "L_CHEMI_APPL.USE_QTY, L_CHEMI_APPL.SEASON, L_CHEMI_APPL.USE_TIMES, L_CHEMI_APPL.USE_WAY, "
                       "L_CHEMI_APPL_MATCH.CROP_NM, L_CHEMI_APPL_MATCH.CROP_KBN, L_CHEMI_APPL_MATCH.CROP_NM_NG, "
                       "L_CHEMI_APPL_MATCH.CROP_KBN_NG"));
    for (; !rs->eof(); rs->MoveNext()) {
        const CropMatch m{textField(*rs, "CROP_NM"), textField(*rs, "CROP_KBN"), textField(*rs, "CROP_NM_NG"),
                          textField(*rs, "CROP_KBN_NG")};
        if (!cropApplies(m, crop))
            continue;
        ApplRow a;
        a.TARGET = rs->Fields(QStringLiteral("TARGET"));
        a.PURPOSE = rs->Fields(QStringLiteral("PURPOSE"));
        a.DILUTION = rs->Fields(QStringLiteral("DILUTION"));
        a.USE_QTY = rs->Fields(QStringLiteral("USE_QTY"));
        a.SEASON = rs->Fields(QStringLiteral("SEASON"));
        a.USE_TIMES = rs->Fields(QStringLiteral("USE_TIMES"));
        a.USE_WAY = rs->Fields(QStringLiteral("USE_WAY"));
        out.append(a);
    }
    rs->Close();
    return out;
}

QString deleteRefusal(const Value &farmer, const Value &chemiId)
{
    const QString key = QStringLiteral("FMR_ID=") + Sql::number(farmer) + QStringLiteral(" AND CHEMI_ID=") +
                        Sql::number(chemiId);
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
    const QString name = slipLotText(r);
    const QString lot = QString::number(StockAccount) + QLatin1Char(',') + QString::number(LotSide) +
                        QLatin1Char(',') + Sql::number(r.CHEMI_ID) + QLatin1Char(',') +
                        (name.isEmpty() ? QStringLiteral("NULL") : Sql::quoted(name));
    const QString money =
        (hasValue(r.ACC_ID) ? Sql::number(r.ACC_ID) : QStringLiteral("NULL")) + QStringLiteral(",0,0,NULL");
    // A purchase puts stock on the debit side; a negative one (a return)
    // turns the sides round and keeps the amount positive.
    const bool purchase = amount > Currency();
    const QString shop = textOf(r.PUR_SHOP);
    const QDateTime now = DateUtil::now();
    QString idate, udate;
    if (mode == Mode::Add) {
        idate = dateLiteral(now);
        udate = QStringLiteral("NULL");
    } else {
        idate = hasValue(r.IDATE) ? dateLiteral(r.IDATE.toDate()) : QStringLiteral("NULL");
        udate = dateLiteral(now);
    }
    return QStringLiteral("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, LEDGE_DATE, D_ACC_ID, D_OPT_KBN, D_OPT_ID, "
                          "D_OPT_NM, C_ACC_ID, C_OPT_KBN, C_OPT_ID, C_OPT_NM, CTR_NM, NOTES, AMT, IDATE, UDATE, "
                          "LAST_TM, HOLD_TM) VALUES (") +
           Sql::number(r.FMR_ID) + QLatin1Char(',') + Sql::number(r.LEDGE_ID) + QLatin1Char(',') +
           dateLiteral(r.PUR_DATE.toDate()) + QLatin1Char(',') + (purchase ? lot : money) + QLatin1Char(',') +
           (purchase ? money : lot) + QLatin1Char(',') + (shop.isEmpty() ? QStringLiteral("NULL") : Sql::quoted(shop)) +
           QLatin1Char(',') + Sql::quoted(textOf(r.NOTES)) + QLatin1Char(',') +
           (purchase ? amount : -amount).toString() + QLatin1Char(',') + idate + QLatin1Char(',') + udate +
           QLatin1Char(',') + Sql::quoted(computer) + QStringLiteral(",NULL)");
}

bool saveLot(Mode mode, ChemiRow &r, const QString &computer)
{
    // 1. a new lot takes the next number over all farmers
    if (mode == Mode::Add) {
        r.FMR_ID = gFMR_ID;
        const Value max = gDB->DMax(QStringLiteral("CHEMI_ID"), QStringLiteral("D_CHEMI"));
        r.CHEMI_ID = Value::int32(qint64(Nz(max, Value(0)).toDouble()) + 1);
    }
    const auto slipKey = [&r] {
        return QStringLiteral("FMR_ID=") + Sql::number(r.FMR_ID) + QStringLiteral(" AND LEDGE_ID=") +
               Sql::number(r.LEDGE_ID);
    };
    // 2. the old purchase slip goes
    if ((mode == Mode::Change || mode == Mode::Delete) && numberOf(r.LEDGE_ID) > 0)
        gDB->EXEC(QStringLiteral("DELETE D_LEDGE.* FROM D_LEDGE WHERE ") + slipKey());
    // 3. the new one, for a purchase with a date
    if ((mode == Mode::Add || mode == Mode::Change) && hasValue(r.PUR_DATE)) {
        if (amountOf(r.PUR_AMT) == Currency()) {
            r.LEDGE_ID = Value(0);
        } else {
            if (numberOf(r.LEDGE_ID) == 0)
                r.LEDGE_ID = Value(GetNewLedgeId(r.FMR_ID));
            // A copied lot keeps the number of its model's slip, which the
            // slip table takes only once per farmer.
            if (Nz(gDB->DCount(QStringLiteral("*"), QStringLiteral("D_LEDGE"), slipKey()), Value(0)).toDouble() != 0)
                throw AppError(VbErr::InvalidCall,
                               QStringLiteral("伝票番号%1は既に他の伝票に使われているため、購入の伝票を登録できません。")
                                   .arg(Sql::number(r.LEDGE_ID)));
            gDB->EXEC(purchaseSlipSql(mode, r, computer));
        }
    }
    // 4. the lot
    RecordsetPtr rs = gDB->GetDynamicRst(QStringLiteral("SELECT D_CHEMI.* FROM D_CHEMI WHERE D_CHEMI.CHEMI_ID=") +
                                         Sql::number(r.CHEMI_ID));
    if (mode == Mode::Add) {
        rs->AddNew();
        rs->SetField(QStringLiteral("FMR_ID"), r.FMR_ID);
        rs->SetField(QStringLiteral("CHEMI_ID"), r.CHEMI_ID);
        rs->SetField(QStringLiteral("IDATE"), Value(DateUtil::now()));
    } else if (mode == Mode::Change || mode == Mode::Delete) {
        if (rs->eof()) {
            rs->Close();
            return false;
        }
        if (mode == Mode::Change)
            rs->SetField(QStringLiteral("UDATE"), Value(DateUtil::now()));
    }
    if (mode == Mode::Add || mode == Mode::Change) {
        gLAST_CHEMI_ID = r.CHEMI_ID;
        for (const char *c : {"CHEMI_NM", "REG_NO", "USES", "MAKER_NM", "CHEMI_TYPE", "CHEMI_KIND", "PUR_DATE",
                              "PUR_SHOP"})
            rs->SetField(QString::fromLatin1(c), r.field(QString::fromLatin1(c)));
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
        rs->SetField(QStringLiteral("LAST_TM"), Value(computer));
        rs->SetField(QStringLiteral("HOLD_TM"), Value::null());
        rs->Update();
    } else if (mode == Mode::Delete) {
        rs->Delete();
    }
    rs->Close();
    return true;
}

} // namespace Chemi
