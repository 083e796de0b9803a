// Conversations between whole clients in one process: what one user does is seen in the other's windows.

#include <algorithm>

#include "Vocabulary.h"
#include "common/HostMessageNumbers.h"
#include "simulation/Relay.h"

namespace talvora::test {
namespace {

using namespace std::string_literals;
using testing::Each;
using testing::EndsWith;
using testing::StartsWith;

// Each row as its key, its text and what stands in its column.
std::vector<std::string> rows(const ListView& list) {
    std::vector<std::string> all;
    for (int i = 1; i <= list.ListItems.Count(); ++i) {
        const ListItem& row = list.ListItems(i);
        const std::string& column = row.SubItems(1);
        all.push_back((row.Key().empty() ? "" : row.Key() + ": ") + row.Text() +
                      (column.empty() ? "" : " | " + column));
    }
    return all;
}

// The text of a window up to its last word.
std::string shownIn(const ChatWindow* window) {
    const std::string text = window == nullptr ? "no window" : window->IRCWin1.RichTextBox1.Text();
    return text.substr(0, text.find_last_not_of(" \r\n") + 1);
}

frmPM* privately(Client& client, const std::string& nick) {
    return client.component->Chats().Privates.Window(nick);
}

class ConversationTest : public testing::Test {
  protected:
    Client& enter(const std::string& nick) {
        Client& client = world.client(nick);
        client.around.settings.SaveSetting("Talvora", "Settings", "ChanList", "");
        relay.serve(client);
        client.host.send(HostMsg::Start);
        world.time.run(5s);
        return client;
    }
    void passes(std::chrono::microseconds time = 100ms) { world.time.run(time); }
    void types(ChatWindow* window, const std::string& text, int key = Key::Return) {
        ASSERT_NE(window, nullptr);
        window->Text1.Text = text;
        window->Text1.userPresses(key);
        passes();
    }
    // By a double click in the list of channels.
    frmChanChat* opens(Client& client, const std::string& channel) {
        client.server.says(":srv 322 me " + channel + " 1 :Talk");
        client.server.says(":srv 323 me :End");
        passes();
        ListView& list = client.window().Channels.ListView2;
        list.userSelects(list.ListItems(list.ListItems.Count()));
        list.DblClick.raise();
        passes();
        return client.component->Chats().Channels.Window(channel);
    }

