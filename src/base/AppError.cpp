#include "base/AppError.h"

QString standardErrorText(long number)
{
    switch (number) {
    case VbErr::InvalidCall: return QStringLiteral("プロシージャの呼び出し、または引数が不正です。");
    case VbErr::Overflow: return QStringLiteral("オーバーフローしました。");
    case VbErr::Subscript: return QStringLiteral("インデックスが有効範囲にありません。");
    case VbErr::DivByZero: return QStringLiteral("0 で除算しました。");
    case VbErr::TypeMismatch: return QStringLiteral("型が一致しません。");
    case VbErr::InvalidNull: return QStringLiteral("Null の使い方が不正です。");
    case VbErr::NoCurrentRecord:
        return QStringLiteral("BOF と EOF のいずれかが True になっているか、または現在のレコードが削除されています。"
                              "要求された操作には、現在のレコードが必要です。");
    case VbErr::ItemNotFound:
        return QStringLiteral("要求された名前、または序数に対応する項目がコレクションで見つかりません。");
    case VbErr::DateSyntax: return QStringLiteral("クエリ式の日付の構文エラーです。");
    case VbErr::CharsAfterEnd: return QStringLiteral("SQL ステートメントの後に文字が見つかりました。");
    case VbErr::FieldTooSmall:
        return QStringLiteral("フィールドが小さすぎるため、追加しようとしたデータを格納できません。");
    case VbErr::NotUpdatable: return QStringLiteral("この操作はこのレコードセットではサポートされていません。");
    case VbErr::NotConnected: return QStringLiteral("接続が閉じられているため、操作は許可されません。");
    case VbErr::OldFileFormat: return QStringLiteral("データベースの形式が認識できません。");
    case VbErr::FileNotFound: return QStringLiteral("ファイルが見つかりません。");
    default: return QStringLiteral("アプリケーション定義またはオブジェクト定義のエラーです。");
    }
}

void raiseError(long number, const QString &detail)
{
    QString text = standardErrorText(number);
    if (!detail.isEmpty())
        text += QLatin1Char(' ') + detail;
    throw AppError(number, text);
}
