#include "screens/print/fdlPreview.h"

#include "ui/Entry.h"
#include "base/Globals.h"
#include "base/Msg.h"
#include "ui/Progress.h"
#include "ui/Screens.h"
#include "rules/print/modPrinter.h"
#include "screens/print/Printer.h"
#include "store/Database.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QSlider>

#include <algorithm>
#include <cmath>

namespace {

const CtlSpec kControls[] = {
    {"Command1(0)", CtlKind::Button, "閉じる", 120, 450, 1000, 420},
    {"Command1(1)", CtlKind::Button, "ﾍﾟｰｼﾞ印刷", 1180, 450, 1250, 420},
    {"Command1(2)", CtlKind::Button, "印刷設定", 2490, 450, 1150, 420},
    {"Command1(3)", CtlKind::Button, "|< 最初", 3900, 450, 1000, 420},
    {"Command1(4)", CtlKind::Button, "< 前", 4960, 450, 800, 420},
    {"txtPAGE", CtlKind::Text, "", 5820, 460, 640, 400},
    {"lblCAP(0)", CtlKind::Label, "/", 6460, 460, 260, 400},
    {"txtPAGES", CtlKind::Text, "", 6720, 460, 640, 400},
    {"Command1(5)", CtlKind::Button, "次 >", 7420, 450, 800, 420},
    {"Command1(6)", CtlKind::Button, "最後 >|", 8280, 450, 1000, 420},
    {"lblCAP(1)", CtlKind::Label, "倍率", 9400, 460, 700, 400},
    {"Slider1", CtlKind::Slider, "", 10160, 460, 2100, 400},
};
// The zoom slider's size, which stays as designed.
const QSize kSliderSize(2100 / Form::TwipsPerPixel, 400 / Form::TwipsPerPixel);
const CtlSpec kMenuBar = {"mnuBAR", CtlKind::Canvas, "", 0, 0, 12400, 345};
const CtlSpec kPicture = {"pctPreview", CtlKind::Canvas, "", 120, 960, 11900, 7860};
const CtlSpec kHScroll = {"HScrl", CtlKind::HScroll, "", 120, 8820, 11900, 255};
const CtlSpec kVScroll = {"VScrl", CtlKind::VScroll, "", 12020, 960, 255, 7860};

const char *const kZoomNames[] = {"&50%", "&100%", "&200%"};
const int kZoomValues[] = {-4, 0, 4};
const char *const kMoveNames[] = {"最初のﾍﾟｰｼﾞ(&F)", "前のﾍﾟｰｼﾞ(&P)", "次のﾍﾟｰｼﾞ(&N)", "最後のﾍﾟｰｼﾞ(&L)"};

QAction *namedAction(QMenu *menu, const char *name, const QString &caption)
{
    QAction *a = menu->addAction(caption);
    a->setObjectName(QString::fromLatin1(name));
    return a;
}

} // namespace

// ---------------------------------------------------------------- arithmetic

namespace PreviewPages {

double zoomFactor(int sliderValue) { return std::pow(2.0, sliderValue / 4.0); }

int scrollMax(double paper, double shown)
{
    const double m = paper - shown;
    return m > 0 ? int(std::ceil(m)) : 0;
}

int movePage(int page, int pages, Move move)
{
    switch (move) {
    case Move::First: return 1;
    case Move::Previous: return page > 1 ? page - 1 : page;
    case Move::Next: return page < pages ? page + 1 : page;
    case Move::Last: return pages;
    }
    return page;
}

Buttons pageButtons(int page, int pages)
{
    Buttons b;
    if (pages <= 1) {
        b.pageEditable = false;
        b.first = b.previous = b.next = b.last = false;
        return b;
    }
    b.first = b.previous = page != 1;
    b.next = b.last = page != pages;
    return b;
}

} // namespace PreviewPages

// ---------------------------------------------------------------- the picture

void PreviewCanvas::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.fillRect(rect(), Qt::white);
    if (!picture.isNull())
        p.drawImage(0, 0, picture);
}

// ---------------------------------------------------------------- the screen

void openPreview(int repId, int pages)
{
    gREP_ID = qint16(repId);
    gREP_PAGES = qint16(std::clamp(pages, 0, 32767));
    openScreen(QStringLiteral("fdlPreview"));
}

