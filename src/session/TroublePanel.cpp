#include "session/TroublePanel.h"

#include <string_view>
#include <utility>

#include "common/Numerics.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr int Awhile = 3 * 60 * 1000;
constexpr std::size_t LongestQuotation = 200;
// The engine waits so long before it connects again, and before it asks for a nick again.
constexpr const char* AgainInTenSeconds = "trying again in ten seconds";
constexpr const char* AgainInHalfAMinute = "trying again in half a minute";
constexpr const char* AgainNow = "trying again now";
constexpr const char* ChooseAnother = "choose another in the settings";

// What others have written, fit for one line of a window.
std::string quoted(std::string_view text) {
    std::string plain;
    for (const char c : text) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) continue;
        if (plain.size() == LongestQuotation) return plain.replace(LongestQuotation - 3, 3, "...");
        plain += c;
    }
    while (!plain.empty() && (plain.back() == '.' || plain.back() == ' ')) plain.pop_back();
    return plain;
}

bool holds(const std::string& text, std::string_view what) {
    return InStr(text, what, Compare::Text) != 0;
}

constexpr const char* WrongPassword = "The server asks for another password";
constexpr const char* TooFast = "The server says: too fast";
}  // namespace

std::string TroublePanel::wordsOfSocketError(int number, const std::string& description) const {
    constexpr std::string_view refused = "The server's certificate was refused: ";
    switch (number) {
        case SocketErrors::ConnectionRefused:
            return "The server takes no connection";
        case SocketErrors::HostNotFound:
            return "The server's name is not known";
        case SocketErrors::TimedOut:
            return "The server does not answer";
        case SocketErrors::NetworkUnreachable:
            return "The network cannot be reached";
        case SocketErrors::ConnectionReset:
            return wordsOfEnd();
        case SocketErrors::CertificateRefused:
            if (!description.starts_with(refused)) break;
            return "The server's certificate cannot be trusted: " +
                   quoted(description.substr(refused.size()));
        default:
            break;
    }
    return "There is no connection to the server: " + quoted(description);
}

const char* TroublePanel::wordsOfEnd() const {
    return loggedOn_ ? "The server is gone" : "The server closed the connection before the log-on";
}

TroublePanel::TroublePanel(Platform& platform, Event<>& end, IRCServ& engine)
    : tmrTrouble(platform, end, Awhile), IRCServ1(engine) {
    lblTrouble.Visible = false;
    using Text = IRCServ::Text;
    using List = IRCServ::List;
    on_ += tmrTrouble.Tick.connect([this] { clear(); });
    on_ += engine.ServerRespond.connect(
        [this](std::int32_t number, List words, Text) { hearNumber(number, words); });
    on_ += engine.ServerStrRespond.connect([this](Text command, List, Text text) {
        if (command == "ERROR") hearError(text);
    });
    on_ += engine.SocketError.connect([this](int number, Text text) { hearSocketError(number, text); });
    on_ += engine.SocketConnect.connect([this] { connected(); });
    on_ += engine.SocketDisconnect.connect([this] { disconnected(); });
    on_ += engine.AutoRetryConnection.connect([this](bool&) {
        explained_ = false;
        next_ = AgainNow;
        show();
    });
    on_ += engine.LoginOK.connect([this] {
        loggedOn_ = true;
        clear();
    });
    on_ += engine.YouChangeNick.connect([this](Text) { isOver(About::Nick); });
    on_ += engine.YouAreKicked.connect(
        [this](Text channel, Text reason, Text by) { hearKick(channel, reason, by); });
    on_ += engine.YouJoinChannel.connect([this](Text channel) {
        if (EqualText(channel, channel_)) isOver(About::Channel);
    });
}

