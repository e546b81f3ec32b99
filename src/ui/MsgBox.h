#pragma once
// The program's message sink: a modal message box with the buttons and the
// icon of the code.

#include "base/Msg.h"

class MessageBoxSink : public MsgSink {
public:
    int show(const QString &prompt, int buttons, const QString &title) override;
};
