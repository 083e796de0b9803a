#include "notify/frmMsgBox.h"

#include "notify/modTopMost.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::string_view FieldMark = ":.:";

}  // namespace

frmMsgBox::frmMsgBox(Platform& platform, GlobError& reporter)
    : Label2("OK"), Timer1(platform, Ending, 1000, true), platform_(platform), globError_(reporter) {
    on_ += Label2.Click.connect([this] { showNext(); });
    on_ += Picture1.Click.connect([this] { Label2.Click.raise(); });
    on_ += Timer1.Tick.connect([this] {
        Timer1.Enabled = false;
        Show();
        SetBackMost(platform_, *this, true);
    });
}

void frmMsgBox::Display(const std::string& text, const std::string& title, int icon) {
    trapped(globError_, "Display", [&](Trap&) {
        if (MsgQueue.size() > LongestQueue) return;
        MsgQueue.append(text)
            .append(FieldMark)
            .append(title)
            .append(FieldMark)
            .append(CStr(icon))
            .append("|");
        if (!MsgShowing) showNext();
    });
}

void frmMsgBox::Form_QueryUnload(bool& cancel, CloseReason reason) {
    if (reason != CloseReason::UserClosesBox || MsgQueue.empty()) return;
    cancel = true;
    showNext();
}

void frmMsgBox::showNext() {
    trapped(globError_, "ShowNext", [&](Trap& step) {
        if (MsgQueue.empty()) {
            MsgShowing = false;
            Unload();
            return;
        }
        const auto pieces = Split(MsgQueue, "|", 2);
        MsgQueue = pieces.size() > 1 ? pieces[1] : std::string();
        const auto fields = Split(pieces[0], FieldMark);
        step([&] { Image2.Picture = CInt(Val(elementOf(fields, 2))); });
        step([&] { Label1.Caption = elementOf(fields, 0); });
        step([&] { Caption = elementOf(fields, 1); });
        MsgShowing = true;
        Show();
        step([&] { SetBackMost(platform_, *this, true); });
    });
}

}  // namespace talvora
