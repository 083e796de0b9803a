#include "orrery/Orrery.h"

#include <QCoreApplication>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <thread>

#include "common/ComponentSettings.h"
#include "common/HostMessageNumbers.h"
#include "common/Version.h"
#include "orrery/ProfileFile.h"
#include "platform/CodePage1253.h"

namespace talvora {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t LongestName = 80;

// A host that is starting or ending says soon what it is, or is gone.
constexpr int Tries = 30;
constexpr auto BetweenTries = std::chrono::milliseconds(100);

// What the host that holds a lock says of itself in the lock's file.
namespace State {
constexpr const char* Desktop = "desktop";
constexpr const char* Headless = "headless";
constexpr const char* Ending = "ending";
}  // namespace State

void tell(const std::string& line) {
    std::fputs((line + '\n').c_str(), stdout);
    std::fflush(stdout);
}

std::string stateIn(const std::string& path) {
    std::string state;
    std::ifstream(path) >> std::setw(16) >> state;
    return state;
}

void lock(FileLock& lock, const std::string& folder, const char* name) {
    const std::string path = fs::path(folder) / name;
    for (int tried = 1; !lock.tryLock(path); ++tried) {
        const std::string state = stateIn(path);
        if (tried == Tries || state == State::Desktop || state == State::Headless) {
            throw AlreadyRunning("Another host is running and uses " + folder + ".",
                                 state == State::Headless);
        }
        std::this_thread::sleep_for(BetweenTries);
    }
}

// What a plug-in calls itself, fit for one line of a terminal; in UTF-8.
std::string shownName(std::string name) {
    const auto isControl = [](char letter) {
        const char16_t c = codePointOf(static_cast<unsigned char>(letter));
        return c < 0x20 || (c >= 0x7F && c < 0xA0);
    };
    name.resize(std::min(name.size(), LongestName));
    std::replace_if(name.begin(), name.end(), isControl, '?');
    return toUtf8(name);
}

}  // namespace

Orrery::Orrery(const CommandLine& line, const std::string& executableFolder, StopSignals& signals,
               OrreryFace* face)
    : executableFolder_(executableFolder), signals_(signals), face_(face), folders_(Folders::Choose(line)) {
    folders_.MakeRoots();
    lock(configLock_, folders_.Config, "settings.lock");
    lock(dataLock_, folders_.Data, "host.lock");
    tellOthers(face_ == nullptr ? State::Headless : State::Desktop);
    tellUser(fromUtf8(folders_.Furnish(InstalledDefaults(executableFolder_))));
    profile_ = readProfile(folders_.ProfileFile, !line.Profile.empty());
    gate_.Open(folders_.Gate);
    hearing_ = database_.MessageBroadcasted.connect([this](const HostMessage& m) { heard(m); });
    settings_ = std::make_unique<SqliteSettings>(folders_.SettingsFile);
    tellUser(settings_->Notice());
    applySettings(line);
    disk_ = std::make_unique<PosixDisk>(folders_.Data);
    files_ = std::make_unique<Files>(*disk_);
    platform_ = face_ == nullptr
                    ? std::make_unique<QtPlatform>(*files_, *settings_, line.ReportAnswer)
                    : std::make_unique<QtPlatform>(*files_, *settings_, face_->Asking(), face_->Screen());
    libraries_ = std::make_unique<PosixPluginLibraries>(folders_.Data);
    platform_->platform().Libraries = libraries_.get();
}

Orrery::~Orrery() = default;

void Orrery::tellUser(const std::string& notice) {
    if (notice.empty()) return;
    std::fprintf(stderr, "orrery: %s\n", toUtf8(notice).c_str());
    if (!notice_.empty()) notice_ += '\n';
    notice_ += notice;
}

void Orrery::applySettings(const CommandLine& line) {
    ComponentSettings settings(*settings_);
    for (const CommandLine::Setting& setting : line.Settings) {
        settings.Save(setting.Section, setting.Key, setting.Value);
    }
}

void Orrery::Run() {
    signals_.listen([this] { stop(); });
    try {
        if (begin()) runComponent();
    } catch (...) {
        end();
        throw;
    }
    end();
}

bool Orrery::begin() {
    if (face_ == nullptr) return true;
    return face_->Begin({database_, platform_->platform(), profile_, folders_, notice_}) && !ending_;
}

void Orrery::end() {
    tellOthers(State::Ending);
    if (face_ != nullptr) face_->Close();
    plugins_.UnloadAll();
    gate_.Close();
    if (face_ != nullptr) face_->End();
}

void Orrery::runComponent() {
    Platform& platform = platform_->platform();
    const char* const name = face_ == nullptr ? "talvora" : face_->PluginName();
    HostFace* const services = face_ == nullptr ? nullptr : &face_->Services();
    const std::int32_t component =
        plugins_.Load(InstalledPlugin(executableFolder_, name), {platform, profile_, services});
    tell("Orrery " + Version::text() + " started, gate " + folders_.Gate);
    platform.Guarded.run("Message 1", [&] { plugins_.Start(component); });
    if (face_ != nullptr && !ending_) face_->Started();
    // The start may have let the loop run, and the end may have been asked for already.
    if (!ending_) QCoreApplication::exec();
    if (face_ != nullptr) face_->Close();
    platform.Guarded.run("Message 8", [&] { sayGoodbye(); });
}

void Orrery::heard(const HostMessage& message) {
    if (message.ToID != HostAddress::Everybody && message.ToID != HostAddress::Host) return;
    if (message.MsgID == HostMsg::Started) {
        const HostArray* const data = message.Data.asArray();
        const std::string* const name = data == nullptr || data->empty() ? nullptr : data->front().asText();
        if (name != nullptr) tell(shownName(*name) + " loaded");
    } else if (message.MsgID == HostMsg::Terminate) {
        goodbyeSaid_ = goodbyeSaid_ || message.ToID == HostAddress::Everybody;
        stop();
    }
}

void Orrery::tellOthers(const char* state) const {
    configLock_.write(state);
    dataLock_.write(state);
}

void Orrery::stop() {
    ending_ = true;
    tellOthers(State::Ending);
    // Asking the toolkit to quit would ask every window first, and one that only hides would say no.
    QCoreApplication::exit();
}

void Orrery::sayGoodbye() {
    if (goodbyeSaid_) return;
    HostMessage message;
    message.MsgID = HostMsg::Terminate;
    message.FromID = HostAddress::Host;
    message.Tag = "Orrery";
    database_.Broadcast(message);
}

}  // namespace talvora
