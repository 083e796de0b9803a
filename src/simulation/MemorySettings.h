#pragma once
// The settings store of the virtual platform. `FailNextSave` makes the next save fault and keep the old
// value.

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/RuntimeError.h"
#include "platform/SettingsStore.h"
#include "platform/SettingsTable.h"

namespace talvora {

class MemorySettings final : public SettingsStore {
  public:
    void FailNextSave(RuntimeError fault = RuntimeError(Fault::DiskFull)) { failure_ = std::move(fault); }
    // Including those that changed nothing or failed.
    int SaveCount() const { return saves_; }

    std::string GetSetting(std::string_view app, std::string_view section, std::string_view key,
                           std::string_view fallback) const override {
        const std::string* value = table_.find({app, section, key});
        return value != nullptr ? *value : std::string(fallback);
    }

    void SaveSetting(std::string_view app, std::string_view section, std::string_view key,
                     std::string_view value) override {
        ++saves_;
        if (const auto failure = std::exchange(failure_, std::nullopt)) throw *failure;
        table_.save({app, section, key}, value);
    }

  private:
    SettingsTable table_;
    std::optional<RuntimeError> failure_;
    int saves_ = 0;
};

}  // namespace talvora
