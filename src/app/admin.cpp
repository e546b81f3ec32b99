// tillora-admin: the command-line companion for set-up, scripting and checks.
// It shares the store with the program, so a statement behaves here as it
// does behind a screen.

#include "app/AdminCommands.h"
#include "app/CommandLine.h"
#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Msg.h"
#include "store/Database.h"
#include "store/Setup.h"

#include <QApplication>
#include <QDir>
#include <QStringList>

#include <memory>

void openAllDatabases()
{
    OpenIni();
    OpenDb();
    OpenMst();
    OpenWork();
    gSHOP_ID = Value(1);
}

namespace {

using CommandLine::err;
using CommandLine::out;

QString helpText()
{
    return QStringLiteral(
        "使い方: tillora-admin COMMAND [--root DIR] ...\n"
        "Tillora の設定、点検、書き出し、バックアップを行う。\n"
        "\n"
        "コマンド:\n"
        "  tillora-admin init [--root DIR] [--force]\n"
        "      実行用フォルダ（ini, work, data, images）と配布データベースを作成する。\n"
        "      既にあるファイルはそのまま残す（--force で作り直す）。\n"
        "  tillora-admin sql [--root DIR] --db data|master|ini|work \"SQL\"\n"
        "      1 文を実行し、結果の行をタブ区切りで表示する（Null は空欄）。\n"
        "  tillora-admin ctrl [--root DIR] KEY [VALUE]\n"
        "      設定（S_CTRL）を表示する。VALUE があれば保存する。\n"
        "  tillora-admin oldcal [--root DIR] FROM [TO]\n"
        "      FROM から TO（yyyy-mm-dd）までの旧暦・六曜・旧年・干支を 1 日 1 行で表示する。\n"
        "  tillora-admin shoot [--root DIR] SCREEN out.png [--size WxH] [--date yyyy-mm-dd]\n"
        "      画面を表示せずに描き、PNG に保存する。\n"
        "  tillora-admin print-ptag [--root DIR] --date yyyy-mm-dd [--skip N] [--frame] --pdf out.pdf\n"
        "      その日の出荷の値札を、値札印刷と同じ配置・余白で PDF に保存する（--skip: 先頭の空き枚数、\n"
        "      --frame: 枠線も印刷）。\n"
        "  tillora-admin export-ptag [--root DIR] --from yyyy-mm-dd --to yyyy-mm-dd --dir OUT [--utf8] [--farmer N]\n"
        "      期間の出荷の値札データを、値札データ書出と同じ CSV ファイルに書き出す（既定は Shift-JIS、\n"
        "      --utf8: UTF-8 BOM 付き、--farmer: 既定生産者以外）。\n"
        "  tillora-admin trial-balance [--root DIR] --from yyyy-mm --to yyyy-mm\n"
        "      既定の生産者の試算表（区分、科目、科目名、前期繰越、借方、貸方、残高）をタブ区切りで表示する。\n"
        "  tillora-admin journal [--root DIR] [--from yyyy-mm-dd] [--to yyyy-mm-dd] > farm.journal\n"
        "      既定の生産者の伝票を、テキスト会計（hledger, ledger）の仕訳帳として書き出す。\n"
        "      --from より前の残高は開始残高の取引 1 件にまとめる。\n"
        "  tillora-admin check-sprays [--root DIR] [--year Y]\n"
        "      登録内容（作物・使用回数・収穫前日数）に合わない散布と、確認できない散布を全生産者分表示する\n"
        "      （--year: その年の散布だけ）。\n"
        "  tillora-admin trace-pages [--root DIR] --year Y --out DIR [--plant N]\n"
        "      その年（収穫年）の出荷のある作付の生産履歴ページ（QR の開くページ）を DIR に書き出し、\n"
        "      書いたファイルと、ページを作らなかった作付をその理由とともに表示する（--plant: その作付だけ）。\n"
        "  tillora-admin upload-dir [--root DIR] --shop N --dir LOCALDIR\n"
        "      LOCALDIR の中のファイルを、販売店 N のアップロード先（販売店情報のサーバー、サーバーディレクトリ、\n"
        "      FTP ユーザー、パスワード）へ同じフォルダ構成で送る。サーバー上のファイルは消さない。\n"
        "  tillora-admin init-server [--root DIR]\n"
        "      設定で MySQL/MariaDB を指すデータ・マスタに、データベース、表、初期データを作成する。\n"
        "  tillora-admin backup [--root DIR] OUT\n"
        "      設定・作業用・データ・マスタのデータベースと画像を、動作中でも一貫した状態で 1 つのファイル\n"
        "      （tar 形式）に保存する。OUT がフォルダなら tillora-backup-YYYYMMDD-HHMMSS.tar を作る。\n"
        "  tillora-admin restore FILE [--root DIR] [--yes]\n"
        "      バックアップを確認のうえ復元する。置き換えたファイルは日時を付けた名前で残す（--yes: 確認しない）。\n"
        "\n"
        "オプション:\n"
        "  --root DIR   実行用フォルダ（ini, work, data, images を含むフォルダ）に DIR を使う\n"
        "  --help       この説明を表示して終了する\n"
        "  --version    版の情報を表示して終了する\n"
        "\n"
        "--root を省くと、環境変数 TILLORA_ROOT、プログラムのフォルダの隣（ビルドしたフォルダから\n"
        "動かすとき）、利用者のデータフォルダ $XDG_DATA_HOME/tillora（既定は ~/.local/share/tillora）\n"
        "の順に決まる。");
}

// Without a command: the help, as a wrong use.
int usage()
{
    err(helpText());
    return 2;
}

struct Args {
    QString command;
    QString root;
    QString db;
    bool force = false;
    QStringList rest;
};

bool parseArgs(const QStringList &argv, Args &a)
{
    if (argv.size() < 2)
        return false;
    a.command = argv[1];
    for (int i = 2; i < argv.size(); ++i) {
        const QString &s = argv[i];
        if (s == QLatin1String("--root") && i + 1 < argv.size())
            a.root = argv[++i];
        else if (s.startsWith(QLatin1String("--root=")))
            a.root = s.mid(7);
        else if (s == QLatin1String("--db") && i + 1 < argv.size())
            a.db = argv[++i];
        else if (s == QLatin1String("--force"))
            a.force = true;
        else
            a.rest << s;
    }
    return true;
}

DbObject *openDb(DbKind kind)
{
    switch (kind) {
    case DbKind::Ini:
        OpenIni();
        return gINI.get();
    case DbKind::Work:
        OpenWork();
        return gWORK.get();
    case DbKind::Data:
        OpenIni();
        OpenDb();
        return gDB.get();
    case DbKind::Master:
        OpenIni();
        OpenMst();
        return gMST.get();
    }
    return nullptr;
}

QString cellText(const Value &v)
{
    if (!hasValue(v))
        return QString();
    return v.toText();
}

int runSql(const Args &a)
{
    DbKind kind;
    if (!dbKindFromName(a.db, kind) || a.rest.size() != 1)
        return usage();
    DbObject *db = openDb(kind);
    const QString sql = a.rest.first();
    if (sql.trimmed().startsWith(QLatin1String("SELECT"), Qt::CaseInsensitive)) {
        RecordsetPtr rs = db->GetFwdOnlyRst(sql);
        for (; !rs->eof(); rs->MoveNext()) {
            QStringList cells;
            for (int i = 0; i < rs->FieldCount(); ++i)
                cells << cellText(rs->Fields(i));
            out(cells.join(QLatin1Char('\t')));
        }
    } else {
        qint64 n = 0;
        db->EXEC(sql, &n);
        err(QStringLiteral("%1 件").arg(n));
    }
    return 0;
}

int runCtrl(const Args &a)
{
    if (a.rest.isEmpty() || a.rest.size() > 2)
        return usage();
    OpenIni();
    if (a.rest.size() == 1) {
        out(cellText(gINI->GetCtrl(a.rest[0])));
        return 0;
    }
    int type = 0;
    return gINI->SaveCtrl(a.rest[0], Value(a.rest[1]), type) ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    prepareProcess();
    // Rendering a screen or a page needs the widgets and fonts, offscreen;
    // the rest needs no display.
    const bool drawing = argc > 1 && (qstrcmp(argv[1], "shoot") == 0 || qstrcmp(argv[1], "print-ptag") == 0);
    std::unique_ptr<QCoreApplication> application;
    if (drawing) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application = std::make_unique<QApplication>(argc, argv);
    } else {
        application = std::make_unique<QCoreApplication>(argc, argv);
    }
    QCoreApplication &app = *application;
    for (const QString &s : app.arguments().mid(1)) {
        if (s == QLatin1String("--help") || s == QLatin1String("-h")) {
            out(helpText());
            return 0;
        }
        if (s == QLatin1String("--version")) {
            out(CommandLine::versionText(QStringLiteral("tillora-admin")));
            return 0;
        }
    }
    Args a;
    if (!parseArgs(app.arguments(), a))
        return usage();
    static const QStringList commands{
        "init", "sql", "ctrl", "shoot", "print-ptag", "export-ptag", "trial-balance", "journal", "check-sprays",
        "oldcal", "init-server", "backup", "restore", "trace-pages", "upload-dir"};
    if (!commands.contains(a.command))
        return CommandLine::wrongUse(QStringLiteral("tillora-admin"),
                                     (a.command.startsWith(QLatin1Char('-')) ? QStringLiteral("不明なオプション '%1' です。")
                                                                            : QStringLiteral("不明なコマンド '%1' です。"))
                                         .arg(a.command));
    const AppPaths::RootChoice choice = AppPaths::chooseRoot(a.root);
    const QString root = choice.root;
    try {
        // init and restore make the tree themselves; the others find it
        // made (the user's data folder on its first use).
        if (a.command == QLatin1String("init") || a.command == QLatin1String("restore"))
            AppPaths::setRoot(root);
        else
            Setup::useRoot(choice);
        int rc;
        if (a.command == QLatin1String("init")) {
            const Setup::InitReport r = Setup::initRoot(root, a.force);
            for (const QString &f : r.created)
                out(QStringLiteral("作成: ") + f);
            for (const QString &f : r.kept)
                out(QStringLiteral("既存: ") + f);
            rc = 0;
        } else if (a.command == QLatin1String("sql")) {
            rc = runSql(a);
        } else if (a.command == QLatin1String("ctrl")) {
            rc = runCtrl(a);
        } else if (a.command == QLatin1String("shoot")) {
            rc = runShoot(a.rest);
        } else if (a.command == QLatin1String("print-ptag")) {
            rc = runPrintPtag(a.rest);
        } else if (a.command == QLatin1String("export-ptag")) {
            rc = runExportPtag(a.rest);
        } else if (a.command == QLatin1String("trial-balance")) {
            rc = runTrialBalance(a.rest);
        } else if (a.command == QLatin1String("journal")) {
            rc = runJournal(a.rest);
        } else if (a.command == QLatin1String("check-sprays")) {
            rc = runCheckSprays(a.rest);
        } else if (a.command == QLatin1String("trace-pages")) {
            rc = runTracePages(a.rest);
        } else if (a.command == QLatin1String("upload-dir")) {
            rc = runUploadDir(a.rest);
        } else if (a.command == QLatin1String("oldcal")) {
            rc = runOldCal(a.rest);
        } else if (a.command == QLatin1String("init-server")) {
            for (const QString &line : Setup::initServers())
                out(line);
            rc = 0;
        } else if (a.command == QLatin1String("backup")) {
            rc = runBackup(a.rest);
        } else if (a.command == QLatin1String("restore")) {
            rc = runRestore(a.rest, root);
        } else {
            rc = usage();
        }
        CloseAllDatabases();
        return rc;
    } catch (const AppError &e) {
        err(e.text());
        CloseAllDatabases();
        return 1;
    }
}
