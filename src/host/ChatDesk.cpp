#include "host/ChatDesk.h"

#include <utility>

#include "platform/Text.h"

namespace talvora {

namespace {

// A pair of colour bytes as the code that lines carry.
std::string code(std::uint8_t fore, std::uint8_t back) {
    return CStr(fore - 2) + "," + CStr(back - 2);
}

}  // namespace

ChatDesk::ChatDesk(Platform& platform, GlobError& globError, ComponentSettings& settings, HostGate& gate,
                   Random& random)
    : Nicks(globError, platform.ProgramFiles),
      Friends(globError, platform.ProgramFiles),
      Emotions(platform.ProgramFiles, globError),
      Plugins(platform.ProgramFiles, globError),
      Cipher(random, platform.TheLoop, platform.WallClock),
      Encryption{globError,
                 settings,
                 Cipher,
                 [this] { return form1_ != nullptr ? form1_->State.gNickname() : std::string(); },
                 [](const std::string& nick) { return TruncNick(nick); },
                 code(Colors.ChatForeColor, Colors.ChatBackColor),
                 code(Colors.ActionForeColor, Colors.ActionBackColor),
                 code(Colors.OwnForeColor, Colors.OwnBackColor)},
      Commands(platform, globError,
               {[this](const std::string& line) { SendIRC(line); },
                [this](const std::string& nick) {
                    if (form1_ != nullptr) form1_->State.Ask(OneLine(nick));
                }}),
      Scripts(platform, [this, &platform,
                         &globError] { return std::make_unique<frmScripts>(platform, globError, Commands); }),
      Picker(platform,
             [this, &platform, &globError] {
                 return std::make_unique<frmEmoticons>(platform, globError, Emotions);
             }),
      Around{platform,  globError, settings, gate,   Emotions, Nicks,
             Factories, Plugins,   Commands, Colors, *this,    Picker},
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
    Factories.Register("TalvoraClient.plg_Encrypt",
                       [this] { return std::make_unique<plg_Encrypt>(Encryption); });
}

void ChatDesk::LoadTables() {
    Nicks.LoadPerflixes();
    loadEmotions();
    // Libraries stay loaded; a second message 1 finds them there.
    if (platform_.Libraries != nullptr && !std::exchange(librariesLoaded_, true))
        Factories.LoadLibraries(*platform_.Libraries, globError_);
    Plugins.ReloadPlugins();
    Commands.Load();
}

// A fault here is one of the start and is told under its name, but Abort leaves the emoticons alone behind,
// and not the log-on.
void ChatDesk::loadEmotions() {
    trapped(globError_, "Main", [&](Trap& step) { step([&] { Emotions.LoadEmotions(); }); });
    if (!Emotions.IsLoaded()) Emotions.DoWithout();
}

void ChatDesk::Attach(Form1* window) {
    form1_ = window;
    if (window != nullptr) scriptsMenu_ = window->mnuScripts.Click.connect([this] { ShowScripts(); });
}

void ChatDesk::JoinTo(Handovers& to) {
    to.Channels = Channels;
    to.Privates = Privates;
    to.Keys = *this;
    to.MOTD = *this;
    to.Notes = notes_;
}

void ChatDesk::UnloadAll(Trap& step) {
    const auto unload = [&](Form* form) {
        if (form != nullptr) step([&] { form->Unload(); });
    };
    for (frmPM* window : Privates.Table().AllLoaded()) unload(window);
    for (frmChanChat* window : Channels.Table().AllLoaded()) unload(window);
    unload(ChanKey.Get());
    unload(MsgBox.Get());
    unload(MOTD.Get());
    unload(Picker.Get());
    unload(Scripts.Get());
}

void ChatDesk::SendPM(const std::string& to, const std::string& text, bool special) {
    if (form1_ != nullptr) form1_->Out.SendPM(to, text, special);
}

void ChatDesk::SendIRC(const std::string& line) {
    if (form1_ != nullptr) form1_->IRCServ1.SendIRC(line);
}

std::string ChatDesk::Nickname() const {
    return form1_ != nullptr ? form1_->IRCServ1.Nickname() : std::string();
}

void ChatDesk::ShowScripts() {
    const bool loaded = Scripts.Get() != nullptr;
    frmScripts& form = Scripts.Load();
    if (!loaded) form.Form_Load();
    form.Show();
}

void ChatDesk::RefreshWindows() {
    if (form1_ != nullptr && form1_->Windows) form1_->Windows->RefreshWindows();
}

}  // namespace talvora
