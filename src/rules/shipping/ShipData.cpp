#include "rules/shipping/ShipData.h"

#include "base/Globals.h"
#include "base/Helpers.h"
#include "base/Msg.h"
#include "rules/common/Ids.h"
#include "rules/common/Lists.h"
#include "store/Database.h"
#include "rules/books/Ledger.h"
#include "store/Lookup.h"
#include "store/Stmt.h"

QVector<ShipRow> gSHIP_ROWS;

const ColumnMap<ShipRow> &ShipRow::map()
{
    static const ColumnMap<ShipRow> m{
        {"FMR_ID", &ShipRow::FMR_ID},         {"SHIP_ID", &ShipRow::SHIP_ID},       {"SHIP_DATE", &ShipRow::SHIP_DATE},
        {"PLANT_ID", &ShipRow::PLANT_ID},     {"DTL_NO", &ShipRow::DTL_NO},         {"SHOP_ID", &ShipRow::SHOP_ID},
        {"PRD_ID", &ShipRow::PRD_ID},         {"PRD_NM", &ShipRow::PRD_NM},         {"LOCATE", &ShipRow::LOCATE},
        {"PLAS", &ShipRow::PLAS},             {"ACC_ID", &ShipRow::ACC_ID},         {"SHOP_PRC", &ShipRow::SHOP_PRC},
        {"SHIP_QTY", &ShipRow::SHIP_QTY},     {"RTN_QTY", &ShipRow::RTN_QTY},       {"SALES_QTY", &ShipRow::SALES_QTY},
        {"DSC_AMT", &ShipRow::DSC_AMT},       {"SALES_AMT", &ShipRow::SALES_AMT},   {"FEE_RT", &ShipRow::FEE_RT},
        {"FEE_AMT", &ShipRow::FEE_AMT},       {"NOTES", &ShipRow::NOTES},           {"PRINT_DATE", &ShipRow::PRINT_DATE},
        {"EXP_DATE", &ShipRow::EXP_DATE},     {"LEDGE_ID_S", &ShipRow::LEDGE_ID_S}, {"LEDGE_ID_F", &ShipRow::LEDGE_ID_F},
        {"IDATE", &ShipRow::IDATE},           {"UDATE", &ShipRow::UDATE},           {"LAST_TM", &ShipRow::LAST_TM},
        {"HOLD_TM", &ShipRow::HOLD_TM},
    };
    return m;
}

namespace {

// A field that takes part in the arithmetic: there, and a number.
bool num(const Value &v, double &out)
{
    if (!hasValue(v) || !IsNumeric(v))
        return false;
    out = v.toDouble();
    return true;
}
bool present(const Value &v)
{
    double d;
    return num(v, d);
}
double numOr0(const Value &v)
{
    double d;
    return num(v, d) ? d : 0;
}

// The shop's fee rate where the record has none (1 percent when the shop
// has none either); the current shop, not the record's.
void stepE(ShipRow &r)
{
    if (hasValue(r.FEE_RT))
        return;
    const Value rt = gMST->DLookup(QStringLiteral("FEE_RT"), QStringLiteral("M_SHOP"),
                                   Stmt("SHOP_ID=?").num(Nz(gSHOP_ID, Value(1))));
    r.FEE_RT = hasValue(rt) ? rt : Value(1);
}

// The fee: sales times rate over 100, whole, half away from zero; an empty
// amount gives 0. A fee beyond the amounts the books hold is the overflow.
void stepF(ShipRow &r)
{
    r.FEE_AMT = Value(RoundAmount(numOr0(r.SALES_AMT) * numOr0(r.FEE_RT) / 100));
}

// The amount, the rate when there is none, and the fee.
void amountAndFee(ShipRow &r)
{
    Ship::computeSalesAmount(r);
    stepE(r);
    stepF(r);
}

// A price, a sold quantity or a discount changed: the amount and the fee
// again, or no amount while price or sold quantity is missing (the fee
// stays as it was).
void stepA(ShipRow &r)
{
    if (!present(r.SHOP_PRC) || !present(r.SALES_QTY)) {
        r.SALES_AMT = Value::null();
        return;
    }
    amountAndFee(r);
}

// The shipped quantity changed: sold is shipped less returned once the
// returns are known.
void stepB(ShipRow &r)
{
    if (!present(r.RTN_QTY)) {
        r.SALES_QTY = Value::null();
        r.SALES_AMT = Value::null();
    } else {
        r.SALES_QTY = Value(numOr0(r.SHIP_QTY) - numOr0(r.RTN_QTY));
        if (present(r.SHOP_PRC))
            Ship::computeSalesAmount(r);
        else
            r.SALES_AMT = Value::null();
    }
    // The first shipped quantity already brings the rate and a fee of 0.
    stepE(r);
    stepF(r);
}

// The returns changed.
void stepC(ShipRow &r)
{
    if (!present(r.SHIP_QTY)) {
        r.SALES_QTY = Value::null();
        r.SALES_AMT = Value::null();
        return;
    }
    r.SALES_QTY = Value(numOr0(r.SHIP_QTY) - numOr0(r.RTN_QTY));
    if (!present(r.SHOP_PRC)) {
        r.SALES_AMT = Value::null();
        return;
    }
    amountAndFee(r);
}

} // namespace

