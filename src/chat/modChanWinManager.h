#pragma once
// The table of channel windows. Events of the network find their window by the channel's name.

#include <memory>
#include <string>

#include "chat/ChatSurroundings.h"
#include "chat/WindowTable.h"
#include "chat/frmChanChat.h"
#include "common/SingleBox.h"

namespace talvora {

class modChanWinManager final : public ChannelWindows {
  public:
    explicit modChanWinManager(ChatSurroundings& around);
    ~modChanWinManager() override;

    // The window's slot, or -1 if the table is full: the user is told so.
    std::int16_t RegisterChan(frmChanChat& window);
    // Takes whatever stands at `index` off the table; see WindowTable.
    void UnregisterChan(int index);

    // A line for a channel without a window opens one only if the user wants it.
    void ChanDistribute(const std::string& channel, const std::string& nick, const std::string& text,
                        const std::string& command) override;
    void StartChan(const std::string& channel) override;
    void RemoveChan(const std::string& channel) override;
    void ForgetUsers() override;
    void NamesChan(const std::string& channel, const NameList& names) override;
    void JoinChan(const std::string& channel, const std::string& nick) override;
    void PartChan(const std::string& channel, const std::string& nick) override;
    void QuitChan(const std::string& nick) override;
    void RenameChan(const std::string& oldNick, const std::string& newNick) override;

    // The window of a channel, if it is on the table.
    frmChanChat* Window(const std::string& channel) const;
    const WindowTable<frmChanChat>& Table() const { return table_; }

    // A new window is there, and its view may be made.
    Event<frmChanChat&>& Loaded = table_.Loaded;

  private:
    frmChanChat& load();
    void refuse();
    // While the user is told that there are too many windows, one more is counted and not even made.
    bool isRefusing() const { return table_.IsFull() && refusal_.Stands(); }

    ChatSurroundings& around_;
    WindowTable<frmChanChat> table_;
    SingleBox refusal_;
};

}  // namespace talvora
