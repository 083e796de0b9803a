#include "e2e/support/OrreryProcess.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <csignal>
#include <cstring>

namespace talvora::e2e {

namespace {

Descriptor connectToPath(const std::string& path) {
    Descriptor result(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    if (connect(result.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        result.close();
    return result;
}

// The line's message, if it is one of this number.
std::optional<Json> messageOf(const std::string& line, int id) {
    // The transcript of a long session is searched often; only lines that can be meant are read.
    if (line.find(std::to_string(id)) == std::string::npos) return std::nullopt;
    Json message = readJson(line);
    if (message.at("MsgID").number() != id) return std::nullopt;
    return message;
}

// As a user would: by his own hand, writable by nobody else.
void installPlugins(const TempFolder& folder, const OrreryOptions& options) {
    namespace fs = std::filesystem;
    if (!options.pluginList.empty()) folder.write("data/System/plugin.lst", options.pluginList);
    const fs::path plugins = folder / "data/Plugins";
    for (const std::string& name : options.plugins) {
        fs::create_directories(plugins);
        const fs::path library = plugins / (name + ".so");
        fs::copy_file(builtProgram(name + ".so"), library);
        for (const fs::path& place : {plugins.parent_path(), plugins, library}) {
            fs::permissions(place, fs::perms::owner_all);
        }
    }
}

}  // namespace

GateReader::GateReader(const std::string& path) : lines_(connectToPath(path)) {}

Json GateReader::expectMessage(int id, const Wanted& wanted, const std::string& what) {
    const auto matches = [&](const std::string& line) {
        const auto message = messageOf(line, id);
        return message && wanted(message->at("Data"));
    };
    const std::string line = lines_.take(matches, "host message " + std::to_string(id) + " with " + what);
    return readJson(line).at("Data");
}

void GateReader::expectMessage(int id, const Json& data) {
    expectMessage(
        id, [&](const Json& found) { return found == data; }, data.write());
}

void GateReader::expectNotice(int kind, const std::string& window, const std::string& text) {
    expectMessage(HostMsg::Notice, JsonArray{"Chat", text, kind, window, "", "imgChat", false, false});
}

Json GateReader::expectNumeric(int number, std::initializer_list<std::string_view> words) {
    std::string what = "numeric " + std::to_string(number);
    for (const std::string_view word : words) what.append(" ").append(word);
    const auto wanted = [&](const Json& data) {
        if (data.at(std::size_t{0}).number() != number) return false;
        std::size_t index = 1;
        for (const std::string_view word : words) {
            if (data.at(1).at(index++).text() != word) return false;
        }
        return true;
    };
    return expectMessage(HostMsg::ServerNumeric, wanted, what);
}

std::string GateReader::takeLine(const std::string& part) {
    return lines_.take([&](const std::string& line) { return line.find(part) != line.npos; },
                       "a line of the gate with " + part);
}

std::string builtProgram(const std::string& name) {
    return std::string(TALVORA_BIN_DIR "/") + name;
}

std::string profileText(int serverPort, const OrreryOptions& options) {
    return "[network]\nServerHost=127.0.0.1\nServerPort=" + std::to_string(serverPort) +
           "\nSysChannel=" + options.systemChannel + "\nSysChanKey=" + options.systemKey +
           "\nDialect=" + options.dialect + "\nEncoding=" + options.encoding + "\nReceiveAddress=127.0.0.1\n";
}

Program orreryProgram(const TempFolder& folder, const std::string& profile,
                      const std::vector<std::string>& settings) {
    Program program;
    program.arguments = {builtProgram("orrery"), "--headless", "--profile",     profile,  "--config",
                         folder / "config",      "--data",     folder / "data", "--gate", folder / "gate"};
    for (const std::string& setting : settings) {
        program.arguments.emplace_back("--set");
        program.arguments.push_back(setting);
    }
    const std::string home = folder.path().string();
    program.environment = {"HOME=" + home, "XDG_CONFIG_HOME=" + home, "XDG_DATA_HOME=" + home};
    return program;
}

OrreryProcess::OrreryProcess(int serverPort, const OrreryOptions& options) {
    const std::string profile = folder_.write("network.ini", profileText(serverPort, options));
    installPlugins(folder_, options);
    std::vector<std::string> settings = {"Settings/Nickname=" + options.nick,
                                         "Settings/ChanList=" + options.channels};
    settings.insert(settings.end(), options.settings.begin(), options.settings.end());
    Program program = orreryProgram(folder_, profile, settings);
    if (!options.screen.empty()) std::erase(program.arguments, "--headless");
    program.environment.insert(program.environment.end(), options.screen.begin(), options.screen.end());
    process_ = std::make_unique<Process>(program);
    const Deadline deadline(Patience);
    while (!connectToPath(gatePath()).open()) {
        if (process_->ended() || deadline.passed()) {
            throw Missing("orrery opens no gate. It wrote:\n" + process_->output());
        }
        process_->idle(10);
    }
    gate_ = std::make_unique<GateReader>(gatePath());
}

int OrreryProcess::terminate() {
    process_->signal(SIGTERM);
    return process_->waitExit();
}

}  // namespace talvora::e2e
