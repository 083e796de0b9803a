#pragma once
// The IRC engine: one connection to one IRC server. It logs on, turns what arrives into 49 events and sends
// what it is told to send. It knows no window, mail or channel in use; everything above listens to its
// events. Events are raised inside the tick of the line reader, one line a tick. Text is in code page 1253.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/Trap.h"
#include "irc/LineBuffer.h"
#include "irc/ReplyText.h"
#include "irc/ServerLine.h"
#include "platform/Platform.h"
#include "platform/Random.h"
#include "platform/Timer.h"
#include "platform/Winsock.h"

namespace talvora {

using StringArray = std::vector<std::string>;

class IRCServ {
  public:
    // `socket` is what Winsock1 speaks through: the platform's driver, or the wire adapter in front of it.
    IRCServ(Platform& platform, GlobError& globError, Random& random, std::unique_ptr<SocketDriver> socket);

    using Text = const std::string&;
    using List = const StringArray&;

    // ---- The events, in their order. `Nickname, User, Host` are the parts of the sender's prefix.
    Event<> Logining;
    Event<> LoginOK;
    Event<Text> Bounced;                                  // Text
    Event<std::int32_t, List, Text> ServerRespond;        // Number, Parameters, Tailing
    Event<Text, List, Text> ServerStrRespond;             // Cmd, Parameters, Tailing
    Event<Text> MOTDReceived;                             // Text
    Event<Text> NicknameError;                            // Text
    Event<Text> NicknameInUse;                            // Alternate
    Event<Text, List> NamesReceived;                      // Channel, Names
    Event<Text> YouJoinChannel;                           // Channel
    Event<Text, Text, Text, Text> UserJoinChannel;        // Channel, Nickname, User, Host
    Event<Text> YouPartChannel;                           // Channel
    Event<Text, Text, Text, Text, Text> UserPartChannel;  // Channel, Nickname, User, Host, PartMsg
    Event<> SocketConnect;
    Event<> SocketDisconnect;
    Event<Text, Text, Text, Text> UserQuit;        // Nickname, User, Host, QuitMsg
    Event<std::int16_t, Text> SocketError;         // Number, Description
    Event<> LoginUnauthorized;                     // declared, and raised by nothing
    Event<Text> YouChangeNick;                     // NewNick
    Event<Text, Text, Text, Text> UserChangeNick;  // OldNick, NewNick, User, Host
    Event<> QuickNickChange;
    Event<Text, Text, Text, Text, Text> TextArrived;  // Nickname, User, Host, Channel, Text
    Event<Text, Text, Text, Text, Text, Text>
        SpecialTextArrived;                                    // Nickname, User, Host, Channel, Command, Text
    Event<Text, Text, Text, Text> PMTextArrived;               // Nickname, User, Host, Text
    Event<Text, Text, Text, Text, Text> PMSpecialTextArrived;  // Nickname, User, Host, Command, Text
    Event<Text, Text, Text, Text> NoticeArrived;               // Nickname, User, Host, Text
    Event<Text, Text, Text, Text, Text> SpecialNoticeArrived;  // Nickname, User, Host, Command, Text
    Event<std::int32_t> YouChangedMode;                        // NewModes
    Event<Text, std::int32_t> RetriveChannelMode;              // Chan, ModeReturn
    Event<List> ChannelListReply;                              // Channels: channel, users, topic by Chr(5)
    Event<Text, std::int32_t> ChannelChangedMode;              // Chan, NewModes
    Event<Text, Text> UserIsAway;                              // Nickname, AwayMessage
    Event<bool> YourAwayState;                                 // AwayState
    Event<Text, std::int32_t> RetriveUserMode;                 // Username, Mode
    Event<Text, Text, std::int32_t> UserChangeMode;            // Username, ByUsername, NewMode
    Event<List> WHORespond;  // WhoList: channel, user, host, server, nick, flags, hops, real name by Chr(5)
    Event<Text> ChannelInvitationOnly;     // Channel
    Event<Text> ChannelKeyRequired;        // Channel
    Event<Text> ChannelBanned;             // Channel
    Event<bool&> AutoRetryConnection;      // Cancel, which a handler may set
    Event<Text> AlreadyInChannel;          // Channel
    Event<Text> PasswordMismatch;          // declared, and raised by nothing
    Event<Text> YouAreNotInThisChannel;    // Chanel
    Event<Text, Text, Text> YouAreKicked;  // Channel, Reason, FromAdmin
    Event<Text, Text, Text> UserKicked;    // Channel, Reason, FromAdmin
    Event<List, Text>
        WhoisReply;            // WHOISResults: user, host, real, channels, server, away, idle, signon, admin
    Event<Text> LocalUsers;    // Text
    Event<Text> GlobalUsers;   // Text
    Event<Text> UserNotExist;  // Nickname

