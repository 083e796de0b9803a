#pragma once
// The real host program without a screen, in folders of its own, watched and driven through its gate.

#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/HostMessageNumbers.h"
#include "e2e/support/Json.h"
#include "e2e/support/LineSocket.h"
#include "e2e/support/Process.h"
#include "e2e/support/TempFolder.h"

namespace talvora::e2e {

// How a line of the gate with this message begins.
inline std::string hostMessage(std::int32_t number) {
    return "\"MsgID\":" + std::to_string(number) + ",";
}

// A connection to a gate.
class GateReader {
  public:
    using Wanted = std::function<bool(const Json& data)>;

    explicit GateReader(const std::string& path);

    // The first waiting message of this number with such data, or the next that comes. Returns its data.
    Json expectMessage(int id, const Wanted& wanted, const std::string& what);
    // The same, by what the message carries.
    void expectMessage(int id, const Json& data);
    // A notice of a chat window: kind 1 for a private text, 2 for a channel's.
    void expectNotice(int kind, const std::string& window, const std::string& text);
    // A line of the server with this number; the words are its parameters behind the own nick.
    Json expectNumeric(int number, std::initializer_list<std::string_view> words = {});

    void send(int id, const Json& data) { sendLine(Json(JsonObject{{"MsgID", id}, {"Data", data}}).write()); }
    void sendLine(std::string_view line) { lines_.send(line); }
    std::string takeLine(const std::string& part);
    bool saw(std::string_view part) const { return lines_.transcript.find(part) != std::string::npos; }
    const std::string& transcript() const { return lines_.transcript; }

  private:
    LineSocket lines_;
};

struct OrreryOptions {
    std::string nick = "Nikos";
    std::string channels{};  // the setting ChanList: each name followed by "|"
    std::string dialect = "standard";
    std::string encoding = "cp1253";
    std::vector<std::string> settings{};  // SECTION/KEY=VALUE
    std::string systemChannel = "#orrery";
    std::string systemKey = "sesame";
    std::vector<std::string> plugins{};  // libraries of the build, for the folder Plugins
    std::string pluginList{};            // System/plugin.lst; "" leaves what is shipped
    std::vector<std::string> screen{};   // the environment of a screen; with windows if there is any
};

class OrreryProcess {
  public:
    // Starts the program against a server on loopback and attaches to its gate.
    explicit OrreryProcess(int serverPort, const OrreryOptions& options = {});

    GateReader& gate() { return *gate_; }
    std::string gatePath() const { return folder_ / "gate"; }
    Process& process() { return *process_; }
    const TempFolder& folder() const { return folder_; }
    // SIGTERM, and the exit status.
    int terminate();

  private:
    TempFolder folder_;
    std::unique_ptr<Process> process_;
    std::unique_ptr<GateReader> gate_;
};

// The profile file of a network on loopback.
std::string profileText(int serverPort, const OrreryOptions& options);
// The command line for folders below `folder`, with the profile at `profile`.
Program orreryProgram(const TempFolder& folder, const std::string& profile,
                      const std::vector<std::string>& settings = {});
// A program of the build.
std::string builtProgram(const std::string& name);

}  // namespace talvora::e2e
