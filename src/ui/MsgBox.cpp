#include "ui/MsgBox.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>

int MessageBoxSink::show(const QString &prompt, int buttons, const QString &title)
{
    QMessageBox box(QApplication::activeWindow());
    box.setWindowTitle(title);
    box.setText(prompt);
    switch (buttons & 0x70) {
    case Msg::Critical: box.setIcon(QMessageBox::Critical); break;
    case Msg::Question: box.setIcon(QMessageBox::Question); break;
    case Msg::Exclamation: box.setIcon(QMessageBox::Warning); break;
    case Msg::Information: box.setIcon(QMessageBox::Information); break;
    default: break;
    }
    switch (buttons & 7) {
    case Msg::OKCancel: box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel); break;
    case Msg::AbortRetryIgnore: box.setStandardButtons(QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore); break;
    case Msg::YesNoCancel: box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel); break;
    case Msg::YesNo: box.setStandardButtons(QMessageBox::Yes | QMessageBox::No); break;
    case Msg::RetryCancel: box.setStandardButtons(QMessageBox::Retry | QMessageBox::Cancel); break;
    default: box.setStandardButtons(QMessageBox::Ok); break;
    }
    const struct {
        QMessageBox::StandardButton button;
        const char *text;
    } names[] = {{QMessageBox::Ok, "OK"},           {QMessageBox::Cancel, "キャンセル"}, {QMessageBox::Yes, "はい(&Y)"},
                 {QMessageBox::No, "いいえ(&N)"},   {QMessageBox::Abort, "中止(&A)"},   {QMessageBox::Retry, "再試行(&R)"},
                 {QMessageBox::Ignore, "無視(&I)"}};
    for (const auto &n : names)
        if (QAbstractButton *b = box.button(n.button))
            b->setText(QString::fromUtf8(n.text));
    switch (box.exec()) {
    case QMessageBox::Ok: return Msg::ResOK;
    case QMessageBox::Cancel: return Msg::ResCancel;
    case QMessageBox::Abort: return Msg::ResAbort;
    case QMessageBox::Retry: return Msg::ResRetry;
    case QMessageBox::Ignore: return Msg::ResIgnore;
    case QMessageBox::Yes: return Msg::ResYes;
    case QMessageBox::No: return Msg::ResNo;
    default: return (buttons & 7) == Msg::OK ? Msg::ResOK : Msg::ResCancel;
    }
}
