#pragma once
// Names by id. A failure is raised for the caller's trap.

#include "base/Value.h"

#include <QHash>
#include <QString>

QString GetKbn15Nm(const Value &id);
QString GetAccNm(const Value &id);
QString GetFmrNm(const Value &id);
QString GetShopNm(const Value &id);
QString GetChemiUnitNm(const Value &id);

// A kind of names read whole at once, for a list that names many rows: one
// statement instead of one a row. Each name is what its look-up above gives.
class NameTable {
public:
    NameTable() = default;       // no names: "" for every id
    static NameTable kinds15();  // as GetKbn15Nm
    static NameTable accounts(); // as GetAccNm
    static NameTable units();    // as GetChemiUnitNm
    static NameTable shops();    // as GetShopNm
    QString operator()(const Value &id) const;

private:
    explicit NameTable(const struct NameSource &src);
    QHash<qint32, QString> mNames;
};
