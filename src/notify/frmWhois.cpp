#include "notify/frmWhois.h"

#include <charconv>
#include <limits>
#include <optional>
#include <utility>

#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::string_view RegisteredMark = "UL:";
constexpr const char* Unknown = "(Unknown)";
constexpr const char* Seconds = " sec";

// Nothing for what is no plain number.
std::optional<std::int64_t> wholeNumber(const std::string& text) {
    std::int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, fault] = std::from_chars(text.data(), end, number);
    if (fault != std::errc() || stop != end || text.empty() || number < 0) return {};
    return number;
}

std::string counted(std::int64_t count, const char* unit) {
    return std::to_string(count) + " " + unit + (count == 1 ? "" : "s");
}

}  // namespace

std::string spanInWords(std::int64_t seconds) {
    constexpr std::pair<std::int64_t, const char*> units[] = {
        {86400, "day"}, {3600, "hour"}, {60, "minute"}, {1, "second"}};
    if (seconds < 0) return "";
    std::string words;
    int shown = 0;
    for (const auto& [length, name] : units) {
        const std::int64_t count = seconds / length;
        seconds %= length;
        if (shown == 0 && count == 0 && length > 1) continue;
        if (shown > 0 && count == 0) break;
        words += (shown > 0 ? " " : "") + counted(count, name);
        if (++shown == 2) break;
    }
    return words;
}

frmWhois::frmWhois(Platform& platform, GlobError& reporter, Asker ask)
    : Label2(
          "Theese information are obdained from IRC server. If you want more specific details, click on th "
          "CTCP buttons below :"),
      tmrPing(platform, Ending, 1000, true),
      platform_(platform),
      globError_(reporter),
      ask_(std::move(ask)) {
    Caption = "Information";
    on_ += Command2.Click.connect([this] {
        PingTicks = 0;
        tmrPing.Enabled = true;
        // The number is a fixed text, and is not read back.
        this->ask("Command2_Click", "PING 1234567890");
    });
    on_ += Command3.Click.connect([this] { this->ask("Command3_Click", "VERSION"); });
    on_ += Command4.Click.connect([this] { this->ask("Command4_Click", "TIME"); });
    on_ += Command5.Click.connect([this] { this->ask("Command5_Click", "FINGER"); });
    on_ += Command1.Click.connect([this] { Unload(); });
    on_ += tmrPing.Tick.connect([this] { tmrPing_Timer(); });
}

void frmWhois::Display(const std::string& Nickname, const std::vector<std::string>& WHOISResults) {
    if (Nickname.empty()) return;
    trapped(globError_, "Display", [&](Trap& step) {
        const auto field = [&](std::size_t index) {
            return step.value(std::string(), [&] { return elementOf(WHOISResults, index); });
        };
        WhoisNick = Nickname;
        lblAddr.Caption = field(1);
        showPlace(step, field(0), field(2));
        lblChans.Caption = field(3);
        lblServer.Caption = field(4);
        lblAway.Caption = field(5);
        showTimes(field(6), field(7));
        lblType.Caption = field(8);
        Show();
    });
}

// A client of this network has "UL:", the path of its place, "@" and the access point as its real name.
void frmWhois::showPlace(Trap& step, const std::string& userName, const std::string& realName) {
    const auto pieces = Split(realName + "@", "@");
    lblNick.Caption = userName;
    if (pieces[0].starts_with(RegisteredMark)) {
        lblLocation.Caption = Replace(pieces[0], RegisteredMark, "");
        step([&] { lblAP.Caption = elementOf(pieces, 1); });
        return;
    }
    lblLocation.Caption = Unknown;
    lblAP.Caption = Unknown;
    lblNick.Caption = userName + " (" + realName + ")";
}

// The server sends a point of time as the signon; it is shown as seconds all the same, and told in words
// beside it.
void frmWhois::showTimes(const std::string& idle, const std::string& signon) {
    const auto idleFor = wholeNumber(idle);
    const auto since = wholeNumber(signon);
    lblIdle.Caption = idle + Seconds;
    lblSignon.Caption = signon + Seconds;
    IdleWords.Caption = idleFor ? spanInWords(*idleFor) : "";
    SignonWords.Caption = since && *since > 0 ? GeneralDate(platform_.WallClock.At(*since)) : "";
}

void frmWhois::ask(const char* procedure, const std::string& question) {
    trapped(globError_, procedure, [&](Trap& step) {
        step([&] { ask_(WhoisNick, question); });
        lblCtcp.Caption = "Waitting for respond ...";
    });
}

bool frmWhois::IsAnswer(const std::string& Command) {
    return Command == "PING" || Command == "TIME" || Command == "FINGER" || Command == "VERSION";
}

void frmWhois::Notice(const std::string& Command, const std::string& Text) {
    trapped(globError_, "Notice", [&](Trap&) {
        if (!IsAnswer(Command)) return;
        if (Command == "PING") {
            // The text of the answer is not looked at: the round trip is told in whole seconds.
            lblCtcp.Caption = CStr(PingTicks) + Seconds;
            tmrPing.Enabled = false;
        } else {
            lblCtcp.Caption = Text;
        }
    });
}

// A question that nobody answers overflows, and once is enough.
void frmWhois::tmrPing_Timer() {
    trapped(globError_, "tmrPing_Timer", [&](Trap& step) {
        if (PingTicks == std::numeric_limits<std::int16_t>::max()) tmrPing.Enabled = false;
        step([&] { PingTicks = CInt(PingTicks + 1); });
    });
}

}  // namespace talvora
