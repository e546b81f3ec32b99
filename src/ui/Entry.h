#pragma once
// The conventions of data entry, the same on every screen:
//  * Enter moves on like Tab (on a button it presses the button);
//  * a text box selects its whole text when it gets the focus;
//  * a drop-down list opens when it gets the focus;
//  * a date field completes "2024" to "2024/" and "2024/01" to "2024/01/" as
//    typed, and shows the screen's pop-up calendar MonthView1 in the add and
//    change modes; a day clicked there fills the field named by the
//    calendar's tag and moves on;
//  * a field may have a leave check: when it fails (having shown its own
//    message) the focus stays in the field;
//  * fields have fixed length limits and input-method modes;
//  * in view and delete modes the record's fields are locked.

#include "base/Choice.h"
#include "base/Mode.h"
#include "base/Value.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>

class Form;
class QAbstractButton;
class QCalendarWidget;
class QComboBox;
class QLineEdit;
class QListWidget;
class QWidget;

enum class ImeMode { None, Disabled, Hiragana, Katakana, FullWidthAlpha, Off };

class EntryConventions : public QObject {
    Q_OBJECT
public:
    explicit EntryConventions(Form *form);

    // Installs the conventions on a control of the screen.
    void attach(QWidget *control);

    // A date field of the screen; index is the field's index in its array.
    void registerDateField(QLineEdit *field, int index);
    // A year-and-month field.
    void registerYmField(QLineEdit *field);
    // The check run when the field is left; false keeps the focus there.
    void setLeaveCheck(QWidget *field, std::function<bool()> check);
    // A number field: a text left in it that isn't numeric shows message
    // with the exclamation mark and keeps the focus; an empty one passes.
    void setNumberCheck(QLineEdit *field, const QString &message);
    // What the screen is open for. The pop-up calendar of a date field is
    // offered while adding or changing, never while only showing or
    // deleting; a screen that sets no mode (a list, a dialog) always offers it.
    void setMode(Mode mode) { mMode = mode; }
    // Runs a pending leave check now; false when a field refuses to be left.
    bool settleLeaveChecks();
    // Whether the user has typed or chosen anything in the screen's fields
    // since it was shown (or since setEdited(false)).
    bool edited() const { return mEdited; }
    void setEdited(bool edited) { mEdited = edited; }
    // A control of the screen that only moves about or looks for something
    // (a tab, a search field): what is done in it is no edit.
    void notAnEdit(QWidget *control);
    // Gives the focus back to the field entered last, as it was, after a
    // question answered "stay" (a button clicked meanwhile took it).
    void backToField();

    QCalendarWidget *monthView() const;

signals:
    // A field was left with its check passed (or without a check).
    void fieldLeft(QWidget *field);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void onFocusIn(QWidget *w);
    void onFocusOut(QWidget *w);
    bool runLeaveCheck(QWidget *w);
    void runPendingChecks();
    void restoreFocus(QWidget *w);
    // Enter: the field's check first, then the move.
    void moveOn(QWidget *w);
    void showMonthView(QLineEdit *field, int index);
    void hideMonthView();
    void onMonthViewClicked(const QDate &date);

    Form *mForm;
    Mode mMode = Mode::None;
    QHash<QWidget *, std::function<bool()>> mChecks;
    QHash<QWidget *, int> mDateFields;
    QList<QPointer<QWidget>> mPending; // left, checks not run yet, in order
    QPointer<QWidget> mFailed;    // check failed, focus given back
    QWidget *mCheckedBeforeMove = nullptr; // its check ran for the move under way
    bool mRestoring = false;
    bool mEdited = false;
    bool mSeenFocus = false;
    QPointer<QWidget> mEntered; // the control the focus last entered
    QPointer<QWidget> mLastField; // the same, leaving out the push buttons
};

// Completes a date as it is typed: four digits get "/", seven characters
// with the first "/" at position 5 get "/"; the caret goes to the end.
void FmtDateText(QLineEdit *field);
// The same for year and month: four digits get "/".
void FmtYmText(QLineEdit *field);

// Moves the focus on from a control, as the Tab key does.
void sendTab(QWidget *from);

// Maximum length and input-method mode of a text box. The length counts
// characters as the tables do (an emoji is one); what is typed or pasted
// beyond it is left out whole, never half a character. 0 sets no length.
void setFieldLimit(QLineEdit *field, int maxLength, ImeMode mode);
// Shows a stored text in a limited field. The limit holds for typing only:
// a stored text longer than it is shown whole (and so saved back whole).
void showFieldText(QLineEdit *field, const QString &text);

// Item data in lists: the key of each entry is its item data. The empty
// first item carries 0.
void addEmptyItem(QComboBox *combo);
void addItem(QComboBox *combo, const QString &text, const Value &data);
Value itemData(const QComboBox *combo, int index);
Value currentItemData(const QComboBox *combo); // Null when nothing is selected
// Walks the list from the start and selects the entry whose data equals
// value; with none, nothing is selected.
void selectItemData(QComboBox *combo, const Value &value);

// Empties the drop-down and fills it with the choices, each with its id as
// item data, the empty entry first when asked; nothing is chosen.
void fillChoices(QComboBox *combo, const Choices &choices, bool emptyFirst = true);
// Empties the list and fills it with the choices; nothing is chosen.
void fillChoices(QListWidget *list, const Choices &choices);

// What empty text in a drop-down that takes typed text chooses.
enum class EmptyText {
    EmptyEntry, // the list's empty entry (item data 0) when it has one, else nothing
    NoChoice,   // nothing, not even the empty entry
};
// The leave rule of a drop-down that takes typed text: text equal to an
// entry chooses it (the current one first); empty text chooses as `empty`
// says; text equal to none is refused with the message (exclamation mark),
// or silently when the message is empty, and false keeps the focus there.
bool settleComboText(QComboBox *combo, const QString &message = QStringLiteral("一覧にある項目を選択してください。"),
                     EmptyText empty = EmptyText::EmptyEntry);
void addItem(QListWidget *list, const QString &text, const Value &data);
Value itemData(const QListWidget *list, int row);
void selectItemData(QListWidget *list, const Value &value);

// Modes 3 and 4: every control whose name begins with "txt", "cmb" or "Che"
// leaves the tab order; text boxes and drop-downs are locked on the screen's
// background, check boxes disabled.
void lockRecordFields(Form *form);
// A locked drop-down keeps its text readable on the locked background and
// neither opens nor changes; unlocking gives it back.
void setComboLocked(QComboBox *combo, bool locked);
