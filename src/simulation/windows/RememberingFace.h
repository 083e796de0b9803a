#pragma once
// A host that only remembers.

#include <map>
#include <string>

#include "desktop/GuardedApplication.h"
#include "desktop/HostFace.h"

namespace talvora::test {

class RememberingFace final : public HostFace {
  public:
    void Register(const Form& form, QWidget& window) override { windows[&form] = &window; }
    void Forget(const Form& form) override { windows.erase(&form); }
    void SetMainWindow(QWidget&) override {}
    void AddSettingsPage(const std::string& className, PageMaker maker) override { pages[className] = maker; }
    void AddIcon(const std::string& name, const QIcon& icon) override { icons[name] = icon; }
    void SetNoticeOpener(NoticeOpener opener) override { openNotice = std::move(opener); }
    bool HasTray() const override { return hasTray; }
    void TellOfMinimizing() override { ++toldOfMinimizing; }
    bool UserActs() const override { return acts || static_cast<GuardedApplication*>(qApp)->UserActs(); }
    void ShowOnLine(bool on) override { onLine = on; }
    void ShowUnread(int count) override { unread = count; }
    void ShowProgress(const Form& form, std::optional<double> done) override {
        if (done) progress[&form] = *done;
        if (!done) progress.erase(&form);
    }
    void ShowSettings() override { ++settingsShown; }
    void ShowAbout() override {}
    void Quit() override { ++quits; }

    std::map<const Form*, QWidget*> windows;
    std::map<std::string, PageMaker> pages;
    std::map<std::string, QIcon> icons;
    NoticeOpener openNotice;
    bool hasTray = true;
    int toldOfMinimizing = 0;
    int settingsShown = 0;
    int quits = 0;
    bool onLine = false;
    int unread = 0;
    std::map<const Form*, double> progress;
    bool acts = false;  // whatever the application says
};

}  // namespace talvora::test
