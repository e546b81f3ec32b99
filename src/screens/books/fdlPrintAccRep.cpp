#include "screens/books/fdlPrintAccRep.h"

#include "base/Globals.h"
#include "base/Msg.h"
#include "rules/books/BookReports.h"
#include "rules/books/Journal.h"
#include "rules/books/Ledger.h"
#include "rules/books/TrialBalance.h"
#include "screens/print/fdlPreview.h"
#include "ui/Entry.h"

#include <QComboBox>
#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace {

const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "試算表印刷", 300, 150, 4800, 540},
    {"fraKIND", CtlKind::Frame, "帳票", 600, 800, 8400, 950},
    {"Option1(0)", CtlKind::Option, "試算表", 300, 400, 1800, 420, "fraKIND"},
    {"Option1(1)", CtlKind::Option, "損益計算書", 2300, 400, 2200, 420, "fraKIND"},
    {"Option1(2)", CtlKind::Option, "仕訳帳（テキスト会計）", 4700, 400, 3500, 420, "fraKIND"},
    {"fraCOND", CtlKind::Frame, "印刷条件", 600, 1950, 8400, 2700},
    {"lblCAP(0)", CtlKind::Label, "年月", 200, 520, 1200, 420, "fraCOND"},
    {"txtCOND(0)", CtlKind::Text, "", 1550, 520, 1300, 420, "fraCOND"},
    {"lblCAP(1)", CtlKind::Label, "～", 2850, 520, 500, 420, "fraCOND"},
    {"txtCOND(1)", CtlKind::Text, "", 3350, 520, 1300, 420, "fraCOND"},
    {"lblCAP(3)", CtlKind::Label, "年分", 200, 1150, 1200, 420, "fraCOND"},
    {"txtCOND(2)", CtlKind::Text, "", 1550, 1150, 1000, 420, "fraCOND"},
    {"lblCAP(4)", CtlKind::Label, "（1月1日～12月31日）", 2650, 1150, 3600, 420, "fraCOND"},
    {"lblCAP(2)", CtlKind::Label, "生産者", 200, 1780, 1200, 420, "fraCOND"},
    {"cmbCOND", CtlKind::Combo, "", 1550, 1780, 4000, 420, "fraCOND"},
    {"Command1(1)", CtlKind::Button, "印刷", 7200, 6100, 1800, 600},
    {"Command1(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 600, 6100, 1800, 600},
};

const char *const kTitles[] = {"試算表印刷", "損益計算書印刷", "仕訳帳書出"};

} // namespace

fdlPrintAccRep::fdlPrintAccRep(Choice start, QWidget *parent)
    : Form(QStringLiteral("fdlPrintAccRep"), 9600, 7200, parent), mStart(start)
{
    setWindowTitle(QStringLiteral("試算表印刷"));
    buildControls(kControls, int(std::size(kControls)));
    txtCOND = array<QLineEdit>(QStringLiteral("txtCOND"), 3);
    cmbCOND = ctl<QComboBox>(QStringLiteral("cmbCOND"));
    Option1 = array<QRadioButton>(QStringLiteral("Option1"), 3);
    Command1 = array<QPushButton>(QStringLiteral("Command1"), 2);
    ctl<QLabel>(QStringLiteral("lblCAP(1)"))->setAlignment(Qt::AlignCenter);
    ctl<QLabel>(QStringLiteral("lblCAP(4)"))->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    for (int i = 0; i < 2; ++i) {
        setFieldLimit(txtCOND[i], 7, ImeMode::Disabled);
        entry().registerYmField(txtCOND[i]);
    }
    setFieldLimit(txtCOND[2], 4, ImeMode::Disabled);
    Option1[mStart]->setChecked(true);
    for (QRadioButton *o : Option1)
        connect(o, &QRadioButton::toggled, this, [this](bool on) {
            if (on)
                trap([this] { SetMode(); });
        });
    onClick(Command1[0], [this] { closeOrEndProgram(this); }, false);
    onClick(Command1[1], [this] {
        if (choice() == JournalChoice)
            writeJournal();
        else
            printReport();
    });
}

void fdlPrintAccRep::onLoad()
{
    SetDefSize();
    applyWindowState();
    SetCmb();
}

void fdlPrintAccRep::onResize()
{
    SetSize();
    InitForm();
}

fdlPrintAccRep::Choice fdlPrintAccRep::choice() const
{
    for (int i = 0; i < Option1.size(); ++i)
        if (Option1[i]->isChecked())
            return Choice(i);
    return TrialBalanceChoice;
}

