#pragma once
// The window of one private chat. It follows its peer's renames, quits and returns, closes with a question
// and never flashes.

#include <string>
#include <vector>

#include "chat/ChatWindow.h"
#include "chat/CommandMenu.h"

namespace talvora {

class modWinManager;

class frmPM final : public ChatWindow {
  public:
    frmPM(ChatSurroundings& around, modWinManager& manager);

    std::string UserName;   // the peer's nick in proper case
    bool UserGone = false;  // it has quit and not come back

    Menu mnuStopPM;
    Menu mnuSendFile;      // to the peer
    CommandMenu Commands;  // the scripts for the peer

    // Installs the plug-ins. By the table, once the window is its own.
    void Form_Load();
    void Start(const std::string& nick);
    // `command` is empty for plain text, else the verb of a special message.
    void PMArrived(const std::string& text, const std::string& command);
    void Rename(const std::string& newNick);
    void UserQuit();
    void UserEnter();
    // The commands that what is typed may become: "\" and a name. None once a parameter has begun.
    std::vector<std::string> CommandsLike(const std::string& typed) const;
    // Files dropped on the window, by their native paths, are offered to the peer.
    void OfferFiles(const std::vector<std::string>& paths);
    // The user has seen what was new.
    void unNotice();

    void ShowPluginLine(const std::string& text) override;
    void SendData(const std::string& data) override;

  protected:
    void seen() override { unNotice(); }
    const std::string& settingsName() const override { return UserName; }
    bool isOnTable() const override;
    void Form_QueryUnload(bool& cancel, CloseReason reason) override;

  private:
    void loadSettings();
    void DisplayIRCCommand(const std::string& data, const std::string& nick);
    void arrived(const std::string& text);
    bool offerName(const std::string& nick);
    void stop();

    modWinManager& manager_;
    bool asksToClose_ = false;
};

}  // namespace talvora
