#include "announce/frmAnnounce.h"

#include <utility>

#include "announce/StoredAnnouncement.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr double TwoDays = 48;  // hours
constexpr double SevenDays = 168;

bool isMeetingOrUrgent(int category) {
    return category == Category::Meeting || category == Category::Urgent;
}

bool isOfStaff(int category) {
    return category == Category::Moderator || category == Category::Administrator ||
           category == Category::Owner;
}

const char* allowedFor(int category) {
    if (isOfStaff(category)) return "Up to 168 hours, which are 7 days.";
    if (isMeetingOrUrgent(category)) return "Up to 48 hours, or more than 168.";
    return "Up to 48 hours, which are 2 days.";
}

}  // namespace

frmAnnounce::frmAnnounce(Platform& platform, GlobError& globError, modAnnounceManager& manager, PostRoom room,
                         std::function<std::string()> nick)
    : platform_(platform),
      globError_(globError),
      manager_(manager),
      room_(std::move(room)),
      nick_(std::move(nick)) {
    Caption = "Announce";
    Combo1.List.assign(Category::Names.begin(), Category::Names.end());
    Combo1.ListIndex = Category::Simple;
    Command1.Default = true;
    showAllowed();
    showRoom();
    on_ += Combo1.Click.connect([this] {
        showAllowed();
        CheckMax();
    });
    // Enter makes a new line in the text.
    on_ += Text1.GotFocus.connect([this] { Command1.Default = false; });
    on_ += Text1.LostFocus.connect([this] { Command1.Default = true; });
    for (auto* text : {&Text1.Text, &Text2.Text})
        on_ += text->Changed.connect([this](const std::string&) { showRoom(); });
    on_ += Command1.Click.connect([this] { Command1_Click(); });
    on_ += Command2.Click.connect([this] { Unload(); });
}

// ---- How long it may last

void frmAnnounce::CheckMax() {
    trapped(globError_, "CheckMax", [&](Trap& step) { check(step); });
}

// The second test lets neither Urgent nor Meeting through, although its message names them: they may last 48
// hours, or more than 168, and nothing in between. It is meant to stay so.
void frmAnnounce::check(Trap& step) {
    const int category = Combo1.ListIndex;
    const double hours = step.value(0.0, [&] { return Val(Text2.Text.get()); });
    if (hours > SevenDays) {
        if (isMeetingOrUrgent(category)) return;
        refuse(step, "Only Meeting and Urgent announcements can have a longer than 7 days expire delay!",
               isOfStaff(category) ? "168" : "48");
    } else if (hours > TwoDays && !isOfStaff(category)) {
        refuse(step,
               "Only Meeting, Urgent, Moderator, Administrator and Ap-Owner announcements can have a longer "
               "than 2 days expire delay!",
               "48");
    }
}

void frmAnnounce::refuse(Trap& step, const char* why, const char* hours) {
    MessageBox box{why, "Error", Buttons::Ok, MessageIcon::Information};
    step([&] { platform_.Asking.Ask(box); });
    Refused = true;
    if (IsUnloaded()) return;
    Text2.Text = hours;
    Text2.SetFocus();
    Text2.SelStart = 0;
    Text2.SelLength = Text2.Text.get().size();
}

// ---- Posting

void frmAnnounce::Command1_Click() {
    trapped(globError_, "Command1_Click", [&](Trap& step) {
        Refused = false;
        CheckMax();
        if (Refused || IsUnloaded()) return;
        step([&] { manager_.Post(Text2.Text, Combo1.ListIndex, onOneLine()); });
        Text1.Text = "";
        Text2.Text = "";
        Unload();
    });
}

std::string frmAnnounce::onOneLine() const {
    return Replace(Text1.Text.get(), "\r\n", AnnouncementLineEnd);
}

void frmAnnounce::showAllowed() {
    Allowed.Caption = allowedFor(Combo1.ListIndex);
}

void frmAnnounce::showRoom() {
    const std::ptrdiff_t left = room_.Left(nick_(), Trim(Text2.Text.get()), OneLine(onOneLine()));
    Room.FontBold = left < 0;
    Room.Caption = left >= 0 ? CStr(left) + " bytes left" : CStr(-left) + " bytes too long for one line";
}

}  // namespace talvora
