// Every screen driven by a bounded random user: each registered screen is
// opened offscreen on a fresh tree holding a few records of every kind (the
// diary's May 2024), and for a fixed number of actions chosen by a seed it
// gets hostile and random text typed or pasted into its fields, which are
// left; drop-downs, lists, options, menu entries and every button pressed;
// every message answered yes, no, OK or cancel as the seed says. A screen
// opened from the one driven is driven as well, with a smaller budget.
// Afterwards, and on each engine:
//
//  * nothing crashed: each screen runs in a child process of its own, so a
//    crash or a hang names its screen and seed, with the actions before it;
//  * no row changed outside the tables the screens that opened own (kOwned);
//  * every text stored is one a field held, never a cut or changed copy;
//  * no message shows the engine's English words;
//  * every table still reads back (money inside the currency range).
//
// A failure prints the screen, the seed and the line that replays it.
// TILLORA_FUZZ_SEED chooses another seed, TILLORA_FUZZ_SCREEN one screen;
// TILLORA_FUZZ_TRACE=1 shows the statements of a replayed session;
// TILLORA_FUZZ_LONGER=n runs n times the actions.

#include "base/Globals.h"
#include "base/Msg.h"
#include "rules/diary/DiaryFixture.h"
#include "screens/exchange/fdlExpPriceTag.h"
#include "screens/exchange/fdlUploadTraceData.h"
#include "store/Database.h"
#include "store/Engine.h"
#include "store/Schema.h"
#include "store/Stmt.h"
#include "support/Build.h"
#include "support/GuiDriver.h"
#include "support/MsgRecorder.h"
#include "support/TestRoot.h"
#include "ui/Form.h"
#include "ui/Screens.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QKeySequence>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSet>
#include <QSlider>
#include <QTableView>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QtTest/QTest>

#include <cstdio>

