#pragma once
// Both kinds of chat windows with their tables, on the virtual platform, with a plug-in that does what a test
// tells it.

#include "Vocabulary.h"
#include "chat/modChanWinManager.h"
#include "chat/modWinManager.h"
#include "platform/Text.h"
#include "simulation/VirtualMachine.h"
#include "simulation/World.h"

namespace talvora::test {

class WindowsTest : public testing::Test, public VirtualMachine, public ChatSession {
  protected:
    struct Probe final : ChatPlugin {
        explicit Probe(WindowsTest& of) : test(of) { ++test.living; }
        ~Probe() override { --test.living; }
        void Broadcast(std::string& line) override {
            test.heard.push_back(line);
            if (test.act) test.act(*this, line);
        }
        using ChatPlugin::DataBroadcast;
        WindowsTest& test;
    };
    using Act = std::function<void(Probe&, std::string&)>;

    WindowsTest() {
        gate.Attach(host, 1);
        surroundings.Privates = &privates;
        factories.Register("T.P", [this] { return std::make_unique<Probe>(*this); });
        around.disk.put("System/plugin.lst", "T.P T T 0 0 Probe\r\n");
        plugins.ReloadPlugins();
        around.disk.put("System/emoticons.dat", "^_^:=:{\\b face}\r\n");
        emotions.LoadEmotions();
        settings.Save(Section::ChanSettings, "TimeStamp_#Greek", "F");
        settings.Save(Section::PMSettings, "Timestamp_Anna", "F");
    }

    void SendPM(const std::string& to, const std::string& text, bool special) override {
        sent.push_back(to + (special ? " $" : " ") + text);
        if (!privates.Table().Windows().empty()) shownAtSend = shown(*privates.Table().Windows()[0]);
    }
    void SendIRC(const std::string& line) override { sent.push_back(line); }
    std::string Nickname() const override { return "Me"; }
    void RefreshWindows() override { ++refreshes; }
    void ShowScripts() override {}

    // The lines of a window's view, each behind the number of its colour.
    static Texts shown(const ChatWindow& window) {
        Texts lines;
        for (const std::string& each : Split(window.IRCWin1.Document(), "\\par\r\n")) {
            const auto colour = each.find(" \\cf");
            const auto ground = each.find(" \\highlight1 ");
            if (colour == std::string::npos || ground == std::string::npos) continue;
            lines.push_back(each.substr(colour + 4, ground - colour - 4) + " " +
                            Trim(Replace(each.substr(ground + 13), "\\cf0\\highlight0", "")));
        }
        return lines;
    }
    ChatWindow& open(bool channel) {
        channel ? channels.StartChan("#greek") : privates.StartPM("anna");
        ChatWindow& window = *at(channel);
        forget(window);
        return window;
    }
    ChatWindow* at(bool channel) {
        return channel ? static_cast<ChatWindow*>(channels.Window("#GREEK")) : privates.Window("ANNA");
    }
    void arrives(bool channel, const std::string& text, const std::string& verb = "") {
        channel ? channels.ChanDistribute("#GREEK", "anna", text, verb)
                : privates.PMDistribute("ANNA", text, verb);
    }
    void forget(ChatWindow& window) {
        window.IRCWin1.Reset();
        window.HasNews = false;
        heard.clear();
        sent.clear();
        host.take();
        around.screen.beeps = around.screen.flashes = 0;
    }
    // The user has seen the window last, or another one.
    void prepare(ChatWindow& window, bool seen) {
        around.screen.works(seen ? &window : nullptr);
        time.run(500ms);
        around.screen.works(nullptr);
        window.Hide();
        forget(window);
    }
    // What has been done to call the user; `notice` is what the host was told.
    std::string effects(const ChatWindow& window, std::string& notice) {
        const Texts notices = host.take();
        notice = notices.empty() ? "" : notices[0];
        const auto* channel = dynamic_cast<const frmChanChat*>(&window);
        std::string all = window.Visible ? "show" : "";
        if (around.screen.ForegroundWindow() == &window) all += " front";
        if (around.screen.beeps > 0) all += " beep";
        if (channel != nullptr && channel->Timer1.Enabled) all += " flash";
        if (!notices.empty()) all += " notice";
        if (window.HasNews) all += " news";
        return Trim(all);
    }
    // All windows that are there, on a table or not.
    std::vector<ChatWindow*> loaded() {
        std::vector<ChatWindow*> all;
        for (auto* window : channels.Table().AllLoaded()) all.push_back(window);
        for (auto* window : privates.Table().AllLoaded()) all.push_back(window);
        return all;
    }

    HostGate gate{settings};
    RecordingHost host;
    modEmotions emotions{around.files, globError};
    modNickDecode nicks{globError, around.files};
    PluginFactories factories;
    modPluginManager plugins{around.files, globError};
    modCommands commands{around.platform, globError, {}};
    ChatColors colours;
    SingleForm<frmEmoticons> picker{
        around.platform,
        [this] { return std::make_unique<frmEmoticons>(around.platform, globError, emotions); }};
    int living = 0;  // plug-ins
    Act act;
    Texts heard;  // by the plug-in
    Texts sent;
    Texts shownAtSend;  // in the first private window
    int refreshes = 0;
    ChatSurroundings surroundings{around.platform, globError, settings, gate,    emotions, nicks,
                                  factories,       plugins,   commands, colours, *this,    picker};
    modChanWinManager channels{surroundings};
    modWinManager privates{surroundings};
};

}  // namespace talvora::test
