// Numeric lines that stand alone.

#include "irc/IRCServ.h"

namespace talvora {

void IRCServ::onWelcome(const ServerLine&, Trap& step) {
    LoggedIn = true;
    tmrSend.Enabled = true;
    step([&] { LoginOK.raise(); });
}

void IRCServ::onBounce(const ServerLine& line, Trap& step) {
    step([&] { Bounced.raise(line.Tailing); });
}

void IRCServ::onLocalUsers(const ServerLine& line, Trap& step) {
    step([&] { LocalUsers.raise(line.Tailing); });
}

void IRCServ::onGlobalUsers(const ServerLine& line, Trap& step) {
    step([&] { GlobalUsers.raise(line.Tailing); });
}

void IRCServ::onAway(const ServerLine& line, Trap& step) {
    // The nick told is the addressee of the line, and that is how it is to stay.
    step([&] { UserIsAway.raise(line.word(0), line.Tailing); });
    if (!ReplyBuffer.replaceAll("{AWAYDESC}", line.Tailing)) replyTooLong();
}

void IRCServ::onBack(const ServerLine&, Trap& step) {
    step([&] { YourAwayState.raise(false); });
}

void IRCServ::onMarkedAway(const ServerLine&, Trap& step) {
    step([&] { YourAwayState.raise(true); });
}

void IRCServ::onNoSuchNick(const ServerLine& line, Trap& step) {
    step([&] { UserNotExist.raise(line.word(1)); });
}

void IRCServ::onNotInChannel(const ServerLine& line, Trap& step) {
    step([&] { YouAreNotInThisChannel.raise(line.word(1)); });
}

void IRCServ::onNickError(const ServerLine& line, Trap& step) {
    step([&] { NicknameError.raise(line.Tailing); });
}

// With a server's prefix there is no alternate: the login then stands still on the open socket.
void IRCServ::onNickInUse(const ServerLine& line, Trap& step) {
    step([&] { NicknameInUse.raise(line.Alternate); });
    tmrLogin.Enabled = false;
    if (line.Alternate.empty()) return;
    CurNick = line.Alternate;
    say("NICK " + CurNick);
    LoginStep = 0;
    tmrLogin.Enabled = true;
}

void IRCServ::onNickTooFast(const ServerLine&, Trap& step) {
    step([&] { QuickNickChange.raise(); });
    tmrNickChangeEnforce.Enabled = true;
}

void IRCServ::onInviteOnly(const ServerLine& line, Trap& step) {
    step([&] { ChannelInvitationOnly.raise(line.word(1)); });
}

void IRCServ::onBanned(const ServerLine& line, Trap& step) {
    step([&] { ChannelBanned.raise(line.word(1)); });
}

void IRCServ::onKeyRequired(const ServerLine& line, Trap& step) {
    step([&] { ChannelKeyRequired.raise(line.word(1)); });
}

void IRCServ::onAlreadyJoined(const ServerLine& line, Trap& step) {
    step([&] { AlreadyInChannel.raise(line.word(1)); });
}

}  // namespace talvora
