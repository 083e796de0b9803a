#include "e2e/support/Process.h"

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <system_error>

namespace talvora::e2e {

namespace {

constexpr int notStarted = 127;

std::vector<char*> pointers(const std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (const std::string& text : texts) result.push_back(const_cast<char*>(text.c_str()));
    result.push_back(nullptr);
    return result;
}

bool dropTo(const UserId& id) {
    return setgroups(0, nullptr) == 0 && setgid(id.group) == 0 && setuid(id.user) == 0;
}

// Runs in the child, between fork and exec.
[[noreturn]] void become(const Program& program, const std::optional<UserId>& user,
                         const std::vector<char*>& arguments, int output) {
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    const int nothing = open("/dev/null", O_RDONLY);
    dup2(nothing, STDIN_FILENO);
    for (const std::string& entry : program.environment) putenv(const_cast<char*>(entry.c_str()));
    const bool placed = program.workingFolder.empty() || chdir(program.workingFolder.c_str()) == 0;
    const bool dropped = !user || dropTo(*user);
    prctl(PR_SET_PDEATHSIG, SIGKILL);  // behind the change of the user, which would undo it
    if (placed && dropped) execv(arguments[0], arguments.data());
    std::perror(arguments[0]);
    _exit(notStarted);
}

}  // namespace

std::optional<UserId> unprivilegedUser() {
    if (geteuid() != 0) return std::nullopt;
    const passwd* entry = getpwnam("irc");
    if (entry == nullptr) entry = getpwnam("nobody");
    if (entry == nullptr) return std::nullopt;
    return UserId{entry->pw_uid, entry->pw_gid};
}

Process::Process(const Program& program) : name_(program.arguments.at(0)) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
    pipe_ = Descriptor(ends[0]);
    const Descriptor childsEnd(ends[1]);
    fcntl(pipe_.get(), F_SETFL, O_NONBLOCK);
    // A program that writes much while the test looks elsewhere must not stand still.
    fcntl(pipe_.get(), F_SETPIPE_SZ, 1 << 20);
    const std::vector<char*> arguments = pointers(program.arguments);
    const std::optional<UserId> user = program.dropRoot ? unprivilegedUser() : std::nullopt;
    id_ = fork();
    if (id_ == 0) become(program, user, arguments, childsEnd.get());
    if (id_ < 0) throw std::system_error(errno, std::generic_category(), "fork");
    exit_ = Descriptor(static_cast<int>(syscall(SYS_pidfd_open, id_, 0)));
}

Process::~Process() {
    kill();
}

void Process::signal(int number) const {
    if (!status_) ::kill(id_, number);
}

void Process::kill() {
    if (ended()) return;
    signal(SIGKILL);
    reap();
}

void Process::reap() {
    int raw = 0;
    while (waitpid(id_, &raw, 0) < 0 && errno == EINTR) continue;
    status_ = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
    drain();
}

bool Process::ended() {
    if (!status_ && readable(exit_.get(), 0)) reap();
    return status_.has_value();
}

int Process::waitExit(Milliseconds wait) {
    const Deadline deadline(wait);
    while (!ended()) {
        if (deadline.passed()) throw Missing(name_ + " does not end. It wrote:\n" + output());
        idle(deadline.left());
    }
    return *status_;
}

void Process::drain() {
    char buffer[4096];
    for (;;) {
        const ssize_t got = read(pipe_.get(), buffer, sizeof buffer);
        if (got > 0) output_.append(buffer, static_cast<std::size_t>(got));
        if (got == 0) pipe_.close();
        if (got <= 0) return;
    }
}

const std::string& Process::output() {
    if (pipe_.open()) drain();
    return output_;
}

void Process::idle(int milliseconds) {
    pollfd entries[] = {{exit_.get(), POLLIN, 0}, {pipe_.get(), POLLIN, 0}};
    poll(entries, 2, milliseconds);
    if (pipe_.open()) drain();
}

void Process::expectOutput(const std::string& text, Milliseconds wait) {
    const Deadline deadline(wait);
    while (output().find(text) == std::string::npos) {
        if (deadline.passed() || ended()) {
            throw Missing(name_ + " does not write \"" + text + "\". It wrote:\n" + output());
        }
        idle(deadline.left());
    }
}

}  // namespace talvora::e2e
