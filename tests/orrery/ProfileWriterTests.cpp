// A profile goes back into its file, which stays the user's own.
#include <gmock/gmock.h>

#include "profile/ProfileWriter.h"

namespace talvora {
namespace {

TEST(ProfileWriter, ChangesOnlyTheLinesThatSayOtherwise) {
    const std::string old =
        "\xEF\xBB\xBF; our network\r\n"
        "[network]\r\n"
        "serverhost=old.test\r\n"
        "  Dialect = Standard,+pacing\r\n"
        "# ServerPort = 1\r\n"
        "\r\n"
        "[store]\r\n"
        "ServerHost = not this one\r\n";
    NetworkProfile profile;
    profile.ServerHost = "\xE1.test";
    profile.TLS = true;
    profile.Wire.set(Rewrite::Pacing);
    EXPECT_EQ(withProfile(old, profile),
              "\xEF\xBB\xBF; our network\r\n"
              "[network]\r\n"
              "serverhost= \xCE\xB1.test\r\n"
              "  Dialect = Standard,+pacing\r\n"
              "# ServerPort = 1\r\n"
              "TLS = yes\r\n"
              "\r\n"
              "[store]\r\n"
              "ServerHost = not this one\r\n");
    EXPECT_EQ(withProfile("", NetworkProfile{}), "");
    EXPECT_EQ(withProfile("; no end", profile).substr(0, 20), "; no end\n[network]\nS");
}

TEST(ProfileWriter, WhatIsWrittenIsReadAgain) {
    NetworkProfile profile;
    const std::pair<const char*, const char*> values[] = {
        {"ServerHost", "irc.test"},
        {"ServerPort", "6697"},
        {"SysChannel", "#\xCE\xB1"},
        {"SysChanKey", "k=1"},
        {"TLS", "yes"},
        {"CAFile", "/a b"},
        {"Encoding", "utf-8"},
        {"Dialect", "plain +rejoin"},
        {"ReceiveAddress", "::1"},
        {"RobotOnly", "yes"},
    };
    for (const auto& [key, value] : values)
        EXPECT_EQ(setProfileValue(profile, key, value), std::nullopt) << key;
    for (const std::string old :
         {"", "[network]", "[network]\nTLS = no\nSysChanKey =\n", "[Network]\n\n; end"}) {
        const NetworkProfile read = parseNetworkProfile(withProfile(old, profile));
        for (const auto& [key, value] : values) EXPECT_EQ(profileValue(read, key), value) << old;
    }
    EXPECT_EQ(setProfileValue(profile, "ServerPort", "x"), "\"x\"; a number from 1 to 65535 is allowed");
    EXPECT_NE(setProfileValue(profile, "ServerHost", "a\nTLS = no"), std::nullopt);
    profile.SysChanKey = "k\nTLS = no";
    EXPECT_EQ(profileValue(profile, "SysChanKey"), "kTLS = no");
}

}  // namespace
}  // namespace talvora
