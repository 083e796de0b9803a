#pragma once
// The numeric replies of IRC servers that the program knows, by name.

#include <cstdint>

namespace talvora::Numeric {

inline constexpr std::int32_t Welcome = 1;     // logged in
inline constexpr std::int32_t Bounce = 5;      // on today's servers: what the server supports
inline constexpr std::int32_t TryAgain = 263;  // the server is busy
inline constexpr std::int32_t LocalUsers = 265;
inline constexpr std::int32_t GlobalUsers = 266;
inline constexpr std::int32_t Away = 301;          // somebody is away
inline constexpr std::int32_t NoLongerAway = 305;  // this user
inline constexpr std::int32_t NowAway = 306;
inline constexpr std::int32_t EndOfWho = 315;
inline constexpr std::int32_t ListStart = 321;
inline constexpr std::int32_t List = 322;  // a channel of the server's list
inline constexpr std::int32_t EndOfList = 323;
inline constexpr std::int32_t Who = 352;    // a user of a WHO reply
inline constexpr std::int32_t Names = 353;  // a piece of a names list
inline constexpr std::int32_t EndOfNames = 366;
inline constexpr std::int32_t Motd = 372;
inline constexpr std::int32_t MotdStart = 375;
inline constexpr std::int32_t EndOfMotd = 376;
inline constexpr std::int32_t DisplayedHost = 396;  // the own host, as others see it from now on
inline constexpr std::int32_t AlreadyJoined = 927;

// What a WHOIS reply is made of, between 311 and 318.
inline constexpr std::int32_t WhoisSecureLine = 275;
inline constexpr std::int32_t WhoisCertificate = 276;
inline constexpr std::int32_t WhoisRegistered = 307;
inline constexpr std::int32_t WhoisAdmin = 308;
inline constexpr std::int32_t WhoisServicesAdmin = 309;
inline constexpr std::int32_t WhoisHelper = 310;
inline constexpr std::int32_t WhoisUser = 311;
inline constexpr std::int32_t WhoisServer = 312;
inline constexpr std::int32_t WhoisOperator = 313;
inline constexpr std::int32_t WhoisChannelOperator = 316;
inline constexpr std::int32_t WhoisIdle = 317;
inline constexpr std::int32_t EndOfWhois = 318;
inline constexpr std::int32_t WhoisChannels = 319;
inline constexpr std::int32_t WhoisSpecial = 320;
inline constexpr std::int32_t WhoisWebUser = 325;
inline constexpr std::int32_t WhoisMasked = 326;
inline constexpr std::int32_t WhoisRealHost = 327;
inline constexpr std::int32_t WhoisAccount = 330;
inline constexpr std::int32_t WhoisBot = 335;
inline constexpr std::int32_t WhoisText = 337;
inline constexpr std::int32_t WhoisActually = 338;
inline constexpr std::int32_t WhoisOperatorName = 343;
inline constexpr std::int32_t WhoisCountry = 344;
inline constexpr std::int32_t WhoisGateway = 350;
inline constexpr std::int32_t WhoisHost = 378;
inline constexpr std::int32_t WhoisModes = 379;
inline constexpr std::int32_t WhoisNetwork = 569;
inline constexpr std::int32_t WhoisCloak = 616;
inline constexpr std::int32_t WhoisBotKind = 617;
inline constexpr std::int32_t WhoisSecure = 671;
inline constexpr std::int32_t WhoisLanguage = 690;

// Refusals.
inline constexpr std::int32_t NoSuchNick = 401;
inline constexpr std::int32_t CannotSendToChannel = 404;
inline constexpr std::int32_t UnknownCommand = 421;
inline constexpr std::int32_t NoNicknameGiven = 431;
inline constexpr std::int32_t ErroneousNickname = 432;
inline constexpr std::int32_t NicknameInUse = 433;
inline constexpr std::int32_t NickCollision = 436;
inline constexpr std::int32_t NickTooFast = 438;
inline constexpr std::int32_t TargetTooFast = 439;
inline constexpr std::int32_t NotOnChannel = 442;
inline constexpr std::int32_t PasswordMismatch = 464;
inline constexpr std::int32_t BannedFromServer = 465;
inline constexpr std::int32_t InviteOnly = 473;
inline constexpr std::int32_t BannedFromChannel = 474;
inline constexpr std::int32_t KeyRequired = 475;

}  // namespace talvora::Numeric
