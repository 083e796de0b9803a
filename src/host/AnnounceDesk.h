#pragma once
// Announcements put together: the manager, its windows and the panel of the latest one, with what they live
// on. The main window comes and goes; this stays for the component's life.

#include "announce/frmAnnounce.h"
#include "announce/frmAnnouncements.h"
#include "announce/modAnnounceManager.h"
#include "announce/picAnn.h"
#include "platform/SingleForm.h"
#include "profile/NetworkProfile.h"
#include "session/Form1.h"

namespace talvora {

class AnnounceDesk final : private AnnouncementService {
  public:
    AnnounceDesk(Platform& platform, GlobError& globError, ComponentSettings& settings, HostGate& gate,
                 const NetworkProfile& profile);

    void JoinTo(Handovers& to) { to.Announcements = *this; }
    // The main window that the manager speaks through; null while there is none.
    void Attach(Form1* window) { form1_ = window; }
    // Reads the list into its window, which keeps the panel.
    void Load() { Viewer.Load().LoadList(); }
    void UnloadAll(Trap& step);

    picAnn Panel;
    modAnnounceManager Manager;
    SingleForm<frmAnnouncements> Viewer;
    SingleForm<frmAnnounce> Composer;

  private:
    void CheckAnn() override { Manager.CheckAnn(); }
    void HandleAnnData(const std::string& text) override { Manager.HandleAnnData(text); }
    void tellRobot(const std::string& text);

    Form1* form1_ = nullptr;
    Subscriptions on_;
};

}  // namespace talvora
