#pragma once
// The per-user settings store: application, section, key. Names compare without regard to case (Greek too),
// every value is text in code page 1253 of any length and content.

#include <string>
#include <string_view>

namespace talvora {

class SettingsStore {
  public:
    virtual ~SettingsStore() = default;
    // The stored text, or `fallback` if the key does not exist. Never fails.
    virtual std::string GetSetting(std::string_view app, std::string_view section, std::string_view key,
                                   std::string_view fallback) const = 0;
    // Creates or overwrites the key. When it returns, the value survives a killed process and lost power.
    // Throws RuntimeError if the store cannot be written; the old value then stays.
    virtual void SaveSetting(std::string_view app, std::string_view section, std::string_view key,
                             std::string_view value) = 0;
};

}  // namespace talvora