namespace {

// ------------------------------------------------------------------ tables

// What each screen may change, as "database:TABLE". A session may change the
// tables of every screen that opened in it (a list opens its entry screen).
const struct {
    const char *screen;
    const char *tables;
} kOwned[] = {
    // lists: their entry screens write
    {"frmPlantList", ""},
    {"frmChemiList", ""},
    {"frmShipList", ""},
    {"frmLedgeList", ""},
    // entry screens
    {"frmDairyInput", "data:D_DIARY data:D_DIARY_DTL data:D_LEDGE data:D_CHEMI work:W_CHEMI_USE"},
    {"frmDiaryLedgeInput", ""}, // the day's memory, saved with the day
    {"frmPlantInput", "data:D_PLANT"},
    {"frmChemiInput", "data:D_CHEMI data:D_LEDGE"},
    {"frmShipInput", "data:D_SHIP data:D_LEDGE data:D_DIARY data:D_DIARY_DTL"},
    {"frmLedgeInput", "data:D_LEDGE"},
    // the menu, the calendar (its display options) and the dialogs
    {"fmnMain", ""},
    {"frmDairyCal", "ini:S_CTRL"},
    {"fdlSetConCtrl", "ini:S_CTRL"},
    {"fdlSetLocalCtrl", "ini:S_CTRL"},
    {"fdlSetMstCtrl", "master:S_CTRL"},
    {"fdlMstFmrEdit", "master:M_FMR"},
    {"fdlMstShopEdit", "master:M_SHOP"},
    {"fdlMstPrdEdit", "master:M_PRD"},
    {"fdlSetMgn", "ini:S_REP"},
    {"fdlSetPrintCopy", ""},
    {"fdlPreview", ""},
    {"fdlPrintAccRep", ""},
    {"fdlPrintTraceRep", ""},
    {"fdlPrintPriceTag", "ini:S_CTRL"}, // whether tags get a frame
    {"fdlExpPriceTag", "ini:S_CTRL"},   // the folder and the end of the last export
    {"fdlUploadTraceData", ""},
};

// Texts the program makes from several fields, never typed whole.
const char *const kComposed[] = {
    "data:D_PLANT.HARVEST_SCHD_YM", // the harvest's year and month boxes
};

// Messages without words that a screen shows on purpose.
const char *const kBareMessages[] = {
    "-1", // the diary's work name left with no line chosen: the number of the line, as it has always been
};

// Buttons never pressed, with the reason. Printing needs none: the child's
// print server is a socket that does not exist, so no printer is ever seen
// and a page goes to the PDF file chooser, which is answered through its
// hook, as the folder chooser is.
const struct {
    const char *screen;
    const char *button;
    const char *why;
} kNotPressed[] = {
    {"fdlSetConCtrl", "Command1(1)",
     "登録 connects to the server named in the fields at once: typed text would go out to hosts on the "
     "network and wait for their time-out"},
};

// Screens built but not on the menu yet: driven all the same (the list can
// go once they are registered).
Form *createUnlisted(const QString &name)
{
    if (name == QLatin1String("fdlExpPriceTag"))
        return new fdlExpPriceTag;
    if (name == QLatin1String("fdlUploadTraceData"))
        return new fdlUploadTraceData;
    return nullptr;
}
const char *const kUnlisted[] = {"fdlExpPriceTag", "fdlUploadTraceData"};

// ------------------------------------------------------------------ inputs

// Texts a hostile user types, and some that a field takes, so that saves happen.
const QStringList &hostileTexts()
{
    static const QStringList t{
        QStringLiteral("'"), QStringLiteral("\""), QStringLiteral("O'Neil"),
        QStringLiteral("'; DROP TABLE D_DIARY; --"), QStringLiteral("#2024/01/01#"), QStringLiteral("1 OR 1=1"),
        QStringLiteral("%_*?[]"), QStringLiteral("\\\\srv\\share"), QStringLiteral("🍅トマト🌾"), QStringLiteral("𠮷野家"),
        QStringLiteral("１２３"), QStringLiteral("－５"), QStringLiteral("ｶﾀｶﾅ"), QStringLiteral("1e300"),
        QStringLiteral("-1e300"), QStringLiteral("-0"), QStringLiteral("9e15"), QStringLiteral("-9e15"),
        QStringLiteral("922337203685477"), QStringLiteral("2147483648"), QStringLiteral("0.00001"),
        QStringLiteral("2026/02/30"), QStringLiteral("20260230"), QStringLiteral("13/45"),
        QStringLiteral("0000/00/00"), QStringLiteral("9999/12/31"), QStringLiteral("NULL"), QStringLiteral(" "),
        QString(), QStringLiteral("長").repeated(300), QStringLiteral("x").repeated(10000),
    };
    return t;
}

const QStringList &plainTexts()
{
    static const QStringList t{
        // dates as a user types them: digits, the slashes come by themselves
        QStringLiteral("20240508"), QStringLiteral("20240512"), QStringLiteral("2024/05/08"), QStringLiteral("202405"),
        QStringLiteral("1"),        QStringLiteral("12"),       QStringLiteral("150"),        QStringLiteral("2.5"),
        QStringLiteral("トマト"),   QStringLiteral("東の畑"),   QStringLiteral("2024"),
    };
    return t;
}

// A random text of up to 20 characters from a mix of scripts and signs.
QString randomText(QRandomGenerator &rng)
{
    static const QString pool = QStringLiteral("aZ09 ,.'\"#%;-_/\\()あいうアイウｱｲｳ漢字０１２．－＃　😀");
    QString out;
    const int n = rng.bounded(1, 21);
    for (int i = 0; i < n; ++i) {
        const int at = rng.bounded(pool.size());
        // a surrogate pair goes whole
        if (pool[at].isLowSurrogate())
            out += pool.mid(at - 1, 2);
        else if (pool[at].isHighSurrogate())
            out += pool.mid(at, 2);
        else
            out += pool[at];
    }
    return out;
}

// The English words of the engines and drivers that must never reach the farmer.
const QRegularExpression &engineWords()
{
    static const QRegularExpression re(
        QStringLiteral("syntax|no such|sql|near \"|lost connection|gone away|unable to|\\berror\\b|constraint|"
                       "duplicate|readonly|read-only|database|\\btable\\b|\\bcolumn\\b|parameter|incorrect|"
                       "out of range|too long|\\bdriver\\b|\\bquery\\b|violat|\\bfailed\\b|mismatch|memory|denied|"
                       "unknown|locked|timeout|refused|connect|\\bserver\\b|[A-Za-z]{3,} [a-z]{3,} [a-z]{3,}"),
        QRegularExpression::CaseInsensitiveOption);
    return re;
}

// Kana (both widths) and kanji.
const QRegularExpression &japanese()
{
    static const QRegularExpression re(QStringLiteral("[\\x{3040}-\\x{30FF}\\x{4E00}-\\x{9FFF}\\x{FF66}-\\x{FF9F}]"));
    return re;
}

QString shortText(const QString &s)
{
    QString t = s.size() > 400 ? s.left(30) + QStringLiteral("…(%1 chars)").arg(s.size()) : s;
    t.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return t;
}

void out(const QString &line)
{
    std::fputs(qPrintable(line + QLatin1Char('\n')), stdout);
    std::fflush(stdout);
}

// ------------------------------------------------------------------ data

// Every row of every table of the four databases, read through connections
// of the fuzz's own, by key.
struct TableState {
    const TableDef *def = nullptr;
    QString error; // the table could not be read
    QMap<QString, QVector<Value>> rows;
};
using DataState = QMap<QString, TableState>; // "database:TABLE"

struct Connections {
    QVector<QPair<DbKind, ConnectionSpec>> connections;
    void take()
    {
        connections = {{DbKind::Data, gDB->engine()->target()},
                 {DbKind::Master, gMST->engine()->target()},
                 {DbKind::Ini, gINI->engine()->target()},
                 {DbKind::Work, gWORK->engine()->target()}};
    }
    DataState read() const
    {
        DataState s;
        for (const auto &[kind, connection] : connections) {
            std::unique_ptr<Engine> engine;
            QString openError;
            try {
                engine = Engine::open(connection);
            } catch (const std::exception &e) {
                openError = QString::fromUtf8(e.what());
            }
            for (const TableDef *t : Schema::tablesOf(kind)) {
                TableState &ts = s[dbKindName(kind) + QLatin1Char(':') + t->name];
                ts.def = t;
                if (!engine) {
                    ts.error = openError;
                    continue;
                }
                try {
                    const ResultSet rs = engine->select(Stmt("SELECT * FROM ?").name(t->name));
                    for (const QVector<Value> &row : rs.rows) {
                        QStringList key;
                        for (const QString &k : t->key)
                            key << row.value(rs.columnIndex(k)).debugText();
                        if (t->key.isEmpty())
                            for (const Value &v : row)
                                key << v.debugText();
                        QString k = key.join(QLatin1Char('|'));
                        while (ts.rows.contains(k))
                            k += QLatin1Char('+');
                        QVector<Value> ordered;
                        for (const ColumnDef &c : t->columns)
                            ordered << row.value(rs.columnIndex(c.name));
                        ts.rows.insert(k, ordered);
                    }
                } catch (const std::exception &e) {
                    ts.error = QString::fromUtf8(e.what());
                }
            }
        }
        return s;
    }
};

// The records the screens start from: the diary's day 2024/05/08 with its
// plantings, lots and a slip, saved with a spraying line (and its cost
// slip); a shipment of the day and another day with a memo.
void seedWorld()
{
    DiaryFixture::seedDay();
    DiaryFixture::saveSprayingDay();
    Build::shipment(1, DiaryFixture::kDay)
        .set("PLANT_ID", 1)
        .set("PRD_ID", 1)
        .set("PRD_NM", "トマト")
        .set("SHOP_PRC", 150)
        .set("SHIP_QTY", 10)
        .add();
    Build::diaryDay(QDate(2024, 5, 20)).set("WTH_ID", 1).set("ONE_MSG", "O'Neil 来訪").add();
    gFMR_ID = Value(1);
    gSHOP_ID = Value(1);
    gUSE_TYPE = 1;
    gMODE = Mode::Add;
    gROW_IDX = -1;
    gBASE_DATE = DateUtil::make(2024, 5, 1);
    gWORK_DATE = Value(DiaryFixture::kDayTime);
}

// ------------------------------------------------------------------ session

// A hash of a name that is the same in every process and version (FNV-1a).
quint32 nameHash(const QString &name)
{
    quint32 h = 2166136261u;
    for (const char c : name.toUtf8())
        h = (h ^ quint8(c)) * 16777619u;
    return h;
}

class Session {
public:
    // Each screen draws its own actions from the seed.
    Session(const QString &screen, quint32 seed) : mScreen(screen), mSeed(seed), mRng(seed ^ nameHash(screen)) {}
    int run();

private:
    enum { RootBudget = 150, NestedBudget = 40, MaxReopen = 5, MaxMessages = 1500 };
    // TILLORA_FUZZ_LONGER=n gives every screen n times the actions, for a search at leisure.
    const int mLonger = std::max(1, qEnvironmentVariableIntValue("TILLORA_FUZZ_LONGER"));

