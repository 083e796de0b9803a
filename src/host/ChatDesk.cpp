#include "host/ChatDesk.h"

#include <utility>

namespace talvora {

ChatDesk::ChatDesk(Platform& platform, GlobError& globError, ComponentSettings& settings, HostGate& gate)
    : Nicks(globError, platform.ProgramFiles),
      Emotions(platform.ProgramFiles, globError),
      Plugins(platform.ProgramFiles, globError),
      Picker(platform,
             [this, &platform, &globError] {
                 return std::make_unique<frmEmoticons>(platform, globError, Emotions);
             }),
      Around{platform, globError, settings, gate, Emotions, Nicks, Factories, Plugins, Colors, *this, Picker},
      Channels(Around),
      Privates(Around),
      ChanKey(platform,
              [this, &globError, &settings] {
                  return std::make_unique<frmChanKey>(globError, settings,
                                                      [this](const std::string& line) { SendIRC(line); });
              }),
      MsgBox(platform, [&platform, &globError] { return std::make_unique<frmMsgBox>(platform, globError); }),
      MOTD(platform,
           [this, &platform, &globError, &settings] {
               return std::make_unique<frmMOTD>(platform, globError, settings, Emotions);
           }),
      platform_(platform),
      globError_(globError) {
    Around.Privates = &Privates;
}

void ChatDesk::LoadTables() {
    Nicks.LoadPerflixes();
    loadEmotions();
    // Libraries stay loaded; a second message 1 finds them there.
    if (platform_.Libraries != nullptr && !std::exchange(librariesLoaded_, true))
        Factories.LoadLibraries(*platform_.Libraries, globError_);
    Plugins.ReloadPlugins();
}

// A fault here is one of the start and is told under its name, but Abort leaves the emoticons alone behind,
// and not the log-on.
void ChatDesk::loadEmotions() {
    trapped(globError_, "Main", [&](Trap& step) { step([&] { Emotions.LoadEmotions(); }); });
    if (!Emotions.IsLoaded()) Emotions.DoWithout();
}

void ChatDesk::JoinTo(Handovers& to) {
    to.Channels = &Channels;
    to.Privates = &Privates;
    to.Keys = this;
    to.MOTD = this;
    to.Notes = &notes_;
}

void ChatDesk::UnloadAll() {
    for (frmPM* window : Privates.Table().AllLoaded()) window->Unload();
    for (frmChanChat* window : Channels.Table().AllLoaded()) window->Unload();
    if (auto* form = ChanKey.Get()) form->Unload();
    if (auto* form = MsgBox.Get()) form->Unload();
    if (auto* form = MOTD.Get()) form->Unload();
    if (auto* form = Picker.Get()) form->Unload();
}

void ChatDesk::SendPM(const std::string& to, const std::string& text, bool special) {
    if (form1_ != nullptr) form1_->Texts.SendPM(to, text, special);
}

void ChatDesk::SendIRC(const std::string& line) {
    if (form1_ != nullptr) form1_->IRCServ1.SendIRC(line);
}

std::string ChatDesk::Nickname() const {
    return form1_ != nullptr ? form1_->IRCServ1.Nickname() : std::string();
}

void ChatDesk::RefreshWindows() {
    if (form1_ != nullptr && form1_->Windows) form1_->Windows->RefreshWindows();
}

}  // namespace talvora
