#pragma once
// The component's own view of the settings store: its application name, and its eight sections by name.

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/SettingsStore.h"

namespace talvora {

inline constexpr std::string_view ProductName = "Talvora";

namespace Section {
inline constexpr std::string_view Settings = "Settings";
inline constexpr std::string_view ChanSettings = "ChanSettings";
inline constexpr std::string_view PMSettings = "PMSettings";
inline constexpr std::string_view ChanKeys = "ChanKeys";
inline constexpr std::string_view PrivateKeys = "PrivateKeys";
inline constexpr std::string_view Information = "Information";
inline constexpr std::string_view Incompleted = "Incompleted";
inline constexpr std::string_view Storage = "Storage";
}  // namespace Section

// Values are read at the moment of use, with the default given at the call.
class ComponentSettings {
  public:
    explicit ComponentSettings(SettingsStore& store) : store_(store) {}

    std::string Get(std::string_view section, std::string_view key, std::string_view fallback) const {
        return store_.GetSetting(ProductName, section, key, fallback);
    }
    // A number: the numeric beginning of the text. One that is not within `least` to `most`, or beyond any
    // number, is the fallback.
    std::int32_t GetNumber(std::string_view section, std::string_view key, std::int32_t fallback,
                           std::int32_t least, std::int32_t most) const;
    void Save(std::string_view section, std::string_view key, std::string_view value) {
        store_.SaveSetting(ProductName, section, key, value);
    }

  private:
    SettingsStore& store_;
};

}  // namespace talvora
