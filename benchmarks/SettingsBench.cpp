// The settings: a read is on the path of every line that arrives, a save on that of every line of a mail.

#include <benchmark/benchmark.h>

#include <QtCore/QTemporaryDir>
#include <array>
#include <string>

#include "Application.h"
#include "platform_qt/SqliteSettings.h"

namespace {

using talvora::SqliteSettings;

// A store as of a user of some years.
class Store {
  public:
    Store() : settings_(folder_.filePath("settings.db").toStdString()) {
        for (int channel = 0; channel < 200; ++channel) {
            for (const char* prefix : {"Show_", "Beep_", "Flash_", "NoFocus_"}) {
                settings_.SaveSetting("Talvora", "ChanSettings", prefix + name(channel), "T");
            }
        }
    }
    static std::string name(int channel) { return "#channel" + std::to_string(channel); }
    SqliteSettings& operator*() { return settings_; }

  private:
    talvora::Application application_;
    QTemporaryDir folder_;
    SqliteSettings settings_;
};

void reads(benchmark::State& state) {
    Store store;
    std::array<std::string, 64> keys;
    for (std::size_t key = 0; key < keys.size(); ++key)
        keys[key] = "Show_" + Store::name(static_cast<int>(key) * 4);
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            (*store).GetSetting("Talvora", "ChanSettings", keys[next++ % keys.size()], "F"));
    }
    state.SetItemsProcessed(state.iterations());
}

void writes(benchmark::State& state) {
    Store store;
    int line = 0;
    for (auto _ : state) {
        (*store).SaveSetting("Talvora", "Incompleted", "IncomingLine", std::to_string(++line));
    }
    state.SetItemsProcessed(state.iterations());
}

void start(benchmark::State& state) {
    const QTemporaryDir folder;
    const std::string path = folder.filePath("settings.db").toStdString();
    const Store application;
    { SqliteSettings(path).SaveSetting("Talvora", "Settings", "Nickname", "Anna"); }
    for (auto _ : state) benchmark::DoNotOptimize(SqliteSettings(path).Notice());
}

}  // namespace

BENCHMARK(reads)->Name("settings.reads_per_s");
BENCHMARK(writes)->Name("settings.writes_per_s");
BENCHMARK(start)->Name("settings.start")->Unit(benchmark::kMillisecond);
