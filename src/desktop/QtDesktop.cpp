#include "desktop/QtDesktop.h"

#include <sys/stat.h>

#include <QApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QScreen>
#include <QStandardPaths>
#include <QUrl>
#include <QWindow>
#include <algorithm>
#include <csignal>

#include "desktop/QtText.h"
#include "platform/RuntimeError.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr int TwipsPerInch = 1440;
constexpr int Inch = 96;  // of the pixels that the system counts in
constexpr std::size_t MaxLink = 8192;
constexpr int BetweenBeeps = 500;  // milliseconds

// Between fork and exec, where only the system's own calls are safe.
void becomeOrdinary() {
    ::umask(022);
    std::signal(SIGPIPE, SIG_DFL);
    std::signal(SIGXFSZ, SIG_DFL);
}

// The program that opens a link is the user's, not ours: it gets neither our own choice for the toolkit, nor
// rights of new files that only suit a mail folder, nor the signals that we do without. The link is one
// argument; no shell of ours ever reads it.
bool startOpener(const QString& opener, const QString& link) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("QT_NO_GLIB"));
    process.setProcessEnvironment(environment);
    process.setChildProcessModifier(becomeOrdinary);
    process.setProgram(opener);
    process.setArguments({link});
    return process.startDetached();
}

// What the opener starts may be a script: what means something in one is written as its number, which the
// server reads as the same.
QString forAnOpener(const QUrl& link) {
    QByteArray text = link.toEncoded();
    for (const auto& [character, number] :
         {std::pair("'", "%27"), {"$", "%24"}, {"(", "%28"}, {")", "%29"}, {"`", "%60"}, {"\\", "%5C"}}) {
        text.replace(character, number);
    }
    return QString::fromLatin1(text);
}

}  // namespace

bool isOpenableLink(const std::string& url) {
    if (url.size() > MaxLink) return false;
    const auto isControl = [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte <= ' ' || (byte >= 0x7F && byte <= 0x9F);
    };
    if (std::any_of(url.begin(), url.end(), isControl)) return false;
    const std::string lower = LCase(url);
    for (const std::string_view scheme : {"http://", "https://", "ftp://"}) {
        if (lower.starts_with(scheme) && url.size() > scheme.size()) return true;
    }
    return false;
}

QtDesktop::QtDesktop(Guard& guard) : guard_(&guard) {
    focus_ =
        QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, qGuiApp, [this] { focusMoved(); });
    screen_ = QObject::connect(qGuiApp, &QGuiApplication::primaryScreenChanged, qGuiApp, [this] {
        watchScreen();
        screenMoved();
    });
    watchScreen();
    if (EdgePointer::IsPossible()) edge_ = std::make_unique<EdgePointer>(guard);
}

QtDesktop::~QtDesktop() {
    QObject::disconnect(focus_);
    QObject::disconnect(screen_);
    QObject::disconnect(geometry_);
}

void QtDesktop::SetGuard(Guard& guard) {
    guard_ = &guard;
    if (edge_) edge_->SetGuard(guard);
}

void QtDesktop::Register(const Form& form, QWidget& window) {
    Forget(form);
    std::erase_if(shown_, [](const Shown& one) { return one.Window.isNull(); });
    shown_.push_back({&form, &window});
    focusMoved();
}

void QtDesktop::Forget(const Form& form) {
    std::erase_if(shown_, [&](const Shown& one) { return one.What == &form; });
    if (foreground_ == &form) foreground_ = nullptr;
}

int QtDesktop::ScreenWidth() const {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->size().width() * TwipsPerInch / Inch : 0;
}

int QtDesktop::ScreenHeight() const {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->size().height() * TwipsPerInch / Inch : 0;
}

void QtDesktop::watchScreen() {
    QObject::disconnect(geometry_);
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (screen == nullptr) return;
    geometry_ = QObject::connect(screen, &QScreen::geometryChanged, qGuiApp, [this] { screenMoved(); });
}

void QtDesktop::screenMoved() {
    guard_->run("ScreenChanged", [this] { ScreenChanged.raise(); });
}

Pointer& QtDesktop::ThePointer() {
    if (edge_) return *edge_;
    return noPointer_;
}

const Form* QtDesktop::ForegroundWindow() const {
    const QWidget* active = QApplication::activeWindow();
    // A menu or a box in front of a window counts as that window.
    for (; active != nullptr; active = active->parentWidget() ? active->parentWidget()->window() : nullptr) {
        const auto found = std::find_if(shown_.begin(), shown_.end(), [&](const Shown& one) {
            return !one.Window.isNull() && one.Window->window() == active;
        });
        if (found != shown_.end()) return found->What;
    }
    return nullptr;
}

QWidget* QtDesktop::windowOf(const Form& form) const {
    const auto found = std::find_if(shown_.begin(), shown_.end(), [&](const Shown& one) {
        return one.What == &form && !one.Window.isNull();
    });
    return found != shown_.end() ? found->Window->window() : nullptr;
}

void QtDesktop::SetForegroundWindow(Form& form) {
    QWidget* window = windowOf(form);
    if (window == nullptr) return;
    window->raise();
    window->activateWindow();
}

void QtDesktop::SetTopMost(Form& form, bool onTop) {
    QWidget* window = windowOf(form);
    if (window == nullptr) return;
    const bool visible = window->isVisible();
    window->setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
    if (visible) window->show();
}

void QtDesktop::FlashWindow(Form& form, bool invert) {
    QWidget* window = windowOf(form);
    if (window != nullptr && invert) QApplication::alert(window);
}

void QtDesktop::Beep() {
    if (lastBeep_.isValid() && lastBeep_.elapsed() < BetweenBeeps) return;
    lastBeep_.start();
    QApplication::beep();
}

void QtDesktop::focusMoved() {
    const Form* now = ForegroundWindow();
    if (now == foreground_) return;
    foreground_ = now;
    guard_->run("ForegroundChanged", [this] { ForegroundChanged.raise(); });
}

void QtDesktop::Open(const std::string& url) {
    if (!isOpenableLink(url)) throw RuntimeError(Fault::InvalidProcedureCall);
    const QUrl link(toQString(url), QUrl::TolerantMode);
    if (!link.isValid()) throw RuntimeError(Fault::InvalidProcedureCall);
    const QString opener = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    const bool started =
        opener.isEmpty() ? QDesktopServices::openUrl(link) : startOpener(opener, forAnOpener(link));
    if (!started) throw RuntimeError(Fault::InvalidProcedureCall);
}

void QtDesktop::OpenFile(const std::string& nativePath) {
    const QString path = QString::fromStdString(nativePath);
    if (!QFileInfo(path).isAbsolute() || !QFileInfo::exists(path))
        throw RuntimeError(Fault::InvalidProcedureCall);
    const QUrl link = QUrl::fromLocalFile(path);
    const QString opener = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    const bool started =
        opener.isEmpty() ? QDesktopServices::openUrl(link) : startOpener(opener, forAnOpener(link));
    if (!started) throw RuntimeError(Fault::InvalidProcedureCall);
}

}  // namespace talvora
