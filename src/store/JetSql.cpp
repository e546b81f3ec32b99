#include "store/JetSql.h"

#include "base/AppError.h"
#include "base/Value.h"

#include <QDate>
#include <QRegularExpression>
#include <QSet>
#include <QTime>

namespace JetSql {

namespace {

bool isWordStart(QChar c) { return c.isLetter() || c == QLatin1Char('_') || c.unicode() >= 0x80; }
bool isWordChar(QChar c) { return isWordStart(c) || c.isDigit(); }
bool isSpace(QChar c) { return c == QLatin1Char(' ') || c == QLatin1Char('\t') || c == QLatin1Char('\n') || c == QLatin1Char('\r'); }

bool isWord(const Token &t, const char *w)
{
    return t.kind == Token::Word && t.text.compare(QLatin1String(w), Qt::CaseInsensitive) == 0;
}

bool isComparison(const Token &t)
{
    if (t.kind == Token::Op) {
        const QString &s = t.text;
        return s == QLatin1String("=") || s == QLatin1String("<>") || s == QLatin1String("!=") ||
               s == QLatin1String("<") || s == QLatin1String(">") || s == QLatin1String("<=") ||
               s == QLatin1String(">=");
    }
    return isWord(t, "LIKE");
}

// Index of the next token that is not blank, from i on; -1 at the end.
int nextSig(const QVector<Token> &t, int i)
{
    for (; i < t.size(); ++i)
        if (t[i].kind != Token::Space)
            return i;
    return -1;
}

// The statement as an editable token list: text may be put before or after a
// token, and tokens may be blanked.
struct Editor {
    QVector<Token> tok;
    QVector<QString> before, after;
    explicit Editor(QVector<Token> t) : tok(std::move(t)), before(tok.size()), after(tok.size()) {}
    QString text() const
    {
        QString s;
        for (int i = 0; i < tok.size(); ++i)
            s += before[i] + tok[i].text + after[i];
        return s;
    }
    QString range(int from, int to) const // tokens [from, to)
    {
        QString s;
        for (int i = from; i < to; ++i)
            s += before[i] + tok[i].text + after[i];
        return s.trimmed();
    }
    // Depth of parentheses before each token.
    QVector<int> depths() const
    {
        QVector<int> d(tok.size());
        int depth = 0;
        for (int i = 0; i < tok.size(); ++i) {
            if (tok[i].kind == Token::RParen)
                --depth;
            d[i] = depth;
            if (tok[i].kind == Token::LParen)
                ++depth;
        }
        return d;
    }
};

// Finds the first word w at depth 0 in [from, to); -1 when absent.
int findWord(const Editor &e, const QVector<int> &depth, const char *w, int from, int to)
{
    for (int i = from; i < to && i < e.tok.size(); ++i)
        if (depth[i] == 0 && isWord(e.tok[i], w))
            return i;
    return -1;
}

// Splits [from, to) at commas of depth 0: pairs of [start, end).
QVector<QPair<int, int>> splitItems(const Editor &e, const QVector<int> &depth, int from, int to)
{
    QVector<QPair<int, int>> items;
    int start = from;
    for (int i = from; i < to; ++i)
        if (depth[i] == 0 && e.tok[i].kind == Token::Comma) {
            items.append({start, i});
            start = i + 1;
        }
    items.append({start, to});
    return items;
}

// A comparison selected or sorted on: Jet's true is -1 and sorts first, so
// the comparison becomes its negation in the engines whose true is 1.
void negateComparison(Editor &e, const QVector<int> &depth, int from, int to)
{
    int first = -1, last = -1;
    bool comparison = false;
    for (int i = from; i < to; ++i) {
        if (e.tok[i].kind == Token::Space)
            continue;
        if (first < 0)
            first = i;
        last = i;
        if (depth[i] == 0 && isComparison(e.tok[i]))
            comparison = true;
    }
    if (!comparison || first < 0)
        return;
    e.before[first] += QStringLiteral("-(");
    e.after[last] += QStringLiteral(")");
}

void trueFirst(Editor &e)
{
    const QVector<int> depth = e.depths();
    const int n = e.tok.size();
    int sel = nextSig(e.tok, 0);
    if (sel < 0 || !isWord(e.tok[sel], "SELECT"))
        return;
    int listStart = sel + 1;
    for (;;) {
        const int k = nextSig(e.tok, listStart);
        if (k < 0)
            break;
        if (isWord(e.tok[k], "DISTINCT") || isWord(e.tok[k], "ALL") || isWord(e.tok[k], "DISTINCTROW")) {
            listStart = k + 1;
        } else if (isWord(e.tok[k], "TOP")) {
            const int num = nextSig(e.tok, k + 1);
            listStart = num < 0 ? k + 1 : num + 1;
        } else {
            break;
        }
    }
    int from = findWord(e, depth, "FROM", listStart, n);
    const int listEnd = from < 0 ? n : from;
    for (const auto &item : splitItems(e, depth, listStart, listEnd)) {
        int end = item.second;
        for (int i = item.first; i < item.second; ++i)
            if (depth[i] == 0 && isWord(e.tok[i], "AS"))
                end = i;
        negateComparison(e, depth, item.first, end);
    }
    // ORDER BY
    for (int i = listEnd; i < n; ++i) {
        if (depth[i] != 0 || !isWord(e.tok[i], "ORDER"))
            continue;
        const int by = nextSig(e.tok, i + 1);
        if (by < 0 || !isWord(e.tok[by], "BY"))
            continue;
        int end = n;
        for (int j = by + 1; j < n; ++j)
            if (depth[j] == 0 && (isWord(e.tok[j], "LIMIT") || e.tok[j].kind == Token::RParen)) {
                end = j;
                break;
            }
        for (const auto &item : splitItems(e, depth, by + 1, end)) {
            int itemEnd = item.second;
            for (int j = item.second - 1; j >= item.first; --j) {
                if (e.tok[j].kind == Token::Space)
                    continue;
                if (isWord(e.tok[j], "ASC") || isWord(e.tok[j], "DESC"))
                    itemEnd = j;
                break;
            }
            negateComparison(e, depth, item.first, itemEnd);
        }
        break;
    }
}

// "DELETE t.* FROM t" and "DELETE * FROM t" become "DELETE FROM t".
void plainDelete(Editor &e)
{
    const QVector<int> depth = e.depths();
    const int del = nextSig(e.tok, 0);
    const int from = findWord(e, depth, "FROM", del + 1, e.tok.size());
    if (from < 0)
        return;
    QVector<int> sig;
    for (int i = del + 1; i < from; ++i)
        if (e.tok[i].kind != Token::Space)
            sig.append(i);
    const bool star = (sig.size() == 1 && e.tok[sig[0]].text == QLatin1String("*")) ||
                      (sig.size() == 3 && (e.tok[sig[0]].kind == Token::Word || e.tok[sig[0]].kind == Token::Bracket) &&
                       e.tok[sig[1]].kind == Token::Dot && e.tok[sig[2]].text == QLatin1String("*"));
    if (!star)
        return;
    for (int i = del + 1; i < from; ++i)
        e.tok[i].text.clear();
    e.after[del] = QStringLiteral(" ");
}

// Drops "t." from the left side of each assignment in [from, to).
void plainSetColumns(Editor &e, const QVector<int> &depth, int from, int to)
{
    for (const auto &item : splitItems(e, depth, from, to)) {
        QVector<int> sig;
        for (int i = item.first; i < item.second; ++i) {
            if (depth[i] == 0 && e.tok[i].kind == Token::Op && e.tok[i].text == QLatin1String("="))
                break;
            if (e.tok[i].kind != Token::Space)
                sig.append(i);
        }
        if (sig.size() == 3 && e.tok[sig[1]].kind == Token::Dot) {
            e.tok[sig[0]].text.clear();
            e.tok[sig[1]].text.clear();
        }
    }
}

// "UPDATE a INNER JOIN b ON c SET a.x = y WHERE w" becomes
// "UPDATE a SET x = y FROM b WHERE (c) AND (w)".
QString joinedUpdate(Editor &e)
{
    const QVector<int> depth = e.depths();
    const int n = e.tok.size();
    const int upd = nextSig(e.tok, 0);
    const int set = findWord(e, depth, "SET", upd + 1, n);
    if (set < 0)
        return e.text();
    const int where = findWord(e, depth, "WHERE", set + 1, n);
    const int setEnd = where < 0 ? n : where;
    plainSetColumns(e, depth, set + 1, setEnd);
    const int inner = findWord(e, depth, "INNER", upd + 1, set);
    const int join = findWord(e, depth, "JOIN", upd + 1, set);
    const int on = join < 0 ? -1 : findWord(e, depth, "ON", join + 1, set);
    if (inner < 0 || join < 0 || on < 0)
        return e.text();
    QString out = QStringLiteral("UPDATE ") + e.range(upd + 1, inner) + QStringLiteral(" SET ") +
                  e.range(set + 1, setEnd) + QStringLiteral(" FROM ") + e.range(join + 1, on) +
                  QStringLiteral(" WHERE (") + e.range(on + 1, set) + QLatin1Char(')');
    if (where >= 0)
        out += QStringLiteral(" AND (") + e.range(where + 1, n) + QLatin1Char(')');
    return out;
}

} // namespace

QVector<Token> tokenize(const QString &sql)
{
    QVector<Token> out;
    const int n = sql.size();
    int i = 0;
    auto push = [&](Token::Kind k, int start, int end, bool unterminated = false) {
        out.append({k, sql.mid(start, end - start), unterminated});
    };
    while (i < n) {
        const QChar c = sql[i];
        const int start = i;
        if (isSpace(c)) {
            while (i < n && isSpace(sql[i]))
                ++i;
            push(Token::Space, start, i);
        } else if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            ++i;
            bool closed = false;
            while (i < n) {
                if (sql[i] == c) {
                    if (i + 1 < n && sql[i + 1] == c) {
                        i += 2;
                        continue;
                    }
                    ++i;
                    closed = true;
                    break;
                }
                ++i;
            }
            push(Token::String, start, i, !closed);
        } else if (c == QLatin1Char('#')) {
            const int end = sql.indexOf(QLatin1Char('#'), i + 1);
            i = end < 0 ? n : end + 1;
            push(Token::DateLit, start, i, end < 0);
        } else if (c == QLatin1Char('[')) {
            const int end = sql.indexOf(QLatin1Char(']'), i + 1);
            i = end < 0 ? n : end + 1;
            push(Token::Bracket, start, i, end < 0);
        } else if (c.isDigit() || (c == QLatin1Char('.') && i + 1 < n && sql[i + 1].isDigit() &&
                                    (out.isEmpty() || (out.last().kind != Token::Word && out.last().kind != Token::Bracket)))) {
            while (i < n && sql[i].isDigit())
                ++i;
            if (i < n && sql[i] == QLatin1Char('.')) {
                ++i;
                while (i < n && sql[i].isDigit())
                    ++i;
            }
            if (i < n && (sql[i] == QLatin1Char('e') || sql[i] == QLatin1Char('E'))) {
                int j = i + 1;
                if (j < n && (sql[j] == QLatin1Char('+') || sql[j] == QLatin1Char('-')))
                    ++j;
                if (j < n && sql[j].isDigit()) {
                    i = j;
                    while (i < n && sql[i].isDigit())
                        ++i;
                }
            }
            push(Token::Number, start, i);
        } else if (isWordStart(c)) {
            while (i < n && isWordChar(sql[i]))
                ++i;
            push(Token::Word, start, i);
        } else if (c == QLatin1Char('(')) {
            push(Token::LParen, start, ++i);
        } else if (c == QLatin1Char(')')) {
            push(Token::RParen, start, ++i);
        } else if (c == QLatin1Char(',')) {
            push(Token::Comma, start, ++i);
        } else if (c == QLatin1Char(';')) {
            push(Token::Semicolon, start, ++i);
        } else if (c == QLatin1Char('.')) {
            push(Token::Dot, start, ++i);
        } else if (QStringLiteral("<>=!+-*/&\\^%|").contains(c)) {
            ++i;
            if (i < n) {
                const QString two = sql.mid(start, 2);
                if (two == QLatin1String("<=") || two == QLatin1String(">=") || two == QLatin1String("<>") ||
                    two == QLatin1String("!="))
                    ++i;
            }
            push(Token::Op, start, i);
        } else {
            push(Token::Other, start, ++i);
        }
    }
    return out;
}

