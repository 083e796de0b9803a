#pragma once
// A main window logged on to a server that the test plays, with windows that only tell.

#include "Vocabulary.h"
#include "simulation/VirtualMachine.h"
#include "simulation/World.h"

namespace talvora::test {

// The windows that the session calls for; what they are told is kept.
struct Windows : Nobody {
    void ExecList(const std::string& list) override { told.push_back("keys " + list); }
    void Display(const std::string& text, const std::string& title, int) override {
        told.push_back(title + ": " + text);
    }
    void StartChan(const std::string& c) override { told.push_back("start " + c); }
    void RemoveChan(const std::string& c) override {
        told.push_back("remove " + c);
        if (removing) removing();
    }
    std::vector<std::string> told;
    std::function<void()> removing;
};

class ChannelPanelTest : public testing::Test, public VirtualMachine {
  protected:
    ChannelPanelTest() {
        to.Keys = windows;
        to.Notes = windows;
        to.Channels = windows;
        around.disk.put("System/perflix.lst", "");
        form.State.Start("me");
        account.gServerHost = "irc.test";
        account.gServerPort = 6667;
        account.gSysChannel = "#system";
        account.gSettingsChanged = true;
        settings.Save(Section::Settings, "ChanList", "");
        form.Form_Load();
        time.settle();
        server.says(":srv 001 me :Welcome");
        time.run(4s);
        server.heard();
    }
    void says(const std::string& line) {
        server.says(line);
        time.run(50ms);
    }
    // Each row as its name, its ticks and its icon.
    std::vector<std::string> rows() {
        std::vector<std::string> all;
        for (int i = 1; i <= list.ListItems.Count(); ++i) {
            const ListItem& row = list.ListItems(i);
            all.push_back((row.Checked() ? "+" : "-") + row.Text() + " " + std::to_string(row.SmallIcon()) +
                          " " + row.SubItems(1) + " " + row.SubItems(2));
        }
        return all;
    }

    ScriptedServer& server = network.server("irc.test", 6667);
    HostGate gate{settings};
    Account account;
    Random random;
    Windows windows;
    modNickDecode nicks{globError, around.files};
    modFriendsList friends{globError, around.files};
    Handovers to;
    Form1 form{{around.platform, globError, settings, gate, account, random, nicks, friends, to},
               network.CreateSocket({})};
    ChannelPanel& panel = form.Channels;
    ListView& list = panel.ListView2;
};

}  // namespace talvora::test
