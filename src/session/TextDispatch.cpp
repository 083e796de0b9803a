#include "session/TextDispatch.h"

#include <algorithm>

#include "common/HostArrays.h"
#include "common/HostMessageNumbers.h"
#include "common/Version.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr int AddressServerPort = 37183;
constexpr std::size_t LongestAddress = 255;

constexpr std::string_view BusyAnswer = "is busy and doesn't want to be disturbed";
constexpr std::string_view IgnoredAnswer = "ignores you";

bool isChannelName(const std::string& name) {
    return !name.empty() && name.front() == '#';
}

// One nick: whoever wrote the verb could put a text of his own behind it, or a channel in its place. Empty if
// it is none.
std::string oneNick(std::string_view text) {
    std::string nick = OneLine(text.substr(0, text.find_first_of(" ,")));
    if (!nick.empty() && std::string_view("#&+!$@%~:").find(nick.front()) != std::string_view::npos)
        nick.clear();
    return nick;
}

HostArray copyOf(const StringArray& texts) {
    return HostArray(texts.begin(), texts.end());
}

}  // namespace

TextDispatch::TextDispatch(Platform& platform, GlobError& globError, IRCServ& engine, WayOut& out,
                           const Account& account, HostGate& gate, const PresencePanel& presence,
                           const Handovers& to)
    : platform_(platform),
      globError_(globError),
      IRCServ1(engine),
      out_(out),
      account_(account),
      gate_(gate),
      presence_(presence),
      to_(to),
      gIPSock(platform.Guarded, platform.Sockets.CreateSocket({})) {
    connectText();
    on_ += gIPSock.DataArrival.connect([this] { gIPSock_DataArrival(); });
    on_ += IRCServ1.ServerRespond.connect(
        [this](std::int32_t number, const StringArray& parameters, Text tailing) {
            IRCServ1_ServerRespond(number, parameters, tailing);
        });
    on_ += IRCServ1.ServerStrRespond.connect([this](Text cmd, const StringArray& parameters, Text tailing) {
        IRCServ1_ServerStrRespond(cmd, parameters, tailing);
    });
}

// Each has a trap of its own: a listener that fails costs nothing of what the line itself is for.
void TextDispatch::IRCServ1_ServerRespond(std::int32_t number, const StringArray& parameters, Text tailing) {
    trapped(globError_, "IRCServ1_ServerRespond", [&](Trap& step) {
        step([&] { gate_.Broadcast(HostMsg::ServerNumeric, ArrayOf(number, copyOf(parameters), tailing)); });
    });
}

void TextDispatch::IRCServ1_ServerStrRespond(Text cmd, const StringArray& parameters, Text tailing) {
    trapped(globError_, "IRCServ1_ServerStrRespond", [&](Trap& step) {
        step([&] { gate_.Broadcast(HostMsg::ServerWord, ArrayOf(cmd, copyOf(parameters), tailing)); });
    });
}

void TextDispatch::connectText() {
    on_ += IRCServ1.PMTextArrived.connect(
        [this](Text nick, Text, Text, Text text) { IRCServ1_PMTextArrived(nick, text); });
    on_ += IRCServ1.PMSpecialTextArrived.connect([this](Text nick, Text, Text, Text command, Text text) {
        IRCServ1_PMSpecialTextArrived(nick, command, text);
    });
    on_ += IRCServ1.TextArrived.connect([this](Text nick, Text, Text, Text channel, Text text) {
        IRCServ1_TextArrived(nick, channel, text);
    });
    on_ += IRCServ1.SpecialTextArrived.connect(
        [this](Text nick, Text, Text, Text channel, Text command, Text text) {
            IRCServ1_SpecialTextArrived(nick, channel, command, text);
        });
    on_ += IRCServ1.SpecialNoticeArrived.connect(
        [this](Text, Text, Text, Text command, Text text) { IRCServ1_SpecialNoticeArrived(command, text); });
}

// ---- Private text

// Busy stands before ignored: an ignored nick hears "busy" meanwhile.
bool TextDispatch::turnedAway(Text nick, bool answer) {
    if (presence_.DoNotDisturb()) {
        if (answer) out_.SendPM(nick, std::string("ACTION ").append(BusyAnswer), true);
        return true;
    }
    if (presence_.IsIgnored(nick)) {
        if (answer) out_.SendPM(nick, std::string("ACTION ").append(IgnoredAnswer), true);
        return true;
    }
    return false;
}

void TextDispatch::IRCServ1_PMTextArrived(Text nick, Text text) {
    trapped(globError_, "IRCServ1_PMTextArrived", [&](Trap& step) {
        if (turnedAway(nick, true)) return;
        if (isChannelName(nick)) {
            step([&] { distributeChannel(nick, nick, text, ""); });
            return;
        }
        step([&] { distributePrivate(nick, text, ""); });
        step([&] { gate_.Broadcast(HostMsg::PrivateText, ArrayOf(nick, text)); });
    });
}