fdlPreview::fdlPreview(QWidget *parent) : Form(QStringLiteral("fdlPreview"), 12400, 9200, parent)
{
    setWindowTitle(QStringLiteral("印刷プレビュー"));
    setSizable(true);
    // The scroll bars follow the picture and the slider keeps its size
    // beside its caption: the screen lays them out itself.
    scaleRules().skip << QStringLiteral("HSc") << QStringLiteral("VSc") << QStringLiteral("Sli");

    mnuBAR = new QMenuBar;
    mnuBAR->setNativeMenuBar(false);
    QMenu *file = mnuBAR->addMenu(QStringLiteral("ﾌｧｲﾙ(&F)"));
    QAction *setMgn = namedAction(file, "mnuSET_MGN", QStringLiteral("余白設定...(&M)"));
    QAction *print = namedAction(file, "mnuPRINT", QStringLiteral("印刷...(&P)"));
    QAction *savePdf = namedAction(file, "mnuSAVE_PDF", QStringLiteral("PDF保存..."));
    file->addSeparator();
    QAction *closeAct = namedAction(file, "mnuCLOSE", QStringLiteral("閉じる(&X)"));
    QMenu *disp = mnuBAR->addMenu(QStringLiteral("表示(&V)"));
    QVector<QAction *> mnuDISP;
    for (int i = 0; i < 3; ++i)
        mnuDISP << namedAction(disp, QStringLiteral("mnuDISP(%1)").arg(i).toLatin1().constData(),
                               QString::fromUtf8(kZoomNames[i]));
    QMenu *move = mnuBAR->addMenu(QStringLiteral("移動(&M)"));
    for (int i = 0; i < 4; ++i)
        mnuMOVE << namedAction(move, QStringLiteral("mnuMOVE(%1)").arg(i).toLatin1().constData(),
                               QString::fromUtf8(kMoveNames[i]));
    adoptControl(mnuBAR, kMenuBar);

    buildControls(kControls, int(std::size(kControls)));
    pctPreview = new PreviewCanvas;
    adoptControl(pctPreview, kPicture);
    auto *h = new QScrollBar(Qt::Horizontal);
    adoptControl(h, kHScroll);
    auto *v = new QScrollBar(Qt::Vertical);
    adoptControl(v, kVScroll);
    HScrl = h;
    VScrl = v;

    Command1 = array<QPushButton>(QStringLiteral("Command1"), 7);
    txtPAGE = ctl<QLineEdit>(QStringLiteral("txtPAGE"));
    txtPAGES = ctl<QLineEdit>(QStringLiteral("txtPAGES"));
    mPagePalette = txtPAGE->palette();
    txtPAGES->setReadOnly(true);
    txtPAGES->setFocusPolicy(Qt::NoFocus);
    for (QLineEdit *e : {txtPAGE, txtPAGES})
        e->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    ctl<QLabel>(QStringLiteral("lblCAP(0)"))->setAlignment(Qt::AlignCenter);
    Slider1 = ctl<QSlider>(QStringLiteral("Slider1"));
    Slider1->setRange(-16, 16);
    Slider1->setSingleStep(1);
    Slider1->setPageStep(2);
    Slider1->setTickPosition(QSlider::TicksBelow);
    Slider1->setTickInterval(4);
    Slider1->setValue(0);

    onClick(Command1[0], [this] { close(); }, false);
    onClick(Command1[1], [this] { PrintPage(); });
    onClick(Command1[2], [this] {
        openScreen(QStringLiteral("fdlSetMgn"));
        PrintPreview();
    });
    const PreviewPages::Move moves[] = {PreviewPages::Move::First, PreviewPages::Move::Previous,
                                        PreviewPages::Move::Next, PreviewPages::Move::Last};
    for (int i = 0; i < 4; ++i) {
        const PreviewPages::Move m = moves[i];
        onClick(Command1[3 + i], [this, m] { moveTo(m); });
        connect(mnuMOVE[i], &QAction::triggered, this, [this, m] { trap([&] { moveTo(m); }); });
    }
    connect(setMgn, &QAction::triggered, this, [this] { trap([] { openScreen(QStringLiteral("fdlSetMgn")); }); });
    connect(print, &QAction::triggered, this,
            [this] { trap([] { openScreen(QStringLiteral("fdlSetPrintCopy")); }); });
    connect(savePdf, &QAction::triggered, this, [this] { trap([this] { SavePdf(); }); });
    connect(closeAct, &QAction::triggered, this, [this] { close(); });
    for (int i = 0; i < 3; ++i) {
        const int value = kZoomValues[i];
        connect(mnuDISP[i], &QAction::triggered, this, [this, value] {
            trap([&] {
                Slider1->setValue(value);
                PrintPreview();
            });
        });
    }
    connect(Slider1, &QSlider::valueChanged, this, [this] { trap([this] { PrintPreview(); }); });
    connect(HScrl, &QScrollBar::valueChanged, this, [this] { trap([this] { scrolled(); }); });
    connect(VScrl, &QScrollBar::valueChanged, this, [this] { trap([this] { scrolled(); }); });
    // A page number typed and left is drawn.
    connect(&entry(), &EntryConventions::fieldLeft, this, [this](QWidget *field) {
        if (field == txtPAGE)
            trap([this] { PrintPreview(); });
    });
}

