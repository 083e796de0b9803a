#include "orrery/face/Face.h"

#include <QElapsedTimer>
#include <QStringList>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "common/HostMessageNumbers.h"
#include "common/Version.h"
#include "desktop/QtText.h"
#include "desktop/Theme.h"
#include "orrery/face/NetworkPage.h"
#include "orrery/face/NoticesPage.h"
#include "orrery/face/Welcome.h"

namespace talvora {

namespace {

constexpr const char* Application = "Orrery";
constexpr const char* WindowsSection = "Windows";
constexpr const char* ToldOfMinimizing = "ToldOfMinimizing";

constexpr std::size_t MostAnswers = 32;
constexpr std::size_t MostUnshown = 32;
constexpr std::size_t LongestText = 256;

std::string textAt(const HostMessage& message, std::size_t index) {
    const HostArray* const data = message.Data.asArray();
    const std::string* const text =
        data == nullptr || index >= data->size() ? nullptr : (*data)[index].asText();
    return text == nullptr ? std::string() : text->substr(0, LongestText);
}

bool isOfOneWindow(const HostValue& notice, const HostValue& other) {
    const HostArray* const a = notice.asArray();
    const HostArray* const b = other.asArray();
    return a != nullptr && b != nullptr && a->size() > 3 && b->size() > 3 && (*a)[2] == (*b)[2] &&
           (*a)[3] == (*b)[3] && (!(*a)[3].isNull() || (*a)[0] == (*b)[0]);
}

Notices::Clock monotonicClock() {
    QElapsedTimer timer;
    timer.start();
    return [timer] { return timer.elapsed(); };
}

void bringForward(QWidget& window) {
    window.show();
    window.raise();
    window.activateWindow();
}

}  // namespace

Face::Face(GuardedApplication& application, const QDBusConnection& bus)
    : application_(application), bus_(bus) {
    QApplication::setQuitOnLastWindowClosed(false);
}

Face::~Face() {
    End();
}

// ---- Start and end

bool Face::Begin(const HostSide& host) {
    host_ = std::make_unique<HostSide>(host);
    desktop_.SetGuard(host.ThePlatform.Guarded);
    application_.setGuard(&host.ThePlatform.Guarded);
    hearing_ = host.Database.MessageBroadcasted.connect([this](const HostMessage& m) { heard(m); });
    warn(host.Notice);
    open_ = welcome();
    return open_;
}

// The user has started the program to see it; but the log-on comes first: laying out a window takes longer
// than to connect, and who answers for the tray and for notices may be slow.
void Face::Started() {
    constexpr int afterLogOn = 20;  // milliseconds
    QTimer::singleShot(afterLogOn, &context_, [this] {
        if (!open_) return;
        OpenMainWindow();
        enterDesktop();
    });
}

// What was to be told until now is told.
void Face::enterDesktop() {
    if (!open_) return;
    tray_ = std::make_unique<Tray>(Tray::Orders{[this] { OpenMainWindow(); }, [this] { ShowSettings(); },
                                                [this] { ShowAbout(); }, [this] { Quit(); }});
    tray_->ShowLine(line_);
    if (unread_ > 0) tray_->ShowUnread(unread_);
    notices_ = std::make_unique<Notices>(bus_, monotonicClock(), [this](const HostValue& window) {
        if (opener_) opener_(window);
    });
    showNotices();
}

void Face::Close() {
    open_ = false;
    hearing_.disconnect();
    settings_.reset();
    delete about_;
    delete minimized_;
    notices_.reset();
    unshown_.clear();
    tray_.reset();
    makers_.clear();
    icons_.clear();
    opener_ = nullptr;
}

void Face::End() {
    if (host_ == nullptr) return;
    Close();
    application_.setGuard(nullptr);
    desktop_.SetGuard(early_);
    host_.reset();
}

void Face::warn(const std::string& notice) {
    if (notice.empty()) return;
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Talvora"), toQString(notice));
    box.setTextFormat(Qt::PlainText);
    welcome_ = &box;
    box.exec();
}

bool Face::welcome() {
    if (!isFirstStart(host_->ThePlatform.Settings)) return true;
    Welcome dialog(host_->ThePlatform.Settings, host_->Profile, host_->Places.ProfileFile);
    welcome_ = &dialog;
    return dialog.exec() == QDialog::Accepted;
}

// ---- Messages

void Face::heard(const HostMessage& message) {
    const bool forUs = message.ToID == HostAddress::Everybody || message.ToID == HostAddress::Host;
    const bool forSettings = message.ToID == HostAddress::SettingsManager;
    if (gathered_ != nullptr && message.MsgID == gathering_ && (forUs || forSettings)) {
        if (gathered_->size() < MostAnswers) gathered_->push_back(message);
    } else if (!forUs) {
        return;
    } else if (message.MsgID == HostMsg::ShowWindow && message.Data == HostValue(1)) {
        // The component, which shows it, may hear of it only after us.
        QMetaObject::invokeMethod(
            &context_, [this] { raiseWindow(); }, Qt::QueuedConnection);
    } else if (message.MsgID == HostMsg::Notice) {
        heardNotice(message);
    }
}

// However many lines come in one turn of the loop, only the last of each window is made ready to be shown.
void Face::heardNotice(const HostMessage& message) {
    if (!open_) return;
    const auto same = std::find_if(unshown_.begin(), unshown_.end(),
                                   [&](const HostValue& one) { return isOfOneWindow(one, message.Data); });
    if (same != unshown_.end()) {
        *same = message.Data;
        return;
    }
    if (unshown_.empty()) {
        QMetaObject::invokeMethod(
            &context_, [this] { showNotices(); }, Qt::QueuedConnection);
    }
    if (unshown_.size() == MostUnshown) unshown_.pop_front();
    unshown_.push_back(message.Data);
}

void Face::showNotices() {
    if (notices_ == nullptr) return;
    const std::deque<HostValue> heard = std::exchange(unshown_, {});
    const NoticePrivacy privacy = savedPrivacy(host_->ThePlatform.Settings);
    for (const HostValue& one : heard) {
        if (auto popUp = popUpOf(one, privacy)) notices_->Show(std::move(*popUp));
    }
}

void Face::say(std::int32_t number, HostValue data) {
    HostMessage message;
    message.MsgID = number;
    message.FromID = HostAddress::Host;
    message.Tag = "Orrery";
    message.Data = std::move(data);
    host_->Database.Broadcast(message);
}

std::vector<HostMessage> Face::answersTo(std::int32_t question, std::int32_t answer) {
    std::vector<HostMessage> answers;
    if (gathered_ != nullptr) return answers;  // one question at a time
    struct Gathering {
        Face& face;
        ~Gathering() { face.gathered_ = nullptr; }
    } const gathering{*this};
    gathered_ = &answers;
    gathering_ = answer;
    say(question);
    return answers;
}

// ---- What the tray and the windows ask for

void Face::OpenMainWindow() {
    say(HostMsg::ShowWindow, 1);
}

void Face::Quit() {
    say(HostMsg::Terminate);
}

void Face::raiseWindow() {
    if (welcome_ != nullptr) {
        bringForward(*welcome_);
    } else if (main_ != nullptr && main_->isVisible()) {
        if (main_->isMinimized()) main_->showNormal();
        bringForward(*main_);
    }
}

void Face::ShowAbout() {
    if (about_ != nullptr) return bringForward(*about_);
    QStringList lines{QStringLiteral("Orrery %1").arg(QString::fromStdString(Version::text()))};
    for (const HostMessage& answer : answersTo(HostMsg::GatherAbout, HostMsg::About)) {
        lines << QString();
        for (std::size_t i = 0; i < 4; ++i) {
            if (const std::string text = textAt(answer, i); !text.empty()) lines << toQString(text);
        }
    }
    about_ = quietBox(QStringLiteral("About Orrery"), lines.join(u'\n'));
    bringForward(*about_);
}

// A box that blocks nothing.
QMessageBox* Face::quietBox(const QString& title, const QString& text) {
    auto* box = new QMessageBox(QMessageBox::NoIcon, title, text, QMessageBox::Ok);
    box->setTextFormat(Qt::PlainText);
    box->setIconPixmap(theme::icon(QStringLiteral("app")).pixmap(theme::BoxIcon));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setModal(false);
    return box;
}

// Once for all; whoever knows it need not read it every day.
void Face::TellOfMinimizing() {
    SettingsStore& store = host_->ThePlatform.Settings;
    if (store.GetSetting(Application, WindowsSection, ToldOfMinimizing, "F") == "T") return;
    store.SaveSetting(Application, WindowsSection, ToldOfMinimizing, "T");
    minimized_ =
        quietBox(QStringLiteral("Talvora"),
                 QStringLiteral("Talvora stays open in the task bar, since this desktop has no tray. "
                                "\"Quit\" in the menu of its main window ends it."));
    bringForward(*minimized_);
}

void Face::ShowOnLine(bool onLine) {
    line_ = onLine ? Tray::Line::On : Tray::Line::Off;
    if (tray_ != nullptr) tray_->ShowLine(line_);
}

void Face::ShowUnread(int count) {
    unread_ = count;
    if (tray_ != nullptr) tray_->ShowUnread(count);
}

void Face::ShowSettings() {
    if (!open_) return;  // not yet begun, or closed already
    if (settings_ != nullptr) {
        if (settings_->isVisible()) bringForward(*settings_);
        return;
    }
    if (openingSettings_) return;
    struct Opening {
        bool& flag;
        ~Opening() { flag = false; }
    } const opening{openingSettings_ = true};
    settings_ = std::make_unique<SettingsWindow>(
        pages(),
        SettingsWindow::Orders{[this] { say(HostMsg::ApplySettings); }, [this] { settingsClosed(); }});
    bringForward(*settings_);
}

std::vector<SettingsWindow::Page> Face::pages() {
    std::vector<SettingsWindow::Page> pages;
    for (const HostMessage& answer : answersTo(HostMsg::GatherPages, HostMsg::SettingsPage))
        addPluginPage(pages, answer);
    pages.push_back({QStringLiteral("Network"), theme::icon(QStringLiteral("network")),
                     std::make_unique<NetworkPage>(host_->Profile, host_->Places.ProfileFile)});
    pages.push_back({QStringLiteral("Notices"), theme::icon(QStringLiteral("info")),
                     std::make_unique<NoticesPage>(host_->ThePlatform.Settings)});
    return pages;
}

void Face::addPluginPage(std::vector<SettingsWindow::Page>& pages, const HostMessage& answer) {
    const auto maker = makers_.find(textAt(answer, 0));
    if (maker == makers_.end()) return;
    const auto icon = icons_.find(textAt(answer, 2));
    if (auto body = maker->second()) {
        pages.push_back(
            {toQString(textAt(answer, 1)), icon == icons_.end() ? QIcon() : icon->second, std::move(body)});
    }
}

// A page may be in the middle of a question when its window is closed.
void Face::settingsClosed() {
    host_->ThePlatform.Guarded.WhenIdle([this] {
        if (settings_ != nullptr && !settings_->isVisible()) settings_.reset();
    });
}

// ---- What the component's windows ask for

void Face::Register(const Form& form, QWidget& window) {
    desktop_.Register(form, window);
}

void Face::Forget(const Form& form) {
    desktop_.Forget(form);
}

void Face::AddSettingsPage(const std::string& className, PageMaker maker) {
    makers_[className] = std::move(maker);
}

void Face::AddIcon(const std::string& name, const QIcon& icon) {
    icons_[name] = icon;
}

void Face::SetNoticeOpener(NoticeOpener opener) {
    opener_ = std::move(opener);
}

}  // namespace talvora
