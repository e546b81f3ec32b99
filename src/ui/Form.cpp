#include "ui/Form.h"

#include "base/AppError.h"
#include "ui/Entry.h"
#include "base/Helpers.h"
#include "base/Msg.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QFrame>
#include <QGroupBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QProxyStyle>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSlider>
#include <QStyleFactory>
#include <QTreeWidget>

#include <cmath>

namespace {

QVector<Form *> gOpenForms;
QPointer<Form> gLastActive;
std::function<void(Form *)> gModalHook;
std::function<void()> gEndHook;
std::function<bool()> gMaximised;
std::function<void()> gShutdown;
std::function<QString(const QString &)> gOpenDirHook;
std::function<QString(const QString &, const QString &)> gSaveFileHook;
std::function<QString(const QString &, const QString &)> gOpenFileHook;
bool gEnded = false;

QWidget *makeControl(const CtlSpec &s, QWidget *parent)
{
    const QString caption = QString::fromUtf8(s.caption ? s.caption : "");
    QWidget *w = nullptr;
    switch (s.kind) {
    case CtlKind::Label: {
        auto *l = new QLabel(caption, parent);
        l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        w = l;
        break;
    }
    case CtlKind::Data: {
        auto *l = new QLabel(caption, parent);
        l->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        l->setAutoFillBackground(true);
        QPalette p = l->palette();
        p.setColor(QPalette::Window, QColor(0xFB, 0xF8, 0xEC));
        l->setPalette(p);
        l->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        l->setIndent(3);
        w = l;
        break;
    }
    case CtlKind::Text:
    case CtlKind::Password: {
        auto *e = new QLineEdit(parent);
        if (s.kind == CtlKind::Password)
            e->setEchoMode(QLineEdit::Password);
        w = e;
        break;
    }
    case CtlKind::Combo:
    case CtlKind::ComboEdit: {
        auto *c = new QComboBox(parent);
        c->setEditable(s.kind == CtlKind::ComboEdit);
        if (c->isEditable())
            c->setInsertPolicy(QComboBox::NoInsert);
        c->setMaxVisibleItems(16);
        w = c;
        break;
    }
    case CtlKind::Button: w = new QPushButton(caption, parent); break;
    case CtlKind::Frame: w = new QGroupBox(caption, parent); break;
    case CtlKind::Option: w = new QRadioButton(caption, parent); break;
    case CtlKind::Check: w = new QCheckBox(caption, parent); break;
    case CtlKind::List: w = new QListWidget(parent); break;
    case CtlKind::ListView: {
        auto *t = new QTreeWidget(parent);
        t->setRootIsDecorated(false);
        t->setUniformRowHeights(true);
        t->setAlternatingRowColors(true);
        t->setSelectionMode(QAbstractItemView::SingleSelection);
        t->setAllColumnsShowFocus(true);
        if (!caption.isEmpty())
            t->setHeaderLabels(caption.split(QLatin1Char('|')));
        w = t;
        break;
    }
    case CtlKind::Calendar: {
        // The month view of the date fields: Japanese names, weeks from Sunday.
        auto *c = new QCalendarWidget(parent);
        c->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
        c->setGridVisible(true);
        c->setLocale(QLocale(QLocale::Japanese, QLocale::Japan));
        c->setFirstDayOfWeek(Qt::Sunday);
        // A new first day of the week leaves the marked cell where it was:
        // choosing the day again puts the mark back on it.
        const QDate day = c->selectedDate();
        c->setSelectedDate(day.addDays(1));
        c->setSelectedDate(day);
        c->hide();
        w = c;
        break;
    }
    case CtlKind::Canvas: w = new QWidget(parent); break;
    case CtlKind::Shape: {
        auto *f = new QFrame(parent);
        // A thin shape is a rule between parts of the screen.
        if (s.height <= 45)
            f->setFrameStyle(QFrame::HLine | QFrame::Sunken);
        else if (s.width <= 45)
            f->setFrameStyle(QFrame::VLine | QFrame::Sunken);
        else
            f->setFrameStyle(QFrame::Box | QFrame::Plain);
        w = f;
        break;
    }
    case CtlKind::VScroll: w = new QScrollBar(Qt::Vertical, parent); break;
    case CtlKind::HScroll: w = new QScrollBar(Qt::Horizontal, parent); break;
    case CtlKind::Slider: w = new QSlider(Qt::Horizontal, parent); break;
    }
    w->setObjectName(QString::fromLatin1(s.name));
    w->setGeometry(s.left / Form::TwipsPerPixel, s.top / Form::TwipsPerPixel, s.width / Form::TwipsPerPixel,
                   s.height / Form::TwipsPerPixel);
    return w;
}

void registerOpen(Form *f)
{
    if (!gOpenForms.contains(f))
        gOpenForms.append(f);
}

} // namespace

