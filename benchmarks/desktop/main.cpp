// Figures of the chat view on a display: lines shown per second of processor time, painting included; the
// longest turn of the loop meanwhile; and the memory of a line. Then those of the announcements' windows.
// Prints name, tab, value, tab, unit.

#include <malloc.h>

#include <QApplication>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <string>

#include "chat/IRCWin.h"
#include "desktop/Announcements.h"
#include "desktop/RichTextView.h"
#include "simulation/VirtualPlatform.h"

namespace {

using namespace talvora;
using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

constexpr int lineCount = 20000;
constexpr auto slice = 2ms;  // of a turn, as the loop gives to its timers

// A chat window that is open on the screen.
struct Window {
    Window() {
        around.disk.put("System/emoticons.dat", "^_^:=:{\\b face}\r\n");
        emotions.LoadEmotions();
        view.resize(640, 480);
        view.show();
        add(200);
        for (int i = 0; i < 20; ++i) QApplication::processEvents(QEventLoop::AllEvents, 20);
    }

    void add(int count) {
        for (; count > 0; --count) addOne();
    }
    void addOne() {
        std::string line = "<Nikos> " + std::to_string(++number) + " ";
        while (line.size() < 80) line += "plain words ";
        line.resize(80);
        model.AddIRCLine(line, 3, 2);
    }

    test::VirtualTime time;
    test::VirtualNetwork network{time};
    test::VirtualPlatform around{time, network};
    GlobError globError{around.platform};
    modEmotions emotions{around.files, globError};
    IRCWin model{around.platform, globError, emotions};
    RichTextView view{model.RichTextBox1, around.screen.clipboard, around.platform.Guarded};
    int number = 0;
};

double processorSeconds() {
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

struct Flood {
    double linesPerSecond = 0;
    double longestTurn = 0;  // milliseconds
};

Flood flood() {
    Window window;
    Flood figures;
    const double begin = processorSeconds();
    for (int left = lineCount; left > 0;) {
        const auto turn = SteadyClock::now();
        while (left > 0 && SteadyClock::now() - turn < slice) {
            window.addOne();
            --left;
        }
        QApplication::processEvents();
        const std::chrono::duration<double, std::milli> took = SteadyClock::now() - turn;
        figures.longestTurn = std::max(figures.longestTurn, took.count());
    }
    QApplication::processEvents();
    figures.linesPerSecond = lineCount / (processorSeconds() - begin);
    return figures;
}

double bytesPerLine() {
    Window window;
    window.model.TruncSize = 1 << 30;
    const std::size_t before = mallinfo2().uordblks;
    for (int i = 0; i < lineCount; i += 100) {
        window.add(100);
        QApplication::processEvents();
    }
    return static_cast<double>(mallinfo2().uordblks - before) / lineCount;
}

template <class Measure>
double median(Measure measure) {
    std::array<double, 5> runs{};
    for (double& run : runs) run = measure();
    std::sort(runs.begin(), runs.end());
    return runs[runs.size() / 2];
}

void print(const char* name, double value, const char* unit) {
    std::printf("%s\t%.6g\t%s\n", name, value, unit);
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    double longest = 0;
    const double lines = median([&] {
        const Flood figures = flood();
        longest = std::max(longest, figures.longestTurn);
        return figures.linesPerSecond;
    });
    print("chat.view_lines_per_s", lines, "1/s");
    print("chat.view_longest_block_ms", longest, "ms");
    print("chat.bytes_per_line", bytesPerLine(), "B");
    print("announce.load_10000_ms", median(bench::loadAnnouncements), "ms");
    print("announce.arrive_us", median(bench::announcementArrives), "us");
    return 0;
}
