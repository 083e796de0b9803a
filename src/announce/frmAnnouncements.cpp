#include "announce/frmAnnouncements.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/Text.h"

namespace talvora {

namespace {

const std::string ExpiredText = "(Expired)";

bool holds(const std::string& text, const std::string& what) {
    return InStr(text, what, Compare::Text) != 0;
}

bool sameHour(const DateTime& a, const DateTime& b) {
    return DateDiffHours(a, b) == 0;
}

// The classic list's words for what is left.
std::string remainingText(std::int64_t hours) {
    if (hours < 0) return ExpiredText;
    return hours == 0 ? "(Now)" : CStr(hours) + " hours";
}

// Texts that stand in order as what they tell does.
std::string inOrder(std::int64_t hours) {
    // From 0 on, so that what has expired stands first.
    constexpr std::int64_t zero = 1'000'000'000'000;
    return CStr(zero + hours);
}

std::string inOrder(const DateTime& date) {
    std::string text = CStr(10000 + date.Year);
    for (const int part : {date.Month, date.Day, date.Hour, date.Minute, date.Second})
        text += CStr(100 + part).substr(1);
    return text;
}

}  // namespace

frmAnnouncements::frmAnnouncements(Platform& platform, GlobError& globError, modAnnounceManager& manager,
                                   picAnn& panel)
    : platform_(platform), globError_(globError), manager_(manager), panel_(panel) {
    Caption = "Announcements";
    Text1.Locked = true;
    ListView1.SetSmallIcons(Pictures);
    ListView1.ColumnHeaders = {"From", "Posted", "Expires in", "Text", "Left"};
    on_ += ListView1.ItemClick.connect([this](ListItem&) { showChosen(); });
    on_ += ListView1.ColumnClick.connect([this](int column) { ListView1_ColumnClick(column); });
    on_ += Filter.Text.Changed.connect([this](const std::string&) { fill(); });
    on_ += Command1.Click.connect([this] { Hide(); });
    on_ += Command2.Click.connect([this] { Command2_Click(); });
    on_ += Command3.Click.connect([this] {
        manager_.RemoveExpired();
        LoadList();
    });
    on_ += manager_.Stored.connect([this](const std::string& line) { arrived(line); });
}

void frmAnnouncements::Form_QueryUnload(bool& cancel, CloseReason reason) {
    if (reason != CloseReason::UserClosesBox) return;
    cancel = true;
    Hide();
}

// ---- Reading the list

void frmAnnouncements::LoadList() {
    trapped(globError_, "LoadList", [&](Trap& step) {
        rows_.clear();
        latest_ = {};
        fault_.reset();
        readAt_ = platform_.WallClock.Now();
        step([&] {
            rows_.clear();
            latest_ = {};
            manager_.ForEach([this](int number, const std::string& line) { add(number, line); });
        });
        fill();
        showLatest();
        reportFault(step);
    });
}

void frmAnnouncements::reportFault(Trap& step) {
    if (fault_ && manager_.ReportsUnreadable()) step([&] { throw RuntimeError(*fault_); });
}

void frmAnnouncements::add(int number, const std::string& line) {
    rows_.push_back(rowOf(number, line));
}

ListRow frmAnnouncements::rowOf(int number, const std::string& line) {
    ListRow row;
    row.Key = line;
    row.Tag = CStr(number);
    try {
        readParts(row, StoredAnnouncement::Read(line));
    } catch (const RuntimeError& fault) {
        if (!fault_) fault_ = fault;
        if (row.SubItems.empty()) {
            row.Text = "(Unreadable)";
            row.SubItems = {"", "(Unknown)", "This announcement arrived damaged: " + line, "unknown"};
        }
    }
    return row;
}

// Shows what can be read before it reads what may fault.
void frmAnnouncements::readParts(ListRow& row, const StoredAnnouncement& told) {
    row.Text = told.Poster;
    row.SubItems = {told.Date, "(Unknown)", told.ShownText(), "unknown"};
    row.ToolTipText = told.Date;
    row.SortTexts.resize(row.SubItems.size() + 1);
    row.SmallIcon = told.TheCategory() + 1;
    const std::int64_t age = told.Age(readAt_);
    row.SortTexts[DateColumn] = inOrder(CDate(told.Date));
    const std::int64_t remaining = told.Remaining(age);
    row.SortTexts[RemainingColumn] = row.SortTexts[WordsColumn] = inOrder(remaining);
    row.SubItems[RemainingColumn - 1] = remainingText(remaining);
    row.SubItems[WordsColumn - 1] = HoursInWords(remaining);
    if (remaining < 0) {
        row.SmallIcon = ExpiredPicture;
    } else {
        noteLatest(told, age);
    }
}

// Among equal ages the last of the list.
void frmAnnouncements::noteLatest(const StoredAnnouncement& told, std::int64_t age) {
    if (latest_.Age && age > *latest_.Age) return;
    latest_ = {age, told.Poster + " at " + told.Date + " posted:", told.ShownText()};
}

void frmAnnouncements::showLatest() {
    panel_.Label17.Caption = latest_.WhoAndWhen;
    panel_.Label16.Caption = latest_.Text;
}

// Within an hour of the clock nothing else in the list has changed.
void frmAnnouncements::arrived(const std::string& line) {
    if (rows_.empty() || !sameHour(readAt_, platform_.WallClock.Now())) return LoadList();
    trapped(globError_, "LoadList", [&](Trap& step) {
        add(static_cast<int>(rows_.size()) + 1, line);
        const ListRow& row = rows_.back();
        if (fits(row)) ListView1.Append(row);
        showEmptiness();
        showLatest();
        reportFault(step);
    });
}

// ---- What is shown

bool frmAnnouncements::fits(const ListRow& row) const {
    const std::string& what = Filter.Text;
    return what.empty() || holds(row.Text, what) || holds(row.SubItems[DateColumn - 1], what) ||
           holds(row.SubItems[TextColumn - 1], what);
}

void frmAnnouncements::fill() {
    if (Filter.Text.get().empty()) {
        ListView1.Refresh(rows_);
    } else {
        std::vector<ListRow> shown;
        std::ranges::copy_if(rows_, std::back_inserter(shown), [&](const ListRow& row) { return fits(row); });
        ListView1.Refresh(shown);
    }
    showChosen();
    showEmptiness();
}

void frmAnnouncements::showChosen() {
    const ListItem* const chosen = ListView1.SelectedItem;
    Text1.Text = chosen != nullptr ? chosen->SubItems(TextColumn) : std::string();
}

void frmAnnouncements::showEmptiness() {
    if (ListView1.ListItems.Count() > 0) {
        Nothing.Caption = "";
    } else {
        Nothing.Caption =
            rows_.empty() ? "There are no announcements yet." : "No announcement holds this text.";
    }
}

// The order turns with each click, whatever the column.
void frmAnnouncements::ListView1_ColumnClick(int column) {
    ListView1.Sorted = true;
    ListView1.SortKey = column - 1;
    ListView1.SortOrder =
        ListView1.SortOrder == SortOrder::Ascending ? SortOrder::Descending : SortOrder::Ascending;
}

// ---- Removing

void frmAnnouncements::Command2_Click() {
    trapped(globError_, "Command2_Click", [&](Trap& step) {
        if (ListView1.SelectedItem == nullptr) return;
        remove(step);
        if (!IsUnloaded()) LoadList();
    });
}

// The list may have been read anew behind the question: the line decides, and not the row.
void frmAnnouncements::remove(Trap& step) {
    const ListItem& chosen = *ListView1.SelectedItem;
    const std::string line = chosen.Key();
    const int number = CLng(Val(chosen.Tag()));
    if (chosen.SubItems(RemainingColumn) != ExpiredText && !agrees()) return;
    const auto at = static_cast<std::size_t>(number - 1);
    if (at < rows_.size() && rows_[at].Key == line) step([&] { manager_.RemoveAnn(number); });
}

bool frmAnnouncements::agrees() {
    MessageBox box{"Do you really want to remove this announcement? It is not expired yet!", "Delete",
                   Buttons::YesNo, MessageIcon::Exclamation};
    return platform_.Asking.Ask(box) == Answer::Yes;
}

}  // namespace talvora
