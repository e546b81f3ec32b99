#include "screens/exchange/fdlExpPriceTag.h"

#include "ui/Entry.h"
#include "base/Globals.h"
#include "base/Msg.h"
#include "store/SqlText.h"
#include "rules/print/PriceTag.h"
#include "store/Database.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

const CtlSpec kControls[] = {
    {"lblTITLE", CtlKind::Label, "値札ﾃﾞｰﾀ書出", 300, 150, 4800, 540},
    {"fraCOND", CtlKind::Frame, "書出条件", 600, 900, 8400, 3000},
    {"lblCAP(0)", CtlKind::Label, "出荷日", 200, 450, 1200, 420, "fraCOND"},
    {"txtCOND(0)", CtlKind::Text, "", 1550, 450, 1600, 420, "fraCOND"},
    {"lblCAP(1)", CtlKind::Label, "～", 3150, 450, 500, 420, "fraCOND"},
    {"txtCOND(1)", CtlKind::Text, "", 3650, 450, 1600, 420, "fraCOND"},
    {"lblCAP(2)", CtlKind::Label, "生産者", 200, 1150, 1200, 420, "fraCOND"},
    {"cmbCOND", CtlKind::Combo, "", 1550, 1150, 4000, 420, "fraCOND"},
    {"lblCAP(3)", CtlKind::Label, "出力先", 200, 1850, 1200, 420, "fraCOND"},
    {"txtCOND(2)", CtlKind::Text, "", 1550, 1850, 5300, 420, "fraCOND"},
    {"Command1(2)", CtlKind::Button, "参照...", 6950, 1820, 1200, 480, "fraCOND"},
    {"MonthView1", CtlKind::Calendar, "", 0, 0, 3900, 2700},
    {"Command1(1)", CtlKind::Button, "書出", 7200, 6100, 1800, 600},
    {"Command1(0)", CtlKind::Button, "ｷｬﾝｾﾙ", 600, 6100, 1800, 600},
};

bool typedDate(const QString &text, QDateTime &out) { return DateUtil::parse(text, out); }

} // namespace

fdlExpPriceTag::fdlExpPriceTag(QWidget *parent) : Form(QStringLiteral("fdlExpPriceTag"), 9600, 7200, parent)
{
    setWindowTitle(QStringLiteral("値札ﾃﾞｰﾀ書出"));
    buildControls(kControls, int(std::size(kControls)));
    txtCOND = array<QLineEdit>(QStringLiteral("txtCOND"), 3);
    cmbCOND = ctl<QComboBox>(QStringLiteral("cmbCOND"));
    Command1 = array<QPushButton>(QStringLiteral("Command1"), 3);
    ctl<QLabel>(QStringLiteral("lblCAP(1)"))->setAlignment(Qt::AlignCenter);
    for (int i = 0; i < 2; ++i) {
        setFieldLimit(txtCOND[i], 10, ImeMode::Disabled);
        entry().registerDateField(txtCOND[i], i);
    }
    setFieldLimit(txtCOND[2], 255, ImeMode::Off);
    // The folder is remembered as soon as it is left.
    entry().setLeaveCheck(txtCOND[2], [this] {
        saveFolder();
        return true;
    });
    onClick(Command1[0], [this] { closeOrEndProgram(this); }, false);
    onClick(Command1[1], [this] {
        const int n = ExpData();
        if (n <= 0)
            return;
        int type = 0;
        gINI->SaveCtrl(QStringLiteral("LAST_EXP_PTAG_DATE"), Value(txtCOND[1]->text()), type);
        ShowMsg(QString::number(n) + QStringLiteral("件のラベルデータを書き出しました。"), Msg::Information);
        close();
    });
    onClick(Command1[2], [this] {
        const QString dir = OpenDir(this, QStringLiteral("書出先ﾌｫﾙﾀﾞを指定してください。"));
        if (dir.isEmpty())
            return;
        txtCOND[2]->setText(QDir::toNativeSeparators(dir));
        saveFolder();
        txtCOND[2]->setFocus(Qt::OtherFocusReason);
    }, false);
}

