// Chats, their scripts, and the small windows of channels.

#include "simulation/windows/Pictures.h"

namespace talvora::test {

void fillChannel(DesktopWorld& desktop) {
    desktop.says(":Maria!m@h JOIN :#thessaloniki");
    desktop.says(":srv 321 Maria Channel :Users  Name");
    desktop.says(":srv 322 Maria #thessaloniki 6 :" + greek("Καλώς ήρθατε στο κανάλι της πόλης"));
    desktop.says(":srv 322 Maria #music 12 :What are you listening to?");
    desktop.says(":srv 323 Maria :End");
    desktop.chats().Channels.StartChan("#thessaloniki");
    desktop.settle();
    desktop.says(":srv 353 Maria = #thessaloniki :@Maria Nikos[DND] Anna " +
                 greek("Παναγιώτα_Παπαδοπούλου[AWAY]") + " Giorgos[LUNCH] Eleni");
    desktop.says(":srv 366 Maria #thessaloniki :End");
    for (const char* line :
         {"Good morning everybody :-)", "\002bold\002, \026italic\026 and \00304red\003 words",
          "Look: http://www.example.org/a/page and tell me what you think of it"}) {
        desktop.says(std::string(":Nikos!n@h PRIVMSG #thessaloniki :") + line);
    }
    desktop.says(":Anna!a@h PRIVMSG #thessaloniki :" +
                 greek("Καλημέρα! Πάμε για καφέ το απόγευμα στην παραλία; :-D"));
    desktop.says(":Eleni!e@h PRIVMSG #thessaloniki :\001ACTION is on her way\001");
    desktop.says(":Giorgos[LUNCH]!g@h NICK :Giorgos");
    frmChanChat* channel = desktop.chats().Channels.Window("#thessaloniki");
    channel->Text1.Text = "I will be there at five";
}

void takeChats(DesktopWorld& desktop, Photographer& photographer) {
    const auto channelView = [&](const char* name) {
        return desktop.viewOf(desktop.chats().Channels.Window(name));
    };
    photographer.take(channelView("#thessaloniki"), "channel");
    const std::string nick = greek("Παναγιώτα_Παπαδοπούλου");
    for (const char* line : {"Γεια σου Μαρία", "Έλαβες το μήνυμά μου;", "Το έστειλα χθες το βράδυ :-)"}) {
        desktop.says(":" + nick + "[AWAY]!p@h PRIVMSG Maria :" + greek(line));
    }
    FormView* chat = desktop.viewOf(desktop.chats().Privates.Window(nick + "[AWAY]"));
    photographer.take(chat, "private");
    desktop.chats().Picker.Load().Display(*desktop.chats().Privates.Window(nick + "[AWAY]"), 0, 0);
    desktop.settle();
    photographer.take(desktop.viewOf(desktop.chats().Picker.Get()), "emoticons");
    fillTree(desktop);
    photographer.take(desktop.viewOf(&desktop.client.window()), "main");
    desktop.client.window().PopupMenu.raise(desktop.client.window().Presence.popState);
    photographer.take(QApplication::activePopupWidget(), "states");
    if (QWidget* menu = QApplication::activePopupWidget()) menu->close();

    desktop.says(":Maria!m@h JOIN :#crowd");
    desktop.chats().Channels.StartChan("#crowd");
    for (int i = 0; i < 500; ++i) {
        std::string names;
        for (int k = 0; k < 10; ++k)
            names += "user" + std::to_string(i * 10 + k) + (k == 3 ? "[AWAY] " : " ");
        desktop.client.server.says(":srv 353 Maria = #crowd :" + names);
    }
    desktop.says(":srv 366 Maria #crowd :End");
    photographer.take(channelView("#crowd"), "channel-5000");
    desktop.client.server.says("ERROR :Closing Link: Maria (Connection timed out)");
    desktop.client.server.closes();
    desktop.settle();
    photographer.take(desktop.viewOf(&desktop.client.window()), "main-trouble");
}

void takeSmall(DesktopWorld& desktop, Photographer& photographer) {
    ChatDesk& chats = desktop.chats();
    chats.MsgBox.Load().Display("You cannot join channel #vip because it accepts only users with invitation!",
                                "Join error", 2);
    chats.ChanKey.Load().ExecList("#secret|");
    chats.MOTD.Load().Display(
        "Welcome to the network.\r\n\r\nBe kind to each other, and ask for help in #help.");
    desktop.settle();
    photographer.take(desktop.viewOf(chats.MsgBox.Get()), "note");
    photographer.take(desktop.viewOf(chats.ChanKey.Get()), "key");
    photographer.take(desktop.viewOf(chats.MOTD.Get()), "motd");
}

void takeScripts(DesktopWorld& desktop, Photographer& photographer) {
    desktop.client.window().mnuScripts.Click.raise();
    frmScripts* scripts = desktop.chats().Scripts.Get();
    desktop.settle();
    photographer.take(desktop.viewOf(scripts), "scripts");
    scripts->Add.Click.raise();
    scripts->EntryName.Text = "say it";
    desktop.settle();
    photographer.take(desktop.viewOf(scripts), "scripts-problem");
    scripts->Unload();

    desktop.says(":Nikos!n@h PRIVMSG Maria :Shall we talk in secret?");
    frmPM* chat = desktop.chats().Privates.Window("Nikos");
    auto* plugin = dynamic_cast<plg_Encrypt*>(chat->Slots.plugins(0).Client().get());
    chat->Slots.plugins(0).Label1.Click.raise();
    if (plugin != nullptr) plugin->Text1.Text = greek("το μυστικό μας");
    desktop.settle();
    photographer.take(desktop.viewOf(chat), "private-key");
    if (plugin != nullptr) plugin->Label1.Click.raise();
    chat->Text1.Text = "Now only you can read this.";
    chat->Text1.userPresses(Key::Return);
    chat->Text1.Text = "\\b";
    desktop.settle();
    photographer.take(desktop.viewOf(chat), "private-encrypted");
}

}  // namespace talvora::test
