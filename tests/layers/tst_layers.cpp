// The shape of the house, read from the sources themselves:
// - each layer includes only what lies below it (base; store; rules; ui,
//   which sees base only; screens; the programs);
// - no screen holds statement text: screens call the rules;
// - no statement text is put together with a value by hand: values go in
//   through the statement builder (Stmt), so that a number is a number and
//   a text is quoted, always.

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QtTest/QTest>

namespace {

QString srcDir() { return QStringLiteral(TILLORA_SOURCE_DIR) + QStringLiteral("/src"); }

struct Source {
    QString path; // relative to src/
    QString text; // comments blanked out
};

// The text with comments replaced by spaces (string literals kept).
QString withoutComments(const QString &s)
{
    QString out = s;
    enum { Code, Line, Block, Str, Chr } st = Code;
    for (int i = 0; i < s.size(); ++i) {
        const QChar c = s[i], n = i + 1 < s.size() ? s[i + 1] : QChar();
        switch (st) {
        case Code:
            if (c == QLatin1Char('/') && n == QLatin1Char('/')) st = Line, out[i] = QLatin1Char(' ');
            else if (c == QLatin1Char('/') && n == QLatin1Char('*')) st = Block, out[i] = QLatin1Char(' ');
            else if (c == QLatin1Char('"')) st = Str;
            else if (c == QLatin1Char('\'')) st = Chr;
            break;
        case Line:
            if (c == QLatin1Char('\n')) st = Code;
            else out[i] = QLatin1Char(' ');
            break;
        case Block:
            if (c == QLatin1Char('*') && n == QLatin1Char('/')) { out[i] = out[i + 1] = QLatin1Char(' '); ++i; st = Code; }
            else if (c != QLatin1Char('\n')) out[i] = QLatin1Char(' ');
            break;
        case Str:
            if (c == QLatin1Char('\\')) ++i;
            else if (c == QLatin1Char('"')) st = Code;
            break;
        case Chr:
            if (c == QLatin1Char('\\')) ++i;
            else if (c == QLatin1Char('\'')) st = Code;
            break;
        }
    }
    return out;
}

QVector<Source> sources()
{
    QVector<Source> out;
    QDirIterator it(srcDir(), {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString p = it.next();
        QFile f(p);
        if (f.open(QIODevice::ReadOnly))
            out.append({QDir(srcDir()).relativeFilePath(p), withoutComments(QString::fromUtf8(f.readAll()))});
    }
    return out;
}

QString layerOf(const QString &path) { return path.section(QLatin1Char('/'), 0, 0); }

// A string literal, with where its expression starts and ends in the text
// (QStringLiteral("...") and the like count as the literal).
struct Literal {
    QString text;
    int begin, end; // the expression: [begin, end)
    int line;
};

QVector<Literal> literals(const QString &s)
{
    static const QRegularExpression wrapper(QStringLiteral("(QStringLiteral|QLatin1String|QString::fromUtf8|QString::fromLatin1)\\s*\\(\\s*$"));
    QVector<Literal> out;
    for (int i = 0; i < s.size(); ++i) {
        if (s[i] == QLatin1Char('\'')) { // a character literal
            i += s.mid(i + 1, 2).startsWith(QLatin1Char('\\')) ? 3 : 2;
            continue;
        }
        if (s[i] != QLatin1Char('"'))
            continue;
        Literal l;
        l.begin = i;
        QString text;
        int j = i;
        // adjacent literals "..." "..." are one
        for (;;) {
            int k = j + 1;
            for (; k < s.size() && s[k] != QLatin1Char('"'); ++k) {
                if (s[k] == QLatin1Char('\\'))
                    ++k;
                else
                    text += s[k];
            }
            j = k + 1;
            int m = j;
            while (m < s.size() && s[m].isSpace())
                ++m;
            if (m < s.size() && s[m] == QLatin1Char('"')) {
                j = m;
                continue;
            }
            break;
        }
        l.end = j;
        l.text = text;
        const QRegularExpressionMatch w = wrapper.match(s.left(l.begin));
        if (w.hasMatch()) {
            l.begin = w.capturedStart();
            int k = l.end;
            while (k < s.size() && s[k].isSpace())
                ++k;
            if (k < s.size() && s[k] == QLatin1Char(')'))
                l.end = k + 1;
        }
        l.line = s.left(l.begin).count(QLatin1Char('\n')) + 1;
        out.append(l);
        i = j - 1;
    }
    return out;
}

// Statement text: a keyword of a statement, or a condition waiting for its value.
bool isStatement(const QString &literal)
{
    static const QRegularExpression keyword(
        QStringLiteral("\\b(SELECT|INSERT INTO|UPDATE|DELETE|WHERE|ORDER BY|GROUP BY|VALUES|SET)\\b"));
    static const QRegularExpression comparison(QStringLiteral("[A-Z_][A-Z0-9_.]*\\s*(=|<>|<=|>=|<|>|\\bIN\\s*\\(|\\bLIKE)\\s*['#]?\\s*$"));
    return keyword.match(literal).hasMatch() || comparison.match(literal).hasMatch();
}

// Files of the store that build statements from the table definitions and
// the criteria they are handed, and the builder itself.
bool buildsStatements(const QString &path)
{
    static const QStringList own{"store/Engine.cpp", "store/JetSql.cpp", "store/Setup.cpp", "store/Schema.cpp",
                                 "store/Recordset.cpp", "store/Database.cpp", "store/Stmt.cpp", "store/Stmt.h"};
    return own.contains(path);
}

} // namespace

class TestLayers : public QObject {
    Q_OBJECT
private slots:
    void layersPointDown()
    {
        // what each layer may include (its own files too)
        const QHash<QString, QStringList> allowed{
            {"base", {"base"}},
            {"store", {"base", "store"}},
            {"rules", {"base", "store", "rules"}},
            {"ui", {"base", "ui"}},
            {"screens", {"base", "store", "rules", "ui", "screens"}},
            {"app", {"base", "store", "rules", "ui", "screens", "app"}},
        };
        static const QRegularExpression include(QStringLiteral("#include \"([a-z]+)/[^\"]+\""));
        QStringList wrong;
        for (const Source &s : sources()) {
            const QString layer = layerOf(s.path);
            QVERIFY2(allowed.contains(layer), qPrintable(s.path + QStringLiteral(": a folder of no layer")));
            auto it = include.globalMatch(s.text);
            while (it.hasNext()) {
                const QRegularExpressionMatch m = it.next();
                if (!allowed[layer].contains(m.captured(1)))
                    wrong << s.path + QStringLiteral(" includes ") + m.captured(0).mid(9);
            }
        }
        for (const QString &w : wrong)
            qWarning("%s", qPrintable(w));
        QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("%1 includes against the layers").arg(wrong.size())));
    }

    void screensHoldNoStatements()
    {
        QStringList found;
        for (const Source &s : sources()) {
            if (layerOf(s.path) != QLatin1String("screens") && layerOf(s.path) != QLatin1String("ui"))
                continue;
            for (const Literal &l : literals(s.text))
                if (isStatement(l.text))
                    found << QStringLiteral("%1:%2: %3").arg(s.path).arg(l.line).arg(l.text.left(80));
        }
        for (const QString &f : found)
            qWarning("%s", qPrintable(f));
        QVERIFY2(found.isEmpty(), qPrintable(QStringLiteral("%1 statements in screens").arg(found.size())));
    }

    void valuesEnterStatementsThroughTheBuilder()
    {
        static const QRegularExpression joinedAfter(QStringLiteral("^\\s*(\\+|\\.arg\\s*\\()"));
        static const QRegularExpression joinedBefore(QStringLiteral("(\\+|\\+=|<<)\\s*$"));
        QStringList found;
        for (const Source &s : sources()) {
            if (buildsStatements(s.path))
                continue;
            for (const Literal &l : literals(s.text)) {
                if (!isStatement(l.text))
                    continue;
                if (joinedAfter.match(s.text.mid(l.end, 40)).hasMatch() ||
                    joinedBefore.match(s.text.mid(std::max(0, l.begin - 40), std::min(40, l.begin))).hasMatch())
                    found << QStringLiteral("%1:%2: %3").arg(s.path).arg(l.line).arg(l.text.left(80));
            }
        }
        for (const QString &f : found)
            qWarning("%s", qPrintable(f));
        QVERIFY2(found.isEmpty(), qPrintable(QStringLiteral("%1 values joined to statement text").arg(found.size())));
    }

    // The check itself: it sees a value joined to statement text, and lets
    // a whole statement with its ? pass.
    void theCheckSeesJoinedValues()
    {
        const QString joined = withoutComments(QStringLiteral(
            "x = QStringLiteral(\"SELECT A FROM T WHERE ID=\") + id;\n"
            "y = \"FMR_ID=\" + Sql::number(f);\n"
            "z = Stmt(\"SELECT A FROM T WHERE ID=? ORDER BY A\").num(id); // SELECT \" + x\n"));
        const QVector<Literal> ls = literals(joined);
        QCOMPARE(ls.size(), 3);
        QVERIFY(isStatement(ls[0].text) && isStatement(ls[1].text) && isStatement(ls[2].text));
        QCOMPARE(joined.mid(ls[0].end, 3), QStringLiteral(" + "));
        QVERIFY(!joined.mid(ls[2].end, 10).contains(QLatin1Char('+')));
        QVERIFY(!isStatement(QStringLiteral("生産者を指定してください。")));
        QVERIFY(!isStatement(QStringLiteral("SHIP_ID")));
    }
};

QTEST_GUILESS_MAIN(TestLayers)
#include "tst_layers.moc"