Form::Form(const QString &name, int designWidth, int designHeight, QWidget *parent)
    : QDialog(parent), mDesignW(designWidth), mDesignH(designHeight), mEntry(new EntryConventions(this))
{
    setObjectName(name);
    setSizable(false);
    resize(designWidth / TwipsPerPixel, designHeight / TwipsPerPixel);
}

Form::~Form()
{
    gOpenForms.removeAll(this);
}

void Form::setSizable(bool sizable)
{
    mSizable = sizable;
    Qt::WindowFlags f = Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
    if (sizable)
        f |= Qt::WindowMinMaxButtonsHint;
    setWindowFlags(f);
    setSizeGripEnabled(sizable);
    // A dialog with a fixed border keeps its design size: dragging an edge
    // can't resize it (and run its resize handler again).
    if (sizable) {
        setMinimumSize(0, 0);
        setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    } else {
        setFixedSize(designPixels());
    }
}

void Form::buildControls(const CtlSpec *specs, int count)
{
    for (int i = 0; i < count; ++i) {
        const CtlSpec &s = specs[i];
        QWidget *parent = this;
        if (s.frame) {
            parent = mByName.value(QString::fromLatin1(s.frame), nullptr);
            Q_ASSERT_X(parent, "Form::buildControls", s.frame);
            if (!parent)
                parent = this;
        }
        QWidget *w = makeControl(s, parent);
        if (w->objectName() == QLatin1String("lblTITLE")) {
            QFont f = font();
            f.setPointSizeF(f.pointSizeF() * 1.6);
            f.setBold(true);
            w->setFont(f);
            static_cast<QLabel *>(w)->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        }
        mControls.append(w);
        mByName.insert(w->objectName(), w);
        mEntry->attach(w);
    }
}

void Form::adoptControl(QWidget *w, const CtlSpec &s)
{
    QWidget *parent = s.frame ? mByName.value(QString::fromLatin1(s.frame), this) : this;
    w->setParent(parent);
    w->setObjectName(QString::fromLatin1(s.name));
    w->setGeometry(s.left / TwipsPerPixel, s.top / TwipsPerPixel, s.width / TwipsPerPixel, s.height / TwipsPerPixel);
    mControls.append(w);
    mByName.insert(w->objectName(), w);
    mEntry->attach(w);
}

QWidget *Form::control(const QString &name) const { return mByName.value(name, nullptr); }

bool Form::startsWithAny(const QString &name, const QStringList &prefixes) const
{
    for (const QString &p : prefixes)
        if (name.startsWith(p))
            return true;
    return false;
}

void Form::SetDefSize()
{
    mDesign.clear();
    mDesign.reserve(mControls.size());
    for (QWidget *w : mControls) {
        const bool skipped = startsWithAny(w->objectName(), mRules.skip);
        const QRect g = w->geometry();
        mDesign.append({double(g.x()), double(g.width()), double(g.y()), double(g.height()), w->font().pointSizeF(),
                        skipped});
    }
}

void Form::SetSize()
{
    if (mDesign.size() != mControls.size())
        return;
    const QSize d = designPixels();
    mRateX = double(width()) / d.width();
    mRateY = double(height()) / d.height();
    for (int i = 0; i < mControls.size(); ++i) {
        const Design &g = mDesign[i];
        QWidget *w = mControls[i];
        if (g.skipped) {
            if (auto *bar = qobject_cast<QMenuBar *>(w))
                scaleMenuLine(bar, g);
            continue;
        }
        const QString &name = w->objectName();
        const bool late = startsWithAny(name, mRules.heightAfterFont);
        const int left = int(std::lround(g.left * mRateX));
        const int top = int(std::lround(g.top * mRateY));
        const int wid = int(std::lround(g.width * mRateX));
        const int hgt = int(std::lround(g.height * mRateY));
        if (!late)
            w->setGeometry(left, top, wid, hgt);
        if (!startsWithAny(name, mRules.noFont) && g.fontSize > 0) {
            QFont f = w->font();
            // Both directions scale the font by the width.
            f.setPointSizeF(std::max(1.0, roundHalfEven(g.fontSize * mRateX)));
            w->setFont(f);
        }
        if (late)
            w->setGeometry(left, top, wid, hgt);
    }
}

