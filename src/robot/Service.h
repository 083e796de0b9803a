#pragma once
// The robot as a program: store, platform and robot put together, its log, and its end by a signal. `main`
// owns it; it needs a QCoreApplication.

#include <memory>
#include <string>

#include "gate/FileLock.h"
#include "platform/Files.h"
#include "platform/SettingsStore.h"
#include "platform_qt/PosixDisk.h"
#include "platform_qt/QtPlatform.h"
#include "platform_qt/StopSignals.h"
#include "robot/Robot.h"
#include "robot/RobotConfig.h"
#include "robot/RobotStore.h"

namespace talvora {

class Service {
  public:
    // Opens the store, which no other robot may have open. Throws StoreError, or another std::exception, for
    // what keeps the robot from starting.
    Service(const RobotConfig& config, StopSignals& signals);

    // Returns after the end was asked for by a signal: what waits is safe then, and the network has been
    // left.
    void Run();

  private:
    // The robot has no settings but its configuration.
    class NoSettings final : public SettingsStore {
      public:
        std::string GetSetting(std::string_view, std::string_view, std::string_view,
                               std::string_view fallback) const override {
            return std::string(fallback);
        }
        void SaveSetting(std::string_view, std::string_view, std::string_view, std::string_view) override {}
    };

    StopSignals& signals_;
    bool ending_ = false;
    FileLock lock_;
    RobotStore store_;
    NoSettings settings_;
    PosixDisk disk_{"."};
    Files files_{disk_};
    QtPlatform platform_{files_, settings_};
    Robot robot_;
};

}  // namespace talvora