    Form *create(const QString &name)
    {
        Form *f = createScreen(name);
        return f ? f : createUnlisted(name);
    }
    int drive(Form *form, int budget); // the budget left
    int act(Form *form);
    int fill(Form *form);
    bool mend(QWidget *field);
    void choose(QWidget *w);
    void key(Form *form);
    void resize(Form *form);
    QString anyText();
    // leave: the field is left after; pasted: the text is pasted, never typed key by key
    void typeInto(QLineEdit *field, const QString &text, bool leave = false, bool pasted = false);
    void press(Form *form, QAbstractButton *button);
    void clickItem(QAbstractItemView *view, const QRect &rect);
    void held(QLineEdit *field);
    void log(const QString &what) { out(QStringLiteral("  %1 %2").arg(++mStep).arg(what)); }
    int answer(const QString &prompt, int buttons);

    void compare(const DataState &before, const DataState &after);
    void checkMessages();
    void finding(const QString &text);

    QString mScreen;
    quint32 mSeed;
    QRandomGenerator mRng;
    MsgRecorder mMsgs;
    QSet<QString> mOpened;
    QSet<QString> mShown;           // every text a field held after typing or leaving
    QStringList mTyped;             // every text typed
    QHash<QString, QString> mFirst; // "screen/field": the text the screen first put there
    QStringList mFindings;
    int mStep = 0;
    int mDepth = 0;
    int mRetries = 0;
    bool mStop = false;
    QTemporaryDir mFiles;
};

int Session::answer(const QString &prompt, int buttons)
{
    out(QStringLiteral("    message: %1").arg(shortText(prompt)));
    if (mMsgs.count() > MaxMessages * mLonger)
        mStop = true;
    int r;
    switch (buttons & 7) {
    case Msg::YesNo: r = mRng.bounded(2) ? Msg::ResYes : Msg::ResNo; break;
    case Msg::YesNoCancel: r = QVector<int>{Msg::ResYes, Msg::ResNo, Msg::ResCancel}[mRng.bounded(3)]; break;
    case Msg::OKCancel: r = mRng.bounded(2) ? Msg::ResOK : Msg::ResCancel; break;
    // Retrying again and again would never end: the third time gives up.
    case Msg::RetryCancel: r = ++mRetries % 3 && mRng.bounded(2) ? Msg::ResRetry : Msg::ResCancel; break;
    case Msg::AbortRetryIgnore:
        r = ++mRetries % 3 ? QVector<int>{Msg::ResAbort, Msg::ResRetry, Msg::ResIgnore}[mRng.bounded(3)]
                           : Msg::ResAbort;
        break;
    default: r = Msg::ResOK; break;
    }
    return r;
}

QString Session::anyText()
{
    const int pick = mRng.bounded(10);
    if (pick < 5)
        return hostileTexts()[mRng.bounded(hostileTexts().size())];
    if (pick < 8)
        return plainTexts()[mRng.bounded(plainTexts().size())];
    return randomText(mRng);
}

void Session::typeInto(QLineEdit *field, const QString &text, bool leave, bool pasted)
{
    mTyped << text;
    log(QStringLiteral("type \"%1\" into %2")
            .arg(shortText(text),
                 field->objectName().isEmpty() ? field->parentWidget()->objectName() : field->objectName()));
    QPointer<QLineEdit> f = field;
    if (pasted || text.size() > 100 || mRng.bounded(4) == 0)
        Gui::paste(field, text);
    else
        Gui::type(field, text);
    if (!f)
        return;
    held(f);
    if (leave || mRng.bounded(10) < 8) {
        if (mRng.bounded(2))
            Gui::leave(f);
        else
            Gui::enter(f);
        if (f)
            held(f);
    }
}

// A half of a character (one of a surrogate pair) alone.
bool splitsCharacter(const QString &text)
{
    for (int i = 0; i < text.size(); ++i) {
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
        else if (text[i].isSurrogate())
            return true;
    }
    return false;
}

// What a field holds is what may be stored; it never holds half a character.
void Session::held(QLineEdit *field)
{
    const QString text = field->text();
    mShown << text;
    if (splitsCharacter(text))
        finding(QStringLiteral("%1 holds half a character: \"%2\"").arg(field->objectName(), shortText(text)));
}

void Session::press(Form *form, QAbstractButton *button)
{
    for (const auto &n : kNotPressed)
        if (form->objectName() == QLatin1String(n.screen) && button->objectName() == QLatin1String(n.button))
            return;
    log(QStringLiteral("press %1 \"%2\"").arg(button->objectName(), button->text()));
    Gui::click(button);
}

void Session::clickItem(QAbstractItemView *view, const QRect &rect)
{
    Gui::closePopups();
    if (mRng.bounded(4) == 0)
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, rect.center());
    else
        QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, rect.center());
    Gui::settle();
}

