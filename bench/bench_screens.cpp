// Opening each screen of the program as the menu or the calendar opens it:
// made, loaded with the data of a busy day of the ten years, shown and put
// away; on the server through the relay, at a round trip of 1 ms.

#include "env.h"

#include "base/Globals.h"
#include "base/Mode.h"
#include "screens/ScreenList.h"
#include "ui/Form.h"
#include "ui/Screens.h"

#include <QApplication>

#include <memory>
#include <string>

namespace Bench {

namespace {

// What the calendar leaves behind when it opens a screen: the farmer, the
// shop, a day of June 2023 with its month, a new row.
void busyDay()
{
    gFMR_ID = Value(1);
    gSHOP_ID = Value(1);
    gUSE_TYPE = 1;
    gWORK_DATE = Value(DateUtil::make(2023, 6, 14));
    gBASE_DATE = DateUtil::make(2023, 6, 1);
    gMODE = Mode::Change;
    gROW_IDX = -1;
    gBOOK_ACC_ID = Value(1000);
    gLEDGE_ROWS = {blankLedgeRow()};
}

void OpenScreen(benchmark::State &state, Kind kind, const QString &name, int roundTripMs)
{
    guarded(state, [&] {
        use(kind);
        setRoundTrip(roundTripMs);
        const quint64 before = statementsOf(kind);
        for (auto _ : state) {
            busyDay();
            std::unique_ptr<Form> f(createScreen(name));
            f->load();
            f->show();
            QApplication::processEvents();
            f->hide();
        }
        countStatements(state, kind, before);
        setRoundTrip(0);
    });
}

} // namespace

void registerScreenBenchmarks(Kind kind, int roundTripMs)
{
    registerAllScreens();
    const std::string k = std::string("/") + kindName(kind) +
                          (kind == Kind::Network ? "/" + std::to_string(roundTripMs) + "ms" : std::string());
    for (const QString &name : screenNames())
        benchmark::RegisterBenchmark(((kind == Kind::Network ? "Net/Open/" : "Open/") + name.toStdString() + k).c_str(),
                                     OpenScreen, kind, name, roundTripMs)
            ->UseRealTime()
            ->Unit(benchmark::kMillisecond);
}

} // namespace Bench
