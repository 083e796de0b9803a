#pragma once
// The numbers of the messages between the host and its plug-ins. Each is answered or said by the component
// unless told otherwise; docs/host-messages.md has what they carry.

#include <cstdint>

namespace talvora::HostMsg {

// Host and plug-in.
inline constexpr std::int32_t Start = 1;         // the host has loaded the plug-in
inline constexpr std::int32_t Started = 2;       // its answer: title and kind
inline constexpr std::int32_t ShowWindow = 3;    // with 1: the main window
inline constexpr std::int32_t GatherPages = 4;   // the settings window collects its pages
inline constexpr std::int32_t SettingsPage = 5;  // a page: class, title, picture
inline constexpr std::int32_t ApplySettings = 7;
inline constexpr std::int32_t Terminate = 8;
inline constexpr std::int32_t Notice = 9;     // news that the user does not see
inline constexpr std::int32_t OpenMail = 10;  // a mail file is to be shown
inline constexpr std::int32_t GatherAbout = 18;
inline constexpr std::int32_t About = 19;  // product, author, rights

// Orders to the component, and what it hears on the network.
inline constexpr std::int32_t SystemVerb = 1001;     // heard in the system channel
inline constexpr std::int32_t SaySystemVerb = 1002;  // say it there
inline constexpr std::int32_t SayVerb = 1003;        // say it to a nick
inline constexpr std::int32_t Verb = 1004;           // heard from a nick
inline constexpr std::int32_t ChannelText = 1005;
inline constexpr std::int32_t SayPrivate = 1006;
inline constexpr std::int32_t PrivateText = 1007;
inline constexpr std::int32_t UserJoined = 1008;
inline constexpr std::int32_t UserParted = 1009;
inline constexpr std::int32_t UserQuit = 1010;
inline constexpr std::int32_t UserRenamed = 1011;
inline constexpr std::int32_t ServerNumeric = 1012;  // every numeric line of the server
inline constexpr std::int32_t ServerWord = 1013;     // every other line of the server
inline constexpr std::int32_t SayRaw = 1014;         // a line to the server as it stands

}  // namespace talvora::HostMsg
