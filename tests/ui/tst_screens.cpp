// The mechanisms every screen shares, on a small screen of the test's own:
// proportional scaling, window state, Enter as Tab, selection on focus, date
// completion and the pop-up calendar, leave checks, item data, locking.

#include "ui/Entry.h"
#include "ui/Form.h"
#include "base/Globals.h"
#include "store/Database.h"
#include "support/GuiDriver.h"
#include "support/MsgRecorder.h"
#include "support/TestRoot.h"

#include <QApplication>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QAbstractFileIconProvider>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QAbstractItemView>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStyle>
#include <QTableView>
#include <QtTest/QTest>

#include <memory>

namespace {

const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "テスト画面", 300, 150, 4800, 540},
    {"txtDATA(0)", CtlKind::Text, "", 1500, 900, 3000, 420},
    {"txtDATA(1)", CtlKind::Text, "", 1500, 1500, 3000, 420},
    {"cmbDATA(0)", CtlKind::Combo, "", 1500, 2100, 3000, 420},
    {"Check1", CtlKind::Check, "確認", 1500, 2700, 3000, 420},
    {"Shape1", CtlKind::Shape, "", 300, 3300, 9000, 1000},
    {"imgLOGO", CtlKind::Canvas, "", 6000, 900, 1500, 1500},
    {"MonthView1", CtlKind::Calendar, "", 0, 0, 3600, 2700},
    {"cmdMENU(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 300, 6100, 1800, 600},
    {"cmdMENU(1)", CtlKind::Button, "登録", 7200, 6100, 1800, 600},
};

class TestForm : public Form {
public:
    TestForm() : Form(QStringLiteral("frmTest"), 9600, 7200)
    {
        setSizable(true);
        auto *bar = new QMenuBar;
        bar->addMenu(QStringLiteral("ﾌｧｲﾙ(&F)"));
        adoptControl(bar, {"mnuBAR", CtlKind::Canvas, "", 0, 0, 9600, 450});
        buildControls(kControls, int(std::size(kControls)));
        scaleRules().noFont << QStringLiteral("Sha");
        txt = array<QLineEdit>(QStringLiteral("txtDATA"), 2);
        combo = ctl<QComboBox>(QStringLiteral("cmbDATA(0)"));
        entry().registerDateField(txt[1], 1);
        onClick(ctl<QPushButton>(QStringLiteral("cmdMENU(1)")), [this] { ++saves; });
        onClick(ctl<QPushButton>(QStringLiteral("cmdMENU(0)")), [this] { ++cancels; }, false);
    }
    void onLoad() override
    {
        // a design font of 12 points makes the rounding rules visible
        for (QWidget *w : controls()) {
            QFont f = w->font();
            f.setPointSize(12);
            w->setFont(f);
        }
        SetDefSize();
        applyWindowState();
        ++loads;
    }
    void onResize() override
    {
        SetSize();
        ++resizes;
    }
    void onActivate() override
    {
        applyWindowState();
        ++activations;
    }
    QVector<QLineEdit *> txt;
    QComboBox *combo;
    int loads = 0, resizes = 0, activations = 0, saves = 0, cancels = 0;
};

QRect designRect(const char *name)
{
    for (const CtlSpec &s : kControls)
        if (QLatin1String(s.name) == QLatin1String(name))
            return {s.left / 15, s.top / 15, s.width / 15, s.height / 15};
    return {};
}

} // namespace

class TestScreens : public QObject {
    Q_OBJECT
private slots:

    void designSizeKeepsEveryControl()
    {
        TestRoot root;
        TestForm f;
        Gui::show(&f);
        QCOMPARE(f.size(), QSize(640, 480));
        QVERIFY(f.resizes >= 1);
        QCOMPARE(f.ctl<QLineEdit>("txtDATA(0)")->geometry(), designRect("txtDATA(0)"));
        QCOMPARE(f.ctl<QComboBox>("cmbDATA(0)")->geometry(), designRect("cmbDATA(0)"));
        QCOMPARE(f.ctl<QLineEdit>("txtDATA(0)")->font().pointSizeF(), 12.0);
    }

