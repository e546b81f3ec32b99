#include "rules/masters/PrdMaster.h"

#include "store/SqlText.h"
#include "store/Database.h"

namespace Prd {

const char *const Names[Count] = {"SHOP_ID", "PRD_ID",  "PRD_NM",   "PRD_OMT", "PRD_YM",  "M_CD",       "S_CD",
                                  "PRD_CD",  "PRD_KBN", "REP_KBN",  "NOTES",   "I_NM",    "I_MTLS",     "I_WEIGHT",
                                  "I_UNIT",  "I_PSRV",  "I_TERM",   "I_DEF_DAYS", "CHK_FLG", "IDATE",   "UDATE",
                                  "LAST_TM", "HOLD_TM"};

double idOf(const Row &row) { return hasValue(row[PRD_ID]) && IsNumeric(row[PRD_ID]) ? row[PRD_ID].toDouble() : 0; }

Rows load()
{
    Rows rows;
    RecordsetPtr rs = gMST->GetFwdOnlyRst(QStringLiteral("SELECT M_PRD.* FROM M_PRD ORDER BY PRD_ID"));
    for (; !rs->eof(); rs->MoveNext()) {
        Row r = blankRow();
        for (int c = 0; c < Count; ++c)
            r[c] = rs->Fields(QString::fromLatin1(Names[c]));
        rows.append(r);
    }
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
    return filter.isEmpty() || textOf(row[PRD_NM]).contains(filter);
}

int addRow(Rows &rows, const Value &shopId)
{
    const int next = maxId(rows) + 1;
    int at = 0;
    if (rows.isEmpty() || idOf(rows[0]) != 0) {
        rows.append(blankRow());
        at = rows.size() - 1;
    }
    rows[at][SHOP_ID] = shopId;
    rows[at][PRD_ID] = Value::int32(next);
    rows[at][CHK_FLG] = Value(true);
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

void save(const Rows &rows, const QString &computer)
{
    const QDateTime now = DateUtil::now();
    inTransaction(gMST.get(), [&] {
        gMST->EXEC(QStringLiteral("DELETE M_PRD.* FROM M_PRD"));
        // A writing set that finds no row: the table was just emptied.
        RecordsetPtr rs = gMST->GetDynamicRst(QStringLiteral("SELECT M_PRD.* FROM M_PRD WHERE PRD_ID=") +
                                              Sql::number(rows.value(0, blankRow())[PRD_ID]));
        for (const Row &r : rows) {
            if (idOf(r) <= 0)
                continue;
            rs->AddNew();
            for (int c = 0; c < Count; ++c)
                rs->SetField(QString::fromLatin1(Names[c]), hasValue(r[c]) ? r[c] : Value::null());
            if (!hasValue(r[IDATE]))
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
