#include "ui/Screens.h"

#include "ui/Form.h"
#include "base/Msg.h"

#include <QMap>

namespace {
QMap<QString, std::function<Form *()>> &registry()
{
    static QMap<QString, std::function<Form *()>> r;
    return r;
}
}

void registerScreen(const QString &name, std::function<Form *()> factory) { registry().insert(name, std::move(factory)); }

Form *createScreen(const QString &name)
{
    const auto it = registry().constFind(name);
    return it == registry().constEnd() ? nullptr : it.value()();
}

QStringList screenNames() { return registry().keys(); }

int openScreen(const QString &name)
{
    Form *f = createScreen(name);
    if (!f) {
        ShowMsg(QStringLiteral("画面「%1」がありません。").arg(name), Msg::Critical);
        return 0;
    }
    return openModal(f);
}
