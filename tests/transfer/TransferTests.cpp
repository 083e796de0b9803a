// Two clients hand each other files over the virtual network: what arrives, what a broken transfer leaves,
// what the dialog offers.
#include "simulation/robot/RobotInWorld.h"
#include "transfer/TransferRig.h"

namespace talvora::test {
namespace {

// What the rules make of a file: whole blocks, and the last byte of some files is never asked for.
std::string asStored(const std::string& content, std::size_t block) {
    std::string stored;
    do {
        std::string next = content.substr(std::min(stored.size(), content.size()), block);
        next.resize(block, ' ');
        stored += next;
    } while (stored.size() + 1 < content.size());
    return stored;
}

std::string bytes(std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += static_cast<char>('a' + (i * 7 + i / 251) % 26);
    return text;
}

TEST(FormatBit, DividesWhileThereIsMoreThan1024) {
    EXPECT_EQ(FormatBit(0) + FormatBit(1024) + FormatBit(1025), "0 b1024 b1.00 Kb");
    EXPECT_EQ(FormatBit(1024.0 * 1536) + FormatBit(5.0 * (1LL << 40)), "1.50 Mb5120.00 Gb");
}

TEST_F(TransferTest, FilesOfAllSizesArriveInWholeBlocks) {
    for (const std::size_t block : {512U, 1024U, 8192U}) {
        blockSize(static_cast<int>(block));
        for (const std::size_t size : {std::size_t{0}, std::size_t{1}, block - 1, block, block + 1,
                                       std::size_t{1500}, 10 * block + 7}) {
            offer(bytes(size));
            ASSERT_TRUE(receiver().Visible);
            EXPECT_EQ(received(), size == 0 && block == 512 ? "(none)" : received());
            accept();
            EXPECT_EQ(received(), asStored(bytes(size), block)) << size << " in blocks of " << block;
            EXPECT_EQ(sender(), nullptr);
            EXPECT_FALSE(receiver().Visible);
        }
    }
    EXPECT_THAT(outcomes(a), testing::Each(std::string("Sent")));
    EXPECT_THAT(outcomes(b), testing::Each(std::string("Received")));
    EXPECT_EQ(b.around.disk.openHandles() + a.around.disk.openHandles(), 0);
    EXPECT_THAT(b.host.take(), AllOf(Contains(HasSubstr("User Anna is sending you 1 file(s)")),
                                     Contains(HasSubstr("1 file(s) received from Anna"))));
}

// The robot and its address server are the real ones.
TEST_F(TransferTest, TheAddressIsAskedForFromTheUserListOnly) {
    Relay relay;
    RobotInWorld robot(world, relay);
    robot.config.AddressHost = "ip.test";
    robot.config.AddressPort = 37183;
    robot.start();
    for (Client* client : {&a, &b}) {
        relay.serve(*client);
        client->server.closes();
    }
    world.time.run(20s);  // they are logged on there
    a.window().Presence.SelectedNick = bob;
    static_cast<FileOffers&>(desk(a).Offers()).SendData(bob, "", false, true);
    frmSendFile& dialog = *desk(a).Dialog.Get();
    world.time.run(10s);
    EXPECT_EQ(dialog.Text1.Text.get(), "(Resolving...)") << "from a window nobody is asked";
    EXPECT_FALSE(dialog.Text1.Enabled);
    a.window().popULSendFile.Click.raise();
    world.time.run(10s);
    EXPECT_EQ(dialog.Text1.Text.get(), "127.0.0.1");
    EXPECT_TRUE(dialog.Text1.Enabled);
    b.profile.ReceiveAddress = "127.0.0.1";
    b.host.send(HostMsg::ApplySettings);
    a.around.disk.picked["/f"] = bytes(3);
    a.around.questions.willChoose({"/f"});
    dialog.Command1.Click.raise();
    dialog.Command4.Click.raise();
    world.time.run(1s);
    EXPECT_THAT(receiver().lblFrom.Caption.get(), HasSubstr("1024.00 Gb are free"));
    accept();
    EXPECT_EQ(received("f").size(), 1024U);
    EXPECT_EQ(a.around.settings.GetSetting("Talvora", "Storage", "SendList", ""), "127.0.0.1|");
}

TEST_F(TransferTest, ATakenPortIsTriedAgainAndSaidQuietly) {
    Winsock other(b.around.platform.Guarded, world.network.CreateSocket({}));
    other.LocalAddress = b.profile.ReceiveAddress = "taken";
    other.LocalPort = TransferPort;
    other.Listen();
    b.host.send(HostMsg::ApplySettings);
    EXPECT_THAT(b.window().Trouble.lblTrouble.Caption.get(),
                HasSubstr("port 37182 is taken by another program"));
    other.Close();
    world.time.run(10s);
    EXPECT_FALSE(b.window().Trouble.lblTrouble.Visible);
}

TEST_F(TransferTest, AListOfFortyFilesArrivesWhole) {
    for (const Microseconds delay : {0, 20'000}) {
        world.network.delay = delay;
        Texts paths;
        for (int i = 0; i < 40; ++i) {
            paths.push_back("/home/anna/" + CStr(i) + " of\xCE\xB1.txt");
            a.around.disk.picked[paths.back()] = bytes(static_cast<std::size_t>(i) * 300 + 1);
        }
        offer(paths);
        EXPECT_THAT(receiver().Label6.Caption.get(), HasSubstr("Anna is sending you 40 file(s)."));
        accept();
        world.time.run(60s);
        for (int i = 0; i < 40; ++i) {
            EXPECT_EQ(received(CStr(i) + " of\xCE\xB1.txt"),
                      asStored(bytes(static_cast<std::size_t>(i) * 300 + 1), 1024));
        }
        EXPECT_EQ(sender(), nullptr);
    }
}

TEST_F(TransferTest, ABlockReadAheadIsUsedOnlyIfNothingChanged) {
    world.network.delay = 10'000;
    offer(bytes(4096));
    receiver().Command2.Click.raise();
    world.time.run(50ms);  // the second block is read
    const std::string before = bytes(4096);
    a.around.disk.rewritePicked("/home/anna/new.txt", std::string(4096, 'z'));
    world.time.run(20ms);
    blockSize(512);
    world.time.run(5s);
    const std::string got = received();
    EXPECT_EQ(got.size(), 4096U);
    const std::size_t changed = got.find('z', 1024 * (got[1024] == 'z' ? 1 : 2));
    EXPECT_EQ(got.substr(0, 1024), before.substr(0, 1024));
    EXPECT_EQ(got.substr(changed), std::string(4096 - changed, 'z'));
    EXPECT_EQ(changed % 1024, 0U) << "a block is old or new";
}

TEST_F(TransferTest, ABusySenderACancelledAddAndRetryAreAsTold) {
    std::string addresses;
    for (int i = 0; i < 25; ++i) addresses += CStr(i) + "|";
    a.around.settings.SaveSetting("Talvora", "Storage", "SendList", addresses);
    a.around.disk.picked["/one"] = a.around.disk.picked["/two"] = "12";
    offer("first");
    a.around.questions.willAnswer(Answer::Ok);
    offer(Texts{"/one"});
    EXPECT_THAT(a.around.questions.asked.back(), HasSubstr("another file transfer is in progress"));
    frmSendFile& dialog = *desk(a).Dialog.Get();
    EXPECT_EQ(dialog.Text1.List.size(), 21U);
    a.around.questions.willChoose({});
    dialog.Command1.Click.raise();
    EXPECT_EQ(dialog.List1.ListCount(), 2) << "nobody asks whether it was cancelled";
    dialog.Command5.Click.raise();
    accept();
    EXPECT_EQ(received().size(), 1024U);
    {
        Stranger busy(world, b);
        for (int box = 0; box < 2; ++box) a.around.questions.willAnswer(Answer::Ok);
        offer(Texts{"/one", "/two"});
        EXPECT_THAT(a.around.questions.asked.end()[-2], HasSubstr("Error transfering file!"));
        EXPECT_THAT(a.around.questions.asked.back(), HasSubstr("Disconnected from remote machine!"));
    }
    world.time.run(11s);
    sender()->Command2.Click.raise();
    world.time.run(1s);
    EXPECT_THAT(receiver().Label6.Caption.get(), HasSubstr("2 file(s)"));
    accept();
    EXPECT_EQ(received("one") + received("two"), "(none)12" + std::string(1022, ' '));
    for (int box = 0; box < 2; ++box) b.around.questions.willAnswer(Answer::Ok);
    sender()->Command1.Click.raise();  // the receiver waits for a file more than comes
    world.time.run(6s);
}

TEST_F(TransferTest, EitherSideMayAbortInEachState) {
    world.network.delay = 10'000;
    for (const auto when : {15ms, 120ms, 500ms}) {  // nobody has answered; the first file; in the middle
        for (const bool bySender : {true, false}) {
            SCOPED_TRACE(CStr(when.count()) + (bySender ? " sender" : " receiver"));
            offer(bytes(200'000));
            if (when > 15ms) receiver().Command2.Click.raise();
            world.time.run(when);
            if (bySender) {
                for (int box = 0; box < 2; ++box) b.around.questions.willAnswer(Answer::Ok);
                sender()->Command1.Click.raise();
                world.time.run(6s);
                EXPECT_EQ(sender(), nullptr);
                EXPECT_THAT(b.around.questions.asked.end()[-2], HasSubstr("canceled by remote user!"));
            } else {
                a.around.questions.willAnswer(Answer::Ok);
                receiver().Command1.Click.raise();
                world.time.run(6s);
                EXPECT_THAT(a.around.questions.asked.back(), HasSubstr("canceled by remote user!"));
                EXPECT_TRUE(sender()->Command2.Enabled);
                sender()->Unload();
                stopTimer3();
            }
            EXPECT_FALSE(receiver().Visible);
            EXPECT_EQ(received(), "(none)");
            EXPECT_EQ(outcomes(b).front(), std::string(bySender ? "Canceled by the other side" : "Canceled") +
                                               (when > 15ms ? "; it is in the waste basket" : ""));
            EXPECT_TRUE(goesWell());
        }
    }
}

}  // namespace
}  // namespace talvora::test
