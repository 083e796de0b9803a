#include "simulation/programs/OrreryProcess.h"

#include <unistd.h>

#include <atomic>
#include <csignal>
#include <filesystem>

#include "simulation/programs/IrcServer.h"

namespace talvora::programs {

namespace {

// As a user would: by his own hand, writable by nobody else.
void installPlugins(const Folder& folder, const OrreryOptions& options) {
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

std::string ownAddress() {
    static std::atomic<int> count = 0;
    const int number = ::getpid() * 16 + count++;
    const auto part = [number](int step) { return std::to_string(number / step % 250 + 2); };
    return "127." + part(62'500) + "." + part(250) + "." + part(1);
}

std::string builtProgram(const std::string& name) {
    return std::string(TALVORA_BIN_DIR "/") + name;
}

std::string profileText(int serverPort, const OrreryOptions& options) {
    return "[network]\nServerHost=127.0.0.1\nServerPort=" + std::to_string(serverPort) +
           "\nSysChannel=" + options.systemChannel + "\nSysChanKey=" + options.systemKey +
           "\nDialect=" + options.dialect + "\nEncoding=" + options.encoding +
           "\nReceiveAddress=" + options.receiveAddress + "\n";
}

Program orreryProgram(const Folder& folder, const std::string& profile,
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

OrreryProcess::OrreryProcess(IrcServer& server, const OrreryOptions& options)
    : serverPort_(server.port()), screen_(options.screen) {
    server.hold();
    start(options);
    server.goOn();
}

OrreryProcess::OrreryProcess(int serverPort, const OrreryOptions& options)
    : serverPort_(serverPort), screen_(options.screen) {
    start(options);
}

void OrreryProcess::start(const OrreryOptions& options) {
    folder_.write("network.ini", profileText(serverPort_, options));
    installPlugins(folder_, options);
    if (!options.friends.empty()) folder_.write("data/System/Friends.lst", options.friends);
    std::vector<std::string> settings = {"Settings/Nickname=" + options.nick,
                                         "Settings/ChanList=" + options.channels};
    settings.insert(settings.end(), options.settings.begin(), options.settings.end());
    std::string queue;
    for (const std::string& mail : options.mails) {
        const std::string name = "o" + std::to_string(&mail - options.mails.data() + 1) + ".qrm";
        folder_.write("data/Mail/" + name, mail);
        queue += name + "|";
    }
    if (!queue.empty()) settings.push_back("Incompleted/SendQueue=" + queue);
    startAgain(settings);
}

void OrreryProcess::startAgain(const std::vector<std::string>& settings) {
    Program program = orreryProgram(folder_, folder_ / "network.ini", settings);
    if (!screen_.empty()) std::erase(program.arguments, "--headless");
    program.environment.insert(program.environment.end(), screen_.begin(), screen_.end());
    kill();  // one that still ran would refuse the next one its folder
    process_ = std::make_unique<Process>(program);
    const Deadline deadline(Patience);
    while (LineSocket(gatePath()).closed()) {
        if (process_->ended() || deadline.passed()) {
            throw Missing("orrery opens no gate. It wrote:\n" + process_->output());
        }
        process_->idle(10);
    }
    gate_ = std::make_unique<GateReader>(gatePath());
    gate_->send(HostMsg::GatherAbout, {});
    gate_->takeLine(hostMessage(HostMsg::About));
}

void OrreryProcess::kill() {
    gate_.reset();
    process_.reset();
}

int OrreryProcess::terminate() {
    process_->signal(SIGTERM);
    return process_->waitExit();
}

}  // namespace talvora::programs