    // ---- Fields
    bool IsConnected = false;  // nothing ever sets it, and nothing reads it
    bool LoggedIn = false;     // the server has answered 001 on this connection
    std::string MOTD;          // the message of the day as collected so far
    bool AutoRetry = false;    // a lost connection arms tmrRetry
    std::string Password;      // the PASS line of the third login step; none if empty

    // ---- Operations
    void AbortLogin();
    // The end of the control: no timer runs and no event is raised any more.
    void Stop();
    void Login();
    // A line without its end. Immediate lines go out at once or fail; others wait for the log-on.
    void SendIRC(const std::string& line, bool immediate = false);
    void SendText(const std::string& to, const std::string& text, bool special = false);
    void SendNotice(const std::string& to, const std::string& text, bool special = false);
    // Says QUIT if logged in, closes, and leaves tmrRetry running whatever AutoRetry says.
    void Disconnect(const std::string& quitMessage);
    // An empty host and port 0 keep the earlier endpoint.
    void Connect(const std::string& host, std::int32_t port);

    // The nick in force. Writing it while logged in asks the server; else it is for the next login.
    const std::string& Nickname() const { return CurNick; }
    void SetNickname(const std::string& nick);
    const std::string& RealName() const { return CurRealName; }
    void SetRealName(const std::string& name) { CurRealName = name; }
    // The mode bits that the server last confirmed (ModeCodec.h). Writing them asks the server, if logged in.
    std::int32_t UserMode() const { return CurUserMode; }
    void SetUserMode(std::int32_t mode);
    void SendEncodedModes(std::int32_t newMode, std::int32_t oldMode, const std::string& suffix,
                          const std::string& prefix);
    void ChangeChanMode(const std::string& channel, std::int32_t mode, const std::string& suffix);

    // For the view of the connection's state; 7 is connected.
    SocketState State() const { return Winsock1.State(); }

  private:
    using Handler = void (IRCServ::*)(const ServerLine&, Trap&);
    struct NumericRow {
        int number;
        Handler handler;
    };
    struct WordRow {
        std::string_view word;
        Handler handler;
    };
    static const NumericRow numerics[];
    static const WordRow words[];
    static Handler findNumeric(std::int32_t number);
    static Handler findWord(std::string_view word);

    // ---- The connection (IRCServ.cpp)
    void Winsock1_Connect();
    void Winsock1_Close();
    void Winsock1_Error(int number, const std::string& description);
    void Winsock1_DataArrival();
    void tmrRetry_Timer();
    void tmrDataPop_Timer();
    void tmrNickChangeEnforce_Timer();
    void tmrSend_Timer();
    void tmrLogin_Timer();
    void openSocket();
    void sendUserLine();
    void queue(const std::string& line);
    // At once, and one line whatever a server has put into a name.
    void say(const std::string& line);
    void limitExceeded(const char* what);
    void replyTooLong();
    void fillIn(std::string_view field, std::string_view text);
    void takeReceived();

