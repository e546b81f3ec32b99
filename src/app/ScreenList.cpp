#include "ScreenList.h"

#include "core/Screens.h"
#include "core/fmnMain.h"
#include "diary/frmDairyCal.h"
#include "diary/frmDairyInput.h"
#include "diary/frmDiaryLedgeInput.h"
#include "masters/fdlMstFmrEdit.h"
#include "masters/fdlSetConCtrl.h"
#include "masters/fdlSetLocalCtrl.h"

#include <QApplication>
#include <QFont>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <QStyleFactory>

// Each module registers its own screens.
void registerPlantingScreens();
void registerBooksScreens();
void registerPesticideScreens();
void registerShippingScreens();
void registerPrintScreens();
void registerMasterScreens();

void registerAllScreens()
{
    registerPlantingScreens();
    registerBooksScreens();
    registerPesticideScreens();
    registerShippingScreens();
    registerPrintScreens();
    registerMasterScreens();
    registerScreen(QStringLiteral("fmnMain"), [] { return new fmnMain; });
    registerScreen(QStringLiteral("frmDairyCal"), [] { return new frmDairyCal; });
    registerScreen(QStringLiteral("frmDairyInput"), [] { return new frmDairyInput; });
    registerScreen(QStringLiteral("frmDiaryLedgeInput"), [] { return new frmDiaryLedgeInput; });
    registerScreen(QStringLiteral("fdlSetConCtrl"), [] { return new fdlSetConCtrl; });
    registerScreen(QStringLiteral("fdlSetLocalCtrl"), [] { return new fdlSetLocalCtrl; });
    registerScreen(QStringLiteral("fdlSetMstCtrl"), [] { return new fdlSetMstCtrl; });
    registerScreen(QStringLiteral("fdlMstFmrEdit"), [] { return new fdlMstFmrEdit; });
}

void setupLook(QApplication &app)
{
    // Qt's own dialogs and menus (file and folder choosers, a text box's
    // menu) in Japanese, from the system's translations.
    static QTranslator qtJapanese;
    if (qtJapanese.load(QLocale(QLocale::Japanese, QLocale::Japan), QStringLiteral("qtbase"), QStringLiteral("_"),
                        QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        app.installTranslator(&qtJapanese);
    QLocale::setDefault(QLocale(QLocale::Japanese, QLocale::Japan));
    app.setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QFont f(QStringLiteral("Noto Sans CJK JP"));
    f.setPointSize(9);
    app.setFont(f);
}
