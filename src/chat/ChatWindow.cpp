#include "chat/ChatWindow.h"

#include <utility>

#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::string_view ActionMark = "$ACTION ";
constexpr int LookPeriod = 500;  // milliseconds

}  // namespace

ChatWindow::ChatWindow(ChatSurroundings& around)
    : IRCWin1(around.ThePlatform, around.Reporter, around.Emotions),
      Slots(*this, around.Factories, around.Reporter, around.ThePlatform.TheLoop),
      FoldPlugins(">>"),
      around_(around),
      focusTimer_(around.ThePlatform, Ending, LookPeriod, true) {
    connectHands();
    on_ += focusTimer_.Tick.connect([this] { look(); });
    // Between two changes of the foreground a look would find nothing new.
    on_ += around.ThePlatform.Screen.ForegroundChanged.connect([this] { focusTimer_.Wake(); });
}

void ChatWindow::connectHands() {
    on_ += Text1.KeyPress.connect([this](int& key) { Text1_KeyPress(key); });
    on_ += Text1.Text.Changed.connect([this](const std::string&) { Text1_Change(); });
    on_ += Image2.Click.connect([this] { sendTyped(false); });
    on_ += Image3.Click.connect([this] { sendTyped(true); });
    on_ += Image4.Click.connect([this] { PopupMenu.raise(mnuCheck); });
    on_ += FoldPlugins.Click.connect([this] { foldPlugins(); });
    on_ += mnuHide.Click.connect([this] { putAway(); });
    mnuScripts.Caption = "Manage &scripts...";
    on_ += mnuScripts.Click.connect([this] { around_.Session.ShowScripts(); });
    on_ += mnuTimeStamp.Checked.Changed.connect([this](const bool& on) { IRCWin1.TimeStamp = on; });
    on_ += IRCWin1.ReleaseFocus.connect([this] { Text1.SetFocus(); });
}

void ChatWindow::putAway() {
    if (isOnTable()) {
        Hide();
    } else {
        Unload();
    }
}

void ChatWindow::Form_Unload() {
    Slots.Close();
}

// ---- Plug-ins

bool ChatWindow::Broadcast(std::string& line, int exclude) {
    return Slots.Broadcast(line, exclude);
}

std::string_view ChatWindow::payloadOf(std::string_view line) {
    const auto bar = line.find('|');
    if (bar == std::string_view::npos) return {};
    const std::string_view kind = line.substr(0, bar);
    return kind == "IRC" || kind == "MSG" ? line.substr(bar + 1) : std::string_view();
}

std::string ChatWindow::incomingLine(const std::string& text, const std::string& command) {
    return command.empty() ? "IRC|" + text : "IRC|$" + command + " " + text;
}

bool ChatWindow::isShown(const std::string& command) {
    return command.empty() || command == "ACTION";
}

std::string ChatWindow::withoutActionMark(const std::string& payload) {
    return payload.starts_with(ActionMark) ? payload.substr(ActionMark.size()) : payload;
}

// ---- Typing

void ChatWindow::SendText(const std::string& text, bool isAction) {
    trapped(around_.Reporter, "SendText", [&](Trap&) {
        std::string line = (isAction ? "MSG|$ACTION " : "MSG|") + text;
        if (!Broadcast(line, -1)) return;
        const std::string payload(payloadOf(line));
        if (!payload.empty()) SendData(payload);
    });
}

void ChatWindow::sendTyped(bool isAction) {
    SendText(Text1.Text, isAction);
    Text1.Text = "";
    Text1.SetFocus();
}

void ChatWindow::Text1_KeyPress(int& key) {
    trapped(around_.Reporter, "Text1_KeyPress", [&](Trap&) {
        if (key != Key::Return && key != Key::LineFeed) return;
        sendTyped(key == Key::LineFeed);
        key = 0;
    });
}

// A pasted text of several lines goes out line by line at once.
void ChatWindow::Text1_Change() {
    trapped(around_.Reporter, "Text1_Change", [&](Trap&) {
        const std::string text = Text1.Text;
        if (text.find('\r') == std::string::npos) return;
        for (const std::string& piece : Split(text, "\r")) SendText(Trim(Replace(piece, "\n", "")), false);
        Text1.Text = "";
        Text1.SetFocus();
    });
}

