#include <gtest/gtest.h>

#include "platform/SettingsTable.h"

namespace talvora {

TEST(SettingsTable, FindsNamesInAnyCaseAndKeepsThemApart) {
    const std::tuple<SettingName, SettingName, bool> cases[] = {
        {{"Talvora", "PMSettings", "TimeStamp_bob"}, {"TALVORA", "pmsettings", "Timestamp_BOB"}, true},
        // "Anna" with an accent on the first letter, and a final sigma.
        {{"T", "ChanKeys", "#\xDC\xED\xED\xE1\xF2"}, {"T", "ChanKeys", "#\xA2\xCD\xCD\xC1\xD3"}, true},
        {{"T", "ChanKeys", "#\xDC\xED\xED\xE1"}, {"T", "ChanKeys", "#\xE1\xED\xED\xE1"}, false},
        {{"T", "ab", "c"}, {"T", "a", "bc"}, false},
        {{"", "", "Tabc"}, {"T", "ab", "c"}, false},
        {{"T", "a", {"k\0x", 3}}, {"t", "A", {"K\0X", 3}}, true},
        {{"T", "a", {"k\0x", 3}}, {"T", "a", "k"}, false},
    };
    for (const auto& [saved, read, same] : cases) {
        SettingsTable table;
        table.save(saved, "value");
        EXPECT_EQ(table.find(read) != nullptr, same) << read.key;
        table.save(read, "other");
        EXPECT_EQ(*table.find(saved), same ? "other" : "value");
    }
}

}  // namespace talvora
