#pragma once
// How long something takes until it is seen. Prints name, tab, value, tab, unit.

#include <QApplication>
#include <QWidget>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace talvora::measure {

// Runs the loop until something is so. What does not come ends the program with an error: no figure is better
// than a program that hangs.
void waitUntil(const char* what, const auto& isSo) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!isSo()) {
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
        if (std::chrono::steady_clock::now() < end) continue;
        std::fprintf(stderr, "This has not come within 30 seconds: %s\n", what);
        std::_Exit(1);
    }
}

// Whether a widget has been painted.
class Glance final : public QObject {
  public:
    explicit Glance(QWidget& widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override {
        seen_ = seen_ || event->type() == QEvent::Paint;
        return QObject::eventFilter(watched, event);
    }
    // Runs the loop until it was.
    void wait() {
        waitUntil("a widget is painted", [this] { return seen_; });
        seen_ = false;
    }

  private:
    bool seen_ = false;
};

inline double millisecondsOf(const auto& call) {
    const auto begin = std::chrono::steady_clock::now();
    call();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

// The median of several runs, as a figure's line.
template <class Measure>
void print(const char* name, Measure measure) {
    std::array<double, 7> runs{};
    for (double& run : runs) run = measure();
    std::sort(runs.begin(), runs.end());
    std::printf("%s\t%.6g\tms\n", name, runs[runs.size() / 2]);
    std::fflush(stdout);
}

// Lets the loop do what waits.
inline void calm() {
    for (int i = 0; i < 20; ++i) QApplication::processEvents(QEventLoop::AllEvents, 20);
}

}  // namespace talvora::measure
