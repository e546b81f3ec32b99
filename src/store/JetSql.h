#pragma once
// The program writes all its SQL in one dialect, the one of the file database
// it was first written for. Each engine turns that text into its own dialect
// at one point, working on tokens so that a '#' or a keyword inside quoted
// user text stays data.

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

namespace JetSql {

struct Token {
    enum Kind { Space, Word, Number, String, DateLit, Bracket, Op, LParen, RParen, Comma, Semicolon, Dot, Other };
    Kind kind;
    QString text;
    bool unterminated = false; // a quote or '#' with no end
};

QVector<Token> tokenize(const QString &sql);
QString join(const QVector<Token> &tokens);

enum class Dialect { Sqlite, Mysql };

// Turns a statement into the engine's dialect. Raises AppError for a date
// literal that is no date, and for text after the end of the statement (only
// one statement runs per call).
QString translate(const QString &jet, Dialect dialect);

// Reads a date literal's inner text ("2024-01-05 00:00:00", "2024/1/5",
// "1/5/2024") into "yyyy-mm-dd hh:mm:ss"; empty when it is no date.
QString dateLiteralText(const QString &inner);

// Tables named after FROM and JOIN, with their aliases (alias -> table, upper
// case; a table stands for itself too), in order of appearance.
struct Sources {
    QStringList tables;            // real names, as written
    QHash<QString, QString> alias; // upper-case alias or name -> real name
    bool hasJoin = false;
};
Sources sources(const QString &sql);

}
