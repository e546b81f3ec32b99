#include "support/SaveProbe.h"

#include "base/AppError.h"
#include "base/Helpers.h"
#include "base/Msg.h"
#include "store/Engine.h"
#include "store/Schema.h"

#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>

namespace SaveProbe {

QStringList records()
{
    static const QSet<QString> ofTheMoment{QStringLiteral("IDATE"), QStringLiteral("UDATE"), QStringLiteral("HOLD_TM")};
    QStringList out;
    for (const char *name : {"D_DIARY", "D_DIARY_DTL", "D_LEDGE", "D_SHIP", "D_CHEMI", "D_PLANT"}) {
        const TableDef *t = Schema::table(QString::fromLatin1(name));
        RecordsetPtr rs = gDB->GetFwdOnlyRst(QStringLiteral("SELECT * FROM %1 ORDER BY %2").arg(t->name, t->key.join(',')));
        for (; !rs->eof(); rs->MoveNext()) {
            QStringList cells{t->name};
            for (int i = 0; i < t->columns.size(); ++i)
                if (!ofTheMoment.contains(t->columns[i].name))
                    cells << rs->Fields(t->columns[i].name).debugText();
            out << cells.join(QLatin1Char('|'));
        }
    }
    return out;
}

QStringList recordsAfter(const std::function<void()> &save)
{
    QStringList after;
    gDB->Begintrans();
    try {
        save();
        after = records();
    } catch (...) {
        gDB->RollbackTrans();
        throw;
    }
    gDB->RollbackTrans();
    return after;
}

int statementsOf(const std::function<void()> &work)
{
    int n = 0;
    setLogHook([&n](const QString &) { ++n; });
    try {
        work();
    } catch (...) {
        setLogHook(nullptr);
        throw;
    }
    setLogHook(nullptr);
    return n;
}

FailAt::FailAt(int n) : mLeft(n)
{
    setLogHook([this](const QString &) {
        if (--mLeft == 0)
            throw AppError(-2147467259, QStringLiteral("試験のために止めた文です。"));
    });
}

FailAt::~FailAt() { setLogHook(nullptr); }

QString difference(const QStringList &expected, const QStringList &actual)
{
    const QSet<QString> e(expected.begin(), expected.end()), a(actual.begin(), actual.end());
    QStringList out;
    for (const QString &row : expected)
        if (!a.contains(row))
            out << QStringLiteral("- ") + row;
    for (const QString &row : actual)
        if (!e.contains(row))
            out << QStringLiteral("+ ") + row;
    return out.join(QLatin1Char('\n'));
}

QString integrity()
{
    if (gDB->engine()->kind() != EngineKind::Sqlite)
        return QStringLiteral("ok");
    const QString name = QStringLiteral("integrity check");
    QStringList result;
    {
        QSqlDatabase d = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        d.setDatabaseName(gDB->engine()->target().file);
        if (!d.open())
            return QStringLiteral("not opened");
        QSqlQuery q(d);
        if (!q.exec(QStringLiteral("PRAGMA integrity_check")))
            result << QStringLiteral("not checked");
        while (q.next())
            result << q.value(0).toString();
    }
    QSqlDatabase::removeDatabase(name);
    return result.join(QLatin1Char('\n'));
}

} // namespace SaveProbe

OtherComputer::OtherComputer(const QString &name) : mDb(std::make_unique<clsDb>()), mName(name) {}

OtherComputer::~OtherComputer() = default;

void OtherComputer::act(const std::function<void()> &work)
{
    const QString mine = GetCompName();
    std::swap(gDB, mDb);
    setCompNameForTests(mName);
    struct Back {
        OtherComputer *c;
        QString name;
        ~Back()
        {
            std::swap(gDB, c->mDb);
            setCompNameForTests(name);
        }
    } back{this, mine};
    work();
}
