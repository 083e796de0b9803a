#pragma once
// A whole client that is logged on and has a window open for #talk; lines are given to its engine below the
// socket.

#include <chrono>
#include <string>
#include <vector>

#include "EngineAccess.h"
#include "common/HostMessageNumbers.h"
#include "host/Connect.h"
#include "profile/NetworkProfile.h"
#include "simulation/VirtualPlatform.h"

namespace talvora {

class Listeners final : public MessageDatabase {
  public:
    Listeners() {
        hearing_ = MessageBroadcasted.connect([this](const HostMessage&) { ++heard_; });
    }
    void Broadcast(const HostMessage& message) override { MessageBroadcasted.raise(message); }

  private:
    long heard_ = 0;
    Subscription hearing_;
};

class BenchSession {
    static std::string friends() {
        std::string lines;
        for (int n = 0; n < 200; ++n) lines += "Nikos" + std::to_string(n * 50) + "\r\n";
        return lines;
    }

  public:
    BenchSession() {
        around_.disk.put("System/perflix.lst", "DND|Do not disturb|5\r\nAWAY|Away|4\r\nBRB|Be right back|4");
        around_.disk.put("System/emoticons.dat", "(sun):=:{\\i sun}\r\n");
        around_.disk.put("System/plugin.lst", "\r\n");
        around_.disk.put("System/Friends.lst", friends());
        around_.settings.SaveSetting("Talvora", "Settings", "Nickname", "me");
        network_.server("127.0.0.1", 6667).deaf = true;
        component_.Init(host_, 1);
        HostMessage start;
        start.MsgID = HostMsg::Start;
        start.ToID = 1;
        host_.Broadcast(start);
        time_.run(std::chrono::seconds(3));
        handle(":srv 001 me :Welcome");
        handle(":me!u@h JOIN :#talk");
        component_.Chats().Channels.StartChan("#talk");
        time_.settle();
    }

    Form1& window() { return *component_.MainWindow(); }
    void handle(const std::string& line) { IRCServBench::handle(component_.MainWindow()->IRCServ1, line); }
    // The list of windows is redrawn some time after it was asked for.
    void passTime() { time_.run(std::chrono::milliseconds(50)); }

    void passTurn() { time_.run(std::chrono::milliseconds(1)); }
    void open(const std::string& channel) { component_.Chats().Channels.StartChan(channel); }

    void names(const std::vector<std::string>& lines) {
        for (const std::string& line : lines) handle(line);
        handle(":srv 366 me #talk :End of /NAMES list.");
    }
    // Lists beyond what a client keeps.
    void roomForAll() { component_.Chats().Nicks.ListMemory.Most = std::size_t{1} << 30; }
    void forgetUsers() { component_.MainWindow()->UserList1.Clear(); }
    // Whether both lists hold so many users.
    bool holds(int count) {
        const frmChanChat* window = component_.Chats().Channels.Window("#talk");
        return window != nullptr && window->UserList1.ListView1.ListItems.Count() == count &&
               component_.MainWindow()->UserList1.ListView1.ListItems.Count() == count;
    }

  private:
    test::VirtualTime time_;
    test::VirtualNetwork network_{time_};
    test::VirtualPlatform around_{time_, network_};
    NetworkProfile profile_;
    Listeners host_;
    Connect component_{HostServices{around_.platform, profile_}};
};

}  // namespace talvora