QString join(const QVector<Token> &tokens)
{
    QString s;
    for (const Token &t : tokens)
        s += t.text;
    return s;
}

QString dateLiteralText(const QString &innerText)
{
    const QString inner = narrowAscii(innerText).trimmed();
    static const QRegularExpression ymd(QStringLiteral(
        "^(\\d{4})[-/](\\d{1,2})[-/](\\d{1,2})(?:\\s+(\\d{1,2}):(\\d{1,2})(?::(\\d{1,2}))?)?$"));
    static const QRegularExpression mdy(QStringLiteral(
        "^(\\d{1,2})/(\\d{1,2})/(\\d{4})(?:\\s+(\\d{1,2}):(\\d{1,2})(?::(\\d{1,2}))?)?$"));
    static const QRegularExpression hms(QStringLiteral("^(\\d{1,2}):(\\d{1,2})(?::(\\d{1,2}))?$"));
    int y, m, d, h = 0, n = 0, s = 0;
    QRegularExpressionMatch mt;
    if ((mt = ymd.match(inner)).hasMatch()) {
        y = mt.captured(1).toInt();
        m = mt.captured(2).toInt();
        d = mt.captured(3).toInt();
    } else if ((mt = mdy.match(inner)).hasMatch()) {
        m = mt.captured(1).toInt();
        d = mt.captured(2).toInt();
        y = mt.captured(3).toInt();
    } else if ((mt = hms.match(inner)).hasMatch()) {
        y = 1899, m = 12, d = 30;
        h = mt.captured(1).toInt();
        n = mt.captured(2).toInt();
        s = mt.captured(3).isEmpty() ? 0 : mt.captured(3).toInt();
        mt = QRegularExpressionMatch();
    } else {
        return QString();
    }
    if (mt.hasMatch() && !mt.captured(4).isEmpty()) {
        h = mt.captured(4).toInt();
        n = mt.captured(5).toInt();
        s = mt.captured(6).isEmpty() ? 0 : mt.captured(6).toInt();
    }
    const QDate date(y, m, d);
    if (!date.isValid() || h > 23 || n > 59 || s > 59)
        return QString();
    return date.toString(QStringLiteral("yyyy-MM-dd")) + QLatin1Char(' ') +
           QTime(h, n, s).toString(QStringLiteral("HH:mm:ss"));
}

