#include "MsgRecorder.h"

MsgRecorder::MsgRecorder() : mPrevious(msgSink()) { setMsgSink(this); }

MsgRecorder::~MsgRecorder() { setMsgSink(mPrevious); }

int MsgRecorder::show(const QString &prompt, int buttons, const QString &title)
{
    int result;
    if (!mAnswers.isEmpty()) {
        result = mAnswers.dequeue();
    } else if (mAnswerer) {
        result = mAnswerer(prompt, buttons);
    } else {
        switch (buttons & 7) {
        case Msg::AbortRetryIgnore: result = Msg::ResAbort; break;
        case Msg::YesNoCancel:
        case Msg::YesNo: result = Msg::ResYes; break;
        case Msg::RetryCancel: result = Msg::ResRetry; break;
        default: result = Msg::ResOK; break;
        }
    }
    messages.append({prompt, buttons, title, result});
    return result;
}

TraceRecorder::TraceRecorder()
{
    setLogHook([this](const QString &t) { lines << t; });
}

TraceRecorder::~TraceRecorder() { setLogHook(nullptr); }
