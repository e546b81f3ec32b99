#include "rules/common/SaveKinds.h"

#include "base/AppError.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "rules/books/Ledger.h"
#include "rules/common/Ids.h"
#include "rules/diary/DiaryDay.h"
#include "rules/diary/DiaryFixture.h"
#include "rules/pesticide/ChemiData.h"
#include "rules/planting/PlantEntry.h"
#include "rules/shipping/ShipData.h"
#include "store/Database.h"
#include "store/Stmt.h"

#include <memory>

namespace SaveKinds {

namespace {

QDateTime dayOf(int n) { return DateUtil::make(2024, 5, 6 + n % 3); }

// A check before a save that refuses stops the save, as the screen does.
void passes(const QString &refusal)
{
    if (!refusal.isEmpty())
        throw AppError(VbErr::InvalidCall, refusal);
}

// The last row of farmer 1 in a table, read as its list reads it; false
// when there is none.
template <class Row> bool lastOf(Row &row, const char *table, const char *key)
{
    RecordsetPtr rs = gDB->GetFwdOnlyRst(
        Stmt("SELECT * FROM ? WHERE FMR_ID=1 ORDER BY ? DESC").name(QString::fromLatin1(table)).name(QString::fromLatin1(key)));
    if (rs->eof())
        return false;
    Row::map().read(*rs, row);
    return true;
}

std::function<void()> day(int n)
{
    auto d = std::make_shared<DiaryDay>();
    gWORK_DATE = Value(dayOf(n));
    d->load(Value(1), dayOf(n));
    d->day.ONE_MSG = Value(QStringLiteral("メモ%1").arg(n));
    // the day's slips as its slip screen leaves them: a free one's amount
    auto slips = std::make_shared<QVector<LedgeRow>>(gLEDGE_ROWS);
    for (LedgeRow &s : *slips)
        if (hasValue(s[LedgeCol::LEDGE_ID]) && ChkLedgeUse(s[LedgeCol::FMR_ID], s[LedgeCol::LEDGE_ID]) == 0) {
            s[LedgeCol::AMT] = Value(Currency::fromInt(1000 + n));
            break;
        }
    int line = -1;
    for (int i = 0; i < d->dtl.size() && line < 0; ++i)
        if (d->dtl[i].spraying())
            line = i;
    if (line < 0) {
        line = d->addDetail(Value(1));
        const Value no = d->dtl[line].DTL_NO;
        d->dtl[line] = DiaryFixture::spraying(1, 1 + n % 2, Value(0), 1);
        d->dtl[line].DTL_NO = no;
        d->dtl[line].WORK_DATE = Value(dayOf(n));
    }
    // 0 takes the line's cost slip away
    d->dtl[line].QTY = Value(double(n % 4) * 10);
    return [d, slips] {
        gLEDGE_ROWS = *slips;
        d->save();
    };
}

std::function<void()> shipment(int n)
{
    auto r = std::make_shared<ShipRow>();
    if (n % 2 == 1 && lastOf(*r, "D_SHIP", "SHIP_ID")) {
        // the shop's report: returns, and from the second report a discount
        Ship::leaveBox(*r, Ship::RtnQty, QString::number(n % 3));
        if (n > 1)
            Ship::leaveBox(*r, Ship::DscAmt, QString::number(n));
        return [r] {
            passes(Ship::check(*r, Mode::Change));
            Ship::post(*r, Mode::Change);
        };
    }
    *r = Ship::newShipment();
    r->SHIP_DATE = Value(DateUtil::dayText(Value(dayOf(n))));
    r->PLANT_ID = Value(1 + n % 2);
    r->PRD_ID = Value(1);
    r->PRD_NM = Value("トマト");
    Ship::leaveBox(*r, Ship::ShopPrc, QStringLiteral("105"));
    Ship::leaveBox(*r, Ship::ShipQty, QString::number(10 + n));
    return [r] {
        passes(Ship::check(*r, Mode::Add));
        Ship::post(*r, Mode::Add);
    };
}

std::function<void()> slip(int n)
{
    // the farmer's free slips, as the slip list shows them
    QVector<LedgeRow> free;
    RecordsetPtr rs = gDB->GetFwdOnlyRst(QStringLiteral("SELECT D_LEDGE.* FROM D_LEDGE WHERE FMR_ID=1 ORDER BY LEDGE_ID"));
    for (; !rs->eof(); rs->MoveNext())
        if (ChkLedgeUse(Value(1), rs->Fields(QStringLiteral("LEDGE_ID"))) == 0)
            free << Ledger::rowOf(*rs);
    rs->Close();
    const Mode mode = free.isEmpty() || n % 3 == 0 ? Mode::Add : n % 3 == 1 ? Mode::Change : Mode::Delete;
    auto r = std::make_shared<LedgeRow>(
        Ledger::startSlip(mode, mode == Mode::Change ? free.first() : mode == Mode::Delete ? free.last() : blankLedgeRow(),
                          Value(1)));
    if (mode != Mode::Delete) {
        using namespace LedgeCol;
        (*r)[LEDGE_DATE] = Value(dayOf(n / 3 + 2));
        (*r)[D_ACC_ID] = Value(Acc::Cash);
        (*r)[C_ACC_ID] = Value(Acc::Sales);
        (*r)[D_OPT_KBN] = (*r)[C_OPT_KBN] = Value(OptKbn::None);
        (*r)[CTR_NM] = Value(QStringLiteral("直売所%1").arg(n));
        (*r)[AMT] = Value(Currency::fromInt(500 + n));
    }
    return [r, mode] { Ledger::saveSlip(mode, *r, Value(1), GetCompName()); };
}

std::function<void()> lot(int n)
{
    auto r = std::make_shared<ChemiRow>();
    if (n % 2 == 1 && lastOf(*r, "D_CHEMI", "CHEMI_ID")) {
        Chemi::leaveBox(*r, Chemi::AmountBox, QString::number(2000 + n));
        if (!hasValue(r->PUR_DATE))
            r->PUR_DATE = Value(dayOf(n));
        if (!hasValue(r->ACC_ID))
            r->ACC_ID = Value(Acc::Payable); // a purchase slip names what pays it
        return [r] {
            passes(Chemi::check(*r, Mode::Change).message);
            Chemi::saveLot(Mode::Change, *r, GetCompName());
        };
    }
    *r = Chemi::openRecord(Mode::Add, ChemiRow(), Value(1));
    Chemi::leaveBox(*r, Chemi::NameBox, QStringLiteral("試験剤%1").arg(n));
    Chemi::leaveBox(*r, Chemi::DateBox, DateUtil::dayText(Value(dayOf(n))));
    Chemi::leaveBox(*r, Chemi::QtyBox, QStringLiteral("2"));
    Chemi::leaveList(*r, Chemi::UnitList, Value(2));
    Chemi::leaveBox(*r, Chemi::AmountBox, QString::number(1000 + n));
    r->ACC_ID = Value(Acc::Cash);
    return [r] {
        passes(Chemi::check(*r, Mode::Add).message);
        Chemi::saveLot(Mode::Add, *r, GetCompName());
    };
}

std::function<void()> planting(int n)
{
    auto r = std::make_shared<PlantRow>();
    if (n % 2 == 1 && lastOf(*r, "D_PLANT", "PLANT_ID")) {
        passes(Plant::leaveBox(*r, Plant::Box::Notes1, QStringLiteral("追肥%1回目").arg(n)));
        return [r] {
            passes(Plant::check(*r, Mode::Change, textOf(r->PLANT_NM), textOf(r->YYYY)).message);
            Plant::saveRecord(Mode::Change, *r, GetCompName());
        };
    }
    *r = Plant::openRecord(Mode::Add, -1, Value(1));
    r->PLANT_NM = Value(QStringLiteral("試験作付%1").arg(n));
    r->YYYY = Value(2024);
    r->START_DATE = Value(dayOf(n));
    return [r] {
        passes(Plant::check(*r, Mode::Add, textOf(r->PLANT_NM), textOf(r->YYYY)).message);
        Plant::saveRecord(Mode::Add, *r, GetCompName());
    };
}

} // namespace

const char *name(int kind)
{
    static const char *const names[] = {"day", "shipment", "slip", "lot", "planting"};
    return names[kind];
}

void choose()
{
    DiaryFixture::chooseTheDay();
    gSHOP_ID = Value(1);
}

void seed() { DiaryFixture::seedDay(); }

std::function<void()> open(int kind, int n)
{
    switch (kind) {
    case Day: return day(n);
    case Shipment: return shipment(n);
    case Slip: return slip(n);
    case Lot: return lot(n);
    default: return planting(n);
    }
}

} // namespace SaveKinds
