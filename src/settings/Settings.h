#pragma once
// The component's settings page: a control for each key that the page owns, filled from the store when the
// page is made, and the tables of states and plug-ins. The host's settings window shows it, saves it and then
// has the component apply it by message 7.
//
// The page alone says whether a new connection is needed for what the user edits: what only the log-on sends.
// The account's gSettingsChanged is True exactly while such a value differs from the one that was last
// applied; it goes back with an edit that goes back, and with a page that is closed unsaved.

#include <cstdint>
#include <string>

#include "common/ComponentSettings.h"
#include "platform/Controls.h"
#include "session/Account.h"
#include "settings/PluginRows.h"
#include "settings/StateRows.h"

namespace talvora {

class Settings {
  public:
    Settings(Platform& platform, GlobError& globError, ComponentSettings& settings, Account& account);
    ~Settings();
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    Label lblNickname{"Nickname:"};
    TextBox Nickname;
    Label lblRealName{"Location path:"};
    TextBox RealName;
    Label lblExample{"(ex. Work.Thessaloniki.Pylea)"};
    Label lblAP{"AP SSID (Wireless only):"};
    TextBox AP;
    Label lblPass{"PASS Key:"};
    TextBox Pass;
    Label lblQuitMsg{"Quit message:"};
    TextBox QuitMsg;
    CheckBox AutoRetry;

    CheckBox PopupPM;
    CheckBox PopupChan;
    CheckBox ShowMOTD;
    CheckBox PopupFriend;
    CheckBox EnableBar;
    CheckBox NoticeBar;
    CheckBox CreateOnPM;

    CheckBox ReceiveAnn;
    CheckBox NoQueries;
    CheckBox NoInfo;

    CheckBox PopupMail;
    CheckBox DisplayMail;
    Label lblMailInterval{"Mail refresh rate:"};
    TextBox MailInterval;  // minutes

    Label lblPackageSplit{"Package size:"};
    ComboBox PackageSplit;  // bytes
    Label lblIPRMethod{"IP Resolving method"};
    ComboBox IPRMethod;

    // Of the mail refresh rate, in minutes: a number of 16 bits.
    static constexpr std::int32_t LongestInterval = 32767;

    StateRows States;
    PluginRows Plugins;

    // Raised when anything on the page has been edited.
    Event<> Edited;

    // What would surely fail if it were saved, in plain words; empty if nothing would.
    std::string Problem() const;
    // Writes every key of the page, whatever it held before, and the tables that have changed.
    void SaveAll();
    // What was saved is in force.
    void Applied();

  private:
    struct TextKey;
    struct FlagKey;
    static const TextKey texts[];
    static const FlagKey flags[];

    // What the log-on sends besides the nick. A nick needs a new connection only while none is logged on,
    // which the page can't know: whoever applies it looks.
    struct LogOn {
        std::string RealName;
        std::string Pass;
        bool operator==(const LogOn&) const = default;
    };

    void load();
    void loadChoices();
    void watch();
    LogOn stored() const;
    LogOn shown() const;
    std::string get(const TextKey& key) const;

    GlobError& globError_;
    ComponentSettings& settings_;
    Account& account_;
    LogOn applied_;
    Subscriptions on_;
};

}  // namespace talvora