void TextDispatch::IRCServ1_PMSpecialTextArrived(Text nick, Text command, Text text) {
    trapped(globError_, "IRCServ1_PMSpecialTextArrived", [&](Trap& step) {
        // Two programs that turn each other away would answer each other's answers for ever.
        const bool isAnswer = command == "ACTION" && (text == BusyAnswer || text == IgnoredAnswer);
        if (turnedAway(nick, !isAnswer)) return;
        // A verb that failed is not shown as a text either.
        bool done = true;
        step([&] {
            done = answerQuery(nick, command, text) || handleVerb(nick, command, text) ||
                   findAddress(nick, command, text);
        });
        if (done) return;
        if (isChannelName(nick)) {
            step([&] { distributeChannel(nick, nick, text, command); });
            return;
        }
        step([&] { distributePrivate(nick, text, command); });
        step([&] { broadcastVerb(HostMsg::Verb, command, nick, text); });
    });
}

bool TextDispatch::answerQuery(Text nick, Text command, Text text) {
    std::string answer;
    if (command == "PING") {
        answer = "PING " + text;
    } else if (command == "VERSION") {
        answer = "VERSION Talvchat v" + Version::text() + " " + Version::Author;
    } else if (command == "TIME") {
        answer = "TIME " + GeneralDate(platform_.WallClock.Now());
    } else if (command == "FINGER") {
        answer = "FINGER " + IRCServ1.Nickname() + ". Unknown idle time";
    } else {
        return false;
    }
    out_.SendNotice(nick, answer, true);
    return true;
}

bool TextDispatch::fromRobot(Text nick) const {
    return !account_.RobotOnly || EqualText(nick, "OrreryServ");
}

bool TextDispatch::handleVerb(Text nick, Text command, Text text) {
    const bool mail = command == "MAIL";
    const bool announcement = command == "ANN";
    if (!mail && !announcement) return false;
    if (!fromRobot(nick)) return true;
    if (mail) to_.Mail->HandleMailCmd(text);
    if (announcement) to_.Announcements->HandleAnnData(text);
    return true;
}

// ---- Addresses

// Somebody wants to send a file, and asks for this machine's address: the robot knows the server that knows
// it.
bool TextDispatch::findAddress(Text nick, Text command, Text text) {
    if (command == "WIP") {
        out_.SendPM("OrreryServ", "INFO IP " + nick, true);
    } else if (command == "IP") {
        if (fromRobot(nick)) askAddressServer(text);
    } else if (command == "GIP") {
        if (text != "-" && to_.Resolver->IsResolving()) to_.Resolver->ResolveIP(text);
    } else {
        return false;
    }
    return true;
}

void TextDispatch::askAddressServer(Text text) {
    const auto pieces = Split(text, " ", 2);
    const std::string address = elementOf(pieces, 0);
    if (address == "-") return;
    const std::string nick = oneNick(elementOf(pieces, 1));
    if (nick.empty() || stopped_) return;
    gIPSock.Close();
    gIPSock.RemoteHost = address;
    gIPSock.RemotePort = AddressServerPort;
    gIPSock.Tag = nick;
    addressTold_ = false;
    gIPSock.Connect();
}

// The server's first words are the answer; nobody's server makes the user say more.
void TextDispatch::gIPSock_DataArrival() {
    trapped(globError_, "gIPSock_DataArrival", [&](Trap& step) {
        std::string data;
        step([&] { gIPSock.GetData(data); });
        const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' '; };
        data.erase(std::ranges::find_if(data, isControl), data.end());
        if (data.size() > LongestAddress) data.resize(LongestAddress);
        if (addressTold_ || data.empty()) return;
        addressTold_ = true;
        step([&] { out_.SendPM(gIPSock.Tag, "GIP " + data, true); });
    });
}

void TextDispatch::distributePrivate(Text nick, Text text, Text command) {
    to_.Privates->PMDistribute(nick, text, command);
}

// ---- Channel text

bool TextDispatch::isSystemChannel(Text channel) const {
    return EqualText(channel, account_.gSysChannel);
}

void TextDispatch::IRCServ1_TextArrived(Text nick, Text channel, Text text) {
    trapped(globError_, "IRCServ1_TextArrived", [&](Trap& step) {
        if (presence_.IsIgnored(nick) || isSystemChannel(channel)) return;
        step([&] { distributeChannel(channel, nick, text, ""); });
        step([&] { gate_.Broadcast(HostMsg::ChannelText, ArrayOf(channel, nick, text)); });
    });
}

void TextDispatch::IRCServ1_SpecialTextArrived(Text nick, Text channel, Text command, Text text) {
    trapped(globError_, "IRCServ1_SpecialTextArrived", [&](Trap& step) {
        if (presence_.IsIgnored(nick)) return;
        if (isSystemChannel(channel)) {
            step([&] { broadcastVerb(HostMsg::SystemVerb, command, nick, text); });
        } else {
            step([&] { distributeChannel(channel, nick, text, command); });
        }
    });
}

void TextDispatch::distributeChannel(Text channel, Text nick, Text text, Text command) {
    to_.Channels->ChanDistribute(channel, nick, text, command);
}

// A command that begins with "_" is a word between the plug-ins of hosts on different machines.
void TextDispatch::broadcastVerb(std::int32_t msgID, Text command, Text nick, Text text) {
    if (command.empty() || command.front() != '_') return;
    gate_.Broadcast(msgID, ArrayOf(command.substr(1), nick, text));
}

void TextDispatch::IRCServ1_SpecialNoticeArrived(Text command, Text text) {
    trapped(globError_, "IRCServ1_SpecialNoticeArrived",
            [&](Trap& step) { step([&] { to_.Whois->Notice(command, text); }); });
}

}  // namespace talvora
