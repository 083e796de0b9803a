// Prints one figure a line: name, tab, value, tab, unit. Each is the median of several runs: lines of a
// flooded channel, from the byte on the socket to the text in the channel window's model.

#include <QCoreApplication>
#include <chrono>
#include <clocale>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "Figures.h"
#include "chat/ChatClient.h"
#include "chat/ChatTraffic.h"
#include "e2e/FloodServer.h"

namespace talvora::bench {

namespace {

constexpr int runs = 5;
constexpr int lines = 400'000;

double secondsOf(clockid_t clock) {
    timespec time{};
    ::clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

// Has the server do its part in a thread of its own, while this thread turns the loop until `done` and the
// server has come to its end.
void meanwhile(const std::function<void()>& serverPart, const std::function<bool()>& done) {
    std::packaged_task<void()> task(serverPart);
    std::future<void> served = task.get_future();
    std::thread thread(std::move(task));
    const auto over = [&] { return served.wait_for(std::chrono::seconds(0)) == std::future_status::ready; };
    while (!done() && !over()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    // What the server hears last may still have to leave this side.
    while (!over()) QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    thread.join();
    served.get();
}

class Flood {
  public:
    Flood() : client_(server_.port()) {}

    void logOn() {
        client_.start();
        meanwhile(
            [this] {
                server_.accept();
                server_.logOn();
            },
            [] { return false; });
        window_ = &client_.openWindow();
    }

    // Seconds by the clock and of this thread's processor time.
    struct Cost {
        double clock = 0;
        double processor = 0;
    };

    Cost run(const std::string& traffic, int count) {
        const std::string bytes = traffic + "PING :end\r\n";
        const std::uint64_t first = shown();
        const std::uint64_t heard = client_.broadcasts();
        Cost begin{secondsOf(CLOCK_MONOTONIC), secondsOf(CLOCK_THREAD_CPUTIME_ID)};
        Cost end;
        const auto expected = first + static_cast<std::uint64_t>(count);
        meanwhile([&] { server_.flood(bytes, "PONG :end"); },
                  [&] {
                      if (shown() < expected) return false;
                      end = {secondsOf(CLOCK_MONOTONIC), secondsOf(CLOCK_THREAD_CPUTIME_ID)};
                      return true;
                  });
        if (shown() != expected) throw programs::Missing("lines in the window");
        // An action is for the window alone.
        if (client_.broadcasts() - heard != static_cast<std::uint64_t>(count) / 20 * 19) {
            throw programs::Missing("host messages");
        }
        return {end.clock - begin.clock, end.processor - begin.processor};
    }

  private:
    std::uint64_t shown() const { return window_->IRCWin1.RichTextBox1.Document().EndNumber(); }

    FloodServer server_;
    ChatClient client_;
    frmChanChat* window_ = nullptr;
};

void run() {
    Flood flood;
    flood.logOn();
    flood.run(channelTalk(20'000), 20'000);  // fills the view to its usual length
    const std::string traffic = channelTalk(lines);
    std::vector<double> perSecond;
    std::vector<double> processor;
    for (int i = 0; i < runs; ++i) {
        const Flood::Cost cost = flood.run(traffic, lines);
        perSecond.push_back(lines / cost.clock);
        processor.push_back(cost.processor / lines * 1e6);
    }
    print("chat.e2e_lines_per_s", median(perSecond), "lines/s");
    print("chat.e2e_cpu_us_per_line", median(processor), "us");
}

}  // namespace

}  // namespace talvora::bench

int main(int argc, char** argv) {
    talvora::QtPlatform::prepareProcess();
    ::setenv("QT_NO_GLIB", "1", 1);  // as the host program does
    return talvora::bench::measured(argc, argv, [] {
        std::setlocale(LC_NUMERIC, "C");
        talvora::bench::run();
    });
}
