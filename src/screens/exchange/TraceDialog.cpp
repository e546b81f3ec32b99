#include "screens/exchange/TraceDialog.h"

#include "rules/exchange/TraceData.h"
#include "base/Helpers.h"
#include "base/Msg.h"
#include "ui/Entry.h"

#include <QComboBox>
#include <QDate>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

TraceDialog::TraceDialog(const QString &name, const QString &title, const CtlSpec *controls, int count,
                         QWidget *parent)
    : Form(name, 9600, 7200, parent), mTitle(title)
{
    setWindowTitle(title);
    buildControls(controls, count);
    txtCOND = ctl<QLineEdit>(QStringLiteral("txtCOND(0)"));
    cmbCOND = array<QComboBox>(QStringLiteral("cmbCOND"), 2);
    Command1 = array<QPushButton>(QStringLiteral("Command1"), 2);
    setFieldLimit(txtCOND, 4, ImeMode::Disabled);
    // Another year, its plantings.
    connect(&entry(), &EntryConventions::fieldLeft, this, [this](QWidget *field) {
        if (field == txtCOND)
            trap([this] { SetCmb(1); });
    });
    onClick(Command1[0], [this] { closeOrEndProgram(this); }, false);
}

void TraceDialog::onLoad()
{
    SetDefSize();
    applyWindowState();
    InitForm();
    txtCOND->setText(QString::number(QDate::currentDate().year()));
    SetCmb(0);
    SetCmb(1);
}

void TraceDialog::onResize()
{
    SetSize();
    InitForm();
}

void TraceDialog::InitForm()
{
    setWindowTitle(mTitle);
    if (auto *title = ctl<QLabel>(QStringLiteral("lblTITLE")))
        title->setText(mTitle);
}

void TraceDialog::SetCmb(int index)
{
    if (index != 1 || txtCOND->text().isEmpty())
        return;
    QComboBox *c = cmbCOND[1];
    const Choices plantings = TraceData::yearPlantings(txtCOND->text());
    c->clear();
    addEmptyItem(c);
    for (const Choice &e : plantings)
        addItem(c, e.text, e.id);
}

int TraceDialog::chosenYear()
{
    const int year = int(leadingNumber(txtCOND->text()));
    if (year > 0)
        return year;
    ShowMsg(QStringLiteral("年を入力してください。"), Msg::Exclamation);
    txtCOND->setFocus(Qt::OtherFocusReason);
    return 0;
}
