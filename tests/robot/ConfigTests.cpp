#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

#include "robot/RobotConfig.h"

namespace talvora::test {
namespace {

// All that a configuration says beside the network, or what is wrong with it.
std::string read(const std::string& text) {
    RobotConfig c;
    try {
        c = parseRobotConfig(text);
    } catch (const ProfileError& error) {
        return error.what();
    }
    std::string all;
    for (const auto& word :
         {c.Nick, c.RealName, c.Password, c.ChannelModes, c.AddressHost, c.AddressListen, c.Store.Driver,
          c.Store.Database, c.Store.Host, c.Store.User, c.Store.Password}) {
        all += word + "|";
    }
    for (const auto& line : c.OnLogin) all += line + "|";
    for (const auto& state : c.PosterStates) all += state + "|";
    for (const int number :
         {c.MailsPerUser, c.KilobytesPerUser, c.PiecesPerMail, c.UsersSending, c.LinesPerSecond, c.Burst,
          c.RequestsPerMinute, c.AddressPort, c.Store.Port, c.KeepDays, c.Store.Megabytes}) {
        all += " " + std::to_string(number);
    }
    for (const auto& rules : c.Categories) {
        all += "; " + std::to_string(rules.MaxHours) + " " + std::to_string(rules.PerDay);
        for (const auto& poster : rules.Posters) all += " " + poster;
    }
    return all;
}

TEST(RobotConfig, IsReadWholeAndTheExampleHasTheDefaults) {
    std::ifstream file(TALVORA_SOURCE_DIR "/data/orreryserv.ini", std::ios::binary);
    EXPECT_EQ(read({std::istreambuf_iterator<char>(file), {}}), read(""));
    EXPECT_EQ(read(""),
              "OrreryServ|UL:Network.Services|||||QSQLITE|orreryserv.db|||| 50 512 300 100 5 5 120 37183 0 "
              "365 2048;"
              " 48 20; 720 20; 168 20; 168 20; 168 20; 720 20; 48 20; 48 20");
    EXPECT_EQ(
        read("\xEF\xBB\xBF# ours\r\n[Network]\r\nServerHost = irc.example.org\r\n[robot]\r\n"
             "nick = \xCE\x91\xCE\xB2\r\nRealName = a = b\r\nOnLogin = OPER a b\r\nOnLogin=MODE x +B\r\n"
             "Password = p q\r\nChannelModes = +s\r\n[network]\r\nServerPort = 7000\r\n[mail]\r\n"
             "MailsPerUser=1\r\nKilobytesPerUser=2\r\nPiecesPerMail=327\r\nUsersSending=4\r\nKeepDays=30\r\n"
             "[announcements]\r\nmaxhours.7 = 5\r\nPerDay.7=0\r\nPosters.0 = Anna, \xCE\x91\xCE\xB2 C\r\n"
             "Posters.3 =\r\nPosterStates = DND,away\r\n[pacing]\r\nLinesPerSecond = 0\r\nBurst=7\r\n"
             "RequestsPerMinute=8\r\n[address]\r\nAddressHost = h\r\nAddressPort = 0\r\n"
             "AddressListen = ::1\r\n[store]\r\nDriver = qpsql\r\nDatabase = d\r\nHost = /\xCE\xB1\r\n"
             "Port = 9\r\nUser = u\r\nPassword = \xCE\xB1\r\nMegabytes = 10"),
        "\xC1\xE2|a = b|p q|+s|h|::1|QPSQL|d|/\xCE\xB1|u|\xCE\xB1|OPER a b|MODE x +B|DND|away| 1 2 327 4 0 7 "
        "8"
        " 0 9 30 10; 48 20 Anna \xC1\xE2 C; 720 20; 168 20; 168 20; 168 20; 720 20; 48 20; 5 0");
}

TEST(RobotConfig, NamesTheWrongLineAndWhatIsAllowed) {
    const std::pair<std::string, std::string> cases[] = {
        {"[robot]\nNick = A\n[network]\n\nServerPort = x", "orreryserv.ini:5: ServerPort is \"x\""},
        {"Nick = A", "orreryserv.ini:1: \"Nick\" stands before [network]"},
        {"\n[network]\n[mails]\n", "ini:3: \"[mails]\" is no section of this file; allowed are [network], "},
        {"[robot]\nNick = Anna[DND]", "ini:2: Nick is \"Anna[DND]\"; a nick without a state"},
        {"[robot]\nNick = A\n nick = A", "ini:3: nick is given twice"},
        {"[robot]\nNick", "\"Nick\" has no ="},
        {"[robot]\nOnLogin =", "a line of 1 to 510 bytes"},
        {"[robot]\nRealName = a\rb", "a control character"},
        {"[robot]\nChannelModes = s", "begin with + or -"},
        {"[robot]\nBurst = 5", "is no key of [robot]; allowed are Nick, RealName, Password, OnLogin, "},
        {"[mail]\nPiecesPerMail = 328", "\"328\"; a number from 1 to 327 is allowed"},
        {"[mail]\nMailsPerUser = 99999999999999", "from 1 to 1000000"},
        {"[announcements]\nMaxHours.8 = 1", "is no key of [announcements]; allowed are MaxHours.N, "},
        {"[announcements]\nPosters.1 = A B[afk]", "Posters.1 is \"B[afk]\""},
        {"[announcements]\nPosterStates = [DND]", "states without their brackets"},
        {"[announcements]\nPerDay.1 = 1\nPERDAY.1 = 1", "is given twice"},
        {"[address]\nAddressHost = a b", "without blanks"},
        {"[address]\nAddressListen = localhost", "an address in numbers"},
        {"[store]\nDriver = oracle", "QSQLITE or QPSQL is allowed"},
        {"[store]\nDatabase =", "a file, or the name of a database"},
        {std::string(70'000, '\n'), "64 KiB are allowed"},
    };
    for (const auto& [text, expected] : cases) EXPECT_THAT(read(text), testing::HasSubstr(expected));
}

}  // namespace
}  // namespace talvora::test