// A closing button (ｷｬﾝｾﾙ, 閉じる, 終了) ends the screen's turn: pressed less often.
bool closes(const QAbstractButton *b)
{
    static const QStringList captions{QStringLiteral("ｷｬﾝｾﾙ"), QStringLiteral("閉じる"), QStringLiteral("終了")};
    return captions.contains(b->text());
}

// The controls of a screen a user can act on now, in the order of its
// control table (the order of entry).
struct Controls {
    QList<QLineEdit *> fields;
    QList<QWidget *> choosers; // drop-downs, lists, options, checks, calendars, scroll bars
    QList<QAbstractButton *> buttons;
    QList<QAction *> menu;
    explicit Controls(Form *form)
    {
        QList<QWidget *> all = form->controls().toList();
        for (QWidget *w : form->findChildren<QWidget *>())
            if (!all.contains(w))
                all << w;
        for (QWidget *w : all) {
            if (!w || !w->isVisible() || !w->isEnabled())
                continue;
            if (auto *e = qobject_cast<QLineEdit *>(w)) {
                if (!e->isReadOnly() && !qobject_cast<QAbstractSpinBox *>(e->parentWidget()))
                    fields << e;
            } else if (auto *b = qobject_cast<QPushButton *>(w)) {
                buttons << b;
            } else if (qobject_cast<QComboBox *>(w) || qobject_cast<QCheckBox *>(w) ||
                       qobject_cast<QRadioButton *>(w) || qobject_cast<QListWidget *>(w) ||
                       qobject_cast<QTreeWidget *>(w) || qobject_cast<QCalendarWidget *>(w) ||
                       qobject_cast<QAbstractSlider *>(w)) {
                // (the parts of a calendar are the calendar)
                if (!w->parentWidget() || !qobject_cast<QCalendarWidget *>(w->parentWidget()->parentWidget()))
                    choosers << w;
            }
        }
        for (QMenuBar *bar : form->findChildren<QMenuBar *>())
            for (QAction *top : bar->actions())
                if (top->menu())
                    for (QAction *a : top->menu()->actions())
                        if (!a->isSeparator() && a->isEnabled() && !a->menu())
                            menu << a;
    }
};

