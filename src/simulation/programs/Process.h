#pragma once
// A real program: its output is kept in a file, so that it never stands still because nobody reads, waits are
// bounded, and it never outlives its owner or the process that started it. What does not come throws Missing.

#include <sys/types.h>

#include <QtCore/QProcess>
#include <QtCore/QTemporaryFile>
#include <optional>
#include <string>
#include <vector>

#include "simulation/programs/Waiting.h"

namespace talvora::programs {

struct Program {
    std::vector<std::string> arguments;    // [0] is the file; a relative one is found from workingFolder
    std::vector<std::string> environment;  // NAME=VALUE, in addition to what this process has
    std::string workingFolder;             // "" leaves it
    bool dropRoot = false;                 // as root, runs it as unprivilegedUser()
    bool hasInput = false;                 // from `sendLine`; else its standard input is empty
};

// The user that servers which refuse root run as; nothing when this process does not run as root.
struct UserId {
    uid_t user;
    gid_t group;
};
std::optional<UserId> unprivilegedUser();

class Process {
  public:
    explicit Process(const Program& program);
    ~Process();  // kills it
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    pid_t id() const { return static_cast<pid_t>(process_.processId()); }
    void signal(int number) const;
    void kill();
    // The exit status, or 128 and the number of the signal that ended it; 127 if it could not be started.
    int waitExit(Milliseconds wait = Patience);
    bool ended();
    void sendLine(const std::string& line);
    // What it wrote so far to standard output and standard error.
    const std::string& output();
    // Waits until the output holds `text`.
    void expectOutput(const std::string& text, Milliseconds wait = Patience);
    // Returns early when the program ends. For waiting for what a program has no sign for.
    void idle(int milliseconds) { process_.waitForFinished(milliseconds); }

  private:
    std::string name_;
    QTemporaryFile written_;
    std::string output_;
    QProcess process_;
};

}  // namespace talvora::programs
