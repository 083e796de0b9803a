#pragma once
// The host program put together: folders, profile, settings, platform, message database, gate and the
// component as its first plug-in. `main` owns it; it needs a QCoreApplication, and with a face a
// QApplication.

#include <memory>
#include <string>

#include "gate/FileLock.h"
#include "gate/Gate.h"
#include "orrery/CommandLine.h"
#include "orrery/Folders.h"
#include "orrery/HostDatabase.h"
#include "orrery/OrreryFace.h"
#include "orrery/PluginLoader.h"
#include "platform/Files.h"
#include "platform_qt/PosixDisk.h"
#include "platform_qt/PosixPluginLibraries.h"
#include "platform_qt/QtPlatform.h"
#include "platform_qt/SqliteSettings.h"
#include "platform_qt/StopSignals.h"
#include "profile/NetworkProfile.h"

namespace talvora {

// Another host of this user uses the folders.
class AlreadyRunning : public FolderError {
  public:
    AlreadyRunning(const std::string& text, bool headless) : FolderError(text), Headless(headless) {}
    bool Headless;  // it has no window that it could show
};

class Orrery {
  public:
    // Takes the folders for itself, waiting some seconds for a host that is just ending, furnishes them, and
    // opens all that the component will need. Throws ProfileError for a profile that is wrong or missing, and
    // FolderError, GateError, RuntimeError or another std::exception for what keeps the host from starting,
    // among them AlreadyRunning. Without a `face` there is no screen; it outlives the host.
    Orrery(const CommandLine& line, const std::string& executableFolder, StopSignals& signals,
           OrreryFace* face = nullptr);
    ~Orrery();
    Orrery(const Orrery&) = delete;
    Orrery& operator=(const Orrery&) = delete;

    // Loads and starts the component, and returns after the end was asked for, by a signal or by message 8.
    // Throws PluginError.
    void Run();

  private:
    void tellUser(const std::string& notice);
    void applySettings(const CommandLine& line);
    bool begin();
    void runComponent();
    void end();
    void heard(const HostMessage& message);
    void stop();
    void tellOthers(const char* state) const;
    void sayGoodbye();

    // In the order in which each needs those before it; all go in the reverse order.
    std::string executableFolder_;
    StopSignals& signals_;
    OrreryFace* face_;
    Folders folders_;
    FileLock configLock_;
    FileLock dataLock_;
    NetworkProfile profile_;
    HostDatabase database_;
    Gate gate_{database_};
    Subscription hearing_;
    std::string notice_;  // of the start, for the user
    std::unique_ptr<SqliteSettings> settings_;
    std::unique_ptr<PosixDisk> disk_;
    std::unique_ptr<Files> files_;
    std::unique_ptr<PosixPluginLibraries> libraries_;
    std::unique_ptr<QtPlatform> platform_;
    PluginLoader plugins_{database_};
    bool ending_ = false;
    bool goodbyeSaid_ = false;
};

}  // namespace talvora
