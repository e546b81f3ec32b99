#include "screens/diary/frmDairyCal.h"

#include "base/Globals.h"
#include "rules/diary/DiaryLists.h"
#include "screens/main/BackupOffer.h"
#include "store/Database.h"
#include "ui/Entry.h"
#include "ui/Screens.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>

namespace {

const CtlSpec kControls[] = {
    {"cmdPREV(1)", CtlKind::Button, "△", 240, 560, 600, 480},
    {"cmdPREV(0)", CtlKind::Button, "<<<", 900, 560, 900, 480},
    {"lblYM", CtlKind::Label, "", 1860, 520, 2700, 560},
    {"cmdPOST(0)", CtlKind::Button, ">>>", 4620, 560, 900, 480},
    {"cmdPOST(1)", CtlKind::Button, "▽", 5580, 560, 600, 480},
    {"lblCAP(0)", CtlKind::Label, "作付", 6300, 590, 700, 420},
    {"cmbCOND", CtlKind::Combo, "", 7060, 570, 3000, 420},
    {"chkCOND(0)", CtlKind::Check, "温度", 240, 1130, 1100, 380},
    {"chkCOND(1)", CtlKind::Check, "天候", 1400, 1130, 1100, 380},
    {"chkCOND(2)", CtlKind::Check, "金銭", 2560, 1130, 1100, 380},
    {"chkCOND(3)", CtlKind::Check, "農薬", 3720, 1130, 1100, 380},
    {"chkCOND(4)", CtlKind::Check, "出荷", 4880, 1130, 1100, 380},
    {"cmdMENU(0)", CtlKind::Button, "終了", 240, 8400, 1500, 600},
    {"cmdMENU(1)", CtlKind::Button, "作付", 3700, 8400, 1300, 600},
    {"cmdMENU(2)", CtlKind::Button, "農薬", 5050, 8400, 1300, 600},
    {"cmdMENU(3)", CtlKind::Button, "出荷", 6400, 8400, 1300, 600},
    {"cmdMENU(4)", CtlKind::Button, "勘定", 7750, 8400, 1300, 600},
    {"cmdMENU(5)", CtlKind::Button, "ﾒﾆｭｰ", 9100, 8400, 1300, 600},
    {"cmdMENU(6)", CtlKind::Button, "印刷", 10450, 8400, 1300, 600},
};
const CtlSpec kCanvas = {"picCAL", CtlKind::Canvas, "", 240, 1600, 11920, 6680};
const CtlSpec kMenuBar = {"mnuBAR", CtlKind::Canvas, "", 0, 0, 12400, 450};

const char *const kLists[] = {nullptr, "frmPlantList", "frmChemiList", "frmShipList", "frmLedgeList", "fmnMain"};

} // namespace

void CalCanvas::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    if (!picture.isNull())
        p.drawPixmap(0, 0, picture);
}

void CalCanvas::mousePressEvent(QMouseEvent *e) { lastPress = e->position().toPoint(); }

void CalCanvas::mouseReleaseEvent(QMouseEvent *e)
{
    if (e->button() == Qt::LeftButton && rect().contains(e->position().toPoint()))
        emit clickedAt(lastPress);
}

frmDairyCal::frmDairyCal(QWidget *parent) : Form(QStringLiteral("frmDairyCal"), 12400, 9200, parent)
{
    setTrapStyle(TrapStyle::Plain);
    setWindowTitle(QStringLiteral("日誌一覧"));
    setSizable(true);
    // The menu bar of the screen; of its items only ﾊﾞｯｸｱｯﾌﾟ has an action.
    auto *bar = new QMenuBar;
    bar->setNativeMenuBar(false);
    QMenu *file = bar->addMenu(QStringLiteral("ﾌｧｲﾙ(&F)"));
    QAction *backup = file->addAction(QStringLiteral("ﾊﾞｯｸｱｯﾌﾟ(&B)..."));
    backup->setObjectName(QStringLiteral("mnuBACKUP"));
    connect(backup, &QAction::triggered, this, [this] { trap([this] { TakeBackup(this); }); });
    file->addSeparator();
    file->addAction(QStringLiteral("終了(&X)"));
    QMenu *input = bar->addMenu(QStringLiteral("入力(&I)"));
    input->addAction(QStringLiteral("作付入力(&P)"));
    adoptControl(bar, kMenuBar);
    buildControls(kControls, int(std::size(kControls)));
    mCanvas = new CalCanvas;
    adoptControl(mCanvas, kCanvas);

    lblYM = ctl<QLabel>(QStringLiteral("lblYM"));
    lblYM->setAlignment(Qt::AlignCenter);
    QFont big = lblYM->font();
    big.setPointSizeF(big.pointSizeF() * 1.8);
    big.setBold(true);
    lblYM->setFont(big);
    lblYM->setCursor(Qt::PointingHandCursor);
    lblYM->installEventFilter(this);
    cmbCOND = ctl<QComboBox>(QStringLiteral("cmbCOND"));
    chkCOND = array<QCheckBox>(QStringLiteral("chkCOND"), 5);
    cmdMENU = array<QPushButton>(QStringLiteral("cmdMENU"), 7);

    onClick(ctl<QPushButton>(QStringLiteral("cmdPREV(0)")), [this] { stepMonths(-1); });
    onClick(ctl<QPushButton>(QStringLiteral("cmdPOST(0)")), [this] { stepMonths(1); });
    onClick(ctl<QPushButton>(QStringLiteral("cmdPREV(1)")), [this] { stepMonths(-12); });
    onClick(ctl<QPushButton>(QStringLiteral("cmdPOST(1)")), [this] { stepMonths(12); });
    for (int i = 0; i < 5; ++i)
        onClick(chkCOND[i], [this, i] {
            if (!mReady)
                return;
            CalMonth::saveOption(i, chkCOND[i]->isChecked());
            DispCal();
        });
    connect(cmbCOND, qOverload<int>(&QComboBox::activated), this, [this] {
        if (mReady)
            trap([this] { DispCal(); });
    });
    onClick(
        cmdMENU[0],
        [this] {
            close();
            if (gUSE_TYPE == 1)
                EndProgram();
        },
        false);
    for (int i = 1; i <= 5; ++i) {
        const QString target = QString::fromLatin1(kLists[i]);
        onClick(cmdMENU[i], [target] { openScreen(target); });
    }
    // Printing the month is not offered.
    cmdMENU[6]->setEnabled(false);
    connect(mCanvas, &CalCanvas::clickedAt, this, [this](QPoint pos) { trap([&] { dayClicked(pos); }); });
}

