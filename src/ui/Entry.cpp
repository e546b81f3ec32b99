#include "ui/Entry.h"

#include "ui/Form.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "base/Msg.h"

#include <algorithm>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QValidator>

namespace {

bool isEnter(QEvent *e)
{
    if (e->type() != QEvent::KeyPress)
        return false;
    const int k = static_cast<QKeyEvent *>(e)->key();
    return k == Qt::Key_Return || k == Qt::Key_Enter;
}

// Focus that comes and goes with a pop-up or another window is no entering
// or leaving of a field.
bool realFocusChange(QEvent *e)
{
    const Qt::FocusReason r = static_cast<QFocusEvent *>(e)->reason();
    return r != Qt::PopupFocusReason && r != Qt::ActiveWindowFocusReason;
}

bool sameValue(const Value &a, const Value &b)
{
    const bool aNone = !hasValue(a), bNone = !hasValue(b);
    if (aNone || bNone)
        return aNone && bNone && a.isNull() == b.isNull();
    if (IsNumeric(a) && IsNumeric(b))
        return a.toDouble() == b.toDouble();
    return a.toText() == b.toText();
}

// A field's limit in characters, as the tables count them: what is typed or
// pasted beyond it is left out whole, never half a character (an emoji is
// two halves in the text box's own count).
class CharLimit : public QValidator {
public:
    CharLimit(int limit, QObject *parent) : QValidator(parent), mLimit(limit) {}
    int limit() const { return mLimit; }
    void setLimit(int limit) { mLimit = limit; }

    State validate(QString &input, int &pos) const override
    {
        int excess = charCount(input) - mLimit;
        if (excess <= 0)
            return Acceptable;
        // What was just put in ends at the caret: it gives way, from its end.
        int from = pos;
        for (; excess > 0 && from > 0; --excess) {
            --from;
            if (from > 0 && input.at(from).isLowSurrogate() && input.at(from - 1).isHighSurrogate())
                --from;
        }
        input.remove(from, pos - from);
        pos = from;
        if (excess > 0)
            input = leftChars(input, mLimit);
        pos = std::min(pos, int(input.size()));
        return Acceptable;
    }

private:
    int mLimit;
};

CharLimit *charLimitOf(QLineEdit *field) { return dynamic_cast<CharLimit *>(const_cast<QValidator *>(field->validator())); }

} // namespace

void sendTab(QWidget *from)
{
    QWidget *window = from ? from->window() : nullptr;
    if (!window)
        return;
    // The window moves the focus on from its focus widget, as the Tab key does.
    QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
    QApplication::sendEvent(window, &tab);
}

namespace {

bool allDigits(const QString &t)
{
    return std::all_of(t.begin(), t.end(), [](QChar c) { return c.isDigit(); });
}

// A slash typed right after the one that was added for it is absorbed, so
// that a date typed with or without its slashes comes out the same.
bool absorbSlash(QLineEdit *field)
{
    const QString t = field->text();
    if (!t.endsWith(QLatin1String("//")))
        return false;
    field->setText(t.chopped(1));
    return true;
}

} // namespace

void FmtDateText(QLineEdit *field)
{
    if (absorbSlash(field))
        return;
    const QString t = field->text();
    // "yyyy" and "yyyy/mm" take their slash as they are typed
    if ((t.size() == 4 && allDigits(t)) || (t.size() == 7 && allDigits(t.left(4)) && t[4] == QLatin1Char('/') &&
                                             allDigits(t.mid(5))))
        field->setText(t + QLatin1Char('/'));
    field->setCursorPosition(field->text().size());
}

void FmtYmText(QLineEdit *field)
{
    if (absorbSlash(field))
        return;
    const QString t = field->text();
    if (t.size() == 4 && allDigits(t))
        field->setText(t + QLatin1Char('/'));
    field->setCursorPosition(field->text().size());
}