namespace {

// A choice as both engines write it: IIf(test, yes, no) as (CASE WHEN test
// THEN yes ELSE no END), and Switch(test1, value1, test2, value2 ...) as
// (CASE WHEN test1 THEN value1 WHEN test2 THEN value2 ... END), Null when
// no test holds; nested ones too. One without its parts stays as written,
// for the engine to refuse.
void choicesAsCase(QVector<Token> &tok)
{
    const Token space{Token::Space, QStringLiteral(" ")};
    auto word = [](const char *w) { return Token{Token::Word, QString::fromLatin1(w)}; };
    // From the last one back: an inner choice is turned before its outer one.
    for (int i = tok.size() - 1; i >= 0; --i) {
        const bool iif = isWord(tok[i], "IIF");
        if (!iif && !isWord(tok[i], "SWITCH"))
            continue;
        const int open = nextSig(tok, i + 1);
        if (open < 0 || tok[open].kind != Token::LParen)
            continue;
        QVector<int> ends; // where each part ends: its comma, the last its bracket
        for (int k = open + 1, depth = 0; k < tok.size(); ++k) {
            if (tok[k].kind == Token::LParen) {
                ++depth;
            } else if (tok[k].kind == Token::RParen && depth-- == 0) {
                ends << k;
                break;
            } else if (tok[k].kind == Token::Comma && depth == 0) {
                ends << k;
            }
        }
        const int close = ends.isEmpty() ? -1 : ends.last();
        if (close < 0 || tok[close].kind != Token::RParen || (iif ? ends.size() != 3 : ends.size() % 2 != 0))
            continue;
        // Each part without the spaces around it.
        auto part = [&](int n) {
            int from = n == 0 ? open + 1 : ends[n - 1] + 1, to = ends[n];
            while (from < to && tok[from].kind == Token::Space)
                ++from;
            while (to > from && tok[to - 1].kind == Token::Space)
                --to;
            return tok.mid(from, to - from);
        };
        // In brackets: a test inside is no comparison of the statement's own.
        QVector<Token> out = tok.mid(0, i);
        out << Token{Token::LParen, QStringLiteral("(")} << word("CASE");
        for (int n = 0; n + 1 < ends.size(); n += 2)
            out << space << word("WHEN") << space << part(n) << space << word("THEN") << space << part(n + 1);
        if (iif)
            out << space << word("ELSE") << space << part(2);
        out << space << word("END") << Token{Token::RParen, QStringLiteral(")")} << tok.mid(close + 1);
        tok = out;
    }
}

} // namespace

