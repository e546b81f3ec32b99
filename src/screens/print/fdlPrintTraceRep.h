#pragma once
// "生産履歴印刷": the dialog of a planting's production history. Its choices
// lead to no report of their own: "印刷" opens the common preview for the
// price tag sheet.

#include "screens/exchange/TraceDialog.h"

class fdlPrintTraceRep : public TraceDialog {
    Q_OBJECT
public:
    explicit fdlPrintTraceRep(QWidget *parent = nullptr);
};
