#pragma once
// The list of users in a chat window and in the main window: a row a user, keyed by the nick with its state,
// showing the bare nick and the state in words, and standing for all channels in which the user is met. A row
// keeps the description that it was given.
//
// All look-ups are without regard to case, and of rows of the same name the first one counts. They cost the
// same however long the list is.
//
// Very many names that come at once are worked off over several turns of the loop; what happens meanwhile
// waits behind them, so that the list is in the end what it would be. The lists of a component are bounded
// together (UserMemory): whom there is no room for is left out.

#include <bitset>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "chat/RowIndex.h"
#include "chat/modNickDecode.h"
#include "platform/ListView.h"
#include "platform/Timer.h"

namespace talvora {

class UserList {
  public:
    using Text = const std::string&;

    // The images of the states that come with the control, counted from 1.
    static constexpr int StateImages = 8;

    // So many names are entered at once, and so many a turn from then on. Several lists enter the same names
    // in one turn, and views follow; the windows stay usable meanwhile.
    std::size_t AtOnce = 1'000;
    std::size_t ATurn = 1'000;

    UserList(Platform& platform, GlobError& globError, modNickDecode& nickDecode);
    UserList(const UserList&) = delete;
    UserList& operator=(const UserList&) = delete;
    ~UserList();

    // Its rows are changed by the operations below alone. `Tag` holds the row's channels, each followed by
    // "|".
    ListView ListView1;
    std::string SelectedNick;  // the key of the row last clicked

    // Each with the row's key; the position is the list's with one pixel added.
    Event<Text> Click;
    Event<Text> DblClick;
    Event<Text, int, int, int, int> MouseUp;  // Nickname, Button, Shift, X, Y

    // One status mark in front of the nick is taken off.
    void Add(Text Nick, Text Channel);
    // Whatever channels the row stands for.
    void Remove(Text Nick);
    // Takes the channel out of the row, as plain text: that of "#a" cuts the end of "##a" too. A row without
    // a channel goes.
    void Part(Text Nick, Text Channel);
    // The same with the channel as the row spells it: servers do not always spell it in one way.
    void Leave(Text Nick, Text Channel);
    void Rename(Text OldNick, Text NewNick);
    // The same for a user whose state may have changed meanwhile. True if a row was changed.
    bool MatchRename(Text OldNick, Text NewNick);
    void ListNames(const std::vector<std::string>& Names, Text Channel);
    void MergeNames(const std::vector<std::string>& Names, Text Channel);
    void Clear();
    // Ends as Clear and an Add of each name would, but touches only the rows that differ.
    void Refresh(const std::vector<std::string>& Names, Text Channel);
    // The number of the row, counted from 1, or 0. A row beyond what 16 bits count is an overflow here and
    // for nobody else.
    std::int16_t GetUser(Text Nick);

  private:
    // Names one behind the other in one text: a hundred thousand are put aside within a turn.
    struct WaitingNames {
        std::string text;
        std::vector<std::size_t> ends;
        std::size_t taken = 0;

        void add(Text name) { ends.push_back(text.append(name).size()); }
        bool left() const { return taken < ends.size(); }
        std::string next();
    };
    // What waits for its turn.
    struct Waiting {
        void (UserList::*act)(Text, Text) = nullptr;  // or names to enter
        std::string first;
        std::string second;
        WaitingNames names;
        std::size_t cost = 0;
    };
    struct Shown {
        std::string text;
        int icon;
    };
    // Whether the act was put behind what waits.
    bool waits(void (UserList::*act)(Text, Text), Text first, Text second);
    // False if there is no room for it to wait.
    bool wait(Waiting entry);
    void workOff(std::size_t count);
    void workOffOne();
    void finish() { workOff(static_cast<std::size_t>(-1)); }

    void addNow(Text nick, Text channel);
    void removeNow(Text nick, Text);
    void partNow(Text nick, Text channel);
    void leaveNow(Text nick, Text channel);
    void renameNow(Text oldNick, Text newNick);
    void addAll(const std::vector<std::string>& names, Text channel);
    std::string spelledIn(Text nick, Text channel) const;
    void cut(ListItem& row, Text channel);

    // Of the memory that all lists share.
    bool take(std::size_t bytes);
    void give(std::size_t bytes);

    Shown shownFor(Text nick);
    void enter(ListItem& row);
    void leave(const ListItem& row);
    void remove(const ListItem& row);
    void clear();
    std::vector<ListRow> rowsFor(const std::vector<std::string>& names, Text channel);
    void leaveOutWithoutRoom(std::vector<ListRow>& rows);
    bool appended(Text nick, Text entry);
    void setIcon(Trap& step, Text key, ListItem& row, int icon);
    void rename(Trap& step, const RowIndex& index, Text oldName, Text newNick, bool& changed);
    void ListView1_ItemClick(const ListItem& row);
    void ListView1_MouseUp(int button, int shift, int x, int y);

    GlobError& globError_;
    modNickDecode& nickDecode_;
    RowIndex byKey_{[](std::string_view key) { return key; }};
    RowIndex byBareNick_{bareNickOf};
    std::deque<Waiting> waiting_;
    std::size_t used_ = 0;           // of the shared memory
    Timer tmrNames_;                 // the next turn of what waits
    std::bitset<256> withoutImage_;  // icons that the image list lacks
    Subscriptions on_;
};

}  // namespace talvora
