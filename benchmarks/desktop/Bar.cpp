// The bar of the open windows on a display: with fifty windows, from the call that slides it out until it is
// painted where it ends. The time that the slide lasts by the clock is left out, what its steps cost is in.
// Prints name, tab, value, tab, unit.

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

#include "simulation/windows/DesktopWorld.h"

namespace {

using namespace talvora;
using SteadyClock = std::chrono::steady_clock;

constexpr int manyWindows = 50;
constexpr auto slide = std::chrono::milliseconds(4);  // a step

// Counts how often a widget is painted.
class Painted final : public QObject {
  public:
    explicit Painted(QWidget& widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override {
        times += event->type() == QEvent::Paint ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }
    int times = 0;
};

void calm(test::DesktopWorld& desktop) {
    for (int i = 0; i < 10; ++i) {
        desktop.settle();
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    }
}

double popUp(test::DesktopWorld& desktop, frmPopup& bar) {
    FormView& view = *desktop.viewOf(&bar);
    Painted painted(view);
    const auto begin = SteadyClock::now();
    bar.ShowAll();
    while (bar.Top < 0) {
        desktop.world.time.run(slide);
        QApplication::processEvents();
    }
    while (painted.times == 0 || view.height() * TwipsPerPixel < bar.Height) {
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    }
    const double took = std::chrono::duration<double, std::milli>(SteadyClock::now() - begin).count();
    bar.PutAway();
    calm(desktop);
    return took;
}

}  // namespace

int main(int argc, char** argv) {
    GuardedApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    test::DesktopWorld desktop;
    desktop.logOn();
    for (int i = 0; i < manyWindows; ++i) {
        desktop.client.server.says(":user" + std::to_string(i) + "!u@h PRIVMSG Maria :good evening");
    }
    calm(desktop);
    frmPopup& bar = *desktop.client.component->Notes().Popup.Get();
    std::array<double, 7> runs{};
    for (double& run : runs) run = popUp(desktop, bar);
    std::sort(runs.begin(), runs.end());
    std::printf("people.popup_ms\t%.6g\tms\n", runs[runs.size() / 2]);
    return 0;
}
