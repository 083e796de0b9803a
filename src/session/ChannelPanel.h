#pragma once
// The channels in the main window: the list with its check boxes, joining and leaving, keys, and what the
// server says to a join.

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "chat/UserList.h"
#include "common/ComponentSettings.h"
#include "common/Trap.h"
#include "irc/IRCServ.h"
#include "platform/Controls.h"
#include "platform/ListView.h"
#include "platform/Text.h"
#include "platform/Timer.h"
#include "session/Account.h"
#include "session/Handovers.h"
#include "session/SessionPanel.h"

namespace talvora {

class ChannelPanel {
  public:
    ChannelPanel(Platform& platform, Event<>& end, GlobError& globError, ComponentSettings& settings,
                 IRCServ& engine, const Account& account, SessionPanel& session, UserList& userList1,
                 const Handovers& to);

    ListView ListView2;  // one row a channel: name, users, topic; ticked if joined
    Menu popChannel;     // of a row, of these:
    Menu popChanJoin;
    Menu popChanPart;
    Menu popChanKey;
    Menu popChanNew;   // asks for the name of a channel to create
    Menu popChanList;  // asks the server for its channels
    Timer tmrRefreshUsers;
    Timer tmrDisplayKeyChans;
    std::size_t MostListed = 1 << 16;  // channels of the server's list that are kept

    // Joins the channels of `list` (each followed by "|"), leaves the others and saves the list.
    void CreateChannelList(std::string list);

    // Channels joined so far in this session, each followed by "|". It survives a disconnection.
    const std::string& Joined() const { return JoinedChans; }

  private:
    void IRCServ1_YouJoinChannel(const std::string& channel);
    void IRCServ1_YouPartChannel(const std::string& channel);
    void IRCServ1_ChannelInvitationOnly(const std::string& channel);
    void IRCServ1_ChannelBanned(const std::string& channel);
    void IRCServ1_ChannelKeyRequired(const std::string& channel);
    void IRCServ1_ChannelListReply(const StringArray& channels);
    void ListView2_ItemCheck(const ListItem& changed);
    void ListView2_DblClick();
    void popChanKey_Click();
    void tickSelected(bool checked);
    void tmrDisplayKeyChans_Timer();

    void leaveOrAskNames(Trap& step, const std::string& list);
    void joinAll(Trap& step, const std::string& list);
    void redraw();
    void showListed(int number);
    void showJoined(const std::string& channel);
    void showParted(const std::string& channel);
    void IRCServ1_SocketDisconnect();
    ListItem& addRow(int index, const std::string& channel, bool joined);
    void replace(ListItem& row, ListItem& by);
    int placeOfListed(int number) const;
    void refuse(const std::string& channel, const char* why);
    bool isSystemKey(const std::string& channel) const;
    std::string keyOf(std::string_view channel) const;

    Platform& platform_;
    GlobError& globError_;
    ComponentSettings& settings_;
    IRCServ& IRCServ1;
    const Account& account_;
    SessionPanel& session_;
    UserList& UserList1;
    const Handovers& to_;
    std::string JoinedChans;
    StringArray ChanCache;  // the last list of the server, as far as there is room for it
    // The rows: those of JoinedChans first, then those of ChanCache in its order.
    struct Known {
        ListItem* row = nullptr;
        int listed = -1;  // where it stands in ChanCache
    };
    std::unordered_map<std::string, Known, TextHash, TextEqual> known_;
    int joinedRows_ = 0;
    std::string KeyChans;  // refused a join for want of a key
    // What the user wants to be in: what he is in, and the ticks that wait for tmrRefreshUsers.
    std::string CheckedChans;
    std::unordered_set<std::string, TextHash, TextEqual> unticked_;  // by hand, and not yet applied
    Subscriptions on_;
};

}  // namespace talvora
