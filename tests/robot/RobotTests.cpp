#include <algorithm>
#include <map>

#include "RobotWorld.h"
#include "platform_qt/TemporaryFolder.h"
#include "robot/Moment.h"

namespace talvora::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

// ---- Its place on the network

TEST(Robot, LogsOnFurnishesItsChannelAndComesBack) {
    RobotWorld world;
    world.config.OnLogin = {"OPER orrery secret"};
    world.config.ChannelModes = "+s";
    world.start();
    EXPECT_THAT(world.server.transcript, HasSubstr("USER OrreryServ 0 * :UL:Network.Services\r\n"));
    EXPECT_THAT(world.server.transcript, HasSubstr("OPER orrery secret\r\nJOIN #system syskey\r\n"));
    world.server.says(":srv 353 OrreryServ = #system :Maria @OrreryServ");
    world.server.says(":srv 366 OrreryServ #system :End");
    world.time.run(10ms);
    EXPECT_THAT(world.server.heard(), ElementsAre("MODE #system +k syskey", "MODE #system +s"));
    world.server.says(":ann!u@h KICK #system OrreryServ :out");
    world.time.run(61s);
    EXPECT_THAT(world.server.heard(), ElementsAre("JOIN #system syskey"));
    world.server.says(":ann MODE #system +o OrreryServ");
    world.time.run(10ms);
    EXPECT_THAT(world.server.heard(), ElementsAre("MODE #system +k syskey", "MODE #system +s"));

    world.server.closes();
    world.time.run(11s);
    EXPECT_EQ(world.server.connections, 2);
    world.server.says(":srv 433 * OrreryServ :Nickname is already in use");
    world.time.run(1s);
    world.server.heard();
    world.time.run(62s);
    EXPECT_THAT(world.server.heard(), Contains("NICK OrreryServ"));
    world.logOn();
    world.plays({"Maria> MAIL 0 0", "Maria< MAIL NOMAIL"});
    world.robot->Stop("maintenance");
    EXPECT_THAT(world.server.transcript, HasSubstr("QUIT :maintenance\r\n"));
    world.time.run(5min);
    EXPECT_EQ(world.server.connections, 2) << "it stays away";
}

// ---- Mail

TEST(Robot, AMailGoesInPieceByPieceAndComesOutLineByLine) {
    RobotWorld world;
    world.start();
    world.plays({
        "Maria> MAIL SENDREQUEST",
        "Maria< MAIL SENDOK",  //
        "Maria> MAIL SEND Nikos 3 Urgent:Call  me: now:24:E",
        "Maria< MAIL OK",  //
        "Maria> MAIL DUMP Nikos   one $",
        "Maria< MAIL OK",  //
        "maria[DND]> MAIL DUMP nikos",
        "maria[DND]< MAIL OK",  //
        "Maria> MAIL SENT Nikos RTF:{three}",
        "Maria< MAIL SENTDONE",  //
        "Maria> MAIL 0 0",
        "Maria< MAIL NOMAIL",                                               //
        "nikos[AFK]> MAIL 0 0",                                             //
        "nikos[AFK]< MAIL START Maria DATE 3 1 Urgent:Call  me: now:24:E",  //
        "Nikos> MAIL OK",
        "Nikos< MAIL DUMP   one $",  //
        "Nikos> MAIL OK",
        "Nikos< MAIL DUMP ",  //
        "Nikos> MAIL OK",
        "Nikos< MAIL DUMP RTF:{three}",  //
        "Nikos> MAIL OK",
        "Nikos< MAIL DONE",  //
        "Nikos> MAIL OK",    //
        "Nikos> MAIL 0 0",
        "Nikos< MAIL NOMAIL",  //
        "Nikos> MAIL  1 2",
        "Nikos< MAIL NOTEXIST",  //
    });
}