void frmDairyCal::onLoad()
{
    applyWindowState();
    SetDefSize();
    cmdMENU[5]->setVisible(gUSE_TYPE == 1);
    cmdMENU[0]->setText(gUSE_TYPE == 1 ? QStringLiteral("終了") : QStringLiteral("閉じる"));
    const QDate today = QDate::currentDate();
    gBASE_DATE = DateUtil::make(today.year(), today.month(), 1);
    if (!gDB)
        OpenDb();
}

void frmDairyCal::onResize()
{
    SetSize();
    DispData();
}

bool frmDairyCal::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == lblYM && event->type() == QEvent::MouseButtonRelease) {
        trap([this] {
            const QDate today = QDate::currentDate();
            showMonth(DateUtil::make(today.year(), today.month(), 1));
        });
        return true;
    }
    return Form::eventFilter(watched, event);
}

void frmDairyCal::stepMonths(int months) { showMonth(gBASE_DATE.addMonths(months)); }

void frmDairyCal::DispData() { showMonth(gBASE_DATE); }

void frmDairyCal::showMonth(const QDateTime &first)
{
    // Everything the month needs is read before anything on the screen
    // changes: when a read fails, the month shown and its date stay as they
    // were, so a click on a day still opens the day it shows.
    const Choices plantings = DiaryLists::plantingsOfMonth(gFMR_ID, first.date());
    const CalMonth::Options o = CalMonth::loadOptions();
    const CalMonth::Geometry geo = geometryFor(first.date());
    QVector<CalMonth::Cell> cells = CalMonth::collect(geo, first.date(), QDate::currentDate(), gFMR_ID, o, Value(0));

    gBASE_DATE = first;
    SetCmb(0, plantings);
    for (int i = 0; i < 5; ++i)
        chkCOND[i]->setChecked(o.on[i]);
    paintMonth(geo, std::move(cells), o);
    mReady = true;
}

void frmDairyCal::SetCmb(int index, const Choices &plantings)
{
    if (index == 0)
        fillChoices(cmbCOND, plantings, true);
}

void frmDairyCal::DispCal()
{
    const QDate first = gBASE_DATE.date();
    const CalMonth::Options o = CalMonth::loadOptions();
    const CalMonth::Geometry geo = geometryFor(first);
    const Value plant = cmbCOND->currentIndex() > 0 ? currentItemData(cmbCOND) : Value(0);
    paintMonth(geo, CalMonth::collect(geo, first, QDate::currentDate(), gFMR_ID, o, plant), o);
}

CalMonth::Geometry frmDairyCal::geometryFor(const QDate &first) const
{
    return CalMonth::geometry(first, mCanvas->width() * TwipsPerPixel, mCanvas->height() * TwipsPerPixel);
}

void frmDairyCal::paintMonth(const CalMonth::Geometry &geo, QVector<CalMonth::Cell> cells, const CalMonth::Options &o)
{
    mGeo = geo;
    mCells = std::move(cells);
    lblYM->setText(gBASE_DATE.date().toString(QStringLiteral("yyyy年M月")));
    QPixmap pix(mCanvas->size());
    QPainter p(&pix);
    p.setFont(font());
    CalMonth::paint(p, mGeo, mCells, o);
    p.end();
    mCanvas->picture = pix;
    mCanvas->update();
}

void frmDairyCal::dayClicked(QPoint pos)
{
    const int day = CalMonth::dayAt(mGeo, pos.x() * TwipsPerPixel, pos.y() * TwipsPerPixel);
    if (day == 0)
        return;
    gWORK_DATE = Value(DateUtil::fromDate(gBASE_DATE.date().addDays(day - 1)));
    openScreen(QStringLiteral("frmDairyInput"));
}
