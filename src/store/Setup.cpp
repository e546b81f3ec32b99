#include "store/Setup.h"

#include "store/Database.h"
#include "base/AppError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <functional>

namespace Setup {

QStringList createTables(Engine &engine, DbKind kind)
{
    QStringList have;
    for (const QString &t : engine.tableNames())
        have << t.toUpper();
    QStringList made;
    for (const TableDef *t : Schema::tablesOf(kind)) {
        if (have.contains(t->name.toUpper()))
            continue;
        const QStringList ddl = engine.kind() == EngineKind::Sqlite ? Schema::sqliteDdl(*t) : Schema::mysqlDdl(*t);
        for (const QString &s : ddl)
            engine.executeNative(s);
        made << t->name;
    }
    return made;
}

void parseCsv(const QString &text, QStringList &header, QVector<QVector<Value>> &rows)
{
    header.clear();
    rows.clear();
    const int n = text.size();
    int i = 0;
    bool first = true;
    while (i < n) {
        // a comment or an empty line
        if (text[i] == QLatin1Char('#') || text[i] == QLatin1Char('\n') || text[i] == QLatin1Char('\r')) {
            const int nl = text.indexOf(QLatin1Char('\n'), i);
            i = nl < 0 ? n : nl + 1;
            continue;
        }
        QVector<Value> cells;
        for (;;) {
            if (i < n && text[i] == QLatin1Char('"')) {
                QString cell;
                ++i;
                while (i < n) {
                    if (text[i] == QLatin1Char('"')) {
                        if (i + 1 < n && text[i + 1] == QLatin1Char('"')) {
                            cell += QLatin1Char('"');
                            i += 2;
                            continue;
                        }
                        ++i;
                        break;
                    }
                    cell += text[i++];
                }
                cells.append(Value(cell));
            } else {
                int j = i;
                while (j < n && text[j] != QLatin1Char(',') && text[j] != QLatin1Char('\n') &&
                       text[j] != QLatin1Char('\r'))
                    ++j;
                const QString cell = text.mid(i, j - i);
                cells.append(cell.isEmpty() ? Value::null() : Value(cell));
                i = j;
            }
            if (i < n && text[i] == QLatin1Char(',')) {
                ++i;
                continue;
            }
            while (i < n && (text[i] == QLatin1Char('\r')))
                ++i;
            if (i < n && text[i] == QLatin1Char('\n'))
                ++i;
            break;
        }
        if (first) {
            for (const Value &c : cells)
                header << (c.isNull() ? QString() : c.toText().trimmed());
            first = false;
        } else {
            rows.append(cells);
        }
    }
}

bool readDelivered(DbKind kind, const QString &table, QStringList &columns, QVector<QVector<Value>> &rows)
{
    QFile f(QStringLiteral(":/delivered/%1/%2.csv").arg(dbKindName(kind), table));
    if (!f.open(QIODevice::ReadOnly))
        return false;
    parseCsv(QString::fromUtf8(f.readAll()), columns, rows);
    return true;
}

QStringList loadDelivered(Engine &engine, DbKind kind)
{
    QStringList filled;
    for (const TableDef *t : Schema::tablesOf(kind)) {
        QStringList cols;
        QVector<QVector<Value>> rows;
        if (!readDelivered(kind, t->name, cols, rows) || rows.isEmpty())
            continue;
        const ResultSet count = engine.select(QStringLiteral("SELECT COUNT(*) FROM ") + t->name);
        if (count.rows.first().first().toLong() > 0)
            continue;
        QVector<const ColumnDef *> defs;
        QStringList marks;
        for (const QString &c : cols) {
            const ColumnDef *d = t->column(c);
            if (!d)
                throw AppError(VbErr::ItemNotFound,
                               QStringLiteral("%1.csv: 列 %2 は表にありません。").arg(t->name, c));
            defs << d;
            marks << QStringLiteral("?");
        }
        const QString sql =
            QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)").arg(t->name, cols.join(QLatin1Char(',')), marks.join(QLatin1Char(',')));
        engine.begin();
        try {
            int line = 0;
            for (const auto &row : rows) {
                ++line;
                if (row.size() != defs.size())
                    throw AppError(VbErr::InvalidCall,
                                   QStringLiteral("%1.csv: %2 行目の項目数が列数と違います。").arg(t->name).arg(line));
                QVector<QVariant> params;
                for (int i = 0; i < defs.size(); ++i)
                    params << engine.toStorage(row[i], *defs[i]);
                engine.executeNative(sql, params);
            }
            engine.commit();
        } catch (...) {
            engine.rollback();
            throw;
        }
        filled << t->name;
    }
    return filled;
}

