#pragma once
// The bar at the edge of the screen and the window of what is known of a user, put together with what they
// live on. The main window comes and goes; this stays for the component's life.

#include "notify/frmPopup.h"
#include "notify/frmWhois.h"
#include "platform/SingleForm.h"
#include "session/Form1.h"

namespace talvora {

class NotifyDesk final : private UserInformation, private BarWindows {
  public:
    NotifyDesk(Platform& platform, GlobError& globError, ComponentSettings& settings);

    void JoinTo(Handovers& to) { to.Whois = static_cast<UserInformation&>(*this); }
    // The main window whose list of windows the bar shows; null while there is none.
    void Attach(Form1* window);
    // Makes the bar and puts it in its place.
    void Load();
    void RefreshWins();
    // Opens the bar for the keyboard, or puts it away again.
    void ToggleBar();
    void UnloadAll(Trap& step);

    SingleForm<frmPopup> Popup;
    SingleForm<frmWhois> Whois;

  private:
    void Reply(const NameList& whoisResults, const std::string& nick) override;
    void Notice(const std::string& command, const std::string& text) override;
    std::vector<Entry> OpenWindows() const override;
    void BringUp(bool isChannel, int index) override;

    Form1* form1_ = nullptr;
    Subscriptions window_;  // of that window
};

}  // namespace talvora
