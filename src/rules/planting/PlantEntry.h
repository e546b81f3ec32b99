#pragma once
#include "base/Choice.h"
// The planting entry apart from its window: what leaving each box does to
// the record (the checks with their messages, the harvest month, the
// product's name), what the drop-downs offer and what choosing in them
// does, and the checks before a save. The screen shows the record again
// after each of these.

#include "rules/planting/PlantData.h"

#include <QDate>
#include <QString>
#include <QVector>

namespace Plant {

// The text boxes of the entry (txtDATA), by index.
namespace Box {
enum : int {
    Year = 0,      // 収穫予定月, its year
    Month = 1,     // and its month
    Variety = 2,   // 品種 (CROP_NM1)
    Item = 3,      // 品目 (CROP_NM2)
    PrdId = 4,     // 商品コード
    PrdNm = 5,     // 商品名
    Field = 6,     // 圃場/田畑
    Area = 7,      // 面積
    Name = 8,      // 名称
    StartDate = 9, // 作業開始日
    EndDate = 10,  // 作業終了日
    PlantDate = 11,
    ShipEst = 12,
    ShipFrom = 13, // 出荷予定日, from
    ShipTo = 14,   // and to
    Notes1 = 15,
    Notes2 = 16,
    Count = 17
};
}

// Boxes that take a number, and boxes that take a date.
bool isNumberBox(int box);
bool isDateBox(int box);

// The rule run when a box is left with the text typed into it: "" when it
// may be left (the record then holds what the box says), else the message
// to show with the exclamation mark while the box keeps the focus. The
// harvest boxes read the other box as the record shows it (the screen shows
// the record again after every leave); a month of 13 is January of the next
// year, an empty month or year box is today's.
QString leaveBox(PlantRow &r, int box, const QString &text, const QDate &today = QDate::currentDate());


// Groups of L_KBN that plantings use.
enum class Kbn { PlantType = 11, ShipEstUnit = 12, Cultivation = 13 };

// Farmers in use, by number.
QVector<Choice> farmers();
// The crop groups (L_CROP_KBN), by group.
QVector<Choice> cropGroups();
// The crops (L_CROP.CROP_NM1, each its own key), by name: all of them, or
// those whose group begins with group ("" for all).
QVector<Choice> crops();
QVector<Choice> cropsOfGroup(const QString &group);
// The entries of a group of L_KBN, by id.
QVector<Choice> kinds(Kbn kbn);
// The group of a crop; Null when the crop is none of L_CROP.
Value cropGroup(const QString &crop);

// The drop-downs of the entry (cmbDATA) that set a column by their key.
namespace Combo {
enum : int { Farmer = 0, CropGroup = 1, Crop = 2, PlantType = 3, Cultivation = 4, ShipEstUnit = 5, Count = 6 };
}
// The key chosen in the farmer, kind or unit drop-down (Null for none).
void chooseKey(PlantRow &r, int combo, const Value &key);
// The crop chosen ("" for none). Another crop than the record's also gives
// the variety (its own name) and the item (L_CROP.CROP_NM2), as if typed
// into their boxes. True when the record changed and is to be shown again.
bool chooseCrop(PlantRow &r, const QString &crop);

// 完了: the work ends today. Nothing is saved until the record is.
void finish(PlantRow &r, const QDateTime &today);

// The record opened: a copy of the list's row when row is one of it, else
// empty; a new record (also a copy) belongs to farmer and starts without
// dates.
PlantRow openRecord(Mode mode, int row, const Value &farmer);

// The checks before a save, on the record and the texts of the name and
// year boxes. Adding first gives the record the farmer's next number.
struct Refusal {
    QString message; // "" when it may be saved
    int box = -1;    // the box to put the focus in, -1 for none
};
Refusal check(PlantRow &r, Mode mode, const QString &nameText, const QString &yearText);

} // namespace Plant
