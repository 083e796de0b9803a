#include <gtest/gtest.h>

#include "profile/NetworkProfile.h"

namespace talvora::test {
namespace {

NetworkProfile read(const std::string& keys) {
    return parseNetworkProfile("[network]\n" + keys);
}

std::string complaint(const std::string& text) {
    try {
        parseNetworkProfile(text);
    } catch (const ProfileError& error) {
        return error.what();
    }
    return "accepted";
}

TEST(NetworkProfile, IsReadWhole) {
    const auto profile = parseNetworkProfile(
        "\xEF\xBB\xBF# ours\r\n\r\n  [Network]  \r\n; next\r\n serverhost = irc.example.org "
        "\r\nServerPort=65535\r\n"
        "SysChannel = #\xCE\xB1\xCE\xB2\r\nSysChanKey = a=b#;\r\nTLS = Yes\r\nCAFile = /etc/\xCE\xB1.pem\r\n"
        "Encoding = UTF-8\r\nDialect = plain +names, +pacing\r\nReceiveAddress = ::1\r\nRobotOnly = yes");
    EXPECT_EQ(profile.ServerHost, "irc.example.org");
    EXPECT_EQ(profile.ServerPort, 65535);
    EXPECT_EQ(profile.SysChannel, "#\xE1\xE2");
    EXPECT_EQ(profile.SysChanKey, "a=b#;");
    EXPECT_TRUE(profile.TLS);
    EXPECT_EQ(profile.CAFile, "/etc/\xCE\xB1.pem");
    EXPECT_EQ(profile.Wire.Encoding, Encoding::UTF8);
    EXPECT_TRUE(profile.Wire.has(Rewrite::Names) && profile.Wire.has(Rewrite::Pacing));
    EXPECT_EQ(profile.Wire.Rewrites.count(), 2U);
    EXPECT_EQ(profile.ReceiveAddress, "::1");
    EXPECT_TRUE(profile.RobotOnly);
}

TEST(NetworkProfile, HasDefaultsForWhatIsNotGiven) {
    for (const auto* text : {"", "[network]", "\n\n# nothing\n"}) {
        const auto profile = parseNetworkProfile(text);
        EXPECT_EQ(profile.ServerHost, "127.0.0.1");
        EXPECT_EQ(profile.ServerPort, 6667);
        EXPECT_EQ(profile.SysChannel, "#talvora");
        EXPECT_FALSE(profile.TLS || profile.RobotOnly);
        EXPECT_EQ(profile.Wire.Rewrites, WireProfile::standard().Rewrites);
        EXPECT_EQ(profile.Wire.Encoding, Encoding::CP1253);
    }
    EXPECT_EQ(read("SysChanKey =\nCAFile=\nReceiveAddress=").SysChanKey, "");
    EXPECT_EQ(read("Encoding = utf-8\nDialect = standard").Wire.Encoding, Encoding::UTF8);
}

TEST(NetworkProfile, NamesTheWrongLineAndWhatIsAllowed) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"[network]\n\nServerPort = abc",
         "network.ini:3: ServerPort is \"abc\"; a number from 1 to 65535 is allowed"},
        {"[network]\nServerPort = 0", "ServerPort is \"0\"; a number from 1 to 65535"},
        {"[network]\nServerPort = 65536", "ServerPort is \"65536\""},
        {"[network]\nServerPort = 6667x", "ServerPort is \"6667x\""},
        {"[network]\nServerHost = a b", "ServerHost is \"a b\""},
        {"[network]\nServerHost =", "without blanks is allowed"},
        {"[network]\nSysChannel = talvora", "begins with #"},
        {"[network]\nSysChannel = #a,#b", "begins with #"},
        {"[network]\nSysChannel = #", "begins with #"},
        {"[network]\nSysChanKey = a b", "a key without blanks"},
        {"[network]\nTLS = 1", "TLS is \"1\"; yes or no is allowed"},
        {"[network]\nEncoding = latin1", "Encoding is \"latin1\"; cp1253 or utf-8 is allowed"},
        {"[network]\nDialect = standard +nams", "\"+nams\" is not known; allowed are plain or standard"},
        {"[network]\nReceiveAddress = localhost", "an address in numbers"},
        {"[network]\nPort = 1",
         "network.ini:2: \"Port\" is no key; allowed are ServerHost, ServerPort, SysChannel"},
        {"[network]\nTLS = no\ntls = no", "network.ini:3: TLS is given twice"},
        {"[network]\nServerHost irc", "network.ini:2: \"ServerHost irc\" has no ="},
        {"[net]", "network.ini:1: \"[net]\" is no section"},
        {"TLS = no", "network.ini:1: \"TLS\" stands before [network]"},
        {"[network]\nSysChanKey = a\x01", "network.ini:2: a control character"},
        {"[network]\nServerHost = a\rb", "a control character"},
        {std::string(70'000, '#'), "network.ini:1: the file is too long"},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_NE(complaint(text).find(expected), std::string::npos) << complaint(text);
    }
    EXPECT_LT(complaint("[network]\nTLS = " + std::string(60'000, 'x')).size(), 200U);
}

}  // namespace
}  // namespace talvora::test
