#include "irc/IRCServ.h"

#include "irc/ModeCodec.h"
#include "platform/Text.h"

namespace talvora {

namespace {

// A peer that never ends its line is cut off here.
constexpr std::size_t MaxUnfinishedLine = 256 << 10;
// With so much waiting to be worked off, what arrives stays in the socket, and the server has to wait.
constexpr std::size_t HighBacklog = 1 << 20;
constexpr std::size_t LowBacklog = 1 << 18;
// What may wait for the log-on.
constexpr std::size_t MaxWaiting = 1 << 20;
// How long Disconnect waits for the server to close, in rounds of the loop.
constexpr int QuitRounds = 10000;

std::string initialNick(Random& random) {
    return "User" + std::to_string(static_cast<int>(random.Rnd() * 255.0F));
}

}  // namespace

IRCServ::IRCServ(Platform& platform, GlobError& globError, Random& random,
                 std::unique_ptr<SocketDriver> socket)
    : platform_(platform),
      globError_(globError),
      CurNick(initialNick(random)),
      CurRealName(CurNick),
      tmrRetry(platform, 10000),
      tmrDataPop(platform, 1),
      tmrNickChangeEnforce(platform, 30000),
      tmrSend(platform, 100),
      tmrLogin(platform, 1000),
      Winsock1(platform.Guarded, std::move(socket)) {
    on_ += tmrRetry.Tick.connect([this] { tmrRetry_Timer(); });
    on_ += tmrDataPop.Tick.connect([this] { tmrDataPop_Timer(); });
    on_ += tmrNickChangeEnforce.Tick.connect([this] { tmrNickChangeEnforce_Timer(); });
    on_ += tmrSend.Tick.connect([this] { tmrSend_Timer(); });
    on_ += tmrLogin.Tick.connect([this] { tmrLogin_Timer(); });
    on_ += Winsock1.Connected.connect([this] { Winsock1_Connect(); });
    on_ += Winsock1.Closed.connect([this] { Winsock1_Close(); });
    on_ += Winsock1.DataArrival.connect([this] { Winsock1_DataArrival(); });
    on_ +=
        Winsock1.Error.connect([this](int number, Text description) { Winsock1_Error(number, description); });
}

void IRCServ::Connect(const std::string& host, std::int32_t port) {
    trapped(globError_, "Connect", [&](Trap& step) {
        if (!host.empty()) ServerHost = host;
        if (port != 0) ServerPort = std::to_string(port);
        step([&] { openSocket(); });
    });
}

void IRCServ::openSocket() {
    if (stopped_) return;
    Winsock1.Close();
    Winsock1.RemoteHost = ServerHost;
    Winsock1.RemotePort = CLng(Val(ServerPort));
    Winsock1.Connect();
}

void IRCServ::Winsock1_Connect() {
    trapped(globError_, "Winsock1_Connect", [&](Trap& step) {
        step([&] { SocketConnect.raise(); });
        tmrDataPop.Enabled = true;
        tmrRetry.Enabled = false;
        Login();
    });
}

void IRCServ::Login() {
    trapped(globError_, "Login", [&](Trap& step) {
        step([&] { Logining.raise(); });
        LoggedIn = false;
        tmrSend.Enabled = false;
        tmrNickChangeEnforce.Enabled = false;
        LoginStep = 0;
        tmrLogin.Enabled = true;
        say("NICK " + CurNick);
    });
}

void IRCServ::AbortLogin() {
    tmrLogin.Enabled = false;
}

void IRCServ::Stop() {
    stopped_ = true;
    Winsock1.Close();
    for (Timer* timer : {&tmrRetry, &tmrDataPop, &tmrNickChangeEnforce, &tmrSend, &tmrLogin}) {
        timer->Enabled = false;
    }
}

// NICK went out at once, USER follows one second later and PASS two, whatever the server answers meanwhile.
void IRCServ::tmrLogin_Timer() {
    trapped(globError_, "tmrLogin_Timer", [&](Trap&) {
        ++LoginStep;
        if (LoginStep == 1) {
            sendUserLine();
        } else if (LoginStep == 2) {
            if (!Password.empty()) SendIRC("PASS " + Password, true);
        } else {
            tmrLogin.Enabled = false;
            LoginStep = 0;
        }
    });
}

void IRCServ::sendUserLine() {
    int mode = 0;
    if ((CurUserMode & ModeInvisible) != 0) mode += 8;
    if ((CurUserMode & ModeWallops) != 0) mode += 4;
    say("USER " + CurNick + " " + std::to_string(mode) + " * :" + CurRealName);
}

void IRCServ::SetNickname(const std::string& nick) {
    if (!LoggedIn) {
        CurNick = nick;
        return;
    }
    SendIRC("NICK " + nick);
    PendingNick = nick;
}

void IRCServ::tmrNickChangeEnforce_Timer() {
    trapped(globError_, "tmrNickChangeEnforce_Timer", [&](Trap&) { say("NICK " + PendingNick); });
}

void IRCServ::Disconnect(const std::string& quitMessage) {
    trapped(globError_, "Disconnect", [&](Trap& step) {
        // What gets in by the pumping may disconnect too; only the first one says QUIT and waits.
        if (!quitting_ && Winsock1.State() == SocketState::Connected && LoggedIn) {
            struct Quitting {
                bool& flag;
                ~Quitting() { flag = false; }
            } quitting{quitting_};
            quitting_ = true;
            SendIRC("QUIT :" + quitMessage, true);
            for (int round = 0; round < QuitRounds && Winsock1.State() == SocketState::Connected; ++round) {
                platform_.TheLoop.Pump();
            }
        }
        // The pumping may have let in the end.
        tmrRetry.Enabled = !stopped_;
        step([&] { Winsock1.Close(); });
        leftUnread_ = false;
        IsConnected = false;
        LoggedIn = false;
        tmrSend.Enabled = false;
        tmrLogin.Enabled = false;
        tmrDataPop.Enabled = false;
        tmrNickChangeEnforce.Enabled = false;
        step([&] { SocketDisconnect.raise(); });
    });
}

void IRCServ::Winsock1_Close() {
    trapped(globError_, "Winsock1_Close", [&](Trap&) {
        Disconnect("");
        tmrRetry.Enabled = AutoRetry && !stopped_;
    });
}

void IRCServ::Winsock1_Error(int number, const std::string& description) {
    trapped(globError_, "Winsock1_Error", [&](Trap& step) {
        step([&] { SocketError.raise(CInt(number), description); });
        Disconnect("");
        tmrRetry.Enabled = AutoRetry && !stopped_;
    });
}

void IRCServ::tmrRetry_Timer() {
    trapped(globError_, "tmrRetry_Timer", [&](Trap& step) {
        bool cancel = false;
        step([&] { AutoRetryConnection.raise(cancel); });
        if (cancel) return;
        step([&] { openSocket(); });
        tmrRetry.Enabled = false;
    });
}

void IRCServ::Winsock1_DataArrival() {
    trapped(globError_, "Winsock1_DataArrival", [&](Trap& step) {
        leftUnread_ = RecvBuffer.size() > HighBacklog;
        if (!leftUnread_) step([&] { takeReceived(); });
    });
}

void IRCServ::takeReceived() {
    std::string bytes;
    Winsock1.GetData(bytes);
    RecvBuffer.appendReceived(bytes);
    tmrDataPop.Wake();
    if (RecvBuffer.unfinished() > MaxUnfinishedLine) {
        RecvBuffer.dropUnfinished();
        limitExceeded("The server sent a line without an end");
    }
}

// What a server may not do ends as an ordinary failure of the socket does: with the socket closed first, so
// that no QUIT is said and nothing more of the server comes in.
void IRCServ::limitExceeded(const char* what) {
    Winsock1.Close();
    Winsock1_Error(SocketErrors::MessageTooLong, what);
}

// One line a tick and never two, so that a burst cannot keep other events waiting.
void IRCServ::tmrDataPop_Timer() {
    trapped(globError_, "tmrDataPop_Timer", [&](Trap& step) {
        if (leftUnread_ && RecvBuffer.size() < LowBacklog) {
            leftUnread_ = false;
            step([&] { takeReceived(); });
            if (!tmrDataPop.Enabled) return;  // what came was the end of the connection
        }
        std::string line;
        if (RecvBuffer.takeLine(line)) {
            HandleData(line);
        } else {
            tmrDataPop.Rest();
        }
    });
}

// ---- Sending

void IRCServ::SendIRC(const std::string& line, bool immediate) {
    trapped(globError_, "SendIRC", [&](Trap& step) {
        step([&] {
            const bool connected = Winsock1.State() == SocketState::Connected;
            if (connected && (immediate || LoggedIn)) {
                Winsock1.SendData(line + "\r\n");
            } else if (!immediate) {
                queue(line);
            } else {
                throw RuntimeError(16776961, "Socket is not connected!", "IRCServ");
            }
        });
    });
}

void IRCServ::queue(const std::string& line) {
    if (SendBuffer.size() + line.size() + 2 > MaxWaiting) {
        throw RuntimeError(SocketErrors::NoBufferSpace, "Too many lines wait for the log-on", "IRCServ");
    }
    SendBuffer.append(line + "\r\n");
    tmrSend.Wake();
}

void IRCServ::say(const std::string& line) {
    SendIRC(OneLine(line), true);
}

void IRCServ::tmrSend_Timer() {
    trapped(globError_, "tmrSend_Timer", [&](Trap& step) {
        std::string line;
        if (!LoggedIn || !SendBuffer.takeLine(line)) {
            tmrSend.Rest();
            return;
        }
        step([&] { Winsock1.SendData(line + "\r\n"); });
    });
}

void IRCServ::SendText(const std::string& to, const std::string& text, bool special) {
    const std::string mark = special ? "\1" : "";
    SendIRC("PRIVMSG " + OneLine(to) + " :" + mark + text + mark);
}

void IRCServ::SendNotice(const std::string& to, const std::string& text, bool special) {
    const std::string mark = special ? "\1" : "";
    SendIRC("NOTICE " + OneLine(to) + " :" + mark + text + mark);
}

// ---- Modes

void IRCServ::SetUserMode(std::int32_t mode) {
    // Before the log-on this has no effect: USER reflects only what a server has confirmed.
    if (LoggedIn) SendEncodedModes(mode, CurUserMode, "", "MODE " + CurNick);
}

void IRCServ::SendEncodedModes(std::int32_t newMode, std::int32_t oldMode, const std::string& suffix,
                               const std::string& prefix) {
    trapped(globError_, "SendEncodedModes", [&](Trap&) {
        const ModeChange letters = EncodeModes(newMode, oldMode);
        // No blank between the letters and the suffix: so the line is to be built.
        if (!letters.Added.empty()) SendIRC(Trim(prefix + " +" + letters.Added + suffix));
        if (!letters.Removed.empty()) SendIRC(Trim(prefix + " -" + letters.Removed + suffix));
    });
}

void IRCServ::ChangeChanMode(const std::string& channel, std::int32_t mode, const std::string& suffix) {
    SendEncodedModes(mode, 0, suffix, "MODE " + channel);
}

}  // namespace talvora
