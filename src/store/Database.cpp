#include "store/Database.h"

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "base/Msg.h"
#include "store/Stmt.h"

#include <QFileInfo>

std::unique_ptr<clsINI> gINI;
std::unique_ptr<clsDb> gDB;
std::unique_ptr<clsMst> gMST;
std::unique_ptr<clsWork> gWORK;

namespace {

std::function<void()> gRepair;

// The fixed password of the settings and work files (a setting of the old
// file engine; SQLite files carry none).
const char *const kLocalPassword = "271828182E3";

QString localConnectionString(const QString &relative)
{
    return QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=\"") + AppPaths::programDir() + relative +
           QStringLiteral("\";User ID=admin;Password=;Jet OLEDB:Database Password=") +
           QString::fromLatin1(kLocalPassword) + QLatin1Char(';');
}

// Opens a file of the program's own folders; a failure says which file.
std::unique_ptr<Engine> openLocal(const QString &relative, DbKind kind, const QString &what)
{
    try {
        return Engine::open(parseConnectionString(localConnectionString(relative)), kind);
    } catch (const AppError &e) {
        throw AppError(e.number(), what + QStringLiteral("を開けません。") + e.description());
    }
}

// "k1=v1;k2=v2;" with keys in upper case. A value in double quotes may hold ';'.
QHash<QString, QString> parsePairs(const QString &text)
{
    QHash<QString, QString> out;
    int i = 0;
    const int n = text.size();
    while (i < n) {
        const int eq = text.indexOf(QLatin1Char('='), i);
        if (eq < 0)
            break;
        const QString key = text.mid(i, eq - i).trimmed().toUpper();
        int j = eq + 1;
        QString value;
        if (j < n && text[j] == QLatin1Char('"')) {
            const int close = text.indexOf(QLatin1Char('"'), j + 1);
            value = close < 0 ? text.mid(j + 1) : text.mid(j + 1, close - j - 1);
            j = close < 0 ? n : close + 1;
            const int semi = text.indexOf(QLatin1Char(';'), j);
            j = semi < 0 ? n : semi + 1;
        } else {
            const int semi = text.indexOf(QLatin1Char(';'), j);
            value = semi < 0 ? text.mid(j) : text.mid(j, semi - j);
            j = semi < 0 ? n : semi + 1;
        }
        out.insert(key, value);
        i = j;
    }
    return out;
}

} // namespace

// ------------------------------------------------------------ connections

QString jetConnectionString(const QString &file, const QString &user, const QString &password,
                            const QString &dbPassword)
{
    QString s = QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;");
    s += QStringLiteral("Data Source=\"") + file + QStringLiteral("\";");
    s += QStringLiteral("User ID=") + user + QLatin1Char(';');
    s += QStringLiteral("Password=") + password + QLatin1Char(';');
    if (!dbPassword.isEmpty())
        s += QStringLiteral("Jet OLEDB:Database Password=") + dbPassword + QLatin1Char(';');
    return s;
}

QString mysqlConnectionString(const QString &dsn, const QString &server, const QString &db, const QString &user,
                              const QString &password)
{
    return QStringLiteral("DSN=") + dsn + QStringLiteral(";SERVER=") + server + QStringLiteral(";DB=") + db +
           QStringLiteral(";UID=") + user + QStringLiteral(";PWD=") + password + QLatin1Char(';');
}

ConnectionSpec parseConnectionString(const QString &text)
{
    if (text.trimmed().isEmpty())
        throw AppError(3706, QStringLiteral("接続文字列が空です。データベースの種類が設定されていません。"));
    const QHash<QString, QString> kv = parsePairs(text);
    ConnectionSpec conn;
    if (kv.contains(QStringLiteral("PROVIDER"))) {
        conn.kind = EngineKind::Sqlite;
        const QString source = kv.value(QStringLiteral("DATA SOURCE"));
        conn.file = source.isEmpty() ? QString() : AppPaths::resolve(source);
        return conn;
    }
    if (kv.contains(QStringLiteral("DSN")) || kv.contains(QStringLiteral("SERVER"))) {
        conn.kind = EngineKind::Mysql;
        QString host = kv.value(QStringLiteral("SERVER")).trimmed();
        if (host.isEmpty())
            host = kv.value(QStringLiteral("DSN")).trimmed(); // the data source name read as host[:port]
        const int colon = host.lastIndexOf(QLatin1Char(':'));
        if (colon > 0) {
            bool ok = false;
            const int port = host.mid(colon + 1).toInt(&ok);
            if (ok) {
                conn.port = port;
                host.truncate(colon);
            }
        }
        conn.host = host;
        conn.database = kv.value(QStringLiteral("DB"));
        conn.user = kv.value(QStringLiteral("UID"));
        conn.password = kv.value(QStringLiteral("PWD"));
        return conn;
    }
    throw AppError(3706, QStringLiteral("接続文字列を読み取れません。"));
}