void setFieldLimit(QLineEdit *field, int maxLength, ImeMode mode)
{
    if (maxLength > 0) {
        // The box's own limit counts halves of characters: room for the
        // limit in characters of any kind; the characters count in CharLimit.
        field->setMaxLength(maxLength * 2);
        field->setValidator(new CharLimit(maxLength, field));
        field->setProperty("fieldLimit", maxLength);
    }
    field->setProperty("imeMode", int(mode));
    switch (mode) {
    case ImeMode::Disabled:
        field->setAttribute(Qt::WA_InputMethodEnabled, false);
        field->setInputMethodHints(Qt::ImhPreferNumbers | Qt::ImhNoPredictiveText);
        break;
    case ImeMode::Off:
        field->setInputMethodHints(Qt::ImhPreferLatin | Qt::ImhNoPredictiveText);
        break;
    case ImeMode::Katakana:
    case ImeMode::Hiragana:
    case ImeMode::FullWidthAlpha:
        field->setAttribute(Qt::WA_InputMethodEnabled, true);
        field->setInputMethodHints(Qt::ImhNone);
        break;
    case ImeMode::None: break;
    }
}

void showFieldText(QLineEdit *field, const QString &text)
{
    const int limit = field->property("fieldLimit").toInt();
    if (CharLimit *chars = charLimitOf(field); chars && limit > 0) {
        chars->setLimit(std::max(limit, charCount(text)));
        field->setMaxLength(std::max(limit * 2, int(text.size())));
    }
    field->setText(text);
}

// ---------------------------------------------------------------- item data

void addEmptyItem(QComboBox *combo) { combo->addItem(QString(), QVariant(0)); }

namespace {
QVariant toVariant(const Value &v)
{
    switch (v.type()) {
    case Value::Empty:
    case Value::Null: return QVariant();
    case Value::Text: return QVariant(v.toText());
    case Value::Date: return QVariant(v.toDate());
    case Value::Single:
    case Value::Double:
    case Value::Cur: return QVariant(v.toDouble());
    default: return QVariant(qlonglong(v.toDouble()));
    }
}
Value fromVariant(const QVariant &v)
{
    if (!v.isValid() || v.isNull())
        return Value::null();
    switch (v.typeId()) {
    case QMetaType::LongLong:
    case QMetaType::Int: return Value::int32(v.toLongLong());
    case QMetaType::Double: return Value(v.toDouble());
    case QMetaType::QDateTime: return Value(v.toDateTime());
    default: return Value(v.toString());
    }
}
}

void addItem(QComboBox *combo, const QString &text, const Value &data) { combo->addItem(text, toVariant(data)); }

Value itemData(const QComboBox *combo, int index)
{
    if (index < 0 || index >= combo->count())
        return Value::null();
    return fromVariant(combo->itemData(index));
}

Value currentItemData(const QComboBox *combo) { return itemData(combo, combo->currentIndex()); }

void selectItemData(QComboBox *combo, const Value &value)
{
    for (int i = 0; i < combo->count(); ++i)
        if (sameValue(itemData(combo, i), value)) {
            combo->setCurrentIndex(i);
            return;
        }
    combo->setCurrentIndex(-1);
}

void fillChoices(QComboBox *combo, const Choices &choices, bool emptyFirst)
{
    combo->clear();
    if (emptyFirst)
        addEmptyItem(combo);
    for (const Choice &c : choices)
        addItem(combo, c.text, c.id);
    combo->setCurrentIndex(-1);
}

void fillChoices(QListWidget *list, const Choices &choices)
{
    list->clear();
    for (const Choice &c : choices)
        addItem(list, c.text, c.id);
}

bool settleComboText(QComboBox *combo, const QString &message, EmptyText empty)
{
    const QString text = combo->currentText();
    if (text.isEmpty()) {
        const int blank = empty == EmptyText::EmptyEntry ? combo->findText(QString(), Qt::MatchExactly) : -1;
        combo->setCurrentIndex(blank);
        return true;
    }
    if (combo->currentIndex() >= 0 && combo->itemText(combo->currentIndex()) == text)
        return true;
    const int at = combo->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (at >= 0) {
        combo->setCurrentIndex(at);
        return true;
    }
    if (!message.isEmpty())
        ShowMsg(message, Msg::Exclamation);
    return false;
}

void addItem(QListWidget *list, const QString &text, const Value &data)
{
    auto *item = new QListWidgetItem(text, list);
    item->setData(Qt::UserRole, toVariant(data));
}