QString fileOf(const QString &root, DbKind kind)
{
    switch (kind) {
    case DbKind::Ini: return QDir(root).filePath(QStringLiteral("ini/INFO.MDB"));
    case DbKind::Work: return QDir(root).filePath(QStringLiteral("work/WORK.MDB"));
    case DbKind::Data: return QDir(root).filePath(QStringLiteral("data/DATA.MDB"));
    case DbKind::Master: return QDir(root).filePath(QStringLiteral("data/MASTER.MDB"));
    }
    return QString();
}

InitReport initRoot(const QString &root, bool force)
{
    InitReport report;
    QDir r(root);
    for (const char *d : {"bin", "ini", "work", "data", "images"})
        if (!r.mkpath(QString::fromLatin1(d)))
            throw AppError(75, QStringLiteral("フォルダ '%1' を作成できません。").arg(r.filePath(QString::fromLatin1(d))));
    for (DbKind kind : {DbKind::Ini, DbKind::Work, DbKind::Data, DbKind::Master}) {
        const QString path = fileOf(root, kind);
        if (QFileInfo::exists(path)) {
            if (!force) {
                report.kept << path;
                continue;
            }
            QFile::remove(path);
        }
        const QString temp = path + QStringLiteral(".new");
        QFile::remove(temp);
        {
            std::unique_ptr<Engine> e = Engine::createSqliteFile(temp);
            createTables(*e, kind);
            loadDelivered(*e, kind);
        }
        // The settings file holds passwords in clear, the others the farm's
        // books: their owner alone reads them.
        QFile::setPermissions(temp, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        if (!QFile::rename(temp, path))
            throw AppError(75, QStringLiteral("ファイル '%1' を作成できません。").arg(path));
        report.created << path;
    }
    return report;
}

void useRoot(const AppPaths::RootChoice &choice)
{
    AppPaths::setRoot(choice.root);
    if (choice.source == AppPaths::RootSource::DataHome && !QFileInfo::exists(fileOf(choice.root, DbKind::Ini)))
        initRoot(choice.root);
}

namespace {

// Runs statements on a server with no database chosen.
void onServer(const ServerLogin &login, const std::function<void(QSqlQuery &)> &work)
{
    const QString name = QStringLiteral("tillora_setup");
    {
        QSqlDatabase d = QSqlDatabase::addDatabase(QStringLiteral("QMYSQL"), name);
        d.setHostName(login.host);
        d.setPort(login.port);
        d.setUserName(login.user);
        d.setPassword(login.password);
        if (!d.open()) {
            const QSqlError err = d.lastError();
            QSqlDatabase::removeDatabase(name);
            throw engineError(EngineKind::Mysql, err);
        }
        QSqlQuery q(d);
        try {
            work(q);
        } catch (...) {
            d.close();
            throw;
        }
        d.close();
    }
    QSqlDatabase::removeDatabase(name);
}

// Connects to the server of a configuration text; creates the database when
// the server says it has none.
std::unique_ptr<Engine> openOrCreateServerDb(const ConnectionSpec &conn)
{
    try {
        return Engine::open(conn);
    } catch (const AppError &e) {
        if (e.number() != 1049) // unknown database
            throw;
    }
    onServer({conn.host, conn.port, conn.user, conn.password}, [&](QSqlQuery &q) {
        if (!q.exec(QStringLiteral("CREATE DATABASE `%1` CHARACTER SET utf8mb4 COLLATE utf8mb4_general_ci")
                        .arg(conn.database)))
            throw engineError(EngineKind::Mysql, q.lastError());
    });
    return Engine::open(conn);
}

} // namespace

void writeCtrl(const QString &root, const QString &key, const Value &value, const Value &type)
{
    ConnectionSpec ini;
    ini.file = fileOf(root, DbKind::Ini);
    std::unique_ptr<Engine> e = Engine::open(ini);
    const TableDef *t = Schema::table(QStringLiteral("S_CTRL"));
    e->executeNative(QStringLiteral("DELETE FROM S_CTRL WHERE CTRL_CD=?"), {key});
    e->executeNative(QStringLiteral("INSERT INTO S_CTRL (CTRL_CD, CTRL_VALUE, CTRL_TYPE) VALUES (?,?,?)"),
                     {key, e->toStorage(value, *t->column(QStringLiteral("CTRL_VALUE"))),
                      e->toStorage(type, *t->column(QStringLiteral("CTRL_TYPE")))});
}

void pointAtServer(const QString &root, const ServerLogin &login, const QString &dataDb, const QString &masterDb)
{
    const QString dsn = QStringLiteral("%1:%2").arg(login.host).arg(login.port);
    for (const auto &p : {qMakePair(QStringLiteral("DB"), dataDb), qMakePair(QStringLiteral("MST"), masterDb)}) {
        writeCtrl(root, p.first + QStringLiteral("_TYPE"), Value(QStringLiteral("1")));
        writeCtrl(root, p.first + QStringLiteral("_DSN"), Value(dsn));
        writeCtrl(root, p.first + QStringLiteral("_NAME"), Value(p.second));
        writeCtrl(root, p.first + QStringLiteral("_USER"), Value(login.user));
        writeCtrl(root, p.first + QStringLiteral("_PSWD"), Value(login.password));
    }
}

void dropServerDatabases(const ServerLogin &login, const QStringList &names)
{
    try {
        onServer(login, [&](QSqlQuery &q) {
            for (const QString &n : names)
                q.exec(QStringLiteral("DROP DATABASE IF EXISTS `%1`").arg(n));
        });
    } catch (const AppError &) {
        // a server out of reach has nothing to clean
    }
}

QStringList initServers()
{
    QStringList lines;
    if (!gINI)
        OpenIni();
    const struct {
        const char *prefix;
        DbKind kind;
    } targets[] = {{"DB", DbKind::Data}, {"MST", DbKind::Master}};
    for (const auto &t : targets) {
        const QString p = QString::fromLatin1(t.prefix);
        if (gINI->property(p + QStringLiteral("_TYPE")) != QLatin1String("1")) {
            lines << QStringLiteral("%1: MySQL ではないので対象外").arg(dbKindName(t.kind));
            continue;
        }
        const ConnectionSpec conn = parseConnectionString(mysqlConnectionString(
            gINI->property(p + QStringLiteral("_DSN")), gINI->property(p + QStringLiteral("_SERVER")),
            gINI->property(p + QStringLiteral("_NAME")), gINI->property(p + QStringLiteral("_USER")),
            gINI->property(p + QStringLiteral("_PSWD"))));
        std::unique_ptr<Engine> e = openOrCreateServerDb(conn);
        const QStringList made = createTables(*e, t.kind);
        const QStringList filled = loadDelivered(*e, t.kind);
        lines << QStringLiteral("%1: %2:%3/%4 表を作成 %5 件、初期データ %6 表")
                     .arg(dbKindName(t.kind), conn.host)
                     .arg(conn.port)
                     .arg(conn.database)
                     .arg(made.size())
                     .arg(filled.size());
    }
    return lines;
}

}