int LoadShipRows(Recordset &rs)
{
    gSHIP_ROWS = QVector<ShipRow>(1);
    int n = 0;
    for (; !rs.eof(); rs.MoveNext(), ++n) {
        if (n > 0)
            gSHIP_ROWS.append(ShipRow());
        ShipRow::map().read(rs, gSHIP_ROWS[n]);
    }
    return n;
}

namespace Ship {

void computeSalesAmount(ShipRow &r)
{
    double price, sold;
    if (num(r.SHOP_PRC, price) && num(r.SALES_QTY, sold))
        r.SALES_AMT = Value(Currency::fromDouble(price * sold - numOr0(r.DSC_AMT)));
    else
        r.SALES_AMT = Value::null();
}

void leaveBox(ShipRow &r, int box, const QString &text)
{
    const bool lengthEmpty = text.isEmpty();
    const bool numberEmpty = !IsNumeric(Value(text)) || text.isEmpty();
    const Value t(text);
    switch (box) {
    case ShipDate: r.SHIP_DATE = textOrNull(text); break;
    case Locate: r.LOCATE = textOrNull(text); break;
    case PrdId:
        if (lengthEmpty) {
            r.PRD_ID = Value::null();
        } else {
            r.PRD_ID = t;
            // the code as a number: its leading digits, 0 for none
            const Value nm = gMST->DLookup(QStringLiteral("PRD_NM"), QStringLiteral("M_PRD"),
                                           Stmt("SHOP_ID=? AND PRD_ID=?").num(Nz(gSHOP_ID, Value(1))).num(t));
            r.PRD_NM = hasValue(nm) ? nm : Value::null();
        }
        break;
    case PrdNm: r.PRD_NM = textOrNull(text); break;
    case ShopPrc:
        if (lengthEmpty) {
            r.SHOP_PRC = r.SALES_AMT = r.FEE_AMT = Value::null();
        } else {
            r.SHOP_PRC = t;
            stepA(r);
        }
        break;
    case ShipQty:
        if (lengthEmpty) {
            r.SHIP_QTY = r.SALES_QTY = r.SALES_AMT = r.FEE_AMT = Value::null();
        } else {
            r.SHIP_QTY = t;
            stepB(r);
        }
        break;
    case RtnQty:
        if (numberEmpty) {
            r.RTN_QTY = r.SALES_QTY = r.SALES_AMT = r.FEE_AMT = Value::null();
        } else {
            r.RTN_QTY = t;
            stepC(r);
        }
        break;
    case SalesQty:
        if (numberEmpty) {
            r.SALES_QTY = r.SALES_AMT = r.FEE_AMT = Value::null();
        } else {
            r.SALES_QTY = t;
            stepA(r);
        }
        break;
    case DscAmt:
        if (numberEmpty) {
            r.DSC_AMT = r.SALES_AMT = r.FEE_AMT = Value::null();
        } else {
            r.DSC_AMT = t;
            stepA(r);
        }
        break;
    case FeeRt:
        if (lengthEmpty) {
            r.FEE_RT = r.FEE_AMT = Value::null();
        } else {
            r.FEE_RT = t;
            if (present(r.SALES_AMT))
                stepF(r);
            else
                r.FEE_AMT = Value::null();
        }
        break;
    case FeeAmt: r.FEE_AMT = textOrNull(text); break; // a typed fee stands
    case Notes: r.NOTES = textOrNull(text); break;
    default: break;
    }
}

ShipRow newShipment()
{
    ShipRow r;
    r.FMR_ID = gFMR_ID;
    r.SHIP_DATE = Value(DateUtil::today());
    r.SHOP_ID = gSHOP_ID;
    r.LOCATE = Value(textOf(
        gMST->DLookup(QStringLiteral("LOCATE"), QStringLiteral("M_FMR"), Stmt("FMR_ID=?").num(gFMR_ID))));
    r.PLAS = Value(true);
    r.ACC_ID = shopAccount(r.SHOP_ID);
    return r;
}

Value shopAccount(const Value &shopId)
{
    return Nz(gMST->DLookup(QStringLiteral("ACC_ID"), QStringLiteral("M_SHOP"), Stmt("SHOP_ID=?").num(shopId)),
              Value(0));
}

void chooseShop(ShipRow &r, const Value &shopId)
{
    r.SHOP_ID = shopId;
    r.ACC_ID = shopAccount(shopId);
}

void takePlantingProduct(ShipRow &r)
{
    const QString where = Stmt("PLANT_ID=?").num(r.PLANT_ID);
    r.PRD_ID = Value(textOf(gDB->DLookup(QStringLiteral("PRD_ID"), QStringLiteral("D_PLANT"), where)));
    r.PRD_NM = Value(textOf(gDB->DLookup(QStringLiteral("PRD_NM"), QStringLiteral("D_PLANT"), where)));
}

namespace {

} // namespace

QVector<Choice> farmerChoices()
{
    return readChoices(gMST.get(),
                   QStringLiteral("SELECT  M_FMR.FMR_ID,  M_FMR.FMR_NM  FROM M_FMR  WHERE CHK_FLG<>0 ORDER BY FMR_ID"));
}

QVector<Choice> shopChoices()
{
    return readChoices(gMST.get(), QStringLiteral("SELECT  M_SHOP.SHOP_ID,  M_SHOP.SHOP_NM  FROM M_SHOP  WHERE CHK_FLG<>0 "
                                              "ORDER BY M_SHOP.SHOP_ID"));
}

QVector<Choice> openPlantings(const Value &day)
{
    if (!hasValue(day) || !IsDate(day))
        return {};
    return readChoices(gDB.get(), Stmt("SELECT  D_PLANT.PLANT_ID,  D_PLANT.PLANT_NM  FROM D_PLANT  WHERE FMR_ID=?"
                                   " AND START_DATE<=?"
                                   " AND ((END_DATE IS NULL) OR (END_DATE>=?))"
                                   " ORDER BY PLANT_DATE")
                                  .num(gFMR_ID)
                                  .day(day)
                                  .day(day));
}

PlantingInfo plantingInfo(const Value &plantId)
{
    static const ColumnMap<PlantingInfo> columns{
        {"CROP_NM1", &PlantingInfo::CROP_NM1},     {"CROP_NM2", &PlantingInfo::CROP_NM2},
        {"PLANT_DATE", &PlantingInfo::PLANT_DATE}, {"AREA", &PlantingInfo::AREA},
        {"SHIP_SCHD_DATE1", &PlantingInfo::SHIP_SCHD_DATE1}, {"SHIP_SCHD_DATE2", &PlantingInfo::SHIP_SCHD_DATE2},
    };
    PlantingInfo info;
    if (!present(plantId) || plantId.toDouble() == 0)
        return info;
    RecordsetPtr rs = gDB->GetFwdOnlyRst(Stmt("SELECT D_PLANT.* FROM D_PLANT WHERE PLANT_ID=?").num(plantId));
    if (!rs->eof())
        columns.read(*rs, info);
    rs->Close();
    return info;
}

QString check(ShipRow &r, Mode mode)
{
    if (mode == Mode::Add) {
        r.FMR_ID = gFMR_ID;
        r.SHIP_ID = Value(
            Nz(gDB->DMax(QStringLiteral("SHIP_ID"), QStringLiteral("D_SHIP"), Stmt("FMR_ID=?").num(r.FMR_ID)), Value(0))
                .toLong() +
            1);
    }
    if (!hasValue(r.ACC_ID))
        r.ACC_ID = shopAccount(r.SHOP_ID);
    if (!hasValue(r.SHIP_DATE) || !IsDate(r.SHIP_DATE))
        return QStringLiteral("日付を指定してください。");
    if (!hasValue(r.FMR_ID) || !IsNumeric(r.FMR_ID))
        return QStringLiteral("生産者を指定してください。");
    if (r.FMR_ID.toDouble() <= 0)
        return QStringLiteral("生産者をを指定してください。"); // the doubled particle is kept
    if (!hasValue(r.PLANT_ID) || !IsNumeric(r.PLANT_ID) || r.PLANT_ID.toDouble() <= 0)
        return QStringLiteral("作付を指定してください。");
    if (!hasValue(r.SHIP_QTY) || !IsNumeric(r.SHIP_QTY))
        return QStringLiteral("出荷数を指定してください。");
    return QString();
}

namespace {

// One side of a slip: account, option kind, option id, option name.
Stmt moneySide(const ShipRow &r)
{
    return Stmt("?,?,0,NULL").num(r.ACC_ID).num(OptKbn::None);
}
Stmt plantSide(int account, const ShipRow &r)
{
    return Stmt("?,?,?,?").num(account).num(OptKbn::Planting).num(r.PLANT_ID).textOrNull(r.PRD_NM);
}

// One slip of a shipment: the sale (against sales) or the fee (against the
// shop's fee), dated the shipment day. A sale above 0 credits the sales, a
// fee above 0 debits the fee; a negative amount turns the slip round and
// books the amount positive. An amount of 0 takes the slip's number to 0.
void postSlip(ShipRow &r, Mode mode, Value &ledgeId, Currency amount, bool sale)
{
    if (amount == Currency()) {
        ledgeId = Value(0);
        return;
    }
    if (!hasValue(ledgeId) || ledgeId.toDouble() == 0)
        ledgeId = Value(nextLedgeId(r.FMR_ID));
    const Stmt planting = plantSide(sale ? Acc::Sales : Acc::ShopFee, r);
    const bool moneyDebited = sale ? amount > Currency() : amount < Currency();
    const QDateTime now = DateUtil::now();
    Stmt insert("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, LEDGE_DATE, D_ACC_ID, D_OPT_KBN, D_OPT_ID, D_OPT_NM, "
                "C_ACC_ID, C_OPT_KBN, C_OPT_ID, C_OPT_NM, CTR_NM, NOTES, AMT, IDATE, UDATE, LAST_TM, HOLD_TM) "
                "VALUES (?,?,?,?,?,?,?,?,?,?,?,NULL)");
    insert.num(r.FMR_ID).num(ledgeId).time(r.SHIP_DATE);
    insert.part(moneyDebited ? moneySide(r) : planting).part(moneyDebited ? planting : moneySide(r));
    insert.textOrNull(Value(GetShopNm(r.SHOP_ID)));
    if (sale)
        insert.text(textOf(r.NOTES)); // an empty note is stored as empty text
    else
        insert.part(Stmt("NULL"));
    insert.amount(amount > Currency() ? amount : -amount);
    if (mode == Mode::Add)
        insert.time(now).part(Stmt("NULL"));
    else
        insert.timeOrNull(r.IDATE).time(now);
    insert.text(GetCompName());
    gDB->EXEC(insert);
}

// An amount field as the books take it: 0 when it is empty or no number, the
// overflow when it is beyond what the books hold.
Currency amountOf(const Value &v) { return present(v) ? v.toCurrency() : Currency(); }

Stmt keyOf(const ShipRow &r) { return Stmt("FMR_ID=? AND SHIP_ID=?").num(r.FMR_ID).num(r.SHIP_ID); }

// The columns of D_SHIP that a save takes from the record; the key, the
// stamps and the dates of the row are set apart.
const QStringList &savedColumns()
{
    static const QStringList columns = [] {
        QStringList c = ShipRow::map().names();
        for (const char *apart : {"FMR_ID", "SHIP_ID", "IDATE", "UDATE", "LAST_TM", "HOLD_TM"})
            c.removeAll(QString::fromLatin1(apart));
        return c;
    }();
    return columns;
}

} // namespace

namespace {

// The steps of a posting, on the record being saved; false when the row to
// change or delete is gone.
bool postSteps(ShipRow &r, Mode mode, Currency sales, Currency fee)
{
    const bool writes = mode == Mode::Add || mode == Mode::Change;
    if (mode == Mode::Change || mode == Mode::Delete) {
        if (!claimRow(QStringLiteral("D_SHIP"), keyOf(r), stampsOf(r)))
            return false;
        for (const Value *id : {&r.LEDGE_ID_S, &r.LEDGE_ID_F})
            if (present(*id) && id->toDouble() > 0)
                gDB->EXEC(Stmt("DELETE D_LEDGE.* FROM D_LEDGE WHERE FMR_ID=? AND LEDGE_ID=?").num(r.FMR_ID).num(*id));
    }
    if (writes) {
        postSlip(r, mode, r.LEDGE_ID_S, sales, true);
        postSlip(r, mode, r.LEDGE_ID_F, fee, false);
    }

    RecordsetPtr rs = gDB->GetDynamicRst(Stmt("SELECT D_SHIP.* FROM D_SHIP WHERE D_SHIP.SHIP_ID=?").num(r.SHIP_ID));
    if (mode == Mode::Add) {
        rs->AddNew();
        ShipRow::map().write(*rs, r, {QStringLiteral("FMR_ID"), QStringLiteral("SHIP_ID")});
        rs->SetField(QStringLiteral("IDATE"), Value(DateUtil::now()));
    } else if (rs->eof()) {
        rs->Close();
        return false;
    }
    if (mode == Mode::Change)
        rs->SetField(QStringLiteral("UDATE"), Value(DateUtil::now()));
    if (writes) {
        ShipRow::map().write(*rs, r, savedColumns());
        rs->SetField(QStringLiteral("LAST_TM"), Value(GetCompName()));
        rs->SetField(QStringLiteral("HOLD_TM"), Value::null());
        rs->Update();
        ShipRow::map().read(*rs, r, stampColumns());
    } else if (mode == Mode::Delete) {
        rs->Delete();
    }
    rs->Close();

    const QString key = Stmt("FMR_ID=? AND WORK_DATE=?").num(r.FMR_ID).time(r.SHIP_DATE);
    if (writes && gDB->DCount(QStringLiteral("*"), QStringLiteral("D_DIARY"), key).toLong() == 0)
        gDB->EXEC(Stmt("INSERT INTO D_DIARY (FMR_ID, WORK_DATE, IDATE, LAST_TM) VALUES(?,?,?,?)")
                      .num(r.FMR_ID)
                      .time(r.SHIP_DATE)
                      .time(DateUtil::now())
                      .text(GetCompName()));
    if (mode == Mode::Change || mode == Mode::Delete)
        gDB->EXEC(Stmt("DELETE D_DIARY_DTL.* FROM D_DIARY_DTL WHERE D_DIARY_DTL.FMR_ID=? AND D_DIARY_DTL.WORK_KBN=?"
                       " AND D_DIARY_DTL.SHIP_ID=?")
                      .num(r.FMR_ID)
                      .num(WorkKbn::Shipment)
                      .num(r.SHIP_ID));
    if (writes) {
        const qint32 no =
            Nz(gDB->DMax(QStringLiteral("DTL_NO"), QStringLiteral("D_DIARY_DTL"), key), Value(0)).toLong() + 1;
        gDB->EXEC(Stmt("INSERT INTO D_DIARY_DTL (FMR_ID, WORK_DATE, DTL_NO, PLANT_ID, WORK_KBN, WORK_NM, NOTES, "
                       "SHIP_ID) VALUES(?,?,?,?,?,'出荷',?,?)")
                      .num(r.FMR_ID)
                      .time(r.SHIP_DATE)
                      .num(no)
                      .num(r.PLANT_ID)
                      .num(WorkKbn::Shipment)
                      .textOrNull(r.NOTES)
                      .num(r.SHIP_ID));
    }
    return true;
}

} // namespace

bool post(ShipRow &r, Mode mode)
{
    gLAST_SHIP_ID = r.SHIP_ID;
    // The amounts as the books will hold them, before anything is written:
    // the sale from price, sold and discount (never one held from before),
    // the fee as typed or computed.
    Currency sales, fee;
    if (mode == Mode::Add || mode == Mode::Change) {
        computeSalesAmount(r);
        sales = amountOf(r.SALES_AMT);
        fee = amountOf(r.FEE_AMT);
    }
    if (saveAsOne(r, [&](ShipRow &w) { return postSteps(w, mode, sales, fee); }))
        return true;
    ShowMsg(QStringLiteral("該当データが存在しません。"), Msg::Critical);
    return false;
}

bool reread(ShipRow &r) { return rereadRow(r, QStringLiteral("D_SHIP"), keyOf(r)); }

void releaseShipments() { gDB->ReleaseData(QStringLiteral("D_SHIP"), QString()); }

int loadShipment(const Value &shipId)
{
    RecordsetPtr rs = gDB->GetStaticRst(Stmt("SELECT  D_SHIP.*  FROM D_SHIP INNER JOIN D_PLANT ON "
                                             "D_SHIP.PLANT_ID=D_PLANT.PLANT_ID WHERE D_SHIP.FMR_ID=? AND SHIP_ID=?"
                                             " ORDER BY D_SHIP.SHIP_DATE,D_SHIP.PLANT_ID,D_SHIP.SHIP_ID")
                                            .num(gFMR_ID)
                                            .num(shipId));
    const int n = LoadShipRows(*rs);
    rs->Close();
    return n;
}

}
