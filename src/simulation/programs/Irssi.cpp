#include "simulation/programs/Irssi.h"

#include <filesystem>
#include <regex>

namespace talvora::programs {

namespace {

constexpr const char* Tmux = "/usr/bin/tmux";
constexpr const char* Client = "/usr/bin/irssi";
constexpr int LookPeriod = 20;  // milliseconds; a terminal has no sign for what comes onto its screen

// Everything in one window, nothing of what is typed held back, and no look at the machine's own settings.
std::string configOf(int port, const IrssiOptions& options) {
    return R"(servers = ( { address = "127.0.0.1"; chatnet = "test"; autoconnect = "yes"; port = ")" +
           std::to_string(port) + R"("; } );
chatnets = { test = { type = "IRC"; cmdmax = "1000"; }; };
channels = ( { name = ")" +
           options.channel + R"("; chatnet = "test"; autojoin = "yes"; } );
settings = {
  core = { nick = ")" +
           options.nick + R"("; user_name = "peer"; real_name = "Peer of the test";
    recode_out_default_charset = ")" +
           options.charset + R"("; recode_fallback = ")" + options.charset + R"("; };
  "fe-common/core" = { autocreate_windows = "no"; autocreate_query_level = "none"; term_charset = "UTF-8"; };
  "fe-text" = { paste_verify_line_count = "0"; paste_use_bracketed_mode = "no"; };
};
)";
}

}  // namespace

std::string Irssi::whyNot() {
    for (const char* program : {Tmux, Client}) {
        if (!std::filesystem::exists(program)) return std::string(program) + " is not installed";
    }
    return "";
}

// Never starts a server of its own: that one would not end with the test.
Process Irssi::run(std::initializer_list<std::string> words) const {
    Program program;
    program.arguments = {Tmux, "-u", "-N", "-S", folder_ / "tmux.sock"};
    program.arguments.insert(program.arguments.end(), words);
    program.environment = {"TMUX=", "LC_ALL=C.UTF-8"};
    return Process(program);
}

Irssi::Irssi(int serverPort, const IrssiOptions& options) {
    folder_.write("irssi/config", configOf(serverPort, options));
    Program server;
    server.arguments = {Tmux, "-u", "-S", folder_ / "tmux.sock", "-f", "/dev/null", "-D"};
    server.environment = {"TMUX=", "LC_ALL=C.UTF-8", "HOME=" + folder_.path().string()};
    terminal_ = std::make_unique<Process>(server);
    const Deadline deadline(Patience);
    const std::string home = "--home=" + (folder_ / "irssi");
    // Wide enough that no line is broken, and high enough that none leaves it.
    while (run({"new-session", "-d", "-x", "200", "-y", "200", Client, home}).waitExit() != 0) {
        if (terminal_->ended() || deadline.passed()) {
            throw Missing("tmux takes no session. It wrote:\n" + terminal_->output());
        }
        terminal_->idle(LookPeriod);
    }
    expect(options.channel + ": Total of [0-9]+ nicks");
}

Irssi::~Irssi() {
    try {
        run({"kill-server"}).waitExit();
        terminal_->waitExit();
    } catch (const std::exception&) {
        terminal_->kill();
    }
}

void Irssi::type(const std::string& line) {
    run({"send-keys", "-l", "--", line}).waitExit();
    run({"send-keys", "Enter"}).waitExit();
}

std::string Irssi::screen() const {
    Process capture = run({"capture-pane", "-p"});
    capture.waitExit();
    return capture.output();
}

void Irssi::expect(const std::string& pattern) {
    const std::regex wanted(pattern);
    const Deadline deadline(Patience);
    for (std::string shown = screen(); !std::regex_search(shown, wanted); shown = screen()) {
        if (terminal_->ended() || deadline.passed()) {
            throw Missing("irssi does not show \"" + pattern + "\". Its screen:\n" + shown);
        }
        terminal_->idle(LookPeriod);
    }
}

}  // namespace talvora::programs
