// Prints one figure a line: name, tab, value, tab, unit. Each is the median of several runs. With the
// argument `desktop` the host has its windows, which needs a display.

#include <chrono>
#include <csignal>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Figures.h"
#include "e2e/FloodServer.h"
#include "platform/Files.h"
#include "platform_qt/PosixDisk.h"
#include "platform_qt/SqliteSettings.h"
#include "simulation/programs/OrreryProcess.h"

namespace talvora::bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int startRuns = 9;
constexpr int floodRuns = 5;
constexpr int namesRuns = 9;
constexpr int nameCount = 10000;
constexpr int mailRuns = 5;
constexpr int mailLines = 300;
constexpr int idleRuns = 3;
constexpr int floodLines = 400000;
constexpr programs::Milliseconds idleTime{10000};

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// The host program in folders that stay the same from run to run, as a user's do.
class Host {
  public:
    Host(const FloodServer& server, bool windows) : windows_(windows) {
        const std::string profile = folder_.write("network.ini", programs::profileText(server.port(), {}));
        program_ = programs::orreryProgram(
            folder_, profile,
            {"Settings/Nickname=Nikos", "Settings/ChanList=#talk|", "ChanSettings/CreateOnPM=T"});
        if (windows_) std::erase(program_.arguments, "--headless");
    }
    std::unique_ptr<programs::Process> start() const { return std::make_unique<programs::Process>(program_); }
    std::string figure(const std::string& topic, const std::string& what) const {
        return topic + (windows_ ? ".desktop_" : ".headless_") + what;
    }
    // The main window and two chats, if there are windows.
    void openWindows(FloodServer& server) const {
        if (!windows_) return;
        programs::GateReader(folder_ / "gate").send(3, 1);
        const std::string lines =
            ":anna!u@127.0.0.1 PRIVMSG Nikos :good evening\r\n"
            ":anna!u@127.0.0.1 PRIVMSG #talk :good evening to all\r\nPING :open\r\n";
        server.flood(lines, "PONG :open");
    }

  private:
    bool windows_;
    programs::Folder folder_;
    programs::Program program_;
};

void end(programs::Process& process) {
    process.signal(SIGTERM);
    process.waitExit();
}

void measureStart(FloodServer& server, const Host& host) {
    std::vector<double> values;
    for (int run = 0; run <= startRuns; ++run) {
        const auto start = Clock::now();
        const auto process = host.start();
        server.accept();
        server.firstByte();
        if (run > 0) values.push_back(secondsSince(start) * 1000);  // the first furnishes folders and caches
        end(*process);
    }
    print(host.figure("start", "ms"), median(values), "ms");
}

void measureFlood(FloodServer& server, const Host& host) {
    const std::string traffic = typicalTraffic(floodLines) + "PING :end\r\n";
    std::vector<double> values;
    for (int run = 0; run < floodRuns; ++run) {
        const auto process = host.start();
        server.accept();
        server.logOn();
        const auto start = Clock::now();
        server.flood(traffic, "PONG :end");
        values.push_back(floodLines / secondsSince(start));
        process->kill();
    }
    print("e2e.lines_per_s", median(values), "lines/s");
}

// A channel's names with its window and the main window open: from the first byte to the answer of the PING
// behind them.
void measureNames(FloodServer& server, const Host& host) {
    const std::string names = namesReply(nameCount);
    const std::string quit = namesQuit(nameCount);
    const auto process = host.start();
    server.accept();
    server.logOn();
    host.openWindows(server);
    std::vector<double> values;
    for (int run = 0; run < namesRuns; ++run) {
        server.serve(programs::Milliseconds(2000));
        const auto start = Clock::now();
        server.flood(names, "PONG :names");
        values.push_back(secondsSince(start) * 1000);
        server.serve(programs::Milliseconds(1000));
        server.flood(quit, "PONG :gone");
    }
    print("desktop.names_10000_ms", median(values), "ms");
    end(*process);
}

// Lines a second of a mail that the robot gives, each answered as soon as it is durable.
double mailRate(FloodServer& server, const std::string& text) {
    const auto tell = [&](const std::string& words, const char* answer = "OK") {
        server.flood(":OrreryServ!s@127.0.0.1 PRIVMSG Nikos :\1MAIL " + words + "\1\r\n",
                     std::string("PRIVMSG OrreryServ :\1MAIL ") + answer);
    };
    tell("START maria 14/03/2026 " + std::to_string(mailLines) + " 17 Subject");
    const auto start = Clock::now();
    for (int line = 0; line < mailLines; ++line) tell("DUMP " + text);
    const double rate = mailLines / secondsSince(start);
    tell("DONE", "0 0");  // right behind its OK
    return rate;
}

// The same two durable writes alone.
double bareRate(Files& files, SqliteSettings& settings, const std::string& text) {
    File file = files.Open("bare.txt", FileMode::Output);
    file.Flush();
    const auto start = Clock::now();
    for (int line = 0; line < mailLines; ++line) {
        file.WriteLine(text);
        file.Flush();
        settings.SaveSetting("Talvora", "Incompleted", "IncomingLine", std::to_string(line));
    }
    return mailLines / secondsSince(start);
}

