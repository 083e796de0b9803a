#pragma once
// irssi, an IRC client that others wrote, in a terminal of its own (tmux): the test types like a person and
// reads what stands on the screen.

#include <initializer_list>
#include <memory>
#include <string>

#include "simulation/programs/Folder.h"
#include "simulation/programs/Process.h"

namespace talvora::programs {

struct IrssiOptions {
    std::string nick = "Petros";
    std::string channel = "#one";
    std::string charset = "UTF-8";  // on the wire
};

class Irssi {
  public:
    // Returns when it is in the channel.
    explicit Irssi(int serverPort, const IrssiOptions& options = {});
    ~Irssi();
    Irssi(const Irssi&) = delete;
    Irssi& operator=(const Irssi&) = delete;

    // "" when the programs are there; else what is missing.
    static std::string whyNot();

    // Typed as it stands, control characters too, with Enter behind it.
    void type(const std::string& line);
    // Waits until a line on the screen matches the regular expression.
    void expect(const std::string& pattern);

  private:
    Process run(std::initializer_list<std::string> words) const;
    std::string screen() const;

    Folder folder_;
    std::unique_ptr<Process> terminal_;  // the server of tmux; it takes irssi with it when it ends
};

}  // namespace talvora::programs
