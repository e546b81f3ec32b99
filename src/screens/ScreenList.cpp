#include "screens/ScreenList.h"

#include "base/Value.h"
#include "store/Database.h"
#include "ui/Form.h"

#include <QApplication>
#include <QFont>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

// Each module registers its own screens.
void registerMainScreens();
void registerDiaryScreens();
void registerPlantingScreens();
void registerBooksScreens();
void registerPesticideScreens();
void registerShippingScreens();
void registerPrintScreens();
void registerMasterScreens();
void registerExchangeScreens();

void registerAllScreens()
{
    registerMainScreens();
    registerDiaryScreens();
    registerPlantingScreens();
    registerBooksScreens();
    registerPesticideScreens();
    registerShippingScreens();
    registerPrintScreens();
    registerMasterScreens();
    registerExchangeScreens();
    // What the screens take from the program: the window state kept in the
    // settings, and the databases closed when the program ends.
    setWindowStateSource([] {
        if (!gINI)
            return false;
        const Value v = gINI->GetCtrl(QStringLiteral("WINDOW_STA"));
        return hasValue(v) && v.toBool();
    });
    setProgramShutdown([] { CloseAllDatabases(); });
}

namespace {

// The few words of Qt's file choosers that its Japanese translation lacks
// (their context was renamed): the kind of an entry in the list.
class QtJapaneseGaps : public QTranslator {
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *source, const char *, int) const override
    {
        if (qstrcmp(context, "QAbstractFileIconProvider") != 0)
            return QString();
        if (qstrcmp(source, "Folder") == 0)
            return QStringLiteral("フォルダ");
        if (qstrcmp(source, "Drive") == 0)
            return QStringLiteral("ドライブ");
        return QString();
    }
};

} // namespace

void setupLook(QApplication &app)
{
    // Qt's own dialogs and menus (file and folder choosers, a text box's
    // menu) in Japanese, from the system's translations.
    static QTranslator qtJapanese;
    if (qtJapanese.load(QLocale(QLocale::Japanese, QLocale::Japan), QStringLiteral("qtbase"), QStringLiteral("_"),
                        QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        app.installTranslator(&qtJapanese);
    static QtJapaneseGaps gaps;
    app.installTranslator(&gaps);
    QLocale::setDefault(QLocale(QLocale::Japanese, QLocale::Japan));
    app.setStyle(makeScreenStyle(QStringLiteral("Fusion")));
    QFont f(QStringLiteral("Noto Sans CJK JP"));
    f.setPointSize(9);
    app.setFont(f);
}
