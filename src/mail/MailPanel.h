#pragma once
// The main window's mail area: the tabs, the list of mails with its filter and its order, the summary in
// words, and the menu of a row. The composition owns it for the component's life; the main window shows it.

#include <cstdint>
#include <string>
#include <vector>

#include "common/Trap.h"
#include "mail/MailDrafts.h"
#include "mail/MailHeaders.h"
#include "mail/MailSession.h"
#include "mail/MailStatus.h"
#include "mail/MailWindows.h"
#include "mail/modMailManager.h"
#include "platform/Bars.h"
#include "platform/Controls.h"
#include "platform/ListView.h"
#include "platform/Timer.h"

namespace talvora {

// The pictures of ListView3.
namespace MailPicture {
inline constexpr int Unread = 1;
inline constexpr int Read = 2;
inline constexpr int UnreadUrgent = 3;
inline constexpr int Outgoing = 5;
}  // namespace MailPicture

class MailPanel {
  public:
    // The tabs of MailBtn, and the values of MailFolder.
    static constexpr std::uint8_t Incoming = 0;
    static constexpr std::uint8_t Outgoing = 1;
    static constexpr std::uint8_t Announcements = 2;

    MailPanel(const MailSurroundings& around, MailStatus& status, modMailManager& manager, MailDrafts& drafts,
              MailWindows& windows);

    MailStatus& Status;
    TabStrip MailBtn{{"Incoming", "Outgoing", "Announcements"}};
    // A row: "!" if it is urgent, then sender or recipient, received, sent, subject, size, and age or what
    // the mail waits for. The key of an incoming mail is its file's name; an outgoing one has none.
    ListView ListView3;
    Property<bool> ListView3Visible{true};
    Property<bool> picAnnVisible{false};  // the announcements' place
    Label Label9;                         // the summary in words
    Label lblEmpty{""};                   // why the list is empty; hidden while it is not
    TextBox txtFilter;                    // shows the mails alone that hold this text
    Menu popMail;                         // of a row, with these entries:
    Menu mnuView;
    Menu mnuReply;
    Menu mnuDelMsg;
    Menu mnuDelAll;
    Menu mnuNew;                  // writes a mail
    Menu mnuDrafts;               // of the drafts that wait, with an entry each; hidden without any
    ControlArray<Menu> mnuDraft;  // in Tag the draft's file

    std::uint8_t MailFolder = Incoming;
    // Unread mails, whatever tab is chosen.
    Property<int> UnreadCount{0};

    void RefreshMailList();
    // At the start: what the folder holds is shown.
    void Load();
    void MailBtn_Click(int index);
    // What Enter and a double click do to the selected row.
    void ListView3_DblClick();
    void mnuDelMsg_Click();
    void mnuDelAll_Click();
    void mnuReply_Click();

    Timer tmrAges;  // what stands in the list grows older

    // More viewers than this are not opened by themselves.
    static constexpr int MostDisplayed = 20;

  private:
    struct Count {
        int fresh = 0;
        int urgent = 0;
        std::vector<std::string> names;  // of the new mails
    };
    void connectHands();
    ListRow rowOf(const MailHeader& header, const DateTime& now) const;
    ListRow incomingRow(const MailHeader& header, const DateTime& now) const;
    ListRow outgoingRow(const MailHeader& header) const;
    void showRows(std::vector<const MailHeader*> headers);
    bool passes(const ListRow& row) const;
    void sortBy(std::vector<const MailHeader*>& headers) const;
    void showEmpty(bool any);
    void showSummary(const Count& count);
    void tellOfNew(const Count& count);
    void countUnread();
    void outgoingChanged();
    void showAges();
    void chooseColumn(int head);
    void refreshDrafts();
    std::vector<std::string> headings() const;
    bool sure(const std::string& text, const std::string& title);
    static Count countOf(const std::vector<const MailHeader*>& headers);

    GlobError& globError_;
    ComponentSettings& settings_;
    HostGate& gate_;
    Questions& asking_;
    Files& files_;
    Clock& clock_;
    modMailManager& manager_;
    MailDrafts& drafts_;
    MailWindows& windows_;
    MailHeaders headers_;
    int LastNewCount = 0;
    int sortColumn_ = -1;  // none: as the mails came
    bool descending_ = false;
    Subscriptions on_;
    Subscriptions draftClicks_;
};

}  // namespace talvora
