#pragma once
// Records every ShowMsg and answers from a script; installs itself for its
// lifetime. Without a scripted answer the answerer answers when one is set,
// else the first button.

#include "base/Msg.h"

#include <QQueue>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

class MsgRecorder : public MsgSink {
public:
    struct Entry {
        QString prompt;
        int buttons;
        QString title;
        int result;
    };

    MsgRecorder();
    ~MsgRecorder() override;

    void answer(int result) { mAnswers.enqueue(result); }
    // Answers every message that has no scripted answer: (prompt, buttons) to a result.
    void setAnswerer(std::function<int(const QString &, int)> answerer) { mAnswerer = std::move(answerer); }
    int show(const QString &prompt, int buttons, const QString &title) override;

    QVector<Entry> messages;
    QString lastPrompt() const { return messages.isEmpty() ? QString() : messages.last().prompt; }
    int count() const { return messages.size(); }
    void clear() { messages.clear(); }

private:
    QQueue<int> mAnswers;
    std::function<int(const QString &, int)> mAnswerer;
    MsgSink *mPrevious;
};

// Records the trace (every statement sent and every message) while it lives.
class TraceRecorder {
public:
    TraceRecorder();
    ~TraceRecorder();
    TraceRecorder(const TraceRecorder &) = delete;
    TraceRecorder &operator=(const TraceRecorder &) = delete;

    QStringList lines;
    // The lines that hold a word ("SELECT").
    QStringList with(const QString &word) const { return lines.filter(word); }
};
