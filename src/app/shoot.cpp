// tillora-admin shoot: renders a screen offscreen with the data under the
// root and writes it as a PNG, so that a screen can be looked at without a
// display.

#include "app/AdminCommands.h"
#include "screens/ScreenList.h"
#include "base/AppError.h"
#include "ui/Form.h"
#include "base/Globals.h"
#include "ui/Screens.h"
#include "store/Database.h"

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QPixmap>
#include <QRegularExpression>
#include <QStringList>

#include <cstdio>

int runShoot(QStringList args)
{
    QString size, date;
    QStringList clicks;
    for (int i = 0; i < args.size(); ++i) {
        if (args[i] == QLatin1String("--click") && i + 1 < args.size()) {
            clicks << args[i + 1];
            args.remove(i, 2);
            --i;
            continue;
        }
        if (args[i] == QLatin1String("--size") && i + 1 < args.size()) {
            size = args[i + 1];
            args.remove(i, 2);
            --i;
        } else if (args[i] == QLatin1String("--date") && i + 1 < args.size()) {
            date = args[i + 1];
            args.remove(i, 2);
            --i;
        }
    }
    if (args.size() != 2) {
        std::fputs("使い方: tillora-admin shoot [--root DIR] SCREEN out.png [--size WxH] [--date yyyy-mm-dd] [--click NAME]...\n", stderr);
        return 2;
    }
    registerAllScreens();
    setupLook(*qApp);
    OpenIni();
    OpenDb();
    OpenMst();
    OpenWork();
    gUSE_TYPE = Nz(gINI->GetCtrl(QStringLiteral("USE_TYPE")), Value(1)).toInt();
    gFMR_ID = Nz(gINI->GetCtrl(QStringLiteral("DEF_FMR_ID")), Value(1));
    gSHOP_ID = Value(1);
    QDateTime day = DateUtil::today();
    if (!date.isEmpty() && !DateUtil::parse(date, day)) {
        std::fputs("日付は yyyy-mm-dd で指定してください。\n", stderr);
        return 2;
    }
    gWORK_DATE = Value(day);
    gBASE_DATE = DateUtil::make(day.date().year(), day.date().month(), 1);
    gMODE = Mode::Change;
    gROW_IDX = -1;
    gBOOK_ACC_ID = Value(1000);
    gLEDGE_ROWS = {blankLedgeRow()};

    Form *form = createScreen(args[0]);
    if (!form) {
        std::fprintf(stderr, "画面 %s はありません。画面: %s\n", args[0].toUtf8().constData(),
                     screenNames().join(QLatin1Char(' ')).toUtf8().constData());
        return 2;
    }
    form->load();
    // The screen's own load sets the month to the present one: the date asked for wins.
    if (!date.isEmpty()) {
        gWORK_DATE = Value(day);
        gBASE_DATE = DateUtil::make(day.date().year(), day.date().month(), 1);
    }
    const QRegularExpressionMatch m = QRegularExpression(QStringLiteral("^(\\d+)x(\\d+)$")).match(size);
    if (m.hasMatch())
        form->resize(m.captured(1).toInt(), m.captured(2).toInt());
    form->show();
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < 300)
        QApplication::processEvents(QEventLoop::AllEvents, 50);
    // Buttons, tabs and boxes to click before the picture is taken.
    for (const QString &name : clicks) {
        if (auto *b = form->ctl<QAbstractButton>(name))
            b->click();
        else
            std::fprintf(stderr, "%s にボタン %s はありません。\n", args[0].toUtf8().constData(), name.toUtf8().constData());
        t.restart();
        while (t.elapsed() < 200)
            QApplication::processEvents(QEventLoop::AllEvents, 50);
    }
    if (QWidget *popup = QApplication::activePopupWidget())
        popup->close();
    const bool ok = form->grab().save(args[1], "PNG");
    form->hide();
    delete form;
    if (!ok) {
        std::fprintf(stderr, "%s に書き込めません。\n", args[1].toUtf8().constData());
        return 1;
    }
    return 0;
}
