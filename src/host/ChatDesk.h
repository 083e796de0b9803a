#pragma once
// The chat windows and small windows, with the tables that they live on, put together. The main window comes
// and goes; this stays for the component's life.

#include "chat/ChatSurroundings.h"
#include "chat/modChanWinManager.h"
#include "chat/modFriendsList.h"
#include "chat/modWinManager.h"
#include "extensions/frmScripts.h"
#include "extensions/modCommands.h"
#include "extensions/modEncryption.h"
#include "extensions/plg_Encrypt.h"
#include "notify/frmChanKey.h"
#include "notify/frmMOTD.h"
#include "notify/frmMsgBox.h"
#include "platform/SingleForm.h"
#include "session/Form1.h"

namespace talvora {

class ChatDesk final : private ChatSession, private KeyPrompt, private MessageOfTheDay {
  public:
    ChatDesk(Platform& platform, GlobError& globError, ComponentSettings& settings, HostGate& gate,
             Random& random);

    // The tables of states, emoticons and plug-ins, and the user's libraries; once, at the start.
    void LoadTables();
    // The main window that the windows speak through; null while there is none.
    void Attach(Form1* window);
    void JoinTo(Handovers& to);
    // Closes all windows, whatever they say.
    void UnloadAll(Trap& step);

    ChatColors Colors;
    modNickDecode Nicks;
    modFriendsList Friends;
    modEmotions Emotions;
    PluginFactories Factories;
    modPluginManager Plugins;
    modEncryption Cipher;
    EncryptionSite Encryption;
    modCommands Commands;
    SingleForm<frmScripts> Scripts;
    SingleForm<frmEmoticons> Picker;
    ChatSurroundings Around;
    modChanWinManager Channels;
    modWinManager Privates;
    ChatWindowTables Tables{Around, Channels, Privates};
    SingleForm<frmChanKey> ChanKey;
    SingleForm<frmMsgBox> MsgBox;
    SingleForm<frmMOTD> MOTD;

  private:
    // Notes and the message of the day have a Display each.
    struct Notes final : NoteBox {
        explicit Notes(SingleForm<frmMsgBox>& box) : form(box) {}
        void Display(const std::string& text, const std::string& title, int icon) override {
            form.Load().Display(text, title, icon);
        }
        SingleForm<frmMsgBox>& form;
    };

    void loadEmotions();
    void SendPM(const std::string& to, const std::string& text, bool special) override;
    void SendIRC(const std::string& line) override;
    std::string Nickname() const override;
    void RefreshWindows() override;
    void ShowScripts() override;
    void ExecList(const std::string& list) override { ChanKey.Load().ExecList(list); }
    void JoinNew() override { ChanKey.Load().JoinNew(); }
    void Display(const std::string& text) override { MOTD.Load().Display(text); }

    Platform& platform_;
    GlobError& globError_;
    Notes notes_{MsgBox};
    Form1* form1_ = nullptr;
    Subscription scriptsMenu_;  // of that window
    bool librariesLoaded_ = false;
};

}  // namespace talvora