void Session::choose(QWidget *w)
{
    log(QStringLiteral("use %1 (%2)").arg(w->objectName(), QString::fromLatin1(w->metaObject()->className())));
    QPointer<QWidget> alive = w;
    if (auto *c = qobject_cast<QComboBox *>(w)) {
        if (c->count() > 0)
            Gui::choose(c, mRng.bounded(c->count()));
        if (alive)
            Gui::leave(c);
    } else if (auto *b = qobject_cast<QAbstractButton *>(w)) {
        Gui::click(b);
    } else if (auto *l = qobject_cast<QListWidget *>(w)) {
        if (l->count() > 0)
            clickItem(l, l->visualItemRect(l->item(mRng.bounded(l->count()))));
    } else if (auto *t = qobject_cast<QTreeWidget *>(w)) {
        if (t->topLevelItemCount() > 0)
            clickItem(t, t->visualItemRect(t->topLevelItem(mRng.bounded(t->topLevelItemCount()))));
    } else if (auto *cal = qobject_cast<QCalendarWidget *>(w)) {
        if (auto *view = cal->findChild<QTableView *>())
            clickItem(view, view->visualRect(view->model()->index(mRng.bounded(1, 7), mRng.bounded(7))));
    } else if (auto *s = qobject_cast<QAbstractSlider *>(w)) {
        s->triggerAction(mRng.bounded(2) ? QAbstractSlider::SliderPageStepAdd : QAbstractSlider::SliderPageStepSub);
        Gui::settle();
    }
}

// A field that refused to be left holds the focus: a user mends it with a
// text it takes, or an entry of its list. True when it was left.
bool Session::mend(QWidget *field)
{
    for (int tries = 0; tries < 4; ++tries) {
        QWidget *focused = QApplication::focusWidget();
        if (!field || focused != field)
            return true;
        if (auto *c = qobject_cast<QComboBox *>(field->parentWidget()); c && c->count() > 0) {
            log(QStringLiteral("mend %1").arg(c->objectName()));
            Gui::choose(c, mRng.bounded(c->count()));
            if (c)
                Gui::leave(c);
        } else if (auto *e = qobject_cast<QLineEdit *>(field)) {
            typeInto(e, plainTexts()[mRng.bounded(plainTexts().size())], true);
        }
    }
    return false;
}

// Fills the screen's fields in the order of entry as a user completing a
// record would (a value the screen put there kept, a text it should take, a
// hostile one now and then, each mended when refused), then presses a button
// that confirms. The steps it took.
int Session::fill(Form *form)
{
    log(QStringLiteral("(fill in the screen)"));
    int steps = 0;
    const Controls now(form);
    QList<QWidget *> order;
    for (QWidget *w : form->controls())
        if (now.fields.contains(qobject_cast<QLineEdit *>(w)) || now.choosers.contains(w))
            order << w;
    for (QWidget *w : order) {
        QPointer<QWidget> alive = w;
        if (!alive || !alive->isVisible() || !alive->isEnabled() || !form->isVisible())
            break;
        ++steps;
        if (auto *e = qobject_cast<QLineEdit *>(w)) {
            // what the screen put there at first (today's date, the record's value) is often kept
            const int pick = mRng.bounded(6);
            const QString first = mFirst.value(form->objectName() + QLatin1Char('/') + e->objectName());
            if (pick < 2 && (first.isEmpty() || first == e->text()))
                continue;
            if (pick < 2)
                typeInto(e, first, true, true);
            else
                typeInto(e, pick < 4 ? plainTexts()[mRng.bounded(plainTexts().size())] : anyText(), true);
            if (!mend(e))
                break;
        } else if (!qobject_cast<QAbstractButton *>(w) || mRng.bounded(3) == 0) {
            choose(w);
        }
    }
    const Controls after(form);
    QList<QAbstractButton *> confirm;
    for (QAbstractButton *b : after.buttons)
        if (!closes(b))
            confirm << b;
    if (!confirm.isEmpty() && form->isVisible())
        press(form, confirm[mRng.bounded(confirm.size())]);
    return steps + 1;
}

// A key pressed where the focus is: Enter, Tab, Escape, Delete, the list
// key F4, the arrows.
void Session::key(Form *form)
{
    static const Qt::Key keys[] = {Qt::Key_Return, Qt::Key_Tab,  Qt::Key_Escape, Qt::Key_Delete,
                                   Qt::Key_F4,     Qt::Key_Down, Qt::Key_Up,     Qt::Key_PageDown};
    const Qt::Key k = keys[mRng.bounded(int(std::size(keys)))];
    QWidget *focused = QApplication::focusWidget();
    QWidget *target = focused && form->isAncestorOf(focused) ? focused : form;
    log(QStringLiteral("key %1 in %2").arg(QKeySequence(k).toString(), target->objectName()));
    Gui::closePopups();
    QTest::keyClick(target, k);
    Gui::settle();
}

