#include "settings/Settings.h"

#include <algorithm>
#include <limits>

#include "common/Identity.h"
#include "platform/Text.h"

namespace talvora {

struct Settings::TextKey {
    const char* Name;
    const char* Default;
    TextBox Settings::*Box;
};

// How a value is read that is neither of the two: as the one who acts on the flag reads it.
enum class Odd { Off, On };

struct Settings::FlagKey {
    std::string_view Section;
    const char* Name;
    bool Default;
    Odd Otherwise;
    CheckBox Settings::*Box;
    const char* Caption;
    const char* On = "T";
    const char* Off = "F";
};

const Settings::TextKey Settings::texts[] = {
    {"Nickname", "TalvchatUser", &Settings::Nickname},
    {"RealName", "Default.Unsetted", &Settings::RealName},
    {"AP", "", &Settings::AP},
    {"Pass", "", &Settings::Pass},
    {"MailInterval", "1", &Settings::MailInterval},
    {"QuitMsg", "", &Settings::QuitMsg},
};

const Settings::FlagKey Settings::flags[] = {
    {Section::Settings, "AutoRetry", true, Odd::Off, &Settings::AutoRetry,
     "Retry connection when disconnected"},
    {Section::Settings, "PopupPM", true, Odd::On, &Settings::PopupPM, "Popup PMs when window is closed"},
    {Section::Settings, "PopupChan", true, Odd::On, &Settings::PopupChan,
     "Popup Channel Messages when window is closed"},
    {Section::Settings, "ShowMOTD", true, Odd::Off, &Settings::ShowMOTD,
     "Show MOTD on each connect to the server", "1", "0"},
    {Section::Settings, "PopupFriend", true, Odd::Off, &Settings::PopupFriend,
     "Popup when friend state changed"},
    {Section::Settings, "EnableBar", true, Odd::On, &Settings::EnableBar, "Enable hidable window list bar"},
    {Section::Settings, "NoticeBar", true, Odd::On, &Settings::NoticeBar,
     "Display notifications on hidable window list bar"},
    {Section::Settings, "ReceiveAnn", true, Odd::On, &Settings::ReceiveAnn, "Receive announcements"},
    {Section::Settings, "NoQueries", false, Odd::Off, &Settings::NoQueries,
     "Do not popup query announcements"},
    {Section::Settings, "NoInfo", false, Odd::Off, &Settings::NoInfo,
     "Do not popup information announcements"},
    {Section::Settings, "PopupMail", true, Odd::On, &Settings::PopupMail, "Popup when message is arrived"},
    {Section::Settings, "DisplayMail", false, Odd::Off, &Settings::DisplayMail,
     "Immediately display messages, when arrived"},
    {Section::ChanSettings, "CreateOnPM", true, Odd::On, &Settings::CreateOnPM,
     "Start channel chat when text from channel arrived"},
};

namespace {

constexpr const char* DefaultPackage = "1024";

// The number that plain digits name; 0 if they are none, or name one beyond `most`.
std::int32_t numberOf(const std::string& digits, std::int32_t most) {
    if (digits.find_first_not_of("0123456789") != std::string::npos) return 0;
    const std::size_t first = std::min(digits.find_first_not_of('0'), digits.size());
    if (digits.size() - first > 9) return 0;
    const std::int32_t number = CLng(Val(digits));
    return number <= most ? number : 0;
}

std::string intervalProblem(const std::string& text) {
    if (numberOf(Trim(text), Settings::LongestInterval) > 0) return {};
    return "The mail refresh rate is a number of minutes, from 1 up to 32767.";
}

std::string passProblem(const std::string& pass) {
    if (pass.find(' ') == std::string::npos) return {};
    return "The PASS key holds a blank: the server would read only what stands in front of it.";
}

bool readFlag(const std::string& value, const char* on, const char* off, Odd otherwise) {
    return value == on || (otherwise == Odd::On && value != off);
}

}  // namespace

Settings::Settings(Platform& platform, GlobError& globError, ComponentSettings& settings, Account& account)
    : States(platform, globError),
      Plugins(platform, globError),
      globError_(globError),
      settings_(settings),
      account_(account) {
    load();
    loadChoices();
    applied_ = stored();
    account_.gSettingsChanged = false;
    watch();
}

Settings::~Settings() {
    account_.gSettingsChanged = stored() != applied_;
}

void Settings::load() {
    for (const TextKey& key : texts) (this->*key.Box).Text = get(key);
    for (const FlagKey& key : flags) {
        CheckBox& box = this->*key.Box;
        box.Caption = key.Caption;
        const std::string value = settings_.Get(key.Section, key.Name, key.Default ? key.On : key.Off);
        box.Value = readFlag(value, key.On, key.Off, key.Otherwise);
    }
}

void Settings::loadChoices() {
    PackageSplit.List = {"512", DefaultPackage, "2048", "4096", "8192"};
    std::string size = settings_.Get(Section::Settings, "PackageSplit", DefaultPackage);
    // A size that somebody has set otherwise stays on offer.
    if (numberOf(size, std::numeric_limits<std::int32_t>::max()) < 1) size = DefaultPackage;
    auto& sizes = PackageSplit.List;
    auto found = std::ranges::find(sizes, size);
    if (found == sizes.end()) found = sizes.insert(found, size);
    PackageSplit.ListIndex = static_cast<int>(found - sizes.begin());

    IPRMethod.List = {"Use manually entered remote IP", "Discover IP from the IRC server",
                      "Use IPR (IP Resolving) server"};
    const std::string method = settings_.Get(Section::Settings, "IPRMethod", "0");
    IPRMethod.ListIndex = method == "1" ? 1 : method == "2" ? 2 : 0;
}

void Settings::watch() {
    const auto edited = [this] { Edited.raise(); };
    for (const TextKey& key : texts) {
        on_ += (this->*key.Box).Text.Changed.connect([this](const std::string&) {
            account_.gSettingsChanged = shown() != applied_;
            Edited.raise();
        });
    }
    for (const FlagKey& key : flags) on_ += (this->*key.Box).Click.connect(edited);
    for (ComboBox* box : {&PackageSplit, &IPRMethod}) {
        on_ += box->ListIndex.Changed.connect([this](int) { Edited.raise(); });
    }
    on_ += States.Changed.connect(edited);
    on_ += Plugins.Changed.connect(edited);
}

std::string Settings::get(const TextKey& key) const {
    return settings_.Get(Section::Settings, key.Name, key.Default);
}

Settings::LogOn Settings::stored() const {
    return {settings_.Get(Section::Settings, "RealName", "Default.Unsetted"),
            settings_.Get(Section::Settings, "Pass", "")};
}

Settings::LogOn Settings::shown() const {
    return {RealName.Text, Pass.Text};
}

std::string Settings::Problem() const {
    for (const std::string& problem :
         {NickProblem(Nickname.Text), PathProblem(RealName.Text), passProblem(Pass.Text),
          intervalProblem(MailInterval.Text), States.Problem()}) {
        if (!problem.empty()) return problem;
    }
    return {};
}

void Settings::SaveAll() {
    trapped(globError_, "SaveAll", [&](Trap& step) {
        const auto save = [&](std::string_view section, const char* name, const std::string& value) {
            step([&] { settings_.Save(section, name, value); });
        };
        // Texts go into lines of the protocol.
        for (const TextKey& key : texts)
            save(Section::Settings, key.Name, OneLine((this->*key.Box).Text.get()));
        for (const FlagKey& key : flags)
            save(key.Section, key.Name, (this->*key.Box).Value ? key.On : key.Off);
        save(Section::Settings, "PackageSplit", PackageSplit.Text());
        save(Section::Settings, "IPRMethod", CStr(IPRMethod.ListIndex.get()));
        States.Save(step);
        Plugins.Save(step);
    });
}

void Settings::Applied() {
    applied_ = stored();
    account_.gSettingsChanged = shown() != applied_;
}

}  // namespace talvora
