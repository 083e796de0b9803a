#include "host/Connect.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "common/HostMessageNumbers.h"
#include "common/Trap.h"
#include "irc/wire/AdaptedSocket.h"
#include "mail/MailFile.h"
#include "platform/Files.h"
#include "platform/Retire.h"
#include "platform/Text.h"

namespace talvora {

namespace {

// Whether a connection made by one of them would do for the other.
bool sameConnection(const NetworkProfile& a, const NetworkProfile& b) {
    const auto place = [](const NetworkProfile& p) {
        return std::tie(p.ServerHost, p.ServerPort, p.SysChannel, p.SysChanKey);
    };
    const auto wire = [](const NetworkProfile& p) {
        return std::tie(p.TLS, p.CAFile, p.Wire.Encoding, p.Wire.Rewrites, p.Wire.RemoveTags);
    };
    return place(a) == place(b) && wire(a) == wire(b);
}

}  // namespace

Connect::Connect(const HostServices& services)
    : services_(services),
      globError_(services.ThePlatform),
      settings_(services.ThePlatform.Settings),
      gate_(settings_),
      chats_(services.ThePlatform, globError_, settings_, gate_, random_),
      mails_({services.ThePlatform, globError_, settings_, gate_}, chats_.Nicks, chats_.Friends,
             chats_.Emotions, chats_.Picker),
      announcements_(services.ThePlatform, globError_, settings_, gate_, services.Profile),
      transfers_(services.ThePlatform, globError_, settings_, gate_, services.Profile),
      notes_(services.ThePlatform, globError_, settings_) {
    chats_.JoinTo(handovers_);
    mails_.JoinTo(handovers_);
    announcements_.JoinTo(handovers_);
    transfers_.JoinTo(handovers_);
    notes_.JoinTo(handovers_);
    chats_.Around.Files = &transfers_.Offers();
    random_.RandomizeByClock(services.ThePlatform.WallClock.SecondsSinceMidnight());
}

Connect::~Connect() {
    Class_Terminate();
}

void Connect::Init(MessageDatabase& db, std::int32_t id) {
    gate_.Attach(db, id);
    sink_ = db.MessageBroadcasted.connect([this](const HostMessage& m) { dMsgDB_MessageBroadcasted(m); });
    transfers_.Listen();
}

// ---- The message sink

void Connect::dMsgDB_MessageBroadcasted(const HostMessage& message) {
    if (message.ToID != gate_.PluginID() && message.ToID != HostAddress::Everybody) return;
    // A window that the message ends stays until the message has been handled, whoever has sent it.
    services_.ThePlatform.Guarded.run("dMsgDB_MessageBroadcasted", [&] {
        trapped(globError_, "dMsgDB_MessageBroadcasted", [&](Trap& step) { handle(step, message); });
    });
}

void Connect::handle(Trap& step, const HostMessage& message) {
    switch (message.MsgID) {
        case HostMsg::Start:
            step([&] { gate_.Broadcast(HostMsg::Started, HostArray{"Talvora IRC", 1}, HostAddress::Host); });
            startUp();
            break;
        case HostMsg::ShowWindow:
            if (gStarted && MainWindow() != nullptr && message.Data == HostValue(1)) {
                step([&] { MainWindow()->Show(); });
            }
            break;
        case HostMsg::GatherPages:
            step([&] {
                gate_.Broadcast(HostMsg::SettingsPage,
                                HostArray{"TalvoraClient.Settings", "Talvora IRC", "IRC"},
                                HostAddress::SettingsManager);
            });
            break;
        case HostMsg::ApplySettings:
            LoadSettings();
            break;
        case HostMsg::Terminate:
            Class_Terminate();
            break;
        case HostMsg::OpenMail:
            if (MainWindow() != nullptr) step([&] { mails_.OpenMail(message.Data.text()); });
            break;
        case HostMsg::GatherAbout:
            step([&] {
                gate_.Broadcast(
                    HostMsg::About,
                    HostArray{"Talvora Messenger", "By the Talvora team", "All rights reserved", ""},
                    HostAddress::Host);
            });
            break;
        default:
            step([&] { handleText(message); });
            break;
    }
}

// What other plug-ins of the host have the user say. Only a raw line goes past the way out, as it is.
void Connect::handleText(const HostMessage& message) {
    const HostValue& data = message.Data;
    const auto verb = [&] { return "_" + data.at(0).text() + " " + data.at(1).text(); };
    switch (message.MsgID) {
        case HostMsg::SaySystemVerb:
            say(account_.gSysChannel, verb(), true);
            break;
        case HostMsg::SayVerb:
            say(data.at(2).text(), verb(), true);
            break;
        case HostMsg::SayPrivate:
            say(data.at(0).text(), data.at(1).text(), false);
            break;
        case HostMsg::SayRaw:
            if (auto* window = MainWindow()) window->IRCServ1.SendIRC(data.text());
            break;
        default:
            break;
    }
}

void Connect::say(const std::string& to, const std::string& text, bool special) {
    if (auto* window = MainWindow()) window->Out.SendPM(to, text, special);
}

// ---- Notices

void Connect::OpenNotice(const HostValue& window) {
    const std::string* name = window.asText();
    Form1* main = MainWindow();
    if (name == nullptr) return;
    if (frmChanChat* channel = chats_.Channels.Window(*name)) {
        bringForward(*channel);
    } else if (frmPM* chat = chats_.Privates.Window(*name)) {
        bringForward(*chat);
    } else if (main != nullptr && name->starts_with(MailFile::Folder)) {
        mails_.OpenMail(*name);
        mails_.Panel.RefreshMailList();  // it is read now
    } else if (*name == frmReceiveFile::Folder) {
        bringForward(transfers_.WindowOfNotice());
    } else if (main != nullptr) {
        bringForward(*main);
    }
}

void Connect::bringForward(Form& form) {
    form.WindowState = FormState::Normal;
    form.Show();
    services_.ThePlatform.Screen.SetForegroundWindow(form);
}

// ---- Start and end

void Connect::startUp() {
    trapped(globError_, "Main", [&](Trap& step) {
        account_.gSettingsChanged = true;
        step([&] { readAccount(); });
        step([&] { services_.ThePlatform.ProgramFiles.CloseAll(); });
        transfers_.Listen();
        announcements_.Manager.Start();
        chats_.LoadTables();
        step([&] { notes_.Load(); });
        loadMainWindow(step);
        gStarted = MainWindow() != nullptr;  // the end may have come in between
    });
}

void Connect::readAccount() {
    const NetworkProfile& profile = services_.Profile;
    account_.LocationPath = settings_.Get(Section::Settings, "RealName", "Default.Unsetted");
    account_.gServerHost = profile.ServerHost;
    account_.gServerPort = profile.ServerPort;
    account_.gSysChannel = profile.SysChannel;
    account_.gSysChanKey = profile.SysChanKey;
    account_.RobotOnly = profile.RobotOnly;
}

std::string Connect::nickOfSettings() const {
    return settings_.Get(Section::Settings, "Nickname", "TalvchatUser");
}

// Message 1 sent twice runs the routine twice: the window is loaded once and set up again.
void Connect::loadMainWindow(Trap& step) {
    if (MainWindow() == nullptr) {
        step([&] { makeMainWindow(); });
        if (MainWindow() != nullptr) step([&] { MainWindowLoaded.raise(*form1_); });
    } else if (!sameConnection(connectedBy_, services_.Profile)) {
        step([&] { renewConnection(); });
    }
    // Whoever has heard of it may have ended it again.
    if (MainWindow() == nullptr) return;
    step([&] { form1_->State.Start(nickOfSettings()); });
    step([&] { mails_.LoadSettings(); });
    form1_->Form_Load();
    if (MainWindow() != nullptr) loadFriends();
    if (MainWindow() == nullptr) return;
    step([&] { notes_.RefreshWins(); });
    if (MainWindow() != nullptr) announcements_.Load();
}

// Before a log-on nobody is known to be anywhere; the first reply draws the list.
void Connect::loadFriends() {
    chats_.Friends.LoadFriends();
    if (MainWindow() != nullptr && form1_->IRCServ1.LoggedIn) form1_->Friends.RefreshFriends();
}

void Connect::makeMainWindow() {
    const Form1::Surroundings around{
        services_.ThePlatform, globError_,     settings_,  gate_,          account_,     random_,
        chats_.Nicks,          chats_.Friends, handovers_, &chats_.Tables, &mails_.Panel};
    retireMainWindow();
    form1_ = std::make_unique<Form1>(around, ircSocket());
    announcements_.Attach(form1_.get());
    chats_.Attach(form1_.get());
    mails_.Attach(form1_.get());
    transfers_.Attach(form1_.get());
    notes_.Attach(form1_.get());
}

// An unloaded window is destroyed when none of its handlers runs any more: another plug-in may end and start
// the component while it hears of a line.
void Connect::retireMainWindow() {
    Retire(services_.ThePlatform, std::move(form1_));
}

std::unique_ptr<SocketDriver> Connect::wireTo(const NetworkProfile& profile) {
    return services_.ThePlatform.Sockets.CreateSocket({profile.TLS, profile.CAFile});
}

std::unique_ptr<SocketDriver> Connect::ircSocket() {
    connectedBy_ = services_.Profile;
    auto socket = std::make_unique<AdaptedSocket>(services_.ThePlatform.TheLoop, wireTo(connectedBy_),
                                                  connectedBy_.Wire);
    ircSocket_ = socket.get();
    return socket;
}

// What the page cannot know: another network, and a nick that no server has taken yet. One that is logged on
// is only asked for the new nick, and the user stays in his channels.
bool Connect::needsNewConnection() const {
    if (!sameConnection(connectedBy_, services_.Profile)) return true;
    return !form1_->IRCServ1.LoggedIn && form1_->State.IsNews(nickOfSettings());
}

// The windows stay; only what they speak through is another one.
void Connect::renewConnection() {
    form1_->Leave("Reconfiguring settings");
    if (MainWindow() == nullptr || sameConnection(connectedBy_, services_.Profile)) return;
    connectedBy_ = services_.Profile;
    ircSocket_->renew(wireTo(connectedBy_), connectedBy_.Wire);
}

std::unique_ptr<Settings> Connect::MakeSettingsPage() {
    return std::make_unique<Settings>(services_.ThePlatform, globError_, settings_, account_);
}

void Connect::LoadSettings() {
    trapped(globError_, "LoadSettings", [&](Trap& step) {
        step([&] { transfers_.LoadSettings(); });
        if (MainWindow() == nullptr) return;
        if (needsNewConnection()) account_.gSettingsChanged = true;
        if (account_.gSettingsChanged) step([&] { renewConnection(); });
        // Saying QUIT may have let the end in. Until it was said, the account was that of the old network.
        if (MainWindow() == nullptr) return;
        step([&] { readAccount(); });
        step([&] { form1_->State.Reload(nickOfSettings()); });
        form1_->RefreshSettings();
        // A report may have stood meanwhile.
        if (MainWindow() != nullptr) form1_->ReConnect();
    });
}

// The window is only unloaded here, since this may run inside one of its own handlers.
void Connect::Class_Terminate() {
    // Saying QUIT lets other messages in, also this one.
    if (std::exchange(ending_, true)) return;
    services_.ThePlatform.Guarded.run("Class_Terminate", [this] {
        trapped(globError_, "Class_Terminate", [this](Trap& step) { terminate(step); });
    });
    gStarted = ending_ = false;
}

void Connect::terminate(Trap& step) {
    gStarted = false;
    if (MainWindow() == nullptr) return transfers_.UnloadAll(step);
    std::string text =
        step.value(std::string(), [&] { return settings_.Get(Section::Settings, "QuitMsg", ""); });
    if (text.empty()) text = "Bye bye!";
    step([&] { form1_->IRCServ1.Disconnect(text); });
    step([&] { form1_->Unload(); });
    announcements_.UnloadAll(step);
    transfers_.UnloadAll(step);
    chats_.UnloadAll(step);
    mails_.UnloadAll(step);
    notes_.UnloadAll(step);
    announcements_.Attach(nullptr);
    chats_.Attach(nullptr);
    mails_.Attach(nullptr);
    transfers_.Attach(nullptr);
    notes_.Attach(nullptr);
}

Form1* Connect::MainWindow() const {
    return form1_ != nullptr && !form1_->IsUnloaded() ? form1_.get() : nullptr;
}

}  // namespace talvora
