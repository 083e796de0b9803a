#include "robot/Robot.h"

#include <algorithm>
#include <utility>

#include "common/Version.h"
#include "irc/ModeCodec.h"
#include "irc/wire/AdaptedSocket.h"
#include "platform/CodePage1253.h"
#include "platform/Text.h"
#include "robot/Fields.h"
#include "robot/Moment.h"

namespace talvora {

namespace {

using LineKind = FairQueue::LineKind;
using Topic = FairQueue::Topic;

// How long a change waits for others to become safe together with it.
constexpr int CommitMs = 10;
constexpr int SweepMs = 5000;
constexpr int MinuteMs = 60'000;
constexpr std::int32_t ModeOperator = 16;

// Whether a name of a names list has an operator's mark, or that of more than an operator.
bool hasOperatorMark(std::string_view name) {
    const std::size_t nick = name.find_first_not_of("~&@%+");
    return name.substr(0, nick).find_first_of("~&@") != std::string_view::npos;
}

std::string_view withoutMarks(std::string_view name) {
    return name.substr(std::min(name.find_first_not_of("~&@%+"), name.size()));
}

}  // namespace

Robot::Robot(Platform& platform, const RobotConfig& config, RobotStore& store, RobotLog log)
    : platform_(platform),
      config_(config),
      store_(store),
      log_([log = std::move(log)](LogSubject subject, const std::string& line) {
          log(subject, LogLine(line));
      }),
      globError_(platform),
      IRCServ1(platform, globError_, random_, socket()),
      out_(
          platform, config_.LinesPerSecond, config_.Burst,
          [this](const std::string& nick, const std::string& text, LineKind kind) { put(nick, text, kind); }),
      taking_(platform, config_, store, out_, log_),
      giving_(platform, config_, store, out_, log_),
      announcements_(platform, config_, store, out_, log_),
      address_(platform, config_.AddressListen, config_.AddressPort, log_),
      limit_(config_.RequestsPerMinute),
      expiry_(platform),
      tmrCommit(platform, CommitMs),
      tmrSweep(platform, SweepMs),
      tmrMinute(platform, MinuteMs) {
    IRCServ1.SetNickname(config_.Nick);
    IRCServ1.SetRealName(config_.RealName);
    IRCServ1.Password = config_.Password;
    listenToEngine();
    listenToUsers();
    listenToChannel();
    on_ += out_.CameTooLate.connect([this](const std::string& nick) { giving_.Drop(Caller(nick)); });
    on_ += out_.Overflowed.connect([this](const std::string& nick) { forget(Caller(nick)); });
    on_ += tmrCommit.Tick.connect([this] { commit(); });
    on_ += tmrSweep.Tick.connect([this] {
        taking_.Sweep();
        withStore([this] { giving_.Sweep(); });
    });
    on_ += tmrMinute.Tick.connect([this] { tmrMinute_Timer(); });
}

// What waits for the commit would call back into the desks.
Robot::~Robot() {
    out_.Close();
    if (store_.Waiting()) commit();
}

// The robot has its own pace, which is fair to all; behind a second one its lines would only pile up.
std::unique_ptr<SocketDriver> Robot::socket() {
    const NetworkProfile& network = config_.Network;
    WireProfile wire = network.Wire;
    wire.set(Rewrite::Pacing, false);
    return std::make_unique<AdaptedSocket>(
        platform_.TheLoop, platform_.Sockets.CreateSocket({network.TLS, network.CAFile}), wire);
}

void Robot::listenToEngine() {
    on_ += IRCServ1.LoginOK.connect([this] { IRCServ1_LoginOK(); });
    on_ += IRCServ1.SocketDisconnect.connect([this] { IRCServ1_SocketDisconnect(); });
    on_ += IRCServ1.SocketConnect.connect([this] { IRCServ1.SetNickname(config_.Nick); });
    on_ += IRCServ1.SocketError.connect(
        [this](std::int16_t, Text description) { tellAway("the connection failed: " + description); });
    on_ += IRCServ1.NicknameInUse.connect([this](Text) {
        nickTaken_ = true;
        log_(LogSubject::Session, "the nick is taken; it is asked for again each minute");
    });
    on_ += IRCServ1.NicknameError.connect(
        [this](Text text) { log_(LogSubject::Session, "the nick is refused: " + text); });
}

void Robot::listenToUsers() {
    on_ += IRCServ1.PMSpecialTextArrived.connect([this](Text nick, Text, Text, Text command, Text text) {
        IRCServ1_PMSpecialTextArrived(nick, command, text);
    });
    on_ += IRCServ1.UserNotExist.connect([this](Text nick) { IRCServ1_UserNotExist(nick); });
    on_ += IRCServ1.UserQuit.connect([this](Text nick, Text, Text, Text) { forget(Caller(nick)); });
    on_ += IRCServ1.UserChangeNick.connect(
        [this](Text oldNick, Text newNick, Text, Text) { IRCServ1_UserChangeNick(oldNick, newNick); });
}

void Robot::listenToChannel() {
    on_ += IRCServ1.YouJoinChannel.connect([this](Text channel) {
        if (isChannel(channel)) inChannel_ = true;
    });
    on_ += IRCServ1.YouPartChannel.connect([this](Text channel) {
        if (isChannel(channel)) inChannel_ = false;
    });
    on_ += IRCServ1.AlreadyInChannel.connect([this](Text channel) {
        if (isChannel(channel)) inChannel_ = true;
    });
    on_ += IRCServ1.NamesReceived.connect([this](Text channel, IRCServ::List names) {
        const auto isOperator = [this](const std::string& name) {
            return hasOperatorMark(name) && isOwn(std::string(withoutMarks(name)));
        };
        if (isChannel(channel) && std::any_of(names.begin(), names.end(), isOperator)) furnishChannel();
    });
    on_ += IRCServ1.UserChangeMode.connect([this](Text nick, Text, std::int32_t modes) {
        if (isOwn(nick) && (modes & ModeOperator) != 0) furnishChannel();
    });
}

void Robot::Start() {
    IRCServ1.AutoRetry = true;
    tmrSweep.Enabled = true;
    tmrMinute.Enabled = true;
    address_.Start();
    removeExpired();
    IRCServ1.Connect(config_.Network.ServerHost, config_.Network.ServerPort);
}

void Robot::Stop(const std::string& quitText) {
    if (store_.Waiting()) commit();
    out_.Close();
    tmrSweep.Enabled = false;
    tmrMinute.Enabled = false;
    address_.Stop();
    IRCServ1.Disconnect(OneLine(quitText));
    IRCServ1.Stop();
}

void Robot::put(const std::string& nick, const std::string& text, LineKind kind) {
    tmrCommit.Enabled = true;  // what is noted of a line that was sent
    if (kind == LineKind::SpecialNotice) {
        IRCServ1.SendNotice(nick, text, true);
    } else {
        IRCServ1.SendText(nick, text, kind == LineKind::Special);
    }
}

// ---- Its place on the network

void Robot::IRCServ1_LoginOK() {
    log_(LogSubject::Session, "logged on");
    away_ = false;
    nickTaken_ = false;
    out_.Open();
    for (const std::string& line : config_.OnLogin) IRCServ1.SendIRC(OneLine(line));
    joinChannel();
}

void Robot::IRCServ1_SocketDisconnect() {
    tellAway("not connected");
    inChannel_ = false;
    out_.Close();
    taking_.Clear();
    giving_.Clear();
}

void Robot::tellAway(const std::string& line) {
    if (!std::exchange(away_, true))
        log_(LogSubject::Session, line + "; it is tried again until it succeeds");
}

void Robot::joinChannel() {
    IRCServ1.SendIRC(Trim("JOIN " + config_.Network.SysChannel + " " + config_.Network.SysChanKey));
}

void Robot::furnishChannel() {
    const NetworkProfile& network = config_.Network;
    if (!network.SysChanKey.empty()) {
        IRCServ1.SendIRC("MODE " + network.SysChannel + " +k " + network.SysChanKey);
    }
    if (!config_.ChannelModes.empty()) {
        IRCServ1.SendIRC("MODE " + network.SysChannel + " " + config_.ChannelModes);
    }
}

void Robot::tmrMinute_Timer() {
    limit_.NewMinute();
    removeExpired();
    keepPlace();
}

void Robot::removeExpired() {
    if (const auto now = expiry_.Now()) {
        withStore([&] { store_.RemoveExpired(*now); });
    }
}

// Asks again for what was refused: the nick, the channel.
void Robot::keepPlace() {
    if (IRCServ1.State() != SocketState::Connected) return;
    if (!IRCServ1.LoggedIn) {
        if (!std::exchange(nickTaken_, false)) return;
        IRCServ1.SetNickname(config_.Nick);
        IRCServ1.Login();
        return;
    }
    if (!isOwn(config_.Nick)) IRCServ1.SetNickname(config_.Nick);
    if (!inChannel_) joinChannel();
}

// ---- Requests

void Robot::IRCServ1_PMSpecialTextArrived(Text nick, Text command, Text text) {
    const Caller caller(nick);
    if (nick.empty() || isOwn(nick) || EqualText(caller.Bare, config_.Nick)) return;
    withStore([&] { serve(caller, command, text); });
}

void Robot::serve(const Caller& caller, Text command, std::string_view text) {
    std::string_view rest = text;
    SkipBlanks(rest);
    const std::string_view verb = TakeWord(rest);
    if (isRequest(caller, command, verb) && !limit_.Allow(caller.Nick)) return;
    if (command == "MAIL") {
        serveMail(caller, verb, rest);
    } else if (command == "ANN") {
        announcements_.Handle(caller, verb, rest);
    } else if (command == "INFO") {
        if (verb == "IP") tellAddressServer(caller, rest);
    } else if (command == "VERSION") {
        out_.SendAs(LineKind::SpecialNotice, caller,
                    "VERSION Talvchat v" + Version::text() + " " + Version::Author);
    } else if (command == "PING") {
        out_.SendAs(LineKind::SpecialNotice, caller, "PING " + std::string(text));
    } else if (command == "TIME") {
        out_.SendAs(LineKind::SpecialNotice, caller, "TIME " + GeneralDate(platform_.WallClock.Now()));
    }
}

// The lines of a dialogue are as many as its mail has, and the robot sets their pace.
bool Robot::isRequest(const Caller& caller, std::string_view command, std::string_view verb) {
    if (command != "MAIL") return true;
    return verb == "OK" ? !giving_.Awaits(caller) : !taking_.Awaits(caller, verb);
}

void Robot::serveMail(const Caller& caller, std::string_view verb, std::string_view rest) {
    if (isHeldByAnother(caller)) {
        sendAway(caller, verb);
    } else if (verb == "OK") {
        giving_.Acknowledge(caller);
    } else if (verb == "SENDREQUEST" && giving_.Reads(caller)) {
        // One direction at a time: the user's program keeps to it only if the robot does.
        out_.Send(caller, Topic::Other, "MAIL SENDWAIAT");
    } else if (!taking_.Handle(caller, verb, rest)) {
        taking_.Drop(caller);  // nobody polls while he sends
        giving_.Poll(caller, verb, rest);
    } else if (verb == "SENDREQUEST" || verb == "SEND") {
        giving_.LeaveQueue(caller.Key);
    }
}

bool Robot::isHeldByAnother(const Caller& caller) {
    for (const std::string& holder : {taking_.Holder(caller.Key), giving_.Holder(caller.Key)}) {
        if (!holder.empty() && holder != caller.Nick) return true;
    }
    return false;
}

// A poll gets no word: at SENDWAIAT a user's program would poll at once, and so without end. It asks again in
// a minute.
void Robot::sendAway(const Caller& caller, std::string_view verb) {
    if (verb == "SENDREQUEST") out_.Send(caller, Topic::Other, "MAIL SENDWAIAT");
    if (verb == "SEND" || verb == "SENT") out_.Send(caller, Topic::Other, "MAIL SENDERROR");
}

void Robot::tellAddressServer(const Caller& caller, std::string_view nick) {
    if (nick.empty() || nick.find(' ') != std::string_view::npos) return;
    const std::string host = config_.AddressHost.empty() ? "-" : config_.AddressHost;
    out_.Send(caller, Topic::Other, "IP " + host + " " + std::string(nick));
}

void Robot::forget(const Caller& caller) {
    out_.Drop(caller.Nick);
    taking_.Drop(caller);
    giving_.Drop(caller);
}

void Robot::IRCServ1_UserNotExist(Text nick) {
    forget(Caller(nick));
}

// With another state it is the same user, as the server says; with another name it is a stranger. What is
// left under the new nick is of one whose leaving was not seen.
void Robot::IRCServ1_UserChangeNick(Text oldNick, Text newNick) {
    const Caller before(oldNick);
    const Caller now(newNick);
    if (before.Nick == now.Nick) return;
    forget(now);
    if (before.Key != now.Key) return forget(before);
    out_.Rename(before.Nick, now.Nick);
    taking_.Rename(before, now);
    giving_.Rename(before, now);
}

// ---- The store

template <class Work>
void Robot::withStore(Work&& work) {
    try {
        work();
    } catch (const StoreError& fault) {
        tellStoreFault(fault);
    }
    if (store_.Waiting()) tmrCommit.Enabled = true;
}

void Robot::tellStoreFault(const StoreError& fault) {
    log_(LogSubject::Store, "the store failed: " + fromUtf8(fault.what()));
}

// What is told by a commit can change the store again.
void Robot::commit() {
    try {
        store_.Commit();
    } catch (const StoreError& fault) {
        tellStoreFault(fault);
    }
    if (std::exchange(knownFault_, store_.LastFault()) != store_.LastFault() && !knownFault_.empty()) {
        log_(LogSubject::Store, "what waited for the store was not kept: " + fromUtf8(knownFault_));
    }
    tmrCommit.Enabled = store_.Waiting();
}

}  // namespace talvora
