#pragma once
// Process-wide variables through which screens hand work to each other, and
// the program's folder. Each is one value for the whole process.

#include "base/Mode.h"
#include "base/Value.h"

#include <QDateTime>
#include <QString>
#include <QVector>

extern qint16 gUSE_TYPE;       // 1 single farmer, 2 several farmers
extern Value gFMR_ID;          // current farmer; 0 until start-up has read it
extern Value gSHOP_ID;         // current shop: 1 for the whole run
extern Mode gMODE;
extern qint32 gROW_IDX;        // 0-based row of the list's array; -1 new
extern QDateTime gBASE_DATE;   // month on the calendar, default period of lists
extern Value gWORK_DATE;       // day chosen on the calendar
extern Value gBOOK_ACC_ID;     // account of the book page the diary opened
extern Value gLAST_PLANT_ID;
extern Value gLAST_CHEMI_ID;
extern Value gLAST_LEDGE_ID;
extern Value gLAST_SHIP_ID;    // also the default shop during start-up
extern qint16 gREP_ID;
extern qint16 gREP_PAGES;
// The application's title: "Tillora", or the name of the print job while a
// page is being printed (the print queue shows it).
QString AppTitle();
void SetAppTitle(const QString &title);

// Slips of the diary day and of the slip list: 18 values in D_LEDGE's order.
using LedgeRow = QVector<Value>;
namespace LedgeCol {
enum {
    FMR_ID, LEDGE_ID, LEDGE_DATE, D_ACC_ID, D_OPT_KBN, D_OPT_ID, D_OPT_NM, C_ACC_ID, C_OPT_KBN, C_OPT_ID, C_OPT_NM,
    CTR_NM, NOTES, AMT, IDATE, UDATE, LAST_TM, HOLD_TM, Count
};
extern const char *const Names[Count];
}
// A row of empty values, the blank slot of the array.
inline LedgeRow blankLedgeRow() { return LedgeRow(LedgeCol::Count); }
extern QVector<LedgeRow> gLEDGE_ROWS;

// Settles what the process needs before Qt starts: the time zone is named
// once, so that the C library doesn't look it up again for every date.
void prepareProcess();

namespace AppPaths {
// The folder of the program; the run-time folders lie beside it
// (<root>/bin holds the program, <root>/ini, <root>/work, <root>/data ...).
QString programDir();
void setProgramDir(const QString &dir);
// Sets the program folder to <root>/bin.
void setRoot(const QString &root);
QString root();
// A stored path: "\" reads as "/"; a relative one is completed from the
// program's folder.
QString resolve(const QString &stored);
bool isRelative(const QString &stored);

// Which run-time tree a program uses, decided once at its start for both
// programs:
//   1. the folder given with --root;
//   2. else the folder in the environment variable TILLORA_ROOT;
//   3. else the tree beside the program's folder, when there is one: a
//      checkout's build folder (build/bin with build/ini ... beside it, or a
//      build folder not yet set up, known by its CMakeCache.txt), or any copy
//      of bin/ kept with its ini/ folder;
//   4. else the user's data folder: $XDG_DATA_HOME/tillora, or
//      ~/.local/share/tillora when XDG_DATA_HOME is unset or not absolute
//      (an installed program in /usr/bin).
enum class RootSource { Option, Environment, BesideProgram, DataHome };
struct RootChoice {
    QString root; // absolute, cleaned
    RootSource source;
};
struct RootInputs {
    QString option;      // --root, empty when not given
    QString environment; // TILLORA_ROOT
    QString programDir;  // the folder of the running program
    QString xdgDataHome; // XDG_DATA_HOME
    QString home;        // HOME
};
RootChoice chooseRoot(const RootInputs &in);
// The same from this process's environment and program folder.
RootChoice chooseRoot(const QString &option);
}
