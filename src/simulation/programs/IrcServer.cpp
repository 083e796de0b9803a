#include "simulation/programs/IrcServer.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>
#include <vector>

#include "platform/Text.h"
#include "simulation/programs/LineSocket.h"

namespace talvora::programs {

namespace {

namespace fs = std::filesystem;

// The folder from which ircd-hybrid runs: unpacked by get-hybrid.sh, or the whole machine's.
fs::path hybridRoot() {
    const char* given = std::getenv("TALVORA_HYBRID_ROOT");
    for (const fs::path& root : {fs::path(given != nullptr ? given : ""),
                                 fs::path(TALVORA_SOURCE_DIR "/build/hybrid"), fs::path("/")}) {
        if (!root.empty() && fs::exists(root / "usr/sbin/ircd-hybrid")) return root;
    }
    return {};
}

void own(const Folder& folder) {
    const auto user = unprivilegedUser();
    if (!user) return;
    for (const auto& entry : fs::directory_iterator(folder.path())) {
        if (chown(entry.path().c_str(), user->user, user->group) != 0) throw Missing("chown");
    }
    if (chown(folder.path().c_str(), user->user, user->group) != 0) throw Missing("chown");
}

// The server's configuration, with these marks of the file replaced.
std::string filled(ServerKind kind, const std::vector<std::pair<std::string, std::string>>& marks) {
    const std::string name = TALVORA_SOURCE_DIR "/src/simulation/programs/config/" + nameOf(kind) + ".conf";
    std::ifstream file(name, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (text.empty()) throw Missing("no " + name);
    for (const auto& [mark, value] : marks) text = Replace(text, mark, value);
    return text;
}

std::string passwordLine(ServerKind kind, const std::string& password) {
    if (password.empty()) return "";
    if (kind == ServerKind::Ngircd) return "Password = " + password;
    const std::string quoted = "\"" + password + "\"";
    return kind == ServerKind::Inspircd ? "password=" + quoted : "password = " + quoted + ";";
}

}  // namespace

std::string nameOf(ServerKind kind) {
    if (kind == ServerKind::Ngircd) return "ngircd";
    return kind == ServerKind::Inspircd ? "inspircd" : "hybrid";
}

std::ostream& operator<<(std::ostream& out, ServerKind kind) {
    return out << nameOf(kind);
}

std::string IrcServer::whyNot(ServerKind kind) {
    if (kind == ServerKind::Hybrid) {
        return hybridRoot().empty()
                   ? "ircd-hybrid is not there: src/simulation/programs/get-hybrid.sh fetches it"
                   : "";
    }
    return fs::exists("/usr/sbin/" + nameOf(kind)) ? "" : nameOf(kind) + " is not installed";
}

IrcServer::IrcServer(ServerKind kind, const ServerOptions& options) : kind_(kind) {
    folder_.write("motd", "Welcome.\n");
    folder_.write("config",
                  filled(kind, {{"@PORT@", std::to_string(port())},
                                {"@FOLDER@", folder_.path().string()},
                                {"@NICKLENGTH@", std::to_string(options.nickLength)},
                                {"@PASSWORD@", passwordLine(kind, options.password)},
                                {"@NEEDPASSWORD@", options.password.empty() ? "" : "need_password,"},
                                {"@WELCOME@", "Welcome."},
                                {"@INVISIBLE@", options.invisible ? "yes" : "no"}}));
    own(folder_);
    start();
}

Program IrcServer::program() const {
    Program result;
    result.dropRoot = true;
    const std::string config = folder_ / "config";
    if (kind_ == ServerKind::Ngircd) {
        result.arguments = {"/usr/sbin/ngircd", "-n", "-f", config};
    } else if (kind_ == ServerKind::Inspircd) {
        result.arguments = {"/usr/sbin/inspircd", "--config", config, "--nofork", "--nopid"};
    } else {
        result.workingFolder = hybridRoot().string();
        result.environment = {"LD_LIBRARY_PATH=lib-extra"};
        result.arguments = {"usr/sbin/ircd-hybrid", "-foreground", "-configfile", config};
        for (const char* file : {"log", "pid", "kline", "dline", "xline", "resv"}) {
            const std::string name = file;
            result.arguments.push_back("-" + name + "file");
            result.arguments.push_back(folder_ / name);
        }
    }
    return result;
}

void IrcServer::start() {
    process_ = std::make_unique<Process>(program());
    const Deadline deadline(Patience);
    // Not every server has a word for it: that it takes a connection is the sign.
    while (LineSocket(port()).closed()) {
        if (process_->ended() || deadline.passed()) {
            throw Missing(nameOf(kind_) + " takes no connection. It wrote:\n" + process_->output());
        }
        process_->idle(10);
    }
}

void IrcServer::kill() {
    process_.reset();
}

}  // namespace talvora::programs
