#include "mail/MailPanel.h"

#include <algorithm>
#include <utility>

#include "platform/Text.h"

namespace talvora {

namespace {

constexpr Colour Red = 255;

const char* wordsFor(OutgoingState state) {
    switch (state) {
        case OutgoingState::Waiting:
            return "Waiting for its turn";
        case OutgoingState::Sending:
            return "Being sent";
        case OutgoingState::Confirming:
            return "Sent, not confirmed yet";
        case OutgoingState::Refused:
            return "Refused by the message server; is tried again";
        case OutgoingState::NotQueued:
            break;
    }
    return "Not in the queue: it will not be sent";
}

}  // namespace

MailPanel::MailPanel(const MailSurroundings& around, MailStatus& status, modMailManager& manager,
                     MailDrafts& drafts, MailWindows& windows)
    : Status(status),
      tmrAges(around.ThePlatform, 60000),
      globError_(around.Reporter),
      settings_(around.Settings),
      gate_(around.Gate),
      asking_(around.ThePlatform.Asking),
      files_(around.ThePlatform.ProgramFiles),
      clock_(around.ThePlatform.WallClock),
      manager_(manager),
      drafts_(drafts),
      windows_(windows),
      headers_(around.Reporter, around.ThePlatform.ProgramFiles) {
    mnuView.Caption = "&View";
    mnuReply.Caption = "&Reply";
    mnuDelMsg.Caption = "&Erase";
    mnuDelAll.Caption = "Erase &all";
    mnuNew.Caption = "&New message";
    connectHands();
}

void MailPanel::connectHands() {
    on_ += MailBtn.Click.connect([this](int index) { MailBtn_Click(index); });
    on_ += ListView3.DblClick.connect([this] { ListView3_DblClick(); });
    on_ += mnuView.Click.connect([this] { ListView3_DblClick(); });
    on_ += mnuReply.Click.connect([this] { mnuReply_Click(); });
    on_ += mnuDelMsg.Click.connect([this] { mnuDelMsg_Click(); });
    on_ += mnuDelAll.Click.connect([this] { mnuDelAll_Click(); });
    on_ += mnuNew.Click.connect([this] { windows_.Write("", "", false, ""); });
    on_ += txtFilter.Text.Changed.connect([this](const std::string&) { RefreshMailList(); });
    on_ += ListView3.ColumnClick.connect([this](int head) { chooseColumn(head); });
    on_ += tmrAges.Tick.connect([this] { showAges(); });
    on_ += drafts_.Changed.connect([this] { refreshDrafts(); });
    on_ += Status.Label7.Caption.Changed.connect([this](const std::string&) { outgoingChanged(); });
}

void MailPanel::Load() {
    RefreshMailList();
    refreshDrafts();
    tmrAges.Enabled = true;
}

// ---- The list

void MailPanel::RefreshMailList() {
    trapped(globError_, "RefreshMailList", [&](Trap& step) {
        if (MailFolder == Announcements) return ListView3.ListItems.Clear();
        ListView3.ColumnHeaders = headings();
        mnuReply.Visible = MailFolder == Incoming;
        std::vector<const MailHeader*> headers;
        if (!step([&] { headers = headers_.Read(MailFolder == Incoming ? 'i' : 'o'); })) return;
        const Count count = MailFolder == Incoming ? countOf(headers) : Count{};
        showRows(std::move(headers));
        showSummary(count);
        if (MailFolder != Incoming) return countUnread();
        UnreadCount = count.fresh;
        if (std::exchange(LastNewCount, count.fresh) == count.fresh || count.fresh == 0) return;
        tellOfNew(count);
    });
}

MailPanel::Count MailPanel::countOf(const std::vector<const MailHeader*>& headers) {
    Count count;
    for (const MailHeader* header : headers) {
        if (header->Damaged || header->Incoming.Read) continue;
        ++count.fresh;
        if (header->Incoming.Urgent) ++count.urgent;
        count.names.push_back(header->Name);
    }
    return count;
}

void MailPanel::countUnread() {
    UnreadCount = countOf(headers_.Read('i')).fresh;
}

std::vector<std::string> MailPanel::headings() const {
    const bool incoming = MailFolder == Incoming;
    return {"", incoming ? "From" : "To", "Received", "Sent", "Subject", "Size", incoming ? "Age" : "State"};
}

ListRow MailPanel::rowOf(const MailHeader& header, const DateTime& now) const {
    return MailFolder == Incoming ? incomingRow(header, now) : outgoingRow(header);
}

// A read mail has the picture of a read one, urgent or not; the mark in front stays.
ListRow MailPanel::incomingRow(const MailHeader& header, const DateTime& now) const {
    const MailFile::Summary& mail = header.Incoming;
    ListRow row;
    row.Key = row.Tag = header.Name;
    row.Text = mail.Urgent ? "!" : "";
    row.SmallIcon = mail.Read     ? MailPicture::Read
                    : mail.Urgent ? MailPicture::UnreadUrgent
                                  : MailPicture::Unread;
    row.SubItems = {mail.From,
                    mail.Received,
                    mail.Sent,
                    mail.Subject,
                    SizeText(header.Size),
                    header.ReceivedAt ? AgeText(*header.ReceivedAt, now) : std::string()};
    row.Bold = !mail.Read && !header.Damaged;
    if (header.Damaged) row.ToolTipText = "This file is damaged";
    return row;
}

// It has no key, on purpose: opening it ends in nothing, and erasing it alone is a fault.
ListRow MailPanel::outgoingRow(const MailHeader& header) const {
    ListRow row;
    row.Tag = header.Name;
    row.SmallIcon = MailPicture::Outgoing;
    row.SubItems = {header.Outgoing.To,
                    "-",
                    "-",
                    header.Outgoing.Subject,
                    SizeText(header.Size),
                    wordsFor(manager_.StateOf(header.Name))};
    return row;
}

bool MailPanel::passes(const ListRow& row) const {
    const std::string& wanted = txtFilter.Text;
    return wanted.empty() || std::ranges::any_of(row.SubItems, [&](const std::string& text) {
               return InStr(text, wanted, Compare::Text) != 0;
           });
}

void MailPanel::showRows(std::vector<const MailHeader*> headers) {
    sortBy(headers);
    const DateTime now = clock_.Now();
    std::vector<ListRow> rows;
    rows.reserve(headers.size());
    for (const MailHeader* header : headers) {
        ListRow row = rowOf(*header, now);
        if (passes(row)) rows.push_back(std::move(row));
    }
    ListView3.Refresh(rows);
    showEmpty(!headers.empty());
}

// By what a column means, not by its letters: dates and sizes by their order.
void MailPanel::sortBy(std::vector<const MailHeader*>& headers) const {
    if (sortColumn_ < 0) return;
    const bool incoming = MailFolder == Incoming;
    const auto text = [&](const MailHeader& header) -> const std::string& {
        if (sortColumn_ == 3) return header.Incoming.Sent;
        if (sortColumn_ == 4) return incoming ? header.Incoming.Subject : header.Outgoing.Subject;
        return incoming ? header.Incoming.From : header.Outgoing.To;
    };
    const auto before = [&](const MailHeader* a, const MailHeader* b) {
        if (sortColumn_ == 0) return a->Incoming.Urgent > b->Incoming.Urgent;
        if (sortColumn_ == 2) return a->ReceivedAt < b->ReceivedAt;
        if (sortColumn_ == 5) return a->Size < b->Size;
        if (sortColumn_ == 6) return a->ReceivedAt > b->ReceivedAt;
        return CompareText(text(*a), text(*b)) < 0;
    };
    std::ranges::stable_sort(headers, [&](const MailHeader* a, const MailHeader* b) {
        return descending_ ? before(b, a) : before(a, b);
    });
}

void MailPanel::chooseColumn(int head) {
    const int column = head - 1;
    descending_ = column == sortColumn_ && !descending_;
    sortColumn_ = column;
    ListView3.SortKey = column;
    ListView3.SortOrder = descending_ ? SortOrder::Descending : SortOrder::Ascending;
    ListView3.InOrder = true;
    RefreshMailList();
}

void MailPanel::showEmpty(bool any) {
    if (any) {
        lblEmpty.Caption = "No message holds this text.";
    } else if (MailFolder == Incoming) {
        lblEmpty.Caption = "No messages yet. What others write to you while you are away arrives here.";
    } else {
        lblEmpty.Caption = "Nothing waits to be sent.";
    }
    lblEmpty.Visible = ListView3.ListItems.Count() == 0;
}

// What waits changes its state without any change in the folder.
void MailPanel::outgoingChanged() {
    if (MailFolder != Outgoing) return;
    for (int i = 1; i <= ListView3.ListItems.Count(); ++i) {
        ListItem& row = ListView3.ListItems(i);
        row.SetSubItem(6, wordsFor(manager_.StateOf(row.Tag())));
    }
}

void MailPanel::showAges() {
    if (MailFolder != Incoming) return;
    const DateTime now = clock_.Now();
    for (int i = 1; i <= ListView3.ListItems.Count(); ++i) {
        ListItem& row = ListView3.ListItems(i);
        const MailHeader* header = headers_.Known(row.Tag());
        if (header != nullptr && header->ReceivedAt) row.SetSubItem(6, AgeText(*header->ReceivedAt, now));
    }
}

void MailPanel::refreshDrafts() {
    draftClicks_.clear();
    while (mnuDraft.UBound() >= 0) mnuDraft.Unload(mnuDraft.UBound());
    int index = 0;
    for (const MailDrafts::Entry& draft : drafts_.Waiting()) {
        Menu& entry = mnuDraft.Load(index++);
        entry.Caption = (draft.To.empty() ? "(nobody yet)" : draft.To) + ": " + draft.Subject;
        entry.Tag = draft.Name;
        draftClicks_ +=
            entry.Click.connect([this, name = draft.Name] { windows_.OpenDraft(std::string(name)); });
    }
    mnuDrafts.Caption = "&Drafts (" + CStr(index) + ")";
    mnuDrafts.Visible = index > 0;
}

// ---- News in words

void MailPanel::showSummary(const Count& count) {
    const std::string& tab = MailBtn.Captions()[MailFolder];
    const bool urgent = count.fresh > 0 && count.urgent > 0;
    if (count.fresh == 0) {
        Label9.Caption = tab + ": There are no new messages";
    } else if (urgent) {
        Label9.Caption = tab + ": You have" + Str(count.urgent) + " urgent message(s)!";
    } else {
        Label9.Caption = tab + ": You have" + Str(count.fresh) + " new messages(s)";
    }
    Label9.ForeColor = urgent ? std::optional<Colour>(Red) : std::nullopt;
    Label9.FontBold = urgent;
}

void MailPanel::tellOfNew(const Count& count) {
    if (settings_.Get(Section::Settings, "DisplayMail", "F") == "T") {
        for (const std::string& name : std::vector(
                 count.names.begin(),
                 count.names.begin() + std::min<std::ptrdiff_t>(std::ssize(count.names), MostDisplayed))) {
            windows_.View(name);
        }
    }
    if (settings_.Get(Section::Settings, "PopupMail", "T") == "F") return;
    std::string text = "You have" + Str(count.fresh) + " new message(s)";
    if (count.urgent > 0) text += " and" + Str(count.urgent) + " urgent!";
    Notice notice;
    notice.Title = "New message";
    notice.Text = std::move(text);
    notice.Window = MailFile::PathOf(count.names.back());
    gate_.NotifyHost(notice);
}

// ---- The user's hands

void MailPanel::MailBtn_Click(int index) {
    trapped(globError_, "MailBtn_Click", [&](Trap&) {
        MailFolder = static_cast<std::uint8_t>(std::clamp<int>(index, Incoming, Announcements));
        picAnnVisible = MailFolder == Announcements;
        ListView3Visible = MailFolder != Announcements;
        RefreshMailList();
        MailBtn.Selected = MailFolder;
    });
}

void MailPanel::ListView3_DblClick() {
    trapped(globError_, "ListView3_DblClick", [&](Trap&) {
        if (ListView3.SelectedItem == nullptr) return;
        windows_.View(std::string(ListView3.SelectedItem->Key()));
        RefreshMailList();
    });
}

// The mail's text is quoted by its viewer alone.
void MailPanel::mnuReply_Click() {
    trapped(globError_, "mnuReply_Click", [&](Trap&) {
        if (ListView3.SelectedItem == nullptr || MailFolder != Incoming) return;
        windows_.Reply(std::string(ListView3.SelectedItem->Key()));
        RefreshMailList();
    });
}

bool MailPanel::sure(const std::string& text, const std::string& title) {
    MessageBox question;
    question.Text = text;
    question.Title = title;
    question.Choices = Buttons::YesNo;
    question.Icon = MessageIcon::Question;
    return asking_.Ask(question) == Answer::Yes;
}

// The title is that of "erase all", for a single message too.
void MailPanel::mnuDelMsg_Click() {
    trapped(globError_, "mnuDelMsg_Click", [&](Trap& step) {
        if (ListView3.SelectedItem == nullptr) return;
        const std::string key = ListView3.SelectedItem->Key();
        if (!sure("Do you really want to erase this message?", "Erase all")) return;
        manager_.CancelMailSend();
        step([&] { files_.Kill(MailFile::PathOf(key)); });
        RefreshMailList();
    });
}

void MailPanel::mnuDelAll_Click() {
    trapped(globError_, "mnuDelAll_Click", [&](Trap& step) {
        const bool incoming = MailFolder == Incoming;
        const std::string kind = incoming ? "incoming" : "outgoing";
        if (!sure("Do you really want to erase all " + kind + " messages?", "Erase all")) return;
        manager_.CancelMailSend();
        std::vector<std::string> names;
        step([&] { names = files_.List("Mail", incoming ? "i*.qrm" : "o*.qrm"); });
        for (const std::string& name : names) {
            step([&] { files_.Kill(MailFile::PathOf(name)); });
        }
        RefreshMailList();
    });
}

}  // namespace talvora
