#include "Vocabulary.h"
#include "simulation/World.h"

namespace talvora::test {
namespace {

constexpr const char* ListFile = "System/Friends.lst";

class PeopleTest : public testing::Test {
  protected:
    void start(const std::string& friends) {
        maria.around.disk.put("System/perflix.lst",
                              "DND|Do not disturb|5\r\nOFFLINE|Off line|1\r\nquiet||4\r\n");
        maria.around.disk.put(ListFile, friends);
        logOn();
    }
    void logOn() {
        maria.host.send(HostMsg::Start);
        world.time.settle();
        maria.server.says(":srv 001 Maria :Welcome");
        world.time.run(4s);
        maria.host.take();
    }
    // Users as "nick", or "nick real name", or "nick real name/host".
    void line(const std::string& user) {
        const std::size_t blank = user.find(' ');
        const std::string real = blank == std::string::npos ? "nobody" : user.substr(blank + 1);
        const std::size_t slash = real.find('/');
        const std::string host = slash == std::string::npos ? "h" : real.substr(slash + 1);
        maria.server.says(":srv 352 Maria * u " + host + " srv " + user.substr(0, blank) + " H :0 " +
                          real.substr(0, slash));
    }
    Texts who(const Texts& users) {
        for (const std::string& user : users) line(user);
        maria.server.says(":srv 315 Maria * :End");
        world.time.run(1s);
        return maria.host.take();
    }
    Texts friends() {
        Texts all;
        for (int i = 1; i <= window().UserList2.ListView1.ListItems.Count(); ++i)
            all.push_back(window().UserList2.ListView1.ListItems(i).Text());
        return all;
    }
    static void write(const Node& node, const std::string& indent, Texts& to) {
        to.push_back(indent + node.Text());
        for (int i = 1; i <= node.Children(); ++i) write(node.Child(i), indent + "-", to);
    }
    Texts tree() {
        Texts all;
        for (int i = 1; i <= 2; ++i) write(window().Users.UserTree1.TreeView1.Nodes.Root(i), "", all);
        return all;
    }
    Form1& window() { return maria.window(); }

