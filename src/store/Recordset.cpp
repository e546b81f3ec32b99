#include "store/Recordset.h"

#include "store/JetSql.h"
#include "base/AppError.h"

#include <QRegularExpression>

#include <utility>

namespace {

constexpr long kRowNotFound = -2147217864;

[[noreturn]] void notUpdatable()
{
    throw AppError(VbErr::NotUpdatable, QStringLiteral("このレコードセットは更新できません。"));
}

// A literal of a Find criterion.
Value findLiteral(const QString &text)
{
    const QString t = text.trimmed();
    if (t.size() >= 2 && (t.startsWith(QLatin1Char('\'')) || t.startsWith(QLatin1Char('"'))) &&
        t.endsWith(t.at(0))) {
        QString inner = t.mid(1, t.size() - 2);
        inner.replace(QString(2, t.at(0)), QString(t.at(0)));
        return Value(inner);
    }
    if (t.size() >= 2 && t.startsWith(QLatin1Char('#')) && t.endsWith(QLatin1Char('#'))) {
        const QString iso = JetSql::dateLiteralText(t.mid(1, t.size() - 2));
        if (iso.isEmpty())
            raiseError(VbErr::TypeMismatch);
        QDateTime dt;
        DateUtil::parseSql(iso, dt);
        return Value(dt);
    }
    double d;
    if (parseNumber(t, d))
        return Value(d);
    raiseError(VbErr::TypeMismatch);
}

// -1, 0, 1 by the field's type; false when the two can't be compared.
bool compareValues(const Value &field, const Value &lit, int &cmp)
{
    if (!hasValue(field))
        return false;
    if (field.isText()) {
        cmp = field.toText().compare(lit.toText(), Qt::CaseInsensitive);
        return true;
    }
    if (field.isDateType()) {
        QDateTime a = field.toDate(), b;
        if (lit.isDateType())
            b = lit.toDate();
        else if (!IsDate(lit))
            return false;
        else
            b = lit.toDate();
        cmp = a < b ? -1 : (a > b ? 1 : 0);
        return true;
    }
    if (!IsNumeric(lit))
        return false;
    const double a = field.toDouble(), b = lit.toDouble();
    cmp = a < b ? -1 : (a > b ? 1 : 0);
    return true;
}

bool likeMatch(const QString &text, const QString &pattern)
{
    QString re;
    for (QChar c : pattern) {
        if (c == QLatin1Char('*') || c == QLatin1Char('%'))
            re += QStringLiteral(".*");
        else if (c == QLatin1Char('?') || c == QLatin1Char('_'))
            re += QLatin1Char('.');
        else
            re += QRegularExpression::escape(QString(c));
    }
    return QRegularExpression(QLatin1Char('^') + re + QLatin1Char('$'),
                              QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption)
        .match(text)
        .hasMatch();
}

} // namespace

Recordset::Recordset(Engine *engine, CursorKind kind, ResultSet data, QString sql)
    : mEngine(engine), mKind(kind), mSql(std::move(sql)), mCols(std::move(data.columns)), mRows(std::move(data.rows))
{
    if (mKind == CursorKind::Dynamic) {
        const JetSql::Sources src = JetSql::sources(mSql);
        if (src.tables.size() == 1 && !src.hasJoin)
            mTable = Schema::table(src.tables.first());
    }
    mDeleted.resize(mRows.size());
}

void Recordset::MoveFirst() { mPos = 0; }
void Recordset::MoveNext()
{
    if (eof())
        raiseError(VbErr::NoCurrentRecord);
    ++mPos;
}


int Recordset::fieldIndex(const QString &name) const
{
    // Most names are asked for as the columns spell them.
    for (int i = 0; i < mCols.size(); ++i)
        if (mCols[i].name == name)
            return i;
    for (int i = 0; i < mCols.size(); ++i)
        if (mCols[i].name.compare(name, Qt::CaseInsensitive) == 0)
            return i;
    // "T.COL" names the column COL
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot > 0)
        return fieldIndex(name.mid(dot + 1));
    return -1;
}

int Recordset::checkedIndex(const QString &name) const
{
    const int i = fieldIndex(name);
    if (i < 0)
        throw AppError(VbErr::ItemNotFound, standardErrorText(VbErr::ItemNotFound) + QStringLiteral(" (%1)").arg(name));
    return i;
}

