#pragma once
// The trace data upload ("ﾃﾞｰﾀｱｯﾌﾟﾛｰﾄﾞ"): the year and the planting whose
// production history would go to the shop's web server. Nothing is sent
// yet: its button has no action, and the shop master only keeps the server
// settings.
#include "screens/exchange/TraceDialog.h"

class fdlUploadTraceData : public TraceDialog {
    Q_OBJECT
public:
    explicit fdlUploadTraceData(QWidget *parent = nullptr);
};
