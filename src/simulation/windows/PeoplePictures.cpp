// Who is there, the bar, and who is who.

#include <QLineEdit>
#include <QTabWidget>

#include "simulation/windows/Pictures.h"

namespace talvora::test {

// A reply of who is on line.
void fillTree(DesktopWorld& desktop) {
    for (const char* user :
         {"Anna UL:Θεσσαλονίκη.Κέντρο", "Nikos[DND] UL:Θεσσαλονίκη.Κέντρο",
          "Παναγιώτα_Παπαδοπούλου[AWAY] UL:Θεσσαλονίκη.Κέντρο", "Giorgos[LUNCH] UL:Θεσσαλονίκη.Καλαμαριά",
          "Eleni UL:Θεσσαλονίκη.Καλαμαριά", "Stavros UL:Αθήνα.Πλάκα", "Sofia[PHONE] UL:Αθήνα.Πλάκα",
          "Manolis UL:Κρήτη.Χανιά", "Ioanna[SLEEP] UL:Κρήτη.Χανιά", "Maria UL:Θεσσαλονίκη.Κέντρο",
          "Stranger nobody"}) {
        const std::string text = greek(user);
        const std::size_t blank = text.find(' ');
        desktop.client.server.says(":srv 352 Maria * u h srv " + text.substr(0, blank) + " H :0 " +
                                   text.substr(blank + 1));
    }
    desktop.says(":srv 315 Maria * :End of WHO");
}

void takePeople(DesktopWorld& desktop, Photographer& photographer) {
    fillTree(desktop);
    FormView* main = desktop.viewOf(&desktop.client.window());
    auto* tabs = main->findChild<QTabWidget*>();
    for (const char* name : {"main-friends", "main-online", "main-channels"}) {
        photographer.take(main, name);
        tabs->setCurrentIndex(tabs->currentIndex() + 1);
        desktop.settle();
    }
    tabs->setCurrentIndex(1);
    auto* box = tabs->currentWidget()->findChild<QLineEdit*>();
    box->setText(QStringLiteral("an"));
    desktop.settle();
    photographer.take(main, "main-online-found");
    box->clear();
    tabs->setCurrentIndex(0);
}

void takeBar(DesktopWorld& desktop, Photographer& photographer) {
    NotifyDesk& notes = desktop.client.component->Notes();
    desktop.says(":Nikos!n@h PRIVMSG Maria :Shall we meet at five?");
    desktop.says(":Anna!a@h PRIVMSG #thessaloniki :" +
                 greek("Ποιος έρχεται στην παραλία το Σάββατο το πρωί;"));
    desktop.says(":Eleni!e@h PRIVMSG Maria :Good morning");
    desktop.client.around.screen.works(desktop.chats().Privates.Window("Eleni"));
    desktop.world.time.run(std::chrono::seconds(3));
    notes.ToggleBar();
    desktop.settle();
    frmPopup& bar = *notes.Popup.Get();
    bar.WinNotice(1).Label2_MouseMove();
    desktop.settle();
    photographer.take(desktop.viewOf(&bar), "bar");
    bar.PutAway();
    for (const char* line :
         {"311 Maria Nikos[DND] nikos pc7.example.org * :UL:Thessaloniki.Center@Net1",
          "312 Maria Nikos[DND] irc.example.org :The server", "319 Maria Nikos[DND] :#music @#thessaloniki",
          "317 Maria Nikos[DND] 7500 1773478800 :seconds idle, signon time",
          "318 Maria Nikos[DND] :End of WHOIS"}) {
        desktop.says(std::string(":srv ") + line);
    }
    photographer.take(desktop.viewOf(notes.Whois.Get()), "whois");
}

}  // namespace talvora::test
