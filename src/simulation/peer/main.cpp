// A user's file transfers without his messenger, for `./run`: somebody must accept where nobody looks.
//
//   file_peer receive ADDRESS FOLDER [NICK ADDRESS]  accepts what comes, and tells each file in a line; to
//   the
//                                                    second address it then sends a word of thanks as NICK
//   file_peer send ADDRESS NICK FILE...              offers files as NICK

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "simulation/peer/FileConnection.h"

namespace talvora::peer {
namespace {

constexpr std::size_t Block = 1024;
constexpr std::size_t LargestFile = std::size_t{64} << 20;  // of those that come

struct Offered {
    std::string Name;
    std::string Content;
};

std::string nameOf(const std::string& path) {
    std::string name = path.substr(path.rfind('/') + 1);
    std::replace_if(
        name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, '?');
    return name.empty() || name == "." || name == ".." ? "unnamed" : name;
}

Offered readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error("no file can be read at " + path);
    return {nameOf(path), {std::istreambuf_iterator<char>(file), {}}};
}

// ---- Sending

std::size_t positionIn(const std::string& text) {
    try {
        return std::stoul(text);
    } catch (const std::exception&) {
        throw std::runtime_error("the other side asks for no position");
    }
}

void sendFile(FileConnection& to, const Offered& file) {
    to.Send("S" + std::to_string(file.Content.size()) + " " + file.Name);
    for (Message asked = to.Next(); asked.Type != 'F'; asked = to.Next()) {
        if (asked.Type != 'G') throw std::runtime_error("the other side has canceled");
        const std::size_t start = positionIn(asked.Parameter) - 1;
        std::string block = start < file.Content.size() ? file.Content.substr(start, Block) : std::string();
        block.resize(Block, ' ');
        to.Send("D" + block);
    }
}

void sendAll(const std::string& address, const std::string& nick, const std::vector<Offered>& files) {
    FileConnection to = FileConnection::To(address);
    to.Send("C" + nick + " " + std::to_string(files.size()));
    to.Expect('W');
    for (const Offered& file : files) sendFile(to, file);
    to.Expect('A');
}

// ---- Receiving

Offered receiveFile(FileConnection& from) {
    const std::string told = from.Expect('S');
    const std::size_t blank = std::min(told.find(' '), told.size());
    const std::size_t size = positionIn(told.substr(0, blank));
    if (size > LargestFile) throw std::runtime_error("a file is too large");
    Offered file{nameOf(told.substr(std::min(blank + 1, told.size()))), {}};
    do {
        from.Send("G" + std::to_string(file.Content.size() + 1));
        file.Content += from.Expect('D');
    } while (file.Content.size() < size);
    from.Send("F");
    file.Content.resize(size);  // behind it there are blanks
    return file;
}

std::vector<std::string> receiveAll(FileConnection from, const std::string& folder) {
    const std::string offer = from.Expect('C');
    const std::size_t blank = offer.rfind(' ');
    if (blank == std::string::npos) throw std::runtime_error("an offer without a number");
    const std::size_t count = positionIn(offer.substr(blank + 1));
    from.Send("W");
    std::vector<std::string> names;
    for (std::size_t i = 0; i < count; ++i) {
        const Offered file = receiveFile(from);
        std::ofstream(folder + "/" + file.Name, std::ios::binary) << file.Content;
        std::printf("has a file of %s: %s, %zu bytes\n", nameOf(offer.substr(0, blank)).c_str(),
                    file.Name.c_str(), file.Content.size());
        std::fflush(stdout);
        names.push_back(file.Name);
    }
    from.Send("A");
    return names;
}

void thank(const std::string& address, const std::string& nick, const std::vector<std::string>& names) {
    std::string text = "Thank you, these have come:\n\n";
    for (const std::string& name : names) text += "  " + name + "\n";
    std::this_thread::sleep_for(std::chrono::seconds(2));
    sendAll(address, nick, {{"Thanks from " + nick + ".txt", text + "\n" + nick + "\n"}});
}

// What goes wrong with one is no reason not to hear the next.
void receiveForEver(const std::vector<std::string>& words) {
    const int door = ListenForFiles(words[1]);
    while (true) {
        const int descriptor = ::accept(door, nullptr, nullptr);
        if (descriptor < 0) continue;
        try {
            const std::vector<std::string> names = receiveAll(FileConnection(descriptor), words[2]);
            if (words.size() == 5) thank(words[4], words[3], names);
        } catch (const std::exception& fault) {
            std::printf("gets no file: %s\n", fault.what());
            std::fflush(stdout);
        }
    }
}

int run(const std::vector<std::string>& words) {
    if (words.size() >= 4 && words[0] == "send") {
        std::vector<Offered> files;
        for (std::size_t i = 3; i < words.size(); ++i) files.push_back(readFile(words[i]));
        sendAll(words[1], words[2], files);
    } else if ((words.size() == 3 || words.size() == 5) && words[0] == "receive") {
        receiveForEver(words);
    } else {
        std::fputs("usage: file_peer receive ADDRESS FOLDER [NICK ADDRESS] | send ADDRESS NICK FILE...\n",
                   stderr);
        return 2;
    }
    return 0;
}

}  // namespace
}  // namespace talvora::peer

int main(int argc, char** argv) {
    try {
        return talvora::peer::run({argv + 1, argv + argc});
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "%s\n", fault.what());
        return 1;
    }
}
