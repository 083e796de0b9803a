#include "chat/UserList.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "platform/Text.h"

namespace talvora {
namespace {

// The marks of a names reply that say what a user is on a channel.
constexpr std::string_view StatusMarks = "~+@.&";

std::string_view withoutMark(std::string_view nick) {
    const bool marked = !nick.empty() && StatusMarks.find(nick.front()) != std::string_view::npos;
    return nick.substr(marked ? 1 : 0);
}

}  // namespace

UserList::UserList(Platform& platform, GlobError& globError, modNickDecode& nickDecode)
    : globError_(globError), nickDecode_(nickDecode), tmrNames_(platform, 1) {
    on_ += tmrNames_.Tick.connect([this] { workOff(ATurn); });
    ListView1.SetSmallIcons(StateImages);
    on_ += ListView1.ItemClick.connect([this](const ListItem& row) { ListView1_ItemClick(row); });
    on_ += ListView1.DblClick.connect([this] {
        if (ListView1.SelectedItem != nullptr) DblClick.raise(std::string(ListView1.SelectedItem->Key()));
    });
    on_ += ListView1.MouseUp.connect(
        [this](int button, int shift, int x, int y) { ListView1_MouseUp(button, shift, x, y); });
}

UserList::~UserList() {
    give(used_);
}

bool UserList::take(std::size_t bytes) {
    if (!nickDecode_.ListMemory.take(bytes)) return false;
    used_ += bytes;
    return true;
}

void UserList::give(std::size_t bytes) {
    used_ -= bytes;
    nickDecode_.ListMemory.give(bytes);
}

// ---- What waits

std::string UserList::WaitingNames::next() {
    const std::size_t begin = taken == 0 ? 0 : ends[taken - 1];
    return text.substr(begin, ends[taken++] - begin);
}

bool UserList::waits(void (UserList::*act)(Text, Text), Text first, Text second) {
    if (waiting_.empty()) return false;
    Waiting entry;
    entry.act = act;
    entry.first = first;
    entry.second = second;
    wait(std::move(entry));
    return true;
}

bool UserList::wait(Waiting entry) {
    entry.cost += sizeof entry + entry.first.size() + entry.second.size();
    entry.cost += entry.names.text.size() + entry.names.ends.size() * sizeof(std::size_t);
    if (!take(entry.cost)) return false;
    waiting_.push_back(std::move(entry));
    tmrNames_.Enabled = true;
    return true;
}

void UserList::workOff(std::size_t count) {
    for (; count > 0 && !waiting_.empty(); --count) workOffOne();
    if (waiting_.empty()) tmrNames_.Enabled = false;
}

// Out of the queue before it is done: a report in the middle lets other events in.
void UserList::workOffOne() {
    Waiting& front = waiting_.front();
    if (front.names.left()) {
        const std::string name = front.names.next();
        const std::string channel = front.first;
        addNow(name, channel);
        return;
    }
    const Waiting entry = std::move(front);
    waiting_.pop_front();
    give(entry.cost);
    if (!entry.names.ends.empty()) {
        byKey_.fit();
        byBareNick_.fit();
    }
    if (entry.act != nullptr) (this->*entry.act)(entry.first, entry.second);
}

// ---- Rows

namespace {

std::size_t costOf(const ListItem& row) {
    return UserMemory::RowCost + row.Key().size() + row.Text().size() + row.Tag().size();
}

}  // namespace

UserList::Shown UserList::shownFor(Text nick) {
    std::string bareNick = nick;
    std::string description;
    std::uint8_t icon = 0;
    nickDecode_.GetNickDesc(bareNick, description, icon);
    std::string text = ProperCase(bareNick);
    text.reserve(text.size() + description.size() + 3);
    text.append(" (").append(description).append(")");
    return {std::move(text), icon};
}

void UserList::enter(ListItem& row) {
    byKey_.enter(row);
    byBareNick_.enter(row);
}

void UserList::leave(const ListItem& row) {
    byKey_.leave(row);
    byBareNick_.leave(row);
}

void UserList::remove(const ListItem& row) {
    give(costOf(row));
    leave(row);
    ListView1.ListItems.Remove(row);
}

void UserList::clear() {
    waiting_.clear();
    byKey_.clear();
    byBareNick_.clear();
    ListView1.ListItems.Clear();
    give(used_);
}

void UserList::Add(Text Nick, Text Channel) {
    if (!waits(&UserList::addNow, Nick, Channel)) addNow(Nick, Channel);
}

void UserList::addNow(Text Nick, Text Channel) {
    trapped(globError_, "Add", [&](Trap& step) {
        const std::string nick(withoutMark(Nick));
        const std::string entry = Channel + "|";
        if (appended(nick, entry)) return;
        Shown shown = shownFor(nick);
        if (appended(nick, entry)) return;  // the user has come meanwhile, behind a report
        if (entry.size() > UserMemory::LongestTag) return;
        if (!take(UserMemory::RowCost + nick.size() + shown.text.size() + entry.size())) return;
        ListItem& row = ListView1.ListItems.Add(nick, std::move(shown.text));
        // Before the icon, which may fail: a row without an icon is a user of its channel all the same.
        row.SetTag(entry);
        enter(row);
        setIcon(step, nick, row, shown.icon);
    });
}

// Whether there is a row, which then stands for the channel too. A row that stands for more channels than are
// noted is not even searched.
bool UserList::appended(Text nick, Text entry) {
    ListItem* row = byKey_.find(nick);
    if (row == nullptr) return false;
    const std::string& tag = row->Tag();
    if (tag.size() + entry.size() > UserMemory::LongestTag) return true;
    if (InStr(tag, entry, Compare::Text) == 0 && take(entry.size())) row->SetTag(tag + entry);
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
    if (!waits(&UserList::removeNow, Nick, {})) removeNow(Nick, {});
}

void UserList::removeNow(Text Nick, Text) {
    trapped(globError_, "Remove", [&](Trap&) {
        if (const ListItem* row = byKey_.find(Nick)) remove(*row);
    });
}

void UserList::Part(Text Nick, Text Channel) {
    if (!waits(&UserList::partNow, Nick, Channel)) partNow(Nick, Channel);
}

void UserList::partNow(Text Nick, Text Channel) {
    trapped(globError_, "Part", [&](Trap&) {
        if (ListItem* row = byKey_.find(Nick)) cut(*row, Channel);
    });
}

void UserList::cut(ListItem& row, Text channel) {
    std::string tag = Replace(row.Tag(), channel + "|", "");
    if (tag.empty()) {
        remove(row);
    } else {
        give(row.Tag().size() - tag.size());
        row.SetTag(std::move(tag));
    }
}

void UserList::Leave(Text Nick, Text Channel) {
    if (!waits(&UserList::leaveNow, Nick, Channel)) leaveNow(Nick, Channel);
}

void UserList::leaveNow(Text Nick, Text Channel) {
    partNow(Nick, spelledIn(Nick, Channel));
}

std::string UserList::spelledIn(Text nick, Text channel) const {
    const ListItem* row = byKey_.find(nick);
    const std::size_t at = row == nullptr ? 0 : InStr(row->Tag(), channel + "|", Compare::Text);
    return at == 0 ? channel : row->Tag().substr(at - 1, channel.size());
}

void UserList::rename(Trap& step, const RowIndex& index, Text oldName, Text newNick, bool& changed) {
    if (index.find(oldName) == nullptr) return;
    const std::string key = UCase(newNick);
    Shown shown = shownFor(newNick);
    ListItem* row = index.find(oldName);
    if (row == nullptr) return;  // the user has gone meanwhile, behind a report
    const std::size_t before = row->Key().size() + row->Text().size();
    leave(*row);
    row->SetKey(key);
    enter(*row);
    changed = true;
    row->SetText(std::move(shown.text));
    used_ += nickDecode_.ListMemory.exchange(before, row->Key().size() + row->Text().size());
    setIcon(step, key, *row, shown.icon);
}

void UserList::Rename(Text OldNick, Text NewNick) {
    if (!waits(&UserList::renameNow, OldNick, NewNick)) renameNow(OldNick, NewNick);
}

void UserList::renameNow(Text OldNick, Text NewNick) {
    bool changed = false;
    trapped(globError_, "Rename",
            [&, oldNick = OldNick](Trap& step) { rename(step, byKey_, oldNick, NewNick, changed); });
}

bool UserList::MatchRename(Text OldNick, Text NewNick) {
    finish();
    bool changed = false;
    trapped(globError_, "MatchRename",
            [&](Trap& step) { rename(step, byBareNick_, TruncNick(OldNick), NewNick, changed); });
    return changed;
}

void UserList::ListNames(const std::vector<std::string>& Names, Text Channel) {
    trapped(globError_, "ListNames", [&](Trap&) {
        clear();
        addAll(Names, Channel);
    });
}

void UserList::MergeNames(const std::vector<std::string>& Names, Text Channel) {
    trapped(globError_, "MergeNames", [&](Trap&) { addAll(Names, Channel); });
}

void UserList::addAll(const std::vector<std::string>& names, Text channel) {
    const std::size_t now = waiting_.empty() ? std::min(names.size(), AtOnce) : 0;
    for (std::size_t i = 0; i < now; ++i) Add(names[i], channel);
    if (now == names.size()) return;
    const std::size_t coming = std::min(names.size() - now, nickDecode_.ListMemory.rows());
    Waiting rest;
    rest.cost = 2 * coming * RowIndex::RoomCost;
    rest.first = channel;
    rest.names.ends.reserve(names.size() - now);
    for (std::size_t i = now; i < names.size(); ++i) rest.names.add(names[i]);
    if (!wait(std::move(rest))) return;
    byKey_.expect(coming);
    byBareNick_.expect(coming);
}

void UserList::Clear() {
    trapped(globError_, "Clear", [&](Trap&) { clear(); });
}

void UserList::Refresh(const std::vector<std::string>& Names, Text Channel) {
    trapped(globError_, "Refresh", [&](Trap& step) {
        std::vector<ListRow> rows = rowsFor(Names, Channel);
        std::vector<int> icons;
        waiting_.clear();
        byKey_.clear();
        byBareNick_.clear();
        leaveOutWithoutRoom(rows);
        // An icon may fail, and then its row stands without.
        for (ListRow& row : rows) {
            icons.push_back(row.SmallIcon);
            if (row.SmallIcon > StateImages) row.SmallIcon = 0;
        }
        ListView1.Refresh(rows);
        for (int i = 1; i <= ListView1.ListItems.Count(); ++i) enter(ListView1.ListItems(i));
        for (std::size_t i = 0; i < icons.size(); ++i) {
            ListItem* row = icons[i] > StateImages ? byKey_.find(rows[i].Key) : nullptr;
            if (row != nullptr) setIcon(step, rows[i].Key, *row, icons[i]);
        }
    });
}

std::vector<ListRow> UserList::rowsFor(const std::vector<std::string>& names, Text channel) {
    std::vector<ListRow> rows;
    rows.reserve(names.size());
    std::unordered_set<std::string_view, TextHash, TextEqual> seen;
    for (const std::string& name : names) {
        if (!seen.insert(withoutMark(name)).second) continue;
        ListRow& row = rows.emplace_back();
        row.Key = withoutMark(name);
        row.Tag = channel + "|";
        Shown shown = shownFor(row.Key);
        row.Text = std::move(shown.text);
        row.SmallIcon = shown.icon;
    }
    return rows;
}

void UserList::leaveOutWithoutRoom(std::vector<ListRow>& rows) {
    give(used_);
    std::erase_if(rows, [this](const ListRow& row) {
        return !take(UserMemory::RowCost + row.Key.size() + row.Text.size() + row.Tag.size());
    });
}

std::int16_t UserList::GetUser(Text Nick) {
    finish();
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
