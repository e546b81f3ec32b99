#pragma once
// The trace data upload ("ﾃﾞｰﾀｱｯﾌﾟﾛｰﾄﾞ"): the trace pages of the year's
// plantings (or of the one chosen) written and sent to the current shop's
// web server with the upload settings of its master, with progress and
// キャンセル, and what was done said at the end.
#include "screens/exchange/TraceDialog.h"

class fdlUploadTraceData : public TraceDialog {
    Q_OBJECT
public:
    explicit fdlUploadTraceData(QWidget *parent = nullptr);

private:
    void upload();
};
