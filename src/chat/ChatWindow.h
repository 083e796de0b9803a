#pragma once
// What channel and private windows have in common: the view, the input box, the plug-ins in the text path,
// news and focus.
//
// A window never shows or sends a line directly. It first offers the line, as text with a prefix, to all its
// plug-ins, which may rewrite or empty it; only what comes back is shown or sent. In such a text a "$" in
// front stands for a special message.

#include <string>
#include <string_view>

#include "chat/ChatSurroundings.h"
#include "chat/IRCWin.h"
#include "common/Trap.h"
#include "extensions/PluginSlots.h"
#include "extensions/modCommands.h"
#include "platform/Controls.h"
#include "platform/Form.h"
#include "platform/Timer.h"

namespace talvora {

class ChatWindow : public Form, public EmotionTarget, public PluginWindow, public ScriptWindow {
  public:
    explicit ChatWindow(ChatSurroundings& around);

    IRCWin IRCWin1;
    TextBox Text1;  // what is typed
    PluginSlots Slots;
    Image Image1;       // opens the emoticons
    Image Image2;       // "Send Text (Enter)"
    Image Image3;       // "Send Action Text (Ctrl+Enter)"
    Image Image4;       // opens mnuCheck
    Label FoldPlugins;  // folds the panel of the plug-ins: ">>" while it is open
    Property<int> PluginsWidth{PluginsOpen};
    bool PluginsAreFolded() const { return PluginsWidth < PluginsNarrow; }
    Menu mnuCheck;    // the menu of the window's own settings
    Menu mnuPopup;    // checked: tell the host of what the user doesn't see
    Menu mnuNoFocus;  // checked: stay behind
    Menu mnuTimeStamp;
    Menu mnuHide;
    Menu mnuScripts;  // opens the window of the scripts

    bool HasNews = false;  // there is something unseen
    std::string LastText;  // for the list of windows
    // Whether this was the foreground window at the last look.
    bool HasFocus = false;
    std::int16_t WinIndex = -1;

    // Types an emoticon's code at the caret.
    void Emotion(const std::string& code) override;
    // A line that a script shows to the user alone.
    void ShowEcho(const std::string& text) override;
    // The popup of the emoticons beside Image1, in twips on the screen.
    void Image1_MouseUp(int x, int y);

    static constexpr int PluginsOpen = 2355;  // widths in twips
    static constexpr int PluginsFolded = 1;
    static constexpr int PluginsNarrow = 120;  // what is narrower counts as folded

  protected:
    // Offers a line to all plug-ins but the one at `exclude`; -1 excludes none. False if the window has been
    // unloaded, perhaps meanwhile: it then does nothing more.
    bool Broadcast(std::string& line, int exclude);
    void SendText(const std::string& text, bool isAction);
    // The text behind the first "|", within the line, if the kind in front of it is "IRC" or "MSG".
    static std::string_view payloadOf(std::string_view line);
    // The line of an incoming text; a verb other than ACTION is for plug-ins only.
    static std::string incomingLine(const std::string& text, const std::string& command);
    static bool isShown(const std::string& command);
    static std::string withoutActionMark(const std::string& payload);

    // "<nick> text" or "* nick text".
    void showSaid(const std::string& nick, std::string_view payload, std::uint8_t fore, std::uint8_t back,
                  std::uint8_t actionFore, std::uint8_t actionBack);
    // A line of the window itself.
    void showNote(const std::string& text, std::uint8_t fore = 5);
    // There is something new; unless the user is looking, it counts as news.
    void noteNews();
    void tellHost(NoticeKind kind, const std::string& name, std::string text);
    // A hidden window shows itself, too.
    void takeForeground();
    // Sends to the channel or the peer; the part of SendData that both kinds of window share.
    void sendOn(Trap& step, const std::string& to, const std::string& data);

    // A check of the window's menu, kept in the settings under `key` and the window's name.
    void loadCheck(Menu& menu, std::string_view section, const std::string& key, bool byDefault);
    void keepCheck(Menu& menu, std::string_view section, std::string key);

    // The look at the foreground found this window there.
    virtual void seen() = 0;
    // What the window's settings are kept under.
    virtual const std::string& settingsName() const = 0;

    // Whether the window can be found again.
    virtual bool isOnTable() const = 0;
    // Hides the window; one that a stale index has taken off the table ends, since nobody would find it.
    void putAway();

    void Form_Unload() override;

    ChatSurroundings& around_;
    Timer focusTimer_;
    Subscriptions on_;

  private:
    void connectHands();
    void Text1_KeyPress(int& key);
    void Text1_Change();
    void sendTyped(bool isAction);
    void foldPlugins();
    void look();
};

}  // namespace talvora