// The window made tiny, small, as designed or large.
void Session::resize(Form *form)
{
    static const QSize sizes[] = {{1, 1}, {40, 30}, {320, 200}, {1920, 1080}, {4000, 3000}};
    const QSize size = mRng.bounded(4) ? sizes[mRng.bounded(int(std::size(sizes)))] : form->designPixels();
    log(QStringLiteral("resize to %1x%2").arg(size.width()).arg(size.height()));
    form->resize(size);
    Gui::settle();
}

// One action on a control of the screen chosen at random, or a round of
// filling in; the steps it took, 0 when there is nothing left to act on.
int Session::act(Form *form)
{
    const Controls c(form);
    QWidget *focused = QApplication::focusWidget();
    const int pick = mRng.bounded(100);
    if (focused && c.fields.contains(qobject_cast<QLineEdit *>(focused)) && mRng.bounded(3) == 0) {
        mend(focused);
    } else if (pick < 8) {
        return fill(form);
    } else if (pick < 55 && !c.fields.isEmpty()) {
        typeInto(c.fields[mRng.bounded(c.fields.size())], anyText());
    } else if (pick < 72 && !c.choosers.isEmpty()) {
        choose(c.choosers[mRng.bounded(c.choosers.size())]);
    } else if (pick < 77 && !c.menu.isEmpty()) {
        QAction *a = c.menu[mRng.bounded(c.menu.size())];
        log(QStringLiteral("menu %1 \"%2\"").arg(a->objectName(), a->text()));
        a->trigger();
        Gui::settle();
    } else if (pick < 80) {
        key(form);
    } else if (pick < 82) {
        resize(form);
    } else {
        QList<QAbstractButton *> buttons;
        for (QAbstractButton *b : c.buttons)
            if (!closes(b) || mRng.bounded(4) == 0)
                buttons << b;
        if (!buttons.isEmpty())
            press(form, buttons[mRng.bounded(buttons.size())]);
        else if (!c.fields.isEmpty())
            typeInto(c.fields[mRng.bounded(c.fields.size())], anyText());
        else
            return 0;
    }
    return 1;
}

int Session::drive(Form *form, int budget)
{
    QPointer<Form> f = form;
    for (QLineEdit *e : form->findChildren<QLineEdit *>())
        if (!e->text().isEmpty())
            mFirst.insert(form->objectName() + QLatin1Char('/') + e->objectName(), e->text());
    while (budget > 0 && f && f->isVisible() && !mStop && !programEnded()) {
        const int steps = act(f);
        if (steps == 0)
            break;
        budget -= steps;
    }
    return budget;
}

void Session::finding(const QString &text)
{
    if (mFindings.contains(text))
        return;
    mFindings << text;
}

void Session::checkMessages()
{
    // The farmer's own text may be quoted back, and the engine's own words
    // may follow in brackets for support; what is left must be Japanese.
    static const QRegularExpression brackets(QStringLiteral("\\([^()]*\\)|（[^（）]*）|\\[[^\\[\\]]*\\]"));
    QStringList typed = mTyped + QStringList(mShown.values());
    std::sort(typed.begin(), typed.end(), [](const QString &a, const QString &b) { return a.size() > b.size(); });
    for (const MsgRecorder::Entry &m : mMsgs.messages) {
        QString rest = m.prompt;
        for (const QString &t : typed)
            if (t.size() >= 2)
                rest.remove(t);
        rest.remove(brackets);
        const QRegularExpressionMatch hit = engineWords().match(rest);
        if (hit.hasMatch())
            finding(QStringLiteral("English engine text in a message (\"%1\"): %2")
                        .arg(hit.captured(), shortText(m.prompt)));
        else if (!japanese().match(rest).hasMatch() &&
                 std::find(std::begin(kBareMessages), std::end(kBareMessages), m.prompt) == std::end(kBareMessages))
            finding(QStringLiteral("a message with no Japanese: %1").arg(shortText(m.prompt)));
    }
}

// A stored text that no field held is made from one when it carries a sign
// of the hostile texts (a quote, a hash, a percent, a semicolon, a
// backslash, a question mark, a character outside the basic plane or the
// replacement character), or when it is the start of a longer text a field
// held: quotes doubled or lost, a character halved, a text cut.
bool mangled(const QString &stored, const QSet<QString> &held)
{
    static const QString signs = QStringLiteral("'\"#%;\\?*[]") + QChar(0xFFFD);
    for (const QChar c : stored)
        if (signs.contains(c) || c.isSurrogate())
            return true;
    for (const QString &t : held)
        if (stored.size() >= 3 && t.size() > stored.size() && t.startsWith(stored))
            return true;
    return false;
}

