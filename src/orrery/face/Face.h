#pragma once
// The host's side of the screen: tray, notices, settings window, welcome and what the component's windows ask
// of it. `main` owns it; it needs a GuardedApplication, and outlives the host.

#include <QDBusConnection>
#include <QMessageBox>
#include <QPointer>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "desktop/GuardedApplication.h"
#include "desktop/HostFace.h"
#include "desktop/QtDesktop.h"
#include "desktop/QtQuestions.h"
#include "orrery/OrreryFace.h"
#include "orrery/face/LauncherEntry.h"
#include "orrery/face/Notices.h"
#include "orrery/face/SettingsWindow.h"
#include "orrery/face/Tray.h"

namespace talvora {

class Face final : public OrreryFace, public HostFace {
  public:
    Face(GuardedApplication& application, const QDBusConnection& bus);
    ~Face() override;
    Face(const Face&) = delete;
    Face& operator=(const Face&) = delete;

    const char* PluginName() const override { return "talvora_desktop"; }
    Questions& Asking() override { return questions_; }
    Desktop& Screen() override { return desktop_; }
    HostFace& Services() override { return *this; }
    bool Begin(const HostSide& host) override;
    void Started() override;
    void Close() override;
    void End() override;

    void Register(const Form& form, QWidget& window) override;
    void Forget(const Form& form) override;
    void SetMainWindow(QWidget& window) override { main_ = &window; }
    void AddSettingsPage(const std::string& className, PageMaker maker) override;
    void AddIcon(const std::string& name, const QIcon& icon) override;
    void SetNoticeOpener(NoticeOpener opener) override;
    bool HasTray() const override { return Tray::Available(); }
    void TellOfMinimizing() override;
    bool UserActs() const override { return application_.UserActs(); }
    void ShowOnLine(bool onLine) override;
    void ShowUnread(int count) override;
    void ShowProgress(const Form& form, std::optional<double> done) override { entry_.Show(form, done); }
    void ShowSettings() override;
    void ShowAbout() override;
    void Quit() override;

    void OpenMainWindow();
    SettingsWindow* TheSettings() const { return settings_.get(); }
    const Tray* TheTray() const { return tray_.get(); }

  private:
    void heard(const HostMessage& message);
    void heardNotice(const HostMessage& message);
    void showNotices();
    void say(std::int32_t number, HostValue data = {});
    std::vector<HostMessage> answersTo(std::int32_t question, std::int32_t answer);
    void warn(const std::string& notice);
    bool welcome();
    void enterDesktop();
    static QMessageBox* quietBox(const QString& title, const QString& text);
    void raiseWindow();
    std::vector<SettingsWindow::Page> pages();
    void addPluginPage(std::vector<SettingsWindow::Page>& pages, const HostMessage& answer);
    void settingsClosed();

    GuardedApplication& application_;
    Guard early_;  // until there is a platform
    QtQuestions questions_;
    QtDesktop desktop_{early_};
    QDBusConnection bus_;
    LauncherEntry entry_{bus_};
    std::unique_ptr<HostSide> host_;
    QObject context_;  // of calls that wait for the next turn
    Subscription hearing_;
    bool open_ = false;           // begun, and not yet closed
    std::unique_ptr<Tray> tray_;  // this and the notices come after the log-on has begun
    std::unique_ptr<Notices> notices_;
    Tray::Line line_ = Tray::Line::Plain;
    int unread_ = 0;
    std::deque<HostValue> unshown_;  // notices that have not been handed on yet
    std::unique_ptr<SettingsWindow> settings_;
    bool openingSettings_ = false;  // whoever makes a page may ask something first
    QPointer<QWidget> welcome_;     // or another box before the start
    QPointer<QMessageBox> about_;
    QPointer<QMessageBox> minimized_;
    QPointer<QWidget> main_;
    std::map<std::string, PageMaker> makers_;
    std::map<std::string, QIcon> icons_;
    NoticeOpener opener_;
    std::vector<HostMessage>* gathered_ = nullptr;  // answers, while a question is out
    std::int32_t gathering_ = 0;                    // their number
};

}  // namespace talvora