TEST(Robot, SeveralMailsComeInTheirOrderAndResumeAtAnyLine) {
    RobotWorld world;
    world.start();
    world.sends("Anna", "Nikos", "first", {"a1", "a2", "a3"});
    world.sends("Maria", "Nikos", " ", {"b1"});
    for (int held = 0; held <= 3; ++held) {
        Lines script = {"Nikos> MAIL  1 " + std::to_string(held), "Nikos< MAIL RESUME"};
        for (int line = held + 1; line <= 3; ++line) {
            script.insert(script.end(), {"Nikos> MAIL OK", "Nikos< MAIL DUMP a" + std::to_string(line)});
        }
        script.insert(script.end(), {"Nikos> MAIL OK", "Nikos< MAIL DONE"});
        world.plays(script);
    }
    world.plays({"Maria> MAIL  1 0", "Maria< MAIL NOTEXIST",  // it is not hers
                 "Nikos> MAIL  1 4", "Nikos< MAIL NOTEXIST",  //
                 "Nikos> MAIL  1 3", "Nikos< MAIL RESUME",    // the end was sent, and may not have come
                 "Nikos> MAIL OK", "Nikos< MAIL DONE",        //
                 "Nikos> MAIL OK"});
    // A blank subject would make a line too short for its reader.
    world.plays({"Nikos> MAIL 0 0", "Nikos< MAIL START Maria DATE 1 2 -",  //
                 "Nikos> MAIL  1 3", "Nikos< MAIL NOTEXIST",               //
                 "Nikos> MAIL 0 0", "Nikos< MAIL START Maria DATE 1 2 -"});
}

TEST(Robot, LinesThatComeLateOrTwiceSpoilNothing) {
    RobotWorld world;
    world.start();
    world.plays({"Nikos> MAIL OK", "Maria> MAIL DUMP Nikos late", "Maria> MAIL SENDCANCEL Nikos",
                 "Maria> MAIL SENT Nikos late", "Maria< MAIL SENDERROR"});
    world.plays({"Maria> MAIL SEND Nikos 3 no request before", "Maria< MAIL OK"});
    for (const char* piece : {"DUMP Nikos 1", "DUMP Nikos 2", "SENT Nikos 3", "DUMP Nikos "}) {
        world.says("Maria", std::string("MAIL ") + piece);
    }
    world.time.run(50ms);
    EXPECT_EQ(world.heard(), (Lines{"Maria< MAIL OK", "Maria< MAIL OK", "Maria< MAIL SENTDONE"}));
    // The confirmation never came: the same mail again is no second mail.
    world.sends("Maria", "Nikos", "no request before", {"1", "2", "3"});
    world.plays({"Nikos> MAIL 0 0", "Nikos< MAIL START Maria DATE 3 1 no request before"});
    for (int i = 0; i < 2; ++i) world.says("Nikos", "MAIL OK");
    world.time.run(50ms);
    EXPECT_EQ(world.heard(), (Lines{"Nikos< MAIL DUMP 1", "Nikos< MAIL DUMP 2"}));
    world.plays({"Nikos> MAIL OK", "Nikos< MAIL DUMP 3", "Nikos> MAIL OK", "Nikos< MAIL DONE",
                 "Nikos> MAIL OK", "Nikos> MAIL OK", "Nikos> MAIL 0 0", "Nikos< MAIL NOMAIL"});
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
        SCOPED_TRACE(header);
        world.plays({"Maria> MAIL SEND " + header, "Maria< MAIL SENDERROR"});
    }
    const Lines begun = {"Maria> MAIL SEND Nikos 3 s", "Maria< MAIL OK",  //
                         "Maria> MAIL DUMP Nikos " + piece, "Maria< MAIL OK"};
    for (const char* next : {"DUMP Anna x", "SENT Nikos too early", "DUMP Nikos %"}) {
        SCOPED_TRACE(next);
        Lines script = begun;
        script.push_back("Maria> MAIL " + Replace(next, "%", piece));
        script.push_back("Maria< MAIL SENDERROR");
        world.plays(script);
    }
    world.plays({"Maria> MAIL SEND Nikos 2 s", "Maria< MAIL OK", "Maria> MAIL DUMP Nikos 1", "Maria< MAIL OK",
                 "Maria> MAIL DUMP Nikos 2", "Maria< MAIL SENDERROR"});
    // Two who send at once: the second finds no room any more.
    world.plays({"Anna> MAIL SEND Nikos 1 a", "Anna< MAIL OK", "Maria> MAIL SEND Nikos 1 m", "Maria< MAIL OK",
                 "Anna> MAIL SENT Nikos x", "Anna< MAIL SENTDONE",  //
                 "Maria> MAIL SENT Nikos x", "Maria< MAIL SENDERROR", "Maria> MAIL SEND NIKOS 1 m",
                 "Maria< MAIL SENDERROR"});
}

