// Figures of the program with its windows while a server floods an open channel window: lines a second until
// the client answers the PING behind them, and how long a key that is typed meanwhile takes to be seen. The
// whole host runs in this process, on its own loop and a socket of the machine; only the server and the hands
// of the user are threads of ours. Prints name, tab, value, tab, unit.

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <exception>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "e2e/FloodServer.h"
#include "orrery/Environment.h"
#include "orrery/Orrery.h"
#include "orrery/Program.h"
#include "orrery/face/Face.h"
#include "simulation/programs/OrreryProcess.h"

namespace talvora::bench {

namespace {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;
using Moment = SteadyClock::time_point;

constexpr int floodRuns = 5;
constexpr int floodLines = 200000;
constexpr int namesRuns = 5;
constexpr auto betweenKeys = 15ms;

double milliseconds(SteadyClock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

double rank(std::vector<double> values, double part) {
    if (values.empty()) return 0;
    std::ranges::sort(values);
    return values[std::min(values.size() - 1, static_cast<std::size_t>(part * double(values.size())))];
}

void print(const char* name, double value, const char* unit) {
    std::printf("%s\t%.6g\t%s\n", name, value, unit);
    std::fflush(stdout);
}

// Looks at the box that is written in. A key is seen when the box has been painted after it and its window
// has been handed to the screen.
class Eyes final : public QObject {
  public:
    Eyes(QPlainTextEdit& box, std::function<void()> seen)
        : box_(box), window_(*box.window()), seen_(std::move(seen)) {
        for (QObject* watched : {static_cast<QObject*>(&box_), static_cast<QObject*>(box.viewport()),
                                 static_cast<QObject*>(&window_)}) {
            watched->installEventFilter(this);
        }
    }

    bool eventFilter(QObject* receiver, QEvent* event) override {
        if (receiver == &box_ && event->type() == QEvent::KeyPress) typed_ = true;
        if (receiver == box_.viewport() && event->type() == QEvent::Paint) painted_ = typed_;
        if (receiver != &window_ || event->type() != QEvent::UpdateRequest) return false;
        window_.event(event);
        if (painted_) {
            typed_ = painted_ = false;
            seen_();
        }
        return true;
    }

  private:
    QPlainTextEdit& box_;
    QObject& window_;
    std::function<void()> seen_;
    bool typed_ = false;
    bool painted_ = false;
};

// Runs something on the thread of the windows.
template <class Call>
auto inLoop(Call call) {
    std::packaged_task<decltype(call())()> task(call);
    auto result = task.get_future();
    QMetaObject::invokeMethod(
        qApp, [&task] { task(); }, Qt::BlockingQueuedConnection);
    return result.get();
}

// How long the thread of the windows does not come back to its loop at most.
class Pulse {
  public:
    Pulse() {
        inLoop([this] {
            timer_ = std::make_unique<QTimer>();
            timer_->setTimerType(Qt::PreciseTimer);
            QObject::connect(timer_.get(), &QTimer::timeout, timer_.get(), [this] { beat(); });
            last_ = SteadyClock::now();
            timer_->start(1);
        });
    }
    double stop() {
        inLoop([this] { timer_.reset(); });
        return longest_;
    }

  private:
    void beat() {
        const Moment now = SteadyClock::now();
        longest_ = std::max(longest_, milliseconds(now - std::exchange(last_, now)));
    }

    std::unique_ptr<QTimer> timer_;
    Moment last_;
    double longest_ = 0;
};

QWidget* windowWith(const QString& part) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->windowTitle().contains(part, Qt::CaseInsensitive)) return window;
    }
    throw programs::Missing("no window is called " + part.toStdString());
}

// Types letters and takes them back, one key as soon as the one before has been seen for a while.
class Typist {
  public:
    Typist() {
        inLoop([this] {
            box_ = windowWith(QStringLiteral("#talk"))->findChild<QPlainTextEdit*>();
            if (box_ == nullptr) throw programs::Missing("there is no box to write in");
            eyes_ = std::make_unique<Eyes>(*box_, [this] { seen_.set_value(SteadyClock::now()); });
        });
        hands_ = std::thread([this] { type(); });
    }
    // How long each key took, in milliseconds.
    std::vector<double> stop() {
        stopping_ = true;
        hands_.join();
        inLoop([this] { eyes_.reset(); });
        return took_;
    }

  private:
    void type() {
        for (bool letter = true; !stopping_; letter = !letter) {
            seen_ = std::promise<Moment>();
            auto seen = seen_.get_future();
            const Moment start = SteadyClock::now();
            QCoreApplication::postEvent(box_, keyEvent(letter), Qt::NormalEventPriority);
            if (seen.wait_for(programs::Patience) != std::future_status::ready) {
                throw programs::Missing("what is typed is not seen");
            }
            took_.push_back(milliseconds(seen.get() - start));
            std::this_thread::sleep_for(betweenKeys);
        }
    }
    static QKeyEvent* keyEvent(bool letter) {
        return letter ? new QKeyEvent(QEvent::KeyPress, Qt::Key_X, Qt::NoModifier, QStringLiteral("x"))
                      : new QKeyEvent(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier);
    }

