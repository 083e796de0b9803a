// Announcements between whole clients and the real robot, in one process.

#include <algorithm>
#include <array>
#include <iterator>
#include <map>

#include "Vocabulary.h"
#include "platform/Text.h"
#include "simulation/robot/RobotInWorld.h"

namespace talvora::test {
namespace {

using testing::SizeIs;

class AnnouncementStory : public testing::Test {
  protected:
    AnnouncementStory() { robot.start(); }
    Client& enters(const std::string& nick) {
        Client& client = world.client(nick);
        relay.serve(client);
        client.host.send(HostMsg::Start);
        world.time.run(6s);
        return client;
    }
    void posts(Client& client, int category, const std::string& hours, const std::string& text) {
        frmAnnounce& form = client.component->Announcements().Composer.Load();
        form.Combo1.ListIndex = category;
        form.Text2.Text = hours;
        form.Text1.Text = text;
        form.Command1.Click.raise();
        world.time.run(100ms);
    }
    // The texts of a client's list, after a check.
    std::vector<std::string> list(Client& client) {
        client.component->Announcements().Manager.CheckAnn();
        world.time.run(1s);
        std::vector<std::string> texts;
        ListItems& rows = client.component->Announcements().Viewer.Load().ListView1.ListItems;
        for (int i = 1; i <= rows.Count(); ++i)
            texts.push_back(rows(i).SubItems(3) + " " + rows(i).SubItems(2));
        return texts;
    }
    CategoryRules& rules(int category) {
        return robot.config.Categories.at(static_cast<std::size_t>(category));
    }
    std::vector<std::string> refusals() const {
        std::vector<std::string> all;
        std::ranges::copy_if(robot.log, std::back_inserter(all),
                             [](const std::string& line) { return line.starts_with("refused"); });
        return all;
    }
    static bool isNotice(const std::string& message) { return message.starts_with("Notice(Announcement"); }
    std::string latest(Client& client) { return client.component->Announcements().Panel.Label16.Caption; }

    World world;
    Relay relay;
    RobotInWorld robot{world, relay};
};

TEST_F(AnnouncementStory, ReachesThoseWhoAreThereAndThoseWhoComeLater) {
    Client& maria = enters("Maria");
    Client& nikos = enters("Nikos");
    posts(maria, 0, "1", "The first of all");  // nobody has a history before it
    EXPECT_THAT(list(maria), IsEmpty());
    EXPECT_THAT(list(nikos), IsEmpty());
    posts(maria, 5, "48", "Meeting\r\nat nine");
    posts(nikos, 6, "", "Who?");
    EXPECT_THAT(list(nikos), ElementsAre("Meeting\r\nat nine 48 hours", "Who? (Now)"));
    EXPECT_THAT(list(maria), ElementsAre("Meeting\r\nat nine 48 hours", "Who? (Now)"));
    EXPECT_EQ(latest(maria), "Who?");
    // One who is away for a week finds what has not expired, and the clock has gone on for his own list.
    nikos.host.send(HostMsg::Terminate);
    posts(maria, 1, "2", "Missed");
    for (VirtualClock* clock : {&maria.around.clock, &nikos.around.clock, &robot.around.clock})
        clock->ahead += 24h * 7;
    posts(maria, 0, "48", "Fresh");
    nikos.host.send(HostMsg::Start);
    world.time.run(6s);
    EXPECT_THAT(list(nikos), ElementsAre("Meeting\r\nat nine (Expired)", "Who? (Expired)", "Fresh 48 hours"));
    EXPECT_EQ(latest(nikos), "Fresh");
}

// Each kind reaches everybody, to its own limit; what a user has silenced stands in his list all the same.
TEST_F(AnnouncementStory, EachCategoryHasItsPictureItsLimitAndItsSilence) {
    robot.end();
    for (const int category : {Category::Urgent, Category::Meeting}) rules(category).MaxHours = 720;
    for (const int category : {Category::Moderator, Category::Administrator, Category::Owner})
        rules(category) = {168, 2, {"Maria"}};
    robot.start();
    Client& maria = enters("Maria");
    Client& nikos = enters("Nikos");
    Client& eva = enters("Eva");
    for (const char* silence : {"NoQueries", "NoInfo"})
        nikos.around.settings.SaveSetting("Talvora", "Settings", silence, "T");
    eva.around.settings.SaveSetting("Talvora", "Settings", "ReceiveAnn", "F");
    posts(maria, Category::Simple, "48", "The first of all");
    for (Client* client : {&maria, &nikos, &eva}) list(*client);
    const std::array<const char*, Category::Count> longest = {"48",  "200", "168", "168",
                                                              "168", "720", "48",  "48"};
    std::vector<std::string> all;
    for (int category = 0; category < Category::Count; ++category) {
        const char* const hours = longest.at(static_cast<std::size_t>(category));
        posts(maria, category, hours, "No " + CStr(category));
        all.push_back("No " + CStr(category) + " " + hours + " hours");
    }
    const std::map<Client*, int> noticed = {{&maria, 8}, {&nikos, 6}, {&eva, 0}};
    for (const auto& [client, notices] : noticed) {
        client->host.take();
        EXPECT_EQ(list(*client), all);
        EXPECT_EQ(std::ranges::count_if(client->host.take(), isNotice), notices) << client->nick;
        const ListItems& rows = client->component->Announcements().Viewer.Load().ListView1.ListItems;
        for (int row = 1; row <= rows.Count(); ++row) EXPECT_EQ(rows(row).SmallIcon(), row);
    }
    // The composer stops what its category does not allow; the robot stops what a form of one's own sends.
    maria.around.questions.willAnswer(Answer::Ok);
    posts(maria, Category::Urgent, "100", "In between");
    maria.component->Announcements().Composer.Get()->Unload();
    maria.component->Announcements().Manager.Post("169", Category::Owner, "Too long");
    posts(nikos, Category::Owner, "1", "Not mine");
    for (int i = 0; i < 2; ++i) posts(maria, Category::Administrator, "1", "Many");
    EXPECT_THAT(list(eva), SizeIs(9));
    EXPECT_THAT(refusals(),
                ElementsAre(HasSubstr("0 to 168 hours"), HasSubstr("may not post"), HasSubstr("2 a day")));
}

// What the composer says is left is what the robot leaves, to a byte.
TEST_F(AnnouncementStory, TheLongestTextThatFitsIsPostedAndOneByteMoreIsRefused) {
    Client& maria = enters("Maria");
    posts(maria, 0, "1", "The first of all");
    list(maria);
    frmAnnounce& form = maria.component->Announcements().Composer.Load();
    form.Text2.Text = "12";
    const auto room = static_cast<std::size_t>(Val(form.Room.Caption.get()));
    form.Unload();
    posts(maria, 0, "12", std::string(room + 1, 'x'));
    EXPECT_THAT(refusals(), ElementsAre(HasSubstr("too long by 1 letters")));
    EXPECT_THAT(list(maria), IsEmpty());
    posts(maria, 0, "12", std::string(room, 'x'));
    EXPECT_THAT(list(maria), ElementsAre(std::string(room, 'x') + " 12 hours"));
}

}  // namespace
}  // namespace talvora::test
