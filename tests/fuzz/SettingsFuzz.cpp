// Saves and reads on the settings table, held against a plain map with folded names.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>
#include <tuple>

#include "platform/SettingsTable.h"
#include "platform/Text.h"

namespace {

using talvora::SettingName;
using talvora::SettingsTable;
using talvora::UCase;

// Takes the input apart: a length byte, then so many bytes.
class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

    bool empty() const { return rest_.empty(); }
    std::uint8_t byte() {
        if (rest_.empty()) return 0;
        const auto first = static_cast<std::uint8_t>(rest_.front());
        rest_.remove_prefix(1);
        return first;
    }
    // Short ones mostly, so that names meet again.
    std::string_view text(unsigned most) {
        const std::string_view taken = rest_.substr(0, byte() % (most + 1));
        rest_.remove_prefix(taken.size());
        return taken;
    }

  private:
    std::string_view rest_;
};

void require(bool holds) {
    if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::map<std::tuple<std::string, std::string, std::string>, std::string> model;
    SettingsTable table;
    Input input(data, size);
    while (!input.empty()) {
        const bool saves = input.byte() % 2 == 0;
        const std::string_view app = input.text(2);
        const std::string_view section = input.text(2);
        const std::string_view key = input.text(4);
        const SettingName name{app, section, key};
        const auto address = std::make_tuple(UCase(app), UCase(section), UCase(key));
        if (saves) {
            const std::string_view value = input.text(255);
            model[address] = value;
            table.save(name, value);
        }
        const auto expected = model.find(address);
        const std::string* found = table.find(name);
        require((found != nullptr) == (expected != model.end()));
        require(found == nullptr || *found == expected->second);
        require(table.size() == model.size());
    }
    return 0;
}
