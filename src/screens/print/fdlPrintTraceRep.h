#pragma once
// "生産履歴印刷": the dialog of a planting's production history. "印刷"
// makes the report of the planting chosen in the year's list (report 30)
// and opens it in the common preview, from which it is printed or saved.

#include "screens/exchange/TraceDialog.h"

class fdlPrintTraceRep : public TraceDialog {
    Q_OBJECT
public:
    explicit fdlPrintTraceRep(QWidget *parent = nullptr);

private:
    void printReport();
};
