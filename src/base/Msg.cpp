#include "base/Msg.h"

#include "base/AppError.h"

#include <cstdio>

namespace {

class ConsoleSink : public MsgSink {
public:
    int show(const QString &prompt, int buttons, const QString &title) override
    {
        std::fprintf(stderr, "%s: %s\n", title.toUtf8().constData(), prompt.toUtf8().constData());
        // Without a person to ask, the first button answers.
        switch (buttons & 7) {
        case Msg::AbortRetryIgnore: return Msg::ResAbort;
        case Msg::YesNoCancel:
        case Msg::YesNo: return Msg::ResYes;
        case Msg::RetryCancel: return Msg::ResRetry;
        default: return Msg::ResOK;
        }
    }
};

ConsoleSink gConsole;
MsgSink *gSink = nullptr;
std::function<void(const QString &)> gLogHook;

} // namespace

void setMsgSink(MsgSink *sink) { gSink = sink; }
MsgSink *msgSink() { return gSink ? gSink : &gConsole; }

QString msgTraceText(const QString &title, int buttons, const QString &prompt, int result)
{
    // Each mask that hits overwrites the kind before it; the masks overlap, so
    // 16, 32 and 48 all end as the exclamation kind.
    static const struct {
        int mask;
        const char *kind;
    } kinds[] = {{1, "[OK-CANCEL]"}, {2, "[ABORT-RETRY-IGNORE]"}, {3, "[YES-NO-CANCEL]"}, {4, "[YES-NO]"},
                 {5, "[RETRY-CANCEL]"}, {16, "[警告]"}, {32, "[問い合わせ]"}, {48, "[注意]"}, {64, "[情報]"}};
    QString kind;
    for (const auto &k : kinds)
        if ((buttons & k.mask) != 0)
            kind = QString::fromUtf8(k.kind);
    static const char *pressed[] = {"", "[OK]", "[CANCEL]", "[ABORT]", "[RETRY]", "[IGNORE]", "[YES]", "[NO]"};
    const QString button = (result >= 1 && result <= 7) ? QString::fromUtf8(pressed[result]) : QString();
    return title + kind + prompt + button;
}

int ShowMsg(const QString &prompt, int buttons, const QString &title)
{
    const QString t = title.isEmpty() ? QStringLiteral("Tillora") : title;
    const int result = msgSink()->show(prompt, buttons, t);
    PutLog(msgTraceText(t, buttons, prompt, result));
    return result;
}

void PutLog(const QString &text)
{
    if (gLogHook)
        gLogHook(text);
}

void setLogHook(std::function<void(const QString &)> hook) { gLogHook = std::move(hook); }

int ShowError(const AppError &e) { return ShowMsg(e.text(), Msg::Critical); }
