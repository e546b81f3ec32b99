// The program.

#include "screens/ScreenList.h"
#include "base/AppError.h"
#include "ui/Form.h"
#include "base/Globals.h"
#include "ui/MsgBox.h"
#include "ui/Screens.h"
#include "screens/main/modMain.h"
#include "store/Database.h"

#include <QApplication>

int main(int argc, char **argv)
{
    prepareProcess();
    QApplication app(argc, argv);
    setupLook(app);
    registerAllScreens();
    MessageBoxSink sink;
    setMsgSink(&sink);
    // A connection that fails asks the user and opens the connection settings.
    setConnectionRepair([] { openScreen(QStringLiteral("fdlSetConCtrl")); });
    app.setQuitOnLastWindowClosed(true);
    try {
        if (!Main())
            return 0;
    } catch (const AppError &e) {
        // Start-up has no trap of its own: the error ends the program.
        ShowMsg(e.text(), Msg::Critical);
        CloseAllDatabases();
        return 1;
    }
    const int rc = app.exec();
    CloseAllDatabases();
    return rc;
}
