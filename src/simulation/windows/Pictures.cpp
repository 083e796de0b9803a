// Takes a picture of each window in a typical state: windows_pictures DIR [dark]. QT_SCALE_FACTOR=2 makes
// them as a screen of high resolution has them.

#include <QDir>
#include <QEventLoop>
#include <QLineEdit>
#include <QListWidget>
#include <QScreen>
#include <QStyleFactory>
#include <QTabWidget>
#include <QTimer>
#include <QTreeView>
#include <cstdio>
#include <fstream>
#include <iterator>

#include "desktop/ListTree.h"
#include "desktop/QtQuestions.h"
#include "desktop/QtText.h"
#include "desktop/RichTextView.h"
#include "orrery/face/NetworkPage.h"
#include "orrery/face/NoticesPage.h"
#include "orrery/face/SettingsWindow.h"
#include "orrery/face/Welcome.h"
#include "platform/CodePage1253.h"
#include "platform/Text.h"
#include "simulation/windows/DesktopWorld.h"

namespace talvora::test {
namespace {

std::string greek(const char* utf8) {
    return fromUtf8(utf8);
}

std::string fileOf(const char* name) {
    std::ifstream file(std::string(TALVORA_SOURCE_DIR "/data/System/") + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

QPalette darkPalette() {
    QPalette palette(QColor(0x2b, 0x2d, 0x30));
    palette.setColor(QPalette::Base, QColor(0x1e, 0x1f, 0x22));
    palette.setColor(QPalette::Highlight, QColor(0x35, 0x74, 0xf0));
    return palette;
}

class Photographer {
  public:
    Photographer(QString folder, QString suffix) : folder_(std::move(folder)), suffix_(std::move(suffix)) {}

    void take(QWidget* window, const char* name) {
        if (window == nullptr) {
            std::fprintf(stderr, "There is no %s.\n", name);
            complete_ = false;
            return;
        }
        for (QWidget* widget : window->findChildren<QWidget*>()) {
            if (auto* view = dynamic_cast<RichTextView*>(widget)) view->settle();
            if (auto* list = dynamic_cast<ListTree*>(widget)) list->settle();
        }
        const QString file = QStringLiteral("%1/%2%3.png").arg(folder_, QString::fromLatin1(name), suffix_);
        complete_ = window->grab().save(file) && complete_;
    }
    bool Complete() const { return complete_; }

  private:
    QString folder_;
    QString suffix_;
    bool complete_ = true;
};

void furnish(DesktopWorld& desktop) {
    desktop.client.around.disk.put("System/emoticons.dat", fileOf("emoticons.dat"));
    desktop.client.around.disk.put("System/perflix.lst", fileOf("perflix.lst"));
    desktop.client.around.disk.put("System/plugin.lst",
                                   "Shout.Plugin F T F F Say it loud\r\n"
                                   "<SYS>.plg_Encrypt T F 0 0 Encryption\r\n");
    desktop.client.around.disk.put("System/Friends.lst",
                                   greek("Anna\r\nNikos\r\nKostas\r\nΠαναγιώτα_Παπαδοπούλου\r\nDimitra"));
    desktop.client.around.disk.put("System/script_cmd.dat",
                                   "part\x01PART #thessaloniki\r\nbrb\x01NICK %0 Maria[AWAY]\x02"
                                   "ECHO Back soon\r\n");
    desktop.client.around.questions.answerFaults(Answer::Ignore);
}

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

std::string incomingMail(const char* from, const char* subject, const char* received, const char* text,
                         bool read) {
    const std::string content = MailFile::IncomingHead(greek(from), received, received, greek(subject)) +
                                greek(text) + "\r\n" + std::string(MailFile::Tail);
    return read ? MailFile::Open(content)->Copy : content;
}

void putMails(DesktopWorld& desktop) {
    auto& disk = desktop.client.around.disk;
    disk.put("Mail/i1.qrm",
             incomingMail("Nikos", "Photos of the trip", "02/01/2026 21:14:00", "Hello", true));
    disk.put("Mail/i2.qrm",
             incomingMail("Giorgos", "The rehearsal moves to Friday", "12/03/2026 09:05:00", "Hello", true));
    disk.put("Mail/i3.qrm", incomingMail("Παναγιώτα_Παπαδοπούλου", "Urgent:Έλα απόψε στις εννιά",
                                         "14/03/2026 07:40:00", "Hello", false));
    disk.put(
        "Mail/i4.qrm",
        incomingMail("Anna", "Dinner on Saturday", "14/03/2026 08:55:00",
                     "Dear Maria,[#n][#n]we cook for everybody who was at the beach last week, and for you. "
                     "Come at eight, and bring nothing but your guitar.[#n][#n]The way is told at "
                     "http://www.example.org/way and Nikos has a car.[#n][#n]Anna",
                     false));
    disk.put("Mail/o1.qrm", "Eleni 3 The books\r\na\r\nb\r\nc\r\n\r\n");
    disk.put("Mail/o2.qrm", "Kostas 1 Urgent:Keys\r\na\r\n\r\n");
}

void takeMails(DesktopWorld& desktop, Photographer& photographer) {
    MailDesk& mails = desktop.client.component->Mails();
    FormView* main = desktop.viewOf(&desktop.client.window());
    auto* tabs = main->findChild<QTabWidget*>();
    tabs->setCurrentIndex(tabs->count() - 1);
    mails.Panel.RefreshMailList();
    desktop.settle();
    photographer.take(main, "main-mail");
    const QSize usual = main->size();
    main->resize(usual.width() * 2, usual.height());
    mails.Panel.MailBtn.userClicks(MailPanel::Outgoing);
    mails.Status.MailRCVUpdate(60);
    desktop.settle();
    photographer.take(main, "main-mail-outgoing");
    mails.Panel.MailBtn.userClicks(MailPanel::Incoming);
    mails.Status.MailRCVDone();
    main->resize(usual);
    mails.OpenMail("Mail\\i3.qrm");
    mails.OpenMail("Mail\\i4.qrm");
    desktop.settle();
    for (frmViewMail* viewer : mails.Viewers.Forms()) {
        photographer.take(desktop.viewOf(viewer), viewer->Image1.Visible ? "mail-urgent" : "mail");
    }
    mails.Viewers.Forms().back()->pic_Click(frmViewMail::ReplyButton);
    desktop.settle();
    frmSendMail* composer = mails.Composers.Forms().front();
    composer->RichTextBox1.userTypes("I will be there at eight!");
    composer->Toolbar1.userPresses(composer->Toolbar1.Buttons(ComposerButton::Priority));
    desktop.settle();
    photographer.take(desktop.viewOf(composer), "compose");
    mails.Expire.Load().Display(48);
    desktop.settle();
    photographer.take(desktop.viewOf(mails.Expire.Get()), "expire");
    mails.Expire.Get()->Unload();
    for (const char* nick : {"Anna", "Nikos[DND]", "Eleni", "Giorgos[LUNCH]"}) {
        desktop.client.server.says(":srv 352 Maria * u h srv " + std::string(nick) + " H :0 UL:Home");
    }
    desktop.says(":srv 315 Maria * :End of WHO");
    mails.SelectUser.Load().Display(*composer);
    QApplication::processEvents();
    photographer.take(desktop.viewOf(mails.SelectUser.Get()), "select-user");
    tabs->setCurrentIndex(0);
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

void takeAnnouncements(DesktopWorld& desktop, Photographer& photographer) {
    AnnounceDesk& announcements = desktop.client.component->Announcements();
    const DateTime now = desktop.client.around.platform.WallClock.Now();
    const std::string today = Replace(GeneralDate(now), " ", "_");
    const auto posted = [&](const char* who, int hours, int category, const std::string& text) {
        desktop.says(":OrreryServ!o@h PRIVMSG Maria :\001ANN ANN " + CStr(announcements.Manager.gAnnID + 1) +
                     " " + who + " " + CStr(hours) + " " + today + " " + CStr(category) + " " + text +
                     "\001");
    };
    posted("Anna", 48, Category::Simple, greek("Πωλείται ποδήλατο, σχεδόν καινούργιο"));
    posted("Giorgos", 200, Category::Urgent,
           "The server moves tonight at ten.[#n]Please save what you are writing.");
    posted("Eleni", 168, Category::Moderator, "Be kind in #music: no repeated lines.");
    posted("Nikos", 150, Category::Administrator,
           "New address from Monday on: http://www.example.org/connect");
    posted("Stavros", 72, Category::Owner, "The quiz of the AP is on Friday.");
    posted("Panagiota", 300, Category::Meeting, "We meet at the White Tower on Saturday, at eight.");
    posted("Maria", 0, Category::Query, "Who has a spare network card?");
    posted(
        "Kostas", 5, Category::Information,
        "How to reach us: http://www.example.org/help[#n][#n]Ask in #help at any time; somebody is there.");
    picAnn& panel = announcements.Panel;
    panel.Label15.Click.raise();
    panel.PostNew.Click.raise();
    desktop.settle();
    ListView& list = announcements.Viewer.Get()->ListView1;
    if (list.ListItems.Count() > 3) list.userClicks(list.ListItems(4));
    frmAnnounce* composer = announcements.Composer.Get();
    composer->Combo1.ListIndex = Category::Meeting;
    composer->Text2.Text = "48";
    composer->Text1.Text = "We meet on Saturday at eight.\r\nBring what there is.";
    desktop.settle();
    photographer.take(desktop.viewOf(announcements.Viewer.Get()), "announcements");
    photographer.take(desktop.viewOf(composer), "announce");
    announcements.Viewer.Get()->Filter.Text = "nothing like this";
    desktop.settle();
    photographer.take(desktop.viewOf(announcements.Viewer.Get()), "announcements-none");
    FormView* main = desktop.viewOf(&desktop.client.window());
    auto* tabs = main->findChild<QTabWidget*>();
    const int before = tabs->currentIndex();
    tabs->setCurrentIndex(tabs->count() - 1);
    desktop.client.component->Mails().Panel.MailBtn.userClicks(MailPanel::Announcements);
    desktop.settle();
    photographer.take(main, "main-announcements");
    desktop.client.component->Mails().Panel.MailBtn.userClicks(MailPanel::Incoming);
    tabs->setCurrentIndex(before);
}

// What Maria sends Bob, and he her, each while it is under way.
void takeTransfers(DesktopWorld& desktop, Photographer& photographer) {
    TransferDesk& desk = desktop.client.component->Transfers();
    FileOffers& offers = desk.Offers();
    Client& bob = desktop.world.loggedIn("Nikos");
    TransferDesk& peer = bob.component->Transfers();
    bob.around.disk.put("Received/old.txt", "");
    desktop.client.around.disk.put("Received/old.txt", "");
    const std::string holiday = "/home/maria/Διακοπές στη Χαλκιδική.jpg";
    const std::string song = "/home/nikos/Song for Saturday.ogg";
    for (const char* path : {"/home/maria/Programme.pdf", "/home/maria/Seating plan.odt"})
        desktop.client.around.disk.picked[path] = std::string(30'000, 'x');
    desktop.client.around.disk.picked[holiday] = std::string(2'500'000, 'x');
    bob.around.disk.picked[song] = std::string(3'900'000, 'x');

    const auto moment = [&](const Form* form, const char* name) {
        desktop.settle();
        QEventLoop drawn;  // what moves is drawn in real time
        QTimer::singleShot(50, &drawn, &QEventLoop::quit);
        drawn.exec();
        photographer.take(desktop.viewOf(form), name);
    };
    offers.Offer("Nikos", {holiday, "/home/maria/Programme.pdf", "/home/maria/Seating plan.odt"});
    moment(desk.Dialog.Get(), "send-file-resolving");
    desk.Dialog.Get()->ResolveIP("address-of-Nikos");
    desk.Dialog.Get()->List1.ListIndex = 0;
    moment(desk.Dialog.Get(), "send-file");
    desk.Dialog.Get()->Command4.Click.raise();
    desktop.settle();
    desktop.world.network.delay = 1000;
    peer.Receiver.Get()->Command2.Click.raise();
    desktop.settle();
    desktop.settle();
    moment(desk.Status.Get(), "sending");
    desktop.world.network.delay = 0;
    desktop.world.time.run(std::chrono::seconds(20));
    desktop.settle();

    peer.Offers().SendData("address-of-Maria", "", false, false);
    peer.Dialog.Get()->AddFiles({song});
    peer.Dialog.Get()->Command4.Click.raise();
    moment(desk.Receiver.Get(), "receive-question");
    desktop.world.network.delay = 1000;
    desk.Receiver.Get()->Command2.Click.raise();
    desktop.settle();
    desktop.settle();
    moment(desk.Receiver.Get(), "receiving");
    desktop.world.network.delay = 0;
    desktop.world.time.run(std::chrono::seconds(20));
    desktop.settle();
    desktop.client.window().mnuTransfers.Click.raise();
    if (FormView* history = desktop.viewOf(desk.Transfers.Get())) {
        auto* list = history->findChild<QTreeView*>();
        list->setFocus();
        list->setCurrentIndex(list->model()->index(0, 0));
        ListView& files = desk.Transfers.Get()->ListView1;
        files.userClicks(files.ListItems(1));
    }
    moment(desk.Transfers.Get(), "transfers");
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

void takeHost(DesktopWorld& desktop, Photographer& photographer) {
    std::vector<SettingsWindow::Page> pages;
    pages.push_back({QStringLiteral("Talvora IRC"), desktop.face.icons["IRC"],
                     desktop.face.pages["TalvoraClient.Settings"]()});
    pages.push_back(
        {QStringLiteral("Network"), {}, std::make_unique<NetworkPage>(desktop.client.profile, "")});
    pages.push_back(
        {QStringLiteral("Notices"), {}, std::make_unique<NoticesPage>(desktop.client.around.settings)});
    SettingsWindow settings(std::move(pages), {[] {}, [] {}});
    settings.show();
    auto* list = settings.findChild<QListWidget*>();
    for (int page = 0; page < list->count(); ++page) {
        list->setCurrentRow(page);
        desktop.settle();
        photographer.take(&settings, ("settings-" + std::to_string(page + 1)).c_str());
    }
    if (auto* tabs = settings.findChild<QTabWidget*>()) {
        list->setCurrentRow(0);
        for (int tab = 1; tab < tabs->count(); ++tab) {
            tabs->setCurrentIndex(tab);
            desktop.settle();
            photographer.take(&settings, ("settings-1-" + std::to_string(tab + 1)).c_str());
        }
    }
    Welcome welcome(desktop.client.around.settings, desktop.client.profile, "");
    welcome.show();
    desktop.settle();
    photographer.take(&welcome, "welcome");

    QtQuestions questions;
    MessageBox box{
        "WARNING! A critical error has occured on Talvora core!\r\n\r\nDescription: Path not "
        "found\r\nNumber: 76",
        "Critical error", Buttons::AbortRetryIgnore, MessageIcon::Critical};
    box.Suppressed = 3;
    desktop.client.around.platform.TheLoop.Defer([] {});
    QTimer::singleShot(300, [&] {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (!window->isVisible() || window->windowTitle() != QStringLiteral("Critical error")) continue;
            photographer.take(window, "report");
            window->close();
        }
    });
    questions.Ask(box);
}

int run(const QString& folder, bool dark) {
    QDir().mkpath(folder);
    if (dark) QApplication::setPalette(darkPalette());
    const bool large = QApplication::primaryScreen()->devicePixelRatio() > 1.5;
    Photographer photographer(folder, QStringLiteral("%1%2").arg(dark ? QStringLiteral("-dark") : QString(),
                                                                 large ? QStringLiteral("@2x") : QString()));
    DesktopWorld desktop;
    furnish(desktop);
    putMails(desktop);
    desktop.logOn();
    desktop.says(":srv 266 Maria :Current global users: 5007  Max: 5100");
    fillChannel(desktop);
    takePeople(desktop, photographer);
    takeMails(desktop, photographer);
    takeSmall(desktop, photographer);
    takeAnnouncements(desktop, photographer);
    takeTransfers(desktop, photographer);
    takeScripts(desktop, photographer);
    takeBar(desktop, photographer);
    takeHost(desktop, photographer);
    takeChats(desktop, photographer);
    return photographer.Complete() ? 0 : 1;
}

}  // namespace
}  // namespace talvora::test

int main(int argc, char** argv) {
    talvora::GuardedApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setQuitOnLastWindowClosed(false);
    if (argc < 2) {
        std::fputs("usage: windows_pictures DIR [dark]\n", stderr);
        return 2;
    }
    return talvora::test::run(QString::fromLocal8Bit(argv[1]),
                              argc > 2 && std::string_view(argv[2]) == "dark");
}
