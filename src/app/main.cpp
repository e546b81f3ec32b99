// The program.

#include "app/CommandLine.h"
#include "screens/ScreenList.h"
#include "base/AppError.h"
#include "ui/Form.h"
#include "base/Globals.h"
#include "ui/MsgBox.h"
#include "ui/Screens.h"
#include "screens/main/modMain.h"
#include "store/Database.h"
#include "store/Setup.h"

#include <QApplication>

namespace {

const char *const kHelp =
    "使い方: tillora [--root DIR]\n"
    "農場の作業日誌、農薬、作付、出荷、帳簿、値札を記録するプログラムを起動する。\n"
    "\n"
    "  --root DIR   実行用フォルダ（ini, work, data, images を含むフォルダ）に DIR を使う\n"
    "  --help       この説明を表示して終了する\n"
    "  --version    版の情報を表示して終了する\n"
    "\n"
    "実行用フォルダは次の順に決まる: --root、環境変数 TILLORA_ROOT、プログラムのフォルダの隣\n"
    "（ビルドしたフォルダから動かすとき）、利用者のデータフォルダ $XDG_DATA_HOME/tillora\n"
    "（既定は ~/.local/share/tillora、最初の起動で作成する）。";

} // namespace

int main(int argc, char **argv)
{
    prepareProcess();
    // The options are read before the window system starts: --help and
    // --version need no display. Options of one dash are Qt's own.
    QString rootOption;
    for (int i = 1; i < argc; ++i) {
        const QString a = QString::fromLocal8Bit(argv[i]);
        if (a == QLatin1String("--help") || a == QLatin1String("-h")) {
            CommandLine::out(QString::fromUtf8(kHelp));
            return 0;
        }
        if (a == QLatin1String("--version")) {
            CommandLine::out(CommandLine::versionText(QStringLiteral("tillora")));
            return 0;
        }
        if (a == QLatin1String("--root")) {
            if (i + 1 >= argc)
                return CommandLine::wrongUse(QStringLiteral("tillora"), QStringLiteral("--root にはフォルダを指定してください。"));
            rootOption = QString::fromLocal8Bit(argv[++i]);
        } else if (a.startsWith(QLatin1String("--root="))) {
            rootOption = a.mid(7);
        } else if (a.startsWith(QLatin1String("--")) || !a.startsWith(QLatin1Char('-'))) {
            return CommandLine::wrongUse(QStringLiteral("tillora"), QStringLiteral("不明な引数 '%1' です。").arg(a));
        }
    }
    QApplication app(argc, argv);
    setupLook(app);
    registerAllScreens();
    MessageBoxSink sink;
    setMsgSink(&sink);
    // A connection that fails asks the user and opens the connection settings.
    setConnectionRepair([] { openScreen(QStringLiteral("fdlSetConCtrl")); });
    app.setQuitOnLastWindowClosed(true);
    try {
        Setup::useRoot(AppPaths::chooseRoot(rootOption));
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
