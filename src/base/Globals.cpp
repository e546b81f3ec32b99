#include "base/Globals.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

qint16 gUSE_TYPE = 0;
Value gFMR_ID = Value(0);
Value gSHOP_ID = Value(1);
Mode gMODE = Mode::None;
qint32 gROW_IDX = -1;
QDateTime gBASE_DATE;
Value gWORK_DATE;
Value gBOOK_ACC_ID;
Value gLAST_PLANT_ID;
Value gLAST_CHEMI_ID;
Value gLAST_LEDGE_ID;
Value gLAST_SHIP_ID;
qint16 gREP_ID = 0;
qint16 gREP_PAGES = 0;
QVector<LedgeRow> gLEDGE_ROWS;

namespace {
QString gAppTitle = QStringLiteral("Tillora");
}
QString AppTitle() { return gAppTitle; }
void SetAppTitle(const QString &title) { gAppTitle = title; }

namespace LedgeCol {
const char *const Names[Count] = {"FMR_ID",    "LEDGE_ID",  "LEDGE_DATE", "D_ACC_ID", "D_OPT_KBN", "D_OPT_ID",
                                  "D_OPT_NM",  "C_ACC_ID",  "C_OPT_KBN",  "C_OPT_ID", "C_OPT_NM",  "CTR_NM",
                                  "NOTES",     "AMT",       "IDATE",      "UDATE",    "LAST_TM",   "HOLD_TM"};
}

void prepareProcess()
{
    if (!qEnvironmentVariableIsSet("TZ"))
        qputenv("TZ", ":/etc/localtime");
}

namespace AppPaths {

namespace {
QString gProgramDir;
}

QString programDir()
{
    if (gProgramDir.isEmpty() && QCoreApplication::instance())
        return QCoreApplication::applicationDirPath();
    return gProgramDir;
}

void setProgramDir(const QString &dir) { gProgramDir = QDir(dir).absolutePath(); }

void setRoot(const QString &root) { setProgramDir(QDir(root).absoluteFilePath(QStringLiteral("bin"))); }

QString root() { return QDir::cleanPath(programDir() + QStringLiteral("/..")); }

bool isRelative(const QString &stored)
{
    const QString s = QString(stored).replace(QLatin1Char('\\'), QLatin1Char('/'));
    return !s.startsWith(QLatin1Char('/')) && !s.contains(QLatin1Char(':'));
}

QString resolve(const QString &stored)
{
    QString s = QString(stored).replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (isRelative(s))
        s = programDir() + QLatin1Char('/') + s;
    return QDir::cleanPath(s);
}

namespace {
bool hasTreeBeside(const QString &programDir)
{
    const QDir parent(programDir + QStringLiteral("/.."));
    return QFileInfo::exists(parent.filePath(QStringLiteral("ini/INFO.MDB"))) ||
           QFileInfo::exists(parent.filePath(QStringLiteral("CMakeCache.txt")));
}
} // namespace

RootChoice chooseRoot(const RootInputs &in)
{
    const auto absolute = [](const QString &dir) { return QDir::cleanPath(QDir(dir).absolutePath()); };
    if (!in.option.isEmpty())
        return {absolute(in.option), RootSource::Option};
    if (!in.environment.isEmpty())
        return {absolute(in.environment), RootSource::Environment};
    if (!in.programDir.isEmpty() && hasTreeBeside(in.programDir))
        return {absolute(in.programDir + QStringLiteral("/..")), RootSource::BesideProgram};
    // The data folder of the XDG rules: a relative XDG_DATA_HOME is ignored.
    const QString data = QDir::isAbsolutePath(in.xdgDataHome) ? in.xdgDataHome
                                                               : in.home + QStringLiteral("/.local/share");
    return {absolute(data + QStringLiteral("/tillora")), RootSource::DataHome};
}

RootChoice chooseRoot(const QString &option)
{
    RootInputs in;
    in.option = option;
    in.environment = qEnvironmentVariable("TILLORA_ROOT");
    in.programDir = QCoreApplication::instance() ? QCoreApplication::applicationDirPath() : QString();
    in.xdgDataHome = qEnvironmentVariable("XDG_DATA_HOME");
    in.home = QDir::homePath();
    return chooseRoot(in);
}

}
