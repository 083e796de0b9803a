#pragma once
// What the benchmarks with a `main` of their own share: a figure is printed as name, tab, value, tab, unit,
// one a line; what a program costs is asked of the system.

#include <sys/types.h>

#include <QtCore/QCoreApplication>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <string>
#include <vector>

#include "simulation/programs/Waiting.h"

namespace talvora::bench {

inline double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

inline void print(const std::string& name, double value, const char* unit) {
    std::printf("%s\t%.6g\t%s\n", name.c_str(), value, unit);
    std::fflush(stdout);
}

// Processor time of a process so far, in seconds. The count in /proc, in ticks of 10 ms, is too coarse for a
// program that sleeps.
inline double processorTime(pid_t id) {
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(id, &clock) != 0 || clock_gettime(clock, &time) != 0) {
        throw programs::Missing("the processor time of the program");
    }
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

inline double residentMebibytes(pid_t id) {
    std::ifstream file("/proc/" + std::to_string(id) + "/status");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("VmRSS:")) return std::stod(line.substr(6)) / 1024;
    }
    return 0;
}

// The whole of such a `main`: `run` has the toolkit's application object, and the program ends with 1 and a
// word if it throws.
template <class Run>
int measured(int argc, char** argv, Run run) {
    const QCoreApplication application(argc, argv);
    try {
        run();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}

}  // namespace talvora::bench