void setConnectionRepair(std::function<void()> handler) { gRepair = std::move(handler); }

// ------------------------------------------------------------ DbObject

DbObject::~DbObject() { CloseCnn(); }

Engine &DbObject::cnn() const
{
    if (!mCnn)
        raiseError(VbErr::NotConnected);
    return *mCnn;
}

void DbObject::Begintrans() { cnn().begin(); }
void DbObject::CommitTrans() { cnn().commit(); }
void DbObject::RollbackTrans() { cnn().rollback(); }

RecordsetPtr DbObject::openRst(const QString &sql, CursorKind kind)
{
    PutLog(sql);
    Engine &e = cnn();
    return std::make_unique<Recordset>(&e, kind, e.select(sql), sql);
}

RecordsetPtr DbObject::GetFwdOnlyRst(const QString &sql) { return openRst(sql, CursorKind::ForwardOnly); }
RecordsetPtr DbObject::GetStaticRst(const QString &sql) { return openRst(sql, CursorKind::Static); }
RecordsetPtr DbObject::GetDynamicRst(const QString &sql) { return openRst(sql, CursorKind::Dynamic); }

void DbObject::CloseCnn() { mCnn.reset(); }

void DbObject::EXEC(const QString &sql, qint64 *recordsAffected, int)
{
    PutLog(sql);
    const qint64 n = cnn().execute(sql);
    if (recordsAffected)
        *recordsAffected = n;
}

QString DbObject::convertCriteria(const QString &criteria) const
{
    QString c = criteria;
    if (mDBTYPE != QLatin1String("ACCESS")) {
        c.replace(QLatin1Char('#'), QLatin1Char('\''));
        c.replace(QStringLiteral("'*"), QStringLiteral("'%"));
        c.replace(QStringLiteral("*'"), QStringLiteral("%'"));
    }
    return c;
}

Value DbObject::lookup(const QString &head, const QString &domain, const QString &criteria, bool join)
{
    if (!mCnn)
        OpenCnn();
    QString sql = head + QStringLiteral(" FROM ") + domain;
    if (!criteria.isEmpty())
        sql += QStringLiteral(" WHERE ") + convertCriteria(criteria);
    const ResultSet rs = cnn().select(sql);
    if (rs.rows.isEmpty() || rs.columns.isEmpty())
        return Value::null();
    if (!join)
        return rs.rows.first().first();
    QString text;
    for (const auto &row : rs.rows)
        text += QLatin1Char(' ') + Nz(row.first(), Value(QString())).toText();
    return Value(text.trimmed());
}

Value DbObject::DMax(const QString &expr, const QString &domain, const QString &criteria)
{
    return lookup(QStringLiteral("SELECT MAX(") + expr + QLatin1Char(')'), domain, criteria, false);
}
Value DbObject::DMin(const QString &expr, const QString &domain, const QString &criteria)
{
    return lookup(QStringLiteral("SELECT MIN(") + expr + QLatin1Char(')'), domain, criteria, false);
}
Value DbObject::DCount(const QString &expr, const QString &domain, const QString &criteria)
{
    return lookup(QStringLiteral("SELECT COUNT(") + expr + QLatin1Char(')'), domain, criteria, false);
}
Value DbObject::DSUM(const QString &expr, const QString &domain, const QString &criteria)
{
    return lookup(QStringLiteral("SELECT SUM(") + expr + QLatin1Char(')'), domain, criteria, false);
}
Value DbObject::DLookup(const QString &expr, const QString &domain, const QString &criteria)
{
    return lookup(QStringLiteral("SELECT ") + expr, domain, criteria, false);
}
Value DbObject::DJoin(const QString &expr, const QString &domain, const QString &criteria)
{
    return lookup(QStringLiteral("SELECT ") + expr, domain, criteria, true);
}

Value DbObject::GetCtrl(const QString &key)
{
    {
        RecordsetPtr rs = GetFwdOnlyRst(Stmt("SELECT CTRL_VALUE ,CTRL_TYPE FROM S_CTRL WHERE CTRL_CD=?").text(key));
        if (rs->eof())
            return Value();
        const Value v = rs->Fields(0);
        if (v.isNull())
            return Value::null();
        const Value t = rs->Fields(1);
        const int type = t.isNull() ? 0 : t.toLong();
        const Value text(v.toText());
        switch (type) {
        case 1: return Value(text.toBool());
        case 2: return Value::byte(text.toByte());
        case 3: return Value::int16(text.toInt());
        case 4: return Value(int(text.toLong()));
        case 5: return Value(text.toCurrency());
        case 6: return Value::single(text.toSingle());
        case 7: return Value(text.toDouble());
        case 8: return Value(text.toDate());
        default: return text;
        }
    }
}