TEST(Robot, TurnsAndDialoguesLapse) {
    RobotWorld world;
    world.config.UsersSending = 2;
    world.start();
    world.plays({"A> MAIL SENDREQUEST", "A< MAIL SENDOK", "B> MAIL SEND Nikos 2 s", "B< MAIL OK",
                 "C> MAIL SENDREQUEST", "C< MAIL SENDWAIAT", "C> MAIL SEND Nikos 1 s", "C< MAIL SENDERROR",
                 "A> MAIL SENDREQUEST"});  // in one breath with the first
    world.time.run(4s);
    world.plays({"A> MAIL SENDREQUEST", "A< MAIL SENDOK"});
    world.time.run(50s);
    world.plays({"B> MAIL DUMP Nikos 1", "B< MAIL OK"});
    world.time.run(16s);
    EXPECT_EQ(world.robot->Taking().Sending(), 1U) << "only B goes on";
    world.plays({"C> MAIL SENDREQUEST", "C< MAIL SENDOK", "B> MAIL SENT Nikos 2", "B< MAIL SENTDONE",
                 "Nikos> MAIL 0 0", "Nikos< MAIL START B DATE 2 1 s"});
    world.time.run(96s);
    EXPECT_EQ(world.robot->Taking().Sending() + world.robot->Giving().Readers(), 0U);
    world.plays({"Nikos> MAIL OK"});
    // Gone, in any of the ways to go.
    for (const char* end : {":Nikos!u@h QUIT :bye", ":srv 401 OrreryServ Nikos :No such nick",
                            ":Nikos!u@h NICK :Other", ":Nikos[DND]!u@h NICK :Other[DND]"}) {
        world.plays({"Nikos> MAIL 0 0", "Nikos< MAIL START B DATE 2 1 s"});
        world.server.says(":Nikos!u@h NICK :Nikos[DND]");
        world.server.says(end);
        world.time.run(10ms);
        EXPECT_EQ(world.robot->Giving().Readers(), 0U) << end;
    }
}

TEST(Robot, GrantsOneDirectionAtATime) {
    RobotWorld world;
    world.start();
    world.sends("Maria", "Nikos", "s", {"1"});
    world.plays({"Nikos> MAIL 0 0", "Nikos< MAIL START Maria DATE 1 1 s",  //
                 "Nikos> MAIL SENDREQUEST", "Nikos< MAIL SENDWAIAT",       //
                 "Nikos> MAIL OK", "Nikos< MAIL DUMP 1", "Nikos> MAIL OK", "Nikos< MAIL DONE",
                 "Nikos> MAIL OK", "Nikos> MAIL 0 0", "Nikos< MAIL NOMAIL",  //
                 "Nikos> MAIL SENDREQUEST", "Nikos< MAIL SENDOK"});
}

TEST(Robot, AMailIsErasedWhenItsTimeIsOver) {
    RobotWorld world;
    world.start();
    world.sends("Maria", "Nikos", "short:2:E", {"1"});
    for (const char* lasting : {"a:0:E", "b:-1:E", "c:99999999999999999999:E", ":E", "Hello: world"}) {
        world.sends("Maria", "Anna", lasting, {"1"});
    }
    world.time.run(119min);
    world.plays({"Nikos> MAIL 0 0", "Nikos< MAIL START Maria DATE 1 1 short:2:E"});
    world.time.run(2min);
    world.plays({"Nikos> MAIL  1 0", "Nikos< MAIL NOTEXIST", "Nikos> MAIL 0 0", "Nikos< MAIL NOMAIL"});
    EXPECT_EQ(world.store->TotalsOf("Anna").Mails, 5);
}

TEST(Robot, WhatTheStoreCannotKeepIsNotConfirmed) {
    const TemporaryFolder folder;
    RobotWorld world;
    world.config.Store.Database = folder.path("robot.db");
    world.start();
    world.plays({"Maria> MAIL SEND Nikos 1 s", "Maria< MAIL OK"});
    onAFullDisk(1, [&] {
        world.plays({"Maria> MAIL SENT Nikos x", "Maria< MAIL SENDERROR",  //
                     "Maria> ANN POST 1 0 hello",
                     "Maria< (plain) Your announcement was not posted: it could not be kept. Please post it "
                     "again later."});
    });
    EXPECT_THAT(world.log, Contains(HasSubstr("store")));
    world.sends("Maria", "Nikos", "s", {"x"});
}

// ---- Announcements, addresses, questions