void Recordset::checkCurrent() const
{
    if (mClosed)
        raiseError(VbErr::NotConnected);
    if (mEditing)
        return;
    if (mPos < 0 || mPos >= mRows.size() || mDeleted[mPos])
        raiseError(VbErr::NoCurrentRecord);
}

void Recordset::checkWritable() const
{
    if (mClosed)
        raiseError(VbErr::NotConnected);
    if (mKind != CursorKind::Dynamic || !mTable)
        notUpdatable();
}

const ColumnDef *Recordset::columnDef(int index) const
{
    if (!mTable)
        return nullptr;
    const ResultColumn &c = mCols[index];
    if (!c.table.isEmpty() && c.table.compare(mTable->name, Qt::CaseInsensitive) != 0)
        return nullptr;
    return mTable->column(c.name);
}

Value Recordset::Fields(const QString &name) const { return Fields(checkedIndex(name)); }

Value Recordset::Fields(int index) const
{
    if (index < 0 || index >= mCols.size())
        raiseError(VbErr::ItemNotFound);
    checkCurrent();
    return mEditing ? mEdit[index] : mRows[mPos][index];
}

void Recordset::SetField(const QString &name, const Value &v) { SetField(checkedIndex(name), v); }

void Recordset::SetField(int index, const Value &v)
{
    checkWritable();
    if (index < 0 || index >= mCols.size())
        raiseError(VbErr::ItemNotFound);
    const ColumnDef *col = columnDef(index);
    if (!col)
        notUpdatable();
    if (!mEditing) {
        checkCurrent();
        mEditing = true;
        mAdding = false;
        mEdit = mRows[mPos];
        mTouched = QVector<bool>(mCols.size(), false);
    }
    // Convert as the column stores it; the conversion raises the type errors.
    mEdit[index] = mEngine->fromStorage(mEngine->toStorage(v, *col), col->type);
    mTouched[index] = true;
}

void Recordset::AddNew()
{
    checkWritable();
    if (mEditing)
        Update();
    mEditing = true;
    mAdding = true;
    mEdit = QVector<Value>(mCols.size(), Value::null());
    for (int i = 0; i < mCols.size(); ++i)
        if (const ColumnDef *col = columnDef(i); col && !col->defaultSql.isEmpty())
            mEdit[i] = mEngine->fromStorage(QVariant(col->defaultSql.toLongLong()), col->type);
    mTouched = QVector<bool>(mCols.size(), false);
    mAddReturn = mPos;
}

void Recordset::CancelUpdate()
{
    if (mAdding)
        mPos = mAddReturn;
    mEditing = mAdding = false;
    mEdit.clear();
    mTouched.clear();
}

namespace {
// Rows a statement of a batch: well under the engines' limits of markers.
constexpr int kBatchRows = 50;
} // namespace

void Recordset::Update()
{
    checkWritable();
    if (!mEditing)
        return;
    QStringList names;
    QVector<QVariant> params;
    for (int i = 0; i < mCols.size(); ++i) {
        if (!mTouched[i])
            continue;
        const ColumnDef *col = columnDef(i);
        names << col->name;
        params << mEngine->toStorage(mEdit[i], *col);
    }
    if (mAdding) {
        if (names.isEmpty()) {
            for (int i = 0; i < mCols.size(); ++i)
                if (const ColumnDef *col = columnDef(i)) {
                    names << col->name;
                    params << QVariant();
                }
        }
        // Outside a batch the row is a batch of its own, written at once.
        if (names != mBatchNames)
            flushBatch();
        mBatchNames = names;
        mBatchParams += params;
        if (++mBatchRows == kBatchRows || !mBatching)
            flushBatch();
        mRows.append(mEdit);
        mDeleted.append(false);
        mPos = mRows.size() - 1;
    } else if (!names.isEmpty()) {
        flushBatch();
        QStringList sets;
        for (const QString &n : names)
            sets << n + QStringLiteral("=?");
        QString where = whereForRow(mPos, params);
        const qint64 n = mEngine->executeNative(
            QStringLiteral("UPDATE %1 SET %2 WHERE %3").arg(mTable->name, sets.join(QLatin1Char(',')), where), params);
        if (n == 0)
            throw AppError(kRowNotFound, QStringLiteral("更新する行が見つかりません。読み込んだ後に変更または削除された可能性があります。"));
        mRows[mPos] = mEdit;
    }
    mEditing = mAdding = false;
    mEdit.clear();
    mTouched.clear();
}

