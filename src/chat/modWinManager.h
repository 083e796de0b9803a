#pragma once
// The table of private windows. A line finds its window by the peer's nick, and opens one if there is none.

#include <string>

#include "chat/WindowManager.h"
#include "chat/frmPM.h"

namespace talvora {

class modWinManager final : public PrivateWindows, public WindowManager<frmPM> {
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

  private:
    frmPM& load();
};

}  // namespace talvora
