#include "mail/frmExpire.h"

#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::int32_t unitHours[] = {1, 24, 168, 720};

// The largest unit that is not longer than `hours`.
int unitOf(std::int32_t hours) {
    int unit = 3;
    while (unit > 0 && hours < unitHours[unit]) --unit;
    return unit;
}

}  // namespace

frmExpire::frmExpire(GlobError& globError) : globError_(globError) {
    Caption = "Expiration";
    Check1.Caption = "Mail will be expired after the following time period";
    List1.List = {"Hours", "Days", "Weeks", "Months!"};
    on_ += Command1.Click.connect([this] { Command1_Click(); });
}

void frmExpire::Display(std::int32_t hours) {
    trapped(globError_, "Display", [&](Trap&) {
        Hours = hours;
        const int unit = unitOf(hours);
        Check1.Value = hours != 0;
        Text1.Text = CStr(CLng(static_cast<double>(hours) / unitHours[unit]));
        List1.ListIndex = unit;
        Show();
    });
}

void frmExpire::Command1_Click() {
    trapped(globError_, "Command1_Click", [&](Trap& step) {
        std::int32_t hours = 0;
        if (Check1.Value) {
            const int unit = std::clamp(List1.ListIndex.get(), 0, 3);
            if (!step([&] { hours = CLng(Val(Text1.Text.get()) * unitHours[unit]); })) return;
        }
        Hours = hours;
        Hide();
        Closed.raise();
    });
}

}  // namespace talvora
