#include "generate.h"

#include "base/AppError.h"
#include "base/Value.h"
#include "store/Schema.h"

#include <QDate>
#include <QElapsedTimer>
#include <QHash>
#include <QMap>

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace BenchData {

QDate firstDay() { return QDate(2016, 1, 1); }
QDate lastDay() { return QDate(2025, 12, 31); }

QString Summary::text() const
{
    return QStringLiteral("日誌 %1 日、作業 %2 行（うち農薬散布 %3 行）、伝票 %4 件、出荷 %5 件、作付 %6 件、"
                          "農薬ロット %7 件、%8 秒")
        .arg(days)
        .arg(detailLines)
        .arg(sprayLines)
        .arg(slips)
        .arg(shipments)
        .arg(plantings)
        .arg(lots)
        .arg(seconds, 0, 'f', 2);
}

namespace {

// ------------------------------------------------------------ randomness
// splitmix64: the same numbers from the same seed with any compiler and
// library (the standard distributions are not portable).
class Rng {
public:
    explicit Rng(quint64 seed) : mS(seed) {}
    quint64 next()
    {
        quint64 z = (mS += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    double uniform() { return double(next() >> 11) * (1.0 / 9007199254740992.0); }
    int range(int lo, int hi) { return lo + int(next() % quint64(hi - lo + 1)); } // inclusive
    bool chance(double p) { return uniform() < p; }
    double around(double mean, double spread) // rough bell curve
    {
        return mean + spread * (uniform() + uniform() + uniform() - 1.5) / 1.5;
    }
    template <class T> const T &pick(const QVector<T> &v) { return v[int(next() % quint64(v.size()))]; }
    int weighted(const QVector<double> &w)
    {
        double total = 0;
        for (double x : w)
            total += x;
        double r = uniform() * total;
        for (int i = 0; i < w.size(); ++i) {
            if (r < w[i])
                return i;
            r -= w[i];
        }
        return w.size() - 1;
    }

private:
    quint64 mS;
};

QString S(const char *utf8) { return QString::fromUtf8(utf8); }
QVector<QString> list(std::initializer_list<const char *> items)
{
    QVector<QString> out;
    for (const char *s : items)
        out << QString::fromUtf8(s);
    return out;
}

// ------------------------------------------------------------ look-ups

struct Acc {
    int id = 0;
    QString nm;
    int opt = 0;
};
struct Chemi {
    int regNo = 0;
    QString nm, kind, makerNm, typeCode;
    int uses = 0, type = 0;
    QVector<QString> purposes;
};
struct Product {
    int id = 0;
    QString nm;
    int defDays = 3;
};

struct Lookups {
    QHash<int, QString> kinds;        // L_KBN 20
    QHash<int, QString> plantTypes;   // L_KBN 11
    QHash<int, Acc> acc;
    QHash<QString, QString> cropNm2;  // L_CROP: CROP_NM1 -> CROP_NM2
    QVector<QString> allCrops;
    QVector<Chemi> chemis;
    QHash<QString, Product> products; // by PRD_NM
    QString shopNm = S("直売所");
    double feeRt = 15;
    int shopAcc = 1040;
    QString locate;

    QString kind(int id) const { return kinds.value(id, QStringLiteral("作業%1").arg(id)); }
    bool hasAcc(int id) const { return acc.contains(id); }
};

QString text(const ResultSet &rs, const QVector<Value> &row, const char *col)
{
    const Value &v = row[rs.columnIndex(QString::fromLatin1(col))];
    return v.isNull() ? QString() : v.toText();
}
int number(const ResultSet &rs, const QVector<Value> &row, const char *col, int def = 0)
{
    const Value &v = row[rs.columnIndex(QString::fromLatin1(col))];
    return v.isNull() ? def : v.toLong();
}

Lookups readLookups(Engine &work, Engine &master)
{
    Lookups L;
    QHash<QString, int> usesByCode, typeByCode;
    {
        const ResultSet rs = work.select(QStringLiteral("SELECT KBN, ID, NM, NOTE FROM L_KBN ORDER BY KBN, ID"));
        for (const auto &r : rs.rows) {
            const int kbn = number(rs, r, "KBN");
            const int id = number(rs, r, "ID");
            if (kbn == 20)
                L.kinds.insert(id, text(rs, r, "NM"));
            else if (kbn == 11)
                L.plantTypes.insert(id, text(rs, r, "NM"));
            else if (kbn == 15)
                usesByCode.insert(text(rs, r, "NOTE"), id);
            else if (kbn == 16)
                typeByCode.insert(text(rs, r, "NOTE"), id);
        }
    }
    {
        const ResultSet rs = work.select(QStringLiteral("SELECT ACC_ID, ACC_NM, OPT_KBN FROM L_ACC ORDER BY ACC_ID"));
        for (const auto &r : rs.rows) {
            Acc a;
            a.id = number(rs, r, "ACC_ID");
            a.nm = text(rs, r, "ACC_NM");
            a.opt = number(rs, r, "OPT_KBN");
            L.acc.insert(a.id, a);
        }
    }
    {
        const ResultSet rs = work.select(QStringLiteral("SELECT CROP_NM1, CROP_NM2 FROM L_CROP ORDER BY CROP_NM1"));
        for (const auto &r : rs.rows) {
            L.cropNm2.insert(text(rs, r, "CROP_NM1"), text(rs, r, "CROP_NM2"));
            L.allCrops << text(rs, r, "CROP_NM1");
        }
    }
    {
        QHash<QString, QString> makers;
        const ResultSet m = work.select(QStringLiteral("SELECT MAKER_OMT, MAKER_NM FROM L_MAKER"));
        for (const auto &r : m.rows)
            makers.insert(text(m, r, "MAKER_OMT"), text(m, r, "MAKER_NM"));
        QHash<int, QVector<QString>> purposes;
        const ResultSet p = work.select(QStringLiteral("SELECT REG_NO, PURPOSE FROM L_CHEMI_PURPOSE ORDER BY REG_NO"));
        for (const auto &r : p.rows)
            purposes[number(p, r, "REG_NO")] << text(p, r, "PURPOSE");
        const ResultSet rs = work.select(
            QStringLiteral("SELECT REG_NO, CHEMI_NM, CHEMI_KIND, MAKER_OMT, USES, CHEMI_TYPE FROM L_CHEMI ORDER BY REG_NO"));
        for (const auto &r : rs.rows) {
            Chemi c;
            c.regNo = number(rs, r, "REG_NO");
            c.nm = text(rs, r, "CHEMI_NM");
            c.kind = text(rs, r, "CHEMI_KIND");
            const QString maker = text(rs, r, "MAKER_OMT");
            c.makerNm = makers.value(maker, maker);
            c.uses = usesByCode.value(text(rs, r, "USES"), 0);
            c.typeCode = text(rs, r, "CHEMI_TYPE");
            c.type = typeByCode.value(c.typeCode, 0);
            c.purposes = purposes.value(c.regNo);
            // Rat bait and spray cans are not what a farm sprays over a field.
            if (text(rs, r, "USES") == QLatin1String("A07") || c.typeCode == QLatin1String("F11"))
                continue;
            L.chemis << c;
        }
    }
    {
        const ResultSet rs =
            master.select(QStringLiteral("SELECT PRD_ID, PRD_NM, I_DEF_DAYS FROM M_PRD WHERE SHOP_ID=1 ORDER BY PRD_ID"));
        for (const auto &r : rs.rows) {
            Product p;
            p.id = number(rs, r, "PRD_ID");
            p.nm = text(rs, r, "PRD_NM");
            p.defDays = number(rs, r, "I_DEF_DAYS", 3);
            L.products.insert(p.nm, p);
        }
        const ResultSet shop = master.select(QStringLiteral("SELECT SHOP_NM, FEE_RT, ACC_ID FROM M_SHOP WHERE SHOP_ID=1"));
        if (!shop.rows.isEmpty()) {
            const auto &r = shop.rows.first();
            L.shopNm = text(shop, r, "SHOP_NM");
            const Value fee = r[shop.columnIndex(QStringLiteral("FEE_RT"))];
            if (!fee.isNull())
                L.feeRt = fee.toDouble();
            L.shopAcc = number(shop, r, "ACC_ID", 1040);
        }
        const ResultSet fmr = master.select(QStringLiteral("SELECT LOCATE FROM M_FMR WHERE FMR_ID=1"));
        if (!fmr.rows.isEmpty())
            L.locate = text(fmr, fmr.rows.first(), "LOCATE");
    }
    if (L.chemis.isEmpty())
        throw AppError(VbErr::InvalidCall, QStringLiteral("L_CHEMI が空なので農薬ロットを作れません。"));
    return L;
}

// ------------------------------------------------------------ writing

// Rows of one table, sent many rows a statement inside one transaction.
class TableWriter {
public:
    TableWriter(Engine &e, const char *table) : mE(e), mT(Schema::table(QString::fromLatin1(table)))
    {
        if (!mT)
            throw AppError(VbErr::ItemNotFound, QString::fromLatin1(table));
        // A server gets a few thousand values a statement (fewer round
        // trips); SQLite about a hundred, since its parser and the driver's
        // naming of the bound values grow faster with a longer statement
        // than the saving on statements.
        const int values = e.kind() == EngineKind::Mysql ? 3000 : 120;
        mPerStatement = std::max(1, values / int(mT->columns.size()));
        mRow = QVector<Value>(mT->columns.size(), Value::null());
        mE.begin();
        mOpen = true;
    }
    ~TableWriter()
    {
        if (mOpen) {
            try {
                mE.rollback();
            } catch (...) {
            }
        }
    }
    TableWriter &set(const char *col, const Value &v)
    {
        auto it = mIndex.find(col);
        if (it == mIndex.end()) {
            const int i = mT->columnIndex(QString::fromLatin1(col));
            if (i < 0)
                throw AppError(VbErr::ItemNotFound, QStringLiteral("%1.%2").arg(mT->name, QString::fromLatin1(col)));
            it = mIndex.emplace(col, i).first;
        }
        mRow[it->second] = v;
        return *this;
    }
    void next()
    {
        for (int i = 0; i < mRow.size(); ++i) {
            mParams << mE.toStorage(mRow[i], mT->columns[i]);
            mRow[i] = Value::null();
        }
        ++mPending;
        ++mCount;
        if (mPending == mPerStatement)
            flush();
    }
    int finish()
    {
        flush();
        mE.commit();
        mOpen = false;
        return mCount;
    }

private:
    QString insertSql(int rows) const
    {
        QStringList names;
        for (const ColumnDef &c : mT->columns)
            names << c.name;
        const QString one = QLatin1Char('(') + QStringList(QVector<QString>(names.size(), QStringLiteral("?"))).join(QLatin1Char(',')) +
                            QLatin1Char(')');
        return QStringLiteral("INSERT INTO %1 (%2) VALUES %3")
            .arg(mT->name, names.join(QLatin1Char(',')), QStringList(QVector<QString>(rows, one)).join(QLatin1Char(',')));
    }
    void flush()
    {
        if (mPending == 0)
            return;
        if (mPending == mPerStatement) {
            if (mFullSql.isEmpty())
                mFullSql = insertSql(mPerStatement);
            mE.executeNative(mFullSql, mParams);
        } else {
            mE.executeNative(insertSql(mPending), mParams);
        }
        mParams.clear();
        mPending = 0;
    }

    Engine &mE;
    const TableDef *mT;
    int mPerStatement = 1;
    QVector<Value> mRow;
    std::unordered_map<const char *, int> mIndex; // by the literal's address
    QVector<QVariant> mParams;
    QString mFullSql;
    int mPending = 0;
    int mCount = 0;
    bool mOpen = false;
};

// ------------------------------------------------------------ the farm

// What this farmer grows and how.
struct CropPlan {
    const char *name;       // L_CROP.CROP_NM1
    int monthLo, monthHi;   // months the planting starts in
    int days;               // from start to end
    double harvestFrom;     // share of the days before harvest starts
    int plantType;          // L_KBN 11
    const char *product;    // M_PRD.PRD_NM of the shop, or none
    int priceLo, priceHi;   // yen a unit at the shop
    int shipUnit;           // L_KBN 12
    const char *unitNm;     // how a shipment is counted
};

const CropPlan kPlans[] = {
    {"トマト", 2, 3, 170, 0.50, 2, "トマト", 250, 400, 5, "パック"},
    {"ミニトマト", 2, 3, 180, 0.50, 2, "ミニトマト", 200, 350, 5, "パック"},
    {"きゅうり", 4, 7, 95, 0.45, 1, "きゅうり", 150, 250, 4, "袋"},
    {"なす", 4, 5, 160, 0.40, 1, "なす", 150, 250, 4, "袋"},
    {"ピーマン", 4, 5, 160, 0.40, 1, "ピーマン", 100, 200, 4, "袋"},
    {"ほうれんそう", 9, 10, 75, 0.60, 1, "ほうれんそう", 120, 200, 6, "束"},
    {"こまつな", 3, 10, 50, 0.60, 1, "こまつな", 100, 150, 6, "束"},
    {"だいこん", 8, 9, 95, 0.70, 1, "だいこん", 100, 200, 9, "本"},
    {"いちご", 9, 9, 250, 0.35, 2, "いちご", 350, 600, 5, "パック"},
    {"水稲", 5, 5, 150, 0.85, 5, "白米 5kg", 2000, 2600, 4, "袋"},
    {"きく", 4, 5, 150, 0.75, 1, "切り花（きく）", 300, 500, 6, "束"},
    {"うめ", 2, 2, 150, 0.70, 6, "梅干し", 400, 600, 4, "袋"},
    {"ブルーベリー", 3, 3, 170, 0.60, 6, "ブルーベリージャム", 500, 700, 4, "瓶"},
    {"キャベツ", 3, 8, 100, 0.75, 1, nullptr, 0, 0, 11, "玉"},
    {"はくさい", 8, 9, 95, 0.75, 1, nullptr, 0, 0, 11, "玉"},
    {"ブロッコリー", 8, 8, 100, 0.75, 1, nullptr, 0, 0, 10, "株"},
    {"えだまめ", 5, 6, 90, 0.80, 1, nullptr, 0, 0, 4, "袋"},
    {"とうもろこし", 4, 5, 95, 0.80, 3, nullptr, 0, 0, 9, "本"},
    {"たまねぎ", 10, 11, 220, 0.85, 1, nullptr, 0, 0, 1, "kg"},
    {"ばれいしょ", 3, 3, 105, 0.80, 1, nullptr, 0, 0, 1, "kg"},
    {"ねぎ", 4, 4, 200, 0.70, 1, nullptr, 0, 0, 6, "束"},
};

QVector<QString> fieldsOf(int plantType)
{
    switch (plantType) {
    case 2: return list({"ハウス1号", "ハウス2号", "ハウス3号"});
    case 3: return list({"下の畑", "川沿いの畑"});
    case 5: return list({"前の田", "裏の田", "沢の田"});
    case 6: return list({"梅林", "東の園"});
    default: return list({"上の畑", "下の畑", "川沿いの畑", "山の畑", "家の前の畑"});
    }
}

struct Planting {
    int plan = 0;          // index into the usable plans
    QString crop, field, name;
    int year = 0;
    int start = 0, end = 0, harvest = 0; // day numbers from firstDay()
    int plantType = 1;
    double area = 0;
    int prdId = 0;
    QString prdNm;
    int defDays = 3;
    int id = 0;
};

struct Slip {
    int day = 0;
    int minute = 0;        // when it was written that day
    int dAcc = 0, dOptKbn = 0, dOptId = 0;
    QString dOptNm;
    int cAcc = 0, cOptKbn = 0, cOptId = 0;
    QString cOptNm;
    QString ctr, notes;
    qint64 amt = 0;        // yen
    int id = 0;
};

struct Lot {
    int chemi = 0;         // index into Lookups::chemis
    int day = 0;
    QString shop;
    double purQty = 0;
    int purUnit = 1;       // L_CHEMI_UNIT
    int baseUnit = 1;      // g or mL
    double capacity = 0;   // in the base unit
    double used = 0;
    qint64 amt = 0;
    int slip = -1;
    int id = 0;
};

struct Shipment {
    int day = 0;
    int planting = 0;
    int price = 0, shipQty = 0, rtnQty = 0, dsc = 0;
    qint64 sales = 0, fee = 0;
    bool plas = false;
    QString notes;
    int slipS = -1, slipF = -1;
    int line = -1;
    int id = 0;
};

struct Line {
    int day = 0;
    quint32 order = 0;     // place within the day
    int planting = -1;
    int kind = 13;
    QString notes;
    int lot = -1;
    double qty = 0;
    int unit = 0;
    QString purpose;
    int ship = -1;
    int slip = -1;
    int dtlNo = 0;
};

constexpr int kDays = 3653; // 2016-01-01 .. 2025-12-31

QDate dayDate(int day) { return firstDay().addDays(day); }
QDateTime dayTime(int day, int minute = 0)
{
    return QDateTime(dayDate(day), QTime(minute / 60, minute % 60), Qt::UTC);
}
int dayOf(const QDate &d) { return int(firstDay().daysTo(d)); }

// The farm's year: how busy a month is in the fields.
const double kMonthWork[13] = {0, 0.35, 0.45, 0.9, 1.2, 1.3, 1.2, 1.2, 1.1, 1.1, 1.0, 0.7, 0.45};
const double kMonthSpray[13] = {0, 0.02, 0.05, 0.4, 0.9, 1.3, 1.4, 1.5, 1.4, 1.0, 0.5, 0.15, 0.03};

int drawDay(Rng &rng, const double *monthWeight)
{
    for (;;) {
        const int day = rng.range(0, kDays - 1);
        if (rng.uniform() * 1.5 < monthWeight[dayDate(day).month()])
            return day;
    }
}

// ------------------------------------------------------------ the diary page

// Mean temperature of a mid-month day in an inland town of central Japan.
const double kMonthMean[12] = {2.8, 3.9, 7.6, 13.1, 17.9, 21.6, 25.4, 26.6, 22.8, 16.9, 10.8, 5.4};

double meanTemperature(const QDate &d)
{
    // linear between the middles of the months
    const int m = d.month() - 1;
    const double pos = (d.day() - 15.0) / 30.0;
    const int other = pos >= 0 ? (m + 1) % 12 : (m + 11) % 12;
    const double w = std::fabs(pos);
    return kMonthMean[m] * (1 - w) + kMonthMean[other] * w;
}

// Weights of the weather codes 1..10 (L_KBN 10) by month.
QVector<double> weatherWeights(int month)
{
    //          晴れ くもり 雨  雪  晴曇 曇雨 晴後雨 雨後晴 霧 雷雨
    QVector<double> w{30, 20, 12, 0, 16, 8, 4, 4, 2, 0};
    switch (month) {
    case 1:
    case 2: w = {34, 20, 5, 9, 16, 3, 2, 2, 1, 0}; break;
    case 12: w = {34, 22, 6, 4, 16, 4, 2, 2, 1, 0}; break;
    case 6: w = {12, 22, 30, 0, 8, 16, 4, 5, 1, 2}; break;
    case 7: w = {30, 18, 14, 0, 16, 8, 4, 4, 0, 6}; break;
    case 8: w = {42, 14, 8, 0, 18, 5, 4, 3, 0, 6}; break;
    case 9: w = {24, 20, 20, 0, 14, 10, 4, 4, 1, 3}; break;
    case 10:
    case 11: w = {34, 20, 10, 0, 18, 6, 3, 3, 5, 0}; break;
    default: break;
    }
    return w;
}

int seasonOf(int month)
{
    if (month == 12 || month <= 2)
        return 0;
    if (month <= 5)
        return 1;
    if (month == 6)
        return 2;
    if (month <= 8)
        return 3;
    return 4;
}

const QVector<QVector<QString>> &seasonLines()
{
    static const QVector<QVector<QString>> lines{
        list({"霜で畑が真っ白。ハウスの保温を確認した", "朝の冷え込みが厳しい。水道管の凍結に注意",
              "日中は日差しがあって少し暖かい", "農閑期なので帳簿の整理を進める", "来年の作付計画を考える",
              "種苗カタログを眺めて品種を選ぶ", "ハウスの中は昼間２０度を超えた", "北風が強くてビニールがばたついた",
              "確定申告の準備を始める", "漬物用の白菜がよく漬かった", "いちごの花が咲き始めた",
              "農機具の手入れをして一日が終わった"}),
        list({"ウグイスの声を聞いた", "畑の土がやわらかくなってきた", "苗の生育がそろってきた",
              "桜が満開。遅霜に気をつけたい", "夏野菜の定植準備で忙しい", "ツバメが巣作りを始めた",
              "風が強く、トンネルのすそを押さえた", "日差しが強くなってきた。ハウスの換気に注意",
              "田植えの段取りを家族と相談", "直売所に春野菜が並び始めた", "蛙の声がにぎやかになった",
              "新緑がきれいな一日"}),
        list({"梅雨入り。畑がぬかるんで作業が進まない", "湿気が多く病気が心配", "雨の合間に急いで収穫した",
              "紫陽花がきれいに咲いた", "晴れ間に草刈りを片付けた", "長雨で畝間に水がたまった",
              "ハウスの中は蒸し暑い", "梅を漬ける準備をする"}),
        list({"朝から蒸し暑い。こまめに水分補給", "夕立で少し涼しくなった", "早朝に収穫を終えて暑さを避けた",
              "セミの声がにぎやか", "かん水が追いつかないほど乾いている", "直売所でトマトがよく売れた",
              "台風の進路が気になる", "お盆の出荷で大忙し", "夕方、畑に赤とんぼが飛んでいた",
              "熱中症に気をつけて昼は休んだ", "夜になっても気温が下がらない"}),
        list({"朝晩が冷えてきた", "稲刈りの段取りを考える", "新米の出来がよい", "秋晴れで作業がはかどった",
              "台風一過で青空が広がった", "柿が色づいてきた", "落ち葉を集めて堆肥に積んだ",
              "秋冬野菜の生育が順調", "初霜の予報。寒冷紗を準備する", "直売所の秋祭りに出品した",
              "日が短くなって作業時間が足りない", "虫の声が聞こえる夜"}),
    };
    return lines;
}

const QVector<QString> &rainLines()
{
    static const QVector<QString> l = list({"雨で外の作業は休み。資材の整理をした", "久しぶりのまとまった雨で畑が潤った",
                                            "雨音を聞きながら帳簿をつけた", "雨のためハウス内の作業だけにした",
                                            "午後から雨。濡れる前に収穫を終えた", "雨具を着て見回りをした"});
    return l;
}
const QVector<QString> &snowLines()
{
    static const QVector<QString> l = list({"雪が積もった。ハウスの雪下ろしをした", "雪で一面真っ白。作業は休み",
                                            "雪かきで午前中が終わった", "ハウスの暖房を強めた"});
    return l;
}

const QVector<QString> &noteLines()
{
    static const QVector<QString> l =
        list({"近所の方から堆肥を分けてもらった。お礼に野菜を届ける", "農協の講習会に参加。病害虫の発生予察について",
              "直売所の出荷者会議。値札の貼り方の統一について話し合った", "軽トラックの車検の予約をした",
              "土壌診断の結果が届いた。石灰を控えめにする", "雨量計の記録: 前日から 25mm",
              "来客あり。農業体験の相談", "市の補助金の申請書類をそろえた",
              "ハウスのビニール張り替えの見積もりを依頼", "孫が収穫を手伝ってくれた"});
    return l;
}

// ------------------------------------------------------------ work lines

QString fmt(const QString &pattern, const QString &field, const QString &crop)
{
    QString s = pattern;
    s.replace(QStringLiteral("{F}"), field);
    s.replace(QStringLiteral("{C}"), crop);
    return s;
}

const QVector<QString> &kindNotes(int kind)
{
    static const QHash<int, QVector<QString>> notes{
        {1, list({"{F}を耕うん。{C}の植え付け準備", "{F}をトラクターで荒起こし", "{F}の畝立て"})},
        {2, list({"{C}を播種（{F}）", "{C}をセルトレイに播種", "{C}の種まき。発芽をそろえるため覆土は薄め"})},
        {3, list({"{C}の苗を定植（{F}）", "{F}に{C}を定植。活着良好", "{C}の補植"})},
        {4, list({"{C}に追肥（化成肥料）", "{F}に元肥を散布", "{C}に液肥をかん注"})},
        {6, list({"{F}の通路を草刈り", "{C}の株元を除草", "{F}のあぜ草刈り"})},
        {7, list({"{C}を収穫", "{C}の収穫。品質良好", "{C}を収穫、選別"})},
        {9, list({"{C}にかん水", "{F}をかん水チューブで散水", "{C}に朝夕かん水"})},
        {10, list({"{C}の誘引と芽かき", "{C}の整枝", "{C}のわき芽取り"})},
        {11, list({"{C}の摘果", "{C}の摘花", "{C}の摘葉"})},
        {12, list({"{F}の見回り", "{C}の生育確認", "{F}の排水路を掃除", "{C}の支柱を点検"})},
        {13, list({"資材の片付け", "農機具の点検と給油", "倉庫の整理", "育苗ハウスの修繕"})},
    };
    static const QVector<QString> none = list({"作業"});
    auto it = notes.find(kind);
    return it == notes.end() ? none : *it;
}

// The kinds of work that fit a planting at that point of its life.
int drawKind(Rng &rng, const Planting *p, int day)
{
    if (!p)
        return rng.pick(QVector<int>{1, 12, 13, 13});
    const double f = double(day - p->start) / std::max(1, p->end - p->start);
    if (f < 0.12)
        return rng.pick(QVector<int>{1, 2, 3, 3, 4, 9});
    if (day < p->harvest)
        return rng.pick(QVector<int>{4, 6, 6, 9, 9, 10, 10, 11, 12, 12, 13});
    return rng.pick(QVector<int>{7, 7, 7, 6, 9, 10, 12});
}

// Expense accounts and what the farm pays on them.
struct Expense {
    int acc;
    double weight;
    int lo, hi;
    QVector<const char *> notes;
    QVector<const char *> to;
};

const QVector<Expense> kExpenses = {
    {4100, 1, 5000, 80000, {"固定資産税", "軽トラック自動車税", "収入印紙"}, {"山里市役所", "緑川県税事務所", "郵便局"}},
    {4110, 6, 500, 15000, {"種子代", "苗代", "種いも代"}, {"緑川やまざと農協", "たねの森種苗店"}},
    {4130, 8, 1500, 30000, {"化成肥料", "堆肥", "苦土石灰", "有機配合肥料"}, {"緑川やまざと農協", "あおば農業資材店"}},
    {4150, 3, 800, 25000, {"剪定ばさみ", "鍬", "収穫かご", "噴霧器の部品"}, {"山里ホームセンター", "あおば農業資材店"}},
    {4170, 10, 300, 20000, {"マルチフィルム", "支柱", "防虫ネット", "誘引テープ", "出荷袋", "パック"}, {"緑川やまざと農協", "山里ホームセンター", "あおば農業資材店"}},
    {4180, 2, 3000, 80000, {"耕うん機修理", "ハウス補修", "軽トラック修理", "ポンプ修理"}, {"山里農機", "やまざと自動車整備"}},
    {4190, 9, 1000, 20000, {"軽油", "ガソリン", "電気代", "灯油", "ハウス暖房用重油"}, {"山里石油", "緑川電力"}},
    {4200, 2, 500, 8000, {"長靴", "作業手袋", "雨合羽", "作業着"}, {"山里ホームセンター", "ワークショップやまざと"}},
    {4210, 1, 10000, 60000, {"農業共済掛金", "園芸施設共済掛金"}, {"緑川県農業共済組合"}},
    {4230, 6, 300, 15000, {"段ボール", "宅配便送料", "値札シール", "結束テープ"}, {"緑川やまざと農協", "山里運送"}},
    {4240, 3, 4000, 30000, {"収穫作業の手伝い", "草刈りの手伝い", "田植えの手伝い"}, {"近所の方"}},
    {4250, 1, 500, 10000, {"借入金利息"}, {"緑川やまざと農協"}},
    {4260, 1, 10000, 100000, {"田の借地料", "畑の借地料", "農機具リース料"}, {"地主", "山里農機"}},
    {4280, 1, 1000, 6000, {"講習会参加費", "農業雑誌"}, {"緑川県農業振興センター", "山里書店"}},
    {4290, 3, 200, 5000, {"雑費", "会費", "ごみ処理手数料"}, {"生産者部会", "山里市役所"}},
    {4500, 3, 2000, 9000, {"電話代", "インターネット料金", "切手代"}, {"通信会社", "郵便局"}},
    {4540, 4, 200, 8000, {"文具", "コピー用紙", "電池", "ゴム手袋"}, {"山里ホームセンター", "文具のまつだ"}},
    {4550, 2, 300, 5000, {"会議出席の交通費", "駐車場代"}, {"交通機関"}},
};

QString pickText(Rng &rng, const QVector<const char *> &items) { return QString::fromUtf8(rng.pick(items)); }

qint64 roundTo(qint64 yen, int step) { return std::max<qint64>(step, (yen + step / 2) / step * step); }

// ------------------------------------------------------------ generation

class Farm {
public:
    Farm(const Lookups &l, const Targets &t, quint64 seed) : L(l), T(t), rng(seed)
    {
        for (const CropPlan &p : kPlans)
            if (L.cropNm2.contains(S(p.name)))
                usable << &p;
    }

    void build()
    {
        makePlantings();
        makeLots();
        makeShipments();
        makeSprayLines();
        makeOtherLines();
        makeCollections();
        makeOtherSlips();
        numberSlips();
        numberLines();
    }

    Summary write(Engine &e);

private:
    const QVector<const CropPlan *> &plans() const { return usable; }

    int addSlip(int day, int dAcc, int cAcc, qint64 amt, const QString &ctr, const QString &notes, int planting = -1,
                int lot = -1)
    {
        Slip s;
        s.day = day;
        s.minute = rng.range(17 * 60, 21 * 60 + 59);
        s.dAcc = dAcc;
        s.cAcc = cAcc;
        s.amt = amt;
        s.ctr = ctr;
        s.notes = notes;
        auto option = [&](int acc, int &kbn, int &id, QString &nm) {
            const int opt = L.acc.value(acc).opt;
            kbn = opt;
            if (opt == 2 && planting >= 0) {
                id = plantings[planting].id;
                nm = plantings[planting].name;
            } else if (opt == 3 && lot >= 0) {
                id = lots[lot].id;
                nm = L.chemis[lots[lot].chemi].nm;
            }
        };
        option(dAcc, s.dOptKbn, s.dOptId, s.dOptNm);
        option(cAcc, s.cOptKbn, s.cOptId, s.cOptNm);
        slips << s;
        return slips.size() - 1;
    }

    int plantingAt(int day)
    {
        const QVector<int> &a = active[day];
        return a.isEmpty() ? -1 : a[rng.range(0, a.size() - 1)];
    }
    // The planting an expense of that day belongs to: one in the field, else
    // the last one started.
    int plantingFor(int day)
    {
        const int p = plantingAt(day);
        if (p >= 0)
            return p;
        int best = -1;
        for (int i = 0; i < plantings.size(); ++i)
            if (plantings[i].start <= day && (best < 0 || plantings[i].start > plantings[best].start))
                best = i;
        return best >= 0 ? best : 0;
    }

    void makePlantings()
    {
        if (usable.isEmpty())
            throw AppError(VbErr::InvalidCall, QStringLiteral("L_CROP に栽培計画の作物がありません。"));
        const int perYear = std::max(1, T.plantings / 10);
        for (int year = 2016; year <= 2025; ++year) {
            for (int k = 0; k < perYear && plantings.size() < T.plantings; ++k) {
                const int planIdx = (k + year) % usable.size();
                const CropPlan &cp = *usable[planIdx];
                Planting p;
                p.plan = planIdx;
                p.crop = S(cp.name);
                p.year = year;
                p.plantType = cp.plantType;
                const int month = rng.range(cp.monthLo, cp.monthHi);
                QDate start(year, month, rng.range(1, 28));
                start = start.addDays(k / usable.size() * rng.range(14, 28)); // a later plot of the same crop
                if (start.year() != year)
                    start = QDate(year, 12, rng.range(1, 20));
                p.start = dayOf(start);
                const int days = int(cp.days * rng.around(1.0, 0.1));
                p.end = p.start + days;
                p.harvest = p.start + int(days * cp.harvestFrom);
                p.field = rng.pick(fieldsOf(cp.plantType));
                const QString season = month <= 2 ? S("冬") : month <= 5 ? S("春") : month <= 8 ? S("夏") : S("秋");
                p.name = QStringLiteral("%1年%2 %3（%4）").arg(year).arg(season, p.crop, p.field);
                p.area = cp.plantType == 5 ? rng.range(8, 20) * 100.0 : rng.range(3, 40) * 10.0;
                if (cp.product) {
                    const auto it = L.products.find(S(cp.product));
                    if (it != L.products.end()) {
                        p.prdId = it->id;
                        p.prdNm = it->nm;
                        p.defDays = it->defDays;
                    }
                }
                plantings << p;
            }
        }
        std::stable_sort(plantings.begin(), plantings.end(),
                         [](const Planting &a, const Planting &b) { return a.start < b.start; });
        for (int i = 0; i < plantings.size(); ++i)
            plantings[i].id = i + 1;
        active.resize(kDays);
        for (int i = 0; i < plantings.size(); ++i)
            for (int d = std::max(0, plantings[i].start); d <= std::min(kDays - 1, plantings[i].end); ++d)
                active[d] << i;
    }

    void makeLots()
    {
        const QVector<QString> shops = list({"緑川やまざと農協 資材センター", "あおば農業資材店", "山里ホームセンター"});
        const int perYear = std::max(1, T.lots / 10);
        for (int year = 2016; year <= 2025; ++year) {
            for (int k = 0; k < perYear && lots.size() < T.lots; ++k) {
                Lot lot;
                lot.chemi = rng.range(0, L.chemis.size() - 1);
                const Chemi &c = L.chemis[lot.chemi];
                int month;
                do
                    month = rng.range(2, 9);
                while (rng.uniform() * 1.5 > kMonthSpray[month] + 0.3);
                lot.day = dayOf(QDate(year, month, rng.range(1, 28)));
                lot.shop = rng.pick(shops);
                const QString t = c.typeCode;
                const bool liquid = t == QLatin1String("F01") || t == QLatin1String("F04") || t == QLatin1String("F05") ||
                                    t == QLatin1String("F09");
                if (liquid) {
                    lot.baseUnit = 4; // mL
                    if (t == QLatin1String("F09") || (t == QLatin1String("F05") && rng.chance(0.5))) {
                        lot.purQty = 5;
                        lot.purUnit = 5;
                    } else if (rng.chance(0.5)) {
                        lot.purQty = 500;
                        lot.purUnit = 4;
                    } else {
                        lot.purQty = 1;
                        lot.purUnit = 5;
                    }
                } else {
                    lot.baseUnit = 1; // g
                    if (t == QLatin1String("F07") || t == QLatin1String("F08")) {
                        lot.purQty = 3;
                        lot.purUnit = 2;
                    } else if (rng.chance(0.6)) {
                        lot.purQty = 500;
                        lot.purUnit = 1;
                    } else {
                        lot.purQty = 1;
                        lot.purUnit = 2;
                    }
                }
                lot.capacity = lot.purQty * ((lot.purUnit == 2 || lot.purUnit == 5) ? 1000.0 : 1.0);
                lot.amt = roundTo(qint64(rng.around(lot.capacity >= 3000 ? 5200 : 3200, 2200)), 10);
                lots << lot;
            }
        }
        std::stable_sort(lots.begin(), lots.end(), [](const Lot &a, const Lot &b) { return a.day < b.day; });
        for (int i = 0; i < lots.size(); ++i) {
            Lot &lot = lots[i];
            lot.id = i + 1;
            const bool onCredit = lot.shop.startsWith(S("緑川やまざと農協")) && L.hasAcc(2000);
            lot.slip = addSlip(lot.day, 1130, onCredit ? 2000 : 1000, lot.amt, lot.shop,
                               QStringLiteral("%1 %2%3").arg(L.chemis[lot.chemi].nm).arg(lot.purQty).arg(unitName(lot.purUnit)),
                               -1, i);
        }
    }

    static QString unitName(int unit)
    {
        switch (unit) {
        case 1: return QStringLiteral("g");
        case 2: return QStringLiteral("kg");
        case 3: return QStringLiteral("mg");
        case 4: return QStringLiteral("mL");
        case 5: return QStringLiteral("L");
        }
        return QString();
    }

    void makeShipments()
    {
        QVector<int> candidates;
        QVector<double> weights;
        for (int i = 0; i < plantings.size(); ++i) {
            const Planting &p = plantings[i];
            const int from = std::max(0, p.harvest), to = std::min(kDays - 1, p.end);
            if (p.prdId == 0 || to < from)
                continue;
            candidates << i;
            weights << double(to - from + 1);
        }
        if (candidates.isEmpty())
            throw AppError(VbErr::InvalidCall, QStringLiteral("出荷できる作付がありません（M_PRD と作物が合いません）。"));
        for (int n = 0; n < T.shipments; ++n) {
            Shipment s;
            s.planting = candidates[rng.weighted(weights)];
            const Planting &p = plantings[s.planting];
            const CropPlan &cp = *plans()[p.plan];
            s.day = rng.range(std::max(0, p.harvest), std::min(kDays - 1, p.end));
            s.price = int(roundTo(rng.range(cp.priceLo, cp.priceHi), 10));
            s.shipQty = cp.priceLo >= 1000 ? rng.range(2, 8) : rng.range(4, 30);
            if (rng.chance(0.12))
                s.rtnQty = rng.range(1, std::max(1, s.shipQty / 5));
            if (rng.chance(0.05))
                s.dsc = int(roundTo(rng.range(50, 300), 10));
            s.sales = qint64(s.price) * (s.shipQty - s.rtnQty) - s.dsc;
            if (s.sales < 0)
                s.sales = 0;
            s.fee = qint64(std::llround(double(s.sales) * L.feeRt / 100.0));
            s.plas = cp.plantType == 2 && rng.chance(0.3);
            if (rng.chance(0.08))
                s.notes = rng.pick(list({"朝採り", "規格外を値下げ", "特売日", "午後に追加出荷", "見切り品あり"}));
            ships << s;
        }
        std::stable_sort(ships.begin(), ships.end(), [](const Shipment &a, const Shipment &b) { return a.day < b.day; });
        for (int i = 0; i < ships.size(); ++i) {
            Shipment &s = ships[i];
            s.id = i + 1;
            const Planting &p = plantings[s.planting];
            const QString what = QStringLiteral("%1 %2%3").arg(p.prdNm).arg(s.shipQty - s.rtnQty).arg(S(plans()[p.plan]->unitNm));
            s.slipS = addSlip(s.day, L.shopAcc, 4000, s.sales, L.shopNm, QStringLiteral("出荷 ") + what);
            s.slipF = addSlip(s.day, 4520, L.shopAcc, s.fee, L.shopNm, QStringLiteral("販売手数料 ") + what, s.planting);
            Line line;
            line.day = s.day;
            line.order = quint32(rng.next());
            line.planting = s.planting;
            line.kind = 8;
            line.notes = QStringLiteral("%1を直売所へ出荷（%2）").arg(p.crop, what);
            line.ship = i;
            s.line = lines.size();
            lines << line;
        }
    }

    void makeSprayLines()
    {
        int made = 0;
        for (int attempt = 0; made < T.sprayLines && attempt < T.sprayLines * 50; ++attempt) {
            const int day = drawDay(rng, kMonthSpray);
            const int planting = plantingAt(day);
            if (planting < 0)
                continue;
            // The oldest lot bought in the last two years that has enough left.
            int lotIdx = -1;
            for (int i = 0; i < lots.size() && lots[i].day <= day; ++i)
                if (lots[i].day >= day - 730 && lots[i].capacity - lots[i].used >= lots[i].capacity * 0.04) {
                    lotIdx = i;
                    break;
                }
            if (lotIdx < 0)
                continue;
            Lot &lot = lots[lotIdx];
            const Chemi &c = L.chemis[lot.chemi];
            const Planting &p = plantings[planting];
            Line line;
            line.day = day;
            line.order = quint32(rng.next());
            line.planting = planting;
            line.kind = 5;
            line.lot = lotIdx;
            line.unit = lot.baseUnit;
            const QString t = c.typeCode;
            double qty;
            if (t == QLatin1String("F07") || t == QLatin1String("F08") || t == QLatin1String("F10")) {
                qty = t == QLatin1String("F10") ? rng.range(50, 150) : rng.range(3, 15) * 100.0;
                line.notes = QStringLiteral("%1 %2に%3を散布").arg(p.field, p.crop, c.nm);
            } else {
                const int dilution = rng.pick(QVector<int>{500, 1000, 1000, 1500, 2000, 3000});
                const int water = rng.range(5, 20) * 10; // L
                qty = std::round(water * 1000.0 / dilution);
                line.notes = QStringLiteral("%1 %2 %3倍 %4L散布").arg(p.field, p.crop).arg(dilution).arg(water);
            }
            qty = std::min(qty, lot.capacity - lot.used);
            line.qty = qty;
            lot.used += qty;
            if (!c.purposes.isEmpty())
                line.purpose = rng.pick(c.purposes);
            lines << line;
            ++made;
        }
        sprayCount = made;
    }

    void makeOtherLines()
    {
        const int others = T.detailLines - lines.size();
        int linked = 0;
        for (int n = 0; n < others; ++n) {
            Line line;
            line.day = drawDay(rng, kMonthWork);
            line.order = quint32(rng.next());
            line.planting = plantingAt(line.day);
            const Planting *p = line.planting >= 0 ? &plantings[line.planting] : nullptr;
            line.kind = drawKind(rng, p, line.day);
            line.notes = fmt(rng.pick(kindNotes(line.kind)), p ? p->field : S("畑"), p ? p->crop : S("作物"));
            // Purchases written down with the day's work.
            int acc = 0;
            switch (line.kind) {
            case 2:
            case 3: acc = 4110; break;
            case 4: acc = 4130; break;
            case 6:
            case 10: acc = 4170; break;
            case 7: acc = 4240; break;
            default: break;
            }
            if (acc && p && linked < T.linkedSlips && rng.chance(0.35) && L.hasAcc(acc)) {
                const Expense *ex = nullptr;
                for (const Expense &e : kExpenses)
                    if (e.acc == acc)
                        ex = &e;
                const qint64 amt = roundTo(rng.range(ex->lo, ex->hi), 10);
                const bool credit = rng.chance(0.4) && L.hasAcc(2000);
                const QString to = pickText(rng, ex->to);
                line.slip = addSlip(line.day, acc, credit ? 2000 : 1000, amt, to,
                                    pickText(rng, ex->notes) + QStringLiteral("（") + p->crop + QStringLiteral("）"),
                                    line.planting);
                ++linked;
            }
            lines << line;
        }
    }

    // The shop pays the month's sales less its fee on the 10th of the next month.
    void makeCollections()
    {
        QMap<int, qint64> byMonth; // year*12+month-1
        for (const Shipment &s : ships) {
            const QDate d = dayDate(s.day);
            byMonth[d.year() * 12 + d.month() - 1] += s.sales - s.fee;
        }
        for (auto it = byMonth.begin(); it != byMonth.end(); ++it) {
            const QDate paid = QDate(it.key() / 12, it.key() % 12 + 1, 1).addMonths(1).addDays(9);
            if (paid > lastDay() || it.value() <= 0)
                continue;
            addSlip(dayOf(paid), 1010, L.shopAcc, it.value(), L.shopNm,
                    QStringLiteral("%1年%2月分 売上精算").arg(it.key() / 12).arg(it.key() % 12 + 1));
        }
    }

    void makeOtherSlips()
    {
        QVector<const Expense *> expenses;
        QVector<double> weights;
        for (const Expense &e : kExpenses)
            if (L.hasAcc(e.acc)) {
                expenses << &e;
                weights << e.weight;
            }
        const int count = T.slips - slips.size();
        for (int n = 0; n < count; ++n) {
            const int day = drawDay(rng, kMonthWork);
            const double r = rng.uniform();
            if (r < 0.66 && !expenses.isEmpty()) {
                const Expense &e = *expenses[rng.weighted(weights)];
                const double pay = rng.uniform();
                const int credit = pay < 0.5 ? 1000 : pay < 0.85 ? 1010 : 2000;
                const qint64 amt = roundTo(qint64(e.lo + (e.hi - e.lo) * std::pow(rng.uniform(), 2.0)), 10);
                addSlip(day, e.acc, L.hasAcc(credit) ? credit : 1000, amt, pickText(rng, e.to), pickText(rng, e.notes),
                        plantingFor(day));
            } else if (r < 0.76) {
                const double k = rng.uniform();
                if (k < 0.45)
                    addSlip(day, 1040, 4000, roundTo(rng.range(3000, 60000), 10), S("緑川やまざと農協"),
                            rng.pick(list({"農協出荷 野菜", "農協出荷 米", "市場出荷 キャベツ", "市場出荷 はくさい"})));
                else if (k < 0.6)
                    addSlip(day, 1400, 4010, roundTo(rng.range(500, 5000), 10), QString(), S("自家消費 野菜"));
                else if (k < 0.8)
                    addSlip(day, 1000, 4030, roundTo(rng.range(500, 20000), 10), rng.pick(list({"近所の方", "山里市役所", "緑川やまざと農協"})),
                            rng.pick(list({"作業受託料", "堆肥の販売", "農業体験の謝礼"})));
                else if (k < 0.92)
                    addSlip(day, 1010, 4050, roundTo(rng.range(10000, 150000), 100), S("山里市役所"),
                            rng.pick(list({"経営所得安定対策交付金", "環境保全型農業直接支払交付金", "中山間地域等直接支払交付金"})));
                else
                    addSlip(day, 1010, 4060, roundTo(rng.range(5000, 100000), 100), S("緑川県農業共済組合"), S("共済金"));
            } else {
                const double k = rng.uniform();
                if (k < 0.35)
                    addSlip(day, 1000, 1010, roundTo(rng.range(10000, 50000), 1000), S("緑川やまざと農協"), S("預金引出"));
                else if (k < 0.6)
                    addSlip(day, 2000, 1010, roundTo(rng.range(3000, 40000), 10), S("緑川やまざと農協"), S("購買未払金の引落し"));
                else if (k < 0.8)
                    addSlip(day, 1400, 1000, roundTo(rng.range(10000, 50000), 1000), QString(), S("生活費"));
                else if (k < 0.9)
                    addSlip(day, 1010, 2400, roundTo(rng.range(10000, 200000), 1000), QString(), S("家計から事業用口座へ"));
                else
                    addSlip(day, 1010, 1000, roundTo(rng.range(10000, 100000), 1000), S("緑川やまざと農協"), S("現金預入"));
            }
        }
    }

    // Slip numbers in the order they were written.
    void numberSlips()
    {
        QVector<int> order(slips.size());
        for (int i = 0; i < order.size(); ++i)
            order[i] = i;
        std::stable_sort(order.begin(), order.end(), [this](int a, int b) {
            return slips[a].day != slips[b].day ? slips[a].day < slips[b].day : slips[a].minute < slips[b].minute;
        });
        for (int i = 0; i < order.size(); ++i)
            slips[order[i]].id = i + 1;
    }

    // Line numbers of a day in the order of the work.
    void numberLines()
    {
        QVector<int> order(lines.size());
        for (int i = 0; i < order.size(); ++i)
            order[i] = i;
        std::stable_sort(order.begin(), order.end(), [this](int a, int b) {
            return lines[a].day != lines[b].day ? lines[a].day < lines[b].day : lines[a].order < lines[b].order;
        });
        int prevDay = -1, no = 0;
        for (int i : order) {
            no = lines[i].day == prevDay ? no + 1 : 1;
            prevDay = lines[i].day;
            lines[i].dtlNo = no;
        }
        lineOrder = order;
    }

    void stamps(TableWriter &w, int day)
    {
        const QDateTime in = dayTime(day, rng.range(17 * 60, 21 * 60 + 59));
        w.set("IDATE", Value(in));
        w.set("UDATE", Value(rng.chance(0.1) ? in.addDays(rng.range(0, 20)).addSecs(rng.range(0, 3600)) : in));
        w.set("LAST_TM", Value(S("NOUKA-PC")));
    }

    const Lookups &L;
    const Targets &T;
    Rng rng;
    QVector<const CropPlan *> usable; // the plans whose crop the work database knows
    QVector<Planting> plantings;
    QVector<QVector<int>> active;
    QVector<Lot> lots;
    QVector<Shipment> ships;
    QVector<Line> lines;
    QVector<int> lineOrder;
    QVector<Slip> slips;
    int sprayCount = 0;
};

Summary Farm::write(Engine &e)
{
    Summary sum;
    const Value fmr(1);

    {
        TableWriter w(e, "D_DIARY");
        for (int day = 0; day < kDays; ++day) {
            const QDate d = dayDate(day);
            const int wth = rng.weighted(weatherWeights(d.month())) + 1;
            const bool rainy = wth == 3 || wth == 6 || wth == 7 || wth == 10;
            const double mean = meanTemperature(d);
            double hi = mean + rng.around(5.5, 3) - (rainy ? 2.5 : 0);
            double lo = mean + rng.around(-5.0, 3) + (rainy ? 1.0 : 0);
            if (lo > hi - 1)
                lo = hi - 1;
            QString msg;
            if (wth == 4)
                msg = rng.pick(snowLines());
            else if (rainy && rng.chance(0.5))
                msg = rng.pick(rainLines());
            else
                msg = rng.pick(seasonLines()[seasonOf(d.month())]);
            w.set("FMR_ID", fmr)
                .set("WORK_DATE", Value(dayTime(day)))
                .set("WTH_ID", Value(wth))
                .set("LO_TMP", Value(std::round(lo * 10) / 10))
                .set("HI_TMP", Value(std::round(hi * 10) / 10))
                .set("ONE_MSG", Value(msg));
            if (rng.chance(0.2))
                w.set("NOTES1", Value(rng.pick(noteLines())));
            if (rng.chance(0.05))
                w.set("NOTES2", Value(QStringLiteral("最高 %1℃ / 最低 %2℃").arg(hi, 0, 'f', 1).arg(lo, 0, 'f', 1)));
            stamps(w, day);
            w.next();
        }
        sum.days = w.finish();
    }

    {
        TableWriter w(e, "D_PLANT");
        for (const Planting &p : plantings) {
            const CropPlan &cp = *plans()[p.plan];
            const QDate harvest = dayDate(p.harvest);
            w.set("PLANT_ID", Value(p.id))
                .set("PLANT_NM", Value(p.name))
                .set("YYYY", Value(p.year))
                .set("FMR_ID", fmr)
                .set("HARVEST_SCHD_YM", Value(harvest.toString(QStringLiteral("yyyy/MM"))))
                .set("CROP_NM", Value(p.crop))
                .set("CROP_NM1", Value(p.crop))
                .set("CROP_NM2", Value(L.cropNm2.value(p.crop)))
                .set("PLANT_TYPE", Value(p.plantType))
                .set("FIELD_NM", Value(p.field))
                .set("AREA", Value(p.area))
                .set("CROP_EST", Value(std::round(p.area * rng.around(3.0, 1.5))))
                .set("CROP_EST_UNIT", Value(1))
                .set("PLANT_DATE", Value(dayTime(p.start + (cp.plantType == 5 ? 0 : rng.range(0, 25)))))
                .set("START_DATE", Value(dayTime(p.start)))
                .set("END_DATE", Value(dayTime(p.end)))
                .set("SHIP_EST", Value(double(rng.range(5, 60) * 10)))
                .set("SHIP_EST_UNIT", Value(cp.shipUnit))
                .set("SHIP_SCHD_DATE1", Value(dayTime(p.harvest)))
                .set("SHIP_SCHD_DATE2", Value(dayTime(p.end)));
            if (p.prdId) {
                w.set("PRD_ID", Value(p.prdId)).set("PRD_NM", Value(p.prdNm));
            }
            if (rng.chance(0.3))
                w.set("NOTES1", Value(rng.pick(list({"昨年より株間を広げた", "新品種を試作", "連作のため土壌消毒済み",
                                                     "早生品種", "直売所向けに少量多品目", "防虫ネットで無農薬を目指す"}))));
            stamps(w, p.start);
            w.next();
        }
        sum.plantings = w.finish();
    }

    {
        TableWriter w(e, "D_CHEMI");
        for (const Lot &lot : lots) {
            const Chemi &c = L.chemis[lot.chemi];
            const double rate = (lot.purUnit == 2 || lot.purUnit == 5) ? 1000.0 : 1.0;
            const double usedQty = std::round(lot.used / rate * 1000.0) / 1000.0;
            const double restQty = std::round((lot.purQty - usedQty) * 1000.0) / 1000.0;
            w.set("FMR_ID", fmr)
                .set("CHEMI_ID", Value(lot.id))
                .set("CHEMI_NM", Value(c.nm))
                .set("REG_NO", Value(QString::number(c.regNo)))
                .set("USES", Value(c.uses))
                .set("MAKER_NM", Value(c.makerNm))
                .set("CHEMI_TYPE", Value(c.type))
                .set("CHEMI_KIND", Value(c.kind))
                .set("PUR_DATE", Value(dayTime(lot.day)))
                .set("PUR_SHOP", Value(lot.shop))
                .set("PUR_QTY", Value(lot.purQty))
                .set("PUR_UNIT", Value(lot.purUnit))
                .set("ACC_ID", Value(1130))
                .set("PUR_AMT", Value(Currency::fromInt(lot.amt)))
                .set("USED_QTY", Value(usedQty))
                .set("REST_QTY", Value(restQty))
                .set("LEDGE_ID", Value(slips[lot.slip].id))
                .set("CHK_FLG", Value(restQty <= 0));
            stamps(w, lot.day);
            w.next();
        }
        sum.lots = w.finish();
    }

    {
        TableWriter w(e, "D_SHIP");
        for (const Shipment &s : ships) {
            const Planting &p = plantings[s.planting];
            w.set("FMR_ID", fmr)
                .set("SHIP_ID", Value(s.id))
                .set("SHIP_DATE", Value(dayTime(s.day)))
                .set("PLANT_ID", Value(p.id))
                .set("DTL_NO", Value(lines[s.line].dtlNo))
                .set("SHOP_ID", Value(1))
                .set("PRD_ID", Value(p.prdId))
                .set("PRD_NM", Value(p.prdNm))
                .set("LOCATE", L.locate.isEmpty() ? Value::null() : Value(L.locate))
                .set("PLAS", Value(s.plas))
                .set("ACC_ID", Value(L.shopAcc))
                .set("SHOP_PRC", Value(Currency::fromInt(s.price)))
                .set("SHIP_QTY", Value(double(s.shipQty)))
                .set("RTN_QTY", Value(double(s.rtnQty)))
                .set("SALES_QTY", Value(double(s.shipQty - s.rtnQty)))
                .set("DSC_AMT", Value(Currency::fromInt(s.dsc)))
                .set("SALES_AMT", Value(Currency::fromInt(s.sales)))
                .set("FEE_RT", Value(L.feeRt))
                .set("FEE_AMT", Value(Currency::fromInt(s.fee)))
                .set("PRINT_DATE", Value(dayTime(s.day, 6 * 60 + rng.range(0, 50))))
                .set("EXP_DATE", Value(dayTime(s.day + p.defDays)))
                .set("LEDGE_ID_S", Value(slips[s.slipS].id))
                .set("LEDGE_ID_F", Value(slips[s.slipF].id));
            if (!s.notes.isEmpty())
                w.set("NOTES", Value(s.notes));
            stamps(w, s.day);
            w.next();
        }
        sum.shipments = w.finish();
    }

    {
        TableWriter w(e, "D_LEDGE");
        QVector<int> order(slips.size());
        for (int i = 0; i < slips.size(); ++i)
            order[slips[i].id - 1] = i;
        for (int i : order) {
            const Slip &s = slips[i];
            w.set("FMR_ID", fmr)
                .set("LEDGE_ID", Value(s.id))
                .set("LEDGE_DATE", Value(dayTime(s.day)))
                .set("D_ACC_ID", Value(s.dAcc))
                .set("D_OPT_KBN", Value(s.dOptKbn))
                .set("C_ACC_ID", Value(s.cAcc))
                .set("C_OPT_KBN", Value(s.cOptKbn))
                .set("AMT", Value(Currency::fromInt(s.amt)));
            if (s.dOptId) {
                w.set("D_OPT_ID", Value(s.dOptId)).set("D_OPT_NM", Value(s.dOptNm));
            }
            if (s.cOptId) {
                w.set("C_OPT_ID", Value(s.cOptId)).set("C_OPT_NM", Value(s.cOptNm));
            }
            if (!s.ctr.isEmpty())
                w.set("CTR_NM", Value(s.ctr));
            if (!s.notes.isEmpty())
                w.set("NOTES", Value(s.notes));
            const QDateTime in = dayTime(s.day, s.minute);
            w.set("IDATE", Value(in)).set("UDATE", Value(in)).set("LAST_TM", Value(S("NOUKA-PC")));
            w.next();
        }
        sum.slips = w.finish();
    }

    {
        TableWriter w(e, "D_DIARY_DTL");
        for (int i : lineOrder) {
            const Line &l = lines[i];
            w.set("FMR_ID", fmr)
                .set("WORK_DATE", Value(dayTime(l.day)))
                .set("DTL_NO", Value(l.dtlNo))
                .set("WORK_KBN", Value(l.kind))
                .set("WORK_NM", Value(L.kind(l.kind)))
                .set("NOTES", Value(l.notes));
            if (l.planting >= 0)
                w.set("PLANT_ID", Value(plantings[l.planting].id));
            if (l.lot >= 0) {
                const Lot &lot = lots[l.lot];
                const Chemi &c = L.chemis[lot.chemi];
                w.set("CHEMI_ID", Value(lot.id))
                    .set("CHEMI_NM", Value(c.nm))
                    .set("REG_NO", Value(QString::number(c.regNo)))
                    .set("QTY", Value(l.qty))
                    .set("UNIT_ID", Value(l.unit));
                if (!l.purpose.isEmpty())
                    w.set("PURPOSE", Value(l.purpose));
            }
            if (l.ship >= 0)
                w.set("SHIP_ID", Value(ships[l.ship].id));
            if (l.slip >= 0)
                w.set("LEDGE_ID", Value(slips[l.slip].id));
            w.next();
        }
        sum.detailLines = w.finish();
    }
    sum.sprayLines = sprayCount;
    return sum;
}

} // namespace

Summary generate(Engine &data, Engine &work, Engine &master, const Targets &targets, quint64 seed)
{
    QElapsedTimer timer;
    timer.start();
    const Lookups lookups = readLookups(work, master);
    Farm farm(lookups, targets, seed);
    farm.build();
    Summary sum = farm.write(data);
    sum.seconds = timer.elapsed() / 1000.0;
    return sum;
}

}
