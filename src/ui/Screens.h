#pragma once
// The screens by name, so that a screen opens another without knowing its
// class, and the command-line companion can render any of them.

#include <QString>
#include <QStringList>

#include <functional>

class Form;

void registerScreen(const QString &name, std::function<Form *()> factory);
Form *createScreen(const QString &name); // nullptr for an unknown name
QStringList screenNames();

// Opens the named screen modally; a screen not built yet answers with the
// message "この機能は準備中です。".
int openScreen(const QString &name);
