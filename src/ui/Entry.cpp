#include "ui/Entry.h"

#include "ui/Form.h"
#include "base/Globals.h"
#include "base/Msg.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QKeyEvent>
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

void FmtDateText(QLineEdit *field)
{
    const QString t = field->text();
    bool fourDigits = t.size() == 4;
    for (const QChar c : t)
        if (!c.isDigit())
            fourDigits = false;
    if (fourDigits) {
        field->setText(t + QLatin1Char('/'));
    } else if (t.size() == 7 && t.indexOf(QLatin1Char('/')) == 4) {
        field->setText(t + QLatin1Char('/'));
    }
    field->setCursorPosition(field->text().size());
}

void FmtYmText(QLineEdit *field)
{
    const QString t = field->text();
    bool fourDigits = t.size() == 4;
    for (const QChar c : t)
        if (!c.isDigit())
            fourDigits = false;
    if (fourDigits)
        field->setText(t + QLatin1Char('/'));
    field->setCursorPosition(field->text().size());
}

namespace {

// The limit of a field counts its text as the field does (a character
// outside the basic plane, an emoji or a rare kanji, counts two), and cuts a
// text that is too long; a character that the cut would halve goes whole.
class WholeCharacters : public QValidator {
public:
    using QValidator::QValidator;
    State validate(QString &input, int &pos) const override
    {
        for (int i = 0; i < input.size(); ++i) {
            if (input[i].isHighSurrogate() && i + 1 < input.size() && input[i + 1].isLowSurrogate()) {
                ++i;
            } else if (input[i].isSurrogate()) {
                input.remove(i, 1);
                if (pos > i)
                    --pos;
                --i;
            }
        }
        return Acceptable;
    }
};

} // namespace

void setFieldLimit(QLineEdit *field, int maxLength, ImeMode mode)
{
    if (maxLength > 0) {
        field->setMaxLength(maxLength);
        field->setProperty("fieldLimit", maxLength);
        if (!field->validator())
            field->setValidator(new WholeCharacters(field));
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
    if (limit > 0)
        field->setMaxLength(std::max(limit, int(text.size())));
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
        } else {
            w->setEnabled(false);
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
    }
    if (auto *cal = qobject_cast<QCalendarWidget *>(control)) {
        if (cal->objectName() == QLatin1String("MonthView1")) {
            cal->setFocusPolicy(Qt::NoFocus);
            for (QWidget *child : cal->findChildren<QWidget *>())
                child->setFocusPolicy(Qt::NoFocus);
            connect(cal, &QCalendarWidget::clicked, this, &EntryConventions::onMonthViewClicked);
        }
    }
}

QCalendarWidget *EntryConventions::monthView() const { return mForm->ctl<QCalendarWidget>(QStringLiteral("MonthView1")); }

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
    // Enter in the open list of a drop-down: the pick is made, then the move.
    if (auto *view = qobject_cast<QAbstractItemView *>(watched)) {
        if (auto *combo = qobject_cast<QComboBox *>(view->property("ownerCombo").value<QObject *>())) {
            if (isEnter(event))
                QTimer::singleShot(0, combo, [combo] {
                    if (combo->hasFocus())
                        sendTab(combo);
                });
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
                sendTab(w);
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
    mEntered = w;
    mRestoring = true;
    w->setFocus(Qt::OtherFocusReason);
    if (auto *e = qobject_cast<QLineEdit *>(w))
        e->selectAll();
    mRestoring = false;
    return false;
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