void ChatWindow::Emotion(const std::string& code) {
    trapped(around_.Reporter, "Emotion", [&](Trap&) {
        Text1.SetFocus();
        const std::string& text = Text1.Text;
        const std::size_t caret = std::min<std::size_t>(Text1.SelStart, text.size());
        Text1.Text = text.substr(0, caret) + code + text.substr(caret);
        Text1.SelLength = 0;
        Text1.SelStart = caret + code.size();
    });
}

void ChatWindow::ShowEcho(const std::string& text) {
    IRCWin1.AddIRCLine(text, around_.Colors.OwnForeColor, around_.Colors.OwnBackColor);
}

void ChatWindow::Image1_MouseUp(int x, int y) {
    around_.Picker.Load().Display(*this, x, y);
}

void ChatWindow::sendOn(Trap& step, const std::string& to, const std::string& data) {
    const ChatColors& colors = around_.Colors;
    const bool special = data.starts_with('$');
    if (!special || data.starts_with(ActionMark)) {
        showSaid(around_.Session.Nickname(), data, colors.OwnForeColor, colors.OwnBackColor,
                 colors.OwnForeColor, colors.OwnBackColor);
    }
    step([&] { around_.Session.SendPM(to, special ? data.substr(1) : data, special); });
}

// ---- The view

void ChatWindow::showSaid(const std::string& nick, std::string_view payload, std::uint8_t fore,
                          std::uint8_t back, std::uint8_t actionFore, std::uint8_t actionBack) {
    std::string line;
    if (payload.starts_with(ActionMark)) {
        line.append("* ").append(nick).append(" ").append(payload.substr(ActionMark.size()));
        IRCWin1.AddIRCLine(line, actionFore, actionBack);
    } else {
        line.append("<").append(nick).append("> ").append(payload);
        IRCWin1.AddIRCLine(line, fore, back);
    }
}

void ChatWindow::showNote(const std::string& text, std::uint8_t fore) {
    IRCWin1.AddIRCLine(text, fore, 2);
}

// ---- News and focus

void ChatWindow::noteNews() {
    if (HasFocus) return;
    HasNews = true;
    around_.Session.RefreshWindows();
}

void ChatWindow::tellHost(NoticeKind kind, const std::string& name, std::string text) {
    if (!mnuPopup.Checked) return;
    Notice notice;
    notice.Title = "Chat";
    notice.Text = std::move(text);
    notice.Kind = kind;
    notice.Window = name;
    notice.Value = "imgChat";
    around_.Gate.NotifyHost(notice);
}

void ChatWindow::takeForeground() {
    if (IsUnloaded()) return;  // by the host, which has just been told of the line
    Show();
    around_.ThePlatform.Screen.SetForegroundWindow(*this);
}

void ChatWindow::look() {
    HasFocus = around_.ThePlatform.Screen.ForegroundWindow() == this;
    if (HasFocus) seen();
    focusTimer_.Rest();
}

void ChatWindow::foldPlugins() {
    const bool open = PluginsAreFolded();
    PluginsWidth = open ? PluginsOpen : PluginsFolded;
    FoldPlugins.Caption = open ? ">>" : "<<";
}

// ---- Settings

void ChatWindow::loadCheck(Menu& menu, std::string_view section, const std::string& key, bool byDefault) {
    menu.Checked = around_.Settings.Get(section, key + settingsName(), byDefault ? "T" : "F") == "T";
}

void ChatWindow::keepCheck(Menu& menu, std::string_view section, std::string key) {
    on_ += menu.Click.connect([this, &menu, section, key = std::move(key)] {
        trapped(around_.Reporter, "MenuCheck_Click", [&](Trap& step) {
            menu.Checked = !menu.Checked;
            step([&] { around_.Settings.Save(section, key + settingsName(), menu.Checked ? "T" : "F"); });
        });
    });
}

}  // namespace talvora