TEST(Robot, AnnouncementsArePostedByTheRulesAndToldToWhoeverAsks) {
    RobotWorld world;
    world.config.Categories[1] = {720, 20, {}};
    world.config.Categories[3].Posters = {"Admin"};
    world.config.Categories[7].PerDay = 1;
    world.start();
    world.plays({"New> ANN HAS 0", "New< ANN NO",                                           //
                 "Maria> ANN POST 48 0 Hello [#n] all  of you",                             //
                 "Maria[DND]> ANN POST  7 no lifetime", "admin> ANN POST 1 3 maintenance",  //
                 "Maria> ANN HAS 1",                                                        //
                 "Maria< ANN ANN 2 Maria 0 DATE 7 no lifetime",                             //
                 "Maria< ANN ANN 3 admin 1 DATE 3 maintenance",                             //
                 "Maria> ANN HAS  3", "Maria< ANN NO",                                      //
                 "New> ANN HAS 0", "New< ANN ANNID 3", "Old> ANN HAS 9999999999", "Old< ANN ANNID 3"});
    const std::string refused = "Maria< (plain) Your announcement was not posted: ";
    world.plays({"Maria> ANN POST 49 0 x",
                 refused + "in this category it may last from 0 to 48 hours.",
                 "Maria> ANN POST -1 0 x",
                 refused + "in this category it may last from 0 to 48 hours.",
                 "Maria> ANN POST 1E9 0 x",
                 refused + "in this category it may last from 0 to 48 hours.",
                 "Maria> ANN POST 99999999999 0 x",
                 refused + "in this category it may last from 0 to 48 hours.",
                 "Maria> ANN POST 1 8 x",
                 refused + "there is no such category.",
                 "Maria> ANN POST",
                 refused + "there is no such category.",
                 "Maria> ANN POST 1 0 ",
                 refused + "it has no text.",
                 "Maria> ANN POST 1 3 x",
                 refused + "you may not post in this category.",
                 "Maria> ANN POST 1 7 x",
                 refused + "you may post 1 a day in this category. Please post it tomorrow.",
                 "Anna> ANN POST 720 1 x",
                 "Maria> ANN POST 1 0 " + std::string(400, 'x'),
                 refused + "its text is too long by 79 letters."});
    for (int i = 0; i < 25; ++i) world.plays({"P" + std::to_string(i) + "> ANN POST 9 0 x"});
    world.says("Maria", "ANN HAS 3");
    world.time.run(1s);
    EXPECT_EQ(world.heard().size(), 20U);
    world.time.run(11h);
    world.plays({"Maria> ANN HAS 3", "Maria< ANN ANN 4 Anna 720 DATE 1 x"});
}

