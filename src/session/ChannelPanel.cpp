#include "session/ChannelPanel.h"

#include <algorithm>

#include "common/FlatList.h"

namespace talvora {

namespace {

constexpr char ListSeparator = '|';
constexpr char FieldSeparator = '\5';
constexpr int OpenChannelIcon = 6;
constexpr int KeyedChannelIcon = 7;
constexpr int JoinErrorIcon = 1;
// A server cannot make the flat lists of channels longer than this.
constexpr std::size_t MaxListText = 1 << 16;
// Nor the text of its list of all channels.
constexpr std::size_t MaxListedText = 8 << 20;

// Whether there was room.
bool appendEntry(std::string& list, const std::string& entry) {
    if (list.size() + entry.size() >= MaxListText) return false;
    (list += entry) += ListSeparator;
    return true;
}

// As many lines as there is room for.
StringArray bounded(const StringArray& lines, std::size_t most) {
    std::size_t bytes = 0;
    const auto fits = [&](const std::string& line) { return (bytes += line.size()) <= MaxListedText; };
    const auto end = lines.begin() + static_cast<std::ptrdiff_t>(std::min(lines.size(), most));
    return {lines.begin(), std::find_if_not(lines.begin(), end, fits)};
}

std::vector<std::string> fieldsOf(const std::string& line) {
    return Split(line, std::string_view(&FieldSeparator, 1), 3);
}

}  // namespace

ChannelPanel::ChannelPanel(Platform& platform, Event<>& end, GlobError& globError,
                           ComponentSettings& settings, IRCServ& engine, const Account& account,
                           SessionPanel& session, UserList& userList1, const Handovers& to)
    : tmrRefreshUsers(platform, end, 5000),
      tmrDisplayKeyChans(platform, end, 5000),
      platform_(platform),
      globError_(globError),
      settings_(settings),
      IRCServ1(engine),
      account_(account),
      session_(session),
      UserList1(userList1),
      to_(to) {
    popChanJoin.Caption = "&Join";
    popChanPart.Caption = "&Part";
    popChanKey.Caption = "Channel &key...";
    popChanNew.Caption = "&New channel...";
    popChanList.Caption = "&List all channels";
    using Text = IRCServ::Text;
    on_ += IRCServ1.YouJoinChannel.connect([this](Text channel) { IRCServ1_YouJoinChannel(channel); });
    on_ += IRCServ1.AlreadyInChannel.connect([this](Text channel) { IRCServ1_YouJoinChannel(channel); });
    on_ += IRCServ1.YouPartChannel.connect([this](Text channel) { IRCServ1_YouPartChannel(channel); });
    on_ +=
        IRCServ1.YouAreNotInThisChannel.connect([this](Text channel) { IRCServ1_YouPartChannel(channel); });
    on_ += IRCServ1.ChannelInvitationOnly.connect([this](Text c) { IRCServ1_ChannelInvitationOnly(c); });
    on_ += IRCServ1.ChannelBanned.connect([this](Text channel) { IRCServ1_ChannelBanned(channel); });
    on_ +=
        IRCServ1.ChannelKeyRequired.connect([this](Text channel) { IRCServ1_ChannelKeyRequired(channel); });
    on_ += IRCServ1.ChannelListReply.connect([this](IRCServ::List list) { IRCServ1_ChannelListReply(list); });
    on_ += IRCServ1.SocketDisconnect.connect([this] { IRCServ1_SocketDisconnect(); });
    on_ += ListView2.ItemCheck.connect([this](ListItem& row) { ListView2_ItemCheck(row); });
    on_ += ListView2.DblClick.connect([this] { ListView2_DblClick(); });
    // The two menus are crossed, and that is how they are to stand.
    on_ += popChanJoin.Click.connect([this] { tickSelected(false); });
    on_ += popChanPart.Click.connect([this] { tickSelected(true); });
    on_ += popChanKey.Click.connect([this] { popChanKey_Click(); });
    on_ += popChanNew.Click.connect([this] { to_.Keys->JoinNew(); });
    on_ += popChanList.Click.connect([this] {
        trapped(globError_, "popChanList_Click",
                [&](Trap& step) { step([&] { IRCServ1.SendIRC("LIST"); }); });
    });
    on_ += tmrDisplayKeyChans.Tick.connect([this] { tmrDisplayKeyChans_Timer(); });
    on_ += tmrRefreshUsers.Tick.connect([this] {
        CreateChannelList(CheckedChans);
        tmrRefreshUsers.Enabled = false;
    });
}

// ---- Joining and leaving

// By value: what is applied stays so, whatever is ticked meanwhile.
void ChannelPanel::CreateChannelList(std::string list) {
    trapped(globError_, "CreateChannelList", [&](Trap& step) {
        UserList1.Clear();
        redraw();
        leaveOrAskNames(step, list);
        joinAll(step, list);
        JoinedChans.clear();
        CheckedChans = list;
        unticked_.clear();
        step([&] { settings_.Save(Section::Settings, "ChanList", list); });
    });
}

void ChannelPanel::leaveOrAskNames(Trap& step, const std::string& list) {
    for (const std::string& joined : Entries(JoinedChans, ListSeparator)) {
        const std::string old = OneLine(joined);
        if (HoldsEntry(list, old, ListSeparator)) {
            IRCServ1.SendIRC("NAMES " + old);
        } else {
            IRCServ1.SendIRC("PART " + old);
            step([&] { to_.Channels->RemoveChan(old); });
        }
    }
}

// Channels that stay are joined again; the server's 927 brings them back.
void ChannelPanel::joinAll(Trap& step, const std::string& list) {
    for (const std::string& named : Entries(list, ListSeparator)) {
        const std::string channel = OneLine(named);
        const std::string key = step.value(std::string(), [&] { return OneLine(keyOf(channel)); });
        IRCServ1.SendIRC(key.empty() ? "JOIN " + channel : "JOIN " + channel + " " + key);
    }
}

void ChannelPanel::IRCServ1_YouJoinChannel(const std::string& channel) {
    trapped(globError_, "IRCServ1_YouJoinChannel", [&](Trap& step) {
        if (EqualText(channel, account_.gSysChannel)) {
            step([&] { session_.SysOK(0); });
            return;
        }
        RespellEntry(JoinedChans, channel, ListSeparator);
        const bool held = HoldsEntry(JoinedChans, channel, ListSeparator);
        const bool kept = held || appendEntry(JoinedChans, channel);
        // However it was joined: the two crossed menus, which apply the list, part nothing that nobody
        // unticked.
        if (!HoldsEntry(CheckedChans, channel, ListSeparator) && !unticked_.contains(channel))
            appendEntry(CheckedChans, channel);
        if (kept) showJoined(channel);
    });
}

void ChannelPanel::IRCServ1_YouPartChannel(const std::string& channel) {
    trapped(globError_, "IRCServ1_YouPartChannel", [&](Trap& step) {
        if (EqualText(channel, account_.gSysChannel)) session_.SysErr(4);
        step([&] { to_.Channels->RemoveChan(channel); });
        RemoveEntry(JoinedChans, channel, ListSeparator);
        RemoveEntry(CheckedChans, channel, ListSeparator);
        showParted(channel);
    });
}

// A refusal is compared with the system channel's key, not with its name: so it must stand.
bool ChannelPanel::isSystemKey(const std::string& channel) const {
    return EqualText(channel, account_.gSysChanKey);
}

void ChannelPanel::IRCServ1_ChannelInvitationOnly(const std::string& channel) {
    trapped(globError_, "IRCServ1_ChannelInvitationOnly", [&](Trap&) {
        if (isSystemKey(channel)) {
            session_.SysOK(1);
        } else {
            refuse(channel, " because it accepts only users with invitation!");
        }
    });
}

void ChannelPanel::IRCServ1_ChannelBanned(const std::string& channel) {
    trapped(globError_, "IRCServ1_ChannelBanned", [&](Trap&) {
        if (isSystemKey(channel)) {
            session_.SysErr(3);
        } else {
            refuse(channel, " because you are banned from it!");
        }
    });
}

void ChannelPanel::refuse(const std::string& channel, const char* why) {
    to_.Notes->Display("You cannot join channel " + channel + why, "Join error", JoinErrorIcon);
    RemoveEntry(JoinedChans, channel, ListSeparator);
}

void ChannelPanel::IRCServ1_ChannelKeyRequired(const std::string& channel) {
    trapped(globError_, "IRCServ1_ChannelKeyRequired", [&](Trap&) {
        if (isSystemKey(channel)) {
            session_.SysErr(2);
            return;
        }
        appendEntry(KeyChans, channel);
        tmrDisplayKeyChans.Enabled = true;
    });
}

void ChannelPanel::tmrDisplayKeyChans_Timer() {
    trapped(globError_, "tmrDisplayKeyChans_Timer", [&](Trap& step) {
        tmrDisplayKeyChans.Enabled = false;
        const std::string channels = KeyChans;
        step([&] { to_.Keys->ExecList(channels); });
        KeyChans.clear();
    });
}

// ---- The list

void ChannelPanel::IRCServ1_ChannelListReply(const StringArray& channels) {
    trapped(globError_, "IRCServ1_ChannelListReply", [&](Trap&) {
        ChanCache = bounded(channels, MostListed);
        redraw();
    });
}

// What a server has listed is no use without it.
void ChannelPanel::IRCServ1_SocketDisconnect() {
    trapped(globError_, "IRCServ1_SocketDisconnect", [&](Trap&) {
        if (ChanCache.empty()) return;
        ChanCache = {};
        redraw();
    });
}

ListItem& ChannelPanel::addRow(int index, const std::string& channel, bool joined) {
    const int icon = keyOf(channel).empty() ? OpenChannelIcon : KeyedChannelIcon;
    ListItem& row = ListView2.ListItems.Insert(index, "", channel);
    row.SetSmallIcon(icon);
    // What the user has ticked and not yet applied stays.
    row.SetChecked(tmrRefreshUsers.Enabled ? HoldsEntry(CheckedChans, channel, ListSeparator) : joined);
    return row;
}

void ChannelPanel::redraw() {
    ListView2.ListItems.Clear();
    known_.clear();
    joinedRows_ = 0;
    for (const std::string& channel : Entries(JoinedChans, ListSeparator)) showJoined(channel);
    for (std::size_t i = 0; i < ChanCache.size() && !ChanCache[i].empty(); ++i)
        showListed(static_cast<int>(i));
}

void ChannelPanel::showListed(int number) {
    const auto fields = fieldsOf(ChanCache[static_cast<std::size_t>(number)]);
    if (EqualText(fields[0], account_.gSysChannel)) return;
    auto found = known_.find(fields[0]);
    if (found == known_.end()) {
        ListItem& row = addRow(ListView2.ListItems.Count() + 1, fields[0], false);
        row.SetTag(CStr(number));
        found = known_.emplace(fields[0], Known{&row, number}).first;
    }
    Known& known = found->second;
    if (known.listed < 0) known.listed = number;
    known.row->SetSubItem(1, fields.size() > 1 ? fields[1] : "");
    known.row->SetSubItem(2, fields.size() > 2 ? fields[2] : "");
}

// A channel that is joined or left moves its one row, so that it costs the same behind a long list.
void ChannelPanel::showJoined(const std::string& channel) {
    const auto found = known_.find(channel);
    ListItem* const before = found == known_.end() ? nullptr : found->second.row;
    if (before != nullptr && before->Index() <= joinedRows_) {
        before->SetText(channel);
        if (!tmrRefreshUsers.Enabled) before->SetChecked(true);
        return;
    }
    ListItem& row = addRow(joinedRows_ + 1, channel, true);
    ++joinedRows_;
    known_[channel].row = &row;
    if (before != nullptr) replace(*before, row);
}

void ChannelPanel::showParted(const std::string& channel) {
    const auto found = known_.find(channel);
    if (found == known_.end() || found->second.row->Index() > joinedRows_) return;
    Known& known = found->second;
    ListItem& before = *known.row;
    if (known.listed < 0) {
        --joinedRows_;
        ListView2.ListItems.Remove(before);
        known_.erase(found);
        return;
    }
    const std::string name = fieldsOf(ChanCache[static_cast<std::size_t>(known.listed)])[0];
    known.row = &addRow(placeOfListed(known.listed), name, false);
    --joinedRows_;
    known.row->SetTag(CStr(known.listed));
    replace(before, *known.row);
}

// The row of a channel by its row at another place.
void ChannelPanel::replace(ListItem& row, ListItem& by) {
    for (const std::size_t column : {1U, 2U}) by.SetSubItem(column, row.SubItems(column));
    if (ListView2.SelectedItem == &row) ListView2.userSelects(by);
    ListView2.ListItems.Remove(row);
}

// The row in front of which a channel of the server's list belongs, behind the joined ones.
int ChannelPanel::placeOfListed(int number) const {
    int first = joinedRows_ + 1;
    int last = ListView2.ListItems.Count() + 1;
    while (first < last) {
        const int middle = first + (last - first) / 2;
        if (CLng(ListView2.ListItems(middle).Tag()) < number) {
            first = middle + 1;
        } else {
            last = middle;
        }
    }
    return first;
}

std::string ChannelPanel::keyOf(std::string_view channel) const {
    return settings_.Get(Section::ChanKeys, channel, "");
}

// The changes of five seconds are applied together.
void ChannelPanel::ListView2_ItemCheck(const ListItem& changed) {
    unticked_.erase(changed.Text());
    if (!changed.Checked()) unticked_.insert(changed.Text());
    // What a menu has unticked, or what is joined and not drawn yet, nobody has.
    const std::vector<std::string> before = Entries(CheckedChans, ListSeparator);
    std::unordered_set<std::string, TextHash, TextEqual> kept(before.begin(), before.end());
    for (const std::string& channel : unticked_) kept.erase(channel);
    CheckedChans.clear();
    for (int i = 1; i <= ListView2.ListItems.Count(); ++i) {
        const ListItem& row = ListView2.ListItems(i);
        const bool spared = kept.erase(row.Text()) > 0;
        if (row.Checked() || spared) (CheckedChans += row.Text()) += ListSeparator;
    }
    for (const std::string& channel : before) {
        if (kept.contains(channel)) (CheckedChans += channel) += ListSeparator;
    }
    tmrRefreshUsers.Restart();
}

void ChannelPanel::tickSelected(bool checked) {
    if (ListView2.SelectedItem == nullptr) return;
    ListView2.SelectedItem->SetChecked(checked);
    tmrRefreshUsers.Enabled = true;
}

void ChannelPanel::ListView2_DblClick() {
    trapped(globError_, "ListView2_DblClick", [&](Trap& step) {
        if (ListView2.SelectedItem == nullptr) return;
        const std::string channel = ListView2.SelectedItem->Text();
        step([&] { to_.Channels->StartChan(channel); });
        unticked_.erase(channel);
        IRCServ1.SendIRC(OneLine("JOIN " + channel));
        IRCServ1.SendIRC(OneLine("NAMS " + channel));
    });
}

void ChannelPanel::popChanKey_Click() {
    trapped(globError_, "popChanKey_Click", [&](Trap& step) {
        if (ListView2.SelectedItem == nullptr) return;
        // The row may be gone when the question is answered.
        const std::string channel = ListView2.SelectedItem->Text();
        const InputBox box{"Please enter the key to use as default for channel " + channel, "New key",
                           keyOf(channel)};
        const std::string key = platform_.Asking.Ask(box).value_or("");
        if (key.empty()) {
            MessageBox clear{"Do you want to clear channel key?", "Channel Key", Buttons::YesNo,
                             MessageIcon::Question};
            if (platform_.Asking.Ask(clear) != Answer::Yes) return;
        }
        step([&] { settings_.Save(Section::ChanKeys, channel, key); });
    });
}

}  // namespace talvora
