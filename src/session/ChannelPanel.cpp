#include "session/ChannelPanel.h"

#include <unordered_map>

#include "common/FlatList.h"

namespace talvora {

namespace {

constexpr char ListSeparator = '|';
constexpr char FieldSeparator = '\5';
constexpr int OpenChannelIcon = 6;
constexpr int KeyedChannelIcon = 7;
constexpr int JoinErrorIcon = 1;
constexpr int RedrawDelay = 40;  // milliseconds
// A server cannot make the flat lists of channels longer than this.
constexpr std::size_t MaxListText = 1 << 16;

void appendEntry(std::string& list, const std::string& entry) {
    if (list.size() + entry.size() < MaxListText) (list += entry) += ListSeparator;
}

}  // namespace

ChannelPanel::ChannelPanel(Platform& platform, Event<>& end, GlobError& globError,
                           ComponentSettings& settings, IRCServ& engine, const Account& account,
                           SessionPanel& session, UserList& userList1, const Handovers& to)
    : tmrRefreshUsers(platform, end, 5000),
      tmrDisplayKeyChans(platform, end, 5000),
      tmrRedraw(platform, end, RedrawDelay),
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
    on_ +=
        tmrRedraw.Tick.connect([this] { trapped(globError_, "tmrRedraw_Timer", [&](Trap&) { redraw(); }); });
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
    for (const std::string& old : Entries(JoinedChans, ListSeparator)) {
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
    for (const std::string& channel : Entries(list, ListSeparator)) {
        const std::string key = step.value(std::string(), [&] { return keyOf(channel); });
        IRCServ1.SendIRC(key.empty() ? "JOIN " + channel : "JOIN " + channel + " " + key);
    }
}

void ChannelPanel::IRCServ1_YouJoinChannel(const std::string& channel) {
    trapped(globError_, "IRCServ1_YouJoinChannel", [&](Trap& step) {
        if (EqualText(channel, account_.gSysChannel)) {
            step([&] { session_.SysOK(0); });
            return;
        }
        if (!HoldsEntry(JoinedChans, channel, ListSeparator)) appendEntry(JoinedChans, channel);
        // However it was joined: the two crossed menus, which apply the list, part nothing that nobody
        // unticked.
        if (!HoldsEntry(CheckedChans, channel, ListSeparator) && !unticked_.contains(channel))
            appendEntry(CheckedChans, channel);
        tmrRedraw.Enabled = true;
    });
}

void ChannelPanel::IRCServ1_YouPartChannel(const std::string& channel) {
    trapped(globError_, "IRCServ1_YouPartChannel", [&](Trap& step) {
        if (EqualText(channel, account_.gSysChannel)) session_.SysErr(4);
        step([&] { to_.Channels->RemoveChan(channel); });
        RemoveEntry(JoinedChans, channel, ListSeparator);
        RemoveEntry(CheckedChans, channel, ListSeparator);
        tmrRedraw.Enabled = true;
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
        ChanCache = channels;
        redraw();
    });
}

ListItem& ChannelPanel::addRow(const std::string& channel, bool joined) {
    ListItem& row = ListView2.ListItems.Add("", channel);
    row.SetSmallIcon(keyOf(channel).empty() ? OpenChannelIcon : KeyedChannelIcon);
    // What the user has ticked and not yet applied stays.
    row.SetChecked(tmrRefreshUsers.Enabled ? HoldsEntry(CheckedChans, channel, ListSeparator) : joined);
    return row;
}

void ChannelPanel::redraw() {
    tmrRedraw.Enabled = false;
    ListView2.ListItems.Clear();
    std::unordered_map<std::string, ListItem*> rows;
    for (const std::string& channel : Entries(JoinedChans, ListSeparator)) {
        rows.emplace(UCase(channel), &addRow(channel, true));
    }
    const std::string system = UCase(account_.gSysChannel);
    for (const std::string& line : ChanCache) {
        if (line.empty()) break;
        const auto fields = Split(line, std::string_view(&FieldSeparator, 1), 3);
        const std::string name = UCase(fields[0]);
        if (name == system) continue;
        ListItem*& row = rows[name];
        if (row == nullptr) row = &addRow(fields[0], false);
        row->SetSubItem(1, fields.size() > 1 ? fields[1] : "");
        row->SetSubItem(2, fields.size() > 2 ? fields[2] : "");
    }
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
    tmrRefreshUsers.Enabled = false;
    tmrRefreshUsers.Enabled = true;
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
        IRCServ1.SendIRC("JOIN " + channel);
        IRCServ1.SendIRC("NAMS " + channel);
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
            MessageBox clear;
            clear.Text = "Do you want to clear channel key?";
            clear.Title = "Channel Key";
            clear.Choices = Buttons::YesNo;
            clear.Icon = MessageIcon::Question;
            if (platform_.Asking.Ask(clear) != Answer::Yes) return;
        }
        step([&] { settings_.Save(Section::ChanKeys, channel, key); });
    });
}

}  // namespace talvora
