#include "rules/shipping/ShipData.h"

#include "base/Globals.h"
#include "base/Helpers.h"
#include "base/Msg.h"
#include "store/SqlText.h"
#include "store/Database.h"
#include "store/Lookup.h"

QVector<ShipRow> gSHIP_ROWS;

namespace {

struct Field {
    const char *name;
    Value ShipRow::*member;
};
const Field kFields[] = {
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
                                   QStringLiteral("SHOP_ID=") + Nz(gSHOP_ID, Value(1)).toText());
    r.FEE_RT = hasValue(rt) ? rt : Value(1);
}

// The fee: sales times rate over 100, whole, half away from zero; an empty
// amount gives 0.
void stepF(ShipRow &r)
{
    r.FEE_AMT = Value(RoundEx(Value(numOr0(r.SALES_AMT) * numOr0(r.FEE_RT) / 100), 3, 0));
}

void stepA(ShipRow &r)
{
    if (!present(r.SHOP_PRC) || !present(r.SALES_QTY)) {
        r.SALES_AMT = Value::null();
        return;
    }
    Ship::computeSalesAmount(r);
    stepE(r);
    stepF(r);
}

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
    Ship::computeSalesAmount(r);
    stepE(r);
    stepF(r);
}

void stepD(ShipRow &r)
{
    if (!present(r.SHOP_PRC) || !present(r.SALES_QTY)) {
        r.SALES_AMT = Value::null();
        return;
    }
    Ship::computeSalesAmount(r);
    stepE(r);
    stepF(r);
}

QString sqlDate(const Value &v) { return QLatin1Char('#') + DateUtil::sqlText(v.toDate()) + QLatin1Char('#'); }

} // namespace

int LoadShipRows(Recordset &rs)
{
    gSHIP_ROWS = QVector<ShipRow>(1);
    int n = 0;
    for (; !rs.eof(); rs.MoveNext(), ++n) {
        if (n > 0)
            gSHIP_ROWS.append(ShipRow());
        for (const Field &f : kFields)
            gSHIP_ROWS[n].*f.member = rs.Fields(QString::fromLatin1(f.name));
    }
    return n;
}

