// Prints one figure a line: name, tab, value, tab, unit. Each is the median of several runs.

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "e2e/FloodServer.h"
#include "e2e/support/OrreryProcess.h"

namespace talvora::bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int startRuns = 9;
constexpr int floodRuns = 5;
constexpr int idleRuns = 3;
constexpr int floodLines = 400000;
constexpr e2e::Milliseconds idleTime{10000};

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

void print(const char* name, double value, const char* unit) {
    std::printf("%s\t%.6g\t%s\n", name, value, unit);
    std::fflush(stdout);
}

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// The host program in folders that stay the same from run to run, as a user's do.
class Host {
  public:
    explicit Host(const FloodServer& server) {
        const std::string profile = folder_.write("network.ini", e2e::profileText(server.port(), {}));
        program_ =
            e2e::orreryProgram(folder_, profile, {"Settings/Nickname=Nikos", "Settings/ChanList=#talk|"});
    }
    std::unique_ptr<e2e::Process> start() const { return std::make_unique<e2e::Process>(program_); }

  private:
    e2e::TempFolder folder_;
    e2e::Program program_;
};

void end(e2e::Process& process) {
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
    print("start.headless_ms", median(values), "ms");
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

// Processor time of a process so far, in seconds. The count in /proc, in ticks of 10 ms, is too coarse for a
// program that sleeps.
double processorTime(pid_t id) {
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(id, &clock) != 0 || clock_gettime(clock, &time) != 0) {
        throw e2e::Missing("the processor time of the program");
    }
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

double residentMebibytes(pid_t id) {
    std::ifstream file("/proc/" + std::to_string(id) + "/status");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("VmRSS:")) return std::stod(line.substr(6)) / 1024;
    }
    return 0;
}

void measureIdle(FloodServer& server, const Host& host) {
    const auto process = host.start();
    server.accept();
    server.logOn();
    server.serve(e2e::Milliseconds(3000));  // the last step of the log-on, and what waited for it
    std::vector<double> processor;
    std::vector<double> memory;
    for (int run = 0; run < idleRuns; ++run) {
        const double before = processorTime(process->id());
        const auto start = Clock::now();
        server.serve(idleTime);
        processor.push_back((processorTime(process->id()) - before) / secondsSince(start) * 100);
        memory.push_back(residentMebibytes(process->id()));
    }
    print("idle.headless_cpu_percent", median(processor), "%");
    print("idle.headless_rss_mib", median(memory), "MiB");
    end(*process);
}

int run() {
    FloodServer server;
    const Host host(server);
    measureStart(server, host);
    measureFlood(server, host);
    measureIdle(server, host);
    return 0;
}

}  // namespace

}  // namespace talvora::bench

int main() {
    try {
        return talvora::bench::run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