QString translate(const QString &jet, Dialect dialect)
{
    QVector<Token> tok = tokenize(jet);

    // One statement only: a ';' may end the text, nothing may follow it.
    for (int i = 0; i < tok.size(); ++i) {
        if (tok[i].kind != Token::Semicolon)
            continue;
        if (nextSig(tok, i + 1) >= 0)
            raiseError(VbErr::CharsAfterEnd);
        tok.resize(i);
        break;
    }

    for (Token &t : tok) {
        if (t.kind != Token::DateLit)
            continue;
        const QString inner = t.unterminated ? QString() : t.text.mid(1, t.text.size() - 2);
        const QString text = dateLiteralText(inner);
        if (text.isEmpty())
            throw AppError(VbErr::DateSyntax,
                           QStringLiteral("クエリ式 '%1' の日付の構文エラーです。").arg(t.text));
        t.kind = Token::String;
        t.text = QLatin1Char('\'') + text + QLatin1Char('\'');
    }

    choicesAsCase(tok);

    const int first = nextSig(tok, 0);
    if (first < 0)
        return join(tok);
    Editor e(tok);
    if (isWord(tok[first], "SELECT")) {
        trueFirst(e);
        return e.text();
    }
    if (dialect == Dialect::Sqlite) {
        if (isWord(tok[first], "DELETE")) {
            plainDelete(e);
            return e.text();
        }
        if (isWord(tok[first], "UPDATE"))
            return joinedUpdate(e);
    }
    return e.text();
}