Value itemData(const QListWidget *list, int row)
{
    if (row < 0 || row >= list->count())
        return Value::null();
    return fromVariant(list->item(row)->data(Qt::UserRole));
}

void selectItemData(QListWidget *list, const Value &value)
{
    for (int i = 0; i < list->count(); ++i)
        if (sameValue(itemData(list, i), value)) {
            list->setCurrentRow(i);
            return;
        }
    list->setCurrentRow(-1);
}

namespace {

// Eats what would open or change a locked drop-down; its text stays as
// readable as a locked text box's.
class ComboLock : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject *, QEvent *e) override
    {
        switch (e->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::Wheel:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ContextMenu: return true;
        default: return false;
        }
    }
};

QObject *comboLock()
{
    static QPointer<ComboLock> lock;
    if (!lock)
        lock = new ComboLock(qApp);
    return lock;
}

} // namespace

void setComboLocked(QComboBox *combo, bool locked)
{
    combo->setProperty("locked", locked);
    QWidget *parts[] = {combo, combo->lineEdit()};
    for (QWidget *w : parts) {
        if (!w)
            continue;
        if (locked)
            w->installEventFilter(comboLock());
        else
            w->removeEventFilter(comboLock());
    }
    if (combo->lineEdit())
        combo->lineEdit()->setReadOnly(locked);
    if (locked) {
        combo->setEnabled(true);
        QPalette p = combo->palette();
        p.setColor(QPalette::Base, p.color(QPalette::Window));
        p.setColor(QPalette::Button, p.color(QPalette::Window));
        combo->setPalette(p);
    } else {
        combo->setPalette(QPalette());
    }
}

void lockRecordFields(Form *form)
{
    for (QWidget *w : form->controls()) {
        const QString n = w->objectName();
        if (!n.startsWith(QLatin1String("txt")) && !n.startsWith(QLatin1String("cmb")) &&
            !n.startsWith(QLatin1String("Che")))
            continue;
        w->setFocusPolicy(Qt::NoFocus);
        w->setProperty("locked", true);
        if (auto *e = qobject_cast<QLineEdit *>(w)) {
            e->setReadOnly(true);
            QPalette p = e->palette();
            p.setColor(QPalette::Base, e->palette().color(QPalette::Window));
            e->setPalette(p);
        } else if (auto *c = qobject_cast<QComboBox *>(w)) {
            setComboLocked(c, true);
        } else {
            w->setEnabled(false); // check boxes
        }
    }
}

// ---------------------------------------------------------------- conventions

EntryConventions::EntryConventions(Form *form) : QObject(form), mForm(form) {}

void EntryConventions::attach(QWidget *control)
{
    if (qobject_cast<QLineEdit *>(control) || qobject_cast<QComboBox *>(control) ||
        qobject_cast<QAbstractButton *>(control) || qobject_cast<QListWidget *>(control)) {
        control->installEventFilter(this);
    }
    // What the user types or chooses (never what the screen shows) makes the
    // screen edited.
    const auto touched = [this] { mEdited = true; };
    if (auto *edit = qobject_cast<QLineEdit *>(control))
        connect(edit, &QLineEdit::textEdited, this, touched);
    if (auto *combo = qobject_cast<QComboBox *>(control)) {
        // A pick that leaves the choice as it was (Enter in the open list to
        // move on) is none: the choice changes in the same call as the pick.
        connect(combo, qOverload<int>(&QComboBox::currentIndexChanged), this, [combo] {
            combo->setProperty("pickChanged", true);
            QTimer::singleShot(0, combo, [combo] { combo->setProperty("pickChanged", false); });
        });
        connect(combo, qOverload<int>(&QComboBox::activated), this, [this, combo] {
            if (combo->property("pickChanged").toBool())
                mEdited = true;
        });
        if (combo->lineEdit())
            connect(combo->lineEdit(), &QLineEdit::textEdited, this, touched);
    }
    if (qobject_cast<QCheckBox *>(control) || qobject_cast<QRadioButton *>(control))
        connect(static_cast<QAbstractButton *>(control), &QAbstractButton::clicked, this, touched);
    if (auto *edit = qobject_cast<QLineEdit *>(control)) {
        // A long text shows from its start while the field isn't being edited.
        connect(edit, &QLineEdit::textChanged, edit, [edit] {
            if (!edit->hasFocus())
                edit->setCursorPosition(0);
        });
    }
    if (auto *combo = qobject_cast<QComboBox *>(control)) {
        if (combo->lineEdit())
            combo->lineEdit()->installEventFilter(this);
        // Enter in the open list picks the entry and moves on.
        combo->view()->installEventFilter(this);
        combo->view()->setProperty("ownerCombo", QVariant::fromValue<QObject *>(combo));
        // A click beside the open list reaches what was clicked.
        if (QWidget *popup = combo->view()->parentWidget()) {
            popup->installEventFilter(this);
            popup->setProperty("popupOfCombo", QVariant::fromValue<QObject *>(combo));
        }
    }
    if (auto *cal = qobject_cast<QCalendarWidget *>(control)) {
        if (cal->objectName() == QLatin1String("MonthView1")) {
            cal->setFocusPolicy(Qt::NoFocus);
            for (QWidget *child : cal->findChildren<QWidget *>())
                child->setFocusPolicy(Qt::NoFocus);
            connect(cal, &QCalendarWidget::clicked, this, &EntryConventions::onMonthViewClicked);
            // It closes whenever another control of the screen takes the
            // focus: a field, a button, a list.
            connect(qApp, &QApplication::focusChanged, this, [this, cal](QWidget *, QWidget *now) {
                if (!now || !cal->isVisible() || now->window() != mForm || now == cal || cal->isAncestorOf(now))
                    return;
                const auto owner = mDateFields.constFind(qobject_cast<QLineEdit *>(now));
                if (owner != mDateFields.constEnd() && owner.value() == cal->property("tag").toInt())
                    return;
                cal->hide();
            });
        }
    }
}

