// The bar of the open windows on a display: with fifty windows, from the call that slides it out until it is
// painted where it ends. The time that the slide lasts by the clock is left out, what its steps cost is in.
// Prints name, tab, value, tab, unit.

#include <algorithm>
#include <chrono>

#include "desktop/Measure.h"
#include "simulation/windows/DesktopWorld.h"

namespace {

using namespace talvora;

constexpr int manyWindows = 50;
constexpr auto slide = std::chrono::milliseconds(4);  // a step

// How much of a widget has been painted, from its upper edge down.
class Painted final : public QObject {
  public:
    explicit Painted(QWidget& widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) height = static_cast<QWidget*>(watched)->height();
        return QObject::eventFilter(watched, event);
    }
    int height = 0;
};

void calm(test::DesktopWorld& desktop) {
    for (int i = 0; i < 10; ++i) {
        desktop.settle();
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    }
}

// The pointer rests in the corner, or the bar would go again.
double popUp(test::DesktopWorld& desktop, frmPopup& bar) {
    test::VirtualPointer& pointer = desktop.client.around.screen.pointer;
    pointer.goes(1000, 2);
    Painted painted(*desktop.viewOf(&bar));
    const double took = measure::millisecondsOf([&] {
        bar.ShowAll();
        measure::waitUntil("the bar is out", [&] {
            desktop.world.time.run(slide);
            return bar.Top == 0;
        });
        measure::waitUntil("the bar is painted",
                           [&] { return painted.height * TwipsPerPixel >= bar.Height; });
    });
    pointer.goes(512, 384);
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
    measure::print("people.popup_ms", [&] { return popUp(desktop, bar); });
    return 0;
}
