#include "store/Lookup.h"

#include "store/Database.h"
#include "base/AppError.h"
#include "store/Stmt.h"

// Where each kind of name is kept: the database, the statement that looks
// one up by its id, and the one that reads them all (id, name).
struct NameSource {
    DbObject *(*db)();
    const char *oneSql;
    const char *allSql;
};

namespace {

DbObject *work() { return gWORK.get(); }
DbObject *master() { return gMST.get(); }

const NameSource kKinds15{work, "SELECT L_KBN.NM FROM L_KBN WHERE L_KBN.KBN=15 AND L_KBN.ID=?",
                          "SELECT L_KBN.ID, L_KBN.NM FROM L_KBN WHERE L_KBN.KBN=15"};
const NameSource kAccounts{work, "SELECT L_ACC.ACC_NM FROM L_ACC WHERE L_ACC.ACC_ID=?",
                           "SELECT L_ACC.ACC_ID, L_ACC.ACC_NM FROM L_ACC"};
const NameSource kFarmers{master, "SELECT M_FMR.FMR_NM FROM M_FMR WHERE M_FMR.FMR_ID=?", nullptr};
const NameSource kShops{master, "SELECT M_SHOP.SHOP_NM FROM M_SHOP WHERE M_SHOP.SHOP_ID=?",
                        "SELECT M_SHOP.SHOP_ID, M_SHOP.SHOP_NM FROM M_SHOP"};
const NameSource kUnits{work, "SELECT  L_CHEMI_UNIT.NM  FROM L_CHEMI_UNIT  WHERE ID=?",
                        "SELECT L_CHEMI_UNIT.ID, L_CHEMI_UNIT.NM FROM L_CHEMI_UNIT"};

DbObject *openDb(const NameSource &src)
{
    DbObject *db = src.db();
    if (!db)
        raiseError(91, QStringLiteral("オブジェクト変数が設定されていません。"));
    return db;
}

// The key a name is looked up by: a whole number (Null counts 0, text that
// is no number raises the type error).
qint32 keyOf(const Value &id) { return id.isNull() ? 0 : id.toLong(); }

// The name of the first row for the id; "" when none.
QString nameById(const NameSource &src, const Value &id)
{
    const qint32 key = keyOf(id);
    RecordsetPtr rs = openDb(src)->GetFwdOnlyRst(Stmt(src.oneSql).num(key));
    if (rs->eof())
        return QString();
    return Nz(rs->Fields(0), Value(QString())).toText();
}

} // namespace

NameTable::NameTable(const NameSource &src)
{
    RecordsetPtr rs = openDb(src)->GetFwdOnlyRst(QString::fromLatin1(src.allSql));
    for (; !rs->eof(); rs->MoveNext()) {
        const Value id = rs->Fields(0);
        if (!hasValue(id) || !IsNumeric(id))
            continue;
        const double n = id.toDouble();
        if (n != qint32(n) || mNames.contains(qint32(n)))
            continue; // the first row of an id, as its look-up finds it
        mNames.insert(qint32(n), Nz(rs->Fields(1), Value(QString())).toText());
    }
}

QString NameTable::operator()(const Value &id) const { return mNames.value(keyOf(id)); }

NameTable NameTable::kinds15() { return NameTable(kKinds15); }
NameTable NameTable::accounts() { return NameTable(kAccounts); }
NameTable NameTable::units() { return NameTable(kUnits); }
NameTable NameTable::shops() { return NameTable(kShops); }

QString GetKbn15Nm(const Value &id) { return nameById(kKinds15, id); }
QString GetAccNm(const Value &id) { return nameById(kAccounts, id); }
QString GetFmrNm(const Value &id) { return nameById(kFarmers, id); }
QString GetShopNm(const Value &id) { return nameById(kShops, id); }
QString GetChemiUnitNm(const Value &id) { return nameById(kUnits, id); }