QAction *fdlPreview::menuAction(const QString &name) const { return mnuBAR->findChild<QAction *>(name); }

void fdlPreview::onLoad()
{
    SetDefSize();
    applyWindowState();
}

void fdlPreview::onResize()
{
    InitForm();
    SetSize();
    PrintPreview();
}

void fdlPreview::InitForm()
{
    txtPAGE->setText(QStringLiteral("1"));
    txtPAGES->setText(QString::number(gREP_PAGES));
    const ReportPaper paper = reportPaper(gREP_ID);
    if (!paper.name.isEmpty() || paper.width > 0 || paper.height > 0)
        setWindowTitle(paper.name);
    mHeight = paper.height;
    mWidth = paper.width;
}

void fdlPreview::SetSize()
{
    Form::SetSize();
    const QRect caption = ctl<QLabel>(QStringLiteral("lblCAP(1)"))->geometry();
    Slider1->setGeometry(caption.right() + 1, caption.center().y() - kSliderSize.height() / 2, kSliderSize.width(),
                         kSliderSize.height());
    // The scroll bars along the picture's right and bottom edges.
    const QRect pic = pctPreview->geometry();
    const int thick = HScrl->sizeHint().height();
    HScrl->setGeometry(pic.left(), pic.bottom() + 1, pic.width(), thick);
    VScrl->setGeometry(pic.right() + 1, pic.top(), thick, pic.height());

    const double factor = PreviewPages::zoomFactor(Slider1->value());
    mScaleW = pctPreview->width() * TwipsPerPixel / factor;
    mScaleH = pctPreview->height() * TwipsPerPixel / factor;
    const QSignalBlocker hb(HScrl), vb(VScrl);
    HScrl->setRange(0, PreviewPages::scrollMax(mWidth, mScaleW));
    HScrl->setPageStep(int(std::lround(mScaleW)));
    HScrl->setSingleStep(1);
    VScrl->setRange(0, PreviewPages::scrollMax(mHeight, mScaleH));
    VScrl->setPageStep(int(std::lround(mScaleH)));
    VScrl->setSingleStep(1);
    // A shorter range pulls the bars back: the page follows them.
    mOffX = -HScrl->value();
    mOffY = -VScrl->value();
}

void fdlPreview::scrolled()
{
    mOffX = -HScrl->value();
    mOffY = -VScrl->value();
    PrintPreview();
}

int fdlPreview::page() const
{
    const Value v(txtPAGE->text());
    return IsNumeric(v) ? v.toInt() : 0;
}

int fdlPreview::pages() const
{
    const Value v(txtPAGES->text());
    return IsNumeric(v) ? v.toInt() : 0;
}

void fdlPreview::PrintPreview()
{
    if (mDrawing)
        return;
    mDrawing = true;
    struct Done {
        bool &flag;
        ~Done() { flag = false; }
    } done{mDrawing};

    const double factor = PreviewPages::zoomFactor(Slider1->value());
    SetSize();
    QImage img(pctPreview->size().expandedTo(QSize(1, 1)), QImage::Format_RGB32);
    img.fill(Qt::white);
    {
        QPainter p(&img);
        p.setRenderHint(QPainter::TextAntialiasing);
        PainterTarget target(p, factor / TwipsPerPixel);
        const Margins m = reportMargins(gREP_ID);
        const int shown = page();
        PrintReport(gREP_ID, target, m.left + mOffX, m.top + mOffY, shown, shown);
        // The paper's edge.
        if (mWidth > 0 && mHeight > 0) {
            target.DrawWidth = 1;
            target.DrawStyle = 0;
            target.Line(mOffX, mOffY, mWidth + mOffX, mHeight + mOffY, Qt::black, LineShape::Box);
        }
    }
    pctPreview->picture = img;
    pctPreview->update();
    SetTbrBtn();
}