void Session::compare(const DataState &before, const DataState &after)
{
    QSet<QString> owned;
    for (const auto &o : kOwned)
        if (mOpened.contains(QLatin1String(o.screen)))
            for (const QString &t : QString::fromLatin1(o.tables).split(QLatin1Char(' '), Qt::SkipEmptyParts))
                owned << t;
    for (auto it = after.cbegin(); it != after.cend(); ++it) {
        const QString &table = it.key();
        const TableState &now = it.value();
        const TableState &was = before.value(table);
        if (!now.error.isEmpty()) {
            if (was.error.isEmpty())
                finding(QStringLiteral("%1 can no longer be read: %2").arg(table, shortText(now.error)));
            continue;
        }
        if (now.rows == was.rows)
            continue;
        int changed = 0;
        for (auto r = now.rows.cbegin(); r != now.rows.cend(); ++r)
            changed += was.rows.value(r.key()) != r.value();
        out(QStringLiteral("  %1: %2 rows written, %3 before, %4 after")
                .arg(table)
                .arg(changed)
                .arg(was.rows.size())
                .arg(now.rows.size()));
        if (!owned.contains(table)) {
            QString what;
            for (auto r = now.rows.cbegin(); r != now.rows.cend() && what.isEmpty(); ++r)
                if (was.rows.value(r.key()) != r.value())
                    what =
                        (was.rows.contains(r.key()) ? QStringLiteral("changed ") : QStringLiteral("added ")) + r.key();
            for (auto r = was.rows.cbegin(); r != was.rows.cend() && what.isEmpty(); ++r)
                if (!now.rows.contains(r.key()))
                    what = QStringLiteral("removed ") + r.key();
            finding(QStringLiteral("row changed outside the screen's tables: %1 %2").arg(table, what));
            continue;
        }
        for (auto r = now.rows.cbegin(); r != now.rows.cend(); ++r) {
            const QVector<Value> old = was.rows.value(r.key());
            for (int c = 0; c < now.def->columns.size(); ++c) {
                const ColumnDef &col = now.def->columns[c];
                if (col.type != ColType::Text && col.type != ColType::Memo)
                    continue;
                const Value &v = r.value()[c];
                if (!v.isText() || (c < old.size() && old[c] == v) || mShown.contains(v.toText()))
                    continue;
                if (std::find_if(std::begin(kComposed), std::end(kComposed), [&](const char *c) {
                        return table + QLatin1Char('.') + col.name == QLatin1String(c);
                    }) != std::end(kComposed))
                    continue;
                if (mangled(v.toText(), mShown))
                    finding(QStringLiteral("stored text is not what was typed: %1.%2 = \"%3\"")
                                .arg(table, col.name, shortText(v.toText())));
            }
        }
    }
}

int Session::run()
{
    out(QStringLiteral("session %1 seed %2 on %3").arg(mScreen).arg(mSeed).arg(TestEnv::engineName()));
    TestRoot root;
    seedWorld();
    mMsgs.setAnswerer([this](const QString &prompt, int buttons) { return answer(prompt, buttons); });
    // TILLORA_FUZZ_TRACE=1 shows every statement among the actions.
    if (qEnvironmentVariableIntValue("TILLORA_FUZZ_TRACE"))
        setLogHook([](const QString &text) { out(QStringLiteral("    trace: ") + text); });
    setEndProgramHook([this] { log(QStringLiteral("(the program ends)")); });
    setOpenDirHook([this](const QString &) { return mRng.bounded(2) ? mFiles.path() : QString(); });
    setSaveFileHook([this](const QString &, const QString &) {
        return mRng.bounded(2) ? mFiles.filePath(QStringLiteral("out.pdf")) : QString();
    });
    setOpenFileHook([this](const QString &, const QString &) {
        return mRng.bounded(2) ? mFiles.filePath(QStringLiteral("out.pdf")) : QString();
    });
    Gui::Modals modals;
    modals.otherwise([this](Form &f) {
        mOpened << f.objectName();
        if (mDepth > 0)
            return;
        ++mDepth;
        out(QStringLiteral("  [%1 opens]").arg(f.objectName()));
        drive(&f, NestedBudget * mLonger);
        out(QStringLiteral("  [%1 closes]").arg(f.objectName()));
        --mDepth;
    });

    Connections cnn;
    cnn.take();
    const DataState before = cnn.read();

    // The menu stands open behind the screens, as in the program, so that a
    // dialog's cancel closes the dialog.
    std::unique_ptr<Form> menu;
    if (mScreen != QLatin1String("fmnMain")) {
        menu.reset(createScreen(QStringLiteral("fmnMain")));
        menu->load();
    }
    mOpened << mScreen;
    // A screen closed before its budget is spent is opened again.
    int budget = RootBudget * mLonger;
    for (int opening = 0; opening <= MaxReopen * mLonger && budget > 0 && !mStop && !programEnded(); ++opening) {
        QPointer<Form> form = create(mScreen);
        Gui::show(form);
        budget = drive(form, budget);
        if (form) {
            form->done(QDialog::Rejected);
            delete form;
        }
    }
    menu.reset();
    for (const QString &name : modals.opened)
        mOpened << name;
    setEndProgramHook(nullptr);
    setOpenDirHook(nullptr);
    setSaveFileHook(nullptr);
    setOpenFileHook(nullptr);
    setLogHook(nullptr);

    compare(before, cnn.read());
    checkMessages();
    for (const QString &f : mFindings)
        out(QStringLiteral("FINDING: ") + f);
    QStringList opened = mOpened.values();
    opened.sort();
    out(QStringLiteral("%1 actions, %2 messages, screens %3")
            .arg(mStep)
            .arg(mMsgs.count())
            .arg(opened.join(QLatin1Char(' '))));
    return mFindings.isEmpty() ? 0 : 1;
}

