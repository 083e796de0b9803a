#pragma once
// The real host program without a screen, in folders of its own, watched and driven through its gate.

#include <memory>
#include <string>
#include <vector>

#include "simulation/programs/Folder.h"
#include "simulation/programs/Gate.h"
#include "simulation/programs/Process.h"

namespace talvora::programs {

class IrcServer;

// An address of loopback that no other user of a test has: the port for files is the same for all.
std::string ownAddress();

struct OrreryOptions {
    std::string nick = "Nikos";
    std::string channels{};  // the setting ChanList: each name followed by "|"
    std::string dialect = "standard";
    std::string encoding = "cp1253";
    std::vector<std::string> settings{};        // SECTION/KEY=VALUE
    std::string receiveAddress = ownAddress();  // for files
    std::string systemChannel = "#orrery";
    std::string systemKey = "sesame";
    std::vector<std::string> plugins{};  // libraries of the build, for the folder Plugins
    std::string pluginList{};            // System/plugin.lst; "" leaves what is shipped
    std::string friends{};               // the file of friends
    std::vector<std::string> mails{};    // that wait to be sent, as a killed composer leaves them
    std::vector<std::string> screen{};   // the environment of a screen; with windows if there is any
};

class OrreryProcess {
  public:
    // Starts the program and attaches to its gate. The server is held until the gate has answered, so that
    // nothing of a log-on passes unseen.
    explicit OrreryProcess(IrcServer& server, const OrreryOptions& options = {});
    // The same with nobody to log on to: it returns when the gate has answered.
    explicit OrreryProcess(int serverPort, const OrreryOptions& options = {});

    GateReader& gate() { return *gate_; }
    std::string gatePath() const { return folder_ / "gate"; }
    Process& process() { return *process_; }
    const Folder& folder() const { return folder_; }
    // SIGTERM, and the exit status.
    int terminate();
    // kill -9. Returns when the process is gone.
    void kill();
    // The same program again, on what the last one left. `settings` are SECTION/KEY=VALUE.
    void startAgain(const std::vector<std::string>& settings = {});

  private:
    void start(const OrreryOptions& options);

    int serverPort_;
    Folder folder_;
    std::vector<std::string> screen_;
    std::unique_ptr<Process> process_;
    std::unique_ptr<GateReader> gate_;
};

// The profile file of a network on loopback.
std::string profileText(int serverPort, const OrreryOptions& options);
// The command line for folders below `folder`, with the profile at `profile`.
Program orreryProgram(const Folder& folder, const std::string& profile,
                      const std::vector<std::string>& settings = {});
// A program of the build.
std::string builtProgram(const std::string& name);

}  // namespace talvora::programs
