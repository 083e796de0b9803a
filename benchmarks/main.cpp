// Runs all benchmarks and prints one figure a line: name, tab, value, tab, unit. Each is the median of
// several runs. A benchmark's figure is its counter "value" if it sets one, else its items per second; its
// label is the unit.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

namespace {

class FigureReporter final : public benchmark::BenchmarkReporter {
  public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.error_occurred) {
                std::fprintf(stderr, "%s: %s\n", run.benchmark_name().c_str(), run.error_message.c_str());
                failed_ = true;
            }
            if (run.run_type != Run::RT_Aggregate || run.aggregate_name != "median") continue;
            const auto own = run.counters.find("value");
            const auto items = run.counters.find("items_per_second");
            const auto& figure = own != run.counters.end() ? own : items;
            if (figure == run.counters.end()) continue;
            const char* unit = run.report_label.empty() ? "1/s" : run.report_label.c_str();
            std::printf("%s\t%.6g\t%s\n", run.run_name.function_name.c_str(),
                        static_cast<double>(figure->second), unit);
            std::fflush(stdout);
        }
    }

    bool Failed() const { return failed_; }

  private:
    bool failed_ = false;
};

}  // namespace

int main(int argc, char** argv) {
    std::string repetitions = "--benchmark_repetitions=5";
    std::vector<char*> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1, repetitions.data());
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;
    FigureReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return reporter.Failed() ? 1 : 0;
}