namespace Ship {

void computeSalesAmount(ShipRow &r)
{
    double price, sold;
    if (num(r.SHOP_PRC, price) && num(r.SALES_QTY, sold))
        r.SALES_AMT = Value(price * sold - numOr0(r.DSC_AMT));
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
            double code = 0;
            parseNumber(text, code);
            const Value nm = gMST->DLookup(QStringLiteral("PRD_NM"), QStringLiteral("M_PRD"),
                                           QStringLiteral("SHOP_ID=") + Nz(gSHOP_ID, Value(1)).toText() +
                                               QStringLiteral(" AND PRD_ID=") + Value(code).toText());
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
            stepD(r);
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
    r.LOCATE = Value(textOf(gMST->DLookup(QStringLiteral("LOCATE"), QStringLiteral("M_FMR"),
                                          QStringLiteral("FMR_ID=") + Nz(gFMR_ID, Value(0)).toText())));
    r.PLAS = Value(true);
    r.ACC_ID = Nz(gMST->DLookup(QStringLiteral("ACC_ID"), QStringLiteral("M_SHOP"),
                                QStringLiteral("SHOP_ID=") + Nz(r.SHOP_ID, Value(0)).toText()),
                  Value(0));
    return r;
}

QString check(ShipRow &r, Mode mode)
{
    if (mode == Mode::Add) {
        r.FMR_ID = gFMR_ID;
        r.SHIP_ID = Value(Nz(gDB->DMax(QStringLiteral("SHIP_ID"), QStringLiteral("D_SHIP"),
                                       QStringLiteral("FMR_ID=") + Nz(r.FMR_ID, Value(0)).toText()),
                             Value(0))
                              .toLong() +
                          1);
    }
    if (!hasValue(r.ACC_ID))
        r.ACC_ID = Nz(gMST->DLookup(QStringLiteral("ACC_ID"), QStringLiteral("M_SHOP"),
                                    QStringLiteral("SHOP_ID=") + Nz(r.SHOP_ID, Value(0)).toText()),
                      Value(0));
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

// One slip of a shipment, inserted by a statement as the books take it.
void insertSlip(const ShipRow &r, Mode mode, const Value &ledgeId, const QString &debit, const QString &credit,
                const QString &notes, double amount)
{
    const QString farmer = Nz(r.FMR_ID, Value(0)).toText();
    const QString shop = GetShopNm(r.SHOP_ID);
    const QString idate = mode == Mode::Add ? sqlDate(Value(DateUtil::now()))
                                    : (hasValue(r.IDATE) ? sqlDate(r.IDATE) : QStringLiteral("NULL"));
    const QString udate = mode == Mode::Add ? QStringLiteral("NULL") : sqlDate(Value(DateUtil::now()));
    gDB->EXEC(QStringLiteral("INSERT INTO D_LEDGE (FMR_ID, LEDGE_ID, LEDGE_DATE, D_ACC_ID, D_OPT_KBN, D_OPT_ID, "
                             "D_OPT_NM, C_ACC_ID, C_OPT_KBN, C_OPT_ID, C_OPT_NM, CTR_NM, NOTES, AMT, IDATE, UDATE, "
                             "LAST_TM, HOLD_TM) VALUES (") +
              farmer + QLatin1Char(',') + ledgeId.toText() + QLatin1Char(',') + sqlDate(r.SHIP_DATE) +
              QLatin1Char(',') + debit + QLatin1Char(',') + credit + QLatin1Char(',') +
              Sql::quotedOrNull(Value(shop)) +
              QLatin1Char(',') + notes + QLatin1Char(',') + Value(amount).toText() + QLatin1Char(',') + idate +
              QLatin1Char(',') + udate + QLatin1Char(',') + Sql::quoted(GetCompName()) + QStringLiteral(",NULL)"));
}

// The sides of the slips: the money side and the planting's side.
QString moneySide(const ShipRow &r) { return Nz(r.ACC_ID, Value(0)).toText() + QStringLiteral(",0,0,NULL"); }
QString plantSide(int acc, const ShipRow &r)
{
    return QString::number(acc) + QStringLiteral(",2,") + Nz(r.PLANT_ID, Value(0)).toText() + QLatin1Char(',') +
           Sql::quotedOrNull(r.PRD_NM);
}

void postSlip(ShipRow &r, Mode mode, Value &ledgeId, double amount, bool sale)
{
    if (amount == 0) {
        ledgeId = Value(0);
        return;
    }
    if (!hasValue(ledgeId) || ledgeId.toDouble() == 0)
        ledgeId = Value(GetNewLedgeId(r.FMR_ID));
    const int account = sale ? 4000 : 4520;
    QString debit, credit;
    // A sale above 0 credits the sales; a fee above 0 debits the fee; a
    // negative amount turns the slip round and books the amount positive.
    const bool moneyDebited = sale ? amount > 0 : amount < 0;
    if (moneyDebited) {
        debit = moneySide(r);
        credit = plantSide(account, r);
    } else {
        debit = plantSide(account, r);
        credit = moneySide(r);
    }
    const QString notes = sale ? Sql::quoted(textOf(r.NOTES)) : QStringLiteral("NULL");
    insertSlip(r, mode, ledgeId, debit, credit, notes, amount > 0 ? amount : -amount);
}

} // namespace

bool post(ShipRow &r, Mode mode)
{
    const QString farmer = Nz(r.FMR_ID, Value(0)).toText();
    gLAST_SHIP_ID = r.SHIP_ID;
    if (mode == Mode::Change || mode == Mode::Delete) {
        for (const Value *id : {&r.LEDGE_ID_S, &r.LEDGE_ID_F})
            if (present(*id) && id->toDouble() > 0)
                gDB->EXEC(QStringLiteral("DELETE D_LEDGE.* FROM D_LEDGE WHERE ") + QStringLiteral("FMR_ID=") + farmer +
                          QStringLiteral(" AND LEDGE_ID=") + id->toText());
    }
    if (mode == Mode::Add || mode == Mode::Change) {
        postSlip(r, mode, r.LEDGE_ID_S, numOr0(r.SALES_AMT), true);
        postSlip(r, mode, r.LEDGE_ID_F, numOr0(r.FEE_AMT), false);
    }

    RecordsetPtr rs = gDB->GetDynamicRst(QStringLiteral("SELECT D_SHIP.* FROM D_SHIP WHERE D_SHIP.SHIP_ID=") +
                                         Nz(r.SHIP_ID, Value(0)).toText());
    if (mode == Mode::Add) {
        rs->AddNew();
        rs->SetField(QStringLiteral("FMR_ID"), r.FMR_ID);
        rs->SetField(QStringLiteral("SHIP_ID"), r.SHIP_ID);
        rs->SetField(QStringLiteral("IDATE"), Value(DateUtil::now()));
    } else if (rs->eof()) {
        ShowMsg(QStringLiteral("該当データが存在しません。"), Msg::Critical);
        rs->Close();
        return false;
    }
    if (mode == Mode::Change)
        rs->SetField(QStringLiteral("UDATE"), Value(DateUtil::now()));
    if (mode == Mode::Add || mode == Mode::Change) {
        for (const Field &f : kFields) {
            const QString name = QString::fromLatin1(f.name);
            static const QStringList skipped = {"FMR_ID", "SHIP_ID", "IDATE", "UDATE", "LAST_TM", "HOLD_TM"};
            if (!skipped.contains(name))
                rs->SetField(name, r.*f.member);
        }
        rs->SetField(QStringLiteral("LAST_TM"), Value(GetCompName()));
        rs->SetField(QStringLiteral("HOLD_TM"), Value::null());
        rs->Update();
    } else if (mode == Mode::Delete) {
        rs->Delete();
    }
    rs->Close();

    const QString day = QStringLiteral("#") + DateUtil::sqlText(r.SHIP_DATE.toDate()) + QStringLiteral("#");
    const QString key = QStringLiteral("FMR_ID=") + farmer + QStringLiteral(" AND WORK_DATE=") + day;
    if ((mode == Mode::Add || mode == Mode::Change) && gDB->DCount(QStringLiteral("*"), QStringLiteral("D_DIARY"), key).toLong() == 0)
        gDB->EXEC(QStringLiteral("INSERT INTO D_DIARY (FMR_ID, WORK_DATE, IDATE, LAST_TM)") + QStringLiteral(" VALUES(") +
                  farmer + QLatin1Char(',') + day + QLatin1Char(',') + sqlDate(Value(DateUtil::now())) +
                  QLatin1Char(',') + Sql::quoted(GetCompName()) + QLatin1Char(')'));
    if (mode == Mode::Change || mode == Mode::Delete)
        gDB->EXEC(QStringLiteral("DELETE D_DIARY_DTL.* FROM D_DIARY_DTL") +
                  QStringLiteral(" WHERE D_DIARY_DTL.FMR_ID=") + farmer + QStringLiteral(" AND D_DIARY_DTL.WORK_KBN=8") +
                  QStringLiteral(" AND D_DIARY_DTL.SHIP_ID=") + Nz(r.SHIP_ID, Value(0)).toText());
    if (mode == Mode::Add || mode == Mode::Change) {
        const qint32 no = Nz(gDB->DMax(QStringLiteral("DTL_NO"), QStringLiteral("D_DIARY_DTL"), key), Value(0)).toLong() + 1;
        gDB->EXEC(QStringLiteral("INSERT INTO D_DIARY_DTL (FMR_ID, WORK_DATE, DTL_NO, PLANT_ID, WORK_KBN, WORK_NM, NOTES, "
                                 "SHIP_ID)") +
                  QStringLiteral(" VALUES(") + farmer + QLatin1Char(',') + day + QLatin1Char(',') + QString::number(no) +
                  QLatin1Char(',') + Nz(r.PLANT_ID, Value(0)).toText() + QStringLiteral(",8,") +
                  QStringLiteral("'出荷',") + Sql::quotedOrNull(r.NOTES) + QLatin1Char(',') + Nz(r.SHIP_ID, Value(0)).toText() +
                  QLatin1Char(')'));
    }
    return true;
}

}
