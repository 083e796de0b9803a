#pragma once
// A user of the program `file_client`: a real client in a process and a folder of its own, who gives orders
// and waits for what the client tells. What does not come throws Missing.

#include <memory>
#include <string>
#include <string_view>

#include "simulation/programs/Folder.h"
#include "simulation/programs/OrreryProcess.h"
#include "simulation/programs/Process.h"

namespace talvora::programs {

struct FileUserOptions {
    std::string nick = "Nikos";
    std::string address = ownAddress();  // on which he receives
    int serverPort = 1;                  // where nobody is, so that he stays alone
    std::string within{};                // a command of the shell that the program runs behind
};

class FileUser {
  public:
    explicit FileUser(const FileUserOptions& options = {});

    void order(const std::string& line) { process_->sendLine(line); }
    // Waits until the client has told this, behind what was waited for before; gives the time, in seconds.
    double expect(std::string_view text, Milliseconds wait = 2 * Patience);
    // Offers the files to an address, and returns when the other client has asked its user.
    void offer(FileUser& to, const std::string& paths, const std::string& address);
    // What has come is read as waited for.
    void forget() { read_ = process_->output().size(); }
    // kill -9, and the same program again on what it has left.
    void killAndStart();

    // The most memory that the program has had.
    double peakMebibytes() const;
    const std::string& address() const { return options_.address; }
    Process& process() { return *process_; }
    const Folder& folder() const { return folder_; }
    std::string received(std::string_view name) const {
        return folder_ / ("data/Received/" + std::string(name));
    }

  private:
    void start();

    FileUserOptions options_;
    Folder folder_;
    std::unique_ptr<Process> process_;
    std::size_t read_ = 0;
};

}  // namespace talvora::programs