void TroublePanel::hearNumber(int number, const StringArray& words) {
    // What the number is about stands behind the addressee.
    const auto word = [&](const std::string& otherwise) {
        return quoted(words.size() > 1 && !words[1].empty() ? words[1] : otherwise);
    };
    switch (number) {
        case Numeric::NoNicknameGiven:
        case Numeric::ErroneousNickname:
            return nickTrouble("The server does not take the nick " + word(IRCServ1.Nickname()));
        case Numeric::NicknameInUse:
        case Numeric::NickCollision:
            return nickTrouble("The nick " + word(IRCServ1.Nickname()) + " is in use by somebody else");
        case Numeric::NickTooFast:
            return tellForAWhile(About::Nick, TooFast, AgainInHalfAMinute);
        case Numeric::TryAgain:
            return tellForAWhile(About::Pace, TooFast + (" for " + word("it")));
        case Numeric::TargetTooFast:
            // Before the log-on it is how some servers ask for patience.
            if (IRCServ1.LoggedIn) tellForAWhile(About::Pace, TooFast);
            return;
        case Numeric::PasswordMismatch:
            return logOnTrouble(About::LogOn, WrongPassword);
        case Numeric::BannedFromServer:
            return logOnTrouble(About::LogOn, "You were banned from this server");
        default:
            return;
    }
}

// Off line the log-on stands still until the server has its nick.
void TroublePanel::nickTrouble(const std::string& sentence) {
    logOnTrouble(About::Nick, sentence, ChooseAnother);
}

// Who is logged on stays so, whatever the server thinks of another try.
void TroublePanel::logOnTrouble(About about, const std::string& sentence, const std::string& next) {
    if (IRCServ1.LoggedIn) return tellForAWhile(about, sentence);
    tell(about, sentence, next);
}

// The server's last words, before it closes.
void TroublePanel::hearError(const std::string& text) {
    if (leaving_ > 0 || explained_) return;
    if (holds(text, "throttl") || holds(text, "too fast")) return tell(About::LogOn, TooFast);
    if (holds(text, "bad password")) return tell(About::LogOn, WrongPassword);
    const std::string words = quoted(text);
    tell(About::LogOn, words.empty() ? "The server ends the connection" : "The server says: " + words);
}

void TroublePanel::hearSocketError(int number, const std::string& description) {
    if (leaving_ == 0 && !explained_) tell(About::Reach, wordsOfSocketError(number, description));
}

void TroublePanel::hearKick(const std::string& channel, const std::string& reason, const std::string& by) {
    const std::string words = quoted(reason);
    channel_ = channel.substr(0, LongestQuotation);
    tellForAWhile(About::Channel,
                  quoted(by) + " put you out of " + quoted(channel) + (words.empty() ? "" : ": " + words));
}

// What kept the last log-on from its end stands until this one has come to its own.
void TroublePanel::connected() {
    loggedOn_ = false;
    explained_ = false;
    if (about_ != About::LogOn && about_ != About::Nick) return clear();
    next_.clear();
    show();
}

void TroublePanel::disconnected() {
    if (leaving_ > 0) return clear();
    tmrTrouble.Enabled = false;
    if (!explained_) tell(About::Reach, wordsOfEnd());
    next_ = IRCServ1.AutoRetry ? AgainInTenSeconds : "";
    show();
}

void TroublePanel::tell(About about, std::string sentence, const std::string& next) {
    tmrTrouble.Enabled = false;
    explained_ = !IRCServ1.LoggedIn || about == About::Reach || about == About::LogOn;
    about_ = about;
    sentence_ = std::move(sentence);
    next_ = next;
    show();
}

void TroublePanel::tellForAWhile(About about, std::string sentence, const std::string& next) {
    tell(about, std::move(sentence), next);
    tmrTrouble.Enabled = true;
}

void TroublePanel::isOver(About about) {
    if (about_ == about) clear();
}

void TroublePanel::clear() {
    tmrTrouble.Enabled = false;
    about_ = About::Nothing;
    explained_ = false;
    sentence_.clear();
    next_.clear();
    show();
}

void TroublePanel::show() {
    const std::string& sentence = sentence_.empty() ? receiver_ : sentence_;
    // Words that were cut have their stops already.
    const char* stop = next_.empty() && sentence.ends_with("...") ? "" : ".";
    if (!sentence.empty()) lblTrouble.Caption = sentence + (next_.empty() ? "" : "; " + next_) + stop;
    lblTrouble.Visible = !sentence.empty();
}

}  // namespace talvora