void fdlExpPriceTag::onLoad()
{
    SetDefSize();
    applyWindowState();
    InitForm();
}

void fdlExpPriceTag::onResize() { SetSize(); }

void fdlExpPriceTag::InitForm()
{
    const QDateTime today = DateUtil::today();
    QDateTime last = today;
    const Value saved = gINI->GetCtrl(QStringLiteral("LAST_EXP_PTAG_DATE"));
    if (hasValue(saved) && IsDate(saved))
        last = DateUtil::fromDate(saved.toDate().date());
    QDateTime latest = today;
    const Value max = gDB->DMax(QStringLiteral("SHIP_DATE"), QStringLiteral("D_SHIP"),
                                QStringLiteral("SHOP_ID=") + Sql::number(gSHOP_ID) + QStringLiteral(" AND FMR_ID=") +
                                    Sql::number(gFMR_ID));
    if (hasValue(max) && IsDate(max))
        latest = DateUtil::fromDate(max.toDate().date());
    const ExportPeriod p = exportPeriod(today, last, latest);
    txtCOND[0]->setText(p.first.toString(QStringLiteral("yyyy/MM/dd")));
    txtCOND[1]->setText(p.last.toString(QStringLiteral("yyyy/MM/dd")));
    txtCOND[2]->setText(textOf(gINI->GetCtrl(QStringLiteral("EXP_PTAG_DIR"))));
}

void fdlExpPriceTag::saveFolder()
{
    int type = 0;
    gINI->SaveCtrl(QStringLiteral("EXP_PTAG_DIR"), Value(txtCOND[2]->text()), type);
}

int fdlExpPriceTag::GetData(const QDateTime &first, const QDateTime &last)
{
    RecordsetPtr rs = gDB->GetStaticRst(periodRowsSql(first, last, gFMR_ID, gSHOP_ID));
    if (rs->eof())
        return 0;
    gPTAG_ROWS = QVector<PriceTagSet>(1);
    SetPriceTagRows(*rs);
    return int(gPTAG_ROWS[0].Rows.size());
}

int fdlExpPriceTag::ExpData()
{
    auto refuse = [](const QString &message, QLineEdit *field) {
        ShowMsg(message, Msg::Exclamation);
        if (field)
            field->setFocus(Qt::OtherFocusReason);
        return 0;
    };
    QDateTime first, last;
    if (txtCOND[0]->text().isEmpty())
        return refuse(QStringLiteral("出荷日を指定してください。"), txtCOND[0]);
    if (!typedDate(txtCOND[0]->text(), first))
        return refuse(QStringLiteral("日付を指定してください。"), txtCOND[0]);
    if (!txtCOND[1]->text().isEmpty() && !typedDate(txtCOND[1]->text(), last))
        return refuse(QStringLiteral("日付を指定してください。"), txtCOND[1]);
    if (txtCOND[1]->text().isEmpty())
        return refuse(QStringLiteral("出荷日を指定してください。"), txtCOND[1]);
    if (GetData(first, last) == 0)
        return refuse(QStringLiteral("出力対象データが登録されていません。"), nullptr);
    QString folder = txtCOND[2]->text();
    if (folder.isEmpty())
        return refuse(QStringLiteral("出力先を指定してください。"), txtCOND[2]);
    if (!QFileInfo(folder).isDir())
        return refuse(QStringLiteral("出力先ディレクトリが存在しません。"), txtCOND[2]);
    const QString path = QDir(folder).filePath(exportFileName(first, last, gFMR_ID, gSHOP_ID));
    const QVector<PriceTagRow> &rows = gPTAG_ROWS[0].Rows;
    QString error;
    if (!writeCsv(path, rows, &error))
        return refuse(QStringLiteral("ファイルを書き出せませんでした。\n") + QDir::toNativeSeparators(path) +
                          QStringLiteral("\n") + error,
                      txtCOND[2]);
    return int(rows.size());
}
