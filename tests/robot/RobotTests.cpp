#include "RobotWorld.h"
#include "platform_qt/TemporaryFolder.h"
#include "robot/StorePlaces.h"

namespace talvora::test {
namespace {

TEST(Robot, LogsOnFurnishesItsChannelAndComesBack) {
    RobotWorld world;
    world.config.OnLogin = {"OPER orrery secret"};
    world.config.ChannelModes = "+s";
    world.start();
    EXPECT_THAT(world.server.transcript, HasSubstr("USER OrreryServ 0 * :UL:Network.Services\r\n"));
    EXPECT_THAT(world.server.transcript, HasSubstr("OPER orrery secret\r\nJOIN #system syskey\r\n"));
    const auto hears = [&](const Lines& lines) {
        for (const auto& line : lines) world.server.says(line);
        world.time.run(10ms);
        return world.server.heard();
    };
    const auto furnishes = ElementsAre("MODE #system +k syskey", "MODE #system +s");
    EXPECT_THAT(
        hears({":srv 353 OrreryServ = #system :Maria @OrreryServ", ":srv 366 OrreryServ #system :End"}),
        furnishes);
    world.server.says(":ann!u@h KICK #system OrreryServ :out");
    world.time.run(61s);
    EXPECT_THAT(world.server.heard(), ElementsAre("JOIN #system syskey"));
    EXPECT_THAT(hears({":ann MODE #system +o OrreryServ"}), furnishes);

    world.server.closes();
    world.time.run(11s);
    EXPECT_EQ(world.server.connections, 2);
    hears({":srv 433 * OrreryServ :Nickname is already in use"});
    world.time.run(62s);
    EXPECT_THAT(world.server.heard(), Contains("NICK OrreryServ"));
    world.logOn();
    world.plays({"Maria> MAIL 0 0 | MAIL NOMAIL"});
    world.robot->Stop("maintenance");
    EXPECT_THAT(world.server.transcript, HasSubstr("QUIT :maintenance\r\n"));
    world.time.run(5min);
    EXPECT_EQ(world.server.connections, 2) << "it stays away";
}

TEST(Robot, AMailGoesInPieceByPieceAndComesOutLineByLine) {
    RobotWorld world;
    world.start();
    world.plays({"Maria> MAIL SENDREQUEST | MAIL SENDOK",
                 "Maria> MAIL SEND Nikos 3 Urgent:Call  me: now:24:E | MAIL OK",
                 "Maria> MAIL DUMP Nikos   one $ | MAIL OK", "Maria> MAIL DUMP nikos | MAIL OK",
                 "Maria> MAIL SENT Nikos[DND] RTF:{three} | MAIL SENTDONE", "Maria> MAIL 0 0 | MAIL NOMAIL",
                 "nikos[AFK]> MAIL 0 0 | MAIL START Maria DATE 3 1 Urgent:Call  me: now:24:E",
                 "nikos[AFK]> MAIL SENDREQUEST | MAIL SENDWAIAT", "nikos[AFK]> MAIL OK | MAIL DUMP   one $",
                 "nikos[AFK]> MAIL OK | MAIL DUMP ", "nikos[AFK]> MAIL OK | MAIL DUMP RTF:{three}",
                 "nikos[AFK]> MAIL OK | MAIL DONE", "nikos[AFK]> MAIL OK", "Nikos> MAIL 0 0 | MAIL NOMAIL",
                 "Nikos> MAIL  1 2 | MAIL NOTEXIST", "Nikos> MAIL SENDREQUEST | MAIL SENDOK"});
}

TEST(Robot, KnowsAUserByTheExactNickForTheLengthOfADialogue) {
    RobotWorld world;
    world.start();
    world.sends("Anna", "Maria", "private", {"1", "2"});
    world.plays({"Maria> MAIL SEND Nikos 2 s | MAIL OK", "Maria[evil]> MAIL DUMP Nikos forged",
                 "maria> MAIL SENDCANCEL Nikos", "Maria[evil]> MAIL SENT Nikos forged | MAIL SENDERROR",
                 "Maria[evil]> MAIL SENDREQUEST | MAIL SENDWAIAT",
                 "Maria[evil]> MAIL SEND Nikos 1 x | MAIL SENDERROR", "Maria[evil]> MAIL 0 0",
                 "Maria> MAIL DUMP Nikos 1 | MAIL OK", "Maria> MAIL SENT Nikos 2 | MAIL SENTDONE",
                 "Maria> MAIL 0 0 | MAIL START Anna DATE 2 1 private", "Maria[evil]> MAIL OK",
                 "MARIA> MAIL 0 0", "Maria[evil]> MAIL  1 2", "Maria> MAIL OK | MAIL DUMP 1"});
    // The server says that it is she.
    world.server.says(":Maria!u@h NICK :Maria[DND]");
    world.server.says(":srv 401 OrreryServ Maria :No such nick");
    world.plays({"Maria> MAIL OK", "Maria[DND]> MAIL OK | MAIL DUMP 2", "Maria[DND]> MAIL OK | MAIL DONE",
                 "Maria[evil]> MAIL 0 0", "Maria[evil]> MAIL OK", "Maria[DND]> MAIL  1 2 | MAIL RESUME",
                 "Maria[DND]> MAIL OK | MAIL DONE", "Maria[DND]> MAIL OK",
                 "Maria[DND]> MAIL 0 0 | MAIL NOMAIL"});
    // One who takes a nick has nothing of the one before, whose leaving nobody saw.
    world.plays({"Maria> MAIL SEND Nikos 2 s | MAIL OK"});
    world.server.says(":Evil!u@h NICK :Maria");
    world.plays({"Maria> MAIL DUMP Nikos forged", "Maria> MAIL SENT Nikos forged | MAIL SENDERROR"});
}

TEST(Robot, SeveralMailsComeInTheirOrderAndResumeAtAnyLine) {
    RobotWorld world;
    world.start();
    world.sends("Anna", "Nikos", "first", {"a1", "a2", "a3"});
    world.sends("Maria", "Nikos", " ", {"b1"});
    for (int held = 0; held <= 3; ++held) {
        Lines script = {"Nikos> MAIL  1 " + std::to_string(held) + " | MAIL RESUME"};
        for (int line = held + 1; line <= 3; ++line) {
            script.push_back("Nikos> MAIL OK | MAIL DUMP a" + std::to_string(line));
        }
        script.emplace_back("Nikos> MAIL OK | MAIL DONE");
        world.plays(script);
    }
    // It is not hers; there is no such line; the end was sent, and may not have come. A blank subject would
    // make a line too short for its reader.
    world.plays({"Maria> MAIL  1 0 | MAIL NOTEXIST", "Nikos> MAIL  1 4 | MAIL NOTEXIST",
                 "Nikos> MAIL  1 3 | MAIL RESUME", "Nikos> MAIL OK | MAIL DONE", "Nikos> MAIL OK",
                 "Nikos> MAIL 0 0 | MAIL START Maria DATE 1 2 -", "Nikos> MAIL  1 3 | MAIL NOTEXIST",
                 "Nikos> MAIL 0 0 | MAIL START Maria DATE 1 2 -"});
}

TEST(Robot, LinesThatComeLateOrTwiceSpoilNothing) {
    RobotWorld world;
    world.start();
    const auto inOneBreath = [&](const std::string& nick, const Lines& lines) {
        for (const std::string& line : lines) world.says(nick, "MAIL " + line);
        world.time.run(50ms);
        return world.heard();
    };
    world.plays({"Nikos> MAIL OK", "Maria> MAIL DUMP Nikos late", "Maria> MAIL SENDCANCEL Nikos",
                 "Maria> MAIL SENT Nikos late | MAIL SENDERROR", "Maria> MAIL SEND Nikos 3 s | MAIL OK"});
    EXPECT_EQ(inOneBreath("Maria", {"DUMP Nikos 1", "DUMP Nikos 2", "SENT Nikos 3", "DUMP Nikos "}),
              (Lines{"Maria< MAIL OK", "Maria< MAIL OK", "Maria< MAIL SENTDONE"}));
    // The confirmation never came: the same mail again is no second mail.
    world.sends("Maria", "Nikos", "s", {"1", "2", "3"});
    world.plays({"Nikos> MAIL 0 0 | MAIL START Maria DATE 3 1 s"});
    EXPECT_EQ(inOneBreath("Nikos", {"OK", "OK"}), (Lines{"Nikos< MAIL DUMP 1", "Nikos< MAIL DUMP 2"}));
    world.plays({"Nikos> MAIL OK | MAIL DUMP 3", "Nikos> MAIL OK | MAIL DONE", "Nikos> MAIL OK",
                 "Nikos> MAIL OK", "Nikos> MAIL 0 0 | MAIL NOMAIL"});
}

TEST(Robot, MailThatCannotBeTakenIsRefused) {
    RobotWorld world;
    world.config.PiecesPerMail = 3;
    world.config.KilobytesPerUser = 1;
    world.config.MailsPerUser = 2;
    world.start();
    const std::string subject(345, 's');  // fills the line in which it is announced
    const std::string piece(400, 'p');
    world.sends("Maria", "Nikos", subject, {"1"});
    for (const std::string& header :
         {std::string("Nikos"), std::string("Nikos 0 s"), std::string("Nikos 4 s"), std::string("Nikos -1 s"),
          std::string("Nikos 99999999999999999999 s"), std::string(" 1 s"), std::string("[afk] 1 s"),
          "Nikos 1 s" + subject, "Nikos 1 " + std::string(2000, 's')}) {
        world.plays({"Maria> MAIL SEND " + header + " | MAIL SENDERROR"});
    }
    for (const std::string& next :
         {std::string("DUMP Anna x"), std::string("SENT Nikos early"), "DUMP Nikos " + piece}) {
        world.plays({"Maria> MAIL SEND Nikos 3 s | MAIL OK", "Maria> MAIL DUMP Nikos " + piece + " | MAIL OK",
                     "Maria> MAIL " + next + " | MAIL SENDERROR"});
    }
    world.plays({"Maria> MAIL SEND Nikos 2 s | MAIL OK", "Maria> MAIL DUMP Nikos 1 | MAIL OK",
                 "Maria> MAIL DUMP Nikos 2 | MAIL SENDERROR"});
    // Two who send at once: the second finds no room any more.
    world.plays({"Anna> MAIL SEND Nikos 1 a | MAIL OK", "Maria> MAIL SEND Nikos 1 m | MAIL OK",
                 "Anna> MAIL SENT Nikos x | MAIL SENTDONE", "Maria> MAIL SENT Nikos x | MAIL SENDERROR",
                 "Maria> MAIL SEND NIKOS 1 m | MAIL SENDERROR"});
}

TEST(Robot, TurnsAndDialoguesLapse) {
    RobotWorld world;
    world.config.UsersSending = 2;
    world.start();
    world.plays({"A> MAIL SENDREQUEST | MAIL SENDOK", "B> MAIL SEND Nikos 2 s | MAIL OK",
                 "C> MAIL SENDREQUEST | MAIL SENDWAIAT", "C> MAIL SEND Nikos 1 s | MAIL SENDERROR",
                 "A> MAIL SENDREQUEST"});  // in one breath with the first
    world.time.run(4s);
    world.plays({"A> MAIL SENDREQUEST | MAIL SENDOK"});
    world.time.run(50s);
    world.plays({"B> MAIL DUMP Nikos 1 | MAIL OK"});
    world.time.run(16s);
    EXPECT_EQ(world.robot->Taking().Sending(), 1U) << "only B goes on";
    world.plays({"C> MAIL SENDREQUEST | MAIL SENDOK", "B> MAIL SENT Nikos 2 | MAIL SENTDONE",
                 "Nikos> MAIL 0 0 | MAIL START B DATE 2 1 s"});
    world.time.run(96s);
    EXPECT_EQ(world.robot->Taking().Sending() + world.robot->Giving().Readers(), 0U);
    world.plays({"Nikos> MAIL OK"});
    // Gone, in any of the ways to go.
    for (const char* end : {":Nikos[DND]!u@h QUIT :bye", ":srv 401 OrreryServ Nikos[DND] :No such nick",
                            ":Nikos[DND]!u@h NICK :Other"}) {
        world.plays({"Nikos> MAIL 0 0 | MAIL START B DATE 2 1 s"});
        world.server.says(":Nikos!u@h NICK :Nikos[DND]");
        world.server.says(end);
        world.time.run(10ms);
        EXPECT_EQ(world.robot->Giving().Readers(), 0U) << end;
    }
}

TEST(Robot, AMailIsErasedWhenItsTimeIsOverAndNotWhenTheWallClockJumps) {
    RobotWorld world;
    world.config.KeepDays = 1;
    world.around.clock.ahead = std::chrono::days(400);  // wrong at the start already
    world.start();
    world.sends("Maria", "Nikos", "wrong date:2:E", {"1"});
    for (const char* lasting : {"a:0:E", "b:-1:E", "c:99999999999999999999:E", ":E", "Hello: world"}) {
        world.sends("Maria", "Anna", lasting, {"1"});
    }
    world.around.clock.ahead = 0s;
    world.time.run(61min);
    world.sends("Maria", "Nikos", "short:2:E", {"1"});
    world.plays({"Maria> MAIL SEND Anna 2 s | MAIL OK"});
    world.around.clock.ahead = std::chrono::days(800);
    world.time.run(5s);
    world.plays({"Maria> MAIL DUMP Anna 1 | MAIL OK"});
    world.time.run(55min);
    EXPECT_EQ(world.robot->Taking().Sending(), 0U) << "turns lapse by another clock";
    EXPECT_EQ(world.store->TotalsOf("Nikos").Mails, 2) << "not deleted yet";
    world.around.clock.ahead = 0s;
    world.time.run(4min);
    world.plays({"Nikos> MAIL  7 0 | MAIL RESUME"});
    world.time.run(62min);
    world.plays({"Nikos> MAIL  7 0 | MAIL NOTEXIST"});
    EXPECT_EQ(world.store->TotalsOf("Nikos").Mails, 1) << "the clock has been right for an hour";
    EXPECT_EQ(world.store->TotalsOf("Anna").Mails, 5);
    world.sends("Maria", "Zoe", "longer than any is kept:9000:E", {"1"});
    for (const int kept : {1, 0}) {
        world.time.jump(kept == 1 ? 23h : 2h);
        EXPECT_EQ(world.store->TotalsOf("Zoe").Mails, kept);
    }
}

TEST(Robot, WhatTheStoreCannotKeepIsNotConfirmedAndTheRestGoesOn) {
    const SqlitePlace place;
    RobotWorld world;
    world.config.Store = place.settings();
    world.start();
    world.sends("Maria", "Nikos", "first", {"x"});
    const Lines refused = {
        "Maria> MAIL SENT Nikos x | MAIL SENDERROR",
        "Maria> ANN POST 1 0 hello | (plain) Your announcement was not posted: it could not be "
        "kept. Please post it again later."};
    world.plays({"Maria> MAIL SEND Nikos 1 s | MAIL OK"});
    onAFullDisk(1, [&] { world.plays(refused); });
    EXPECT_THAT(world.log, Contains(HasSubstr("store")));
    world.sends("Maria", "Nikos", "s", {"x"});
    world.plays({"Maria> MAIL SEND Nikos 1 s | MAIL OK"});
    place.whileLocked([&] {
        world.plays(refused);
        world.plays({"Anna> PING 1 | (notice) PING 1", "Nikos> MAIL 0 0 | MAIL START Maria DATE 1 1 first"});
    });
}

TEST(Robot, AnnouncementsArePostedByTheRulesAndToldToWhoeverAsks) {
    RobotWorld world;
    world.config.Categories[1] = {720, 20, {}};
    world.config.Categories[3].Posters = {"Admin"};
    world.config.Categories[7].PerDay = 1;
    world.config.PosterStates = {"DND"};
    world.start();
    world.plays(
        {"New> ANN HAS 0 | ANN NO", "Maria> ANN POST 48 0 Hello [#n] all  of you",
         "Maria[DND]> ANN POST  7 no lifetime", "admin[dnd]> ANN POST 1 3 maintenance",
         "Maria> ANN HAS 1 | ANN ANN 2 Maria 0 DATE 7 no lifetime | ANN ANN 3 admin 1 DATE 3 maintenance",
         "Maria> ANN HAS  3 | ANN NO", "New> ANN HAS 0 | ANN ANNID 3",
         "Old> ANN HAS 9999999999 | ANN ANNID 3", "Anna> ANN POST 720 1 x", "Admin> ANN POST 48 3 y"});
    const std::string hours = "in this category it may last from 0 to 48 hours.",
                      category = "there is no such category.", right = "you may not post in this category.";
    const std::pair<std::string, std::string> refused[] = {
        {"POST 49 0 x", hours},
        {"POST -1 0 x", hours},
        {"POST 1E9 0 x", hours},
        {"POST 99999999999 0 x", hours},
        {"POST 1 8 x", category},
        {"POST", category},
        {"POST 1 0 ", "it has no text."},
        {"POST 1 3 x", right},
        {"POST 1 7 x", "you may post 1 a day in this category. Please post it tomorrow."},
        {"POST 1 0 " + std::string(400, 'x'), "its text is too long by 79 letters."},
    };
    const std::string no = " | (plain) Your announcement was not posted: ";
    for (const auto& [post, why] : refused) world.plays({"Maria> ANN " + post + no + why});
    for (const char* nick : {"Admin[x]", "Admin[DND]x", "Admin["}) {
        world.plays({std::string(nick) + "> ANN POST 1 3 x" + no + right});
    }
    for (int i = 0; i < 25; ++i) world.plays({"P" + std::to_string(i) + "> ANN POST 9 0 x"});
    world.says("Maria", "ANN HAS 3");
    world.time.run(1s);
    EXPECT_EQ(world.heard().size(), 20U);
    world.time.run(11h);
    world.plays({"Maria> ANN HAS 3 | ANN ANN 4 Anna 720 DATE 1 x | ANN ANN 5 Admin 48 DATE 3 y"});
}

TEST(Robot, AnswersWhatIsAskedAndNothingElse) {
    RobotWorld world;
    world.start();
    world.plays({"Maria> INFO IP Nikos[x] | IP - Nikos[x]", "Maria> PING 12 34 | (notice) PING 12 34",
                 "Maria> TIME | (notice) TIME DATE"});
    for (const char* text :
         {"INFO IP", "INFO IP a b", "INFO", "FINGER", "MAIL", "MAIL x y", "MAIL 0", "MAIL START a b 1 1 c",
          "MAIL SENTDONE", "ANN", "ANN HAS", "ANN HAS x", "mail 0 0", ""}) {
        world.plays({std::string("Maria> ") + text});
    }
    world.plays({"OrreryServ> MAIL 0 0", "orreryserv[DND]> PING 1"});
    world.says("Maria", "VERSION");
    for (const char* line :
         {":Maria!u@h PRIVMSG OrreryServ :. . .", ":Maria!u@h NOTICE OrreryServ :\1PING 1\1",
          ":Maria!u@h PRIVMSG #system :\1MAIL 0 0\1", "PRIVMSG OrreryServ :\1MAIL 0 0\1"}) {
        world.server.says(line);
    }
    world.time.run(100ms);
    EXPECT_THAT(world.heard(), ElementsAre(HasSubstr("Maria< (notice) VERSION Talvchat v")));
}

TEST(Robot, TellsWhoeverConnectsWhereHeComesFrom) {
    RobotWorld world;
    world.config.AddressHost = "ip.test";
    world.config.AddressPort = 37183;
    Winsock first(world.around.platform.Guarded, world.network.CreateSocket({}));
    first.LocalPort = 37183;
    first.Listen();
    world.start();
    world.plays({"Maria> INFO IP Nikos | IP ip.test Nikos"});
    EXPECT_THAT(world.log, Contains(HasSubstr("cannot listen")));
    first.Close();
    world.time.run(30s);  // the port is free again
    std::string got;
    Winsock asker(world.around.platform.Guarded, world.network.CreateSocket({}));
    const auto on = asker.DataArrival.connect([&] { asker.GetData(got); });
    asker.RemoteHost = "ip.test";
    asker.RemotePort = 37183;
    asker.Connect();
    world.time.run(1s);
    EXPECT_EQ(got, "127.0.0.1");
    EXPECT_NE(asker.State(), SocketState::Connected);
}

}  // namespace
}  // namespace talvora::test
