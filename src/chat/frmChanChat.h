#pragma once
// The window of one channel: the talk, its users, and what the user may do with them.

#include <string>
#include <string_view>

#include "chat/ChatWindow.h"
#include "chat/CommandMenu.h"
#include "chat/UserList.h"

namespace talvora {

class modChanWinManager;

class frmChanChat final : public ChatWindow {
  public:
    frmChanChat(ChatSurroundings& around, modChanWinManager& manager);

    std::string ChannelName;   // in proper case
    std::string SelectedNick;  // the row on which the last mouse-up in UserList1 fell
    CommandMenu Commands;      // the scripts for that user and this channel
    UserList UserList1;

    Menu mnuChkshow;   // the window shows on incoming messages
    Menu mnuChkBeep;   // it beeps while it isn't in the foreground
    Menu mnuChkFlash;  // its entry in the task bar flashes
    Menu pop;          // the menu of a user, of these:
    Menu mnuPM;
    Menu mnuSendFile;  // to that user
    Menu mnuInfo;
    Menu mnuSendFileUser;  // of the window: to whoever the user will name
    Menu mnuPart;
    Menu mnuClose;

    Timer Timer1;  // the flashing

    // Installs the plug-ins. By the table, once the window is its own.
    void Form_Load();
    void Start(const std::string& channel, bool byPM);
    // `command` is empty for plain text, else the verb of a special message.
    void PMArrived(const std::string& nick, const std::string& text, const std::string& command);
    void UserJoin(const std::string& nick);
    void UserLeft(const std::string& nick);
    void UserQuit(const std::string& nick);
    void UserRename(const std::string& oldNick, const std::string& newNick);
    void NamesRespond(const NameList& names);
    // Unregisters and unloads.
    void Remove();
    void Flash();
    // Files dropped on a user of the list, or with an empty nick on the window, by their native paths.
    void OfferFiles(const std::string& nick, const std::vector<std::string>& paths);
    void StopFlash();

    void ShowPluginLine(const std::string& text) override;
    void SendData(const std::string& data) override;

  protected:
    void seen() override;
    const std::string& settingsName() const override { return ChannelName; }
    // The close box only hides the window.
    bool isOnTable() const override;
    void Form_QueryUnload(bool& cancel, CloseReason reason) override;

  private:
    void connectMenus();
    void connectUsers();
    void loadSettings();
    void DisplayIRCCommand(const std::string& data, const std::string& nick);
    void showSpeech(std::string_view payload, const std::string& nick);
    void callAttention();
    std::string setting(const char* key, const char* byDefault) const;
    void happened(const std::string& nick, const std::string& what, const std::string& lastText);
    void leave(bool part);

    modChanWinManager& manager_;
};

}  // namespace talvora
