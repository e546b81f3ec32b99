#include "screens/masters/CodeMasterDialog.h"

#include "base/Msg.h"
#include "ui/Entry.h"
#include "ui/MasterEdit.h"
#include "ui/Skeletons.h"

#include <QLineEdit>
#include <QPushButton>

CodeMasterDialog::CodeMasterDialog(const QString &name, int designWidth, int designHeight, const CtlSpec *controls,
                                   int count, int fieldCount, Value (*current)(), QWidget *parent)
    : Form(name, designWidth, designHeight, parent), mCurrent(current)
{
    buildControls(controls, count);
    scaleRules().noFont << QStringLiteral("Sha");
    txtDATA = array<QLineEdit>(QStringLiteral("txtDATA"), fieldCount);
    cmdClose = ctl<QPushButton>(QStringLiteral("Command1(0)"));
    cmdSave = ctl<QPushButton>(QStringLiteral("Command1(1)"));
    // Enter in the code field looks the record up (only while looking for a code).
    MasterEdit::onCodeEnter(this, txtDATA[0], [this] { return !editing(); }, [this](const Value &code) {
        if (!GetData(code))
            return false;
        setMode(::Mode::Change);
        cmdClose->setFocus();
        return true;
    });
    onClick(cmdClose, [this] { closeOrEndProgram(this); }, false);
    EntryScreen::askBeforeClose(this, cmdSave, [this] { return editing() ? ::Mode::Change : ::Mode::None; });
    onClick(cmdSave, [this] {
        const Value id(txtDATA[0]->text());
        if (!ChkData())
            return;
        if (SaveData(id))
            done(QDialog::Accepted);
        else
            ShowMsg(QStringLiteral("データの登録に失敗しました。"), Msg::Exclamation);
    });
}

void CodeMasterDialog::setMode(::Mode mode)
{
    mMode = mode;
    const bool on = editing();
    MasterEdit::setEditable(txtDATA[0], !on);
    for (int i = 1; i < txtDATA.size(); ++i)
        MasterEdit::setEditable(txtDATA[i], on);
    setOthersEditable(on);
    // The record now shown is as stored: what was typed before (the code
    // looked up) changes nothing.
    entry().setEdited(false);
    cmdSave->setEnabled(on);
    cmdClose->setText(on ? QStringLiteral("ｷｬﾝｾﾙ") : QStringLiteral("閉じる"));
}

void CodeMasterDialog::onLoad()
{
    SetDefSize();
    applyWindowState();
    setMode(::Mode::None);
}

void CodeMasterDialog::onActivate()
{
    applyWindowState();
    const Value code = mCurrent();
    txtDATA[0]->setText(textOf(code));
    GetData(code);
    setMode(::Mode::Change);
    txtDATA[1]->setFocus();
}

bool CodeMasterDialog::SaveData(const Value &id)
{
    return trap([&] { save(id); });
}