QCalendarWidget *EntryConventions::monthView() const { return mForm->ctl<QCalendarWidget>(QStringLiteral("MonthView1")); }

void EntryConventions::notAnEdit(QWidget *control)
{
    if (auto *button = qobject_cast<QAbstractButton *>(control))
        disconnect(button, &QAbstractButton::clicked, this, nullptr);
    if (auto *edit = qobject_cast<QLineEdit *>(control))
        disconnect(edit, &QLineEdit::textEdited, this, nullptr);
    if (auto *combo = qobject_cast<QComboBox *>(control)) {
        disconnect(combo, qOverload<int>(&QComboBox::activated), this, nullptr);
        if (combo->lineEdit())
            disconnect(combo->lineEdit(), &QLineEdit::textEdited, this, nullptr);
    }
}

void EntryConventions::backToField()
{
    if (mLastField && mLastField->isVisible() && mLastField->isEnabled())
        restoreFocus(mLastField);
}

void EntryConventions::registerDateField(QLineEdit *field, int index)
{
    mDateFields.insert(field, index);
    connect(field, &QLineEdit::textChanged, field, [field] { FmtDateText(field); });
}

void EntryConventions::registerYmField(QLineEdit *field)
{
    connect(field, &QLineEdit::textChanged, field, [field] { FmtYmText(field); });
}

void EntryConventions::setLeaveCheck(QWidget *field, std::function<bool()> check)
{
    mChecks.insert(field, std::move(check));
}

void EntryConventions::setNumberCheck(QLineEdit *field, const QString &message)
{
    setLeaveCheck(field, [field, message] {
        if (field->text().isEmpty() || IsNumeric(Value(field->text())))
            return true;
        ShowMsg(message, Msg::Exclamation);
        return false;
    });
}

