#include "chat/WindowsFixture.h"

namespace talvora::test {
namespace {

TEST_F(WindowsTest, AWindowOpensWithItsNameAndTheFirstPrivateLineOpensOneWithoutABeep) {
    arrives(true, "lost");
    EXPECT_THAT(loaded(), IsEmpty());
    channels.StartChan("#greek");
    frmChanChat& greek = *channels.Window("#GREEK");
    EXPECT_THAT(shown(greek), ElementsAre("4 *** You are now talking in #Greek ***"));
    EXPECT_EQ(greek.Caption.get(), "Talking in #Greek");
    EXPECT_THAT(sent, ElementsAre("NAMES #greek"));
    greek.Unload(CloseReason::UserClosesBox);
    EXPECT_FALSE(greek.Visible || greek.IsUnloaded());
    channels.StartChan("#GREEK");
    EXPECT_TRUE(greek.Visible);
    privates.PMDistribute("anna", "one", "");
    EXPECT_EQ(around.screen.beeps, 0);
    arrives(false, "two");
    EXPECT_EQ(around.screen.beeps, 1);
    EXPECT_THAT(shown(*at(false)), ElementsAre("4 *** You are now talking in private with user Anna ***",
                                               "2 <Anna> one", "2 <Anna> two"));
    EXPECT_EQ(at(false)->Caption.get(), "Private chat with Anna");
    EXPECT_THAT(heard, ElementsAre("###|", "CON|#greek", "###|", "CON|anna", "IRC|one", "IRC|two"));
    settings.Save(Section::ChanSettings, "CreateOnPM", "?");
    channels.ChanDistribute("#\xE5\xF2", "\xDC\xED\xED\xE1", "x", "");  // Greek, with a final sigma
    privates.StartPM("\xDC\xED\xED\xE1");
    EXPECT_EQ(channels.Window("#\xC5\xD3")->ChannelName, "#\xC5\xF2");
    EXPECT_EQ(privates.Window("\xA2\xCD\xCD\xC1")->UserName, "\xA2\xED\xED\xE1");
}

TEST_F(WindowsTest, ALineIsOfferedToThePluginsAndShownAsItComesBack) {
    // What the plug-in does: "=" makes the line that, "!" says that.
    const struct {
        std::string verb, text, does, shown, sent;
    } cases[] = {{"", "hi|there", "", "2 <%> hi|there", ""},
                 {"ACTION", "waves", "", "7 * % waves", ""},
                 {"calc", "1 2", "", "", ""},
                 {"", "a", "=IRC|$ACTION b|c", "7 * % b|c", ""},
                 {"ACTION", "a", "=MSG|b", "2 <%> b", ""},
                 {"", "a", "=IRC|", "", ""},
                 {"", "a", "=", "", ""},
                 {"", "a", "=irc|b", "", ""},
                 {"", "a", "!MSG|n|b", "5 n|b\n2 <%> a", ""},
                 {"", "a", "!IRC|b", "15 <Me> b\n2 <%> a", "% b"},
                 {"calc", "a", "!IRC|$PM b", "", "% $PM b"}};
    for (const bool channel : {true, false}) {
        ChatWindow& window = open(channel);
        for (const auto& each : cases) {
            act = [&](Probe& me, std::string& line) {
                if (!line.starts_with("IRC|")) return;
                if (each.does.starts_with('!')) me.DataBroadcast(each.does.substr(1));
                if (each.does.starts_with('=')) line = each.does.substr(1);
            };
            arrives(channel, each.text, each.verb);
            const std::string offered = "IRC|" + (each.verb.empty() ? "" : "$" + each.verb + " ") + each.text;
            EXPECT_EQ(heard, channel ? Texts({"USR|anna", offered}) : Texts{offered});
            EXPECT_EQ(shown(window), Split(Replace(each.shown, "%", channel ? "anna" : "Anna"), "\n"));
            EXPECT_EQ(sent, Split(Replace(each.sent, "%", channel ? "#Greek" : "Anna"), "\n")) << offered;
            forget(window);
        }
    }
}

TEST_F(WindowsTest, WhatIsTypedIsOfferedShownAndSentInThisOrder) {
    constexpr int paste = 0;
    const struct {
        int key;
        std::string text, becomes, offered, shown, sent;
    } cases[] = {
        {13, "/hi", "", "MSG|/hi", "15 <Me> /hi", "% /hi"},
        {10, "waves", "", "MSG|$ACTION waves", "15 * Me waves", "% $ACTION waves"},
        {13, "$ACTION nods", "", "MSG|$ACTION nods", "15 * Me nods", "% $ACTION nods"},
        {13, "$VERSION", "", "MSG|$VERSION", "", "% $VERSION"},
        {13, "", "", "MSG|", "", ""},
        {13, "a", "MSG|\\b", "MSG|a", "15 <Me> \\b", "% \\b"},  // a script command of private windows
        {13, "a", "IRC|b", "MSG|a", "15 <Me> b", "% b"},
        {13, "a", "MSG|", "MSG|a", "", ""},
        {13, "a", "NO|a", "MSG|a", "", ""},
        {paste, "a\r\n\r\n b |\nc ", "", "MSG|a\nMSG|\nMSG|b |c", "15 <Me> a\n15 <Me> b |c", "% a\n% b |c"}};
    for (const bool channel : {true, false}) {
        ChatWindow& window = open(channel);
        for (const auto& each : cases) {
            act = [&](Probe&, std::string& line) { line = each.becomes.empty() ? line : each.becomes; };
            window.Text1.Text = each.text;
            int key = each.key;
            if (key != paste) window.Text1.KeyPress.raise(key);
            EXPECT_TRUE(key == 0 && window.Text1.Text.get().empty());
            const bool script = !channel && each.becomes == "MSG|\\b";
            EXPECT_EQ(heard, Split(each.offered, "\n"));
            EXPECT_EQ(shown(window), Split(script ? "" : each.shown, "\n")) << each.offered;
            EXPECT_EQ(sent, Split(script ? "" : Replace(each.sent, "%", channel ? "#Greek" : "Anna"), "\n"));
            if (!channel && !sent.empty()) {
                EXPECT_EQ(shownAtSend, shown(window));
            }
            forget(window);
        }
        window.Text1.Text = "ab";
        window.Text1.SelStart = 1;
        window.Emotion(":)");
        EXPECT_TRUE(window.Text1.Text.get() == "a:)b" && window.Text1.SelStart == 3U && sent.empty());
    }
}

// ---- News

TEST_F(WindowsTest, AChannelCallsItsUserAsItsSettingsSay) {
    const struct {
        std::string set;
        bool seen;
        std::string effects, ofAnEmptiedLine;  // on a hidden window
    } cases[] = {{"", false, "show flash notice news", "show flash news"},
                 {"Beep_T", false, "show beep flash notice news", "show beep flash news"},
                 {"Beep_T", true, "show", "show"},
                 {"Show_F Beep_T", false, "beep notice news", "beep"},
                 {"Flash_F", false, "show notice news", "show"},
                 {"NoFocus_F Show_F Flash_F", false, "show front notice news", "show front"},
                 {"NoFocus_F Popup_F", true, "show front", "show front"},
                 {"Popup_F", false, "show flash news", "show flash news"}};
    std::string name = "#A";
    std::string does;
    act = [&](Probe& me, std::string& line) {
        if (line.starts_with("IRC|") && does == "says") me.DataBroadcast("MSG|said");
        if (line.starts_with("IRC|") && !does.empty()) line = "IRC|";
    };
    for (const auto& each : cases) {
        for (const std::string& key : Split(each.set, " "))
            settings.Save(Section::ChanSettings, Left(key, key.size() - 1) + name,
                          key.substr(key.size() - 1));
        for (const auto& [what, text] : {std::pair{"", "anna: hi"}, {"says", "said"}, {"empties", ""}}) {
            does = what;
            channels.StartChan(name);
            frmChanChat& window = *channels.Window(name);
            prepare(window, each.seen);
            channels.ChanDistribute(name, "anna", "hi", "");
            std::string notice;
            EXPECT_EQ(effects(window, notice), does == "empties" ? each.ofAnEmptiedLine : each.effects)
                << each.set;
            EXPECT_EQ(window.LastText, text);
            if (!notice.empty()) {
                EXPECT_THAT(notice, HasSubstr(name + ": " + text + ", 2, " + name + ", , imgChat"));
            }
            window.Remove();
        }
        ++name[1];
    }
}

TEST_F(WindowsTest, APrivateWindowTellsOfWhatTheUserDoesNotSee) {
    const struct {
        bool popup, behind, seen;
        std::string verb, effects;
    } cases[] = {
        {true, true, false, "", "beep notice news"},       {true, true, true, "", "beep"},
        {false, true, false, "ACTION", "beep news"},       {true, true, false, "calc", "beep news"},
        {false, false, false, "", "show front beep news"}, {true, false, true, "", "show front beep"}};
    ChatWindow& window = open(false);
    for (const bool says : {false, true}) {
        for (const auto& each : cases) {
            act = [&](Probe& me, std::string& line) {
                if (!says || each.verb == "calc") return;
                me.DataBroadcast("MSG|hi");
                line = "";
            };
            window.mnuPopup.Checked = each.popup;
            window.mnuNoFocus.Checked = each.behind;
            prepare(window, each.seen);
            arrives(false, "hi", each.verb);
            std::string notice;
            EXPECT_EQ(effects(window, notice), each.effects);
            EXPECT_EQ(window.LastText, "hi");
            if (!notice.empty()) {
                EXPECT_EQ(notice, "Notice(Chat, Anna: hi, 1, Anna, , imgChat, False, False)");
            }
        }
    }
}

TEST_F(WindowsTest, NewsLastsUntilTheWindowHasBeenInFront) {
    for (const bool channel : {true, false}) {
        ChatWindow& window = open(channel);
        arrives(channel, "hi");
        time.run(2s);
        EXPECT_EQ(around.screen.flashes, channel ? 2 : 0);
        around.screen.works(&window);
        time.run(400ms);
        EXPECT_TRUE(window.HasNews);
        const int before = refreshes;
        time.run(100ms);
        EXPECT_TRUE(!window.HasNews && window.HasFocus && refreshes == before + 1);
        around.screen.works(nullptr);
        time.run(2s);
        EXPECT_EQ(around.screen.flashes, channel ? 2 : 0);
        EXPECT_FALSE(window.HasFocus);
        forget(window);
    }
}

TEST_F(WindowsTest, MenuChecksAreKeptAtEachClickAndOneIsNeverReadBack) {
    for (const bool channel : {true, false}) {
        const auto checks = [&] {
            ChatWindow& window = open(channel);
            std::vector<Menu*> all{&window.mnuNoFocus, &window.mnuPopup, &window.mnuTimeStamp};
            if (auto* chan = dynamic_cast<frmChanChat*>(&window))
                all.insert(all.end(), {&chan->mnuChkBeep, &chan->mnuChkshow, &chan->mnuChkFlash});
            return all;
        };
        const auto states = [&] {
            std::string all;
            for (const Menu* menu : checks()) all += menu->Checked ? "T" : "F";
            return all;
        };
        EXPECT_EQ(states(), channel ? "TTFFTT" : "TTF");
        for (Menu* menu : checks()) menu->Click.raise();
        EXPECT_TRUE(at(channel)->IRCWin1.TimeStamp);
        std::string kept;
        for (const char* key : {"NoFocus_", "Popup_", "TimeStamp_", "Beep_", "Show_", "Flash_"})
            kept += settings.Get(channel ? Section::ChanSettings : Section::PMSettings,
                                 key + std::string(channel ? "#Greek" : "Anna"), "");
        EXPECT_EQ(kept, channel ? "FFTTFF" : "FFT");
        at(channel)->Unload();
        EXPECT_EQ(states(), channel ? "FFTTFF" : "TFT");
    }
}

TEST_F(WindowsTest, WhatHappensToTheUsersIsTold) {
    frmChanChat& channel = dynamic_cast<frmChanChat&>(open(true));
    frmPM& peer = dynamic_cast<frmPM&>(open(false));
    channels.NamesChan("#GREEK", {"@anna", "bob"});
    // The line in the view, the channel's last text or what the private window's plug-ins are offered.
    const std::tuple<std::function<void()>, std::string, std::string> events[] = {
        {[&] { channels.JoinChan("#GREEK", "carl"); }, "4 *** User carl has joined this channel ***",
         "Join::carl"},
        {[&] { channels.PartChan("#GREEK", "bob"); }, "4 *** User bob has left this channel ***",
         "Part::bob"},
        {[&] { channels.RenameChan("carl", "dora"); }, "4 *** User carl has changed to dora ***",
         "Rename::carl -> dora"},
        {[&] { channels.QuitChan("dora"); }, "4 *** User dora has quited IRC ***", "Quit::dora"},
        {[&] { privates.EnterPM("anna"); }, "", ""},
        {[&] { privates.RenamePM("ANNA", "bob"); }, "4 *** User Anna changed to Bob ***", "CON|bob"},
        {[&] { privates.RenamePM("anna", "eve"); }, "", ""},
        {[&] { privates.QuitPM("BOB"); }, "3 *** User Bob has quit IRC!", "QIT"},
        {[&] { privates.EnterPM("bOB"); }, "4 *** User Bob has entered again IRC!", "CON|Bob"},
        {[&] { privates.EnterPM("bob"); }, "", ""}};
    std::string users;
    for (const auto& [happens, line, mark] : events) {
        const bool ofChannel = mark.find("::") != std::string::npos;
        ChatWindow& window = ofChannel ? static_cast<ChatWindow&>(channel) : peer;
        forget(window);
        const int before = refreshes;
        happens();
        users += std::to_string(channel.UserList1.ListView1.ListItems.Count());
        EXPECT_EQ(shown(window), Split(line, "\n"));
        EXPECT_EQ(ofChannel ? Texts{channel.LastText} : heard, Split(mark, "\n"));
        EXPECT_EQ(around.screen.beeps, mark == "CON|bob" ? 1 : 0);
        EXPECT_TRUE(window.HasNews == !line.empty() && (line.empty() || refreshes > before)) << line;
        EXPECT_EQ(peer.UserGone, mark == "QIT");
    }
    EXPECT_EQ(users, "3221111111");
    EXPECT_EQ(peer.Caption.get(), "Private chat with Bob");
    channel.UserList1.MouseUp.raise("anna", 2, 0, 0, 0);
    for (Menu* menu : {&channel.mnuInfo, &channel.mnuPM, &channel.mnuPart}) menu->Click.raise();
    EXPECT_THAT(sent, ElementsAre("WHOIS anna", "PART #Greek"));
    EXPECT_TRUE(at(true) == nullptr && at(false) != nullptr);
}

}  // namespace
}  // namespace talvora::test