void Form::scaleMenuLine(QMenuBar *bar, const Design &design)
{
    // The menu line is no control of the table: it spans the window, and its
    // font, with its menus', follows the screen's as every control's does.
    QFont f = bar->font();
    f.setPointSizeF(std::max(1.0, roundHalfEven(design.fontSize * mRateX)));
    bar->setFont(f);
    for (QMenu *menu : bar->findChildren<QMenu *>())
        menu->setFont(f);
    const int height = int(std::lround(design.height * mRateY));
    bar->setGeometry(0, 0, width(), std::max(height, bar->sizeHint().height()));
}

namespace {

// How much larger than the program's font a control's font is drawn.
double fontRate(const QWidget *widget)
{
    const double base = QApplication::font().pointSizeF();
    if (!widget || base <= 0 || widget->font().pointSizeF() <= 0)
        return 1;
    return widget->font().pointSizeF() / base;
}

class ScreenStyle : public QProxyStyle {
public:
    using QProxyStyle::QProxyStyle;
    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override
    {
        const int size = QProxyStyle::pixelMetric(metric, option, widget);
        switch (metric) {
        case PM_IndicatorWidth:
        case PM_IndicatorHeight:
        case PM_ExclusiveIndicatorWidth:
        case PM_ExclusiveIndicatorHeight:
        case PM_CheckBoxLabelSpacing:
        case PM_RadioButtonLabelSpacing: return std::max(1, int(std::lround(size * fontRate(widget))));
        default: return size;
        }
    }
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *widget) const override
    {
        QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
        // A menu row draws its check column wider as the row grows taller,
        // but is measured with the narrow one: a menu in a larger font
        // would cut its texts short. The row gets room as wide as it is tall.
        if (type == CT_MenuItem && fontRate(widget) > 1)
            size.rwidth() += size.height();
        return size;
    }
};

} // namespace

QStyle *makeScreenStyle(const QString &base) { return new ScreenStyle(QStyleFactory::create(base)); }

void setWindowStateSource(std::function<bool()> maximised) { gMaximised = std::move(maximised); }

void setProgramShutdown(std::function<void()> shutdown) { gShutdown = std::move(shutdown); }

void Form::applyWindowState()
{
    const bool maximised = gMaximised && gMaximised();
    const Qt::WindowStates st = windowState();
    if (maximised && !(st & Qt::WindowMaximized))
        setWindowState(st | Qt::WindowMaximized);
    else if (!maximised && (st & Qt::WindowMaximized))
        setWindowState(st & ~Qt::WindowMaximized);
}

void Form::load()
{
    if (mLoaded)
        return;
    mLoaded = true;
    registerOpen(this);
    trap([this] { onLoad(); });
}

bool Form::trap(const std::function<void()> &handler)
{
    try {
        handler();
        return true;
    } catch (const AppError &e) {
        switch (mTrapStyle) {
        case TrapStyle::Number: ShowMsg(e.text(), Msg::Critical); break;
        case TrapStyle::Description: ShowMsg(e.description(), Msg::Exclamation); break;
        case TrapStyle::Plain: ShowMsg(e.description()); break;
        }
    } catch (const std::exception &e) {
        ShowMsg(QString::fromUtf8(e.what()), Msg::Critical);
    }
    return false;
}

void Form::onClick(QAbstractButton *button, const std::function<void()> &handler, bool validates)
{
    connect(button, &QAbstractButton::clicked, this, [this, handler, validates] {
        if (validates && !mEntry->settleLeaveChecks())
            return;
        trap(handler);
    });
}

void Form::resizeEvent(QResizeEvent *e)
{
    QDialog::resizeEvent(e);
    if (!mLoaded || mUnloaded || mInResize)
        return;
    mInResize = true;
    trap([this] { onResize(); });
    mInResize = false;
}

void Form::changeEvent(QEvent *e)
{
    QDialog::changeEvent(e);
    if (e->type() != QEvent::ActivationChange || !isActiveWindow() || !mLoaded || mUnloaded)
        return;
    // A screen is activated when it comes from another screen of the
    // program; coming back from a message box is no activation.
    if (gLastActive == this)
        return;
    gLastActive = this;
    trap([this] { onActivate(); });
}

