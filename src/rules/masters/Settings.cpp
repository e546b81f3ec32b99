#include "rules/masters/Settings.h"

#include "base/AppError.h"
#include "store/Database.h"
#include "store/Stmt.h"

namespace LocalSettings {

namespace {

// key, CTRL_TYPE given when the row is made
const struct {
    const char *key;
    int type;
} kKeys[] = {{"USE_TYPE", 4}, {"DEF_FMR_ID", 4}, {"DEF_SHOP_ID", 4}, {"BACK_DIR", 10}, {"WINDOW_STA", 1}};

Value numberText(const QString &t) { return t.isEmpty() ? Value::null() : Value(Value(Value(t).toDouble()).toText()); }

} // namespace

Values load()
{
    Values out;
    RecordsetPtr rs = gINI->GetFwdOnlyRst(QStringLiteral("SELECT S_CTRL.* FROM S_CTRL"));
    for (; !rs->eof(); rs->MoveNext()) {
        const QString key = Nz(rs->Fields(QStringLiteral("CTRL_CD")), Value(QString())).toText();
        const Value v = rs->Fields(QStringLiteral("CTRL_VALUE"));
        const QString text = v.isNull() ? QString() : v.toText();
        if (key == QLatin1String("USE_TYPE"))
            out.useType = (v.isNull() || !IsNumeric(v)) ? 0 : Value(text).toLong();
        else if (key == QLatin1String("DEF_FMR_ID"))
            out.farmer = text;
        else if (key == QLatin1String("DEF_SHOP_ID"))
            out.shop = text;
        else if (key == QLatin1String("BACK_DIR"))
            out.backupDir = text;
        else if (key == QLatin1String("WINDOW_STA"))
            out.maximised = !v.isNull() && Value(text).toBool();
    }
    rs->Close();
    return out;
}

void save(const Values &v)
{
    const Value values[] = {
        v.useType == 1 || v.useType == 2 ? Value(QString::number(v.useType)) : Value::null(),
        numberText(v.farmer),
        numberText(v.shop),
        textOrNull(v.backupDir),
        Value(Value(v.maximised).toText()),
    };
    RecordsetPtr rs = gINI->GetDynamicRst(QStringLiteral("SELECT S_CTRL.* FROM S_CTRL"));
    for (int i = 0; i < int(std::size(kKeys)); ++i) {
        const QString key = QString::fromLatin1(kKeys[i].key);
        if (rs->RecordCount() > 0) {
            rs->MoveFirst();
            rs->Find(Stmt("CTRL_CD=?").text(key));
        }
        if (rs->RecordCount() == 0 || rs->eof()) {
            rs->AddNew();
            rs->SetField(QStringLiteral("CTRL_CD"), Value(key));
            rs->SetField(QStringLiteral("CTRL_TYPE"), Value(kKeys[i].type));
        }
        rs->SetField(QStringLiteral("CTRL_VALUE"), values[i]);
        rs->Update();
    }
    rs->Close();
}

} // namespace LocalSettings

namespace ConnectionSettings {

QStringList load(const QStringList &keys)
{
    QStringList out;
    for (const QString &k : keys)
        out << textOf(gINI->GetCtrl(k));
    return out;
}

void save(const QVector<QPair<QString, Value>> &values)
{
    inTransaction(gINI.get(), [&] {
        for (const auto &kv : values) {
            int type = 0;
            if (!gINI->SaveCtrl(kv.first, kv.second, type))
                throw AppError(VbErr::InvalidCall, QStringLiteral("設定を保存できません。"));
        }
    });
}

} // namespace ConnectionSettings
