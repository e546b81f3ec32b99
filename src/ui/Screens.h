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

// Opens the named screen modally. Every screen a menu or another screen
// names is registered; an unknown name (a fault of the program) is said in
// a message and opens nothing.
int openScreen(const QString &name);
