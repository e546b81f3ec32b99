#include "screens/main/modMain.h"

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Msg.h"
#include "rules/masters/Defaults.h"
#include "rules/pesticide/ChemiStock.h"
#include "screens/main/BackupOffer.h"
#include "store/Database.h"
#include "ui/Form.h"
#include "ui/Progress.h"
#include "ui/Screens.h"

namespace {

// A setting that can't be read is shown, and read as empty: start-up goes on
// to the dialog that mends it.
Value readSetting(const QString &key)
{
    try {
        return gINI->GetCtrl(key);
    } catch (const AppError &e) {
        ShowError(e);
        return Value();
    }
}

// One of the two checks: the default must be set and name a row of the
// table; until it does, the user is sent to the dialog that mends it.
// Returns false when the program ended meanwhile.
bool checkDefault(Value &target, const QString &key, const char *table, const char *criteria,
                  const QString &setMessage, const QString &missingMessage)
{
    for (;;) {
        switch (Defaults::check(readSetting(key), table, criteria, target)) {
        case Defaults::Check::Passed:
            return true;
        case Defaults::Check::NoRows:
            ShowMsg(missingMessage, Msg::Exclamation);
            // The farmer dialog also for a missing shop: so it has always been.
            openScreen(QStringLiteral("fdlMstFmrEdit"));
            break;
        case Defaults::Check::NotSet:
        case Defaults::Check::Missing:
            ShowMsg(setMessage, Msg::Exclamation);
            openScreen(QStringLiteral("fdlSetLocalCtrl"));
            break;
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
    // Said now, not first at the farmer's first 登録.
    if (const QString readOnly = readOnlyWarning(); !readOnly.isEmpty())
        ShowMsg(readOnly, Msg::Exclamation);
    gUSE_TYPE = Defaults::useType();

    if (!checkDefault(gFMR_ID, QStringLiteral("DEF_FMR_ID"), "M_FMR", "FMR_ID=?",
                      QStringLiteral("既定生産者IDを設定してください。"), QStringLiteral("生産者情報を設定してください。")))
        return false;
    // The shop check runs on the last-shipment variable; the program's shop stays 1.
    if (!checkDefault(gLAST_SHIP_ID, QStringLiteral("DEF_SHOP_ID"), "M_SHOP", "SHOP_ID=?",
                      QStringLiteral("既定販売店IDを設定してください。"), QStringLiteral("販売店情報を設定してください。")))
        return false;

    // The recount writes: a data file that can't be written keeps its figures.
    if (gDB->engine()->readOnlyReason().isEmpty()) {
        ProgressBox box(nullptr, QStringLiteral("起動"));
        ResetUnusedChemi(gFMR_ID, box.callback());
    }

    // Offered before the first screen, while nothing is being entered.
    OfferBackup(nullptr);

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
