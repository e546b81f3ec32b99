#include "frmDairyCal.h"

#include "core/Globals.h"
#include "core/Screens.h"

#include <QLabel>
#include <QPushButton>

namespace {
const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "日誌一覧", 480, 240, 4800, 600},
    {"lblINFO(0)", CtlKind::Data, "", 480, 1200, 11400, 6600},
    {"cmdMENU(0)", CtlKind::Button, "終了", 480, 8250, 1800, 650},
    {"cmdMENU(9)", CtlKind::Button, "ﾒﾆｭｰ", 10080, 8250, 1800, 650},
};
}

frmDairyCal::frmDairyCal(QWidget *parent) : Form(QStringLiteral("frmDairyCal"), 12400, 9200, parent)
{
    setWindowTitle(QStringLiteral("日誌一覧"));
    setSizable(true);
    buildControls(kControls, int(std::size(kControls)));
    auto *info = ctl<QLabel>(QStringLiteral("lblINFO(0)"));
    info->setAlignment(Qt::AlignCenter);
    info->setText(QStringLiteral("月のカレンダーは準備中です。"));
    cmdClose = ctl<QPushButton>(QStringLiteral("cmdMENU(0)"));
    onClick(
        cmdClose,
        [this] {
            close();
            if (gUSE_TYPE == 1)
                EndProgram();
        },
        false);
    onClick(ctl<QPushButton>(QStringLiteral("cmdMENU(9)")), [] { openScreen(QStringLiteral("fmnMain")); });
}

void frmDairyCal::onLoad()
{
    SetDefSize();
    applyWindowState();
    cmdClose->setText(gUSE_TYPE == 1 ? QStringLiteral("終了") : QStringLiteral("閉じる"));
    ctl<QPushButton>(QStringLiteral("cmdMENU(9)"))->setVisible(gUSE_TYPE == 1);
}
