#pragma once
// The one builder of test records: a row of a table with its key filled in
// and the columns a test cares about set, the rest left empty, written
// through the store as the program writes (typed by the column):
//
//   Build::planting(2, "秋なす").set("YYYY", 2024).add();
//   Build::shipment(5, QDate(2024, 5, 1)).set("PLANT_ID", 2).set("SHIP_QTY", 10).add();
//
// Rows belong to farmer 1 unless set otherwise.
#include "base/Value.h"

#include <QDate>
#include <QString>
#include <QVector>
#include <utility>

class DbObject;

namespace Build {

class Row {
public:
    Row(DbObject *db, const char *table) : mDb(db), mTable(QString::fromLatin1(table)) {}
    Row &set(const char *column, const Value &v);
    Row &set(const char *column, const QDate &day) { return set(column, Value(QDateTime(day, QTime()))); }
    Row &set(const char *column, const char *text) { return set(column, Value(QString::fromUtf8(text))); }
    Row &set(const char *column, int n) { return set(column, Value(n)); }
    Row &set(const char *column, double d) { return set(column, Value(d)); }
    // Writes the row.
    void add();

private:
    DbObject *mDb;
    QString mTable;
    QVector<std::pair<QString, Value>> mColumns;
};

Row farmer(int id, const QString &name);                       // M_FMR, in use
Row planting(int id, const QString &name = QString());         // D_PLANT
Row lot(int id, const QString &name = QString());              // D_CHEMI
Row shipment(int id, const QDate &day);                        // D_SHIP, shop 1
Row slip(int id, const QDate &day, int debit, int credit, double amount); // D_LEDGE
Row diaryDay(const QDate &day);                                // D_DIARY
Row diaryLine(const QDate &day, int no, int kind);             // D_DIARY_DTL (WORK_KBN kind)

} // namespace Build