TEST(Robot, AnswersWhatIsAskedAndNothingElse) {
    RobotWorld world;
    world.start();
    world.plays({"Maria> INFO IP Nikos[x]",
                 "Maria< IP - Nikos[x]",
                 "Maria> INFO IP",
                 "Maria> INFO IP a b",
                 "Maria> INFO",
                 "Maria> PING 12 34",
                 "Maria< (notice) PING 12 34",  //
                 "Maria> TIME",
                 "Maria< (notice) TIME DATE",
                 "Maria> FINGER",
                 "Maria> MAIL",
                 "Maria> MAIL x y",
                 "Maria> MAIL 0",
                 "Maria> MAIL START a b 1 1 c",
                 "Maria> MAIL SENTDONE",
                 "Maria> ANN",
                 "Maria> ANN HAS",
                 "Maria> ANN HAS x",
                 "Maria> mail 0 0",
                 "Maria> ",  //
                 "OrreryServ> MAIL 0 0",
                 "orreryserv[DND]> PING 1"});
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
    world.plays({"Maria> INFO IP Nikos", "Maria< IP ip.test Nikos"});
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

// ---- Strangers, and crowds

TEST(Robot, AFloodCostsOnlyTheFlooder) {
    RobotWorld world;
    world.config.LinesPerSecond = 5;
    world.start();
    for (int i = 0; i < 5000; ++i) world.says("Evil", i % 2 == 0 ? "PING x" : "MAIL 0 0");
    for (int i = 0; i < 3000; ++i) world.says("Half" + std::to_string(i), "MAIL SENDREQUEST");
    world.says("Maria", "MAIL 0 0");
    world.time.run(9s);
    EXPECT_EQ(world.robot->Taking().Sending(), 100U);
    EXPECT_LT(world.robot->Out().Waiting(), 3200U);
    // Nobody of them is there: each costs one line, and no more.
    world.time.run(11min);
    EXPECT_THAT(world.heard(), Contains("Maria< MAIL NOMAIL"));
    EXPECT_EQ(world.robot->Out().Waiting() + world.robot->Taking().Sending(), 0U);

    world.sends("Maria", "Nikos", "s", {"x"});
    for (const std::string& bad : {std::string("MAIL \0 \0", 8), std::string("MAIL SEND \xFF 1 \0\x02", 15),
                                   std::string("\0", 1), "MAIL " + std::string(100'000, '9') + " 0",
                                   std::string(200'000, ' ') + "x", std::string("ANN HAS -1")}) {
        world.says("Evil[\xFF]", bad);
        world.server.sends(":Evil!u@h PRIVMSG OrreryServ :\1MAIL SEND a 1 x\rQUIT :x\nJOIN #evil\r\n");
    }
    world.time.run(10s);
    for (const std::string& line : world.server.heard()) EXPECT_EQ(line.rfind("PRIVMSG Evil", 0), 0U) << line;
    world.plays({"Nikos> MAIL 0 0", "Nikos< MAIL START Maria DATE 1 1 s"});
}

// Users' programs as they are: they acknowledge each line, give up after half a minute without one, ask each
// minute, and at once behind a whole mail.
struct Reader {
    std::string nick;
    bool reading = false;
    int lines = 0;
    int mails = 0;
    int served = 0;
    Microseconds last = 0;
    std::string id = "0";
};

class Crowd {
  public:
    Crowd(RobotWorld& world, int users, int mailsEach) : world_(world) {
        for (int i = 0; i < users; ++i) {
            Reader reader;
            reader.nick = "U" + std::to_string(i);
            const NewMail mail{"Maria", reader.nick, "s", {"1", "2"}, MomentOf(world.around.clock.Now()), 0};
            for (int n = 0; n < mailsEach; ++n) {
                NewMail one = mail;
                one.Subject += std::to_string(n);
                world.store->AddMail(one, {});
            }
            readers[reader.nick] = reader;
        }
        world.store->Commit();
    }

    void ask(Reader& reader) {
        world_.says(reader.nick, "MAIL " + reader.id + " " + std::to_string(reader.lines));
    }
    void hear(const std::string& line) {
        const Lines parts = Split(Replace(line, "\1", ""), " ", 4);  // PRIVMSG nick :MAIL text
        ASSERT_EQ(parts.size(), 4U) << line;
        Reader& reader = readers.at(parts[1]);
        const Lines words = Split(parts[3], " ");
        ++reader.served;
        if (words[0] == "NOMAIL") return;
        if (words[0] == "DUMP" && !reader.reading) return;  // he has given up
        ASSERT_TRUE(words[0] != "DONE" || reader.reading) << "the mail is lost";
        if (words[0] == "START") reader.id = " " + words[4], reader.lines = 0;
        if (words[0] == "DUMP") {
            EXPECT_EQ(words[1], std::to_string(++reader.lines)) << line;
        }
        reader.reading = words[0] != "DONE";
        reader.last = world_.time.Now();
        world_.says(reader.nick, "MAIL OK");
        if (words[0] != "DONE") return;
        ++reader.mails;
        reader.id = "0", reader.lines = 0;
        ask(reader);
    }
    // A second of everybody's life.
    void live() {
        world_.time.run(1s);
        for (const std::string& line : world_.server.heard()) hear(line);
        const bool minute = ++second_ % 60 == 1;
        for (auto& [nick, reader] : readers) {
            if (reader.reading && world_.time.Now() - reader.last > 30'000'000) reader.reading = false;
            if (minute && !reader.reading) ask(reader);
        }
    }

    std::map<std::string, Reader> readers;

  private:
    RobotWorld& world_;
    int second_ = 0;
};

TEST(Robot, AThousandReadersAreServedInTurn) {
    RobotWorld world;
    world.config.LinesPerSecond = 100;
    world.start();
    Crowd crowd(world, 1000, 5);
    int most = 0;
    const auto lagging = [&] {
        return std::count_if(crowd.readers.begin(), crowd.readers.end(),
                             [&](const auto& one) { return one.second.served < most - 1; });
    };
    for (int second = 0; second < 40; ++second) {
        crowd.live();
        for (const auto& one : crowd.readers) most = std::max(most, one.second.served);
        ASSERT_EQ(lagging(), 0) << "in second " << second;
    }
    EXPECT_GE(most, 3);
    for (int second = 0; second < 60; ++second) crowd.live();
    for (const auto& one : crowd.readers) ASSERT_GE(one.second.mails, 2) << one.first;
}

// Those who read are kept from giving up by neither the number of readers nor that of all who only ask.
TEST(Robot, WithMoreReadersThanItsRateBearsEachIsServedInTheEnd) {
    RobotWorld world;
    world.config.LinesPerSecond = 5;
    world.start();
    Crowd crowd(world, 200, 1);
    for (int second = 0; second < 400; ++second) crowd.live();
    for (const auto& one : crowd.readers) EXPECT_EQ(one.second.mails, 1) << one.first;
}

}  // namespace
}  // namespace talvora::test