    Relay relay;  // goes behind the world, whose clients say QUIT at their end
    World world;
    Client& maria = enter("Maria");
    Client& nikos = enter("Nikos");
    const ListView& windows = maria.window().Windows->ListView1;
    int& beeps = maria.around.screen.beeps;
};

TEST_F(ConversationTest, OnAChannelEachSeesTheOtherComeSpeakAndChangeHisState) {
    frmChanChat* at = opens(maria, "#greek");
    EXPECT_THAT(rows(at->UserList1.ListView1), ElementsAre("Maria: Maria (Online)"));
    EXPECT_TRUE(maria.window().Channels.ListView2.ListItems(1).Checked());
    EXPECT_EQ(at->Caption.get(), "Channel - #Greek");
    frmChanChat* his = opens(nikos, "#greek");
    EXPECT_THAT(rows(his->UserList1.ListView1),
                ElementsAre("Maria: Maria (Online)", "Nikos: Nikos (Online)"));
    EXPECT_EQ(rows(at->UserList1.ListView1), rows(his->UserList1.ListView1));
    EXPECT_THAT(rows(windows), ElementsAre("Channel - #Greek: Channel - #Greek | Join::Nikos"));
    types(his, "good morning");
    types(his, "waves", Key::LineFeed);
    EXPECT_THAT(shownIn(at), AllOf(HasSubstr("*** User Nikos has joined this channel ***"),
                                   HasSubstr("<Nikos> good morning"), HasSubstr("* Nikos waves")));
    EXPECT_THAT(shownIn(his), AllOf(HasSubstr("<Nikos> good morning"), HasSubstr("* Nikos waves")));
    EXPECT_THAT(rows(windows), ElementsAre(EndsWith("| Nikos: $ACTION waves")));
    EXPECT_EQ(windows.ListItems(1).SmallIcon(), WindowPicture::ChannelNews);
    nikos.window().Presence.popStat(1).Click.raise();
    passes();
    EXPECT_EQ(rows(at->UserList1.ListView1).back(), "NIKOS[DND]: Nikos (Do not disturb)");
    EXPECT_EQ(rows(maria.window().UserList1.ListView1).back(), "NIKOS[DND]: Nikos (Do not disturb)");
    EXPECT_THAT(rows(windows), ElementsAre(EndsWith("| Rename::Nikos -> Nikos[DND]")));
    maria.around.screen.works(at);
    passes(600ms);
    EXPECT_EQ(windows.ListItems(1).SmallIcon(), WindowPicture::Channel) << "she has looked";
    nikos.window().IRCServ1.SendIRC("PART #greek");
    passes();
    EXPECT_THAT(rows(at->UserList1.ListView1), ElementsAre("Maria: Maria (Online)"));
    EXPECT_EQ(nikos.component->Chats().Channels.Window("#greek"), nullptr);
}

TEST_F(ConversationTest, APrivateTalkFollowsItsPeerThroughStatesQuitsAndReturns) {
    nikos.component->Chats().Privates.StartPM("maria");
    frmPM* his = privately(nikos, "Maria");
    types(his, "psst");
    frmPM* at = privately(maria, "Nikos");
    EXPECT_THAT(shownIn(at), HasSubstr("<Nikos> psst"));
    EXPECT_EQ(beeps, 0) << "a window that opens is enough";
    types(his, "are you there?");
    EXPECT_EQ(beeps, 1);
    EXPECT_THAT(rows(windows), ElementsAre("Chat - Nikos: Chat - Nikos | are you there?"));
    EXPECT_EQ(windows.ListItems(1).SmallIcon(), WindowPicture::PrivateNews);

    maria.around.screen.works(at);
    passes(600ms);
    nikos.window().Presence.popStat(1).Click.raise();
    passes();
    EXPECT_EQ(at->UserName, "Nikos[dnd]");
    EXPECT_THAT(rows(windows), ElementsAre(testing::StartsWith("Chat - Nikos[dnd]: Chat - Nikos[dnd]")))
        << "also while she looks at it";
    maria.around.screen.works(nullptr);
    passes(600ms);
    types(at, "yes");
    EXPECT_THAT(shownIn(at), EndsWith("* Nikos[dnd] is busy and doesn't want to be disturbed"));
    EXPECT_THAT(shownIn(his), Not(HasSubstr("yes")));
    nikos.window().Presence.popOnline.Click.raise();
    passes();
    EXPECT_THAT(shownIn(at), EndsWith("*** User Nikos[dnd] changed to Nikos ***"));

    nikos.host.send(HostMsg::Terminate);
    passes();
    EXPECT_THAT(shownIn(at), EndsWith("*** User Nikos has quit IRC!"));
    EXPECT_EQ(at->Caption.get(), "Chat - Disconnected");
    nikos.host.send(HostMsg::Start);
    passes(5s);
    EXPECT_THAT(shownIn(at), EndsWith("*** User Nikos has entered again IRC!"));
    EXPECT_EQ(at->Caption.get(), "Chat - Nikos");
    types(at, "welcome back");
    EXPECT_THAT(shownIn(privately(nikos, "Maria")), HasSubstr("<Maria> welcome back"));
}

// ---- Strangers

TEST(Strangers, CannotMakeTheUserSayASecondLine) {
    for (const char* command : {"PING", "VERSION", "TIME", "FINGER", "WIP", "_verb", "ACTION"}) {
        World world;
        Client& maria = world.loggedIn("Maria");
        maria.around.questions.answerFaults(Answer::Abort);  // the second line is one of the server's to her
        for (const std::string& bad :
             {"\r\nQUIT :x"s, "\nQUIT"s, "\rQUIT :x"s, "a\0QUIT\0"s, "\1\r\n\1QUIT"s}) {
            maria.server.sends(":a\0b!u@h PRIVMSG Maria :\1"s + command + " " + bad + "\1\r\n");
            world.time.run(50ms);
        }
        const std::vector<std::string> heard = maria.server.heard();
        EXPECT_THAT(heard,
                    Each(testing::AnyOf(StartsWith("NOTICE ab :\1"), StartsWith("PRIVMSG OrreryServ :"))));
        EXPECT_THAT(heard, Each(Not(HasSubstr("\0"s)))) << command;
        EXPECT_EQ(heard.size(), *command == '_' || *command == 'A' ? 0U : 5U) << command;
    }
}

TEST(Strangers, APlugInMayEndAndStartTheClientWhileItHearsOfALine) {
    World world;
    Client& maria = world.loggedIn("Maria");
    auto restart = maria.host.MessageBroadcasted.connect([&](const HostMessage& message) {
        if (message.MsgID != HostMsg::PrivateText) return;
        maria.host.send(HostMsg::Terminate);
        maria.host.send(HostMsg::Start);
    });
    maria.server.says(":a!u@h PRIVMSG Maria :restart");
    world.time.run(2s);
    restart.disconnect();
    EXPECT_EQ(maria.server.connections, 2);
    EXPECT_EQ(privately(maria, "A"), nullptr);
    EXPECT_THAT(maria.server.heard(), Contains("NICK Maria"));
    maria.server.says(":srv 001 Maria :Welcome");
    maria.server.says(":a!u@h PRIVMSG Maria :back?");
    world.time.run(100ms);
    EXPECT_THAT(shownIn(privately(maria, "A")), HasSubstr("<A> back?"));
    // The end waits for the server meanwhile, and is not to be ended and started under its own feet.
    world.time.Defer([&] {
        for (const int message : {8, 1}) maria.host.send(message);
        maria.host.send(HostMsg::ShowWindow, 1);
    });
    maria.host.send(HostMsg::Terminate);
    maria.host.send(HostMsg::ShowWindow, 1);
    EXPECT_EQ(maria.component->MainWindow(), nullptr);
    EXPECT_FALSE(maria.component->Started());
}

}  // namespace
}  // namespace talvora::test
