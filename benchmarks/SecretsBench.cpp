// The cipher, on the real loop, which looks for other events meanwhile; and a file of ten thousand scripts.

#include <benchmark/benchmark.h>

#include <chrono>
#include <string>

#include "Application.h"
#include "extensions/modCommands.h"
#include "extensions/modEncryption.h"
#include "platform/Text.h"
#include "platform_qt/QtLoop.h"
#include "platform_qt/SystemClock.h"
#include "simulation/VirtualPlatform.h"

namespace {

using namespace talvora;
using Clock = std::chrono::steady_clock;

constexpr double mebibyte = 1024.0 * 1024.0;
constexpr int manyScripts = 10'000;
const std::string key = "a key of 16 char";

class Cipher {
  private:
    Application application_;
    QtLoop loop_;
    SystemClock clock_;
    Random random_;

  public:
    modEncryption DCG{random_, loop_, clock_};
    std::string Encrypt(const std::string& text) {
        std::string given = key;
        return DCG.DCGEncryptText(text, given);
    }
    std::string Decrypt(const std::string& text) {
        std::string given = key;
        return DCG.DCGDecryptText(text, given);
    }
};

void setValue(benchmark::State& state, double value, const char* unit) {
    state.counters["value"] = value;
    state.SetLabel(unit);
}

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void throughput(benchmark::State& state, bool encrypts) {
    Cipher cipher;
    const std::string text(std::size_t{1} << 18, 'a');
    const std::string given = encrypts ? text : cipher.Encrypt(text);
    const auto start = Clock::now();
    for (auto _ : state) benchmark::DoNotOptimize(encrypts ? cipher.Encrypt(given) : cipher.Decrypt(given));
    const double bytes = static_cast<double>(state.iterations()) * static_cast<double>(text.size());
    setValue(state, bytes / mebibyte / secondsSince(start), "MiB/s");
}

void line(benchmark::State& state) {
    Cipher cipher;
    const std::string text(80, 'a');
    const auto start = Clock::now();
    for (auto _ : state) benchmark::DoNotOptimize(cipher.Encrypt(text));
    setValue(state, secondsSince(start) * 1e6 / static_cast<double>(state.iterations()), "us");
}

void loadScripts(benchmark::State& state) {
    test::VirtualTime time;
    test::VirtualNetwork network{time};
    test::VirtualPlatform around{time, network};
    GlobError globError{around.platform};
    std::string file;
    for (int number = 0; number < manyScripts; ++number)
        file += "command" + CStr(number) + "\1PRIVMSG  %1 :hello %2\2ECHO told %1 hello\r\n";
    around.disk.put("System/script_cmd.dat", file);
    modCommands commands{around.platform, globError, {}};
    const auto start = Clock::now();
    for (auto _ : state) commands.Load();
    setValue(state, secondsSince(start) * 1e3 / static_cast<double>(state.iterations()), "ms");
}

}  // namespace

BENCHMARK_CAPTURE(throughput, encrypt, true)->Name("cipher.mib_per_s");
BENCHMARK_CAPTURE(throughput, decrypt, false)->Name("cipher.decrypt_mib_per_s");
BENCHMARK(line)->Name("cipher.line_us");
BENCHMARK(loadScripts)->Name("scripts.load_10000_ms");