void measureMail(FloodServer& server, const Host& host) {
    const std::string text(200, 'x');
    const programs::Folder folder;
    PosixDisk disk(folder / "data");
    Files files(disk);
    SqliteSettings settings(folder / "settings.db");
    server.HasRobot = true;
    const auto process = host.start();
    server.accept();
    server.logOn();
    std::vector<double> values;
    for (int run = 0; run < mailRuns; ++run) {
        const double rate = mailRate(server, text);
        values.push_back(rate / bareRate(files, settings, text));
    }
    print("mail.line_share", median(values), "ratio");
    server.HasRobot = false;
    end(*process);
}

// A hand that moves the pointer ten times a second in the middle of the screen.
std::unique_ptr<programs::Process> movingPointer() {
    constexpr int moves = 1000;
    programs::Program program;
    program.arguments = {"xdotool"};
    for (int i = 0; i < moves; ++i) {
        program.arguments.insert(program.arguments.end(),
                                 {"mousemove", std::to_string(500 + i % 80), "450", "sleep", "0.1"});
    }
    return std::make_unique<programs::Process>(program);
}

// Processor time in percent of the time that passes.
double busyShare(FloodServer& server, const programs::Process& process) {
    const double before = processorTime(process.id());
    const auto start = Clock::now();
    server.serve(idleTime);
    return (processorTime(process.id()) - before) / secondsSince(start) * 100;
}

std::string xdotool(std::vector<std::string> words) {
    programs::Program program;
    program.arguments = {"xdotool"};
    program.arguments.insert(program.arguments.end(), words.begin(), words.end());
    programs::Process process(program);
    process.waitExit();
    return process.output();
}

void waitFor(FloodServer& server, const char* what, const auto& isSo) {
    const programs::Deadline deadline(programs::Patience);
    while (!isSo()) {
        if (deadline.passed()) throw programs::Missing(what);
        server.serve(programs::Milliseconds(100));
    }
}

// What the pointer meets is the desktop, so what is measured is what waits for it.
void minimizeWindows(FloodServer& server) {
    const std::vector<std::string> shown = {"search", "--onlyvisible", "--class", "^Talvora$"};
    const auto shownAnd = [&](std::vector<std::string> further) {
        std::vector<std::string> words = shown;
        words.insert(words.end(), further.begin(), further.end());
        return xdotool(words);
    };
    shownAnd({"windowminimize", "%@"});
    waitFor(server, "all windows but the bar are minimized", [&] {
        return shownAnd({"getwindowname", "%@"}) == "Talvora windows\n";
    });
}

// It opens for the pointer, and goes again: nothing is measured of a bar that does not work.
void openBar(FloodServer& server) {
    const auto place = [] {
        return xdotool({"search", "--onlyvisible", "--name", "^Talvora windows$", "getwindowgeometry"});
    };
    const std::string news = place();
    xdotool({"mousemove", "10000", "2"});  // the upper right corner
    waitFor(server, "the bar opens", [&] { return place() != news; });
    server.serve(programs::Milliseconds(1000));
    xdotool({"mousemove", "500", "450"});
    waitFor(server, "the bar goes", [&] { return place() == news; });
}

void measurePointer(FloodServer& server, const programs::Process& process) {
    minimizeWindows(server);
    openBar(server);
    const auto hand = movingPointer();
    server.serve(programs::Milliseconds(1000));
    std::vector<double> processor;
    for (int run = 0; run < idleRuns; ++run) processor.push_back(busyShare(server, process));
    if (hand->ended()) throw programs::Missing("the pointer's moves: " + hand->output());
    print("people.bar_idle_cpu_percent", median(processor), "%");
}

void measureIdle(FloodServer& server, const Host& host, bool windows) {
    const auto process = host.start();
    server.accept();
    server.logOn();
    host.openWindows(server);
    server.serve(programs::Milliseconds(3000));  // the last step of the log-on, and what waited for it
    std::vector<double> processor;
    std::vector<double> memory;
    for (int run = 0; run < idleRuns; ++run) {
        processor.push_back(busyShare(server, *process));
        memory.push_back(residentMebibytes(process->id()));
    }
    print(host.figure("idle", "cpu_percent"), median(processor), "%");
    print(host.figure("idle", "rss_mib"), median(memory), "MiB");
    if (windows) measurePointer(server, *process);
    end(*process);
}

void run(bool windows) {
    FloodServer server;
    const Host host(server, windows);
    measureStart(server, host);
    if (!windows) measureFlood(server, host);
    if (!windows) measureMail(server, host);
    if (windows) measureNames(server, host);
    measureIdle(server, host, windows);
}

}  // namespace

}  // namespace talvora::bench

int main(int argc, char** argv) {
    const bool windows = argc > 1 && std::string_view(argv[1]) == "desktop";
    return talvora::bench::measured(argc, argv, [windows] { talvora::bench::run(windows); });
}
