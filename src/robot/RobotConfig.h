#pragma once
// The robot's configuration: an INI file that the network's volunteers write. Section [network] is a network
// profile as the messenger has it; the other sections are the robot's own. Read once at the start; a wrong
// line is named with what is allowed. Texts are in code page 1253.

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "profile/NetworkProfile.h"
#include "robot/RobotStore.h"

namespace talvora {

inline constexpr int CategoryCount = 8;

// What may be announced in a category.
struct CategoryRules {
    int MaxHours = 48;
    int PerDay = 20;                   // of one nick
    std::vector<std::string> Posters;  // bare nicks; empty for everybody
};

struct RobotConfig {
    NetworkProfile Network;

    // [robot]
    std::string Nick = "OrreryServ";
    std::string RealName = "UL:Network.Services";
    std::string Password;              // of the server; empty for none
    std::vector<std::string> OnLogin;  // raw lines after the log-on, in order (registration, OPER)
    std::string ChannelModes;          // set in the system channel where the robot may, such as "+s"

    // [mail]
    int MailsPerUser = 50;
    int KilobytesPerUser = 512;
    int PiecesPerMail = 300;  // 1 to 327: the client's count overflows above
    int UsersSending = 100;   // more wait
    int KeepDays = 365;       // for which a mail waits, if its sender doesn't say less

    // [announcements]: MaxHours.N, PerDay.N, Posters.N for N from 0 to 7; PosterStates
    std::array<CategoryRules, CategoryCount> Categories;
    std::vector<std::string> PosterStates;  // in which posters may post; without a state they always may

    // [pacing]
    int LinesPerSecond = 5;  // over all users; 0 for no limit
    int Burst = 5;
    int RequestsPerMinute = 120;  // of one user; what comes on top is dropped

    // [address]
    std::string AddressHost;  // told to those who ask for the address server; empty for "-"
    int AddressPort = 37183;  // of the address server in this program; 0 for none
    std::string AddressListen;

    // [store]
    StoreSettings Store;
};

// Throws ProfileError. Categories that are not given keep the network's habits: Urgent and Meeting up to 720
// hours, Moderator, Administrator and AP-Owner up to 168, the others up to 48.
RobotConfig parseRobotConfig(std::string_view text, const std::string& file = "orreryserv.ini");

}  // namespace talvora