    QPlainTextEdit* box_ = nullptr;
    std::unique_ptr<Eyes> eyes_;
    std::promise<Moment> seen_;
    std::vector<double> took_;
    std::atomic<bool> stopping_ = false;
    std::thread hands_;
};

// What the server and the user do, on a thread beside the windows'.
class Script {
  public:
    Script(FloodServer& server, Face& face) : server_(server), face_(face) {}

    void run() {
        server_.accept();
        server_.logOn();
        server_.flood(":anna!u@127.0.0.1 PRIVMSG #talk :good evening\r\nPING :open\r\n", "PONG :open");
        inLoop([this] { face_.OpenMainWindow(); });
        server_.serve(programs::Milliseconds(3000));
        measureFlood();
        measureNames("views.names_5000_ms", "views.names_5000_block_ms", 5000);
        measureNames("views.names_10000_ms", "views.names_10000_block_ms", 10000);
    }

  private:
    void measureFlood() {
        const std::string traffic = typicalTraffic(floodLines) + "PING :end\r\n";
        std::vector<double> rates;
        std::vector<double> keys;
        for (int run = 0; run < floodRuns; ++run) {
            Typist typist;
            const Moment start = SteadyClock::now();
            server_.flood(traffic, "PONG :end");
            rates.push_back(floodLines * 1000.0 / milliseconds(SteadyClock::now() - start));
            const std::vector<double> took = typist.stop();
            keys.insert(keys.end(), took.begin(), took.end());
        }
        print("desktop.e2e_lines_per_s", rank(rates, 0.5), "lines/s");
        print("desktop.key_latency_ms", rank(keys, 0.95), "ms");
        print("desktop.key_latency_worst_ms", rank(keys, 1), "ms");
    }

    // Until the list of the channel's users has all the names on the screen, and how long the windows stand
    // still at most meanwhile.
    void measureNames(const char* name, const char* blockName, int count) {
        std::vector<double> values;
        std::vector<double> blocks;
        for (int run = 0; run < namesRuns; ++run) {
            const std::string lines = namesReply(count);
            Pulse pulse;
            const Moment start = SteadyClock::now();
            server_.flood(lines, "PONG :names");
            while (!inLoop([&] { return usersShown(count); })) std::this_thread::sleep_for(1ms);
            values.push_back(milliseconds(SteadyClock::now() - start));
            server_.serve(programs::Milliseconds(200));
            blocks.push_back(pulse.stop());
            server_.flood(namesQuit(count), "PONG :gone");
            server_.serve(programs::Milliseconds(1000));
        }
        print(name, rank(values, 0.5), "ms");
        print(blockName, rank(blocks, 0.5), "ms");
    }
    static bool usersShown(int count) {
        QWidget* const window = windowWith(QStringLiteral("#talk"));
        for (QAbstractItemView* list : window->findChildren<QAbstractItemView*>()) {
            if (list->model() == nullptr || list->model()->rowCount() < count) continue;
            window->repaint();
            return true;
        }
        return false;
    }

    FloodServer& server_;
    Face& face_;
};

CommandLine commandLine(const programs::Folder& folder, const FloodServer& server) {
    const std::string profile = folder.write("network.ini", programs::profileText(server.port(), {}));
    const std::vector<std::string> words{"--profile", profile,
                                         "--config",  folder / "config",
                                         "--data",    folder / "data",
                                         "--gate",    folder / "gate",
                                         "--set",     "Settings/Nickname=Nikos",
                                         "--set",     "Settings/ChanList=#talk|",
                                         "--set",     "ChanSettings/CreateOnPM=T"};
    return CommandLine::Parse(words);
}

int run(int argc, char** argv) {
    prepareEnvironment();
    StopSignals signals;
    GuardedApplication application(argc, argv);
    settleLocale();
    const programs::Folder folder;
    FloodServer server;
    Face face(application, QDBusConnection::sessionBus());
    Orrery orrery(commandLine(folder, server), QCoreApplication::applicationDirPath().toStdString(), signals,
                  &face);
    std::exception_ptr fault;
    std::thread beside([&] {
        try {
            Script(server, face).run();
        } catch (...) {
            fault = std::current_exception();
        }
        QMetaObject::invokeMethod(
            &application, [] { QCoreApplication::exit(); }, Qt::QueuedConnection);
    });
    orrery.Run();
    beside.join();
    if (fault) std::rethrow_exception(fault);
    return 0;
}

}  // namespace

}  // namespace talvora::bench

int main(int argc, char** argv) {
    try {
        return talvora::bench::run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
