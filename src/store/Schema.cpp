#include "store/Schema.h"

namespace {

using K = DbKind;

ColumnDef I(const char *n) { return {QString::fromLatin1(n), ColType::Int32, 0, QString()}; }
ColumnDef B(const char *n) { return {QString::fromLatin1(n), ColType::Bool, 0, QStringLiteral("0")}; }
// The "offered in lists" flag: a row added by a dialog that doesn't write it is offered.
ColumnDef F(const char *n) { return {QString::fromLatin1(n), ColType::Bool, 0, QStringLiteral("-1")}; }
ColumnDef C(const char *n) { return {QString::fromLatin1(n), ColType::Currency, 0, QString()}; }
ColumnDef D(const char *n) { return {QString::fromLatin1(n), ColType::Double, 0, QString()}; }
ColumnDef T(const char *n) { return {QString::fromLatin1(n), ColType::Date, 0, QString()}; }
ColumnDef X(const char *n, int size = 50) { return {QString::fromLatin1(n), ColType::Text, size, QString()}; }

// The four stamp columns of the record tables.
QVector<ColumnDef> stamps() { return {T("IDATE"), T("UDATE"), X("LAST_TM", 50), X("HOLD_TM", 50)}; }

QStringList L(std::initializer_list<const char *> names)
{
    QStringList out;
    for (const char *n : names)
        out << QString::fromLatin1(n);
    return out;
}

QVector<TableDef> build()
{
    QVector<TableDef> t;

    // ---- data database
    t.append({"D_DIARY", {K::Data},
              QVector<ColumnDef>{I("FMR_ID"), T("WORK_DATE"), I("WTH_ID"), D("LO_TMP"), D("HI_TMP"),
                                 X("ONE_MSG", 100), X("NOTES1", 255), X("NOTES2", 255)} + stamps(),
              L({"FMR_ID", "WORK_DATE"}),
              {L({"WORK_DATE"})}});
    t.append({"D_DIARY_DTL", {K::Data},
              {I("FMR_ID"), T("WORK_DATE"), I("DTL_NO"), I("PLANT_ID"), I("WORK_KBN"), X("WORK_NM", 100),
               X("NOTES", 255), I("CHEMI_ID"), X("CHEMI_NM", 100), X("REG_NO", 50), X("PURPOSE", 100),
               D("QTY"), I("UNIT_ID"), I("SHIP_ID"), I("SCHD_ID"), I("LEDGE_ID")},
              L({"FMR_ID", "WORK_DATE", "DTL_NO"}),
              // No (farmer, lot) index: a day's lines are found by the key, the
              // lines of a lot by the lot alone.
              {L({"FMR_ID", "PLANT_ID"}), L({"FMR_ID", "LEDGE_ID"}), L({"CHEMI_ID"}), L({"FMR_ID", "SHIP_ID"}),
               L({"WORK_KBN", "PLANT_ID"})}});
    t.append({"D_CHEMI", {K::Data},
              QVector<ColumnDef>{I("FMR_ID"), I("CHEMI_ID"), X("CHEMI_NM", 100), X("REG_NO", 50), I("USES"),
                                 X("MAKER_NM", 100), I("CHEMI_TYPE"), X("CHEMI_KIND", 100), T("PUR_DATE"),
                                 X("PUR_SHOP", 100), D("PUR_QTY"), I("PUR_UNIT"), I("ACC_ID"), C("PUR_AMT"),
                                 D("USED_QTY"), D("REST_QTY"), X("NOTES", 255), I("LEDGE_ID"), F("CHK_FLG")} +
                  stamps(),
              L({"CHEMI_ID"}),
              {L({"FMR_ID", "PUR_DATE"}), L({"FMR_ID", "LEDGE_ID"})}});
    t.append({"D_PLANT", {K::Data},
              QVector<ColumnDef>{I("PLANT_ID"), X("PLANT_NM", 100), I("YYYY"), I("FMR_ID"),
                                 X("HARVEST_SCHD_YM", 10), X("CROP_NM", 50), X("CROP_NM1", 100),
                                 X("CROP_NM2", 100), I("PRD_ID"), X("PRD_NM", 100), I("PLANT_TYPE"),
                                 X("FIELD_NM", 100), D("AREA"), D("CROP_EST"), I("CROP_EST_UNIT"),
                                 T("PLANT_DATE"), T("START_DATE"), T("END_DATE"), D("SHIP_EST"),
                                 I("SHIP_EST_UNIT"), T("SHIP_SCHD_DATE1"), T("SHIP_SCHD_DATE2"),
                                 X("IMG_PATH1", 255), X("IMG_PATH2", 255), X("NOTES1", 255), X("NOTES2", 255)} +
                  stamps(),
              L({"FMR_ID", "PLANT_ID"}),
              {L({"PLANT_ID"}), L({"FMR_ID", "START_DATE"}), L({"FMR_ID", "YYYY"})}});
    t.append({"D_SHIP", {K::Data},
              QVector<ColumnDef>{I("FMR_ID"), I("SHIP_ID"), T("SHIP_DATE"), I("PLANT_ID"), I("DTL_NO"),
                                 I("SHOP_ID"), I("PRD_ID"), X("PRD_NM", 100), X("LOCATE", 100), B("PLAS"),
                                 I("ACC_ID"), C("SHOP_PRC"), D("SHIP_QTY"), D("RTN_QTY"), D("SALES_QTY"),
                                 C("DSC_AMT"), C("SALES_AMT"), D("FEE_RT"), C("FEE_AMT"), X("NOTES", 255),
                                 T("PRINT_DATE"), T("EXP_DATE"), I("LEDGE_ID_S"), I("LEDGE_ID_F")} +
                  stamps(),
              L({"FMR_ID", "SHIP_ID"}),
              {L({"FMR_ID", "SHIP_DATE"}), L({"SHIP_DATE"}), L({"FMR_ID", "PLANT_ID"}),
               L({"FMR_ID", "LEDGE_ID_S"}), L({"FMR_ID", "LEDGE_ID_F"})}});
    t.append({"D_LEDGE", {K::Data},
              QVector<ColumnDef>{I("FMR_ID"), I("LEDGE_ID"), T("LEDGE_DATE"), I("D_ACC_ID"), I("D_OPT_KBN"),
                                 I("D_OPT_ID"), X("D_OPT_NM", 100), I("C_ACC_ID"), I("C_OPT_KBN"),
                                 I("C_OPT_ID"), X("C_OPT_NM", 100), X("CTR_NM", 100), X("NOTES", 255),
                                 C("AMT")} +
                  stamps(),
              L({"FMR_ID", "LEDGE_ID"}),
              // The day's slips in number order come from one index.
              {L({"FMR_ID", "LEDGE_DATE", "LEDGE_ID"}), L({"LEDGE_DATE"}), L({"D_ACC_ID", "LEDGE_DATE"}),
               L({"C_ACC_ID", "LEDGE_DATE"})}});

    // ---- master database
    t.append({"M_FMR", {K::Master},
              {I("FMR_ID"), X("FMR_NM", 50), X("ADRS", 100), X("TEL_NO_L", 20), X("TEL_NO_S", 20),
               X("NOTES", 100), X("LOCATE", 50), X("BANK_NM", 50), X("BR_NM", 50), X("ACC_KBN", 10),
               X("ACC_NO", 20), X("ACC_NM", 50), C("FEE_1"), C("FEE_2"), F("CHK_FLG")},
              L({"FMR_ID"}),
              {}});
    t.append({"M_SHOP", {K::Master},
              {I("SHOP_ID"), X("SHOP_NM", 50), X("OWNER_NM", 50), X("ADRS", 100), X("TEL", 20), X("FAX", 20),
               D("FEE_RT"), I("BCD_FMR_ID_STA"), I("BCD_FMR_ID_LEN"), I("BCD_PRD_ID_STA"),
               I("BCD_PRD_ID_LEN"), I("BCD_AMT_01_STA"), I("BCD_AMT_01_LEN"), I("BCD_AMT_10_STA"),
               I("BCD_AMT_10_LEN"), I("BCD_OPT_STA"), I("BCD_OPT_LEN"), X("FTP_SVR", 100),
               X("FTP_DIR", 255), X("FTP_USR", 50), X("FTP_PWD", 50), X("WWW_URL", 255),
               I("UPLOAD_FILE_TYPE"), X("PTAG_LOGO", 255), X("NOTES", 255), I("ACC_ID"), F("CHK_FLG")},
              L({"SHOP_ID"}),
              {}});
    t.append({"M_PRD", {K::Master},
              QVector<ColumnDef>{I("SHOP_ID"), I("PRD_ID"), X("PRD_NM", 50), X("PRD_OMT", 50), X("PRD_YM", 50),
                                 X("M_CD", 20), X("S_CD", 20), X("PRD_CD", 20), I("PRD_KBN"), I("REP_KBN"),
                                 X("NOTES", 255), X("I_NM", 100), X("I_MTLS", 255), X("I_WEIGHT", 50),
                                 X("I_UNIT", 20), X("I_PSRV", 100), X("I_TERM", 100), I("I_DEF_DAYS"),
                                 F("CHK_FLG")} +
                  stamps(),
              L({"PRD_ID"}),
              {L({"SHOP_ID", "PRD_ID"})}});

    // ---- settings (held by every database, used in the settings file)
    t.append({"S_CTRL", {K::Ini, K::Data, K::Master, K::Work},
              {X("CTRL_CD", 50), X("CTRL_VALUE", 255), I("CTRL_TYPE")},
              L({"CTRL_CD"}),
              {}});
    t.append({"S_REP", {K::Ini},
              {I("REP_ID"), D("TOP_MGN"), D("LEFT_MGN"), X("PRINTER_NM", 255), I("PAPER_BIN")},
              L({"REP_ID"}),
              {}});

    // ---- work database: look-ups delivered with the program, and scratch
    t.append({"L_REP", {K::Work},
              {I("REP_ID"), X("REP_NM", 50), D("HEIGHT"), D("WIDTH"), I("ORIENTATION")},
              L({"REP_ID"}),
              {}});
    t.append({"L_KBN", {K::Work}, {I("KBN"), I("ID"), X("NM", 50), X("NOTE", 50)}, L({"KBN", "ID"}),
              {L({"KBN", "NOTE"})}});
    t.append({"L_ACC", {K::Work}, {I("ACC_ID"), X("ACC_NM", 50), I("DC_KBN"), I("PG_KBN"), I("OPT_KBN")},
              L({"ACC_ID"}), {}});
    t.append({"L_CHEMI_UNIT", {K::Work}, {I("ID"), X("NM", 20), I("CHG_ID"), D("RT")}, L({"ID"}), {}});
    t.append({"L_CHEMI", {K::Work},
              {I("REG_NO"), X("CHEMI_NM", 100), X("CHEMI_KIND", 100), X("MAKER_OMT", 50), X("USES", 10),
               X("CHEMI_TYPE", 10)},
              L({"REG_NO"}),
              {}});
    t.append({"L_MAKER", {K::Work}, {X("MAKER_OMT", 50), X("MAKER_NM", 100)}, L({"MAKER_OMT"}), {}});
    t.append({"L_CHEMI_PURPOSE", {K::Work}, {I("REG_NO"), X("PURPOSE", 100)}, {}, {L({"REG_NO"})}});
    t.append({"L_CHEMI_APPL", {K::Work},
              {I("REG_NO"), X("CROP_NM", 100), X("TARGET", 100), X("PURPOSE", 100), X("DILUTION", 50),
               X("USE_QTY", 50), X("SEASON", 100), X("USE_TIMES", 50), X("USE_WAY", 100)},
              {},
              {L({"REG_NO"})}});
    t.append({"L_CHEMI_APPL_MATCH", {K::Work},
              {X("CHEMI_CROP_NM", 100), X("CROP_NM", 255), X("CROP_KBN", 255), X("CROP_NM_NG", 255),
               X("CROP_KBN_NG", 255)},
              L({"CHEMI_CROP_NM"}),
              {}});
    t.append({"L_CROP", {K::Work}, {X("CROP_NM1", 50), X("CROP_NM2", 50), X("CROP_KBN", 10)},
              L({"CROP_NM1"}), {L({"CROP_KBN"})}});
    t.append({"L_CROP_KBN", {K::Work}, {X("CROP_KBN", 10), X("CROP_KBN_NM", 50)}, L({"CROP_KBN"}), {}});
    t.append({"L_ETO", {K::Work}, {I("ID"), X("ETO_YM", 10)}, L({"ID"}), {}});
    t.append({"W_CHEMI_USE", {K::Work},
              {I("CHEMI_ID"), D("QTY"), I("PUR_UNIT_ID"), I("DTL_UNIT_ID"), D("RT"), D("USE_QTY")},
              {},
              {}});
    return t;
}

QString sqliteType(const ColumnDef &c)
{
    switch (c.type) {
    case ColType::Bool:
    case ColType::Byte:
    case ColType::Int16:
    case ColType::Int32: return QStringLiteral("INTEGER");
    case ColType::Currency:
    case ColType::Single:
    case ColType::Double: return QStringLiteral("REAL");
    case ColType::Date:
    case ColType::Text:
    case ColType::Memo: return QStringLiteral("TEXT");
    }
    return QString();
}

QString mysqlType(const ColumnDef &c)
{
    switch (c.type) {
    case ColType::Bool: return QStringLiteral("SMALLINT");
    case ColType::Byte: return QStringLiteral("TINYINT UNSIGNED");
    case ColType::Int16: return QStringLiteral("SMALLINT");
    case ColType::Int32: return QStringLiteral("INT");
    case ColType::Currency: return QStringLiteral("DECIMAL(19,4)");
    case ColType::Single: return QStringLiteral("FLOAT");
    case ColType::Double: return QStringLiteral("DOUBLE");
    case ColType::Date: return QStringLiteral("DATETIME");
    case ColType::Text: return QStringLiteral("VARCHAR(%1)").arg(c.size);
    case ColType::Memo: return QStringLiteral("TEXT");
    }
    return QString();
}

QString indexName(const TableDef &t, int i) { return QStringLiteral("IX_%1_%2").arg(t.name).arg(i + 1); }

// An amount column refuses what the program could not read back as an
// amount: the bounds are the largest amounts inside the currency range whose
// stored form (a binary fraction on SQLite) reads back inside it. The
// constraint's name begins with RANGE_, by which the engine's refusal is
// told as the overflow error.
QString rangeCheck(const TableDef &t, const ColumnDef &c)
{
    return QStringLiteral("CONSTRAINT RANGE_%1_%2 CHECK (%2 BETWEEN -922337203685477.5 AND 922337203685477.5)")
        .arg(t.name, c.name);
}

} // namespace

