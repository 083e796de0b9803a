#include <gtest/gtest.h>

#include <string>

#include "platform/SettingsTable.h"
#include "support/MemorySettings.h"

namespace talvora {
namespace {

TEST(SettingsTable, FindsNamesInAnyCaseGreekToo) {
    struct Case {
        SettingName saved;
        SettingName read;
        bool same;
    };
    const Case cases[] = {
        {{"Talvora", "PMSettings", "TimeStamp_bob"}, {"TALVORA", "pmsettings", "Timestamp_BOB"}, true},
        // "Anna" with an accent on the first letter, and a final sigma.
        {{"T", "ChanKeys", "#\xDC\xED\xED\xE1\xF2"}, {"T", "ChanKeys", "#\xA2\xCD\xCD\xC1\xD3"}, true},
        {{"T", "ChanKeys", "#\xDC\xED\xED\xE1"}, {"T", "ChanKeys", "#\xE1\xED\xED\xE1"}, false},
        // The bounds between the names count.
        {{"T", "ab", "c"}, {"T", "a", "bc"}, false},
        {{"Ta", "b", "c"}, {"T", "ab", "c"}, false},
        {{"", "", "Tabc"}, {"T", "ab", "c"}, false},
        {{"T", "a", {"k\0x", 3}}, {"t", "A", {"K\0X", 3}}, true},
        {{"T", "a", {"k\0x", 3}}, {"T", "a", "k"}, false},
        {{"", "", ""}, {"", "", ""}, true},
    };
    for (const auto& [saved, read, same] : cases) {
        SettingsTable table;
        table.save(saved, "value");
        EXPECT_EQ(table.find(read) != nullptr, same) << read.key;
        table.save(read, "other");
        EXPECT_EQ(*table.find(saved), same ? "other" : "value");
        EXPECT_EQ(table.size(), same ? 1u : 2u);
    }
}

TEST(SettingsTable, KeepsAnyBytes) {
    std::string every;
    for (int byte = 0; byte < 256; ++byte) every += static_cast<char>(byte);
    SettingsTable table;
    table.save({every, every, every}, every);
    table.save({"T", "s", "empty"}, "");
    EXPECT_EQ(*table.find({every, every, every}), every);
    EXPECT_EQ(*table.find({"T", "s", "empty"}), "");
    EXPECT_EQ(table.find({"T", "s", "other"}), nullptr);
}

TEST(MemorySettings, KeepTheOldValueWhenASaveFails) {
    MemorySettings settings;
    EXPECT_EQ(settings.GetSetting("T", "Information", "MailID", "0"), "0");
    settings.SaveSetting("T", "Information", "MailID", "1");
    settings.FailNextSave();
    EXPECT_THROW(settings.SaveSetting("T", "Information", "MailID", "2"), RuntimeError);
    EXPECT_EQ(settings.GetSetting("T", "Information", "MailID", "0"), "1");
    settings.SaveSetting("T", "Information", "MailID", "2");
    EXPECT_EQ(settings.GetSetting("T", "Information", "MailID", "0"), "2");
}

}  // namespace
}  // namespace talvora
