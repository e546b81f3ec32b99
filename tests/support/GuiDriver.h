#pragma once
// Drives real screens offscreen the way a user would: finds controls by
// their names ("txtDATA(0)"), types, leaves fields, presses Enter and
// buttons, and drives the modal screens that open, from scripts by screen
// name. Messages are answered by a MsgRecorder.

#include "ui/Form.h"
#include "base/Globals.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QHash>
#include <QLineEdit>
#include <QStringList>
#include <QtTest/QTest>

#include <functional>

namespace Gui {

// Processes what is pending (zero timers, posted events, focus changes).
void settle(int ms = 0);
// Closes any open drop-down list.
void closePopups();

// Loads and shows a screen and waits until it is the active window.
void show(Form *form);

template <class T> T *find(QWidget *root, const QString &name)
{
    T *w = root->findChild<T *>(name);
    if (!w && root->objectName() == name)
        w = qobject_cast<T *>(root);
    if (!w)
        qWarning("no control %s on %s", qPrintable(name), qPrintable(root->objectName()));
    return w;
}

// Puts the focus in a field by clicking it (so the field left before runs
// its leave check).
void focus(QWidget *field);
// Clicks the field and types text over its whole content.
void type(QLineEdit *field, const QString &text);
// Types text at the caret, key by key (for completion as typed).
void typeKeys(QLineEdit *field, const QString &text);
// Pastes text over the field's whole content (Ctrl+V), as a long text arrives.
void paste(QLineEdit *field, const QString &text);
// Leaves the field with the Tab key.
void leave(QWidget *field);
// Presses Enter in a control.
void enter(QWidget *w);
// Clicks a button.
void click(QAbstractButton *button);
// Chooses an entry of a drop-down list as a user would (opens, picks, closes).
void choose(QComboBox *combo, int index);
// A locked drop-down as the farmer meets it: enabled and readable on the
// locked background, out of the tab order, and neither a click nor a key
// opens or changes it.
bool isLocked(QComboBox *combo);

// The main menu open (single use), so that closing a dialog only closes it
// instead of ending the program.
struct WithMenu {
    WithMenu();
    ~WithMenu();
    Form *menu;
};

// Scripts for the modal screens that open while the test runs. A screen with
// no script left runs the fallback script when one is set, else it is
// recorded and closed at once.
class Modals {
public:
    Modals();
    ~Modals();
    void on(const QString &screen, std::function<void(Form &)> script);
    // Scripts run in order for the same screen: the first opening runs the first.
    void otherwise(std::function<void(Form &)> script) { mOtherwise = std::move(script); }
    QStringList opened;

private:
    QHash<QString, QList<std::function<void(Form &)>>> mScripts;
    std::function<void(Form &)> mOtherwise;
};

}

// A GUI test binary: QApplication, the screens, the one look, and the run on
// both engines.
#define TILLORA_GUI_TEST_MAIN(TestClass)                                                                     \
    int main(int argc, char **argv)                                                                         \
    {                                                                                                        \
        prepareProcess();                                                                                    \
        QApplication app(argc, argv);                                                                       \
        guiTestSetup(app);                                                                                   \
        TestClass t;                                                                                         \
        return TestEnv::runOnEngines(&t, argc, argv);                                                       \
    }

class QApplication;
void guiTestSetup(QApplication &app);
