#pragma once
// What the windows of a plug-in ask of a host that has a screen. The host implements it and hands it out with
// its services; it outlives the plug-in. Texts in std::string are code page 1253.

#include <QIcon>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "common/HostMessages.h"

class QWidget;

namespace talvora {

class Form;

// A page of the host's settings window. The plug-in makes it when the window opens; the host deletes it when
// the window closes, and puts its widget where it belongs.
class SettingsPage {
  public:
    virtual ~SettingsPage() = default;

    virtual QWidget& Widget() = 0;
    // Why what stands on the page cannot be saved, in plain words; empty if it can.
    virtual QString Problem() const = 0;
    // Saves everything. The host then sends message 7, and tells the page when all have heard it.
    virtual void Save() = 0;
    virtual void Applied() = 0;

    // Raised when the user edits something.
    Event<> Edited;
};

class HostFace {
  public:
    using PageMaker = std::function<std::unique_ptr<SettingsPage>()>;
    using NoticeOpener = std::function<void(const HostValue& window)>;

    virtual ~HostFace() = default;

    // The window that shows a form, until either ends.
    virtual void Register(const Form& form, QWidget& window) = 0;
    virtual void Forget(const Form& form) = 0;
    // The window that a second start of the program brings forward, until it ends.
    virtual void SetMainWindow(QWidget& window) = 0;

    // What a class of settings page and an icon of message 5 stand for.
    virtual void AddSettingsPage(const std::string& className, PageMaker maker) = 0;
    virtual void AddIcon(const std::string& name, const QIcon& icon) = 0;
    // Called with the window of a notice that the user has clicked on.
    virtual void SetNoticeOpener(NoticeOpener opener) = 0;

    // Whether a hidden main window can be found again.
    virtual bool HasTray() const = 0;
    // Says that the main window has been minimised, since nothing could bring it back if it were hidden.
    virtual void TellOfMinimizing() = 0;
    // Whether the user's hands are the reason of what happens now: a window that shows then takes the focus.
    virtual bool UserActs() const = 0;
    // Whether the session is logged on, for those who see no window.
    virtual void ShowOnLine(bool onLine) = 0;
    // How many messages nobody has read, likewise.
    virtual void ShowUnread(int count) = 0;
    // How far the work of a form's window is, from 0 to 1; nothing ends it. Both may come often.
    virtual void ShowProgress(const Form& form, std::optional<double> done) = 0;

    virtual void ShowSettings() = 0;
    virtual void ShowAbout() = 0;
    // Asks for the end of the program.
    virtual void Quit() = 0;
};

}  // namespace talvora
