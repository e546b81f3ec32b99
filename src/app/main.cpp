// The program. Until the start-up screens land it opens the four databases
// and shows an empty main window.

#include "core/AppError.h"
#include "core/Globals.h"
#include "core/Msg.h"
#include "store/Database.h"

#include <QApplication>
#include <QFont>
#include <QMainWindow>
#include <QMessageBox>

namespace {

class MessageBoxSink : public MsgSink {
public:
    int show(const QString &prompt, int buttons, const QString &title) override
    {
        QMessageBox box;
        box.setWindowTitle(title);
        box.setText(prompt);
        switch (buttons & 0x70) {
        case 16: box.setIcon(QMessageBox::Critical); break;
        case 32: box.setIcon(QMessageBox::Question); break;
        case 48: box.setIcon(QMessageBox::Warning); break;
        case 64: box.setIcon(QMessageBox::Information); break;
        default: break;
        }
        switch (buttons & 7) {
        case 1: box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel); break;
        case 2: box.setStandardButtons(QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore); break;
        case 3: box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel); break;
        case 4: box.setStandardButtons(QMessageBox::Yes | QMessageBox::No); break;
        case 5: box.setStandardButtons(QMessageBox::Retry | QMessageBox::Cancel); break;
        default: box.setStandardButtons(QMessageBox::Ok); break;
        }
        switch (box.exec()) {
        case QMessageBox::Ok: return Msg::ResOK;
        case QMessageBox::Cancel: return Msg::ResCancel;
        case QMessageBox::Abort: return Msg::ResAbort;
        case QMessageBox::Retry: return Msg::ResRetry;
        case QMessageBox::Ignore: return Msg::ResIgnore;
        case QMessageBox::Yes: return Msg::ResYes;
        case QMessageBox::No: return Msg::ResNo;
        default: return Msg::ResCancel;
        }
    }
};

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    app.setFont(QFont(QStringLiteral("Noto Sans CJK JP"), 9));
    MessageBoxSink sink;
    setMsgSink(&sink);
    try {
        OpenIni();
        OpenDb();
        OpenMst();
        OpenWork();
    } catch (const AppError &e) {
        ShowMsg(e.text(), Msg::Critical);
        CloseAllDatabases();
        return 1;
    }
    QMainWindow w;
    w.setWindowTitle(QStringLiteral("Tillora"));
    w.resize(12400 / 15, 9200 / 15);
    w.show();
    const int rc = app.exec();
    CloseAllDatabases();
    return rc;
}
