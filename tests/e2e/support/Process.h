#pragma once
// A program that a test runs: its output is kept, waits are bounded, and it never outlives its owner or the
// test.

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "e2e/support/Descriptor.h"
#include "e2e/support/Waiting.h"

namespace talvora::e2e {

struct Program {
    std::vector<std::string> arguments;    // [0] is the file; a relative one is found from workingFolder
    std::vector<std::string> environment;  // NAME=VALUE, in addition to what the test itself has
    std::string workingFolder;             // "" leaves it
    bool dropRoot = false;                 // as root, runs it as unprivilegedUser()
};

// The user that servers which refuse root run as; nothing when the test itself does not run as root.
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

    pid_t id() const { return id_; }
    void signal(int number) const;
    void kill();
    // The exit status, or 128 and the number of the signal that ended it. Throws Missing when it does not
    // end.
    int waitExit(Milliseconds wait = Patience);
    bool ended();
    // What it wrote so far to standard output and standard error.
    const std::string& output();
    // Waits until the output holds `text`.
    void expectOutput(const std::string& text, Milliseconds wait = Patience);
    // Returns early when the program writes or ends. For waiting for what a program has no other sign for.
    void idle(int milliseconds);

  private:
    void drain();
    void reap();

    std::string name_;
    pid_t id_ = -1;
    Descriptor exit_;  // readable when the program has ended
    Descriptor pipe_;
    std::string output_;
    std::optional<int> status_;
};

}  // namespace talvora::e2e
