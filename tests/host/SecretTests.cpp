// Secret talks and script commands between whole clients in one process: what one types in his window, what
// the server gets of it, and what the other one's window shows.

#include "Vocabulary.h"
#include "extensions/plg_Encrypt.h"
#include "platform/Text.h"
#include "simulation/Relay.h"

namespace talvora::test {
namespace {

using testing::EndsWith;

const std::string Unreadable = "[Maria] (Encrypted data)";

class SecretTest : public testing::Test {
  protected:
    Client& enters(const std::string& nick) {
        Client& client = world.client(nick);
        client.around.disk.put("System/plugin.lst", "<SYS>.plg_Encrypt T F 0 0 Encryption\r\n");
        client.around.disk.put("System/script_chm.dat", "Put out\1KICK  %2 %1\2ECHO %0 was for %1\r\n");
        client.around.disk.put("System/script_pmm.dat", "Greet\1PRIVMSG  %1 :hello\r\n");
        client.around.settings.SaveSetting("Talvora", "Settings", "ChanList", "");
        relay.serve(client);
        client.host.send(HostMsg::Start);
        world.time.run(5s);
        return client;
    }
    static frmPM& window(Client& client, const std::string& peer) {
        client.component->Chats().Privates.StartPM(peer);
        return *client.component->Chats().Privates.Window(peer);
    }
    static plg_Encrypt& pluginOf(const frmPM& window) {
        return dynamic_cast<plg_Encrypt&>(*window.Slots.plugins(0).Client());
    }
    static void encrypts(const frmPM& window, const std::string& key) {
        plg_Encrypt& plugin = pluginOf(window);
        if (plugin.EncryptOn) plugin.Label1.Click.raise();
        plugin.Text1.Text = key;
        if (!key.empty()) plugin.Label1.Click.raise();
    }
    void types(frmPM& window, const std::string& text, int key = Key::Return) {
        window.Text1.Text = text;
        window.Text1.userPresses(key);
        world.time.run(100ms);
    }
    static std::string shownIn(const ChatWindow& window) {
        const std::string text = window.IRCWin1.RichTextBox1.Text();
        return text.substr(0, text.find_last_not_of(" \r\n") + 1);
    }

    Relay relay;
    World world;
    Client& maria = enters("Maria");
    Client& nikos = enters("Nikos");
    frmPM& hers = window(maria, "Nikos");
    frmPM& his = window(nikos, "Maria");
    const std::string shared = "\xEA\xEB\xE5\xE9\xE4\xDF";
};

TEST_F(SecretTest, OnlyWhoHasTheKeyReadsAndTheServerReadsNoWord) {
    encrypts(hers, shared);
    types(hers, "too early");
    EXPECT_THAT(shownIn(his), EndsWith(Unreadable));
    encrypts(his, "another");
    types(hers, "a text so long that another key cannot be right by chance");
    EXPECT_THAT(shownIn(his), EndsWith(Unreadable));
    encrypts(his, shared);
    types(hers, "\xEA\xE1\xEB\xE7\xEC\xDD\xF1\xE1 $ | ^");
    EXPECT_THAT(shownIn(his), EndsWith("[Maria] \xEA\xE1\xEB\xE7\xEC\xDD\xF1\xE1 $ | ^"));
    types(his, "\xE3\xED\xDD\xF6\xE5\xE9", Key::LineFeed);
    EXPECT_THAT(shownIn(hers), EndsWith("* Nikos \xE3\xED\xDD\xF6\xE5\xE9"));
    const std::string longest(400, 'x');
    types(hers, longest);
    EXPECT_THAT(shownIn(his), EndsWith("[Maria] " + longest));
    encrypts(his, "");
    types(his, "in the open");
    EXPECT_THAT(shownIn(hers), EndsWith("<Nikos> in the open"));
    for (Client* client : {&maria, &nikos}) {
        EXPECT_THAT(client->server.transcript,
                    AllOf(HasSubstr(" :\1PM ^"), Not(HasSubstr("early")), Not(HasSubstr("\xE1\xEB")),
                          Not(HasSubstr("\xE3\xED")), Not(HasSubstr("ACTION")), Not(HasSubstr("xx"))));
    }
    EXPECT_THAT(nikos.server.transcript, HasSubstr("PRIVMSG Maria :in the open\r\n"));
}

// What anybody can send in place of a cipher text costs a report at most, and the next line is read.
TEST_F(SecretTest, BadCipherTextsAreGarbageAndNothingElse) {
    encrypts(hers, shared);
    encrypts(his, shared);
    nikos.around.questions.answerFaults(Answer::Abort);
    for (const char* text : {"$PM ", "$PM ^", "$PM ^Z", "$PM ^0", "$PM ^00ZZ4Z7", "$PM 00", "$PM ^^^"}) {
        nikos.server.says(":Maria!u@h PRIVMSG Nikos :" + std::string(text));
        world.time.run(100ms);
    }
    EXPECT_EQ(nikos.around.questions.asked.size(), 1u) << "the one without a salt";
    std::string secretly = shared;
    const std::size_t half = std::size_t{1} << 19;
    his.PMArrived("$PM ^" + std::string(2 * half, '0'), "");
    EXPECT_THAT(shownIn(his), EndsWith(Unreadable));
    const std::string all = nikos.component->Chats().Cipher.DCGEncryptText(std::string(half, 'y'), secretly);
    his.PMArrived("$PM " + all, "");
    EXPECT_THAT(shownIn(his), EndsWith("yyy"));
    types(hers, "still here");
    EXPECT_THAT(shownIn(his), EndsWith("[Maria] still here"));
}

TEST_F(SecretTest, ScriptsInTheMenusHaveTheNickAndTheChannel) {
    for (Client* client : {&maria, &nikos}) client->window().IRCServ1.SendIRC("JOIN #greek");
    world.time.run(1s);
    maria.component->Chats().Channels.StartChan("#greek");
    world.time.run(1s);
    frmChanChat& channel = *maria.component->Chats().Channels.Window("#greek");
    ListView& users = channel.UserList1.ListView1;
    users.userSelects(users.ListItems(2));
    users.MouseUp.raise(2, 0, 0, 0);
    EXPECT_EQ(channel.Commands.Entries(0).Caption.get(), "Put out");
    channel.Commands.Entries(0).Click.raise();
    hers.Commands.Entries(0).Click.raise();
    world.time.run(1s);
    EXPECT_THAT(maria.server.transcript,
                AllOf(HasSubstr("KICK #Greek Nikos\r\n"), HasSubstr("PRIVMSG Nikos :hello\r\n")));
    EXPECT_THAT(shownIn(channel), EndsWith("Put_out was for Nikos"));
}

}  // namespace
}  // namespace talvora::test