    void fontsFollowTheWidth()
    {
        TestRoot root;
        TestForm f;
        Gui::show(&f);
        auto *check = f.ctl<QCheckBox>("Check1");
        const int box = check->style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, check);
        const int before = f.resizes;
        f.resize(320, 480); // half the width
        Gui::settle();
        QVERIFY(f.resizes > before);
        auto *t = f.ctl<QLineEdit>("txtDATA(0)");
        QCOMPARE(t->font().pointSizeF(), 6.0);
        QCOMPARE(t->geometry(), QRect(50, 60, 100, 28));
        f.resize(352, 480); // 0.55 of the width: 6.6 points become 7
        Gui::settle();
        QCOMPARE(t->font().pointSizeF(), 7.0);
        // a wide, low window: fonts by the width alone
        f.resize(1280, 240);
        Gui::settle();
        QCOMPARE(t->font().pointSizeF(), 24.0);
        QCOMPARE(t->height(), 14);
        // a drop-down takes its height after its font, still in proportion
        QCOMPARE(f.ctl<QComboBox>("cmbDATA(0)")->geometry(), QRect(200, 70, 400, 14));
        // shapes keep their font; names on the skip list are not moved
        QCOMPARE(f.ctl<QFrame>("Shape1")->font().pointSizeF(), 12.0);
        QCOMPARE(f.control("imgLOGO")->geometry(), designRect("imgLOGO"));
        // the menu line spans the window with the font of the rest; a check
        // box's square grows with its text
        auto *bar = f.ctl<QMenuBar>("mnuBAR");
        QCOMPARE(bar->font().pointSizeF(), 24.0);
        QCOMPARE(bar->actions().first()->menu()->font().pointSizeF(), 24.0);
        QCOMPARE(bar->width(), 1280);
        QVERIFY(std::abs(check->style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, check) - 2 * box) <= 1);
    }

    void windowStateFromTheSetting()
    {
        TestRoot root;
        root.setCtrl("WINDOW_STA", Value("True"), Value(1));
        TestForm f;
        Gui::show(&f);
        QVERIFY(f.windowState() & Qt::WindowMaximized);
        // the setting reaches an open screen at its next activation
        root.setCtrl("WINDOW_STA", Value("False"), Value(1));
        TestForm other;
        Gui::show(&other);
        QApplication::setActiveWindow(&f);
        QVERIFY(QTest::qWaitForWindowActive(&f));
        Gui::settle();
        QVERIFY(!(f.windowState() & Qt::WindowMaximized));
    }

    void activationComesFromScreensNotFromMessages()
    {
        TestRoot root;
        TestForm f;
        Gui::show(&f);
        QCOMPARE(f.activations, 1);
        MsgRecorder rec;
        QWidget box; // any window that isn't a screen, like a message box
        box.show();
        QApplication::setActiveWindow(&box);
        QVERIFY(QTest::qWaitForWindowActive(&box));
        QApplication::setActiveWindow(&f);
        QVERIFY(QTest::qWaitForWindowActive(&f));
        Gui::settle();
        QCOMPARE(f.activations, 1);
    }

    void enterMovesOnAndPressesButtons()
    {
        TestRoot root;
        TestForm f;
        Gui::show(&f);
        Gui::focus(f.txt[0]);
        Gui::enter(f.txt[0]);
        QCOMPARE(QApplication::focusWidget(), f.txt[1]);
        auto *save = f.ctl<QPushButton>("cmdMENU(1)");
        save->setFocus();
        Gui::enter(save);
        QCOMPARE(f.saves, 1);
    }

    // Tab and Shift+Tab in an open list keep the highlighted entry, close the
    // list and move on, so that what is typed next reaches the next field.
    void tabInAnOpenListMovesOn()
    {
        TestRoot root;
        TestForm f;
        addEmptyItem(f.combo);
        addItem(f.combo, QStringLiteral("晴れ"), Value(1));
        addItem(f.combo, QStringLiteral("くもり"), Value(2));
        Gui::show(&f);
        const struct {
            int row;
            Qt::Key key;
            QWidget *next;
        } moves[] = {{2, Qt::Key_Tab, f.ctl<QCheckBox>("Check1")}, {1, Qt::Key_Backtab, f.txt[1]}};
        for (const auto &m : moves) {
            Gui::focus(f.combo);
            QAbstractItemView *view = f.combo->view();
            QVERIFY(view->isVisible()); // dropped on focus
            view->setCurrentIndex(view->model()->index(m.row, 0));
            QTest::keyClick(view, m.key, m.key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
            Gui::settle();
            QVERIFY(!view->isVisible());
            QCOMPARE(f.combo->currentIndex(), m.row);
            QCOMPARE(QApplication::focusWidget(), m.next);
        }
    }

    // A click elsewhere while a list is dropped closes the list and reaches
    // what was clicked.
    void aClickBesideAnOpenListIsNotLost()
    {
        TestRoot root;
        TestForm f;
        addItem(f.combo, QStringLiteral("晴れ"), Value(1));
        Gui::show(&f);
        Gui::focus(f.combo);
        QVERIFY(f.combo->view()->isVisible());
        auto *save = f.ctl<QPushButton>("cmdMENU(1)");
        QTest::mouseClick(save->window()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          save->mapTo(save->window(), save->rect().center()));
        Gui::settle();
        QVERIFY(!f.combo->view()->isVisible());
        QCOMPARE(f.saves, 1);
    }

    void wholeTextSelectedOnFocus()
    {
        TestRoot root;
        TestForm f;
        Gui::show(&f);
        f.txt[0]->setText(QStringLiteral("青葉 耕作"));
        Gui::focus(f.txt[1]);
        Gui::focus(f.txt[0]);
        QCOMPARE(f.txt[0]->selectedText(), QStringLiteral("青葉 耕作"));
    }

    void datesCompleteAsTyped_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("shown");
        QTest::newRow("year") << "2024" << "2024/";
        QTest::newRow("year and month") << "202401" << "2024/01/";
        QTest::newRow("one-digit month stays") << "20241" << "2024/1";
        QTest::newRow("whole date") << "20240105" << "2024/01/05";
        // a slash typed where one was just added is absorbed
        QTest::newRow("with slashes") << "2026/11/30" << "2026/11/30";
        QTest::newRow("short month with slashes") << "2026/1/5" << "2026/1/5";
        QTest::newRow("year and slash") << "2026/" << "2026/";
    }
    void datesCompleteAsTyped()
    {
        QFETCH(QString, keys);
        QFETCH(QString, shown);
        TestRoot root;
        TestForm f;
        Gui::show(&f);
        Gui::type(f.txt[1], keys);
        QCOMPARE(f.txt[1]->text(), shown);
        QCOMPARE(f.txt[1]->cursorPosition(), shown.size());
    }

    void theMonthViewFillsTheFieldOfItsTag()
    {
        TestRoot root;
        TestForm f;
        Gui::show(&f);
        auto *cal = f.ctl<QCalendarWidget>("MonthView1");
        // weeks from Sunday, and the marked cell is today's
        QCOMPARE(cal->firstDayOfWeek(), Qt::Sunday);
        auto *cells = cal->findChild<QTableView *>();
        QVERIFY(cells);
        QCOMPARE(cells->selectionModel()->selectedIndexes().size(), 1);
        QCOMPARE(cells->selectionModel()->selectedIndexes().first().data().toInt(), QDate::currentDate().day());
        Gui::focus(f.txt[0]);
        QVERIFY(!cal->isVisible());
        // any other control that takes the focus closes it: a button too
        Gui::focus(f.txt[1]);
        QVERIFY(cal->isVisible());
        f.ctl<QPushButton>("cmdMENU(0)")->setFocus(Qt::TabFocusReason);
        Gui::settle();
        QVERIFY(!cal->isVisible());
        Gui::focus(f.txt[1]);
        QVERIFY(cal->isVisible());
        QCOMPARE(cal->property("tag").toInt(), 1);
        emit cal->clicked(QDate(2024, 3, 9));
        Gui::settle();
        QCOMPARE(f.txt[1]->text(), QStringLiteral("2024/03/09"));
        QVERIFY(!cal->isVisible());
        QCOMPARE(QApplication::focusWidget(), f.combo);
        f.combo->hidePopup();
        // a screen that only shows or deletes offers no calendar
        f.entry().setMode(Mode::View);
        Gui::focus(f.txt[1]);
        QVERIFY(!cal->isVisible());
    }

    void aFailedLeaveCheckKeepsTheFocusAndTheButtonsWait()
    {
        TestRoot root;
        TestForm f;
        MsgRecorder rec;
        f.entry().setLeaveCheck(f.txt[0], [&f] {
            if (IsNumeric(Value(f.txt[0]->text())))
                return true;
            ShowMsg(QStringLiteral("数値を入力してください。"), 48);
            return false;
        });
        Gui::show(&f);
        Gui::type(f.txt[0], QStringLiteral("abc"));
        Gui::leave(f.txt[0]);
        QCOMPARE(rec.lastPrompt(), QStringLiteral("数値を入力してください。"));
        QCOMPARE(QApplication::focusWidget(), f.txt[0]);
        QCOMPARE(f.txt[0]->selectedText(), QStringLiteral("abc"));
        // a click on a confirming button doesn't run while the field is wrong...
        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QCOMPARE(f.saves, 0);
        // ... a closing button does
        Gui::click(f.ctl<QPushButton>("cmdMENU(0)"));
        QCOMPARE(f.cancels, 1);
        Gui::type(f.txt[0], QStringLiteral("12"));
        Gui::leave(f.txt[0]);
        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QCOMPARE(f.saves, 1);
    }

    void itemDataInLists()
    {
        TestRoot root;
        TestForm f;
        addEmptyItem(f.combo);
        addItem(f.combo, QStringLiteral("晴れ"), Value(1));
        addItem(f.combo, QStringLiteral("くもり"), Value(2));
        selectItemData(f.combo, Value(2));
        QCOMPARE(f.combo->currentText(), QStringLiteral("くもり"));
        f.combo->setCurrentIndex(0);
        QCOMPARE(currentItemData(f.combo), Value(0));
        selectItemData(f.combo, Value(9));
        QCOMPARE(f.combo->currentIndex(), -1);
        QVERIFY(currentItemData(f.combo).isNull());
        selectItemData(f.combo, Value("1"));
        QCOMPARE(f.combo->currentIndex(), 1);
    }

    void viewModeLocksTheRecord()
    {
        TestRoot root;
        TestForm f;
        Gui::show(&f);
        lockRecordFields(&f);
        QVERIFY(f.txt[0]->isReadOnly());
        QCOMPARE(f.txt[0]->focusPolicy(), Qt::NoFocus);
        QVERIFY(Gui::isLocked(f.combo));
        QVERIFY(!f.ctl<QCheckBox>("Check1")->isEnabled());
        QVERIFY(f.ctl<QPushButton>("cmdMENU(0)")->isEnabled());
    }

    // A limit counts characters as the tables do, and never cuts one in half:
    // an emoji beyond it is left out whole, at the limit it is kept whole.
    void fieldLimits_data()
    {
        QTest::addColumn<QString>("shown");  // already in the field
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("kept");
        QTest::newRow("digits") << "" << "123456" << "1234";
        QTest::newRow("emoji at the limit") << "" << "abc😀" << "abc😀";
        QTest::newRow("emoji beyond the limit") << "" << "abcd😀" << "abcd";
        QTest::newRow("emoji only") << "" << "😀😀😀😀😀" << "😀😀😀😀";
        QTest::newRow("typed into the middle") << "ab" << "😀😀😀" << "😀😀ab";
        QTest::newRow("longer text shown stays whole") << "😀😀😀😀😀😀" << "" << "😀😀😀😀😀😀";
    }
    void fieldLimits()
    {
        QFETCH(QString, shown);
        QFETCH(QString, typed);
        QFETCH(QString, kept);
        TestRoot root;
        TestForm f;
        setFieldLimit(f.txt[0], 4, ImeMode::Disabled);
        Gui::show(&f);
        showFieldText(f.txt[0], shown);
        Gui::focus(f.txt[0]);
        f.txt[0]->setCursorPosition(0);
        if (!typed.isEmpty()) {
            // as the input method commits it, and key by key
            QInputMethodEvent commit;
            commit.setCommitString(typed);
            QApplication::sendEvent(f.txt[0], &commit);
            QCOMPARE(f.txt[0]->text(), kept);
            f.txt[0]->setText(shown);
            f.txt[0]->setCursorPosition(0);
            for (const char32_t c : typed.toUcs4()) {
                QKeyEvent key(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString::fromUcs4(&c, 1));
                QApplication::sendEvent(f.txt[0], &key);
            }
        }
        QCOMPARE(f.txt[0]->text(), kept);
        QVERIFY(!f.txt[0]->testAttribute(Qt::WA_InputMethodEnabled));
    }

    // Qt's own dialogs speak Japanese, from the system's translations (and
    // the words they lack): the folder chooser and a text box's menu.
    void qtsOwnTextsAreJapanese()
    {
        TILLORA_FIRST_ENGINE_ONLY();
        QFileDialog chooser;
        chooser.setOption(QFileDialog::DontUseNativeDialog);
        chooser.setFileMode(QFileDialog::Directory);
        QStringList texts;
        for (QLabel *l : chooser.findChildren<QLabel *>())
            texts << l->text();
        for (QAbstractButton *b : chooser.findChildren<QAbstractButton *>())
            texts << b->text();
        for (const char *caption : {"アドレス:", "ディレクトリ:", "選択(&C)", "キャンセル"})
            QVERIFY2(texts.contains(QString::fromUtf8(caption)), qPrintable(texts.join(QLatin1Char(' '))));
        QCOMPARE(QAbstractFileIconProvider().type(QFileInfo(QDir::tempPath())), QStringLiteral("フォルダ"));
        QLineEdit box;
        std::unique_ptr<QMenu> menu(box.createStandardContextMenu());
        QStringList captions;
        for (QAction *a : menu->actions())
            if (!a->isSeparator())
                captions << a->text().section(QLatin1Char('\t'), 0, 0);
        QCOMPARE(captions, (QStringList{"元に戻す(&U)", "やり直す(&R)", "切り取り(&T)", "コピー(&C)", "貼り付け(&P)", "削除",
                                        "すべてを選択"}));
    }
};

TILLORA_GUI_TEST_MAIN(TestScreens)
#include "tst_screens.moc"
