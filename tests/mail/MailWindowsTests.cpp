#include "Vocabulary.h"
#include "mail/MailFile.h"
#include "simulation/World.h"

namespace talvora::test {
namespace {

std::string mailFrom(const std::string& nick, const std::string& subject, const std::string& body = "text") {
    return MailFile::IncomingHead(nick, "14/03/2026 08:30:00", "13/03/2026 22:00:00", subject) + body +
           "\r\n" + std::string(MailFile::Tail);
}

// A client with these files in its mail folder.
Client& withMail(World& world, const std::vector<std::pair<std::string, std::string>>& files) {
    Client& maria = world.client("Maria");
    maria.around.disk.put("Mail/.keep", "");
    for (const auto& [name, content] : files) maria.around.disk.put("Mail/" + name, content);
    maria.host.send(HostMsg::Start);
    world.time.settle();
    return maria;
}

std::vector<std::string> column(ListView& list, std::size_t number) {
    std::vector<std::string> texts;
    for (int i = 1; i <= list.ListItems.Count(); ++i) texts.push_back(list.ListItems(i).SubItems(number));
    return texts;
}

TEST(MailList, ShowsCountsSortsFiltersAndTellsOnlyOfAChangedCount) {
    World world;
    Client& maria = withMail(world, {{"i2.qrm", mailFrom("Nikos", "Urgent:Now")},
                                     {"i10.qrm", mailFrom("Anna", "Dinner")},
                                     {"i3.qrm", MailFile::Open(mailFrom("Zoe", "Old"))->Copy},
                                     {"o1.qrm", "Zoe 1 Urgent:Mine:48:E\r\na\r\n\r\n"}});
    MailPanel& panel = maria.component->Mails().Panel;
    EXPECT_THAT(maria.host.take(),
                Contains(HasSubstr("Notice(New message, You have 2 new message(s) and 1 urgent!")));
    EXPECT_EQ(panel.Label9.Caption.get(), "Incoming: You have 1 urgent message(s)!");
    EXPECT_TRUE(panel.Label9.FontBold);
    EXPECT_EQ(panel.UnreadCount, 2);
    EXPECT_THAT(column(panel.ListView3, 1), ElementsAre("Nikos", "Zoe", "Anna"));
    EXPECT_THAT(column(panel.ListView3, 6), ElementsAre("30 min", "30 min", "30 min"));
    world.time.run(5min);
    EXPECT_THAT(column(panel.ListView3, 6), ElementsAre("35 min", "35 min", "35 min"));
    maria.host.take();
    EXPECT_EQ(panel.ListView3.ListItems(1).SmallIcon(), MailPicture::UnreadUrgent);
    EXPECT_EQ(panel.ListView3.ListItems(2).SmallIcon(), MailPicture::Read);

    panel.ListView3.userSelects(panel.ListView3.ListItems(3));
    panel.RefreshMailList();
    EXPECT_THAT(maria.host.take(), IsEmpty());
    EXPECT_EQ(panel.ListView3.SelectedItem->Key(), "i10.qrm");
    panel.ListView3.ColumnClick.raise(2);
    EXPECT_THAT(column(panel.ListView3, 1), ElementsAre("Anna", "Nikos", "Zoe"));
    EXPECT_EQ(panel.ListView3.SelectedItem->Key(), "i10.qrm");
    panel.txtFilter.Text = "DINN";
    EXPECT_THAT(column(panel.ListView3, 1), ElementsAre("Anna"));

    panel.ListView3_DblClick();
    EXPECT_EQ(panel.UnreadCount, 1);
    EXPECT_THAT(maria.host.take(), ElementsAre(HasSubstr("You have 1 new message(s) and 1 urgent!")));
    panel.txtFilter.Text = "";
    panel.MailBtn.userClicks(MailPanel::Outgoing);
    EXPECT_THAT(column(panel.ListView3, 4), ElementsAre("Urgent:Mine:48:E"));
    EXPECT_THAT(column(panel.ListView3, 6), ElementsAre("Not in the queue: it will not be sent"));
    EXPECT_EQ(panel.Label9.Caption.get(), "Outgoing: There are no new messages");
    EXPECT_EQ(panel.ListView3.ListItems(1).Key(), "");
}

TEST(MailList, ADamagedFileIsReportedOnceAndHidesNoOther) {
    World world;
    Client& maria = world.client("Maria");
    maria.around.questions.answerFaults(Answer::Abort);
    for (const char* damage : {"", "x\r\n", "a\r\nb\r\nc\r\n"}) {
        static int number = 1;
        maria.around.disk.put("Mail/i" + std::to_string(number++) + ".qrm", damage);
    }
    maria.around.disk.put("Mail/i9.qrm", mailFrom("Nikos", "Good"));
    maria.host.send(HostMsg::Start);
    MailPanel& panel = maria.component->Mails().Panel;
    EXPECT_THAT(column(panel.ListView3, 4), ElementsAre("", "", "", "Good"));
    EXPECT_EQ(panel.UnreadCount, 1);
    panel.RefreshMailList();
    EXPECT_EQ(maria.around.questions.asked.size(), 3U);
}

TEST(MailList, MayChangeWhileADamagedMailIsReported) {
    World world;
    Client& maria = withMail(world, {{"i1.qrm", mailFrom("Nikos", "Good")}});
    MailPanel& panel = maria.component->Mails().Panel;
    maria.around.disk.put("Mail/i2.qrm", "x\r\n");
    maria.around.disk.put("Mail/i3.qrm", mailFrom("Anna", "Later"));
    maria.around.questions.willAnswer(Answer::Ignore, [&] {
        maria.around.files.Kill("Mail\\i2.qrm");
        panel.RefreshMailList();
    });
    panel.RefreshMailList();
    EXPECT_THAT(column(panel.ListView3, 4), ElementsAre("Good", "Later"));
    panel.RefreshMailList();
    EXPECT_EQ(panel.UnreadCount, 2);
}

TEST(MailViewer, OpensByTheHostAnswersAndErases) {
    World world;
    Client& maria = withMail(world, {{"i1.qrm", mailFrom("Nikos;Anna", "RE: Urgent:x", "a[#n]b")},
                                     {"o1.qrm", "Zoe 1 s\r\na\r\n\r\n"}});
    MailDesk& mails = maria.component->Mails();
    maria.host.send(HostMsg::OpenMail, std::string("/home/maria/Mail/o1.qrm"));
    EXPECT_THAT(mails.Viewers.Forms(), IsEmpty()) << "what is no mail closes without a word";
    maria.host.send(HostMsg::OpenMail, std::string("C:\\Talvora\\Mail\\i1.qrm"));
    frmViewMail& viewer = *mails.Viewers.Forms().at(0);
    EXPECT_EQ(viewer.Caption.get(), "Message from Nikos;Anna, sent at 14/03/2026 08:30:00");
    EXPECT_EQ(viewer.RichTextBox1.Text(), "a\r\nb");
    viewer.pic[0].Click.raise();
    EXPECT_THAT(mails.Viewers.Forms(), IsEmpty());
    frmSendMail& answer = *mails.Composers.Forms().at(0);
    EXPECT_EQ(answer.Text1.Text.get(), "Nikos");
    EXPECT_EQ(answer.Text2.Text.get(), "RE: RE: Urgent:x");
    EXPECT_EQ(answer.RichTextBox1.Text(),
              "\r\n\r\nOriginal Message from Nikos;Anna, sent at 14/03/2026 08:30:00\r\n> a\r\n> b");
    maria.host.send(HostMsg::OpenMail, std::string("i1.qrm"));
    maria.around.questions.willAnswer(Answer::Yes);
    mails.Viewers.Forms().at(0)->pic[1].Click.raise();
    EXPECT_FALSE(maria.around.disk.content("Mail/i1.qrm"));
}

TEST(MailComposer, EachRecipientGetsAFileAndTheDraftGoes) {
    World world;
    Client& maria = withMail(world, {});
    MailDesk& mails = maria.component->Mails();
    mails.Panel.mnuNew.Click.raise();
    frmSendMail& form = *mails.Composers.Forms().at(0);
    ToolbarButton& send = form.Toolbar1.Buttons(ComposerButton::Send);
    EXPECT_FALSE(send.Enabled);
    form.RichTextBox1.userTypes("Hello");
    maria.around.questions.willAnswer(Answer::Ok);
    maria.around.questions.willAnswer(Answer::Ok);
    form.Toolbar1.userPresses(send);
    form.UserClick("Nikos");
    form.UserClick("niko");
    EXPECT_EQ(form.Text1.Text.get(), "Nikos");
    form.Toolbar1.userPresses(send);
    form.Text1.Text = "Nikos[AWAY]; Anna;;";
    form.Text2.Text = "Dinner";
    world.time.run(3s);
    EXPECT_TRUE(maria.around.disk.content("Mail/d1.dft"));
    EXPECT_EQ(form.lblEstimate.Caption.get(), "1 line, about 2 seconds");
    form.Toolbar1.userPresses(form.Toolbar1.Buttons(ComposerButton::Expiration));
    frmExpire& expire = mails.Expire.Load();
    expire.Check1.Value = true;
    expire.Text1.Text = "2";
    expire.List1.ListIndex = 1;
    expire.Command1.Click.raise();
    EXPECT_EQ(form.ExpireHours, 48);
    form.Toolbar1.userPresses(send);
    EXPECT_THAT(mails.Composers.Forms(), IsEmpty());
    EXPECT_EQ(maria.around.disk.content("Mail/o1.qrm"), "Nikos 1 Dinner:48:E\r\nHello\r\n\r\n");
    EXPECT_EQ(maria.around.disk.content("Mail/o2.qrm"), "Anna 1 Dinner:48:E\r\nHello\r\n\r\n");
    EXPECT_FALSE(maria.around.disk.content("Mail/d1.dft"));
    EXPECT_EQ(mails.Manager.gSendQueue, "o1.qrm|o2.qrm|");
    EXPECT_THAT(mails.Recipients.Matches("a"), ElementsAre("Anna"));
}

TEST(MailComposer, WhatCouldNotBeWrittenStays) {
    World world;
    Client& maria = withMail(world, {});
    maria.around.questions.answerFaults(Answer::Abort);
    MailDesk& mails = maria.component->Mails();
    mails.Panel.mnuNew.Click.raise();
    frmSendMail& form = *mails.Composers.Forms().at(0);
    form.Text1.Text = "Nikos";
    form.Text2.Text = "s";
    form.RichTextBox1.userTypes("Hello");
    maria.around.settings.FailNextSave();
    form.Toolbar1.userPresses(form.Toolbar1.Buttons(ComposerButton::Send));
    EXPECT_FALSE(form.IsUnloaded());
    form.Unload(CloseReason::UserClosesBox);
    EXPECT_EQ(mails.Panel.mnuDraft(0).Caption.get(), "Nikos: s");
    mails.Panel.mnuDraft(0).Click.raise();
    EXPECT_EQ(mails.Composers.Forms().at(0)->RichTextBox1.Text(), "Hello");
    EXPECT_FALSE(mails.Panel.mnuDrafts.Visible);
}

TEST(MailExpire, TheLargestUnitThatFitsRounded) {
    struct Case {
        std::int32_t hours;
        const char* text;
        int unit;
    };
    World world;
    Client& maria = withMail(world, {});
    frmExpire& form = maria.component->Mails().Expire.Load();
    for (const auto& [hours, text, unit] :
         {Case{0, "0", 0}, {23, "23", 0}, {30, "1", 1}, {48, "2", 1}, {168, "1", 2}, {720, "1", 3}}) {
        form.Display(hours);
        EXPECT_EQ(form.Text1.Text.get(), text) << hours;
        EXPECT_EQ(form.List1.ListIndex, unit) << hours;
        EXPECT_EQ(form.Check1.Value, hours != 0);
    }
}

}  // namespace
}  // namespace talvora::test