Sources sources(const QString &sql)
{
    static const QSet<QString> keywords = {
        QStringLiteral("WHERE"), QStringLiteral("INNER"), QStringLiteral("LEFT"),  QStringLiteral("RIGHT"),
        QStringLiteral("OUTER"), QStringLiteral("FULL"),  QStringLiteral("CROSS"), QStringLiteral("JOIN"),
        QStringLiteral("ON"),    QStringLiteral("ORDER"), QStringLiteral("GROUP"), QStringLiteral("HAVING"),
        QStringLiteral("UNION"), QStringLiteral("SET"),   QStringLiteral("LIMIT"), QStringLiteral("AS")};
    Sources out;
    const QVector<Token> tok = tokenize(sql);
    auto unbracket = [](const Token &t) {
        return t.kind == Token::Bracket ? t.text.mid(1, t.text.size() - 2) : t.text;
    };
    for (int i = 0; i < tok.size(); ++i) {
        const bool from = isWord(tok[i], "FROM");
        const bool joinWord = isWord(tok[i], "JOIN");
        if (!from && !joinWord)
            continue;
        if (joinWord)
            out.hasJoin = true;
        int k = i;
        for (;;) {
            k = nextSig(tok, k + 1);
            while (k >= 0 && tok[k].kind == Token::LParen)
                k = nextSig(tok, k + 1);
            if (k < 0 || (tok[k].kind != Token::Word && tok[k].kind != Token::Bracket))
                break;
            if (keywords.contains(tok[k].text.toUpper()))
                break;
            const QString name = unbracket(tok[k]);
            out.tables.append(name);
            out.alias.insert(name.toUpper(), name);
            int a = nextSig(tok, k + 1);
            if (a >= 0 && isWord(tok[a], "AS"))
                a = nextSig(tok, a + 1);
            if (a >= 0 && (tok[a].kind == Token::Word || tok[a].kind == Token::Bracket) &&
                !keywords.contains(tok[a].text.toUpper())) {
                out.alias.insert(unbracket(tok[a]).toUpper(), name);
                k = a;
            }
            const int c = nextSig(tok, k + 1);
            if (from && c >= 0 && tok[c].kind == Token::Comma) {
                k = c;
                continue;
            }
            break;
        }
    }
    return out;
}

} // namespace JetSql
