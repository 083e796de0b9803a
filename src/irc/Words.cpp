// Lines with a word as command.

#include <algorithm>

#include "irc/IRCServ.h"
#include "irc/ModeCodec.h"
#include "platform/Text.h"

namespace talvora {

namespace {

struct Special {
    std::string Command;
    std::string Text;
};

// A text between two Chr(1), taken apart; a Chr(1) anywhere falls out.
Special readSpecial(const std::string& tailing) {
    std::string text;
    text.reserve(tailing.size());
    std::remove_copy(tailing.begin(), tailing.end(), std::back_inserter(text), '\1');
    const std::size_t blank = text.find(' ');
    if (blank == std::string::npos) return {std::move(text), {}};
    return {text.substr(0, blank), Trim(std::string_view(text).substr(blank + 1))};
}

// Whether a text is special; an empty text has no first character, which is a fault.
bool beginsSpecial(const std::string& tailing) {
    return Asc(tailing) == 1;
}

}  // namespace

void IRCServ::onJoin(const ServerLine& line, Trap& step) {
    step([&] {
        if (isOwnNick(line.Nick)) {
            YouJoinChannel.raise(line.Tailing);
        } else {
            UserJoinChannel.raise(line.Tailing, line.Nick, line.User, line.Host);
        }
    });
}

void IRCServ::onPart(const ServerLine& line, Trap& step) {
    step([&] {
        if (isOwnNick(line.Nick)) {
            YouPartChannel.raise(line.word(0));
        } else {
            UserPartChannel.raise(line.word(0), line.Nick, line.User, line.Host, line.Tailing);
        }
    });
}

void IRCServ::onQuit(const ServerLine& line, Trap& step) {
    step([&] { UserQuit.raise(line.Nick, line.User, line.Host, line.Tailing); });
}

void IRCServ::onNick(const ServerLine& line, Trap& step) {
    if (!isOwnNick(line.Nick)) {
        step([&] { UserChangeNick.raise(line.Nick, line.Tailing, line.User, line.Host); });
        return;
    }
    step([&] { YouChangeNick.raise(line.Tailing); });
    CurNick = line.Tailing;
    tmrNickChangeEnforce.Enabled = false;
}

void IRCServ::onPing(const ServerLine& line, Trap&) {
    say("PONG :" + line.Tailing);
}

void IRCServ::onPrivmsg(const ServerLine& line, Trap& step) {
    const std::string target = step.value(std::string(), [&] { return line.word(0); });
    if (isOwnNick(target)) {
        if (step.test([&] { return beginsSpecial(line.Tailing); })) {
            const Special special = readSpecial(line.Tailing);
            step([&] {
                PMSpecialTextArrived.raise(line.Nick, line.User, line.Host, special.Command, special.Text);
            });
        } else {
            step([&] { PMTextArrived.raise(line.Nick, line.User, line.Host, line.Tailing); });
        }
    } else if (!line.Tailing.empty()) {
        if (beginsSpecial(line.Tailing)) {
            const Special special = readSpecial(line.Tailing);
            step([&] {
                SpecialTextArrived.raise(line.Nick, line.User, line.Host, target, special.Command,
                                         special.Text);
            });
        } else {
            step([&] { TextArrived.raise(line.Nick, line.User, line.Host, target, line.Tailing); });
        }
    }
}

// A notice to a channel and one to this user are the same.
void IRCServ::onNotice(const ServerLine& line, Trap& step) {
    if (step.test([&] { return beginsSpecial(line.Tailing); })) {
        const Special special = readSpecial(line.Tailing);
        step([&] {
            SpecialNoticeArrived.raise(line.Nick, line.User, line.Host, special.Command, special.Text);
        });
    } else {
        step([&] { NoticeArrived.raise(line.Nick, line.User, line.Host, line.Tailing); });
    }
}

void IRCServ::onMode(const ServerLine& line, Trap& step) {
    const std::string target = step.value(std::string(), [&] { return line.word(0); });
    if (isOwnNick(target)) {
        const std::int32_t modes = DecodeModes(line.Tailing, CurUserMode);
        step([&] { YouChangedMode.raise(modes); });
        CurUserMode = modes;
        return;
    }
    if (target.empty() || target.front() != '#') return;
    // All words at once: a line that is too short costs one report.
    std::string letters;
    std::string user;
    if (!step([&] { letters = line.word(1), user = line.word(2); })) return;
    const std::int32_t modes = DecodeModes(letters, 0);
    if (user.empty()) {
        step([&] { RetriveChannelMode.raise(target, 0); });
        step([&] { ChannelChangedMode.raise(target, modes); });
    } else {
        step([&] { RetriveUserMode.raise(user, 0); });
        // Told as the one who changed it is the word behind the target, mostly an empty one, and not the
        // sender.
        step([&] { UserChangeMode.raise(user, line.word(3), modes); });
    }
}

void IRCServ::onKick(const ServerLine& line, Trap& step) {
    std::string channel;
    std::string victim;
    if (!step([&] { channel = line.word(0), victim = line.word(1); })) return;
    if (EqualText(victim, CurNick)) {
        step([&] { YouAreKicked.raise(channel, line.Tailing, line.Nick); });
        step([&] { YouPartChannel.raise(channel); });
    } else {
        step([&] { UserKicked.raise(channel, line.Tailing, line.Nick); });
        step([&] { UserPartChannel.raise(channel, victim, line.User, line.Host, "Kicked by " + line.Nick); });
    }
}

}  // namespace talvora
