#pragma once
// Messages to the user and the trace hook. ShowMsg goes through a sink: the
// program installs a message box, the tests a recorder that answers from a
// script, the command-line companion a console printer. Every message also
// passes a trace text to PutLog, which does nothing unless a trace is hooked.

#include <QString>

#include <functional>

// Button codes of ShowMsg.
namespace Msg {
constexpr int OK = 0, OKCancel = 1, AbortRetryIgnore = 2, YesNoCancel = 3, YesNo = 4, RetryCancel = 5;
constexpr int Critical = 16, Question = 32, Exclamation = 48, Information = 64;
// Results.
constexpr int ResOK = 1, ResCancel = 2, ResAbort = 3, ResRetry = 4, ResIgnore = 5, ResYes = 6, ResNo = 7;
}

class MsgSink {
public:
    virtual ~MsgSink() = default;
    // Shows the message and returns the code of the pressed button.
    virtual int show(const QString &prompt, int buttons, const QString &title) = 0;
};

// Installs a sink (not owned); nullptr restores the console sink.
void setMsgSink(MsgSink *sink);
MsgSink *msgSink();

// The title "" becomes "Tillora".
int ShowMsg(const QString &prompt, int buttons = Msg::OK, const QString &title = QString());

// The trace text of a message: title, kind, prompt, pressed button.
QString msgTraceText(const QString &title, int buttons, const QString &prompt, int result);

// The trace hook; it stays empty in the program.
void PutLog(const QString &text);
void setLogHook(std::function<void(const QString &)> hook);

// Shows an error as the common trap does: "(number)description", stop sign.
class AppError;
int ShowError(const AppError &e);
