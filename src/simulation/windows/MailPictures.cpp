// Mail and announcements.

#include <QTabWidget>

#include "platform/Text.h"
#include "simulation/windows/Pictures.h"

namespace talvora::test {

namespace {

std::string incomingMail(const char* from, const char* subject, const char* received, const char* text,
                         bool read) {
    const std::string content = MailFile::IncomingHead(greek(from), received, received, greek(subject)) +
                                greek(text) + "\r\n" + std::string(MailFile::Tail);
    return read ? MailFile::Open(content)->Copy : content;
}

}  // namespace

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

}  // namespace talvora::test
