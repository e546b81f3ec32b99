#pragma once
// A result of a statement with a current row. Three kinds, as the program
// asks for them: forward-only and static readers, and the dynamic writer with
// AddNew, field assignment, Update and Delete. Rows are read when the set is
// opened; a writer writes by the key of its table (from the table
// definitions) and converts each assigned value by the column's type, failing
// as the original engine did: text that is no number into a number column is
// a type mismatch, an empty text too.

#include "store/Engine.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>

enum class CursorKind { ForwardOnly, Static, Dynamic };

class Recordset {
public:
    Recordset(Engine *engine, CursorKind kind, ResultSet data, QString sql);

    CursorKind kind() const { return mKind; }
    bool eof() const { return mPos >= mRows.size(); }
    void MoveFirst();
    void MoveNext();
    int RecordCount() const { return mRows.size(); }

    int FieldCount() const { return mCols.size(); }
    // Raises 3265 for an unknown name or index, 3021 with no current row.
    Value Fields(const QString &name) const;
    Value Fields(int index) const;
    Value operator[](const QString &name) const { return Fields(name); }

    // Dynamic sets only.
    void SetField(const QString &name, const Value &v);
    void SetField(int index, const Value &v);
    void AddNew();
    void Update();
    void CancelUpdate();
    void Delete();

    // Moves from the current row forward to the first row that meets a
    // criterion "COLUMN op value" (value: 'text', a number or #date#; op one of
    // = <> < > <= >= LIKE). Past the last row when none does.
    void Find(const QString &criteria);

    // Rows added from BeginBatch on are written together, several rows a
    // statement, when the batch ends: at EndBatch, Close, or any other write
    // of the set. Each row's values are still converted (and refused) at its
    // Update; what only the engine checks (a key taken twice) is then raised
    // where the batch is written. A set dropped before its batch ends writes
    // nothing of it.
    void BeginBatch();
    void EndBatch();

    void Close();

private:
    void flushBatch();
    int fieldIndex(const QString &name) const;
    int checkedIndex(const QString &name) const;
    void checkCurrent() const;
    void checkWritable() const;
    const ColumnDef *columnDef(int index) const;
    QString whereForRow(int row, QVector<QVariant> &params) const;

    Engine *mEngine;
    CursorKind mKind;
    QString mSql;
    QVector<ResultColumn> mCols;
    QVector<QVector<Value>> mRows;
    QVector<bool> mDeleted;      // rows removed by Delete stay in place until left
    int mPos = 0;

    // Writer state.
    const TableDef *mTable = nullptr;
    bool mEditing = false;
    bool mAdding = false;
    QVector<Value> mEdit;        // the row being changed or added
    QVector<bool> mTouched;
    int mAddReturn = 0;          // row to go back to when an AddNew is cancelled
    bool mClosed = false;

    // Batch of added rows not written yet.
    bool mBatching = false;
    QStringList mBatchNames;
    QVector<QVariant> mBatchParams;
    int mBatchRows = 0;
};

using RecordsetPtr = std::unique_ptr<Recordset>;