void fdlPreview::SetTbrBtn()
{
    const PreviewPages::Buttons b = PreviewPages::pageButtons(page(), pages());
    // A single page: the number is locked, in the colour of a button face.
    txtPAGE->setReadOnly(!b.pageEditable);
    QPalette pal = mPagePalette;
    if (!b.pageEditable)
        pal.setColor(QPalette::Base, pal.color(QPalette::Button));
    txtPAGE->setPalette(pal);
    const bool on[] = {b.first, b.previous, b.next, b.last};
    for (int i = 0; i < 4; ++i) {
        Command1[3 + i]->setEnabled(on[i]);
        mnuMOVE[i]->setEnabled(on[i]);
    }
}

void fdlPreview::moveTo(PreviewPages::Move move)
{
    txtPAGE->setText(QString::number(PreviewPages::movePage(page(), pages(), move)));
    PrintPreview();
}

void fdlPreview::PrintPage()
{
    const int shown = page();
    if (!PrinterTarget::exists()) {
        // No printer on this computer: the page can still go to the shop as a file.
        if (ShowMsg(QStringLiteral("プリンタが見つかりません。\nこのﾍﾟｰｼﾞをPDFファイルに保存しますか？"),
                    Msg::YesNo | Msg::Question) == Msg::ResYes)
            writePdf(shown, shown, windowTitle() + QStringLiteral(" %1ﾍﾟｰｼﾞ").arg(shown));
        return;
    }
    WaitCursor wait;
    const Margins m = reportMargins(gREP_ID);
    SetPrinter(gREP_ID);
    // Whatever job the report leaves open ends here, also when it fails.
    struct EndJob {
        ~EndJob() { Printer().EndDoc(); }
    } endJob;
    PrintReport(gREP_ID, Printer(), m.left, m.top, shown, shown);
}

void fdlPreview::SavePdf()
{
    if (pages() < 1) {
        ShowMsg(QStringLiteral("保存するﾍﾟｰｼﾞがありません。"), Msg::Exclamation);
        return;
    }
    writePdf(1, pages(), windowTitle());
}

QString fdlPreview::askPdfName(const QString &suggestedName)
{
    static QString lastFolder = QDir::homePath();
    QString name = suggestedName.trimmed();
    for (const QChar bad : QStringLiteral("/\\:*?\"<>|"))
        name.replace(bad, QLatin1Char('_'));
    if (name.isEmpty())
        name = QStringLiteral("Tillora");
    QString path = SaveFileName(this, QStringLiteral("PDF保存"), QDir(lastFolder).filePath(name + QStringLiteral(".pdf")),
                                QStringLiteral("PDF (*.pdf)"));
    if (path.isEmpty())
        return path;
    if (!path.endsWith(QStringLiteral(".pdf"), Qt::CaseInsensitive))
        path += QStringLiteral(".pdf");
    lastFolder = QFileInfo(path).absolutePath();
    return path;
}

void fdlPreview::writePdf(int firstPage, int lastPage, const QString &suggestedName)
{
    const QString path = askPdfName(suggestedName);
    if (path.isEmpty())
        return;
    bool written = false;
    {
        WaitCursor wait;
        ProgressBox box(this, QStringLiteral("PDF 保存"));
        written = SaveReportPdf(gREP_ID, path, firstPage, lastPage, box.callback());
    }
    if (!written) {
        ShowMsg(QStringLiteral("PDF の保存を中止しました。"), Msg::Information);
        return;
    }
    ShowMsg(QStringLiteral("%1ﾍﾟｰｼﾞをPDFファイルに保存しました。\n%2")
                .arg(lastPage - firstPage + 1)
                .arg(QDir::toNativeSeparators(path)),
            Msg::Information);
}