const ColumnDef *TableDef::column(const QString &n) const
{
    for (const ColumnDef &c : columns)
        if (c.name.compare(n, Qt::CaseInsensitive) == 0)
            return &c;
    return nullptr;
}

int TableDef::columnIndex(const QString &n) const
{
    for (int i = 0; i < columns.size(); ++i)
        if (columns[i].name.compare(n, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

namespace Schema {

const QVector<TableDef> &tables()
{
    static const QVector<TableDef> all = build();
    return all;
}

const TableDef *table(const QString &name)
{
    for (const TableDef &t : tables())
        if (t.name.compare(name, Qt::CaseInsensitive) == 0)
            return &t;
    return nullptr;
}

const ColumnDef *column(const QString &tableName, const QString &columnName)
{
    const TableDef *t = table(tableName);
    return t ? t->column(columnName) : nullptr;
}

QVector<const TableDef *> tablesOf(DbKind kind)
{
    QVector<const TableDef *> out;
    for (const TableDef &t : tables())
        if (t.isIn(kind))
            out.append(&t);
    return out;
}

QStringList sqliteDdl(const TableDef &t)
{
    // STRICT tables refuse text in number columns as the original engine did;
    // the checks keep dates in the one text form that sorts by time and text
    // within the column's size.
    QStringList cols;
    for (const ColumnDef &c : t.columns) {
        QString def = c.name + QLatin1Char(' ') + sqliteType(c);
        if (t.key.contains(c.name))
            def += QStringLiteral(" NOT NULL");
        if (!c.defaultSql.isEmpty())
            def += QStringLiteral(" DEFAULT ") + c.defaultSql;
        if (c.type == ColType::Text || c.type == ColType::Memo)
            def += QStringLiteral(" COLLATE NOCASE");
        if (c.type == ColType::Date)
            def += QStringLiteral(" CHECK (%1 GLOB '[0-9][0-9][0-9][0-9]-[0-1][0-9]-[0-3][0-9] "
                                  "[0-2][0-9]:[0-5][0-9]:[0-5][0-9]')")
                       .arg(c.name);
        if (c.type == ColType::Text)
            def += QStringLiteral(" CHECK (length(%1) <= %2)").arg(c.name).arg(c.size);
        if (c.type == ColType::Currency)
            def += QLatin1Char(' ') + rangeCheck(t, c);
        cols << def;
    }
    if (!t.key.isEmpty())
        cols << QStringLiteral("PRIMARY KEY (%1)").arg(t.key.join(QLatin1Char(',')));
    QStringList out;
    out << QStringLiteral("CREATE TABLE %1 (%2) STRICT").arg(t.name, cols.join(QStringLiteral(", ")));
    for (int i = 0; i < t.indexes.size(); ++i)
        out << QStringLiteral("CREATE INDEX %1 ON %2 (%3)")
                   .arg(indexName(t, i), t.name, t.indexes[i].join(QLatin1Char(',')));
    return out;
}

QStringList mysqlDdl(const TableDef &t)
{
    QStringList cols;
    for (const ColumnDef &c : t.columns) {
        QString def = c.name + QLatin1Char(' ') + mysqlType(c);
        def += t.key.contains(c.name) ? QStringLiteral(" NOT NULL") : QStringLiteral(" NULL");
        if (!c.defaultSql.isEmpty())
            def += QStringLiteral(" DEFAULT ") + c.defaultSql;
        cols << def;
    }
    if (!t.key.isEmpty())
        cols << QStringLiteral("PRIMARY KEY (%1)").arg(t.key.join(QLatin1Char(',')));
    for (const ColumnDef &c : t.columns)
        if (c.type == ColType::Currency)
            cols << rangeCheck(t, c);
    for (int i = 0; i < t.indexes.size(); ++i)
        cols << QStringLiteral("INDEX %1 (%2)").arg(indexName(t, i), t.indexes[i].join(QLatin1Char(',')));
    return {QStringLiteral("CREATE TABLE %1 (%2) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 "
                           "COLLATE=utf8mb4_general_ci")
                .arg(t.name, cols.join(QStringLiteral(", ")))};
}

} // namespace Schema

QString dbKindName(DbKind kind)
{
    switch (kind) {
    case DbKind::Data: return QStringLiteral("data");
    case DbKind::Master: return QStringLiteral("master");
    case DbKind::Ini: return QStringLiteral("ini");
    case DbKind::Work: return QStringLiteral("work");
    }
    return QString();
}

bool dbKindFromName(const QString &name, DbKind &out)
{
    for (DbKind k : {DbKind::Data, DbKind::Master, DbKind::Ini, DbKind::Work})
        if (dbKindName(k) == name) {
            out = k;
            return true;
        }
    return false;
}
