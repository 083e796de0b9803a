// Mail: the list of a folder with ten thousand mails, and the encoding of a text.

#include <benchmark/benchmark.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QTemporaryDir>
#include <array>
#include <chrono>
#include <memory>
#include <string>

#include "mail/MailFile.h"
#include "mail/MailPanel.h"
#include "platform_qt/PosixDisk.h"
#include "platform_qt/SqliteSettings.h"
#include "simulation/VirtualPlatform.h"

namespace talvora {
namespace {

using Clock = std::chrono::steady_clock;

double secondsOf(const auto& call) {
    const auto begin = Clock::now();
    call();
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

class NoSession final : public MailSession {
    void TellRobot(const std::string&) override {}
    void SetMailRefresh(int) override {}
    void SetMailInterval(std::int32_t) override {}
    void RefreshMailList() override {}
    void ShowIncoming() override {}
};

class NoWindows final : public MailWindows {
    void View(const std::string&) override {}
    void Reply(const std::string&) override {}
    void Write(const std::string&, const std::string&, bool, const std::string&) override {}
    void OpenDraft(const std::string&) override {}
};

// Mail on the machine's own disk and store.
class Mails {
  public:
    Mails() { files.MkDir("Mail"); }

    void put(int number) {
        File file = files.Open("Mail\\" + MailFile::IncomingName(number), FileMode::Output);
        file.Write(MailFile::IncomingHead("Nikos" + std::to_string(number % 50), "14/03/2026 08:30:00",
                                          "13/03/2026 22:00:00", "Subject " + std::to_string(number)));
        for (int line = 0; line < 5; ++line) file.WriteLine(std::string(200, 'x'));
        file.Write(MailFile::Tail);
    }
    std::unique_ptr<MailPanel> panel() {
        return std::make_unique<MailPanel>(around, status, manager, drafts, windows);
    }

    int argc = 1;
    std::array<char, 6> program{"bench"};
    std::array<char*, 2> argv{program.data(), nullptr};
    std::unique_ptr<QCoreApplication> application =
        QCoreApplication::instance() == nullptr ? std::make_unique<QCoreApplication>(argc, argv.data())
                                                : nullptr;
    QTemporaryDir folder;
    PosixDisk disk{folder.filePath("data").toStdString()};
    Files files{disk};
    SqliteSettings store{folder.filePath("settings.db").toStdString()};
    test::VirtualTime time;
    test::VirtualNetwork network{time};
    test::VirtualPlatform rest{time, network};
    Platform platform{time, network, rest.clock, rest.questions, files, store, rest.screen};
    GlobError reporter{platform};
    ComponentSettings settings{store};
    HostGate gate{settings};
    MailSurroundings around{platform, reporter, settings, gate};
    NoSession session;
    NoWindows windows;
    MailStatus status{platform};
    modMailManager manager{around, status, session};
    MailDrafts drafts{reporter, files};
};

constexpr int manyMails = 10'000;

void list(benchmark::State& state, bool again) {
    Mails mails;
    for (int number = 1; number <= manyMails; ++number) mails.put(number);
    auto panel = mails.panel();
    panel->RefreshMailList();
    int number = manyMails;
    double milliseconds = 0;
    for (auto _ : state) {
        if (again) {
            mails.put(++number);
        } else {
            panel = mails.panel();
        }
        milliseconds = secondsOf([&] { panel->RefreshMailList(); }) * 1000;
    }
    if (panel->ListView3.ListItems.Count() != number) state.SkipWithError("mails are missing");
    state.counters["value"] = milliseconds;
    state.SetLabel("ms");
}

void encode(benchmark::State& state) {
    std::string text;
    while (text.size() < (1 << 20))
        text += "A line of a mail that somebody has written, with a few words.\r\n";
    const MailFile::Letter letter{.To = "Maria", .Subject = "s", .Text = text};
    for (auto _ : state) benchmark::DoNotOptimize(MailFile::OutgoingFile(letter));
    state.counters["value"] = benchmark::Counter(static_cast<double>(text.size()) / (1 << 20),
                                                 benchmark::Counter::kIsIterationInvariantRate);
    state.SetLabel("MiB/s");
}

}  // namespace

BENCHMARK_CAPTURE(list, anew, false)->Name("mail.list_10000_ms")->Iterations(3);
BENCHMARK_CAPTURE(list, again, true)->Name("mail.list_again_10000_ms")->Iterations(3);
BENCHMARK(encode)->Name("mail.encode_mib_per_s");

}  // namespace talvora
