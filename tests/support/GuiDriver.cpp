#include "GuiDriver.h"

#include "base/Globals.h"
#include "screens/ScreenList.h"
#include "ui/Screens.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QTimer>

void guiTestSetup(QApplication &app)
{
    setupLook(app);
    registerAllScreens();
}

namespace Gui {

void settle(int ms)
{
    QElapsedTimer t;
    t.start();
    do {
        for (int i = 0; i < 5; ++i)
            QApplication::processEvents(QEventLoop::AllEvents);
        QApplication::sendPostedEvents();
    } while (t.elapsed() < ms);
}

void show(Form *form)
{
    form->load();
    form->show();
    QApplication::setActiveWindow(form);
    if (!QTest::qWaitForWindowActive(form, 2000))
        qWarning("screen %s did not become active", qPrintable(form->objectName()));
    settle();
}

void closePopups()
{
    // A click elsewhere first closes an open list, as it does for a user.
    for (int i = 0; i < 5 && QApplication::activePopupWidget(); ++i) {
        QApplication::activePopupWidget()->close();
        settle();
    }
}

void focus(QWidget *field)
{
    closePopups();
    QTest::mouseClick(field, Qt::LeftButton, Qt::NoModifier, QPoint(4, field->height() / 2));
    if (!field->hasFocus())
        field->setFocus(Qt::MouseFocusReason);
    settle();
}

void type(QLineEdit *field, const QString &text)
{
    focus(field);
    field->selectAll();
    if (text.isEmpty()) {
        QTest::keyClick(field, Qt::Key_Delete);
    } else {
        typeKeys(field, text);
    }
    settle();
}

void typeKeys(QLineEdit *field, const QString &text)
{
    bool ascii = true;
    for (const QChar c : text)
        if (c.unicode() >= 0x7F)
            ascii = false;
    if (ascii) {
        QTest::keyClicks(field, text);
    } else {
        // Japanese arrives from the input method as committed text.
        QInputMethodEvent ev;
        ev.setCommitString(text);
        QApplication::sendEvent(field, &ev);
    }
    settle();
}

void paste(QLineEdit *field, const QString &text)
{
    focus(field);
    field->selectAll();
    QApplication::clipboard()->setText(text);
    QTest::keyClick(field, Qt::Key_V, Qt::ControlModifier);
    settle();
}

void leave(QWidget *field)
{
    closePopups();
    QTest::keyClick(field, Qt::Key_Tab);
    settle();
}

void enter(QWidget *w)
{
    QTest::keyClick(w, Qt::Key_Return);
    settle();
}

WithMenu::WithMenu()
{
    gUSE_TYPE = 1;
    menu = createScreen(QStringLiteral("fmnMain"));
    menu->load();
}

WithMenu::~WithMenu() { delete menu; }

bool isLocked(QComboBox *combo)
{
    closePopups();
    const int before = combo->currentIndex();
    const QString text = combo->currentText();
    QTest::mouseClick(combo, Qt::LeftButton);
    QTest::keyClick(combo, Qt::Key_Down);
    settle();
    const bool opened = combo->view()->isVisible();
    closePopups();
    const QPalette p = combo->palette();
    return combo->isEnabled() && combo->focusPolicy() == Qt::NoFocus && !opened &&
           combo->currentIndex() == before && combo->currentText() == text &&
           p.color(QPalette::Base) == p.color(QPalette::Window);
}

void click(QAbstractButton *button)
{
    closePopups();
    QTest::mouseClick(button, Qt::LeftButton);
    settle();
}

void choose(QComboBox *combo, int index)
{
    focus(combo);
    closePopups();
    combo->setCurrentIndex(index);
    emit combo->activated(index);
    settle();
}

Modals::Modals()
{
    setModalHook([this](Form *f) {
        const QString name = f->objectName();
        opened << name;
        QList<std::function<void(Form &)>> &queue = mScripts[name];
        if (queue.isEmpty() && !mOtherwise) {
            QTimer::singleShot(0, f, [f] { f->done(QDialog::Rejected); });
            return;
        }
        auto script = queue.isEmpty() ? mOtherwise : queue.takeFirst();
        QTimer::singleShot(0, f, [f, script] {
            QApplication::setActiveWindow(f);
            (void)QTest::qWaitForWindowActive(f, 2000);
            settle();
            script(*f);
            settle();
            // A script that leaves its screen open would hold the test for ever.
            if (f->isVisible())
                f->done(QDialog::Rejected);
        });
    });
}

Modals::~Modals() { setModalHook(nullptr); }

void Modals::on(const QString &screen, std::function<void(Form &)> script) { mScripts[screen].append(std::move(script)); }

}