bool DbObject::SaveCtrl(const QString &key, const Value &value, int &type)
{
    if (type == 0)
        type = 10;
    {
        RecordsetPtr rs = GetDynamicRst(Stmt("SELECT * FROM S_CTRL WHERE CTRL_CD=?").text(key));
        const bool lengthZero = value.isEmpty() || (value.isText() && value.toText().isEmpty());
        if (!rs->eof()) {
            if (lengthZero) {
                rs->SetField(QStringLiteral("CTRL_VALUE"), Value::null());
            } else {
                // The row's own type decides, not the argument.
                const Value rowType = rs->Fields(QStringLiteral("CTRL_TYPE"));
                const int t = rowType.isNull() ? 0 : rowType.toLong();
                Value out;
                if (t == 1)
                    out = Value(Value(value.toBool()).toText());
                else if (t == 8)
                    out = (value.isNull() || !IsDate(value))
                              ? value
                              : Value(DateUtil::format(value.toDate(), QStringLiteral("yyyy/MM/dd HH:mm:ss")));
                else if (t == 10)
                    out = value;
                else
                    out = Value(value.toText());
                rs->SetField(QStringLiteral("CTRL_VALUE"), out);
            }
        } else {
            rs->AddNew();
            rs->SetField(QStringLiteral("CTRL_CD"), Value(key));
            rs->SetField(QStringLiteral("CTRL_VALUE"), lengthZero ? Value::null() : value);
        }
        rs->Update();
        rs->Close();
        return true;
    }
}

QString DbObject::releaseSql(const QString &table, const QString &criteria)
{
    QString sql = QStringLiteral("UPDATE ") + table + QStringLiteral(" SET LAST_TM=HOLD_TM,") +
                  QStringLiteral(" HOLD_TM=NULL ") + QStringLiteral(" WHERE HOLD_TM='") + GetCompName() +
                  QStringLiteral("' ");
    if (!criteria.isEmpty())
        sql += QStringLiteral(" AND ") + criteria;
    return sql;
}

namespace {
Value releaseThrough(DbObject *target, const QString &sql)
{
    try {
        if (!target)
            raiseError(91, QStringLiteral("オブジェクト変数が設定されていません。"));
        target->EXEC(sql);
    } catch (const AppError &e) {
        PutLog(QStringLiteral("(%1)%2 SQL:%3").arg(e.number()).arg(e.description(), sql));
    }
    return Value();
}
}

Value DbObject::ReleaseData(const QString &table, const QString &criteria)
{
    return releaseThrough(this, releaseSql(table, criteria));
}

void DbObject::openConfigured(const QString &prefix, DbKind kind, const QString &question)
{
    for (;;) {
        try {
            mCnn.reset();
            mDBTYPE.clear();
            if (!gINI)
                OpenIni();
            const QString code = gINI->property(prefix + QStringLiteral("_TYPE"));
            QString text;
            if (code == QLatin1String("1")) {
                mDBTYPE = QStringLiteral("MYSQL");
                text = mysqlConnectionString(gINI->property(prefix + QStringLiteral("_DSN")),
                                             gINI->property(prefix + QStringLiteral("_SERVER")),
                                             gINI->property(prefix + QStringLiteral("_NAME")),
                                             gINI->property(prefix + QStringLiteral("_USER")),
                                             gINI->property(prefix + QStringLiteral("_PSWD")));
            } else if (code == QLatin1String("2")) {
                mDBTYPE = QStringLiteral("ACCESS");
                text = jetConnectionString(gINI->property(prefix + QStringLiteral("_NAME")),
                                           gINI->property(prefix + QStringLiteral("_USER")),
                                           gINI->property(prefix + QStringLiteral("_PSWD")),
                                           gINI->property(prefix + QStringLiteral("_DBPW")));
            }
            mCnn = Engine::open(parseConnectionString(text), kind);
            return;
        } catch (const AppError &e) {
            mCnn.reset();
            if (!gRepair)
                throw AppError(e.number(), question + QLatin1Char(' ') + e.description());
            if (ShowMsg(question, Msg::YesNo + Msg::Critical) == Msg::ResYes) {
                gRepair();
                continue;
            }
            EndProcessNow(0);
        }
    }
}

