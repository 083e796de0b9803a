// Chat lines through the control characters, the emoticons and the reading of what they became, one after the
// other in one view. Whatever they hold, the text stays bounded and the line behind them can be read.

#include <cstdlib>

#include "chat/IRCWin.h"
#include "platform/Files.h"
#include "platform/MemoryClipboard.h"
#include "platform/Text.h"
#include "simulation/MemorySettings.h"

namespace {

using namespace talvora;

// A world in which nothing happens, every fault is ignored, and there is one file.
struct StillClock final : Clock {
    DateTime Now() const override { return {}; }
    double SecondsSinceMidnight() const override { return 0; }
};

struct StillWorld final : Loop, Network, Questions, Desktop {
    Microseconds Now() const override { return 0; }
    void Defer(std::function<void()>) override {}
    void Pump() override {}
    TimerQueue& Timers() override { std::abort(); }
    void TimersChanged() override {}
    std::unique_ptr<SocketDriver> CreateSocket(const Security&) override { return nullptr; }
    Answer Ask(MessageBox&) override { return Answer::Ignore; }
    std::optional<std::string> Ask(const InputBox&) override { return {}; }
    std::vector<std::string> Ask(const OpenFileBox&) override { return {}; }
    std::optional<std::string> Ask(const SaveFileBox&) override { return {}; }
    std::optional<FontChoice> Ask(const FontBox&) override { return {}; }
    int ScreenWidth() const override { return 0; }
    int ScreenHeight() const override { return 0; }
    const Form* ForegroundWindow() const override { return nullptr; }
    void SetForegroundWindow(Form&) override {}
    void SetTopMost(Form&, bool) override {}
    void FlashWindow(Form&, bool) override {}
    void Beep() override {}
    Clipboard& TheClipboard() override { return clipboard; }
    void Open(const std::string&) override {}
    MemoryClipboard clipboard;
};

struct OneFile final : DiskDriver {
    static constexpr std::string_view table =
        ":-):=:{\\pict\\pngblip\\picwgoal300 [#13]89504e47}\r\n;):=:{\\b :-) }\r\nx{:=:}{\\v \r\n";
    static constexpr std::int64_t length = table.size();

    Handle open(const std::string&, Access) override { return 0; }
    Handle openPicked(const std::string&) override { return 0; }
    Handle createPicked(const std::string&) override { return 0; }
    std::size_t read(Handle, std::int64_t at, char* to, std::size_t count) override {
        return table.copy(to, count, static_cast<std::size_t>(at));
    }
    void write(Handle, std::int64_t, std::string_view) override {}
    std::int64_t size(Handle) override { return length; }
    void truncate(Handle, std::int64_t) override {}
    void flush(Handle) override {}
    void close(Handle) override {}
    Status status(const std::string& path) override {
        return path.find('.') != std::string::npos ? Status{Kind::File, length} : Status{Kind::Folder};
    }
    std::string linkTarget(const std::string&) override { return {}; }
    std::vector<Entry> list(const std::string&) override { return {}; }
    void flushFolder(const std::string&) override {}
    void makeFolder(const std::string&) override {}
    void rename(const std::string&, const std::string&) override {}
    void remove(const std::string&) override {}
    void moveToWaste(const std::string&) override {}
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    StillWorld world;
    StillClock clock;
    OneFile disk;
    Files files(disk);
    MemorySettings settings;
    Platform platform{world, world, clock, world, files, settings, world};
    GlobError globError(platform);
    modEmotions emotions(files, globError);
    emotions.LoadEmotions();
    IRCWin view(platform, globError, emotions);
    view.TruncSize = 2000;
    for (const std::string& line : Split(std::string(reinterpret_cast<const char*>(data), size), "\n")) {
        view.AddIRCLine(line, 3, 2);
        const std::size_t shown = view.Document().size() + view.RichTextBox1.Text().size();
        if (shown > 100 * (size + 2000)) std::abort();
    }
    view.AddIRCLine("good", 3, 2);
    if (view.RichTextBox1.Text().find("good \r\n") == std::string::npos) std::abort();
    return 0;
}
