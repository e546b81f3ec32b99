#pragma once
// The base of every screen. A screen is built from its control table (name,
// kind, caption, rectangle in twips, frame), keeps the controls' design
// geometry and font (SetDefSize) and scales them in proportion to the window
// on every resize (SetSize), reads the window state at load and at each
// activation, and runs its event handlers inside the common error trap.
//
// Order of events, as the screens expect it: load (onLoad) before the window
// is shown; the resize handler (onResize) when it is first shown and at each
// change of size; activation (onActivate) when the screen becomes the active
// one coming from another screen of the program (not when a message box
// closes); onUnload when it closes.

#include <QDialog>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

class QAbstractButton;
class QLineEdit;
class QMenuBar;
class QStyle;
class QComboBox;
class QPushButton;
class QLabel;
class EntryConventions;

enum class CtlKind {
    Label,     // a caption (lblCAP, lblTITLE ...)
    Data,      // a read-only value (lblDATA, lblINFO): sunken pale box
    Text,      // text box
    Password,  // text box showing marks
    Combo,     // drop-down list
    ComboEdit, // drop-down list that takes typed text
    Button,
    Frame,     // framed group with a caption
    Option,
    Check,
    List,
    ListView,  // list with columns; caption holds the headings separated by '|'
    Calendar,  // the pop-up month view
    Canvas,    // a drawing surface
    Shape,     // a plain rectangle
    VScroll,
    HScroll,
    Slider,
};

struct CtlSpec {
    const char *name;
    CtlKind kind;
    const char *caption;
    int left, top, width, height; // twips, relative to the frame when there is one
    const char *frame = nullptr;
};

// Which controls the scaler passes over or treats apart, by name prefix.
struct ScaleRules {
    QStringList skip{QStringLiteral("mnu"), QStringLiteral("Tim"), QStringLiteral("img")};
    QStringList noFont;                                    // keep their font ("Sha")
    QStringList heightAfterFont{QStringLiteral("cmb")};    // set their height after the font
};

class Form : public QDialog {
    Q_OBJECT
public:
    // name: the screen's name (also its objectName); design size in twips.
    Form(const QString &name, int designWidth, int designHeight, QWidget *parent = nullptr);
    ~Form() override;

    static constexpr int TwipsPerPixel = 15;

    // Load: runs onLoad once. Called by the functions that open screens.
    void load();
    bool loaded() const { return mLoaded; }

    QWidget *control(const QString &name) const;
    template <class T> T *ctl(const QString &name) const { return qobject_cast<T *>(control(name)); }
    // The members "base(0)" .. "base(count-1)" of an array; nullptr for gaps.
    template <class T> QVector<T *> array(const QString &base, int count) const
    {
        QVector<T *> out(count, nullptr);
        for (int i = 0; i < count; ++i)
            out[i] = ctl<T>(QStringLiteral("%1(%2)").arg(base).arg(i));
        return out;
    }
    const QVector<QWidget *> &controls() const { return mControls; }
    EntryConventions &entry() const { return *mEntry; }

    // Screen scaling.
    void SetDefSize();
    void SetSize();
    ScaleRules &scaleRules() { return mRules; }
    double rateX() const { return mRateX; }
    double rateY() const { return mRateY; }
    QSize designPixels() const { return {mDesignW / TwipsPerPixel, mDesignH / TwipsPerPixel}; }

    // Window state from WINDOW_STA: maximised or normal.
    void applyWindowState();

    // A screen with a sizable border can be maximised; the others keep their size.
    void setSizable(bool sizable);
    bool sizable() const { return mSizable; }

    // Runs an event handler inside the common trap. How the trap shows an error: "(number)description" with the stop sign,
    // the description with the exclamation mark, or the description alone.
    enum class TrapStyle { Number, Description, Plain };
    void setTrapStyle(TrapStyle s) { mTrapStyle = s; }
    bool trap(const std::function<void()> &handler);
    // Connects a button's click to a handler run inside the trap. The handler
    // doesn't run while a field that failed its leave check holds the focus,
    // unless the button is a closing one (validates = false).
    void onClick(QAbstractButton *button, const std::function<void()> &handler, bool validates = true);

    // Asked before the screen closes (by its closing button or the window's
    // own); false keeps it open. A close made while it is asking (its
    // answer saved the record and closed the screen) passes straight through.
    void setCloseCheck(std::function<bool()> check) { mCloseCheck = std::move(check); }
    // Runs the close check as closing would (a screen not on show closes
    // without it); false keeps the screen open.
    bool mayClose();
    // Closed for good (done, or closed): its unload has run.
    bool unloaded() const { return mUnloaded; }

