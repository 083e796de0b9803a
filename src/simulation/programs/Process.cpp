#include "simulation/programs/Process.h"

#include <grp.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>

namespace talvora::programs {

namespace {

constexpr int NotStarted = 127;
constexpr int LookAtOutput = 10;  // milliseconds

bool dropTo(const UserId& id) {
    return setgroups(0, nullptr) == 0 && setgid(id.group) == 0 && setuid(id.user) == 0;
}

QProcessEnvironment environmentWith(const std::vector<std::string>& entries) {
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const std::string& entry : entries) {
        const auto equals = entry.find('=');
        environment.insert(QString::fromStdString(entry.substr(0, equals)),
                           QString::fromStdString(entry.substr(equals + 1)));
    }
    return environment;
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
    if (!written_.open()) throw Missing("no file for the output of " + name_);
    process_.setProcessChannelMode(QProcess::MergedChannels);
    process_.setStandardOutputFile(written_.fileName());
    if (!program.hasInput) process_.setStandardInputFile(QProcess::nullDevice());
    process_.setProcessEnvironment(environmentWith(program.environment));
    process_.setWorkingDirectory(QString::fromStdString(program.workingFolder));
    const std::optional<UserId> user = program.dropRoot ? unprivilegedUser() : std::nullopt;
    process_.setChildProcessModifier([user] {
        if (user && !dropTo(*user)) _exit(NotStarted);
        prctl(PR_SET_PDEATHSIG, SIGKILL);  // behind the change of the user, which would undo it
    });
    QStringList arguments;
    for (const std::string& argument : program.arguments) arguments << QString::fromStdString(argument);
    const QString file = arguments.takeFirst();
    process_.start(file, arguments);
    process_.waitForStarted();
}

Process::~Process() {
    kill();
}

void Process::signal(int number) const {
    if (process_.state() != QProcess::NotRunning) ::kill(id(), number);
}

void Process::kill() {
    process_.kill();
    process_.waitForFinished(-1);
}

void Process::sendLine(const std::string& line) {
    process_.write((line + "\n").c_str());
    process_.waitForBytesWritten();
}

bool Process::ended() {
    return process_.state() == QProcess::NotRunning || process_.waitForFinished(0);
}

int Process::waitExit(Milliseconds wait) {
    if (!ended() && !process_.waitForFinished(static_cast<int>(wait.count()))) {
        throw Missing(name_ + " does not end. It wrote:\n" + output());
    }
    if (process_.error() == QProcess::FailedToStart) return NotStarted;
    return process_.exitCode() + (process_.exitStatus() == QProcess::CrashExit ? 128 : 0);
}

const std::string& Process::output() {
    output_ += written_.readAll().toStdString();
    return output_;
}

void Process::expectOutput(const std::string& text, Milliseconds wait) {
    const Deadline deadline(wait);
    for (;;) {
        const bool wasEnded = ended();
        if (output().find(text) != std::string::npos) return;
        if (deadline.passed() || wasEnded) {
            throw Missing(name_ + " does not write \"" + text + "\". It wrote:\n" + output());
        }
        idle(LookAtOutput);
    }
}

}  // namespace talvora::programs
