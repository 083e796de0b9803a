#include "orrery/Orrery.h"

#include <QCoreApplication>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "host/common/Settings.h"
#include "host/common/Version.h"
#include "platform/CodePage1253.h"

namespace talvora {
namespace {

namespace fs = std::filesystem;

constexpr std::int32_t PluginLoaded = 2;
constexpr std::int32_t Quit = 8;
// A longer one is refused by its reader.
constexpr std::size_t LongestProfile = std::size_t{64} << 10;

void tell(const std::string& line) {
    std::fputs((line + '\n').c_str(), stdout);
    std::fflush(stdout);
}

// The profile that the command line names must be there; without one, and without the standard file, what is
// built in holds.
NetworkProfile readProfile(const Folders& folders, bool named) {
    if (!named && !fs::exists(folders.ProfileFile)) return {};
    std::ifstream file(folders.ProfileFile, std::ios::binary);
    std::string text(LongestProfile + 1, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    if (!file.is_open() || file.bad() || fs::is_directory(folders.ProfileFile)) {
        throw ProfileError(folders.ProfileFile, 1, "this file cannot be read; it must be a network profile");
    }
    return parseNetworkProfile(text, folders.ProfileFile);
}

void lock(FileLock& lock, const std::string& folder, const char* name) {
    if (!lock.tryLock((fs::path(folder) / name).string())) {
        throw FolderError("Another host is running and uses " + folder + ".");
    }
}

}  // namespace

Orrery::Orrery(const CommandLine& line, const std::string& executableFolder, StopSignals& signals)
    : executableFolder_(executableFolder), signals_(signals), folders_(Folders::Choose(line)) {
    folders_.Furnish(InstalledDefaults(executableFolder_));
    profile_ = readProfile(folders_, !line.Profile.empty());
    lock(configLock_, folders_.Config, "settings.lock");
    lock(dataLock_, folders_.Data, "host.lock");
    gate_.Open(folders_.Gate);
    hearing_ = database_.MessageBroadcasted.connect([this](const HostMessage& m) { heard(m); });
    settings_ = std::make_unique<SqliteSettings>(folders_.SettingsFile);
    if (const std::string notice = settings_->Notice(); !notice.empty()) {
        std::fprintf(stderr, "orrery: %s\n", toUtf8(notice).c_str());
    }
    applySettings(line);
    disk_ = std::make_unique<PosixDisk>(folders_.Data);
    files_ = std::make_unique<Files>(*disk_);
    platform_ = std::make_unique<QtPlatform>(*files_, *settings_, line.ReportAnswer);
    libraries_ = std::make_unique<PosixPluginLibraries>(folders_.Data);
    platform_->platform().Libraries = libraries_.get();
}

Orrery::~Orrery() = default;

void Orrery::applySettings(const CommandLine& line) {
    ComponentSettings settings(*settings_);
    for (const CommandLine::Setting& setting : line.Settings) {
        settings.Save(setting.Section, setting.Key, setting.Value);
    }
}

void Orrery::Run() {
    signals_.listen([this] { stop(); });
    Platform& platform = platform_->platform();
    const std::int32_t component =
        plugins_.Load(InstalledPlugin(executableFolder_, "talvora"), {platform, profile_});
    tell("Orrery " + Version::text() + " started, gate " + folders_.Gate);
    platform.Guarded.run("Message 1", [&] { plugins_.Start(component); });
    // The start may have let the loop run, and the end may have been asked for already.
    if (!ending_) QCoreApplication::exec();
    platform.Guarded.run("Message 8", [&] { sayGoodbye(); });
    plugins_.UnloadAll();
    gate_.Close();
}

void Orrery::heard(const HostMessage& message) {
    if (message.ToID != HostAddress::Everybody && message.ToID != HostAddress::Host) return;
    if (message.MsgID == PluginLoaded) {
        const HostArray* const data = message.Data.asArray();
        const std::string* const name = data == nullptr || data->empty() ? nullptr : data->front().asText();
        if (name != nullptr) tell(toUtf8(*name) + " loaded");
    } else if (message.MsgID == Quit) {
        goodbyeSaid_ = goodbyeSaid_ || message.ToID == HostAddress::Everybody;
        stop();
    }
}

void Orrery::stop() {
    ending_ = true;
    QCoreApplication::quit();
}

void Orrery::sayGoodbye() {
    if (goodbyeSaid_) return;
    HostMessage message;
    message.MsgID = Quit;
    message.FromID = HostAddress::Host;
    message.Tag = "Orrery";
    database_.Broadcast(message);
}

}  // namespace talvora
