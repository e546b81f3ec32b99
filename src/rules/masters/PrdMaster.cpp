#include "rules/masters/PrdMaster.h"

#include "store/Database.h"
#include "store/Stmt.h"

#include <cmath>

const ColumnMap<PrdRow> &PrdRow::map()
{
    static const ColumnMap<PrdRow> m{
        {"SHOP_ID", &PrdRow::SHOP_ID},     {"PRD_ID", &PrdRow::PRD_ID},   {"PRD_NM", &PrdRow::PRD_NM},
        {"PRD_OMT", &PrdRow::PRD_OMT},     {"PRD_YM", &PrdRow::PRD_YM},   {"M_CD", &PrdRow::M_CD},
        {"S_CD", &PrdRow::S_CD},           {"PRD_CD", &PrdRow::PRD_CD},   {"PRD_KBN", &PrdRow::PRD_KBN},
        {"REP_KBN", &PrdRow::REP_KBN},     {"NOTES", &PrdRow::NOTES},     {"I_NM", &PrdRow::I_NM},
        {"I_MTLS", &PrdRow::I_MTLS},       {"I_WEIGHT", &PrdRow::I_WEIGHT}, {"I_UNIT", &PrdRow::I_UNIT},
        {"I_PSRV", &PrdRow::I_PSRV},       {"I_TERM", &PrdRow::I_TERM},   {"I_DEF_DAYS", &PrdRow::I_DEF_DAYS},
        {"CHK_FLG", &PrdRow::CHK_FLG},     {"IDATE", &PrdRow::IDATE},     {"UDATE", &PrdRow::UDATE},
        {"LAST_TM", &PrdRow::LAST_TM},     {"HOLD_TM", &PrdRow::HOLD_TM}};
    return m;
}

namespace Prd {

double idOf(const Row &row) { return hasValue(row.PRD_ID) && IsNumeric(row.PRD_ID) ? row.PRD_ID.toDouble() : 0; }

Rows load()
{
    Rows rows;
    RecordsetPtr rs = gMST->GetFwdOnlyRst(QStringLiteral("SELECT M_PRD.* FROM M_PRD ORDER BY PRD_ID"));
    for (; !rs->eof(); rs->MoveNext())
        rows.append(Row::map().read(*rs));
    rs->Close();
    if (rows.isEmpty())
        rows.append(blankRow());
    return rows;
}

int maxId(const Rows &rows)
{
    double most = 0;
    for (const Row &r : rows)
        most = std::max(most, idOf(r));
    return int(most);
}

int indexOf(const Rows &rows, const Value &id)
{
    if (!hasValue(id) || !IsNumeric(id))
        return -1;
    for (int i = 0; i < rows.size(); ++i)
        if (idOf(rows[i]) == id.toDouble())
            return i;
    return -1;
}

bool idTaken(const Rows &rows, int except, double id)
{
    for (int i = 0; i < rows.size(); ++i)
        if (i != except && idOf(rows[i]) == id)
            return true;
    return false;
}

bool passes(const Row &row, const QString &filter)
{
    return filter.isEmpty() || textOf(row.PRD_NM).contains(filter);
}

int addRow(Rows &rows, const Value &shopId)
{
    const int next = maxId(rows) + 1;
    int at = 0;
    if (rows.isEmpty() || idOf(rows[0]) != 0) {
        rows.append(blankRow());
        at = rows.size() - 1;
    }
    rows[at].SHOP_ID = shopId;
    rows[at].PRD_ID = Value::int32(next);
    rows[at].CHK_FLG = Value(true);
    return at;
}

int removeRow(Rows &rows, int index)
{
    if (index < 0 || index >= rows.size())
        return index;
    rows.remove(index);
    if (rows.isEmpty())
        rows.append(blankRow());
    return std::min(index, int(rows.size()) - 1);
}

TypedId checkTypedId(const Rows &rows, int except, const QString &text)
{
    if (text.isEmpty())
        return {Value::null(), QString()};
    if (!IsNumeric(Value(text)))
        return {Value(), QStringLiteral("数値を入力してください。")};
    const double d = Value(text).toDouble();
    // The number is the key of the row: a whole number, or the save would
    // round it onto another row's key.
    if (d < 0 || d != std::floor(d))
        return {Value(), QStringLiteral("商品IDは0以上の整数で入力してください。")};
    if (idTaken(rows, except, d))
        return {Value(), QStringLiteral("商品IDが重複しています。")};
    return {Value::int32(qint64(d)), QString()};
}

void save(const Rows &rows, const QString &computer)
{
    const QDateTime now = DateUtil::now();
    inTransaction(gMST.get(), [&] {
        gMST->EXEC(QStringLiteral("DELETE M_PRD.* FROM M_PRD"));
        // A writing set that finds no row: the table was just emptied.
        RecordsetPtr rs = gMST->GetDynamicRst(
            Stmt("SELECT M_PRD.* FROM M_PRD WHERE PRD_ID=?").num(rows.value(0, blankRow()).PRD_ID));
        for (const Row &r : rows) {
            if (idOf(r) <= 0)
                continue;
            rs->AddNew();
            for (const QString &c : Row::map().names()) {
                const Value &v = Row::map().of(r, c);
                rs->SetField(c, hasValue(v) ? v : Value::null());
            }
            if (!hasValue(r.IDATE))
                rs->SetField(QStringLiteral("IDATE"), Value(now));
            rs->SetField(QStringLiteral("UDATE"), Value(now));
            rs->SetField(QStringLiteral("LAST_TM"), Value(computer));
            rs->SetField(QStringLiteral("HOLD_TM"), Value::null());
            rs->Update();
        }
        rs->Close();
    });
}

}
