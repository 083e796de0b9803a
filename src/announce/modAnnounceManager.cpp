#include "announce/modAnnounceManager.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "announce/StoredAnnouncement.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::int32_t NoticePicture = 4;  // of the image list of states

bool isExpired(const std::string& line, const DateTime& now) {
    try {
        const StoredAnnouncement told = StoredAnnouncement::Read(line);
        return told.Remaining(told.Age(now)) < 0;
    } catch (const RuntimeError&) {
        return false;  // nobody knows until when it holds
    }
}

}  // namespace

std::int32_t NumberOf(const std::string& line) {
    // Val reads over blanks, so it gets the number alone.
    return std::max(0, CLng(Val(elementOf(Split(line, " ", 2), 0))));
}

modAnnounceManager::modAnnounceManager(Platform& platform, GlobError& globError, ComponentSettings& settings,
                                       HostGate& gate, Sender tellRobot)
    : platform_(platform),
      globError_(globError),
      settings_(settings),
      gate_(gate),
      tellRobot_(std::move(tellRobot)),
      store_(platform.ProgramFiles) {}

void modAnnounceManager::Start() {
    trapped(globError_, "AnnStart", [&](Trap& step) {
        reported_ = missed_ = false;
        step([&] { gAnnID = CLng(Val(settings_.Get(Section::Information, "AnnID", "0"))); });
        step([&] { store_.Furnish(); });
        step([&] { lastAtStart_ = store_.LastLine(); });
    });
}

void modAnnounceManager::CheckAnn() {
    missed_ = false;
    // The number brings a blank of its own.
    tellRobot_("ANN HAS" + Str(gAnnID));
}

void modAnnounceManager::Post(const std::string& hours, int category, const std::string& text) {
    tellRobot_(OneLine("ANN POST " + Trim(hours) + Str(category) + " " + text));
}

// ---- What the robot says

void modAnnounceManager::HandleAnnData(const std::string& Text) {
    trapped(globError_, "HandleAnnData", [&](Trap& step) {
        const auto pieces = Split(Text, " ", 2);
        const std::string verb = pieces.empty() ? std::string() : pieces[0];
        if (verb == "ANNID") step([&] { gAnnID = NumberOf(elementOf(pieces, 1)); });
        if (verb == "ANN") {
            std::string line;
            if (step([&] { line = elementOf(pieces, 1); })) take(step, line);
        }
        step([&] { settings_.Save(Section::Information, "AnnID", CStr(gAnnID)); });
    });
}

void modAnnounceManager::take(Trap& step, const std::string& line) {
    if (missed_) return;
    if (!WriteAnnouncement(line)) {
        missed_ = true;
        return;
    }
    // A line with nothing in it is kept as it came, and has no number.
    if (!line.empty()) step([&] { gAnnID = NumberOf(line); });
    step([&] { Stored.raise(line); });
}

bool modAnnounceManager::WriteAnnouncement(const std::string& Line) {
    bool kept = false;
    trapped(globError_, "WriteAnnouncement", [&](Trap& step) {
        kept = step([&] { append(Line); });
        if (!kept || settings_.Get(Section::Settings, "ReceiveAnn", "T") == "F") return;
        const auto fields = Split(Line, " ", StoredAnnouncement::Fields);
        if (fields.size() < StoredAnnouncement::Fields && !ReportsUnreadable()) return;
        const bool silent = step.test([&] { return isSilent(fields); });
        if (!silent) step([&] { tellHost(elementOf(fields, StoredAnnouncement::Fields - 1)); });
    });
    return kept;
}

void modAnnounceManager::append(const std::string& line) {
    if (isLeftOver(line)) return;
    store_.Append(line);
}

// A crash between the line and the number: the line stands already, and the robot tells it again.
bool modAnnounceManager::isLeftOver(const std::string& line) {
    const auto last = std::exchange(lastAtStart_, std::nullopt);
    return last == line && !line.empty() && NumberOf(line) > gAnnID;
}

bool modAnnounceManager::isSilent(const std::vector<std::string>& fields) const {
    const auto isOn = [&](const char* key) { return settings_.Get(Section::Settings, key, "F") == "T"; };
    const double kind = Val(elementOf(fields, 4));
    return (kind == Category::Query && isOn("NoQueries")) ||
           (kind == Category::Information && isOn("NoInfo"));
}

void modAnnounceManager::tellHost(const std::string& text) {
    Notice notice;
    notice.Title = "Announcement";
    notice.Text = text;
    notice.Value = NoticePicture;
    gate_.NotifyHost(notice);
}

bool modAnnounceManager::ReportsUnreadable() {
    return !std::exchange(reported_, true);
}

// ---- Removing

void modAnnounceManager::RemoveAnn(int Index) {
    trapped(globError_, "RemoveAnn", [&](Trap& step) {
        step([&] { store_.Keep([&](int number, const std::string&) { return number != Index; }); });
    });
}

void modAnnounceManager::RemoveExpired() {
    trapped(globError_, "RemoveExpired", [&](Trap& step) {
        const DateTime now = platform_.WallClock.Now();
        step([&] { store_.Keep([&](int, const std::string& line) { return !isExpired(line, now); }); });
    });
}

}  // namespace talvora