QString Recordset::whereForRow(int row, QVector<QVariant> &params) const
{
    QStringList terms;
    auto addTerm = [&](const ColumnDef &col, const Value &v) {
        const QVariant s = mEngine->toStorage(v, col);
        if (s.isNull()) {
            terms << col.name + QStringLiteral(" IS NULL");
        } else {
            terms << col.name + QStringLiteral("=?");
            params << s;
        }
    };
    if (!mTable->key.isEmpty()) {
        for (const QString &k : mTable->key) {
            const int i = fieldIndex(k);
            if (i < 0)
                notUpdatable(); // the key is not among the columns read
            addTerm(*mTable->column(k), mRows[row][i]);
        }
    } else {
        for (int i = 0; i < mCols.size(); ++i)
            if (const ColumnDef *col = columnDef(i))
                addTerm(*col, mRows[row][i]);
    }
    return terms.join(QStringLiteral(" AND "));
}

void Recordset::Delete()
{
    checkWritable();
    if (mEditing)
        CancelUpdate();
    checkCurrent();
    flushBatch();
    QVector<QVariant> params;
    const QString where = whereForRow(mPos, params);
    QString sql = QStringLiteral("DELETE FROM %1 WHERE %2").arg(mTable->name, where);
    if (mTable->key.isEmpty() && mEngine->kind() == EngineKind::Mysql)
        sql += QStringLiteral(" LIMIT 1");
    mEngine->executeNative(sql, params);
    mDeleted[mPos] = true;
}

void Recordset::Find(const QString &criteria)
{
    if (mClosed)
        raiseError(VbErr::NotConnected);
    static const QRegularExpression re(
        QStringLiteral("^\\s*\\[?([A-Za-z_][\\w.]*)\\]?\\s*(<=|>=|<>|=|<|>|\\bLIKE\\b)\\s*(.+?)\\s*$"),
        QRegularExpression::CaseInsensitiveOption);
    const auto m = re.match(criteria);
    if (!m.hasMatch())
        raiseError(VbErr::InvalidCall, criteria);
    const int idx = checkedIndex(m.captured(1));
    const QString op = m.captured(2).toUpper();
    const Value lit = findLiteral(m.captured(3));
    if (mPos < 0)
        mPos = 0;
    for (; mPos < mRows.size(); ++mPos) {
        if (mDeleted[mPos])
            continue;
        const Value &f = mRows[mPos][idx];
        bool hit = false;
        if (op == QLatin1String("LIKE")) {
            hit = !f.isNull() && likeMatch(f.toText(), lit.toText());
        } else {
            int cmp;
            if (compareValues(f, lit, cmp))
                hit = (op == QLatin1String("=") && cmp == 0) || (op == QLatin1String("<>") && cmp != 0) ||
                      (op == QLatin1String("<") && cmp < 0) || (op == QLatin1String(">") && cmp > 0) ||
                      (op == QLatin1String("<=") && cmp <= 0) || (op == QLatin1String(">=") && cmp >= 0);
        }
        if (hit)
            return;
    }
}

void Recordset::BeginBatch()
{
    checkWritable();
    mBatching = true;
}

void Recordset::EndBatch()
{
    flushBatch();
    mBatching = false;
}

void Recordset::flushBatch()
{
    if (mBatchRows == 0)
        return;
    QStringList marks;
    for (int i = 0; i < mBatchNames.size(); ++i)
        marks << QStringLiteral("?");
    const QString group = QLatin1Char('(') + marks.join(QLatin1Char(',')) + QLatin1Char(')');
    QStringList groups;
    for (int r = 0; r < mBatchRows; ++r)
        groups << group;
    const QString sql = QStringLiteral("INSERT INTO %1 (%2) VALUES %3")
                            .arg(mTable->name, mBatchNames.join(QLatin1Char(',')), groups.join(QLatin1Char(',')));
    const QVector<QVariant> params = std::exchange(mBatchParams, {});
    mBatchRows = 0;
    mEngine->executeNative(sql, params);
}

void Recordset::Close()
{
    if (!mClosed)
        flushBatch();
    mBatching = false;
    mClosed = true;
    mRows.clear();
    mEditing = false;
}