void fdlPrintAccRep::InitForm()
{
    const QDate today = QDate::currentDate();
    const QStringList months = accRepMonths(today);
    txtCOND[0]->setText(months[0]);
    txtCOND[1]->setText(months[1]);
    txtCOND[2]->setText(QString::number(TrialBalance::incomeYear(today)));
    SetMode();
}

void fdlPrintAccRep::SetCmb()
{
    fillChoices(cmbCOND, Ledger::farmers(), false);
    selectItemData(cmbCOND, gFMR_ID);
    if (cmbCOND->currentIndex() < 0 && cmbCOND->count() > 0)
        cmbCOND->setCurrentIndex(0);
}

void fdlPrintAccRep::SetMode()
{
    const Choice c = choice();
    const QString title = QString::fromUtf8(kTitles[c]);
    setWindowTitle(title);
    ctl<QLabel>(QStringLiteral("lblTITLE"))->setText(title);
    ctl<QGroupBox>(QStringLiteral("fraCOND"))
        ->setTitle(c == JournalChoice ? QStringLiteral("書出条件") : QStringLiteral("印刷条件"));
    const bool months = c != IncomeChoice;
    for (int i = 0; i < 2; ++i)
        txtCOND[i]->setEnabled(months);
    ctl<QLabel>(QStringLiteral("lblCAP(0)"))->setEnabled(months);
    ctl<QLabel>(QStringLiteral("lblCAP(1)"))->setEnabled(months);
    txtCOND[2]->setEnabled(!months);
    ctl<QLabel>(QStringLiteral("lblCAP(3)"))->setEnabled(!months);
    ctl<QLabel>(QStringLiteral("lblCAP(4)"))->setEnabled(!months);
    Command1[1]->setText(c == JournalChoice ? QStringLiteral("書出") : QStringLiteral("印刷"));
}

bool fdlPrintAccRep::readFarmer(Value &farmer)
{
    farmer = currentItemData(cmbCOND);
    if (hasValue(farmer))
        return true;
    ShowMsg(QStringLiteral("生産者を選択してください。"), Msg::Exclamation);
    cmbCOND->setFocus(Qt::OtherFocusReason);
    return false;
}

bool fdlPrintAccRep::readPeriod(QDate &from, QDate &to)
{
    const TrialBalance::Period period = TrialBalance::monthsPeriod(txtCOND[0]->text(), txtCOND[1]->text());
    from = period.from;
    to = period.to;
    if (period.error.isEmpty())
        return true;
    ShowMsg(period.error, Msg::Exclamation);
    txtCOND[0]->setFocus(Qt::OtherFocusReason);
    return false;
}

void fdlPrintAccRep::printReport()
{
    Value farmer;
    if (!readFarmer(farmer))
        return;
    int pages = 0, repId = kTrialBalanceReport;
    if (choice() == IncomeChoice) {
        const int year = TrialBalance::yearOf(txtCOND[2]->text());
        if (year == 0) {
            ShowMsg(QStringLiteral("年を正しく入力してください。"), Msg::Exclamation);
            txtCOND[2]->setFocus(Qt::OtherFocusReason);
            return;
        }
        WaitCursor wait;
        repId = kIncomeReport;
        pages = BookReports::prepareIncome(farmer, year);
    } else {
        QDate from, to;
        if (!readPeriod(from, to))
            return;
        WaitCursor wait;
        pages = BookReports::prepareTrialBalance(farmer, from, to);
    }
    openPreview(repId, pages);
}

void fdlPrintAccRep::writeJournal()
{
    Value farmer;
    QDate from, to;
    if (!readFarmer(farmer) || !readPeriod(from, to))
        return;
    static QString lastFolder = QDir::homePath();
    QString path = SaveFileName(this, QStringLiteral("仕訳帳の書出"),
                                QDir(lastFolder).filePath(Journal::fileName(farmer, from, to)),
                                QStringLiteral("仕訳帳 (*.journal);;すべてのファイル (*)"));
    if (path.isEmpty())
        return;
    lastFolder = QFileInfo(path).absolutePath();
    Journal::Written written;
    QString error;
    {
        WaitCursor wait;
        error = Journal::writeFile(path, farmer, from, to, written);
    }
    if (!error.isEmpty()) {
        ShowMsg(error, Msg::Exclamation);
        return;
    }
    QString text = QStringLiteral("%1件の取引を書き出しました。\n%2").arg(written.transactions).arg(QDir::toNativeSeparators(path));
    if (!written.faults.isEmpty())
        text += QStringLiteral("\n\n不備のある伝票が%1件あります（科目のない側は 未確定:科目なし に、日付のない伝票は注記として"
                               "書き出しました）。")
                    .arg(written.faults.size());
    ShowMsg(text, written.faults.isEmpty() ? Msg::Information : Msg::Exclamation);
}