// ------------------------------------------------------------------ runner

QList<quint32> seeds()
{
    bool ok = false;
    const quint32 chosen = qEnvironmentVariable("TILLORA_FUZZ_SEED").toUInt(&ok);
    return ok ? QList<quint32>{chosen} : QList<quint32>{1};
}

} // namespace

class TestFuzz : public QObject {
    Q_OBJECT
private slots:
    void everyScreen_data()
    {
        QTest::addColumn<QString>("screen");
        QTest::addColumn<quint32>("seed");
        QStringList names = screenNames();
        for (const char *n : kUnlisted)
            if (!names.contains(QLatin1String(n)))
                names << QString::fromLatin1(n);
        const QString only = qEnvironmentVariable("TILLORA_FUZZ_SCREEN");
        for (const QString &name : names)
            if (only.isEmpty() || only == name)
                for (quint32 seed : seeds())
                    QTest::newRow(qPrintable(QStringLiteral("%1 seed %2").arg(name).arg(seed))) << name << seed;
    }

    // Each screen in a child process of its own, so that a crash names it.
    void everyScreen()
    {
        QFETCH(QString, screen);
        QFETCH(quint32, seed);
        const QStringList args{QStringLiteral("--fuzz-session"), screen, QString::number(seed), TestEnv::engineName()};
        QProcess child;
        child.setProcessChannelMode(QProcess::MergedChannels);
        child.start(QCoreApplication::applicationFilePath(), args);
        QVERIFY2(child.waitForStarted(), qPrintable(child.errorString()));
        const bool finished =
            child.waitForFinished(120000 * std::max(1, qEnvironmentVariableIntValue("TILLORA_FUZZ_LONGER")));
        if (!finished) {
            child.kill();
            child.waitForFinished();
        }
        const QString log = QString::fromUtf8(child.readAll());
        QStringList findings;
        for (const QString &line : log.split(QLatin1Char('\n'))) {
            if (line.startsWith(QLatin1String("FINDING: ")))
                findings << line;
            else if (line.startsWith(QLatin1String("KNOWN")))
                qInfo("%s seed %u: %s", qPrintable(screen), seed, qPrintable(line));
        }
        const QString replay =
            QStringLiteral("replay: %1%2 %3")
                .arg(TestEnv::engine() == TestEngine::Mysql ? QStringLiteral("TILLORA_TEST_MYSQL=... ") : QString(),
                     QCoreApplication::applicationFilePath(), args.join(QLatin1Char(' ')));
        QString what;
        if (!finished)
            what = QStringLiteral("hung");
        else if (child.exitStatus() != QProcess::NormalExit)
            what = QStringLiteral("crashed");
        else if (child.exitCode() != 0 && findings.isEmpty())
            what = QStringLiteral("failed (exit %1)").arg(child.exitCode());
        if (!what.isEmpty()) {
            QStringList lines = log.split(QLatin1Char('\n'));
            findings << QStringLiteral("%1 %2: the last actions:").arg(screen, what)
                     << lines.mid(std::max(0, int(lines.size()) - 40));
        }
        QVERIFY2(findings.isEmpty(),
                 qPrintable(QStringLiteral("%1 seed %2 on %3\n%4\n%5")
                                .arg(screen)
                                .arg(seed)
                                .arg(TestEnv::engineName(), findings.join(QLatin1Char('\n')), replay)));
    }
};

// The offscreen platform's notes on what it can't do (raise a window, grab
// the keyboard) say nothing about the screens.
void quietPlatform(QtMsgType type, const QMessageLogContext &, const QString &msg)
{
    if (msg.startsWith(QLatin1String("This plugin does not support")))
        return;
    std::fprintf(stderr, "%s%s\n", type == QtWarningMsg ? "warning: " : "", qPrintable(msg));
}

int main(int argc, char **argv)
{
    prepareProcess();
    if (argc == 5 && qstrcmp(argv[1], "--fuzz-session") == 0) {
        // No printer is ever seen: the print server is a socket that isn't there.
        qputenv("CUPS_SERVER", QByteArrayLiteral("/nonexistent/tillora-fuzz.sock"));
        const QString screen = QString::fromUtf8(argv[2]);
        const quint32 seed = QByteArray(argv[3]).toUInt();
        TestEnv::setEngine(qstrcmp(argv[4], "mysql") == 0 ? TestEngine::Mysql : TestEngine::Sqlite);
        qInstallMessageHandler(quietPlatform);
        int one = 1;
        QApplication app(one, argv);
        guiTestSetup(app);
        Session s(screen, seed);
        return s.run();
    }
    QApplication app(argc, argv);
    guiTestSetup(app);
    TestFuzz t;
    return TestEnv::runOnEngines(&t, argc, argv);
}

#include "tst_fuzz.moc"
