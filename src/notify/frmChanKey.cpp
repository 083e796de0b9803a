#include "notify/frmChanKey.h"

#include <utility>

#include "platform/Text.h"

namespace talvora {

frmChanKey::frmChanKey(GlobError& reporter, ComponentSettings& settings, Sender sendIRC)
    : globError_(reporter), settings_(settings), sendIRC_(std::move(sendIRC)) {
    dress();
    on_ += Picture1[0].Click.connect([this] { Picture1_Click(0); });
    on_ += Picture1[1].Click.connect([this] { Picture1_Click(1); });
    on_ += Text1.KeyPress.connect([this](int& key) {
        if (key != Key::Return && key != Key::Escape) return;
        Picture1_Click(key == Key::Return ? 0 : 1);
        key = 0;
    });
}

void frmChanKey::dress() {
    Caption = NewChanMode ? "Create new channel" : "Channel key";
    Image2.Visible = !NewChanMode;
    Image3.Visible = NewChanMode;
}

void frmChanKey::ExecList(const std::string& list) {
    trapped(globError_, "ExecList", [&](Trap&) {
        // Channels that are still to be asked for keep their turn.
        if (Visible) {
            if (ChanList.size() + list.size() < LongestList) ChanList += list;
            return;
        }
        ChanList = list;
        Display();
    });
}

void frmChanKey::Display() {
    trapped(globError_, "Display", [&](Trap& step) {
        if (ChanList.empty()) {
            Unload();
            return;
        }
        const auto pieces = Split(ChanList, "|", 2);
        dress();
        CurrentChan = pieces[0];
        ChanList = pieces.size() > 1 ? pieces[1] : std::string();
        Label1.Caption = "Please enter the key for channel " + CurrentChan;
        // Never the key of the channel before.
        Text1.Text =
            step.value(std::string(), [&] { return settings_.Get(Section::ChanKeys, CurrentChan, ""); });
        ask();
    });
}

void frmChanKey::ask() {
    Show();
    Text1.SetFocus();
    Text1.SelLength = 0;  // so that the same selection is made anew
    Text1.SelStart = 0;
    Text1.SelLength = Text1.Text.get().size();
}

void frmChanKey::JoinNew() {
    trapped(globError_, "JoinNew", [&](Trap&) {
        if (Visible && !NewChanMode) {
            // A key that is being asked for gets its turn again.
            ChanList = CurrentChan + "|" + ChanList;
            Text1.Text = "";
        }
        NewChanMode = true;
        Label1.Caption = "Please enter the new channel name:";
        dress();
        Show();
        Text1.SetFocus();
    });
}

void frmChanKey::Picture1_Click(int index) {
    if (IsUnloaded()) return;
    trapped(globError_, "Picture1_Click", [&](Trap& step) {
        if (index == 0) accept(step);
        NewChanMode = false;
        Display();
    });
}

void frmChanKey::accept(Trap& step) {
    const std::string typed = Text1.Text;
    if (NewChanMode) {
        step([&] { sendIRC_("JOIN #" + Replace(typed, "#", "")); });
        return;
    }
    step([&] { sendIRC_("JOIN " + CurrentChan + " " + typed); });
    step([&] { settings_.Save(Section::ChanKeys, CurrentChan, typed); });
}

}  // namespace talvora