    World world;
    Client& maria = world.client("Maria");
};

TEST_F(PeopleTest, FriendsComeAndGoByTheirWholeNames) {
    start("anna\r\n\r\nann\r\n\xD3\xEF\xF6\xDF\xE1\r\n");
    EXPECT_THAT(who({"joanna"}), IsEmpty());
    EXPECT_THAT(friends(),
                ElementsAre("Anna (Off line)", "Ann (Off line)", "\xD3\xEF\xF6\xDF\xE1 (Off line)"));
    EXPECT_THAT(who({"joanna", "Anna[dnd]", "\xF3\xEF\xF6\xDF\xE1"}),
                ElementsAre(HasSubstr("User anna has gone online, 3"), HasSubstr("\xEF\xF6\xDF\xE1 has")));
    EXPECT_THAT(friends(),
                ElementsAre("Anna (Do not disturb)", "Ann (Off line)", "\xD3\xEF\xF6\xDF\xE1 (Online)"));
    EXPECT_EQ(window().Friends.Label22.Caption.get(), "Friends: 2");
    EXPECT_THAT(who({"Anna", "\xF3\xEF\xF6\xDF\xE1"}), IsEmpty()) << "only her state is another one";

    // What an end of the connection cuts off, the next reply runs on from; the one behind it is clean.
    line("Ann");
    line("Anna");
    maria.server.closes();
    world.time.run(20s);
    maria.server.says(":srv 001 Maria :Welcome");
    world.time.run(4s);
    maria.host.take();
    EXPECT_EQ(friends()[0], "Anna (Online)");
    EXPECT_THAT(who({"Anna"}), ElementsAre(HasSubstr("User ann has gone online"), HasSubstr("offline, 0")));
    EXPECT_THAT(who({"Anna"}), ElementsAre(HasSubstr("User ann has gone offline, 0")));
    EXPECT_THAT(tree(), ElementsAre("Registered Users", "Unknown users", "-Anna (Online)"));
    maria.around.settings.SaveSetting("Talvora", "Settings", "PopupFriend", "F");
    EXPECT_THAT(who({}), IsEmpty());
}

TEST_F(PeopleTest, TheTreeIsBuiltByTheRulesAndTouchesWhatDiffers) {
    start("");
    const Texts there = {"bob UL:GR.Athens.Maria@x", "maria[quiet] UL:gr.ATHENS", "eve[dnd] UL:GR.Athens",
                         "zoe UL:", "[dnd]"};
    who(there);
    EXPECT_THAT(tree(), ElementsAre("Registered Users", "-GR", "--Athens", "---Maria", "----bob (Online)",
                                    "---eve (Do not disturb)", "Unknown users", "-zoe (Online)",
                                    "- (Do not disturb)"))
        << "a user whose name is that of a group is the group";
    EXPECT_EQ(window().Users.Label21.Caption.get(), "Online: 2");

    UserTree& users = window().Users.UserTree1;
    Nodes& nodes = users.TreeView1.Nodes;
    Texts told;
    Subscriptions on;
    on += nodes.Arranged.connect([&] { told.emplace_back("arranged"); });
    on += nodes.NodeChanged.connect([&](const Node& node) { told.push_back(node.Text()); });
    nodes(5).SetExpanded(false);
    users.TreeView1.SelectedItem = &nodes(7);
    who(there);
    EXPECT_THAT(told, IsEmpty());
    who({"zoe UL:", there[0], "eve UL:GR.Athens"});
    EXPECT_THAT(told, ElementsAre("arranged", "eve (Online)"));
    EXPECT_FALSE(nodes.Root(1).Child(1).Child(1).Child(1).Expanded());
    ASSERT_NE(users.TreeView1.SelectedItem, nullptr);
    EXPECT_EQ(users.TreeView1.SelectedItem->Key(), "GR.Athens.eve:..:h:..:eve");
    EXPECT_THAT(tree(), ElementsAre("Registered Users", "-GR", "--Athens", "---Maria", "----bob (Online)",
                                    "---eve (Online)", "Unknown users", "-zoe (Online)"));

    Texts picked;
    on += users.ClickUser.connect([&](const std::string& nick, auto&&...) { picked.push_back(nick); });
    users.AddUser("UL:a:..:b." + std::string(2000, '.'), "h:..:i", "kim[dnd]");
    users.Refresh();
    for (int i = 1; i <= nodes.Count(); ++i) users.TreeView1.userClicks(nodes(i));
    EXPECT_THAT(picked, ElementsAre("kim[dnd]")) << "whatever hosts and places are called";
    EXPECT_LT(nodes.Count(), 50);
    EXPECT_EQ(users.TreeView1.SelectedItem->Key().substr(0, 3), "a:.");
}

TEST_F(PeopleTest, TheMenusKeepTheListThroughDamageAndCrashes) {
    start("bob\r\nxbob\r\nold\r\n");
    who({"Anna", "bob"});
    const auto pick = [&](const char* nick) { window().UserList1.MouseUp.raise(nick, 2, 0, 0, 0); };
    pick("Anna[dnd]");
    EXPECT_TRUE(window().Friends.popULAddFriends.Visible);
    window().Friends.popULAddFriends.Click.raise();
    EXPECT_THAT(friends(),
                ElementsAre("Bob (Online)", "Xbob (Off line)", "Old (Off line)", "Anna (Do not disturb)"));
    EXPECT_EQ(maria.around.disk.content(ListFile), "bob\r\nxbob\r\nold\r\nAnna\r\n");
    pick("bob");
    EXPECT_TRUE(window().Friends.popULRemFriends.Visible);
    window().Friends.popULRemFriends.Click.raise();
    EXPECT_THAT(maria.component->Chats().Friends.FriendList(), ElementsAre("xold", "Anna")) << "plain text";

    const auto before = maria.around.disk.content(ListFile);
    maria.around.questions.answerFaults(Answer::Ignore);
    maria.around.disk.dieAtWrite(2);  // written beside, not renamed
    pick("eve");
    window().Friends.popULAddFriends.Click.raise();
    maria.around.disk.restart(MemoryDisk::Survived::Flushed);
    EXPECT_EQ(maria.around.disk.content(ListFile), before);

    maria.around.questions.asked.clear();
    maria.around.disk.put(ListFile, std::string("Anna\r\n\0\1x\r\n", 11) + std::string(5, '\7'));
    maria.crashAndStart();
    EXPECT_THAT(maria.component->Chats().Friends.FriendList(), ElementsAre("Anna"));
    EXPECT_EQ(maria.around.questions.asked.size(), 1);
}

}  // namespace
}  // namespace talvora::test