    // Registered open screens, by name.
    static Form *find(const QString &name);
    static QVector<Form *> openForms();

protected:
    void buildControls(const CtlSpec *specs, int count);
    // Takes a control made by the screen itself (a canvas of its own kind)
    // into the control table, placed as its table row says.
    void adoptControl(QWidget *w, const CtlSpec &conn);
    virtual void onLoad() {}
    virtual void onResize() { SetSize(); }
    virtual void onActivate() { applyWindowState(); }
    virtual void onUnload() {}

    void resizeEvent(QResizeEvent *e) override;
    void changeEvent(QEvent *e) override;
    void closeEvent(QCloseEvent *e) override;

public:
    void done(int r) override;

protected:
    void keyPressEvent(QKeyEvent *e) override;

private:
    struct Design {
        double left, width, top, height, fontSize;
        bool skipped;
    };
    bool startsWithAny(const QString &name, const QStringList &prefixes) const;
    void scaleMenuLine(QMenuBar *bar, const Design &design);
    void unloadOnce();
    std::function<bool()> mCloseCheck;
    bool mAskingClose = false;

    int mDesignW, mDesignH;
    QVector<QWidget *> mControls;
    QHash<QString, QWidget *> mByName;
    QVector<Design> mDesign;
    ScaleRules mRules;
    double mRateX = 1, mRateY = 1;
    bool mLoaded = false;
    bool mUnloaded = false;
    bool mSizable = false;
    bool mInResize = false;
    TrapStyle mTrapStyle = TrapStyle::Number;
    EntryConventions *mEntry;
};

// The style of every screen: the named one (the program's "Fusion"), whose
// check boxes and option buttons draw their square and circle in proportion
// to their font, so that they grow and shrink with the screen as the text
// does. Owned by the caller (the application, once set).
QStyle *makeScreenStyle(const QString &base);

// Opens a screen modally through the one road that tests can watch: loads
// it, hands it to the modal hook if one is set, runs it, and deletes it.
// Returns the dialog's result.
int openModal(Form *form);
template <class F, class... A> int openModal(A &&...args)
{
    return openModal(new F(std::forward<A>(args)...));
}
// Called with every screen about to run modally (tests drive it from here).
void setModalHook(std::function<void(Form *)> hook);

// Shows a root screen (not modal); it is deleted when closed.
void showRoot(Form *form);

// What the screens take from the program around them, set once at start:
// whether a screen opens maximised (the WINDOW_STA setting), and what
// EndProgram closes after the screens (the database objects).
void setWindowStateSource(std::function<bool()> maximised);
void setProgramShutdown(std::function<void()> shutdown);

bool IsFormLoaded(const QString &name);
// The cancel of the settings and master dialogs: closes the dialog when the
// menu is open, else ends the program (at start-up, before any menu). The
// dialog's close check is asked first either way: it may keep the dialog
// open, or save and close it, and then the program goes on.
void closeOrEndProgram(Form *dialog);
// Unloads every open screen, empties the database objects and ends the
// process. Under a test hook it returns after closing the screens; callers
// leave their handler right after it, and loops ask programEnded().
void EndProgram();
bool programEnded();
void setEndProgramHook(std::function<void()> hook);
// The folder chosen in a folder dialog; "" when cancelled.
QString OpenDir(QWidget *owner, const QString &title);
void setOpenDirHook(std::function<QString(const QString &)> hook);
// The file named in a save dialog that starts at suggested; "" when
// cancelled. filter as the file dialog takes it ("PDF (*.pdf)").
QString SaveFileName(QWidget *owner, const QString &title, const QString &suggested, const QString &filter);
// Tests answer the save dialog here: (title, suggested) to the file name.
void setSaveFileHook(std::function<QString(const QString &, const QString &)> hook);
// The file chosen in an open dialog that starts in folder; "" when cancelled.
QString OpenFileName(QWidget *owner, const QString &title, const QString &folder, const QString &filter);
// Tests answer the open dialog here: (title, folder) to the file name.
void setOpenFileHook(std::function<QString(const QString &, const QString &)> hook);

// The wait cursor for as long as the object lives.
class WaitCursor {
public:
    WaitCursor();
    ~WaitCursor();
    WaitCursor(const WaitCursor &) = delete;
    WaitCursor &operator=(const WaitCursor &) = delete;
};
