#include "screens/main/modMain.h"

#include "ui/Form.h"
#include "base/Globals.h"
#include "base/Msg.h"
#include "ui/Screens.h"
#include "rules/pesticide/ChemiStock.h"
#include "store/Database.h"

namespace {

// A setting read as a whole number for the checks: missing (Empty) and Null
// read as 0.
Value idSetting(const QString &key)
{
    const Value v = gINI->GetCtrl(key);
    return (!hasValue(v)) ? Value(0) : v;
}

bool zero(const Value &v) { return !IsNumeric(v) || v.toDouble() == 0; }

// One of the two checks: the default must be set and name a row of the table.
// Returns false when the program ended meanwhile.
bool checkDefault(Value &target, const QString &key, const QString &table, const QString &column,
                  const QString &setMessage, const QString &missingMessage)
{
    for (;;) {
        target = idSetting(key);
        if (zero(target)) {
            ShowMsg(setMessage, Msg::Exclamation);
            openScreen(QStringLiteral("fdlSetLocalCtrl"));
        } else if (gMST->DCount(QStringLiteral("*"), table, QString()).toLong() == 0) {
            ShowMsg(missingMessage, Msg::Exclamation);
            // The farmer dialog also for a missing shop: so it has always been.
            openScreen(QStringLiteral("fdlMstFmrEdit"));
        } else if (gMST->DCount(QStringLiteral("*"), table, column + QLatin1Char('=') + target.toText()).toLong() ==
                   0) {
            ShowMsg(setMessage, Msg::Exclamation);
            openScreen(QStringLiteral("fdlSetLocalCtrl"));
        } else {
            return true;
        }
        if (programEnded())
            return false;
    }
}

} // namespace

bool Main()
{
    gFMR_ID = Value(0);
    gSHOP_ID = Value(1);
    OpenIni();
    OpenDb();
    OpenMst();
    OpenWork();
    gUSE_TYPE = gINI->GetCtrl(QStringLiteral("USE_TYPE")).toInt();

    if (!checkDefault(gFMR_ID, QStringLiteral("DEF_FMR_ID"), QStringLiteral("M_FMR"), QStringLiteral("FMR_ID"),
                      QStringLiteral("既定生産者IDを設定してください。"), QStringLiteral("生産者情報を設定してください。")))
        return false;
    // The shop check runs on the last-shipment variable; the program's shop stays 1.
    if (!checkDefault(gLAST_SHIP_ID, QStringLiteral("DEF_SHOP_ID"), QStringLiteral("M_SHOP"), QStringLiteral("SHOP_ID"),
                      QStringLiteral("既定販売店IDを設定してください。"), QStringLiteral("販売店情報を設定してください。")))
        return false;

    ResetUnusedChemi(gFMR_ID);

    Form *first = nullptr;
    if (gUSE_TYPE == 1)
        first = createScreen(QStringLiteral("frmDairyCal"));
    else if (gUSE_TYPE == 2)
        first = createScreen(QStringLiteral("fmnMain"));
    if (!first) {
        EndProgram();
        return false;
    }
    showRoot(first);
    return true;
}