// ------------------------------------------------------------ clsINI

clsINI::clsINI() { OpenCnn(); }

void clsINI::OpenCnn()
{
    mDBTYPE = QStringLiteral("ACCESS");
    mCnn.reset();
    mCnn = openLocal(QStringLiteral("\\..\\ini\\INFO.MDB"), DbKind::Ini, QStringLiteral("設定ファイル"));
}

Value clsINI::ReleaseData(const QString &table, const QString &criteria)
{
    const QString sql = releaseSql(table, criteria);
    try {
        EXEC(sql);
        return Value(0);
    } catch (const AppError &e) {
        PutLog(QStringLiteral("(%1)%2 SQL:%3").arg(e.number()).arg(e.description(), sql));
        return Value(1);
    }
}

QString clsINI::text(const QString &key)
{
    const Value v = GetCtrl(key);
    if (!hasValue(v))
        return QString();
    return v.toText();
}

QString clsINI::fileName(const QString &key, const QString &typeKey)
{
    const QString name = text(key);
    if (text(typeKey) != QLatin1String("2"))
        return name;
    if (name.size() < 2)
        return QString();
    const QString path = AppPaths::resolve(name);
    if (!QFileInfo::exists(path))
        return QString();
    return AppPaths::isRelative(name) ? path : name;
}

QString clsINI::property(const QString &name)
{
    if (name == QLatin1String("DB_NAME"))
        return DB_NAME();
    if (name == QLatin1String("MST_NAME"))
        return MST_NAME();
    return text(name);
}

QString clsINI::DB_NAME() { return fileName(QStringLiteral("DB_NAME"), QStringLiteral("DB_TYPE")); }
QString clsINI::MST_NAME() { return fileName(QStringLiteral("MST_NAME"), QStringLiteral("MST_TYPE")); }

// ------------------------------------------------------------ the others

clsDb::clsDb() { OpenCnn(); }
void clsDb::OpenCnn()
{
    openConfigured(QStringLiteral("DB"), DbKind::Data, QStringLiteral("ﾃﾞｰﾀﾍﾞｰｽが不正ですので設定してください。"));
}
Value clsDb::ReleaseData(const QString &table, const QString &criteria)
{
    return releaseThrough(gDB.get(), releaseSql(table, criteria));
}

clsMst::clsMst() { OpenCnn(); }
void clsMst::OpenCnn()
{
    openConfigured(QStringLiteral("MST"), DbKind::Master, QStringLiteral("ﾏｽﾀﾃﾞｰﾀが不正ですので設定してください。"));
}
Value clsMst::ReleaseData(const QString &table, const QString &criteria)
{
    return releaseThrough(gMST.get(), releaseSql(table, criteria));
}

clsWork::clsWork() { OpenCnn(); }
void clsWork::OpenCnn()
{
    mDBTYPE = QStringLiteral("ACCESS");
    mCnn.reset();
    mCnn = openLocal(QStringLiteral("\\..\\work\\WORK.MDB"), DbKind::Work, QStringLiteral("作業用ファイル"));
}
Value clsWork::ReleaseData(const QString &table, const QString &criteria)
{
    return releaseThrough(gMST.get(), releaseSql(table, criteria));
}

void inTransaction(DbObject *db, const std::function<void()> &work)
{
    db->Begintrans();
    try {
        work();
    } catch (...) {
        try {
            db->RollbackTrans();
        } catch (const AppError &) {
        }
        throw;
    }
    db->CommitTrans();
}

// ------------------------------------------------------------ globals

void OpenIni() { gINI = std::make_unique<clsINI>(); }
void OpenDb() { gDB = std::make_unique<clsDb>(); }
void OpenMst() { gMST = std::make_unique<clsMst>(); }
void OpenWork() { gWORK = std::make_unique<clsWork>(); }

QString readOnlyWarning()
{
    QStringList reasons;
    for (const DbObject *d : {static_cast<DbObject *>(gDB.get()), static_cast<DbObject *>(gMST.get())}) {
        const QString why = d && d->engine() ? d->engine()->readOnlyReason() : QString();
        if (!why.isEmpty() && !reasons.contains(why))
            reasons << why;
    }
    if (reasons.isEmpty())
        return QString();
    return QStringLiteral("データを書き込めません。記録の表示はできますが、登録・変更・削除はできません。\n") +
           reasons.join(QLatin1Char('\n'));
}

void CloseAllDatabases()
{
    gDB.reset();
    gMST.reset();
    gWORK.reset();
    gINI.reset();
}
