#pragma once
// A whole platform for one component on virtual time: its own questions, disk and settings, on a loop and a
// network that several components may share.

#include "platform/Files.h"
#include "platform/MemoryClipboard.h"
#include "platform/Platform.h"
#include "platform/Pointer.h"
#include "simulation/MemoryDisk.h"
#include "simulation/MemorySettings.h"
#include "simulation/PreparedQuestions.h"
#include "simulation/VirtualNetwork.h"
#include "simulation/VirtualTime.h"

namespace talvora::test {

// A wall clock that goes with virtual time from nine in the morning of 14/03/2026 on, and can be put wrong.
class VirtualClock final : public Clock {
  public:
    explicit VirtualClock(VirtualTime& time) : time_(time) {}
    DateTime Now() const override {
        using namespace std::chrono;
        const sys_time<microseconds> now = moment();
        const year_month_day day{floor<days>(now)};
        const auto second = static_cast<int>(SecondsSinceMidnight());
        return {static_cast<int>(day.year()),
                static_cast<int>(static_cast<unsigned>(day.month())),
                static_cast<int>(static_cast<unsigned>(day.day())),
                second / 3600,
                second / 60 % 60,
                second % 60};
    }
    double SecondsSinceMidnight() const override {
        const std::chrono::sys_time<std::chrono::microseconds> now = moment();
        return static_cast<double>((now - std::chrono::floor<std::chrono::days>(now)).count()) / 1e6;
    }

    // How far somebody has put the clock forward, or back.
    std::chrono::seconds ahead{0};

  private:
    std::chrono::sys_time<std::chrono::microseconds> moment() const {
        using namespace std::chrono;
        return sys_days{March / 14 / 2026} + hours{9} + microseconds{time_.Now()} + ahead;
    }

    VirtualTime& time_;
};

// A pointer that goes where it is told, on a screen of 1024 pixels.
class VirtualPointer final : public Pointer {
  public:
    std::optional<Place> Position() const override {
        ++asked;
        return place_;
    }
    void AwaitAtTop(int left, int height) override { strip_ = Place{left, height}; }
    void StopWaiting() override { strip_.reset(); }

    void goes(int x, int y) {
        place_ = {x, y};
        if (strip_ && x >= strip_->X && y < strip_->Y) {
            strip_.reset();
            Arrived.raise();
        }
    }

    mutable int asked = 0;  // how often somebody wanted to know where it is

  private:
    Place place_{512, 384};
    std::optional<Place> strip_;
};

// A desktop that does as it is told, and remembers the links that it was given.
class VirtualScreen final : public Desktop {
  public:
    int ScreenWidth() const override { return 15360; }
    int ScreenHeight() const override { return 11520; }
    bool PlacesWindows() const override { return placesWindows; }
    const Form* ForegroundWindow() const override { return foreground_; }
    Clipboard& TheClipboard() override { return clipboard; }
    Pointer& ThePointer() override { return pointer; }
    void Open(const std::string& url) override {
        if (!hasBrowser) throw RuntimeError(Fault::InvalidProcedureCall);
        opened.push_back(url);
    }
    void OpenFile(const std::string& nativePath) override { Open(nativePath); }

    void SetForegroundWindow(Form& form) override { works(&form); }
    void SetTopMost(Form&, bool onTop) override { topMost += onTop ? 1 : 0; }
    void FlashWindow(Form&, bool invert) override { flashes += invert ? 1 : 0; }
    void Beep() override { ++beeps; }

    void works(const Form* form) {
        foreground_ = form;
        ForegroundChanged.raise();
    }

    MemoryClipboard clipboard;
    VirtualPointer pointer;
    bool placesWindows = true;
    bool hasBrowser = true;
    int beeps = 0;
    int flashes = 0;
    int topMost = 0;
    std::vector<std::string> opened;

  private:
    const Form* foreground_ = nullptr;
};

struct VirtualPlatform {
    VirtualPlatform(VirtualTime& time, VirtualNetwork& network)
        : clock(time), platform{time, network, clock, questions, files, settings, screen} {}

    VirtualClock clock;
    PreparedQuestions questions;
    MemoryDisk disk;
    Files files{disk};
    MemorySettings settings;
    VirtualScreen screen;
    Platform platform;
};

}  // namespace talvora::test
