#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

#include "robot/RobotConfig.h"

namespace talvora::test {
namespace {

std::string complaint(const std::string& text) {
    try {
        parseRobotConfig(text);
    } catch (const ProfileError& error) {
        return error.what();
    }
    return "accepted";
}

// All that a configuration says beside the network.
std::string valuesOf(const RobotConfig& c) {
    std::string all = c.Nick + "|" + c.RealName + "|" + c.Password + "|" + c.ChannelModes + "|" +
                      c.AddressHost + "|" + c.AddressListen + "|" + c.Store.Driver + "|" + c.Store.Database +
                      "|" + c.Store.Host + "|" + c.Store.User + "|" + c.Store.Password;
    for (const auto& line : c.OnLogin) all += "|" + line;
    for (const int number :
         {c.MailsPerUser, c.KilobytesPerUser, c.PiecesPerMail, c.UsersSending, c.LinesPerSecond, c.Burst,
          c.RequestsPerMinute, c.AddressPort, c.Store.Port, c.KeepDays}) {
        all += " " + std::to_string(number);
    }
    for (const auto& rules : c.Categories) {
        all += "; " + std::to_string(rules.MaxHours) + " " + std::to_string(rules.PerDay);
        for (const auto& poster : rules.Posters) all += " " + poster;
    }
    return all;
}

TEST(RobotConfig, OfTheExampleIsTheDefault) {
    std::ifstream file(TALVORA_SOURCE_DIR "/data/orreryserv.ini", std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    ASSERT_NE(text, "");
    EXPECT_EQ(valuesOf(parseRobotConfig(text)), valuesOf(parseRobotConfig("")));
    EXPECT_EQ(
        valuesOf(parseRobotConfig("")),
        "OrreryServ|UL:Network.Services|||||QSQLITE|orreryserv.db||| 50 512 300 100 5 5 120 37183 0 365; 48 "
        "20; 720 20; 168 20; 168 20; 168 20; 720 20; 48 20; 48 20");
}

TEST(RobotConfig, IsReadWhole) {
    const auto config = parseRobotConfig(
        "\xEF\xBB\xBF# ours\r\n[Network]\r\nServerHost = irc.example.org\r\n[robot]\r\nnick = "
        "\xCE\x91\xCE\xB2\r\n"
        "RealName = a = b\r\nOnLogin = OPER a b\r\nOnLogin=MODE x +B\r\nPassword = p q\r\nChannelModes = "
        "+s\r\n"
        "[network]\r\nServerPort = "
        "7000\r\n[mail]\r\nMailsPerUser=1\r\nKilobytesPerUser=2\r\nPiecesPerMail=327\r\n"
        "UsersSending=4\r\nKeepDays=30\r\n[announcements]\r\nmaxhours.7 = 5\r\nPerDay.7=0\r\nPosters.0 = "
        "Anna, "
        "\xCE\x91\xCE\xB2 "
        "C\r\nPosters.3 =\r\n[pacing]\r\nLinesPerSecond = "
        "0\r\nBurst=7\r\nRequestsPerMinute=8\r\n[address]\r\n"
        "AddressHost = h\r\nAddressPort = 0\r\nAddressListen = ::1\r\n[store]\r\nDriver = qpsql\r\nDatabase "
        "= "
        "d\r\nHost = /\xCE\xB1\r\nPort = 9\r\nUser = u\r\nPassword = \xCE\xB1");
    EXPECT_EQ(config.Network.ServerHost + std::to_string(config.Network.ServerPort), "irc.example.org7000");
    EXPECT_EQ(
        valuesOf(config),
        "\xC1\xE2|a = b|p q|+s|h|::1|QPSQL|d|/\xCE\xB1|u|\xCE\xB1|OPER a b|MODE x +B 1 2 327 4 0 7 8 0 9 30"
        "; 48 20 Anna \xC1\xE2 C; 720 20; 168 20; 168 20; 168 20; 720 20; 48 20; 5 0");
}

TEST(RobotConfig, NamesTheWrongLineAndWhatIsAllowed) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"[robot]\nNick = A\n[network]\n\nServerPort = x", "orreryserv.ini:5: ServerPort is \"x\""},
        {"Nick = A", "orreryserv.ini:1: \"Nick\" stands before [network]"},
        {"\n[network]\n[mails]\n",
         "orreryserv.ini:3: \"[mails]\" is no section of this file; allowed are [network], "},
        {"[robot]\nNick = Anna[DND]", "orreryserv.ini:2: Nick is \"Anna[DND]\"; a nick without a state"},
        {"[robot]\nNick =", "Nick is \"\""},
        {"[robot]\nNick = A\n nick = A", "orreryserv.ini:3: nick is given twice"},
        {"[robot]\nNick", "\"Nick\" has no ="},
        {"[robot]\nOnLogin =", "a line of 1 to 510 bytes"},
        {"[robot]\nRealName = a\rb", "a control character"},
        {"[robot]\nChannelModes = s", "begin with + or -"},
        {"[robot]\nBurst = 5",
         "\"Burst\" is no key of [robot]; allowed are Nick, RealName, Password, OnLogin, "},
        {"[mail]\nPiecesPerMail = 328", "\"328\"; a number from 1 to 327 is allowed"},
        {"[mail]\nPiecesPerMail = 0", "from 1 to 327"},
        {"[mail]\nMailsPerUser = 99999999999999", "from 1 to 1000000"},
        {"[announcements]\nMaxHours.8 = 1", "is no key of [announcements]; allowed are MaxHours.N, "},
        {"[announcements]\nMaxHours. = 1", "is no key"},
        {"[announcements]\nPosters = A", "is no key"},
        {"[announcements]\nPosters.1 = A B[afk]", "Posters.1 is \"B[afk]\""},
        {"[announcements]\nPerDay.1 = -1", "a number from 0 to"},
        {"[announcements]\nPerDay.1 = 1\nPERDAY.1 = 1", "is given twice"},
        {"[address]\nAddressHost = a b", "without blanks"},
        {"[address]\nAddressListen = localhost", "an address in numbers"},
        {"[store]\nDriver = oracle", "QSQLITE or QPSQL is allowed"},
        {"[store]\nDatabase =", "a file, or the name of a database"},
        {std::string(70'000, '\n'), "64 KiB are allowed"},
    };
    for (const auto& [text, expected] : cases) EXPECT_THAT(complaint(text), testing::HasSubstr(expected));
}

}  // namespace
}  // namespace talvora::test
