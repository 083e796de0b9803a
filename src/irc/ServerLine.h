#pragma once
// One line of a server, taken apart. Bytes to words only: it knows no channel, window or setting.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace talvora {

struct ServerLine {
    std::string Nick;  // the sender's nick, or the whole prefix if it is a server's name
    std::string User;
    std::string Host;
    std::string Cmd;  // without blanks, in upper case
    bool IsNumber = false;
    std::int32_t Number = 0;
    std::string Tailing;                  // behind the first ":" of the rest
    std::vector<std::string> Parameters;  // the words before it, and one or two empty ones
    std::string Alternate;                // what the reading of the prefix has left over

    // Faults with 9 on a line that has no blank behind its prefix or its command, with 6 on a numeric beyond
    // 32 bits. The strings of an earlier line are used again.
    void read(std::string_view line);

    // A word that the line must have; faults with 9 if it is too short.
    const std::string& word(std::size_t index) const;

  private:
    void readPrefix(std::string_view prefix);
    void readCommand(std::string_view word);
    void readRest(std::string_view rest);
};

// Lines for nested readings, one a depth, so that reading a line costs no allocations.
class ServerLinePool {
  public:
    class Lease {
      public:
        explicit Lease(ServerLinePool& pool) : pool_(pool), line_(pool.enter()) {}
        Lease(const Lease&) = delete;
        Lease& operator=(const Lease&) = delete;
        ~Lease() { pool_.leave(); }
        ServerLine& operator*() { return line_; }
        ServerLine* operator->() { return &line_; }

      private:
        ServerLinePool& pool_;
        ServerLine& line_;
    };

  private:
    ServerLine& enter();
    void leave();

    std::vector<std::unique_ptr<ServerLine>> lines_;
    std::size_t depth_ = 0;
};

}  // namespace talvora
