#include "ui/MasterEdit.h"

#include "ui/Form.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPalette>

namespace MasterEdit {

void setEditable(QLineEdit *field, bool editable)
{
    field->setReadOnly(!editable);
    field->setEnabled(editable);
    QPalette p = field->palette();
    p.setColor(QPalette::Base, editable ? QColor(Qt::white) : field->palette().color(QPalette::Window));
    field->setPalette(p);
}

namespace {

class CodeEnter : public QObject {
public:
    CodeEnter(Form *form, QLineEdit *code, std::function<bool()> looking, std::function<bool(const Value &)> lookUp)
        : QObject(code), mForm(form), mCode(code), mLooking(std::move(looking)), mLookUp(std::move(lookUp))
    {
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched != mCode || event->type() != QEvent::KeyPress || !mLooking())
            return false;
        auto *k = static_cast<QKeyEvent *>(event);
        if ((k->key() != Qt::Key_Return && k->key() != Qt::Key_Enter) || (k->modifiers() & Qt::ShiftModifier))
            return false;
        const QString text = mCode->text();
        if (text.isEmpty() || !IsNumeric(Value(text)))
            return false;
        bool found = false;
        mForm->trap([&] { found = mLookUp(Value(leadingNumber(text))); });
        return found;
    }

private:
    Form *mForm;
    QLineEdit *mCode;
    std::function<bool()> mLooking;
    std::function<bool(const Value &)> mLookUp;
};

} // namespace

void onCodeEnter(Form *form, QLineEdit *code, std::function<bool()> looking, std::function<bool(const Value &)> lookUp)
{
    // Installed after the entry conventions, so it sees Enter first.
    code->installEventFilter(new CodeEnter(form, code, std::move(looking), std::move(lookUp)));
}

}