bool EntryConventions::eventFilter(QObject *watched, QEvent *event)
{
    // A press beside the open list of a drop-down: the list closes, as it
    // always does, and the click goes on to the control under the mouse
    // (the desktop would swallow it), so that one click reaches a button.
    if (event->type() == QEvent::MouseButtonPress) {
        auto *popup = qobject_cast<QWidget *>(watched);
        auto *combo = popup ? qobject_cast<QComboBox *>(popup->property("popupOfCombo").value<QObject *>()) : nullptr;
        if (combo) {
            auto *me = static_cast<QMouseEvent *>(event);
            const QPoint global = me->globalPosition().toPoint();
            if (popup->rect().contains(popup->mapFromGlobal(global)))
                return false;
            QWidget *target = mForm->childAt(mForm->mapFromGlobal(global));
            if (!target || target == combo || combo->isAncestorOf(target))
                return false;
            combo->hidePopup();
            // The release that ends this press is swallowed with the list, so
            // the control gets the whole click now.
            const QPointF at = target->mapFromGlobal(me->globalPosition());
            QMouseEvent press(QEvent::MouseButtonPress, at, me->globalPosition(), me->button(), me->buttons(),
                              me->modifiers());
            QMouseEvent release(QEvent::MouseButtonRelease, at, me->globalPosition(), me->button(), Qt::NoButton,
                                me->modifiers());
            QPointer<QWidget> guard(target);
            QApplication::sendEvent(target, &press);
            if (guard)
                QApplication::sendEvent(target, &release);
            return true;
        }
    }
    // Enter in the open list of a drop-down: the pick is made, then the move.
    if (auto *view = qobject_cast<QAbstractItemView *>(watched)) {
        if (auto *combo = qobject_cast<QComboBox *>(view->property("ownerCombo").value<QObject *>())) {
            if (isEnter(event))
                QTimer::singleShot(0, combo, [this, combo] {
                    if (combo->hasFocus())
                        moveOn(combo);
                });
            // Tab and Shift+Tab in the open list: the highlighted entry is
            // kept, the list closes, and the move is made, so that what is
            // typed next lands in the next field.
            const int key = event->type() == QEvent::KeyPress ? static_cast<QKeyEvent *>(event)->key() : 0;
            if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
                const int row = view->currentIndex().isValid() ? view->currentIndex().row() : -1;
                combo->hidePopup();
                if (row >= 0 && row != combo->currentIndex()) {
                    combo->setCurrentIndex(row);
                    emit combo->activated(row);
                }
                if (key == Qt::Key_Tab) {
                    moveOn(combo);
                } else {
                    QKeyEvent back(QEvent::KeyPress, Qt::Key_Backtab, Qt::ShiftModifier);
                    QApplication::sendEvent(combo->window(), &back);
                }
                return true;
            }
            return false;
        }
    }
    auto *w = qobject_cast<QWidget *>(watched);
    if (!w)
        return false;
    // The line edit inside an editable drop-down speaks for the drop-down.
    if (auto *owner = qobject_cast<QComboBox *>(w->parentWidget()); owner && owner->lineEdit() == w)
        w = owner;

    switch (event->type()) {
    case QEvent::KeyPress:
        if (isEnter(event)) {
            if (auto *b = qobject_cast<QPushButton *>(w)) {
                b->click();
            } else {
                moveOn(w);
            }
            return true;
        }
        break;
    case QEvent::FocusIn: {
        // Entering is focus coming from another control of the screen (or
        // the screen's first focus); focus coming back to the same control,
        // from its pop-up list or a message box, is none.
        const bool first = !mSeenFocus;
        mSeenFocus = true;
        if (w == mEntered && !first)
            break;
        if ((realFocusChange(event) || first) && !mRestoring) {
            mEntered = w;
            if (!qobject_cast<QPushButton *>(w))
                mLastField = w;
            onFocusIn(w);
        }
        break;
    }
    case QEvent::FocusOut: {
        // Leaving is focus going to another control of the same screen.
        QWidget *next = QApplication::focusWidget();
        if (!next || next == w || w->isAncestorOf(next) || next->window() != mForm || QApplication::activePopupWidget())
            break;
        if (realFocusChange(event) && !mRestoring)
            onFocusOut(w);
        break;
    }
    default: break;
    }
    return false;
}

void EntryConventions::onFocusIn(QWidget *w)
{
    if (auto *e = qobject_cast<QLineEdit *>(w)) {
        // The whole text, also after the click that gave the focus.
        QTimer::singleShot(0, e, [e] {
            if (e->hasFocus())
                e->selectAll();
        });
        const auto it = mDateFields.constFind(e);
        if (it != mDateFields.constEnd()) {
            if (mMode == Mode::None || mMode == Mode::Add || mMode == Mode::Change)
                showMonthView(e, it.value());
            else
                hideMonthView();
        } else {
            hideMonthView();
        }
    } else if (auto *c = qobject_cast<QComboBox *>(w)) {
        hideMonthView();
        QTimer::singleShot(0, c, [c] {
            if (c->hasFocus() && c->isEnabled() && !c->property("locked").toBool())
                c->showPopup();
        });
    }
}

