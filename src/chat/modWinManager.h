#pragma once
// The table of private windows. A line finds its window by the peer's nick, and opens one if there is none.

#include <memory>
#include <string>

#include "chat/ChatSurroundings.h"
#include "chat/WindowTable.h"
#include "chat/frmPM.h"
#include "common/SingleBox.h"

namespace talvora {

class modWinManager final : public PrivateWindows {
  public:
    explicit modWinManager(ChatSurroundings& around);
    ~modWinManager() override;

    // The window's slot, or -1 if the table is full: the user is told so.
    std::int16_t RegisterPM(frmPM& window);
    // Takes whatever stands at `index` off the table; see WindowTable.
    void UnregisterPM(int index);

    void PMDistribute(const std::string& nick, const std::string& text, const std::string& command) override;
    void StartPM(const std::string& nick) override;
    void RenamePM(const std::string& oldNick, const std::string& newNick) override;
    void QuitPM(const std::string& nick) override;
    void EnterPM(const std::string& nick) override;

    // The window of a peer, if it is on the table.
    frmPM* Window(const std::string& nick) const;
    const WindowTable<frmPM>& Table() const { return table_; }

    // A new window is there, and its view may be made.
    Event<frmPM&>& Loaded = table_.Loaded;

  private:
    frmPM& load();
    void refuse();
    // While the user is told that there are too many windows, one more is counted and not even made.
    bool isRefusing() const { return table_.IsFull() && refusal_.Stands(); }

    ChatSurroundings& around_;
    WindowTable<frmPM> table_;
    SingleBox refusal_;
};

}  // namespace talvora
