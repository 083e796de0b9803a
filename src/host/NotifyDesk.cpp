#include "host/NotifyDesk.h"

namespace talvora {

NotifyDesk::NotifyDesk(Platform& platform, GlobError& globError, ComponentSettings& settings)
    : Popup(platform,
            [this, &platform, &globError, &settings] {
                return std::make_unique<frmPopup>(platform, globError, settings,
                                                  static_cast<BarWindows&>(*this));
            }),
      Whois(platform, [this, &platform, &globError] {
          return std::make_unique<frmWhois>(platform, globError,
                                            [this](const std::string& nick, const std::string& question) {
                                                if (form1_ != nullptr)
                                                    form1_->Out.SendPM(nick, question, true);
                                            });
      }) {}

void NotifyDesk::Attach(Form1* window) {
    window_.clear();
    form1_ = window;
    if (window == nullptr) return;
    window_ += window->mnuBar.Click.connect([this] { ToggleBar(); });
    if (window->Windows) window_ += window->Windows->Redrawn.connect([this] { RefreshWins(); });
}

void NotifyDesk::Load() {
    const bool loaded = Popup.Get() != nullptr;
    frmPopup& form = Popup.Load();
    if (!loaded) form.Form_Load();
}

void NotifyDesk::RefreshWins() {
    if (auto* form = Popup.Get()) form->RefreshWins();
}

void NotifyDesk::ToggleBar() {
    if (auto* form = Popup.Get()) form->Toggle();
}

void NotifyDesk::UnloadAll(Trap& step) {
    if (auto* form = Popup.Get()) step([&] { form->Unload(); });
    if (auto* form = Whois.Get()) step([&] { form->Unload(); });
}

// A user who is not there has no name in the reply, and no window is made for him.
void NotifyDesk::Reply(const NameList& whoisResults, const std::string& nick) {
    if (!nick.empty()) Whois.Load().Display(nick, whoisResults);
}

// What nobody has asked for makes no window either, unless it is an answer.
void NotifyDesk::Notice(const std::string& command, const std::string& text) {
    if (frmWhois::IsAnswer(command)) Whois.Load().Notice(command, text);
}

std::vector<BarWindows::Entry> NotifyDesk::OpenWindows() const {
    std::vector<Entry> entries;
    if (form1_ == nullptr || !form1_->Windows) return entries;
    for (const WindowsPanel::OpenWindow& open : form1_->Windows->OpenWindows()) {
        const ChatWindow& window = *open.Window;
        entries.push_back({open.IsChannel, open.Index, window.HasNews, open.Caption, window.LastText});
    }
    return entries;
}

void NotifyDesk::BringUp(bool isChannel, int index) {
    if (form1_ != nullptr && form1_->Windows) form1_->Windows->BringUp(isChannel, index);
}

}  // namespace talvora
