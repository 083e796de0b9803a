#include "simulation/EventLog.h"

#include <cstring>

namespace talvora::test {

namespace {

std::string asText(const std::string& text) {
    return shown(text);
}
std::string asText(bool truth) {
    return truth ? "True" : "False";
}
std::string asText(std::int32_t number) {
    return std::to_string(number);
}
std::string asText(std::int16_t number) {
    return std::to_string(number);
}
std::string asText(const StringArray& list) {
    std::string text = "[";
    for (std::size_t i = 0; i < list.size(); ++i) text += (i > 0 ? "|" : "") + shown(list[i]);
    return text + "]";
}

}  // namespace

std::string shown(const std::string& text) {
    std::string result;
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (code < 32) {
            result += "<" + std::to_string(code) + ">";
        } else {
            result += c;
        }
    }
    return result;
}

template <class... Args>
void EventLog::watch(const char* name, Event<Args...>& event) {
    on_ += event.connect([this, name](Args... args) {
        if (!everyLine && std::strncmp(name, "Server", 6) == 0) return;
        std::string text;
        [[maybe_unused]] const char* comma = "";
        ((text += std::exchange(comma, ", ") + asText(args)), ...);
        lines_.push_back(name + ("(" + text + ")"));
    });
}

EventLog::EventLog(IRCServ& e) {
#define WATCH(Name) watch(#Name, e.Name)
    WATCH(Logining), WATCH(LoginOK), WATCH(Bounced), WATCH(ServerRespond), WATCH(ServerStrRespond);
    WATCH(MOTDReceived), WATCH(NicknameError), WATCH(NicknameInUse), WATCH(NamesReceived);
    WATCH(YouJoinChannel), WATCH(UserJoinChannel), WATCH(YouPartChannel), WATCH(UserPartChannel);
    WATCH(SocketConnect), WATCH(SocketDisconnect), WATCH(UserQuit), WATCH(SocketError);
    WATCH(LoginUnauthorized), WATCH(YouChangeNick), WATCH(UserChangeNick), WATCH(QuickNickChange);
    WATCH(TextArrived), WATCH(SpecialTextArrived), WATCH(PMTextArrived), WATCH(PMSpecialTextArrived);
    WATCH(NoticeArrived), WATCH(SpecialNoticeArrived), WATCH(YouChangedMode), WATCH(RetriveChannelMode);
    WATCH(ChannelListReply), WATCH(ChannelChangedMode), WATCH(UserIsAway), WATCH(YourAwayState);
    WATCH(RetriveUserMode), WATCH(UserChangeMode), WATCH(WHORespond), WATCH(ChannelInvitationOnly);
    WATCH(ChannelKeyRequired), WATCH(ChannelBanned), WATCH(AutoRetryConnection), WATCH(AlreadyInChannel);
    WATCH(PasswordMismatch), WATCH(YouAreNotInThisChannel), WATCH(YouAreKicked), WATCH(UserKicked);
    WATCH(WhoisReply), WATCH(LocalUsers), WATCH(GlobalUsers), WATCH(UserNotExist);
#undef WATCH
}

}  // namespace talvora::test
