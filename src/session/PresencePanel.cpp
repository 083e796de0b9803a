#include "session/PresencePanel.h"

#include "chat/modNickDecode.h"
#include "common/FlatList.h"
#include "platform/Files.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr int MaxStates = 50;
constexpr char IgnoreSeparator = '@';
constexpr std::string_view OfflineMark = "[Offline]";

// The nick is cut out as plain text, also from the end of a longer one; what is left of that one keeps its
// separator, or it would be glued to the next.
std::string withoutNick(const std::string& list, const std::string& nick) {
    const std::string entry = nick + IgnoreSeparator;
    std::string left;
    std::size_t begin = 0;
    for (std::size_t at; (at = list.find(entry, begin)) != std::string::npos; begin = at + entry.size()) {
        left.append(list, begin, at - begin);
        if (!left.empty() && left.back() != IgnoreSeparator) left += IgnoreSeparator;
    }
    return left.append(list, begin);
}

}  // namespace

PresencePanel::PresencePanel(Platform& platform, GlobError& globError, ComponentSettings& settings,
                             UserState& state, const UsersPanel& users, UserList& userList3)
    : platform_(platform),
      globError_(globError),
      settings_(settings),
      state_(state),
      users_(users),
      UserList3(userList3) {
    popStat.Load(0).Visible = false;  // the template
    popOnline.Caption = "Online";
    mnuIgnore.Caption = "&Ignore";
    mnuUnignore.Caption = "&Stop ignoring";
    on_ += state.Changed.connect([this] { showState(); });
    on_ += popOnline.Click.connect([this] { popOnline_Click(); });
    on_ += mnuIgnore.Click.connect([this] { mnuIgnore_Click(); });
    on_ += mnuUnignore.Click.connect([this] { mnuUnignore_Click(); });
    showState();
}

void PresencePanel::RefreshSettings() {
    rebuildMenu();
    gIgnoreList = settings_.Get(Section::Settings, "IgnoreList", "");
}

void PresencePanel::showState() {
    imgState.Picture = state_.Picture();
    Label18.Caption = state_.Name();
    lblNick.Caption = state_.Carried();
}

void PresencePanel::rebuildMenu() {
    trapped(globError_, "RefreshSettings", [&](Trap& step) {
        popStat(0).Visible = true;
        states_.clear();
        for (int i = popStat.UBound(); i > 0; --i) popStat.Unload(i);
        File states;
        if (step([&] { states = platform_.ProgramFiles.Open("System\\perflix.lst", FileMode::Input); })) {
            loadStates(step, states);
        }
        popStat(0).Visible = false;
    });
}

void PresencePanel::loadStates(Trap& step, File& states) {
    int index = 1;
    while (index <= MaxStates && step.test([&] { return !states.AtEnd(); })) {
        std::string line;
        if (!step([&] { line = Trim(states.ReadLine()); })) continue;
        if (line.empty()) continue;
        if (step([&] { loadState(index, line); })) ++index;
    }
}

void PresencePanel::loadState(int index, const std::string& line) {
    const auto fields = Split(line, "|");
    const std::string caption = elementOf(fields, 1);
    const std::string tag = elementOf(fields, 2) + "|" + fields[0];
    Menu& entry = popStat.Load(index);
    entry.Caption = caption;
    entry.Tag = tag;
    // The numbers of pictures are bytes.
    entry.Picture = static_cast<int>(std::clamp(Val(elementOf(fields, 2)), 0.0, 255.0));
    states_ += entry.Click.connect([this, index] { popStat_Click(index); });
}

void PresencePanel::popOnline_Click() {
    state_.Choose("", modNickDecode::OnlineIcon);
}

void PresencePanel::popStat_Click(int index) {
    trapped(globError_, "popStat_Click", [&](Trap& step) {
        std::string picture;
        std::string tag;
        const bool read = step([&] {
            const auto pieces = Split(popStat(index).Tag.get(), "|");
            picture = elementOf(pieces, 0);
            tag = elementOf(pieces, 1);
        });
        if (!read) return;
        const int shown = step.value(state_.Picture(), [&] { return CLng(Val(picture)); });
        state_.Choose("[" + tag + "]", shown);
    });
}

// ---- Ignored users

void PresencePanel::Select(const std::string& nick) {
    SelectedNick = nick;
    const bool ignored = IsIgnored(nick);
    mnuIgnore.Visible = !ignored;
    mnuUnignore.Visible = ignored;
}

void PresencePanel::mnuIgnore_Click() {
    trapped(globError_, "mnuIgnore_Click", [&](Trap& step) {
        const std::string bare = TruncNick(SelectedNick);
        if (bare.empty() || IsIgnored(bare)) return;
        gIgnoreList += bare + IgnoreSeparator;
        step([&] { settings_.Save(Section::Settings, "IgnoreList", gIgnoreList); });
        RefreshIgnore();
    });
}

void PresencePanel::mnuUnignore_Click() {
    trapped(globError_, "mnuUnignore_Click", [&](Trap& step) {
        const std::string bare = TruncNick(SelectedNick);
        if (bare.empty()) return;
        gIgnoreList = withoutNick(gIgnoreList, bare);
        step([&] { settings_.Save(Section::Settings, "IgnoreList", gIgnoreList); });
        RefreshIgnore();
    });
}

void PresencePanel::RefreshIgnore() {
    trapped(globError_, "RefreshIgnore", [&](Trap& step) {
        std::vector<std::string> names;
        for (const std::string& entry : Split(gIgnoreList, "@")) {
            if (entry.empty()) break;
            names.push_back(shownName(entry));
        }
        step([&] { UserList3.Refresh(names, "@friend"); });
    });
}

std::string PresencePanel::shownName(const std::string& bareNick) const {
    const std::string* onLine = users_.Online()->find(bareNick);
    return onLine != nullptr ? *onLine : bareNick + std::string(OfflineMark);
}

bool PresencePanel::IsIgnored(const std::string& nick) const {
    const std::string bare = TruncNick(nick);
    return !bare.empty() && HoldsEntry(gIgnoreList, bare, IgnoreSeparator);
}

// Somebody may really carry a state of that name. A renamed row is in upper case.
bool PresencePanel::IsMarkedOffline(const std::string& nick) {
    if (nick.size() < OfflineMark.size()) return false;
    return EqualText(std::string_view(nick).substr(nick.size() - OfflineMark.size()), OfflineMark);
}

bool PresencePanel::IsShownOffline(const std::string& nick) const {
    return IsMarkedOffline(nick) && users_.Online()->find(bareNickOf(nick)) == nullptr;
}

}  // namespace talvora
