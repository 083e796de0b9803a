#include "notify/frmMOTD.h"

#include "platform/Text.h"

namespace talvora {

frmMOTD::frmMOTD(Platform& platform, GlobError& reporter, ComponentSettings& settings,
                 const modEmotions& emotions)
    : IRCWin1(platform, reporter, emotions), Check1(true), globError_(reporter), settings_(settings) {
    Caption = "Message of the day";
    Check1.Caption = "Show the message of the day";
    on_ += Check1.Click.connect([this] {
        trapped(globError_, "Check1_Click", [&](Trap& step) {
            step([&] { settings_.Save(Section::Settings, "ShowMOTD", Check1.Value ? "1" : "0"); });
        });
    });
}

void frmMOTD::Display(const std::string& text) {
    trapped(globError_, "Display", [&](Trap& step) {
        const bool wanted =
            step.test([&] { return settings_.Get(Section::Settings, "ShowMOTD", "1") == "1"; });
        if (!wanted) {
            Unload();
            return;
        }
        IRCWin1.Reset();
        for (const std::string& line : Split(text, "\r\n")) IRCWin1.AddIRCLine(line, 3, 2);
        Show();
    });
}

}  // namespace talvora
