#include "host/AnnounceDesk.h"

#include "platform/CodePage1253.h"

namespace talvora {

namespace {

std::size_t widthOf(std::string_view text, const NetworkProfile& profile) {
    if (profile.Wire.Encoding != Encoding::UTF8) return text.size();
    std::string wire;
    appendUtf8(wire, text);
    return wire.size();
}

}  // namespace

AnnounceDesk::AnnounceDesk(Platform& platform, GlobError& globError, ComponentSettings& settings,
                           HostGate& gate, const NetworkProfile& profile)
    : Manager(platform, globError, settings, gate, [this](const std::string& text) { tellRobot(text); }),
      Viewer(platform,
             [this, &platform, &globError] {
                 return std::make_unique<frmAnnouncements>(platform, globError, Manager, Panel);
             }),
      Composer(platform, [this, &platform, &globError, &profile] {
          const PostRoom room([&profile](std::string_view text) { return widthOf(text, profile); });
          return std::make_unique<frmAnnounce>(platform, globError, Manager, room, [this] {
              return form1_ != nullptr ? form1_->State.gNickname() : std::string();
          });
      }) {
    on_ += Panel.Label15.Click.connect([this] {
        Viewer.Load().Show();
        Viewer.Load().LoadList();
    });
    on_ += Panel.PostNew.Click.connect([this] { Composer.Load().Show(); });
}

void AnnounceDesk::UnloadAll(Trap& step) {
    if (auto* form = Composer.Get()) step([&] { form->Unload(); });
    if (auto* form = Viewer.Get()) step([&] { form->Unload(); });
}

void AnnounceDesk::tellRobot(const std::string& text) {
    if (form1_ != nullptr) form1_->Out.SendPM("OrreryServ", text, true);
}

}  // namespace talvora
