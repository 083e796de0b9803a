#include "simulation/programs/FileUser.h"

#include <cstdlib>
#include <fstream>

#include "simulation/programs/OrreryProcess.h"

namespace talvora::programs {

FileUser::FileUser(const FileUserOptions& options) : options_(options) {
    folder_.write("network.ini", profileText(options_.serverPort,
                                             {.nick = options_.nick, .receiveAddress = options_.address}));
    start();
}

void FileUser::start() {
    Program program;
    program.arguments = {builtProgram("file_client"), folder_.path().string(), options_.nick,
                         folder_ / "network.ini"};
    if (!options_.within.empty()) {
        program.arguments.insert(program.arguments.begin(),
                                 {"/bin/sh", "-c", options_.within + " \"$@\"", "sh"});
    }
    // What a sanitizer keeps of what is free would hide what the program itself needs.
    program.environment = {"HOME=" + folder_.path().string(), "ASAN_OPTIONS=quarantine_size_mb=1"};
    program.hasInput = true;
    process_ = std::make_unique<Process>(program);
    read_ = 0;
    expect("receiver listens");
}

double FileUser::expect(std::string_view text, Milliseconds wait) {
    const Deadline deadline(wait);
    for (;;) {
        const bool last = process_->ended() || deadline.passed();
        const std::string& output = process_->output();
        if (const std::size_t at = output.find(text, read_); at != output.npos) {
            read_ = at + text.size();
            return std::strtod(output.c_str() + (output.rfind('\n', at) + 1), nullptr);
        }
        if (last) throw Missing("the client does not tell \"" + std::string(text) + "\" but\n" + output);
        process_->idle(5);
    }
}

void FileUser::offer(FileUser& to, const std::string& paths, const std::string& address) {
    order("offer |" + paths);
    order("send " + address);
    to.expect("asked ");
}

double FileUser::peakMebibytes() const {
    std::ifstream file("/proc/" + std::to_string(process_->id()) + "/status");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("VmHWM:")) return std::stod(line.substr(6)) / 1024;
    }
    return 0;
}

void FileUser::killAndStart() {
    process_.reset();
    start();
}

}  // namespace talvora::programs
