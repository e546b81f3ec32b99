#pragma once
// The four database objects through which all data reaches the program:
//   gINI  (clsINI)  settings file  <program folder>/../ini/INFO.MDB
//   gDB   (clsDb)   data database,   by the DB_* settings
//   gMST  (clsMst)  master database, by the MST_* settings
//   gWORK (clsWork) look-up and work file <program folder>/../work/WORK.MDB
// Screens hand them SQL in the program's dialect; each object keeps its
// connection open from creation to destruction.

#include "store/Recordset.h"

#include <QString>

#include <functional>
#include <memory>

class DbObject {
public:
    virtual ~DbObject();

    QString DBTYPE() const { return mDBTYPE; }
    void Begintrans();
    void CommitTrans();
    void RollbackTrans();
    RecordsetPtr GetFwdOnlyRst(const QString &sql);
    RecordsetPtr GetStaticRst(const QString &sql);
    RecordsetPtr GetDynamicRst(const QString &sql);
    virtual void OpenCnn() = 0;
    void CloseCnn();
    void EXEC(const QString &sql, qint64 *recordsAffected = nullptr, int options = -1);

    // First field of the first row, or Null when there is no row.
    Value DMax(const QString &expr, const QString &domain, const QString &criteria = QString());
    Value DMin(const QString &expr, const QString &domain, const QString &criteria = QString());
    Value DCount(const QString &expr, const QString &domain, const QString &criteria = QString());
    Value DSUM(const QString &expr, const QString &domain, const QString &criteria = QString());
    Value DLookup(const QString &expr, const QString &domain, const QString &criteria = QString());
    // The first field of all rows joined by single blanks (Null as ""), or Null.
    Value DJoin(const QString &expr, const QString &domain, const QString &criteria = QString());

    // Settings rows of this database's S_CTRL, by key (a key is quoted like
    // any text). A type of 0 becomes 10 in the caller's variable. Failures
    // are raised, for the caller's trap to show.
    bool SaveCtrl(const QString &key, const Value &value, int &type);
    Value GetCtrl(const QString &key);

    // Frees the rows of a table held by this computer (see the stamps).
    virtual Value ReleaseData(const QString &table, const QString &criteria = QString());

    bool isOpen() const { return mCnn != nullptr; }
    Engine *engine() const { return mCnn.get(); }

    // The look-up criteria as sent for this object's engine word.
    QString convertCriteria(const QString &criteria) const;

protected:
    RecordsetPtr openRst(const QString &sql, CursorKind kind);
    Engine &cnn() const;
    Value lookup(const QString &head, const QString &domain, const QString &criteria, bool join);
    // Opens the data or master connection from the settings with the prefix
    // "DB" or "MST"; on failure, a database that is not this program's
    // included, asks the user (see setConnectionRepair).
    void openConfigured(const QString &prefix, DbKind kind, const QString &question);
    // The statement that frees this computer's holds.
    static QString releaseSql(const QString &table, const QString &criteria);

    std::unique_ptr<Engine> mCnn;
    QString mDBTYPE;
};

class clsINI : public DbObject {
public:
    clsINI();
    void OpenCnn() override;
    Value ReleaseData(const QString &table, const QString &criteria = QString()) override;

    QString DB_NAME();
    QString MST_NAME();

    // The property of that name ("DB_NAME", "MST_USER" ...).
    QString property(const QString &name);

private:
    QString text(const QString &key);
    QString fileName(const QString &key, const QString &typeKey);
};

class clsDb : public DbObject {
public:
    clsDb();
    void OpenCnn() override;
    Value ReleaseData(const QString &table, const QString &criteria = QString()) override;
};

class clsMst : public DbObject {
public:
    clsMst();
    void OpenCnn() override;
    Value ReleaseData(const QString &table, const QString &criteria = QString()) override;
};

class clsWork : public DbObject {
public:
    clsWork();
    void OpenCnn() override;
    // Goes to the master database, as it always has.
    Value ReleaseData(const QString &table, const QString &criteria = QString()) override;
};

// Runs work as one transaction of the object's connection: committed when it
// ends, rolled back (and the error passed on) when it fails. Called inside a
// transaction of the same connection, the work joins it: the outer one
// commits or rolls back the whole. A transaction is of one database file
// or server database; work that writes two (the data and the work file)
// is two transactions.
void inTransaction(DbObject *db, const std::function<void()> &work);

extern std::unique_ptr<clsINI> gINI;
extern std::unique_ptr<clsDb> gDB;
extern std::unique_ptr<clsMst> gMST;
extern std::unique_ptr<clsWork> gWORK;

void OpenIni();
void OpenDb();
void OpenMst();
void OpenWork();
// What start-up says when the open data or master database can't be written
// (a file or its folder read-only, see sqliteReadOnlyReason); empty when
// both can.
QString readOnlyWarning();
// Empties gDB, gMST, gWORK, gINI in this order.
void CloseAllDatabases();

// What a failing data or master connection does after the user said Yes to
// the question: the program opens the connection settings dialog. Without a
// handler (command line, tests) the failure is raised as an error.
void setConnectionRepair(std::function<void()> handler);

// The configuration texts of a connection, as the settings make them.
QString jetConnectionString(const QString &file, const QString &user, const QString &password,
                            const QString &dbPassword);
QString mysqlConnectionString(const QString &dsn, const QString &server, const QString &db, const QString &user,
                              const QString &password);
// Reads a configuration text into an engine connection. Raises AppError for
// an empty or unreadable text.
ConnectionSpec parseConnectionString(const QString &text);
