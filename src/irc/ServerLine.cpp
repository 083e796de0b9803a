#include "irc/ServerLine.h"

#include <algorithm>

#include "platform/RuntimeError.h"
#include "platform/Text.h"

namespace talvora {

namespace {

// A line with more words than this gives its memory back.
constexpr std::size_t KeptWords = 64;

// The place of the first blank, which a line must have there.
std::size_t requiredBlank(std::string_view text) {
    const std::size_t blank = text.find(' ');
    if (blank == std::string_view::npos) throw RuntimeError(Fault::SubscriptOutOfRange);
    return blank;
}

bool allDigits(std::string_view text) {
    if (text.empty()) return false;
    for (const char c : text) {
        if (c < '0' || c > '9') return false;
    }
    return true;
}

}  // namespace

void ServerLine::read(std::string_view line) {
    Nick.clear();
    User.clear();
    Host.clear();
    Alternate.clear();
    if (!line.empty() && line.front() == ':') {
        line.remove_prefix(1);
        const std::size_t blank = requiredBlank(line);
        readPrefix(line.substr(0, blank));
        line.remove_prefix(blank + 1);
    }
    const std::size_t blank = requiredBlank(line);
    readCommand(line.substr(0, blank));
    readRest(line.substr(blank + 1));
}

void ServerLine::readPrefix(std::string_view prefix) {
    if (prefix.find_first_of("!@") == std::string_view::npos) {
        Nick.assign(prefix);
        return;
    }
    int step = 0;
    std::size_t begin = 0;
    for (std::size_t i = 0; i < prefix.size(); ++i) {
        if (prefix[i] != '!' && prefix[i] != '@') continue;
        const std::string_view collected = prefix.substr(begin, i - begin);
        begin = i + 1;
        if (prefix[i] == '!') {
            Nick.assign(collected);
            step = 1;
        } else {
            if (step == 0) Nick.assign(collected);
            if (step == 1) User.assign(collected);
            step = 2;
        }
    }
    Alternate.assign(prefix.substr(begin));
    (step == 1 ? User : Host).assign(Alternate);
}

void ServerLine::readCommand(std::string_view word) {
    Cmd.assign(word);
    if (allDigits(word)) {
        IsNumber = true;
        Number = word.size() < 10 ? std::stoi(Cmd) : CLng(Val(Cmd));
        return;
    }
    constexpr auto isUpper = [](char c) { return c >= 'A' && c <= 'Z'; };
    if (!std::all_of(Cmd.begin(), Cmd.end(), isUpper)) Cmd = UCase(Cmd);
    IsNumber = IsNumeric(Cmd);
    Number = IsNumber ? CLng(Val(Cmd)) : 0;
}

void ServerLine::readRest(std::string_view rest) {
    const std::size_t colon = rest.find(':');
    if (colon == std::string_view::npos) {
        Tailing.clear();
    } else {
        Tailing.assign(rest.substr(colon + 1));
        rest = rest.substr(0, colon);
    }
    // The words of the piece with one blank added at its end: the last word is always an empty one.
    std::size_t count = 0;
    auto add = [&](std::string_view word) {
        if (count == Parameters.size()) Parameters.emplace_back();
        Parameters[count++].assign(word);
    };
    std::size_t begin = 0;
    for (std::size_t end; (end = rest.find(' ', begin)) != std::string_view::npos; begin = end + 1) {
        add(rest.substr(begin, end - begin));
    }
    add(rest.substr(begin));
    add({});
    Parameters.resize(count);
}

const std::string& ServerLine::word(std::size_t index) const {
    if (index >= Parameters.size()) throw RuntimeError(Fault::SubscriptOutOfRange);
    return Parameters[index];
}

ServerLine& ServerLinePool::enter() {
    if (depth_ == lines_.size()) lines_.push_back(std::make_unique<ServerLine>());
    return *lines_[depth_++];
}

void ServerLinePool::leave() {
    ServerLine& line = *lines_[--depth_];
    if (line.Parameters.capacity() > KeptWords) line.Parameters = {};
    if (line.Tailing.capacity() > 4096) line.Tailing = {};
}

}  // namespace talvora
