#pragma once
// The table of channel windows. Events of the network find their window by the channel's name.

#include <string>

#include "chat/WindowManager.h"
#include "chat/frmChanChat.h"

namespace talvora {

class modChanWinManager final : public ChannelWindows, public WindowManager<frmChanChat> {
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

  private:
    frmChanChat& load();
};

}  // namespace talvora
