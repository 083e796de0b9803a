#pragma once
// A whole platform for one component on virtual time: its own questions, disk and settings, on a loop and a
// network that several components may share.

#include "platform/Files.h"
#include "platform/MemoryClipboard.h"
#include "platform/Platform.h"
#include "simulation/MemoryDisk.h"
#include "simulation/MemorySettings.h"
#include "simulation/PreparedQuestions.h"
#include "simulation/VirtualNetwork.h"
#include "simulation/VirtualTime.h"

namespace talvora::test {

// A wall clock that goes with virtual time from a fixed morning on.
class VirtualClock final : public Clock {
  public:
    explicit VirtualClock(VirtualTime& time) : time_(time) {}
    DateTime Now() const override {
        const auto seconds = static_cast<int>(SecondsSinceMidnight());
        return {2026, 3, 14, seconds / 3600, seconds / 60 % 60, seconds % 60};
    }
    double SecondsSinceMidnight() const override {
        return 9 * 3600 + static_cast<double>(time_.Now() % (12 * 3600 * 1'000'000LL)) / 1e6;
    }

  private:
    VirtualTime& time_;
};

// A desktop that does as it is told, and remembers the links that it was given.
class VirtualScreen final : public Desktop {
  public:
    int ScreenWidth() const override { return 15360; }
    int ScreenHeight() const override { return 11520; }
    const Form* ForegroundWindow() const override { return foreground_; }
    Clipboard& TheClipboard() override { return clipboard; }
    void Open(const std::string& url) override {
        if (!hasBrowser) throw RuntimeError(Fault::InvalidProcedureCall);
        opened.push_back(url);
    }

    void SetForegroundWindow(Form& form) override { works(&form); }
    void SetTopMost(Form&, bool onTop) override { topMost += onTop ? 1 : 0; }
    void FlashWindow(Form&, bool invert) override { flashes += invert ? 1 : 0; }
    void Beep() override { ++beeps; }

    void works(const Form* form) {
        foreground_ = form;
        ForegroundChanged.raise();
    }

    MemoryClipboard clipboard;
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
        : clock(time), disk(&clock), platform{time, network, clock, questions, files, settings, screen} {}

    VirtualClock clock;
    PreparedQuestions questions;
    MemoryDisk disk;
    Files files{disk};
    MemorySettings settings;
    VirtualScreen screen;
    Platform platform;
};

}  // namespace talvora::test
