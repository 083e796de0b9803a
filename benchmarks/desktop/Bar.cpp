// The bar of the open windows on a display: with fifty windows, from the call that slides it out until it is
// seen where it ends. The time that the slide lasts by the clock is left out, what its steps cost is in.
// Prints name, tab, value, tab, unit.

#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <chrono>

#include "desktop/Measure.h"
#include "simulation/windows/DesktopWorld.h"

namespace {

using namespace talvora;

constexpr int manyWindows = 50;
constexpr auto slide = std::chrono::milliseconds(4);  // a step

void calm(test::DesktopWorld& desktop) {
    for (int i = 0; i < 10; ++i) {
        desktop.settle();
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    }
}

QImage asDrawn(QWidget& window) {
    return window.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

QImage onScreen(const QWidget& window) {
    const QRect at = window.geometry();
    const QPixmap screen = window.screen()->grabWindow(0, at.x(), at.y(), at.width(), at.height());
    return screen.toImage().convertToFormat(QImage::Format_RGB32);
}

// The pointer rests in the corner, or the bar would go again.
double popUp(test::DesktopWorld& desktop, frmPopup& bar) {
    test::VirtualPointer& pointer = desktop.client.around.screen.pointer;
    pointer.goes(1000, 2);
    FormView& view = *desktop.viewOf(&bar);
    const QImage drawn = asDrawn(view);
    const double took = measure::millisecondsOf([&] {
        bar.ShowAll();
        measure::waitUntil("the bar is out", [&] {
            desktop.world.time.run(slide);
            return bar.Top == 0;
        });
        measure::waitUntil("the bar is seen", [&] { return view.y() == 0 && onScreen(view) == drawn; });
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
