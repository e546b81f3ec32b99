#pragma once
// Every table of the four databases, defined once: columns in the order the
// program writes them, their types, the key and the indexes. Both engines'
// DDL is made from these definitions, and the record layer reads column types
// from them to give each cell its typed value.

#include <QString>
#include <QStringList>
#include <QVector>

enum class ColType { Bool, Byte, Int16, Int32, Currency, Single, Double, Date, Text, Memo };

// Which database file or server holds a table.
enum class DbKind { Data, Master, Ini, Work };

struct ColumnDef {
    QString name;
    ColType type;
    int size = 0; // characters, for Text
    QString defaultSql; // the column's default, as SQL text; empty for none
};

struct TableDef {
    QString name;
    QVector<DbKind> homes;          // databases that hold the table
    QVector<ColumnDef> columns;
    QStringList key;                // primary key columns; empty for none
    QVector<QStringList> indexes;   // further indexes

    const ColumnDef *column(const QString &name) const;
    int columnIndex(const QString &name) const;
    bool isIn(DbKind kind) const { return homes.contains(kind); }
};

namespace Schema {
const QVector<TableDef> &tables();
const TableDef *table(const QString &name);       // case-insensitive
const ColumnDef *column(const QString &table, const QString &column);
QVector<const TableDef *> tablesOf(DbKind kind);

// CREATE TABLE / CREATE INDEX statements of one table for an engine.
QStringList sqliteDdl(const TableDef &t);
QStringList mysqlDdl(const TableDef &t);
}

QString dbKindName(DbKind kind); // "data", "master", "ini", "work"
bool dbKindFromName(const QString &name, DbKind &out);
