#include "chat/UserList.h"

#include <utility>

#include "platform/Text.h"

namespace talvora {
namespace {

// The marks of a names reply that say what a user is on a channel.
constexpr std::string_view statusMarks = "~+@.&";

}  // namespace

UserList::UserList(GlobError& globError, modNickDecode& nickDecode)
    : globError_(globError), nickDecode_(nickDecode) {
    ListView1.SetSmallIcons(StateImages);
    on_ += ListView1.ItemClick.connect([this](const ListItem& row) { ListView1_ItemClick(row); });
    on_ += ListView1.DblClick.connect([this] {
        if (ListView1.SelectedItem != nullptr) DblClick.raise(std::string(ListView1.SelectedItem->Key()));
    });
    on_ += ListView1.MouseUp.connect(
        [this](int button, int shift, int x, int y) { ListView1_MouseUp(button, shift, x, y); });
}

UserList::Shown UserList::shownFor(Text nick) {
    std::string bareNick = nick;
    std::string description;
    std::uint8_t icon = 0;
    nickDecode_.GetNickDesc(bareNick, description, icon);
    return {ProperCase(bareNick) + " (" + description + ")", icon};
}

void UserList::enter(ListItem& row) {
    byKey_.enter(row.Key(), row);
    byBareNick_.enter(TruncNick(row.Key()), row);
}

void UserList::leave(const ListItem& row) {
    byKey_.leave(row.Key(), row);
    byBareNick_.leave(TruncNick(row.Key()), row);
}

void UserList::remove(const ListItem& row) {
    leave(row);
    ListView1.ListItems.Remove(row);
}

void UserList::clear() {
    byKey_.clear();
    byBareNick_.clear();
    ListView1.ListItems.Clear();
}

void UserList::Add(Text Nick, Text Channel) {
    trapped(globError_, "Add", [&](Trap& step) {
        const bool marked = !Nick.empty() && statusMarks.find(Nick.front()) != std::string_view::npos;
        const std::string nick = Nick.substr(marked ? 1 : 0);
        const std::string entry = Channel + "|";
        if (appended(nick, entry)) return;
        Shown shown = shownFor(nick);
        if (appended(nick, entry)) return;  // the user has come meanwhile, behind a report
        ListItem& row = ListView1.ListItems.Add(nick, std::move(shown.text));
        // Before the icon, which may fail: a row without an icon is a user of its channel all the same.
        row.SetTag(entry);
        enter(row);
        setIcon(step, nick, row, shown.icon);
    });
}

// Whether there is a row, which then stands for the channel too.
bool UserList::appended(Text nick, Text entry) {
    ListItem* row = byKey_.find(nick);
    if (row == nullptr) return false;
    if (InStr(row->Tag(), entry, Compare::Text) == 0) row->SetTag(row->Tag() + entry);
    return true;
}

// Before a second try the row may have gone.
void UserList::setIcon(Trap& step, Text key, ListItem& row, int icon) {
    const auto known = static_cast<std::size_t>(icon) & 0xFF;
    if (withoutImage_[known]) return;  // told of already, and others choose how many carry it
    const bool done = step([&] {
        if (byKey_.holds(key, row)) row.SetSmallIcon(icon);
    });
    withoutImage_[known] = !done;
}

void UserList::Remove(Text Nick) {
    trapped(globError_, "Remove", [&](Trap&) {
        if (const ListItem* row = byKey_.find(Nick)) remove(*row);
    });
}

void UserList::Part(Text Nick, Text Channel) {
    trapped(globError_, "Part", [&](Trap&) {
        ListItem* row = byKey_.find(Nick);
        if (row == nullptr) return;
        std::string tag = Replace(row->Tag(), Channel + "|", "");
        if (tag.empty()) {
            remove(*row);
        } else {
            row->SetTag(std::move(tag));
        }
    });
}

void UserList::rename(Trap& step, const RowIndex& index, Text oldName, Text newNick, bool& changed) {
    if (index.find(oldName) == nullptr) return;
    const std::string key = UCase(newNick);
    Shown shown = shownFor(newNick);
    ListItem* row = index.find(oldName);
    if (row == nullptr) return;  // the user has gone meanwhile, behind a report
    leave(*row);
    row->SetKey(key);
    enter(*row);
    changed = true;
    row->SetText(std::move(shown.text));
    setIcon(step, key, *row, shown.icon);
}

void UserList::Rename(Text OldNick, Text NewNick) {
    bool changed = false;
    trapped(globError_, "Rename",
            [&, oldNick = OldNick](Trap& step) { rename(step, byKey_, oldNick, NewNick, changed); });
}

bool UserList::MatchRename(Text OldNick, Text NewNick) {
    bool changed = false;
    trapped(globError_, "MatchRename",
            [&](Trap& step) { rename(step, byBareNick_, TruncNick(OldNick), NewNick, changed); });
    return changed;
}

void UserList::ListNames(const std::vector<std::string>& Names, Text Channel) {
    trapped(globError_, "ListNames", [&](Trap&) {
        clear();
        for (const std::string& name : Names) Add(name, Channel);
    });
}

void UserList::MergeNames(const std::vector<std::string>& Names, Text Channel) {
    trapped(globError_, "MergeNames", [&](Trap&) {
        for (const std::string& name : Names) Add(name, Channel);
    });
}

void UserList::Clear() {
    trapped(globError_, "Clear", [&](Trap&) { clear(); });
}

std::int16_t UserList::GetUser(Text Nick) {
    std::int16_t number = 0;
    trapped(globError_, "GetUser", [&](Trap& step) {
        const ListItem* row = byKey_.find(Nick);
        if (row != nullptr) step([&] { number = CInt(row->Index()); });
    });
    return number;
}

void UserList::ListView1_ItemClick(const ListItem& row) {
    trapped(globError_, "ListView1_ItemClick", [&](Trap&) {
        SelectedNick = row.Key();
        Click.raise(std::string(row.Key()));
    });
}

void UserList::ListView1_MouseUp(int button, int shift, int x, int y) {
    if (ListView1.SelectedItem == nullptr) return;
    MouseUp.raise(std::string(ListView1.SelectedItem->Key()), button, shift, x + 1, y + 1);
}

}  // namespace talvora