    // ---- The line reader (HandleData.cpp)
    void HandleData(const std::string& line);
    void dispatch(const ServerLine& line, Trap& step);
    bool isOwnNick(const std::string& nick) const;

    // Numerics of the session (Numerics.cpp)
    void onWelcome(const ServerLine&, Trap&);
    void onBounce(const ServerLine&, Trap&);
    void onLocalUsers(const ServerLine&, Trap&);
    void onGlobalUsers(const ServerLine&, Trap&);
    void onAway(const ServerLine&, Trap&);
    void onBack(const ServerLine&, Trap&);
    void onMarkedAway(const ServerLine&, Trap&);
    void onNoSuchNick(const ServerLine&, Trap&);
    void onNotInChannel(const ServerLine&, Trap&);
    void onNickError(const ServerLine&, Trap&);
    void onNickInUse(const ServerLine&, Trap&);
    void onNickTooFast(const ServerLine&, Trap&);
    void onInviteOnly(const ServerLine&, Trap&);
    void onBanned(const ServerLine&, Trap&);
    void onKeyRequired(const ServerLine&, Trap&);
    void onAlreadyJoined(const ServerLine&, Trap&);

    // Replies of many lines (Replies.cpp)
    void onWhoisUser(const ServerLine&, Trap&);
    void onWhoisServer(const ServerLine&, Trap&);
    void onWhoisOperator(const ServerLine&, Trap&);
    void onWhoisIdle(const ServerLine&, Trap&);
    void onWhoisChannels(const ServerLine&, Trap&);
    void onEndOfWhois(const ServerLine&, Trap&);
    void onWhoLine(const ServerLine&, Trap&);
    void onEndOfWho(const ServerLine&, Trap&);
    void onListLine(const ServerLine&, Trap&);
    void onEndOfList(const ServerLine&, Trap&);
    void onNames(const ServerLine&, Trap&);
    void onEndOfNames(const ServerLine&, Trap&);
    void onMotdLine(const ServerLine&, Trap&);
    void onMotdStart(const ServerLine&, Trap&);
    void onEndOfMotd(const ServerLine&, Trap&);
    void onUnknownCommand(const ServerLine&, Trap&);
    void tellMOTD(Trap& step);

    // Words (Words.cpp)
    void onJoin(const ServerLine&, Trap&);
    void onPart(const ServerLine&, Trap&);
    void onQuit(const ServerLine&, Trap&);
    void onNick(const ServerLine&, Trap&);
    void onPing(const ServerLine&, Trap&);
    void onPrivmsg(const ServerLine&, Trap&);
    void onNotice(const ServerLine&, Trap&);
    void onMode(const ServerLine&, Trap&);
    void onKick(const ServerLine&, Trap&);

    Platform& platform_;
    GlobError& globError_;

    std::string CurNick;
    std::string CurRealName;
    std::int32_t CurUserMode = 0;
    std::string ServerHost = "127.0.0.1";
    std::string ServerPort = "6667";
    std::string PendingNick;  // asked for while logged in, and not yet confirmed
    std::string ReplyTarget;  // the channel or nick of the reply under way
    ReplyText ReplyBuffer;    // one for all kinds of replies of many lines
    LineBuffer SendBuffer;    // lines that wait to be sent
    LineBuffer RecvBuffer;    // received text that waits to be split into lines
    std::uint8_t LoginStep = 0;

    Timer tmrRetry;              // one more attempt after the connection was lost
    Timer tmrDataPop;            // one line out of RecvBuffer
    Timer tmrNickChangeEnforce;  // repeats a NICK that was refused as too quick
    Timer tmrSend;               // one line out of SendBuffer
    Timer tmrLogin;              // the steps of the login after NICK
    Winsock Winsock1;
    bool stopped_ = false;     // for good
    bool quitting_ = false;    // Disconnect waits for the server to close
    bool leftUnread_ = false;  // the backlog is high: what has arrived stays in the socket for now
    ServerLinePool lines_;
    Subscriptions on_;
};

}  // namespace talvora