void Form::unloadOnce()
{
    if (mUnloaded)
        return;
    mUnloaded = true;
    if (mLoaded)
        trap([this] { onUnload(); });
    gOpenForms.removeAll(this);
    if (gLastActive == this)
        gLastActive = nullptr;
}

bool Form::mayClose()
{
    if (!mCloseCheck || mAskingClose || mUnloaded || !isVisible())
        return true;
    mAskingClose = true;
    bool go = true;
    trap([&] { go = mCloseCheck(); });
    mAskingClose = false;
    return go;
}

void Form::closeEvent(QCloseEvent *e)
{
    if (!mayClose()) {
        e->ignore();
        return;
    }
    unloadOnce();
    QDialog::closeEvent(e);
}

void Form::done(int r)
{
    unloadOnce();
    QDialog::done(r);
}

void Form::keyPressEvent(QKeyEvent *e)
{
    // No screen closes on Escape, and Enter is handled field by field.
    if (e->key() == Qt::Key_Escape || e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter) {
        e->accept();
        return;
    }
    QDialog::keyPressEvent(e);
}

Form *Form::find(const QString &name)
{
    for (Form *f : gOpenForms)
        if (f->objectName() == name)
            return f;
    return nullptr;
}

QVector<Form *> Form::openForms() { return gOpenForms; }

// ---------------------------------------------------------------- opening

void setModalHook(std::function<void(Form *)> hook) { gModalHook = std::move(hook); }

int openModal(Form *form)
{
    QPointer<QWidget> owner = QApplication::activeWindow();
    form->setWindowModality(Qt::ApplicationModal);
    form->load();
    if (gModalHook)
        gModalHook(form);
    const int r = gEnded ? QDialog::Rejected : form->exec();
    delete form;
    // The screen that opened it is the active one again.
    if (owner && owner->isVisible() && !gEnded) {
        owner->activateWindow();
        QApplication::setActiveWindow(owner);
    }
    return r;
}

void showRoot(Form *form)
{
    form->setAttribute(Qt::WA_DeleteOnClose);
    form->load();
    form->show();
}

bool IsFormLoaded(const QString &name) { return Form::find(name) != nullptr; }

void closeOrEndProgram(Form *dialog)
{
    if (IsFormLoaded(QStringLiteral("fmnMain"))) {
        dialog->close();
        return;
    }
    // Kept open by its question, or saved and closed by the answer: the
    // program goes on.
    if (!dialog->mayClose() || dialog->unloaded())
        return;
    EndProgram();
}

void setEndProgramHook(std::function<void()> hook)
{
    gEndHook = std::move(hook);
    gEnded = false;
}

bool programEnded() { return gEnded; }

void EndProgram()
{
    gEnded = true;
    const QVector<Form *> forms = gOpenForms;
    for (int i = forms.size() - 1; i >= 0; --i) {
        Form *f = forms[i];
        f->done(QDialog::Rejected);
        f->hide();
    }
    if (gShutdown)
        gShutdown();
    if (gEndHook) {
        gEndHook();
        return;
    }
    EndProcessNow(0);
}

void setOpenDirHook(std::function<QString(const QString &)> hook) { gOpenDirHook = std::move(hook); }

QString OpenDir(QWidget *owner, const QString &title)
{
    try {
        if (gOpenDirHook)
            return gOpenDirHook(title);
        return QFileDialog::getExistingDirectory(owner, title);
    } catch (...) {
        return QString();
    }
}

void setSaveFileHook(std::function<QString(const QString &, const QString &)> hook) { gSaveFileHook = std::move(hook); }

QString SaveFileName(QWidget *owner, const QString &title, const QString &suggested, const QString &filter)
{
    try {
        if (gSaveFileHook)
            return gSaveFileHook(title, suggested);
        return QFileDialog::getSaveFileName(owner, title, suggested, filter);
    } catch (...) {
        return QString();
    }
}

void setOpenFileHook(std::function<QString(const QString &, const QString &)> hook) { gOpenFileHook = std::move(hook); }

QString OpenFileName(QWidget *owner, const QString &title, const QString &folder, const QString &filter)
{
    try {
        if (gOpenFileHook)
            return gOpenFileHook(title, folder);
        return QFileDialog::getOpenFileName(owner, title, folder, filter);
    } catch (...) {
        return QString();
    }
}

WaitCursor::WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
WaitCursor::~WaitCursor() { QApplication::restoreOverrideCursor(); }