void EntryConventions::onFocusOut(QWidget *w)
{
    if (w == mCheckedBeforeMove)
        return;
    if (!mChecks.contains(w)) {
        emit fieldLeft(w);
        return;
    }
    // The checks run once the move has settled, so that a message box
    // doesn't come in the middle of the change of focus; fields left one
    // after the other are checked in that order.
    if (!mPending.contains(w))
        mPending.append(w);
    QTimer::singleShot(0, this, [this] { runPendingChecks(); });
}

void EntryConventions::runPendingChecks()
{
    while (!mPending.isEmpty()) {
        QPointer<QWidget> w = mPending.takeFirst();
        if (!w)
            continue;
        if (!runLeaveCheck(w)) {
            // The focus is back in the failed field: what came after is moot.
            mPending.clear();
            return;
        }
    }
}

void EntryConventions::moveOn(QWidget *w)
{
    // The check of the field runs before the move, so that what it opens
    // (the sub-account list of an account just chosen) is where the move
    // lands. A check that fails keeps the focus; one that moved the focus
    // itself has made the move.
    if (mChecks.contains(w)) {
        runPendingChecks();
        if (!runLeaveCheck(w))
            return;
        QWidget *focus = QApplication::focusWidget();
        if (focus != w && !(focus && w->isAncestorOf(focus)))
            return;
    }
    mCheckedBeforeMove = w;
    sendTab(w);
    mCheckedBeforeMove = nullptr;
}

bool EntryConventions::runLeaveCheck(QWidget *w)
{
    bool ok = true;
    mForm->trap([&] { ok = mChecks.value(w)(); });
    if (ok) {
        if (mFailed == w)
            mFailed = nullptr;
        emit fieldLeft(w);
        return true;
    }
    mFailed = w;
    restoreFocus(w);
    if (auto *e = qobject_cast<QLineEdit *>(w))
        e->selectAll();
    return false;
}

void EntryConventions::restoreFocus(QWidget *w)
{
    // Coming back is no entering: the drop-down stays closed, the text as it was.
    mEntered = w;
    mLastField = w;
    mRestoring = true;
    w->setFocus(Qt::OtherFocusReason);
    mRestoring = false;
}

bool EntryConventions::settleLeaveChecks()
{
    runPendingChecks();
    QWidget *focus = QApplication::focusWidget();
    if (mFailed && (focus == mFailed || (focus && mFailed->isAncestorOf(focus))))
        return false;
    return true;
}

void EntryConventions::showMonthView(QLineEdit *field, int index)
{
    QCalendarWidget *cal = monthView();
    if (!cal)
        return;
    cal->setProperty("tag", index);
    QDateTime dt;
    if (DateUtil::parse(field->text(), dt))
        cal->setSelectedDate(dt.date());
    const QSize size(std::max(cal->sizeHint().width(), 260), std::max(cal->sizeHint().height(), 180));
    QPoint at = field->mapTo(mForm, QPoint(field->width() + 4, 0));
    if (at.x() + size.width() > mForm->width())
        at.setX(std::max(0, field->mapTo(mForm, QPoint(0, 0)).x() - size.width() - 4));
    if (at.y() + size.height() > mForm->height())
        at.setY(std::max(0, mForm->height() - size.height()));
    cal->setGeometry(QRect(at, size));
    cal->raise();
    cal->show();
}

void EntryConventions::hideMonthView()
{
    if (QCalendarWidget *cal = monthView())
        cal->hide();
}

void EntryConventions::onMonthViewClicked(const QDate &date)
{
    QCalendarWidget *cal = monthView();
    const int index = cal->property("tag").toInt();
    for (auto it = mDateFields.constBegin(); it != mDateFields.constEnd(); ++it) {
        if (it.value() != index)
            continue;
        auto *field = qobject_cast<QLineEdit *>(it.key());
        field->setText(date.toString(QStringLiteral("yyyy/MM/dd")));
        field->setFocus(Qt::OtherFocusReason);
        cal->hide();
        sendTab(field);
        return;
    }
}
