// Announcements between whole clients and the real robot, in one process.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Text.h"
#include "simulation/robot/RobotInWorld.h"

namespace talvora::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

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

// What the composer says is left is what the robot leaves.
TEST_F(AnnouncementStory, TheLongestTextThatFitsIsPostedAndOneByteMoreIsRefused) {
    Client& maria = enters("Maria");
    posts(maria, 0, "1", "The first of all");
    list(maria);
    frmAnnounce& form = maria.component->Announcements().Composer.Load();
    form.Text2.Text = "12";
    const auto room = static_cast<std::size_t>(Val(form.Room.Caption.get()));
    form.Unload();
    posts(maria, 0, "12", std::string(room + 1, 'x'));
    EXPECT_THAT(robot.log.back(), HasSubstr("too long by 1 letters"));
    EXPECT_THAT(list(maria), IsEmpty());
    posts(maria, 0, "12", std::string(room, 'x'));
    EXPECT_THAT(list(maria), ElementsAre(std::string(room, 'x') + " 12 hours"));
}

}  // namespace
}  // namespace talvora::test
